/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Shared by the fuzz targets: an input that is split into a file and choices, the
 * file itself, arrays of exactly the size that the interface requires, and the
 * host functions that the module needs.
 */
#ifndef FUZZ_SUPPORT_FUZZING_H
#define FUZZ_SUPPORT_FUZZING_H

#include <stddef.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include "dataInterface.h"

/* Aborts the run if the condition is false. */
#define FUZZ_EXPECT(condition)                          \
    do {                                                \
        if (!(condition))                               \
            fuzz::fail(#condition, __FILE__, __LINE__); \
    } while (0)

namespace fuzz
{

[[noreturn]] void fail(const char* condition, const char* file, int line);

/*
 * The bytes of one run. Choices are consumed from the end, and the remaining bytes
 * are the file. So any record file is a valid input. Once all bytes are consumed,
 * every choice is 0.
 */
class Input
{
  public:
    Input(const uint8_t* data, size_t size) : bytes(data), left(size) {}

    uint8_t byte() { return left > 0 ? bytes[--left] : 0; }

    /* A number from 0 to `max`. */
    int upTo(int max) { return byte() % (max + 1); }

    /* A count of records, from -3 to `max`. */
    int count(int max) { return upTo(max + 3) - 3; }

    /* A MAC: in half of the cases any bytes except NUL, in the others a piece of the file. */
    void mac(char (&field)[ALG_MAC_SIZE]);

    /* A MAC as a host writes it: `min` to 12 hexadecimal digits. */
    void hexMac(char (&field)[ALG_MAC_SIZE], int min = 1);

    /*
     * Fills a record by repeating 1 to 16 bytes of the input, so that most of the
     * input remains for the file. Set its MACs afterwards: they need a NUL.
     */
    template <typename T> void fill(T& record)
    {
        uint8_t pattern[16];
        const size_t count = static_cast<size_t>(1 + upTo(15));
        for (size_t i = 0; i < count; ++i)
            pattern[i] = byte();
        uint8_t* to = reinterpret_cast<uint8_t*>(&record);
        for (size_t i = 0; i < sizeof record; ++i)
            to[i] = pattern[i % count];
    }

    void dropRest() { left = 0; }
    const uint8_t* text() const { return bytes; }
    size_t size() const { return left; }

  private:
    const uint8_t* bytes;
    size_t left;
};

/* ---- The file ----------------------------------------------------------- */

/*
 * Writes the rest of the input to the one file, in memory, and returns its path.
 * Call it after the last choice. In some runs it drops the rest and returns a path
 * that cannot be opened.
 */
const char* file(Input& input);

/* The path of the file; its content stays. */
const char* memoryFile();

/* Whether the file's content is exactly the rest of the input. */
bool fileIs(const Input& input);

/* How many newlines the file contains. */
int fileLines();

/* Whether the MAC contains no newline, so that its record is one line. */
bool onOneLine(const char (&field)[ALG_MAC_SIZE]);

/* The number of records as the module counts them; 0 if it cannot read the file. */
int records(const char* path);

/* ---- Arrays ------------------------------------------------------------- */

enum { UNTOUCHED = 0x5A }; /* the value of every byte of a new array */

/* Allocates `size` bytes between two guard zones; freeing them checks the zones. */
void* allocateGuarded(size_t size);
void freeGuarded(void* array, size_t size);

template <typename T> class Array
{
  public:
    explicit Array(int count) : size(static_cast<size_t>(count > 0 ? count : 0)), items(allocate(size)) {}
    ~Array() { freeGuarded(items, size * sizeof(T)); }
    Array(const Array&) = delete;
    Array& operator=(const Array&) = delete;

    T* get() { return items; }
    T& operator[](int i) { return items[i]; }
    int count() const { return static_cast<int>(size); }

  private:
    static T* allocate(size_t count) { return static_cast<T*>(allocateGuarded(count * sizeof(T))); }
    const size_t size;
    T* const items;
};

/* Fills records with any bytes and sets their MACs with `setMacs`. Only the first three differ. */
template <typename T, typename SetMacs> void fillRecords(Input& in, Array<T>& records, SetMacs setMacs)
{
    for (int i = 0; i < records.count(); ++i) {
        if (i >= 3) {
            records[i] = records[i - 3];
            continue;
        }
        in.fill(records[i]);
        setMacs(records[i]);
    }
}

/*
 * Whether a MAC is valid after a read into a new array: either untouched, or at most 12 characters and
 * their NUL with all bytes from the 14th on untouched.
 */
bool isValidMac(const char (&field)[ALG_MAC_SIZE]);

/* ---- The host ----------------------------------------------------------- */

/* Closes the streams that the module has left open and returns how many they were. */
int closeLeftStreams();

/* Called around each run: begin() restores the initial settings, end() checks that no stream is open. */
void begin(int level);
void end();

/* The targets of the program, for the replay. */
struct Target {
    const char* name;
    void (*run)(Input& in);
    Target* next;
};
bool add(Target* target);
const Target* targets();

} // namespace fuzz

/*
 * Defines one target: FUZZ_TARGET(apRankInfo) { ... in ... }. The first choice of
 * every target is the debug level. The replay program contains all targets; each
 * libFuzzer program contains one.
 */
#if defined(ALG_FUZZ_REPLAY)
#define FUZZ_ENTRY(name)                                            \
    static fuzz::Target name##Target = {#name, name##Run, nullptr}; \
    [[maybe_unused]] static const bool name##Added = fuzz::add(&name##Target);
#else
#define FUZZ_ENTRY(name)                                                    \
    extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) \
    {                                                                       \
        fuzz::Input in(data, size);                                         \
        name##Run(in);                                                      \
        return 0;                                                           \
    }
#endif
#define FUZZ_TARGET(name)                      \
    static void name##Body(fuzz::Input& in);   \
    static void name##Run(fuzz::Input& in)     \
    {                                          \
        fuzz::begin(in.upTo(15) == 1 ? 0 : 6); \
        name##Body(in);                        \
        fuzz::end();                           \
    }                                          \
    FUZZ_ENTRY(name)                           \
    static void name##Body(fuzz::Input& in)

#endif
