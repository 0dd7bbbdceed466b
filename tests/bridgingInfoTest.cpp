/* SPDX-License-Identifier: Apache-2.0 */
#include "messages.h"
#include "scenario.h"

#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace messages::fileHelpers;
using namespace messages::bridging;
using namespace test;

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

/* The lines of the nodes `from` to `to`, each with a father of its own, and `last` after them. */
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
    EXPECT_TRUE(bridgingApNodeInfoWriter("f", &record, 1));
    EXPECT_STREQ(FIRST, test::fileText("f"));
    EXPECT_STREQ("", test::messages());
    EXPECT_TRUE(same(record, first));
}

TEST(BridgingInfo, writerPutsTheMetricsOfOneBandTogether)
{
    BridgingNodeV2 record = {"112233445566", "aabbccddeeff", {40}, {866}, {780}, {9}, {8}};
    EXPECT_TRUE(bridgingApNodeInfoWriter("f", &record, 1));
    EXPECT_STREQ("112233445566 aabbccddeeff 40 866 780 9 8 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 \n",
                 test::fileText("f"));
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
    EXPECT_TRUE(bridgingApNodeInfoWriter("f", &record, 1));
    EXPECT_STREQ("ffffffffffff eeeeeeeeeeee 255 65535 65535 255 255 255 65535 65535 255 255 "
                 "255 65535 65535 255 255 255 65535 65535 255 255 255 65535 65535 255 255 \n",
                 test::fileText("f"));
    BridgingNodeV2 loaded = {};
    EXPECT_TRUE(bridgingApNodeInfoReader("f", &loaded));
    EXPECT_TRUE(same(loaded, record));
}

TEST(BridgingInfo, writerAlignsShortMacsToTheRight)
{
    BridgingNodeV2 record = {"abc", "", {1}, {2}, {3}, {4}, {5}};
    EXPECT_TRUE(bridgingApNodeInfoWriter("f", &record, 1));
    EXPECT_STREQ("         abc              1 2 3 4 5 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 \n",
                 test::fileText("f"));
}

TEST(BridgingInfo, writerPrintsLongMacsWhole)
{
    BridgingNodeV2 record = {"112233445566778", "aabbccddeeff001", {1}, {2}, {3}, {4}, {5}};
    EXPECT_TRUE(bridgingApNodeInfoWriter("f", &record, 1));
    EXPECT_STREQ("112233445566778 aabbccddeeff001 1 2 3 4 5 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 \n",
                 test::fileText("f"));
}

TEST(BridgingInfo, writerWritesTheFirstRecordsInOrder)
{
    BridgingNodeV2 records[] = {first, second, third};
    EXPECT_TRUE(bridgingApNodeInfoWriter("f", records, 2));
    EXPECT_STREQ(FIRST SECOND, test::fileText("f"));
    EXPECT_TRUE(bridgingApNodeInfoWriter("f", records, 3));
    EXPECT_STREQ(FIRST SECOND THIRD, test::fileText("f"));
}

TEST(BridgingInfo, writerReplacesTheWholeFile)
{
    test::writeFile("f", FIRST SECOND THIRD "and more\n");
    BridgingNodeV2 record = second;
    EXPECT_TRUE(bridgingApNodeInfoWriter("f", &record, 1));
    EXPECT_STREQ(SECOND, test::fileText("f"));
}

TEST(BridgingInfo, writerOfNoRecordsLeavesAnEmptyFile)
{
    const int counts[] = {0, -1, INT_MIN};
    for (const int cnt : counts) {
        test::writeFile("f", FIRST);
        BridgingNodeV2 record = second;
        EXPECT_TRUE(bridgingApNodeInfoWriter("f", &record, cnt));
        EXPECT_EQ(0, test::fileSize("f"));
    }
    EXPECT_STREQ("", test::messages());
}

static bool writeTwo()
{
    BridgingNodeV2 records[] = {first, second};
    return bridgingApNodeInfoWriter("f", records, 2);
}

TEST(BridgingInfo, writerStopsAtEachFailedPrint)
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
    expectStopsAtEachPrint(writeTwo, prints, writerCannotPrint);
}

TEST(BridgingInfo, writerOverlooksAFullDeviceThatOnlyTheCloseReaches)
{
    BridgingNodeV2 record = first;
    EXPECT_TRUE(bridgingApNodeInfoWriter("/dev/full", &record, 1));
    EXPECT_STREQ("", test::messages());
}

static bool write(BridgingNodeV2 record, const char* path = "f")
{
    return bridgingApNodeInfoWriter(path, &record, 1);
}

static bool writeFirst()
{
    return write(first);
}

