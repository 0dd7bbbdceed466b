/* SPDX-License-Identifier: Apache-2.0 */
#include "messages.h"
#include "scenario.h"

#include <limits.h>
#include <sys/stat.h>

using namespace messages::fileHelpers;
using namespace messages::timeDelay;
using namespace test;

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

TEST(TimeDelayInfo, readerReadsNoMoreRecordsThanAskedFor)
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

TEST(TimeDelayInfo, readerReadsTwelveCharactersOfAMac)
{
    test::writeFile("f", "aabbccddeeff77 78 79 80 81 82 83 84 85 86 87 88 89 90 91\n");
    TimeDelayInfo info = {};
    EXPECT_TRUE(timeDelayInfoReader("f", &info, 1));
    expectDelays(info, "aabbccddeeff", 77);
}

TEST(TimeDelayInfo, readerReadsLeadingZerosAsDecimal)
{
    test::writeFile("f", "aa 010 011 012 013 014 015 016 017 018 019 020 021 022 023 024\n");
    TimeDelayInfo info = {};
    EXPECT_TRUE(timeDelayInfoReader("f", &info, 1));
    expectDelays(info, "aa", 10);
}

TEST(TimeDelayInfo, readerReportsAllFifteenSamplesOfAMacAlone)
{
    test::writeFile("f", "aa\n");
    TimeDelayInfo info = sameDelays("kept", 0);
    EXPECT_TRUE(timeDelayInfoReader("f", &info, 1));
    expectSameDelays(info, "aa", 1);
    EXPECT_EQ(15, test::messageCount());
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

static bool readOne()
{
    TimeDelayInfo info = {};
    return timeDelayInfoReader("f", &info, 1);
}

TEST(TimeDelayInfo, readerReportsFailures)
{
    static const Row rows[] = {
        Row("reports every missing record and clamps what the array held", oneLine, noFault,
            [] {
                TimeDelayInfo infos[3] = {sameDelays("kept", 5), sameDelays("kept", 0),
                                          sameDelays("keptToo", 1001)};
                const bool result = timeDelayInfoReader("f", infos, 3);
                expectDelays(infos[0], "aabbccddee01", 101);
                expectSameDelays(infos[1], "kept", 1);
                expectSameDelays(infos[2], "keptToo", 1000);
                return result;
            },
            true, {readerCannotRead, readerCannotRead}),
        Row("reports every sample missing at the end", "aa 1 2 3 4 5 6 7 8 9 10 11 12", noFault,
            [] {
                TimeDelayInfo info = sameDelays("kept", 2000);
                const bool result = timeDelayInfoReader("f", &info, 1);
                EXPECT_STREQ("aa", info.fatherMAC);
                for (int i = 0; i < 12; ++i)
                    EXPECT_EQ(i + 1, info.delayTime[i]);
                for (int i = 12; i < 15; ++i)
                    EXPECT_EQ(1000, info.delayTime[i]);
                return result;
            },
            true, {readerCannotRead, readerCannotRead, readerCannotRead}),
        Row("reports a missing mac", "", noFault, readOne, true, {readerCannotRead}),
        Row("reports a missing sample", "aa 1 2 3 4 5 6 7 8 9 10 11 12 13 14 \n", noFault, readOne, true,
            {readerCannotRead}),
        Row("of a missing file fails", NO_FILE, noFault,
            [] {
                TimeDelayInfo info = sameDelays("kept", 0);
                const bool result = timeDelayInfoReader("f", &info, 1);
                expectSameDelays(info, "kept", 0);
                return result;
            },
            false, {readerCannotOpen}),
        Row("reports a failed close with the records clamped", "aa 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0\n",
            fails(CLOSE, 1),
            [] {
                TimeDelayInfo info = {};
                const bool result = timeDelayInfoReader("f", &info, 1);
                expectSameDelays(info, "aa", 1);
                return result;
            },
            false, {readerCannotClose}),
        Row("treats a read error as the end", twoLines, failsFrom(READ, 1),
            [] {
                TimeDelayInfo infos[2] = {sameDelays("kept", 0), sameDelays("keptToo", 2000)};
                const bool result = timeDelayInfoReader("f", infos, 2);
                expectSameDelays(infos[0], "kept", 1);
                expectSameDelays(infos[1], "keptToo", 1000);
                return result;
            },
            true, {readerCannotRead, readerCannotRead}),
        Row("of a directory reads nothing", DIRECTORY, noFault,
            [] {
                TimeDelayInfo info = sameDelays("kept", 0);
                const bool result = timeDelayInfoReader("f", &info, 1);
                expectSameDelays(info, "kept", 1);
                return result;
            },
            true, {readerCannotRead}),
    };
    expectRows(rows);
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
        EXPECT_MESSAGES(writerCannotPrintValue);
    }
}

