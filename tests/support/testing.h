/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What every test file includes: the test macros, the module, and the host
 * that the module runs on in the tests.
 *
 * The tests keep to the C library and to the macros TEST, EXPECT_* and
 * ASSERT_* (EQ, NE, LT, LE, GT, GE, TRUE, FALSE, STREQ, STRNE) without streamed
 * texts, so that the same sources run under GoogleTest and, on a target that
 * has no C++ library, under the small runner of miniTest.h.
 */
#ifndef TESTS_SUPPORT_TESTING_H
#define TESTS_SUPPORT_TESTING_H

#if defined(ALG_TESTS_FREESTANDING)
#include "miniTest.h"
#else
#include <gtest/gtest.h>
#endif

#include <stddef.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "dataInterface.h"

/*
 * Every test starts in an empty directory of its own, with relative paths,
 * g_yra_debug at 6, no messages, no armed fault and the two settings at 10.0
 * and 3. When it ends, a stream left open or an array not released fails it.
 */
namespace test
{

/* ---- Messages ----------------------------------------------------------- */

/* Sets g_yra_debug. */
void setLevel(int level);

/*
 * All messages since the test began or clearMessages(), one after the other.
 * Each is the text as formatted, with '#' for the source line, and then a '|':
 *   "libzo: [touchFile:#]: Failed to create file: no/file\n|"
 */
const char* messages();

/* How many messages there were. */
int messageCount();

/* Forgets the messages so far. */
void clearMessages();

/* ---- Files -------------------------------------------------------------- */

/* Creates or replaces a file with `text`, or with `size` bytes. */
void writeFile(const char* path, const char* text);
void writeBytes(const char* path, const void* bytes, size_t size);

/* The whole file as text; "<missing>" where there is none. Valid until the test ends. */
const char* fileText(const char* path);

/* The file's size in bytes; -1 where there is none. */
long fileSize(const char* path);

/*
 * Reads the file into `bytes`, at most `room`; returns its size, -1 where there
 * is none or it cannot be read. For tests of more files than texts are kept.
 */
long readBytes(const char* path, void* bytes, size_t room);

/* How many newlines the file holds; -1 where there is none. */
int fileLines(const char* path);

/* Line `index` (from 0) without its newline; "<no such line>" past the end. Valid until the test ends. */
const char* fileLine(const char* path, int index);

/* ---- Faults ------------------------------------------------------------- */

/*
 * Calls that the module makes and that a test can fail:
 *   OPEN      fopen returns null
 *   CLOSE     fclose closes, and returns EOF
 *   READ      a read of a stream from its file fails (see streamBuffer())
 *   WRITE     a write of a stream to its file fails. While a WRITE fault is
 *             armed, streams are opened unbuffered: one print is one write,
 *             so the k-th WRITE is the k-th print
 *   ALLOCATE  calloc returns null
 *   GROW      realloc returns null
 * Arm READ and WRITE faults before the stream is opened.
 */
enum Call { OPEN, CLOSE, READ, WRITE, ALLOCATE, GROW, CALL_KINDS };

/* Fails the k-th call of a kind from now on (the next one is 1), once. */
void failNth(Call call, int k);

/* Fails the k-th call of a kind from now on, and every one after it. */
void failFrom(Call call, int k);

/* Disarms all faults. */
void failNothing();

/* Disarms all faults and hooks, and counts calls from 0 again. */
void forgetCalls();

/* How many calls of a kind the test has seen so far; READ and WRITE are counted while armed. */
int callCount(Call call);

/* How many bytes the streams that a READ fault was armed for have read in this test. */
long bytesRead();

/*
 * Streams opened from now on get a buffer of `size` bytes (at most 4096), 0 for
 * none; -1 back to the C library's. A READ then returns no more than that.
 */
void streamBuffer(int size);

/*
 * Runs `hook(path)` just before the `k`-th open from now: for a file that
 * changes between two openings by one call of the module.
 */
void beforeOpen(int k, void (*hook)(const char* path));

/* ---- What a call may leak ------------------------------------------------ */

/* Streams open now, arrays allocated now, arrays allocated when the last message was logged. */
int openStreams();
int heldArrays();
int arraysHeldAtLastMessage();

/* Closes, or frees, what the module leaks on purpose. */
void closeLeftStreams();
void freeLeftArrays();

/*
 * From now on until the test ends, arrays get a guard zone after them. Returns
 * how many guard zones the module has written to, seen when it releases or
 * grows the array. (The address sanitizer sees more: there, no guard zone.)
 */
void guardArrays();
int brokenGuards();

/* For the runner: around every test. `endTest` returns null, or what was leaked. */
void beginTest();
const char* endTest();

} // namespace test

#endif
