/* SPDX-License-Identifier: Apache-2.0 */
#include "messages.h"
#include "scenario.h"

#include <limits.h>
#include <sys/stat.h>

using namespace messages::fileHelpers;
using namespace messages::apRank;
using namespace test;

static const char twoLines[] = "aabbccddee01 aabbccddee02 1\n"
                               "aabbccddee03 aabbccddee04 2\n";
static const char blankInside[] = "aabbccddee01 aabbccddee02 1\n"
                                  "\n"
                                  "aabbccddee03 aabbccddee04 2\n";

static ApRank rankOf(const char* device, const char* father, uint8_t rank)
{
    ApRank record = {};
    snprintf(record.deviceMAC, sizeof record.deviceMAC, "%s", device);
    snprintf(record.ethFatherMAC, sizeof record.ethFatherMAC, "%s", father);
    record.apRank = rank;
    return record;
}

static void expectRank(const ApRank& record, const char* device, const char* father, int rank)
{
    EXPECT_STREQ(device, record.deviceMAC);
    EXPECT_STREQ(father, record.ethFatherMAC);
    EXPECT_EQ(rank, record.apRank);
}

/* A file of `count` lines, line i of device number i. */
static void writeRanks(int count)
{
    static char text[1000 * 28 + 1];
    int length = 0;
    for (int i = 0; i < count; ++i)
        length +=
            snprintf(text + length, sizeof text - static_cast<size_t>(length), "%012d bbbbbbbbbbbb 7\n", i);
    test::writeBytes("f", text, static_cast<size_t>(length));
}

/* ---- Reader ------------------------------------------------------------- */

TEST(ApRankInfo, readerLoadsEveryFieldOfEveryLine)
{
    test::writeFile("f", "aabbccddee01 aabbccddee02 1\naabbccddee03 aabbccddee04 0\n    ab           cd 255");
    ApRank records[4] = {};
    records[3] = rankOf("kept", "keptToo", 9);
    EXPECT_TRUE(apRankInfoReader("f", records));
    expectRank(records[0], "aabbccddee01", "aabbccddee02", 1);
    expectRank(records[1], "aabbccddee03", "aabbccddee04", 0);
    expectRank(records[2], "ab", "cd", 255);
    expectRank(records[3], "kept", "keptToo", 9);
    EXPECT_STREQ("", test::messages());
}

TEST(ApRankInfo, readerReadsTwelveCharactersOfAMac)
{
    test::writeFile("f", "aabbccddeeff01 5\naa aabbccddeeff17\naa bb 3 more\n");
    ApRank records[3] = {};
    EXPECT_TRUE(apRankInfoReader("f", records));
    expectRank(records[0], "aabbccddeeff", "01", 5);
    expectRank(records[1], "aa", "aabbccddeeff", 17);
    expectRank(records[2], "aa", "bb", 3);
}

TEST(ApRankInfo, readerReadsLeadingZerosAsDecimal)
{
    ApRank record = {};
    test::writeFile("f", "aa bb 010\n");
    EXPECT_TRUE(apRankInfoReader("f", &record));
    expectRank(record, "aa", "bb", 10);
}

TEST(ApRankInfo, readerKeepsUnconvertedFields)
{
    test::writeFile("f", "aa\naa bb\naa bb x\n\t cc \t dd \t 4 \n");
    ApRank records[4];
    for (ApRank& record : records)
        record = rankOf("kept", "keptToo", 9);
    EXPECT_TRUE(apRankInfoReader("f", records));
    expectRank(records[0], "aa", "keptToo", 9);
    expectRank(records[1], "aa", "bb", 9);
    expectRank(records[2], "aa", "bb", 9);
    expectRank(records[3], "cc", "dd", 4);
    EXPECT_STREQ("", test::messages());
}