TEST(TimeDelayInfo, writerFailsOnAFullDeviceThatRefusesABigFile)
{
    static TimeDelayInfo infos[400];
    for (TimeDelayInfo& info : infos)
        info = delays("aa", 1);
    EXPECT_FALSE(timeDelayInfoWriter("/dev/full", infos, 400));
    EXPECT_GE(test::messageCount(), 1);
}

static bool write(TimeDelayInfo info, const char* path = "f")
{
    return timeDelayInfoWriter(path, &info, 1);
}

static bool writeTwo()
{
    TimeDelayInfo infos[] = {delays("aabbccddee01", 101), delays("aabbccddee02", 201)};
    return timeDelayInfoWriter("f", infos, 2);
}

static bool writeThree()
{
    TimeDelayInfo infos[] = {delays("aabbccddee01", 101), delays("aabbccddee02", 201), delays("cc", 301)};
    return timeDelayInfoWriter("f", infos, 3);
}

TEST(TimeDelayInfo, writerReportsFailures)
{
    static const Row rows[] = {
        Row("stops at a failed print of the first MAC", twoLines, fails(WRITE, 1), writeThree, false,
            {writerCannotPrint}, ""),
        Row("stops at a failed print of the second MAC", twoLines, fails(WRITE, 18), writeThree, false,
            {writerCannotPrint}, oneLine),
        Row("stops at a failed print of the third MAC", NO_FILE, fails(WRITE, 35), writeThree, false,
            {writerCannotPrint}, twoLines),
        Row("reports a failed open", NO_FILE, noFault, [] { return write(delays("aa", 1), "no/file"); },
            false, {"E timeDelayInfoWriter: Failed to write file: no/file.\n"}),
        Row(
            "does not look at the close after a failed print of a mac", NO_FILE, failBoth(WRITE, 1, CLOSE, 1),
            [] { return write(delays("aa", 1)); }, false, {writerCannotPrint}, ""),
        Row("reports a failed print of a sample", NO_FILE, fails(WRITE, 2), writeTwo, true,
            {writerCannotPrintValue},
            "aabbccddee01 102 103 104 105 106 107 108 109 110 111 112 113 114 115\n"
            "aabbccddee02 201 202 203 204 205 206 207 208 209 210 211 212 213 214 215\n"),
        Row("reports every failed print of a sample", NO_FILE, failsFrom(WRITE, 15), writeTwo, false,
            {writerCannotPrintValue, writerCannotPrintValue, writerCannotPrint},
            "aabbccddee01 101 102 103 104 105 106 107 108 109 110 111 112 113"),
        Row("does not report a failed print of a newline", NO_FILE, fails(WRITE, 17), writeTwo, true, {},
            "aabbccddee01 101 102 103 104 105 106 107 108 109 110 111 112 113 114 115"
            "aabbccddee02 201 202 203 204 205 206 207 208 209 210 211 212 213 214 215\n"),
        Row(
            "reports a failed close", NO_FILE, fails(CLOSE, 1),
            [] { return write(delays("aabbccddee01", 101)); }, false, {writerCannotClose}, oneLine),
        Row(
            "reports a failed close after an empty mac", NO_FILE, fails(CLOSE, 1),
            [] {
                TimeDelayInfo infos[2] = {delays("aabbccddee01", 101)};
                return timeDelayInfoWriter("f", infos, 2);
            },
            false, {writerCannotClose}, oneLine),
        Row("reports the close that fails on a full device", NO_FILE, noFault,
            [] { return write(delays("aa", 1), "/dev/full"); }, false,
            {"E timeDelayInfoWriter: fclose error, path:/dev/full.\n"}),
        Row("reports the print that fails on a full device", NO_FILE, unbuffered,
            [] { return write(delays("aa", 1), "/dev/full"); }, false,
            {"E timeDelayInfoWriter: fprintf error, path:/dev/full.\n"}),
    };
    expectRows(rows);
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

TEST(TimeDelayInfo, emptierReportsFailures)
{
    static const Row rows[] = {
        Row("reports a failed open", NO_FILE, noFault, [] { return emptyTimeDelayFile("no/file"); }, false,
            {"E emptyTimeDelayFile: Failed to write file: no/file.\n"}),
        Row("that cannot open leaves the file", twoLines, fails(OPEN, 1),
            [] {
                const bool result = emptyTimeDelayFile("f");
                EXPECT_EQ(1, test::callCount(test::OPEN));
                return result;
            },
            false, {emptierCannotOpen}),
        Row(
            "reports a failed close", twoLines, fails(CLOSE, 1), [] { return emptyTimeDelayFile("f"); },
            false, {emptierCannotClose}, ""),
    };
    expectRows(rows);
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
    EXPECT_MESSAGES("I updateSingleTimeDelayInfo: income time delay info found @index 1");
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
    EXPECT_MESSAGES("I updateSingleTimeDelayInfo: income time delay info found @index 0",
                    "I updateSingleTimeDelayInfo: income time delay info found @index 1");
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
    EXPECT_MESSAGES("I updateSingleTimeDelayInfo: income time delay info found @index 1");
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
    EXPECT_MESSAGES(updateInserts);
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
        EXPECT_MESSAGES(updateInserts);
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

TEST(TimeDelayInfo, updateComparesNoCharacterAfterTheKeysEnd)
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
    EXPECT_MESSAGES("I updateSingleTimeDelayInfo: income time delay info found @index 299");
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
    EXPECT_MESSAGES(updateInserts);
}

static bool update(TimeDelayInfo income, const char* path = "f")
{
    return updateSingleTimeDelayInfo(path, &income);
}

static bool updateNewFather()
{
    return update(delays("cc", 301));
}

TEST(TimeDelayInfo, updateReportsItsStepsAndFailures)
{
    static const Row rows[] = {
        Row(
            "finds the father", twoLines, noFault, [] { return update(delays("aabbccddee02", 301)); }, true,
            {"I updateSingleTimeDelayInfo: income time delay info found @index 1"},
            "aabbccddee01 101 102 103 104 105 106 107 108 109 110 111 112 113 114 115\n"
            "aabbccddee02 301 302 303 304 305 306 307 308 309 310 311 312 313 314 315\n"),
        Row("does not find the father", twoLines, noFault, updateNewFather, true, {updateInserts},
            "aabbccddee01 101 102 103 104 105 106 107 108 109 110 111 112 113 114 115\n"
            "aabbccddee02 201 202 203 204 205 206 207 208 209 210 211 212 213 214 215\n"
            "          cc 301 302 303 304 305 306 307 308 309 310 311 312 313 314 315\n"),
        Row("of a missing file saves the record alone", NO_FILE, noFault, updateNewFather, true,
            {counterCannotOpen, updateSavesAlone, updateSaved}, incomeLine),
        Row(
            "of an empty file saves the record alone and unclamped", "", noFault,
            [] { return update(sameDelays("cc", 0)); }, true, {updateSavesAlone, updateSaved},
            "          cc   0   0   0   0   0   0   0   0   0   0   0   0   0   0   0\n"),
        Row("of a file that cannot be counted replaces it", twoLines, fails(CLOSE, 1), updateNewFather, true,
            {counterCannotClose, updateSavesAlone, updateSaved}, incomeLine),
        Row("after a blank line stores nothing and drops the blank line",
            "aabbccddee01 101 102 103 104 105 106 107 108 109 110 111 112 113 114 115\n\n", noFault,
            updateNewFather, true, {readerCannotRead, updateInserts}, oneLine),
        Row(
            "of a known father drops a blank line at the end",
            "aabbccddee01 101 102 103 104 105 106 107 108 109 110 111 112 113 114 115\n\n", noFault,
            [] { return update(delays("aabbccddee01", 301)); }, true,
            {readerCannotRead, "I updateSingleTimeDelayInfo: income time delay info found @index 0"},
            "aabbccddee01 301 302 303 304 305 306 307 308 309 310 311 312 313 314 315\n"),
        Row("refuses a null pointer after the count", NO_FILE, noFault,
            [] { return updateSingleTimeDelayInfo("f", nullptr); }, false,
            {counterCannotOpen, updateRefusesNull}),
        Row("refuses a null pointer on a file with records", twoLines, noFault,
            [] { return updateSingleTimeDelayInfo("f", nullptr); }, false, {updateRefusesNull}),
        Row("reports a failed first save", NO_FILE, noFault,
            [] { return update(delays("cc", 301), "no/file"); }, false,
            {"E dataLineCounter: Failed to read file: no/file\n", updateSavesAlone,
             "E timeDelayInfoWriter: Failed to write file: no/file.\n",
             "E updateSingleTimeDelayInfo: Failed to write to file: no/file"}),
        Row("reports a failed allocation with the scanning text", twoLines, fails(ALLOCATE, 1),
            updateNewFather, false, {updateCannotAllocate}),
        Row("reports a reader that cannot open", twoLines, fails(OPEN, 2), updateNewFather, false,
            {readerCannotOpen, updateCannotRead}),
        Row("reports a reader that cannot close", twoLines, fails(CLOSE, 2), updateNewFather, false,
            {readerCannotClose, updateCannotRead}),
        Row("reports a failed write of a replaced record", twoLines, fails(OPEN, 3),
            [] { return update(delays("aabbccddee02", 301)); }, false,
            {"I updateSingleTimeDelayInfo: income time delay info found @index 1", writerCannotOpen,
             updateCannotReplace}),
        Row("reports a failed write of an inserted record", twoLines, fails(OPEN, 3), updateNewFather, false,
            {updateInserts, writerCannotOpen, updateCannotAdd}),
        Row("leaves what was printed before a failed print", twoLines, fails(WRITE, 18), updateNewFather,
            false, {updateInserts, writerCannotPrint, updateCannotAdd}, oneLine),
        Row("of a file that shrinks writes up to the first missing record", twoLines,
            changes(2, [](const char* path) { test::writeFile(path, oneLine); }), updateNewFather, true,
            {readerCannotRead, updateInserts}, oneLine),
        Row("of a file that grows reads the counted records", oneLine,
            changes(2, [](const char*) { writeHistory(300); }), updateNewFather, true, {updateInserts},
            "000000000000 101 102 103 104 105 106 107 108 109 110 111 112 113 114 115\n"
            "          cc 301 302 303 304 305 306 307 308 309 310 311 312 313 314 315\n"),
    };
    expectRows(rows);
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

TEST(TimeDelayInfo, appendWithAnEmptyFatherStoresNothing)
{
    TimeDelayInfo income = delays("", 301);
    test::writeFile("f", oneLine);
    EXPECT_TRUE(appendSingleTimeDelayInfo("f", &income));
    EXPECT_STREQ(oneLine, test::fileText("f"));
    EXPECT_STREQ("", test::messages());
}

static bool append(TimeDelayInfo income, const char* path = "f")
{
    return appendSingleTimeDelayInfo(path, &income);
}

static bool appendOne()
{
    return append(delays("cc", 301));
}

TEST(TimeDelayInfo, appendReportsItsStepsAndFailures)
{
    static const Row rows[] = {
        Row("to a missing file saves the record alone", NO_FILE, noFault, appendOne, true,
            {counterCannotOpen, appendSavesAlone, appendSaved}, incomeLine),
        Row(
            "to an empty file saves the record alone and unclamped", "", noFault,
            [] { return append(sameDelays("cc", 0)); }, true, {appendSavesAlone, appendSaved},
            "          cc   0   0   0   0   0   0   0   0   0   0   0   0   0   0   0\n"),
        Row("to a file that cannot be counted replaces it", twoLines, fails(OPEN, 1), appendOne, true,
            {counterCannotOpen, appendSavesAlone, appendSaved}, incomeLine),
        Row("after a blank line stores nothing and drops the blank line",
            "aabbccddee01 101 102 103 104 105 106 107 108 109 110 111 112 113 114 115\n\n", noFault,
            appendOne, true, {readerCannotRead}, oneLine),
        Row("refuses a null pointer after the count", NO_FILE, noFault,
            [] { return appendSingleTimeDelayInfo("f", nullptr); }, false,
            {counterCannotOpen, appendRefusesNull}),
        Row("refuses a null pointer on a file with records", twoLines, noFault,
            [] { return appendSingleTimeDelayInfo("f", nullptr); }, false, {appendRefusesNull}),
        Row("reports a failed first save", NO_FILE, noFault,
            [] { return append(delays("cc", 301), "no/file"); }, false,
            {"E dataLineCounter: Failed to read file: no/file\n", appendSavesAlone,
             "E timeDelayInfoWriter: Failed to write file: no/file.\n",
             "E appendSingleTimeDelayInfo: Failed to write to file: no/file"}),
        Row("reports a failed allocation", twoLines, fails(ALLOCATE, 1), appendOne, false,
            {appendCannotAllocate}),
        Row("reports a reader that cannot open", twoLines, fails(OPEN, 2), appendOne, false,
            {readerCannotOpen, appendCannotRead}),
        Row("reports a reader that cannot close", twoLines, fails(CLOSE, 2), appendOne, false,
            {readerCannotClose, appendCannotRead}),
        Row("reports a failed write", twoLines, fails(OPEN, 3), appendOne, false,
            {writerCannotOpen, appendCannotRewrite}),
        Row(
            "reports a writer that cannot close", oneLine, fails(CLOSE, 3),
            [] { return append(delays("aabbccddee02", 201)); }, false,
            {writerCannotClose, appendCannotRewrite}, twoLines),
        Row("to a directory fails", DIRECTORY, noFault, appendOne, false,
            {appendSavesAlone, writerCannotOpen, appendCannotSave}),
        Row("to a file that grows reads the counted records", oneLine,
            changes(2, [](const char*) { writeHistory(300); }), appendOne, true, {},
            "000000000000 101 102 103 104 105 106 107 108 109 110 111 112 113 114 115\n"
            "          cc 301 302 303 304 305 306 307 308 309 310 311 312 313 314 315\n"),
    };
    expectRows(rows);
}
