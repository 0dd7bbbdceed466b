/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The slow path of floats. It consumes the characters that fscanf() would, and
 * passes strtof() the number as an integer with an exponent: without a decimal
 * point strtof() reads the same in every locale.
 */
#include "scanFloat.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "characters.h"

namespace [[gnu::visibility("hidden")]] alg_internal
{

/*
 * A value halfway between two floats has at most 112 digits. So 120 digits, and
 * whether all others are 0, decide the rounding.
 */
enum { MAX_DIGITS = 120, MAX_EXPONENT = 99999999 };

/* A number as strtof() reads it. */
struct FloatText {
    char text[MAX_DIGITS + 16]; /* sign, 0x, digits, one digit for all omitted ones, exponent, NUL */
    unsigned length;
    unsigned digits; /* number of digits in the text, without leading zeros */
    bool dropped;    /* whether an omitted digit was other than 0 */
    int scale;       /* the number is the digits in the text times 10 (hexadecimal: 16) to this power */
};

static void addCharacter(FloatText* number, char c)
{
    number->text[number->length++] = c;
}

static void addDigit(FloatText* number, char c, bool fraction)
{
    const bool keep = number->digits < MAX_DIGITS;
    if (c == '0' && number->digits == 0) {
        /* a leading zero */
    } else if (keep) {
        addCharacter(number, c);
        ++number->digits;
    } else {
        number->dropped = number->dropped || c != '0';
    }
    if (number->scale > -MAX_EXPONENT && number->scale < MAX_EXPONENT)
        number->scale += static_cast<int>(!keep) - static_cast<int>(fraction);
}

/* Reads the letters of a word. A character that is not the next letter is consumed too. */
static bool scanWord(TextIn& in, const char* word)
{
    for (; *word != '\0'; ++word) {
        if (!hasMore(in) || toLower(*in.at++) != *word)
            return false;
    }
    return true;
}

/* Reads "nan", "inf" or "infinity"; the next character is n or i. */
static bool scanNanOrInfinity(TextIn& in, FloatText* number)
{
    const bool nan = toLower(*in.at) == 'n';
    if (!scanWord(in, nan ? "nan" : "inf"))
        return false;
    if (!nan && hasMore(in) && toLower(*in.at) == 'i' && !scanWord(in, "inity"))
        return false;
    memcpy(number->text + number->length, nan ? "nan" : "inf", 4);
    return true;
}

/* Reads digits with at most one point among them. Returns false if there is neither. */
static bool scanDigits(TextIn& in, FloatText* number, bool hexadecimal, bool* anyDigit)
{
    bool any = *anyDigit;
    bool point = false;
    for (; hasMore(in); ++in.at) {
        const char c = *in.at;
        if (isDigit(c) || (hexadecimal && toLower(c) >= 'a' && toLower(c) <= 'f')) {
            addDigit(number, c, point);
            *anyDigit = true;
        } else if (c == '.' && !point) {
            point = true;
        } else {
            break;
        }
        any = true;
    }
    return any;
}

/* Reads the exponent after its letter. Without digits it is 0. */
static int scanExponent(TextIn& in)
{
    const bool minus = hasMore(in) && scanSign(in);
    int exponent = 0;
    for (; hasMore(in) && isDigit(*in.at); ++in.at) {
        if (exponent < MAX_EXPONENT)
            exponent = exponent * 10 + (*in.at - '0');
    }
    return minus ? -exponent : exponent;
}

/* Reads "0x". Returns whether it is there; a 0 alone is consumed and sets `anyDigit`. */
static bool scanHexadecimalPrefix(TextIn& in, FloatText* number, bool* anyDigit)
{
    if (*in.at != '0')
        return false;
    ++in.at;
    if (!hasMore(in) || toLower(*in.at) != 'x') {
        *anyDigit = true;
        return false;
    }
    ++in.at;
    memcpy(number->text + number->length, "0x", 2);
    number->length += 2;
    return true;
}

static bool scanFloatText(TextIn& in, FloatText* number)
{
    memset(number, 0, sizeof *number);
    if (scanSign(in))
        addCharacter(number, '-');
    if (!hasMore(in))
        return false;
    const char first = toLower(*in.at);
    if (first == 'n' || first == 'i')
        return scanNanOrInfinity(in, number);

    bool anyDigit = false;
    const bool hexadecimal = scanHexadecimalPrefix(in, number, &anyDigit);
    if (!scanDigits(in, number, hexadecimal, &anyDigit) || !(anyDigit || hexadecimal))
        return false;

    int exponent = 0;
    if (anyDigit && hasMore(in) && toLower(*in.at) == (hexadecimal ? 'p' : 'e')) {
        ++in.at;
        exponent = scanExponent(in);
    }
    if (number->digits == 0)
        addCharacter(number, '0');
    if (number->dropped) { /* one more digit for all omitted ones */
        addCharacter(number, '1');
        --number->scale;
    }
    snprintf(number->text + number->length, 12, "%c%d", hexadecimal ? 'p' : 'e',
             exponent + (hexadecimal ? 4 : 1) * number->scale);
    return true;
}

bool scanAnyFloat(TextIn& in, float* real)
{
    FloatText number;
    if (!scanFloatText(in, &number))
        return false;
    *real = strtof(number.text, nullptr);
    return true;
}

} // namespace alg_internal