TEST(BridgingInfo, writerReportsFailures)
{
    static const Row rows[] = {
        Row("reports a failed open", NO_FILE, noFault, [] { return write(first, "no/file"); }, false,
            {"E bridgingApNodeInfoWriter: fopen error, path: no/file."}),
        Row("leaves a file that it cannot open", SECOND, fails(OPEN, 1), writeFirst, false,
            {writerCannotOpen}),
        Row("ignores a failed close", NO_FILE, failsFrom(CLOSE, 1), writeFirst, true, {}, FIRST),
        Row("reports no failed close after a failed print", NO_FILE, failBoth(WRITE, 3, CLOSE, 1), writeFirst,
            false, {writerCannotPrint}, "112233445566 aabbccddeeff 11 1001 2001 21 31 "),
        Row("notices a full device while it prints", NO_FILE, noFault,
            [] {
                static BridgingNodeV2 records[400];
                return bridgingApNodeInfoWriter("/dev/full", records, 400);
            },
            false, {"E bridgingApNodeInfoWriter: fprintf error, path:/dev/full.\n"}),
    };
    expectRows(rows);
}

/* ---- Reader ------------------------------------------------------------- */

TEST(BridgingInfo, readerOfAnEmptyFileReadsNothingAndSucceeds)
{
    test::writeFile("f", "");
    BridgingNodeV2 record;
    test::mark(record);
    EXPECT_TRUE(bridgingApNodeInfoReader("f", &record));
    EXPECT_TRUE(isMarked(record));
    EXPECT_STREQ("", test::messages());
}

TEST(BridgingInfo, readerFillsEveryField)
{
    test::writeFile("f", FIRST SECOND THIRD);
    BridgingNodeV2 records[4];
    test::mark(records);
    EXPECT_TRUE(bridgingApNodeInfoReader("f", records));
    EXPECT_TRUE(same(records[0], first));
    EXPECT_TRUE(same(records[1], second));
    EXPECT_TRUE(same(records[2], third));
    EXPECT_TRUE(isMarked(records[3]));
    EXPECT_STREQ("", test::messages());
    EXPECT_STREQ(FIRST SECOND THIRD, test::fileText("f"));
}

TEST(BridgingInfo, readerCountsTheFileBeforeItOpensIt)
{
    test::writeFile("f", FIRST);
    BridgingNodeV2 record;
    EXPECT_TRUE(bridgingApNodeInfoReader("f", &record));
    EXPECT_EQ(2, test::callCount(test::OPEN));
    EXPECT_EQ(2, test::callCount(test::CLOSE));
}

TEST(BridgingInfo, readerTreatsBlanksAndLineEndsAlike)
{
    test::writeFile("f", "112233445566\naabbccddeeff 11 1001 2001 21 31 12 1002 2002 22 32 13 1003 2003 "
                         "23 33 14 1004 2004 24 34 15 1005 2005 25 35 223344556677 bbccddeeff00 41 3001 "
                         "4001   51\t61 42 3002 4002 52 62 43 3003 4003 53 63 44 3004 4004 54 64 45 3005 "
                         "4005 55 65");
    BridgingNodeV2 records[2];
    EXPECT_TRUE(bridgingApNodeInfoReader("f", records));
    EXPECT_TRUE(same(records[0], first));
    EXPECT_TRUE(same(records[1], second));
}

TEST(BridgingInfo, readerReadsOneRecordForEachLine)
{
    test::writeFile("f",
                    "1 a 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 2 b 2 2 2 2 2 2 2 2 2 2 2 2 2 2 2 "
                    "2 2 2 2 2 2 2 2 2 2 2\n");
    BridgingNodeV2 records[2];
    test::mark(records);
    EXPECT_TRUE(bridgingApNodeInfoReader("f", records));
    EXPECT_STREQ("1", records[0].deviceMAC);
    EXPECT_STREQ("a", records[0].fatherDeviceMAC);
    EXPECT_TRUE(isMarked(records[1]));
}

TEST(BridgingInfo, readerCountsAnOverlongLineTwice)
{
    char text[2048];
    snprintf(text, sizeof text, "%.*s%1000s\n", static_cast<int>(sizeof FIRST) - 2, FIRST, "");
    test::writeFile("f", text);
    BridgingNodeV2 records[2];
    test::mark(records);
    EXPECT_FALSE(bridgingApNodeInfoReader("f", records));
    EXPECT_MESSAGES(readerCannotRead);
    EXPECT_TRUE(same(records[0], first));
    EXPECT_TRUE(isMarked(records[1]));
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
        test::writeFile("f", text);
        test::clearMessages();
        BridgingNodeV2 record;
        test::mark(record);
        EXPECT_FALSE(bridgingApNodeInfoReader("f", &record));
        EXPECT_MESSAGES(readerCannotRead);
        EXPECT_STREQ("112233445566", record.deviceMAC);
        EXPECT_EQ(0x55, record.bridgingRssi[4]);
        EXPECT_EQ(0, test::openStreams());
    }
}

