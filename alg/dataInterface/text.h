/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The text of record files, in both directions: fields by a format string, on
 * a stream of the C library.
 *
 *     scan(in, FORMAT("%12s %hhu "), node->deviceMAC, node->apRank)
 *     print(out, FORMAT("%12s %hhu "), node->deviceMAC, node->apRank)
 *
 * The formats are those of fscanf and fprintf, and so is what they do; but the
 * compiler reads them. It holds them against the types of the fields, and what
 * is left for the run is a table of three bytes per field.
 *
 *     format    field          read                        printed
 *     %Ns       char[16]       up to N < 16 characters     at least N columns
 *     %hhu      uint8_t        a number, to 8 bits         decimal
 *     %hu       uint16_t       a number, to 16 bits        decimal
 *     %u        uint32_t       a number, to 32 bits        decimal
 *     %d        int            a number, to 32 bits        decimal, signed
 *     %f        float          what strtof() takes         (%.2f) two decimals
 *     blank     -              white space, if any         itself
 *
 * N before h or u is the most digits read, sign included, and the least columns
 * printed.
 *
 * Reading. White space before a field is skipped. A number is an optional sign
 * and digits; what passes 64 bits counts as the largest 64-bit number, and the
 * field keeps the low bits (of %d too, where fscanf() saturates at 63). A
 * character that does not fit ends the call and stays for the next one; a sign
 * before it is gone, and what began a float. The result is the number of
 * fields converted, or -1 when the end (or a read error) comes before the first.
 * Fields that were not converted are not touched.
 *
 * Printing. A text is read no further than its array. The result is -1 when the
 * stream could not take it, else 0.
 *
 * Numbers have the C locale's form whatever the host has set.
 */
#ifndef ALG_DATA_INTERFACE_TEXT_H
#define ALG_DATA_INTERFACE_TEXT_H

#include <stddef.h>
#include <stdint.h>
#include <stdio.h>

#include "algDataInterfaceStruct.h"
#include "capacities.h"

#pragma GCC visibility push(hidden)

/* ---- Formats, resolved by the compiler ---------------------------------- */

enum FieldKind : uint8_t {
    FIELD_END,
    FIELD_BLANK, /* no field, but the blank behind it */
    FIELD_TEXT,
    FIELD_FLOAT,
    FIELD_INT32,
    FIELD_UINT8, /* plain numbers from here on */
    FIELD_UINT16,
    FIELD_UINT32
};

struct Field {
    uint8_t kind;
    uint8_t width; /* 0 for none */
    char blank;    /* the blank that follows, 0 for none */
};

/* The longest print, the longest text and the longest float. */
constexpr size_t PRINT_MOST = 384;
constexpr size_t TEXT_MOST = ALG_MAC_SIZE;
constexpr size_t FLOAT_MOST = 44;

/*
 * Reads a conversion behind its '%' and moves on; FIELD_END for one that is not
 * known here: nothing but the table above, numbers and texts with a width from 1
 * to 99 or none.
 */
