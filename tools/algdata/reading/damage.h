/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALGDATA_DAMAGE_H
#define ALGDATA_DAMAGE_H

#include <string>
#include <vector>

#include "options/options.h"
#include "reading/source.h"
#include "records/records.h"

namespace algdata
{

/* The damage in a file, which is counted while its records are printed. */
class Damage
{
  public:
    /* The source must live as long. A loaded value is not in the file's bytes, so it has no line. */
    Damage(const Source& from, bool isLoaded) : source(&from), loaded(isLoaded) {}

    void addLines(size_t wrongLines) { lines += wrongLines; }
    void addValue(const Column& column, Token value);

    /* One text per sort of damage. `shownAs` is how the damaged values are printed. */
    std::vector<std::string> texts(const char* shownAs) const;

    /* Prints the texts as messages. Returns Findings if there is damage. */
    Status report(const char* shownAs) const;

  private:
    const Source* source;
    bool loaded;
    size_t lines = 0; /* with a wrong number of fields */
    size_t values = 0;
    std::string first; /* where, which value, what was expected */
};

/* "FILE: 3 lines with a wrong number of fields", and what shows where. */
std::string wrongLinesText(const std::string& source, size_t lines);

/* Reports what is missing in the figures of all files. Returns Findings if there is any damage. */
Status reportDamage(size_t values, size_t wrongLines);

} // namespace algdata

#endif
