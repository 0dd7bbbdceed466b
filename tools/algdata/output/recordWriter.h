/* SPDX-License-Identifier: Apache-2.0 */
/* Records as JSON, NDJSON and CSV. */
#ifndef ALGDATA_RECORD_WRITER_H
#define ALGDATA_RECORD_WRITER_H

#include <string>

#include "output/csv.h"
#include "output/json.h"
#include "output/output.h"
#include "query/query.h"
#include "reading/records.h"

namespace algdata
{

/*
 * Writes a stream of records, each with its kind and source before its fields.
 * What a record of one kind looks like is worked out once per kind, as literal
 * texts between the values. A value that is not what its field expects is null,
 * or an empty cell.
 */
class RecordWriter
{
  public:
    RecordWriter(Output& output, const Options& commonOptions);

    /* The source lives until endFile. Throws OutputFailure for a second kind in a CSV, which is one table. */
    void startFile(const Source& from);
    void put(const Record& record);

    /* Reports what was damaged in the file: Findings then. */
    Status endFile();

    /* After the last file. */
    void finish();

  private:
    struct Piece {
        std::string before; /* the text that leads to the value */
        size_t column;
        Type type;
    };
    struct Plan {
        const Layout* layout = nullptr;
        std::vector<Piece> pieces;
        std::string after;
    };
    struct Damage {
        size_t values = 0;
        std::string first; /* where, which value, what was expected */
        size_t lines = 0;  /* with a wrong number of fields */
    };
    static Plan jsonPlan(const std::vector<Pick>& picks, const Layout& layout, const char* opening);
    void putPlan(const Plan& plan, const std::vector<Token>& cells);
    void putJson(const Record& record);
    void startCsv();
    void putCsv(const Record& record);
    void putCsvCells(const std::vector<Pick>& picks, const Layout& layout, const std::vector<Token>* cells,
                     bool again);
    void noteDamage(const Layout& layout, size_t column, Token value);

    Output& out;
    const Options& options;
    JsonObjects objects;
    CsvRows rows;
    const Kind* kind = nullptr;
    const Source* source = nullptr;
    Selection selection;
    Plan head;
    Plan entry;
    std::string opening; /* of each JSON object of this file: its kind and source */
    std::string made;    /* a value in another form than the file's */
    Damage damage;       /* in this file */
};

/* "3 lines with a wrong number of fields" as a message. */
void reportOddLines(const std::string& source, size_t lines);

} // namespace algdata

#endif
