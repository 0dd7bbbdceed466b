/* SPDX-License-Identifier: Apache-2.0 */
#include "testing.h"

#include <limits.h>
#include <sys/stat.h>

/* ---- Records and their lines -------------------------------------------- */

#define LINE_1                                                                 \
    "00AABBCCDD01 00AABBCCDD02 11 12 13 14 15 16 17 1001 1002 1003 1004 1005 " \
    "2001 2002 2003 2004 2005 3001 3002 4001 4002 4003 4004 4005\n"
#define LINE_2                                                                 \
    "00AABBCCDD03 00AABBCCDD04 21 22 23 24 25 26 27 5001 5002 5003 5004 5005 " \
    "6001 6002 6003 6004 6005 7001 7002 8001 8002 8003 8004 8005\n"
#define LINE_3                                                                 \
    "00AABBCCDD05 00AABBCCDD06 31 32 33 34 35 36 37 1101 1102 1103 1104 1105 " \
    "1201 1202 1203 1204 1205 1301 1302 1401 1402 1403 1404 1405\n"

static const ApNodeV2 record1 = {"00AABBCCDD01",
                                 "00AABBCCDD02",
                                 {11, 12, 13, 14, 15},
                                 16,
                                 17,
                                 {1001, 1002, 1003, 1004, 1005},
                                 {2001, 2002, 2003, 2004, 2005},
                                 3001,
                                 3002,
                                 {4001, 4002, 4003, 4004, 4005},
                                 18};
static const ApNodeV2 record2 = {"00AABBCCDD03",
                                 "00AABBCCDD04",
                                 {21, 22, 23, 24, 25},
                                 26,
                                 27,
                                 {5001, 5002, 5003, 5004, 5005},
                                 {6001, 6002, 6003, 6004, 6005},
                                 7001,
                                 7002,
                                 {8001, 8002, 8003, 8004, 8005},
                                 28};
/* What a reader's array holds beforehand: unlike anything that a file gives. */
static const ApNodeV2 before = {"before",
                                "beforeFather",
                                {61, 62, 63, 64, 65},
                                66,
                                67,
                                {9001, 9002, 9003, 9004, 9005},
                                {9101, 9102, 9103, 9104, 9105},
                                9201,
                                9202,
                                {9301, 9302, 9303, 9304, 9305},
                                68};
/* The two records as the reader converts them. */
static const ApNodeV2 loaded1 = {"00AABBCCDD01",
                                 "00AABBCCDD02",
                                 {84, 83, 82, 81, 80},
                                 79,
                                 78,
                                 {1001, 1002, 1003, 1004, 1005},
                                 {2001, 2002, 2003, 2004, 2005},
                                 3001,
                                 3002,
                                 {4001, 4002, 4003, 4004, 4005},
                                 68};
static const ApNodeV2 loaded2 = {"00AABBCCDD03",
                                 "00AABBCCDD04",
                                 {74, 73, 72, 71, 70},
                                 69,
                                 68,
                                 {5001, 5002, 5003, 5004, 5005},
                                 {6001, 6002, 6003, 6004, 6005},
                                 7001,
                                 7002,
                                 {8001, 8002, 8003, 8004, 8005},
                                 68};

static void expectSame(const ApNodeV2& node, const ApNodeV2& expected)
{
    EXPECT_STREQ(node.deviceMAC, expected.deviceMAC);
    EXPECT_STREQ(node.fatherDeviceMAC, expected.fatherDeviceMAC);
    for (int band = 0; band < 5; ++band) {
        EXPECT_EQ(node.wirelessChannelUtilization[band], expected.wirelessChannelUtilization[band]);
        EXPECT_EQ(node.wirelessRxRate[band], expected.wirelessRxRate[band]);
        EXPECT_EQ(node.wirelessTxRate[band], expected.wirelessTxRate[band]);
        EXPECT_EQ(node.offset[band], expected.offset[band]);
    }
    EXPECT_EQ(node.plcUtilization, expected.plcUtilization);
    EXPECT_EQ(node.ethernetUtilization, expected.ethernetUtilization);
    EXPECT_EQ(node.plcRate, expected.plcRate);
    EXPECT_EQ(node.ethernetRate, expected.ethernetRate);
    EXPECT_EQ(node.tipc_node, expected.tipc_node);
}

/* A reader's array and MAC list, as they are before every read. */
static ApNodeV2 nodes[256];
static char macs[256][16];

static void prepareNodes()
{
    for (int i = 0; i < 256; ++i) {
        nodes[i] = before;
        strcpy(macs[i], "unset");
    }
}

static bool readText(const char* text, uint8_t apNum)
{
    prepareNodes();
    test::writeFile("f", text);
    return apNodeInfoReaderV2("f", apNum, nodes, macs);
}

/*
 * Runs a call at each level where something changes: everything is logged at
 * 6, errors alone at 5 and 3, nothing at 2.
 */
static void expectMessages(bool (*call)(), bool result, const char* all, const char* errors)
{
    const int levels[] = {6, 5, 3, 2};
    const char* const expected[] = {all, errors, errors, ""};
    for (int i = 0; i < 4; ++i) {
        test::setLevel(levels[i]);
        test::clearMessages();
        EXPECT_EQ(call(), result);
        EXPECT_STREQ(test::messages(), expected[i]);
    }
}

