/* SPDX-License-Identifier: Apache-2.0 */
#include "testing.h"

#include <limits.h>
#include <sys/stat.h>

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
/* What a reader's array holds beforehand: unlike anything that a file gives. */
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
    EXPECT_EQ(info.alg_version.major_ver, expected.alg_version.major_ver);
    EXPECT_EQ(info.alg_version.minor_ver, expected.alg_version.minor_ver);
    EXPECT_STREQ(node.deviceMAC, expectedNode.deviceMAC);
    EXPECT_STREQ(node.fatherDeviceMAC, expectedNode.fatherDeviceMAC);
    EXPECT_EQ(node.plcUtilization, expectedNode.plcUtilization);
    EXPECT_EQ(node.plcRate, expectedNode.plcRate);
    EXPECT_EQ(node.ethernetUtilization, expectedNode.ethernetUtilization);
    EXPECT_EQ(node.ethernetRate, expectedNode.ethernetRate);
    EXPECT_EQ(node.tipc_node, expectedNode.tipc_node);
    for (int band = 0; band < 5; ++band) {
        EXPECT_EQ(node.wirelessChannelUtilization[band], expectedNode.wirelessChannelUtilization[band]);
        EXPECT_EQ(node.wirelessRxRate[band], expectedNode.wirelessRxRate[band]);
        EXPECT_EQ(node.wirelessTxRate[band], expectedNode.wirelessTxRate[band]);
        EXPECT_EQ(node.offset[band], expectedNode.offset[band]);
        EXPECT_EQ(info.algWifiMode[band].available, expected.algWifiMode[band].available);
        EXPECT_EQ(info.algWifiMode[band].NSS, expected.algWifiMode[band].NSS);
        EXPECT_EQ(info.algWifiMode[band].wifiMode, expected.algWifiMode[band].wifiMode);
        EXPECT_EQ(info.algWifiMode[band].bandWidth, expected.algWifiMode[band].bandWidth);
        EXPECT_EQ(info.algWifiMode[band].mcsLevel, expected.algWifiMode[band].mcsLevel);
        EXPECT_EQ(info.algWifiMode[band].channel, expected.algWifiMode[band].channel);
        EXPECT_EQ(info.algWifiMode[band].reserved, expected.algWifiMode[band].reserved);
    }
}

/* A record that is zero but for its key and its major version, and its line. */
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

static bool readText(const char* text, int cnt)
{
    prepareInfos();
    test::writeFile("f", text);
    return apAllInfoOnlyReader("f", infos, cnt, macs);
}

static bool readConverted(const char* text, int cnt)
{
    prepareInfos();
    test::writeFile("f", text);
    return apAllInfoReader("f", infos, cnt, macs);
}

static bool readDetail(const char* text, uint8_t cnt)
{
    prepareInfos();
    test::writeFile("f", text);
    return apAllDetailInfoReader("f", infos, cnt, macs);
}

static bool update(const ApInfoAllV2& info)
{
    ApInfoAllV2 incoming = info;
    return updataSingleApAllInfo("f", &incoming);
}

static bool deleteMac(const char* mac)
{
    char key[16] = "";
    strcpy(key, mac);
    return deleteSingleApAllInfo("f", key);
}

static bool startsWith(const char* text, const char* start)
{
    return strncmp(text, start, strlen(start)) == 0;
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
        EXPECT_EQ(test::openStreams(), 0);
    }
}

/* ---- AP-all writer ------------------------------------------------------ */

TEST(ApAllInfo, writerWritesOneLinePerRecordInArrayOrder)
{
    ApInfoAllV2 array[] = {record1, record2};
    EXPECT_TRUE(apAllInfoWriter("f", array, 2, false));
    EXPECT_STREQ(test::fileText("f"), LINE_1 LINE_2);
    EXPECT_STREQ(test::messages(), "");
    EXPECT_EQ(test::callCount(test::OPEN), 1);
    EXPECT_EQ(test::callCount(test::CLOSE), 1);
    expectSame(array[0], record1);
    expectSame(array[1], record2);
}

TEST(ApAllInfo, writerWritesTheRecordsOwnVersionEitherWay)
{
    ApInfoAllV2 array[] = {record1, record2};
    EXPECT_TRUE(apAllInfoWriter("f", array, 2, true));
    EXPECT_STREQ(test::fileText("f"), LINE_1 LINE_2);
}

TEST(ApAllInfo, writerWritesTheFirstRecordsAlone)
{
    ApInfoAllV2 array[] = {record2, record1};
    EXPECT_TRUE(apAllInfoWriter("f", array, 1, false));
    EXPECT_STREQ(test::fileText("f"), LINE_2);
}

TEST(ApAllInfo, writerWritesEachTypeUpToItsEnd)
{
    ApInfoAllV2 info;
    memset(&info, 0xFF, sizeof info);
    strcpy(info.apNodeV2.deviceMAC, "A");
    strcpy(info.apNodeV2.fatherDeviceMAC, "0123456789ABCDE");
    EXPECT_TRUE(apAllInfoWriter("f", &info, 1, false));
    EXPECT_STREQ(test::fileText("f"), "255 255            A 0123456789ABCDE 255 65535 255 65535 255 "
                                      "255 65535 65535 65535 255 255 255 255 255 255 255 "
                                      "255 65535 65535 65535 255 255 255 255 255 255 255 "
                                      "255 65535 65535 65535 255 255 255 255 255 255 255 "
                                      "255 65535 65535 65535 255 255 255 255 255 255 255 "
                                      "255 65535 65535 65535 255 255 255 255 255 255 255 \n");
}

TEST(ApAllInfo, writerPadsAShortFatherMacOnTheLeft)
{
    ApInfoAllV2 info = small("0123456789ABC", 0);
    strcpy(info.apNodeV2.fatherDeviceMAC, "12345678901");
    EXPECT_TRUE(apAllInfoWriter("f", &info, 1, false));
    EXPECT_STREQ(test::fileText("f"), "0 0 0123456789ABC  12345678901 0 0 0 0 0 " ZERO_BANDS "\n");
}

TEST(ApAllInfo, writerReplacesTheFile)
{
    ApInfoAllV2 info = record2;
    test::writeFile("f", LINE_1 LINE_1 LINE_1);
    EXPECT_TRUE(apAllInfoWriter("f", &info, 1, false));
    EXPECT_STREQ(test::fileText("f"), LINE_2);
}

TEST(ApAllInfo, writerOfNoRecordsLeavesAnEmptyFile)
{
    ApInfoAllV2 info = record1;
    const int counts[] = {0, -1, INT_MIN};
    for (const int cnt : counts) {
        test::writeFile("f", LINE_1);
        EXPECT_TRUE(apAllInfoWriter("f", &info, cnt, false));
        EXPECT_EQ(test::fileSize("f"), 0);
    }
    EXPECT_STREQ(test::messages(), "");
}

TEST(ApAllInfo, writerHasNoCapOnTheRecords)
{
    static ApInfoAllV2 array[300];
    for (ApInfoAllV2& info : array)
        info = small(MAC_A, 7);
    array[299] = small(MAC_B, 8);
    EXPECT_TRUE(apAllInfoWriter("f", array, 300, false));
    EXPECT_EQ(test::fileLines("f"), 300);
    EXPECT_STREQ(test::fileLine("f", 298), "7 0 " MAC_A " FFFFFFFFFFFF 0 0 0 0 0 " ZERO_BANDS);
    EXPECT_STREQ(test::fileLine("f", 299), "8 0 " MAC_B " FFFFFFFFFFFF 0 0 0 0 0 " ZERO_BANDS);
}

TEST(ApAllInfo, writerReportsAFailedOpenAndClosesNothing)
{
    expectMessages(
        [] {
            ApInfoAllV2 info = record1;
            test::failNth(test::CLOSE, 1);
            return apAllInfoWriter("no/file", &info, 1, false);
        },
        false, "libzo: [apAllInfoWriter:#]: fopen error, path: no/file.|",
        "libzo: [apAllInfoWriter:#]: fopen error, path: no/file.|");
    EXPECT_EQ(test::callCount(test::CLOSE), 0);
    EXPECT_FALSE(apAllInfoWriter("no/file", nullptr, 0, false));
}

TEST(ApAllInfo, writerReportsAFailedClose)
{
    expectMessages(
        [] {
            ApInfoAllV2 array[] = {record1, record2};
            test::failNth(test::CLOSE, 1);
            return apAllInfoWriter("f", array, 2, false);
        },
        false, "libzo: [apAllInfoWriter:#]: fclose error, path:f.\n|",
        "libzo: [apAllInfoWriter:#]: fclose error, path:f.\n|");
    EXPECT_STREQ(test::fileText("f"), LINE_1 LINE_2);
}

TEST(ApAllInfo, writerOfNoRecordsReportsAFailedClose)
{
    test::failNth(test::CLOSE, 1);
    EXPECT_FALSE(apAllInfoWriter("f", nullptr, 0, false));
    EXPECT_STREQ(test::messages(), "libzo: [apAllInfoWriter:#]: fclose error, path:f.\n|");
}

/* The prints of one AP-all line, and of one detail line, in their order. */
#define PRINTS(head)                                                                                \
    {                                                                                               \
        head, "10 1010 1110 1210 11 12 13 14 15 16 17 ", "20 1020 1120 1220 21 22 23 24 25 26 27 ", \
            "30 1030 1130 1230 31 32 33 34 35 36 37 ", "40 1040 1140 1240 41 42 43 44 45 46 47 ",   \
            "50 1050 1150 1250 51 52 53 54 55 56 57 ", "\n"                                         \
    }
