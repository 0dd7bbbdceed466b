/* SPDX-License-Identifier: Apache-2.0 */
#include "sql/errors.h"

#include <algorithm>

#include <fmt/format.h>

#include "output/json.h"
#include "sql/tables.h"
#include "text/suggest.h"
#include "text/wording.h"

namespace algdata
{

namespace
{

std::vector<const SqlTable*> tablesIn(const std::string& query)
{
    std::vector<const SqlTable*> tables;
    for (const Word& word : wordsOf(query)) {
        const SqlTable* table = findSqlTable(word.text);
        if (table != nullptr && std::find(tables.begin(), tables.end(), table) == tables.end())
            tables.push_back(table);
    }
    return tables;
}

std::string namesOf(const std::vector<const SqlTable*>& tables)
{
    std::string names;
    for (const SqlTable* table : tables)
        names += (names.empty() ? "" : ", ") + table->name;
    return names;
}

/* "; rssi is a column of score_band, scanning", if the tables in use are others. */
std::string whereElse(const std::string& name, const std::vector<const SqlTable*>& inUse)
{
    std::vector<const SqlTable*> tables;
    for (const SqlTable& table : sqlTables())
        for (const SqlColumn& column : table.columns)
            if (!table.loaded && lowered(column.name) == lowered(name))
                tables.push_back(&table);
    if (std::any_of(tables.begin(), tables.end(), [&](const SqlTable* table) {
            return std::find(inUse.begin(), inUse.end(), table) != inUse.end();
        }))
        return "; it is a column of " + namesOf(tables) + ", so is the name before the point right?";
    return tables.empty() ? "" : fmt::format("; it is a column of {}", namesOf(tables));
}

void explainColumn(QueryError& error, const std::string& written, const std::vector<std::string>& pathColumns)
{
    const std::string name =
        written.substr(written.rfind('.') == std::string::npos ? 0 : written.rfind('.') + 1);
    const std::vector<const SqlTable*> tables = tablesIn(error.query);
    std::vector<std::string> choices = pathColumns;
    for (const SqlTable* table : tables)
        for (const SqlColumn& column : table->columns)
            choices.push_back(column.name);
    for (const SqlColumn& column : hiddenColumns())
        choices.push_back(column.name);
    const std::string where =
        tables.empty() ? ""
                       : fmt::format(" in {} {}", tables.size() == 1 ? "table" : "tables", namesOf(tables));
    const std::string elsewhere = whereElse(name, tables);
    const std::string advice = elsewhere.empty() ? didYouMean(name, choices) : elsewhere;
    error.text = fmt::format("no column \"{}\"{}{}", written, where, advice);
    if (!error.offset)
        error.offset = placeOf(name, error.query);
    error.hint = tables.size() == 1
                     ? fmt::format("`algdata sql --schema {}` lists the columns", tables[0]->name)
                     : "`algdata sql --schema` lists the tables and their columns";
    if (advice.empty() && pathColumns.empty())
        error.hint += ", and --path names the parts of a path as columns";
}

/* The table of a kind that has this name or alias; null if there is none. */
const SqlTable* tableOfKind(const std::string& name)
{
    const Kind* kind = findKind(name);
    for (const SqlTable& table : sqlTables())
        if (kind != nullptr && table.kind == kind)
            return &table;
    return nullptr;
}

void explainTable(QueryError& error, const std::string& name)
{
    std::vector<std::string> choices;
    for (const SqlTable& table : sqlTables())
        choices.push_back(table.name);
    const SqlTable* ofKind = tableOfKind(name);
    error.text =
        fmt::format("no table \"{}\"{}", name,
                    ofKind != nullptr ? "; did you mean " + ofKind->name + "?" : didYouMean(name, choices));
    if (!error.offset)
        error.offset = placeOf(name, error.query);
    error.hint = "`algdata sql --schema` lists the tables";
}

} // namespace

QueryError explained(const std::string& query, const std::string& text, int offset,
                     const std::vector<std::string>& pathColumns)
{
    QueryError error = {text, query, std::nullopt, ""};
    if (offset >= 0)
        error.offset = static_cast<size_t>(offset);
    if (const auto column = restAfter("no such column: ", text))
        explainColumn(error, *column, pathColumns);
    else if (const auto table = restAfter("no such table: ", text))
        explainTable(error, *table);
    else if (text == "parser stack overflow")
        error.text = "the query is nested too deeply";
    else if (text == "incomplete input")
        error = {"the query is not complete", query, query.size(), ""};
    return error;
}

std::string errorJson(const QueryError& error)
{
    std::string text = "{\"error\":" + jsonText(error.text) + ",\"query\":" + jsonText(error.query);
    text += ",\"offset\":" + (error.offset ? std::to_string(*error.offset) : "null");
    text += ",\"hint\":" + (error.hint.empty() ? "null" : jsonText(error.hint));
    return text + "}";
}

} // namespace algdata
