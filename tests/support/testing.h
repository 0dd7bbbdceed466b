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
 * and 3. A test that ends with an open stream or an allocated array fails.
 */
namespace test
{

/* ---- Messages ----------------------------------------------------------- */

/* Sets g_yra_debug. */
void setLevel(int level);

/*
 * All messages since the last clearMessages(), or since the test began. Each is
 * the formatted text, with '#' in place of the source line, followed by '|':
 *   "libzo: [touchFile:#]: Failed to create file: no/file\n|"
 */
const char* messages();

/* The number of these messages. */
int messageCount();

/* Forgets the messages so far. */
void clearMessages();

/* ---- Files -------------------------------------------------------------- */

/* Creates or replaces a file with `text`, or with `size` bytes. */
void writeFile(const char* path, const char* text);
void writeBytes(const char* path, const void* bytes, size_t size);

/* The whole file as text; "<missing>" if there is none. Valid until the test ends. */
const char* fileText(const char* path);

/* The file's size in bytes; -1 if there is none. */
long fileSize(const char* path);

/*
 * Reads at most `room` bytes of the file. Returns the number of bytes read, or -1
 * if the file is missing or cannot be read. Unlike fileText() it keeps no copy, so
 * a test may call it any number of times.
 */
long readBytes(const char* path, void* bytes, size_t room);

/* The number of newlines in the file; -1 if there is no file. */
int fileLines(const char* path);

/* Line `index` (from 0) without its newline; "<no such line>" after the last. Valid until the test ends. */
const char* fileLine(const char* path, int index);

/* ---- Faults ------------------------------------------------------------- */

/*
 * Calls that the module makes and that a test can fail:
 *   OPEN      fopen returns null
 *   CLOSE     fclose closes, and returns EOF
 *   READ      a stream's read() of its file fails (see streamBuffer())
 *   WRITE     a stream's write() to its file fails. While a WRITE fault is
 *             armed, streams are opened unbuffered: one print is one write,
 *             so the k-th WRITE is the k-th print
 *   ALLOCATE  calloc returns null
 *   GROW      realloc returns null
 * Arm READ and WRITE faults before the stream is opened.
 */
enum Call { OPEN, CLOSE, READ, WRITE, ALLOCATE, GROW, CALL_KINDS };

/* Makes one call of a kind fail: the k-th one from now, where 1 is the next. */
void failNth(Call call, int k);

/* Makes the k-th call of a kind from now fail, and every one after it. */
void failFrom(Call call, int k);

/* Disarms all faults. */
void failNothing();

/* Disarms all faults and hooks, and counts calls from 0 again. */
void forgetCalls();

/* The number of calls of a kind in this test so far. READ and WRITE are counted while armed. */
int callCount(Call call);

/* The bytes read in this test by streams with an armed READ fault. */
long bytesRead();

/*
 * Sets the buffer size of streams opened from now on: at most 4096 bytes, 0 for no
 * buffer, -1 for the C library's default. One READ returns at most that many bytes.
 */
void streamBuffer(int size);

/*
 * Runs `hook(path)` just before the `k`-th open from now. It can change a file
 * between two opens of one call of the module.
 */
void beforeOpen(int k, void (*hook)(const char* path));

/* ---- What a call may leak ------------------------------------------------ */

/* The number of open streams, of allocated arrays, and of arrays at the time of the last message. */
int openStreams();
int heldArrays();
int arraysHeldAtLastMessage();

/* Close, or free, what the module leaks on purpose. */
void closeLeftStreams();
void freeLeftArrays();

/*
 * guardArrays() adds a guard zone after every array until the test ends.
 * brokenGuards() returns how many zones the module has written to; a zone is
 * checked when its array is freed or grown. Under the address sanitizer there are
 * no zones: it finds more itself.
 */
void guardArrays();
int brokenGuards();

/* For the runner: around every test. `endTest` returns null, or what was leaked. */
void beginTest();
const char* endTest();

} // namespace test

#endif
