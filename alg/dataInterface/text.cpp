/* SPDX-License-Identifier: Apache-2.0 */
#include "text.h"

#include <stdio_ext.h>
#include <stdlib.h>
#include <string.h>

/* ==== Reading ============================================================ */

void startText(TextIn& in, FILE* fp)
{
    in.fp = fp;
    in.at = in.end = in.last = in.buffer;
    in.next = nullptr;
    in.ended = false;
    in.over = false;
}

/* Reads behind the first `held` characters of the buffer as much as it has room for. */
static size_t fill(TextIn& in, size_t held)
{
    if (in.ended) {
        in.ended = false;
        return 0;
    }
    const size_t room = sizeof in.buffer - held;
    const size_t got = fread(in.buffer + held, 1, room, in.fp);
    in.ended = got > 0 && got < room;
    return got;
}

/* At the end of what is scanned: whether there is more, and then it is there. */
static bool more(TextIn& in)
{
    if (in.next != nullptr || in.over)
        return false;
    in.at = in.buffer;
    in.end = in.buffer + fill(in, 0);
    in.over = in.at == in.end;
    return !in.over;
}

/* Length of the line that begins `held` characters, newline included; 0 where it does not end there. */
static size_t lineLength(const char* line, size_t held)
{
    const size_t most = held < LINE_MOST ? held : LINE_MOST;
    const void* newline = memchr(line, '\n', most);
    if (newline != nullptr)
        return static_cast<size_t>(static_cast<const char*>(newline) + 1 - line);
    return most == LINE_MOST ? most : 0;
}

bool takeLine(TextIn& in)
{
    const char* line = in.next != nullptr ? in.next : in.last;
    size_t held = static_cast<size_t>(in.last - line);
    size_t length = lineLength(line, held);
    if (length == 0) {
        memmove(in.buffer, line, held);
        held += fill(in, held);
        line = in.buffer;
        in.last = line + held;
        length = lineLength(line, held);
        if (length == 0 && !ferror(in.fp))
            length = held;
    }
    const void* nul = memchr(line, '\0', length);
    in.at = line;
    in.end = nul != nullptr ? static_cast<const char*>(nul) : line + length;
    in.next = line + length;
    return length > 0;
}

int countLines(FILE* fp)
{
    char buffer[LINE_MOST + 1];
    int count = 0;
    size_t length = 0; /* of the line so far */
    size_t got;
    while ((got = fread(buffer, 1, sizeof buffer, fp)) > 0) {
        const char* at = buffer;
        const char* end = buffer + got;
        while (at != end) {
            const void* newline = memchr(at, '\n', static_cast<size_t>(end - at));
            const char* stop = newline != nullptr ? static_cast<const char*>(newline) + 1 : end;
            length += static_cast<size_t>(stop - at);
            at = stop;
            for (; length >= LINE_MOST; length -= LINE_MOST)
                ++count;
            if (newline != nullptr && length > 0) {
                ++count;
                length = 0;
            }
        }
        if (got < sizeof buffer)
            break;
    }
    return length > 0 && !ferror(fp) ? count + 1 : count;
}

/* ---- One field ---------------------------------------------------------- */

static bool isBlank(char c)
{
    return static_cast<unsigned char>(c) <= ' ' && (c == ' ' || (c >= '\t' && c <= '\r'));
}

static bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/* Whether a character is left to scan. */
static bool hasMore(TextIn& in)
{
    return in.at != in.end || more(in);
}

/* Skips white space; false at the end. */
static bool skipBlanks(TextIn& in)
{
    do {
        const char* at = in.at;
        const char* const end = in.end;
        while (at != end && isBlank(*at))
            ++at;
        in.at = at;
        if (at != end)
            return true;
    } while (more(in));
    return false;
}

static void takeText(TextIn& in, unsigned width, char* text)
{
    while (width > 0 && hasMore(in)) {
        const char* at = in.at;
        const char* const end = in.end;
        for (; width > 0 && at != end && !isBlank(*at); --width)
            *text++ = *at++;
        in.at = at;
        if (at != end)
            break;
    }
    *text = '\0';
}

