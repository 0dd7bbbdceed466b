/* SPDX-License-Identifier: Apache-2.0 */
#ifndef _GNU_SOURCE
#define _GNU_SOURCE /* memfd_create */
#endif
#include "fuzzing.h"

#include <stdarg.h>
#include <stdio.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

void fuzz::broken(const char* what, const char* file, int line)
{
    fprintf(stderr, "%s:%d: does not hold: %s\n", file, line, what);
    abort();
}

/* ---- Input -------------------------------------------------------------- */

void fuzz::Input::mac(char (&field)[16])
{
    memset(field, 0, sizeof field);
    const int length = upTo(15);
    if (byte() % 2 == 0) {
        const size_t at = byte();
        for (size_t i = 0; i < static_cast<size_t>(length) && at + i < left && bytes[at + i] != '\0'; ++i)
            field[i] = static_cast<char>(bytes[at + i]);
        return;
    }
    for (int i = 0; i < length; ++i) {
        const uint8_t any = byte();
        field[i] = static_cast<char>(any != 0 ? any : 'a');
    }
}

void fuzz::Input::hexMac(char (&field)[16], int least)
{
    memset(field, 0, sizeof field);
    const int length = least + upTo(12 - least);
    for (int i = 0; i < length; ++i)
        field[i] = "0123456789abcdefABCDEF"[byte() % 22];
}

/* ---- The file ----------------------------------------------------------- */

static int fileDescriptor()
{
    static const int descriptor = memfd_create("fuzz", 0);
    FUZZ_EXPECT(descriptor >= 0);
    return descriptor;
}

const char* fuzz::memoryFile()
{
    static char path[64];
    if (path[0] == '\0')
        snprintf(path, sizeof path, "/proc/self/fd/%d", fileDescriptor());
    return path;
}

const char* fuzz::file(Input& input)
{
    const int fd = fileDescriptor();
    const bool missing = input.upTo(63) == 1;
    if (missing)
        input.drop();
    FUZZ_EXPECT(ftruncate(fd, 0) == 0);
    FUZZ_EXPECT(pwrite(fd, input.text(), input.size(), 0) == static_cast<ssize_t>(input.size()));
    return missing ? "/proc/self/fd/none" : memoryFile();
}

bool fuzz::onOneLine(const char (&field)[16])
{
    return memchr(field, '\n', sizeof field) == nullptr;
}

/* The file's bytes; to be freed. */
static char* fileBytes(size_t& size)
{
    struct stat status;
    FUZZ_EXPECT(fstat(fileDescriptor(), &status) == 0);
    size = static_cast<size_t>(status.st_size);
    char* bytes = static_cast<char*>(malloc(size + 1));
    FUZZ_EXPECT(pread(fileDescriptor(), bytes, size, 0) == status.st_size);
    return bytes;
}

bool fuzz::fileIs(const Input& input)
{
    size_t size;
    char* bytes = fileBytes(size);
    const bool same = size == input.size() && (size == 0 || memcmp(bytes, input.text(), size) == 0);
    free(bytes);
    return same;
}

int fuzz::fileLines()
{
    size_t size;
    char* bytes = fileBytes(size);
    int lines = 0;
    for (size_t i = 0; i < size; ++i)
        lines += bytes[i] == '\n';
    free(bytes);
    return lines;
}

int fuzz::records(const char* path)
{
    const int lines = dataLineCounter(path);
    return lines > 0 ? lines : 0;
}

/* ---- Arrays ------------------------------------------------------------- */

#if defined(__SANITIZE_ADDRESS__)
#define FUZZ_POISONED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define FUZZ_POISONED 1
#endif
#endif

/*
 * Under the address sanitizer an access to a zone ends the run where it is
 * made. Without it a write shows in the pattern.
 */
#if defined(FUZZ_POISONED)
extern "C" void __asan_poison_memory_region(const volatile void* start, size_t size);
extern "C" void __asan_unpoison_memory_region(const volatile void* start, size_t size);
#else
static void __asan_poison_memory_region(const volatile void*, size_t) {}
static void __asan_unpoison_memory_region(const volatile void*, size_t) {}
#endif

