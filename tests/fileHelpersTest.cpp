/* SPDX-License-Identifier: Apache-2.0 */
#include "messages.h"
#include "scenario.h"

#include <limits.h>
#include <sys/stat.h>

using namespace messages::fileHelpers;
using namespace test;

/* ---- Helpers ------------------------------------------------------------ */

/* Adds `count` times `c` to `text`, which is long enough, and returns its new end. */
static char* fill(char* text, char c, int count)
{
    memset(text, c, static_cast<size_t>(count));
    text[count] = '\0';
    return text + count;
}

/* The lines of a file that holds one line of `length` characters and then `tail`. */
static int linesOfALongLine(int length, const char* tail)
{
    static char text[8192];
    strcpy(fill(text, 'x', length), tail);
    test::writeFile("f", text);
    return dataLineCounter("f");
}

static int linesOf(const char* text)
{
    test::writeFile("f", text);
    return dataLineCounter("f");
}

/* ---- dataLineCounter: what counts --------------------------------------- */

TEST(FileHelpers, anEmptyFileHasNoLines)
{
    EXPECT_EQ(0, linesOf(""));
    EXPECT_STREQ("", test::messages());
}

TEST(FileHelpers, shortLinesCountOneEach)
{
    EXPECT_EQ(1, linesOf("a\n"));
    EXPECT_EQ(2, linesOf("one\ntwo\n"));
    EXPECT_EQ(3, linesOf("one\ntwo\nthree\n"));
}

TEST(FileHelpers, aLastLineWithoutNewlineCounts)
{
    EXPECT_EQ(1, linesOf("a"));
    EXPECT_EQ(2, linesOf("one\ntwo"));
}

TEST(FileHelpers, emptyLinesCount)
{
    EXPECT_EQ(1, linesOf("\n"));
    EXPECT_EQ(2, linesOf("\n\n"));
    EXPECT_EQ(3, linesOf("a\n\nb\n"));
}

TEST(FileHelpers, blanksAndCarriageReturnsEndNoLine)
{
    EXPECT_EQ(2, linesOf("a b\tc\r\nd\r"));
}

TEST(FileHelpers, aNulByteEndsNoLine)
{
    test::writeBytes("f", "\0a\nb\0\n", 6);
    EXPECT_EQ(2, dataLineCounter("f"));
}

TEST(FileHelpers, aLineOf1022CharactersAndANewlineCountsOne)
{
    EXPECT_EQ(1, linesOfALongLine(1022, "\n"));
    EXPECT_EQ(1, linesOfALongLine(1021, "\n"));
}

TEST(FileHelpers, aLineOf1023CharactersCountsTwoWithItsNewlineAndOneWithout)
{
    EXPECT_EQ(2, linesOfALongLine(1023, "\n"));
    EXPECT_EQ(1, linesOfALongLine(1023, ""));
    EXPECT_EQ(2, linesOfALongLine(1024, ""));
}

TEST(FileHelpers, aLongLineCountsOncePerSliceOf1023)
{
    EXPECT_EQ(2, linesOfALongLine(2000, "\n"));
    EXPECT_EQ(2, linesOfALongLine(2045, "\n"));
    EXPECT_EQ(3, linesOfALongLine(2046, "\n"));
    EXPECT_EQ(2, linesOfALongLine(2046, ""));
    EXPECT_EQ(3, linesOfALongLine(3068, "\n"));
    EXPECT_EQ(4, linesOfALongLine(3069, "\n"));
}

TEST(FileHelpers, shortLinesAfterALongOneCountOneEach)
{
    EXPECT_EQ(4, linesOfALongLine(1023, "\na\nb\n"));
    EXPECT_EQ(3, linesOfALongLine(1022, "\na\nb"));
}

TEST(FileHelpers, manyLinesAreAllCounted)
{
    static char text[70001];
    fill(text, '\n', 70000);
    EXPECT_EQ(70000, linesOf(text));
}

TEST(FileHelpers, countingTwiceReturnsTheSameAndLeavesTheFile)
{
    EXPECT_EQ(2, linesOf("one\ntwo"));
    EXPECT_EQ(2, dataLineCounter("f"));
    EXPECT_STREQ("one\ntwo", test::fileText("f"));
    EXPECT_STREQ("", test::messages());
}

TEST(FileHelpers, theCountClosesItsStreamOnce)
{
    EXPECT_EQ(1, linesOf("one\n"));
    EXPECT_EQ(1, test::callCount(test::OPEN));
    EXPECT_EQ(1, test::callCount(test::CLOSE));
    EXPECT_EQ(0, test::openStreams());
}

/* ---- dataLineCounter: failures ------------------------------------------ */

static bool countsTwo()
{
    return dataLineCounter("f") == 2;
}

static bool countFails()
{
    return dataLineCounter("f") == -1;
}

