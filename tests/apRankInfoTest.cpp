/* SPDX-License-Identifier: Apache-2.0 */
#include "testing.h"

#include <limits.h>
#include <sys/stat.h>

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

/* Runs the scenario at every level: all messages from 6 on, errors alone from 3 on, none below. */
static void expectMessages(bool (*scenario)(), bool result, const char* all, const char* errors)
{
    for (int level = 7; level >= 1; --level) {
        test::failNothing();
        test::clearMessages();
        test::setLevel(level);
        EXPECT_EQ(result, scenario());
        EXPECT_STREQ(level >= 6 ? all : level >= 3 ? errors : "", test::messages());
    }
}

static void expectErrors(bool (*scenario)(), bool result, const char* errors)
{
    expectMessages(scenario, result, errors, errors);
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

TEST(ApRankInfo, readerTakesTwelveCharactersOfAMac)
{
    test::writeFile("f", "aabbccddeeff01 5\naa aabbccddeeff17\naa bb 3 more\n");
    ApRank records[3] = {};
    EXPECT_TRUE(apRankInfoReader("f", records));
    expectRank(records[0], "aabbccddeeff", "01", 5);
    expectRank(records[1], "aa", "aabbccddeeff", 17);
    expectRank(records[2], "aa", "bb", 3);
}

TEST(ApRankInfo, readerTakesLeadingNoughtsForDecimal)
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

TEST(ApRankInfo, readerStopsAtABlankLineWithTheEarlierRecordsFilled)
{
    expectErrors(
        [] {
            ApRank records[3];
            for (ApRank& record : records)
                record = rankOf("kept", "keptToo", 9);
            test::writeFile("f", blankInside);
            const bool result = apRankInfoReader("f", records);
            expectRank(records[0], "aabbccddee01", "aabbccddee02", 1);
            expectRank(records[1], "kept", "keptToo", 9);
            expectRank(records[2], "kept", "keptToo", 9);
            return result;
        },
        false, "libzo: [apRankInfoReader:#]: sscanf error, path: f.\n|");
    EXPECT_STREQ(blankInside, test::fileText("f"));
}

TEST(ApRankInfo, readerTakesEveryKindOfBlankLineForAnError)
{
    static const char* const texts[] = {"\n", "     \n", " \t \n", "   ", "\r\n"};
    for (const char* text : texts) {
        ApRank record = rankOf("kept", "keptToo", 9);
        test::writeFile("f", text);
        test::clearMessages();
        EXPECT_FALSE(apRankInfoReader("f", &record));
        expectRank(record, "kept", "keptToo", 9);
        EXPECT_STREQ("libzo: [apRankInfoReader:#]: sscanf error, path: f.\n|", test::messages());
    }
}

TEST(ApRankInfo, readerTakesALineThatBeginsWithANulForABlankOne)
{
    ApRank record = rankOf("kept", "keptToo", 9);
    test::writeBytes("f", "\0aa bb 1\n", 9);
    EXPECT_FALSE(apRankInfoReader("f", &record));
    expectRank(record, "kept", "keptToo", 9);
    EXPECT_STREQ("libzo: [apRankInfoReader:#]: sscanf error, path: f.\n|", test::messages());
}

TEST(ApRankInfo, readerDoesNotLookAtTheCloseAfterABlankLine)
{
    ApRank records[3] = {};
    test::writeFile("f", blankInside);
    test::failNth(test::CLOSE, 1);
    EXPECT_FALSE(apRankInfoReader("f", records));
    EXPECT_EQ(1, test::callCount(test::CLOSE));
    EXPECT_STREQ("libzo: [apRankInfoReader:#]: sscanf error, path: f.\n|", test::messages());
}

TEST(ApRankInfo, readerTakesALineOfMoreThan1023CharactersAsTwo)
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

TEST(ApRankInfo, readerTakesALineOf1022CharactersAsOne)
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

TEST(ApRankInfo, readerOfAMissingFileFails)
{
    expectErrors(
        [] {
            ApRank record = rankOf("kept", "keptToo", 9);
            const bool result = apRankInfoReader("missing", &record);
            expectRank(record, "kept", "keptToo", 9);
            return result;
        },
        false, "libzo: [apRankInfoReader:#]: Failed to read file : missing.\n|");
    EXPECT_EQ(-1, test::fileSize("missing"));
}

TEST(ApRankInfo, readerReportsAFailedClose)
{
    expectErrors(
        [] {
            ApRank records[2] = {};
            test::writeFile("f", twoLines);
            test::failNth(test::CLOSE, 1);
            const bool result = apRankInfoReader("f", records);
            expectRank(records[1], "aabbccddee03", "aabbccddee04", 2);
            return result;
        },
        false, "libzo: [apRankInfoReader:#]: fclose error, path: f.\n|");
}

TEST(ApRankInfo, readerTakesAReadErrorForTheEnd)
{
    ApRank record = rankOf("kept", "keptToo", 9);
    test::writeFile("f", twoLines);
    test::failFrom(test::READ, 1);
    EXPECT_TRUE(apRankInfoReader("f", &record));
    test::failNothing();
    EXPECT_EQ(0, mkdir("d", 0777));
    EXPECT_TRUE(apRankInfoReader("d", &record));
    expectRank(record, "kept", "keptToo", 9);
    EXPECT_STREQ("", test::messages());
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

TEST(ApRankInfo, writerReportsAFailedOpenWithoutAClose)
{
    expectErrors(
        [] {
            ApRank record = rankOf("aa", "bb", 1);
            return apRankInfoWriter("no/file", &record, 1);
        },
        false, "libzo: [apRankInfoWriter:#]: fopen error, path: no/file.|");
    EXPECT_EQ(0, test::callCount(test::CLOSE));
}

TEST(ApRankInfo, writerStopsAtAFailedPrint)
{
    static const char* const left[] = {"", "          aa           bb 1\n",
                                       "          aa           bb 1\n          cc           dd 2\n"};
    ApRank records[] = {rankOf("aa", "bb", 1), rankOf("cc", "dd", 2), rankOf("ee", "ff", 3)};
    for (int k = 1; k <= 3; ++k) {
        test::clearMessages();
        test::failNth(test::WRITE, k);
        EXPECT_FALSE(apRankInfoWriter("f", records, 3));
        EXPECT_STREQ(left[k - 1], test::fileText("f"));
        EXPECT_STREQ("libzo: [apRankInfoWriter:#]: fprintf error, path: f|", test::messages());
    }
}

TEST(ApRankInfo, writerReportsAFailedPrintAtTheErrorLevel)
{
    expectErrors(
        [] {
            ApRank record = rankOf("aa", "bb", 1);
            test::failNth(test::WRITE, 1);
            return apRankInfoWriter("f", &record, 1);
        },
        false, "libzo: [apRankInfoWriter:#]: fprintf error, path: f|");
}

TEST(ApRankInfo, writerReportsAFailedCloseAfterAFailedPrint)
{
    expectErrors(
        [] {
            ApRank record = rankOf("aa", "bb", 1);
            test::failNth(test::WRITE, 1);
            test::failNth(test::CLOSE, 1);
            return apRankInfoWriter("f", &record, 1);
        },
        false,
        "libzo: [apRankInfoWriter:#]: fprintf error, path: f|"
        "libzo: [apRankInfoWriter:#]: fclose error, path:f.\n|");
}

TEST(ApRankInfo, writerReportsAFailedClose)
{
    expectErrors(
        [] {
            ApRank record = rankOf("aa", "bb", 1);
            test::failNth(test::CLOSE, 1);
            return apRankInfoWriter("f", &record, 1);
        },
        false, "libzo: [apRankInfoWriter:#]: fclose error, path:f.\n|");
    EXPECT_STREQ("          aa           bb 1\n", test::fileText("f"));
}

TEST(ApRankInfo, writerReportsTheCloseThatFailsOnAFullDevice)
{
    ApRank record = rankOf("aa", "bb", 1);
    EXPECT_FALSE(apRankInfoWriter("/dev/full", &record, 1));
    EXPECT_STREQ("libzo: [apRankInfoWriter:#]: fclose error, path:/dev/full.\n|", test::messages());
}

TEST(ApRankInfo, writerReportsThePrintThatFailsOnAFullDevice)
{
    ApRank records[] = {rankOf("aa", "bb", 1), rankOf("cc", "dd", 2)};
    test::streamBuffer(0);
    EXPECT_FALSE(apRankInfoWriter("/dev/full", records, 2));
    EXPECT_STREQ("libzo: [apRankInfoWriter:#]: fprintf error, path: /dev/full|", test::messages());
}

TEST(ApRankInfo, writerReportsThePrintOfABigFileThatFailsOnAFullDevice)
{
    static ApRank records[1000];
    static const char expected[] = "libzo: [apRankInfoWriter:#]: fprintf error, path: /dev/full|";
    EXPECT_FALSE(apRankInfoWriter("/dev/full", records, 1000));
    /* The close may fail behind it, as the C library keeps or drops what it could not write. */
    EXPECT_EQ(0, strncmp(expected, test::messages(), sizeof expected - 1));
    EXPECT_LE(test::messageCount(), 2);
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
    EXPECT_STREQ("libzo: [updataSingleApRankInfo:#]: Income AP Rank from cc, 4 items of old ApRankInfo|"
                 "libzo: [updataSingleApRankInfo:#]: income ap rank info found @index 2|",
                 test::messages());
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
    EXPECT_STREQ("libzo: [updataSingleApRankInfo:#]: Income AP Rank from cc, 2 items of old ApRankInfo|"
                 "libzo: [updataSingleApRankInfo:#]: income ap rank info not found, inserting...|",
                 test::messages());
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

TEST(ApRankInfo, updateComparesNoCharacterBehindTheKeysEnd)
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

TEST(ApRankInfo, updateOfAMissingFileSavesTheRecordAlone)
{
    expectMessages(
        [] {
            ApRank income = rankOf("aabbccddee09", "xx", 9);
            remove("f");
            return updataSingleApRankInfo("f", &income);
        },
        true,
        "libzo: [dataLineCounter:#]: Failed to read file: f\n|"
        "libzo: [updataSingleApRankInfo:#]: Income AP Rank from aabbccddee09, -1 items of old ApRankInfo|"
        "libzo: [updataSingleApRankInfo:#]: Just save apRankInfo|"
        "libzo: [updataSingleApRankInfo:#]: AP rank info has been written to file: f|",
        "libzo: [dataLineCounter:#]: Failed to read file: f\n|");
    EXPECT_STREQ("aabbccddee09           xx 9\n", test::fileText("f"));
}

TEST(ApRankInfo, updateOfAnEmptyFileSavesTheRecordAlone)
{
    expectMessages(
        [] {
            ApRank income = rankOf("cc", "xx", 9);
            test::writeFile("f", "");
            return updataSingleApRankInfo("f", &income);
        },
        true,
        "libzo: [updataSingleApRankInfo:#]: Income AP Rank from cc, 0 items of old ApRankInfo|"
        "libzo: [updataSingleApRankInfo:#]: Just save apRankInfo|"
        "libzo: [updataSingleApRankInfo:#]: AP rank info has been written to file: f|",
        "");
    EXPECT_STREQ("          cc           xx 9\n", test::fileText("f"));
}

TEST(ApRankInfo, updateOfAFileThatCannotBeCountedReplacesIt)
{
    ApRank income = rankOf("cc", "xx", 9);
    test::writeFile("f", twoLines);
    test::failNth(test::CLOSE, 1);
    EXPECT_TRUE(updataSingleApRankInfo("f", &income));
    EXPECT_STREQ("          cc           xx 9\n", test::fileText("f"));
    EXPECT_STREQ("libzo: [dataLineCounter:#]: fclose error, path:f.\n|"
                 "libzo: [updataSingleApRankInfo:#]: Income AP Rank from cc, -1 items of old ApRankInfo|"
                 "libzo: [updataSingleApRankInfo:#]: Just save apRankInfo|"
                 "libzo: [updataSingleApRankInfo:#]: AP rank info has been written to file: f|",
                 test::messages());
}

TEST(ApRankInfo, updateLogsItsSearchAtTheInformationalLevel)
{
    expectMessages(
        [] {
            ApRank income = rankOf("aabbccddee03", "xx", 9);
            test::writeFile("f", twoLines);
            return updataSingleApRankInfo("f", &income);
        },
        true,
        "libzo: [updataSingleApRankInfo:#]: Income AP Rank from aabbccddee03, 2 items of old ApRankInfo|"
        "libzo: [updataSingleApRankInfo:#]: income ap rank info found @index 1|",
        "");
    expectMessages(
        [] {
            ApRank income = rankOf("cc", "xx", 9);
            test::writeFile("f", twoLines);
            return updataSingleApRankInfo("f", &income);
        },
        true,
        "libzo: [updataSingleApRankInfo:#]: Income AP Rank from cc, 2 items of old ApRankInfo|"
        "libzo: [updataSingleApRankInfo:#]: income ap rank info not found, inserting...|",
        "");
}

TEST(ApRankInfo, updateRefusesANullPointerAfterTheCount)
{
    expectErrors([] { return updataSingleApRankInfo("missing", nullptr); }, false,
                 "libzo: [dataLineCounter:#]: Failed to read file: missing\n|"
                 "libzo: [updataSingleApRankInfo:#]: null pIncomeApRank|");
    EXPECT_EQ(-1, test::fileSize("missing"));
}

TEST(ApRankInfo, updateRefusesANullPointerOnAFileWithRecords)
{
    test::writeFile("f", twoLines);
    EXPECT_FALSE(updataSingleApRankInfo("f", nullptr));
    EXPECT_STREQ("libzo: [updataSingleApRankInfo:#]: null pIncomeApRank|", test::messages());
    EXPECT_STREQ(twoLines, test::fileText("f"));
}

TEST(ApRankInfo, updateReportsAFailedFirstSave)
{
    expectMessages(
        [] {
            ApRank income = rankOf("cc", "xx", 9);
            return updataSingleApRankInfo("no/file", &income);
        },
        false,
        "libzo: [dataLineCounter:#]: Failed to read file: no/file\n|"
        "libzo: [updataSingleApRankInfo:#]: Income AP Rank from cc, -1 items of old ApRankInfo|"
        "libzo: [updataSingleApRankInfo:#]: Just save apRankInfo|"
        "libzo: [apRankInfoWriter:#]: fopen error, path: no/file.|"
        "libzo: [updataSingleApRankInfo:#]: Failed to write to file: no/file|",
        "libzo: [dataLineCounter:#]: Failed to read file: no/file\n|"
        "libzo: [apRankInfoWriter:#]: fopen error, path: no/file.|"
        "libzo: [updataSingleApRankInfo:#]: Failed to write to file: no/file|");
}

TEST(ApRankInfo, updateOfADirectoryFails)
{
    ApRank income = rankOf("cc", "xx", 9);
    EXPECT_EQ(0, mkdir("d", 0777));
    EXPECT_FALSE(updataSingleApRankInfo("d", &income));
    EXPECT_STREQ("libzo: [updataSingleApRankInfo:#]: Income AP Rank from cc, 0 items of old ApRankInfo|"
                 "libzo: [updataSingleApRankInfo:#]: Just save apRankInfo|"
                 "libzo: [apRankInfoWriter:#]: fopen error, path: d.|"
                 "libzo: [updataSingleApRankInfo:#]: Failed to write to file: d|",
                 test::messages());
}

TEST(ApRankInfo, updateReportsAFailedAllocation)
{
    expectMessages(
        [] {
            ApRank income = rankOf("cc", "xx", 9);
            test::writeFile("f", twoLines);
            test::failNth(test::ALLOCATE, 1);
            return updataSingleApRankInfo("f", &income);
        },
        false,
        "libzo: [updataSingleApRankInfo:#]: Income AP Rank from cc, 2 items of old ApRankInfo|"
        "libzo: [updataSingleApRankInfo:#]: Failed to allocate memory for pApRank|",
        "libzo: [updataSingleApRankInfo:#]: Failed to allocate memory for pApRank|");
    EXPECT_STREQ(twoLines, test::fileText("f"));
}

TEST(ApRankInfo, updateReportsAFailedRead)
{
    expectMessages(
        [] {
            ApRank income = rankOf("cc", "xx", 9);
            test::writeFile("f", blankInside);
            return updataSingleApRankInfo("f", &income);
        },
        false,
        "libzo: [updataSingleApRankInfo:#]: Income AP Rank from cc, 3 items of old ApRankInfo|"
        "libzo: [apRankInfoReader:#]: sscanf error, path: f.\n|"
        "libzo: [updataSingleApRankInfo:#]: Failed to read file: f|",
        "libzo: [apRankInfoReader:#]: sscanf error, path: f.\n|"
        "libzo: [updataSingleApRankInfo:#]: Failed to read file: f|");
    EXPECT_STREQ(blankInside, test::fileText("f"));
    EXPECT_EQ(0, test::heldArrays());
}

TEST(ApRankInfo, updateReportsAReaderThatCannotOpenOrClose)
{
    ApRank income = rankOf("cc", "xx", 9);
    test::setLevel(5);
    test::writeFile("f", twoLines);
    test::failNth(test::OPEN, 2);
    EXPECT_FALSE(updataSingleApRankInfo("f", &income));
    EXPECT_STREQ("libzo: [apRankInfoReader:#]: Failed to read file : f.\n|"
                 "libzo: [updataSingleApRankInfo:#]: Failed to read file: f|",
                 test::messages());
    test::clearMessages();
    test::failNth(test::CLOSE, 2);
    EXPECT_FALSE(updataSingleApRankInfo("f", &income));
    EXPECT_STREQ("libzo: [apRankInfoReader:#]: fclose error, path: f.\n|"
                 "libzo: [updataSingleApRankInfo:#]: Failed to read file: f|",
                 test::messages());
    EXPECT_STREQ(twoLines, test::fileText("f"));
}

TEST(ApRankInfo, updateReportsAFailedWriteOfAReplacedRecord)
{
    expectMessages(
        [] {
            ApRank income = rankOf("aabbccddee03", "xx", 9);
            test::writeFile("f", twoLines);
            test::failNth(test::OPEN, 3);
            return updataSingleApRankInfo("f", &income);
        },
        false,
        "libzo: [updataSingleApRankInfo:#]: Income AP Rank from aabbccddee03, 2 items of old ApRankInfo|"
        "libzo: [updataSingleApRankInfo:#]: income ap rank info found @index 1|"
        "libzo: [apRankInfoWriter:#]: fopen error, path: f.|"
        "libzo: [updataSingleApRankInfo:#]: Failed to save new ap info to file: f|",
        "libzo: [apRankInfoWriter:#]: fopen error, path: f.|"
        "libzo: [updataSingleApRankInfo:#]: Failed to save new ap info to file: f|");
    EXPECT_STREQ(twoLines, test::fileText("f"));
    EXPECT_EQ(0, test::heldArrays());
}

TEST(ApRankInfo, updateReportsAFailedWriteOfAnAppendedRecord)
{
    expectMessages(
        [] {
            ApRank income = rankOf("cc", "xx", 9);
            test::writeFile("f", twoLines);
            test::failNth(test::OPEN, 3);
            return updataSingleApRankInfo("f", &income);
        },
        false,
        "libzo: [updataSingleApRankInfo:#]: Income AP Rank from cc, 2 items of old ApRankInfo|"
        "libzo: [updataSingleApRankInfo:#]: income ap rank info not found, inserting...|"
        "libzo: [apRankInfoWriter:#]: fopen error, path: f.|"
        "libzo: [updataSingleApRankInfo:#]: Failed to add ap rank info data to file: f|",
        "libzo: [apRankInfoWriter:#]: fopen error, path: f.|"
        "libzo: [updataSingleApRankInfo:#]: Failed to add ap rank info data to file: f|");
    EXPECT_STREQ(twoLines, test::fileText("f"));
    EXPECT_EQ(0, test::heldArrays());
}

TEST(ApRankInfo, updateLeavesWhatWasPrintedBeforeAFailedPrint)
{
    ApRank income = rankOf("cc", "xx", 9);
    test::setLevel(5);
    test::writeFile("f", twoLines);
    test::failNth(test::WRITE, 3);
    EXPECT_FALSE(updataSingleApRankInfo("f", &income));
    EXPECT_STREQ(twoLines, test::fileText("f"));
    EXPECT_STREQ("libzo: [apRankInfoWriter:#]: fprintf error, path: f|"
                 "libzo: [updataSingleApRankInfo:#]: Failed to add ap rank info data to file: f|",
                 test::messages());
}

TEST(ApRankInfo, updateReportsAFailedGrowthAndReleasesItsArray)
{
    expectMessages(
        [] {
            ApRank income = rankOf("cc", "xx", 9);
            test::writeFile("f", twoLines);
            test::failNth(test::GROW, 1);
            return updataSingleApRankInfo("f", &income);
        },
        false,
        "libzo: [updataSingleApRankInfo:#]: Income AP Rank from cc, 2 items of old ApRankInfo|"
        "libzo: [updataSingleApRankInfo:#]: income ap rank info not found, inserting...|"
        "libzo: [updataSingleApRankInfo:#]: failed to reallocte memory.|",
        "libzo: [updataSingleApRankInfo:#]: failed to reallocte memory.|");
    EXPECT_STREQ(twoLines, test::fileText("f"));
    EXPECT_EQ(0, test::heldArrays());
}

TEST(ApRankInfo, updateOfAFileThatShrinksKeepsTheCountedRecords)
{
    ApRank income = rankOf("cc", "xx", 9);
    test::writeFile("f", twoLines);
    test::beforeOpen(2, [](const char* path) { test::writeFile(path, "aa bb 1\n"); });
    EXPECT_TRUE(updataSingleApRankInfo("f", &income));
    EXPECT_STREQ("          aa           bb 1\n"
                 "                          0\n"
                 "          cc           xx 9\n",
                 test::fileText("f"));
}

TEST(ApRankInfo, updateOfAFileThatGrowsTakesTheCountedRecords)
{
    ApRank income = rankOf("000000000300", "xx", 9);
    test::writeFile("f", twoLines);
    test::beforeOpen(2, [](const char*) { writeRanks(600); });
    EXPECT_TRUE(updataSingleApRankInfo("f", &income));
    EXPECT_STREQ("000000000000 bbbbbbbbbbbb 7\n"
                 "000000000001 bbbbbbbbbbbb 7\n"
                 "000000000300           xx 9\n",
                 test::fileText("f"));
}