TEST(ApRankInfo, readerTreatsEveryKindOfBlankLineAsAnError)
{
    static const char* const texts[] = {"\n", "     \n", " \t \n", "   ", "\r\n"};
    for (const char* text : texts) {
        ApRank record = rankOf("kept", "keptToo", 9);
        test::writeFile("f", text);
        test::clearMessages();
        EXPECT_FALSE(apRankInfoReader("f", &record));
        expectRank(record, "kept", "keptToo", 9);
        EXPECT_MESSAGES(readerCannotRead);
    }
}

TEST(ApRankInfo, readerTreatsALineThatBeginsWithANulAsBlank)
{
    ApRank record = rankOf("kept", "keptToo", 9);
    test::writeBytes("f", "\0aa bb 1\n", 9);
    EXPECT_FALSE(apRankInfoReader("f", &record));
    expectRank(record, "kept", "keptToo", 9);
    EXPECT_MESSAGES(readerCannotRead);
}

TEST(ApRankInfo, readerReadsALineOfMoreThan1023CharactersAsTwo)
{
    char text[1100];
    memset(text, ' ', sizeof text);
    memcpy(text, "aa bb 1", 7);
    snprintf(text + 1023, sizeof text - 1023, "cc dd 2\nee ff 3\n");
    test::writeFile("f", text);
    ApRank records[3] = {};
    EXPECT_TRUE(apRankInfoReader("f", records));
    expectRank(records[0], "aa", "bb", 1);
    expectRank(records[1], "cc", "dd", 2);
    expectRank(records[2], "ee", "ff", 3);
}

TEST(ApRankInfo, readerReadsALineOf1022CharactersAsOne)
{
    char text[1100];
    memset(text, ' ', sizeof text);
    memcpy(text, "aa bb 1", 7);
    snprintf(text + 1022, sizeof text - 1022, "\ncc dd 2\n");
    test::writeFile("f", text);
    ApRank records[2] = {};
    EXPECT_TRUE(apRankInfoReader("f", records));
    expectRank(records[0], "aa", "bb", 1);
    expectRank(records[1], "cc", "dd", 2);
}

TEST(ApRankInfo, readerOfAnEmptyFileReadsNothingAndSucceeds)
{
    ApRank record = rankOf("kept", "keptToo", 9);
    test::writeFile("f", "");
    EXPECT_TRUE(apRankInfoReader("f", &record));
    expectRank(record, "kept", "keptToo", 9);
    EXPECT_STREQ("", test::messages());
}

static bool readNothing()
{
    ApRank record = rankOf("kept", "keptToo", 9);
    const bool result = apRankInfoReader("f", &record);
    expectRank(record, "kept", "keptToo", 9);
    return result;
}

TEST(ApRankInfo, readerReportsFailures)
{
    static const Row rows[] = {
        Row("stops at a blank line with the earlier records filled", blankInside, noFault,
            [] {
                ApRank records[3];
                for (ApRank& record : records)
                    record = rankOf("kept", "keptToo", 9);
                const bool result = apRankInfoReader("f", records);
                expectRank(records[0], "aabbccddee01", "aabbccddee02", 1);
                expectRank(records[1], "kept", "keptToo", 9);
                expectRank(records[2], "kept", "keptToo", 9);
                return result;
            },
            false, {readerCannotRead}),
        Row("does not look at the close after a blank line", blankInside, fails(CLOSE, 1),
            [] {
                ApRank records[3] = {};
                return apRankInfoReader("f", records);
            },
            false, {readerCannotRead}),
        Row("of a missing file fails", NO_FILE, noFault, readNothing, false, {readerCannotOpen}),
        Row("reports a failed close", twoLines, fails(CLOSE, 1),
            [] {
                ApRank records[2] = {};
                const bool result = apRankInfoReader("f", records);
                expectRank(records[1], "aabbccddee03", "aabbccddee04", 2);
                return result;
            },
            false, {readerCannotClose}),
        Row("treats a read error as the end", twoLines, failsFrom(READ, 1), readNothing, true),
        Row("treats a directory as an empty file", DIRECTORY, noFault, readNothing, true),
    };
    expectRows(rows);
}

