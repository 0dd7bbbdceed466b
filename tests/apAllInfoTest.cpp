/* SPDX-License-Identifier: Apache-2.0 */
#include "messages.h"
#include "scenario.h"

#include <limits.h>
#include <sys/stat.h>

using namespace messages::fileHelpers;
using namespace messages::apAll;
using namespace test;

/* ---- Records and their lines -------------------------------------------- */

#define BANDS_1                               \
    "10 1010 1110 1210 11 12 13 14 15 16 17 " \
    "20 1020 1120 1220 21 22 23 24 25 26 27 " \
    "30 1030 1130 1230 31 32 33 34 35 36 37 " \
    "40 1040 1140 1240 41 42 43 44 45 46 47 " \
    "50 1050 1150 1250 51 52 53 54 55 56 57 "
#define BANDS_2                                       \
    "110 2010 2110 2210 111 112 113 114 115 116 117 " \
    "120 2020 2120 2220 121 122 123 124 125 126 127 " \
    "130 2030 2130 2230 131 132 133 134 135 136 137 " \
    "140 2040 2140 2240 141 142 143 144 145 146 147 " \
    "150 2050 2150 2250 151 152 153 154 155 156 157 "
#define LINE_1 "1 2 00AABBCCDD01 00AABBCCDD02 3 1003 4 1004 5 " BANDS_1 "\n"
#define LINE_2 "201 202 00AABBCCDD03 00AABBCCDD04 203 2003 204 2004 205 " BANDS_2 "\n"
#define DETAIL_1 "00AABBCCDD01 00AABBCCDD02 3 1003 4 1004 " BANDS_1 "\n"
#define DETAIL_2 "00AABBCCDD03 00AABBCCDD04 203 2003 204 2004 " BANDS_2 "\n"

static const ApInfoAllV2 record1 = {{1, 2},
                                    {"00AABBCCDD01",
                                     "00AABBCCDD02",
                                     {10, 20, 30, 40, 50},
                                     3,
                                     4,
                                     {1010, 1020, 1030, 1040, 1050},
                                     {1110, 1120, 1130, 1140, 1150},
                                     1003,
                                     1004,
                                     {1210, 1220, 1230, 1240, 1250},
                                     5},
                                    {{11, 12, 13, 14, 15, 16, 17},
                                     {21, 22, 23, 24, 25, 26, 27},
                                     {31, 32, 33, 34, 35, 36, 37},
                                     {41, 42, 43, 44, 45, 46, 47},
                                     {51, 52, 53, 54, 55, 56, 57}}};
static const ApInfoAllV2 record2 = {{201, 202},
                                    {"00AABBCCDD03",
                                     "00AABBCCDD04",
                                     {110, 120, 130, 140, 150},
                                     203,
                                     204,
                                     {2010, 2020, 2030, 2040, 2050},
                                     {2110, 2120, 2130, 2140, 2150},
                                     2003,
                                     2004,
                                     {2210, 2220, 2230, 2240, 2250},
                                     205},
                                    {{111, 112, 113, 114, 115, 116, 117},
                                     {121, 122, 123, 124, 125, 126, 127},
                                     {131, 132, 133, 134, 135, 136, 137},
                                     {141, 142, 143, 144, 145, 146, 147},
                                     {151, 152, 153, 154, 155, 156, 157}}};
/* What a reader's array holds beforehand: unlike anything that a file holds. */
static const ApInfoAllV2 before = {{61, 62},
                                   {"before",
                                    "beforeFather",
                                    {63, 64, 65, 66, 67},
                                    68,
                                    69,
                                    {9001, 9002, 9003, 9004, 9005},
                                    {9101, 9102, 9103, 9104, 9105},
                                    9201,
                                    9202,
                                    {9301, 9302, 9303, 9304, 9305},
                                    70},
                                   {{71, 72, 73, 74, 75, 76, 77},
                                    {81, 82, 83, 84, 85, 86, 87},
                                    {91, 92, 93, 94, 95, 96, 97},
                                    {171, 172, 173, 174, 175, 176, 177},
                                    {181, 182, 183, 184, 185, 186, 187}}};

static void expectSame(const ApInfoAllV2& info, const ApInfoAllV2& expected)
{
    const ApNodeV2& node = info.apNodeV2;
    const ApNodeV2& expectedNode = expected.apNodeV2;
    EXPECT_EQ(expected.alg_version.major_ver, info.alg_version.major_ver);
    EXPECT_EQ(expected.alg_version.minor_ver, info.alg_version.minor_ver);
    EXPECT_STREQ(expectedNode.deviceMAC, node.deviceMAC);
    EXPECT_STREQ(expectedNode.fatherDeviceMAC, node.fatherDeviceMAC);
    EXPECT_EQ(expectedNode.plcUtilization, node.plcUtilization);
    EXPECT_EQ(expectedNode.plcRate, node.plcRate);
    EXPECT_EQ(expectedNode.ethernetUtilization, node.ethernetUtilization);
    EXPECT_EQ(expectedNode.ethernetRate, node.ethernetRate);
    EXPECT_EQ(expectedNode.tipc_node, node.tipc_node);
    for (int band = 0; band < 5; ++band) {
        EXPECT_EQ(expectedNode.wirelessChannelUtilization[band], node.wirelessChannelUtilization[band]);
        EXPECT_EQ(expectedNode.wirelessRxRate[band], node.wirelessRxRate[band]);
        EXPECT_EQ(expectedNode.wirelessTxRate[band], node.wirelessTxRate[band]);
        EXPECT_EQ(expectedNode.offset[band], node.offset[band]);
        EXPECT_EQ(expected.algWifiMode[band].available, info.algWifiMode[band].available);
        EXPECT_EQ(expected.algWifiMode[band].NSS, info.algWifiMode[band].NSS);
        EXPECT_EQ(expected.algWifiMode[band].wifiMode, info.algWifiMode[band].wifiMode);
        EXPECT_EQ(expected.algWifiMode[band].bandWidth, info.algWifiMode[band].bandWidth);
        EXPECT_EQ(expected.algWifiMode[band].mcsLevel, info.algWifiMode[band].mcsLevel);
        EXPECT_EQ(expected.algWifiMode[band].channel, info.algWifiMode[band].channel);
        EXPECT_EQ(expected.algWifiMode[band].reserved, info.algWifiMode[band].reserved);
    }
}

/* A record that is zero except for its key and its major version, and its line. */
static ApInfoAllV2 small(const char* mac, int version)
{
    ApInfoAllV2 info = {};
    info.alg_version.major_ver = static_cast<uint8_t>(version);
    strcpy(info.apNodeV2.deviceMAC, mac);
    strcpy(info.apNodeV2.fatherDeviceMAC, "FFFFFFFFFFFF");
    return info;
}

#define ZERO_BANDS                                                                                         \
    "0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 " \
    "0 0 0 0 0 "
#define SMALL(mac, version) version " 0 " mac " FFFFFFFFFFFF 0 0 0 0 0 " ZERO_BANDS "\n"

#define MAC_A "00000000000A"
#define MAC_B "00000000000B"
#define MAC_C "00000000000C"
#define MAC_D "00000000000D"

/* A reader's array and MAC list, as they are before every read. */
static ApInfoAllV2 infos[4];
static char macs[4][16];

static void prepareInfos()
{
    for (int i = 0; i < 4; ++i) {
        infos[i] = before;
        strcpy(macs[i], "unset");
    }
}

static bool readStored(int cnt)
{
    prepareInfos();
    return apAllInfoOnlyReader("f", infos, cnt, macs);
}

static bool readText(const char* text, int cnt)
{
    test::writeFile("f", text);
    return readStored(cnt);
}

static bool readBounded(int cnt)
{
    prepareInfos();
    return apAllInfoReader("f", infos, cnt, macs);
}

static bool readConverted(const char* text, int cnt)
{
    test::writeFile("f", text);
    return readBounded(cnt);
}

static bool readDetails(uint8_t cnt)
{
    prepareInfos();
    return apAllDetailInfoReader("f", infos, cnt, macs);
}

static bool readDetail(const char* text, uint8_t cnt)
{
    test::writeFile("f", text);
    return readDetails(cnt);
}

static bool update(ApInfoAllV2 income, const char* path = "f")
{
    return updataSingleApAllInfo(path, &income);
}

static bool deleteMac(const char* mac)
{
    char key[16] = "";
    strcpy(key, mac);
    return deleteSingleApAllInfo("f", key);
}

/* The first `fields` fields of a line, without what follows them. */
static const char* startOf(const char* line, int fields)
{
    static char text[512];
    strcpy(text, line);
    char* end = text;
    for (int i = 0; i < fields; ++i)
        end += strcspn(end, " \n") + 1;
    *end = '\0';
    return text;
}

/* What the array held before, with the first `fields` fields of a line of record 1 read over it. */
static ApInfoAllV2 partOfRecord1(int fields, bool detail)
{
    ApInfoAllV2 info = before;
#define TAKE(field)   \
    if (fields-- > 0) \
    memcpy(&info.field, &record1.field, sizeof info.field)
    if (!detail) {
        TAKE(alg_version.major_ver);
        TAKE(alg_version.minor_ver);
    }
    TAKE(apNodeV2.deviceMAC);
    TAKE(apNodeV2.fatherDeviceMAC);
    TAKE(apNodeV2.plcUtilization);
    TAKE(apNodeV2.plcRate);
    TAKE(apNodeV2.ethernetUtilization);
    TAKE(apNodeV2.ethernetRate);
    if (!detail)
        TAKE(apNodeV2.tipc_node);
    for (int band = 0; band < 5; ++band) {
        TAKE(apNodeV2.wirelessChannelUtilization[band]);
        TAKE(apNodeV2.wirelessRxRate[band]);
        TAKE(apNodeV2.wirelessTxRate[band]);
        TAKE(apNodeV2.offset[band]);
        TAKE(algWifiMode[band].available);
        TAKE(algWifiMode[band].NSS);
        TAKE(algWifiMode[band].wifiMode);
        TAKE(algWifiMode[band].bandWidth);
        TAKE(algWifiMode[band].mcsLevel);
        TAKE(algWifiMode[band].channel);
        TAKE(algWifiMode[band].reserved);
    }
#undef TAKE
    return info;
}

