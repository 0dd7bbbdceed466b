/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Format strings, read by the compiler.
 *
 *     FORMAT("%12s %hhu ")
 *
 * A format is written as for fscanf() and fprintf(). The compiler parses it,
 * checks it against the types of the fields, and replaces it by a table of three
 * bytes per field. These conversions are known:
 *
 *     format    field          scanned                     printed
 *     %Ns       char[16]       at most N < 16 characters   at least N columns
 *     %hhu      uint8_t        a number, cut to 8 bits     decimal
 *     %hu       uint16_t       a number, cut to 16 bits    decimal
 *     %u        uint32_t       a number, cut to 32 bits    decimal
 *     %d        int, uint32_t  a number, cut to 32 bits    decimal, signed
 *     %f        float          what strtof() reads         (%.2f) two decimals
 *     blank     -              any white space, or none    the same blank
 *
 * N before h or u is the maximum number of characters scanned, sign included, and
 * the minimum number of columns printed. An enumeration counts as its underlying
 * type.
 */
#ifndef ALG_DATA_INTERFACE_FORMAT_H
#define ALG_DATA_INTERFACE_FORMAT_H

#include <stddef.h>
#include <stdint.h>

#include "../../capacities.h"

namespace [[gnu::visibility("hidden")]] alg_internal
{

enum FieldKind : uint8_t {
    FIELD_END,
    FIELD_BLANK, /* a blank without a field before it */
    FIELD_TEXT,
    FIELD_FLOAT,
    FIELD_INT32,
    FIELD_UINT8, /* this and all that follow are unsigned numbers */
    FIELD_UINT16,
    FIELD_UINT32
};

struct Field {
    uint8_t kind;
    uint8_t width; /* 0 for none */
    char blank;    /* the blank after the field, 0 for none */
};

constexpr size_t TEXT_SIZE = ALG_MAC_SIZE; /* bytes of a text field */
constexpr size_t MAX_FLOAT = 44;           /* characters of a printed float */
constexpr size_t MAX_PRINT = 384;          /* characters of one print */

/* ---- Parsing ------------------------------------------------------------ */

/*
 * Parses the conversion at `format`, after its '%', and moves `format` to its end.
 * The kind is FIELD_END for a conversion that the table above does not list. A
 * width is between 1 and 99; only texts and unsigned numbers have one.
 */
constexpr Field parseConversion(const char*& format)
{
    Field field = {FIELD_END, 0, 0};
    const char* const width = format;
    for (; *format >= '0' && *format <= '9'; ++format)
        field.width = static_cast<uint8_t>(field.width * 10 + (*format - '0'));
    if (*width == '0' || format - width > 2)
        return field;
    if (format[0] == '.' && format[1] == '2' && format[2] == 'f')
        format += 2;
    int hs = 0;
    for (; *format == 'h'; ++format)
        ++hs;
    switch (*format++) {
    case 's':
        field.kind = FIELD_TEXT;
        break;
    case 'u':
        field.kind = hs == 2 ? FIELD_UINT8 : hs == 1 ? FIELD_UINT16 : FIELD_UINT32;
        break;
    case 'd':
        field.kind = FIELD_INT32;
        break;
    case 'f':
        field.kind = FIELD_FLOAT;
        break;
    default:
        break;
    }
    if (field.width != 0 && (field.kind == FIELD_INT32 || field.kind == FIELD_FLOAT))
        field.kind = FIELD_END;
    return field;
}

/* Parses one field of a format and the blank after it, and moves `format` to their end. */
constexpr Field parseField(const char*& format)
{
    Field field = {FIELD_BLANK, 0, 0};
    if (*format == '%')
        field = parseConversion(++format);
    if (*format == ' ' || *format == '\n')
        field.blank = *format++;
    else if (field.kind == FIELD_BLANK)
        field.kind = FIELD_END; /* neither a field nor a blank */
    return field;
}

constexpr size_t fieldsIn(const char* format)
{
    size_t count = 0;
    while (*format != '\0' && parseField(format).kind != FIELD_END)
        ++count;
    return count;
}

/* ---- Checks ------------------------------------------------------------- */

/* Whether the format's fields are exactly of these kinds, in this order. */
constexpr bool isFormatOf(const char* format, const uint8_t* kinds, size_t count)
{
    size_t index = 0;
    while (*format != '\0') {
        const Field field = parseField(format);
        if (field.kind == FIELD_BLANK)
            continue;
        if (field.kind == FIELD_END || index == count)
            return false;
        if (field.kind != kinds[index] && !(field.kind == FIELD_INT32 && kinds[index] == FIELD_UINT32))
            return false;
        ++index;
    }
    return index == count;
}

/* Whether the format is ' ' and one number of this kind, of 8 or 16 bits. */
constexpr bool isArrayFormat(const char* format, uint8_t kind)
{
    size_t length = 0;
    while (format[length] != '\0')
        ++length;
    return isFormatOf(format, &kind, 1) && (kind == FIELD_UINT8 || kind == FIELD_UINT16) &&
           format[0] == ' ' && format[length - 1] == 'u';
}

/* Whether every text has a width that fits its field. */
constexpr bool textsFit(const char* format)
{
    while (*format != '\0') {
        const Field field = parseField(format);
        if (field.kind == FIELD_TEXT && (field.width == 0 || field.width >= TEXT_SIZE))
            return false;
        if (field.kind == FIELD_END)
            break;
    }
    return true;
}

/* Whether every float is a "%.2f" (if `decimals`) or a "%f" (otherwise). */
constexpr bool floatsHaveDecimals(const char* format, bool decimals)
{
    for (size_t at = 0; format[at] != '\0'; ++at) {
        if (format[at] == 'f' && (format[at - 1] == '2') != decimals)
            return false;
    }
    return true;
}

/* The maximum number of characters that the format prints. */
constexpr size_t maxPrinted(const char* format)
{
    size_t max = 0;
    while (*format != '\0') {
        const Field field = parseField(format);
        max += field.kind == FIELD_FLOAT ? MAX_FLOAT : TEXT_SIZE;
        max += field.width + 1U;
    }
    return max;
}

/* ---- Tables ------------------------------------------------------------- */

/* Field `index` of a format as one number, because a structure cannot be a template argument. */
constexpr uint32_t packedField(const char* format, size_t index)
{
    Field field = parseField(format);
    for (; index > 0; --index)
        field = parseField(format);
    return static_cast<uint32_t>(field.kind << 16 | field.width << 8 | field.blank);
}

/* The table of a format's fields. Equal formats share one table. */
template <uint32_t... packed> struct Table {
    static constexpr Field fields[] = {Field{static_cast<uint8_t>(packed >> 16),
                                             static_cast<uint8_t>(packed >> 8 & 0xff),
                                             static_cast<char>(packed & 0xff)}...,
                                       Field{FIELD_END, 0, 0}};
};

template <typename Format, size_t left, uint32_t... packed>
struct TableOf : TableOf<Format, left - 1, packedField(Format::text(), left - 1), packed...> {
};
template <typename Format, uint32_t... packed> struct TableOf<Format, 0, packed...> : Table<packed...> {
};

template <typename Format> constexpr const Field* fieldsOf(Format /* format */)
{
    return TableOf<Format, fieldsIn(Format::text())>::fields;
}

/* The field kind of a type. For an enumeration it is that of the underlying type. */
template <typename T, bool isEnumeration = __is_enum(T)> struct KindOf;
template <typename T> struct KindOf<T, true> : KindOf<__underlying_type(T)> {
};
template <> struct KindOf<char[TEXT_SIZE]> {
    static constexpr uint8_t value = FIELD_TEXT;
};
template <> struct KindOf<uint8_t> {
    static constexpr uint8_t value = FIELD_UINT8;
};
template <> struct KindOf<uint16_t> {
    static constexpr uint8_t value = FIELD_UINT16;
};
template <> struct KindOf<uint32_t> {
    static constexpr uint8_t value = FIELD_UINT32;
};
template <> struct KindOf<int> {
    static constexpr uint8_t value = FIELD_INT32;
};
template <> struct KindOf<float> {
    static constexpr uint8_t value = FIELD_FLOAT;
};

/* ---- Literals ----------------------------------------------------------- */

/* Makes a type of a format literal, because a string literal cannot be a template argument. */
#define FORMAT(literal)                                             \
    [] {                                                            \
        struct Format {                                             \
            static constexpr const char* text() { return literal; } \
        };                                                          \
        return Format{};                                            \
    }()

/* The same for fields that are scanned with one format and printed with another. */
#define FORMATS(scanned, printed) alg_internal::pairOf(FORMAT(scanned), FORMAT(printed))

template <typename Scanned, typename Printed> struct FormatPair {
};

template <typename Scanned, typename Printed>
constexpr FormatPair<Scanned, Printed> pairOf(Scanned /* scanned */, Printed /* printed */)
{
    return {};
}

template <typename Format> constexpr Format scannedFormat(Format /* both */)
{
    return {};
}

template <typename Scanned, typename Printed>
constexpr Scanned scannedFormat(FormatPair<Scanned, Printed> /* pair */)
{
    return {};
}

template <typename Format> constexpr Format printedFormat(Format /* both */)
{
    return {};
}

template <typename Scanned, typename Printed>
constexpr Printed printedFormat(FormatPair<Scanned, Printed> /* pair */)
{
    return {};
}

} // namespace alg_internal

#endif
