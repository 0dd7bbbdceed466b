/* SPDX-License-Identifier: Apache-2.0 */
#include "messages.h"
#include "scenario.h"

#include <limits.h>
#include <sys/stat.h>

using namespace messages::apNode;
using namespace test;

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
/* What a reader's array holds beforehand: unlike anything that a file holds. */
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
    EXPECT_STREQ(expected.deviceMAC, node.deviceMAC);
    EXPECT_STREQ(expected.fatherDeviceMAC, node.fatherDeviceMAC);
    for (int band = 0; band < 5; ++band) {
        EXPECT_EQ(expected.wirelessChannelUtilization[band], node.wirelessChannelUtilization[band]);
        EXPECT_EQ(expected.wirelessRxRate[band], node.wirelessRxRate[band]);
        EXPECT_EQ(expected.wirelessTxRate[band], node.wirelessTxRate[band]);
        EXPECT_EQ(expected.offset[band], node.offset[band]);
    }
    EXPECT_EQ(expected.plcUtilization, node.plcUtilization);
    EXPECT_EQ(expected.ethernetUtilization, node.ethernetUtilization);
    EXPECT_EQ(expected.plcRate, node.plcRate);
    EXPECT_EQ(expected.ethernetRate, node.ethernetRate);
    EXPECT_EQ(expected.tipc_node, node.tipc_node);
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

static bool readRecords(uint8_t apNum)
{
    prepareNodes();
    return apNodeInfoReaderV2("f", apNum, nodes, macs);
}

static bool readText(const char* text, uint8_t apNum)
{
    test::writeFile("f", text);
    return readRecords(apNum);
}

/* ---- Writer: the line --------------------------------------------------- */

TEST(ApNodeInfo, writerWritesOneLinePerRecordInArrayOrder)
{
    ApNodeV2 array[] = {record1, record2};
    EXPECT_TRUE(apNodeInfoWriterV2("f", 2, array));
    EXPECT_STREQ(LINE_1 LINE_2, test::fileText("f"));
    EXPECT_STREQ("", test::messages());
    EXPECT_EQ(1, test::callCount(test::OPEN));
    EXPECT_EQ(1, test::callCount(test::CLOSE));
}

TEST(ApNodeInfo, writerWritesTheFirstRecordsAlone)
{
    ApNodeV2 array[] = {record2, record1};
    EXPECT_TRUE(apNodeInfoWriterV2("f", 1, array));
    EXPECT_STREQ(LINE_2, test::fileText("f"));
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
    EXPECT_STREQ("00AABBCCDD01 00AABBCCDD02 0 95 200 255 1 0 255 0 10001 65535 1 12000 65535 0 10001 12000 9 "
                 "65535 0 0 65535 7 0 65535\n",
                 test::fileText("f"));
}

TEST(ApNodeInfo, writerPadsAnEmptyMacToTwelveBlanks)
{
    ApNodeV2 node = {};
    node.plcUtilization = 255;
    node.plcRate = 65535;
    EXPECT_TRUE(apNodeInfoWriterV2("f", 1, &node));
    EXPECT_STREQ("            " /* deviceMAC */ " "
                 "            " /* fatherDeviceMAC */
                 " 0 0 0 0 0 255 0 0 0 0 0 0 0 0 0 0 0 65535 0 0 0 0 0 0\n",
                 test::fileText("f"));
}

TEST(ApNodeInfo, writerPadsAShortMacOnTheLeft)
{
    ApNodeV2 node = record1;
    strcpy(node.deviceMAC, "AB");
    strcpy(node.fatherDeviceMAC, "12345678901");
    EXPECT_TRUE(apNodeInfoWriterV2("f", 1, &node));
    EXPECT_STREQ("          AB  12345678901 11 12 13 14 15 16 17 1001 1002 1003 1004 1005 "
                 "2001 2002 2003 2004 2005 3001 3002 4001 4002 4003 4004 4005\n",
                 test::fileText("f"));
}

