/* SPDX-License-Identifier: Apache-2.0 */
/* Prints the rows of a query, one by one, in every format. */
#ifndef ALGDATA_SQL_RESULTS_H
#define ALGDATA_SQL_RESULTS_H

#include <string>
#include <vector>

#include "output/csv.h"
#include "output/json.h"
#include "output/output.h"

struct sqlite3_stmt;

namespace algdata
{

/* A null is printed as "-" for people, as null in JSON and as an empty cell in CSV. */
class Results
{
  public:
    Results(Output& output, Format asked, std::vector<std::string> columnNames);

    /* Prints the row that a statement is at. */
    void put(sqlite3_stmt* row);

    /* To be called after the last row. */
    void finish();

    size_t rowCount() const { return count; }

  private:
    struct Cell {
        std::string text;
        bool number;
    };
    static constexpr size_t rowsForWidths = 1000;              /* a table's widths follow from so many rows */
    static constexpr size_t bytesForWidths = size_t(16) << 20; /* or from fewer, if they are so large */

    void putJson(sqlite3_stmt* row);
    void putCsv(sqlite3_stmt* row);
    void putRecord(sqlite3_stmt* row);
    void putLater(sqlite3_stmt* row);
    void startTable();
    void printRow(const std::vector<Cell>& cells);
    void printLine(const std::vector<Cell>& cells);

    Output& out;
    const Format format;
    const std::vector<std::string> columns;
    std::vector<std::string> jsonNames; /* with the comma before and the colon after them */
    JsonObjects objects;
    CsvRows lines;
    size_t count = 0;
    size_t nameWidth = 0;
    bool started = false; /* the heading of the table is printed */
    std::vector<std::vector<Cell>> kept;
    size_t keptBytes = 0;
    std::vector<size_t> widths;
    std::vector<bool> numeric;
};

} // namespace algdata

#endif
