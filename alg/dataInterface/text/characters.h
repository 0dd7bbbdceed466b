/* SPDX-License-Identifier: Apache-2.0 */
/* Classes of characters, as in the C locale. */
#ifndef ALG_DATA_INTERFACE_CHARACTERS_H
#define ALG_DATA_INTERFACE_CHARACTERS_H

#include <stdint.h>
#include <string.h>

namespace [[gnu::visibility("hidden")]] alg_internal
{

[[gnu::always_inline]] inline bool isSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

inline bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/* The lower case of a letter. The result for any other character is not a letter. */
inline char toLower(char c)
{
    return static_cast<char>(c | 0x20);
}

/* Whether all four bytes are between 0x21 ('!') and 0x7f: no white space, no NUL, no byte above ASCII. */
[[gnu::always_inline]] inline bool areFourPrintable(const char* at)
{
    uint32_t word = 0;
    memcpy(&word, at, sizeof word);
    /* The subtraction sets the high bit of a byte below '!'; a byte above 0x7f has it already. */
    return (((word - 0x21212121) | word) & 0x80808080) == 0;
}

} // namespace alg_internal

#endif