TEST(BridgingInfo, readerKeepsWhatItReadBeforeTheFailure)
{
    test::writeFile("f", "112233445566 aabbccddeeff 11 1001 2001 21 31 12 1002 ");
    BridgingNodeV2 record;
    test::mark(record);
    EXPECT_FALSE(bridgingApNodeInfoReader("f", &record));
    EXPECT_STREQ("aabbccddeeff", record.fatherDeviceMAC);
    EXPECT_EQ(31, record.bridgingTxMcs[0]);
    EXPECT_EQ(12, record.bridgingRssi[1]);
    EXPECT_EQ(1002, record.bridgingRxRate[1]);
    EXPECT_EQ(0x5555, record.bridgingTxRate[1]);
    EXPECT_EQ(0x55, record.bridgingRssi[2]);
}

TEST(BridgingInfo, readerAcceptsALastGroupThatIsCutShort)
{
    test::writeFile("f", "112233445566 aabbccddeeff 11 1001 2001 21 31 12 1002 2002 22 32 13 1003 2003 23 33 "
                         "14 1004 2004 24 34 15");
    BridgingNodeV2 record;
    test::mark(record);
    EXPECT_TRUE(bridgingApNodeInfoReader("f", &record));
    EXPECT_STREQ("", test::messages());
    EXPECT_EQ(15, record.bridgingRssi[4]);
    EXPECT_EQ(0x5555, record.bridgingRxRate[4]);
    EXPECT_EQ(0x5555, record.bridgingTxRate[4]);
    EXPECT_EQ(0x55, record.bridgingRxMcs[4]);
    EXPECT_EQ(0x55, record.bridgingTxMcs[4]);
}

TEST(BridgingInfo, readerDoesNotDetectAFieldThatIsNoNumber)
{
    test::writeFile("f", "112233445566 aabbccddeeff 11 1001 x 21 31 \nbbb 5\n");
    BridgingNodeV2 records[2];
    test::mark(records);
    EXPECT_TRUE(bridgingApNodeInfoReader("f", records));
    EXPECT_STREQ("", test::messages());
    EXPECT_EQ(11, records[0].bridgingRssi[0]);
    EXPECT_EQ(1001, records[0].bridgingRxRate[0]);
    EXPECT_EQ(0x5555, records[0].bridgingTxRate[0]);
    EXPECT_EQ(0x55, records[0].bridgingTxMcs[0]);
    EXPECT_EQ(0x55, records[0].bridgingRssi[1]);
    EXPECT_EQ(0x55, records[0].bridgingTxMcs[4]);
    EXPECT_STREQ("x", records[1].deviceMAC);
    EXPECT_STREQ("21", records[1].fatherDeviceMAC);
    EXPECT_EQ(31, records[1].bridgingRssi[0]);
    EXPECT_EQ(0x5555, records[1].bridgingRxRate[0]);
}

TEST(BridgingInfo, readerReadsTwelveCharactersOfAMac)
{
    test::writeFile("f",
                    "1122334455667788 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23 24 25\n");
    BridgingNodeV2 record;
    EXPECT_TRUE(bridgingApNodeInfoReader("f", &record));
    EXPECT_STREQ("112233445566", record.deviceMAC);
    EXPECT_STREQ("7788", record.fatherDeviceMAC);
    EXPECT_EQ(1, record.bridgingRssi[0]);
    EXPECT_EQ(25, record.bridgingTxMcs[4]);

    test::writeFile("f",
                    "1 aabbccddeeff2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23 24 25 26\n");
    EXPECT_TRUE(bridgingApNodeInfoReader("f", &record));
    EXPECT_STREQ("1", record.deviceMAC);
    EXPECT_STREQ("aabbccddeeff", record.fatherDeviceMAC);
    EXPECT_EQ(2, record.bridgingRssi[0]);
    EXPECT_EQ(26, record.bridgingTxMcs[4]);
}

TEST(BridgingInfo, readerReportsAReadErrorInsideARecord)
{
    test::writeFile("f", FIRST SECOND);
    BridgingNodeV2 records[2];
    test::mark(records);
    test::streamBuffer(64);
    test::beforeOpen(2, failSecondReads);
    EXPECT_FALSE(bridgingApNodeInfoReader("f", records));
    EXPECT_MESSAGES(readerCannotRead);
    EXPECT_STREQ("112233445566", records[0].deviceMAC);
    EXPECT_EQ(0x55, records[0].bridgingRssi[4]);
    EXPECT_TRUE(isMarked(records[1]));
}

TEST(BridgingInfo, readerOfADirectoryReadsNothingAndSucceeds)
{
    mkdir("f", 0777);
    BridgingNodeV2 record;
    test::mark(record);
    EXPECT_TRUE(bridgingApNodeInfoReader("f", &record));
    EXPECT_TRUE(isMarked(record));
    EXPECT_STREQ("", test::messages());
}

static bool readOne()
{
    BridgingNodeV2 record;
    return bridgingApNodeInfoReader("f", &record);
}

static bool readNothing()
{
    BridgingNodeV2 record;
    test::mark(record);
    const bool result = bridgingApNodeInfoReader("f", &record);
    EXPECT_TRUE(isMarked(record));
    return result;
}

static bool readFirstOnly()
{
    BridgingNodeV2 records[2];
    test::mark(records);
    const bool result = bridgingApNodeInfoReader("f", records);
    EXPECT_TRUE(same(records[0], first));
    EXPECT_TRUE(isMarked(records[1]));
    return result;
}