/* ---- Writer ------------------------------------------------------------- */

TEST(ApRankInfo, writerPrintsOneLinePerRecord)
{
    ApRank records[] = {rankOf("aabbccddee01", "aabbccddee02", 1), rankOf("ab", "c", 0), rankOf("", "", 12),
                        rankOf("0123456789abcde", "fedcba987654321", 255)};
    ApRank before[4];
    memcpy(before, records, sizeof records);
    EXPECT_TRUE(apRankInfoWriter("f", records, 4));
    EXPECT_STREQ("aabbccddee01 aabbccddee02 1\n"
                 "          ab            c 0\n"
                 "                          12\n"
                 "0123456789abcde fedcba987654321 255\n",
                 test::fileText("f"));
    EXPECT_EQ(0, memcmp(before, records, sizeof records));
    EXPECT_STREQ("", test::messages());
}

TEST(ApRankInfo, writerReplacesTheFileByTheFirstRecords)
{
    ApRank records[] = {rankOf("aa", "bb", 1), rankOf("cc", "dd", 2)};
    test::writeFile("f", twoLines);
    EXPECT_TRUE(apRankInfoWriter("f", records, 1));
    EXPECT_STREQ("          aa           bb 1\n", test::fileText("f"));
}

TEST(ApRankInfo, writerOfNoRecordsLeavesAnEmptyFile)
{
    static const int counts[] = {0, -1, INT_MIN};
    ApRank record = rankOf("aa", "bb", 1);
    for (int count : counts) {
        test::writeFile("f", twoLines);
        EXPECT_TRUE(apRankInfoWriter("f", &record, count));
        EXPECT_EQ(0L, test::fileSize("f"));
        remove("f");
        EXPECT_TRUE(apRankInfoWriter("f", &record, count));
        EXPECT_EQ(0L, test::fileSize("f"));
    }
    EXPECT_STREQ("", test::messages());
}

static bool writeThree()
{
    ApRank records[] = {rankOf("aa", "bb", 1), rankOf("cc", "dd", 2), rankOf("ee", "ff", 3)};
    return apRankInfoWriter("f", records, 3);
}

TEST(ApRankInfo, writerStopsAtEachFailedPrint)
{
    static const char* const prints[] = {"          aa           bb 1\n", "          cc           dd 2\n",
                                         "          ee           ff 3\n"};
    expectStopsAtEachPrint(writeThree, prints, writerCannotPrint);
}

TEST(ApRankInfo, writerReportsThePrintOfABigFileThatFailsOnAFullDevice)
{
    static ApRank records[1000];
    EXPECT_FALSE(apRankInfoWriter("/dev/full", records, 1000));
    /* The close may fail after it, if the C library keeps what it could not write. */
    EXPECT_TRUE(isFirstMessage("E apRankInfoWriter: fprintf error, path: /dev/full"));
    EXPECT_LE(test::messageCount(), 2);
}

static bool write(ApRank record, const char* path = "f")
{
    return apRankInfoWriter(path, &record, 1);
}

static bool writeOne()
{
    return write(rankOf("aa", "bb", 1));
}

TEST(ApRankInfo, writerReportsFailures)
{
    static const Row rows[] = {
        Row("reports a failed open without a close", NO_FILE, noFault,
            [] { return write(rankOf("aa", "bb", 1), "no/file"); }, false,
            {"E apRankInfoWriter: fopen error, path: no/file."}),
        Row("reports a failed close after a failed print", NO_FILE, failBoth(WRITE, 1, CLOSE, 1), writeOne,
            false, {writerCannotPrint, writerCannotClose}, ""),
        Row("reports a failed close", NO_FILE, fails(CLOSE, 1), writeOne, false, {writerCannotClose},
            "          aa           bb 1\n"),
        Row("reports the close that fails on a full device", NO_FILE, noFault,
            [] { return write(rankOf("aa", "bb", 1), "/dev/full"); }, false,
            {"E apRankInfoWriter: fclose error, path:/dev/full.\n"}),
        Row("reports the print that fails on a full device", NO_FILE, unbuffered,
            [] {
                ApRank records[] = {rankOf("aa", "bb", 1), rankOf("cc", "dd", 2)};
                return apRankInfoWriter("/dev/full", records, 2);
            },
            false, {"E apRankInfoWriter: fprintf error, path: /dev/full"}),
    };
    expectRows(rows);
}