static const char* const prints1[] = PRINTS("1 2 00AABBCCDD01 00AABBCCDD02 3 1003 4 1004 5 ");
static const char* const detailPrints1[] = PRINTS("00AABBCCDD01 00AABBCCDD02 3 1003 4 1004 ");

TEST(ApAllInfo, writerStopsAtTheFirstFailedPrint)
{
    char expected[1024] = "";
    for (int k = 0; k < 14; ++k) {
        ApInfoAllV2 array[] = {record1, record1};
        test::clearMessages();
        test::failFrom(test::WRITE, k + 1);
        EXPECT_FALSE(apAllInfoWriter("f", array, 2, false));
        EXPECT_STREQ(test::fileText("f"), expected);
        EXPECT_TRUE(startsWith(test::messages(), "libzo: [apAllInfoWriter:#]: fprintf error, path:f.\n|"));
        strcat(expected, prints1[k % 7]);
    }
    EXPECT_STREQ(expected, LINE_1 LINE_1);
}

TEST(ApAllInfo, writerReportsEachFailedPrintOnce)
{
    for (int k = 1; k <= 14; ++k) {
        ApInfoAllV2 array[] = {record1, record2};
        test::clearMessages();
        test::failNth(test::WRITE, k);
        EXPECT_FALSE(apAllInfoWriter("f", array, 2, false));
        EXPECT_STREQ(test::messages(), "libzo: [apAllInfoWriter:#]: fprintf error, path:f.\n|");
        EXPECT_EQ(strstr(test::fileText("f"), "00AABBCCDD03") != nullptr, k > 8);
        EXPECT_EQ(test::openStreams(), 0);
    }
}

TEST(ApAllInfo, writerMakesSevenPrintsALine)
{
    ApInfoAllV2 array[] = {record1, record2};
    test::failNth(test::WRITE, 15);
    EXPECT_TRUE(apAllInfoWriter("f", array, 2, false));
    EXPECT_STREQ(test::fileText("f"), LINE_1 LINE_2);
    EXPECT_STREQ(test::messages(), "");
}

TEST(ApAllInfo, writersPrintErrorIsLoggedFromLevelThree)
{
    expectMessages(
        [] {
            ApInfoAllV2 info = record1;
            test::failNth(test::WRITE, 1);
            return apAllInfoWriter("f", &info, 1, false);
        },
        false, "libzo: [apAllInfoWriter:#]: fprintf error, path:f.\n|",
        "libzo: [apAllInfoWriter:#]: fprintf error, path:f.\n|");
}

TEST(ApAllInfo, writerToAFullDeviceFails)
{
    static ApInfoAllV2 array[200];
    for (ApInfoAllV2& info : array)
        info = record1;
    EXPECT_FALSE(apAllInfoWriter("/dev/full", array, 200, false));
    EXPECT_TRUE(
        startsWith(test::messages(), "libzo: [apAllInfoWriter:#]: fprintf error, path:/dev/full.\n|"));
}

TEST(ApAllInfo, writerToAFullDeviceFailsAtTheCloseWhenItsBufferHoldsAll)
{
    ApInfoAllV2 info = record1;
    EXPECT_FALSE(apAllInfoWriter("/dev/full", &info, 1, false));
    EXPECT_STREQ(test::messages(), "libzo: [apAllInfoWriter:#]: fclose error, path:/dev/full.\n|");
}

/* ---- AP-all reader without conversions ---------------------------------- */

TEST(ApAllInfo, onlyReaderReadsTheStatedRecordsAsStored)
{
    EXPECT_TRUE(readText(LINE_1 LINE_2, 2));
    expectSame(infos[0], record1);
    expectSame(infos[1], record2);
    expectSame(infos[2], before);
    EXPECT_STREQ(macs[0], "00AABBCCDD01");
    EXPECT_STREQ(macs[1], "00AABBCCDD03");
    EXPECT_STREQ(macs[2], "unset");
    EXPECT_STREQ(test::messages(), "");
    EXPECT_STREQ(test::fileText("f"), LINE_1 LINE_2);
    EXPECT_EQ(test::callCount(test::OPEN), 1);
    EXPECT_EQ(test::callCount(test::CLOSE), 1);
}

TEST(ApAllInfo, onlyReaderIgnoresWhatFollowsTheStatedRecords)
{
    EXPECT_TRUE(readText(LINE_2 LINE_1, 1));
    expectSame(infos[0], record2);
    expectSame(infos[1], before);
    EXPECT_STREQ(macs[1], "unset");
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
    EXPECT_EQ(infos[0].alg_version.major_ver, 0);
    EXPECT_EQ(infos[0].alg_version.minor_ver, 255);
    EXPECT_EQ(node.plcUtilization, 255);
    EXPECT_EQ(node.plcRate, 65535);
    EXPECT_EQ(node.ethernetUtilization, 255);
    EXPECT_EQ(node.ethernetRate, 65535);
    EXPECT_EQ(node.wirelessChannelUtilization[0], 255);
    EXPECT_EQ(node.wirelessChannelUtilization[1], 0);
    EXPECT_EQ(node.wirelessRxRate[0], 65535);
    EXPECT_EQ(node.wirelessRxRate[1], 0);
    EXPECT_EQ(node.wirelessRxRate[2], 10001);
    EXPECT_EQ(node.wirelessTxRate[0], 65535);
    EXPECT_EQ(node.wirelessTxRate[4], 0);
    EXPECT_EQ(node.offset[0], 65535);
    EXPECT_EQ(infos[0].algWifiMode[0].reserved, 255);
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
        EXPECT_STREQ(macs[0], "unset");
    }
    EXPECT_TRUE(readText("", 0));
    EXPECT_STREQ(test::messages(), "");
}

TEST(ApAllInfo, onlyReaderTakesFieldsWhereverTheLinesBreak)
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
    EXPECT_STREQ(infos[0].apNodeV2.deviceMAC, "AB");
    EXPECT_STREQ(infos[0].apNodeV2.fatherDeviceMAC, "12345678901");
    EXPECT_STREQ(macs[0], "AB");
    EXPECT_EQ(infos[0].apNodeV2.plcUtilization, 3);
}

TEST(ApAllInfo, onlyReaderSplitsALongMacAndShiftsWhatFollows)
{
    EXPECT_TRUE(readText("1 2 0123456789ABC 7 3 103 4 104 5 " BANDS_1 "\n", 1));
    EXPECT_STREQ(infos[0].apNodeV2.deviceMAC, "0123456789AB");
    EXPECT_STREQ(infos[0].apNodeV2.fatherDeviceMAC, "C");
    EXPECT_EQ(infos[0].apNodeV2.plcUtilization, 7);
    EXPECT_EQ(infos[0].apNodeV2.plcRate, 3);
    EXPECT_EQ(infos[0].apNodeV2.ethernetUtilization, 103);
    EXPECT_EQ(infos[0].apNodeV2.ethernetRate, 4);
    EXPECT_EQ(infos[0].apNodeV2.tipc_node, 104);
    EXPECT_EQ(infos[0].apNodeV2.wirelessChannelUtilization[0], 5);
    EXPECT_EQ(infos[0].apNodeV2.wirelessRxRate[0], 10);
    EXPECT_EQ(infos[0].algWifiMode[4].reserved, 56);
    EXPECT_STREQ(macs[0], "0123456789AB");
    EXPECT_TRUE(readText("1 2 00AABBCCDD01 0123456789AB9 3 103 4 104 5 " BANDS_1 "\n", 1));
    EXPECT_STREQ(infos[0].apNodeV2.fatherDeviceMAC, "0123456789AB");
    EXPECT_EQ(infos[0].apNodeV2.plcUtilization, 9);
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
    EXPECT_STREQ(macs[0], "00AABBCCDD01");
    EXPECT_STREQ(test::messages(), "");
}

TEST(ApAllInfo, onlyReaderAcceptsALineThatConvertsNothing)
{
    EXPECT_TRUE(readText("garbage\n", 2));
    expectSame(infos[0], before);
    expectSame(infos[1], before);
    EXPECT_STREQ(macs[0], "before");
    EXPECT_STREQ(macs[1], "before");
}

/* A group that meets the end before its first field fails; a later one has begun. */
TEST(ApAllInfo, onlyReaderFailsWhenAGroupMeetsTheEndOfTheFile)
{
    for (int fields = 0; fields <= 64; ++fields) {
        test::clearMessages();
        const bool whole = fields >= 9 + 4 * 11 + 1;
        EXPECT_EQ(readText(startOf(LINE_1, fields), 1), whole);
        EXPECT_STREQ(test::messages(),
                     whole ? "" : "libzo: [apAllInfoOnlyReader:#]: fscanf error, path:f.\n|");
        EXPECT_STREQ(macs[0], whole ? "00AABBCCDD01" : "unset");
        expectSame(infos[0], partOfRecord1(fields, false));
        EXPECT_EQ(test::openStreams(), 0);
    }
}

TEST(ApAllInfo, onlyReaderKeepsTheRecordsBeforeAFailure)
{
    EXPECT_FALSE(readText(LINE_1 LINE_2, 3));
    EXPECT_STREQ(test::messages(), "libzo: [apAllInfoOnlyReader:#]: fscanf error, path:f.\n|");
    expectSame(infos[0], record1);
    expectSame(infos[1], record2);
    expectSame(infos[2], before);
    EXPECT_STREQ(macs[0], "00AABBCCDD01");
    EXPECT_STREQ(macs[1], "00AABBCCDD03");
    EXPECT_STREQ(macs[2], "unset");
}