TEST(ApNodeInfo, writerWritesALongMacWhole)
{
    ApNodeV2 node = record1;
    strcpy(node.deviceMAC, "0123456789ABCDE");
    strcpy(node.fatherDeviceMAC, "FEDCBA9876543");
    EXPECT_TRUE(apNodeInfoWriterV2("f", 1, &node));
    EXPECT_STREQ("0123456789ABCDE FEDCBA9876543 11 12 13 14 15 16 17 1001 1002 1003 1004 1005 "
                 "2001 2002 2003 2004 2005 3001 3002 4001 4002 4003 4004 4005\n",
                 test::fileText("f"));
}

TEST(ApNodeInfo, writerReplacesTheFile)
{
    ApNodeV2 node = record2;
    test::writeFile("f", LINE_1 LINE_1 LINE_1);
    EXPECT_TRUE(apNodeInfoWriterV2("f", 1, &node));
    EXPECT_STREQ(LINE_2, test::fileText("f"));
}

TEST(ApNodeInfo, writerOfNoRecordsLeavesAnEmptyFile)
{
    ApNodeV2 node = record1;
    test::writeFile("f", LINE_1);
    EXPECT_TRUE(apNodeInfoWriterV2("f", 0, &node));
    EXPECT_EQ(0, test::fileSize("f"));
    EXPECT_TRUE(apNodeInfoWriterV2("new", 0, nullptr));
    EXPECT_EQ(0, test::fileSize("new"));
    EXPECT_STREQ("", test::messages());
}

TEST(ApNodeInfo, writerOfANegativeCountLeavesAnEmptyFile)
{
    ApNodeV2 node = record1;
    test::writeFile("f", LINE_1);
    EXPECT_TRUE(apNodeInfoWriterV2("f", -1, &node));
    EXPECT_EQ(0, test::fileSize("f"));
    EXPECT_TRUE(apNodeInfoWriterV2("f", INT_MIN, &node));
    EXPECT_EQ(0, test::fileSize("f"));
    EXPECT_STREQ("", test::messages());
}

TEST(ApNodeInfo, writerHasNoCapOnTheRecords)
{
    static ApNodeV2 array[300];
    for (ApNodeV2& node : array)
        node = record1;
    array[299] = record2;
    EXPECT_TRUE(apNodeInfoWriterV2("f", 300, array));
    EXPECT_EQ(300, test::fileLines("f"));
    EXPECT_STREQ("00AABBCCDD01 00AABBCCDD02 11 12 13 14 15 16 17 1001 1002 1003 1004 1005 "
                 "2001 2002 2003 2004 2005 3001 3002 4001 4002 4003 4004 4005",
                 test::fileLine("f", 298));
    EXPECT_STREQ("00AABBCCDD03 00AABBCCDD04 21 22 23 24 25 26 27 5001 5002 5003 5004 5005 "
                 "6001 6002 6003 6004 6005 7001 7002 8001 8002 8003 8004 8005",
                 test::fileLine("f", 299));
}

/* ---- Writer: failures --------------------------------------------------- */

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

static bool write(ApNodeV2 node, const char* path = "f")
{
    return apNodeInfoWriterV2(path, 1, &node);
}

TEST(ApNodeInfo, writerStopsAtEachFailedPrint)
{
    expectStopsAtEachPrint([] { return write(record1); }, prints1, writerCannotPrint);
}

TEST(ApNodeInfo, writerReportsEachFailedPrintOnceAndNotItsClose)
{
    for (int k = 1; k <= 48; ++k) {
        ApNodeV2 array[] = {record1, record2};
        test::clearMessages();
        test::failNth(test::WRITE, k);
        test::failNth(test::CLOSE, 1);
        EXPECT_FALSE(apNodeInfoWriterV2("f", 2, array));
        EXPECT_MESSAGES(writerCannotPrint);
        EXPECT_EQ(0, test::openStreams());
    }
}

static bool writeTwo()
{
    ApNodeV2 array[] = {record1, record2};
    return apNodeInfoWriterV2("f", 2, array);
}