/* ---- AP-all writer ------------------------------------------------------ */

TEST(ApAllInfo, writerWritesOneLinePerRecordInArrayOrder)
{
    ApInfoAllV2 array[] = {record1, record2};
    EXPECT_TRUE(apAllInfoWriter("f", array, 2, false));
    EXPECT_STREQ(LINE_1 LINE_2, test::fileText("f"));
    EXPECT_STREQ("", test::messages());
    EXPECT_EQ(1, test::callCount(test::OPEN));
    EXPECT_EQ(1, test::callCount(test::CLOSE));
    expectSame(array[0], record1);
    expectSame(array[1], record2);
}

TEST(ApAllInfo, writerWritesTheRecordsOwnVersionEitherWay)
{
    ApInfoAllV2 array[] = {record1, record2};
    EXPECT_TRUE(apAllInfoWriter("f", array, 2, true));
    EXPECT_STREQ(LINE_1 LINE_2, test::fileText("f"));
}

TEST(ApAllInfo, writerWritesTheFirstRecordsAlone)
{
    ApInfoAllV2 array[] = {record2, record1};
    EXPECT_TRUE(apAllInfoWriter("f", array, 1, false));
    EXPECT_STREQ(LINE_2, test::fileText("f"));
}

TEST(ApAllInfo, writerWritesEachTypeUpToItsEnd)
{
    ApInfoAllV2 info;
    memset(&info, 0xFF, sizeof info);
    strcpy(info.apNodeV2.deviceMAC, "A");
    strcpy(info.apNodeV2.fatherDeviceMAC, "0123456789ABCDE");
    EXPECT_TRUE(apAllInfoWriter("f", &info, 1, false));
    EXPECT_STREQ("255 255            A 0123456789ABCDE 255 65535 255 65535 255 "
                 "255 65535 65535 65535 255 255 255 255 255 255 255 "
                 "255 65535 65535 65535 255 255 255 255 255 255 255 "
                 "255 65535 65535 65535 255 255 255 255 255 255 255 "
                 "255 65535 65535 65535 255 255 255 255 255 255 255 "
                 "255 65535 65535 65535 255 255 255 255 255 255 255 \n",
                 test::fileText("f"));
}

TEST(ApAllInfo, writerPadsAShortFatherMacOnTheLeft)
{
    ApInfoAllV2 info = small("0123456789ABC", 0);
    strcpy(info.apNodeV2.fatherDeviceMAC, "12345678901");
    EXPECT_TRUE(apAllInfoWriter("f", &info, 1, false));
    EXPECT_STREQ("0 0 0123456789ABC  12345678901 0 0 0 0 0 " ZERO_BANDS "\n", test::fileText("f"));
}

TEST(ApAllInfo, writerReplacesTheFile)
{
    ApInfoAllV2 info = record2;
    test::writeFile("f", LINE_1 LINE_1 LINE_1);
    EXPECT_TRUE(apAllInfoWriter("f", &info, 1, false));
    EXPECT_STREQ(LINE_2, test::fileText("f"));
}

TEST(ApAllInfo, writerOfNoRecordsLeavesAnEmptyFile)
{
    ApInfoAllV2 info = record1;
    const int counts[] = {0, -1, INT_MIN};
    for (const int cnt : counts) {
        test::writeFile("f", LINE_1);
        EXPECT_TRUE(apAllInfoWriter("f", &info, cnt, false));
        EXPECT_EQ(0, test::fileSize("f"));
    }
    EXPECT_STREQ("", test::messages());
}

TEST(ApAllInfo, writerHasNoCapOnTheRecords)
{
    static ApInfoAllV2 array[300];
    for (ApInfoAllV2& info : array)
        info = small(MAC_A, 7);
    array[299] = small(MAC_B, 8);
    EXPECT_TRUE(apAllInfoWriter("f", array, 300, false));
    EXPECT_EQ(300, test::fileLines("f"));
    EXPECT_STREQ("7 0 " MAC_A " FFFFFFFFFFFF 0 0 0 0 0 " ZERO_BANDS, test::fileLine("f", 298));
    EXPECT_STREQ("8 0 " MAC_B " FFFFFFFFFFFF 0 0 0 0 0 " ZERO_BANDS, test::fileLine("f", 299));
}

/* The seven prints of a line, in their order. */
#define LINE_PRINTS(head)                                                                       \
    head, "10 1010 1110 1210 11 12 13 14 15 16 17 ", "20 1020 1120 1220 21 22 23 24 25 26 27 ", \
        "30 1030 1130 1230 31 32 33 34 35 36 37 ", "40 1040 1140 1240 41 42 43 44 45 46 47 ",   \
        "50 1050 1150 1250 51 52 53 54 55 56 57 ", "\n"

static bool writeRecord1Twice()
{
    ApInfoAllV2 array[] = {record1, record1};
    return apAllInfoWriter("f", array, 2, false);
}

TEST(ApAllInfo, writerStopsAtEachFailedPrint)
{
    static const char* const prints[] = {LINE_PRINTS("1 2 00AABBCCDD01 00AABBCCDD02 3 1003 4 1004 5 "),
                                         LINE_PRINTS("1 2 00AABBCCDD01 00AABBCCDD02 3 1003 4 1004 5 ")};
    expectStopsAtEachPrint(writeRecord1Twice, prints, writerCannotPrint);
}

TEST(ApAllInfo, writerToAFullDeviceFails)
{
    static ApInfoAllV2 array[200];
    for (ApInfoAllV2& info : array)
        info = record1;
    EXPECT_FALSE(apAllInfoWriter("/dev/full", array, 200, false));
    EXPECT_TRUE(isFirstMessage("E apAllInfoWriter: fprintf error, path:/dev/full.\n"));
}

static bool write(ApInfoAllV2 info, const char* path = "f")
{
    return apAllInfoWriter(path, &info, 1, false);
}

static bool writeTwo()
{
    ApInfoAllV2 array[] = {record1, record2};
    return apAllInfoWriter("f", array, 2, false);
}

TEST(ApAllInfo, writerReportsFailures)
{
    static const Row rows[] = {
        Row("reports a failed open and closes nothing", NO_FILE, fails(CLOSE, 1),
            [] { return write(record1, "no/file"); }, false,
            {"E apAllInfoWriter: fopen error, path: no/file."}),
        Row("of no records reports a failed open", NO_FILE, noFault,
            [] { return apAllInfoWriter("no/file", nullptr, 0, false); }, false,
            {"E apAllInfoWriter: fopen error, path: no/file."}),
        Row("reports a failed close", NO_FILE, fails(CLOSE, 1), writeTwo, false, {writerCannotClose},
            LINE_1 LINE_2),
        Row(
            "of no records reports a failed close", NO_FILE, fails(CLOSE, 1),
            [] { return apAllInfoWriter("f", nullptr, 0, false); }, false, {writerCannotClose}, ""),
        Row("to a full device fails at the close when its buffer holds all", NO_FILE, noFault,
            [] { return write(record1, "/dev/full"); }, false,
            {"E apAllInfoWriter: fclose error, path:/dev/full.\n"}),
    };
    expectRows(rows);
}

/* ---- AP-all reader without conversions ---------------------------------- */

TEST(ApAllInfo, onlyReaderReadsTheStatedRecordsAsStored)
{
    EXPECT_TRUE(readText(LINE_1 LINE_2, 2));
    expectSame(infos[0], record1);
    expectSame(infos[1], record2);
    expectSame(infos[2], before);
    EXPECT_STREQ("00AABBCCDD01", macs[0]);
    EXPECT_STREQ("00AABBCCDD03", macs[1]);
    EXPECT_STREQ("unset", macs[2]);
    EXPECT_STREQ("", test::messages());
    EXPECT_STREQ(LINE_1 LINE_2, test::fileText("f"));
    EXPECT_EQ(1, test::callCount(test::OPEN));
    EXPECT_EQ(1, test::callCount(test::CLOSE));
}

TEST(ApAllInfo, onlyReaderIgnoresWhatFollowsTheStatedRecords)
{
    EXPECT_TRUE(readText(LINE_2 LINE_1, 1));
    expectSame(infos[0], record2);
    expectSame(infos[1], before);
    EXPECT_STREQ("unset", macs[1]);
}

TEST(ApAllInfo, onlyReaderConvertsNothingAtEitherEnd)
{
    EXPECT_TRUE(readText("0 255 M F 255 65535 255 65535 255 "
                         "255 65535 65535 65535 255 255 255 255 255 255 255 "
                         "0 0 0 0 0 0 0 0 0 0 0 "
                         "95 10001 10001 1 1 1 1 1 1 1 1 "
                         "94 10000 10000 1 1 1 1 1 1 1 1 "
                         "0 0 0 0 0 0 0 0 0 0 0 \n",
                         1));
    const ApNodeV2& node = infos[0].apNodeV2;
    EXPECT_EQ(0, infos[0].alg_version.major_ver);
    EXPECT_EQ(255, infos[0].alg_version.minor_ver);
    EXPECT_EQ(255, node.plcUtilization);
    EXPECT_EQ(65535, node.plcRate);
    EXPECT_EQ(255, node.ethernetUtilization);
    EXPECT_EQ(65535, node.ethernetRate);
    EXPECT_EQ(255, node.wirelessChannelUtilization[0]);
    EXPECT_EQ(0, node.wirelessChannelUtilization[1]);
    EXPECT_EQ(65535, node.wirelessRxRate[0]);
    EXPECT_EQ(0, node.wirelessRxRate[1]);
    EXPECT_EQ(10001, node.wirelessRxRate[2]);
    EXPECT_EQ(65535, node.wirelessTxRate[0]);
    EXPECT_EQ(0, node.wirelessTxRate[4]);
    EXPECT_EQ(65535, node.offset[0]);
    EXPECT_EQ(255, infos[0].algWifiMode[0].reserved);
}