/* ---- Writer: the line --------------------------------------------------- */

TEST(ApNodeInfo, writerWritesOneLinePerRecordInArrayOrder)
{
    ApNodeV2 array[] = {record1, record2};
    EXPECT_TRUE(apNodeInfoWriterV2("f", 2, array));
    EXPECT_STREQ(test::fileText("f"), LINE_1 LINE_2);
    EXPECT_STREQ(test::messages(), "");
    EXPECT_EQ(test::callCount(test::OPEN), 1);
    EXPECT_EQ(test::callCount(test::CLOSE), 1);
}

TEST(ApNodeInfo, writerWritesTheFirstRecordsAlone)
{
    ApNodeV2 array[] = {record2, record1};
    EXPECT_TRUE(apNodeInfoWriterV2("f", 1, array));
    EXPECT_STREQ(test::fileText("f"), LINE_2);
}

TEST(ApNodeInfo, writerLeavesTheArray)
{
    ApNodeV2 array[] = {record1, record2};
    EXPECT_TRUE(apNodeInfoWriterV2("f", 2, array));
    expectSame(array[0], record1);
    expectSame(array[1], record2);
}

TEST(ApNodeInfo, writerWritesRawValuesUnpaddedAndUnbounded)
{
    ApNodeV2 node = {"00AABBCCDD01",
                     "00AABBCCDD02",
                     {0, 95, 200, 255, 1},
                     0,
                     255,
                     {0, 10001, 65535, 1, 12000},
                     {65535, 0, 10001, 12000, 9},
                     65535,
                     0,
                     {0, 65535, 7, 0, 65535},
                     255};
    EXPECT_TRUE(apNodeInfoWriterV2("f", 1, &node));
    EXPECT_STREQ(test::fileText("f"),
                 "00AABBCCDD01 00AABBCCDD02 0 95 200 255 1 0 255 0 10001 65535 1 12000 65535 0 10001 12000 9 "
                 "65535 0 0 65535 7 0 65535\n");
}

TEST(ApNodeInfo, writerPadsAnEmptyMacToTwelveBlanks)
{
    ApNodeV2 node = {};
    node.plcUtilization = 255;
    node.plcRate = 65535;
    EXPECT_TRUE(apNodeInfoWriterV2("f", 1, &node));
    EXPECT_STREQ(test::fileText("f"), "            " /* deviceMAC */ " "
                                      "            " /* fatherDeviceMAC */
                                      " 0 0 0 0 0 255 0 0 0 0 0 0 0 0 0 0 0 65535 0 0 0 0 0 0\n");
}

TEST(ApNodeInfo, writerPadsAShortMacOnTheLeft)
{
    ApNodeV2 node = record1;
    strcpy(node.deviceMAC, "AB");
    strcpy(node.fatherDeviceMAC, "12345678901");
    EXPECT_TRUE(apNodeInfoWriterV2("f", 1, &node));
    EXPECT_STREQ(test::fileText("f"),
                 "          AB  12345678901 11 12 13 14 15 16 17 1001 1002 1003 1004 1005 "
                 "2001 2002 2003 2004 2005 3001 3002 4001 4002 4003 4004 4005\n");
}

TEST(ApNodeInfo, writerWritesALongMacWhole)
{
    ApNodeV2 node = record1;
    strcpy(node.deviceMAC, "0123456789ABCDE");
    strcpy(node.fatherDeviceMAC, "FEDCBA9876543");
    EXPECT_TRUE(apNodeInfoWriterV2("f", 1, &node));
    EXPECT_STREQ(test::fileText("f"),
                 "0123456789ABCDE FEDCBA9876543 11 12 13 14 15 16 17 1001 1002 1003 1004 1005 "
                 "2001 2002 2003 2004 2005 3001 3002 4001 4002 4003 4004 4005\n");
}

TEST(ApNodeInfo, writerReplacesTheFile)
{
    ApNodeV2 node = record2;
    test::writeFile("f", LINE_1 LINE_1 LINE_1);
    EXPECT_TRUE(apNodeInfoWriterV2("f", 1, &node));
    EXPECT_STREQ(test::fileText("f"), LINE_2);
}

TEST(ApNodeInfo, writerOfNoRecordsLeavesAnEmptyFile)
{
    ApNodeV2 node = record1;
    test::writeFile("f", LINE_1);
    EXPECT_TRUE(apNodeInfoWriterV2("f", 0, &node));
    EXPECT_EQ(test::fileSize("f"), 0);
    EXPECT_TRUE(apNodeInfoWriterV2("new", 0, nullptr));
    EXPECT_EQ(test::fileSize("new"), 0);
    EXPECT_STREQ(test::messages(), "");
}