TEST(ApNodeInfo, writerReportsFailures)
{
    static const Row rows[] = {
        Row("reports a failed open", NO_FILE, noFault, [] { return write(record1, "no/file"); }, false,
            {"E apNodeInfoWriterV2: fopen error, path: no/file."}),
        Row("of no records still has to open the file", NO_FILE, noFault,
            [] { return apNodeInfoWriterV2("no/file", 0, nullptr); }, false,
            {"E apNodeInfoWriterV2: fopen error, path: no/file."}),
        Row("to a full device fails when its buffer is full", NO_FILE, noFault,
            [] {
                static ApNodeV2 array[300];
                for (ApNodeV2& node : array)
                    node = record1;
                return apNodeInfoWriterV2("/dev/full", 300, array);
            },
            false, {"E apNodeInfoWriterV2: fprintf error, path: /dev/full"}),
        Row("ignores a failed close", NO_FILE, fails(CLOSE, 1), writeTwo, true, {}, LINE_1 LINE_2),
        Row(
            "ignores a close that fails after all", LINE_1 LINE_2, noFault,
            [] {
                ApNodeV2 array[] = {record1, record2};
                return apNodeInfoWriterV2("/dev/full", 1, array);
            },
            true),
    };
    expectRows(rows);
}

/* ---- Reader: what it fills ---------------------------------------------- */

TEST(ApNodeInfo, readerReadsAndConvertsTheStatedRecords)
{
    EXPECT_TRUE(readText(LINE_1 LINE_2, 2));
    expectSame(nodes[0], loaded1);
    expectSame(nodes[1], loaded2);
    expectSame(nodes[2], before);
    EXPECT_STREQ("00AABBCCDD01", macs[0]);
    EXPECT_STREQ("00AABBCCDD03", macs[1]);
    EXPECT_STREQ("unset", macs[2]);
    EXPECT_STREQ("", test::messages());
    EXPECT_STREQ(LINE_1 LINE_2, test::fileText("f"));
    EXPECT_EQ(1, test::callCount(test::OPEN));
}

TEST(ApNodeInfo, readerIgnoresRecordsPastTheStatedNumber)
{
    EXPECT_TRUE(readText(LINE_2 LINE_1 LINE_3, 1));
    expectSame(nodes[0], loaded2);
    expectSame(nodes[1], before);
    EXPECT_STREQ("00AABBCCDD03", macs[0]);
    EXPECT_STREQ("unset", macs[1]);
}

TEST(ApNodeInfo, readerOfNoRecordsReadsNothing)
{
    EXPECT_TRUE(readText(LINE_1, 0));
    expectSame(nodes[0], before);
    EXPECT_STREQ("unset", macs[0]);
    EXPECT_TRUE(apNodeInfoReaderV2("f", 0, nodes, nullptr));
    EXPECT_STREQ("", test::messages());
}

TEST(ApNodeInfo, readerOfNoRecordsAcceptsAnEmptyFile)
{
    EXPECT_TRUE(readText("", 0));
    EXPECT_STREQ("", test::messages());
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
    EXPECT_STREQ("00AABBCCDD01", macs[253]);
    EXPECT_STREQ("00AABBCCDD03", macs[254]);
    EXPECT_STREQ("unset", macs[255]);
}

TEST(ApNodeInfo, readerReadsFieldsWhereverTheLinesBreak)
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
    EXPECT_STREQ("AB", nodes[0].deviceMAC);
    EXPECT_STREQ("12345678901", nodes[0].fatherDeviceMAC);
    EXPECT_STREQ("AB", macs[0]);
    EXPECT_EQ(84, nodes[0].wirelessChannelUtilization[0]);
    EXPECT_EQ(4005, nodes[0].offset[4]);
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
    EXPECT_STREQ("405", nodes[1].deviceMAC);
    EXPECT_STREQ("00AABBCCDD03", nodes[1].fatherDeviceMAC);
    EXPECT_STREQ("0123456789AB", macs[0]);
    EXPECT_STREQ("405", macs[1]);
}

