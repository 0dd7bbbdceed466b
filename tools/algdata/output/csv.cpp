/* SPDX-License-Identifier: Apache-2.0 */
#include "output/csv.h"

namespace algdata
{

void CsvRows::cell(std::string_view text)
{
    if (text.find_first_of("\",\r\n") == std::string_view::npos) {
        plainCell(text);
        return;
    }
    plainCell("\"");
    for (const char c : text) {
        if (c == '"')
            out.put('"');
        out.put(c);
    }
    out.put('"');
}

void CsvRows::end()
{
    out.put("\r\n");
    first = true;
}

} // namespace algdata
