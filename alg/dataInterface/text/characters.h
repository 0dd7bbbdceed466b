/* SPDX-License-Identifier: Apache-2.0 */
/* Classes of characters, as in the C locale. */
#ifndef ALG_DATA_INTERFACE_CHARACTERS_H
#define ALG_DATA_INTERFACE_CHARACTERS_H

#include <stdint.h>
#include <string.h>

namespace [[gnu::visibility("hidden")]] alg_internal
{

[[gnu::always_inline]] inline bool isBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

inline bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

inline char toLower(char letter)
{
    return static_cast<char>(letter | 0x20);
}

/* Whether four characters are ASCII from '!' on: neither blanks nor control characters, except DEL. */
[[gnu::always_inline]] inline bool areFourPrintable(const char* at)
{
    uint32_t word = 0;
    memcpy(&word, at, sizeof word);
    /* The subtraction sets the high bit of a byte below '!'; a byte past 127 has it already. */
    return (((word - 0x21212121) | word) & 0x80808080) == 0;
}

} // namespace alg_internal

#endif
