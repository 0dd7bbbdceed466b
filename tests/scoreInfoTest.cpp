/* SPDX-License-Identifier: Apache-2.0 */
#include "messages.h"
#include "scenario.h"

#include <limits.h>
#include <sys/stat.h>

using namespace messages::score;
using namespace test;

/* What score("aabbccddee01", 1) and score("ab", 2) are written as. */
static const char lineOne[] = "aabbccddee01  1 1.50 11 1012 2.25 1013 101 102 103 104 105"
                              " 1021 1022 1023 1024 1025 1031 1032 1033 1034 1035\n";
static const char lineTwo[] = "          ab  2 2.50 21 2012 3.25 2013 201 202 203 204 205"
                              " 2021 2022 2023 2024 2025 2031 2032 2033 2034 2035\n";
static const char bothLines[] = "aabbccddee01  1 1.50 11 1012 2.25 1013 101 102 103 104 105"
                                " 1021 1022 1023 1024 1025 1031 1032 1033 1034 1035\n"
                                "          ab  2 2.50 21 2012 3.25 2013 201 202 203 204 205"
                                " 2021 2022 2023 2024 2025 2031 2032 2033 2034 2035\n";

/* A record whose fields all differ; `n` from 1 to 2 makes it differ from others. */
static ScoreInfo score(const char* father, int n)
{
    ScoreInfo info = {};
    snprintf(info.fatherMAC, sizeof info.fatherMAC, "%s", father);
    info.apRank = static_cast<uint8_t>(n);
    info.hopsFactor = static_cast<float>(n) + 0.5F;
    info.timeDelayTestCnt = static_cast<uint8_t>(10 * n + 1);
    info.timeDelayAverage = static_cast<uint16_t>(1000 * n + 12);
    info.timeNormalization = static_cast<float>(n) + 1.25F;
    info.thrputPredict = static_cast<uint16_t>(1000 * n + 13);
    for (int i = 0; i < 5; ++i) {
        info.rssi[i] = static_cast<uint8_t>(100 * n + i + 1);
        info.negoRate[i] = static_cast<uint16_t>(1000 * n + 21 + i);
        info.patRate[i] = static_cast<uint16_t>(1000 * n + 31 + i);
    }
    return info;
}

static void expectHead(const ScoreInfo& info, const ScoreInfo& expected)
{
    EXPECT_STREQ(expected.fatherMAC, info.fatherMAC);
    EXPECT_EQ(expected.apRank, info.apRank);
    EXPECT_EQ(expected.hopsFactor, info.hopsFactor);
    EXPECT_EQ(expected.timeDelayTestCnt, info.timeDelayTestCnt);
    EXPECT_EQ(expected.timeDelayAverage, info.timeDelayAverage);
    EXPECT_EQ(expected.timeNormalization, info.timeNormalization);
    EXPECT_EQ(expected.thrputPredict, info.thrputPredict);
}

static void expectArrays(const ScoreInfo& info, const ScoreInfo& expected)
{
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(expected.rssi[i], info.rssi[i]);
        EXPECT_EQ(expected.negoRate[i], info.negoRate[i]);
        EXPECT_EQ(expected.patRate[i], info.patRate[i]);
    }
}

static void expectScore(const ScoreInfo& info, const ScoreInfo& expected)
{
    expectHead(info, expected);
    expectArrays(info, expected);
}

/* ---- Writer ------------------------------------------------------------- */

TEST(ScoreInfo, writerPrintsOneAlignedLinePerRecord)
{
    ScoreInfo infos[] = {score("aabbccddee01", 1), score("ab", 2)};
    ScoreInfo before[2];
    memcpy(before, infos, sizeof infos);
    EXPECT_TRUE(scoreInfoWriter("f", infos, 2));
    EXPECT_STREQ(bothLines, test::fileText("f"));
    EXPECT_EQ(0, memcmp(before, infos, sizeof infos));
    EXPECT_STREQ("", test::messages());
}