/* ---- Update ------------------------------------------------------------- */

TEST(ApRankInfo, updateReplacesTheLineOfTheDevice)
{
    ApRank income = rankOf("cc", "xx", 9);
    const ApRank before = income;
    test::writeFile("f", "aa a1 1\nbb b1 2\ncc c1 3\ndd d1 4\n");
    EXPECT_TRUE(updataSingleApRankInfo("f", &income));
    EXPECT_STREQ("          aa           a1 1\n"
                 "          bb           b1 2\n"
                 "          cc           xx 9\n"
                 "          dd           d1 4\n",
                 test::fileText("f"));
    EXPECT_MESSAGES("I updataSingleApRankInfo: Income AP Rank from cc, 4 items of old ApRankInfo",
                    "I updataSingleApRankInfo: income ap rank info found @index 2");
    EXPECT_EQ(0, memcmp(&before, &income, sizeof income));
}

TEST(ApRankInfo, updateFindsTheFirstAndTheLastLine)
{
    ApRank income = rankOf("aa", "xx", 8);
    test::writeFile("f", "aa a1 1\nbb b1 2\n");
    EXPECT_TRUE(updataSingleApRankInfo("f", &income));
    EXPECT_STREQ("          aa           xx 8\n          bb           b1 2\n", test::fileText("f"));
    income = rankOf("bb", "yy", 9);
    EXPECT_TRUE(updataSingleApRankInfo("f", &income));
    EXPECT_STREQ("          aa           xx 8\n          bb           yy 9\n", test::fileText("f"));
}

TEST(ApRankInfo, updateReplacesOnlyTheFirstOfTwo)
{
    ApRank income = rankOf("bb", "xx", 9);
    test::writeFile("f", "aa a1 1\nbb b1 2\nbb b2 3\n");
    EXPECT_TRUE(updataSingleApRankInfo("f", &income));
    EXPECT_STREQ("          aa           a1 1\n          bb           xx 9\n          bb           b2 3\n",
                 test::fileText("f"));
}

TEST(ApRankInfo, updateDoesNotLookAtTheFather)
{
    ApRank income = rankOf("a1", "aa", 9);
    test::writeFile("f", "aa a1 1\n");
    EXPECT_TRUE(updataSingleApRankInfo("f", &income));
    EXPECT_STREQ("          aa           a1 1\n          a1           aa 9\n", test::fileText("f"));
}

TEST(ApRankInfo, updateAppendsANewDevice)
{
    ApRank income = rankOf("cc", "xx", 9);
    const ApRank before = income;
    test::writeFile("f", twoLines);
    EXPECT_TRUE(updataSingleApRankInfo("f", &income));
    EXPECT_STREQ("aabbccddee01 aabbccddee02 1\n"
                 "aabbccddee03 aabbccddee04 2\n"
                 "          cc           xx 9\n",
                 test::fileText("f"));
    EXPECT_MESSAGES("I updataSingleApRankInfo: Income AP Rank from cc, 2 items of old ApRankInfo",
                    updateInserts);
    EXPECT_EQ(0, memcmp(&before, &income, sizeof income));
}

