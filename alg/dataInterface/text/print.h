/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Prints fields by a format, as fprintf() does.
 *
 *     print(out, FORMAT("%12s %hhu "), node.deviceMAC, node.apRank)
 *
 * A text is read no further than its array. Numbers have the C locale's form, in
 * every locale of the host.
 */
#ifndef ALG_DATA_INTERFACE_PRINT_H
#define ALG_DATA_INTERFACE_PRINT_H

#include "format.h"
#include "output.h"

namespace [[gnu::visibility("hidden")]] alg_internal
{

union Value {
    uint32_t number; /* a signed one as its 32 bits */
    const char* text;
    float real;
};

inline Value valueOf(uint32_t number)
{
    Value value;
    value.number = number;
    return value;
}

inline Value valueOf(int number)
{
    return valueOf(static_cast<uint32_t>(number));
}

inline Value valueOf(uint16_t number)
{
    return valueOf(static_cast<uint32_t>(number));
}

inline Value valueOf(uint8_t number)
{
    return valueOf(static_cast<uint32_t>(number));
}

inline Value valueOf(const char* text)
{
    Value value;
    value.text = text;
    return value;
}

inline Value valueOf(float real)
{
    Value value;
    value.real = real;
    return value;
}

/* Prints the fields of a table with these values, one for every field that is not a blank. */
int printFields(TextOut& out, const Field* field, const Value* value);

/*
 * Prints numbers, each by ' ' and the field, from number `at` of `count`, as printFields()
 * would one by one. Returns the place of the first number that fails, or `count`.
 */
int printNumbers(TextOut& out, const Field* field, const void* numbers, int at, int count);

/* Prints a format's fields. Returns 0, or -1 if the stream fails. */
template <typename Format, typename... Fields> int print(TextOut& out, Format format, const Fields&... fields)
{
    constexpr uint8_t kinds[] = {KindOf<Fields>::value..., FIELD_END};
    static_assert(isFormatOf(Format::text(), kinds, sizeof...(Fields)),
                  "the fields are not those of the format");
    static_assert(textsFit(Format::text()), "a text is read past its field");
    static_assert(floatsHaveDecimals(Format::text(), true), "a float is printed as %.2f");
    static_assert(maxPrinted(Format::text()) <= MAX_PRINT, "the format prints too much at once");
    if constexpr (sizeof...(Fields) == 0) {
        return printFields(out, fieldsOf(format), nullptr);
    } else {
        const Value values[] = {valueOf(fields)...};
        return printFields(out, fieldsOf(format), values);
    }
}

} // namespace alg_internal

#endif