TEST(BridgingInfo, readerReportsFailures)
{
    static const Row rows[] = {
        Row("reports a missing file as information", NO_FILE, noFault,
            [] {
                BridgingNodeV2 record;
                test::mark(record);
                const bool result = bridgingApNodeInfoReader("f", &record);
                EXPECT_TRUE(isMarked(record));
                return result;
            },
            false, {counterCannotOpen, readerCannotOpen}),
        Row("whose own open fails logs information alone", FIRST, fails(OPEN, 2), readNothing, false,
            {readerCannotOpen}),
        Row("of a file that cannot be opened for the count reads nothing and succeeds", FIRST, fails(OPEN, 1),
            readNothing, true, {counterCannotOpen}),
        Row("of a file whose close fails after the count reads nothing and succeeds", FIRST, fails(CLOSE, 1),
            readNothing, true, {counterCannotClose}),
        Row("fails where a line is blank", FIRST "\n" SECOND, noFault,
            [] {
                BridgingNodeV2 records[3];
                test::mark(records);
                const bool result = bridgingApNodeInfoReader("f", records);
                EXPECT_TRUE(same(records[0], first));
                EXPECT_TRUE(same(records[1], second));
                EXPECT_TRUE(isMarked(records[2]));
                return result;
            },
            false, {readerCannotRead}),
        Row("fails where the macs start at the end",
            "112233445566 aabbccddeeff 11 1001 2001 21 31 12 1002 2002 22 32\n"
            "13 1003 2003 23 33 14 1004 2004 24 34 15 1005 2005 25 35 \n",
            noFault, readFirstOnly, false, {readerCannotRead}),
        Row("reports a failed close", FIRST, fails(CLOSE, 2),
            [] {
                BridgingNodeV2 record = {};
                const bool result = bridgingApNodeInfoReader("f", &record);
                EXPECT_TRUE(same(record, first));
                return result;
            },
            false, {readerCannotClose}),
        Row("reports a failed close after a failed scan too", "\n", fails(CLOSE, 2), readOne, false,
            {readerCannotRead, readerCannotClose}),
        Row("reports a read error", FIRST, changes(2, failReads), readNothing, false, {readerCannotRead}),
        Row("of a file that grows reads the counted records", FIRST, changes(2, growToThree), readFirstOnly,
            true, {}, FIRST SECOND THIRD),
        Row(
            "of a file that shrinks fails", FIRST SECOND, changes(2, keepFirstAlone),
            [] {
                BridgingNodeV2 records[2];
                test::mark(records);
                return bridgingApNodeInfoReader("f", records);
            },
            false, {readerCannotRead}, FIRST),
    };
    expectRows(rows);
}

/* ---- Update on the FAP -------------------------------------------------- */

TEST(BridgingInfo, fapAppendsAfterAllOldRecords)
{
    test::writeFile("f", FIRST SECOND);
    BridgingNodeV2 incoming = third;
    EXPECT_TRUE(updateSingleBridgingInfo("f", &incoming, true));
    EXPECT_STREQ(FIRST SECOND THIRD, test::fileText("f"));
    EXPECT_STREQ("", test::messages());
    EXPECT_TRUE(same(incoming, third));
    EXPECT_EQ(1, test::callCount(test::ALLOCATE));
}

TEST(BridgingInfo, fapLogsANodeThatReportsTwiceTwice)
{
    test::writeFile("f", FIRST SECOND);
    BridgingNodeV2 incoming = first;
    EXPECT_TRUE(updateSingleBridgingInfo("f", &incoming, true));
    EXPECT_TRUE(updateSingleBridgingInfo("f", &incoming, true));
    EXPECT_STREQ(FIRST SECOND FIRST FIRST, test::fileText("f"));
}

TEST(BridgingInfo, fapKeepsSixtyFourRecords)
{
    BridgingNodeV2 incoming = third;
    test::writeFile("f", nodeLines(1, 62, ""));
    EXPECT_TRUE(updateSingleBridgingInfo("f", &incoming, true));
    EXPECT_STREQ(nodeLines(1, 62, THIRD), test::fileText("f"));
    EXPECT_EQ(63, test::fileLines("f"));

    test::writeFile("f", nodeLines(1, 63, ""));
    EXPECT_TRUE(updateSingleBridgingInfo("f", &incoming, true));
    EXPECT_STREQ(nodeLines(1, 63, THIRD), test::fileText("f"));
    EXPECT_EQ(64, test::fileLines("f"));
}

TEST(BridgingInfo, fapDropsTheOldestRecordOfAFullLog)
{
    BridgingNodeV2 incoming = third;
    test::writeFile("f", nodeLines(1, 64, ""));
    EXPECT_TRUE(updateSingleBridgingInfo("f", &incoming, true));
    EXPECT_STREQ(nodeLines(2, 64, THIRD), test::fileText("f"));
    EXPECT_EQ(64, test::fileLines("f"));
    EXPECT_STREQ("", test::messages());
}