TEST(FileHelpers, counterReportsFailures)
{
    static const Row rows[] = {
        Row("creates no missing file and closes nothing", NO_FILE, noFault,
            [] {
                const bool failed = countFails();
                EXPECT_EQ(1, test::callCount(test::OPEN));
                return failed;
            },
            true, {counterCannotOpen}),
        Row("cannot open in a missing directory", NO_FILE, noFault,
            [] { return dataLineCounter("no/file") == -1; }, true,
            {"E dataLineCounter: Failed to read file: no/file\n"}),
        Row("cannot open an existing file", "one\ntwo\n", fails(OPEN, 1), countFails, true,
            {counterCannotOpen}),
        Row("counts again after a failed open", "one\ntwo\n", fails(OPEN, 1),
            [] { return countFails() && countsTwo(); }, true, {counterCannotOpen}),
        Row("discards the count when the close fails", "one\ntwo\n", fails(CLOSE, 1), countFails, true,
            {counterCannotClose}),
        Row("counts again after a failed close", "one\ntwo\n", fails(CLOSE, 1),
            [] { return countFails() && countsTwo(); }, true, {counterCannotClose}),
        Row("reports a failed close of an empty file", "", fails(CLOSE, 1), countFails, true,
            {counterCannotClose}),
        Row(
            "ends at a read error without a message", "one\ntwo\n", fails(READ, 1),
            [] { return dataLineCounter("f") == 0; }, true),
        Row(
            "finds no lines in a directory", DIRECTORY, noFault, [] { return dataLineCounter("f") == 0; },
            true),
    };
    expectRows(rows);
}

TEST(FileHelpers, theLevelIsSignedAndHasNoUpperEnd)
{
    test::setLevel(INT_MIN);
    EXPECT_EQ(-1, dataLineCounter("missing"));
    test::setLevel(-3);
    EXPECT_EQ(-1, dataLineCounter("missing"));
    test::setLevel(0);
    EXPECT_EQ(-1, dataLineCounter("missing"));
    EXPECT_EQ(0, test::messageCount());
    test::setLevel(INT_MAX);
    EXPECT_EQ(-1, dataLineCounter("missing"));
    EXPECT_EQ(1, test::messageCount());
}

TEST(FileHelpers, theLevelIsNeverWritten)
{
    test::setLevel(4);
    EXPECT_EQ(-1, dataLineCounter("missing"));
    EXPECT_FALSE(touchFile("no/file"));
    EXPECT_EQ(4, g_yra_debug);
}

/* ---- touchFile ---------------------------------------------------------- */

TEST(FileHelpers, touchingAMissingFileCreatesItEmpty)
{
    EXPECT_TRUE(touchFile("f"));
    EXPECT_EQ(0, test::fileSize("f"));
    EXPECT_STREQ("", test::messages());
    EXPECT_EQ(2, test::callCount(test::OPEN));
    EXPECT_EQ(1, test::callCount(test::CLOSE));
}

TEST(FileHelpers, touchingAnExistingFileLeavesIt)
{
    test::writeFile("f", "one\ntwo");
    EXPECT_TRUE(touchFile("f"));
    EXPECT_STREQ("one\ntwo", test::fileText("f"));
    EXPECT_STREQ("", test::messages());
    EXPECT_EQ(1, test::callCount(test::OPEN));
    EXPECT_EQ(1, test::callCount(test::CLOSE));
}

TEST(FileHelpers, touchingAnEmptyFileSucceeds)
{
    test::writeFile("f", "");
    EXPECT_TRUE(touchFile("f"));
    EXPECT_EQ(0, test::fileSize("f"));
    EXPECT_EQ(1, test::callCount(test::OPEN));
}

TEST(FileHelpers, touchingTwiceSucceedsTwice)
{
    EXPECT_TRUE(touchFile("f"));
    EXPECT_TRUE(touchFile("f"));
    EXPECT_EQ(0, test::fileSize("f"));
}

TEST(FileHelpers, touchingADirectorySucceeds)
{
    mkdir("d", 0777);
    EXPECT_TRUE(touchFile("d"));
    EXPECT_STREQ("", test::messages());
}

TEST(FileHelpers, touchReportsFailures)
{
    static const Row rows[] = {
        Row(
            "truncates a file that cannot be read", "one\n", fails(OPEN, 1), [] { return touchFile("f"); },
            true, {}, ""),
        Row("leaves a file that can neither be read nor written", "one\n", failsFrom(OPEN, 1),
            [] {
                const bool touched = touchFile("f");
                EXPECT_EQ(2, test::callCount(test::OPEN));
                return touched;
            },
            false, {touchCannotOpen}),
        Row("cannot create a file in a missing directory", NO_FILE, noFault,
            [] { return touchFile("no/file"); }, false, {"E touchFile: Failed to create file: no/file\n"}),
        Row(
            "ignores a failed close of an existing file", "one\n", fails(CLOSE, 1),
            [] {
                const bool touched = touchFile("f");
                EXPECT_EQ(1, test::callCount(test::OPEN));
                return touched;
            },
            true),
        Row(
            "reports a failed close of a new file", NO_FILE, fails(CLOSE, 1), [] { return touchFile("f"); },
            false, {touchCannotClose}, ""),
    };
    expectRows(rows);
}

TEST(FileHelpers, whatTheTouchCreatesHasNoLines)
{
    EXPECT_TRUE(touchFile("f"));
    EXPECT_EQ(0, dataLineCounter("f"));
    EXPECT_STREQ("", test::messages());
}
