/* SPDX-License-Identifier: Apache-2.0 */
/* Tables: aligned for the terminal, as markdown, and as rows for programs. */
#ifndef ALGDATA_TABLE_H
#define ALGDATA_TABLE_H

#include <string>
#include <vector>

#include "output/csv.h"
#include "output/json.h"
#include "output/output.h"
#include "query/expressions.h"
#include "text/wording.h"

namespace algdata
{

/* The texts of a row. */
using TableRow = std::vector<std::string>;

/*
 * Prints a table without keeping its rows. The widths of an aligned table depend on all
 * rows, so each row is measured before the first one is printed.
 */
class TablePrinter
{
  public:
    /* A numeric column is right-aligned. A column has `partCount` texts per row, side by side. */
    void addColumn(const std::string& heading, bool numeric, size_t partCount = 1);

    void measure(const TableRow& row);
    void putHeadings(Output& out, Format format) const;
    void put(Output& out, Format format, const TableRow& row) const;

  private:
    struct Column {
        std::string heading;
        bool numeric;
        size_t first; /* its first part */
        size_t parts;
        size_t width;
    };
    std::string cellOf(const Column& column, const TableRow& row, bool aligned) const;
    void putAligned(Output& out, const TableRow& cells) const;

    std::vector<Column> columns;
    std::vector<size_t> partWidths;
};

/* Keeps its rows until they are printed. */
class Table
{
  public:
    /* As for a TablePrinter. */
    void addColumn(const std::string& heading, bool numeric, size_t partCount = 1)
    {
        printer.addColumn(heading, numeric, partCount);
    }

    void addRow() { rows.emplace_back(); }

    /* Adds the next text to the last row, which has one for each column in the end. */
    void add(std::string_view text) { rows.back().emplace_back(text); }

    size_t rowCount() const { return rows.size(); }
    void print(Output& out, Format format);

  private:
    TablePrinter printer;
    std::vector<TableRow> rows;
};

/*
 * Results that are not records (findings, differences, statistics): rows of texts,
 * which the common options filter, sort and print in every format.
 */
class Rows
{
  public:
    /* A numeric column has JSON numbers, null for an empty text, and is right-aligned in tables. */
    void addColumn(const std::string& name, bool numeric = false) { columns.push_back({name, numeric, {}}); }

    /* A column that contains only these texts. */
    void addColumn(const std::string& name, std::vector<std::string> words)
    {
        columns.push_back({name, false, std::move(words)});
    }
    void addRow(std::vector<std::string> row) { rows.push_back(std::move(row)); }

    std::vector<std::string> columnNames() const;

    /* Applies --where, --sort, --head and --limit. */
    void narrow(const Options& options);

    const std::vector<std::vector<std::string>>& all() const { return rows; }
    void print(Output& out, const Options& options) const;

  private:
    friend class RowStream;
    friend class RowsFilter;
    struct Column {
        std::string name;
        bool numeric;
        std::vector<std::string> words; /* empty: any text */
    };
    size_t indexOf(const char* option, const std::string& name) const;
    std::vector<size_t> chosen(const Options& options) const;
    void require(const Options& options) const;
    std::vector<Column> columns;
    std::vector<std::vector<std::string>> rows;
};

/*
 * Applies --where and --head to the rows of one unit after the other, such as a file, and --sort and --limit
 * to all of them. Its statement is prepared once.
 */
class RowsFilter : private RowSource
{
  public:
    /* Uses only the columns of `of`. Throws Failure if --columns, --where or --sort does not apply to them.
     */
    RowsFilter(const Rows& of, const Options& options);

    /* Keeps the rows of the next unit that match. */
    void narrowUnit(Rows& rows);

    /* Whether the rows of a unit can be shown before the next one: there is no order over all. */
    bool showsUnits() const { return !sorts; }

    /* Sorts the rows of all units, and keeps the first ones. */
    void narrowAll(Rows& rows);

  private:
    void requireExpression(const Expression& expression);
    void narrow(Rows& rows, size_t most);

    void first() override { at = 0; }
    void next() override { ++at; }
    bool atEnd() const override { return given == nullptr || at == given->size(); }
    int64_t id() const override { return static_cast<int64_t>(at); }
    SqlValue value(size_t column) override;

    const std::vector<Rows::Column> columns;
    const size_t head;
    const bool sorts;
    size_t left;                              /* rows that --limit still allows */
    std::unique_ptr<Expressions> expressions; /* null without conditions and order */
    std::optional<Prepared> statement;
    const std::vector<std::vector<std::string>>* given = nullptr;
    size_t at = 0;
};

/* Prints rows one by one. A table is printed at the end, because its widths depend on all rows. */
class RowStream
{
  public:
    /* Uses only the columns of `rows`. */
    RowStream(Output& output, const Options& options, const Rows& rows);

    void put(const std::vector<std::string>& row);
    void finish();

  private:
    void putJson(const std::vector<std::string>& row);

    Output& out;
    const Format format;
    const std::vector<Rows::Column> columns;
    const std::vector<size_t> order;
    JsonObjects objects;
    CsvRows lines;
    Table table;
};

} // namespace algdata

#endif