TEST(ApAllInfo, onlyReaderStopsAtTheEndWhateverTheCount)
{
    EXPECT_FALSE(readText(LINE_1, INT_MAX));
    EXPECT_STREQ(test::messages(), "libzo: [apAllInfoOnlyReader:#]: fscanf error, path:f.\n|");
    expectSame(infos[0], record1);
    expectSame(infos[1], before);
}

TEST(ApAllInfo, onlyReadersReadErrorIsLoggedFromLevelThree)
{
    expectMessages([] { return readText("\n \n", 1); }, false,
                   "libzo: [apAllInfoOnlyReader:#]: fscanf error, path:f.\n|",
                   "libzo: [apAllInfoOnlyReader:#]: fscanf error, path:f.\n|");
    expectMessages([] { return readText(startOf(LINE_1, 9), 1); }, false,
                   "libzo: [apAllInfoOnlyReader:#]: fscanf error, path:f.\n|",
                   "libzo: [apAllInfoOnlyReader:#]: fscanf error, path:f.\n|");
}

TEST(ApAllInfo, onlyReaderReportsWhatTheFileSystemFails)
{
    test::failFrom(test::READ, 1);
    EXPECT_FALSE(readText(LINE_1, 1));
    EXPECT_STREQ(test::messages(), "libzo: [apAllInfoOnlyReader:#]: fscanf error, path:f.\n|");
    expectSame(infos[0], before);
    test::clearMessages();
    mkdir("d", 0777);
    EXPECT_FALSE(apAllInfoOnlyReader("d", infos, 1, macs));
    EXPECT_STREQ(test::messages(), "libzo: [apAllInfoOnlyReader:#]: fscanf error, path:d.\n|");
}

TEST(ApAllInfo, onlyReaderOfAMissingFileInformsAndClosesNothing)
{
    prepareInfos();
    expectMessages(
        [] {
            test::failNth(test::CLOSE, 1);
            return apAllInfoOnlyReader("missing", infos, 1, macs);
        },
        false, "libzo: [apAllInfoOnlyReader:#]: pat file does not exit.\n|", "");
    expectSame(infos[0], before);
    EXPECT_STREQ(macs[0], "unset");
    EXPECT_EQ(test::callCount(test::CLOSE), 0);
    EXPECT_EQ(test::fileSize("missing"), -1);
    EXPECT_FALSE(apAllInfoOnlyReader("missing", infos, 0, macs));
}

TEST(ApAllInfo, onlyReaderReportsAFailedClose)
{
    expectMessages(
        [] {
            test::failNth(test::CLOSE, 1);
            return readText(LINE_1 LINE_2, 2);
        },
        false, "libzo: [apAllInfoOnlyReader:#]: fclose error, path:f.\n|",
        "libzo: [apAllInfoOnlyReader:#]: fclose error, path:f.\n|");
    expectSame(infos[1], record2);
    EXPECT_STREQ(macs[1], "00AABBCCDD03");
}

TEST(ApAllInfo, onlyReaderReportsAFailedCloseBehindAFailedRead)
{
    test::failNth(test::CLOSE, 1);
    EXPECT_FALSE(readText("", 1));
    EXPECT_STREQ(test::messages(), "libzo: [apAllInfoOnlyReader:#]: fscanf error, path:f.\n|"
                                   "libzo: [apAllInfoOnlyReader:#]: fclose error, path:f.\n|");
}

TEST(ApAllInfo, onlyReaderGivesBackWhatTheWriterSaved)
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

    EXPECT_STREQ(macs[0], "00AABBCCDD01");
    EXPECT_STREQ(macs[1], "00AABBCCDD03");
    EXPECT_STREQ(macs[2], "unset");
    EXPECT_STREQ(test::messages(), "");
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
            EXPECT_EQ(infos[i].apNodeV2.wirelessChannelUtilization[band], utilizations[i][band]);
            EXPECT_EQ(infos[i].apNodeV2.wirelessRxRate[band], rx[i][band]);
            EXPECT_EQ(infos[i].apNodeV2.wirelessTxRate[band], tx[i][band]);
            EXPECT_EQ(infos[i].apNodeV2.offset[band], offsets[i][band]);
            EXPECT_EQ(infos[i].algWifiMode[band].available, i == 0 ? 0 : 255);
            EXPECT_EQ(infos[i].algWifiMode[band].reserved, i == 0 ? 0 : 255);
        }
    }
    const uint8_t plcUtilizations[4] = {95, 1, 1, 2};
    const uint8_t ethernetUtilizations[4] = {1, 2, 95, 1};
    const uint16_t plcRates[4] = {0, 10000, 10000, 10000};
    const uint16_t ethernetRates[4] = {65000, 0, 10001, 10001};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(infos[i].apNodeV2.plcUtilization, plcUtilizations[i]);
        EXPECT_EQ(infos[i].apNodeV2.ethernetUtilization, ethernetUtilizations[i]);
        EXPECT_EQ(infos[i].apNodeV2.plcRate, plcRates[i]);
        EXPECT_EQ(infos[i].apNodeV2.ethernetRate, ethernetRates[i]);
        EXPECT_EQ(infos[i].apNodeV2.tipc_node, 9);
        EXPECT_EQ(infos[i].alg_version.major_ver, 9);
    }
}

TEST(ApAllInfo, readerNeedsNoMacList)
{
    prepareInfos();
    test::writeFile("f", LINE_1);
    EXPECT_TRUE(apAllInfoReader("f", infos, 1, nullptr));
    EXPECT_EQ(infos[0].apNodeV2.plcUtilization, 92);
}