/* Goes over a sign; gives whether it was a minus. */
static bool takeSign(TextIn& in, unsigned* width)
{
    const bool minus = *in.at == '-';
    if (minus || *in.at == '+') {
        ++in.at;
        --*width;
    }
    return minus;
}

/* False where there is no digit. */
static bool takeNumber(TextIn& in, unsigned width, uint64_t* number)
{
    const bool minus = takeSign(in, &width);
    uint64_t value = 0;
    bool any = false;
    bool beyond = false;
    while (width > 0 && hasMore(in)) {
        const char* at = in.at;
        const char* end = in.end;
        for (; width > 0 && at != end && isDigit(*at); ++at, --width) {
            const unsigned digit = static_cast<unsigned>(*at - '0');
            beyond = beyond || value > (UINT64_MAX - digit) / 10;
            value = value * 10 + digit;
            any = true;
        }
        in.at = at;
        if (at != end)
            break;
    }
    *number = beyond ? UINT64_MAX : minus ? 0 - value : value;
    return any;
}

/* ---- Floats ------------------------------------------------------------- */
/*
 * The characters are taken as fscanf() takes them, and handed to strtof() as an
 * integer with an exponent: without a decimal point it reads the same in every
 * locale.
 */

/* More digits than decide on which side of a halfway point a number lies. */
enum { DIGITS_MOST = 120, EXPONENT_MOST = 99999 };

struct FloatText {
    char text[DIGITS_MOST + 16]; /* sign, 0x, digits, one for those left out, exponent, NUL */
    unsigned length;
    unsigned digits;
    bool dropped; /* whether a digit that is left out was not 0 */
    int scale;    /* powers that the digits are short of the number */
};

static void addCharacter(FloatText* number, char c)
{
    number->text[number->length++] = c;
}

static void addDigit(FloatText* number, char c, bool fraction)
{
    const bool keep = number->digits < DIGITS_MOST;
    if (c == '0' && number->digits == 0) {
        /* a leading nought */
    } else if (keep) {
        addCharacter(number, c);
        ++number->digits;
    } else {
        number->dropped = number->dropped || c != '0';
    }
    if (fraction && keep && number->scale > -EXPONENT_MOST)
        --number->scale;
    if (!fraction && !keep && number->scale < EXPONENT_MOST)
        ++number->scale;
}

/* Takes the letters of a word; a character that is not the next letter is gone too. */
static bool takeWord(TextIn& in, const char* word)
{
    for (; *word != '\0'; ++word) {
        if (!hasMore(in) || (*in.at++ | 0x20) != *word)
            return false;
    }
    return true;
}

static bool takeNotANumber(TextIn& in, FloatText* number)
{
    const bool nan = (*in.at | 0x20) == 'n';
    if (!takeWord(in, nan ? "nan" : "inf"))
        return false;
    if (!nan && hasMore(in) && (*in.at | 0x20) == 'i' && !takeWord(in, "inity"))
        return false;
    memcpy(number->text + number->length, nan ? "nan" : "inf", 4);
    return true;
}