TEST(ScoreInfo, writerPadsSmallValues)
{
    ScoreInfo info = {};
    strcpy(info.fatherMAC, "a");
    for (int i = 0; i < 5; ++i) {
        info.rssi[i] = static_cast<uint8_t>(i + 1);
        info.negoRate[i] = static_cast<uint16_t>(i + 11);
        info.patRate[i] = static_cast<uint16_t>(i + 101);
    }
    EXPECT_TRUE(scoreInfoWriter("f", &info, 1));
    EXPECT_STREQ("           a  0 0.00  0    0 0.00    0  1  2  3  4  5   11   12   13   14   15"
                 "  101  102  103  104  105\n",
                 test::fileText("f"));
}

TEST(ScoreInfo, writerDoesNotCutLargeValues)
{
    ScoreInfo info = {};
    strcpy(info.fatherMAC, "0123456789abcde");
    info.apRank = 255;
    info.hopsFactor = 16777216.0F;
    info.timeDelayTestCnt = 254;
    info.timeDelayAverage = 65535;
    info.timeNormalization = -123456.75F;
    info.thrputPredict = 65534;
    for (int i = 0; i < 5; ++i) {
        info.rssi[i] = static_cast<uint8_t>(251 + i);
        info.negoRate[i] = static_cast<uint16_t>(65521 + i);
        info.patRate[i] = static_cast<uint16_t>(65531 + i);
    }
    EXPECT_TRUE(scoreInfoWriter("f", &info, 1));
    EXPECT_STREQ("0123456789abcde 255 16777216.00 254 65535 -123456.75 65534 251 252 253 254 255"
                 " 65521 65522 65523 65524 65525 65531 65532 65533 65534 65535\n",
                 test::fileText("f"));
}

TEST(ScoreInfo, writerPrintsFloatsWithTwoDecimals)
{
    static const struct {
        float value;
        const char* text;
    } rows[] = {{1.5F, "1.50"},   {0.333F, "0.33"}, {0.336F, "0.34"},   {0.994F, "0.99"},
                {0.996F, "1.00"}, {-1.5F, "-1.50"}, {100.0F, "100.00"}, {0.001F, "0.00"}};
    for (const auto& row : rows) {
        ScoreInfo info = {};
        char expected[160];
        strcpy(info.fatherMAC, "a");
        info.hopsFactor = row.value;
        info.timeNormalization = 7.0F;
        EXPECT_TRUE(scoreInfoWriter("f", &info, 1));
        snprintf(expected, sizeof expected,
                 "           a  0 %s  0    0 7.00    0  0  0  0  0  0    0    0    0    0    0"
                 "    0    0    0    0    0\n",
                 row.text);
        EXPECT_STREQ(expected, test::fileText("f"));
        info.hopsFactor = 8.0F;
        info.timeNormalization = row.value;
        EXPECT_TRUE(scoreInfoWriter("f", &info, 1));
        snprintf(expected, sizeof expected,
                 "           a  0 8.00  0    0 %s    0  0  0  0  0  0    0    0    0    0    0"
                 "    0    0    0    0    0\n",
                 row.text);
        EXPECT_STREQ(expected, test::fileText("f"));
    }
}

TEST(ScoreInfo, writerStopsAtTheFirstEmptyMac)
{
    ScoreInfo infos[5] = {score("aabbccddee01", 1), score("", 2), score("ab", 2)};
    EXPECT_TRUE(scoreInfoWriter("f", infos, 5));
    EXPECT_STREQ(lineOne, test::fileText("f"));
    EXPECT_TRUE(scoreInfoWriter("f", infos + 1, 4));
    EXPECT_EQ(0L, test::fileSize("f"));
    EXPECT_STREQ("", test::messages());
}

TEST(ScoreInfo, writerOfAPartlyFilledArrayWritesTheFilledPart)
{
    ScoreInfo infos[20] = {score("aabbccddee01", 1), score("ab", 2)};
    EXPECT_TRUE(scoreInfoWriter("f", infos, 20));
    EXPECT_STREQ(bothLines, test::fileText("f"));
}

TEST(ScoreInfo, writerReplacesTheFileByTheFirstRecords)
{
    ScoreInfo infos[] = {score("ab", 2), score("aabbccddee01", 1)};
    test::writeFile("f", bothLines);
    EXPECT_TRUE(scoreInfoWriter("f", infos, 1));
    EXPECT_STREQ(lineTwo, test::fileText("f"));
}

