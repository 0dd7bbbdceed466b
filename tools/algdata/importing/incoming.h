/* SPDX-License-Identifier: Apache-2.0 */
/* Collects records for a file of one kind, checks them and lets the module write the file. */
#ifndef ALGDATA_INCOMING_H
#define ALGDATA_INCOMING_H

#include <string>

#include "records/records.h"
#include "view/loaded.h"

namespace algdata
{

/* Receives records one by one. After a value was refused, no file is written. */
class Incoming
{
  public:
    /* `round` allows rounding floats to the two decimals of the file format. */
    Incoming(const Kind& theKind, bool round) : of(theKind), rounding(round), image(emptyImage(theKind)) {}

    const Kind& kind() const { return of; }
    size_t count() const { return added; }

    /*
     * Adds a record. Its cells are the texts of the input, with null data for a missing value. They
     * are not used after the return.
     */
    void add(Record& record);

    /* Refuses a field of the next record. Only the first refusals are printed. */
    void refuse(const std::string& field, const std::string& why);

    /* Refuses the input as a whole. */
    void refuse(const std::string& why);

    bool refused() const { return refusals != 0; }

    /* To be called after the last record. Returns whether the file can be written. */
    bool isWritable();

    /* The content of the file, written by the module. */
    std::string text();

  private:
    void report(const std::string& refusal);

    const Kind& of;
    const bool rounding;
    size_t added = 0;
    size_t refusals = 0;
    Image image;
    std::string expected; /* the content that the module should write */
};

} // namespace algdata

#endif
