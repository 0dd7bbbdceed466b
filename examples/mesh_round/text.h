/* SPDX-License-Identifier: Apache-2.0 */
/* Copies and compares the MAC text fields of records and strings. */
#ifndef MESH_ROUND_TEXT_H
#define MESH_ROUND_TEXT_H

#include <cstddef>
#include <cstring>
#include <string>

#include "capacities.h"

/* No device: the father of the FAP, and both devices of a decision to move nothing. */
inline constexpr const char* noMac = "000000000000";

inline void putText(char (&field)[ALG_MAC_SIZE], const std::string& text)
{
    std::memset(field, 0, sizeof field);
    std::memcpy(field, text.data(), text.size() < sizeof field ? text.size() : sizeof field - 1);
}

inline bool same(const char (&field)[ALG_MAC_SIZE], const std::string& text)
{
    return text == field;
}

#endif
