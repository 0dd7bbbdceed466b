/* SPDX-License-Identifier: Apache-2.0 */
#include "output/table.h"

#include <algorithm>

#include <fmt/format.h>

#include "commandline/arguments.h"
#include "commandline/suggest.h"
#include "query/fields.h"
#include "query/ranks.h"

namespace algdata
{

void TablePrinter::addColumn(const std::string& heading, bool numeric, size_t partCount)
{
    columns.push_back({heading, numeric, partWidths.size(), partCount, columnsOf(heading)});
    partWidths.resize(partWidths.size() + partCount);
}

void TablePrinter::measure(const TableRow& row)
{
    for (Column& column : columns) {
        size_t width = column.parts - 1; /* the blanks between them */
        for (size_t i = column.first; i < column.first + column.parts; ++i) {
            const size_t own = columnsOf(row[i]);
            partWidths[i] = std::max(partWidths[i], own);
            width += column.numeric ? partWidths[i] : own;
        }
        column.width = std::max(column.width, width);
    }
}

/* Joins the parts of a column into one text. In an aligned table, numbers are below each other. */
std::string TablePrinter::cellOf(const Column& column, const TableRow& row, bool aligned) const
{
    std::string cell;
    for (size_t i = column.first; i < column.first + column.parts; ++i) {
        cell += i == column.first ? "" : " ";
        if (aligned && column.numeric)
            cell.append(partWidths[i] - columnsOf(row[i]), ' ');
        cell += row[i];
    }
    return cell;
}

void TablePrinter::putAligned(Output& out, const TableRow& cells) const
{
    std::string line;
    for (size_t i = 0; i < columns.size(); ++i) {
        const size_t blanks = columns[i].width - columnsOf(cells[i]);
        line.append((i == 0 ? 0 : 2) + (columns[i].numeric ? blanks : 0), ' ');
        line += cells[i];
        line.append(columns[i].numeric ? 0 : blanks, ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out.put(line);
}

namespace
{

void putMarkdown(Output& out, const TableRow& cells)
{
    out.put('|');
    for (const std::string& cell : cells) {
        out.put(' ');
        for (const char c : cell)
            out.put(c == '|' ? std::string_view("\\|") : std::string_view(&c, 1));
        out.put(" |");
    }
    out.put('\n');
}

} // namespace

void TablePrinter::putHeadings(Output& out, Format format) const
{
    TableRow headings;
    std::string rule = "|";
    for (const Column& column : columns) {
        headings.push_back(column.heading);
        rule += column.numeric ? "---:|" : "---|";
    }
    if (format == Format::Markdown) {
        putMarkdown(out, headings);
        out.put(rule + "\n");
    } else {
        out.put(out.bold());
        putAligned(out, headings);
        out.put(out.plain());
        out.put('\n');
    }
}

void TablePrinter::put(Output& out, Format format, const TableRow& row) const
{
    TableRow cells;
    for (const Column& column : columns)
        cells.push_back(cellOf(column, row, format != Format::Markdown));
    if (format == Format::Markdown) {
        putMarkdown(out, cells);
    } else {
        putAligned(out, cells);
        out.put('\n');
    }
}

void Table::print(Output& out, Format format)
{
    for (const TableRow& row : rows)
        printer.measure(row);
    printer.putHeadings(out, format);
    for (const TableRow& row : rows)
        printer.put(out, format, row);
}

/* ---- Rows --------------------------------------------------------------- */

std::vector<std::string> Rows::columnNames() const
{
    std::vector<std::string> names;
    for (const Column& column : columns)
        names.push_back(column.name);
    return names;
}

size_t Rows::indexOf(const char* option, const std::string& name) const
{
    std::vector<std::string> names;
    for (size_t i = 0; i < columns.size(); ++i) {
        if (columns[i].name == name)
            return i;
        names.push_back(columns[i].name);
    }
    throw Failure(fmt::format("{}: unknown column {}{} (expected one of {})", option, name,
                              didYouMean(name, names), fmt::join(names, ", ")));
}

void Rows::require(const Options& options) const
{
    for (const Condition& condition : options.where) {
        const Column& column = columns[indexOf("--where", condition.field)];
        if (column.numeric)
            wholeNumberOf(condition);
        else
            requireWord(condition, column.words);
    }
    for (const SortKey& key : options.sort)
        indexOf("--sort", key.field);
    for (const std::string& name : options.columns)
        indexOf("--columns", name);
    requireDistinct(options.columns);
}

bool Rows::fits(const Condition& condition, const std::vector<std::string>& row) const
{
    const size_t column = indexOf("--where", condition.field);
    if (!columns[column].numeric)
        return (row[column] == condition.value) == (condition.test == Condition::Equal);
    return holds(condition.test, rankOfWhole(row[column]), rankOfWhole(wholeNumberOf(condition)));
}

void Rows::narrow(const Options& options)
{
    require(options);
    for (const Condition& condition : options.where) {
        const auto fails = [&](const std::vector<std::string>& row) { return !fits(condition, row); };
        rows.erase(std::remove_if(rows.begin(), rows.end(), fails), rows.end());
    }
    for (auto key = options.sort.rbegin(); key != options.sort.rend(); ++key) {
        const size_t column = indexOf("--sort", key->field);
        const bool numeric = columns[column].numeric;
        std::stable_sort(rows.begin(), rows.end(), [&](const auto& a, const auto& b) {
            const auto& first = key->descending ? b[column] : a[column];
            const auto& second = key->descending ? a[column] : b[column];
            return numeric ? rankOfWhole(first) < rankOfWhole(second) : first < second;
        });
    }
    if (options.head && rows.size() > *options.head)
        rows.resize(*options.head);
}

std::vector<size_t> Rows::chosen(const Options& options) const
{
    std::vector<size_t> order;
    for (const std::string& name : options.columns)
        order.push_back(indexOf("--columns", name));
    for (size_t i = 0; order.size() < columns.size() && options.columns.empty(); ++i)
        order.push_back(i);
    return order;
}

void Rows::print(Output& out, const Options& options) const
{
    RowStream stream(out, options, *this);
    for (const std::vector<std::string>& row : rows)
        stream.put(row);
    stream.finish();
}

RowStream::RowStream(Output& output, const Options& options, const Rows& rows)
    : out(output), format(options.format), columns(rows.columns), order(rows.chosen(options)),
      objects(output, options.format), lines(output)
{
    for (const size_t column : order) {
        table.addColumn(columns[column].name, columns[column].numeric);
        if (format == Format::Csv)
            lines.cell(columns[column].name);
    }
    if (format == Format::Csv)
        lines.end();
}

void RowStream::put(const std::vector<std::string>& row)
{
    if (format == Format::Json || format == Format::Ndjson) {
        putJson(row);
    } else if (format == Format::Csv) {
        for (const size_t column : order)
            lines.cell(row[column]);
        lines.end();
    } else {
        table.addRow();
        for (const size_t column : order)
            table.add(printable(row[column]));
    }
}

void RowStream::putJson(const std::vector<std::string>& row)
{
    std::string text;
    for (const size_t column : order) {
        text += (text.empty() ? "" : ",") + jsonText(columns[column].name) + ":";
        text += !columns[column].numeric ? jsonText(row[column]) : row[column].empty() ? "null" : row[column];
    }
    objects.begin();
    out.put(text);
    objects.end();
}

void RowStream::finish()
{
    if (format == Format::Json || format == Format::Ndjson)
        objects.finish();
    else if (format != Format::Csv)
        table.print(out, format);
}

} // namespace algdata
