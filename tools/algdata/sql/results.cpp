/* SPDX-License-Identifier: Apache-2.0 */
#include "sql/results.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>
#include <sqlite3.h>

#include "text/wording.h"

namespace algdata
{

namespace
{

std::string_view textAt(sqlite3_stmt* row, int column)
{
    const unsigned char* text = sqlite3_column_text(row, column);
    return {reinterpret_cast<const char*>(text), static_cast<size_t>(sqlite3_column_bytes(row, column))};
}

/* The shortest text that reads back as the same number. */
std::string realText(double number)
{
    const std::string text = fmt::format("{}", number);
    return text.find_first_not_of("-0123456789") == std::string::npos ? text + ".0" : text;
}

std::string blobText(sqlite3_stmt* row, int column)
{
    const auto* bytes = static_cast<const unsigned char*>(sqlite3_column_blob(row, column));
    return fmt::format("X'{:02X}'", fmt::join(bytes, bytes + sqlite3_column_bytes(row, column), ""));
}

/* The value as text; empty for null. */
std::string textOf(sqlite3_stmt* row, int column)
{
    switch (sqlite3_column_type(row, column)) {
    case SQLITE_NULL:
        return "";
    case SQLITE_INTEGER:
        return std::to_string(sqlite3_column_int64(row, column));
    case SQLITE_FLOAT:
        return realText(sqlite3_column_double(row, column));
    case SQLITE_BLOB:
        return blobText(row, column);
    default:
        return std::string(textAt(row, column));
    }
}

bool isNumber(sqlite3_stmt* row, int column)
{
    const int type = sqlite3_column_type(row, column);
    return type == SQLITE_INTEGER || type == SQLITE_FLOAT;
}

/* JSON has no infinity. */
void putJsonValue(Output& out, sqlite3_stmt* row, int column)
{
    const int type = sqlite3_column_type(row, column);
    if (type == SQLITE_NULL || (type == SQLITE_FLOAT && !std::isfinite(sqlite3_column_double(row, column))))
        out.put("null");
    else if (type == SQLITE_INTEGER)
        out.put(fmt::format_int(sqlite3_column_int64(row, column)).c_str());
    else if (type == SQLITE_FLOAT)
        out.put(realText(sqlite3_column_double(row, column)));
    else
        out.put(jsonText(type == SQLITE_BLOB ? blobText(row, column) : std::string(textAt(row, column))));
}

/* The value for people, on one line. */
std::string shownText(sqlite3_stmt* row, int column)
{
    return sqlite3_column_type(row, column) == SQLITE_NULL ? "-" : printable(textOf(row, column));
}

} // namespace

Results::Results(Output& output, Format asked, std::vector<std::string> columnNames)
    : out(output), format(asked), columns(std::move(columnNames)), objects(output, asked), lines(output)
{
    for (const std::string& name : columns)
        nameWidth = std::max(nameWidth, columnsOf(printable(name)));
    jsonNames.reserve(columns.size());
    for (const std::string& name : columns)
        jsonNames.push_back((jsonNames.empty() ? "" : ",") + jsonText(name) + ":");
    if (format == Format::Csv) {
        for (const std::string& name : columns)
            lines.cell(name);
        lines.end();
    }
}

void Results::put(sqlite3_stmt* row)
{
    ++count;
    if (format == Format::Json || format == Format::Ndjson)
        putJson(row);
    else if (format == Format::Csv)
        putCsv(row);
    else if (format == Format::Record)
        putRecord(row);
    else
        putLater(row);
}

void Results::finish()
{
    if (format == Format::Json || format == Format::Ndjson)
        objects.finish();
    else if (format != Format::Csv && format != Format::Record && !started)
        startTable();
}

void Results::putJson(sqlite3_stmt* row)
{
    objects.begin();
    for (size_t i = 0; i < columns.size(); ++i) {
        out.put(jsonNames[i]);
        putJsonValue(out, row, static_cast<int>(i));
    }
    objects.end();
}

void Results::putCsv(sqlite3_stmt* row)
{
    for (size_t i = 0; i < columns.size(); ++i)
        lines.cell(textOf(row, static_cast<int>(i)));
    lines.end();
}

/* One line per column, and an empty line between records. */
void Results::putRecord(sqlite3_stmt* row)
{
    if (count > 1)
        out.put('\n');
    for (size_t i = 0; i < columns.size(); ++i) {
        const std::string name = printable(columns[i]);
        out.put(fmt::format("{}{:>{}}{}  ", out.bold(), name, nameWidth + name.size() - columnsOf(name),
                            out.plain()));
        out.put(shownText(row, static_cast<int>(i)) + "\n");
    }
}

/* ---- Tables ------------------------------------------------------------- */

void Results::putLater(sqlite3_stmt* row)
{
    std::vector<Cell> cells;
    cells.reserve(columns.size());
    for (int i = 0; i < static_cast<int>(columns.size()); ++i)
        cells.push_back({shownText(row, i), isNumber(row, i)});
    if (started) {
        printRow(cells);
        return;
    }
    for (const Cell& cell : cells)
        keptBytes += cell.text.size();
    kept.push_back(std::move(cells));
    if (kept.size() == rowsForWidths || keptBytes >= bytesForWidths)
        startTable();
}

/* Prints the heading and the rows so far. Later rows have the same widths, or more if they need it. */
void Results::startTable()
{
    started = true;
    std::vector<Cell> heading;
    for (const std::string& name : columns) {
        heading.push_back({printable(name), false});
        widths.push_back(columnsOf(heading.back().text));
    }
    numeric.assign(columns.size(), !kept.empty());
    for (const std::vector<Cell>& row : kept)
        for (size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], columnsOf(row[i].text));
            numeric[i] = numeric[i] && (row[i].number || row[i].text == "-");
        }
    if (format != Format::Markdown)
        out.put(out.bold());
    printRow(heading);
    if (format != Format::Markdown)
        out.put(out.plain());
    if (format == Format::Markdown) {
        out.put('|');
        for (const bool right : numeric)
            out.put(right ? "---:|" : "---|");
        out.put('\n');
    }
    for (const std::vector<Cell>& row : kept)
        printRow(row);
    kept.clear();
}

void Results::printRow(const std::vector<Cell>& cells)
{
    if (format != Format::Markdown) {
        printLine(cells);
        return;
    }
    std::string text = "|";
    for (const Cell& cell : cells) {
        text += ' ';
        for (const char c : cell.text)
            (text += c == '|' ? "\\" : "") += c;
        text += " |";
    }
    out.put(text + "\n");
}

void Results::printLine(const std::vector<Cell>& cells)
{
    std::string text;
    for (size_t i = 0; i < cells.size(); ++i) {
        const size_t width = columnsOf(cells[i].text);
        const std::string blanks(width < widths[i] ? widths[i] - width : 0, ' ');
        text += i == 0 ? "" : "  ";
        text += numeric[i] ? blanks + cells[i].text : cells[i].text + blanks;
    }
    text.erase(text.find_last_not_of(' ') + 1);
    out.put(text + "\n");
}

} // namespace algdata