TEST(ApNodeInfo, writerOfANegativeCountLeavesAnEmptyFile)
{
    ApNodeV2 node = record1;
    test::writeFile("f", LINE_1);
    EXPECT_TRUE(apNodeInfoWriterV2("f", -1, &node));
    EXPECT_EQ(test::fileSize("f"), 0);
    EXPECT_TRUE(apNodeInfoWriterV2("f", INT_MIN, &node));
    EXPECT_EQ(test::fileSize("f"), 0);
    EXPECT_STREQ(test::messages(), "");
}

TEST(ApNodeInfo, writerHasNoCapOnTheRecords)
{
    static ApNodeV2 array[300];
    for (ApNodeV2& node : array)
        node = record1;
    array[299] = record2;
    EXPECT_TRUE(apNodeInfoWriterV2("f", 300, array));
    EXPECT_EQ(test::fileLines("f"), 300);
    EXPECT_STREQ(test::fileLine("f", 298),
                 "00AABBCCDD01 00AABBCCDD02 11 12 13 14 15 16 17 1001 1002 1003 1004 1005 "
                 "2001 2002 2003 2004 2005 3001 3002 4001 4002 4003 4004 4005");
    EXPECT_STREQ(test::fileLine("f", 299),
                 "00AABBCCDD03 00AABBCCDD04 21 22 23 24 25 26 27 5001 5002 5003 5004 5005 "
                 "6001 6002 6003 6004 6005 7001 7002 8001 8002 8003 8004 8005");
}

/* ---- Writer: failures --------------------------------------------------- */

TEST(ApNodeInfo, writerReportsAFailedOpen)
{
    expectMessages(
        [] {
            ApNodeV2 node = record1;
            return apNodeInfoWriterV2("no/file", 1, &node);
        },
        false, "libzo: [apNodeInfoWriterV2:#]: fopen error, path: no/file.|",
        "libzo: [apNodeInfoWriterV2:#]: fopen error, path: no/file.|");
    EXPECT_EQ(test::callCount(test::CLOSE), 0);
}

TEST(ApNodeInfo, writerOfNoRecordsStillHasToOpenTheFile)
{
    EXPECT_FALSE(apNodeInfoWriterV2("no/file", 0, nullptr));
    EXPECT_STREQ(test::messages(), "libzo: [apNodeInfoWriterV2:#]: fopen error, path: no/file.|");
}

/* The prints of one line, in their order. */
static const char* const prints1[] = {"00AABBCCDD01 00AABBCCDD02",
                                      " 11",
                                      " 12",
                                      " 13",
                                      " 14",
                                      " 15",
                                      " 16 17",
                                      " 1001",
                                      " 1002",
                                      " 1003",
                                      " 1004",
                                      " 1005",
                                      " 2001",
                                      " 2002",
                                      " 2003",
                                      " 2004",
                                      " 2005",
                                      " 3001 3002",
                                      " 4001",
                                      " 4002",
                                      " 4003",
                                      " 4004",
                                      " 4005",
                                      "\n"};

TEST(ApNodeInfo, writerStopsAtTheFirstFailedPrint)
{
    char expected[512] = "";
    for (int k = 0; k < 24; ++k) {
        ApNodeV2 array[] = {record1, record2};
        test::clearMessages();
        test::failFrom(test::WRITE, k + 1);
        EXPECT_FALSE(apNodeInfoWriterV2("f", 2, array));
        EXPECT_STREQ(test::fileText("f"), expected);
        EXPECT_STREQ(test::messages(), "libzo: [apNodeInfoWriterV2:#]: fprintf error, path: f|");
        strcat(expected, prints1[k]);
    }
    EXPECT_STREQ(expected, LINE_1);
}

TEST(ApNodeInfo, writerKeepsTheFirstLineWhenAPrintOfTheSecondFails)
{
    ApNodeV2 array[] = {record1, record2};
    test::failFrom(test::WRITE, 24 + 1);
    EXPECT_FALSE(apNodeInfoWriterV2("f", 2, array));
    EXPECT_STREQ(test::fileText("f"), LINE_1);
    test::failFrom(test::WRITE, 24 + 3);
    EXPECT_FALSE(apNodeInfoWriterV2("f", 2, array));
    EXPECT_STREQ(test::fileText("f"), LINE_1 "00AABBCCDD03 00AABBCCDD04 21");
}

TEST(ApNodeInfo, writerReportsEachFailedPrintOnceAndNotItsClose)
{
    for (int k = 1; k <= 48; ++k) {
        ApNodeV2 array[] = {record1, record2};
        test::clearMessages();
        test::failNth(test::WRITE, k);
        test::failNth(test::CLOSE, 1);
        EXPECT_FALSE(apNodeInfoWriterV2("f", 2, array));
        EXPECT_STREQ(test::messages(), "libzo: [apNodeInfoWriterV2:#]: fprintf error, path: f|");
        EXPECT_EQ(test::openStreams(), 0);
    }
}

TEST(ApNodeInfo, writerMakes24PrintsALine)
{
    ApNodeV2 array[] = {record1, record2};
    test::failNth(test::WRITE, 49);
    EXPECT_TRUE(apNodeInfoWriterV2("f", 2, array));
    EXPECT_STREQ(test::fileText("f"), LINE_1 LINE_2);
    EXPECT_STREQ(test::messages(), "");
}