TEST(ApRankInfo, updateComparesWholeKeysExactly)
{
    static const char* const others[] = {
        "AABBCCDDEE01", "aabbccddee0", "aabbccddee012", "aabbccddee09", "babbccddee01", "aabbccddee01abc", "",
        " aabbccddee01"};
    for (const char* other : others) {
        ApRank income = rankOf(other, "xx", 9);
        test::writeFile("f", twoLines);
        EXPECT_TRUE(updataSingleApRankInfo("f", &income));
        EXPECT_EQ(3, test::fileLines("f"));
        EXPECT_STREQ("aabbccddee01 aabbccddee02 1", test::fileLine("f", 0));
        EXPECT_STREQ("aabbccddee03 aabbccddee04 2", test::fileLine("f", 1));
    }
}

TEST(ApRankInfo, updateComparesNoCharacterAfterTheKeysEnd)
{
    ApRank income = rankOf("aa", "xx", 9);
    income.deviceMAC[3] = 'x';
    test::writeFile("f", "aa a1 1\n");
    EXPECT_TRUE(updataSingleApRankInfo("f", &income));
    EXPECT_STREQ("          aa           xx 9\n", test::fileText("f"));
}

TEST(ApRankInfo, updateHasNoCap)
{
    static const int counts[] = {1, 30, 255, 256, 257, 600};
    ApRank income = rankOf("cc", "xx", 9);
    for (int count : counts) {
        writeRanks(count);
        EXPECT_TRUE(updataSingleApRankInfo("f", &income));
        EXPECT_EQ(count + 1, test::fileLines("f"));
        EXPECT_STREQ("000000000000 bbbbbbbbbbbb 7", test::fileLine("f", 0));
        EXPECT_STREQ("          cc           xx 9", test::fileLine("f", count));
    }
}

static bool update(ApRank income, const char* path = "f")
{
    return updataSingleApRankInfo(path, &income);
}

static bool updateNewDevice()
{
    return update(rankOf("cc", "xx", 9));
}

