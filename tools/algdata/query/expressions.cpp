/* SPDX-License-Identifier: Apache-2.0 */
#include "query/expressions.h"

#include <algorithm>

#include <fmt/format.h>
#include <sqlite3.h>

#include "sqlite/connection.h"
#include "sqlite/functions.h"
#include "text/suggest.h"

namespace algdata
{

/* ---- Statements --------------------------------------------------------- */

void Prepared::finalize(sqlite3_stmt* statement)
{
    sqlite3_finalize(statement);
}

void Prepared::bind(int parameter, const SqlValue& value)
{
    algdata::bind(statement.get(), parameter, value);
}

void Prepared::bind(const std::vector<BoundValue>& values)
{
    int parameter = 0;
    for (const BoundValue& value : values) {
        ++parameter;
        if (const auto* whole = std::get_if<int64_t>(&value))
            bind(parameter, integerValue(*whole));
        else if (const auto* real = std::get_if<double>(&value))
            bind(parameter, realValue(*real));
        else
            bind(parameter, textValue(std::get<std::string>(value)));
    }
}

bool Prepared::step()
{
    const int result = sqlite3_step(statement.get());
    if (result == SQLITE_ROW)
        return true;
    if (result == SQLITE_DONE)
        return false;
    const std::string why = sqlite3_errmsg(sqlite3_db_handle(statement.get()));
    reset();
    if (result == SQLITE_NOMEM)
        throw Failure(subject + "--where and --sort need more memory than they may use");
    throw Failure(subject + "--where, --sort: " + why);
}

void Prepared::reset()
{
    sqlite3_reset(statement.get());
}

int64_t Prepared::integer(int column) const
{
    return sqlite3_column_int64(statement.get(), column);
}

std::optional<std::string> Prepared::parameter() const
{
    return parameterOf(statement.get());
}

/* ---- The connection ----------------------------------------------------- */

Expressions::Expressions() : database(openConnection())
{
    requireOk(registerFunctions(database));
    requireOk(sqlite3_set_authorizer(database, authorize, this));
}

Expressions::~Expressions()
{
    sqlite3_close_v2(database);
}

/*
 * A statement has one SELECT, and this class writes it. An expression must not contain another one, nor read
 * a table of SQLite itself.
 */
int Expressions::authorize(void* given, int action, const char* first, const char* second,
                           const char* /*schema*/, const char* /*trigger*/)
{
    Expressions& self = *static_cast<Expressions*>(given);
    if (self.trusted)
        return SQLITE_OK;
    if (action == SQLITE_READ)
        self.columns.insert(second);
    if (action == SQLITE_FUNCTION && sqlite3_strnicmp(second, "random", 6) == 0)
        self.random = true;
    const bool foreign = action == SQLITE_READ && self.tables.count(first) == 0;
    const bool nested = (action == SQLITE_SELECT && ++self.selects > 1) || foreign;
    const std::optional<std::string> refusal = nested ? "SELECT" : refusalOf(action, first, second);
    if (!refusal)
        return SQLITE_OK;
    if (self.refused.empty())
        self.refused = *refusal;
    return SQLITE_DENY;
}

sqlite3_stmt* Expressions::tryToPrepare(const std::string& statement, const char** rest)
{
    selects = 0;
    refused.clear();
    columns.clear();
    random = false;
    sqlite3_stmt* prepared = nullptr;
    const int result = sqlite3_prepare_v3(database, statement.c_str(), static_cast<int>(statement.size() + 1),
                                          SQLITE_PREPARE_PERSISTENT, &prepared, rest);
    if (result == SQLITE_NOMEM)
        throw std::bad_alloc();
    return prepared;
}

Prepared Expressions::prepare(const std::string& statement)
{
    sqlite3_stmt* prepared = tryToPrepare(statement, nullptr);
    if (prepared == nullptr)
        throw Failure(fmt::format("--where, --sort: {}", sqlite3_errmsg(database)));
    return Prepared(prepared);
}

Prepared Expressions::prepareOwn(const std::string& statement)
{
    trusted = true;
    Prepared prepared = prepare(statement);
    trusted = false;
    return prepared;
}

void Expressions::add(const std::string& table, const std::vector<RowColumn>& declared, RowSource& rows)
{
    tables.insert(table);
    requireOk(registerRows(database, table, declared, rows));
    prepareOwn("SELECT 1 FROM " + quotedName(table)); /* declares the table */
}

void Expressions::create(const std::string& table, const std::vector<RowColumn>& declared)
{
    tables.insert(table);
    prepareOwn("CREATE TABLE " + quotedName(table) + "(" + declarationOf(declared) + ")").step();
}

/* ---- Faults ------------------------------------------------------------- */

namespace
{

const char* const onlyRows = "an expression sees one row at a time: it has no SELECT and reads no table";

} // namespace

ExpressionFault Expressions::faultOf(const Expression& expression, size_t prefix) const
{
    const std::string text = sqlite3_errmsg(database);
    const int offset = sqlite3_error_offset(database);
    ExpressionFault fault = {{text, expression.text, std::nullopt, ""}, ""};
    QueryError& error = fault.error;
    if (offset >= 0 && static_cast<size_t>(offset) >= prefix)
        error.offset = static_cast<size_t>(offset) - prefix;
    const bool after = error.offset > expression.text.size();
    if (after)
        error.offset.reset();
    if (!refused.empty()) {
        error.text = refused == "SELECT" ? onlyRows : "expected an expression, found " + refused;
        error.offset = placeOf(refused.substr(0, refused.find('(')), expression.text);
    } else if (const auto column = restAfter("no such column: ", text)) {
        fault.missing = *column;
        if (!error.offset)
            error.offset = placeOf(*column, expression.text);
    } else if (restAfter("no such table: ", text)) {
        error.text = onlyRows;
    } else if (text == "parser stack overflow") {
        error.text = "the expression is nested too deeply";
    } else if (text == "incomplete input") {
        error.text = "the expression is not complete";
        error.offset = expression.text.size();
    } else if (after) {
        error.text = "expected an expression, found another clause after it";
    }
    error.text = std::string(expression.option) + ": " + error.text;
    return fault;
}

/*
 * The text must be well on its own and within parentheses, or before another term: then it has no clause
 * after it and no parenthesis that closes ours.
 */
std::optional<ExpressionFault> Expressions::faultIn(const Expression& expression, const std::string& table)
{
    const std::string& text = expression.text;
    const auto because = [&](const std::string& why, std::optional<size_t> offset) {
        return ExpressionFault{{std::string(expression.option) + ": " + why, text, offset, ""}, ""};
    };
    if (text.find('\0') != std::string::npos)
        return because("the expression has a NUL byte", text.find('\0'));
    const bool sorts = expression.option == std::string("--sort");
    const std::string from = " FROM " + quotedName(table);
    const std::string alone = "SELECT 1" + from + (sorts ? " ORDER BY " : " WHERE ");
    const char* rest = nullptr;
    const std::string first = alone + text;
    Prepared statement(tryToPrepare(first, &rest));
    if (sqlite3_errcode(database) != SQLITE_OK)
        return faultOf(expression, alone.size());
    if (*rest != '\0')
        return because("expected one expression, found another statement after it",
                       static_cast<size_t>(rest - first.c_str()) - alone.size());
    if (sorts && statement.step())
        return because("an aggregate function has no order", std::nullopt);
    const std::string before = alone + (sorts ? "" : "(");
    const Prepared within(tryToPrepare(before + text + (sorts ? "\n, 1 DESC" : "\n)"), &rest));
    if (sqlite3_errcode(database) != SQLITE_OK)
        return faultOf(expression, before.size());
    if (const std::optional<std::string> parameter = statement.parameter())
        return because(fmt::format("the parameter {} has no value, expected the value itself", *parameter),
                       text.find(*parameter));
    return std::nullopt;
}

void explainMissing(ExpressionFault& fault, const std::string& text, const std::vector<std::string>& columns,
                    const std::string& hint)
{
    QueryError& error = fault.error;
    const std::string suggestion = didYouMean(fault.missing, columns);
    const bool quoted = error.offset && error.query[*error.offset] == '"';
    error.text = text + suggestion;
    error.hint = quoted && suggestion.empty() ? "a text is in single quotes: '" + fault.missing + "'" : hint;
}

/* ---- SQL ---------------------------------------------------------------- */

namespace
{

/* Joined in pairs, so that many columns are no deep expression. */
std::string anySql(const std::vector<std::string>& columns, size_t begin, size_t end, const std::string& test)
{
    if (end - begin == 1)
        return quotedName(columns[begin]) + test;
    const size_t middle = begin + (end - begin) / 2;
    return "(" + anySql(columns, begin, middle, test) + " OR " + anySql(columns, middle, end, test) + ")";
}

} // namespace

std::string conditionSql(const Condition& condition, const std::vector<std::string>& columns,
                         size_t parameter)
{
    static constexpr const char* operators[] = {"IS", "IS", "<", "<=", ">", ">="}; /* by test */
    const std::string any =
        anySql(columns, 0, columns.size(), fmt::format(" {} ?{}", operators[condition.test], parameter));
    return (condition.test == Condition::Unequal ? "NOT " : "") + inParentheses(any);
}

std::string sortSql(const std::string& column, bool descending)
{
    return quotedName(column) + (descending ? " DESC" : "") + " NULLS LAST";
}

std::string inParentheses(const std::string& expression)
{
    return "(" + expression + "\n)";
}

} // namespace algdata
