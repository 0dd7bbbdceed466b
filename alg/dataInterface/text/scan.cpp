/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Nearly every field is simple: a number without a sign, a text as long as its
 * width, a float of a few digits. The fast path reads those in one loop. From the
 * first field that it cannot read, the slow path takes over. It handles every
 * case, so the full rules are only there.
 */
#include "scan.h"

#include "characters.h"
#include "scanFloat.h"

namespace [[gnu::visibility("hidden")]] alg_internal
{

/* Stores into any object of 32 bits, enumerations included. */
typedef uint32_t __attribute__((may_alias)) StoredUint32;

static void store(uint8_t kind, void* target, uint32_t number)
{
    if (kind == FIELD_UINT8)
        *static_cast<uint8_t*>(target) = static_cast<uint8_t>(number);
    else if (kind == FIELD_UINT16)
        *static_cast<uint16_t*>(target) = static_cast<uint16_t>(number);
    else
        *static_cast<StoredUint32*>(target) = number;
}

/* ---- The slow path ------------------------------------------------------ */

/* Skips white space. False at the end. */
static bool skipSpace(TextIn& in)
{
    do {
        const char* at = in.at;
        const char* const end = in.end;
        while (at != end && isSpace(*at))
            ++at;
        in.at = at;
        if (at != end)
            return true;
    } while (refill(in));
    return false;
}

static void scanText(TextIn& in, unsigned width, char* text)
{
    while (width > 0 && hasMore(in)) {
        const char* at = in.at;
        const char* const end = in.end;
        for (; width > 0 && at != end && !isSpace(*at); --width)
            *text++ = *at++;
        in.at = at;
        if (at != end)
            break;
    }
    *text = '\0';
}

/* Returns false if there is no digit. A sign counts as one of the `width` characters. */
static bool scanNumber(TextIn& in, unsigned width, uint64_t* number)
{
    const char* const start = in.at;
    const bool minus = scanSign(in);
    width -= static_cast<unsigned>(in.at - start);
    uint64_t value = 0;
    bool any = false;
    bool overflow = false;
    while (width > 0 && hasMore(in)) {
        const char* at = in.at;
        const char* const end = in.end;
        for (; width > 0 && at != end && isDigit(*at); ++at, --width) {
            const unsigned digit = static_cast<unsigned>(*at - '0');
            overflow = overflow || value > UINT64_MAX / 10 || value * 10 > UINT64_MAX - digit;
            value = value * 10 + digit;
            any = true;
        }
        in.at = at;
        if (at != end)
            break;
    }
    *number = overflow ? UINT64_MAX : minus ? 0 - value : value;
    return any;
}

/* Returns false if there is no value of the field's kind. */
static bool scanField(TextIn& in, const Field* field, void* target)
{
    const unsigned width = field->width > 0 ? field->width : UINT32_MAX;
    uint64_t number = 0;
    switch (field->kind) {
    case FIELD_TEXT:
        scanText(in, width, static_cast<char*>(target));
        return true;
    case FIELD_FLOAT:
        return scanAnyFloat(in, static_cast<float*>(target));
    default:
        if (!scanNumber(in, width, &number))
            return false;
        store(field->kind, target, static_cast<uint32_t>(number));
        return true;
    }
}

/*
 * Reads the fields from `field` to the end of the table; `converted` fields have
 * been read before. White space before a field is skipped anyway, so only a blank
 * after the last field matters.
 */
[[gnu::noinline]] static int scanSlowly(TextIn& in, const Field* field, void* const* target, int converted)
{
    in.atEnd = false;
    if (in.lineEnd != nullptr)
        in.end = static_cast<const char*>(memchr(in.at, '\0', static_cast<size_t>(in.lineEnd + 1 - in.at)));
    for (; field->kind != FIELD_END; ++field) {
        if (field->kind == FIELD_BLANK)
            continue;
        if (!skipSpace(in))
            return converted > 0 ? converted : -1;
        if (!scanField(in, field, *target++))
            return converted;
        ++converted;
    }
    if (field[-1].blank != 0)
        skipSpace(in);
    return converted;
}

/* ---- The fast path ------------------------------------------------------ */

static const char* fastSkipAnySpace(const char* at)
{
    while (isSpace(*at))
        ++at;
    return at;
}

/* Skips white space, which nearly always is ' '. */
[[gnu::always_inline]] static inline const char* fastSkipSpace(const char* at)
{
    while (*at == ' ')
        ++at;
    return static_cast<unsigned char>(*at) < ' ' ? fastSkipAnySpace(at) : at;
}

/* fastText(), fastNumber() and fastFloat() return the end of the field, or null for the slow path. */

/* A text of exactly its maximum width, four characters at a time. */
static inline const char* fastText(const char* at, unsigned width, char* text)
{
    for (; width >= 4; width -= 4) {
        if (!areFourPrintable(at))
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
static inline const char* fastNumber(const char* start, const Field* field, void* target)
{
    const char* at = start;
    uint32_t number = static_cast<uint32_t>(*at) - '0';
    if (number > 9)
        return nullptr;
    uint32_t digit = 0;
    while ((digit = static_cast<uint32_t>(*++at) - '0') <= 9)
        number = number * 10 + digit;
    const ptrdiff_t length = at - start;
    if ((length > field->width && field->width != 0) || length > 9 || *at == '\0')
        return nullptr;
    store(field->kind, target, number);
    return at;
}

/*
 * A float of at most nine digits, with or without a point, and a blank after it.
 *
 * The division by a power of ten rounds once, with a relative error of at most
 * 2^-53. A number of nine digits is either exactly halfway between two floats, or
 * its relative distance from the halfway point is at least 2^-46. So the second
 * rounding, to float, returns the nearest float.
 */
static inline const char* fastFloat(const char* at, float* real)
{
    uint32_t number = 0;
    uint32_t power = 0; /* of ten; 0 before the point */
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
    if (!isSpace(*at) || digits == 0 || digits > 9)
        return nullptr;
    *real = static_cast<float>(static_cast<double>(number) / (power == 0 ? 1 : power));
    return at;
}

int scanFields(TextIn& in, const Field* field, void* const* target)
{
    void* const* const first = target;
    const char* at = in.at;
    do {
        at = fastSkipSpace(at);
        const char* end = nullptr;
        if (field->kind >= FIELD_UINT8)
            end = fastNumber(at, field, *target);
        else if (field->kind == FIELD_TEXT)
            end = fastText(at, field->width, static_cast<char*>(*target));
        else if (field->kind == FIELD_FLOAT)
            end = fastFloat(at, static_cast<float*>(*target));
        if (end == nullptr) {
            in.at = at;
            return scanSlowly(in, field, target, static_cast<int>(target - first));
        }
        at = end;
        ++target;
    } while ((++field)->kind != FIELD_END);

    const int converted = static_cast<int>(target - first);
    in.at = at;
    if (field[-1].blank == 0 || in.lineEnd != nullptr)
        return converted;
    in.at = fastSkipSpace(at);
    return in.at == in.end ? scanSlowly(in, field, nullptr, converted) : converted;
}

int scanNumbers(TextIn& in, const Field* field, void* numbers, int at, int count)
{
    const size_t size = field->kind == FIELD_UINT8 ? 1 : 2;
    for (; at < count; ++at) {
        void* target = static_cast<char*>(numbers) + static_cast<size_t>(at) * size;
        const char* end = fastNumber(fastSkipSpace(in.at), field, target);
        if (end != nullptr)
            in.at = end;
        else if (scanFields(in, field, &target) == -1)
            break;
    }
    return at;
}

} // namespace alg_internal