TEST(BridgingInfo, fapLeavesALongerLogAtItsLength)
{
    BridgingNodeV2 incoming = third;
    test::writeFile("f", nodeLines(1, 65, ""));
    EXPECT_TRUE(updateSingleBridgingInfo("f", &incoming, true));
    EXPECT_STREQ(nodeLines(2, 65, THIRD), test::fileText("f"));

    test::writeFile("f", nodeLines(1, 70, ""));
    EXPECT_TRUE(updateSingleBridgingInfo("f", &incoming, true));
    EXPECT_STREQ(nodeLines(2, 70, THIRD), test::fileText("f"));
    EXPECT_EQ(70, test::fileLines("f"));
}

TEST(BridgingInfo, fapKnowsItselfByTwelveZerosOnly)
{
    static const char* const fathers[] = {"00000000000", "0000000000000", "100000000000", "000000000001", ""};
    for (const char* father : fathers) {
        test::writeFile("f", FIRST);
        BridgingNodeV2 incoming = second;
        strcpy(incoming.deviceMAC, "000000000000");
        memset(incoming.fatherDeviceMAC, 0, sizeof incoming.fatherDeviceMAC);
        strcpy(incoming.fatherDeviceMAC, father);
        EXPECT_TRUE(updateSingleBridgingInfo("f", &incoming, true));
        EXPECT_EQ(2, test::fileLines("f"));
    }
    EXPECT_STREQ("", test::messages());
}

TEST(BridgingInfo, fapKeepsTheCountedRecordsOfAFileThatGrows)
{
    BridgingNodeV2 incoming = third;
    test::writeFile("f", FIRST);
    test::beforeOpen(2, growToMany);
    EXPECT_TRUE(updateSingleBridgingInfo("f", &incoming, true));
    EXPECT_STREQ(nodeLines(1, 1, THIRD), test::fileText("f"));

    test::writeFile("f", FIRST);
    test::beforeOpen(3, growToMany);
    EXPECT_TRUE(updateSingleBridgingInfo("f", &incoming, true));
    EXPECT_STREQ(nodeLines(1, 1, THIRD), test::fileText("f"));
}

static bool updateFap(BridgingNodeV2 income, const char* path = "f")
{
    return updateSingleBridgingInfo(path, &income, true);
}

static bool addThirdOnFap()
{
    return updateFap(third);
}