TEST(ApNodeInfo, writersPrintErrorIsLoggedFromLevelThree)
{
    expectMessages(
        [] {
            ApNodeV2 node = record1;
            test::failNth(test::WRITE, 1);
            return apNodeInfoWriterV2("f", 1, &node);
        },
        false, "libzo: [apNodeInfoWriterV2:#]: fprintf error, path: f|",
        "libzo: [apNodeInfoWriterV2:#]: fprintf error, path: f|");
}

TEST(ApNodeInfo, writerToAFullDeviceFailsWhenItsBufferIsFull)
{
    static ApNodeV2 array[300];
    for (ApNodeV2& node : array)
        node = record1;
    EXPECT_FALSE(apNodeInfoWriterV2("/dev/full", 300, array));
    EXPECT_STREQ(test::messages(), "libzo: [apNodeInfoWriterV2:#]: fprintf error, path: /dev/full|");
}

TEST(ApNodeInfo, writerIgnoresAFailedClose)
{
    ApNodeV2 array[] = {record1, record2};
    test::failNth(test::CLOSE, 1);
    EXPECT_TRUE(apNodeInfoWriterV2("f", 2, array));
    EXPECT_STREQ(test::fileText("f"), LINE_1 LINE_2);
    EXPECT_TRUE(apNodeInfoWriterV2("/dev/full", 1, array));
    EXPECT_STREQ(test::messages(), "");
}

/* ---- Reader: what it fills ---------------------------------------------- */

TEST(ApNodeInfo, readerReadsAndConvertsTheStatedRecords)
{
    EXPECT_TRUE(readText(LINE_1 LINE_2, 2));
    expectSame(nodes[0], loaded1);
    expectSame(nodes[1], loaded2);
    expectSame(nodes[2], before);
    EXPECT_STREQ(macs[0], "00AABBCCDD01");
    EXPECT_STREQ(macs[1], "00AABBCCDD03");
    EXPECT_STREQ(macs[2], "unset");
    EXPECT_STREQ(test::messages(), "");
    EXPECT_STREQ(test::fileText("f"), LINE_1 LINE_2);
    EXPECT_EQ(test::callCount(test::OPEN), 1);
    EXPECT_EQ(test::callCount(test::CLOSE), 1);
}

TEST(ApNodeInfo, readerIgnoresRecordsPastTheStatedNumber)
{
    EXPECT_TRUE(readText(LINE_2 LINE_1 LINE_3, 1));
    expectSame(nodes[0], loaded2);
    expectSame(nodes[1], before);
    EXPECT_STREQ(macs[0], "00AABBCCDD03");
    EXPECT_STREQ(macs[1], "unset");
}

TEST(ApNodeInfo, readerOfNoRecordsReadsNothing)
{
    EXPECT_TRUE(readText(LINE_1, 0));
    expectSame(nodes[0], before);
    EXPECT_STREQ(macs[0], "unset");
    EXPECT_TRUE(apNodeInfoReaderV2("f", 0, nodes, nullptr));
    EXPECT_STREQ(test::messages(), "");
}

TEST(ApNodeInfo, readerOfNoRecordsAcceptsAnEmptyFile)
{
    EXPECT_TRUE(readText("", 0));
    EXPECT_STREQ(test::messages(), "");
}

TEST(ApNodeInfo, readerReadsUpTo255Records)
{
    static ApNodeV2 array[255];
    for (ApNodeV2& node : array)
        node = record1;
    array[254] = record2;
    EXPECT_TRUE(apNodeInfoWriterV2("f", 255, array));
    prepareNodes();
    EXPECT_TRUE(apNodeInfoReaderV2("f", 255, nodes, macs));
    expectSame(nodes[0], loaded1);
    expectSame(nodes[253], loaded1);
    expectSame(nodes[254], loaded2);
    expectSame(nodes[255], before);
    EXPECT_STREQ(macs[253], "00AABBCCDD01");
    EXPECT_STREQ(macs[254], "00AABBCCDD03");
    EXPECT_STREQ(macs[255], "unset");
}

TEST(ApNodeInfo, readerTakesFieldsWhereverTheLinesBreak)
{
    EXPECT_TRUE(readText("\n\n00AABBCCDD01\n00AABBCCDD02\n11\n12 13\t14  15\n16\n\n17 1001 1002 1003 1004\n"
                         "1005 2001 2002 2003\r\n2004 2005 3001\n3002 4001 4002 4003 4004 4005 "
                         "00AABBCCDD03 00AABBCCDD04 21 22 23 24 25 26 27 5001 5002 5003 5004 5005 "
                         "6001 6002 6003 6004 6005 7001 7002 8001 8002 8003 8004\n8005",
                         2));
    expectSame(nodes[0], loaded1);
    expectSame(nodes[1], loaded2);
}