TEST(ApNodeInfo, readerSplitsALongFatherMacAndShiftsWhatFollows)
{
    EXPECT_TRUE(readText("00AABBCCDD01 0123456789AB9 11 12 13 14 15 16 17 101 102 103 104 105 "
                         "201 202 203 204 205 301 302 401 402 403 404 405\n",
                         1));
    EXPECT_STREQ("0123456789AB", nodes[0].fatherDeviceMAC);
    EXPECT_EQ(86, nodes[0].wirelessChannelUtilization[0]);
    EXPECT_EQ(84, nodes[0].wirelessChannelUtilization[1]);
    EXPECT_EQ(404, nodes[0].offset[4]);
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
            EXPECT_EQ(expected[i][band], nodes[i].wirelessChannelUtilization[band]);
        EXPECT_EQ(expected[i][5], nodes[i].plcUtilization);
        EXPECT_EQ(expected[i][6], nodes[i].ethernetUtilization);
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
            EXPECT_EQ(rx[i][band], nodes[i].wirelessRxRate[band]);
            EXPECT_EQ(tx[i][band], nodes[i].wirelessTxRate[band]);
        }
    }
}

TEST(ApNodeInfo, readerCapsThePlcRateAndHasNoFloorForIt)
{
    EXPECT_TRUE(readText("M F 0 0 0 0 0 0 0 5 5 5 5 5 5 5 5 5 5 0 0 0 0 0 0 0\n"
                         "M F 0 0 0 0 0 0 0 5 5 5 5 5 5 5 5 5 5 1 1 0 0 0 0 0\n"
                         "M F 0 0 0 0 0 0 0 5 5 5 5 5 5 5 5 5 5 10000 10000 0 0 0 0 0\n"
                         "M F 0 0 0 0 0 0 0 5 5 5 5 5 5 5 5 5 5 10001 10001 0 0 0 0 0\n"
                         "M F 0 0 0 0 0 0 0 5 5 5 5 5 5 5 5 5 5 65000 65000 0 0 0 0 0\n",
                         5));
    EXPECT_EQ(0, nodes[0].plcRate);
    EXPECT_EQ(1, nodes[1].plcRate);
    EXPECT_EQ(10000, nodes[2].plcRate);
    EXPECT_EQ(10000, nodes[3].plcRate);
    EXPECT_EQ(10000, nodes[4].plcRate);
    EXPECT_EQ(0, nodes[0].ethernetRate);
    EXPECT_EQ(1, nodes[1].ethernetRate);
    EXPECT_EQ(10000, nodes[2].ethernetRate);
    EXPECT_EQ(10001, nodes[3].ethernetRate);
    EXPECT_EQ(65000, nodes[4].ethernetRate);
}

TEST(ApNodeInfo, readerLeavesTheOffsetsAsTheyAre)
{
    EXPECT_TRUE(readText("M F 0 0 0 0 0 0 0 5 5 5 5 5 5 5 5 5 5 5 65535 0 10001 65535 1 0\n"
                         "M F 0 0 0 0 0 0 0 5 5 5 5 5 5 5 5 5 5 5 5 65535 0 10000 12000 65535\n",
                         2));
    const uint16_t expected[2][5] = {{0, 10001, 65535, 1, 0}, {65535, 0, 10000, 12000, 65535}};
    for (int band = 0; band < 5; ++band) {
        EXPECT_EQ(expected[0][band], nodes[0].offset[band]);
        EXPECT_EQ(expected[1][band], nodes[1].offset[band]);
    }
    EXPECT_EQ(65535, nodes[0].ethernetRate);
}

TEST(ApNodeInfo, readerLeavesTheNodeNumberAtEitherEnd)
{
    prepareNodes();
    nodes[0].tipc_node = 0;
    nodes[1].tipc_node = 255;
    test::writeFile("f", LINE_1 LINE_2);
    EXPECT_TRUE(apNodeInfoReaderV2("f", 2, nodes, macs));
    EXPECT_EQ(0, nodes[0].tipc_node);
    EXPECT_EQ(255, nodes[1].tipc_node);
}

