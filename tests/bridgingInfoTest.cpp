/* SPDX-License-Identifier: Apache-2.0 */
#include "testing.h"

#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

#define FIRST                                                                             \
    "112233445566 aabbccddeeff 11 1001 2001 21 31 12 1002 2002 22 32 13 1003 2003 23 33 " \
    "14 1004 2004 24 34 15 1005 2005 25 35 \n"
#define SECOND                                                                            \
    "223344556677 bbccddeeff00 41 3001 4001 51 61 42 3002 4002 52 62 43 3003 4003 53 63 " \
    "44 3004 4004 54 64 45 3005 4005 55 65 \n"
#define THIRD                                                                             \
    "334455667788 ccddeeff0011 71 5001 6001 81 91 72 5002 6002 82 92 73 5003 6003 83 93 " \
    "74 5004 6004 84 94 75 5005 6005 85 95 \n"
#define EMPTY_RECORD \
    "            "   \
    " "              \
    "            "   \
    " 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 \n"

static const BridgingNodeV2 first = {"112233445566",
                                     "aabbccddeeff",
                                     {11, 12, 13, 14, 15},
                                     {1001, 1002, 1003, 1004, 1005},
                                     {2001, 2002, 2003, 2004, 2005},
                                     {21, 22, 23, 24, 25},
                                     {31, 32, 33, 34, 35}};
static const BridgingNodeV2 second = {"223344556677",
                                      "bbccddeeff00",
                                      {41, 42, 43, 44, 45},
                                      {3001, 3002, 3003, 3004, 3005},
                                      {4001, 4002, 4003, 4004, 4005},
                                      {51, 52, 53, 54, 55},
                                      {61, 62, 63, 64, 65}};
static const BridgingNodeV2 third = {"334455667788",
                                     "ccddeeff0011",
                                     {71, 72, 73, 74, 75},
                                     {5001, 5002, 5003, 5004, 5005},
                                     {6001, 6002, 6003, 6004, 6005},
                                     {81, 82, 83, 84, 85},
                                     {91, 92, 93, 94, 95}};

static bool same(const BridgingNodeV2& a, const BridgingNodeV2& b)
{
    return strcmp(a.deviceMAC, b.deviceMAC) == 0 && strcmp(a.fatherDeviceMAC, b.fatherDeviceMAC) == 0 &&
           memcmp(a.bridgingRssi, b.bridgingRssi, sizeof a.bridgingRssi) == 0 &&
           memcmp(a.bridgingRxRate, b.bridgingRxRate, sizeof a.bridgingRxRate) == 0 &&
           memcmp(a.bridgingTxRate, b.bridgingTxRate, sizeof a.bridgingTxRate) == 0 &&
           memcmp(a.bridgingRxMcs, b.bridgingRxMcs, sizeof a.bridgingRxMcs) == 0 &&
           memcmp(a.bridgingTxMcs, b.bridgingTxMcs, sizeof a.bridgingTxMcs) == 0;
}

/* Marks memory, so that isMarked() tells whether anything has been stored there. */
static void mark(void* bytes, size_t size)
{
    memset(bytes, 0x55, size);
}

static bool isMarked(const void* bytes, size_t size)
{
    const char* at = static_cast<const char*>(bytes);
    for (size_t i = 0; i < size; ++i) {
        if (at[i] != 0x55)
            return false;
    }
    return true;
}

/* The lines of the nodes `from` to `to`, each with a father of its own, and `last` behind them. */
static const char* nodeLines(int from, int to, const char* last)
{
    static char text[64 * 1024];
    size_t length = 0;
    for (int i = from; i <= to; ++i) {
        const int added =
            snprintf(text + length, sizeof text - length,
                     "%012d f%011d %d 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 \n", i, i, i % 256);
        length += static_cast<size_t>(added);
    }
    snprintf(text + length, sizeof text - length, "%s", last);
    return text;
}

/* ---- Hooks for what happens between two openings ------------------------ */

static void failReads(const char*)
{
    test::failFrom(test::READ, 1);
}
static void failSecondReads(const char*)
{
    test::failFrom(test::READ, 2);
}
static void keepFirstAlone(const char* path)
{
    test::writeFile(path, FIRST);
}
static void growToThree(const char* path)
{
    test::writeFile(path, FIRST SECOND THIRD);
}
static void growToMany(const char* path)
{
    test::writeFile(path, nodeLines(1, 200, ""));
}
static void turnIntoDirectory(const char* path)
{
    unlink(path);
    mkdir(path, 0777);
}

/* ---- Writer ------------------------------------------------------------- */

TEST(BridgingInfo, writerPutsEveryFieldInItsPlace)
{
    BridgingNodeV2 record = first;
    EXPECT_TRUE(bridgingApNodeInfoWriter("bridging", &record, 1));
    EXPECT_STREQ(test::fileText("bridging"), FIRST);
    EXPECT_STREQ(test::messages(), "");
    EXPECT_TRUE(same(record, first));
}

TEST(BridgingInfo, writerPutsTheMetricsOfOneBandTogether)
{
    BridgingNodeV2 record = {"112233445566", "aabbccddeeff", {40}, {866}, {780}, {9}, {8}};
    EXPECT_TRUE(bridgingApNodeInfoWriter("bridging", &record, 1));
    EXPECT_STREQ(test::fileText("bridging"),
                 "112233445566 aabbccddeeff 40 866 780 9 8 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 \n");
}

TEST(BridgingInfo, writerPrintsTheLargestValuesWhole)
{
    BridgingNodeV2 record = {"ffffffffffff",
                             "eeeeeeeeeeee",
                             {255, 255, 255, 255, 255},
                             {65535, 65535, 65535, 65535, 65535},
                             {65535, 65535, 65535, 65535, 65535},
                             {255, 255, 255, 255, 255},
                             {255, 255, 255, 255, 255}};
    EXPECT_TRUE(bridgingApNodeInfoWriter("bridging", &record, 1));
    EXPECT_STREQ(test::fileText("bridging"),
                 "ffffffffffff eeeeeeeeeeee 255 65535 65535 255 255 255 65535 65535 255 255 "
                 "255 65535 65535 255 255 255 65535 65535 255 255 255 65535 65535 255 255 \n");
    BridgingNodeV2 loaded = {};
    EXPECT_TRUE(bridgingApNodeInfoReader("bridging", &loaded));
    EXPECT_TRUE(same(loaded, record));
}

TEST(BridgingInfo, writerAlignsShortMacsToTheRight)
{
    BridgingNodeV2 record = {"abc", "", {1}, {2}, {3}, {4}, {5}};
    EXPECT_TRUE(bridgingApNodeInfoWriter("bridging", &record, 1));
    EXPECT_STREQ(test::fileText("bridging"),
                 "         abc              1 2 3 4 5 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 \n");
}

TEST(BridgingInfo, writerPrintsLongMacsWhole)
{
    BridgingNodeV2 record = {"112233445566778", "aabbccddeeff001", {1}, {2}, {3}, {4}, {5}};
    EXPECT_TRUE(bridgingApNodeInfoWriter("bridging", &record, 1));
    EXPECT_STREQ(test::fileText("bridging"),
                 "112233445566778 aabbccddeeff001 1 2 3 4 5 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 \n");
}

TEST(BridgingInfo, writerWritesTheFirstRecordsInOrder)
{
    BridgingNodeV2 records[] = {first, second, third};
    EXPECT_TRUE(bridgingApNodeInfoWriter("bridging", records, 2));
    EXPECT_STREQ(test::fileText("bridging"), FIRST SECOND);
    EXPECT_TRUE(bridgingApNodeInfoWriter("bridging", records, 3));
    EXPECT_STREQ(test::fileText("bridging"), FIRST SECOND THIRD);
}