TEST(ApNodeInfo, readerDropsTheBlanksBeforeAShortMac)
{
    EXPECT_TRUE(readText("          AB  12345678901 11 12 13 14 15 16 17 1001 1002 1003 1004 1005 "
                         "2001 2002 2003 2004 2005 3001 3002 4001 4002 4003 4004 4005\n",
                         1));
    EXPECT_STREQ(nodes[0].deviceMAC, "AB");
    EXPECT_STREQ(nodes[0].fatherDeviceMAC, "12345678901");
    EXPECT_STREQ(macs[0], "AB");
    EXPECT_EQ(nodes[0].wirelessChannelUtilization[0], 84);
    EXPECT_EQ(nodes[0].offset[4], 4005);
}

TEST(ApNodeInfo, readerSplitsALongDeviceMacAndShiftsWhatFollows)
{
    EXPECT_TRUE(readText("0123456789ABC 7 11 12 13 14 15 16 17 101 102 103 104 105 "
                         "201 202 203 204 205 301 302 401 402 403 404 405\n" LINE_2,
                         2));
    const ApNodeV2 shifted = {"0123456789AB",
                              "C",
                              {88, 84, 83, 82, 81},
                              80,
                              79,
                              {17, 101, 102, 103, 104},
                              {105, 201, 202, 203, 204},
                              205,
                              301,
                              {302, 401, 402, 403, 404},
                              68};
    expectSame(nodes[0], shifted);
    EXPECT_STREQ(nodes[1].deviceMAC, "405");
    EXPECT_STREQ(nodes[1].fatherDeviceMAC, "00AABBCCDD03");
    EXPECT_STREQ(macs[0], "0123456789AB");
    EXPECT_STREQ(macs[1], "405");
}

TEST(ApNodeInfo, readerSplitsALongFatherMacAndShiftsWhatFollows)
{
    EXPECT_TRUE(readText("00AABBCCDD01 0123456789AB9 11 12 13 14 15 16 17 101 102 103 104 105 "
                         "201 202 203 204 205 301 302 401 402 403 404 405\n",
                         1));
    EXPECT_STREQ(nodes[0].fatherDeviceMAC, "0123456789AB");
    EXPECT_EQ(nodes[0].wirelessChannelUtilization[0], 86);
    EXPECT_EQ(nodes[0].wirelessChannelUtilization[1], 84);
    EXPECT_EQ(nodes[0].offset[4], 404);
}

/* ---- Reader: conversions ------------------------------------------------ */

TEST(ApNodeInfo, readerTurnsEachUtilizationIntoWhatIsLeftOf95AndAtLeastOne)
{
    EXPECT_TRUE(readText("M F 0 1 10 93 94 95 96 5 5 5 5 5 5 5 5 5 5 5 5 0 0 0 0 0\n"
                         "M F 94 95 96 200 255 0 1 5 5 5 5 5 5 5 5 5 5 5 5 0 0 0 0 0\n"
                         "M F 255 93 94 0 92 93 94 5 5 5 5 5 5 5 5 5 5 5 5 0 0 0 0 0\n"
                         "M F 128 127 223 224 95 255 0 5 5 5 5 5 5 5 5 5 5 5 5 0 0 0 0 0\n"
                         "M F 92 0 93 94 0 94 255 5 5 5 5 5 5 5 5 5 5 5 5 0 0 0 0 0\n"
                         "M F 93 255 0 93 93 92 93 5 5 5 5 5 5 5 5 5 5 5 5 0 0 0 0 0\n",
                         6));
    const uint8_t expected[6][7] = {{95, 94, 85, 2, 1, 1, 1}, {1, 1, 1, 1, 1, 95, 94},
                                    {1, 2, 1, 95, 3, 2, 1},   {1, 1, 1, 1, 1, 1, 95},
                                    {3, 95, 2, 1, 95, 1, 1},  {2, 1, 95, 2, 2, 3, 2}};
    for (int i = 0; i < 6; ++i) {
        for (int band = 0; band < 5; ++band)
            EXPECT_EQ(nodes[i].wirelessChannelUtilization[band], expected[i][band]);
        EXPECT_EQ(nodes[i].plcUtilization, expected[i][5]);
        EXPECT_EQ(nodes[i].ethernetUtilization, expected[i][6]);
    }
}

TEST(ApNodeInfo, readerBoundsEachWirelessRateTo1And10000)
{
    EXPECT_TRUE(readText("M F 0 0 0 0 0 0 0 0 1 2 9999 10000 10001 12000 65535 0 1 5 5 0 0 0 0 0\n"
                         "M F 0 0 0 0 0 0 0 10001 10000 65535 0 1 0 1 9999 10000 10001 5 5 0 0 0 0 0\n"
                         "M F 0 0 0 0 0 0 0 10000 0 0 10001 0 10000 0 0 10001 0 5 5 0 0 0 0 0\n"
                         "M F 0 0 0 0 0 0 0 1 10001 10001 1 10001 1 10001 10001 2 10000 5 5 0 0 0 0 0\n",
                         4));
    const uint16_t rx[4][5] = {{1, 1, 2, 9999, 10000},
                               {10000, 10000, 10000, 1, 1},
                               {10000, 1, 1, 10000, 1},
                               {1, 10000, 10000, 1, 10000}};
    const uint16_t tx[4][5] = {{10000, 10000, 10000, 1, 1},
                               {1, 1, 9999, 10000, 10000},
                               {10000, 1, 1, 10000, 1},
                               {1, 10000, 10000, 2, 10000}};
    for (int i = 0; i < 4; ++i) {
        for (int band = 0; band < 5; ++band) {
            EXPECT_EQ(nodes[i].wirelessRxRate[band], rx[i][band]);
            EXPECT_EQ(nodes[i].wirelessTxRate[band], tx[i][band]);
        }
    }
}