TEST(ScoreInfo, writerOfNoRecordsLeavesAnEmptyFile)
{
    static const int counts[] = {0, -1, INT_MIN};
    ScoreInfo info = score("ab", 2);
    for (int count : counts) {
        test::writeFile("f", bothLines);
        EXPECT_TRUE(scoreInfoWriter("f", &info, count));
        EXPECT_EQ(0L, test::fileSize("f"));
        remove("f");
        EXPECT_TRUE(scoreInfoWriter("f", &info, count));
        EXPECT_EQ(0L, test::fileSize("f"));
    }
    EXPECT_STREQ("", test::messages());
}

TEST(ScoreInfo, writerGoesOnAfterAFailedPrintOfAnArrayValue)
{
    ScoreInfo infos[] = {score("aabbccddee01", 1), score("ab", 2)};
    for (size_t i = 0; i < 15; ++i) {
        /* The second line without its i-th array value: five of 4 characters, then ten of 5. */
        char left[sizeof bothLines];
        const size_t width = i < 5 ? 4 : 5;
        const size_t at = sizeof lineOne - 1 + 38 + (i < 5 ? 4 * i : 20 + 5 * (i - 5));
        memcpy(left, bothLines, at);
        memcpy(left + at, bothLines + at + width, sizeof bothLines - at - width);
        test::clearMessages();
        test::failNth(test::WRITE, 17 + 2 + static_cast<int>(i));
        EXPECT_TRUE(scoreInfoWriter("f", infos, 2));
        EXPECT_STREQ(left, test::fileText("f"));
        EXPECT_MESSAGES(writerCannotPrintValue);
    }
}

TEST(ScoreInfo, writerFailsOnAFullDeviceThatRefusesABigFile)
{
    static ScoreInfo infos[300];
    for (ScoreInfo& info : infos)
        info = score("ab", 2);
    EXPECT_FALSE(scoreInfoWriter("/dev/full", infos, 300));
    EXPECT_GE(test::messageCount(), 1);
}

static bool write(ScoreInfo info, const char* path = "f")
{
    return scoreInfoWriter(path, &info, 1);
}

static bool writeOne()
{
    return write(score("aabbccddee01", 1));
}

static bool writeThree()
{
    ScoreInfo infos[] = {score("aabbccddee01", 1), score("ab", 2), score("cc", 1)};
    return scoreInfoWriter("f", infos, 3);
}