TEST(ApNodeInfo, readerReadsBackConvertedWhatTheWriterSavedRaw)
{
    ApNodeV2 array[] = {record1, record2};
    EXPECT_TRUE(apNodeInfoWriterV2("f", 2, array));
    EXPECT_TRUE(apNodeInfoReaderV2("f", 2, array, macs));
    EXPECT_EQ(84, array[0].wirelessChannelUtilization[0]);
    EXPECT_EQ(18, array[0].tipc_node);
    EXPECT_EQ(68, array[1].ethernetUtilization);
    EXPECT_EQ(28, array[1].tipc_node);
    EXPECT_STREQ(LINE_1 LINE_2, test::fileText("f"));
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
    EXPECT_STREQ("00AABBCCDD01", macs[0]);
    EXPECT_STREQ("", test::messages());
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
        EXPECT_EQ(10000, nodes[0].wirelessRxRate[band]);
        EXPECT_EQ(1, nodes[0].wirelessTxRate[band]);
    }
    EXPECT_EQ(10000, nodes[0].plcRate);
}

TEST(ApNodeInfo, readerGoesOnFromAFieldThatDoesNotMatch)
{
    EXPECT_TRUE(readText("00AABBCCDD01 00AABBCCDD02 11 x y 21 22 23 24 25 26 27 501 502 503 504 505 "
                         "601 602 603 604 605 701 702 801 802 803 804 805\n",
                         2));
    EXPECT_STREQ("00AABBCCDD01", nodes[0].deviceMAC);
    EXPECT_EQ(33, nodes[0].wirelessChannelUtilization[1]);
    EXPECT_STREQ("x", nodes[1].deviceMAC);
    EXPECT_STREQ("y", nodes[1].fatherDeviceMAC);
    EXPECT_EQ(74, nodes[1].wirelessChannelUtilization[0]);
    EXPECT_EQ(805, nodes[1].offset[4]);
    EXPECT_STREQ("x", macs[1]);
}

TEST(ApNodeInfo, readerReadsTheFirstOfAPairWhoseSecondDoesNotMatch)
{
    EXPECT_TRUE(readText("00AABBCCDD01 00AABBCCDD02 11 12 13 14 15 16 x\n", 1));
    EXPECT_EQ(79, nodes[0].plcUtilization);
    EXPECT_EQ(28, nodes[0].ethernetUtilization);
    EXPECT_TRUE(readText("00AABBCCDD01 00AABBCCDD02 11 12 13 14 15 16 17 1 2 3 4 5 6 7 8 9 10 11 x\n", 1));
    EXPECT_EQ(11, nodes[0].plcRate);
    EXPECT_EQ(9202, nodes[0].ethernetRate);
}

/* ---- Reader: failures --------------------------------------------------- */

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

#define PART(name) "E apNodeInfoReaderV2: sscanf error part " name ", path: f\n"

TEST(ApNodeInfo, readerNamesTheStepThatReachesTheEndOfTheFile)
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
        EXPECT_MESSAGES(expected[fields]);
        EXPECT_STREQ("unset", macs[0]);
        EXPECT_EQ(fields < 3 ? 61 : 11, nodes[0].wirelessChannelUtilization[0]);
        EXPECT_EQ(fields < 25 ? 9304 : 4004, nodes[0].offset[3]);
        EXPECT_EQ(9305, nodes[0].offset[4]);
        EXPECT_EQ(0, test::openStreams());
    }
    EXPECT_TRUE(readText(startOfLine1(26), 1));
}

TEST(ApNodeInfo, readerSkipsWhatItCannotFillOfAPairAtTheEnd)
{
    EXPECT_FALSE(readText("00AABBCCDD01", 1));
    EXPECT_STREQ("00AABBCCDD01", nodes[0].deviceMAC);
    EXPECT_STREQ("beforeFather", nodes[0].fatherDeviceMAC);
    EXPECT_FALSE(readText(startOfLine1(8), 1));
    EXPECT_EQ(16, nodes[0].plcUtilization);
    EXPECT_EQ(67, nodes[0].ethernetUtilization);
    EXPECT_FALSE(readText(startOfLine1(20), 1));
    EXPECT_EQ(3001, nodes[0].plcRate);
    EXPECT_EQ(9202, nodes[0].ethernetRate);
}

