/* SPDX-License-Identifier: Apache-2.0 */
#include "printing/table.h"

#include <algorithm>

#include <fmt/format.h>

#include "options/arguments.h"
#include "query/fields.h"
#include "text/suggest.h"

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
        if (condition.isExpression())
            continue;
        const Column& column = columns[indexOf("--where", condition.field)];
        if (column.numeric)
            wholeNumberOf(condition);
        else
            requireWord(condition, column.words);
    }
    for (const SortKey& key : options.sort)
        if (key.expression.empty())
            indexOf("--sort", key.field);
    for (const std::string& name : options.columns)
        indexOf("--columns", name);
    requireDistinct(options.columns);
}

void Rows::narrow(const Options& options)
{
    RowsFilter filter(*this, options);
    filter.narrowUnit(*this);
    filter.narrowAll(*this);
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

/* ---- Filtering ---------------------------------------------------------- */

RowsFilter::RowsFilter(const Rows& of, const Options& options)
    : columns(of.columns), head(options.head.value_or(SIZE_MAX)), sorts(!options.sort.empty()),
      left(options.limit.value_or(SIZE_MAX))
{
    of.require(options);
    if (options.where.empty() && options.sort.empty())
        return;
    std::vector<RowColumn> declared;
    for (const Rows::Column& column : columns)
        declared.push_back({column.name, column.numeric ? "INTEGER" : "TEXT"});
    expressions = std::make_unique<Expressions>();
    expressions->add("result", declared, *this);
    std::string sql = "SELECT rowid FROM result WHERE 1";
    std::vector<BoundValue> values;
    for (const Condition& condition : options.where) {
        if (condition.isExpression()) {
            requireExpression({"--where", condition.text});
            sql += " AND " + inParentheses(condition.text);
            continue;
        }
        if (columns[of.indexOf("--where", condition.field)].numeric)
            values.emplace_back(wholeNumberOf(condition));
        else
            values.emplace_back(condition.value);
        sql += " AND " + conditionSql(condition, {condition.field}, values.size());
    }
    sql += " ORDER BY ";
    for (const SortKey& key : options.sort) {
        if (!key.expression.empty())
            requireExpression({"--sort", key.expression});
        sql += (key.expression.empty() ? sortSql(key.field, key.descending) : key.expression + "\n") + ", ";
    }
    statement = expressions->prepare(sql + "rowid");
    statement->bind(values);
}

void RowsFilter::requireExpression(const Expression& expression)
{
    std::optional<ExpressionFault> fault = expressions->faultIn(expression, "result");
    if (!fault)
        return;
    std::vector<std::string> names;
    for (const Rows::Column& column : columns)
        names.push_back(column.name);
    if (!fault->missing.empty())
        explainMissing(*fault, fmt::format("{}: no column \"{}\"", expression.option, fault->missing), names,
                       fmt::format("expected one of {}", fmt::join(names, ", ")));
    throw QueryFailure(fault->error);
}

void RowsFilter::narrowUnit(Rows& rows)
{
    narrow(rows, sorts ? head : std::min(head, left));
    left -= sorts ? 0 : rows.rows.size();
}

void RowsFilter::narrowAll(Rows& rows)
{
    if (sorts)
        narrow(rows, left);
}

void RowsFilter::narrow(Rows& rows, size_t most)
{
    if (!statement) {
        rows.rows.resize(std::min(rows.rows.size(), most));
        return;
    }
    given = &rows.rows;
    std::vector<std::vector<std::string>> kept;
    while (kept.size() < most && statement->step())
        kept.push_back(rows.rows[static_cast<size_t>(statement->integer(0))]);
    statement->reset();
    given = nullptr;
    rows.rows = std::move(kept);
}

SqlValue RowsFilter::value(size_t column)
{
    const std::string& text = (*given)[at][column];
    if (!columns[column].numeric)
        return textValue(text);
    const std::optional<Number> number = wholeNumber(text);
    if (!number || number->huge || number->magnitude >= INT64_MAX)
        return {};
    const int64_t magnitude = static_cast<int64_t>(number->magnitude);
    return integerValue(number->negative ? -magnitude : magnitude);
}

/* ---- Printing ----------------------------------------------------------- */

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