TEST(ApAllInfo, readerOfNoRecordsConvertsNothing)
{
    EXPECT_TRUE(readConverted(LINE_1, 0));
    expectSame(infos[0], before);
    EXPECT_TRUE(readConverted(LINE_1, -1));
    expectSame(infos[0], before);
    EXPECT_STREQ(test::messages(), "");
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

TEST(ApAllInfo, readerOfAShortFileConvertsEveryElement)
{
    prepareInfos();
    memset(infos, 0, sizeof infos);
    test::writeFile("f", LINE_1);
    EXPECT_TRUE(apAllInfoReader("f", infos, 3, macs));
    EXPECT_STREQ(test::messages(), "libzo: [apAllInfoOnlyReader:#]: fscanf error, path:f.\n|");
    EXPECT_EQ(infos[0].apNodeV2.wirelessChannelUtilization[0], 85);
    expectConvertedZero(infos[1]);
    expectConvertedZero(infos[2]);
    expectSame(infos[3], ApInfoAllV2{});
    EXPECT_STREQ(macs[0], "00AABBCCDD01");
    EXPECT_STREQ(macs[1], "unset");
}

TEST(ApAllInfo, readerOfAMissingFileConvertsWhatTheArrayHeld)
{
    expectMessages(
        [] {
            memset(infos, 0, sizeof infos);
            return apAllInfoReader("missing", infos, 2, nullptr);
        },
        true, "libzo: [apAllInfoOnlyReader:#]: pat file does not exit.\n|", "");
    expectConvertedZero(infos[0]);
    expectConvertedZero(infos[1]);
    prepareInfos();
    EXPECT_TRUE(apAllInfoReader("missing", infos, 1, macs));
    EXPECT_EQ(infos[0].apNodeV2.wirelessChannelUtilization[0], 32);
    EXPECT_EQ(infos[0].apNodeV2.wirelessRxRate[0], 9001);
    expectSame(infos[1], before);
    EXPECT_STREQ(macs[0], "unset");
}

TEST(ApAllInfo, readerSucceedsThoughTheCloseFails)
{
    test::failNth(test::CLOSE, 1);
    EXPECT_TRUE(readConverted(LINE_1, 1));
    EXPECT_STREQ(test::messages(), "libzo: [apAllInfoOnlyReader:#]: fclose error, path:f.\n|");
    EXPECT_EQ(infos[0].apNodeV2.plcUtilization, 92);
}

/* ---- Detail writer ------------------------------------------------------ */

TEST(ApAllInfo, detailWriterWritesTheFirstRecordWithoutVersionAndNodeNumber)
{
    ApInfoAllV2 info = record1;
    EXPECT_TRUE(apAllDetailInfoWriter("f", &info, 1, false));
    EXPECT_STREQ(test::fileText("f"), DETAIL_1);
    EXPECT_STREQ(test::messages(), "");
    EXPECT_EQ(test::callCount(test::OPEN), 1);
    EXPECT_EQ(test::callCount(test::CLOSE), 1);
    expectSame(info, record1);
    info = record2;
    EXPECT_TRUE(apAllDetailInfoWriter("f", &info, 1, true));
    EXPECT_STREQ(test::fileText("f"), DETAIL_2);
}

TEST(ApAllInfo, detailWriterWritesTheFirstRecordOverAndOver)
{
    ApInfoAllV2 array[] = {record1, record2, small(MAC_A, 1)};
    EXPECT_TRUE(apAllDetailInfoWriter("f", array, 3, false));
    EXPECT_STREQ(test::fileText("f"), DETAIL_1 DETAIL_1 DETAIL_1);
    EXPECT_TRUE(apAllDetailInfoWriter("f", array, 300, true));
    EXPECT_EQ(test::fileLines("f"), 300);
}

TEST(ApAllInfo, detailWriterPadsAShortMacAndWritesALongOneWhole)
{
    ApInfoAllV2 info = small("AB", 1);
    strcpy(info.apNodeV2.fatherDeviceMAC, "0123456789ABC");
    EXPECT_TRUE(apAllDetailInfoWriter("f", &info, 1, false));
    EXPECT_STREQ(test::fileText("f"), "          AB 0123456789ABC 0 0 0 0 " ZERO_BANDS "\n");
    strcpy(info.apNodeV2.deviceMAC, "0123456789ABCDE");
    strcpy(info.apNodeV2.fatherDeviceMAC, "12345678901");
    EXPECT_TRUE(apAllDetailInfoWriter("f", &info, 1, false));
    EXPECT_STREQ(test::fileText("f"), "0123456789ABCDE  12345678901 0 0 0 0 " ZERO_BANDS "\n");
}

TEST(ApAllInfo, detailWriterOfNoRecordsLeavesAnEmptyFile)
{
    ApInfoAllV2 info = record1;
    const int counts[] = {0, -1, INT_MIN};
    for (const int cnt : counts) {
        test::writeFile("f", DETAIL_2);
        EXPECT_TRUE(apAllDetailInfoWriter("f", &info, cnt, false));
        EXPECT_EQ(test::fileSize("f"), 0);
    }
    EXPECT_STREQ(test::messages(), "");
}

TEST(ApAllInfo, detailWriterReportsAFailedOpen)
{
    expectMessages(
        [] {
            ApInfoAllV2 info = record1;
            return apAllDetailInfoWriter("no/file", &info, 1, false);
        },
        false, "libzo: [apAllDetailInfoWriter:#]: fopen error, path: no/file.|",
        "libzo: [apAllDetailInfoWriter:#]: fopen error, path: no/file.|");
    EXPECT_EQ(test::callCount(test::CLOSE), 0);
    EXPECT_FALSE(apAllDetailInfoWriter("no/file", nullptr, 0, false));
}

TEST(ApAllInfo, detailWriterStopsAtTheFirstFailedPrint)
{
    char expected[1024] = "";
    for (int k = 0; k < 14; ++k) {
        ApInfoAllV2 info = record1;
        test::clearMessages();
        test::failFrom(test::WRITE, k + 1);
        EXPECT_FALSE(apAllDetailInfoWriter("f", &info, 2, false));
        EXPECT_STREQ(test::fileText("f"), expected);
        EXPECT_STREQ(test::messages(), "libzo: [apAllDetailInfoWriter:#]: fprintf error, path:f.\n|");
        strcat(expected, detailPrints1[k % 7]);
    }
    EXPECT_STREQ(expected, DETAIL_1 DETAIL_1);
}

TEST(ApAllInfo, detailWriterReportsEachFailedPrintOnceAndNotItsClose)
{
    for (int k = 1; k <= 14; ++k) {
        ApInfoAllV2 info = record1;
        test::clearMessages();
        test::failNth(test::WRITE, k);
        test::failNth(test::CLOSE, 1);
        EXPECT_FALSE(apAllDetailInfoWriter("f", &info, 2, false));
        EXPECT_STREQ(test::messages(), "libzo: [apAllDetailInfoWriter:#]: fprintf error, path:f.\n|");
        EXPECT_EQ(test::openStreams(), 0);
    }
}

TEST(ApAllInfo, detailWriterMakesSevenPrintsALine)
{
    ApInfoAllV2 info = record1;
    test::failNth(test::WRITE, 15);
    EXPECT_TRUE(apAllDetailInfoWriter("f", &info, 2, false));
    EXPECT_STREQ(test::fileText("f"), DETAIL_1 DETAIL_1);
}

TEST(ApAllInfo, detailWritersPrintErrorIsLoggedFromLevelThree)
{
    expectMessages(
        [] {
            ApInfoAllV2 info = record1;
            test::failNth(test::WRITE, 1);
            return apAllDetailInfoWriter("f", &info, 1, false);
        },
        false, "libzo: [apAllDetailInfoWriter:#]: fprintf error, path:f.\n|",
        "libzo: [apAllDetailInfoWriter:#]: fprintf error, path:f.\n|");
}

TEST(ApAllInfo, detailWriterToAFullDeviceFails)
{
    ApInfoAllV2 info = record1;
    EXPECT_FALSE(apAllDetailInfoWriter("/dev/full", &info, 200, false));
    EXPECT_STREQ(test::messages(), "libzo: [apAllDetailInfoWriter:#]: fprintf error, path:/dev/full.\n|");
}

TEST(ApAllInfo, detailWriterIgnoresAFailedClose)
{
    ApInfoAllV2 info = record1;
    test::failNth(test::CLOSE, 1);
    EXPECT_TRUE(apAllDetailInfoWriter("f", &info, 1, false));
    EXPECT_STREQ(test::fileText("f"), DETAIL_1);
    EXPECT_TRUE(apAllDetailInfoWriter("/dev/full", &info, 1, false));
    EXPECT_STREQ(test::messages(), "");
}

/* ---- Detail reader ------------------------------------------------------ */

/* The record as a detail line gives it: version and node number stay as they were. */
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
    EXPECT_STREQ(macs[0], "unset");
    EXPECT_STREQ(test::messages(), "");
    EXPECT_STREQ(test::fileText("f"), DETAIL_1);
    EXPECT_EQ(test::callCount(test::CLOSE), 1);
}

TEST(ApAllInfo, detailReaderKeepsTheLastRecordAlone)
{
    EXPECT_TRUE(readDetail(DETAIL_1 "AB CD 1 2 3 4 " ZERO_BANDS "\n" DETAIL_2, 3));
    expectSame(infos[0], detailOf(record2));
    expectSame(infos[1], before);
    expectSame(infos[2], before);
    EXPECT_STREQ(macs[0], "unset");
    EXPECT_STREQ(macs[1], "unset");
    EXPECT_STREQ(macs[2], "unset");
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
    EXPECT_STREQ(test::messages(), "");
}

TEST(ApAllInfo, detailReaderReadsUpTo255Records)
{
    ApInfoAllV2 info = record1;
    EXPECT_TRUE(apAllDetailInfoWriter("f", &info, 255, false));
    prepareInfos();
    EXPECT_TRUE(apAllDetailInfoReader("f", infos, 255, macs));
    EXPECT_TRUE(apAllDetailInfoWriter("f", &info, 254, false));
    EXPECT_FALSE(apAllDetailInfoReader("f", infos, 255, macs));
    EXPECT_STREQ(test::messages(), "libzo: [apAllDetailInfoReader:#]: fscanf error, path:f.\n|");
}

TEST(ApAllInfo, detailReaderConvertsNothing)
{
    EXPECT_TRUE(readDetail("M F 255 65535 0 65534 "
                           "255 0 65535 1 2 3 4 5 6 7 8 "
                           "0 65535 0 1 2 3 4 5 6 7 8 "
                           "0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 \n",
                           1));
    EXPECT_STREQ(infos[0].apNodeV2.deviceMAC, "M");
    EXPECT_STREQ(infos[0].apNodeV2.fatherDeviceMAC, "F");
    EXPECT_EQ(infos[0].apNodeV2.plcUtilization, 255);
    EXPECT_EQ(infos[0].apNodeV2.plcRate, 65535);
    EXPECT_EQ(infos[0].apNodeV2.ethernetUtilization, 0);
    EXPECT_EQ(infos[0].apNodeV2.ethernetRate, 65534);
    EXPECT_EQ(infos[0].apNodeV2.wirelessChannelUtilization[0], 255);
    EXPECT_EQ(infos[0].apNodeV2.wirelessRxRate[0], 0);
    EXPECT_EQ(infos[0].apNodeV2.wirelessTxRate[0], 65535);
    EXPECT_EQ(infos[0].apNodeV2.wirelessRxRate[1], 65535);
}

