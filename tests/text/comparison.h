/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Compares the text layer with the C library's formatted calls, call by call: the same
 * bytes, the same formats, the same faults. The program that includes this provides the
 * bytes and every choice: a long random run or a fuzz target. It needs only the C
 * library, so that it runs on every target.
 */
#ifndef TESTS_TEXT_COMPARISON_H
#define TESTS_TEXT_COMPARISON_H

#ifndef _GNU_SOURCE
#define _GNU_SOURCE /* fopencookie */
#endif
#include <errno.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/types.h>

#include "dataInterface/text/fields.h"
#include "formats/compileTime.h"

using namespace alg_internal;

#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"

/* Returns a number below `below`, chosen by the program. */
static uint32_t chance(uint32_t below);

/* ---- What is compared ---------------------------------------------------- */

/*
 * C libraries differ in some forms of floats, after a read error that the next read
 * recovers from, in how much they consume of a number at the end of their buffer, and
 * in how much of a print they write to a full device. The module behaves like glibc.
 * With another library, these cases are not compared.
 */
#if defined(__GLIBC__)
static const bool likeGlibc = true;
#else
static const bool likeGlibc = false;
#endif

/* ---- Streams over memory, with faults ----------------------------------- */

struct Memory {
    char bytes[16384];
    size_t size;
    size_t at;
    int calls;
    int failing;      /* the call that fails, 0 for none */
    bool onwards;     /* whether all later calls fail too */
    unsigned pattern; /* determines how many bytes a read returns, 0 for as many as requested */
};

/*
 * Other libraries than glibc split the same input into different reads. With those,
 * the fault is at a position and not at a call.
 */
static size_t faultPosition(const Memory* memory)
{
    return !likeGlibc && memory->failing != 0 ? static_cast<size_t>(memory->failing) * 700
                                              : sizeof memory->bytes;
}

static bool failsNow(Memory* memory)
{
    ++memory->calls;
    if (!likeGlibc)
        return memory->at >= faultPosition(memory);
    return memory->failing != 0 &&
           (memory->onwards ? memory->calls >= memory->failing : memory->calls == memory->failing);
}

static ssize_t readMemory(void* cookie, char* bytes, size_t size)
{
    Memory* memory = static_cast<Memory*>(cookie);
    if (failsNow(memory)) {
        errno = EIO;
        return -1;
    }
    const size_t max = memory->pattern == 0
                           ? size
                           : 1 + (memory->pattern * 7919U * static_cast<unsigned>(memory->calls)) % 1500;
    const size_t fault = faultPosition(memory);
    size_t length = (memory->size < fault ? memory->size : fault) - memory->at;
    length = length < max ? length : max;
    length = length < size ? length : size;
    memcpy(bytes, memory->bytes + memory->at, length);
    memory->at += length;
    return static_cast<ssize_t>(length);
}

/* A device that fills up: stores as much as fits, then nothing. */
static ssize_t writeMemory(void* cookie, const char* bytes, size_t size)
{
    Memory* memory = static_cast<Memory*>(cookie);
    if (size == 0)
        return 0;
    size_t length = memory->size - memory->at;
    length = length < size ? length : size;
    if (failsNow(memory) || length == 0) {
        errno = ENOSPC;
#if defined(__GLIBC__)
        return 0;
#else
        return -1;
#endif
    }
    memcpy(memory->bytes + memory->at, bytes, length);
    memory->at += length;
    return static_cast<ssize_t>(length);
}

static FILE* openMemory(Memory* memory, const char* mode)
{
    cookie_io_functions_t calls = {};
    calls.read = readMemory;
    calls.write = writeMemory;
    memory->at = 0;
    memory->calls = 0;
    FILE* fp = fopencookie(memory, mode, calls);
    if (fp == nullptr)
        abort();
    return fp;
}

