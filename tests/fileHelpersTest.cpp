/* SPDX-License-Identifier: Apache-2.0 */
#include "testing.h"

#include <limits.h>
#include <sys/stat.h>

/* ---- Helpers ------------------------------------------------------------ */

/* Adds `count` times `c` to `text`, which is long enough, and gives its new end. */
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
    EXPECT_EQ(linesOf(""), 0);
    EXPECT_STREQ(test::messages(), "");
}

TEST(FileHelpers, shortLinesCountOneEach)
{
    EXPECT_EQ(linesOf("a\n"), 1);
    EXPECT_EQ(linesOf("one\ntwo\n"), 2);
    EXPECT_EQ(linesOf("one\ntwo\nthree\n"), 3);
}

TEST(FileHelpers, aLastLineWithoutNewlineCounts)
{
    EXPECT_EQ(linesOf("a"), 1);
    EXPECT_EQ(linesOf("one\ntwo"), 2);
}

TEST(FileHelpers, emptyLinesCount)
{
    EXPECT_EQ(linesOf("\n"), 1);
    EXPECT_EQ(linesOf("\n\n"), 2);
    EXPECT_EQ(linesOf("a\n\nb\n"), 3);
}

TEST(FileHelpers, blanksAndCarriageReturnsEndNoLine)
{
    EXPECT_EQ(linesOf("a b\tc\r\nd\r"), 2);
}

TEST(FileHelpers, aNulByteEndsNoLine)
{
    test::writeBytes("f", "\0a\nb\0\n", 6);
    EXPECT_EQ(dataLineCounter("f"), 2);
}

TEST(FileHelpers, aLineOf1022CharactersAndANewlineCountsOne)
{
    EXPECT_EQ(linesOfALongLine(1022, "\n"), 1);
    EXPECT_EQ(linesOfALongLine(1021, "\n"), 1);
}

TEST(FileHelpers, aLineOf1023CharactersCountsTwoWithItsNewlineAndOneWithout)
{
    EXPECT_EQ(linesOfALongLine(1023, "\n"), 2);
    EXPECT_EQ(linesOfALongLine(1023, ""), 1);
    EXPECT_EQ(linesOfALongLine(1024, ""), 2);
}

TEST(FileHelpers, aLongLineCountsOncePerSliceOf1023)
{
    EXPECT_EQ(linesOfALongLine(2000, "\n"), 2);
    EXPECT_EQ(linesOfALongLine(2045, "\n"), 2);
    EXPECT_EQ(linesOfALongLine(2046, "\n"), 3);
    EXPECT_EQ(linesOfALongLine(2046, ""), 2);
    EXPECT_EQ(linesOfALongLine(3068, "\n"), 3);
    EXPECT_EQ(linesOfALongLine(3069, "\n"), 4);
}

TEST(FileHelpers, shortLinesAfterALongOneCountOneEach)
{
    EXPECT_EQ(linesOfALongLine(1023, "\na\nb\n"), 4);
    EXPECT_EQ(linesOfALongLine(1022, "\na\nb"), 3);
}

TEST(FileHelpers, manyLinesAreAllCounted)
{
    static char text[70001];
    fill(text, '\n', 70000);
    EXPECT_EQ(linesOf(text), 70000);
}

TEST(FileHelpers, countingTwiceGivesTheSameAndLeavesTheFile)
{
    EXPECT_EQ(linesOf("one\ntwo"), 2);
    EXPECT_EQ(dataLineCounter("f"), 2);
    EXPECT_STREQ(test::fileText("f"), "one\ntwo");
    EXPECT_STREQ(test::messages(), "");
}

TEST(FileHelpers, theCountClosesItsStreamOnce)
{
    EXPECT_EQ(linesOf("one\n"), 1);
    EXPECT_EQ(test::callCount(test::OPEN), 1);
    EXPECT_EQ(test::callCount(test::CLOSE), 1);
    EXPECT_EQ(test::openStreams(), 0);
}

/* ---- dataLineCounter: failures ------------------------------------------ */

TEST(FileHelpers, countingAMissingFileGivesMinusOneAndCreatesNothing)
{
    EXPECT_EQ(dataLineCounter("missing"), -1);
    EXPECT_STREQ(test::messages(), "libzo: [dataLineCounter:#]: Failed to read file: missing\n|");
    EXPECT_EQ(test::messageCount(), 1);
    EXPECT_EQ(test::fileSize("missing"), -1);
    EXPECT_EQ(test::callCount(test::OPEN), 1);
    EXPECT_EQ(test::callCount(test::CLOSE), 0);
}

