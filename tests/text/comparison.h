/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The text layer beside the C library's own formatted calls: the same bytes, the
 * same formats, the same faults, call by call. What is in the bytes, and every
 * choice, is left to the program: a long random run, or a fuzz target. Keeps to
 * the C library, so that it runs on every target.
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

using namespace alg_internal;

#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"

/* The program's choice of a number below this one. */
static uint32_t chance(uint32_t below);

/* ---- What is compared ---------------------------------------------------- */

/*
 * The C libraries differ among themselves in some forms of floats, in a read
 * error that is over at the next try, in what a number that ends with their
 * buffer leaves, and in how much of a print they hand on at once to a device
 * that is full. The module does as glibc does; with another library those are
 * left out.
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
    bool after;       /* whether those after it fail too */
    unsigned pattern; /* of how much a call gives */
};

/*
 * How often a C library reads depends, but for glibc, on how it is asked; there
 * the fault comes at a place rather than at a call.
 */
static size_t faultPlace(const Memory* memory)
{
    return !likeGlibc && memory->failing != 0 ? static_cast<size_t>(memory->failing) * 700
                                              : sizeof memory->bytes;
}

static bool failsNow(Memory* memory)
{
    ++memory->calls;
    if (!likeGlibc)
        return memory->at >= faultPlace(memory);
    return memory->failing != 0 &&
           (memory->after ? memory->calls >= memory->failing : memory->calls == memory->failing);
}

static ssize_t readMemory(void* cookie, char* bytes, size_t size)
{
    Memory* memory = static_cast<Memory*>(cookie);
    if (failsNow(memory)) {
        errno = EIO;
        return -1;
    }
    const size_t most = memory->pattern == 0
                            ? size
                            : 1 + (memory->pattern * 7919U * static_cast<unsigned>(memory->calls)) % 1500;
    const size_t fault = faultPlace(memory);
    size_t got = (memory->size < fault ? memory->size : fault) - memory->at;
    got = got < most ? got : most;
    got = got < size ? got : size;
    memcpy(bytes, memory->bytes + memory->at, got);
    memory->at += got;
    return static_cast<ssize_t>(got);
}