TEST(ApRankInfo, updateReportsItsStepsAndFailures)
{
    static const Row rows[] = {
        Row(
            "of a missing file saves the record alone", NO_FILE, noFault,
            [] { return update(rankOf("aabbccddee09", "xx", 9)); }, true,
            {counterCannotOpen,
             "I updataSingleApRankInfo: Income AP Rank from aabbccddee09, -1 items of old ApRankInfo",
             updateSavesAlone, updateSaved},
            "aabbccddee09           xx 9\n"),
        Row("of an empty file saves the record alone", "", noFault, updateNewDevice, true,
            {"I updataSingleApRankInfo: Income AP Rank from cc, 0 items of old ApRankInfo", updateSavesAlone,
             updateSaved},
            "          cc           xx 9\n"),
        Row("of a file that cannot be counted replaces it", twoLines, fails(CLOSE, 1), updateNewDevice, true,
            {counterCannotClose,
             "I updataSingleApRankInfo: Income AP Rank from cc, -1 items of old ApRankInfo", updateSavesAlone,
             updateSaved},
            "          cc           xx 9\n"),
        Row(
            "finds the device", twoLines, noFault, [] { return update(rankOf("aabbccddee03", "xx", 9)); },
            true,
            {"I updataSingleApRankInfo: Income AP Rank from aabbccddee03, 2 items of old ApRankInfo",
             "I updataSingleApRankInfo: income ap rank info found @index 1"},
            "aabbccddee01 aabbccddee02 1\n"
            "aabbccddee03           xx 9\n"),
        Row("does not find the device", twoLines, noFault, updateNewDevice, true,
            {"I updataSingleApRankInfo: Income AP Rank from cc, 2 items of old ApRankInfo", updateInserts},
            "aabbccddee01 aabbccddee02 1\n"
            "aabbccddee03 aabbccddee04 2\n"
            "          cc           xx 9\n"),
        Row("refuses a null pointer after the count", NO_FILE, noFault,
            [] { return updataSingleApRankInfo("f", nullptr); }, false,
            {counterCannotOpen, updateRefusesNull}),
        Row("refuses a null pointer on a file with records", twoLines, noFault,
            [] { return updataSingleApRankInfo("f", nullptr); }, false, {updateRefusesNull}),
        Row("reports a failed first save", NO_FILE, noFault,
            [] { return update(rankOf("cc", "xx", 9), "no/file"); }, false,
            {"E dataLineCounter: Failed to read file: no/file\n",
             "I updataSingleApRankInfo: Income AP Rank from cc, -1 items of old ApRankInfo", updateSavesAlone,
             "E apRankInfoWriter: fopen error, path: no/file.",
             "E updataSingleApRankInfo: Failed to write to file: no/file"}),
        Row("of a directory fails", DIRECTORY, noFault, updateNewDevice, false,
            {"I updataSingleApRankInfo: Income AP Rank from cc, 0 items of old ApRankInfo", updateSavesAlone,
             writerCannotOpen, updateCannotSave}),
        Row("reports a failed allocation", twoLines, fails(ALLOCATE, 1), updateNewDevice, false,
            {"I updataSingleApRankInfo: Income AP Rank from cc, 2 items of old ApRankInfo",
             updateCannotAllocate}),
        Row("reports a failed read", blankInside, noFault, updateNewDevice, false,
            {"I updataSingleApRankInfo: Income AP Rank from cc, 3 items of old ApRankInfo", readerCannotRead,
             updateCannotRead}),
        Row("reports a reader that cannot open", twoLines, fails(OPEN, 2), updateNewDevice, false,
            {"I updataSingleApRankInfo: Income AP Rank from cc, 2 items of old ApRankInfo", readerCannotOpen,
             updateCannotRead}),
        Row("reports a reader that cannot close", twoLines, fails(CLOSE, 2), updateNewDevice, false,
            {"I updataSingleApRankInfo: Income AP Rank from cc, 2 items of old ApRankInfo", readerCannotClose,
             updateCannotRead}),
        Row("reports a failed write of a replaced record", twoLines, fails(OPEN, 3),
            [] { return update(rankOf("aabbccddee03", "xx", 9)); }, false,
            {"I updataSingleApRankInfo: Income AP Rank from aabbccddee03, 2 items of old ApRankInfo",
             "I updataSingleApRankInfo: income ap rank info found @index 1", writerCannotOpen,
             updateCannotReplace}),
        Row("reports a failed write of an appended record", twoLines, fails(OPEN, 3), updateNewDevice, false,
            {"I updataSingleApRankInfo: Income AP Rank from cc, 2 items of old ApRankInfo", updateInserts,
             writerCannotOpen, updateCannotAdd}),
        Row("leaves what was printed before a failed print", twoLines, fails(WRITE, 3), updateNewDevice,
            false,
            {"I updataSingleApRankInfo: Income AP Rank from cc, 2 items of old ApRankInfo", updateInserts,
             writerCannotPrint, updateCannotAdd}),
        Row("reports a failed growth and releases its array", twoLines, fails(GROW, 1), updateNewDevice,
            false,
            {"I updataSingleApRankInfo: Income AP Rank from cc, 2 items of old ApRankInfo", updateInserts,
             updateCannotGrow}),
        Row("of a file that shrinks keeps the counted records", twoLines,
            changes(2, [](const char* path) { test::writeFile(path, "aa bb 1\n"); }), updateNewDevice, true,
            {"I updataSingleApRankInfo: Income AP Rank from cc, 2 items of old ApRankInfo", updateInserts},
            "          aa           bb 1\n"
            "                          0\n"
            "          cc           xx 9\n"),
        Row(
            "of a file that grows reads the counted records", twoLines,
            changes(2, [](const char*) { writeRanks(600); }),
            [] { return update(rankOf("000000000300", "xx", 9)); }, true,
            {"I updataSingleApRankInfo: Income AP Rank from 000000000300, 2 items of old ApRankInfo",
             updateInserts},
            "000000000000 bbbbbbbbbbbb 7\n"
            "000000000001 bbbbbbbbbbbb 7\n"
            "000000000300           xx 9\n"),
    };
    expectRows(rows);
}
