/* SPDX-License-Identifier: Apache-2.0 */
#include "query/filter.h"

#include <algorithm>

#include <fmt/format.h>

#include "options/arguments.h"
#include "query/fields.h"

namespace algdata
{

/* ---- Values ------------------------------------------------------------- */

namespace
{

/* "a4:c3:f0:00:00:10" as "a4c3f0000010". */
std::string withoutColons(const std::string& text)
{
    std::string digits;
    for (size_t i = 0; i < text.size(); ++i) {
        const bool separator = text.size() == 17 && i % 3 == 2;
        if (separator != (text[i] == ':'))
            return text;
        if (!separator)
            digits += text[i];
    }
    return digits;
}

} // namespace

BoundValue valueFor(const Condition& condition, const Field& field)
{
    if (field.type == Type::Mac) {
        const std::string mac = withoutColons(condition.value);
        if (!isMac(mac))
            throwMalformed("--where", condition.text, condition.at,
                           "12 hexadecimal digits (colons are allowed)");
        return mac;
    }
    if (field.type == Type::F32) {
        const std::optional<double> number = decimalNumber(condition.value);
        if (!number)
            throwMalformed("--where", condition.text, condition.at, "a number");
        return *number;
    }
    return wholeNumberOf(condition);
}

/* ---- One kind ----------------------------------------------------------- */

KindFilter::KindFilter(Expressions& with, const Kind& of, bool loaded)
    : expressions(with), kind(of), rows(of, loaded)
{
    expressions.add(kind.name, rows.columns(), rows);
}

std::optional<ExpressionFault> KindFilter::faultIn(const Expression& expression)
{
    return expressions.faultIn(expression, kind.name);
}

void KindFilter::prepare(const Options& options)
{
    for (const Condition& condition : options.where)
        possible = possible && addCondition(condition);
    addSort(options.sort);
    const std::string from = " FROM " + quotedName(kind.name);
    if (possible && !ofFile.sql.empty()) {
        file = expressions.prepare("SELECT 1" + from + " WHERE " + ofFile.sql);
        file->bind(ofFile.values);
    }
    if (!possible || (ofRecords.sql.empty() && !sorts))
        return;
    records = expressions.prepare(
        fmt::format("SELECT rowid, {}{}{}{}{}", usesParts ? quotedName(rows.partName()) : "NULL", from,
                    ofRecords.sql.empty() ? "" : " WHERE ", ofRecords.sql, order) +
        (keepsFirst() ? fmt::format(" LIMIT ?{}", ofRecords.values.size() + 1) : ""));
    records->bind(ofRecords.values);
}

/* Returns false if the condition names a field of another kind. */
bool KindFilter::addCondition(const Condition& condition)
{
    if (!condition.isExpression()) {
        const std::vector<size_t> columns = rows.columnsNamed(condition.field);
        if (!columns.empty())
            addSimple(condition, columns);
        return !columns.empty();
    }
    if (const std::optional<ExpressionFault> fault = faultIn({"--where", condition.text})) {
        if (fault->missing.empty())
            throw QueryFailure(fault->error);
        return false;
    }
    Where& where = readsOnlyFile() ? ofFile : ofRecords;
    noteParts();
    where.sql += (where.sql.empty() ? "" : " AND ") + inParentheses(condition.text);
    return true;
}

/* An entry that does not exist fulfils no condition, not even one with !=. */
void KindFilter::addSimple(const Condition& condition, const std::vector<size_t>& of)
{
    const bool isOfFile = rows.isOfFile(of[0]);
    Where& where = isOfFile ? ofFile : ofRecords;
    if (!isOfFile)
        where.values.push_back(valueFor(condition, *rows.fieldOf(of[0])));
    else if (condition.field == "kind")
        where.values.emplace_back(kindNamed(condition.value).name);
    else
        where.values.emplace_back(condition.value);
    std::vector<std::string> names;
    names.reserve(of.size());
    for (const size_t column : of)
        names.push_back(rows.columns()[column].name);
    std::string sql = conditionSql(condition, names, where.values.size());
    if (rows.isOfEntries(of[0])) {
        usesParts = true;
        sql = quotedName(rows.partName()) + " IS NOT NULL AND " + sql;
    }
    where.sql += (where.sql.empty() ? "" : " AND ") + sql;
}

bool KindFilter::readsOnlyFile() const
{
    const std::set<std::string>& read = expressions.columnsRead();
    return !read.empty() && !expressions.isRandom() &&
           std::all_of(read.begin(), read.end(), [](const std::string& name) { return namesTheFile(name); });
}

void KindFilter::noteParts()
{
    for (size_t i = 0; i < rows.columns().size(); ++i)
        if (rows.isOfParts(i) && expressions.columnsRead().count(rows.columns()[i].name) != 0)
            usesParts = true;
}

/*
 * Fields of a record order the records, and fields of an entry the entries of each record. What is equal
 * stays in the order of the file. A field of another kind does not matter.
 */
void KindFilter::addSort(const std::vector<SortKey>& keys)
{
    std::string ofEntries;
    for (const SortKey& key : keys) {
        if (!key.expression.empty()) {
            const std::optional<ExpressionFault> fault = faultIn({"--sort", key.expression});
            if (fault && fault->missing.empty())
                throw QueryFailure(fault->error);
            if (fault)
                continue;
            noteParts();
            sortedBy.insert(expressions.columnsRead().begin(), expressions.columnsRead().end());
            order += key.expression + "\n, ";
        }
        for (const size_t column : rows.columnsNamed(key.field)) {
            const std::string& name = rows.columns()[column].name;
            usesParts = usesParts || rows.isOfParts(column);
            sortedBy.insert(name);
            (rows.isOfEntries(column) ? ofEntries : order) += sortSql(name, key.descending) + ", ";
        }
    }
    sorts = !sortedBy.empty() || !order.empty();
    if (sorts)
        order =
            " ORDER BY " + order + "rowid, " + ofEntries + (usesParts ? quotedName(rows.partName()) : "1");
}

/* ---- Matching ----------------------------------------------------------- */

bool KindFilter::matchesFile(const Source& source)
{
    if (!possible || !file)
        return possible;
    const Record none;
    rows.show(source, none, RecordRows::Whole);
    const bool matches = file->step();
    file->reset();
    return matches;
}

bool KindFilter::matchesPart(const Source& source, const Record& record, size_t part)
{
    if (!records)
        return true;
    rows.show(source, record, !usesParts ? RecordRows::Whole : part != 0 ? part - 1 : RecordRows::AllParts);
    const bool matches = records->step();
    records->reset();
    return matches;
}

void KindFilter::start(const Source& source, View& view, std::function<void(const Record&)> reads)
{
    records->reset();
    records->setSubject(source.name);
    rows.show(source, view, usesParts, std::move(reads));
}

Record* KindFilter::next()
{
    return records->step() ? &rows.record() : nullptr;
}

std::vector<Chosen> KindFilter::chosen(size_t most)
{
    if (keepsFirst())
        records->bind(static_cast<int>(ofRecords.values.size()) + 1,
                      sizeValue(std::min<size_t>(most, INT64_MAX)));
    std::vector<Chosen> all;
    std::map<size_t, size_t> indexOf; /* by place; only for rows of parts, of which a record has several */
    while (records->step()) {
        const size_t place = static_cast<size_t>(records->integer(0));
        const size_t index = usesParts ? indexOf.insert({place, all.size()}).first->second : all.size();
        if (index == all.size())
            all.push_back({place, {}});
        if (usesParts)
            all[index].entries.push_back(static_cast<size_t>(records->integer(1)));
    }
    records->reset();
    all.resize(std::min(all.size(), most));
    return all;
}

void KindFilter::keep(Record& record, const Chosen& chosen) const
{
    if (!usesParts || !kind.hasEntries())
        return;
    std::vector<std::vector<Token>> kept;
    for (const size_t entry : chosen.entries)
        if (entry < record.entries.size())
            kept.push_back(std::move(record.entries[entry]));
    record.entries = std::move(kept);
}

RecordRows& KindFilter::rowOf(const Source& source, const Record& record)
{
    rows.show(source, record, RecordRows::Whole);
    rows.first();
    return rows;
}

/* ---- All kinds ---------------------------------------------------------- */

Filter::Filter(const Options& of) : chosen(of), left(of.limit.value_or(SIZE_MAX)) {}

KindFilter& Filter::of(const Kind& kind)
{
    std::unique_ptr<KindFilter>& filter = kinds[&kind];
    if (filter == nullptr) {
        if (expressions == nullptr)
            expressions = std::make_unique<Expressions>();
        filter = std::make_unique<KindFilter>(*expressions, kind, chosen.loaded);
        filter->prepare(chosen);
    }
    return *filter;
}

/* ---- Faults ------------------------------------------------------------- */

namespace
{

/* The names of the columns of these kinds that a column may be confused with. */
std::vector<std::string> columnsOf(const std::vector<const Kind*>& among)
{
    std::vector<std::string> names = {"kind", "source", "_line", "_record"};
    for (const Kind* kind : among) {
        const RecordRows rows(*kind, false);
        for (const RowColumn& column : rows.columns())
            if (std::find(names.begin(), names.end(), column.name) == names.end())
                names.push_back(column.name);
    }
    return names;
}

[[noreturn]] void throwMissing(const Expression& expression, ExpressionFault fault,
                               const std::vector<const Kind*>& among)
{
    const std::vector<std::string> names = columnsOf(among);
    const bool known = std::find(names.begin(), names.end(), fault.missing) != names.end();
    const std::string only = among.size() == 1 ? among[0]->name : "";
    const std::string text =
        fmt::format("{}: {} column \"{}\"", expression.option,
                    !only.empty() ? only + " has no"
                    : known       ? "no kind has all columns of the expression; no kind with the others has"
                                  : "no kind has a",
                    fault.missing);
    explainMissing(fault, text, known ? std::vector<std::string>() : names,
                   fmt::format("`algdata kinds{}` lists the fields", only.empty() ? "" : " --kind " + only));
    throw QueryFailure(fault.error);
}

/* Reports the fault that is furthest in the text, because what is before it is well for some kind. */
void requireExpression(const Expression& expression, const std::vector<const Kind*>& among)
{
    Expressions expressions;
    std::optional<ExpressionFault> worst;
    for (const Kind* kind : among) {
        const std::optional<ExpressionFault> fault =
            KindFilter(expressions, *kind, false).faultIn(expression);
        if (!fault)
            return;
        if (fault->missing.empty())
            throw QueryFailure(fault->error);
        if (!worst || fault->error.offset > worst->error.offset)
            worst = fault;
    }
    if (worst)
        throwMissing(expression, *worst, among);
}

} // namespace

void requireExpressions(const std::vector<const Kind*>& among, const Options& options)
{
    for (const Condition& condition : options.where)
        if (condition.isExpression())
            requireExpression({"--where", condition.text}, among);
    for (const SortKey& key : options.sort)
        if (!key.expression.empty())
            requireExpression({"--sort", key.expression}, among);
}

} // namespace algdata
