/* SPDX-License-Identifier: Apache-2.0 */
/* Reads and sets the values of the module's records by the description of their fields. */
#ifndef FORMATS_ACCESS_H
#define FORMATS_ACCESS_H

#include <string.h>

#include "format.h"

namespace formats
{

/* The address of an element of a field. `base` is the record or the entry. */
inline char* addressOf(const Field& field, void* base, int element)
{
    return static_cast<char*>(base) + field.offset + field.stride * static_cast<size_t>(element);
}
inline const char* addressOf(const Field& field, const void* base, int element)
{
    return static_cast<const char*>(base) + field.offset + field.stride * static_cast<size_t>(element);
}

/* The value of a field of any integer type. */
inline uint32_t number(const Field& field, const void* base, int element)
{
    const char* from = addressOf(field, base, element);
    uint8_t small;
    uint16_t medium;
    uint32_t large;
    switch (typeSize(field.type)) {
    case sizeof small:
        memcpy(&small, from, sizeof small);
        return small;
    case sizeof medium:
        memcpy(&medium, from, sizeof medium);
        return medium;
    default:
        memcpy(&large, from, sizeof large);
        return large;
    }
}

/* Stores as many low bits of the value as the field's type has. */
inline void setNumber(const Field& field, void* base, int element, uint32_t value)
{
    char* to = addressOf(field, base, element);
    const uint8_t small = static_cast<uint8_t>(value);
    const uint16_t medium = static_cast<uint16_t>(value);
    switch (typeSize(field.type)) {
    case sizeof small:
        memcpy(to, &small, sizeof small);
        break;
    case sizeof medium:
        memcpy(to, &medium, sizeof medium);
        break;
    default:
        memcpy(to, &value, sizeof value);
        break;
    }
}

inline float real(const Field& field, const void* base, int element)
{
    float value;
    memcpy(&value, addressOf(field, base, element), sizeof value);
    return value;
}

inline void setReal(const Field& field, void* base, int element, float value)
{
    memcpy(addressOf(field, base, element), &value, sizeof value);
}

/* ---- Entries ------------------------------------------------------------ */

inline char* entryAt(const Kind& kind, void* record, size_t i)
{
    return static_cast<char*>(record) + kind.entries.offset + kind.entries.size * i;
}
inline const char* entryAt(const Kind& kind, const void* record, size_t i)
{
    return static_cast<const char*>(record) + kind.entries.offset + kind.entries.size * i;
}

/* The field that contains the number of a record's entries. Only for a kind that has entries. */
constexpr const Field& countField(const Kind& kind)
{
    const Field* field = kind.record.fields.begin();
    while (!sameText(field->name, kind.entries.countName))
        ++field;
    return *field;
}

/* The number of entries that the record states, at most the capacity of its array. */
inline size_t entryCount(const Kind& kind, const void* record)
{
    if (!kind.hasEntries())
        return 0;
    const uint32_t stated = number(countField(kind), record, 0);
    return stated < kind.entries.capacity ? stated : kind.entries.capacity;
}

/*
 * Calls `visit(field, base, element)` for every value of a record and of its
 * first `entries` entries, in the order of the text. `base` is the offset of the
 * entry in the record, or 0 for the record's own values.
 */
template <typename Visit> void eachValue(const Kind& kind, size_t entries, Visit&& visit)
{
    eachField(kind.record, [&visit](const Field& field, int element) { visit(field, size_t(0), element); });
    for (size_t i = 0; i < entries; ++i) {
        const size_t base = kind.entries.offset + kind.entries.size * i;
        eachField(kind.entries.layout,
                  [&visit, base](const Field& field, int element) { visit(field, base, element); });
    }
}

} // namespace formats

#endif
