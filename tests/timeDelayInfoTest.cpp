/* SPDX-License-Identifier: Apache-2.0 */
#include "testing.h"

#include <limits.h>
#include <sys/stat.h>

static const char oneLine[] = "aabbccddee01 101 102 103 104 105 106 107 108 109 110 111 112 113 114 115\n";
static const char twoLines[] = "aabbccddee01 101 102 103 104 105 106 107 108 109 110 111 112 113 114 115\n"
                               "aabbccddee02 201 202 203 204 205 206 207 208 209 210 211 212 213 214 215\n";
static const char incomeLine[] = "          cc 301 302 303 304 305 306 307 308 309 310 311 312 313 314 315\n";

/* A record whose samples are first, first + 1, ... */
static TimeDelayInfo delays(const char* father, int first)
{
    TimeDelayInfo info = {};
    snprintf(info.fatherMAC, sizeof info.fatherMAC, "%s", father);
    for (int i = 0; i < 15; ++i)
        info.delayTime[i] = static_cast<uint16_t>(first + i);
    return info;
}

static TimeDelayInfo sameDelays(const char* father, uint16_t sample)
{
    TimeDelayInfo info = delays(father, 0);
    for (uint16_t& delay : info.delayTime)
        delay = sample;
    return info;
}

/* Expects the samples first, first + 1, ... */
static void expectDelays(const TimeDelayInfo& info, const char* father, int first)
{
    EXPECT_STREQ(father, info.fatherMAC);
    for (int i = 0; i < 15; ++i)
        EXPECT_EQ(first + i, info.delayTime[i]);
}

static void expectSameDelays(const TimeDelayInfo& info, const char* father, int sample)
{
    EXPECT_STREQ(father, info.fatherMAC);
    for (int i = 0; i < 15; ++i)
        EXPECT_EQ(sample, info.delayTime[i]);
}