TEST(ApAllInfo, onlyReaderNeedsNoMacList)
{
    prepareInfos();
    test::writeFile("f", LINE_1 LINE_2);
    EXPECT_TRUE(apAllInfoOnlyReader("f", infos, 2, nullptr));
    expectSame(infos[0], record1);
    expectSame(infos[1], record2);
}

TEST(ApAllInfo, onlyReaderOfNoRecordsReadsNothing)
{
    const int counts[] = {0, -1, INT_MIN};
    for (const int cnt : counts) {
        EXPECT_TRUE(readText(LINE_1, cnt));
        expectSame(infos[0], before);
        EXPECT_STREQ("unset", macs[0]);
    }
    EXPECT_TRUE(readText("", 0));
    EXPECT_STREQ("", test::messages());
}

TEST(ApAllInfo, onlyReaderReadsFieldsWhereverTheLinesBreak)
{
    EXPECT_TRUE(readText("\n1\n2\t00AABBCCDD01\n\n00AABBCCDD02 3 1003\r\n4 1004 5 " BANDS_1
                         "201 202 00AABBCCDD03 00AABBCCDD04 203 2003 204 2004 205\n" BANDS_2,
                         2));
    expectSame(infos[0], record1);
    expectSame(infos[1], record2);
}

TEST(ApAllInfo, onlyReaderDropsTheBlanksBeforeAShortMac)
{
    EXPECT_TRUE(readText("1 2           AB  12345678901 3 1003 4 1004 5 " BANDS_1 "\n", 1));
    EXPECT_STREQ("AB", infos[0].apNodeV2.deviceMAC);
    EXPECT_STREQ("12345678901", infos[0].apNodeV2.fatherDeviceMAC);
    EXPECT_STREQ("AB", macs[0]);
    EXPECT_EQ(3, infos[0].apNodeV2.plcUtilization);
}

TEST(ApAllInfo, onlyReaderSplitsALongMacAndShiftsWhatFollows)
{
    EXPECT_TRUE(readText("1 2 0123456789ABC 7 3 103 4 104 5 " BANDS_1 "\n", 1));
    EXPECT_STREQ("0123456789AB", infos[0].apNodeV2.deviceMAC);
    EXPECT_STREQ("C", infos[0].apNodeV2.fatherDeviceMAC);
    EXPECT_EQ(7, infos[0].apNodeV2.plcUtilization);
    EXPECT_EQ(3, infos[0].apNodeV2.plcRate);
    EXPECT_EQ(103, infos[0].apNodeV2.ethernetUtilization);
    EXPECT_EQ(4, infos[0].apNodeV2.ethernetRate);
    EXPECT_EQ(104, infos[0].apNodeV2.tipc_node);
    EXPECT_EQ(5, infos[0].apNodeV2.wirelessChannelUtilization[0]);
    EXPECT_EQ(10, infos[0].apNodeV2.wirelessRxRate[0]);
    EXPECT_EQ(56, infos[0].algWifiMode[4].reserved);
    EXPECT_STREQ("0123456789AB", macs[0]);
    EXPECT_TRUE(readText("1 2 00AABBCCDD01 0123456789AB9 3 103 4 104 5 " BANDS_1 "\n", 1));
    EXPECT_STREQ("0123456789AB", infos[0].apNodeV2.fatherDeviceMAC);
    EXPECT_EQ(9, infos[0].apNodeV2.plcUtilization);
}

TEST(ApAllInfo, onlyReaderGoesOnFromAFieldThatDoesNotMatch)
{
    EXPECT_TRUE(readText("1 2 00AABBCCDD01 00AABBCCDD02 3 x 4 1004 5 " BANDS_1 "\n", 1));
    ApInfoAllV2 expected = before;
    expected.alg_version = {1, 2};
    strcpy(expected.apNodeV2.deviceMAC, "00AABBCCDD01");
    strcpy(expected.apNodeV2.fatherDeviceMAC, "00AABBCCDD02");
    expected.apNodeV2.plcUtilization = 3;
    expectSame(infos[0], expected);
    EXPECT_STREQ("00AABBCCDD01", macs[0]);
    EXPECT_STREQ("", test::messages());
}

TEST(ApAllInfo, onlyReaderAcceptsALineThatConvertsNothing)
{
    EXPECT_TRUE(readText("garbage\n", 2));
    expectSame(infos[0], before);
    expectSame(infos[1], before);
    EXPECT_STREQ("before", macs[0]);
    EXPECT_STREQ("before", macs[1]);
}

/* A group fails where the file ends before its first field, and not where it ends after it. */
TEST(ApAllInfo, onlyReaderFailsWhenAGroupReachesTheEndOfTheFile)
{
    for (int fields = 0; fields <= 64; ++fields) {
        test::clearMessages();
        const bool whole = fields >= 9 + 4 * 11 + 1;
        EXPECT_EQ(whole, readText(startOf(LINE_1, fields), 1));
        EXPECT_EQ(whole ? 0 : 1, test::messageCount());
        EXPECT_EQ(whole ? 0 : 1, timesLogged(readerCannotRead));
        EXPECT_STREQ(whole ? "00AABBCCDD01" : "unset", macs[0]);
        expectSame(infos[0], partOfRecord1(fields, false));
        EXPECT_EQ(0, test::openStreams());
    }
}

TEST(ApAllInfo, onlyReaderReadsBackWhatTheWriterSaved)
{
    const bool replaceVersion[] = {false, true};
    for (const bool replace : replaceVersion) {
        ApInfoAllV2 array[] = {record2, record1};
        EXPECT_TRUE(apAllInfoWriter("f", array, 2, replace));
        prepareInfos();
        EXPECT_TRUE(apAllInfoOnlyReader("f", infos, 2, nullptr));
        expectSame(infos[0], record2);
        expectSame(infos[1], record1);
    }
}

TEST(ApAllInfo, onlyReaderReportsFailures)
{
    static const Row rows[] = {
        Row("keeps the records before a failure", LINE_1 LINE_2, noFault,
            [] {
                const bool result = readStored(3);
                expectSame(infos[0], record1);
                expectSame(infos[1], record2);
                expectSame(infos[2], before);
                EXPECT_STREQ("00AABBCCDD01", macs[0]);
                EXPECT_STREQ("00AABBCCDD03", macs[1]);
                EXPECT_STREQ("unset", macs[2]);
                return result;
            },
            false, {readerCannotRead}),
        Row("stops at the end whatever the count", LINE_1, noFault,
            [] {
                const bool result = readStored(INT_MAX);
                expectSame(infos[0], record1);
                expectSame(infos[1], before);
                return result;
            },
            false, {readerCannotRead}),
        Row("reports a read error", LINE_1, failsFrom(READ, 1),
            [] {
                const bool result = readStored(1);
                expectSame(infos[0], before);
                return result;
            },
            false, {readerCannotRead}),
        Row("treats a directory as an empty file", DIRECTORY, failsFrom(READ, 1),
            [] { return readStored(1); }, false, {readerCannotRead}),
        Row("of a missing file informs and closes nothing", NO_FILE, fails(CLOSE, 1),
            [] {
                const bool result = readStored(1);
                expectSame(infos[0], before);
                EXPECT_STREQ("unset", macs[0]);
                return result;
            },
            false, {readerCannotOpen}),
        Row("of no records of a missing file informs too", NO_FILE, noFault, [] { return readStored(0); },
            false, {readerCannotOpen}),
        Row("reports a failed close", LINE_1 LINE_2, fails(CLOSE, 1),
            [] {
                const bool result = readStored(2);
                expectSame(infos[1], record2);
                EXPECT_STREQ("00AABBCCDD03", macs[1]);
                return result;
            },
            false, {readerCannotClose}),
        Row("reports a failed close after a failed read", "", fails(CLOSE, 1), [] { return readStored(1); },
            false, {readerCannotRead, readerCannotClose}),
    };
    expectRows(rows);
}

/* ---- AP-all reader with conversions ------------------------------------- */

TEST(ApAllInfo, readerConvertsEveryRecord)
{
    EXPECT_TRUE(readConverted(LINE_1 LINE_2, 2));
    ApInfoAllV2 expected = record1;
    expected.apNodeV2.plcUtilization = 92;
    expected.apNodeV2.ethernetUtilization = 91;
    const uint8_t left[5] = {85, 75, 65, 55, 45};
    memcpy(expected.apNodeV2.wirelessChannelUtilization, left, sizeof left);
    expectSame(infos[0], expected);

    expected = record2;
    expected.apNodeV2.plcUtilization = 1;
    expected.apNodeV2.ethernetUtilization = 1;
    memset(expected.apNodeV2.wirelessChannelUtilization, 1, 5);
    expectSame(infos[1], expected);
    expectSame(infos[2], before);

    EXPECT_STREQ("00AABBCCDD01", macs[0]);
    EXPECT_STREQ("00AABBCCDD03", macs[1]);
    EXPECT_STREQ("unset", macs[2]);
    EXPECT_STREQ("", test::messages());
}