TEST(ApAllInfo, detailReaderSplitsALongMac)
{
    EXPECT_TRUE(readDetail("0123456789ABC 7 3 103 4 104 " BANDS_1 "\n", 1));
    EXPECT_STREQ(infos[0].apNodeV2.deviceMAC, "0123456789AB");
    EXPECT_STREQ(infos[0].apNodeV2.fatherDeviceMAC, "C");
    EXPECT_EQ(infos[0].apNodeV2.plcUtilization, 7);
    EXPECT_EQ(infos[0].apNodeV2.plcRate, 3);
    EXPECT_EQ(infos[0].algWifiMode[4].reserved, 56);
    EXPECT_TRUE(readDetail("00AABBCCDD01 0123456789AB9 3 103 4 104 " BANDS_1 "\n", 1));
    EXPECT_STREQ(infos[0].apNodeV2.fatherDeviceMAC, "0123456789AB");
    EXPECT_EQ(infos[0].apNodeV2.plcUtilization, 9);
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

TEST(ApAllInfo, detailReaderFailsWhenAGroupMeetsTheEndOfTheFile)
{
    for (int fields = 0; fields <= 61; ++fields) {
        test::clearMessages();
        const bool whole = fields >= 6 + 4 * 11 + 1;
        EXPECT_EQ(readDetail(startOf(DETAIL_1, fields), 1), whole);
        EXPECT_STREQ(test::messages(),
                     whole ? "" : "libzo: [apAllDetailInfoReader:#]: fscanf error, path:f.\n|");
        expectSame(infos[0], partOfRecord1(fields, true));
        EXPECT_EQ(test::openStreams(), 0);
    }
}

TEST(ApAllInfo, detailReaderOfAShortFileKeepsWhatItRead)
{
    EXPECT_FALSE(readDetail(DETAIL_2, 4));
    EXPECT_STREQ(test::messages(), "libzo: [apAllDetailInfoReader:#]: fscanf error, path:f.\n|");
    expectSame(infos[0], detailOf(record2));
    expectSame(infos[1], before);
}

TEST(ApAllInfo, detailReadersReadErrorIsLoggedFromLevelThree)
{
    expectMessages([] { return readDetail("\n", 1); }, false,
                   "libzo: [apAllDetailInfoReader:#]: fscanf error, path:f.\n|",
                   "libzo: [apAllDetailInfoReader:#]: fscanf error, path:f.\n|");
    expectMessages([] { return readDetail(startOf(DETAIL_1, 6), 1); }, false,
                   "libzo: [apAllDetailInfoReader:#]: fscanf error, path:f.\n|",
                   "libzo: [apAllDetailInfoReader:#]: fscanf error, path:f.\n|");
}

TEST(ApAllInfo, detailReaderReportsWhatTheFileSystemFails)
{
    test::failFrom(test::READ, 1);
    EXPECT_FALSE(readDetail(DETAIL_1, 1));
    EXPECT_STREQ(test::messages(), "libzo: [apAllDetailInfoReader:#]: fscanf error, path:f.\n|");
    expectSame(infos[0], before);
    test::clearMessages();
    mkdir("d", 0777);
    EXPECT_FALSE(apAllDetailInfoReader("d", infos, 1, macs));
    EXPECT_STREQ(test::messages(), "libzo: [apAllDetailInfoReader:#]: fscanf error, path:d.\n|");
}

TEST(ApAllInfo, detailReaderOfAMissingFileInformsAndClosesNothing)
{
    prepareInfos();
    expectMessages(
        [] {
            test::failNth(test::CLOSE, 1);
            return apAllDetailInfoReader("missing", infos, 1, macs);
        },
        false, "libzo: [apAllDetailInfoReader:#]: pat file does not exit.\n|", "");
    expectSame(infos[0], before);
    EXPECT_EQ(test::callCount(test::CLOSE), 0);
    EXPECT_FALSE(apAllDetailInfoReader("missing", infos, 0, macs));
    EXPECT_EQ(test::fileSize("missing"), -1);
}

TEST(ApAllInfo, detailReaderReportsAFailedClose)
{
    expectMessages(
        [] {
            test::failNth(test::CLOSE, 1);
            return readDetail(DETAIL_1, 1);
        },
        false, "libzo: [apAllDetailInfoReader:#]: fclose error, path:f.\n|",
        "libzo: [apAllDetailInfoReader:#]: fclose error, path:f.\n|");
    expectSame(infos[0], detailOf(record1));
}

TEST(ApAllInfo, detailReaderReportsAFailedCloseBehindAFailedRead)
{
    test::failNth(test::CLOSE, 1);
    EXPECT_FALSE(readDetail("", 1));
    EXPECT_STREQ(test::messages(), "libzo: [apAllDetailInfoReader:#]: fscanf error, path:f.\n|"
                                   "libzo: [apAllDetailInfoReader:#]: fclose error, path:f.\n|");
}

/* ---- Update: file missing or empty -------------------------------------- */

#define COUNT_MISSING(path) "libzo: [dataLineCounter:#]: Failed to read file: " path "\n|"
#define UPDATE(text) "libzo: [updataSingleApAllInfo:#]: " text "|"
#define INCOME(mac, n) UPDATE("Income AP InfoAll from " mac ", " n " items of old ApInfo")
#define JUST_SAVE UPDATE("Just save apAllInfo")
#define INSERTING UPDATE("income ap info not found, inserting...")

TEST(ApAllInfo, updateOfAMissingFileCreatesItWithTheRecord)
{
    expectMessages(
        [] {
            remove("f");
            const bool saved = update(record1);
            EXPECT_STREQ(test::fileText("f"), LINE_1);
            return saved;
        },
        true,
        COUNT_MISSING("f") INCOME("00AABBCCDD01", "-1")
            JUST_SAVE UPDATE("AP InfoALl has been written to file: f"),
        COUNT_MISSING("f"));
}

TEST(ApAllInfo, updateOfAnEmptyFileWritesTheRecord)
{
    expectMessages(
        [] {
            test::writeFile("f", "");
            const bool saved = update(record2);
            EXPECT_STREQ(test::fileText("f"), LINE_2);
            return saved;
        },
        true, INCOME("00AABBCCDD03", "0") JUST_SAVE UPDATE("AP InfoALl has been written to file: f"), "");
    EXPECT_EQ(test::callCount(test::ALLOCATE), 0);
}

TEST(ApAllInfo, updateReportsThatTheFirstWriteFailed)
{
    expectMessages(
        [] {
            ApInfoAllV2 incoming = record1;
            return updataSingleApAllInfo("no/file", &incoming);
        },
        false,
        COUNT_MISSING("no/file") INCOME("00AABBCCDD01", "-1") JUST_SAVE
        "libzo: [apAllInfoWriter:#]: fopen error, path: no/file.|" UPDATE("Failed to write to file: no/file"),
        COUNT_MISSING("no/file") "libzo: [apAllInfoWriter:#]: fopen error, path: no/file.|" UPDATE(
            "Failed to write to file: no/file"));
}

TEST(ApAllInfo, updateLeavesATruncatedFileWhenAPrintOfTheFirstWriteFails)
{
    test::writeFile("f", "");
    test::failFrom(test::WRITE, 2);
    EXPECT_FALSE(update(record1));
    EXPECT_STREQ(test::fileText("f"), "1 2 00AABBCCDD01 00AABBCCDD02 3 1003 4 1004 5 ");
    EXPECT_STREQ(
        test::messages(), INCOME("00AABBCCDD01", "0") JUST_SAVE
        "libzo: [apAllInfoWriter:#]: fprintf error, path:f.\n|" UPDATE("Failed to write to file: f"));
}

TEST(ApAllInfo, updateReportsThatTheCloseOfTheFirstWriteFailed)
{
    test::failNth(test::CLOSE, 1);
    EXPECT_FALSE(update(record1));
    EXPECT_STREQ(test::fileText("f"), LINE_1);
    EXPECT_STREQ(test::messages(), COUNT_MISSING("f") INCOME("00AABBCCDD01", "-1") JUST_SAVE
                 "libzo: [apAllInfoWriter:#]: fclose error, path:f.\n|" UPDATE("Failed to write to file: f"));
}

TEST(ApAllInfo, updateOverwritesAFileWhoseCountFailedAtTheClose)
{
    test::writeFile("f", LINE_1 LINE_1);
    test::failNth(test::CLOSE, 1);
    EXPECT_TRUE(update(record2));
    EXPECT_STREQ(test::fileText("f"), LINE_2);
    EXPECT_STREQ(test::messages(),
                 "libzo: [dataLineCounter:#]: fclose error, path:f.\n|" INCOME("00AABBCCDD03", "-1")
                     JUST_SAVE UPDATE("AP InfoALl has been written to file: f"));
}

TEST(ApAllInfo, updateOfADirectoryFailsAtTheWrite)
{
    mkdir("f", 0777);
    EXPECT_FALSE(update(record1));
    EXPECT_STREQ(test::messages(), INCOME("00AABBCCDD01", "0") JUST_SAVE
                 "libzo: [apAllInfoWriter:#]: fopen error, path: f.|" UPDATE("Failed to write to file: f"));
}

/* ---- Update: null record ------------------------------------------------ */

TEST(ApAllInfo, updateRefusesANullRecord)
{
    expectMessages(
        [] {
            test::writeFile("f", LINE_1);
            const bool saved = updataSingleApAllInfo("f", nullptr);
            EXPECT_STREQ(test::fileText("f"), LINE_1);
            return saved;
        },
        false, UPDATE("null pIncomeApInfoAll"), UPDATE("null pIncomeApInfoAll"));
    EXPECT_EQ(test::callCount(test::ALLOCATE), 0);
}

TEST(ApAllInfo, updateCountsBeforeItRefusesANullRecord)
{
    EXPECT_FALSE(updataSingleApAllInfo("f", nullptr));
    EXPECT_STREQ(test::messages(), COUNT_MISSING("f") UPDATE("null pIncomeApInfoAll"));
    EXPECT_EQ(test::fileSize("f"), -1);
}

/* ---- Update: key found -------------------------------------------------- */

TEST(ApAllInfo, updateReplacesTheWholeRecord)
{
    ApInfoAllV2 incoming = record2;
    strcpy(incoming.apNodeV2.deviceMAC, "00AABBCCDD01");
    test::writeFile("f", SMALL(MAC_A, "1") LINE_1 SMALL(MAC_B, "2"));
    EXPECT_TRUE(updataSingleApAllInfo("f", &incoming));
    EXPECT_STREQ(test::fileText("f"), SMALL(MAC_A, "1") "201 202 00AABBCCDD01 00AABBCCDD04 203 2003 204 2004 "
                                                        "205 " BANDS_2 "\n" SMALL(MAC_B, "2"));
    EXPECT_STREQ(test::messages(), INCOME("00AABBCCDD01", "3") UPDATE("income ap info found @index 1"));
    EXPECT_EQ(incoming.alg_version.major_ver, 201);
    EXPECT_STREQ(incoming.apNodeV2.deviceMAC, "00AABBCCDD01");
    EXPECT_EQ(test::callCount(test::ALLOCATE), 1);
    EXPECT_EQ(test::callCount(test::GROW), 0);
}

TEST(ApAllInfo, updateFindsTheFirstAndTheLastRecordToo)
{
    test::writeFile("f", SMALL(MAC_A, "1") SMALL(MAC_B, "2") SMALL(MAC_C, "3"));
    EXPECT_TRUE(update(small(MAC_A, 7)));
    EXPECT_STREQ(test::fileText("f"), SMALL(MAC_A, "7") SMALL(MAC_B, "2") SMALL(MAC_C, "3"));
    EXPECT_TRUE(update(small(MAC_C, 9)));
    EXPECT_STREQ(test::fileText("f"), SMALL(MAC_A, "7") SMALL(MAC_B, "2") SMALL(MAC_C, "9"));
    EXPECT_STREQ(test::messages(), INCOME(MAC_A, "3") UPDATE("income ap info found @index 0")
                                       INCOME(MAC_C, "3") UPDATE("income ap info found @index 2"));
}

TEST(ApAllInfo, updateReplacesTheFirstOfTwoRecordsWithTheKey)
{
    test::writeFile("f", SMALL(MAC_B, "1") SMALL(MAC_A, "2") SMALL(MAC_A, "3"));
    EXPECT_TRUE(update(small(MAC_A, 9)));
    EXPECT_STREQ(test::fileText("f"), SMALL(MAC_B, "1") SMALL(MAC_A, "9") SMALL(MAC_A, "3"));
}

TEST(ApAllInfo, updateOfTheOnlyRecordReplacesIt)
{
    test::writeFile("f", LINE_1);
    EXPECT_TRUE(update(small("00AABBCCDD01", 9)));
    EXPECT_STREQ(test::fileText("f"), SMALL("00AABBCCDD01", "9"));
}

TEST(ApAllInfo, updateWithAnUnchangedRecordKeepsTheContent)
{
    test::writeFile("f", LINE_1 LINE_2);
    EXPECT_TRUE(update(record2));
    EXPECT_STREQ(test::fileText("f"), LINE_1 LINE_2);
}

TEST(ApAllInfo, updateFindsAShortKey)
{
    test::writeFile("f", SMALL("          AB", "1"));
    EXPECT_TRUE(update(small("AB", 9)));
    EXPECT_STREQ(test::fileText("f"), SMALL("          AB", "9"));
}

TEST(ApAllInfo, updateCountsALastLineWithoutNewline)
{
    test::writeFile("f", SMALL(MAC_A, "1") "2 0 " MAC_B " FFFFFFFFFFFF 0 0 0 0 0 " ZERO_BANDS);
    EXPECT_TRUE(update(small(MAC_B, 9)));
    EXPECT_STREQ(test::fileText("f"), SMALL(MAC_A, "1") SMALL(MAC_B, "9"));
}

TEST(ApAllInfo, updatesTraceOfAReplacementIsInformational)
{
    expectMessages(
        [] {
            test::writeFile("f", LINE_1);
            return update(record1);
        },
        true, INCOME("00AABBCCDD01", "1") UPDATE("income ap info found @index 0"), "");
}

/* ---- Update: key not found ---------------------------------------------- */

TEST(ApAllInfo, updateAddsANewKeyLast)
{
    ApInfoAllV2 incoming = record2;
    test::writeFile("f", SMALL(MAC_A, "1") LINE_1);
    EXPECT_TRUE(updataSingleApAllInfo("f", &incoming));
    EXPECT_STREQ(test::fileText("f"), SMALL(MAC_A, "1") LINE_1 LINE_2);
    EXPECT_STREQ(test::messages(), INCOME("00AABBCCDD03", "2") INSERTING);
    EXPECT_EQ(test::callCount(test::GROW), 1);
    expectSame(incoming, record2);
}

TEST(ApAllInfo, updateTellsKeysApartByCase)
{
    test::writeFile("f", SMALL(MAC_A, "1"));
    EXPECT_TRUE(update(small("00000000000a", 9)));
    EXPECT_STREQ(test::fileText("f"), SMALL(MAC_A, "1") SMALL("00000000000a", "9"));
}

TEST(ApAllInfo, updateTellsKeysApartByEachCharacter)
{
    test::writeFile("f", SMALL(MAC_A, "1"));
    EXPECT_TRUE(update(small("10000000000A", 2)));
    EXPECT_TRUE(update(small("00000000001A", 3)));
    EXPECT_TRUE(update(small(MAC_B, 4)));
    EXPECT_TRUE(update(small("00000000000", 5)));
    EXPECT_STREQ(test::fileText("f"), SMALL(MAC_A, "1") SMALL("10000000000A", "2") SMALL("00000000001A", "3")
                                          SMALL(MAC_B, "4") SMALL(" 00000000000", "5"));
}

TEST(ApAllInfo, updateNeverFindsAKeyLongerThanAFileHolds)
{
    test::writeFile("f", SMALL(MAC_A, "1"));
    EXPECT_TRUE(update(small(MAC_A "1", 9)));
    EXPECT_STREQ(test::fileText("f"), SMALL(MAC_A, "1") SMALL(MAC_A "1", "9"));
    test::writeFile("f", SMALL(MAC_A, "1"));
    EXPECT_TRUE(update(small(MAC_A "123", 9)));
    EXPECT_STREQ(test::fileText("f"), SMALL(MAC_A, "1") SMALL(MAC_A "123", "9"));
}

TEST(ApAllInfo, updateComparesTheDeviceAndNotItsFather)
{
    test::writeFile("f", SMALL(MAC_A, "1"));
    EXPECT_TRUE(update(small("FFFFFFFFFFFF", 9)));
    EXPECT_STREQ(test::fileText("f"), SMALL(MAC_A, "1") SMALL("FFFFFFFFFFFF", "9"));
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
    EXPECT_EQ(test::fileLines("f"), 258);
    EXPECT_STREQ(test::fileLine("f", 255), "1 0 " MAC_A " FFFFFFFFFFFF 0 0 0 0 0 " ZERO_BANDS);
    EXPECT_STREQ(test::fileLine("f", 256), "4 0 " MAC_B " FFFFFFFFFFFF 0 0 0 0 0 " ZERO_BANDS);
    EXPECT_STREQ(test::fileLine("f", 257), "3 0 " MAC_C " FFFFFFFFFFFF 0 0 0 0 0 " ZERO_BANDS);
    EXPECT_STREQ(test::messages(), INCOME(MAC_B, "256") INSERTING INCOME(MAC_C, "257") INSERTING INCOME(
                                       MAC_B, "258") UPDATE("income ap info found @index 256"));
}

TEST(ApAllInfo, updatesTraceOfAnInsertIsInformational)
{
    expectMessages(
        [] {
            test::writeFile("f", LINE_1);
            return update(record2);
        },
        true, INCOME("00AABBCCDD03", "1") INSERTING, "");
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
        EXPECT_STREQ(test::fileText("f"), text);
        EXPECT_STREQ(test::messages(), "libzo: [apAllInfoOnlyReader:#]: fscanf error, path:f.\n|" UPDATE(
                                           "Failed to read file: f"));
        EXPECT_EQ(test::heldArrays(), 0);
    }
}