/* Digits with a point among them; false where there is nothing of either. */
static bool takeDigits(TextIn& in, FloatText* number, bool hexadecimal, bool* anyDigit)
{
    bool any = *anyDigit;
    bool point = false;
    for (; hasMore(in); ++in.at) {
        const char c = *in.at;
        const char low = static_cast<char>(c | 0x20);
        if (isDigit(c) || (hexadecimal && low >= 'a' && low <= 'f')) {
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

/* The exponent behind its letter; nothing there counts as 0. */
static int takeExponent(TextIn& in)
{
    unsigned unlimited = UINT32_MAX;
    const bool minus = hasMore(in) && takeSign(in, &unlimited);
    int exponent = 0;
    for (; hasMore(in) && isDigit(*in.at); ++in.at) {
        if (exponent < EXPONENT_MOST)
            exponent = exponent * 10 + (*in.at - '0');
    }
    return minus ? -exponent : exponent;
}

static bool takeFloatText(TextIn& in, FloatText* number)
{
    memset(number, 0, sizeof *number);
    unsigned unlimited = UINT32_MAX;
    if (takeSign(in, &unlimited))
        addCharacter(number, '-');
    if (!hasMore(in))
        return false;
    const char first = static_cast<char>(*in.at | 0x20);
    if (first == 'n' || first == 'i')
        return takeNotANumber(in, number);

    bool anyDigit = false;
    bool hexadecimal = false;
    if (*in.at == '0') {
        ++in.at;
        hexadecimal = hasMore(in) && (*in.at | 0x20) == 'x';
        anyDigit = !hexadecimal;
    }
    if (hexadecimal) {
        ++in.at;
        memcpy(number->text + number->length, "0x", 2);
        number->length += 2;
    }
    if (!takeDigits(in, number, hexadecimal, &anyDigit) || !(anyDigit || hexadecimal))
        return false;

    int exponent = 0;
    if (anyDigit && hasMore(in) && (*in.at | 0x20) == (hexadecimal ? 'p' : 'e')) {
        ++in.at;
        exponent = takeExponent(in);
    }
    if (number->digits == 0)
        addCharacter(number, '0');
    if (number->dropped) {
        addCharacter(number, '1');
        --number->scale;
    }
    snprintf(number->text + number->length, 12, "%c%d", hexadecimal ? 'p' : 'e',
             exponent + (hexadecimal ? 4 : 1) * number->scale);
    return true;
}

static bool takeFloat(TextIn& in, float* real)
{
    FloatText number;
    if (!takeFloatText(in, &number))
        return false;
    *real = strtof(number.text, nullptr);
    return true;
}

/* ---- A format's fields -------------------------------------------------- */

static void store(uint8_t kind, void* target, uint32_t number)
{
    if (kind == FIELD_UINT8)
        *static_cast<uint8_t*>(target) = static_cast<uint8_t>(number);
    else if (kind == FIELD_UINT16)
        *static_cast<uint16_t*>(target) = static_cast<uint16_t>(number);
    else
        *static_cast<uint32_t*>(target) = number;
}

/* One field by the whole rule; false where its first character does not fit. */
static bool takeField(TextIn& in, const Field* field, void* target)
{
    const unsigned width = field->width > 0 ? field->width : UINT32_MAX;
    uint64_t number;
    switch (field->kind) {
    case FIELD_TEXT:
        takeText(in, width, static_cast<char*>(target));
        return true;
    case FIELD_FLOAT:
        return takeFloat(in, static_cast<float*>(target));
    default:
        if (!takeNumber(in, width, &number))
            return false;
        store(field->kind, target, static_cast<uint32_t>(number));
        return true;
    }
}

/*
 * What nearly every field is: a number with no sign and at most nine digits that
 * ends within the buffer. Gives where it ends, or null where it is not that.
 */
static inline const char* takePlainNumber(const char* at, const char* end, const Field* field, void* target)
{
    uint32_t number = static_cast<uint32_t>(*at) - '0';
    if (number > 9)
        return nullptr;
    unsigned most = static_cast<unsigned>(field->width - 1) < 8U ? field->width : 9U;
    for (++at; --most > 0 && at != end; ++at) {
        const uint32_t digit = static_cast<uint32_t>(*at) - '0';
        if (digit > 9)
            break;
        number = number * 10 + digit;
    }
    if (at == end || (most == 0 && field->width == 0))
        return nullptr;
    store(field->kind, target, number);
    return at;
}

/* White space before a field is skipped, so that only a blank at the end has a say. */
int scanFields(TextIn& in, const Field* field, void* const* target)
{
    int converted = 0;
    in.over = false;
    const char* at = in.at;
    const char* end = in.end;
    for (; field->kind != FIELD_END; ++field) {
        if (field->kind == FIELD_BLANK)
            continue;
        while (at != end && isBlank(*at))
            ++at;
        const char* behind = nullptr;
        if (at != end && field->kind >= FIELD_UINT8)
            behind = takePlainNumber(at, end, field, *target);
        if (behind == nullptr) {
            in.at = at;
            if (at == end && !skipBlanks(in))
                return converted > 0 ? converted : -1;
            if (!takeField(in, field, *target))
                return converted;
            behind = in.at;
            end = in.end;
        }
        at = behind;
        ++target;
        ++converted;
    }
    in.at = at;
    if (field[-1].blank != 0)
        skipBlanks(in);
    return converted;
}

/* ==== Printing =========================================================== */

void startText(TextOut& out, FILE* fp)
{
    out.fp = fp;
    out.used = 0;
    out.room = 0; /* the stream has no buffer before its first print */
}

/* Gives the stream what waits, which it has room for. */
static void handOver(TextOut& out)
{
    fwrite(out.buffer, 1, out.used, out.fp);
    out.used = 0;
}

int closeText(TextOut& out)
{
    handOver(out);
    return fclose(out.fp);
}

/* What the stream takes without writing; nothing where it does not buffer, or not whole blocks. */
static size_t streamRoom(FILE* fp)
{
    const size_t size = __fbufsize(fp);
    const size_t pending = __fpending(fp);
    return size <= 1 || __flbf(fp) || pending > size ? 0 : size - pending;
}

static unsigned countDigits(uint32_t number)
{
    unsigned more = 0;
    for (; number >= 10000; number /= 10000)
        more += 4;
    return more + (number < 10 ? 1U : number < 100 ? 2U : number < 1000 ? 3U : 4U);
}

static inline char* putNumber(char* at, unsigned width, uint32_t number)
{
    const unsigned length = countDigits(number);
    for (; width > length; --width)
        *at++ = ' ';
    char* digit = at + length;
    for (; number >= 10; number /= 10)
        *--digit = static_cast<char>('0' + number % 10);
    *--digit = static_cast<char>('0' + number);
    return at + length;
}

static char* putText(char* at, unsigned width, const char* text)
{
    const size_t length = strnlen(text, TEXT_MOST);
    for (; width > length; --width)
        *at++ = ' ';
    memcpy(at, text, length);
    return at + length;
}

/*
 * Two decimals, rounded to the nearest, halves to the even one. A float below
 * 2^23 times 100 is exact in double precision; from there on it has no fraction.
 */
static char* putFloat(char* at, float real)
{
    double scaled = static_cast<double>(real) * 100;
    if (!(scaled < 838860800.0 && scaled > -838860800.0)) {
        at += snprintf(at, FLOAT_MOST, "%.0f", static_cast<double>(real));
        if (isDigit(at[-1])) {
            memcpy(at, ".00", 3);
            at += 3;
        }
        return at;
    }
    if (__builtin_signbit(scaled)) {
        *at++ = '-';
        scaled = -scaled;
    }
    uint32_t hundredths = static_cast<uint32_t>(scaled);
    const double rest = scaled - hundredths;
    if (rest > 0.5 || (rest == 0.5 && hundredths % 2 != 0))
        ++hundredths;
    at = putNumber(at, 0, hundredths / 100);
    *at++ = '.';
    *at++ = static_cast<char>('0' + hundredths / 10 % 10);
    *at++ = static_cast<char>('0' + hundredths % 10);
    return at;
}

/* What is not a plain number. */
static char* putField(char* at, const Field* field, Value value)
{
    if (field->kind == FIELD_TEXT)
        return putText(at, field->width, value.text);
    if (field->kind == FIELD_FLOAT)
        return putFloat(at, value.real);
    if (value.integer < 0) {
        *at++ = '-';
        value.number = 0 - value.number;
    }
    return putNumber(at, 0, value.number);
}

int printFields(TextOut& out, const Field* field, const Value* value)
{
    if (sizeof out.buffer - out.used < PRINT_MOST)
        handOver(out);
    char* const text = out.buffer + out.used;
    char* at = text;
    for (; field->kind != FIELD_END; ++field) {
        if (field->kind >= FIELD_UINT8)
            at = putNumber(at, field->width, value++->number);
        else if (field->kind != FIELD_BLANK)
            at = putField(at, field, *value++);
        if (field->blank != 0)
            *at++ = field->blank;
    }

    const size_t length = static_cast<size_t>(at - text);
    if (length <= out.room) {
        out.used += length;
        out.room -= length;
        return 0;
    }
    handOver(out);
    const bool taken = fwrite(text, 1, length, out.fp) == length;
    out.room = streamRoom(out.fp);
    return taken ? 0 : -1;
}