TEST(BridgingInfo, fapReportsItsStepsAndFailures)
{
    static const Row rows[] = {
        Row("ignores its own record", FIRST, noFault,
            [] {
                BridgingNodeV2 incoming = second;
                strcpy(incoming.fatherDeviceMAC, "000000000000");
                const bool result = updateSingleBridgingInfo("f", &incoming, true);
                EXPECT_EQ(1, test::callCount(test::OPEN));
                return result;
            },
            true, {fapIgnoresItself}),
        Row("ignores its own record without a file too", NO_FILE, noFault,
            [] {
                BridgingNodeV2 incoming = second;
                strcpy(incoming.fatherDeviceMAC, "000000000000");
                return updateSingleBridgingInfo("f", &incoming, true);
            },
            true, {counterCannotOpen, fapIgnoresItself}),
        Row(
            "saves the incoming record alone in a missing file", NO_FILE, noFault,
            [] {
                BridgingNodeV2 incoming = first;
                const bool result = updateSingleBridgingInfo("f", &incoming, true);
                EXPECT_EQ(0, test::callCount(test::ALLOCATE));
                return result;
            },
            true, {counterCannotOpen, fapSavesAlone, fapSaved}, FIRST),
        Row(
            "saves the incoming record alone in an empty file", "", noFault, [] { return updateFap(second); },
            true, {fapSavesAlone, fapSaved}, SECOND),
        Row("reports that the incoming record alone cannot be saved", NO_FILE, noFault,
            [] { return updateFap(first, "no/file"); }, true,
            {"E dataLineCounter: Failed to read file: no/file\n", fapSavesAlone,
             "E bridgingApNodeInfoWriter: fopen error, path: no/file.",
             "E updateFapSingleBridgingInfo: Failed to write to file: no/file"}),
        Row("counts the file before it refuses a null record", NO_FILE, noFault,
            [] { return updateSingleBridgingInfo("f", nullptr, true); }, true,
            {counterCannotOpen, fapRefusesNull}),
        Row("refuses a null record on a file with records", FIRST, noFault,
            [] { return updateSingleBridgingInfo("f", nullptr, true); }, true, {fapRefusesNull}),
        Row("reports a failed allocation", FIRST, failsFrom(ALLOCATE, 1), [] { return updateFap(second); },
            true, {fapCannotAllocate}),
        Row("reports a file that cannot be read", FIRST "\n", noFault,
            [] {
                BridgingNodeV2 incoming = second;
                const bool result = updateSingleBridgingInfo("f", &incoming, true);
                EXPECT_TRUE(same(incoming, second));
                return result;
            },
            true, {readerCannotRead, fapCannotRead}),
        Row("replaces a file that cannot be opened for the count", FIRST SECOND, fails(OPEN, 1),
            addThirdOnFap, true, {counterCannotOpen, fapSavesAlone, fapSaved}, THIRD),
        Row("writes empty records where the reader cannot count", FIRST SECOND, fails(OPEN, 2), addThirdOnFap,
            true, {counterCannotOpen}, EMPTY_RECORD EMPTY_RECORD THIRD),
        Row("reports a reader that cannot open", FIRST SECOND, fails(OPEN, 3), addThirdOnFap, true,
            {readerCannotOpen, fapCannotRead}),
        Row("reports a writer that cannot open", FIRST SECOND, fails(OPEN, 4), addThirdOnFap, true,
            {writerCannotOpen, fapCannotRewrite}),
        Row("replaces a file whose close fails after the count", FIRST SECOND, fails(CLOSE, 1), addThirdOnFap,
            true, {counterCannotClose, fapSavesAlone, fapSaved}, THIRD),
        Row("reports a reader that cannot close", FIRST SECOND, fails(CLOSE, 3), addThirdOnFap, true,
            {readerCannotClose, fapCannotRead}),
        Row("ignores a writer that cannot close", FIRST SECOND, fails(CLOSE, 4), addThirdOnFap, true, {},
            FIRST SECOND THIRD),
        Row("reports a read error and leaves the file alone", FIRST SECOND, changes(3, failReads),
            addThirdOnFap, true, {readerCannotRead, fapCannotRead}),
        Row("treats a directory as an empty file", DIRECTORY, noFault, addThirdOnFap, true,
            {fapSavesAlone, writerCannotOpen, fapCannotSave}),
        Row("reports a failed rewrite", FIRST SECOND, fails(WRITE, 9), addThirdOnFap, true,
            {writerCannotPrint, fapCannotRewrite}, FIRST "223344556677 bbccddeeff00 "),
        Row("reports a failed print of the incoming record alone", "", fails(WRITE, 2), addThirdOnFap, true,
            {fapSavesAlone, writerCannotPrint, fapCannotSave}, "334455667788 ccddeeff0011 "),
        Row("leaves a file alone that shrinks before it is read", FIRST SECOND, changes(3, keepFirstAlone),
            addThirdOnFap, true, {readerCannotRead, fapCannotRead}, FIRST),
        Row("writes empty records for those that are gone at the second count", FIRST SECOND,
            changes(2, keepFirstAlone), addThirdOnFap, true, {}, FIRST EMPTY_RECORD THIRD),
        Row("cannot read a file that became a directory", FIRST, changes(3, turnIntoDirectory), addThirdOnFap,
            true, {readerCannotRead, fapCannotRead}, DIRECTORY),
    };
    expectRows(rows);
}

/* ---- Update on an RE ---------------------------------------------------- */

TEST(BridgingInfo, reReplacesTheWholeRecordOfTheSameFather)
{
    test::writeFile("f", FIRST SECOND THIRD);
    BridgingNodeV2 incoming = {"998877665544",
                               "bbccddeeff00",
                               {101, 102, 103, 104, 105},
                               {7001, 7002, 7003, 7004, 7005},
                               {8001, 8002, 8003, 8004, 8005},
                               {111, 112, 113, 114, 115},
                               {121, 122, 123, 124, 125}};
    EXPECT_TRUE(updateSingleBridgingInfo("f", &incoming, false));
    EXPECT_STREQ(FIRST "998877665544 bbccddeeff00 101 7001 8001 111 121 102 7002 8002 112 122 "
                       "103 7003 8003 113 123 104 7004 8004 114 124 105 7005 8005 115 125 \n" THIRD,
                 test::fileText("f"));
    EXPECT_STREQ("", test::messages());
    EXPECT_EQ(1, test::callCount(test::ALLOCATE));
}

TEST(BridgingInfo, reReplacesTheFirstAndTheLastRecordToo)
{
    test::writeFile("f", SECOND FIRST);
    BridgingNodeV2 incoming = third;
    strcpy(incoming.fatherDeviceMAC, "bbccddeeff00");
    EXPECT_TRUE(updateSingleBridgingInfo("f", &incoming, false));
    EXPECT_STREQ("334455667788 bbccddeeff00 71 5001 6001 81 91 72 5002 6002 82 92 73 5003 6003 83 93 "
                 "74 5004 6004 84 94 75 5005 6005 85 95 ",
                 test::fileLine("f", 0));
    strcpy(incoming.fatherDeviceMAC, "aabbccddeeff");
    EXPECT_TRUE(updateSingleBridgingInfo("f", &incoming, false));
    EXPECT_STREQ("334455667788 aabbccddeeff 71 5001 6001 81 91 72 5002 6002 82 92 73 5003 6003 83 93 "
                 "74 5004 6004 84 94 75 5005 6005 85 95 ",
                 test::fileLine("f", 1));
    EXPECT_EQ(2, test::fileLines("f"));
}