TEST(ApAllInfo, updateTurnsALineThatConvertsNothingIntoAZeroRecord)
{
    test::writeFile("f", "garbage\n");
    EXPECT_TRUE(update(record1));
    EXPECT_STREQ(test::fileText("f"), "0 0 "
                                      "            " /* deviceMAC */ " "
                                      "            " /* fatherDeviceMAC */
                                      " 0 0 0 0 0 " ZERO_BANDS "\n" LINE_1);
}

TEST(ApAllInfo, updateReadsOneRecordPerLineOfTheCount)
{
    test::writeFile("f", "1 2 00AABBCCDD01 00AABBCCDD02 3 1003 4 1004 5 " BANDS_1 LINE_2);
    EXPECT_TRUE(update(small(MAC_A, 9)));
    EXPECT_STREQ(test::fileText("f"), LINE_1 SMALL(MAC_A, "9"));
}

TEST(ApAllInfo, updateLosesWhatTheFileGainsBehindItsCount)
{
    test::writeFile("f", SMALL(MAC_A, "1"));
    test::beforeOpen(2, [](const char* path) {
        test::writeFile(path, SMALL(MAC_A, "1") SMALL(MAC_B, "2") SMALL(MAC_C, "3") SMALL(MAC_D, "4"));
    });
    EXPECT_TRUE(update(small(MAC_C, 9)));
    EXPECT_STREQ(test::fileText("f"), SMALL(MAC_A, "1") SMALL(MAC_C, "9"));
    EXPECT_STREQ(test::messages(), INCOME(MAC_C, "1") INSERTING);
}

TEST(ApAllInfo, updateFailsOnAFileThatShrinksBehindItsCount)
{
    test::writeFile("f", SMALL(MAC_A, "1") SMALL(MAC_B, "2"));
    test::beforeOpen(2, [](const char* path) { test::writeFile(path, SMALL(MAC_A, "1")); });
    EXPECT_FALSE(update(small(MAC_A, 9)));
    EXPECT_STREQ(test::fileText("f"), SMALL(MAC_A, "1"));
}

/* ---- Update: failures --------------------------------------------------- */

/* Calls `fail` before an update of a file of two records, and expects the file to stay. */
static bool failedUpdate(const ApInfoAllV2& incoming, void (*fail)())
{
    test::writeFile("f", LINE_1 SMALL(MAC_A, "1"));
    fail();
    const bool saved = update(incoming);
    EXPECT_STREQ(test::fileText("f"), LINE_1 SMALL(MAC_A, "1"));
    return saved;
}