TEST(ApAllInfo, readerBoundsUtilizationsAndRates)
{
    EXPECT_TRUE(readConverted("9 9 M F 0 0 95 65000 9 "
                              "0 0 10001 65535 0 0 0 0 0 0 0 "
                              "93 1 10000 0 0 0 0 0 0 0 0 "
                              "94 10000 1 12000 0 0 0 0 0 0 0 "
                              "95 10001 0 1 0 0 0 0 0 0 0 "
                              "255 65535 65535 2 0 0 0 0 0 0 0 \n"
                              "9 9 M F 94 65535 93 0 9 "
                              "255 65535 0 1 255 255 255 255 255 255 255 "
                              "95 0 65535 1 255 255 255 255 255 255 255 "
                              "0 0 0 1 255 255 255 255 255 255 255 "
                              "93 1 10001 1 255 255 255 255 255 255 255 "
                              "94 0 0 1 255 255 255 255 255 255 255 \n"
                              "9 9 M F 255 10000 0 10001 9 " ZERO_BANDS "\n"
                              "9 9 M F 93 10001 94 10001 9 " ZERO_BANDS "\n",
                              4));
    const uint8_t utilizations[2][5] = {{95, 2, 1, 1, 1}, {1, 1, 95, 2, 1}};
    const uint16_t rx[2][5] = {{1, 1, 10000, 10000, 10000}, {10000, 1, 1, 1, 1}};
    const uint16_t tx[2][5] = {{10000, 10000, 1, 1, 10000}, {1, 10000, 1, 10000, 1}};
    const uint16_t offsets[2][5] = {{65535, 0, 12000, 1, 2}, {1, 1, 1, 1, 1}};
    for (int i = 0; i < 2; ++i) {
        for (int band = 0; band < 5; ++band) {
            EXPECT_EQ(utilizations[i][band], infos[i].apNodeV2.wirelessChannelUtilization[band]);
            EXPECT_EQ(rx[i][band], infos[i].apNodeV2.wirelessRxRate[band]);
            EXPECT_EQ(tx[i][band], infos[i].apNodeV2.wirelessTxRate[band]);
            EXPECT_EQ(offsets[i][band], infos[i].apNodeV2.offset[band]);
            EXPECT_EQ(i == 0 ? 0 : 255, infos[i].algWifiMode[band].available);
            EXPECT_EQ(i == 0 ? 0 : 255, infos[i].algWifiMode[band].reserved);
        }
    }
    const uint8_t plcUtilizations[4] = {95, 1, 1, 2};
    const uint8_t ethernetUtilizations[4] = {1, 2, 95, 1};
    const uint16_t plcRates[4] = {0, 10000, 10000, 10000};
    const uint16_t ethernetRates[4] = {65000, 0, 10001, 10001};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(plcUtilizations[i], infos[i].apNodeV2.plcUtilization);
        EXPECT_EQ(ethernetUtilizations[i], infos[i].apNodeV2.ethernetUtilization);
        EXPECT_EQ(plcRates[i], infos[i].apNodeV2.plcRate);
        EXPECT_EQ(ethernetRates[i], infos[i].apNodeV2.ethernetRate);
        EXPECT_EQ(9, infos[i].apNodeV2.tipc_node);
        EXPECT_EQ(9, infos[i].alg_version.major_ver);
    }
}

TEST(ApAllInfo, readerNeedsNoMacList)
{
    prepareInfos();
    test::writeFile("f", LINE_1);
    EXPECT_TRUE(apAllInfoReader("f", infos, 1, nullptr));
    EXPECT_EQ(92, infos[0].apNodeV2.plcUtilization);
}

TEST(ApAllInfo, readerOfNoRecordsConvertsNothing)
{
    EXPECT_TRUE(readConverted(LINE_1, 0));
    expectSame(infos[0], before);
    EXPECT_TRUE(readConverted(LINE_1, -1));
    expectSame(infos[0], before);
    EXPECT_STREQ("", test::messages());
}

/* A record that was zero, as the conversions leave it. */
static void expectConvertedZero(const ApInfoAllV2& info)
{
    ApInfoAllV2 expected = {};
    memset(expected.apNodeV2.wirelessChannelUtilization, 95, 5);
    expected.apNodeV2.plcUtilization = 95;
    expected.apNodeV2.ethernetUtilization = 95;
    for (int band = 0; band < 5; ++band) {
        expected.apNodeV2.wirelessRxRate[band] = 1;
        expected.apNodeV2.wirelessTxRate[band] = 1;
    }
    expectSame(info, expected);
}

TEST(ApAllInfo, readerReportsFailuresAndSucceeds)
{
    static const Row rows[] = {
        Row("of a short file converts every element", LINE_1, noFault,
            [] {
                prepareInfos();
                memset(infos, 0, sizeof infos);
                const bool result = apAllInfoReader("f", infos, 3, macs);
                EXPECT_EQ(85, infos[0].apNodeV2.wirelessChannelUtilization[0]);
                expectConvertedZero(infos[1]);
                expectConvertedZero(infos[2]);
                expectSame(infos[3], ApInfoAllV2{});
                EXPECT_STREQ("00AABBCCDD01", macs[0]);
                EXPECT_STREQ("unset", macs[1]);
                return result;
            },
            true, {readerCannotRead}),
        Row("of a missing file converts what the array held", NO_FILE, noFault,
            [] {
                prepareInfos();
                memset(infos, 0, sizeof infos);
                const bool result = apAllInfoReader("f", infos, 2, nullptr);
                expectConvertedZero(infos[0]);
                expectConvertedZero(infos[1]);
                return result;
            },
            true, {readerCannotOpen}),
        Row("of a missing file leaves the MAC list", NO_FILE, noFault,
            [] {
                prepareInfos();
                const bool result = readBounded(1);
                EXPECT_EQ(32, infos[0].apNodeV2.wirelessChannelUtilization[0]);
                EXPECT_EQ(9001, infos[0].apNodeV2.wirelessRxRate[0]);
                expectSame(infos[1], before);
                EXPECT_STREQ("unset", macs[0]);
                return result;
            },
            true, {readerCannotOpen}),
        Row("succeeds though the close fails", LINE_1, fails(CLOSE, 1),
            [] {
                const bool result = readBounded(1);
                EXPECT_EQ(92, infos[0].apNodeV2.plcUtilization);
                return result;
            },
            true, {readerCannotClose}),
    };
    expectRows(rows);
}

/* ---- Detail writer ------------------------------------------------------ */

TEST(ApAllInfo, detailWriterWritesTheFirstRecordWithoutVersionAndNodeNumber)
{
    ApInfoAllV2 info = record1;
    EXPECT_TRUE(apAllDetailInfoWriter("f", &info, 1, false));
    EXPECT_STREQ(DETAIL_1, test::fileText("f"));
    EXPECT_STREQ("", test::messages());
    EXPECT_EQ(1, test::callCount(test::OPEN));
    EXPECT_EQ(1, test::callCount(test::CLOSE));
    expectSame(info, record1);
    info = record2;
    EXPECT_TRUE(apAllDetailInfoWriter("f", &info, 1, true));
    EXPECT_STREQ(DETAIL_2, test::fileText("f"));
}

TEST(ApAllInfo, detailWriterWritesTheFirstRecordOverAndOver)
{
    ApInfoAllV2 array[] = {record1, record2, small(MAC_A, 1)};
    EXPECT_TRUE(apAllDetailInfoWriter("f", array, 3, false));
    EXPECT_STREQ(DETAIL_1 DETAIL_1 DETAIL_1, test::fileText("f"));
    EXPECT_TRUE(apAllDetailInfoWriter("f", array, 300, true));
    EXPECT_EQ(300, test::fileLines("f"));
}

TEST(ApAllInfo, detailWriterPadsAShortMacAndWritesALongOneWhole)
{
    ApInfoAllV2 info = small("AB", 1);
    strcpy(info.apNodeV2.fatherDeviceMAC, "0123456789ABC");
    EXPECT_TRUE(apAllDetailInfoWriter("f", &info, 1, false));
    EXPECT_STREQ("          AB 0123456789ABC 0 0 0 0 " ZERO_BANDS "\n", test::fileText("f"));
    strcpy(info.apNodeV2.deviceMAC, "0123456789ABCDE");
    strcpy(info.apNodeV2.fatherDeviceMAC, "12345678901");
    EXPECT_TRUE(apAllDetailInfoWriter("f", &info, 1, false));
    EXPECT_STREQ("0123456789ABCDE  12345678901 0 0 0 0 " ZERO_BANDS "\n", test::fileText("f"));
}

TEST(ApAllInfo, detailWriterOfNoRecordsLeavesAnEmptyFile)
{
    ApInfoAllV2 info = record1;
    const int counts[] = {0, -1, INT_MIN};
    for (const int cnt : counts) {
        test::writeFile("f", DETAIL_2);
        EXPECT_TRUE(apAllDetailInfoWriter("f", &info, cnt, false));
        EXPECT_EQ(0, test::fileSize("f"));
    }
    EXPECT_STREQ("", test::messages());
}

static bool writeTwoDetails()
{
    ApInfoAllV2 info = record1;
    return apAllDetailInfoWriter("f", &info, 2, false);
}

TEST(ApAllInfo, detailWriterStopsAtEachFailedPrint)
{
    static const char* const prints[] = {LINE_PRINTS("00AABBCCDD01 00AABBCCDD02 3 1003 4 1004 "),
                                         LINE_PRINTS("00AABBCCDD01 00AABBCCDD02 3 1003 4 1004 ")};
    expectStopsAtEachPrint(writeTwoDetails, prints, detailWriterCannotPrint);
}

TEST(ApAllInfo, detailWriterReportsEachFailedPrintOnceAndNotItsClose)
{
    for (int k = 1; k <= 14; ++k) {
        ApInfoAllV2 info = record1;
        test::clearMessages();
        test::failNth(test::WRITE, k);
        test::failNth(test::CLOSE, 1);
        EXPECT_FALSE(apAllDetailInfoWriter("f", &info, 2, false));
        EXPECT_MESSAGES(detailWriterCannotPrint);
        EXPECT_EQ(0, test::openStreams());
    }
}