TEST(ScoreInfo, writerReportsFailures)
{
    static const Row rows[] = {
        Row("stops at a failed print of the first head", bothLines, fails(WRITE, 1), writeThree, false,
            {writerCannotPrint}, ""),
        Row("stops at a failed print of the second head", bothLines, fails(WRITE, 18), writeThree, false,
            {writerCannotPrint}, lineOne),
        Row("stops at a failed print of the third head", NO_FILE, fails(WRITE, 35), writeThree, false,
            {writerCannotPrint}, bothLines),
        Row("reports a failed open", NO_FILE, noFault, [] { return write(score("ab", 2), "no/file"); }, false,
            {"E scoreInfoWriter: Failed to write file: no/file.\n"}),
        Row(
            "does not look at the close after a failed print of a head", NO_FILE,
            failBoth(WRITE, 1, CLOSE, 1), [] { return write(score("ab", 2)); }, false, {writerCannotPrint},
            ""),
        Row("reports a failed print of the first rssi", NO_FILE, fails(WRITE, 2), writeOne, true,
            {writerCannotPrintValue},
            "aabbccddee01  1 1.50 11 1012 2.25 1013 102 103 104 105 1021 1022 1023 1024 1025 1031 1032 1033 "
            "1034 1035\n"),
        Row("reports a failed print of the first negotiated rate", NO_FILE, fails(WRITE, 7), writeOne, true,
            {writerCannotPrintValue},
            "aabbccddee01  1 1.50 11 1012 2.25 1013 101 102 103 104 105 1022 1023 1024 1025 1031 1032 1033 "
            "1034 1035\n"),
        Row("reports a failed print of the first PAT rate", NO_FILE, fails(WRITE, 12), writeOne, true,
            {writerCannotPrintValue},
            "aabbccddee01  1 1.50 11 1012 2.25 1013 101 102 103 104 105"
            " 1021 1022 1023 1024 1025 1032 1033 1034 1035\n"),
        Row(
            "reports every failed print of an array value", NO_FILE, failsFrom(WRITE, 15),
            [] {
                ScoreInfo infos[] = {score("aabbccddee01", 1), score("ab", 2)};
                return scoreInfoWriter("f", infos, 2);
            },
            false, {writerCannotPrintValue, writerCannotPrintValue, writerCannotPrint},
            "aabbccddee01  1 1.50 11 1012 2.25 1013 101 102 103 104 105"
            " 1021 1022 1023 1024 1025 1031 1032 1033"),
        Row(
            "does not report a failed print of a newline", NO_FILE, fails(WRITE, 34),
            [] {
                ScoreInfo infos[] = {score("aabbccddee01", 1), score("ab", 2)};
                const bool result = scoreInfoWriter("f", infos, 2);
                EXPECT_EQ(static_cast<long>(sizeof bothLines - 2), test::fileSize("f"));
                EXPECT_EQ(1, test::fileLines("f"));
                return result;
            },
            true, {},
            "aabbccddee01  1 1.50 11 1012 2.25 1013 101 102 103 104 105 1021 1022 1023 1024 1025 1031 1032 "
            "1033 1034 1035\n"
            "          ab  2 2.50 21 2012 3.25 2013 201 202 203 204 205 2021 2022 2023 2024 2025 2031 2032 "
            "2033 2034 2035"),
        Row(
            "reports a failed close", NO_FILE, fails(CLOSE, 1),
            [] {
                ScoreInfo infos[2] = {score("ab", 2)};
                return scoreInfoWriter("f", infos, 2);
            },
            false, {writerCannotClose}, lineTwo),
        Row("reports the close that fails on a full device", NO_FILE, noFault,
            [] { return write(score("ab", 2), "/dev/full"); }, false,
            {"E scoreInfoWriter: fclose error, path:/dev/full.\n"}),
        Row("reports the print that fails on a full device", NO_FILE, unbuffered,
            [] { return write(score("ab", 2), "/dev/full"); }, false,
            {"E scoreInfoWriter: fprintf error, path:/dev/full.\n"}),
    };
    expectRows(rows);
}

/* ---- Reader ------------------------------------------------------------- */

TEST(ScoreInfo, readerLoadsEveryFieldOfTheRecordsAskedFor)
{
    test::writeFile("f", bothLines);
    ScoreInfo infos[3] = {};
    infos[2] = score("kept", 1);
    EXPECT_TRUE(scoreInfoReader("f", infos, 2));
    expectScore(infos[0], score("aabbccddee01", 1));
    expectScore(infos[1], score("ab", 2));
    expectScore(infos[2], score("kept", 1));
    EXPECT_STREQ("", test::messages());
    EXPECT_STREQ(bothLines, test::fileText("f"));
}

TEST(ScoreInfo, readerReadsNoMoreRecordsThanAskedFor)
{
    test::writeFile("f", bothLines);
    ScoreInfo infos[2] = {score("kept", 2), score("keptToo", 1)};
    EXPECT_TRUE(scoreInfoReader("f", infos, 1));
    expectScore(infos[0], score("aabbccddee01", 1));
    expectScore(infos[1], score("keptToo", 1));
}

TEST(ScoreInfo, readerOfNoRecordsTouchesNothing)
{
    static const int counts[] = {0, -1, INT_MIN};
    test::writeFile("f", bothLines);
    ScoreInfo info = score("kept", 1);
    for (int count : counts)
        EXPECT_TRUE(scoreInfoReader("f", &info, count));
    expectScore(info, score("kept", 1));
    EXPECT_STREQ("", test::messages());
}