TEST(FileHelpers, countingInAMissingDirectoryGivesMinusOne)
{
    EXPECT_EQ(dataLineCounter("no/file"), -1);
    EXPECT_STREQ(test::messages(), "libzo: [dataLineCounter:#]: Failed to read file: no/file\n|");
}

TEST(FileHelpers, aFailedOpenOfAnExistingFileGivesMinusOne)
{
    test::writeFile("f", "one\n");
    test::failNth(test::OPEN, 1);
    EXPECT_EQ(dataLineCounter("f"), -1);
    EXPECT_STREQ(test::messages(), "libzo: [dataLineCounter:#]: Failed to read file: f\n|");
    EXPECT_EQ(dataLineCounter("f"), 1);
}

TEST(FileHelpers, aFailedCloseDiscardsTheCount)
{
    test::writeFile("f", "one\ntwo\n");
    test::failNth(test::CLOSE, 1);
    EXPECT_EQ(dataLineCounter("f"), -1);
    EXPECT_STREQ(test::messages(), "libzo: [dataLineCounter:#]: fclose error, path:f.\n|");
    EXPECT_EQ(test::messageCount(), 1);
    EXPECT_EQ(dataLineCounter("f"), 2);
}

TEST(FileHelpers, aFailedCloseOfAnEmptyFileGivesMinusOne)
{
    test::writeFile("f", "");
    test::failNth(test::CLOSE, 1);
    EXPECT_EQ(dataLineCounter("f"), -1);
}

TEST(FileHelpers, aReadErrorEndsTheCountWithoutAMessage)
{
    test::writeFile("f", "one\ntwo\n");
    test::failNth(test::READ, 1);
    EXPECT_EQ(dataLineCounter("f"), 0);
    EXPECT_STREQ(test::messages(), "");
}

TEST(FileHelpers, aDirectoryHasNoLines)
{
    mkdir("d", 0777);
    EXPECT_EQ(dataLineCounter("d"), 0);
    EXPECT_STREQ(test::messages(), "");
}

TEST(FileHelpers, theCountersErrorsAreLoggedFromLevelThree)
{
    test::writeFile("f", "one\n");
    test::setLevel(2);
    EXPECT_EQ(dataLineCounter("missing"), -1);
    test::failNth(test::CLOSE, 1);
    EXPECT_EQ(dataLineCounter("f"), -1);
    EXPECT_EQ(test::messageCount(), 0);

    test::setLevel(3);
    EXPECT_EQ(dataLineCounter("missing"), -1);
    test::failNth(test::CLOSE, 1);
    EXPECT_EQ(dataLineCounter("f"), -1);
    EXPECT_STREQ(test::messages(), "libzo: [dataLineCounter:#]: Failed to read file: missing\n|"
                                   "libzo: [dataLineCounter:#]: fclose error, path:f.\n|");
}

TEST(FileHelpers, theLevelIsSignedAndHasNoUpperEnd)
{
    test::setLevel(INT_MIN);
    EXPECT_EQ(dataLineCounter("missing"), -1);
    test::setLevel(-3);
    EXPECT_EQ(dataLineCounter("missing"), -1);
    test::setLevel(0);
    EXPECT_EQ(dataLineCounter("missing"), -1);
    EXPECT_EQ(test::messageCount(), 0);
    test::setLevel(INT_MAX);
    EXPECT_EQ(dataLineCounter("missing"), -1);
    EXPECT_EQ(test::messageCount(), 1);
}

TEST(FileHelpers, theLevelIsNeverWritten)
{
    test::setLevel(4);
    EXPECT_EQ(dataLineCounter("missing"), -1);
    EXPECT_FALSE(touchFile("no/file"));
    EXPECT_EQ(g_yra_debug, 4);
}

/* ---- touchFile ---------------------------------------------------------- */

TEST(FileHelpers, touchingAMissingFileCreatesItEmpty)
{
    EXPECT_TRUE(touchFile("f"));
    EXPECT_EQ(test::fileSize("f"), 0);
    EXPECT_STREQ(test::messages(), "");
    EXPECT_EQ(test::callCount(test::OPEN), 2);
    EXPECT_EQ(test::callCount(test::CLOSE), 1);
}