/* A history of `count` lines, line i for father number i. */
static void writeHistory(int count)
{
    static char text[400 * 73 + 1];
    int length = 0;
    for (int i = 0; i < count; ++i)
        length += snprintf(text + length, sizeof text - static_cast<size_t>(length),
                           "%012d 101 102 103 104 105 106 107 108 109 110 111 112 113 114 115\n", i);
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

TEST(TimeDelayInfo, readerLoadsTheRecordsAskedFor)
{
    test::writeFile("f", twoLines);
    TimeDelayInfo infos[3] = {delays("kept", 1), delays("kept", 1), delays("kept", 1)};
    EXPECT_TRUE(timeDelayInfoReader("f", infos, 2));
    expectDelays(infos[0], "aabbccddee01", 101);
    expectDelays(infos[1], "aabbccddee02", 201);
    expectDelays(infos[2], "kept", 1);
    EXPECT_STREQ("", test::messages());
    EXPECT_STREQ(twoLines, test::fileText("f"));
}

TEST(TimeDelayInfo, readerTakesNoMoreRecordsThanAskedFor)
{
    test::writeFile("f", twoLines);
    TimeDelayInfo infos[2] = {sameDelays("kept", 0), sameDelays("kept", 2000)};
    EXPECT_TRUE(timeDelayInfoReader("f", infos, 1));
    expectDelays(infos[0], "aabbccddee01", 101);
    expectSameDelays(infos[1], "kept", 2000);
}

TEST(TimeDelayInfo, readerOfNoRecordsTouchesNothing)
{
    static const int counts[] = {0, -1, INT_MIN};
    test::writeFile("f", twoLines);
    TimeDelayInfo info = sameDelays("kept", 0);
    for (int count : counts)
        EXPECT_TRUE(timeDelayInfoReader("f", &info, count));
    expectSameDelays(info, "kept", 0);
    EXPECT_STREQ("", test::messages());
}

TEST(TimeDelayInfo, readerClampsEverySample)
{
    test::writeFile("f", "aa 0 1 2 999 1000 1001 65535 0 500 998 32767 32768 3 1002 0\n");
    static const int expected[] = {1, 1, 2, 999, 1000, 1000, 1000, 1, 500, 998, 1000, 1000, 3, 1000, 1};
    TimeDelayInfo info = {};
    EXPECT_TRUE(timeDelayInfoReader("f", &info, 1));
    for (int i = 0; i < 15; ++i)
        EXPECT_EQ(expected[i], info.delayTime[i]);
}

TEST(TimeDelayInfo, readerClampsTheSampleAtEveryPlace)
{
    test::writeFile("f", "aa 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0\n"
                         "bb 1001 1001 1001 1001 1001 1001 1001 1001 1001 1001 1001 1001 1001 1001 1001\n");
    TimeDelayInfo infos[2] = {};
    EXPECT_TRUE(timeDelayInfoReader("f", infos, 2));
    expectSameDelays(infos[0], "aa", 1);
    expectSameDelays(infos[1], "bb", 1000);
    for (int i = 3; i < 16; ++i)
        EXPECT_EQ('\0', infos[0].fatherMAC[i]);
}

TEST(TimeDelayInfo, readerReadsTokensNotLines)
{
    test::writeFile("f", "\n\n  aa 1 2 3\n4 5\t6 7 8 9 10\n\n11 12 13\n14\n15 bb 21 22 23 24 25 26 27 28\n"
                         "29 30 31 32 33 34 35");
    TimeDelayInfo infos[2] = {};
    EXPECT_TRUE(timeDelayInfoReader("f", infos, 2));
    expectDelays(infos[0], "aa", 1);
    expectDelays(infos[1], "bb", 21);
    EXPECT_STREQ("", test::messages());
}

TEST(TimeDelayInfo, readerTakesTwelveCharactersOfAMac)
{
    test::writeFile("f", "aabbccddeeff77 78 79 80 81 82 83 84 85 86 87 88 89 90 91\n");
    TimeDelayInfo info = {};
    EXPECT_TRUE(timeDelayInfoReader("f", &info, 1));
    expectDelays(info, "aabbccddeeff", 77);
}

TEST(TimeDelayInfo, readerTakesLeadingNoughtsForDecimal)
{
    test::writeFile("f", "aa 010 011 012 013 014 015 016 017 018 019 020 021 022 023 024\n");
    TimeDelayInfo info = {};
    EXPECT_TRUE(timeDelayInfoReader("f", &info, 1));
    expectDelays(info, "aa", 10);
}

TEST(TimeDelayInfo, readerReportsEveryMissingRecordAndClampsWhatTheArrayHeld)
{
    test::writeFile("f", oneLine);
    TimeDelayInfo infos[3] = {sameDelays("kept", 5), sameDelays("kept", 0), sameDelays("keptToo", 1001)};
    EXPECT_TRUE(timeDelayInfoReader("f", infos, 3));
    expectDelays(infos[0], "aabbccddee01", 101);
    expectSameDelays(infos[1], "kept", 1);
    expectSameDelays(infos[2], "keptToo", 1000);
    EXPECT_STREQ("libzo: [timeDelayInfoReader:#]: sscanf error, path: f.\n|"
                 "libzo: [timeDelayInfoReader:#]: sscanf error, path: f.\n|",
                 test::messages());
}

TEST(TimeDelayInfo, readerReportsEverySampleMissingAtTheEnd)
{
    test::writeFile("f", "aa 1 2 3 4 5 6 7 8 9 10 11 12");
    TimeDelayInfo info = sameDelays("kept", 2000);
    EXPECT_TRUE(timeDelayInfoReader("f", &info, 1));
    EXPECT_STREQ("aa", info.fatherMAC);
    for (int i = 0; i < 12; ++i)
        EXPECT_EQ(i + 1, info.delayTime[i]);
    for (int i = 12; i < 15; ++i)
        EXPECT_EQ(1000, info.delayTime[i]);
    EXPECT_STREQ("libzo: [timeDelayInfoReader:#]: sscanf error, path: f.\n|"
                 "libzo: [timeDelayInfoReader:#]: sscanf error, path: f.\n|"
                 "libzo: [timeDelayInfoReader:#]: sscanf error, path: f.\n|",
                 test::messages());
}

TEST(TimeDelayInfo, readerReportsAllFifteenSamplesOfAMacAlone)
{
    test::writeFile("f", "aa\n");
    TimeDelayInfo info = sameDelays("kept", 0);
    EXPECT_TRUE(timeDelayInfoReader("f", &info, 1));
    expectSameDelays(info, "aa", 1);
    EXPECT_EQ(15, test::messageCount());
}

TEST(TimeDelayInfo, readerReportsAMissingMacAtTheErrorLevel)
{
    expectErrors(
        [] {
            TimeDelayInfo info = {};
            test::writeFile("f", "");
            return timeDelayInfoReader("f", &info, 1);
        },
        true, "libzo: [timeDelayInfoReader:#]: sscanf error, path: f.\n|");
}

TEST(TimeDelayInfo, readerReportsAMissingSampleAtTheErrorLevel)
{
    expectErrors(
        [] {
            TimeDelayInfo info = {};
            test::writeFile("f", "aa 1 2 3 4 5 6 7 8 9 10 11 12 13 14 \n");
            return timeDelayInfoReader("f", &info, 1);
        },
        true, "libzo: [timeDelayInfoReader:#]: sscanf error, path: f.\n|");
}

TEST(TimeDelayInfo, readerLeavesATokenThatIsNoNumberForTheNextMac)
{
    test::writeFile("f", "aa 1 2 xx 21 22 23 24 25 26 27 28 29 30 31 32 33 34 35\n");
    TimeDelayInfo infos[2] = {sameDelays("kept", 1234), delays("kept", 1)};
    EXPECT_TRUE(timeDelayInfoReader("f", infos, 2));
    EXPECT_STREQ("aa", infos[0].fatherMAC);
    EXPECT_EQ(1, infos[0].delayTime[0]);
    EXPECT_EQ(2, infos[0].delayTime[1]);
    for (int i = 2; i < 15; ++i)
        EXPECT_EQ(1000, infos[0].delayTime[i]);
    expectDelays(infos[1], "xx", 21);
    EXPECT_STREQ("", test::messages());
}

TEST(TimeDelayInfo, readerOfAMissingFileFails)
{
    expectErrors(
        [] {
            TimeDelayInfo info = sameDelays("kept", 0);
            const bool result = timeDelayInfoReader("missing", &info, 1);
            expectSameDelays(info, "kept", 0);
            return result;
        },
        false, "libzo: [timeDelayInfoReader:#]: Failed to read file : missing.\n|");
    EXPECT_EQ(-1, test::fileSize("missing"));
}

TEST(TimeDelayInfo, readerReportsAFailedCloseWithTheRecordsClamped)
{
    expectErrors(
        [] {
            TimeDelayInfo info = {};
            test::writeFile("f", "aa 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0\n");
            test::failNth(test::CLOSE, 1);
            const bool result = timeDelayInfoReader("f", &info, 1);
            expectSameDelays(info, "aa", 1);
            return result;
        },
        false, "libzo: [timeDelayInfoReader:#]: fclose error, path: f.\n|");
}

TEST(TimeDelayInfo, readerTakesAReadErrorForTheEnd)
{
    TimeDelayInfo infos[2] = {sameDelays("kept", 0), sameDelays("keptToo", 2000)};
    test::writeFile("f", twoLines);
    test::failFrom(test::READ, 1);
    EXPECT_TRUE(timeDelayInfoReader("f", infos, 2));
    expectSameDelays(infos[0], "kept", 1);
    expectSameDelays(infos[1], "keptToo", 1000);
    EXPECT_STREQ("libzo: [timeDelayInfoReader:#]: sscanf error, path: f.\n|"
                 "libzo: [timeDelayInfoReader:#]: sscanf error, path: f.\n|",
                 test::messages());
}

TEST(TimeDelayInfo, readerOfADirectoryReadsNothing)
{
    TimeDelayInfo info = sameDelays("kept", 0);
    EXPECT_EQ(0, mkdir("d", 0777));
    EXPECT_TRUE(timeDelayInfoReader("d", &info, 1));
    expectSameDelays(info, "kept", 1);
    EXPECT_STREQ("libzo: [timeDelayInfoReader:#]: sscanf error, path: d.\n|", test::messages());
}

/* ---- Writer ------------------------------------------------------------- */

TEST(TimeDelayInfo, writerPrintsOneAlignedLinePerRecord)
{
    TimeDelayInfo infos[] = {delays("aabbccddee01", 101), delays("ab", 1), delays("0123456789abcde", 995)};
    TimeDelayInfo before[3];
    memcpy(before, infos, sizeof infos);
    EXPECT_TRUE(timeDelayInfoWriter("f", infos, 3));
    EXPECT_STREQ("aabbccddee01 101 102 103 104 105 106 107 108 109 110 111 112 113 114 115\n"
                 "          ab   1   2   3   4   5   6   7   8   9  10  11  12  13  14  15\n"
                 "0123456789abcde 995 996 997 998 999 1000 1001 1002 1003 1004 1005 1006 1007 1008 1009\n",
                 test::fileText("f"));
    EXPECT_EQ(0, memcmp(before, infos, sizeof infos));
    EXPECT_STREQ("", test::messages());
}

TEST(TimeDelayInfo, writerDoesNotClamp)
{
    TimeDelayInfo info = sameDelays("aa", 65535);
    info.delayTime[3] = 0;
    EXPECT_TRUE(timeDelayInfoWriter("f", &info, 1));
    EXPECT_STREQ("          aa 65535 65535 65535   0 65535 65535 65535 65535 65535 65535 65535 65535 65535 "
                 "65535 65535\n",
                 test::fileText("f"));
}

TEST(TimeDelayInfo, writerStopsAtTheFirstEmptyMac)
{
    TimeDelayInfo infos[4] = {delays("aabbccddee01", 101), delays("", 301), delays("aabbccddee02", 201)};
    EXPECT_TRUE(timeDelayInfoWriter("f", infos, 4));
    EXPECT_STREQ(oneLine, test::fileText("f"));
    EXPECT_TRUE(timeDelayInfoWriter("f", infos + 1, 3));
    EXPECT_EQ(0L, test::fileSize("f"));
    EXPECT_STREQ("", test::messages());
}

TEST(TimeDelayInfo, writerOfAPartlyFilledArrayWritesTheFilledPart)
{
    TimeDelayInfo infos[20] = {delays("aabbccddee01", 101), delays("aabbccddee02", 201)};
    EXPECT_TRUE(timeDelayInfoWriter("f", infos, 20));
    EXPECT_STREQ(twoLines, test::fileText("f"));
}

TEST(TimeDelayInfo, writerReplacesTheFileByTheFirstRecords)
{
    TimeDelayInfo infos[] = {delays("aabbccddee01", 101), delays("aabbccddee02", 201)};
    test::writeFile("f", twoLines);
    EXPECT_TRUE(timeDelayInfoWriter("f", infos, 1));
    EXPECT_STREQ(oneLine, test::fileText("f"));
}

TEST(TimeDelayInfo, writerOfNoRecordsLeavesAnEmptyFile)
{
    static const int counts[] = {0, -1, INT_MIN};
    TimeDelayInfo info = delays("aa", 1);
    for (int count : counts) {
        test::writeFile("f", twoLines);
        EXPECT_TRUE(timeDelayInfoWriter("f", &info, count));
        EXPECT_EQ(0L, test::fileSize("f"));
        remove("f");
        EXPECT_TRUE(timeDelayInfoWriter("f", &info, count));
        EXPECT_EQ(0L, test::fileSize("f"));
    }
    EXPECT_STREQ("", test::messages());
}

TEST(TimeDelayInfo, writerReportsAFailedOpen)
{
    expectErrors(
        [] {
            TimeDelayInfo info = delays("aa", 1);
            return timeDelayInfoWriter("no/file", &info, 1);
        },
        false, "libzo: [timeDelayInfoWriter:#]: Failed to write file: no/file.\n|");
}

TEST(TimeDelayInfo, writerStopsAtAFailedPrintOfAMac)
{
    TimeDelayInfo infos[] = {delays("aabbccddee01", 101), delays("aabbccddee02", 201), delays("cc", 301)};
    static const char* const left[] = {"", oneLine, twoLines};
    for (int i = 0; i < 3; ++i) {
        test::clearMessages();
        test::failNth(test::WRITE, 1 + 17 * i);
        EXPECT_FALSE(timeDelayInfoWriter("f", infos, 3));
        EXPECT_STREQ(left[i], test::fileText("f"));
        EXPECT_STREQ("libzo: [timeDelayInfoWriter:#]: fprintf error, path:f.\n|", test::messages());
    }
}

TEST(TimeDelayInfo, writerDoesNotLookAtTheCloseAfterAFailedPrintOfAMac)
{
    expectErrors(
        [] {
            TimeDelayInfo info = delays("aa", 1);
            test::failNth(test::WRITE, 1);
            test::failNth(test::CLOSE, 1);
            return timeDelayInfoWriter("f", &info, 1);
        },
        false, "libzo: [timeDelayInfoWriter:#]: fprintf error, path:f.\n|");
}

TEST(TimeDelayInfo, writerGoesOnAfterAFailedPrintOfASample)
{
    TimeDelayInfo infos[] = {delays("aabbccddee01", 101), delays("aabbccddee02", 201)};
    for (size_t i = 0; i < 15; ++i) {
        /* The second line without its i-th sample. */
        char left[sizeof twoLines];
        const size_t at = sizeof oneLine - 1 + 12 + 4 * i;
        memcpy(left, twoLines, at);
        memcpy(left + at, twoLines + at + 4, sizeof twoLines - at - 4);
        test::clearMessages();
        test::failNth(test::WRITE, 17 + 2 + static_cast<int>(i));
        EXPECT_TRUE(timeDelayInfoWriter("f", infos, 2));
        EXPECT_STREQ(left, test::fileText("f"));
        EXPECT_STREQ("libzo: [timeDelayInfoWriter:#]: sscanf error, path: f.|", test::messages());
    }
}

TEST(TimeDelayInfo, writerReportsAFailedPrintOfASampleAtTheErrorLevel)
{
    expectErrors(
        [] {
            TimeDelayInfo infos[] = {delays("aabbccddee01", 101), delays("aabbccddee02", 201)};
            test::failNth(test::WRITE, 2);
            return timeDelayInfoWriter("f", infos, 2);
        },
        true, "libzo: [timeDelayInfoWriter:#]: sscanf error, path: f.|");
    EXPECT_STREQ("aabbccddee01 102 103 104 105 106 107 108 109 110 111 112 113 114 115\n"
                 "aabbccddee02 201 202 203 204 205 206 207 208 209 210 211 212 213 214 215\n",
                 test::fileText("f"));
}

TEST(TimeDelayInfo, writerReportsEveryFailedPrintOfASample)
{
    TimeDelayInfo infos[] = {delays("aabbccddee01", 101), delays("aabbccddee02", 201)};
    test::failFrom(test::WRITE, 15);
    EXPECT_FALSE(timeDelayInfoWriter("f", infos, 2));
    EXPECT_STREQ("aabbccddee01 101 102 103 104 105 106 107 108 109 110 111 112 113", test::fileText("f"));
    EXPECT_STREQ("libzo: [timeDelayInfoWriter:#]: sscanf error, path: f.|"
                 "libzo: [timeDelayInfoWriter:#]: sscanf error, path: f.|"
                 "libzo: [timeDelayInfoWriter:#]: fprintf error, path:f.\n|",
                 test::messages());
}

TEST(TimeDelayInfo, writerDoesNotReportAFailedPrintOfANewline)
{
    TimeDelayInfo infos[] = {delays("aabbccddee01", 101), delays("aabbccddee02", 201)};
    test::failNth(test::WRITE, 17);
    EXPECT_TRUE(timeDelayInfoWriter("f", infos, 2));
    EXPECT_STREQ("aabbccddee01 101 102 103 104 105 106 107 108 109 110 111 112 113 114 115"
                 "aabbccddee02 201 202 203 204 205 206 207 208 209 210 211 212 213 214 215\n",
                 test::fileText("f"));
    EXPECT_STREQ("", test::messages());
}

TEST(TimeDelayInfo, writerReportsAFailedClose)
{
    expectErrors(
        [] {
            TimeDelayInfo info = delays("aabbccddee01", 101);
            test::failNth(test::CLOSE, 1);
            return timeDelayInfoWriter("f", &info, 1);
        },
        false, "libzo: [timeDelayInfoWriter:#]: fclose error, path:f.\n|");
    EXPECT_STREQ(oneLine, test::fileText("f"));
}

TEST(TimeDelayInfo, writerReportsAFailedCloseAfterAnEmptyMac)
{
    TimeDelayInfo infos[2] = {delays("aabbccddee01", 101)};
    test::failNth(test::CLOSE, 1);
    EXPECT_FALSE(timeDelayInfoWriter("f", infos, 2));
    EXPECT_STREQ("libzo: [timeDelayInfoWriter:#]: fclose error, path:f.\n|", test::messages());
    EXPECT_STREQ(oneLine, test::fileText("f"));
}

TEST(TimeDelayInfo, writerReportsTheCloseThatFailsOnAFullDevice)
{
    TimeDelayInfo info = delays("aa", 1);
    EXPECT_FALSE(timeDelayInfoWriter("/dev/full", &info, 1));
    EXPECT_STREQ("libzo: [timeDelayInfoWriter:#]: fclose error, path:/dev/full.\n|", test::messages());
}

TEST(TimeDelayInfo, writerReportsThePrintThatFailsOnAFullDevice)
{
    TimeDelayInfo info = delays("aa", 1);
    test::streamBuffer(0);
    EXPECT_FALSE(timeDelayInfoWriter("/dev/full", &info, 1));
    EXPECT_STREQ("libzo: [timeDelayInfoWriter:#]: fprintf error, path:/dev/full.\n|", test::messages());
}

TEST(TimeDelayInfo, writerFailsOnAFullDeviceThatRefusesABigFile)
{
    static TimeDelayInfo infos[400];
    for (TimeDelayInfo& info : infos)
        info = delays("aa", 1);
    EXPECT_FALSE(timeDelayInfoWriter("/dev/full", infos, 400));
    EXPECT_GE(test::messageCount(), 1);
}

/* ---- Emptier ------------------------------------------------------------ */

TEST(TimeDelayInfo, emptierCreatesAMissingFile)
{
    EXPECT_TRUE(emptyTimeDelayFile("f"));
    EXPECT_EQ(0L, test::fileSize("f"));
    EXPECT_STREQ("", test::messages());
}

TEST(TimeDelayInfo, emptierTruncatesAFile)
{
    test::writeFile("f", twoLines);
    EXPECT_TRUE(emptyTimeDelayFile("f"));
    EXPECT_EQ(0L, test::fileSize("f"));
    EXPECT_STREQ("", test::messages());
}

TEST(TimeDelayInfo, emptierReportsAFailedOpen)
{
    expectErrors([] { return emptyTimeDelayFile("no/file"); }, false,
                 "libzo: [emptyTimeDelayFile:#]: Failed to write file: no/file.\n|");
}

TEST(TimeDelayInfo, emptierThatCannotOpenLeavesTheFile)
{
    test::writeFile("f", twoLines);
    test::failNth(test::OPEN, 1);
    EXPECT_FALSE(emptyTimeDelayFile("f"));
    EXPECT_STREQ(twoLines, test::fileText("f"));
    EXPECT_EQ(1, test::callCount(test::OPEN));
}

TEST(TimeDelayInfo, emptierReportsAFailedClose)
{
    expectErrors(
        [] {
            test::writeFile("f", twoLines);
            test::failNth(test::CLOSE, 1);
            return emptyTimeDelayFile("f");
        },
        false, "libzo: [emptyTimeDelayFile:#]: fclose error, path:f.\n|");
    EXPECT_EQ(0L, test::fileSize("f"));
}

/* ---- Update ------------------------------------------------------------- */

TEST(TimeDelayInfo, updateReplacesTheRecordOfTheSameFather)
{
    TimeDelayInfo income = delays("aabbccddee02", 301);
    const TimeDelayInfo before = income;
    test::writeFile("f", "aabbccddee01 0 2 3 4 5 6 7 8 9 10 11 12 13 14 1001\n"
                         "aabbccddee02 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15\n"
                         "aabbccddee03 21 22 23 24 25 26 27 28 29 30 31 32 33 34 35\n");
    EXPECT_TRUE(updateSingleTimeDelayInfo("f", &income));
    EXPECT_STREQ("aabbccddee01   1   2   3   4   5   6   7   8   9  10  11  12  13  14 1000\n"
                 "aabbccddee02 301 302 303 304 305 306 307 308 309 310 311 312 313 314 315\n"
                 "aabbccddee03  21  22  23  24  25  26  27  28  29  30  31  32  33  34  35\n",
                 test::fileText("f"));
    EXPECT_STREQ("libzo: [updateSingleTimeDelayInfo:#]: income time delay info found @index 1|",
                 test::messages());
    EXPECT_EQ(0, memcmp(&before, &income, sizeof income));
}

TEST(TimeDelayInfo, updateFindsTheFirstAndTheLastRecord)
{
    TimeDelayInfo income = delays("aabbccddee01", 301);
    test::writeFile("f", twoLines);
    EXPECT_TRUE(updateSingleTimeDelayInfo("f", &income));
    EXPECT_STREQ("aabbccddee01 301 302 303 304 305 306 307 308 309 310 311 312 313 314 315\n"
                 "aabbccddee02 201 202 203 204 205 206 207 208 209 210 211 212 213 214 215\n",
                 test::fileText("f"));
    income = delays("aabbccddee02", 401);
    EXPECT_TRUE(updateSingleTimeDelayInfo("f", &income));
    EXPECT_STREQ("aabbccddee01 301 302 303 304 305 306 307 308 309 310 311 312 313 314 315\n"
                 "aabbccddee02 401 402 403 404 405 406 407 408 409 410 411 412 413 414 415\n",
                 test::fileText("f"));
    EXPECT_STREQ("libzo: [updateSingleTimeDelayInfo:#]: income time delay info found @index 0|"
                 "libzo: [updateSingleTimeDelayInfo:#]: income time delay info found @index 1|",
                 test::messages());
}

TEST(TimeDelayInfo, updateReplacesOnlyTheFirstOfTwo)
{
    TimeDelayInfo income = delays("bb", 301);
    test::writeFile("f", "aa 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15\n"
                         "bb 21 22 23 24 25 26 27 28 29 30 31 32 33 34 35\n"
                         "bb 41 42 43 44 45 46 47 48 49 50 51 52 53 54 55\n");
    EXPECT_TRUE(updateSingleTimeDelayInfo("f", &income));
    EXPECT_STREQ("          aa   1   2   3   4   5   6   7   8   9  10  11  12  13  14  15\n"
                 "          bb 301 302 303 304 305 306 307 308 309 310 311 312 313 314 315\n"
                 "          bb  41  42  43  44  45  46  47  48  49  50  51  52  53  54  55\n",
                 test::fileText("f"));
    EXPECT_STREQ("libzo: [updateSingleTimeDelayInfo:#]: income time delay info found @index 1|",
                 test::messages());
}

TEST(TimeDelayInfo, updateInsertsANewFatherAtTheEnd)
{
    TimeDelayInfo income = delays("cc", 301);
    const TimeDelayInfo before = income;
    test::writeFile("f", twoLines);
    EXPECT_TRUE(updateSingleTimeDelayInfo("f", &income));
    EXPECT_STREQ("aabbccddee01 101 102 103 104 105 106 107 108 109 110 111 112 113 114 115\n"
                 "aabbccddee02 201 202 203 204 205 206 207 208 209 210 211 212 213 214 215\n"
                 "          cc 301 302 303 304 305 306 307 308 309 310 311 312 313 314 315\n",
                 test::fileText("f"));
    EXPECT_STREQ("libzo: [updateSingleTimeDelayInfo:#]: income time delay info not found, inserting...|",
                 test::messages());
    EXPECT_EQ(0, memcmp(&before, &income, sizeof income));
}

TEST(TimeDelayInfo, updateComparesWholeKeysExactly)
{
    static const char* const others[] = {
        "AABBCCDDEE01",    "aabbccddee0", "aabbccddee012", "aabbccddee02", "babbccddee01",
        "aabbccddee01abc", "a",           " aabbccddee01"};
    for (const char* other : others) {
        TimeDelayInfo income = delays(other, 1);
        test::writeFile("f", oneLine);
        test::clearMessages();
        EXPECT_TRUE(updateSingleTimeDelayInfo("f", &income));
        EXPECT_EQ(2, test::fileLines("f"));
        EXPECT_STREQ("aabbccddee01 101 102 103 104 105 106 107 108 109 110 111 112 113 114 115",
                     test::fileLine("f", 0));
        EXPECT_STREQ("libzo: [updateSingleTimeDelayInfo:#]: income time delay info not found, inserting...|",
                     test::messages());
    }
}

TEST(TimeDelayInfo, updateOfALongFatherMatchesNoRecordAndIsWrittenWhole)
{
    TimeDelayInfo income = delays("aabbccddee01234", 301);
    test::writeFile("f", oneLine);
    EXPECT_TRUE(updateSingleTimeDelayInfo("f", &income));
    EXPECT_STREQ("aabbccddee01234 301 302 303 304 305 306 307 308 309 310 311 312 313 314 315",
                 test::fileLine("f", 1));
}

TEST(TimeDelayInfo, updateComparesNoCharacterBehindTheKeysEnd)
{
    TimeDelayInfo income = delays("aa", 301);
    income.fatherMAC[3] = 'x';
    test::writeFile("f", "aa 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15\n");
    EXPECT_TRUE(updateSingleTimeDelayInfo("f", &income));
    EXPECT_STREQ("          aa 301 302 303 304 305 306 307 308 309 310 311 312 313 314 315\n",
                 test::fileText("f"));
}

TEST(TimeDelayInfo, updateWritesTheIncomeUnclamped)
{
    TimeDelayInfo income = sameDelays("bb", 0);
    income.delayTime[14] = 65535;
    test::writeFile("f", "aa 0 0 0 0 0 0 0 0 0 0 0 0 0 0 65535\n");
    EXPECT_TRUE(updateSingleTimeDelayInfo("f", &income));
    EXPECT_STREQ("          aa   1   1   1   1   1   1   1   1   1   1   1   1   1   1 1000\n"
                 "          bb   0   0   0   0   0   0   0   0   0   0   0   0   0   0 65535\n",
                 test::fileText("f"));
    strcpy(income.fatherMAC, "aa");
    EXPECT_TRUE(updateSingleTimeDelayInfo("f", &income));
    EXPECT_STREQ("          aa   0   0   0   0   0   0   0   0   0   0   0   0   0   0 65535\n"
                 "          bb   1   1   1   1   1   1   1   1   1   1   1   1   1   1 1000\n",
                 test::fileText("f"));
}

TEST(TimeDelayInfo, updateHasNoCap)
{
    static const int counts[] = {255, 256, 257, 300};
    TimeDelayInfo income = delays("cc", 301);
    for (int count : counts) {
        writeHistory(count);
        EXPECT_TRUE(updateSingleTimeDelayInfo("f", &income));
        EXPECT_EQ(count + 1, test::fileLines("f"));
        EXPECT_STREQ("000000000000 101 102 103 104 105 106 107 108 109 110 111 112 113 114 115",
                     test::fileLine("f", 0));
        EXPECT_STREQ("          cc 301 302 303 304 305 306 307 308 309 310 311 312 313 314 315",
                     test::fileLine("f", count));
    }
}

TEST(TimeDelayInfo, updateOfAKnownFatherKeepsALongFileWhole)
{
    TimeDelayInfo income = delays("000000000299", 301);
    writeHistory(300);
    EXPECT_TRUE(updateSingleTimeDelayInfo("f", &income));
    EXPECT_EQ(300, test::fileLines("f"));
    EXPECT_STREQ("000000000000 101 102 103 104 105 106 107 108 109 110 111 112 113 114 115",
                 test::fileLine("f", 0));
    EXPECT_STREQ("000000000299 301 302 303 304 305 306 307 308 309 310 311 312 313 314 315",
                 test::fileLine("f", 299));
    EXPECT_STREQ("libzo: [updateSingleTimeDelayInfo:#]: income time delay info found @index 299|",
                 test::messages());
}

TEST(TimeDelayInfo, updateLogsItsSearchAtTheInformationalLevel)
{
    expectMessages(
        [] {
            TimeDelayInfo income = delays("aabbccddee02", 301);
            test::writeFile("f", twoLines);
            return updateSingleTimeDelayInfo("f", &income);
        },
        true, "libzo: [updateSingleTimeDelayInfo:#]: income time delay info found @index 1|", "");
    expectMessages(
        [] {
            TimeDelayInfo income = delays("cc", 301);
            test::writeFile("f", twoLines);
            return updateSingleTimeDelayInfo("f", &income);
        },
        true, "libzo: [updateSingleTimeDelayInfo:#]: income time delay info not found, inserting...|", "");
}

TEST(TimeDelayInfo, updateOfAMissingFileSavesTheRecordAlone)
{
    expectMessages(
        [] {
            TimeDelayInfo income = delays("cc", 301);
            remove("f");
            return updateSingleTimeDelayInfo("f", &income);
        },
        true,
        "libzo: [dataLineCounter:#]: Failed to read file: f\n|"
        "libzo: [updateSingleTimeDelayInfo:#]: Just save income time dalay data|"
        "libzo: [updateSingleTimeDelayInfo:#]: time delay Info has been written to file: f|",
        "libzo: [dataLineCounter:#]: Failed to read file: f\n|");
    EXPECT_STREQ(incomeLine, test::fileText("f"));
}

TEST(TimeDelayInfo, updateOfAnEmptyFileSavesTheRecordAloneAndUnclamped)
{
    expectMessages(
        [] {
            TimeDelayInfo income = sameDelays("cc", 0);
            test::writeFile("f", "");
            return updateSingleTimeDelayInfo("f", &income);
        },
        true,
        "libzo: [updateSingleTimeDelayInfo:#]: Just save income time dalay data|"
        "libzo: [updateSingleTimeDelayInfo:#]: time delay Info has been written to file: f|",
        "");
    EXPECT_STREQ("          cc   0   0   0   0   0   0   0   0   0   0   0   0   0   0   0\n",
                 test::fileText("f"));
}

TEST(TimeDelayInfo, updateOfAFileThatCannotBeCountedReplacesIt)
{
    TimeDelayInfo income = delays("cc", 301);
    test::writeFile("f", twoLines);
    test::failNth(test::CLOSE, 1);
    EXPECT_TRUE(updateSingleTimeDelayInfo("f", &income));
    EXPECT_STREQ(incomeLine, test::fileText("f"));
    EXPECT_STREQ("libzo: [dataLineCounter:#]: fclose error, path:f.\n|"
                 "libzo: [updateSingleTimeDelayInfo:#]: Just save income time dalay data|"
                 "libzo: [updateSingleTimeDelayInfo:#]: time delay Info has been written to file: f|",
                 test::messages());
}

TEST(TimeDelayInfo, updateWithAnEmptyFatherStoresNothing)
{
    TimeDelayInfo income = delays("", 301);
    EXPECT_TRUE(updateSingleTimeDelayInfo("f", &income));
    EXPECT_EQ(0L, test::fileSize("f"));
    test::writeFile("f", oneLine);
    test::clearMessages();
    EXPECT_TRUE(updateSingleTimeDelayInfo("f", &income));
    EXPECT_STREQ(oneLine, test::fileText("f"));
    EXPECT_STREQ("libzo: [updateSingleTimeDelayInfo:#]: income time delay info not found, inserting...|",
                 test::messages());
}

TEST(TimeDelayInfo, updateBehindABlankLineStoresNothingAndDropsTheBlankLine)
{
    TimeDelayInfo income = delays("cc", 301);
    test::writeFile("f", "aabbccddee01 101 102 103 104 105 106 107 108 109 110 111 112 113 114 115\n\n");
    EXPECT_TRUE(updateSingleTimeDelayInfo("f", &income));
    EXPECT_STREQ(oneLine, test::fileText("f"));
    EXPECT_STREQ("libzo: [timeDelayInfoReader:#]: sscanf error, path: f.\n|"
                 "libzo: [updateSingleTimeDelayInfo:#]: income time delay info not found, inserting...|",
                 test::messages());
}

TEST(TimeDelayInfo, updateOfAKnownFatherDropsABlankLineAtTheEnd)
{
    TimeDelayInfo income = delays("aabbccddee01", 301);
    test::writeFile("f", "aabbccddee01 101 102 103 104 105 106 107 108 109 110 111 112 113 114 115\n\n");
    EXPECT_TRUE(updateSingleTimeDelayInfo("f", &income));
    EXPECT_STREQ("aabbccddee01 301 302 303 304 305 306 307 308 309 310 311 312 313 314 315\n",
                 test::fileText("f"));
    EXPECT_STREQ("libzo: [timeDelayInfoReader:#]: sscanf error, path: f.\n|"
                 "libzo: [updateSingleTimeDelayInfo:#]: income time delay info found @index 0|",
                 test::messages());
}

TEST(TimeDelayInfo, updateRefusesANullPointerAfterTheCount)
{
    expectErrors([] { return updateSingleTimeDelayInfo("missing", nullptr); }, false,
                 "libzo: [dataLineCounter:#]: Failed to read file: missing\n|"
                 "libzo: [updateSingleTimeDelayInfo:#]: null pIncomeTimeDelayInfo|");
    EXPECT_EQ(-1, test::fileSize("missing"));
}

TEST(TimeDelayInfo, updateRefusesANullPointerOnAFileWithRecords)
{
    test::writeFile("f", twoLines);
    EXPECT_FALSE(updateSingleTimeDelayInfo("f", nullptr));
    EXPECT_STREQ("libzo: [updateSingleTimeDelayInfo:#]: null pIncomeTimeDelayInfo|", test::messages());
    EXPECT_STREQ(twoLines, test::fileText("f"));
}

TEST(TimeDelayInfo, updateReportsAFailedFirstSave)
{
    expectMessages(
        [] {
            TimeDelayInfo income = delays("cc", 301);
            return updateSingleTimeDelayInfo("no/file", &income);
        },
        false,
        "libzo: [dataLineCounter:#]: Failed to read file: no/file\n|"
        "libzo: [updateSingleTimeDelayInfo:#]: Just save income time dalay data|"
        "libzo: [timeDelayInfoWriter:#]: Failed to write file: no/file.\n|"
        "libzo: [updateSingleTimeDelayInfo:#]: Failed to write to file: no/file|",
        "libzo: [dataLineCounter:#]: Failed to read file: no/file\n|"
        "libzo: [timeDelayInfoWriter:#]: Failed to write file: no/file.\n|"
        "libzo: [updateSingleTimeDelayInfo:#]: Failed to write to file: no/file|");
}

TEST(TimeDelayInfo, updateReportsAFailedAllocationWithTheScanningText)
{
    expectErrors(
        [] {
            TimeDelayInfo income = delays("cc", 301);
            test::writeFile("f", twoLines);
            test::failNth(test::ALLOCATE, 1);
            return updateSingleTimeDelayInfo("f", &income);
        },
        false, "libzo: [updateSingleTimeDelayInfo:#]: Failed to allocate memory for ScanningInfo|");
    EXPECT_STREQ(twoLines, test::fileText("f"));
}

TEST(TimeDelayInfo, updateReportsAReaderThatCannotOpen)
{
    expectErrors(
        [] {
            TimeDelayInfo income = delays("cc", 301);
            test::writeFile("f", twoLines);
            test::failNth(test::OPEN, 2);
            return updateSingleTimeDelayInfo("f", &income);
        },
        false,
        "libzo: [timeDelayInfoReader:#]: Failed to read file : f.\n|"
        "libzo: [updateSingleTimeDelayInfo:#]: Failed to read file: f|");
    EXPECT_STREQ(twoLines, test::fileText("f"));
    EXPECT_EQ(0, test::heldArrays());
}

TEST(TimeDelayInfo, updateReportsAReaderThatCannotClose)
{
    TimeDelayInfo income = delays("cc", 301);
    test::writeFile("f", twoLines);
    test::failNth(test::CLOSE, 2);
    EXPECT_FALSE(updateSingleTimeDelayInfo("f", &income));
    EXPECT_STREQ("libzo: [timeDelayInfoReader:#]: fclose error, path: f.\n|"
                 "libzo: [updateSingleTimeDelayInfo:#]: Failed to read file: f|",
                 test::messages());
    EXPECT_STREQ(twoLines, test::fileText("f"));
}

TEST(TimeDelayInfo, updateReportsAFailedWriteOfAReplacedRecord)
{
    expectMessages(
        [] {
            TimeDelayInfo income = delays("aabbccddee02", 301);
            test::writeFile("f", twoLines);
            test::failNth(test::OPEN, 3);
            return updateSingleTimeDelayInfo("f", &income);
        },
        false,
        "libzo: [updateSingleTimeDelayInfo:#]: income time delay info found @index 1|"
        "libzo: [timeDelayInfoWriter:#]: Failed to write file: f.\n|"
        "libzo: [updateSingleTimeDelayInfo:#]: Failed to save new time delay info to file: f|",
        "libzo: [timeDelayInfoWriter:#]: Failed to write file: f.\n|"
        "libzo: [updateSingleTimeDelayInfo:#]: Failed to save new time delay info to file: f|");
    EXPECT_STREQ(twoLines, test::fileText("f"));
    EXPECT_EQ(0, test::heldArrays());
}

TEST(TimeDelayInfo, updateReportsAFailedWriteOfAnInsertedRecord)
{
    expectMessages(
        [] {
            TimeDelayInfo income = delays("cc", 301);
            test::writeFile("f", twoLines);
            test::failNth(test::OPEN, 3);
            return updateSingleTimeDelayInfo("f", &income);
        },
        false,
        "libzo: [updateSingleTimeDelayInfo:#]: income time delay info not found, inserting...|"
        "libzo: [timeDelayInfoWriter:#]: Failed to write file: f.\n|"
        "libzo: [updateSingleTimeDelayInfo:#]: Failed to add time delay info data to file: f|",
        "libzo: [timeDelayInfoWriter:#]: Failed to write file: f.\n|"
        "libzo: [updateSingleTimeDelayInfo:#]: Failed to add time delay info data to file: f|");
    EXPECT_STREQ(twoLines, test::fileText("f"));
    EXPECT_EQ(0, test::heldArrays());
}

TEST(TimeDelayInfo, updateLeavesWhatWasPrintedBeforeAFailedPrint)
{
    TimeDelayInfo income = delays("cc", 301);
    test::writeFile("f", twoLines);
    test::failNth(test::WRITE, 18);
    EXPECT_FALSE(updateSingleTimeDelayInfo("f", &income));
    EXPECT_STREQ(oneLine, test::fileText("f"));
}

TEST(TimeDelayInfo, updateOfAFileThatShrinksWritesUpToTheFirstMissingRecord)
{
    TimeDelayInfo income = delays("cc", 301);
    test::writeFile("f", twoLines);
    test::beforeOpen(2, [](const char* path) { test::writeFile(path, oneLine); });
    EXPECT_TRUE(updateSingleTimeDelayInfo("f", &income));
    EXPECT_STREQ(oneLine, test::fileText("f"));
}

TEST(TimeDelayInfo, updateOfAFileThatGrowsTakesTheCountedRecords)
{
    TimeDelayInfo income = delays("cc", 301);
    test::writeFile("f", oneLine);
    test::beforeOpen(2, [](const char*) { writeHistory(300); });
    EXPECT_TRUE(updateSingleTimeDelayInfo("f", &income));
    EXPECT_STREQ("000000000000 101 102 103 104 105 106 107 108 109 110 111 112 113 114 115\n"
                 "          cc 301 302 303 304 305 306 307 308 309 310 311 312 313 314 315\n",
                 test::fileText("f"));
}

/* ---- Append ------------------------------------------------------------- */

TEST(TimeDelayInfo, appendAddsTheRecordAtTheEnd)
{
    TimeDelayInfo income = delays("cc", 301);
    const TimeDelayInfo before = income;
    test::writeFile("f", twoLines);
    EXPECT_TRUE(appendSingleTimeDelayInfo("f", &income));
    EXPECT_STREQ("aabbccddee01 101 102 103 104 105 106 107 108 109 110 111 112 113 114 115\n"
                 "aabbccddee02 201 202 203 204 205 206 207 208 209 210 211 212 213 214 215\n"
                 "          cc 301 302 303 304 305 306 307 308 309 310 311 312 313 314 315\n",
                 test::fileText("f"));
    EXPECT_STREQ("", test::messages());
    EXPECT_EQ(0, memcmp(&before, &income, sizeof income));
}

TEST(TimeDelayInfo, appendDoesNotLookForTheFather)
{
    TimeDelayInfo income = delays("aabbccddee01", 301);
    test::writeFile("f", oneLine);
    EXPECT_TRUE(appendSingleTimeDelayInfo("f", &income));
    EXPECT_STREQ("aabbccddee01 101 102 103 104 105 106 107 108 109 110 111 112 113 114 115\n"
                 "aabbccddee01 301 302 303 304 305 306 307 308 309 310 311 312 313 314 315\n",
                 test::fileText("f"));
}

TEST(TimeDelayInfo, appendWritesTheIncomeUnclampedAndTheOldRecordsClamped)
{
    TimeDelayInfo income = sameDelays("bb", 0);
    income.delayTime[14] = 65535;
    test::writeFile("f", "aa 0 0 0 0 0 0 0 0 0 0 0 0 0 0 65535\n");
    EXPECT_TRUE(appendSingleTimeDelayInfo("f", &income));
    EXPECT_STREQ("          aa   1   1   1   1   1   1   1   1   1   1   1   1   1   1 1000\n"
                 "          bb   0   0   0   0   0   0   0   0   0   0   0   0   0   0 65535\n",
                 test::fileText("f"));
}

TEST(TimeDelayInfo, appendKeepsTheNewest256)
{
    static const struct {
        int old;
        int lines;
        const char* first;
    } rows[] = {{254, 255, "000000000000 101 102 103 104 105 106 107 108 109 110 111 112 113 114 115"},
                {255, 256, "000000000000 101 102 103 104 105 106 107 108 109 110 111 112 113 114 115"},
                {256, 256, "000000000001 101 102 103 104 105 106 107 108 109 110 111 112 113 114 115"},
                {257, 256, "000000000002 101 102 103 104 105 106 107 108 109 110 111 112 113 114 115"},
                {300, 256, "000000000045 101 102 103 104 105 106 107 108 109 110 111 112 113 114 115"}};
    TimeDelayInfo income = delays("cc", 301);
    for (const auto& row : rows) {
        char last[80];
        snprintf(last, sizeof last, "%012d 101 102 103 104 105 106 107 108 109 110 111 112 113 114 115",
                 row.old - 1);
        writeHistory(row.old);
        EXPECT_TRUE(appendSingleTimeDelayInfo("f", &income));
        EXPECT_EQ(row.lines, test::fileLines("f"));
        EXPECT_STREQ(row.first, test::fileLine("f", 0));
        EXPECT_STREQ(last, test::fileLine("f", row.lines - 2));
        EXPECT_STREQ("          cc 301 302 303 304 305 306 307 308 309 310 311 312 313 314 315",
                     test::fileLine("f", row.lines - 1));
    }
    EXPECT_STREQ("", test::messages());
}

TEST(TimeDelayInfo, appendToAMissingFileSavesTheRecordAlone)
{
    expectMessages(
        [] {
            TimeDelayInfo income = delays("cc", 301);
            remove("f");
            return appendSingleTimeDelayInfo("f", &income);
        },
        true,
        "libzo: [dataLineCounter:#]: Failed to read file: f\n|"
        "libzo: [appendSingleTimeDelayInfo:#]: Just save income timeDelay data|"
        "libzo: [appendSingleTimeDelayInfo:#]: Time delay Info has been written to file: f|",
        "libzo: [dataLineCounter:#]: Failed to read file: f\n|");
    EXPECT_STREQ(incomeLine, test::fileText("f"));
}

TEST(TimeDelayInfo, appendToAnEmptyFileSavesTheRecordAloneAndUnclamped)
{
    expectMessages(
        [] {
            TimeDelayInfo income = sameDelays("cc", 0);
            test::writeFile("f", "");
            return appendSingleTimeDelayInfo("f", &income);
        },
        true,
        "libzo: [appendSingleTimeDelayInfo:#]: Just save income timeDelay data|"
        "libzo: [appendSingleTimeDelayInfo:#]: Time delay Info has been written to file: f|",
        "");
    EXPECT_STREQ("          cc   0   0   0   0   0   0   0   0   0   0   0   0   0   0   0\n",
                 test::fileText("f"));
}

TEST(TimeDelayInfo, appendToAFileThatCannotBeCountedReplacesIt)
{
    TimeDelayInfo income = delays("cc", 301);
    test::writeFile("f", twoLines);
    test::failNth(test::OPEN, 1);
    EXPECT_TRUE(appendSingleTimeDelayInfo("f", &income));
    EXPECT_STREQ(incomeLine, test::fileText("f"));
}

TEST(TimeDelayInfo, appendWithAnEmptyFatherStoresNothing)
{
    TimeDelayInfo income = delays("", 301);
    test::writeFile("f", oneLine);
    EXPECT_TRUE(appendSingleTimeDelayInfo("f", &income));
    EXPECT_STREQ(oneLine, test::fileText("f"));
    EXPECT_STREQ("", test::messages());
}

TEST(TimeDelayInfo, appendBehindABlankLineStoresNothingAndDropsTheBlankLine)
{
    TimeDelayInfo income = delays("cc", 301);
    test::writeFile("f", "aabbccddee01 101 102 103 104 105 106 107 108 109 110 111 112 113 114 115\n\n");
    EXPECT_TRUE(appendSingleTimeDelayInfo("f", &income));
    EXPECT_STREQ(oneLine, test::fileText("f"));
    EXPECT_STREQ("libzo: [timeDelayInfoReader:#]: sscanf error, path: f.\n|", test::messages());
}

TEST(TimeDelayInfo, appendRefusesANullPointerAfterTheCount)
{
    expectErrors([] { return appendSingleTimeDelayInfo("missing", nullptr); }, false,
                 "libzo: [dataLineCounter:#]: Failed to read file: missing\n|"
                 "libzo: [appendSingleTimeDelayInfo:#]: null pIncomeTimeDelayInfo|");
    EXPECT_EQ(-1, test::fileSize("missing"));
}

TEST(TimeDelayInfo, appendRefusesANullPointerOnAFileWithRecords)
{
    test::writeFile("f", twoLines);
    EXPECT_FALSE(appendSingleTimeDelayInfo("f", nullptr));
    EXPECT_STREQ("libzo: [appendSingleTimeDelayInfo:#]: null pIncomeTimeDelayInfo|", test::messages());
    EXPECT_STREQ(twoLines, test::fileText("f"));
}

TEST(TimeDelayInfo, appendReportsAFailedFirstSave)
{
    expectMessages(
        [] {
            TimeDelayInfo income = delays("cc", 301);
            return appendSingleTimeDelayInfo("no/file", &income);
        },
        false,
        "libzo: [dataLineCounter:#]: Failed to read file: no/file\n|"
        "libzo: [appendSingleTimeDelayInfo:#]: Just save income timeDelay data|"
        "libzo: [timeDelayInfoWriter:#]: Failed to write file: no/file.\n|"
        "libzo: [appendSingleTimeDelayInfo:#]: Failed to write to file: no/file|",
        "libzo: [dataLineCounter:#]: Failed to read file: no/file\n|"
        "libzo: [timeDelayInfoWriter:#]: Failed to write file: no/file.\n|"
        "libzo: [appendSingleTimeDelayInfo:#]: Failed to write to file: no/file|");
}

TEST(TimeDelayInfo, appendReportsAFailedAllocation)
{
    expectErrors(
        [] {
            TimeDelayInfo income = delays("cc", 301);
            test::writeFile("f", twoLines);
            test::failNth(test::ALLOCATE, 1);
            return appendSingleTimeDelayInfo("f", &income);
        },
        false, "libzo: [appendSingleTimeDelayInfo:#]: Failed to allocate memory for TimeDelayInfo|");
    EXPECT_STREQ(twoLines, test::fileText("f"));
}

TEST(TimeDelayInfo, appendReportsAReaderThatCannotOpen)
{
    expectErrors(
        [] {
            TimeDelayInfo income = delays("cc", 301);
            test::writeFile("f", twoLines);
            test::failNth(test::OPEN, 2);
            return appendSingleTimeDelayInfo("f", &income);
        },
        false,
        "libzo: [timeDelayInfoReader:#]: Failed to read file : f.\n|"
        "libzo: [appendSingleTimeDelayInfo:#]: Failed to read file: f|");
    EXPECT_STREQ(twoLines, test::fileText("f"));
    EXPECT_EQ(0, test::heldArrays());
}

TEST(TimeDelayInfo, appendReportsAReaderThatCannotClose)
{
    TimeDelayInfo income = delays("cc", 301);
    test::writeFile("f", twoLines);
    test::failNth(test::CLOSE, 2);
    EXPECT_FALSE(appendSingleTimeDelayInfo("f", &income));
    EXPECT_STREQ("libzo: [timeDelayInfoReader:#]: fclose error, path: f.\n|"
                 "libzo: [appendSingleTimeDelayInfo:#]: Failed to read file: f|",
                 test::messages());
    EXPECT_STREQ(twoLines, test::fileText("f"));
}

TEST(TimeDelayInfo, appendReportsAFailedWrite)
{
    expectErrors(
        [] {
            TimeDelayInfo income = delays("cc", 301);
            test::writeFile("f", twoLines);
            test::failNth(test::OPEN, 3);
            return appendSingleTimeDelayInfo("f", &income);
        },
        false,
        "libzo: [timeDelayInfoWriter:#]: Failed to write file: f.\n|"
        "libzo: [appendSingleTimeDelayInfo:#]: Failed to add new timeDelay info data to file: f|");
    EXPECT_STREQ(twoLines, test::fileText("f"));
    EXPECT_EQ(0, test::heldArrays());
}

TEST(TimeDelayInfo, appendReportsAWriterThatCannotClose)
{
    TimeDelayInfo income = delays("aabbccddee02", 201);
    test::writeFile("f", oneLine);
    test::failNth(test::CLOSE, 3);
    EXPECT_FALSE(appendSingleTimeDelayInfo("f", &income));
    EXPECT_STREQ(twoLines, test::fileText("f"));
    EXPECT_STREQ("libzo: [timeDelayInfoWriter:#]: fclose error, path:f.\n|"
                 "libzo: [appendSingleTimeDelayInfo:#]: Failed to add new timeDelay info data to file: f|",
                 test::messages());
}

TEST(TimeDelayInfo, appendToADirectoryFails)
{
    TimeDelayInfo income = delays("cc", 301);
    EXPECT_EQ(0, mkdir("d", 0777));
    EXPECT_FALSE(appendSingleTimeDelayInfo("d", &income));
    EXPECT_STREQ("libzo: [appendSingleTimeDelayInfo:#]: Just save income timeDelay data|"
                 "libzo: [timeDelayInfoWriter:#]: Failed to write file: d.\n|"
                 "libzo: [appendSingleTimeDelayInfo:#]: Failed to write to file: d|",
                 test::messages());
}

TEST(TimeDelayInfo, appendToAFileThatGrowsTakesTheCountedRecords)
{
    TimeDelayInfo income = delays("cc", 301);
    test::writeFile("f", oneLine);
    test::beforeOpen(2, [](const char*) { writeHistory(300); });
    EXPECT_TRUE(appendSingleTimeDelayInfo("f", &income));
    EXPECT_STREQ("000000000000 101 102 103 104 105 106 107 108 109 110 111 112 113 114 115\n"
                 "          cc 301 302 303 304 305 306 307 308 309 310 311 312 313 314 315\n",
                 test::fileText("f"));
}
