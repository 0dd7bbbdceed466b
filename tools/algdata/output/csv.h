/* SPDX-License-Identifier: Apache-2.0 */
/* The one place that writes CSV, as RFC 4180 has it. */
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

    /* A text that is known to need no quotation marks. */
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
    bool first = true; /* in its row */
};

} // namespace algdata

#endif
