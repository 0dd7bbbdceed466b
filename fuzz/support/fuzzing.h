/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the fuzz targets share: an input that is cut into a file and choices,
 * the file itself, arrays of exactly the size that the interface asks for, and
 * the host that the module runs on.
 */
#ifndef FUZZ_SUPPORT_FUZZING_H
#define FUZZ_SUPPORT_FUZZING_H

#include <stddef.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include "dataInterface.h"

/* Ends the run: a promise of the interface does not hold. */
#define FUZZ_EXPECT(holds)                            \
    do {                                              \
        if (!(holds))                                 \
            fuzz::broken(#holds, __FILE__, __LINE__); \
    } while (0)

namespace fuzz
{

[[noreturn]] void broken(const char* what, const char* file, int line);

/*
 * The bytes of one run. Choices are taken from their end and what is left is
 * the file, so that any record file is an input as it stands. Beyond the last
 * byte, choices are 0.
 */
class Input
{
  public:
    Input(const uint8_t* data, size_t size) : bytes(data), left(size) {}

    uint8_t byte() { return left > 0 ? bytes[--left] : 0; }

    /* 0 to `most`. */
    int upTo(int most) { return byte() % (most + 1); }

    /* A count of records: mostly 0 to `most`, sometimes negative. */
    int count(int most) { return upTo(most + 3) - 3; }

    /* A key: any bytes but NUL, or as often a piece of the file. */
    void mac(char (&field)[16]);

    /* As a host writes one: `least` to 12 hexadecimal digits. */
    void hexMac(char (&field)[16], int least = 1);

    /*
     * A record of a few bytes over and over, so that most of the input stays
     * the file. Its MACs are to be set afterwards, for they have to end.
     */
    template <typename T> void fill(T& record)
    {
        uint8_t few[16];
        const size_t count = static_cast<size_t>(1 + upTo(15));
        for (size_t i = 0; i < count; ++i)
            few[i] = byte();
        uint8_t* to = reinterpret_cast<uint8_t*>(&record);
        for (size_t i = 0; i < sizeof record; ++i)
            to[i] = few[i % count];
    }

    void drop() { left = 0; }
    const uint8_t* text() const { return bytes; }
    size_t size() const { return left; }

  private:
    const uint8_t* bytes;
    size_t left;
};

/* ---- The file ----------------------------------------------------------- */

/*
 * The path of the one file, in memory, that now holds what is left of the
 * input: to be called behind the last choice. Now and then a path that cannot
 * be opened, and then nothing is left.
 */
const char* file(Input& input);

/* The path of that file, whatever it holds. */
const char* memoryFile();

/* Whether the file holds just these bytes, and how many newlines it holds. */
bool fileIs(const Input& input);
int fileLines();

/* Whether a line with this MAC is one line. */
bool onOneLine(const char (&field)[16]);

/* The records of the file by the module's own count, never negative. */
int records(const char* path);

/* ---- Arrays ------------------------------------------------------------- */

enum { UNTOUCHED = 0x5A }; /* what every byte of a fresh array holds */

/* `size` bytes between two guard zones; the zones are looked at when they are released. */
void* guarded(size_t size);
void release(void* array, size_t size);

template <typename T> class Array
{
  public:
    explicit Array(int count) : size(static_cast<size_t>(count > 0 ? count : 0)), all(allocate(size)) {}
    ~Array() { release(all, size * sizeof(T)); }
    Array(const Array&) = delete;
    Array& operator=(const Array&) = delete;

    T* get() { return all; }
    T& operator[](int i) { return all[i]; }
    int count() const { return static_cast<int>(size); }

  private:
    static T* allocate(size_t count) { return static_cast<T*>(guarded(count * sizeof(T))); }
    const size_t size;
    T* const all;
};

/* Records of any bytes, with their MACs set by `setMacs`; from the fourth on they repeat. */
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

/* A MAC after a read: never touched, or 12 characters at most, with their end and nothing behind it. */
bool macHolds(const char (&field)[16]);

/* ---- The host ----------------------------------------------------------- */

/* Messages since the run began. */
int messages();

/* Streams that the module has left open on purpose; closes them. */
int closeLeftStreams();

/* Around one run: the settings as at load time; no stream is left. */
void begin(int level);
void end();

/* For the replay: the targets of the program by name. */
struct Target {
    const char* name;
    void (*run)(Input& in);
    Target* next;
};
bool add(Target* target);
const Target* targets();

} // namespace fuzz

/*
 * Defines one target: FUZZ_TARGET(apRankInfo) { ... in ... }. Every target takes
 * the debug level first. In the replay it is one of many, else libFuzzer's own.
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