static bool writeDetail(ApInfoAllV2 info, const char* path = "f")
{
    return apAllDetailInfoWriter(path, &info, 1, false);
}

TEST(ApAllInfo, detailWriterReportsFailures)
{
    static const Row rows[] = {
        Row("reports a failed open", NO_FILE, noFault, [] { return writeDetail(record1, "no/file"); }, false,
            {"E apAllDetailInfoWriter: fopen error, path: no/file."}),
        Row("of no records reports a failed open", NO_FILE, noFault,
            [] { return apAllDetailInfoWriter("no/file", nullptr, 0, false); }, false,
            {"E apAllDetailInfoWriter: fopen error, path: no/file."}),
        Row("to a full device fails", NO_FILE, noFault,
            [] {
                ApInfoAllV2 info = record1;
                return apAllDetailInfoWriter("/dev/full", &info, 200, false);
            },
            false, {"E apAllDetailInfoWriter: fprintf error, path:/dev/full.\n"}),
        Row(
            "ignores a failed close", NO_FILE, fails(CLOSE, 1), [] { return writeDetail(record1); }, true, {},
            DETAIL_1),
        Row(
            "ignores a close that fails on a full device", DETAIL_1, noFault,
            [] { return writeDetail(record1, "/dev/full"); }, true),
    };
    expectRows(rows);
}

/* ---- Detail reader ------------------------------------------------------ */

/* The record as a detail line sets it: version and node number keep what they held. */
static ApInfoAllV2 detailOf(const ApInfoAllV2& info)
{
    ApInfoAllV2 expected = info;
    expected.alg_version = before.alg_version;
    expected.apNodeV2.tipc_node = before.apNodeV2.tipc_node;
    return expected;
}

TEST(ApAllInfo, detailReaderReadsIntoTheFirstElementAsStored)
{
    EXPECT_TRUE(readDetail(DETAIL_1, 1));
    expectSame(infos[0], detailOf(record1));
    expectSame(infos[1], before);
    EXPECT_STREQ("unset", macs[0]);
    EXPECT_STREQ("", test::messages());
    EXPECT_STREQ(DETAIL_1, test::fileText("f"));
}

TEST(ApAllInfo, detailReaderKeepsTheLastRecordAlone)
{
    EXPECT_TRUE(readDetail(DETAIL_1 "AB CD 1 2 3 4 " ZERO_BANDS "\n" DETAIL_2, 3));
    expectSame(infos[0], detailOf(record2));
    expectSame(infos[1], before);
    expectSame(infos[2], before);
    EXPECT_STREQ("unset", macs[0]);
    EXPECT_STREQ("unset", macs[1]);
    EXPECT_STREQ("unset", macs[2]);
}

TEST(ApAllInfo, detailReaderIgnoresWhatFollowsTheStatedRecords)
{
    EXPECT_TRUE(readDetail(DETAIL_2 DETAIL_1, 1));
    expectSame(infos[0], detailOf(record2));
}

TEST(ApAllInfo, detailReaderNeedsNoMacList)
{
    prepareInfos();
    test::writeFile("f", DETAIL_1);
    EXPECT_TRUE(apAllDetailInfoReader("f", infos, 1, nullptr));
    expectSame(infos[0], detailOf(record1));
}

TEST(ApAllInfo, detailReaderOfNoRecordsReadsNothing)
{
    EXPECT_TRUE(readDetail(DETAIL_1, 0));
    expectSame(infos[0], before);
    EXPECT_TRUE(readDetail("", 0));
    EXPECT_STREQ("", test::messages());
}

TEST(ApAllInfo, detailReaderReadsUpTo255Records)
{
    ApInfoAllV2 info = record1;
    EXPECT_TRUE(apAllDetailInfoWriter("f", &info, 255, false));
    prepareInfos();
    EXPECT_TRUE(apAllDetailInfoReader("f", infos, 255, macs));
    EXPECT_TRUE(apAllDetailInfoWriter("f", &info, 254, false));
    EXPECT_FALSE(apAllDetailInfoReader("f", infos, 255, macs));
    EXPECT_MESSAGES(detailReaderCannotRead);
}

TEST(ApAllInfo, detailReaderConvertsNothing)
{
    EXPECT_TRUE(readDetail("M F 255 65535 0 65534 "
                           "255 0 65535 1 2 3 4 5 6 7 8 "
                           "0 65535 0 1 2 3 4 5 6 7 8 "
                           "0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 \n",
                           1));
    EXPECT_STREQ("M", infos[0].apNodeV2.deviceMAC);
    EXPECT_STREQ("F", infos[0].apNodeV2.fatherDeviceMAC);
    EXPECT_EQ(255, infos[0].apNodeV2.plcUtilization);
    EXPECT_EQ(65535, infos[0].apNodeV2.plcRate);
    EXPECT_EQ(0, infos[0].apNodeV2.ethernetUtilization);
    EXPECT_EQ(65534, infos[0].apNodeV2.ethernetRate);
    EXPECT_EQ(255, infos[0].apNodeV2.wirelessChannelUtilization[0]);
    EXPECT_EQ(0, infos[0].apNodeV2.wirelessRxRate[0]);
    EXPECT_EQ(65535, infos[0].apNodeV2.wirelessTxRate[0]);
    EXPECT_EQ(65535, infos[0].apNodeV2.wirelessRxRate[1]);
}

TEST(ApAllInfo, detailReaderSplitsALongMac)
{
    EXPECT_TRUE(readDetail("0123456789ABC 7 3 103 4 104 " BANDS_1 "\n", 1));
    EXPECT_STREQ("0123456789AB", infos[0].apNodeV2.deviceMAC);
    EXPECT_STREQ("C", infos[0].apNodeV2.fatherDeviceMAC);
    EXPECT_EQ(7, infos[0].apNodeV2.plcUtilization);
    EXPECT_EQ(3, infos[0].apNodeV2.plcRate);
    EXPECT_EQ(56, infos[0].algWifiMode[4].reserved);
    EXPECT_TRUE(readDetail("00AABBCCDD01 0123456789AB9 3 103 4 104 " BANDS_1 "\n", 1));
    EXPECT_STREQ("0123456789AB", infos[0].apNodeV2.fatherDeviceMAC);
    EXPECT_EQ(9, infos[0].apNodeV2.plcUtilization);
}

TEST(ApAllInfo, detailReaderGoesOnFromAFieldThatDoesNotMatch)
{
    EXPECT_TRUE(readDetail("00AABBCCDD01 00AABBCCDD02 3 1003 4 x " BANDS_1 "\n", 1));
    ApInfoAllV2 expected = before;
    strcpy(expected.apNodeV2.deviceMAC, "00AABBCCDD01");
    strcpy(expected.apNodeV2.fatherDeviceMAC, "00AABBCCDD02");
    expected.apNodeV2.plcUtilization = 3;
    expected.apNodeV2.plcRate = 1003;
    expected.apNodeV2.ethernetUtilization = 4;
    expectSame(infos[0], expected);
}

TEST(ApAllInfo, detailReaderFailsWhenAGroupReachesTheEndOfTheFile)
{
    for (int fields = 0; fields <= 61; ++fields) {
        test::clearMessages();
        const bool whole = fields >= 6 + 4 * 11 + 1;
        EXPECT_EQ(whole, readDetail(startOf(DETAIL_1, fields), 1));
        EXPECT_EQ(whole ? 0 : 1, test::messageCount());
        EXPECT_EQ(whole ? 0 : 1, timesLogged(detailReaderCannotRead));
        expectSame(infos[0], partOfRecord1(fields, true));
        EXPECT_EQ(0, test::openStreams());
    }
}

TEST(ApAllInfo, detailReaderReportsFailures)
{
    static const Row rows[] = {
        Row("of a short file keeps what it read", DETAIL_2, noFault,
            [] {
                const bool result = readDetails(4);
                expectSame(infos[0], detailOf(record2));
                expectSame(infos[1], before);
                return result;
            },
            false, {detailReaderCannotRead}),
        Row("reports a read error", DETAIL_1, failsFrom(READ, 1),
            [] {
                const bool result = readDetails(1);
                expectSame(infos[0], before);
                return result;
            },
            false, {detailReaderCannotRead}),
        Row("treats a directory as an empty file", DIRECTORY, failsFrom(READ, 1),
            [] { return readDetails(1); }, false, {detailReaderCannotRead}),
        Row("of a missing file informs and closes nothing", NO_FILE, fails(CLOSE, 1),
            [] {
                const bool result = readDetails(1);
                expectSame(infos[0], before);
                return result;
            },
            false, {detailReaderCannotOpen}),
        Row("of no records of a missing file informs too", NO_FILE, noFault, [] { return readDetails(0); },
            false, {detailReaderCannotOpen}),
        Row("reports a failed close", DETAIL_1, fails(CLOSE, 1),
            [] {
                const bool result = readDetails(1);
                expectSame(infos[0], detailOf(record1));
                return result;
            },
            false, {detailReaderCannotClose}),
        Row("reports a failed close after a failed read", "", fails(CLOSE, 1), [] { return readDetails(1); },
            false, {detailReaderCannotRead, detailReaderCannotClose}),
    };
    expectRows(rows);
}

/* ---- Update: file missing or empty -------------------------------------- */

static bool updateRecord1()
{
    return update(record1);
}

static bool updateRecord2()
{
    return update(record2);
}