TEST(ApNodeInfo, readerCapsThePlcRateAndGivesItNoFloor)
{
    EXPECT_TRUE(readText("M F 0 0 0 0 0 0 0 5 5 5 5 5 5 5 5 5 5 0 0 0 0 0 0 0\n"
                         "M F 0 0 0 0 0 0 0 5 5 5 5 5 5 5 5 5 5 1 1 0 0 0 0 0\n"
                         "M F 0 0 0 0 0 0 0 5 5 5 5 5 5 5 5 5 5 10000 10000 0 0 0 0 0\n"
                         "M F 0 0 0 0 0 0 0 5 5 5 5 5 5 5 5 5 5 10001 10001 0 0 0 0 0\n"
                         "M F 0 0 0 0 0 0 0 5 5 5 5 5 5 5 5 5 5 65000 65000 0 0 0 0 0\n",
                         5));
    EXPECT_EQ(nodes[0].plcRate, 0);
    EXPECT_EQ(nodes[1].plcRate, 1);
    EXPECT_EQ(nodes[2].plcRate, 10000);
    EXPECT_EQ(nodes[3].plcRate, 10000);
    EXPECT_EQ(nodes[4].plcRate, 10000);
    EXPECT_EQ(nodes[0].ethernetRate, 0);
    EXPECT_EQ(nodes[1].ethernetRate, 1);
    EXPECT_EQ(nodes[2].ethernetRate, 10000);
    EXPECT_EQ(nodes[3].ethernetRate, 10001);
    EXPECT_EQ(nodes[4].ethernetRate, 65000);
}

TEST(ApNodeInfo, readerLeavesTheOffsetsAsTheyAre)
{
    EXPECT_TRUE(readText("M F 0 0 0 0 0 0 0 5 5 5 5 5 5 5 5 5 5 5 65535 0 10001 65535 1 0\n"
                         "M F 0 0 0 0 0 0 0 5 5 5 5 5 5 5 5 5 5 5 5 65535 0 10000 12000 65535\n",
                         2));
    const uint16_t expected[2][5] = {{0, 10001, 65535, 1, 0}, {65535, 0, 10000, 12000, 65535}};
    for (int band = 0; band < 5; ++band) {
        EXPECT_EQ(nodes[0].offset[band], expected[0][band]);
        EXPECT_EQ(nodes[1].offset[band], expected[1][band]);
    }
    EXPECT_EQ(nodes[0].ethernetRate, 65535);
}

TEST(ApNodeInfo, readerLeavesTheNodeNumberAtEitherEnd)
{
    prepareNodes();
    nodes[0].tipc_node = 0;
    nodes[1].tipc_node = 255;
    test::writeFile("f", LINE_1 LINE_2);
    EXPECT_TRUE(apNodeInfoReaderV2("f", 2, nodes, macs));
    EXPECT_EQ(nodes[0].tipc_node, 0);
    EXPECT_EQ(nodes[1].tipc_node, 255);
}

TEST(ApNodeInfo, readerGivesBackConvertedWhatTheWriterSavedRaw)
{
    ApNodeV2 array[] = {record1, record2};
    EXPECT_TRUE(apNodeInfoWriterV2("f", 2, array));
    EXPECT_TRUE(apNodeInfoReaderV2("f", 2, array, macs));
    EXPECT_EQ(array[0].wirelessChannelUtilization[0], 84);
    EXPECT_EQ(array[0].tipc_node, 18);
    EXPECT_EQ(array[1].ethernetUtilization, 68);
    EXPECT_EQ(array[1].tipc_node, 28);
    EXPECT_STREQ(test::fileText("f"), LINE_1 LINE_2);
}

/* ---- Reader: fields that do not convert --------------------------------- */

TEST(ApNodeInfo, readerKeepsAndConvertsFieldsThatDoNotMatch)
{
    EXPECT_TRUE(readText("00AABBCCDD01 00AABBCCDD02 11 12 x 14 15 16 17 1001\n", 1));
    const ApNodeV2 expected = {"00AABBCCDD01",
                               "00AABBCCDD02",
                               {84, 83, 32, 31, 30},
                               29,
                               28,
                               {9001, 9002, 9003, 9004, 9005},
                               {9101, 9102, 9103, 9104, 9105},
                               9201,
                               9202,
                               {9301, 9302, 9303, 9304, 9305},
                               68};
    expectSame(nodes[0], expected);
    EXPECT_STREQ(macs[0], "00AABBCCDD01");
    EXPECT_STREQ(test::messages(), "");
}

