/* SPDX-License-Identifier: Apache-2.0 */
/* Writes CSV as RFC 4180 defines it. All CSV output goes through here. */
#ifndef ALGDATA_CSV_H
#define ALGDATA_CSV_H

#include <string_view>

#include "output/output.h"

namespace algdata
{

class CsvRows
{
  public:
    explicit CsvRows(Output& output) : out(output) {}

    void cell(std::string_view text);

    /* Writes a text that needs no quotation marks. Faster, because the text is not searched. */
    void plainCell(std::string_view text)
    {
        if (!first)
            out.put(',');
        first = false;
        out.put(text);
    }
    void end();

  private:
    Output& out;
    bool first = true; /* the next cell is the first of its row */
};

} // namespace algdata

#endif
