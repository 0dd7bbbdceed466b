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

void Table::addColumn(const std::string& heading, bool numeric, size_t partCount)
{
    headings.push_back({heading, numeric, parts, partCount});
    parts += partCount;
}

void Table::add(std::string_view text)
{
    rows.back().emplace_back(text);
}

std::vector<size_t> Table::partWidths() const
{
    std::vector<size_t> widths(parts, 0);
    for (const std::vector<std::string>& row : rows)
        for (size_t i = 0; i < row.size() && i < parts; ++i)
            widths[i] = std::max(widths[i], columnsOf(row[i]));
    return widths;
}

/* Joins the parts of each column into one text. */
std::vector<std::string> Table::cellsOf(const std::vector<std::string>& row,
                                        const std::vector<size_t>& widths) const
{
    std::vector<std::string> cells;
    for (const Heading& heading : headings) {
        std::string cell;
        for (size_t i = heading.first; i < heading.first + heading.parts; ++i) {
            const std::string text = i < row.size() ? row[i] : "";
            cell += (i == heading.first ? "" : " ");
            cell += heading.numeric ? fmt::format("{:>{}}", text, widths[i]) : text;
        }
        cells.push_back(cell);
    }
    return cells;
}

void Table::printAligned(Output& out) const
{
    const std::vector<size_t> inner = partWidths();
    std::vector<std::vector<std::string>> lines;
    std::vector<size_t> widths;
    for (const Heading& heading : headings)
        widths.push_back(columnsOf(heading.text));
    for (const std::vector<std::string>& row : rows) {
        lines.push_back(cellsOf(row, inner));
        for (size_t i = 0; i < widths.size(); ++i)
            widths[i] = std::max(widths[i], columnsOf(lines.back()[i]));
    }
    const auto line = [&](const std::vector<std::string>& cells) {
        std::string text;
        for (size_t i = 0; i < cells.size(); ++i)
            text += fmt::format(headings[i].numeric ? "{}{:>{}}" : "{}{:<{}}", i == 0 ? "" : "  ", cells[i],
                                widths[i]);
        text.erase(text.find_last_not_of(' ') + 1);
        return text;
    };
    std::vector<std::string> names;
    for (const Heading& heading : headings)
        names.push_back(heading.text);
    out.put(fmt::format("{}{}{}\n", out.bold(), line(names), out.plain()));
    for (const std::vector<std::string>& cells : lines)
        out.put(line(cells) + "\n");
}

void Table::printMarkdown(Output& out) const
{
    const auto line = [&](const std::vector<std::string>& cells) {
        std::string text = "|";
        for (const std::string& cell : cells) {
            text += ' ';
            for (const char c : cell)
                (text += c == '|' ? "\\" : "") += c;
            text += " |";
        }
        return text + "\n";
    };
    std::vector<std::string> names;
    std::string rule = "|";
    for (const Heading& heading : headings) {
        names.push_back(heading.text);
        rule += heading.numeric ? "---:|" : "---|";
    }
    out.put(line(names));
    out.put(rule + "\n");
    const std::vector<size_t> narrow(parts, 0);
    for (const std::vector<std::string>& row : rows)
        out.put(line(cellsOf(row, narrow)));
}

void Table::print(Output& out, Format format) const
{
    if (format == Format::Markdown)
        printMarkdown(out);
    else
        printAligned(out);
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
