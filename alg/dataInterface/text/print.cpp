/* SPDX-License-Identifier: Apache-2.0 */
/*
 * As in scan.cpp, there are two paths. The fast path prints the fields of nearly
 * every record. From the first field that it cannot print, the slow path takes
 * over.
 */
#include "print.h"

#include <stdio.h>
#include <string.h>

#include "characters.h"

namespace [[gnu::visibility("hidden")]] alg_internal
{

/* Divides by ten with a multiplication: small processors divide in software. */
static inline uint32_t tenthOf(uint32_t number)
{
    return static_cast<uint32_t>(number * static_cast<uint64_t>(0xcccccccd) >> 35);
}

/* Prints a number of `length` digits. */
static inline char* putDigits(char* at, unsigned width, unsigned length, uint32_t number)
{
    for (; width > length; --width)
        *const_cast<volatile char*>(at++) = ' '; /* volatile: else gcc calls memset() for a blank or two */
    char* digit = at + length;
    while (number >= 10) {
        const uint32_t tenth = tenthOf(number);
        *--digit = static_cast<char>('0' + number - tenth * 10);
        number = tenth;
    }
    *--digit = static_cast<char>('0' + number);
    return at + length;
}

/* ---- The slow path ------------------------------------------------------ */

static char* printNumber(char* at, unsigned width, uint32_t number)
{
    unsigned length = 1;
    for (uint32_t rest = number; rest >= 10; rest = tenthOf(rest))
        ++length;
    return putDigits(at, width, length, number);
}

static char* printText(char* at, unsigned width, const char* text)
{
    const size_t length = strnlen(text, TEXT_SIZE);
    for (; width > length; --width)
        *at++ = ' ';
    memcpy(at, text, length);
    return at + length;
}

/*
 * Prints two decimals, rounded to nearest, ties to even. For a float below 2^23,
 * the product with 100 is exact in double precision. A float from 2^23 on has no
 * fraction.
 */
static char* printFloat(char* at, float real)
{
    double scaled = static_cast<double>(real) * 100;
    if (!(scaled < 838860800.0 && scaled > -838860800.0)) {
        at += snprintf(at, MAX_FLOAT, "%.0f", static_cast<double>(real));
        if (isDigit(at[-1])) { /* no decimals after inf and nan */
            *at++ = '.';
            *at++ = '0';
            *at++ = '0';
        }
        return at;
    }
    if (__builtin_signbit(scaled) != 0) {
        *at++ = '-';
        scaled = -scaled;
    }
    uint32_t hundredths = static_cast<uint32_t>(scaled);
    const double rest = scaled - hundredths;
    if (rest > 0.5 || (rest == 0.5 && hundredths % 2 != 0))
        ++hundredths;
    const uint32_t tenths = tenthOf(hundredths);
    const uint32_t units = tenthOf(tenths);
    at = printNumber(at, 0, units);
    *at++ = '.';
    *at++ = static_cast<char>('0' + tenths - units * 10);
    *at++ = static_cast<char>('0' + hundredths - tenths * 10);
    return at;
}

static char* printField(char* at, const Field* field, Value value)
{
    if (field->kind == FIELD_TEXT)
        return printText(at, field->width, value.text);
    if (field->kind == FIELD_FLOAT)
        return printFloat(at, value.real);
    if (field->kind == FIELD_INT32 && static_cast<int32_t>(value.number) < 0) {
        *at++ = '-';
        value.number = 0 - value.number;
    }
    return printNumber(at, field->width, value.number);
}

/* Prints the fields from `field` to the end of the table. */
[[gnu::noinline]] static char* printSlowly(char* at, const Field* field, const Value* value)
{
    for (; field->kind != FIELD_END; ++field) {
        if (field->kind != FIELD_BLANK)
            at = printField(at, field, *value++);
        if (field->blank != 0)
            *at++ = field->blank;
    }
    return at;
}

/* ---- The fast path ------------------------------------------------------ */
/* fastNumber() and fastText() return the end of the field, or null if the slow path must print it. */

/* A number of at most five digits. */
static inline char* fastNumber(char* at, unsigned width, uint32_t number)
{
    const unsigned length = number < 10      ? 1U
                            : number < 100   ? 2U
                            : number < 1000  ? 3U
                            : number < 10000 ? 4U
                                             : 5U;
    return number < 100000 ? putDigits(at, width, length, number) : nullptr;
}

/* A text of exactly its minimum width, four characters at a time. */
static inline char* fastText(char* at, unsigned width, const char* text)
{
    for (; width >= 4; width -= 4) {
        if (!areFourPrintable(text))
            return nullptr;
        memcpy(at, text, 4);
        text += 4;
        at += 4;
    }
    return width == 0 && *text == '\0' ? at : nullptr;
}

int printFields(TextOut& out, const Field* field, const Value* value)
{
    char* at = out.at;
    for (; field->kind != FIELD_END; ++field) {
        char* end = nullptr;
        if (field->kind >= FIELD_UINT8) {
            end = fastNumber(at, field->width, value->number);
        } else if (field->kind == FIELD_TEXT) {
            end = fastText(at, field->width, value->text);
        } else if (field->kind == FIELD_BLANK) {
            *at++ = field->blank;
            continue;
        }
        if (end == nullptr) {
            at = printSlowly(at, field, value);
            break;
        }
        at = end;
        ++value;
        if (field->blank != 0)
            *at++ = field->blank;
    }
    if (at > out.limit)
        return printNow(out, at);
    out.at = at;
    return 0;
}

int printNumbers(TextOut& out, const Field* field, const void* numbers, int at, int count)
{
    for (; at < count; ++at) {
        const uint32_t number = field->kind == FIELD_UINT8 ? static_cast<const uint8_t*>(numbers)[at]
                                                           : static_cast<const uint16_t*>(numbers)[at];
        *out.at = ' ';
        char* end = fastNumber(out.at + 1, field->width, number); /* at most five digits, so never null */
        if (end <= out.limit)
            out.at = end;
        else if (printNow(out, end) == -1)
            break;
    }
    return at;
}

} // namespace alg_internal