TEST(BridgingInfo, reAppendsTheRecordOfANewFather)
{
    test::writeFile("f", FIRST SECOND);
    BridgingNodeV2 incoming = third;
    EXPECT_TRUE(updateSingleBridgingInfo("f", &incoming, false));
    EXPECT_STREQ(FIRST SECOND THIRD, test::fileText("f"));
    EXPECT_STREQ("", test::messages());
    EXPECT_TRUE(same(incoming, third));
}

TEST(BridgingInfo, reDoesNotCompareTheDevice)
{
    test::writeFile("f", FIRST);
    BridgingNodeV2 incoming = first;
    strcpy(incoming.fatherDeviceMAC, "112233445566");
    EXPECT_TRUE(updateSingleBridgingInfo("f", &incoming, false));
    EXPECT_EQ(2, test::fileLines("f"));
    EXPECT_STREQ("112233445566 112233445566 11 1001 2001 21 31 12 1002 2002 22 32 13 1003 2003 23 33 "
                 "14 1004 2004 24 34 15 1005 2005 25 35 ",
                 test::fileLine("f", 1));
}

TEST(BridgingInfo, reReplacesTheFirstOfDuplicateFathersAlone)
{
    test::writeFile("f", FIRST SECOND SECOND FIRST);
    BridgingNodeV2 incoming = third;
    strcpy(incoming.fatherDeviceMAC, "bbccddeeff00");
    EXPECT_TRUE(updateSingleBridgingInfo("f", &incoming, false));
    EXPECT_STREQ(FIRST "334455667788 bbccddeeff00 71 5001 6001 81 91 72 5002 6002 82 92 73 5003 6003 83 93 "
                       "74 5004 6004 84 94 75 5005 6005 85 95 \n" SECOND FIRST,
                 test::fileText("f"));
}

TEST(BridgingInfo, reTellsFathersApartByLetterCaseAndLength)
{
    static const char* const fathers[] = {"AABBCCDDEEFF", "aabbccddeefF", "aabbccddeef", "aabbccddeeff0",
                                          "babbccddeeff"};
    for (const char* father : fathers) {
        test::writeFile("f", FIRST);
        BridgingNodeV2 incoming = first;
        memset(incoming.fatherDeviceMAC, 0, sizeof incoming.fatherDeviceMAC);
        strcpy(incoming.fatherDeviceMAC, father);
        EXPECT_TRUE(updateSingleBridgingInfo("f", &incoming, false));
        EXPECT_EQ(2, test::fileLines("f"));
    }
}

TEST(BridgingInfo, reComparesNothingAfterTheEndOfTheFather)
{
    test::writeFile("f", FIRST);
    BridgingNodeV2 incoming = third;
    memcpy(incoming.fatherDeviceMAC, "aabbccddeeff\0xx", 16);
    EXPECT_TRUE(updateSingleBridgingInfo("f", &incoming, false));
    EXPECT_EQ(1, test::fileLines("f"));
}

TEST(BridgingInfo, reHasNoLimit)
{
    BridgingNodeV2 incoming = third;
    test::writeFile("f", nodeLines(1, 64, ""));
    EXPECT_TRUE(updateSingleBridgingInfo("f", &incoming, false));
    EXPECT_STREQ(nodeLines(1, 64, THIRD), test::fileText("f"));

    test::writeFile("f", nodeLines(1, 200, ""));
    EXPECT_TRUE(updateSingleBridgingInfo("f", &incoming, false));
    EXPECT_STREQ(nodeLines(1, 200, THIRD), test::fileText("f"));
    EXPECT_EQ(201, test::fileLines("f"));
}

TEST(BridgingInfo, reReplacesTheLastOfManyRecords)
{
    BridgingNodeV2 incoming = third;
    strcpy(incoming.fatherDeviceMAC, "f00000000300");
    test::writeFile("f", nodeLines(1, 300, ""));
    EXPECT_TRUE(updateSingleBridgingInfo("f", &incoming, false));
    EXPECT_STREQ(nodeLines(1, 299,
                           "334455667788 f00000000300 71 5001 6001 81 91 72 5002 6002 82 92 73 5003 6003 83 "
                           "93 74 5004 6004 84 94 75 5005 6005 85 95 \n"),
                 test::fileText("f"));
}

TEST(BridgingInfo, reDoesNotIgnoreAFatherOfZeros)
{
    BridgingNodeV2 incoming = {"112233445566", "000000000000", {1}, {2}, {3}, {4}, {5}};
    test::writeFile("f", FIRST);
    EXPECT_TRUE(updateSingleBridgingInfo("f", &incoming, false));
    EXPECT_STREQ(FIRST "112233445566 000000000000 1 2 3 4 5 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 \n",
                 test::fileText("f"));
    EXPECT_STREQ("", test::messages());
    unlink("f");
    EXPECT_TRUE(updateSingleBridgingInfo("f", &incoming, false));
    EXPECT_STREQ("112233445566 000000000000 1 2 3 4 5 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 \n",
                 test::fileText("f"));
}

