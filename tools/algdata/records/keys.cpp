/* SPDX-License-Identifier: Apache-2.0 */
#include "records/keys.h"

#include "text/wording.h"

namespace algdata
{

namespace
{

Token valueOrDash(Token value)
{
    return present(value) ? value : Token("-");
}

} // namespace

const Layout& keyLayout(const Kind& kind)
{
    return kind.head.key.empty() ? kind.entry : kind.head;
}

std::string keyNames(const Layout& layout, const char* separator)
{
    std::string names;
    for (const size_t column : layout.key)
        names += (names.empty() ? "" : separator) + layout.columns[column].name;
    return names;
}

std::string keyValues(const Layout& layout, const std::vector<Token>& cells)
{
    std::string values;
    for (const size_t column : layout.key)
        (values += values.empty() ? "" : " ") += valueOrDash(cells[column]);
    return values;
}

std::string keyText(const Layout& layout, const std::vector<Token>& cells)
{
    std::string text;
    for (const size_t column : layout.key)
        text += (text.empty() ? "" : " ") + layout.columns[column].name + " " +
                printable(valueOrDash(cells[column]));
    return text;
}

} // namespace algdata