TEST(ScoreInfo, readerReadsTokensNotLines)
{
    test::writeFile("f",
                    "\n aabbccddee01 1 1.5\n11 1012\t2.25 1013 101 102\n103 104 105 1021 1022 1023 1024"
                    "\n\n1025 1031 1032 1033 1034 1035 ab 2 2.5 21 2012 3.25 2013 201 202 203 204 205 2021 "
                    "2022 2023 2024 2025 2031 2032 2033 2034 2035");
    ScoreInfo infos[2] = {};
    EXPECT_TRUE(scoreInfoReader("f", infos, 2));
    expectScore(infos[0], score("aabbccddee01", 1));
    expectScore(infos[1], score("ab", 2));
    EXPECT_STREQ("", test::messages());
}

TEST(ScoreInfo, readerReadsTwelveCharactersOfAMacAndWholeNumbers)
{
    test::writeFile("f", "aabbccddeeff255 123456.75 254 65535 -0.5 65534 251 252 253 254 255"
                         " 65521 65522 65523 65524 65525 65531 65532 65533 65534 65535\n");
    ScoreInfo info = {};
    EXPECT_TRUE(scoreInfoReader("f", &info, 1));
    EXPECT_STREQ("aabbccddeeff", info.fatherMAC);
    EXPECT_EQ(255, info.apRank);
    EXPECT_EQ(123456.75F, info.hopsFactor);
    EXPECT_EQ(254, info.timeDelayTestCnt);
    EXPECT_EQ(65535, info.timeDelayAverage);
    EXPECT_EQ(-0.5F, info.timeNormalization);
    EXPECT_EQ(65534, info.thrputPredict);
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(251 + i, info.rssi[i]);
        EXPECT_EQ(65521 + i, info.negoRate[i]);
        EXPECT_EQ(65531 + i, info.patRate[i]);
    }
}

TEST(ScoreInfo, readerReadsLeadingZerosAsDecimal)
{
    test::writeFile("f", "aa 010 0.5 011 012 0.25 013 014 015 016 017 020 021 022 023 024 025"
                         " 026 027 030 031 032\n");
    static const int rates[] = {26, 27, 30, 31, 32};
    static const int rssis[] = {14, 15, 16, 17, 20};
    ScoreInfo info = {};
    EXPECT_TRUE(scoreInfoReader("f", &info, 1));
    EXPECT_EQ(10, info.apRank);
    EXPECT_EQ(11, info.timeDelayTestCnt);
    EXPECT_EQ(12, info.timeDelayAverage);
    EXPECT_EQ(13, info.thrputPredict);
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(rssis[i], info.rssi[i]);
        EXPECT_EQ(21 + i, info.negoRate[i]);
        EXPECT_EQ(rates[i], info.patRate[i]);
    }
}

TEST(ScoreInfo, readerChangesNoValue)
{
    test::writeFile("f", "aa 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0\n");
    ScoreInfo info = score("kept", 1);
    EXPECT_TRUE(scoreInfoReader("f", &info, 1));
    ScoreInfo zeros = {};
    strcpy(zeros.fatherMAC, "aa");
    expectScore(info, zeros);
}

TEST(ScoreInfo, floatsComeBackRoundedToTwoDecimals)
{
    ScoreInfo info = score("aa", 1);
    info.hopsFactor = 0.333F;
    info.timeNormalization = 0.1289F;
    EXPECT_TRUE(scoreInfoWriter("f", &info, 1));
    ScoreInfo read = {};
    EXPECT_TRUE(scoreInfoReader("f", &read, 1));
    EXPECT_EQ(0.33F, read.hopsFactor);
    EXPECT_EQ(0.13F, read.timeNormalization);
}

/* Reads "head" and then the array values 1 to `count`, and returns the number of messages. */
static int readWithValues(int count, ScoreInfo* info)
{
    char text[200];
    int length = snprintf(text, sizeof text, "aa 1 2.5 3 4 5.5 6");
    for (int i = 1; i <= count; ++i)
        length += snprintf(text + length, sizeof text - static_cast<size_t>(length), " %d", i);
    test::writeFile("f", text);
    test::clearMessages();
    EXPECT_TRUE(scoreInfoReader("f", info, 1));
    return test::messageCount();
}

