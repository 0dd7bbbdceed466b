/* SPDX-License-Identifier: Apache-2.0 */
/* Between the records' MAC text fields and strings. */
#ifndef MESH_ROUND_TEXT_H
#define MESH_ROUND_TEXT_H

#include <cstddef>
#include <cstring>
#include <string>

/* The father of the FAP, and the device of a decision that moves nothing. */
inline constexpr const char* noMac = "000000000000";

inline void putText(char (&field)[16], const std::string& text)
{
    std::memset(field, 0, sizeof field);
    std::memcpy(field, text.data(), text.size() < sizeof field ? text.size() : sizeof field - 1);
}

inline bool same(const char (&field)[16], const std::string& text)
{
    return text == field;
}

#endif