/* Chooses how many bytes each read returns, and which read fails. */
static void chooseFaults(Memory* memory)
{
    memory->pattern = chance(3) == 0 && likeGlibc ? 1 + chance(1000) : 0;
    memory->failing = chance(6) == 0 ? 1 + static_cast<int>(chance(4)) : 0;
    memory->onwards = chance(2) == 0 || !likeGlibc;
}

/* The stream that the C library scans. */
static FILE* openTheirs(Memory* memory)
{
    static char buffer[sizeof memory->bytes];
    FILE* fp = openMemory(memory, "r");
    if (!likeGlibc)
        setvbuf(fp, buffer, _IOFBF, sizeof buffer);
    return fp;
}

/* ---- Comparing ---------------------------------------------------------- */

static long comparisons;
static long differences;

static void differ(const char* what, const char* format, int theirs, int ours, const char* bytes, size_t size)
{
    if (++differences > 20)
        return;
    printf("%s \"", what);
    for (; *format != '\0'; ++format)
        printf(*format == '\n' ? "\\n" : "%c", *format);
    printf("\": C library %d, module %d\n  after: ", theirs, ours);
    for (size_t i = 0; i < size && i < 100; ++i)
        printf(bytes[i] >= ' ' && bytes[i] <= '~' ? "%c" : "\\x%02x", static_cast<unsigned char>(bytes[i]));
    printf("\n");
}

/* ---- The formats -------------------------------------------------------- */

/*
 * Every format of the description in formats/, and "%f" alone. Another test checks that
 * the description contains every format of the module.
 */
struct FloatAlone {
    static constexpr const char* text() { return "%f"; }
};
template <size_t which> struct Scanned : formats::FormatAt<formats::Direction::In, which> {
};
template <> struct Scanned<formats::inFormats.size()> : FloatAlone {
};
template <size_t which> struct Printed : formats::FormatAt<formats::Direction::Out, which> {
};

enum : size_t { SCANNED_COUNT = formats::inFormats.size() + 1, PRINTED_COUNT = formats::outFormats.size() };

/* What a conversion reads into or prints. */
enum Conversion { TEXT, BYTE, SHORT, WORD, INT, REAL, CONVERSIONS };

/* Advances `format` past its next conversion and returns that one; CONVERSIONS if there is none. */
constexpr Conversion nextConversion(const char*& format)
{
    while (*format != '\0' && *format != '%')
        ++format;
    if (*format == '\0')
        return CONVERSIONS;
    int halves = 0;
    for (++format; (*format >= '0' && *format <= '9') || *format == '.' || *format == 'h'; ++format)
        halves += *format == 'h';
    switch (*format++) {
    case 's':
        return TEXT;
    case 'f':
        return REAL;
    case 'd':
        return INT;
    default:
        return halves == 2 ? BYTE : halves == 1 ? SHORT : WORD;
    }
}

constexpr Conversion conversionAt(const char* format, size_t at)
{
    Conversion conversion = nextConversion(format);
    for (; at > 0; --at)
        conversion = nextConversion(format);
    return conversion;
}

/* How many of the first `limit` conversions are `counted`. */
constexpr size_t countConversions(const char* format, Conversion counted, size_t limit)
{
    size_t count = 0;
    for (size_t at = 0; at < limit; ++at) {
        const Conversion conversion = nextConversion(format);
        if (conversion == CONVERSIONS)
            break;
        count += conversion == counted;
    }
    return count;
}

constexpr size_t conversionsIn(const char* format)
{
    size_t count = 0;
    while (nextConversion(format) != CONVERSIONS)
        ++count;
    return count;
}

/* The maximum number of this conversion in one format, at least 1. */
constexpr size_t maxIn(const formats::FormatStrings& all, Conversion conversion)
{
    size_t max = 1;
    for (const formats::FormatString& format : all) {
        const size_t count = countConversions(format.text, conversion, sizeof format.text);
        max = count > max ? count : max;
    }
    return max;
}

constexpr size_t maxOf(Conversion conversion)
{
    const size_t in = maxIn(formats::inFormats, conversion);
    const size_t out = maxIn(formats::outFormats, conversion);
    return in > out ? in : out;
}