TEST(ApNodeInfo, readerBoundsKeptRatesToo)
{
    prepareNodes();
    for (int band = 0; band < 5; ++band) {
        nodes[0].wirelessRxRate[band] = 20000;
        nodes[0].wirelessTxRate[band] = 0;
    }
    nodes[0].plcRate = 30000;
    test::writeFile("f", "00AABBCCDD01 00AABBCCDD02 x\n");
    EXPECT_TRUE(apNodeInfoReaderV2("f", 1, nodes, macs));
    for (int band = 0; band < 5; ++band) {
        EXPECT_EQ(nodes[0].wirelessRxRate[band], 10000);
        EXPECT_EQ(nodes[0].wirelessTxRate[band], 1);
    }
    EXPECT_EQ(nodes[0].plcRate, 10000);
}

TEST(ApNodeInfo, readerGoesOnFromAFieldThatDoesNotMatch)
{
    EXPECT_TRUE(readText("00AABBCCDD01 00AABBCCDD02 11 x y 21 22 23 24 25 26 27 501 502 503 504 505 "
                         "601 602 603 604 605 701 702 801 802 803 804 805\n",
                         2));
    EXPECT_STREQ(nodes[0].deviceMAC, "00AABBCCDD01");
    EXPECT_EQ(nodes[0].wirelessChannelUtilization[1], 33);
    EXPECT_STREQ(nodes[1].deviceMAC, "x");
    EXPECT_STREQ(nodes[1].fatherDeviceMAC, "y");
    EXPECT_EQ(nodes[1].wirelessChannelUtilization[0], 74);
    EXPECT_EQ(nodes[1].offset[4], 805);
    EXPECT_STREQ(macs[1], "x");
}

TEST(ApNodeInfo, readerReadsTheFirstOfAPairWhoseSecondDoesNotMatch)
{
    EXPECT_TRUE(readText("00AABBCCDD01 00AABBCCDD02 11 12 13 14 15 16 x\n", 1));
    EXPECT_EQ(nodes[0].plcUtilization, 79);
    EXPECT_EQ(nodes[0].ethernetUtilization, 28);
    EXPECT_TRUE(readText("00AABBCCDD01 00AABBCCDD02 11 12 13 14 15 16 17 1 2 3 4 5 6 7 8 9 10 11 x\n", 1));
    EXPECT_EQ(nodes[0].plcRate, 11);
    EXPECT_EQ(nodes[0].ethernetRate, 9202);
}

/* ---- Reader: failures --------------------------------------------------- */

TEST(ApNodeInfo, readerReportsAFailedOpen)
{
    prepareNodes();
    expectMessages([] { return apNodeInfoReaderV2("missing", 1, nodes, macs); }, false,
                   "libzo: [apNodeInfoReaderV2:#]: Failed to read file: missing.\n|",
                   "libzo: [apNodeInfoReaderV2:#]: Failed to read file: missing.\n|");
    expectSame(nodes[0], before);
    EXPECT_STREQ(macs[0], "unset");
    EXPECT_EQ(test::callCount(test::CLOSE), 0);
    EXPECT_EQ(test::fileSize("missing"), -1);
}

TEST(ApNodeInfo, readerOfNoRecordsStillHasToOpenTheFile)
{
    EXPECT_FALSE(apNodeInfoReaderV2("missing", 0, nodes, macs));
    EXPECT_STREQ(test::messages(), "libzo: [apNodeInfoReaderV2:#]: Failed to read file: missing.\n|");
}

/* The first `fields` fields of line 1, without what follows them. */
static const char* startOfLine1(int fields)
{
    static char text[256];
    strcpy(text, LINE_1);
    char* end = text;
    for (int i = 0; i < fields; ++i)
        end += strcspn(end, " \n") + 1;
    *end = '\0';
    return text;
}

#define PART(name) "libzo: [apNodeInfoReaderV2:#]: sscanf error part " name ", path: f\n|"

TEST(ApNodeInfo, readerNamesTheStepThatMeetsTheEndOfTheFile)
{
    /* By the number of fields that the file holds. */
    static const char* const expected[26] = {
        PART("1"),   PART("2_2"), PART("2_2"), PART("2_2"), PART("2_2"), PART("2_2"), PART("2_2"),
        PART("2_3"), PART("2_4"), PART("2_4"), PART("2_4"), PART("2_4"), PART("2_4"), PART("2_4"),
        PART("2_5"), PART("2_5"), PART("2_5"), PART("2_5"), PART("2_5"), PART("2_6"), PART("2_7"),
        PART("2_7"), PART("2_7"), PART("2_7"), PART("2_7"), PART("2_7")};
    for (int fields = 0; fields < 26; ++fields) {
        test::clearMessages();
        EXPECT_FALSE(readText(startOfLine1(fields), 1));
        EXPECT_STREQ(test::messages(), expected[fields]);
        EXPECT_STREQ(macs[0], "unset");
        EXPECT_EQ(nodes[0].wirelessChannelUtilization[0], fields < 3 ? 61 : 11);
        EXPECT_EQ(nodes[0].offset[3], fields < 25 ? 9304 : 4004);
        EXPECT_EQ(nodes[0].offset[4], 9305);
        EXPECT_EQ(test::openStreams(), 0);
    }
    EXPECT_TRUE(readText(startOfLine1(26), 1));
}