TEST(ScoreInfo, readerReportsEveryArrayValueMissingAtTheEnd)
{
    for (int count = 0; count <= 15; ++count) {
        ScoreInfo info = score("kept", 2);
        EXPECT_EQ(15 - count, readWithValues(count, &info));
        EXPECT_STREQ("aa", info.fatherMAC);
        EXPECT_EQ(6, info.thrputPredict);
        for (int i = 0; i < 5; ++i) {
            EXPECT_EQ(i < count ? i + 1 : 201 + i, info.rssi[i]);
            EXPECT_EQ(i + 5 < count ? i + 6 : 2021 + i, info.negoRate[i]);
            EXPECT_EQ(i + 10 < count ? i + 11 : 2031 + i, info.patRate[i]);
        }
    }
}

TEST(ScoreInfo, readerNamesTheFileForEveryMissingArrayValue)
{
    ScoreInfo info = {};
    EXPECT_EQ(15, readWithValues(0, &info));
    EXPECT_EQ(15, timesLogged(readerCannotRead));
}

TEST(ScoreInfo, readerAcceptsAHeadThatEndsEarly)
{
    ScoreInfo info = score("kept", 2);
    ScoreInfo expected = info;
    strcpy(expected.fatherMAC, "aa");
    expected.apRank = 7;
    test::writeFile("f", "aa 7\n");
    EXPECT_TRUE(scoreInfoReader("f", &info, 1));
    expectScore(info, expected);
    EXPECT_EQ(15, test::messageCount()); /* the array values, not the head */
}

TEST(ScoreInfo, readerLeavesATokenThatIsNoNumberForTheNextMac)
{
    ScoreInfo infos[2] = {score("kept", 2), score("kept", 1)};
    ScoreInfo expected = infos[0];
    strcpy(expected.fatherMAC, "aa");
    expected.apRank = 7;
    test::writeFile("f", "aa 7 xx 2 2.5 21 2012 3.25 2013 201 202 203 204 205"
                         " 2021 2022 2023 2024 2025 2031 2032 2033 2034 2035\n");
    EXPECT_TRUE(scoreInfoReader("f", infos, 2));
    expectScore(infos[0], expected);
    expectScore(infos[1], score("xx", 2));
    EXPECT_STREQ("", test::messages());
}

TEST(ScoreInfo, readerLeavesATokenAmongTheArrayValuesForTheNextMac)
{
    ScoreInfo infos[2] = {score("kept", 1), score("kept", 1)};
    test::writeFile("f", "aa 2 2.5 21 2012 3.25 2013 201 202 203 204 205 2021"
                         " xx 2 2.5 21 2012 3.25 2013 201 202 203 204 205"
                         " 2021 2022 2023 2024 2025 2031 2032 2033 2034 2035\n");
    EXPECT_TRUE(scoreInfoReader("f", infos, 2));
    expectHead(infos[0], score("aa", 2));
    ScoreInfo expected = score("", 1);
    memcpy(expected.rssi, score("", 2).rssi, sizeof expected.rssi);
    expected.negoRate[0] = 2021;
    expectArrays(infos[0], expected);
    expectScore(infos[1], score("xx", 2));
    EXPECT_STREQ("", test::messages());
}

static bool readOne()
{
    ScoreInfo info = {};
    return scoreInfoReader("f", &info, 1);
}

static bool readNothing()
{
    ScoreInfo info = score("kept", 1);
    const bool result = scoreInfoReader("f", &info, 1);
    expectScore(info, score("kept", 1));
    return result;
}

