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
    in.buffer[0] = '\0';
}

/* Reads behind the first `held` characters of the buffer as much as it has room for. */
static size_t fill(TextIn& in, size_t held)
{
    size_t got = 0;
    if (in.ended) {
        in.ended = false;
    } else {
        const size_t room = LINE_MOST - held;
        got = fread(in.buffer + held, 1, room, in.fp);
        in.ended = got > 0 && got < room;
    }
    in.last = in.buffer + held + got;
    *in.last = '\0';
    return got;
}

/* At the end of what is scanned: whether there is more, and then it is there. */
static bool more(TextIn& in)
{
    if (in.next != nullptr || in.over)
        return false;
    in.over = fill(in, 0) == 0;
    in.at = in.buffer;
    in.end = in.last;
    return !in.over;
}

/* Length of the line that begins `held` characters, newline included; 0 where it does not end there. */
static size_t lineLength(const char* line, size_t held)
{
    const void* newline = memchr(line, '\n', held);
    if (newline != nullptr)
        return static_cast<size_t>(static_cast<const char*>(newline) + 1 - line);
    return held == LINE_MOST ? held : 0;
}

bool takeLine(TextIn& in)
{
    char* line = in.last;
    if (in.next != nullptr) {
        line = in.next;
        *line = in.first;
    }
    size_t held = static_cast<size_t>(in.last - line);
    size_t length = lineLength(line, held);
    if (length == 0) {
        memmove(in.buffer, line, held);
        line = in.buffer;
        held += fill(in, held);
        length = lineLength(line, held);
        if (length == 0 && !ferror(in.fp))
            length = held;
    }
    in.next = line + length;
    in.first = *in.next;
    *in.next = '\0';
    in.at = line;
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

static inline __attribute__((always_inline)) bool isBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

static bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

static const char* behindAnyBlanks(const char* at)
{
    while (isBlank(*at))
        ++at;
    return at;
}

/* What nearly every blank is: spaces. */
static inline __attribute__((always_inline)) const char* behindBlanks(const char* at)
{
    while (*at == ' ')
        ++at;
    return static_cast<unsigned char>(*at) < ' ' ? behindAnyBlanks(at) : at;
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
            beyond = beyond || value > UINT64_MAX / 10 || value * 10 > UINT64_MAX - digit;
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
enum { DIGITS_MOST = 120, EXPONENT_MOST = 99999999 };

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
    if (number->scale > -EXPONENT_MOST && number->scale < EXPONENT_MOST)
        number->scale += !keep - fraction;
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

/* ---- One field by the whole rule ---------------------------------------- */

/* Also stored into enumerations of this width. */
typedef uint32_t __attribute__((may_alias)) AnyUint32;

static void store(uint8_t kind, void* target, uint32_t number)
{
    if (kind == FIELD_UINT8)
        *static_cast<uint8_t*>(target) = static_cast<uint8_t>(number);
    else if (kind == FIELD_UINT16)
        *static_cast<uint16_t*>(target) = static_cast<uint16_t>(number);
    else
        *static_cast<AnyUint32*>(target) = number;
}

/* False where the field's first character does not fit. */
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

/* ---- Plain fields ------------------------------------------------------- */
/* What nearly every field is. Each gives where the field ends, or null where it is not that. */

/* The NUL may be the buffer's last character, and four are looked at from it on: the flags are the others. */
static_assert(offsetof(TextIn, over) >= offsetof(TextIn, buffer) + LINE_MOST + 3,
              "no room behind the buffer");

/* Whether four characters are of ASCII, and neither blanks nor control characters. */
static inline bool arePlain(const char* at)
{
    uint32_t word;
    memcpy(&word, at, sizeof word);
    return (((word - 0x21212121) | word) & 0x80808080) == 0;
}

/* A text that is as long as it may be, of plain characters, four at a time. */
static inline const char* takePlainText(const char* at, unsigned width, char* text)
{
    for (; width >= 4; width -= 4) {
        if (!arePlain(at))
            return nullptr;
        memcpy(text, at, 4);
        text += 4;
        at += 4;
    }
    if (width > 0)
        return nullptr;
    *text = '\0';
    return at;
}

/* A number without a sign, of at most nine digits, that ends within the buffer. */
static inline const char* takePlainNumber(const char* start, const Field* field, void* target)
{
    const char* at = start;
    uint32_t number = static_cast<uint32_t>(*at) - '0';
    if (number > 9)
        return nullptr;
    uint32_t digit;
    while ((digit = static_cast<uint32_t>(*++at) - '0') <= 9)
        number = number * 10 + digit;
    const ptrdiff_t length = at - start;
    if ((length > field->width && field->width != 0) || length > 9 || digit == 0U - '0')
        return nullptr;
    store(field->kind, target, number);
    return at;
}

/*
 * A float of at most nine digits, with or without a point, and a blank behind.
 * Number by power of ten is off by one rounding of a double, at most 2^-53 of it.
 * A number of nine digits that is not itself halfway between two floats is off
 * from there by 2^-46 of it or more: so what is rounded again is the nearest.
 */
static inline const char* takePlainFloat(const char* at, float* real)
{
    uint32_t number = 0;
    uint32_t power = 0; /* of ten, from the point on */
    unsigned digits = 0;
    for (;; ++at) {
        const uint32_t digit = static_cast<uint32_t>(*at) - '0';
        if (digit <= 9) {
            number = number * 10 + digit;
            power *= 10;
            ++digits;
        } else if (*at == '.' && power == 0) {
            power = 1;
        } else {
            break;
        }
    }
    if (!isBlank(*at) || digits - 1 > 8)
        return nullptr;
    *real = static_cast<float>(static_cast<double>(number) / (power == 0 ? 1 : power));
    return at;
}

/* ---- A format's fields -------------------------------------------------- */

/*
 * The fields from here on by the whole rule, `converted` having gone before. White
 * space before a field is skipped, so that only a blank at the end has a say.
 */
static __attribute__((noinline)) int scanRest(TextIn& in, const Field* field, void* const* target,
                                              int converted)
{
    in.over = false;
    if (in.next != nullptr)
        in.end = static_cast<const char*>(memchr(in.at, '\0', static_cast<size_t>(in.next + 1 - in.at)));
    for (; field->kind != FIELD_END; ++field) {
        if (field->kind == FIELD_BLANK)
            continue;
        if (!skipBlanks(in))
            return converted > 0 ? converted : -1;
        if (!takeField(in, field, *target++))
            return converted;
        ++converted;
    }
    if (field[-1].blank != 0)
        skipBlanks(in);
    return converted;
}

/* Plain fields; the first that is not plain, and what is behind it, go the long way. */
int scanFields(TextIn& in, const Field* field, void* const* target)
{
    void* const* const first = target;
    const char* at = in.at;
    do {
        at = behindBlanks(at);
        const char* behind = nullptr;
        if (field->kind >= FIELD_UINT8)
            behind = takePlainNumber(at, field, *target);
        else if (field->kind == FIELD_TEXT)
            behind = takePlainText(at, field->width, static_cast<char*>(*target));
        else if (field->kind == FIELD_FLOAT)
            behind = takePlainFloat(at, static_cast<float*>(*target));
        if (behind == nullptr) {
            in.at = at;
            return scanRest(in, field, target, static_cast<int>(target - first));
        }
        at = behind;
        ++target;
    } while ((++field)->kind != FIELD_END);
    const int converted = static_cast<int>(target - first);
    in.at = at;
    if (field[-1].blank == 0 || in.next != nullptr)
        return converted;
    in.at = behindBlanks(at);
    return in.at == in.end ? scanRest(in, field, nullptr, converted) : converted;
}

/* ==== Printing =========================================================== */

/* Empties the buffer; the stream has room for so many characters more. */
static void beginBuffer(TextOut& out, size_t room)
{
    const size_t most = sizeof out.buffer - PRINT_MOST;
    out.at = out.buffer;
    out.limit = out.buffer + (room < most ? room : most);
    out.room = room;
}

void startText(TextOut& out, FILE* fp)
{
    out.fp = fp;
    beginBuffer(out, 0); /* the stream has no buffer before its first print */
}

/* Gives the stream what waits, which it has room for. */
static void handOver(TextOut& out)
{
    const size_t waiting = static_cast<size_t>(out.at - out.buffer);
    fwrite(out.buffer, 1, waiting, out.fp);
    beginBuffer(out, out.room - waiting);
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

/* A print up to here that cannot wait: handed over with all before it, or else the stream's own print. */
static __attribute__((noinline)) int printNow(TextOut& out, char* end)
{
    const char* const text = out.at;
    if (static_cast<size_t>(end - out.buffer) <= out.room) {
        out.at = end;
        handOver(out);
        return 0;
    }
    handOver(out);
    /* What becomes of a line that is written at its end, fwrite() does not tell. */
    const int length = static_cast<int>(end - text);
    const bool taken = __flbf(out.fp) ? fprintf(out.fp, "%.*s", length, text) == length
                                      : fwrite(text, static_cast<size_t>(length), 1, out.fp) == 1;
    beginBuffer(out, streamRoom(out.fp));
    return taken ? 0 : -1;
}

/* ---- One field by the whole rule ---------------------------------------- */

/* A tenth without a division, which small processors do in software. */
static inline uint32_t tenthOf(uint32_t number)
{
    return static_cast<uint32_t>(number * static_cast<uint64_t>(0xcccccccd) >> 35);
}

static inline char* putDigits(char* at, unsigned width, unsigned length, uint32_t number)
{
    for (; width > length; --width)
        *const_cast<volatile char*>(at++) = ' '; /* else the compiler calls memset() for each number */
    char* digit = at + length;
    while (number >= 10) {
        const uint32_t tenth = tenthOf(number);
        *--digit = static_cast<char>('0' + number - tenth * 10);
        number = tenth;
    }
    *--digit = static_cast<char>('0' + number);
    return at + length;
}

static char* putNumber(char* at, unsigned width, uint32_t number)
{
    unsigned length = 1;
    for (uint32_t rest = number; rest >= 10; rest = tenthOf(rest))
        ++length;
    return putDigits(at, width, length, number);
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
    const uint32_t tenths = tenthOf(hundredths);
    const uint32_t units = tenthOf(tenths);
    at = putNumber(at, 0, units);
    *at++ = '.';
    *at++ = static_cast<char>('0' + tenths - units * 10);
    *at++ = static_cast<char>('0' + hundredths - tenths * 10);
    return at;
}

static char* putField(char* at, const Field* field, Value value)
{
    if (field->kind == FIELD_TEXT)
        return putText(at, field->width, value.text);
    if (field->kind == FIELD_FLOAT)
        return putFloat(at, value.real);
    if (field->kind == FIELD_INT32 && value.integer < 0) {
        *at++ = '-';
        value.number = 0 - value.number;
    }
    return putNumber(at, field->width, value.number);
}

/* ---- Plain fields ------------------------------------------------------- */
/* What nearly every field is. Each gives where the field ends, or null where it is not that. */

/* A number of at most five digits. */
static inline char* putPlainNumber(char* at, unsigned width, uint32_t number)
{
    const unsigned length = number < 10      ? 1U
                            : number < 100   ? 2U
                            : number < 1000  ? 3U
                            : number < 10000 ? 4U
                                             : 5U;
    return number < 100000 ? putDigits(at, width, length, number) : nullptr;
}

/* A text of just its least width, of plain characters, four at a time. */
static inline char* putPlainText(char* at, unsigned width, const char* text)
{
    for (; width >= 4; width -= 4) {
        if (!arePlain(text))
            return nullptr;
        memcpy(at, text, 4);
        text += 4;
        at += 4;
    }
    return width == 0 && *text == '\0' ? at : nullptr;
}

/* ---- A format's fields -------------------------------------------------- */

/* The fields from here on by the whole rule, behind what is printed so far. */
static __attribute__((noinline)) char* printRest(char* at, const Field* field, const Value* value)
{
    for (; field->kind != FIELD_END; ++field) {
        if (field->kind != FIELD_BLANK)
            at = putField(at, field, *value++);
        if (field->blank != 0)
            *at++ = field->blank;
    }
    return at;
}

/* Plain fields; the first that is not plain, and what is behind it, go the long way. */
int printFields(TextOut& out, const Field* field, const Value* value)
{
    char* at = out.at;
    for (; field->kind != FIELD_END; ++field) {
        char* behind = nullptr;
        if (field->kind >= FIELD_UINT8) {
            behind = putPlainNumber(at, field->width, value->number);
        } else if (field->kind == FIELD_TEXT) {
            behind = putPlainText(at, field->width, value->text);
        } else if (field->kind == FIELD_BLANK) {
            *at++ = field->blank;
            continue;
        }
        if (behind == nullptr) {
            at = printRest(at, field, value);
            break;
        }
        at = behind;
        ++value;
        if (field->blank != 0)
            *at++ = field->blank;
    }
    if (at > out.limit)
        return printNow(out, at);
    out.at = at;
    return 0;
}