/* A device that fills up: takes what it has room for, then nothing. */
static ssize_t writeMemory(void* cookie, const char* bytes, size_t size)
{
    Memory* memory = static_cast<Memory*>(cookie);
    if (size == 0)
        return 0;
    size_t taken = memory->size - memory->at;
    taken = taken < size ? taken : size;
    if (failsNow(memory) || taken == 0) {
        errno = ENOSPC;
#if defined(__GLIBC__)
        return 0;
#else
        return -1;
#endif
    }
    memcpy(memory->bytes + memory->at, bytes, taken);
    memory->at += taken;
    return static_cast<ssize_t>(taken);
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

/* How a file is given in pieces, and which read of it fails. */
static void chooseFaults(Memory* memory)
{
    memory->pattern = chance(3) == 0 && likeGlibc ? 1 + chance(1000) : 0;
    memory->failing = chance(6) == 0 ? 1 + static_cast<int>(chance(4)) : 0;
    memory->after = chance(2) == 0 || !likeGlibc;
}

/* The stream that the C library scans. */
static FILE* openTheirs(Memory* memory)
{
    static char whole[sizeof memory->bytes];
    FILE* fp = openMemory(memory, "r");
    if (!likeGlibc)
        setvbuf(fp, whole, _IOFBF, sizeof whole);
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

struct Fields {
    char t[2][16];
    uint8_t b[10];
    uint16_t h[14];
    uint32_t w[2];
    int d;
    float f[2];
};

/* Every format of the module: (number, text, fields). */
#define SCANNED(X)                                                                                         \
    X(0, "%12s %12s", r.t[0], r.t[1])                                                                      \
    X(1, " %hhu", r.b[0])                                                                                  \
    X(2, " %hhu %hhu", r.b[0], r.b[1])                                                                     \
    X(3, " %hu", r.h[0])                                                                                   \
    X(4, " %hu %hu", r.h[0], r.h[1])                                                                       \
    X(5, "%hhu %hhu %12s %12s %hhu %hu %hhu %hu %hhu ", r.b[0], r.b[1], r.t[0], r.t[1], r.b[2], r.h[0],    \
      r.b[3], r.h[1], r.b[4])                                                                              \
    X(6, "%hhu %hu %hu %hu %hhu %hhu %hhu %hhu %hhu %hhu %hhu ", r.b[0], r.h[0], r.h[1], r.h[2], r.b[1],   \
      r.b[2], r.b[3], r.b[4], r.b[5], r.b[6], r.b[7])                                                      \
    X(7, "%12s %12s %hhu %hu %hhu %hu ", r.t[0], r.t[1], r.b[0], r.h[0], r.b[1], r.h[1])                   \
    X(8, "%12s %12s ", r.t[0], r.t[1])                                                                     \
    X(9, "%hhu %hu %hu %hhu %hhu ", r.b[0], r.h[0], r.h[1], r.b[1], r.b[2])                                \
    X(10, "%3hu %12s %12s %2hu %4hu %4hu %4hu %4hu %hu %hu %hu %hu %hu %hu %hu\n", r.h[0], r.t[0], r.t[1], \
      r.h[1], r.h[2], r.h[3], r.h[4], r.h[5], r.h[6], r.h[7], r.h[8], r.h[9], r.h[10], r.h[11], r.h[12])   \
    X(11, "%12s %hhu %hhu %hhu %hu %hhu %hhu %hhu %hhu\n", r.t[0], r.b[0], r.b[1], r.b[2], r.h[0], r.b[3], \
      r.b[4], r.b[5], r.b[6])                                                                              \
    X(12, "%12s", r.t[0])                                                                                  \
    X(13, "%12s %hhu", r.t[0], r.b[0])                                                                     \
    X(14, "%hhu %hhu %hhu %hhu %hhu %hu", r.b[0], r.b[1], r.b[2], r.b[3], r.b[4], r.h[0])                  \
    X(15, "%hhu", r.b[0])                                                                                  \
    X(16, "%12s %12s %2hhu %3hhu %3hhu\n", r.t[0], r.t[1], r.b[0], r.b[1], r.b[2])                         \
    X(17, "%12s %hhu %f %hhu %hu %f %hu", r.t[0], r.b[0], r.f[0], r.b[1], r.h[0], r.f[1], r.h[1])          \
    X(18, "%12s %12s %hhu\n", r.t[0], r.t[1], r.b[0])                                                      \
    X(19, "%hhu %hhu %u %u\n", r.b[0], r.b[1], r.w[0], r.w[1])                                             \
    X(20, "%12s %12s %hhu %hu\n", r.t[0], r.t[1], r.b[0], r.h[0])                                          \
    X(21, "%12s %12s %u %hhu\n", r.t[0], r.t[1], r.w[0], r.b[0])                                           \
    X(22, "%f", r.f[0])

enum { SCANNED_COUNT = 23 };

#define PRINTED(X)                                                                                        \
    X(0, "%12s %12s", r.t[0], r.t[1])                                                                     \
    X(1, " %hhu", r.b[0])                                                                                 \
    X(2, " %hhu %hhu", r.b[0], r.b[1])                                                                    \
    X(3, " %hu", r.h[0])                                                                                  \
    X(4, " %hu %hu", r.h[0], r.h[1])                                                                      \
    X(5, "%hhu %hhu %12s %12s %hhu %hu %hhu %hu %hhu ", r.b[0], r.b[1], r.t[0], r.t[1], r.b[2], r.h[0],   \
      r.b[3], r.h[1], r.b[4])                                                                             \
    X(6, "%hhu %hu %hu %hu %hhu %hhu %hhu %hhu %hhu %hhu %hhu ", r.b[0], r.h[0], r.h[1], r.h[2], r.b[1],  \
      r.b[2], r.b[3], r.b[4], r.b[5], r.b[6], r.b[7])                                                     \
    X(7, "%3hu %12s %12s %2hu %4hu %4hu %4hu %4hu %hu %hu %hu %hu %hu %hu %hu\n", r.h[0], r.t[0], r.t[1], \
      r.h[1], r.h[2], r.h[3], r.h[4], r.h[5], r.h[6], r.h[7], r.h[8], r.h[9], r.h[10], r.h[11], r.h[12])  \
    X(8, "%12s %hhu %hhu %hhu %hu %hhu %hhu %hhu %hhu\n", r.t[0], r.b[0], r.b[1], r.b[2], r.h[0], r.b[3], \
      r.b[4], r.b[5], r.b[6])                                                                             \
    X(9, "%d", r.d)                                                                                       \
    X(10, "%12s %hhu\n", r.t[0], r.b[0])                                                                  \
    X(11, "%12s %12s %2hhu %3hhu %3hhu\n", r.t[0], r.t[1], r.b[0], r.b[1], r.b[2])                        \
    X(12, "%12s", r.t[0])                                                                                 \
    X(13, " %3hu", r.h[0])                                                                                \
    X(14, "%12s %2hhu %.2f %2hhu %4hu %.2f %4hu", r.t[0], r.b[0], r.f[0], r.b[1], r.h[0], r.f[1], r.h[1]) \
    X(15, " %2hhu", r.b[0])                                                                               \
    X(16, " %4hu", r.h[0])                                                                                \
    X(17, "%hhu %hhu %u %u\n", r.b[0], r.b[1], r.w[0], r.w[1])                                            \
    X(18, "%12s %12s %d %hhu\n", r.t[0], r.t[1], r.d, r.b[0])

enum { PRINTED_COUNT = 19 };

template <typename T> T* address(T& field)
{
    return &field;
}
static char* address(char (&field)[16])
{
    return field;
}
template <typename T> const T& printed(const T& field)
{
    return field;
}
static const char* printed(const char (&field)[16])
{
    return field;
}
static double printed(const float& field)
{
    return static_cast<double>(field);
}

template <typename... F> int libraryScan(FILE* fp, const char* line, const char* format, F&... fields)
{
    return fp != nullptr ? fscanf(fp, format, address(fields)...) : sscanf(line, format, address(fields)...);
}

template <typename... F> int libraryPrint(FILE* fp, const char* format, const F&... fields)
{
    return fprintf(fp, format, printed(fields)...) == -1 ? -1 : 0;
}

static int scanTheirs(int which, FILE* fp, const char* line, Fields& r)
{
    switch (which) {
#define X(number, format, ...) \
    case number:               \
        return libraryScan(fp, line, format, __VA_ARGS__);
        SCANNED(X)
#undef X
    default:
        abort();
    }
}

static int scanOurs(int which, TextIn& in, Fields& r)
{
    switch (which) {
#define X(number, format, ...) \
    case number:               \
        return scan(in, FORMAT(format), __VA_ARGS__);
        SCANNED(X)
#undef X
    default:
        abort();
    }
}

static int printTheirs(int which, FILE* fp, const Fields& r)
{
    switch (which) {
#define X(number, format, ...) \
    case number:               \
        return libraryPrint(fp, format, __VA_ARGS__);
        PRINTED(X)
#undef X
    default:
        return fprintf(fp, "\n") == -1 ? -1 : 0;
    }
}

static int printOurs(int which, TextOut& out, const Fields& r)
{
    switch (which) {
#define X(number, format, ...) \
    case number:               \
        return print(out, FORMAT(format), __VA_ARGS__);
        PRINTED(X)
#undef X
    default:
        return print(out, FORMAT("\n"));
    }
}

#define X(number, format, ...) format,
static const char* const scannedFormats[] = {SCANNED(X)};
static const char* const printedFormats[] = {PRINTED(X) "\n"};
#undef X

static void fillFields(Fields* r)
{
    unsigned char* bytes = reinterpret_cast<unsigned char*>(r);
    for (size_t i = 0; i < sizeof *r; ++i)
        bytes[i] = static_cast<unsigned char>(chance(256));
    for (int i = 0; i < 2; ++i) {
        const size_t length = chance(4) == 0 ? chance(16) : 12;
        for (size_t k = 0; k < length; ++k)
            r->t[i][k] = "0123456789abcdef"[chance(16)];
        r->t[i][length] = '\0';
        switch (chance(4)) {
        case 0:
            r->f[i] = static_cast<float>(chance(100000)) / 100;
            break;
        case 1:
            r->f[i] = static_cast<float>(chance(2000)) / 16 - 50; /* halfway cases */
            break;
        case 2:
            r->f[i] = static_cast<float>(chance(4000000000U)) / 8;
            break;
        default:
            break; /* any bits at all */
        }
    }
    for (int i = 0; i < 14; ++i) {
        if (chance(2) == 0)
            r->h[i] = static_cast<uint16_t>(chance(1200));
    }
}

/* ---- The comparisons ---------------------------------------------------- */

static Memory theirMemory; /* begins as the program has filled it */
static Memory ourMemory;

static bool sameFields(const Fields& theirs, const Fields& ours)
{
    return memcmp(&theirs, &ours, sizeof theirs) == 0;
}

/* A stream scanned through by one call after the other. */
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
    const int one = static_cast<int>(chance(SCANNED_COUNT)); /* a file of one kind, or of all */
    for (int i = 0; i < 400 && ends < 4; ++i) {
        const int which = one % 2 == 0 ? static_cast<int>(chance(SCANNED_COUNT)) : one;
        const int theirResult = scanTheirs(which, theirFile, nullptr, theirs);
        const int ourResult = scanOurs(which, in, ours);
        ++comparisons;
        if (theirResult != ourResult || !sameFields(theirs, ours)) {
            differ("fscanf", scannedFormats[which], theirResult, ourResult, theirMemory.bytes,
                   theirMemory.size);
            break;
        }
        ends += theirResult == -1;
        if (theirResult == 0) { /* over what neither takes */
            const int theirSkip = scanTheirs(12, theirFile, nullptr, theirs);
            const int ourSkip = scanOurs(12, in, ours);
            ++comparisons;
            if (theirSkip != ourSkip || !sameFields(theirs, ours))
                differ("fscanf", "%12s", theirSkip, ourSkip, theirMemory.bytes, theirMemory.size);
        }
    }
    fclose(theirFile);
    fclose(ourFile);
}

/* Lines, each scanned by itself, and their count. */
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
        const int which = static_cast<int>(chance(SCANNED_COUNT));
        const int theirResult = scanTheirs(which, nullptr, line, theirs);
        const int ourResult = scanOurs(which, in, ours);
        ++comparisons;
        if (theirResult != ourResult || !sameFields(theirs, ours)) {
            differ("sscanf", scannedFormats[which], theirResult, ourResult, line, strlen(line));
            break;
        }
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

/* Prints one after the other onto a device that may fill up or fail. */
static void comparePrints()
{
    theirMemory.size = chance(3) == 0 && likeGlibc ? chance(9000) : sizeof theirMemory.bytes;
    theirMemory.failing = chance(4) == 0 && likeGlibc ? 1 + static_cast<int>(chance(6)) : 0;
    theirMemory.after = chance(2) == 0;
    memset(theirMemory.bytes, 0, sizeof theirMemory.bytes);
    ourMemory = theirMemory;
    FILE* theirFile = openMemory(&theirMemory, "w");
    FILE* ourFile = openMemory(&ourMemory, "w");
    static char theirBuffer[4096];
    static char ourBuffer[4096];
    switch (chance(6)) {
    case 0: /* unbuffered: one print, one write */
        setvbuf(theirFile, nullptr, _IONBF, 0);
        setvbuf(ourFile, nullptr, _IONBF, 0);
        break;
    case 1: {
        const size_t size = 512 + chance(3584);
        setvbuf(theirFile, theirBuffer, _IOFBF, size);
        setvbuf(ourFile, ourBuffer, _IOFBF, size);
        break;
    }
    case 2: /* line by line, as a terminal has it */
        if (likeGlibc) {
            setvbuf(theirFile, theirBuffer, _IOLBF, sizeof theirBuffer);
            setvbuf(ourFile, ourBuffer, _IOLBF, sizeof ourBuffer);
        }
        break;
    default:
        break;
    }
    TextOut out;
    startText(out, File{ourFile});
    const int prints = static_cast<int>(chance(4) == 0 ? chance(200) : chance(20));
    for (int i = 0; i < prints; ++i) {
        Fields fields;
        fillFields(&fields);
        const int which = static_cast<int>(chance(PRINTED_COUNT + 1));
        const int theirResult = printTheirs(which, theirFile, fields);
        const int ourResult = printOurs(which, out, fields);
        ++comparisons;
        if (theirResult != ourResult)
            differ("fprintf", printedFormats[which], theirResult, ourResult, ourMemory.bytes, ourMemory.at);
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