struct Fields {
    char t[maxOf(TEXT)][ALG_MAC_SIZE];
    uint8_t b[maxOf(BYTE)];
    uint16_t h[maxOf(SHORT)];
    uint32_t w[maxOf(WORD)];
    int d[maxOf(INT)];
    float f[maxOf(REAL)];
};

/* The field for the conversion at index `at` of the format. */
template <typename Format, size_t at, typename AnyFields> auto& fieldAt(AnyFields& r)
{
    constexpr Conversion conversion = conversionAt(Format::text(), at);
    constexpr size_t nth = countConversions(Format::text(), conversion, at);
    if constexpr (conversion == TEXT)
        return r.t[nth];
    else if constexpr (conversion == BYTE)
        return r.b[nth];
    else if constexpr (conversion == SHORT)
        return r.h[nth];
    else if constexpr (conversion == WORD)
        return r.w[nth];
    else if constexpr (conversion == INT)
        return r.d[nth];
    else
        return r.f[nth];
}

/* ---- The calls ---------------------------------------------------------- */

template <typename T> T* address(T& field)
{
    return &field;
}
static char* address(char (&field)[ALG_MAC_SIZE])
{
    return field;
}
template <typename T> const T& printed(const T& field)
{
    return field;
}
static const char* printed(const char (&field)[ALG_MAC_SIZE])
{
    return field;
}
static double printed(const float& field)
{
    return static_cast<double>(field);
}

template <typename Format, size_t... at>
static int scanBy(Format, formats::Indices<at...>, FILE* fp, const char* line, Fields& r)
{
    return fp != nullptr ? fscanf(fp, Format::text(), address(fieldAt<Format, at>(r))...)
                         : sscanf(line, Format::text(), address(fieldAt<Format, at>(r))...);
}

template <typename Format, size_t... at>
static int scanBy(Format, formats::Indices<at...>, TextIn& in, Fields& r)
{
    return scan(in, Format{}, fieldAt<Format, at>(r)...);
}

template <typename Format, size_t... at>
static int printBy(Format, formats::Indices<at...>, FILE* fp, const Fields& r)
{
    return fprintf(fp, Format::text(), printed(fieldAt<Format, at>(r))...) == -1 ? -1 : 0;
}

template <typename Format, size_t... at>
static int printBy(Format, formats::Indices<at...>, TextOut& out, const Fields& r)
{
    return print(out, Format{}, fieldAt<Format, at>(r)...);
}

template <typename Format> using FieldsOf = typename formats::IndicesTo<conversionsIn(Format::text())>::type;

/* The calls for one format: the C library's and the module's. */
struct ScanCalls {
    const char* format;
    int (*theirs)(FILE* fp, const char* line, Fields& r);
    int (*ours)(TextIn& in, Fields& r);
};
struct PrintCalls {
    const char* format;
    int (*theirs)(FILE* fp, const Fields& r);
    int (*ours)(TextOut& out, const Fields& r);
};

template <typename Format> constexpr ScanCalls scanCalls()
{
    return {Format::text(),
            [](FILE* fp, const char* line, Fields& r) {
                return scanBy(Format{}, FieldsOf<Format>{}, fp, line, r);
            },
            [](TextIn& in, Fields& r) { return scanBy(Format{}, FieldsOf<Format>{}, in, r); }};
}

template <typename Format> constexpr PrintCalls printCalls()
{
    return {Format::text(),
            [](FILE* fp, const Fields& r) { return printBy(Format{}, FieldsOf<Format>{}, fp, r); },
            [](TextOut& out, const Fields& r) { return printBy(Format{}, FieldsOf<Format>{}, out, r); }};
}

struct AllScans {
    ScanCalls calls[SCANNED_COUNT];
};
struct AllPrints {
    PrintCalls calls[PRINTED_COUNT];
};