TEST(ApAllInfo, updateOfAMissingOrEmptyFileReportsItsSteps)
{
    static const Row rows[] = {
        Row("of a missing file creates it with the record", NO_FILE, noFault, updateRecord1, true,
            {counterCannotOpen,
             "I updataSingleApAllInfo: Income AP InfoAll from 00AABBCCDD01, -1 items of old ApInfo",
             updateSavesAlone, updateSaved},
            LINE_1),
        Row(
            "of an empty file writes the record", "", noFault,
            [] {
                const bool result = update(record2);
                EXPECT_EQ(0, test::callCount(test::ALLOCATE));
                return result;
            },
            true,
            {"I updataSingleApAllInfo: Income AP InfoAll from 00AABBCCDD03, 0 items of old ApInfo",
             updateSavesAlone, updateSaved},
            LINE_2),
        Row("reports that the first write failed", NO_FILE, noFault,
            [] { return update(record1, "no/file"); }, false,
            {"E dataLineCounter: Failed to read file: no/file\n",
             "I updataSingleApAllInfo: Income AP InfoAll from 00AABBCCDD01, -1 items of old ApInfo",
             updateSavesAlone, "E apAllInfoWriter: fopen error, path: no/file.",
             "E updataSingleApAllInfo: Failed to write to file: no/file"}),
        Row("leaves a truncated file when a print of the first write fails", "", failsFrom(WRITE, 2),
            updateRecord1, false,
            {"I updataSingleApAllInfo: Income AP InfoAll from 00AABBCCDD01, 0 items of old ApInfo",
             updateSavesAlone, writerCannotPrint, updateCannotSave},
            "1 2 00AABBCCDD01 00AABBCCDD02 3 1003 4 1004 5 "),
        Row("reports that the close of the first write failed", NO_FILE, fails(CLOSE, 1), updateRecord1,
            false,
            {counterCannotOpen,
             "I updataSingleApAllInfo: Income AP InfoAll from 00AABBCCDD01, -1 items of old ApInfo",
             updateSavesAlone, writerCannotClose, updateCannotSave},
            LINE_1),
        Row("overwrites a file whose count failed at the close", LINE_1 LINE_1, fails(CLOSE, 1),
            updateRecord2, true,
            {counterCannotClose,
             "I updataSingleApAllInfo: Income AP InfoAll from 00AABBCCDD03, -1 items of old ApInfo",
             updateSavesAlone, updateSaved},
            LINE_2),
        Row("of a directory fails at the write", DIRECTORY, noFault, updateRecord1, false,
            {"I updataSingleApAllInfo: Income AP InfoAll from 00AABBCCDD01, 0 items of old ApInfo",
             updateSavesAlone, writerCannotOpen, updateCannotSave}),
    };
    expectRows(rows);
}

/* ---- Update: null record ------------------------------------------------ */

TEST(ApAllInfo, updateRefusesANullRecord)
{
    static const Row rows[] = {
        Row("refuses a null record", LINE_1, noFault,
            [] {
                const bool result = updataSingleApAllInfo("f", nullptr);
                EXPECT_EQ(0, test::callCount(test::ALLOCATE));
                return result;
            },
            false, {updateRefusesNull}),
        Row("counts before it refuses a null record", NO_FILE, noFault,
            [] { return updataSingleApAllInfo("f", nullptr); }, false,
            {counterCannotOpen, updateRefusesNull}),
    };
    expectRows(rows);
}

/* ---- Update: key found -------------------------------------------------- */

TEST(ApAllInfo, updateReplacesTheWholeRecord)
{
    ApInfoAllV2 incoming = record2;
    strcpy(incoming.apNodeV2.deviceMAC, "00AABBCCDD01");
    test::writeFile("f", SMALL(MAC_A, "1") LINE_1 SMALL(MAC_B, "2"));
    EXPECT_TRUE(updataSingleApAllInfo("f", &incoming));
    EXPECT_STREQ(SMALL(MAC_A, "1") "201 202 00AABBCCDD01 00AABBCCDD04 203 2003 204 2004 "
                                   "205 " BANDS_2 "\n" SMALL(MAC_B, "2"),
                 test::fileText("f"));
    EXPECT_MESSAGES("I updataSingleApAllInfo: Income AP InfoAll from 00AABBCCDD01, 3 items of old ApInfo",
                    "I updataSingleApAllInfo: income ap info found @index 1");
    EXPECT_EQ(201, incoming.alg_version.major_ver);
    EXPECT_STREQ("00AABBCCDD01", incoming.apNodeV2.deviceMAC);
    EXPECT_EQ(1, test::callCount(test::ALLOCATE));
    EXPECT_EQ(0, test::callCount(test::GROW));
}

TEST(ApAllInfo, updateFindsTheFirstAndTheLastRecordToo)
{
    test::writeFile("f", SMALL(MAC_A, "1") SMALL(MAC_B, "2") SMALL(MAC_C, "3"));
    EXPECT_TRUE(update(small(MAC_A, 7)));
    EXPECT_STREQ(SMALL(MAC_A, "7") SMALL(MAC_B, "2") SMALL(MAC_C, "3"), test::fileText("f"));
    EXPECT_TRUE(update(small(MAC_C, 9)));
    EXPECT_STREQ(SMALL(MAC_A, "7") SMALL(MAC_B, "2") SMALL(MAC_C, "9"), test::fileText("f"));
    EXPECT_MESSAGES("I updataSingleApAllInfo: Income AP InfoAll from 00000000000A, 3 items of old ApInfo",
                    "I updataSingleApAllInfo: income ap info found @index 0",
                    "I updataSingleApAllInfo: Income AP InfoAll from 00000000000C, 3 items of old ApInfo",
                    "I updataSingleApAllInfo: income ap info found @index 2");
}

TEST(ApAllInfo, updateReplacesTheFirstOfTwoRecordsWithTheKey)
{
    test::writeFile("f", SMALL(MAC_B, "1") SMALL(MAC_A, "2") SMALL(MAC_A, "3"));
    EXPECT_TRUE(update(small(MAC_A, 9)));
    EXPECT_STREQ(SMALL(MAC_B, "1") SMALL(MAC_A, "9") SMALL(MAC_A, "3"), test::fileText("f"));
}

TEST(ApAllInfo, updateOfTheOnlyRecordReplacesIt)
{
    test::writeFile("f", LINE_1);
    EXPECT_TRUE(update(small("00AABBCCDD01", 9)));
    EXPECT_STREQ(SMALL("00AABBCCDD01", "9"), test::fileText("f"));
}

TEST(ApAllInfo, updateWithAnUnchangedRecordKeepsTheContent)
{
    test::writeFile("f", LINE_1 LINE_2);
    EXPECT_TRUE(update(record2));
    EXPECT_STREQ(LINE_1 LINE_2, test::fileText("f"));
}

TEST(ApAllInfo, updateFindsAShortKey)
{
    test::writeFile("f", SMALL("          AB", "1"));
    EXPECT_TRUE(update(small("AB", 9)));
    EXPECT_STREQ(SMALL("          AB", "9"), test::fileText("f"));
}

TEST(ApAllInfo, updateCountsALastLineWithoutNewline)
{
    test::writeFile("f", SMALL(MAC_A, "1") "2 0 " MAC_B " FFFFFFFFFFFF 0 0 0 0 0 " ZERO_BANDS);
    EXPECT_TRUE(update(small(MAC_B, 9)));
    EXPECT_STREQ(SMALL(MAC_A, "1") SMALL(MAC_B, "9"), test::fileText("f"));
}

TEST(ApAllInfo, updateReportsAReplacement)
{
    static const Row rows[] = {
        Row("traces a replacement", LINE_1, noFault, updateRecord1, true,
            {"I updataSingleApAllInfo: Income AP InfoAll from 00AABBCCDD01, 1 items of old ApInfo",
             "I updataSingleApAllInfo: income ap info found @index 0"}),
    };
    expectRows(rows);
}

/* ---- Update: key not found ---------------------------------------------- */

TEST(ApAllInfo, updateAddsANewKeyLast)
{
    ApInfoAllV2 incoming = record2;
    test::writeFile("f", SMALL(MAC_A, "1") LINE_1);
    EXPECT_TRUE(updataSingleApAllInfo("f", &incoming));
    EXPECT_STREQ(SMALL(MAC_A, "1") LINE_1 LINE_2, test::fileText("f"));
    EXPECT_MESSAGES("I updataSingleApAllInfo: Income AP InfoAll from 00AABBCCDD03, 2 items of old ApInfo",
                    updateInserts);
    EXPECT_EQ(1, test::callCount(test::GROW));
    expectSame(incoming, record2);
}

TEST(ApAllInfo, updateTellsKeysApartByCase)
{
    test::writeFile("f", SMALL(MAC_A, "1"));
    EXPECT_TRUE(update(small("00000000000a", 9)));
    EXPECT_STREQ(SMALL(MAC_A, "1") SMALL("00000000000a", "9"), test::fileText("f"));
}

TEST(ApAllInfo, updateTellsKeysApartByEachCharacter)
{
    test::writeFile("f", SMALL(MAC_A, "1"));
    EXPECT_TRUE(update(small("10000000000A", 2)));
    EXPECT_TRUE(update(small("00000000001A", 3)));
    EXPECT_TRUE(update(small(MAC_B, 4)));
    EXPECT_TRUE(update(small("00000000000", 5)));
    EXPECT_STREQ(SMALL(MAC_A, "1") SMALL("10000000000A", "2") SMALL("00000000001A", "3") SMALL(MAC_B, "4")
                     SMALL(" 00000000000", "5"),
                 test::fileText("f"));
}

TEST(ApAllInfo, updateNeverFindsAKeyLongerThanAFileHolds)
{
    test::writeFile("f", SMALL(MAC_A, "1"));
    EXPECT_TRUE(update(small(MAC_A "1", 9)));
    EXPECT_STREQ(SMALL(MAC_A, "1") SMALL(MAC_A "1", "9"), test::fileText("f"));
    test::writeFile("f", SMALL(MAC_A, "1"));
    EXPECT_TRUE(update(small(MAC_A "123", 9)));
    EXPECT_STREQ(SMALL(MAC_A, "1") SMALL(MAC_A "123", "9"), test::fileText("f"));
}