TEST(ApAllInfo, updateReportsAFailedAllocation)
{
    expectMessages([] { return failedUpdate(record1, [] { test::failNth(test::ALLOCATE, 1); }); }, false,
                   INCOME("00AABBCCDD01", "2") UPDATE("Failed to allocate memory for ApInfoAll"),
                   UPDATE("Failed to allocate memory for ApInfoAll"));
}

TEST(ApAllInfo, updateReportsThatTheReadersOpenFailed)
{
    expectMessages(
        [] { return failedUpdate(record1, [] { test::failNth(test::OPEN, 2); }); }, false,
        INCOME("00AABBCCDD01", "2") "libzo: [apAllInfoOnlyReader:#]: pat file does not exit.\n|" UPDATE(
            "Failed to read file: f"),
        UPDATE("Failed to read file: f"));
}

TEST(ApAllInfo, updateReportsThatTheReadersCloseFailed)
{
    expectMessages(
        [] { return failedUpdate(record1, [] { test::failNth(test::CLOSE, 2); }); }, false,
        INCOME("00AABBCCDD01", "2") "libzo: [apAllInfoOnlyReader:#]: fclose error, path:f.\n|" UPDATE(
            "Failed to read file: f"),
        "libzo: [apAllInfoOnlyReader:#]: fclose error, path:f.\n|" UPDATE("Failed to read file: f"));
}

TEST(ApAllInfo, updateReportsAReadError)
{
    test::writeFile("f", LINE_1);
    test::beforeOpen(2, [](const char*) { test::failFrom(test::READ, 1); });
    EXPECT_FALSE(update(record1));
    EXPECT_STREQ(test::fileText("f"), LINE_1);
    EXPECT_STREQ(
        test::messages(),
        INCOME("00AABBCCDD01", "1") "libzo: [apAllInfoOnlyReader:#]: fscanf error, path:f.\n|" UPDATE(
            "Failed to read file: f"));
    EXPECT_EQ(test::heldArrays(), 0);
}

TEST(ApAllInfo, updateGivesUpTheArrayThatCannotGrow)
{
    expectMessages(
        [] {
            const bool saved = failedUpdate(record2, [] { test::failNth(test::GROW, 1); });
            EXPECT_EQ(test::heldArrays(), 1);
            test::freeLeftArrays();
            return saved;
        },
        false, INCOME("00AABBCCDD03", "2") INSERTING UPDATE("failed to reallocte memory."),
        UPDATE("failed to reallocte memory."));
}

TEST(ApAllInfo, updateReportsThatTheOpenOfAReplacementFailed)
{
    expectMessages(
        [] { return failedUpdate(record1, [] { test::failNth(test::OPEN, 3); }); }, false,
        INCOME("00AABBCCDD01", "2")
            UPDATE("income ap info found @index 0") "libzo: [apAllInfoWriter:#]: fopen error, path: "
                                                    "f.|" UPDATE("Failed to save new ap info to file: f"),
        "libzo: [apAllInfoWriter:#]: fopen error, path: f.|" UPDATE("Failed to save new ap info to file: f"));
}

TEST(ApAllInfo, updateReportsThatTheOpenOfAnInsertFailed)
{
    expectMessages(
        [] { return failedUpdate(record2, [] { test::failNth(test::OPEN, 3); }); }, false,
        INCOME("00AABBCCDD03", "2") INSERTING
        "libzo: [apAllInfoWriter:#]: fopen error, path: f.|" UPDATE("Failed to add ap info data to file: f"),
        "libzo: [apAllInfoWriter:#]: fopen error, path: f.|" UPDATE("Failed to add ap info data to file: f"));
}

TEST(ApAllInfo, updateLeavesATruncatedFileWhenAPrintOfAReplacementFails)
{
    test::writeFile("f", LINE_1 LINE_2);
    test::failFrom(test::WRITE, 8);
    EXPECT_FALSE(update(small("00AABBCCDD03", 9)));
    EXPECT_STREQ(test::fileText("f"), LINE_1);
    EXPECT_STREQ(test::messages(),
                 INCOME("00AABBCCDD03", "2")
                     UPDATE("income ap info found @index 1") "libzo: [apAllInfoWriter:#]: fprintf error, "
                                                             "path:f.\n|" UPDATE(
                                                                 "Failed to save new ap info to file: f"));
    EXPECT_EQ(test::heldArrays(), 0);
}

TEST(ApAllInfo, updateLeavesATruncatedFileWhenAPrintOfAnInsertFails)
{
    test::writeFile("f", LINE_1);
    test::failFrom(test::WRITE, 9);
    EXPECT_FALSE(update(record2));
    EXPECT_STREQ(test::fileText("f"), LINE_1 "201 202 00AABBCCDD03 00AABBCCDD04 203 2003 204 2004 205 ");
    EXPECT_STREQ(test::messages(), INCOME("00AABBCCDD03", "1") INSERTING
                 "libzo: [apAllInfoWriter:#]: fprintf error, path:f.\n|" UPDATE(
                     "Failed to add ap info data to file: f"));
    EXPECT_EQ(test::heldArrays(), 0);
}

TEST(ApAllInfo, updateReleasesTheArrayBeforeItReportsAFailedSave)
{
    test::writeFile("f", LINE_1);
    test::failNth(test::OPEN, 3);
    EXPECT_FALSE(update(small("00AABBCCDD01", 9)));
    EXPECT_EQ(test::arraysHeldAtLastMessage(), 0);
    test::failNth(test::OPEN, 3);
    EXPECT_FALSE(update(small(MAC_A, 9)));
    EXPECT_EQ(test::arraysHeldAtLastMessage(), 0);
}

TEST(ApAllInfo, updateReportsThatTheCloseOfAWriteFailed)
{
    test::setLevel(3);
    test::writeFile("f", LINE_1);
    test::failNth(test::CLOSE, 3);
    EXPECT_FALSE(update(small("00AABBCCDD01", 9)));
    EXPECT_STREQ(test::fileText("f"), SMALL("00AABBCCDD01", "9"));
    test::failNth(test::CLOSE, 3);
    EXPECT_FALSE(update(small(MAC_A, 8)));
    EXPECT_STREQ(test::fileText("f"), SMALL("00AABBCCDD01", "9") SMALL(MAC_A, "8"));
    EXPECT_STREQ(test::messages(),
                 "libzo: [apAllInfoWriter:#]: fclose error, path:f.\n|" UPDATE(
                     "Failed to save new ap info to file: f") "libzo: [apAllInfoWriter:#]: fclose error, "
                                                              "path:f.\n|" UPDATE(
                                                                  "Failed to add ap info data to file: f"));
}

TEST(ApAllInfo, theLevelIsReadAfreshAtEveryMessage)
{
    test::writeFile("f", LINE_1);
    test::beforeOpen(2, [](const char*) { test::setLevel(5); });
    EXPECT_TRUE(update(record2));
    EXPECT_STREQ(test::messages(), INCOME("00AABBCCDD03", "1"));
    EXPECT_EQ(g_yra_debug, 5);
}

/* ---- Delete ------------------------------------------------------------- */

#define DELETE(text) "libzo: [deleteSingleApAllInfo:#]: " text "|"

TEST(ApAllInfo, deleteOfTheFirstRecordPutsTheLastInItsPlace)
{
    test::writeFile("f", SMALL(MAC_A, "1") SMALL(MAC_B, "2") SMALL(MAC_C, "3"));
    EXPECT_TRUE(deleteMac(MAC_A));
    EXPECT_STREQ(test::fileText("f"), SMALL(MAC_C, "3") SMALL(MAC_B, "2"));
    EXPECT_STREQ(test::messages(), "");
}

TEST(ApAllInfo, deleteMovesTheWholeLastRecord)
{
    test::writeFile("f", SMALL(MAC_A, "1") LINE_1 SMALL(MAC_B, "2") LINE_2);
    EXPECT_TRUE(deleteMac("00AABBCCDD01"));
    EXPECT_STREQ(test::fileText("f"), SMALL(MAC_A, "1") LINE_2 SMALL(MAC_B, "2"));
}

TEST(ApAllInfo, deleteOfTheLastRecordKeepsTheOthersInOrder)
{
    test::writeFile("f", LINE_1 LINE_2 SMALL(MAC_C, "3"));
    EXPECT_TRUE(deleteMac(MAC_C));
    EXPECT_STREQ(test::fileText("f"), LINE_1 LINE_2);
}

TEST(ApAllInfo, deleteOfTheOnlyRecordLeavesAnEmptyFile)
{
    test::writeFile("f", LINE_1);
    EXPECT_TRUE(deleteMac("00AABBCCDD01"));
    EXPECT_EQ(test::fileSize("f"), 0);
    EXPECT_STREQ(test::messages(), "");
}

TEST(ApAllInfo, deleteRemovesTheFirstOfTwoRecordsWithTheKey)
{
    test::writeFile("f", SMALL(MAC_A, "1") SMALL(MAC_B, "2") SMALL(MAC_B, "3") SMALL(MAC_C, "4"));
    EXPECT_TRUE(deleteMac(MAC_B));
    EXPECT_STREQ(test::fileText("f"), SMALL(MAC_A, "1") SMALL(MAC_C, "4") SMALL(MAC_B, "3"));
    EXPECT_TRUE(deleteMac(MAC_B));
    EXPECT_STREQ(test::fileText("f"), SMALL(MAC_A, "1") SMALL(MAC_C, "4"));
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
    EXPECT_EQ(test::fileLines("f"), 299);
    EXPECT_STREQ(test::fileLine("f", 297), "1 0 " MAC_A " FFFFFFFFFFFF 0 0 0 0 0 " ZERO_BANDS);
    EXPECT_STREQ(test::fileLine("f", 298), "3 0 " MAC_C " FFFFFFFFFFFF 0 0 0 0 0 " ZERO_BANDS);
}