TEST(BridgingInfo, reKeepsTheCountedRecordsOfAFileThatGrows)
{
    BridgingNodeV2 incoming = third;
    test::writeFile("f", FIRST);
    test::beforeOpen(2, growToMany);
    EXPECT_TRUE(updateSingleBridgingInfo("f", &incoming, false));
    EXPECT_STREQ(nodeLines(1, 1, THIRD), test::fileText("f"));

    test::writeFile("f", FIRST);
    test::beforeOpen(3, growToMany);
    EXPECT_TRUE(updateSingleBridgingInfo("f", &incoming, false));
    EXPECT_STREQ(nodeLines(1, 1, THIRD), test::fileText("f"));
}

static bool updateRe(BridgingNodeV2 income, const char* path = "f")
{
    return updateSingleBridgingInfo(path, &income, false);
}

static bool addThirdOnRe()
{
    return updateRe(third);
}

TEST(BridgingInfo, reReportsItsStepsAndFailures)
{
    static const Row rows[] = {
        Row(
            "saves the incoming record alone in a missing file", NO_FILE, noFault,
            [] {
                BridgingNodeV2 incoming = first;
                const bool result = updateSingleBridgingInfo("f", &incoming, false);
                EXPECT_EQ(0, test::callCount(test::ALLOCATE));
                return result;
            },
            true, {counterCannotOpen, reSavesAlone, reSaved}, FIRST),
        Row(
            "saves the incoming record alone in an empty file", "", noFault, [] { return updateRe(second); },
            true, {reSavesAlone, reSaved}, SECOND),
        Row("reports that the incoming record alone cannot be saved", NO_FILE, noFault,
            [] { return updateRe(first, "no/file"); }, true,
            {"E dataLineCounter: Failed to read file: no/file\n", reSavesAlone,
             "E bridgingApNodeInfoWriter: fopen error, path: no/file.",
             "E updateReSingleBridgingInfo: Failed to write to file: no/file"}),
        Row("counts the file before it refuses a null record", NO_FILE, noFault,
            [] { return updateSingleBridgingInfo("f", nullptr, false); }, true,
            {counterCannotOpen, reRefusesNull}),
        Row("refuses a null record on a file with records", FIRST, noFault,
            [] { return updateSingleBridgingInfo("f", nullptr, false); }, true, {reRefusesNull}),
        Row("reports a failed allocation", FIRST, failsFrom(ALLOCATE, 1), [] { return updateRe(second); },
            true, {reCannotAllocate}),
        Row("reports a file that cannot be read", FIRST "\n", noFault,
            [] {
                BridgingNodeV2 incoming = second;
                const bool result = updateSingleBridgingInfo("f", &incoming, false);
                EXPECT_TRUE(same(incoming, second));
                return result;
            },
            true, {readerCannotRead, reCannotRead}),
        Row("replaces a file that cannot be opened for the count", FIRST SECOND, fails(OPEN, 1), addThirdOnRe,
            true, {counterCannotOpen, reSavesAlone, reSaved}, THIRD),
        Row("writes empty records where the reader cannot count", FIRST SECOND, fails(OPEN, 2), addThirdOnRe,
            true, {counterCannotOpen}, EMPTY_RECORD EMPTY_RECORD THIRD),
        Row("reports a reader that cannot open", FIRST SECOND, fails(OPEN, 3), addThirdOnRe, true,
            {readerCannotOpen, reCannotRead}),
        Row("reports a writer that cannot open", FIRST SECOND, fails(OPEN, 4), addThirdOnRe, true,
            {writerCannotOpen, reCannotRewrite}),
        Row("replaces a file whose close fails after the count", FIRST SECOND, fails(CLOSE, 1), addThirdOnRe,
            true, {counterCannotClose, reSavesAlone, reSaved}, THIRD),
        Row("reports a reader that cannot close", FIRST SECOND, fails(CLOSE, 3), addThirdOnRe, true,
            {readerCannotClose, reCannotRead}),
        Row("ignores a writer that cannot close", FIRST SECOND, fails(CLOSE, 4), addThirdOnRe, true, {},
            FIRST SECOND THIRD),
        Row("reports a failed rewrite", FIRST SECOND, fails(WRITE, 16), addThirdOnRe, true,
            {writerCannotPrint, reCannotRewrite}, FIRST SECOND "334455667788 ccddeeff0011 "),
        Row("reports a failed print of the incoming record alone", "", fails(WRITE, 2), addThirdOnRe, true,
            {reSavesAlone, writerCannotPrint, reCannotSave}, "334455667788 ccddeeff0011 "),
        Row("writes an empty record for one that is gone at the second count", FIRST SECOND,
            changes(2, keepFirstAlone), addThirdOnRe, true, {}, FIRST EMPTY_RECORD THIRD),
        Row("leaves a file alone that shrinks before it is read", FIRST SECOND, changes(3, keepFirstAlone),
            addThirdOnRe, true, {readerCannotRead, reCannotRead}, FIRST),
    };
    expectRows(rows);
}
