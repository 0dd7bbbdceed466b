/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Reads fields by a format, as fscanf() does.
 *
 *     scan(in, FORMAT("%12s %hhu "), node.deviceMAC, node.apRank)
 *
 * White space before a field is skipped. A number is an optional sign and digits;
 * a number that needs more than 64 bits counts as the largest 64-bit number, and
 * the field keeps the low bits (with %d too, where fscanf() saturates at 63 bits).
 * A character that does not match ends the call and is the first one of the next
 * call. A sign, or the beginning of a float, before it is consumed; in "nan" and
 * "infinity" a wrong letter is consumed too. Numbers have the C locale's form, in
 * every locale of the host.
 */
#ifndef ALG_DATA_INTERFACE_SCAN_H
#define ALG_DATA_INTERFACE_SCAN_H

#include "format.h"
#include "input.h"

namespace [[gnu::visibility("hidden")]] alg_internal
{

/* Reads the fields of a table into the targets, one for every field that is not a blank. */
int scanFields(TextIn& in, const Field* field, void* const* target);

/*
 * Reads numbers of 8 or 16 bits by a table of one field, from number `at` of `count`, as
 * scanFields() would one by one. Returns the place of the first number before which the
 * text ends, or `count`.
 */
int scanNumbers(TextIn& in, const Field* field, void* numbers, int at, int count);

/*
 * Reads a format's fields. Returns the number of fields converted, or -1 if the
 * text ends (or a read fails) before the first one. Fields that are not converted
 * are unchanged.
 */
template <typename Format, typename... Fields> int scan(TextIn& in, Format format, Fields&... fields)
{
    constexpr uint8_t kinds[] = {KindOf<Fields>::value...};
    static_assert(isFormatOf(Format::text(), kinds, sizeof...(Fields)),
                  "the fields are not those of the format");
    static_assert(textsFit(Format::text()), "a text is read past its field");
    static_assert(floatsHaveDecimals(Format::text(), false), "a float is read as %f");
    void* const targets[] = {&fields...};
    /* A blank before the first field changes nothing: white space there is skipped anyway. */
    constexpr bool blankFirst = packedField(Format::text(), 0) >> 16 == FIELD_BLANK;
    return scanFields(in, fieldsOf(format) + blankFirst, targets);
}

} // namespace alg_internal

#endif