TEST(ApAllInfo, deleteFindsAShortKey)
{
    test::writeFile("f", SMALL("          AB", "1") SMALL(MAC_B, "2"));
    EXPECT_TRUE(deleteMac("AB"));
    EXPECT_STREQ(test::fileText("f"), SMALL(MAC_B, "2"));
}

TEST(ApAllInfo, deleteLeavesTheFileWhenNoKeyMatches)
{
    static const char* const keys[] = {MAC_D,     "00000000000b", "0000000000",   "10000000000A",
                                       MAC_A "1", MAC_A "123",    "FFFFFFFFFFFF", ""};
    for (const char* key : keys) {
        test::clearMessages();
        test::writeFile("f", SMALL(MAC_A, "1") SMALL(MAC_B, "2"));
        EXPECT_FALSE(deleteMac(key));
        EXPECT_STREQ(test::fileText("f"), SMALL(MAC_A, "1") SMALL(MAC_B, "2"));
        EXPECT_STREQ(test::messages(), DELETE("Cannot find the mac in the ap info."));
        EXPECT_EQ(test::heldArrays(), 0);
    }
}

TEST(ApAllInfo, deleteWithoutAMatchDoesNotWrite)
{
    test::writeFile("f", "  1 0 " MAC_A " FFFFFFFFFFFF 0 0 0 0 0 " ZERO_BANDS);
    EXPECT_FALSE(deleteMac(MAC_B));
    EXPECT_STREQ(test::fileText("f"), "  1 0 " MAC_A " FFFFFFFFFFFF 0 0 0 0 0 " ZERO_BANDS);
}

TEST(ApAllInfo, deletesMissingKeyIsLoggedFromLevelThree)
{
    expectMessages(
        [] {
            test::writeFile("f", LINE_1);
            return deleteMac(MAC_A);
        },
        false, DELETE("Cannot find the mac in the ap info."), DELETE("Cannot find the mac in the ap info."));
}

TEST(ApAllInfo, deleteFindsNothingInAnEmptyFile)
{
    test::writeFile("f", "");
    EXPECT_FALSE(deleteMac(MAC_A));
    EXPECT_STREQ(test::messages(), DELETE("Cannot find the mac in the ap info."));
    EXPECT_EQ(test::fileSize("f"), 0);
    EXPECT_FALSE(deleteMac(""));
}

TEST(ApAllInfo, deleteFindsNothingInADirectory)
{
    mkdir("f", 0777);
    EXPECT_FALSE(deleteMac(MAC_A));
    EXPECT_STREQ(test::messages(), DELETE("Cannot find the mac in the ap info."));
}

TEST(ApAllInfo, deleteInAMissingFileFailsAtTheAllocation)
{
    expectMessages([] { return deleteMac(MAC_A); }, false,
                   COUNT_MISSING("f") DELETE("Failed to allocate memory for ApInfoAll"),
                   COUNT_MISSING("f") DELETE("Failed to allocate memory for ApInfoAll"));
    EXPECT_EQ(test::fileSize("f"), -1);
}

TEST(ApAllInfo, deleteFailsWhenTheCountFailsAtTheClose)
{
    test::writeFile("f", LINE_1);
    test::failNth(test::CLOSE, 1);
    EXPECT_FALSE(deleteMac("00AABBCCDD01"));
    EXPECT_STREQ(test::fileText("f"), LINE_1);
    EXPECT_STREQ(test::messages(), "libzo: [dataLineCounter:#]: fclose error, path:f.\n|" DELETE(
                                       "Failed to allocate memory for ApInfoAll"));
}

/* Calls `fail` before a delete in a file of two records, and expects the file to stay. */
static bool failedDelete(void (*fail)())
{
    test::writeFile("f", LINE_1 LINE_2);
    fail();
    const bool deleted = deleteMac("00AABBCCDD01");
    EXPECT_STREQ(test::fileText("f"), LINE_1 LINE_2);
    EXPECT_EQ(test::heldArrays(), 0);
    return deleted;
}

TEST(ApAllInfo, deleteReportsAFailedAllocation)
{
    expectMessages([] { return failedDelete([] { test::failNth(test::ALLOCATE, 1); }); }, false,
                   DELETE("Failed to allocate memory for ApInfoAll"),
                   DELETE("Failed to allocate memory for ApInfoAll"));
}

TEST(ApAllInfo, deleteReportsThatTheReadersOpenFailed)
{
    expectMessages(
        [] { return failedDelete([] { test::failNth(test::OPEN, 2); }); }, false,
        "libzo: [apAllInfoOnlyReader:#]: pat file does not exit.\n|" DELETE("Failed to read file: f"),
        DELETE("Failed to read file: f"));
}

TEST(ApAllInfo, deleteReportsThatTheReadersCloseFailed)
{
    expectMessages(
        [] { return failedDelete([] { test::failNth(test::CLOSE, 2); }); }, false,
        "libzo: [apAllInfoOnlyReader:#]: fclose error, path:f.\n|" DELETE("Failed to read file: f"),
        "libzo: [apAllInfoOnlyReader:#]: fclose error, path:f.\n|" DELETE("Failed to read file: f"));
}

TEST(ApAllInfo, deleteReportsThatTheWritersOpenFailed)
{
    expectMessages(
        [] { return failedDelete([] { test::failNth(test::OPEN, 3); }); }, false,
        "libzo: [apAllInfoWriter:#]: fopen error, path: f.|" DELETE("Failed to add ap info data to file: f"),
        "libzo: [apAllInfoWriter:#]: fopen error, path: f.|" DELETE("Failed to add ap info data to file: f"));
}

TEST(ApAllInfo, deleteReportsThatTheWritersCloseFailed)
{
    test::writeFile("f", LINE_1);
    test::failNth(test::CLOSE, 3);
    EXPECT_FALSE(deleteMac("00AABBCCDD01"));
    EXPECT_EQ(test::fileSize("f"), 0);
    EXPECT_STREQ(test::messages(), "libzo: [apAllInfoWriter:#]: fclose error, path:f.\n|" DELETE(
                                       "Failed to add ap info data to file: f"));
}

TEST(ApAllInfo, deleteReleasesTheArrayBeforeItReportsAFailure)
{
    test::writeFile("f", LINE_1);
    test::failNth(test::OPEN, 3);
    EXPECT_FALSE(deleteMac("00AABBCCDD01"));
    EXPECT_EQ(test::arraysHeldAtLastMessage(), 0);
    EXPECT_FALSE(deleteMac(MAC_A));
    EXPECT_EQ(test::arraysHeldAtLastMessage(), 0);
}

TEST(ApAllInfo, deleteLeavesATruncatedFileWhenAPrintFails)
{
    test::writeFile("f", LINE_1 SMALL(MAC_A, "1") LINE_2);
    test::failFrom(test::WRITE, 8);
    EXPECT_FALSE(deleteMac("00AABBCCDD01"));
    EXPECT_STREQ(test::fileText("f"), LINE_2);
    EXPECT_STREQ(test::messages(), "libzo: [apAllInfoWriter:#]: fprintf error, path:f.\n|" DELETE(
                                       "Failed to add ap info data to file: f"));
    EXPECT_EQ(test::heldArrays(), 0);
}

TEST(ApAllInfo, deleteFailsOnAFileThatHoldsFewerRecordsThanLines)
{
    test::writeFile("f", LINE_1 "\n");
    EXPECT_FALSE(deleteMac("00AABBCCDD01"));
    EXPECT_STREQ(test::fileText("f"), LINE_1 "\n");
    EXPECT_STREQ(test::messages(),
                 "libzo: [apAllInfoOnlyReader:#]: fscanf error, path:f.\n|" DELETE("Failed to read file: f"));
    EXPECT_EQ(test::heldArrays(), 0);
}

TEST(ApAllInfo, deleteReportsAReadError)
{
    test::writeFile("f", LINE_1);
    test::beforeOpen(2, [](const char*) { test::failFrom(test::READ, 1); });
    EXPECT_FALSE(deleteMac("00AABBCCDD01"));
    EXPECT_STREQ(test::fileText("f"), LINE_1);
    EXPECT_STREQ(test::messages(),
                 "libzo: [apAllInfoOnlyReader:#]: fscanf error, path:f.\n|" DELETE("Failed to read file: f"));
}

TEST(ApAllInfo, deleteLosesWhatTheFileGainsBehindItsCount)
{
    test::writeFile("f", SMALL(MAC_A, "1") SMALL(MAC_B, "2"));
    test::beforeOpen(2, [](const char* path) {
        test::writeFile(path, SMALL(MAC_A, "1") SMALL(MAC_B, "2") SMALL(MAC_C, "3") SMALL(MAC_D, "4"));
    });
    EXPECT_TRUE(deleteMac(MAC_A));
    EXPECT_STREQ(test::fileText("f"), SMALL(MAC_B, "2"));
}

TEST(ApAllInfo, deleteFindsNothingInAFileThatWasEmptyWhenCounted)
{
    test::writeFile("f", "");
    test::beforeOpen(2, [](const char* path) { test::writeFile(path, SMALL(MAC_A, "1")); });
    EXPECT_FALSE(deleteMac(MAC_A));
    EXPECT_STREQ(test::fileText("f"), SMALL(MAC_A, "1"));
}