TEST(ApNodeInfo, readerSkipsWhatItCannotFillOfAPairAtTheEnd)
{
    EXPECT_FALSE(readText("00AABBCCDD01", 1));
    EXPECT_STREQ(nodes[0].deviceMAC, "00AABBCCDD01");
    EXPECT_STREQ(nodes[0].fatherDeviceMAC, "beforeFather");
    EXPECT_FALSE(readText(startOfLine1(8), 1));
    EXPECT_EQ(nodes[0].plcUtilization, 16);
    EXPECT_EQ(nodes[0].ethernetUtilization, 67);
    EXPECT_FALSE(readText(startOfLine1(20), 1));
    EXPECT_EQ(nodes[0].plcRate, 3001);
    EXPECT_EQ(nodes[0].ethernetRate, 9202);
}

/* A file that ends inside the step that comes behind `fields` fields. */
template <int fields> static bool readStart()
{
    return readText(startOfLine1(fields), 1);
}

TEST(ApNodeInfo, eachStepsErrorIsLoggedFromLevelThree)
{
    expectMessages(readStart<0>, false, PART("1"), PART("1"));
    expectMessages(readStart<2>, false, PART("2_2"), PART("2_2"));
    expectMessages(readStart<7>, false, PART("2_3"), PART("2_3"));
    expectMessages(readStart<9>, false, PART("2_4"), PART("2_4"));
    expectMessages(readStart<14>, false, PART("2_5"), PART("2_5"));
    expectMessages(readStart<19>, false, PART("2_6"), PART("2_6"));
    expectMessages(readStart<21>, false, PART("2_7"), PART("2_7"));
}

TEST(ApNodeInfo, readerLeavesTheRecordsBeforeAFailureUnconverted)
{
    EXPECT_FALSE(readText("M F 0 1 2 3 4 95 255 0 12000 3 4 5 0 12000 8 9 10 65000 12 13 14 15 16 17\n", 2));
    EXPECT_STREQ(test::messages(), PART("1"));
    const ApNodeV2 raw = {
        "M",   "F", {0, 1, 2, 3, 4},      95, 255, {0, 12000, 3, 4, 5}, {0, 12000, 8, 9, 10},
        65000, 12,  {13, 14, 15, 16, 17}, 68};
    expectSame(nodes[0], raw);
    expectSame(nodes[1], before);
    EXPECT_STREQ(macs[0], "unset");
    EXPECT_STREQ(macs[1], "unset");
}

TEST(ApNodeInfo, readerFillsNoMacWhenALaterRecordFails)
{
    EXPECT_FALSE(readText(LINE_1 LINE_2 "00AABBCCDD05 00AABBCCDD06 31 32 33 34 35 36", 3));
    EXPECT_STREQ(test::messages(), PART("2_4"));
    EXPECT_STREQ(nodes[1].deviceMAC, "00AABBCCDD03");
    EXPECT_EQ(nodes[1].wirelessChannelUtilization[0], 21);
    EXPECT_EQ(nodes[2].plcUtilization, 36);
    EXPECT_STREQ(macs[0], "unset");
    EXPECT_STREQ(macs[1], "unset");
    EXPECT_STREQ(macs[2], "unset");
}

TEST(ApNodeInfo, readerOfAnEmptyFileFailsAtItsFirstStep)
{
    EXPECT_FALSE(readText("", 1));
    EXPECT_STREQ(test::messages(), PART("1"));
    expectSame(nodes[0], before);
}

TEST(ApNodeInfo, readerOfBlankLinesFailsAtItsFirstStep)
{
    EXPECT_FALSE(readText("\n  \n\n", 1));
    EXPECT_STREQ(test::messages(), PART("1"));
}

TEST(ApNodeInfo, readerReportsAReadError)
{
    prepareNodes();
    test::writeFile("f", LINE_1);
    test::failFrom(test::READ, 1);
    EXPECT_FALSE(apNodeInfoReaderV2("f", 1, nodes, macs));
    EXPECT_STREQ(test::messages(), PART("1"));
    expectSame(nodes[0], before);
    EXPECT_STREQ(test::fileText("f"), LINE_1);
}

TEST(ApNodeInfo, readerOfADirectoryFailsAtItsFirstStep)
{
    mkdir("d", 0777);
    EXPECT_FALSE(apNodeInfoReaderV2("d", 1, nodes, macs));
    EXPECT_STREQ(test::messages(), "libzo: [apNodeInfoReaderV2:#]: sscanf error part 1, path: d\n|");
}

TEST(ApNodeInfo, readerIgnoresAFailedClose)
{
    test::failNth(test::CLOSE, 1);
    EXPECT_TRUE(readText(LINE_1, 1));
    expectSame(nodes[0], loaded1);
    EXPECT_STREQ(macs[0], "00AABBCCDD01");
    EXPECT_STREQ(test::messages(), "");
    test::failNth(test::CLOSE, 1);
    EXPECT_FALSE(readText("", 1));
    EXPECT_STREQ(test::messages(), PART("1"));
}