TEST(ApNodeInfo, readerLeavesTheRecordsBeforeAFailureUnconverted)
{
    EXPECT_FALSE(readText("M F 0 1 2 3 4 95 255 0 12000 3 4 5 0 12000 8 9 10 65000 12 13 14 15 16 17\n", 2));
    EXPECT_MESSAGES(readerPart1);
    const ApNodeV2 raw = {
        "M",   "F", {0, 1, 2, 3, 4},      95, 255, {0, 12000, 3, 4, 5}, {0, 12000, 8, 9, 10},
        65000, 12,  {13, 14, 15, 16, 17}, 68};
    expectSame(nodes[0], raw);
    expectSame(nodes[1], before);
    EXPECT_STREQ("unset", macs[0]);
    EXPECT_STREQ("unset", macs[1]);
}

static bool readNothing()
{
    const bool result = readRecords(1);
    expectSame(nodes[0], before);
    return result;
}

static bool readOne()
{
    return readRecords(1);
}

TEST(ApNodeInfo, readerReportsFailures)
{
    static const Row rows[] = {
        Row("reports a failed open", NO_FILE, noFault,
            [] {
                const bool result = readRecords(1);
                expectSame(nodes[0], before);
                EXPECT_STREQ("unset", macs[0]);
                return result;
            },
            false, {readerCannotOpen}),
        Row("of no records still has to open the file", NO_FILE, noFault, [] { return readRecords(0); },
            false, {readerCannotOpen}),
        Row("names the step of the two MACs", "", noFault, readNothing, false, {readerPart1}),
        Row("names the step of the wireless utilizations", "00AABBCCDD01 00AABBCCDD02", noFault, readOne,
            false, {readerPart2_2}),
        Row("names the step of the PLC utilization", "00AABBCCDD01 00AABBCCDD02 11 12 13 14 15", noFault,
            readOne, false, {readerPart2_3}),
        Row("names the step of the receive rates", "00AABBCCDD01 00AABBCCDD02 11 12 13 14 15 16 17", noFault,
            readOne, false, {readerPart2_4}),
        Row("names the step of the transmit rates",
            "00AABBCCDD01 00AABBCCDD02 11 12 13 14 15 16 17 1001 1002 1003 1004 1005", noFault, readOne,
            false, {readerPart2_5}),
        Row("names the step of the PLC rate",
            "00AABBCCDD01 00AABBCCDD02 11 12 13 14 15 16 17 1001 1002 1003 1004 1005 2001 2002 2003 2004 "
            "2005",
            noFault, readOne, false, {readerPart2_6}),
        Row("names the step of the offsets",
            "00AABBCCDD01 00AABBCCDD02 11 12 13 14 15 16 17 1001 1002 1003 1004 1005 2001 2002 2003 2004 "
            "2005 3001 3002",
            noFault, readOne, false, {readerPart2_7}),
        Row("fills no mac when a later record fails",
            LINE_1 LINE_2 "00AABBCCDD05 00AABBCCDD06 31 32 33 34 35 36", noFault,
            [] {
                const bool result = readRecords(3);
                EXPECT_STREQ("00AABBCCDD03", nodes[1].deviceMAC);
                EXPECT_EQ(21, nodes[1].wirelessChannelUtilization[0]);
                EXPECT_EQ(36, nodes[2].plcUtilization);
                EXPECT_STREQ("unset", macs[0]);
                EXPECT_STREQ("unset", macs[1]);
                EXPECT_STREQ("unset", macs[2]);
                return result;
            },
            false, {readerPart2_4}),
        Row("of blank lines fails at its first step", "\n  \n\n", noFault, readOne, false, {readerPart1}),
        Row("reports a read error", LINE_1, failsFrom(READ, 1), readNothing, false, {readerPart1}),
        Row("of a directory fails at its first step", DIRECTORY, noFault, readOne, false, {readerPart1}),
        Row(
            "ignores a failed close", LINE_1, fails(CLOSE, 1),
            [] {
                const bool result = readRecords(1);
                expectSame(nodes[0], loaded1);
                EXPECT_STREQ("00AABBCCDD01", macs[0]);
                return result;
            },
            true),
        Row("ignores a close that fails after all", "", fails(CLOSE, 1), readOne, false, {readerPart1}),
    };
    expectRows(rows);
}
