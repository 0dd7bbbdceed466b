/* SPDX-License-Identifier: Apache-2.0 */
/* Records on their way into a file of one kind. */
#ifndef ALGDATA_INCOMING_H
#define ALGDATA_INCOMING_H

#include <string>

#include "reading/records.h"
#include "view/loaded.h"

namespace algdata
{

/* Takes records one by one; writes nothing once one value was refused. */
class Incoming
{
  public:
    /* `round`: a float may be brought to the two decimals that a file has. */
    Incoming(const Kind& theKind, bool round) : of(theKind), rounding(round), image(emptyImage(theKind)) {}

    const Kind& kind() const { return of; }
    size_t count() const { return taken; }

    /* Its cells are the texts of the input, null where there is none. They are needed no longer than this. */
    void take(Record& record);

    /* About a field of the record that is taken next. The first few messages are enough to tell. */
    void refuse(const std::string& field, const std::string& why);

    /* About the input as a whole. */
    void refuse(const std::string& why);

    bool refused() const { return refusals != 0; }

    /* After the last record: whether all of them can be written. */
    bool allFit();

    /* The file, as the module writes it. */
    std::string text();

  private:
    void report(const std::string& refusal);

    const Kind& of;
    const bool rounding;
    size_t taken = 0;
    size_t refusals = 0;
    Image image;
    std::string expected; /* what the module has to write */
};

} // namespace algdata

#endif