template <size_t... which> constexpr AllScans allScans(formats::Indices<which...>)
{
    return {{scanCalls<Scanned<which>>()...}};
}
template <size_t... which> constexpr AllPrints allPrints(formats::Indices<which...>)
{
    return {{printCalls<Printed<which>>()...}};
}

static constexpr AllScans everyScan = allScans(formats::IndicesTo<SCANNED_COUNT>::type{});
static constexpr AllPrints everyPrint = allPrints(formats::IndicesTo<PRINTED_COUNT>::type{});

/* The calls of "%12s", which reads any word. */
constexpr const ScanCalls& wordScan()
{
    size_t which = 0;
    while (!formats::sameText(everyScan.calls[which].format, "%12s"))
        ++which;
    return everyScan.calls[which];
}

static void fillFields(Fields* r)
{
    unsigned char* bytes = reinterpret_cast<unsigned char*>(r);
    for (size_t i = 0; i < sizeof *r; ++i)
        bytes[i] = static_cast<unsigned char>(chance(256));
    for (char(&text)[ALG_MAC_SIZE] : r->t) {
        const size_t length = chance(4) == 0 ? chance(ALG_MAC_SIZE) : 12;
        for (size_t k = 0; k < length; ++k)
            text[k] = "0123456789abcdef"[chance(16)];
        text[length] = '\0';
    }
    for (float& real : r->f) {
        switch (chance(4)) {
        case 0:
            real = static_cast<float>(chance(100000)) / 100;
            break;
        case 1:
            real = static_cast<float>(chance(2000)) / 16 - 50; /* halfway cases */
            break;
        case 2:
            real = static_cast<float>(chance(4000000000U)) / 8;
            break;
        default:
            break; /* any bits */
        }
    }
    for (uint16_t& number : r->h) {
        if (chance(2) == 0)
            number = static_cast<uint16_t>(chance(1200));
    }
}

/* ---- The comparisons ---------------------------------------------------- */

static Memory theirMemory; /* filled by the program */
static Memory ourMemory;

/*
 * Compares the fields. Exception: for %d of a number beyond 63 bits, the C library
 * saturates, so that the int is -1 or 0. The module keeps the low bits, as with %u.
 */
static bool sameFields(const Fields& theirs, Fields& ours)
{
    if (theirs.d[0] == -1 || theirs.d[0] == 0)
        ours.d[0] = theirs.d[0];
    return memcmp(&theirs, &ours, sizeof theirs) == 0;
}

/* Scans with one format on both sides. Returns false if the results differ. */
static bool compareScan(const char* what, const ScanCalls& calls, FILE* fp, const char* line, TextIn& in,
                        Fields& theirs, Fields& ours, int* result)
{
    *result = calls.theirs(fp, line, theirs);
    const int ourResult = calls.ours(in, ours);
    ++comparisons;
    if (*result == ourResult && sameFields(theirs, ours))
        return true;
    if (line != nullptr)
        differ(what, calls.format, *result, ourResult, line, strlen(line));
    else
        differ(what, calls.format, *result, ourResult, theirMemory.bytes, theirMemory.size);
    return false;
}

/* Scans a stream with many calls. */
static void compareStream()
{
    ourMemory = theirMemory;
    FILE* theirFile = openTheirs(&theirMemory);
    FILE* ourFile = openMemory(&ourMemory, "r");
    TextIn in;
    startText(in, File{ourFile});
    Fields theirs;
    fillFields(&theirs);
    Fields ours = theirs;
    int ends = 0;
    const uint32_t first = chance(SCANNED_COUNT); /* if odd, every call uses this format */
    for (int i = 0; i < 400 && ends < 4; ++i) {
        const uint32_t which = first % 2 == 0 ? chance(SCANNED_COUNT) : first;
        int result;
        if (!compareScan("fscanf", everyScan.calls[which], theirFile, nullptr, in, theirs, ours, &result))
            break;
        ends += result == -1;
        if (result == 0) /* skips the text that neither side converts */
            compareScan("fscanf", wordScan(), theirFile, nullptr, in, theirs, ours, &result);
    }
    fclose(theirFile);
    fclose(ourFile);
}

