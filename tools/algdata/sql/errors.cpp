/* SPDX-License-Identifier: Apache-2.0 */
#include "sql/errors.h"

#include <algorithm>

#include <fmt/format.h>

#include "commandline/suggest.h"
#include "output/json.h"
#include "output/wording.h"
#include "reading/records.h"

namespace algdata
{

namespace
{

struct Word {
    std::string text;
    size_t offset;
};

bool isWordCharacter(char c)
{
    return c == '_' || isDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/* The end of a text in quotes that begins here. */
size_t endOfQuoted(const std::string& query, size_t at)
{
    const size_t close = query.find(query[at], at + 1);
    return close == std::string::npos ? query.size() : close + 1;
}

/* The names in a query; texts in single quotes and comments are left out. */
std::vector<Word> wordsOf(const std::string& query)
{
    std::vector<Word> words;
    for (size_t at = 0; at < query.size();) {
        size_t end = at + 1;
        if (query[at] == '\'' || query[at] == '"') {
            end = endOfQuoted(query, at);
            if (query[at] == '"' && end > at + 2)
                words.push_back({query.substr(at + 1, end - at - 2), at});
        } else if (query.compare(at, 2, "--") == 0) {
            end = std::min(query.find('\n', at), query.size());
        } else if (query.compare(at, 2, "/*") == 0) {
            const size_t close = query.find("*/", at + 2);
            end = close == std::string::npos ? query.size() : close + 2;
        } else if (isWordCharacter(query[at])) {
            while (end < query.size() && isWordCharacter(query[end]))
                ++end;
            words.push_back({query.substr(at, end - at), at});
        }
        at = end;
    }
    return words;
}

std::optional<size_t> placeOf(const std::string& word, const std::string& query)
{
    for (const Word& one : wordsOf(query))
        if (lowered(one.text) == lowered(word))
            return one.offset;
    return std::nullopt;
}

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
    error.text = fmt::format("no column \"{}\"{}{}", written, where,
                             elsewhere.empty() ? didYouMean(name, choices) : elsewhere);
    if (!error.offset)
        error.offset = placeOf(name, error.query);
    error.hint = tables.size() == 1
                     ? fmt::format("`algdata sql --schema {}` lists the columns", tables[0]->name)
                     : "`algdata sql --schema` lists the tables and their columns";
}

void explainTable(QueryError& error, const std::string& name)
{
    std::vector<std::string> choices;
    for (const SqlTable& table : sqlTables())
        choices.push_back(table.name);
    error.text = fmt::format("no table \"{}\"{}", name, didYouMean(name, choices));
    if (!error.offset)
        error.offset = placeOf(name, error.query);
    error.hint = "`algdata sql --schema` lists the tables";
}

/* The rest of the text after the prefix; null if it begins otherwise. */
std::optional<std::string> after(const std::string& text, const std::string& prefix)
{
    if (text.compare(0, prefix.size(), prefix) != 0)
        return std::nullopt;
    return text.substr(prefix.size());
}

} // namespace

QueryError explained(const std::string& query, const std::string& text, int offset,
                     const std::vector<std::string>& pathColumns)
{
    QueryError error = {text, query, std::nullopt, ""};
    if (offset >= 0)
        error.offset = static_cast<size_t>(offset);
    if (const auto column = after(text, "no such column: "))
        explainColumn(error, *column, pathColumns);
    else if (const auto table = after(text, "no such table: "))
        explainTable(error, *table);
    else if (text == "parser stack overflow")
        error.text = "the query is nested too deeply";
    else if (text == "incomplete input")
        error = {"the query is not complete", query, query.size(), ""};
    return error;
}

std::string caretText(const QueryError& error)
{
    if (!error.offset || *error.offset > error.query.size())
        return "";
    const size_t newline = error.query.rfind('\n', *error.offset == 0 ? 0 : *error.offset - 1);
    const size_t begin = newline == std::string::npos || newline >= *error.offset ? 0 : newline + 1;
    const size_t end = std::min(error.query.find('\n', *error.offset), error.query.size());
    constexpr size_t shownBefore = 60;
    constexpr size_t shownAfter = 40;
    const size_t from = *error.offset - begin > shownBefore ? *error.offset - shownBefore : begin;
    const size_t to = std::min(end, *error.offset + shownAfter);
    const std::string before = printable(std::string_view(error.query).substr(from, *error.offset - from));
    const std::string rest =
        printable(std::string_view(error.query).substr(*error.offset, to - *error.offset));
    return fmt::format("    {}{}\n    {:{}}^\n", before, rest, "", columnsOf(before));
}

std::string errorJson(const QueryError& error)
{
    std::string text = "{\"error\":" + jsonText(error.text) + ",\"query\":" + jsonText(error.query);
    text += ",\"offset\":" + (error.offset ? std::to_string(*error.offset) : "null");
    text += ",\"hint\":" + (error.hint.empty() ? "null" : jsonText(error.hint));
    return text + "}";
}

} // namespace algdata
