/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of messages and failures as table rows. Each row states the file before
 * a call, what fails during the call, and the expected result. One function runs
 * a row at every level of g_yra_debug.
 */
#ifndef TESTS_SUPPORT_SCENARIO_H
#define TESTS_SUPPORT_SCENARIO_H

#include "testing.h"

namespace test
{

/* ---- Messages ----------------------------------------------------------- */

/*
 * A message is stated as a string: its level, the function's name, the text.
 *   "E touchFile: Failed to create file: f\n"
 * E is an error (logged at level 3 or more), N a notice (5 or more), I is
 * informational (6 or more).
 */

/* What messages() returns at the current level if exactly these messages were logged. */
const char* transcriptOf(const char* const* messages, size_t count);

template <size_t count> const char* transcriptOf(const char* const (&messages)[count])
{
    return transcriptOf(messages, count);
}

/* Expects these messages, and no others, since the test began or clearMessages(). */
#define EXPECT_MESSAGES(...) EXPECT_STREQ(test::transcriptOf({__VA_ARGS__}), test::messages())

/* The number of times that a message was logged, and whether it was the first message. */
int timesLogged(const char* message);
bool isFirstMessage(const char* message);

/* ---- Faults ------------------------------------------------------------- */

/* What fails, or changes, during a call. Made by the functions below. */
struct Fault {
    Call call;
    int nth; /* 0 if none fails */
    bool onwards;
    Call also;
    int alsoNth;
    int hookAt;
    void (*hook)(const char* path);
    bool unbuffered;
};

inline constexpr Fault noFault = {OPEN, 0, false, OPEN, 0, 0, nullptr, false};

/* The n-th call of a kind fails. */
constexpr Fault fails(Call call, int nth)
{
    return {call, nth, false, OPEN, 0, 0, nullptr, false};
}

/* The n-th call of a kind fails, and every one after it. */
constexpr Fault failsFrom(Call call, int nth)
{
    return {call, nth, true, OPEN, 0, 0, nullptr, false};
}

/* One call of each of two kinds fails. */
constexpr Fault failBoth(Call call, int nth, Call also, int alsoNth)
{
    return {call, nth, false, also, alsoNth, 0, nullptr, false};
}

/* `hook(path)` runs just before the n-th open. */
constexpr Fault changes(int nth, void (*hook)(const char* path))
{
    return {OPEN, 0, false, OPEN, 0, nth, hook, false};
}

/* Streams have no buffer, so that every print reaches the file at once. */
inline constexpr Fault unbuffered = {OPEN, 0, false, OPEN, 0, 0, nullptr, true};

/* ---- Rows --------------------------------------------------------------- */

/* States of the file "f", on which every row works. Any other string is its content. */
extern const char NO_FILE[];
extern const char DIRECTORY[];
/* For the state after the call only. */
extern const char AS_BEFORE[];
extern const char ANY_FILE[]; /* not compared: the row's call checks the file itself */

struct Messages {
    const char* list[8]; /* in the form of EXPECT_MESSAGES() */
};

struct Row {
    constexpr Row(const char* name, const char* before, Fault fault, bool (*call)(), bool result,
                  Messages messages = {}, const char* after = AS_BEFORE)
        : name(name), before(before), fault(fault), call(call), result(result), messages(messages),
          after(after)
    {
    }

    const char* name;
    const char* before; /* the file "f" */
    Fault fault;
    bool (*call)(); /* may check more itself, such as records, or callCount(), which starts at 0 */
    bool result;
    Messages messages;
    const char* after; /* the file "f" */
};

/*
 * Runs every row at every level from 7 to 1 and expects its result, its
 * messages at that level, its file, and that no stream and no array is left.
 * A failed check is reported with the row's name and the level.
 */
void expectRows(const Row* rows, size_t count);

template <size_t count> void expectRows(const Row (&rows)[count])
{
    expectRows(rows, count);
}

/*
 * Makes each print of a writer fail in turn. The writer must return false and log
 * this message, and the file must contain the prints before the failed one. If no
 * print fails, the file must contain all of them.
 */
void expectStopsAtEachPrint(bool (*write)(), const char* const* prints, size_t count, const char* message);

template <size_t count>
void expectStopsAtEachPrint(bool (*write)(), const char* const (&prints)[count], const char* message)
{
    expectStopsAtEachPrint(write, prints, count, message);
}

/* While this object exists, failed checks are reported with this text. */
#if defined(ALG_TESTS_FREESTANDING)
using Context = mini::Context;
#else
class Context
{
  public:
    explicit Context(const char* text) : trace("", 0, text) {}

  private:
    testing::ScopedTrace trace;
};
#endif

/* ---- Memory that must not change ---------------------------------------- */

/* mark() fills memory with 0x55 bytes. isMarked() returns whether they are all still there. */
void mark(void* bytes, size_t size);
bool isMarked(const void* bytes, size_t size);

template <typename Record> void mark(Record& record)
{
    mark(&record, sizeof record);
}

template <typename Record> bool isMarked(const Record& record)
{
    return isMarked(&record, sizeof record);
}

} // namespace test

#endif