enum { ZONE = 64, ZONE_BYTE = 0xC3 };

void* fuzz::guarded(size_t size)
{
    char* all = static_cast<char*>(malloc(ZONE + size + ZONE));
    FUZZ_EXPECT(all != nullptr);
    memset(all, ZONE_BYTE, ZONE);
    memset(all + ZONE, UNTOUCHED, size);
    memset(all + ZONE + size, ZONE_BYTE, ZONE);
    __asan_poison_memory_region(all, ZONE);
    __asan_poison_memory_region(all + ZONE + size, ZONE);
    return all + ZONE;
}

void fuzz::release(void* array, size_t size)
{
    char* all = static_cast<char*>(array) - ZONE;
    __asan_unpoison_memory_region(all, ZONE + size + ZONE);
    for (int i = 0; i < ZONE; ++i) {
        FUZZ_EXPECT(static_cast<uint8_t>(all[i]) == ZONE_BYTE);
        FUZZ_EXPECT(static_cast<uint8_t>(all[ZONE + size + i]) == ZONE_BYTE);
    }
    free(all);
}

bool fuzz::macHolds(const char (&field)[16])
{
    for (size_t i = 13; i < sizeof field; ++i) {
        if (field[i] != UNTOUCHED)
            return false;
    }
    return memchr(field, '\0', 13) != nullptr ||
           (field[0] == UNTOUCHED && memcmp(field, field + 1, sizeof field - 1) == 0);
}

/* ---- The host ----------------------------------------------------------- */

int g_yra_debug = 6;
static int messageCount;

/* Formats every message, so that its arguments are read as its format says. */
void libzo_log(const char* format, ...)
{
    static char text[4096];
    static const char prefix[] = "libzo: [%s:%d]: ";
    FUZZ_EXPECT(strncmp(format, prefix, sizeof prefix - 1) == 0);
    ++messageCount;
    va_list args;
    va_start(args, format);
    const int length = vsnprintf(text, sizeof text, format, args);
    va_end(args);
    FUZZ_EXPECT(length > 0 && static_cast<size_t>(length) < sizeof text);
}

int fuzz::messages()
{
    return messageCount;
}

/* The streams that the module holds. Those of the fuzzer itself are opened outside a run. */
static FILE* streams[8];
static bool running;

static void replaceStream(const FILE* old, FILE* with)
{
    for (FILE*& stream : streams) {
        if (stream == old) {
            stream = with;
            return;
        }
    }
    FUZZ_EXPECT(!"a stream that was not opened, or too many");
}

extern "C" {
FILE* __real_fopen(const char* path, const char* mode);
int __real_fclose(FILE* stream);

FILE* __wrap_fopen(const char* path, const char* mode)
{
    FILE* stream = __real_fopen(path, mode);
    if (running && stream != nullptr)
        replaceStream(nullptr, stream);
    return stream;
}

FILE* __real_fopencookie(void* cookie, const char* mode, cookie_io_functions_t functions);
FILE* __wrap_fopencookie(void* cookie, const char* mode, cookie_io_functions_t functions)
{
    FILE* stream = __real_fopencookie(cookie, mode, functions);
    if (running && stream != nullptr)
        replaceStream(nullptr, stream);
    return stream;
}

int __wrap_fclose(FILE* stream)
{
    if (running)
        replaceStream(stream, nullptr);
    return __real_fclose(stream);
}
}

int fuzz::closeLeftStreams()
{
    int left = 0;
    for (FILE*& stream : streams) {
        if (stream == nullptr)
            continue;
        __real_fclose(stream);
        stream = nullptr;
        ++left;
    }
    return left;
}

void fuzz::begin(int level)
{
    g_yra_debug = level;
    messageCount = 0;
    ai_yra_patc_compensation = 10.0F;
    ai_yra_rssi_compensation = 3;
    running = true;
}

void fuzz::end()
{
    running = false;
    FUZZ_EXPECT(closeLeftStreams() == 0);
}

static fuzz::Target* firstTarget;

bool fuzz::add(Target* target)
{
    target->next = firstTarget;
    firstTarget = target;
    return true;
}

const fuzz::Target* fuzz::targets()
{
    return firstTarget;
}