constexpr Field takeConversion(const char*& format)
{
    Field field = {FIELD_END, 0, 0};
    const char* const width = format;
    for (; *format >= '0' && *format <= '9'; ++format)
        field.width = static_cast<uint8_t>(field.width * 10 + (*format - '0'));
    if (*width == '0' || format - width > 2)
        return field;
    if (format[0] == '.' && format[1] == '2' && format[2] == 'f')
        format += 2;
    int halves = 0;
    for (; *format == 'h'; ++format)
        ++halves;
    switch (*format++) {
    case 's':
        field.kind = FIELD_TEXT;
        break;
    case 'u':
        field.kind = halves == 2 ? FIELD_UINT8 : halves == 1 ? FIELD_UINT16 : FIELD_UINT32;
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

/* Reads one field of a format and the blank behind it, and moves on. */
constexpr Field takeField(const char*& format)
{
    Field field = {FIELD_BLANK, 0, 0};
    if (*format == '%')
        field = takeConversion(++format);
    if (*format == ' ' || *format == '\n')
        field.blank = *format++;
    else if (field.kind == FIELD_BLANK)
        field.kind = FIELD_END; /* neither a field nor a blank */
    return field;
}

constexpr size_t countFields(const char* format)
{
    size_t count = 0;
    while (*format != '\0' && takeField(format).kind != FIELD_END)
        ++count;
    return count;
}

/* The most characters that a print of the format gives. */
constexpr size_t mostPrinted(const char* format)
{
    size_t most = 0;
    while (*format != '\0') {
        const Field field = takeField(format);
        most += field.kind == FIELD_FLOAT ? FLOAT_MOST : TEXT_MOST;
        most += field.width + 1U;
    }
    return most;
}

/* Whether the format's fields are exactly of these kinds, in this order. */
constexpr bool isFormatOf(const char* format, const uint8_t* kinds, size_t count)
{
    size_t at = 0;
    while (*format != '\0') {
        const Field field = takeField(format);
        if (field.kind == FIELD_BLANK)
            continue;
        if (field.kind == FIELD_END || at == count || field.kind != kinds[at])
            return false;
        ++at;
    }
    return at == count;
}

/* Whether every text ends within its field when it is read, and the width within it when printed. */
constexpr bool textsFit(const char* format)
{
    while (*format != '\0') {
        const Field field = takeField(format);
        if (field.kind == FIELD_TEXT && (field.width == 0 || field.width >= TEXT_MOST))
            return false;
        if (field.kind == FIELD_END)
            break;
    }
    return true;
}

/* Whether all floats have decimals in the format, as they are printed, or none, as they are read. */
constexpr bool floatsHaveDecimals(const char* format, bool decimals)
{
    for (size_t at = 0; format[at] != '\0'; ++at) {
        if (format[at] == 'f' && (format[at - 1] == '2') != decimals)
            return false;
    }
    return true;
}

/* A field of a format as one number, so that a type can be made of it. */
constexpr uint32_t packedField(const char* format, size_t at)
{
    Field field = takeField(format);
    for (; at > 0; --at)
        field = takeField(format);
    return static_cast<uint32_t>(field.kind << 16 | field.width << 8 | field.blank);
}

/* The table of a format's fields. Formats that are alike have the same, whichever way they go. */
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

template <typename Format> constexpr const Field* fieldsOf(Format)
{
    return TableOf<Format, countFields(Format::text())>::fields;
}

/* The kind that a field of a record has. */
template <typename T> struct KindOf;
template <> struct KindOf<char[TEXT_MOST]> {
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
template <> struct KindOf<ALG_STRATEGY> {
    static constexpr uint8_t value = FIELD_UINT32;
};
template <> struct KindOf<int> {
    static constexpr uint8_t value = FIELD_INT32;
};
template <> struct KindOf<float> {
    static constexpr uint8_t value = FIELD_FLOAT;
};

/* Makes a type of a format literal, so that the compiler can work on it. */
#define FORMAT(literal)                                             \
    [] {                                                            \
        struct Format {                                             \
            static constexpr const char* text() { return literal; } \
        };                                                          \
        return Format{};                                            \
    }()

/* ---- Reading ------------------------------------------------------------ */

/* Characters that one read of a line takes at most. */
constexpr size_t LINE_MOST = 1023;

/*
 * A NUL stands behind what is scanned, so that no loop over characters has to
 * look for the end.
 */
struct TextIn {
    FILE* fp;
    const char* at;  /* what is scanned: the rest of the buffer, or of the line up to a NUL */
    const char* end; /* of a line only when it is needed */
    char* next;      /* behind the line; null where the stream is scanned through */
    char* last;      /* behind what the buffer holds */
    char buffer[LINE_MOST + 1];
    char first; /* of the next line, where the NUL stands */
    bool ended; /* the last read came short: the end is met once before another is tried */
    bool over;  /* the end was met in this call, and stays met until the next */
};

/* Begins to read a stream from where it is. Nothing is read yet. */
void startText(TextIn& in, FILE* fp);

/*
 * Moves on to the next line, as fgets() with a buffer of 1024 does: at most 1023
 * characters, newline included, the rest of a longer line being the next one.
 * scan() then reads that line alone, up to a NUL in it. False at the end, and at
 * a read error within a line; it is not called again then. A stream is gone
 * through by lines from its begin, or by scan() alone.
 */
bool takeLine(TextIn& in);

/* How many lines takeLine() would give. */
int countLines(FILE* fp);

int scanFields(TextIn& in, const Field* field, void* const* target);

template <typename Format, typename... Fields> int scan(TextIn& in, Format format, Fields&... fields)
{
    constexpr uint8_t kinds[] = {KindOf<Fields>::value...};
    static_assert(isFormatOf(Format::text(), kinds, sizeof...(Fields)),
                  "the fields are not those of the format");
    static_assert(textsFit(Format::text()), "a text is read past its field");
    static_assert(floatsHaveDecimals(Format::text(), false), "a float is read as %f");
    void* const targets[] = {&fields...};
    /* A blank before the first field says nothing: white space there is skipped anyway. */
    constexpr bool blankFirst = packedField(Format::text(), 0) >> 16 == FIELD_BLANK;
    return scanFields(in, fieldsOf(format) + blankFirst, targets);
}

/* ---- Printing ----------------------------------------------------------- */

/*
 * A print that the stream's own buffer has room for cannot fail, and waits here
 * with others for one handing over. Any other is given to the stream at once,
 * and has the stream's result.
 */
struct TextOut {
    FILE* fp;
    char* at;          /* behind what waits in the buffer */
    const char* limit; /* how far prints may wait */
    size_t room;       /* characters that the stream's buffer takes, from the begin of this one */
    char buffer[1024];
};

union Value {
    uint32_t number;
    int32_t integer;
    const char* text;
    float real;
};

inline Value valueOf(uint32_t number)
{
    Value value;
    value.number = number;
    return value;
}
inline Value valueOf(int integer)
{
    Value value;
    value.integer = integer;
    return value;
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
inline Value valueOf(uint8_t number)
{
    return valueOf(static_cast<uint32_t>(number));
}
inline Value valueOf(uint16_t number)
{
    return valueOf(static_cast<uint32_t>(number));
}

/* Begins to print to a stream. */
void startText(TextOut& out, FILE* fp);

/* Hands over what waits and closes the stream; the result is that of fclose(). */
int closeText(TextOut& out);

int printFields(TextOut& out, const Field* field, const Value* value);

template <typename Format, typename... Fields> int print(TextOut& out, Format format, const Fields&... fields)
{
    constexpr uint8_t kinds[] = {KindOf<Fields>::value..., FIELD_END};
    static_assert(isFormatOf(Format::text(), kinds, sizeof...(Fields)),
                  "the fields are not those of the format");
    static_assert(textsFit(Format::text()), "a text is read past its field");
    static_assert(floatsHaveDecimals(Format::text(), true), "a float is printed as %.2f");
    static_assert(mostPrinted(Format::text()) <= PRINT_MOST, "the format prints too much at once");
    if constexpr (sizeof...(Fields) == 0) {
        return printFields(out, fieldsOf(format), nullptr);
    } else {
        const Value values[] = {valueOf(fields)...};
        return printFields(out, fieldsOf(format), values);
    }
}

#pragma GCC visibility pop

#endif