TEST(ApAllInfo, updateComparesTheDeviceAndNotItsFather)
{
    test::writeFile("f", SMALL(MAC_A, "1"));
    EXPECT_TRUE(update(small("FFFFFFFFFFFF", 9)));
    EXPECT_STREQ(SMALL(MAC_A, "1") SMALL("FFFFFFFFFFFF", "9"), test::fileText("f"));
}

TEST(ApAllInfo, updateHasNoCapOnTheRecords)
{
    static ApInfoAllV2 array[256];
    for (ApInfoAllV2& info : array)
        info = small(MAC_A, 1);
    EXPECT_TRUE(apAllInfoWriter("f", array, 256, false));
    EXPECT_TRUE(update(small(MAC_B, 2)));
    EXPECT_TRUE(update(small(MAC_C, 3)));
    EXPECT_TRUE(update(small(MAC_B, 4)));
    EXPECT_EQ(258, test::fileLines("f"));
    EXPECT_STREQ("1 0 " MAC_A " FFFFFFFFFFFF 0 0 0 0 0 " ZERO_BANDS, test::fileLine("f", 255));
    EXPECT_STREQ("4 0 " MAC_B " FFFFFFFFFFFF 0 0 0 0 0 " ZERO_BANDS, test::fileLine("f", 256));
    EXPECT_STREQ("3 0 " MAC_C " FFFFFFFFFFFF 0 0 0 0 0 " ZERO_BANDS, test::fileLine("f", 257));
    EXPECT_MESSAGES("I updataSingleApAllInfo: Income AP InfoAll from 00000000000B, 256 items of old ApInfo",
                    updateInserts,
                    "I updataSingleApAllInfo: Income AP InfoAll from 00000000000C, 257 items of old ApInfo",
                    updateInserts,
                    "I updataSingleApAllInfo: Income AP InfoAll from 00000000000B, 258 items of old ApInfo",
                    "I updataSingleApAllInfo: income ap info found @index 256");
}

TEST(ApAllInfo, updateReportsAnInsert)
{
    static const Row rows[] = {
        Row("traces an insert", LINE_1, noFault, updateRecord2, true,
            {"I updataSingleApAllInfo: Income AP InfoAll from 00AABBCCDD03, 1 items of old ApInfo",
             updateInserts},
            LINE_1 LINE_2),
    };
    expectRows(rows);
}

/* ---- Update: what the file holds ---------------------------------------- */

TEST(ApAllInfo, updateFailsOnAFileThatHoldsFewerRecordsThanLines)
{
    static const char* const texts[] = {"\n", LINE_1 "\n", "\n" LINE_1, LINE_1 "\n" LINE_2,
                                        "1 2 00AABBCCDD01 00AABBCCDD02 3 1003 4 1004 5\n" BANDS_1 "\n"};
    for (const char* text : texts) {
        test::setLevel(3);
        test::clearMessages();
        test::writeFile("f", text);
        EXPECT_FALSE(update(record1));
        EXPECT_STREQ(text, test::fileText("f"));
        EXPECT_MESSAGES(readerCannotRead, updateCannotRead);
        EXPECT_EQ(0, test::heldArrays());
    }
}

TEST(ApAllInfo, updateTurnsALineThatConvertsNothingIntoAZeroRecord)
{
    test::writeFile("f", "garbage\n");
    EXPECT_TRUE(update(record1));
    EXPECT_STREQ("0 0 "
                 "            " /* deviceMAC */ " "
                 "            " /* fatherDeviceMAC */
                 " 0 0 0 0 0 " ZERO_BANDS "\n" LINE_1,
                 test::fileText("f"));
}

TEST(ApAllInfo, updateReadsOneRecordPerLineOfTheCount)
{
    test::writeFile("f", "1 2 00AABBCCDD01 00AABBCCDD02 3 1003 4 1004 5 " BANDS_1 LINE_2);
    EXPECT_TRUE(update(small(MAC_A, 9)));
    EXPECT_STREQ(LINE_1 SMALL(MAC_A, "9"), test::fileText("f"));
}

TEST(ApAllInfo, updateReportsAFileThatChanges)
{
    static const Row rows[] = {
        Row(
            "loses what the file gains after its count", SMALL(MAC_A, "1"),
            changes(2,
                    [](const char* path) {
                        test::writeFile(path, SMALL(MAC_A, "1") SMALL(MAC_B, "2") SMALL(MAC_C, "3")
                                                  SMALL(MAC_D, "4"));
                    }),
            [] { return update(small(MAC_C, 9)); }, true,
            {"I updataSingleApAllInfo: Income AP InfoAll from 00000000000C, 1 items of old ApInfo",
             updateInserts},
            SMALL(MAC_A, "1") SMALL(MAC_C, "9")),
        Row(
            "fails on a file that shrinks after its count", SMALL(MAC_A, "1") SMALL(MAC_B, "2"),
            changes(2, [](const char* path) { test::writeFile(path, SMALL(MAC_A, "1")); }),
            [] { return update(small(MAC_A, 9)); }, false,
            {"I updataSingleApAllInfo: Income AP InfoAll from 00000000000A, 2 items of old ApInfo",
             readerCannotRead, updateCannotRead},
            SMALL(MAC_A, "1")),
    };
    expectRows(rows);
}

/* ---- Update: failures --------------------------------------------------- */

TEST(ApAllInfo, theLevelIsReadAfreshAtEveryMessage)
{
    test::writeFile("f", LINE_1);
    test::beforeOpen(2, [](const char*) { test::setLevel(5); });
    EXPECT_TRUE(update(record2));
    EXPECT_EQ(5, g_yra_debug);
    test::setLevel(6);
    EXPECT_MESSAGES("I updataSingleApAllInfo: Income AP InfoAll from 00AABBCCDD03, 1 items of old ApInfo");
}

TEST(ApAllInfo, updateReportsFailures)
{
    static const Row rows[] = {
        Row("reports a failed allocation", LINE_1 SMALL(MAC_A, "1"), fails(ALLOCATE, 1), updateRecord1, false,
            {"I updataSingleApAllInfo: Income AP InfoAll from 00AABBCCDD01, 2 items of old ApInfo",
             updateCannotAllocate}),
        Row("reports a reader that cannot open", LINE_1 SMALL(MAC_A, "1"), fails(OPEN, 2), updateRecord1,
            false,
            {"I updataSingleApAllInfo: Income AP InfoAll from 00AABBCCDD01, 2 items of old ApInfo",
             readerCannotOpen, updateCannotRead}),
        Row("reports a reader that cannot close", LINE_1 SMALL(MAC_A, "1"), fails(CLOSE, 2), updateRecord1,
            false,
            {"I updataSingleApAllInfo: Income AP InfoAll from 00AABBCCDD01, 2 items of old ApInfo",
             readerCannotClose, updateCannotRead}),
        Row("reports a read error", LINE_1, changes(2, [](const char*) { test::failFrom(test::READ, 1); }),
            updateRecord1, false,
            {"I updataSingleApAllInfo: Income AP InfoAll from 00AABBCCDD01, 1 items of old ApInfo",
             readerCannotRead, updateCannotRead}),
        Row("leaks the array that cannot grow", LINE_1 SMALL(MAC_A, "1"), fails(GROW, 1),
            [] {
                const bool saved = update(record2);
                EXPECT_EQ(1, test::heldArrays());
                test::freeLeftArrays();
                return saved;
            },
            false,
            {"I updataSingleApAllInfo: Income AP InfoAll from 00AABBCCDD03, 2 items of old ApInfo",
             updateInserts, updateCannotGrow}),
        Row("reports that the open of a replacement failed", LINE_1 SMALL(MAC_A, "1"), fails(OPEN, 3),
            updateRecord1, false,
            {"I updataSingleApAllInfo: Income AP InfoAll from 00AABBCCDD01, 2 items of old ApInfo",
             "I updataSingleApAllInfo: income ap info found @index 0", writerCannotOpen,
             updateCannotReplace}),
        Row("reports that the open of an insert failed", LINE_1 SMALL(MAC_A, "1"), fails(OPEN, 3),
            updateRecord2, false,
            {"I updataSingleApAllInfo: Income AP InfoAll from 00AABBCCDD03, 2 items of old ApInfo",
             updateInserts, writerCannotOpen, updateCannotAdd}),
        Row(
            "leaves a truncated file when a print of a replacement fails", LINE_1 LINE_2, failsFrom(WRITE, 8),
            [] { return update(small("00AABBCCDD03", 9)); }, false,
            {"I updataSingleApAllInfo: Income AP InfoAll from 00AABBCCDD03, 2 items of old ApInfo",
             "I updataSingleApAllInfo: income ap info found @index 1", writerCannotPrint,
             updateCannotReplace},
            LINE_1),
        Row("leaves a truncated file when a print of an insert fails", LINE_1, failsFrom(WRITE, 9),
            updateRecord2, false,
            {"I updataSingleApAllInfo: Income AP InfoAll from 00AABBCCDD03, 1 items of old ApInfo",
             updateInserts, writerCannotPrint, updateCannotAdd},
            LINE_1 "201 202 00AABBCCDD03 00AABBCCDD04 203 2003 204 2004 205 "),
        Row("releases the array before it reports a failed replacement", LINE_1, fails(OPEN, 3),
            [] {
                const bool result = update(small("00AABBCCDD01", 9));
                EXPECT_EQ(0, test::arraysHeldAtLastMessage());
                return result;
            },
            false,
            {"I updataSingleApAllInfo: Income AP InfoAll from 00AABBCCDD01, 1 items of old ApInfo",
             "I updataSingleApAllInfo: income ap info found @index 0", writerCannotOpen,
             updateCannotReplace}),
        Row("releases the array before it reports a failed insert", LINE_1, fails(OPEN, 3),
            [] {
                const bool result = update(small(MAC_A, 9));
                EXPECT_EQ(0, test::arraysHeldAtLastMessage());
                return result;
            },
            false,
            {"I updataSingleApAllInfo: Income AP InfoAll from 00000000000A, 1 items of old ApInfo",
             updateInserts, writerCannotOpen, updateCannotAdd}),
        Row(
            "reports that the close of a replacement failed", LINE_1, fails(CLOSE, 3),
            [] { return update(small("00AABBCCDD01", 9)); }, false,
            {"I updataSingleApAllInfo: Income AP InfoAll from 00AABBCCDD01, 1 items of old ApInfo",
             "I updataSingleApAllInfo: income ap info found @index 0", writerCannotClose,
             updateCannotReplace},
            SMALL("00AABBCCDD01", "9")),
        Row(
            "reports that the close of an insert failed", LINE_1, fails(CLOSE, 3),
            [] { return update(small(MAC_A, 8)); }, false,
            {"I updataSingleApAllInfo: Income AP InfoAll from 00000000000A, 1 items of old ApInfo",
             updateInserts, writerCannotClose, updateCannotAdd},
            LINE_1 SMALL(MAC_A, "8")),
    };
    expectRows(rows);
}

