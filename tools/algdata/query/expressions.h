/* SPDX-License-Identifier: Apache-2.0 */
/* The SQL of --where and --sort: checks it, and runs it over tables of rows. */
#ifndef ALGDATA_EXPRESSIONS_H
#define ALGDATA_EXPRESSIONS_H

#include <memory>
#include <set>
#include <string>
#include <variant>
#include <vector>

#include "options/options.h"
#include "output/queryError.h"
#include "sqlite/rowTable.h"

struct sqlite3;
struct sqlite3_stmt;

namespace algdata
{

/* A value of a condition in the simple form. */
using BoundValue = std::variant<int64_t, double, std::string>;

/* A prepared statement. */
class Prepared
{
  public:
    explicit Prepared(sqlite3_stmt* prepared) : statement(prepared, finalize) {}

    void bind(int parameter, const SqlValue& value);
    void bind(const std::vector<BoundValue>& values);

    /* What the next rows are of, for the message of step(). */
    void setSubject(std::string name) { subject = std::move(name) + ": "; }

    /* False after the last row. Throws Failure, and ends the statement, if a value cannot be computed. */
    bool step();
    void reset();

    int64_t integer(int column) const;

    /* The first parameter; null if there is none. */
    std::optional<std::string> parameter() const;

  private:
    static void finalize(sqlite3_stmt* statement);
    std::unique_ptr<sqlite3_stmt, void (*)(sqlite3_stmt*)> statement;
    std::string subject;
};

/* What is wrong with an expression. */
struct ExpressionFault {
    QueryError error;
    std::string missing; /* the column that the table lacks; empty for other faults */
};

/* Explains a column that the table lacks: the text with a suggestion among these columns, and what to do. */
void explainMissing(ExpressionFault& fault, const std::string& text, const std::vector<std::string>& columns,
                    const std::string& hint);

/* An expression as the user wrote it. */
struct Expression {
    const char* option; /* "--where": one condition; "--sort": terms of ORDER BY */
    const std::string& text;
};

/* A connection whose statements read tables of rows, and nothing else. */
class Expressions
{
  public:
    Expressions();
    ~Expressions();
    Expressions(const Expressions&) = delete;
    Expressions& operator=(const Expressions&) = delete;

    /* The rows become a table. They must live as long. */
    void add(const std::string& table, const std::vector<RowColumn>& declared, RowSource& rows);

    /* Creates an empty table. */
    void create(const std::string& table, const std::vector<RowColumn>& declared);

    /* What is wrong with an expression for a table, which must be empty at the moment; null if it is well. */
    std::optional<ExpressionFault> faultIn(const Expression& expression, const std::string& table);

    Prepared prepare(const std::string& statement);

    /* The same for a statement without any text of the user, which may also write. */
    Prepared prepareOwn(const std::string& statement);

    /* The columns that the last statement reads. */
    const std::set<std::string>& columnsRead() const { return columns; }

    /* Whether its result differs from row to row even if the columns do not: it has random(). */
    bool isRandom() const { return random; }

  private:
    static int authorize(void* given, int action, const char* first, const char* second, const char* schema,
                         const char* trigger);
    ExpressionFault faultOf(const Expression& expression, size_t prefix) const;
    sqlite3_stmt* tryToPrepare(const std::string& statement, const char** rest);

    sqlite3* database;
    bool trusted = false; /* a statement of this class, not of the user */
    size_t selects = 0;
    std::string refused;
    std::set<std::string> tables;
    std::set<std::string> columns;
    bool random = false;
};

/* Whether one of the columns fulfils the condition; for !=, none of them must be equal. */
std::string conditionSql(const Condition& condition, const std::vector<std::string>& columns,
                         size_t parameter);

/* The terms of ORDER BY for one column. Nulls are last in both directions. */
std::string sortSql(const std::string& column, bool descending);

/* The text as a term, also if a comment ends it. */
std::string inParentheses(const std::string& expression);

} // namespace algdata

#endif
