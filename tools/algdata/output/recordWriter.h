/* SPDX-License-Identifier: Apache-2.0 */
/* Records as JSON, NDJSON and CSV. */
#ifndef ALGDATA_RECORD_WRITER_H
#define ALGDATA_RECORD_WRITER_H

#include <string>

#include "output/output.h"
#include "query/query.h"
#include "reading/records.h"

namespace algdata
{

/* With its quotation marks; bytes that are not UTF-8 become the characters of the same number. */
std::string jsonText(std::string_view text);

/* Quoted where RFC 4180 asks for it. */
std::string csvText(std::string_view text);

/* A field's value: a number, a text for what is none, null for what is not there. */
void putJsonValue(Output& out, Type type, Token value);

/*
 * Writes a stream of records, each with its kind and source before its fields.
 * What a record of one kind looks like is worked out once per kind, as literal
 * texts between the values.
 */
class RecordWriter
{
  public:
    RecordWriter(Output& output, const Options& commonOptions);

    void startFile(const Source& source);
    void put(const Record& record);
    void finish();

    /* Whether everything so far was what its field expects. */
    bool allSound() const { return sound; }

  private:
    struct Piece {
        std::string before; /* the text that leads to the value */
        size_t column;
        Type type;
    };
    struct Plan {
        std::vector<Piece> pieces;
        std::string after;
    };
    static Plan jsonPlan(const std::vector<Pick>& picks, const Layout& layout, const char* opening);
    void putPlan(const Plan& plan, const std::vector<Token>& cells);
    void putValue(Type type, Token value);
    void putJson(const Record& record);
    void startCsv();
    void putCsv(const Record& record);
    void putCsvCells(const std::vector<Pick>& picks, const std::vector<Token>* cells);

    Output& out;
    const Options& options;
    const Kind* kind = nullptr;
    Selection selection;
    Plan head;
    Plan entry;
    std::string opening; /* of each record of this file: its kind and source */
    bool any = false;
    bool sound = true;
};

} // namespace algdata

#endif