/* ---- Delete ------------------------------------------------------------- */

TEST(ApAllInfo, deleteOfTheFirstRecordPutsTheLastInItsPlace)
{
    test::writeFile("f", SMALL(MAC_A, "1") SMALL(MAC_B, "2") SMALL(MAC_C, "3"));
    EXPECT_TRUE(deleteMac(MAC_A));
    EXPECT_STREQ(SMALL(MAC_C, "3") SMALL(MAC_B, "2"), test::fileText("f"));
    EXPECT_STREQ("", test::messages());
}

TEST(ApAllInfo, deleteMovesTheWholeLastRecord)
{
    test::writeFile("f", SMALL(MAC_A, "1") LINE_1 SMALL(MAC_B, "2") LINE_2);
    EXPECT_TRUE(deleteMac("00AABBCCDD01"));
    EXPECT_STREQ(SMALL(MAC_A, "1") LINE_2 SMALL(MAC_B, "2"), test::fileText("f"));
}

TEST(ApAllInfo, deleteOfTheLastRecordKeepsTheOthersInOrder)
{
    test::writeFile("f", LINE_1 LINE_2 SMALL(MAC_C, "3"));
    EXPECT_TRUE(deleteMac(MAC_C));
    EXPECT_STREQ(LINE_1 LINE_2, test::fileText("f"));
}

TEST(ApAllInfo, deleteOfTheOnlyRecordLeavesAnEmptyFile)
{
    test::writeFile("f", LINE_1);
    EXPECT_TRUE(deleteMac("00AABBCCDD01"));
    EXPECT_EQ(0, test::fileSize("f"));
    EXPECT_STREQ("", test::messages());
}

TEST(ApAllInfo, deleteRemovesTheFirstOfTwoRecordsWithTheKey)
{
    test::writeFile("f", SMALL(MAC_A, "1") SMALL(MAC_B, "2") SMALL(MAC_B, "3") SMALL(MAC_C, "4"));
    EXPECT_TRUE(deleteMac(MAC_B));
    EXPECT_STREQ(SMALL(MAC_A, "1") SMALL(MAC_C, "4") SMALL(MAC_B, "3"), test::fileText("f"));
    EXPECT_TRUE(deleteMac(MAC_B));
    EXPECT_STREQ(SMALL(MAC_A, "1") SMALL(MAC_C, "4"), test::fileText("f"));
}

TEST(ApAllInfo, deleteWorksOnManyRecords)
{
    static ApInfoAllV2 array[300];
    for (ApInfoAllV2& info : array)
        info = small(MAC_A, 1);
    array[298] = small(MAC_B, 2);
    array[299] = small(MAC_C, 3);
    EXPECT_TRUE(apAllInfoWriter("f", array, 300, false));
    EXPECT_TRUE(deleteMac(MAC_B));
    EXPECT_EQ(299, test::fileLines("f"));
    EXPECT_STREQ("1 0 " MAC_A " FFFFFFFFFFFF 0 0 0 0 0 " ZERO_BANDS, test::fileLine("f", 297));
    EXPECT_STREQ("3 0 " MAC_C " FFFFFFFFFFFF 0 0 0 0 0 " ZERO_BANDS, test::fileLine("f", 298));
}

TEST(ApAllInfo, deleteFindsAShortKey)
{
    test::writeFile("f", SMALL("          AB", "1") SMALL(MAC_B, "2"));
    EXPECT_TRUE(deleteMac("AB"));
    EXPECT_STREQ(SMALL(MAC_B, "2"), test::fileText("f"));
}

TEST(ApAllInfo, deleteLeavesTheFileWhenNoKeyMatches)
{
    static const char* const keys[] = {MAC_D,     "00000000000b", "0000000000",   "10000000000A",
                                       MAC_A "1", MAC_A "123",    "FFFFFFFFFFFF", ""};
    for (const char* key : keys) {
        test::clearMessages();
        test::writeFile("f", SMALL(MAC_A, "1") SMALL(MAC_B, "2"));
        EXPECT_FALSE(deleteMac(key));
        EXPECT_STREQ(SMALL(MAC_A, "1") SMALL(MAC_B, "2"), test::fileText("f"));
        EXPECT_MESSAGES(deleterFindsNothing);
        EXPECT_EQ(0, test::heldArrays());
    }
}

TEST(ApAllInfo, deleteWithoutAMatchDoesNotWrite)
{
    test::writeFile("f", "  1 0 " MAC_A " FFFFFFFFFFFF 0 0 0 0 0 " ZERO_BANDS);
    EXPECT_FALSE(deleteMac(MAC_B));
    EXPECT_STREQ("  1 0 " MAC_A " FFFFFFFFFFFF 0 0 0 0 0 " ZERO_BANDS, test::fileText("f"));
}

static bool deleteRecord1()
{
    return deleteMac("00AABBCCDD01");
}

static bool deleteMacA()
{
    return deleteMac(MAC_A);
}

TEST(ApAllInfo, deleteReportsFailures)
{
    static const Row rows[] = {
        Row("finds nothing in an empty file", "", noFault, deleteMacA, false, {deleterFindsNothing}),
        Row("finds no empty key in an empty file", "", noFault, [] { return deleteMac(""); }, false,
            {deleterFindsNothing}),
        Row("finds nothing in a directory", DIRECTORY, noFault, deleteMacA, false, {deleterFindsNothing}),
        Row("in a missing file fails at the allocation", NO_FILE, noFault, deleteMacA, false,
            {counterCannotOpen, deleterCannotAllocate}),
        Row("fails when the count fails at the close", LINE_1, fails(CLOSE, 1), deleteRecord1, false,
            {counterCannotClose, deleterCannotAllocate}),
        Row("reports a failed allocation", LINE_1 LINE_2, fails(ALLOCATE, 1), deleteRecord1, false,
            {deleterCannotAllocate}),
        Row("reports a reader that cannot open", LINE_1 LINE_2, fails(OPEN, 2), deleteRecord1, false,
            {readerCannotOpen, deleterCannotRead}),
        Row("reports a reader that cannot close", LINE_1 LINE_2, fails(CLOSE, 2), deleteRecord1, false,
            {readerCannotClose, deleterCannotRead}),
        Row("reports a writer that cannot open", LINE_1 LINE_2, fails(OPEN, 3), deleteRecord1, false,
            {writerCannotOpen, deleterCannotRewrite}),
        Row("reports a writer that cannot close", LINE_1, fails(CLOSE, 3), deleteRecord1, false,
            {writerCannotClose, deleterCannotRewrite}, ""),
        Row("releases the array before it reports a failure", LINE_1, fails(OPEN, 3),
            [] {
                const bool result = deleteMac("00AABBCCDD01");
                EXPECT_EQ(0, test::arraysHeldAtLastMessage());
                return result;
            },
            false, {writerCannotOpen, deleterCannotRewrite}),
        Row("releases the array before it reports a missing key", LINE_1, noFault,
            [] {
                const bool result = deleteMac(MAC_A);
                EXPECT_EQ(0, test::arraysHeldAtLastMessage());
                return result;
            },
            false, {deleterFindsNothing}),
        Row("leaves a truncated file when a print fails", LINE_1 SMALL(MAC_A, "1") LINE_2,
            failsFrom(WRITE, 8), deleteRecord1, false, {writerCannotPrint, deleterCannotRewrite}, LINE_2),
        Row("fails on a file that holds fewer records than lines", LINE_1 "\n", noFault, deleteRecord1, false,
            {readerCannotRead, deleterCannotRead}),
        Row("reports a read error", LINE_1, changes(2, [](const char*) { test::failFrom(test::READ, 1); }),
            deleteRecord1, false, {readerCannotRead, deleterCannotRead}),
        Row("loses what the file gains after its count", SMALL(MAC_A, "1") SMALL(MAC_B, "2"),
            changes(2,
                    [](const char* path) {
                        test::writeFile(path, SMALL(MAC_A, "1") SMALL(MAC_B, "2") SMALL(MAC_C, "3")
                                                  SMALL(MAC_D, "4"));
                    }),
            deleteMacA, true, {}, SMALL(MAC_B, "2")),
        Row("finds nothing in a file that was empty when counted", "",
            changes(2, [](const char* path) { test::writeFile(path, SMALL(MAC_A, "1")); }), deleteMacA, false,
            {deleterFindsNothing}, SMALL(MAC_A, "1")),
    };
    expectRows(rows);
}

TEST(ApAllInfo, detailWriterOfNoRecordsNeedsNoArray)
{
    EXPECT_TRUE(apAllDetailInfoWriter("f", nullptr, 0, false));
    EXPECT_EQ(0, test::fileSize("f"));
}
