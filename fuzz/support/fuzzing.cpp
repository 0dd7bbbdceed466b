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

void fuzz::fail(const char* condition, const char* file, int line)
{
    fprintf(stderr, "%s:%d: expectation failed: %s\n", file, line, condition);
    abort();
}

/* ---- Input -------------------------------------------------------------- */

void fuzz::Input::mac(char (&field)[ALG_MAC_SIZE])
{
    memset(field, 0, sizeof field);
    const int length = upTo(ALG_MAC_SIZE - 1);
    if (byte() % 2 == 0) {
        const size_t at = byte();
        for (size_t i = 0; i < static_cast<size_t>(length) && at + i < left && bytes[at + i] != '\0'; ++i)
            field[i] = static_cast<char>(bytes[at + i]);
        return;
    }
    for (int i = 0; i < length; ++i) {
        const uint8_t character = byte();
        field[i] = static_cast<char>(character != 0 ? character : 'a');
    }
}

void fuzz::Input::hexMac(char (&field)[ALG_MAC_SIZE], int min)
{
    memset(field, 0, sizeof field);
    const int length = min + upTo(12 - min);
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
        input.dropRest();
    FUZZ_EXPECT(ftruncate(fd, 0) == 0);
    FUZZ_EXPECT(pwrite(fd, input.text(), input.size(), 0) == static_cast<ssize_t>(input.size()));
    return missing ? "/proc/self/fd/none" : memoryFile();
}

bool fuzz::onOneLine(const char (&field)[ALG_MAC_SIZE])
{
    return memchr(field, '\n', sizeof field) == nullptr;
}

/* The file's bytes; the caller frees them. */
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
 * With the address sanitizer, an access to a guard zone ends the run immediately.
 * Without it, a write to a zone is found when the array is freed.
 */
#if defined(FUZZ_POISONED)
extern "C" void __asan_poison_memory_region(const volatile void* start, size_t size);
extern "C" void __asan_unpoison_memory_region(const volatile void* start, size_t size);
#else
static void __asan_poison_memory_region(const volatile void*, size_t) {}
static void __asan_unpoison_memory_region(const volatile void*, size_t) {}
#endif

enum { ZONE = 64, ZONE_BYTE = 0xC3 };

void* fuzz::allocateGuarded(size_t size)
{
    char* block = static_cast<char*>(malloc(ZONE + size + ZONE));
    FUZZ_EXPECT(block != nullptr);
    memset(block, ZONE_BYTE, ZONE);
    memset(block + ZONE, UNTOUCHED, size);
    memset(block + ZONE + size, ZONE_BYTE, ZONE);
    __asan_poison_memory_region(block, ZONE);
    __asan_poison_memory_region(block + ZONE + size, ZONE);
    return block + ZONE;
}

void fuzz::freeGuarded(void* array, size_t size)
{
    char* block = static_cast<char*>(array) - ZONE;
    __asan_unpoison_memory_region(block, ZONE + size + ZONE);
    for (int i = 0; i < ZONE; ++i) {
        FUZZ_EXPECT(static_cast<uint8_t>(block[i]) == ZONE_BYTE);
        FUZZ_EXPECT(static_cast<uint8_t>(block[ZONE + size + i]) == ZONE_BYTE);
    }
    free(block);
}

bool fuzz::isValidMac(const char (&field)[ALG_MAC_SIZE])
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
/* Formats every message, so that a sanitizer finds arguments that do not match the format. */
void libzo_log(const char* format, ...)
{
    static char text[4096];
    static const char prefix[] = "libzo: [%s:%d]: ";
    FUZZ_EXPECT(strncmp(format, prefix, sizeof prefix - 1) == 0);
    va_list args;
    va_start(args, format);
    const int length = vsnprintf(text, sizeof text, format, args);
    va_end(args);
    FUZZ_EXPECT(length > 0 && static_cast<size_t>(length) < sizeof text);
}

/* The module's open streams. The fuzzer opens its own streams outside a run. */
static FILE* streams[8];
static bool running;

static void replaceStream(const FILE* old, FILE* replacement)
{
    for (FILE*& stream : streams) {
        if (stream == old) {
            stream = replacement;
            return;
        }
    }
    FUZZ_EXPECT(!"a closed stream that was never opened, or too many open streams");
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
