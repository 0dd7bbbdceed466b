/* SPDX-License-Identifier: Apache-2.0 */
/* The meaning of a field in words, for programs that have the C++ library. */
#ifndef FORMATS_MEANING_H
#define FORMATS_MEANING_H

#include <string>

#include "format.h"

namespace formats
{

/* The meaning of the field, with its named values: "spatial streams: 0 unknown, 1, 2". */
inline std::string meaningOf(const Field& field)
{
    std::string text = field.meaning;
    for (const NamedValue& named : field.values) {
        text += (&named == field.values.begin() ? ": " : ", ") + std::to_string(named.value);
        text += (named.text[0] == '\0' ? "" : " ") + std::string(named.text);
    }
    return text;
}

} // namespace formats

#endif