/* Scans each line separately, and counts the lines. */
static void compareLines()
{
    ourMemory = theirMemory;
    FILE* theirFile = openTheirs(&theirMemory);
    FILE* ourFile = openMemory(&ourMemory, "r");
    TextIn in;
    startText(in, File{ourFile});
    Fields theirs;
    fillFields(&theirs);
    Fields ours = theirs;
    int lines = 0;
    for (;;) {
        char line[1024];
        const bool theirLine = fgets(line, sizeof line, theirFile) != nullptr;
        const bool ourLine = nextLine(in);
        ++comparisons;
        if (theirLine != ourLine)
            differ("fgets", "", theirLine, ourLine, theirMemory.bytes, theirMemory.size);
        if (!theirLine || !ourLine)
            break;
        ++lines;
        int result;
        if (!compareScan("sscanf", everyScan.calls[chance(SCANNED_COUNT)], nullptr, line, in, theirs, ours,
                         &result))
            break;
    }
    fclose(theirFile);
    fclose(ourFile);

    FILE* counted = openMemory(&ourMemory, "r");
    const int ourCount = countLines(File{counted});
    fclose(counted);
    theirFile = openMemory(&theirMemory, "r");
    char line[1024];
    for (lines = 0; fgets(line, sizeof line, theirFile) != nullptr;)
        ++lines;
    fclose(theirFile);
    ++comparisons;
    if (lines != ourCount)
        differ("count", "", lines, ourCount, theirMemory.bytes, theirMemory.size);
}

/* Makes many prints to a device that may fill up or fail. */
static void comparePrints()
{
    theirMemory.size = chance(3) == 0 && likeGlibc ? chance(9000) : sizeof theirMemory.bytes;
    theirMemory.failing = chance(4) == 0 && likeGlibc ? 1 + static_cast<int>(chance(6)) : 0;
    theirMemory.onwards = chance(2) == 0;
    memset(theirMemory.bytes, 0, sizeof theirMemory.bytes);
    ourMemory = theirMemory;
    FILE* theirFile = openMemory(&theirMemory, "w");
    FILE* ourFile = openMemory(&ourMemory, "w");
    static char theirBuffer[4096];
    static char ourBuffer[4096];
    switch (chance(5)) {
    case 0: /* unbuffered: one write for each print */
        setvbuf(theirFile, nullptr, _IONBF, 0);
        setvbuf(ourFile, nullptr, _IONBF, 0);
        break;
    case 1: {
        const size_t size = 512 + chance(3585);
        setvbuf(theirFile, theirBuffer, _IOFBF, size);
        setvbuf(ourFile, ourBuffer, _IOFBF, size);
        break;
    }
    default:
        break;
    }
    TextOut out;
    startText(out, File{ourFile});
    const int prints = static_cast<int>(chance(4) == 0 ? chance(200) : chance(20));
    for (int i = 0; i < prints; ++i) {
        Fields fields;
        fillFields(&fields);
        const PrintCalls& calls = everyPrint.calls[chance(PRINTED_COUNT)];
        const int theirResult = calls.theirs(theirFile, fields);
        const int ourResult = calls.ours(out, fields);
        ++comparisons;
        if (theirResult != ourResult)
            differ("fprintf", calls.format, theirResult, ourResult, ourMemory.bytes, ourMemory.at);
    }
    const int theirClose = fclose(theirFile);
    const int ourClose = closeText(out);
    ++comparisons;
    if (theirClose != ourClose)
        differ("fclose", "", theirClose, ourClose, ourMemory.bytes, ourMemory.at);
    if (theirMemory.at != ourMemory.at || memcmp(theirMemory.bytes, ourMemory.bytes, ourMemory.at) != 0)
        differ("printed bytes", "", static_cast<int>(theirMemory.at), static_cast<int>(ourMemory.at),
               ourMemory.bytes, ourMemory.at);
}

#endif