TEST(BridgingInfo, writerReplacesTheWholeFile)
{
    test::writeFile("bridging", FIRST SECOND THIRD "and more\n");
    BridgingNodeV2 record = second;
    EXPECT_TRUE(bridgingApNodeInfoWriter("bridging", &record, 1));
    EXPECT_STREQ(test::fileText("bridging"), SECOND);
}

TEST(BridgingInfo, writerOfNoRecordsLeavesAnEmptyFile)
{
    const int counts[] = {0, -1, INT_MIN};
    for (const int cnt : counts) {
        test::writeFile("bridging", FIRST);
        BridgingNodeV2 record = second;
        EXPECT_TRUE(bridgingApNodeInfoWriter("bridging", &record, cnt));
        EXPECT_EQ(test::fileSize("bridging"), 0);
    }
    EXPECT_STREQ(test::messages(), "");
}

TEST(BridgingInfo, writerReportsAFailedOpen)
{
    BridgingNodeV2 record = first;
    test::setLevel(3);
    EXPECT_FALSE(bridgingApNodeInfoWriter("no/bridging", &record, 1));
    EXPECT_STREQ(test::messages(), "libzo: [bridgingApNodeInfoWriter:#]: fopen error, path: no/bridging.|");
    test::clearMessages();
    test::setLevel(2);
    EXPECT_FALSE(bridgingApNodeInfoWriter("no/bridging", &record, 1));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(BridgingInfo, writerThatCannotOpenLeavesTheFileAlone)
{
    test::writeFile("bridging", SECOND);
    BridgingNodeV2 record = first;
    test::failNth(test::OPEN, 1);
    EXPECT_FALSE(bridgingApNodeInfoWriter("bridging", &record, 1));
    EXPECT_STREQ(test::messages(), "libzo: [bridgingApNodeInfoWriter:#]: fopen error, path: bridging.|");
    EXPECT_STREQ(test::fileText("bridging"), SECOND);
}

TEST(BridgingInfo, writerStopsAtTheFirstFailedPrint)
{
    static const char* const prints[] = {"112233445566 aabbccddeeff ",
                                         "11 1001 2001 21 31 ",
                                         "12 1002 2002 22 32 ",
                                         "13 1003 2003 23 33 ",
                                         "14 1004 2004 24 34 ",
                                         "15 1005 2005 25 35 ",
                                         "\n",
                                         "223344556677 bbccddeeff00 ",
                                         "41 3001 4001 51 61 ",
                                         "42 3002 4002 52 62 ",
                                         "43 3003 4003 53 63 ",
                                         "44 3004 4004 54 64 ",
                                         "45 3005 4005 55 65 ",
                                         "\n"};
    BridgingNodeV2 records[] = {first, second};
    char before[512] = "";
    for (int k = 1; k <= 14; ++k) {
        test::clearMessages();
        test::failNth(test::WRITE, k);
        EXPECT_FALSE(bridgingApNodeInfoWriter("bridging", records, 2));
        EXPECT_STREQ(test::messages(),
                     "libzo: [bridgingApNodeInfoWriter:#]: fprintf error, path:bridging.\n|");
        EXPECT_STREQ(test::fileText("bridging"), before);
        EXPECT_EQ(test::openStreams(), 0);
        strcat(before, prints[k - 1]);
    }
    test::clearMessages();
    test::failNth(test::WRITE, 15);
    EXPECT_TRUE(bridgingApNodeInfoWriter("bridging", records, 2));
    EXPECT_STREQ(test::messages(), "");
    EXPECT_STREQ(test::fileText("bridging"), before);
}

TEST(BridgingInfo, failedPrintIsAnError)
{
    BridgingNodeV2 record = first;
    test::failFrom(test::WRITE, 1);
    test::setLevel(2);
    EXPECT_FALSE(bridgingApNodeInfoWriter("bridging", &record, 1));
    EXPECT_EQ(test::messageCount(), 0);
    test::setLevel(3);
    EXPECT_FALSE(bridgingApNodeInfoWriter("bridging", &record, 1));
    EXPECT_EQ(test::messageCount(), 1);
}

TEST(BridgingInfo, writerIgnoresAFailedClose)
{
    BridgingNodeV2 record = first;
    test::failFrom(test::CLOSE, 1);
    EXPECT_TRUE(bridgingApNodeInfoWriter("bridging", &record, 1));
    EXPECT_STREQ(test::messages(), "");
    EXPECT_STREQ(test::fileText("bridging"), FIRST);
}

TEST(BridgingInfo, writerReportsNoFailedCloseAfterAFailedPrint)
{
    BridgingNodeV2 record = first;
    test::failNth(test::WRITE, 3);
    test::failFrom(test::CLOSE, 1);
    EXPECT_FALSE(bridgingApNodeInfoWriter("bridging", &record, 1));
    EXPECT_STREQ(test::messages(), "libzo: [bridgingApNodeInfoWriter:#]: fprintf error, path:bridging.\n|");
}

TEST(BridgingInfo, writerNoticesAFullDeviceWhileItPrints)
{
    static BridgingNodeV2 records[400];
    EXPECT_FALSE(bridgingApNodeInfoWriter("/dev/full", records, 400));
    EXPECT_STREQ(test::messages(), "libzo: [bridgingApNodeInfoWriter:#]: fprintf error, path:/dev/full.\n|");
}

TEST(BridgingInfo, writerOverlooksAFullDeviceThatOnlyTheCloseMeets)
{
    BridgingNodeV2 record = first;
    EXPECT_TRUE(bridgingApNodeInfoWriter("/dev/full", &record, 1));
    EXPECT_STREQ(test::messages(), "");
}

/* ---- Reader ------------------------------------------------------------- */

TEST(BridgingInfo, readerOfAnEmptyFileReadsNothingAndSucceeds)
{
    test::writeFile("bridging", "");
    BridgingNodeV2 record;
    mark(&record, sizeof record);
    EXPECT_TRUE(bridgingApNodeInfoReader("bridging", &record));
    EXPECT_TRUE(isMarked(&record, sizeof record));
    EXPECT_STREQ(test::messages(), "");
}

TEST(BridgingInfo, readerFillsEveryField)
{
    test::writeFile("bridging", FIRST SECOND THIRD);
    BridgingNodeV2 records[4];
    mark(records, sizeof records);
    EXPECT_TRUE(bridgingApNodeInfoReader("bridging", records));
    EXPECT_TRUE(same(records[0], first));
    EXPECT_TRUE(same(records[1], second));
    EXPECT_TRUE(same(records[2], third));
    EXPECT_TRUE(isMarked(&records[3], sizeof records[3]));
    EXPECT_STREQ(test::messages(), "");
    EXPECT_STREQ(test::fileText("bridging"), FIRST SECOND THIRD);
}

TEST(BridgingInfo, readerCountsTheFileBeforeItOpensIt)
{
    test::writeFile("bridging", FIRST);
    BridgingNodeV2 record;
    EXPECT_TRUE(bridgingApNodeInfoReader("bridging", &record));
    EXPECT_EQ(test::callCount(test::OPEN), 2);
    EXPECT_EQ(test::callCount(test::CLOSE), 2);
}

TEST(BridgingInfo, readerReportsAMissingFileAsInformation)
{
    BridgingNodeV2 record;
    mark(&record, sizeof record);
    EXPECT_FALSE(bridgingApNodeInfoReader("bridging", &record));
    EXPECT_STREQ(test::messages(), "libzo: [dataLineCounter:#]: Failed to read file: bridging\n|"
                                   "libzo: [bridgingApNodeInfoReader:#]: pat file does not exit.\n|");
    EXPECT_TRUE(isMarked(&record, sizeof record));
    EXPECT_EQ(test::callCount(test::CLOSE), 0);
    EXPECT_STREQ(test::fileText("bridging"), "<missing>");
}

TEST(BridgingInfo, missingFileOfTheReaderIsLeftToTheCounterBelowInformation)
{
    BridgingNodeV2 record;
    test::setLevel(5);
    EXPECT_FALSE(bridgingApNodeInfoReader("bridging", &record));
    EXPECT_STREQ(test::messages(), "libzo: [dataLineCounter:#]: Failed to read file: bridging\n|");
    test::clearMessages();
    test::setLevel(2);
    EXPECT_FALSE(bridgingApNodeInfoReader("bridging", &record));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(BridgingInfo, readerWhoseOwnOpenFailsLogsInformationAlone)
{
    test::writeFile("bridging", FIRST);
    BridgingNodeV2 record;
    mark(&record, sizeof record);
    test::failNth(test::OPEN, 2);
    EXPECT_FALSE(bridgingApNodeInfoReader("bridging", &record));
    EXPECT_STREQ(test::messages(), "libzo: [bridgingApNodeInfoReader:#]: pat file does not exit.\n|");
    test::clearMessages();
    test::setLevel(5);
    test::failNth(test::OPEN, 2);
    EXPECT_FALSE(bridgingApNodeInfoReader("bridging", &record));
    EXPECT_EQ(test::messageCount(), 0);
    EXPECT_TRUE(isMarked(&record, sizeof record));
}

TEST(BridgingInfo, readerOfAnUncountedFileReadsNothingAndSucceeds)
{
    test::writeFile("bridging", FIRST);
    BridgingNodeV2 record;
    mark(&record, sizeof record);
    test::failNth(test::OPEN, 1);
    EXPECT_TRUE(bridgingApNodeInfoReader("bridging", &record));
    EXPECT_STREQ(test::messages(), "libzo: [dataLineCounter:#]: Failed to read file: bridging\n|");
    test::clearMessages();
    test::failNth(test::CLOSE, 1);
    EXPECT_TRUE(bridgingApNodeInfoReader("bridging", &record));
    EXPECT_STREQ(test::messages(), "libzo: [dataLineCounter:#]: fclose error, path:bridging.\n|");
    EXPECT_TRUE(isMarked(&record, sizeof record));
}

TEST(BridgingInfo, readerTakesBlanksAndLineEndsAlike)
{
    test::writeFile("bridging",
                    "112233445566\naabbccddeeff 11 1001 2001 21 31 12 1002 2002 22 32 13 1003 2003 "
                    "23 33 14 1004 2004 24 34 15 1005 2005 25 35 223344556677 bbccddeeff00 41 3001 "
                    "4001   51\t61 42 3002 4002 52 62 43 3003 4003 53 63 44 3004 4004 54 64 45 3005 "
                    "4005 55 65");
    BridgingNodeV2 records[2];
    EXPECT_TRUE(bridgingApNodeInfoReader("bridging", records));
    EXPECT_TRUE(same(records[0], first));
    EXPECT_TRUE(same(records[1], second));
}

TEST(BridgingInfo, readerReadsOneRecordForEachLine)
{
    test::writeFile("bridging",
                    "1 a 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 2 b 2 2 2 2 2 2 2 2 2 2 2 2 2 2 2 "
                    "2 2 2 2 2 2 2 2 2 2 2\n");
    BridgingNodeV2 records[2];
    mark(records, sizeof records);
    EXPECT_TRUE(bridgingApNodeInfoReader("bridging", records));
    EXPECT_STREQ(records[0].deviceMAC, "1");
    EXPECT_STREQ(records[0].fatherDeviceMAC, "a");
    EXPECT_TRUE(isMarked(&records[1], sizeof records[1]));
}

TEST(BridgingInfo, readerFailsWhereALineIsBlank)
{
    test::writeFile("bridging", FIRST "\n" SECOND);
    BridgingNodeV2 records[3];
    mark(records, sizeof records);
    test::setLevel(3);
    EXPECT_FALSE(bridgingApNodeInfoReader("bridging", records));
    EXPECT_STREQ(test::messages(), "libzo: [bridgingApNodeInfoReader:#]: fscanf error, path:bridging.\n|");
    EXPECT_TRUE(same(records[0], first));
    EXPECT_TRUE(same(records[1], second));
    EXPECT_TRUE(isMarked(&records[2], sizeof records[2]));
    test::clearMessages();
    test::setLevel(2);
    EXPECT_FALSE(bridgingApNodeInfoReader("bridging", records));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(BridgingInfo, readerCountsAnOverlongLineTwice)
{
    char text[2048];
    snprintf(text, sizeof text, "%.*s%1000s\n", static_cast<int>(sizeof FIRST) - 2, FIRST, "");
    test::writeFile("bridging", text);
    BridgingNodeV2 records[2];
    mark(records, sizeof records);
    EXPECT_FALSE(bridgingApNodeInfoReader("bridging", records));
    EXPECT_STREQ(test::messages(), "libzo: [bridgingApNodeInfoReader:#]: fscanf error, path:bridging.\n|");
    EXPECT_TRUE(same(records[0], first));
    EXPECT_TRUE(isMarked(&records[1], sizeof records[1]));
}

TEST(BridgingInfo, readerFailsWhereAGroupStartsAtTheEnd)
{
    static const char* const cut[] = {
        "112233445566",
        "112233445566 aabbccddeeff",
        "112233445566 aabbccddeeff 11 1001 2001 21 31 ",
        "112233445566 aabbccddeeff 11 1001 2001 21 31 12 1002 2002 22 32",
        "112233445566 aabbccddeeff 11 1001 2001 21 31 12 1002 2002 22 32 13 1003 2003 23 33\n",
        ("112233445566 aabbccddeeff 11 1001 2001 21 31 12 1002 2002 22 32 13 1003 2003 23 33 14 1004 2004 24 "
         "34 "),
        "112233445566 aabbccddeeff 11 1001 2001 21 31 12 1002 2002 22 32 13 1003 2003 23 33 14 1004"};
    for (const char* text : cut) {
        test::writeFile("bridging", text);
        test::clearMessages();
        BridgingNodeV2 record;
        mark(&record, sizeof record);
        EXPECT_FALSE(bridgingApNodeInfoReader("bridging", &record));
        EXPECT_STREQ(test::messages(),
                     "libzo: [bridgingApNodeInfoReader:#]: fscanf error, path:bridging.\n|");
        EXPECT_STREQ(record.deviceMAC, "112233445566");
        EXPECT_EQ(record.bridgingRssi[4], 0x55);
        EXPECT_EQ(test::openStreams(), 0);
    }
}

TEST(BridgingInfo, readerKeepsWhatItReadBeforeTheFailure)
{
    test::writeFile("bridging", "112233445566 aabbccddeeff 11 1001 2001 21 31 12 1002 ");
    BridgingNodeV2 record;
    mark(&record, sizeof record);
    EXPECT_FALSE(bridgingApNodeInfoReader("bridging", &record));
    EXPECT_STREQ(record.fatherDeviceMAC, "aabbccddeeff");
    EXPECT_EQ(record.bridgingTxMcs[0], 31);
    EXPECT_EQ(record.bridgingRssi[1], 12);
    EXPECT_EQ(record.bridgingRxRate[1], 1002);
    EXPECT_EQ(record.bridgingTxRate[1], 0x5555);
    EXPECT_EQ(record.bridgingRssi[2], 0x55);
}

TEST(BridgingInfo, readerAcceptsALastGroupThatIsCutShort)
{
    test::writeFile("bridging",
                    "112233445566 aabbccddeeff 11 1001 2001 21 31 12 1002 2002 22 32 13 1003 2003 23 33 "
                    "14 1004 2004 24 34 15");
    BridgingNodeV2 record;
    mark(&record, sizeof record);
    EXPECT_TRUE(bridgingApNodeInfoReader("bridging", &record));
    EXPECT_STREQ(test::messages(), "");
    EXPECT_EQ(record.bridgingRssi[4], 15);
    EXPECT_EQ(record.bridgingRxRate[4], 0x5555);
    EXPECT_EQ(record.bridgingTxRate[4], 0x5555);
    EXPECT_EQ(record.bridgingRxMcs[4], 0x55);
    EXPECT_EQ(record.bridgingTxMcs[4], 0x55);
}

TEST(BridgingInfo, readerFailsWhereTheMacsStartAtTheEnd)
{
    test::writeFile("bridging", "112233445566 aabbccddeeff 11 1001 2001 21 31 12 1002 2002 22 32\n"
                                "13 1003 2003 23 33 14 1004 2004 24 34 15 1005 2005 25 35 \n");
    BridgingNodeV2 records[2];
    mark(records, sizeof records);
    EXPECT_FALSE(bridgingApNodeInfoReader("bridging", records));
    EXPECT_STREQ(test::messages(), "libzo: [bridgingApNodeInfoReader:#]: fscanf error, path:bridging.\n|");
    EXPECT_TRUE(same(records[0], first));
    EXPECT_TRUE(isMarked(&records[1], sizeof records[1]));
}

TEST(BridgingInfo, readerDoesNotDetectAFieldThatIsNoNumber)
{
    test::writeFile("bridging", "112233445566 aabbccddeeff 11 1001 x 21 31 \nbbb 5\n");
    BridgingNodeV2 records[2];
    mark(records, sizeof records);
    EXPECT_TRUE(bridgingApNodeInfoReader("bridging", records));
    EXPECT_STREQ(test::messages(), "");
    EXPECT_EQ(records[0].bridgingRssi[0], 11);
    EXPECT_EQ(records[0].bridgingRxRate[0], 1001);
    EXPECT_EQ(records[0].bridgingTxRate[0], 0x5555);
    EXPECT_EQ(records[0].bridgingTxMcs[0], 0x55);
    EXPECT_EQ(records[0].bridgingRssi[1], 0x55);
    EXPECT_EQ(records[0].bridgingTxMcs[4], 0x55);
    EXPECT_STREQ(records[1].deviceMAC, "x");
    EXPECT_STREQ(records[1].fatherDeviceMAC, "21");
    EXPECT_EQ(records[1].bridgingRssi[0], 31);
    EXPECT_EQ(records[1].bridgingRxRate[0], 0x5555);
}

TEST(BridgingInfo, readerTakesTwelveCharactersOfAMac)
{
    test::writeFile("bridging",
                    "1122334455667788 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23 24 25\n");
    BridgingNodeV2 record;
    EXPECT_TRUE(bridgingApNodeInfoReader("bridging", &record));
    EXPECT_STREQ(record.deviceMAC, "112233445566");
    EXPECT_STREQ(record.fatherDeviceMAC, "7788");
    EXPECT_EQ(record.bridgingRssi[0], 1);
    EXPECT_EQ(record.bridgingTxMcs[4], 25);

    test::writeFile("bridging",
                    "1 aabbccddeeff2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23 24 25 26\n");
    EXPECT_TRUE(bridgingApNodeInfoReader("bridging", &record));
    EXPECT_STREQ(record.deviceMAC, "1");
    EXPECT_STREQ(record.fatherDeviceMAC, "aabbccddeeff");
    EXPECT_EQ(record.bridgingRssi[0], 2);
    EXPECT_EQ(record.bridgingTxMcs[4], 26);
}

TEST(BridgingInfo, readerReportsAFailedClose)
{
    test::writeFile("bridging", FIRST);
    BridgingNodeV2 record = {};
    test::setLevel(3);
    test::failNth(test::CLOSE, 2);
    EXPECT_FALSE(bridgingApNodeInfoReader("bridging", &record));
    EXPECT_STREQ(test::messages(), "libzo: [bridgingApNodeInfoReader:#]: fclose error, path:bridging.\n|");
    EXPECT_TRUE(same(record, first));
    test::clearMessages();
    test::setLevel(2);
    test::failNth(test::CLOSE, 2);
    EXPECT_FALSE(bridgingApNodeInfoReader("bridging", &record));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(BridgingInfo, readerReportsAFailedCloseAfterAFailedScanToo)
{
    test::writeFile("bridging", "\n");
    BridgingNodeV2 record;
    test::failNth(test::CLOSE, 2);
    EXPECT_FALSE(bridgingApNodeInfoReader("bridging", &record));
    EXPECT_STREQ(test::messages(), "libzo: [bridgingApNodeInfoReader:#]: fscanf error, path:bridging.\n|"
                                   "libzo: [bridgingApNodeInfoReader:#]: fclose error, path:bridging.\n|");
}

TEST(BridgingInfo, readerReportsAReadError)
{
    test::writeFile("bridging", FIRST);
    BridgingNodeV2 record;
    mark(&record, sizeof record);
    test::beforeOpen(2, failReads);
    EXPECT_FALSE(bridgingApNodeInfoReader("bridging", &record));
    EXPECT_STREQ(test::messages(), "libzo: [bridgingApNodeInfoReader:#]: fscanf error, path:bridging.\n|");
    EXPECT_TRUE(isMarked(&record, sizeof record));
}

TEST(BridgingInfo, readerReportsAReadErrorInsideARecord)
{
    test::writeFile("bridging", FIRST SECOND);
    BridgingNodeV2 records[2];
    mark(records, sizeof records);
    test::streamBuffer(64);
    test::beforeOpen(2, failSecondReads);
    EXPECT_FALSE(bridgingApNodeInfoReader("bridging", records));
    EXPECT_STREQ(test::messages(), "libzo: [bridgingApNodeInfoReader:#]: fscanf error, path:bridging.\n|");
    EXPECT_STREQ(records[0].deviceMAC, "112233445566");
    EXPECT_EQ(records[0].bridgingRssi[4], 0x55);
    EXPECT_TRUE(isMarked(&records[1], sizeof records[1]));
}

TEST(BridgingInfo, readerOfADirectoryReadsNothingAndSucceeds)
{
    mkdir("bridging", 0777);
    BridgingNodeV2 record;
    mark(&record, sizeof record);
    EXPECT_TRUE(bridgingApNodeInfoReader("bridging", &record));
    EXPECT_TRUE(isMarked(&record, sizeof record));
    EXPECT_STREQ(test::messages(), "");
}

TEST(BridgingInfo, readerOfAFileThatGrowsReadsTheCountedRecords)
{
    test::writeFile("bridging", FIRST);
    BridgingNodeV2 records[2];
    mark(records, sizeof records);
    test::beforeOpen(2, growToThree);
    EXPECT_TRUE(bridgingApNodeInfoReader("bridging", records));
    EXPECT_TRUE(same(records[0], first));
    EXPECT_TRUE(isMarked(&records[1], sizeof records[1]));
}

TEST(BridgingInfo, readerOfAFileThatShrinksFails)
{
    test::writeFile("bridging", FIRST SECOND);
    BridgingNodeV2 records[2];
    mark(records, sizeof records);
    test::beforeOpen(2, keepFirstAlone);
    EXPECT_FALSE(bridgingApNodeInfoReader("bridging", records));
    EXPECT_STREQ(test::messages(), "libzo: [bridgingApNodeInfoReader:#]: fscanf error, path:bridging.\n|");
}

/* ---- Update on the FAP -------------------------------------------------- */

TEST(BridgingInfo, fapAppendsBehindAllOldRecords)
{
    test::writeFile("bridging", FIRST SECOND);
    BridgingNodeV2 incoming = third;
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_STREQ(test::fileText("bridging"), FIRST SECOND THIRD);
    EXPECT_STREQ(test::messages(), "");
    EXPECT_TRUE(same(incoming, third));
    EXPECT_EQ(test::callCount(test::ALLOCATE), 1);
}

TEST(BridgingInfo, fapLogsANodeThatReportsTwiceTwice)
{
    test::writeFile("bridging", FIRST SECOND);
    BridgingNodeV2 incoming = first;
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_STREQ(test::fileText("bridging"), FIRST SECOND FIRST FIRST);
}

TEST(BridgingInfo, fapKeepsSixtyFourRecords)
{
    BridgingNodeV2 incoming = third;
    test::writeFile("bridging", nodeLines(1, 62, ""));
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_STREQ(test::fileText("bridging"), nodeLines(1, 62, THIRD));
    EXPECT_EQ(test::fileLines("bridging"), 63);

    test::writeFile("bridging", nodeLines(1, 63, ""));
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_STREQ(test::fileText("bridging"), nodeLines(1, 63, THIRD));
    EXPECT_EQ(test::fileLines("bridging"), 64);
}

TEST(BridgingInfo, fapDropsTheOldestRecordOfAFullLog)
{
    BridgingNodeV2 incoming = third;
    test::writeFile("bridging", nodeLines(1, 64, ""));
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_STREQ(test::fileText("bridging"), nodeLines(2, 64, THIRD));
    EXPECT_EQ(test::fileLines("bridging"), 64);
    EXPECT_STREQ(test::messages(), "");
}

TEST(BridgingInfo, fapLeavesALongerLogAtItsLength)
{
    BridgingNodeV2 incoming = third;
    test::writeFile("bridging", nodeLines(1, 65, ""));
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_STREQ(test::fileText("bridging"), nodeLines(2, 65, THIRD));

    test::writeFile("bridging", nodeLines(1, 70, ""));
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_STREQ(test::fileText("bridging"), nodeLines(2, 70, THIRD));
    EXPECT_EQ(test::fileLines("bridging"), 70);
}

TEST(BridgingInfo, fapIgnoresItsOwnRecord)
{
    test::writeFile("bridging", FIRST);
    BridgingNodeV2 incoming = second;
    strcpy(incoming.fatherDeviceMAC, "000000000000");
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_STREQ(test::messages(),
                 "libzo: [updateFapSingleBridgingInfo:#]: It's FAP itself bridging info, ignore it.|");
    EXPECT_STREQ(test::fileText("bridging"), FIRST);
    EXPECT_EQ(test::callCount(test::OPEN), 1);
    test::clearMessages();
    test::setLevel(5);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(BridgingInfo, fapIgnoresItsOwnRecordWithoutAFileToo)
{
    BridgingNodeV2 incoming = second;
    strcpy(incoming.fatherDeviceMAC, "000000000000");
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_STREQ(test::messages(),
                 "libzo: [dataLineCounter:#]: Failed to read file: bridging\n|"
                 "libzo: [updateFapSingleBridgingInfo:#]: It's FAP itself bridging info, ignore it.|");
    EXPECT_STREQ(test::fileText("bridging"), "<missing>");
}

TEST(BridgingInfo, fapTakesTwelveZeroesAloneForItself)
{
    static const char* const fathers[] = {"00000000000", "0000000000000", "100000000000", "000000000001", ""};
    for (const char* father : fathers) {
        test::writeFile("bridging", FIRST);
        BridgingNodeV2 incoming = second;
        strcpy(incoming.deviceMAC, "000000000000");
        memset(incoming.fatherDeviceMAC, 0, sizeof incoming.fatherDeviceMAC);
        strcpy(incoming.fatherDeviceMAC, father);
        EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
        EXPECT_EQ(test::fileLines("bridging"), 2);
    }
    EXPECT_STREQ(test::messages(), "");
}

TEST(BridgingInfo, fapSavesTheIncomingRecordAloneInAMissingFile)
{
    BridgingNodeV2 incoming = first;
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_STREQ(test::messages(),
                 "libzo: [dataLineCounter:#]: Failed to read file: bridging\n|"
                 "libzo: [updateFapSingleBridgingInfo:#]: Just save income bridging data|"
                 "libzo: [updateFapSingleBridgingInfo:#]: Bridging Info has been written to file: bridging|");
    EXPECT_STREQ(test::fileText("bridging"), FIRST);
    EXPECT_EQ(test::callCount(test::ALLOCATE), 0);
}

TEST(BridgingInfo, fapSavesTheIncomingRecordAloneInAnEmptyFile)
{
    test::writeFile("bridging", "");
    BridgingNodeV2 incoming = second;
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_STREQ(test::messages(),
                 "libzo: [updateFapSingleBridgingInfo:#]: Just save income bridging data|"
                 "libzo: [updateFapSingleBridgingInfo:#]: Bridging Info has been written to file: bridging|");
    EXPECT_STREQ(test::fileText("bridging"), SECOND);
    test::writeFile("bridging", "");
    test::clearMessages();
    test::setLevel(5);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(BridgingInfo, fapReportsThatTheIncomingRecordAloneCannotBeSaved)
{
    BridgingNodeV2 incoming = first;
    EXPECT_TRUE(updateSingleBridgingInfo("no/bridging", &incoming, true));
    EXPECT_STREQ(test::messages(),
                 "libzo: [dataLineCounter:#]: Failed to read file: no/bridging\n|"
                 "libzo: [updateFapSingleBridgingInfo:#]: Just save income bridging data|"
                 "libzo: [bridgingApNodeInfoWriter:#]: fopen error, path: no/bridging.|"
                 "libzo: [updateFapSingleBridgingInfo:#]: Failed to write to file: no/bridging|");
    test::clearMessages();
    test::setLevel(3);
    EXPECT_TRUE(updateSingleBridgingInfo("no/bridging", &incoming, true));
    EXPECT_STREQ(test::messages(),
                 "libzo: [dataLineCounter:#]: Failed to read file: no/bridging\n|"
                 "libzo: [bridgingApNodeInfoWriter:#]: fopen error, path: no/bridging.|"
                 "libzo: [updateFapSingleBridgingInfo:#]: Failed to write to file: no/bridging|");
    test::clearMessages();
    test::setLevel(2);
    EXPECT_TRUE(updateSingleBridgingInfo("no/bridging", &incoming, true));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(BridgingInfo, fapCountsTheFileBeforeItRefusesANullRecord)
{
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", nullptr, true));
    EXPECT_STREQ(test::messages(), "libzo: [dataLineCounter:#]: Failed to read file: bridging\n|"
                                   "libzo: [updateFapSingleBridgingInfo:#]: null pIncomeBridgingInfo|");
    EXPECT_STREQ(test::fileText("bridging"), "<missing>");
}

TEST(BridgingInfo, fapRefusesANullRecordAsAnError)
{
    test::writeFile("bridging", FIRST);
    test::setLevel(3);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", nullptr, true));
    EXPECT_STREQ(test::messages(), "libzo: [updateFapSingleBridgingInfo:#]: null pIncomeBridgingInfo|");
    EXPECT_STREQ(test::fileText("bridging"), FIRST);
    test::clearMessages();
    test::setLevel(2);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", nullptr, true));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(BridgingInfo, fapReportsAFailedAllocation)
{
    test::writeFile("bridging", FIRST);
    BridgingNodeV2 incoming = second;
    test::setLevel(3);
    test::failFrom(test::ALLOCATE, 1);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_STREQ(test::messages(),
                 "libzo: [updateFapSingleBridgingInfo:#]: Failed to allocate memory for BridgingNode|");
    EXPECT_STREQ(test::fileText("bridging"), FIRST);
    test::clearMessages();
    test::setLevel(2);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(BridgingInfo, fapReportsAFileThatCannotBeRead)
{
    test::writeFile("bridging", FIRST "\n");
    BridgingNodeV2 incoming = second;
    test::setLevel(3);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_STREQ(test::messages(), "libzo: [bridgingApNodeInfoReader:#]: fscanf error, path:bridging.\n|"
                                   "libzo: [updateFapSingleBridgingInfo:#]: Failed to read file: bridging|");
    EXPECT_STREQ(test::fileText("bridging"), FIRST "\n");
    EXPECT_TRUE(same(incoming, second));
    test::clearMessages();
    test::setLevel(2);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(BridgingInfo, fapMeetsAFailedOpenOfEveryStep)
{
    BridgingNodeV2 incoming = third;
    test::writeFile("bridging", FIRST SECOND);
    test::failNth(test::OPEN, 1);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_STREQ(test::messages(),
                 "libzo: [dataLineCounter:#]: Failed to read file: bridging\n|"
                 "libzo: [updateFapSingleBridgingInfo:#]: Just save income bridging data|"
                 "libzo: [updateFapSingleBridgingInfo:#]: Bridging Info has been written to file: bridging|");
    EXPECT_STREQ(test::fileText("bridging"), THIRD);

    test::clearMessages();
    test::writeFile("bridging", FIRST SECOND);
    test::failNth(test::OPEN, 2);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_STREQ(test::messages(), "libzo: [dataLineCounter:#]: Failed to read file: bridging\n|");
    EXPECT_STREQ(test::fileText("bridging"), EMPTY_RECORD EMPTY_RECORD THIRD);

    test::clearMessages();
    test::writeFile("bridging", FIRST SECOND);
    test::failNth(test::OPEN, 3);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_STREQ(test::messages(), "libzo: [bridgingApNodeInfoReader:#]: pat file does not exit.\n|"
                                   "libzo: [updateFapSingleBridgingInfo:#]: Failed to read file: bridging|");
    EXPECT_STREQ(test::fileText("bridging"), FIRST SECOND);

    test::clearMessages();
    test::failNth(test::OPEN, 4);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_STREQ(
        test::messages(),
        "libzo: [bridgingApNodeInfoWriter:#]: fopen error, path: bridging.|"
        "libzo: [updateFapSingleBridgingInfo:#]: Failed to add new bridging info data to file: bridging|");
    EXPECT_STREQ(test::fileText("bridging"), FIRST SECOND);
}

TEST(BridgingInfo, fapMeetsAFailedCloseOfEveryStep)
{
    BridgingNodeV2 incoming = third;
    test::setLevel(3);
    test::writeFile("bridging", FIRST SECOND);
    test::failNth(test::CLOSE, 1);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_STREQ(test::messages(), "libzo: [dataLineCounter:#]: fclose error, path:bridging.\n|");
    EXPECT_STREQ(test::fileText("bridging"), THIRD);

    test::clearMessages();
    test::writeFile("bridging", FIRST SECOND);
    test::failNth(test::CLOSE, 3);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_STREQ(test::messages(), "libzo: [bridgingApNodeInfoReader:#]: fclose error, path:bridging.\n|"
                                   "libzo: [updateFapSingleBridgingInfo:#]: Failed to read file: bridging|");
    EXPECT_STREQ(test::fileText("bridging"), FIRST SECOND);

    test::clearMessages();
    test::failNth(test::CLOSE, 4);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_STREQ(test::messages(), "");
    EXPECT_STREQ(test::fileText("bridging"), FIRST SECOND THIRD);
}

TEST(BridgingInfo, fapReportsAReadErrorAndLeavesTheFileAlone)
{
    test::writeFile("bridging", FIRST SECOND);
    BridgingNodeV2 incoming = third;
    test::beforeOpen(3, failReads);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_STREQ(test::messages(), "libzo: [bridgingApNodeInfoReader:#]: fscanf error, path:bridging.\n|"
                                   "libzo: [updateFapSingleBridgingInfo:#]: Failed to read file: bridging|");
    EXPECT_STREQ(test::fileText("bridging"), FIRST SECOND);
}

TEST(BridgingInfo, fapTakesADirectoryForAnEmptyFile)
{
    mkdir("bridging", 0777);
    BridgingNodeV2 incoming = third;
    test::setLevel(3);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_STREQ(test::messages(),
                 "libzo: [bridgingApNodeInfoWriter:#]: fopen error, path: bridging.|"
                 "libzo: [updateFapSingleBridgingInfo:#]: Failed to write to file: bridging|");
}

TEST(BridgingInfo, fapReportsAFailedRewrite)
{
    test::writeFile("bridging", FIRST SECOND);
    BridgingNodeV2 incoming = third;
    test::setLevel(3);
    test::failNth(test::WRITE, 9);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_STREQ(
        test::messages(),
        "libzo: [bridgingApNodeInfoWriter:#]: fprintf error, path:bridging.\n|"
        "libzo: [updateFapSingleBridgingInfo:#]: Failed to add new bridging info data to file: bridging|");
    EXPECT_STREQ(test::fileText("bridging"), FIRST "223344556677 bbccddeeff00 ");
    test::writeFile("bridging", FIRST SECOND);
    test::clearMessages();
    test::setLevel(2);
    test::failNth(test::WRITE, 1);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_EQ(test::messageCount(), 0);
    EXPECT_EQ(test::fileSize("bridging"), 0);
}

TEST(BridgingInfo, fapReportsAFailedPrintOfTheIncomingRecordAlone)
{
    test::writeFile("bridging", "");
    BridgingNodeV2 incoming = third;
    test::failNth(test::WRITE, 2);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_STREQ(test::messages(),
                 "libzo: [updateFapSingleBridgingInfo:#]: Just save income bridging data|"
                 "libzo: [bridgingApNodeInfoWriter:#]: fprintf error, path:bridging.\n|"
                 "libzo: [updateFapSingleBridgingInfo:#]: Failed to write to file: bridging|");
    EXPECT_STREQ(test::fileText("bridging"), "334455667788 ccddeeff0011 ");
}

TEST(BridgingInfo, fapKeepsTheCountedRecordsOfAFileThatGrows)
{
    BridgingNodeV2 incoming = third;
    test::writeFile("bridging", FIRST);
    test::beforeOpen(2, growToMany);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_STREQ(test::fileText("bridging"), nodeLines(1, 1, THIRD));

    test::writeFile("bridging", FIRST);
    test::beforeOpen(3, growToMany);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_STREQ(test::fileText("bridging"), nodeLines(1, 1, THIRD));
}

TEST(BridgingInfo, fapLeavesAFileAloneThatShrinksBeforeItIsRead)
{
    test::writeFile("bridging", FIRST SECOND);
    BridgingNodeV2 incoming = third;
    test::beforeOpen(3, keepFirstAlone);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_STREQ(test::messages(), "libzo: [bridgingApNodeInfoReader:#]: fscanf error, path:bridging.\n|"
                                   "libzo: [updateFapSingleBridgingInfo:#]: Failed to read file: bridging|");
    EXPECT_STREQ(test::fileText("bridging"), FIRST);
}

TEST(BridgingInfo, fapWritesEmptyRecordsForThoseThatAreGoneAtTheSecondCount)
{
    test::writeFile("bridging", FIRST SECOND);
    BridgingNodeV2 incoming = third;
    test::beforeOpen(2, keepFirstAlone);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_STREQ(test::messages(), "");
    EXPECT_STREQ(test::fileText("bridging"), FIRST EMPTY_RECORD THIRD);
}

TEST(BridgingInfo, fapCannotReadAFileThatBecameADirectory)
{
    test::writeFile("bridging", FIRST);
    BridgingNodeV2 incoming = third;
    test::beforeOpen(3, turnIntoDirectory);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, true));
    EXPECT_STREQ(test::messages(), "libzo: [bridgingApNodeInfoReader:#]: fscanf error, path:bridging.\n|"
                                   "libzo: [updateFapSingleBridgingInfo:#]: Failed to read file: bridging|");
}

/* ---- Update on an RE ---------------------------------------------------- */

TEST(BridgingInfo, reReplacesTheWholeRecordOfTheSameFather)
{
    test::writeFile("bridging", FIRST SECOND THIRD);
    BridgingNodeV2 incoming = {"998877665544",
                               "bbccddeeff00",
                               {101, 102, 103, 104, 105},
                               {7001, 7002, 7003, 7004, 7005},
                               {8001, 8002, 8003, 8004, 8005},
                               {111, 112, 113, 114, 115},
                               {121, 122, 123, 124, 125}};
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_STREQ(test::fileText("bridging"),
                 FIRST "998877665544 bbccddeeff00 101 7001 8001 111 121 102 7002 8002 112 122 "
                       "103 7003 8003 113 123 104 7004 8004 114 124 105 7005 8005 115 125 \n" THIRD);
    EXPECT_STREQ(test::messages(), "");
    EXPECT_EQ(test::callCount(test::ALLOCATE), 1);
}

TEST(BridgingInfo, reReplacesTheFirstAndTheLastRecordToo)
{
    test::writeFile("bridging", SECOND FIRST);
    BridgingNodeV2 incoming = third;
    strcpy(incoming.fatherDeviceMAC, "bbccddeeff00");
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_STREQ(test::fileLine("bridging", 0),
                 "334455667788 bbccddeeff00 71 5001 6001 81 91 72 5002 6002 82 92 73 5003 6003 83 93 "
                 "74 5004 6004 84 94 75 5005 6005 85 95 ");
    strcpy(incoming.fatherDeviceMAC, "aabbccddeeff");
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_STREQ(test::fileLine("bridging", 1),
                 "334455667788 aabbccddeeff 71 5001 6001 81 91 72 5002 6002 82 92 73 5003 6003 83 93 "
                 "74 5004 6004 84 94 75 5005 6005 85 95 ");
    EXPECT_EQ(test::fileLines("bridging"), 2);
}

TEST(BridgingInfo, reAppendsTheRecordOfANewFather)
{
    test::writeFile("bridging", FIRST SECOND);
    BridgingNodeV2 incoming = third;
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_STREQ(test::fileText("bridging"), FIRST SECOND THIRD);
    EXPECT_STREQ(test::messages(), "");
    EXPECT_TRUE(same(incoming, third));
}

TEST(BridgingInfo, reDoesNotCompareTheDevice)
{
    test::writeFile("bridging", FIRST);
    BridgingNodeV2 incoming = first;
    strcpy(incoming.fatherDeviceMAC, "112233445566");
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_EQ(test::fileLines("bridging"), 2);
    EXPECT_STREQ(test::fileLine("bridging", 1),
                 "112233445566 112233445566 11 1001 2001 21 31 12 1002 2002 22 32 13 1003 2003 23 33 "
                 "14 1004 2004 24 34 15 1005 2005 25 35 ");
}

TEST(BridgingInfo, reReplacesTheFirstOfDuplicateFathersAlone)
{
    test::writeFile("bridging", FIRST SECOND SECOND FIRST);
    BridgingNodeV2 incoming = third;
    strcpy(incoming.fatherDeviceMAC, "bbccddeeff00");
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_STREQ(test::fileText("bridging"),
                 FIRST "334455667788 bbccddeeff00 71 5001 6001 81 91 72 5002 6002 82 92 73 5003 6003 83 93 "
                       "74 5004 6004 84 94 75 5005 6005 85 95 \n" SECOND FIRST);
}

TEST(BridgingInfo, reTellsFathersApartByLetterCaseAndLength)
{
    static const char* const fathers[] = {"AABBCCDDEEFF", "aabbccddeefF", "aabbccddeef", "aabbccddeeff0",
                                          "babbccddeeff"};
    for (const char* father : fathers) {
        test::writeFile("bridging", FIRST);
        BridgingNodeV2 incoming = first;
        memset(incoming.fatherDeviceMAC, 0, sizeof incoming.fatherDeviceMAC);
        strcpy(incoming.fatherDeviceMAC, father);
        EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
        EXPECT_EQ(test::fileLines("bridging"), 2);
    }
}

TEST(BridgingInfo, reComparesNothingBehindTheEndOfTheFather)
{
    test::writeFile("bridging", FIRST);
    BridgingNodeV2 incoming = third;
    memcpy(incoming.fatherDeviceMAC, "aabbccddeeff\0xx", 16);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_EQ(test::fileLines("bridging"), 1);
}

TEST(BridgingInfo, reHasNoLimit)
{
    BridgingNodeV2 incoming = third;
    test::writeFile("bridging", nodeLines(1, 64, ""));
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_STREQ(test::fileText("bridging"), nodeLines(1, 64, THIRD));

    test::writeFile("bridging", nodeLines(1, 200, ""));
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_STREQ(test::fileText("bridging"), nodeLines(1, 200, THIRD));
    EXPECT_EQ(test::fileLines("bridging"), 201);
}

TEST(BridgingInfo, reReplacesTheLastOfManyRecords)
{
    BridgingNodeV2 incoming = third;
    strcpy(incoming.fatherDeviceMAC, "f00000000300");
    test::writeFile("bridging", nodeLines(1, 300, ""));
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_STREQ(test::fileText("bridging"),
                 nodeLines(1, 299,
                           "334455667788 f00000000300 71 5001 6001 81 91 72 5002 6002 82 92 73 5003 6003 83 "
                           "93 74 5004 6004 84 94 75 5005 6005 85 95 \n"));
}

TEST(BridgingInfo, reDoesNotIgnoreAFatherOfZeroes)
{
    BridgingNodeV2 incoming = {"112233445566", "000000000000", {1}, {2}, {3}, {4}, {5}};
    test::writeFile("bridging", FIRST);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_STREQ(test::fileText("bridging"),
                 FIRST "112233445566 000000000000 1 2 3 4 5 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 \n");
    EXPECT_STREQ(test::messages(), "");
    unlink("bridging");
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_STREQ(test::fileText("bridging"),
                 "112233445566 000000000000 1 2 3 4 5 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 \n");
}

TEST(BridgingInfo, reSavesTheIncomingRecordAloneInAMissingFile)
{
    BridgingNodeV2 incoming = first;
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_STREQ(test::messages(),
                 "libzo: [dataLineCounter:#]: Failed to read file: bridging\n|"
                 "libzo: [updateReSingleBridgingInfo:#]: Just save income bridging data|"
                 "libzo: [updateReSingleBridgingInfo:#]: Bridging Info has been written to file: bridging|");
    EXPECT_STREQ(test::fileText("bridging"), FIRST);
    EXPECT_EQ(test::callCount(test::ALLOCATE), 0);
}

TEST(BridgingInfo, reSavesTheIncomingRecordAloneInAnEmptyFile)
{
    test::writeFile("bridging", "");
    BridgingNodeV2 incoming = second;
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_STREQ(test::messages(),
                 "libzo: [updateReSingleBridgingInfo:#]: Just save income bridging data|"
                 "libzo: [updateReSingleBridgingInfo:#]: Bridging Info has been written to file: bridging|");
    EXPECT_STREQ(test::fileText("bridging"), SECOND);
    test::writeFile("bridging", "");
    test::clearMessages();
    test::setLevel(5);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(BridgingInfo, reReportsThatTheIncomingRecordAloneCannotBeSaved)
{
    BridgingNodeV2 incoming = first;
    EXPECT_TRUE(updateSingleBridgingInfo("no/bridging", &incoming, false));
    EXPECT_STREQ(test::messages(),
                 "libzo: [dataLineCounter:#]: Failed to read file: no/bridging\n|"
                 "libzo: [updateReSingleBridgingInfo:#]: Just save income bridging data|"
                 "libzo: [bridgingApNodeInfoWriter:#]: fopen error, path: no/bridging.|"
                 "libzo: [updateReSingleBridgingInfo:#]: Failed to write to file: no/bridging|");
    test::clearMessages();
    test::setLevel(3);
    EXPECT_TRUE(updateSingleBridgingInfo("no/bridging", &incoming, false));
    EXPECT_STREQ(test::messages(),
                 "libzo: [dataLineCounter:#]: Failed to read file: no/bridging\n|"
                 "libzo: [bridgingApNodeInfoWriter:#]: fopen error, path: no/bridging.|"
                 "libzo: [updateReSingleBridgingInfo:#]: Failed to write to file: no/bridging|");
    test::clearMessages();
    test::setLevel(2);
    EXPECT_TRUE(updateSingleBridgingInfo("no/bridging", &incoming, false));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(BridgingInfo, reCountsTheFileBeforeItRefusesANullRecord)
{
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", nullptr, false));
    EXPECT_STREQ(test::messages(), "libzo: [dataLineCounter:#]: Failed to read file: bridging\n|"
                                   "libzo: [updateReSingleBridgingInfo:#]: null pIncomeBridgingInfo|");
    EXPECT_STREQ(test::fileText("bridging"), "<missing>");
}

TEST(BridgingInfo, reRefusesANullRecordAsAnError)
{
    test::writeFile("bridging", FIRST);
    test::setLevel(3);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", nullptr, false));
    EXPECT_STREQ(test::messages(), "libzo: [updateReSingleBridgingInfo:#]: null pIncomeBridgingInfo|");
    EXPECT_STREQ(test::fileText("bridging"), FIRST);
    test::clearMessages();
    test::setLevel(2);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", nullptr, false));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(BridgingInfo, reReportsAFailedAllocation)
{
    test::writeFile("bridging", FIRST);
    BridgingNodeV2 incoming = second;
    test::setLevel(3);
    test::failFrom(test::ALLOCATE, 1);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_STREQ(test::messages(),
                 "libzo: [updateReSingleBridgingInfo:#]: Failed to allocate memory for BridgingNode|");
    EXPECT_STREQ(test::fileText("bridging"), FIRST);
    test::clearMessages();
    test::setLevel(2);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(BridgingInfo, reReportsAFileThatCannotBeRead)
{
    test::writeFile("bridging", FIRST "\n");
    BridgingNodeV2 incoming = second;
    test::setLevel(3);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_STREQ(test::messages(), "libzo: [bridgingApNodeInfoReader:#]: fscanf error, path:bridging.\n|"
                                   "libzo: [updateReSingleBridgingInfo:#]: Failed to read file: bridging|");
    EXPECT_STREQ(test::fileText("bridging"), FIRST "\n");
    EXPECT_TRUE(same(incoming, second));
    test::clearMessages();
    test::setLevel(2);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(BridgingInfo, reMeetsAFailedOpenOfEveryStep)
{
    BridgingNodeV2 incoming = third;
    test::writeFile("bridging", FIRST SECOND);
    test::failNth(test::OPEN, 1);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_STREQ(test::messages(),
                 "libzo: [dataLineCounter:#]: Failed to read file: bridging\n|"
                 "libzo: [updateReSingleBridgingInfo:#]: Just save income bridging data|"
                 "libzo: [updateReSingleBridgingInfo:#]: Bridging Info has been written to file: bridging|");
    EXPECT_STREQ(test::fileText("bridging"), THIRD);

    test::clearMessages();
    test::writeFile("bridging", FIRST SECOND);
    test::failNth(test::OPEN, 2);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_STREQ(test::messages(), "libzo: [dataLineCounter:#]: Failed to read file: bridging\n|");
    EXPECT_STREQ(test::fileText("bridging"), EMPTY_RECORD EMPTY_RECORD THIRD);

    test::clearMessages();
    test::writeFile("bridging", FIRST SECOND);
    test::failNth(test::OPEN, 3);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_STREQ(test::messages(), "libzo: [bridgingApNodeInfoReader:#]: pat file does not exit.\n|"
                                   "libzo: [updateReSingleBridgingInfo:#]: Failed to read file: bridging|");
    EXPECT_STREQ(test::fileText("bridging"), FIRST SECOND);

    test::clearMessages();
    test::failNth(test::OPEN, 4);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_STREQ(
        test::messages(),
        "libzo: [bridgingApNodeInfoWriter:#]: fopen error, path: bridging.|"
        "libzo: [updateReSingleBridgingInfo:#]: Failed to add new bridging info data to file: bridging|");
    EXPECT_STREQ(test::fileText("bridging"), FIRST SECOND);
}

TEST(BridgingInfo, reMeetsAFailedCloseOfEveryStep)
{
    BridgingNodeV2 incoming = third;
    test::setLevel(3);
    test::writeFile("bridging", FIRST SECOND);
    test::failNth(test::CLOSE, 1);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_STREQ(test::messages(), "libzo: [dataLineCounter:#]: fclose error, path:bridging.\n|");
    EXPECT_STREQ(test::fileText("bridging"), THIRD);

    test::clearMessages();
    test::writeFile("bridging", FIRST SECOND);
    test::failNth(test::CLOSE, 3);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_STREQ(test::messages(), "libzo: [bridgingApNodeInfoReader:#]: fclose error, path:bridging.\n|"
                                   "libzo: [updateReSingleBridgingInfo:#]: Failed to read file: bridging|");
    EXPECT_STREQ(test::fileText("bridging"), FIRST SECOND);

    test::clearMessages();
    test::failNth(test::CLOSE, 4);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_STREQ(test::messages(), "");
    EXPECT_STREQ(test::fileText("bridging"), FIRST SECOND THIRD);
}

TEST(BridgingInfo, reReportsAFailedRewrite)
{
    test::writeFile("bridging", FIRST SECOND);
    BridgingNodeV2 incoming = third;
    test::setLevel(3);
    test::failNth(test::WRITE, 16);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_STREQ(
        test::messages(),
        "libzo: [bridgingApNodeInfoWriter:#]: fprintf error, path:bridging.\n|"
        "libzo: [updateReSingleBridgingInfo:#]: Failed to add new bridging info data to file: bridging|");
    EXPECT_STREQ(test::fileText("bridging"), FIRST SECOND "334455667788 ccddeeff0011 ");
    test::writeFile("bridging", FIRST SECOND);
    test::clearMessages();
    test::setLevel(2);
    test::failNth(test::WRITE, 1);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_EQ(test::messageCount(), 0);
    EXPECT_EQ(test::fileSize("bridging"), 0);
}

TEST(BridgingInfo, reReportsAFailedPrintOfTheIncomingRecordAlone)
{
    test::writeFile("bridging", "");
    BridgingNodeV2 incoming = third;
    test::failNth(test::WRITE, 2);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_STREQ(test::messages(),
                 "libzo: [updateReSingleBridgingInfo:#]: Just save income bridging data|"
                 "libzo: [bridgingApNodeInfoWriter:#]: fprintf error, path:bridging.\n|"
                 "libzo: [updateReSingleBridgingInfo:#]: Failed to write to file: bridging|");
    EXPECT_STREQ(test::fileText("bridging"), "334455667788 ccddeeff0011 ");
}

TEST(BridgingInfo, reKeepsTheCountedRecordsOfAFileThatGrows)
{
    BridgingNodeV2 incoming = third;
    test::writeFile("bridging", FIRST);
    test::beforeOpen(2, growToMany);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_STREQ(test::fileText("bridging"), nodeLines(1, 1, THIRD));

    test::writeFile("bridging", FIRST);
    test::beforeOpen(3, growToMany);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_STREQ(test::fileText("bridging"), nodeLines(1, 1, THIRD));
}

TEST(BridgingInfo, reSearchesTheCountedRecordsOfAFileThatShrinks)
{
    BridgingNodeV2 incoming = third;
    test::writeFile("bridging", FIRST SECOND);
    test::beforeOpen(2, keepFirstAlone);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_STREQ(test::fileText("bridging"), FIRST EMPTY_RECORD THIRD);

    test::writeFile("bridging", FIRST SECOND);
    test::beforeOpen(3, keepFirstAlone);
    EXPECT_TRUE(updateSingleBridgingInfo("bridging", &incoming, false));
    EXPECT_STREQ(test::messages(), "libzo: [bridgingApNodeInfoReader:#]: fscanf error, path:bridging.\n|"
                                   "libzo: [updateReSingleBridgingInfo:#]: Failed to read file: bridging|");
    EXPECT_STREQ(test::fileText("bridging"), FIRST);
}