TEST(ScoreInfo, readerReportsFailures)
{
    static const Row rows[] = {
        Row("reports every missing record once", lineOne, noFault,
            [] {
                ScoreInfo infos[3] = {score("kept", 2), score("kept", 2), score("keptToo", 1)};
                const bool result = scoreInfoReader("f", infos, 3);
                expectScore(infos[0], score("aabbccddee01", 1));
                expectScore(infos[1], score("kept", 2));
                expectScore(infos[2], score("keptToo", 1));
                return result;
            },
            true, {readerCannotRead, readerCannotRead}),
        Row("reports a missing head", "", noFault, readOne, true, {readerCannotRead}),
        Row("reports the last array value missing", "aa 1 2 3 4 5 6 1 2 3 4 5 6 7 8 9 10 11 12 13 14 \n",
            noFault, readOne, true, {readerCannotRead}),
        Row("reports each of six array values missing", "aa 1 2 3 4 5 6 1 2 3 4 5 6 7 8 9", noFault, readOne,
            true,
            {readerCannotRead, readerCannotRead, readerCannotRead, readerCannotRead, readerCannotRead,
             readerCannotRead}),
        Row("of a missing file fails", NO_FILE, noFault, readNothing, false, {readerCannotOpen}),
        Row("reports a failed close", lineTwo, fails(CLOSE, 1),
            [] {
                ScoreInfo info = {};
                const bool result = scoreInfoReader("f", &info, 1);
                expectScore(info, score("ab", 2));
                return result;
            },
            false, {readerCannotClose}),
        Row("treats a read error as the end", bothLines, failsFrom(READ, 1),
            [] {
                ScoreInfo infos[2] = {score("kept", 1), score("keptToo", 2)};
                const bool result = scoreInfoReader("f", infos, 2);
                expectScore(infos[0], score("kept", 1));
                expectScore(infos[1], score("keptToo", 2));
                return result;
            },
            true, {readerCannotRead, readerCannotRead}),
        Row("of a directory reads nothing", DIRECTORY, noFault, readNothing, true, {readerCannotRead}),
    };
    expectRows(rows);
}

/* ---- Emptiness test ----------------------------------------------------- */

TEST(ScoreInfo, countReaderReturnsOneForAFileWithoutAToken)
{
    static const char* const texts[] = {"", "\n", "   ", " \t\r\n\n  \n"};
    for (const char* text : texts) {
        test::writeFile("f", text);
        EXPECT_EQ(1, scoreInfoCntReader("f"));
        EXPECT_STREQ(text, test::fileText("f"));
    }
    EXPECT_STREQ("", test::messages());
}

TEST(ScoreInfo, countReaderReturnsZeroForAFileWithAToken)
{
    static const char* const texts[] = {"5", "0",         "1\n",  "-1\n", "17 18\n",
                                        "x", "\n\n  x\n", "\n 1", lineOne};
    for (const char* text : texts) {
        test::writeFile("f", text);
        EXPECT_EQ(0, scoreInfoCntReader("f"));
        EXPECT_STREQ(text, test::fileText("f"));
    }
    EXPECT_STREQ("", test::messages());
}

TEST(ScoreInfo, countReaderReturnsZeroForAWrittenFile)
{
    ScoreInfo infos[] = {score("aabbccddee01", 1), score("ab", 2)};
    EXPECT_TRUE(scoreInfoWriter("f", infos, 1));
    EXPECT_EQ(0, scoreInfoCntReader("f"));
    EXPECT_TRUE(scoreInfoWriter("f", infos + 1, 1));
    EXPECT_EQ(0, scoreInfoCntReader("f"));
    EXPECT_TRUE(scoreInfoWriter("f", infos, 0));
    EXPECT_EQ(1, scoreInfoCntReader("f"));
}

TEST(ScoreInfo, countReaderIgnoresAFailedClose)
{
    test::writeFile("f", "");
    test::failNth(test::CLOSE, 1);
    EXPECT_EQ(1, scoreInfoCntReader("f"));
    test::writeFile("f", lineOne);
    test::failNth(test::CLOSE, 1);
    EXPECT_EQ(0, scoreInfoCntReader("f"));
    EXPECT_EQ(2, test::callCount(test::CLOSE));
    EXPECT_STREQ("", test::messages());
}

TEST(ScoreInfo, countReaderTreatsAReadErrorAsTheEnd)
{
    test::writeFile("f", lineOne);
    test::failFrom(test::READ, 1);
    EXPECT_EQ(1, scoreInfoCntReader("f"));
    test::failNothing();
    EXPECT_EQ(0, mkdir("d", 0777));
    EXPECT_EQ(1, scoreInfoCntReader("d"));
    EXPECT_STREQ("", test::messages());
}

TEST(ScoreInfo, countReaderReportsAMissingFile)
{
    static const Row rows[] = {
        Row("of a missing file reports it and returns zero", NO_FILE, noFault,
            [] { return scoreInfoCntReader("f") != 0; }, false, {countReaderCannotOpen}),
    };
    expectRows(rows);
}
