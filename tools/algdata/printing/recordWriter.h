/* SPDX-License-Identifier: Apache-2.0 */
/* Writes records as JSON, NDJSON and CSV. */
#ifndef ALGDATA_RECORD_WRITER_H
#define ALGDATA_RECORD_WRITER_H

#include <optional>
#include <string>

#include "output/csv.h"
#include "output/json.h"
#include "output/output.h"
#include "query/fields.h"
#include "reading/damage.h"
#include "records/records.h"

namespace algdata
{

/*
 * Writes a stream of records, each with its kind and source before its fields.
 * The text between the values is the same for all records of a kind, so it is
 * prepared once per kind. A damaged value becomes null, in CSV an empty cell.
 */
class RecordWriter
{
  public:
    RecordWriter(Output& output, const Options& commonOptions);

    /*
     * A file of this kind is part of the result, even if none of its records is. A CSV file without
     * records has the header of the kind, unless there are several.
     */
    void expect(const Kind& ofFile);

    /* The source must live until endFile(). Throws OutputFailure for a second kind in a CSV file. */
    void startFile(const Source& from);
    void put(const Record& record);

    /* Reports the damage in the file. Returns Findings if there is any. */
    Status endFile();

    /* To be called after the last file. */
    void finish();

  private:
    struct Piece {
        std::string before; /* the text before the value */
        size_t column;
        const Field* field;
    };
    struct Plan {
        const Layout* layout = nullptr;
        std::vector<Piece> pieces;
        std::string after;
    };
    static Plan jsonPlan(const std::vector<Pick>& picks, const Layout& layout, const char* opening);
    void putPlan(const Plan& plan, const std::vector<Token>& cells);
    void putJson(const Record& record);
    void startKind(const Kind& of);
    void startCsv();
    void putCsv(const Record& record);
    void putCsvCells(const std::vector<Pick>& picks, const Layout& layout, const std::vector<Token>* cells,
                     bool again);

    Output& out;
    const Options& options;
    JsonObjects objects;
    CsvRows rows;
    const Kind* kind = nullptr;
    const Kind* expected = nullptr; /* the only kind of the files; null if there are several */
    bool expects = false;           /* expect() was called */
    const Source* source = nullptr;
    Selection selection;
    Plan head;
    Plan entry;
    std::string opening;          /* kind and source, which begin each JSON object of this file */
    std::string buffer;           /* for a value whose text differs from the file's */
    std::optional<Damage> damage; /* in this file */
};

} // namespace algdata

#endif