TEST(FileHelpers, touchingAnExistingFileLeavesIt)
{
    test::writeFile("f", "one\ntwo");
    EXPECT_TRUE(touchFile("f"));
    EXPECT_STREQ(test::fileText("f"), "one\ntwo");
    EXPECT_STREQ(test::messages(), "");
    EXPECT_EQ(test::callCount(test::OPEN), 1);
    EXPECT_EQ(test::callCount(test::CLOSE), 1);
}

TEST(FileHelpers, touchingAnEmptyFileSucceeds)
{
    test::writeFile("f", "");
    EXPECT_TRUE(touchFile("f"));
    EXPECT_EQ(test::fileSize("f"), 0);
    EXPECT_EQ(test::callCount(test::OPEN), 1);
}

TEST(FileHelpers, touchingTwiceSucceedsTwice)
{
    EXPECT_TRUE(touchFile("f"));
    EXPECT_TRUE(touchFile("f"));
    EXPECT_EQ(test::fileSize("f"), 0);
}

TEST(FileHelpers, touchingADirectorySucceeds)
{
    mkdir("d", 0777);
    EXPECT_TRUE(touchFile("d"));
    EXPECT_STREQ(test::messages(), "");
}

TEST(FileHelpers, touchingAFileThatCannotBeReadTruncatesIt)
{
    test::writeFile("f", "one\n");
    test::failNth(test::OPEN, 1);
    EXPECT_TRUE(touchFile("f"));
    EXPECT_EQ(test::fileSize("f"), 0);
    EXPECT_STREQ(test::messages(), "");
}

TEST(FileHelpers, touchingAFileThatCanNeitherBeReadNorWrittenFails)
{
    test::writeFile("f", "one\n");
    test::failFrom(test::OPEN, 1);
    EXPECT_FALSE(touchFile("f"));
    EXPECT_STREQ(test::messages(), "libzo: [touchFile:#]: Failed to create file: f\n|");
    EXPECT_STREQ(test::fileText("f"), "one\n");
    EXPECT_EQ(test::callCount(test::OPEN), 2);
    EXPECT_EQ(test::callCount(test::CLOSE), 0);
}

TEST(FileHelpers, touchingInAMissingDirectoryFails)
{
    EXPECT_FALSE(touchFile("no/file"));
    EXPECT_STREQ(test::messages(), "libzo: [touchFile:#]: Failed to create file: no/file\n|");
    EXPECT_EQ(test::messageCount(), 1);
}

TEST(FileHelpers, aFailedCloseOfAnExistingFileIsIgnoredByTheTouch)
{
    test::writeFile("f", "one\n");
    test::failNth(test::CLOSE, 1);
    EXPECT_TRUE(touchFile("f"));
    EXPECT_STREQ(test::messages(), "");
    EXPECT_STREQ(test::fileText("f"), "one\n");
    EXPECT_EQ(test::callCount(test::OPEN), 1);
}

TEST(FileHelpers, aFailedCloseOfANewFileFailsTheTouch)
{
    test::failNth(test::CLOSE, 1);
    EXPECT_FALSE(touchFile("f"));
    EXPECT_STREQ(test::messages(), "libzo: [touchFile:#]: fclose error, path:f.\n|");
    EXPECT_EQ(test::messageCount(), 1);
    EXPECT_EQ(test::fileSize("f"), 0);
}

TEST(FileHelpers, theTouchsErrorsAreLoggedFromLevelThree)
{
    test::setLevel(2);
    EXPECT_FALSE(touchFile("no/file"));
    test::failNth(test::CLOSE, 1);
    EXPECT_FALSE(touchFile("f"));
    EXPECT_EQ(test::messageCount(), 0);

    remove("f");
    test::setLevel(3);
    EXPECT_FALSE(touchFile("no/file"));
    test::failNth(test::CLOSE, 1);
    EXPECT_FALSE(touchFile("f"));
    EXPECT_STREQ(test::messages(), "libzo: [touchFile:#]: Failed to create file: no/file\n|"
                                   "libzo: [touchFile:#]: fclose error, path:f.\n|");
}

TEST(FileHelpers, whatTheTouchCreatesHasNoLines)
{
    EXPECT_TRUE(touchFile("f"));
    EXPECT_EQ(dataLineCounter("f"), 0);
    EXPECT_STREQ(test::messages(), "");
}
