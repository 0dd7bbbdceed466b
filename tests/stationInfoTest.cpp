/* SPDX-License-Identifier: Apache-2.0 */
#include "messages.h"
#include "scenario.h"

#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace messages::fileHelpers;
using namespace messages::station;
using namespace test;

/* The lines of three samples after their position. */
#define FIRST " 112233445566 aabbccddeeff  7   45  866  780 1234 54321 5 2 9 3 6 95\n"
#define SECOND " 223344556677 bbccddeeff00 18 1049 1120 2130 3140 41 51 61 71 81 91 10\n"
#define THIRD " 334455667788 ccddeeff0011  1    2    3    4    5 6 7 8 9 10 11 12\n"
#define EMPTY_RECORD \
    " "              \
    "            "   \
    " "              \
    "            "   \
    "  0    0    0    0    0 0 0 0 0 0 0 0\n"

static const StaConnection first = {
    900, "112233445566", "aabbccddeeff", 7, 45, 866, 780, 1234, 54321, 5, 2, 9, 3, 6, 95};
static const StaConnection second = {
    901, "223344556677", "bbccddeeff00", 18, 1049, 1120, 2130, 3140, 41, 51, 61, 71, 81, 91, 10};
static const StaConnection third = {902, "334455667788", "ccddeeff0011", 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11,
                                    12};

/* Whether two samples are equal except for their ids. */
static bool same(const StaConnection& a, const StaConnection& b)
{
    return strcmp(a.deviceMac, b.deviceMac) == 0 && strcmp(a.apMac, b.apMac) == 0 &&
           a.connectBand == b.connectBand && a.rssi == b.rssi && a.rxRate == b.rxRate &&
           a.txRate == b.txRate && a.rxPackageCount == b.rxPackageCount &&
           a.txPackageCount == b.txPackageCount && a.wifimode == b.wifimode && a.bandwidth == b.bandwidth &&
           a.mcslevel == b.mcslevel && a.mimo == b.mimo && a.kvrCapacity == b.kvrCapacity &&
           a.noiselevel == b.noiselevel;
}

/* The lines of the samples `from` to `to`, with positions that count up from `position`. */
static const char* sampleLines(int from, int to, int position)
{
    static char text[64 * 1024];
    size_t length = 0;
    text[0] = '\0';
    for (int i = from; i <= to; ++i) {
        const int added = snprintf(text + length, sizeof text - length,
                                   "%3d %012d aabbccddeeff  0    0    0    0    0 0 0 0 0 0 0 %d\n",
                                   position + i - from, i, i);
        length += static_cast<size_t>(added);
    }
    return text;
}

/* The samples `from` and on, as many as `count`. */
static StaConnection* samples(int from, int count)
{
    static StaConnection records[400];
    memset(records, 0, sizeof records);
    for (int i = 0; i < count; ++i) {
        snprintf(records[i].deviceMac, sizeof records[i].deviceMac, "%012d", from + i);
        strcpy(records[i].apMac, "aabbccddeeff");
        records[i].noiselevel = static_cast<uint16_t>(from + i);
    }
    return records;
}

/* ---- Hooks for what happens between two openings ------------------------ */

static void failReads(const char*)
{
    test::failFrom(test::READ, 1);
}
static void keepFirstAlone(const char* path)
{
    test::writeFile(path, "  0" FIRST);
}
static void emptyFile(const char* path)
{
    test::writeFile(path, "");
}
static void growToMany(const char* path)
{
    test::writeFile(path, sampleLines(1, 300, 0));
}
static void removeFile(const char* path)
{
    unlink(path);
}

/* ---- Writer ------------------------------------------------------------- */

TEST(StationInfo, writerPutsEveryFieldInItsPlace)
{
    StaConnection records[] = {first, second, third};
    EXPECT_TRUE(stationNodeInfoWriter("f", records, 3));
    EXPECT_STREQ("  0 112233445566 aabbccddeeff  7   45  866  780 1234 54321 5 2 9 3 6 95\n"
                 "  1 223344556677 bbccddeeff00 18 1049 1120 2130 3140 41 51 61 71 81 91 10\n"
                 "  2 334455667788 ccddeeff0011  1    2    3    4    5 6 7 8 9 10 11 12\n",
                 test::fileText("f"));
    EXPECT_STREQ("", test::messages());
}

TEST(StationInfo, writerLeavesTheRecordsAndTheirIdsAlone)
{
    StaConnection records[] = {first, second};
    EXPECT_TRUE(stationNodeInfoWriter("f", records, 2));
    EXPECT_EQ(900, records[0].id);
    EXPECT_EQ(901, records[1].id);
    EXPECT_TRUE(same(records[0], first));
    EXPECT_TRUE(same(records[1], second));
}

TEST(StationInfo, writerPrintsTheLargestValuesWhole)
{
    StaConnection record = {65535, "ffffffffffff", "eeeeeeeeeeee", 65535, 65535, 65535, 65535, 65535,
                            65535, 65535,          65535,          65535, 65535, 65535, 65535};
    EXPECT_TRUE(stationNodeInfoWriter("f", &record, 1));
    EXPECT_STREQ("  0 ffffffffffff eeeeeeeeeeee 65535 65535 65535 65535 65535 65535 65535 65535 65535 65535 "
                 "65535 65535\n",
                 test::fileText("f"));
}

TEST(StationInfo, writerAlignsShortMacsToTheRightAndPrintsLongOnesWhole)
{
    StaConnection records[] = {
        {0, "abc", "", 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12},
        {0, "112233445566778", "aabbccddeeff001", 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12},
        {0, "", "aabbccddeeff", 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}};
    EXPECT_TRUE(stationNodeInfoWriter("f", records, 3));
    EXPECT_STREQ("  0          abc               1    2    3    4    5 6 7 8 9 10 11 12\n"
                 "  1 112233445566778 aabbccddeeff001  1    2    3    4    5 6 7 8 9 10 11 12\n"
                 "  2              aabbccddeeff  1    2    3    4    5 6 7 8 9 10 11 12\n",
                 test::fileText("f"));
}

TEST(StationInfo, writerReplacesTheWholeFile)
{
    test::writeFile("f", "  0" FIRST "  1" SECOND "  2" THIRD);
    StaConnection records[] = {third, first};
    EXPECT_TRUE(stationNodeInfoWriter("f", records, 1));
    EXPECT_STREQ("  0" THIRD, test::fileText("f"));
}

TEST(StationInfo, writerOfNoRecordsLeavesAnEmptyFile)
{
    const int counts[] = {0, -1, INT_MIN};
    for (const int staNum : counts) {
        test::writeFile("f", "  0" FIRST);
        StaConnection record = second;
        EXPECT_TRUE(stationNodeInfoWriter("f", &record, staNum));
        EXPECT_EQ(0, test::fileSize("f"));
    }
    EXPECT_STREQ("", test::messages());
}

TEST(StationInfo, writerPrintsPositionsOfFourDigits)
{
    static StaConnection records[1001];
    EXPECT_TRUE(stationNodeInfoWriter("f", records, 1001));
    EXPECT_EQ(1001, test::fileLines("f"));
    EXPECT_EQ(0, strncmp(test::fileLine("f", 99), " 99  ", 5));
    EXPECT_EQ(0, strncmp(test::fileLine("f", 300), "300  ", 5));
    EXPECT_EQ(0, strncmp(test::fileLine("f", 999), "999  ", 5));
    EXPECT_EQ(0, strncmp(test::fileLine("f", 1000), "1000  ", 6));
}

TEST(StationInfo, writerWritesAllOfMoreRecordsThanPositionsCount)
{
    static StaConnection records[65538];
    strcpy(records[65536].deviceMac, "112233445566");
    records[65537] = third;
    EXPECT_TRUE(stationNodeInfoWriter("f", records, 65538));
    EXPECT_EQ(65538, test::fileLines("f"));
    EXPECT_EQ(0, strncmp(test::fileLine("f", 65535), "65535  ", 7));
    EXPECT_EQ(0, strncmp(test::fileLine("f", 65536), "  0 112233445566 ", 17));
    EXPECT_EQ(0, strncmp(test::fileLine("f", 65537), "  1 334455667788 ccddeeff0011 ", 30));
}

static bool writeThree()
{
    StaConnection records[] = {first, second, third};
    return stationNodeInfoWriter("f", records, 3);
}

TEST(StationInfo, writerStopsAtEachFailedPrint)
{
    static const char* const prints[] = {"  0" FIRST, "  1" SECOND, "  2" THIRD};
    expectStopsAtEachPrint(writeThree, prints, writerCannotPrint);
}

static bool write(StaConnection record, const char* path = "f")
{
    return stationNodeInfoWriter(path, &record, 1);
}

static bool writeFirst()
{
    return write(first);
}

TEST(StationInfo, writerReportsFailures)
{
    static const Row rows[] = {
        Row("reports a failed open", NO_FILE, noFault, [] { return write(first, "no/file"); }, false,
            {"E stationNodeInfoWriter: fopen error, path: no/file."}),
        Row("leaves a file that it cannot open", "  0" SECOND, fails(OPEN, 1), writeFirst, false,
            {writerCannotOpen}),
        Row("never looks at the close", NO_FILE, failsFrom(CLOSE, 1), writeFirst, true, {}, "  0" FIRST),
        Row("never looks at the close after a failed print", "  0" FIRST, failBoth(CLOSE, 1, WRITE, 1),
            writeFirst, false, {writerCannotPrint}, ""),
        Row("notices a full device while it prints", NO_FILE, noFault,
            [] { return stationNodeInfoWriter("/dev/full", samples(1, 400), 400); }, false,
            {"E stationNodeInfoWriter: fprintf error, path: /dev/full"}),
        Row(
            "overlooks a full device that only the close reaches", NO_FILE, noFault,
            [] { return stationNodeInfoWriter("/dev/full", samples(1, 1), 1); }, true),
    };
    expectRows(rows);
}

/* ---- Reader of one file ------------------------------------------------- */

TEST(StationInfo, readerFillsEveryField)
{
    test::writeFile("f", "  0" FIRST " 17" SECOND "999" THIRD);
    StaConnection records[4];
    test::mark(records);
    EXPECT_TRUE(stationInfoOnlyReader("f", records));
    EXPECT_EQ(0, records[0].id);
    EXPECT_EQ(17, records[1].id);
    EXPECT_EQ(999, records[2].id);
    EXPECT_TRUE(same(records[0], first));
    EXPECT_TRUE(same(records[1], second));
    EXPECT_TRUE(same(records[2], third));
    EXPECT_TRUE(isMarked(records[3]));
    EXPECT_STREQ("", test::messages());
    EXPECT_EQ(1, test::callCount(test::OPEN));
    EXPECT_STREQ("  0" FIRST " 17" SECOND "999" THIRD, test::fileText("f"));
}

TEST(StationInfo, readerReadsTheLargestValuesOfEveryWidth)
{
    test::writeFile("f", "999 a b 99 9999 9999 9999 9999 65535 65534 65533 65532 65531 65530 65529");
    StaConnection record;
    test::mark(record);
    EXPECT_TRUE(stationInfoOnlyReader("f", &record));
    const StaConnection expected = {999,   "a",   "b",   99,    9999,  9999,  9999, 9999,
                                    65535, 65534, 65533, 65532, 65531, 65530, 65529};
    EXPECT_TRUE(same(record, expected));
    EXPECT_EQ(999, record.id);
}

TEST(StationInfo, readerOfAnEmptyFileReadsNothingAndSucceeds)
{
    test::writeFile("f", "");
    StaConnection record;
    test::mark(record);
    EXPECT_TRUE(stationInfoOnlyReader("f", &record));
    EXPECT_TRUE(isMarked(record));
    EXPECT_STREQ("", test::messages());
}

TEST(StationInfo, readerFailsAtABlankLine)
{
    static const char* const texts[] = {"  0" FIRST "\n" SECOND, "  0" FIRST " \t \n" SECOND,
                                        "  0" FIRST "\n", "  0" FIRST "  "};
    for (const char* text : texts) {
        test::writeFile("f", text);
        test::clearMessages();
        StaConnection records[3];
        test::mark(records);
        EXPECT_FALSE(stationInfoOnlyReader("f", records));
        EXPECT_MESSAGES(readerCannotRead);
        EXPECT_TRUE(same(records[0], first));
        EXPECT_TRUE(isMarked(&records[1], 2 * sizeof records[1]));
        EXPECT_EQ(0, test::openStreams());
    }
}

TEST(StationInfo, readerAcceptsALineWithFewerFields)
{
    test::writeFile("f", "5\n  6 a b 7 8\n  2" THIRD);
    StaConnection records[3];
    test::mark(records);
    EXPECT_TRUE(stationInfoOnlyReader("f", records));
    EXPECT_STREQ("", test::messages());
    EXPECT_EQ(5, records[0].id);
    EXPECT_TRUE(isMarked(records[0].deviceMac, sizeof records[0].deviceMac));
    EXPECT_EQ(0x5555, records[0].noiselevel);
    EXPECT_EQ(6, records[1].id);
    EXPECT_STREQ("a", records[1].deviceMac);
    EXPECT_STREQ("b", records[1].apMac);
    EXPECT_EQ(7, records[1].connectBand);
    EXPECT_EQ(8, records[1].rssi);
    EXPECT_EQ(0x5555, records[1].rxRate);
    EXPECT_EQ(0x5555, records[1].noiselevel);
    EXPECT_TRUE(same(records[2], third));
}

TEST(StationInfo, readerCountsALineOfTextAsARecord)
{
    test::writeFile("f", "xyz 1 2 3\n  1" SECOND);
    StaConnection records[2];
    test::mark(records);
    EXPECT_TRUE(stationInfoOnlyReader("f", records));
    EXPECT_STREQ("", test::messages());
    EXPECT_TRUE(isMarked(records[0]));
    EXPECT_TRUE(same(records[1], second));
}

TEST(StationInfo, readerSplitsARateThatIsTooWide)
{
    test::writeFile("f", "  0 a b 1 2 12345 6 7 8 9 10 11 12 13 14 15\n");
    StaConnection record;
    test::mark(record);
    EXPECT_TRUE(stationInfoOnlyReader("f", &record));
    const StaConnection expected = {0, "a", "b", 1, 2, 1234, 5, 6, 7, 8, 9, 10, 11, 12, 13};
    EXPECT_TRUE(same(record, expected));
}

TEST(StationInfo, readerSplitsEveryFieldOfALimitedWidth)
{
    static const struct {
        const char* line;
        StaConnection expected;
    } cases[] = {
        {"1234 5 6 7 8 9 10 11 12 13 14 15 16 17\n",
         {123, "4", "5", 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17}},
        {"1 a b 123 4 5 6 7 8 9 10 11 12 13 14\n", {1, "a", "b", 12, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}},
        {"1 a b 1 23456 7 8 9 10 11 12 13 14 15 16\n",
         {1, "a", "b", 1, 2345, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}},
        {"1 a b 1 2 3 45678 9 10 11 12 13 14 15 16\n",
         {1, "a", "b", 1, 2, 3, 4567, 8, 9, 10, 11, 12, 13, 14, 15}},
        {"1 a b 1 2 3 4 56789 10 11 12 13 14 15 16\n",
         {1, "a", "b", 1, 2, 3, 4, 5678, 9, 10, 11, 12, 13, 14, 15}},
        {"1 1122334455667 b 2 3 4 5 6 7 8 9 10 11 12 13\n",
         {1, "112233445566", "7", 0x5555, 0x5555, 0x5555, 0x5555, 0x5555, 0x5555, 0x5555, 0x5555, 0x5555,
          0x5555, 0x5555, 0x5555}},
        {"1 a aabbccddeeff2 3 4 5 6 7 8 9 10 11 12 13\n",
         {1, "a", "aabbccddeeff", 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}}};
    for (const auto& one : cases) {
        test::writeFile("f", one.line);
        StaConnection record;
        test::mark(record);
        EXPECT_TRUE(stationInfoOnlyReader("f", &record));
        EXPECT_EQ(one.expected.id, record.id);
        EXPECT_TRUE(same(record, one.expected));
    }
}

TEST(StationInfo, readerReadsTheApWhereTheDeviceIsEmpty)
{
    test::writeFile("f", "  0              aabbccddeeff  1    2    3    4    5 6 7 8 9 10 11 12\n");
    StaConnection record;
    test::mark(record);
    EXPECT_TRUE(stationInfoOnlyReader("f", &record));
    const StaConnection expected = {0, "aabbccddeeff", "1", 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 0x5555};
    EXPECT_TRUE(same(record, expected));
}

TEST(StationInfo, readerSplitsAnOverlongLineAfter1023Characters)
{
    char text[1200];
    snprintf(text, sizeof text, "%1022s2%s", "1 a b 1", "34 c d 5\n");
    test::writeFile("f", text);
    StaConnection records[2];
    test::mark(records);
    EXPECT_TRUE(stationInfoOnlyReader("f", records));
    EXPECT_EQ(12, records[0].connectBand);
    EXPECT_EQ(0x5555, records[0].rssi);
    EXPECT_EQ(34, records[1].id);
    EXPECT_STREQ("c", records[1].deviceMac);
    EXPECT_EQ(5, records[1].connectBand);
}

TEST(StationInfo, readerFailsAtABlankRestOfAnOverlongLine)
{
    char text[2048];
    snprintf(text, sizeof text, "  0%.*s%1100s\n", static_cast<int>(sizeof FIRST) - 2, FIRST, "");
    test::writeFile("f", text);
    StaConnection records[2];
    test::mark(records);
    EXPECT_FALSE(stationInfoOnlyReader("f", records));
    EXPECT_TRUE(same(records[0], first));
    EXPECT_TRUE(isMarked(records[1]));
}

static bool readNothing()
{
    StaConnection record;
    test::mark(record);
    const bool result = stationInfoOnlyReader("f", &record);
    EXPECT_TRUE(isMarked(record));
    return result;
}

TEST(StationInfo, readerReportsFailures)
{
    static const Row rows[] = {
        Row("reports a failed open", NO_FILE, noFault, readNothing, false, {readerCannotOpen}),
        Row("fails at a blank first line", "\n", noFault, readNothing, false, {readerCannotRead}),
        Row(
            "fails at a line that starts with a nul", NO_FILE, noFault,
            [] {
                test::writeBytes("f", "\0 1 2 3\n", 8);
                StaConnection record;
                test::mark(record);
                const bool result = stationInfoOnlyReader("f", &record);
                EXPECT_TRUE(isMarked(record));
                return result;
            },
            false, {readerCannotRead}, ANY_FILE),
        Row(
            "ignores a failed close", "  0" FIRST, failsFrom(CLOSE, 1),
            [] {
                StaConnection record;
                const bool result = stationInfoOnlyReader("f", &record);
                EXPECT_TRUE(same(record, first));
                return result;
            },
            true),
        Row("ignores a failed close after a blank line", "\n", failsFrom(CLOSE, 1),
            [] {
                StaConnection record;
                return stationInfoOnlyReader("f", &record);
            },
            false, {readerCannotRead}),
        Row("treats a read error as the end of the file", "  0" FIRST, failsFrom(READ, 1), readNothing, true),
        Row("treats a directory as an empty file", DIRECTORY, noFault, readNothing, true),
    };
    expectRows(rows);
}

/* ---- Reader of two files ------------------------------------------------ */

TEST(StationInfo, readerOfTwoFilesFillsOneArray)
{
    test::writeFile("one", "  0" FIRST "  1" SECOND "  2" THIRD);
    test::writeFile("two", "  0" THIRD " 21" FIRST);
    StaConnection records[6];
    test::mark(records);
    EXPECT_TRUE(stationNodeInfoReader("one", "two", records));
    EXPECT_TRUE(same(records[0], first));
    EXPECT_TRUE(same(records[1], second));
    EXPECT_EQ(1, records[1].id);
    EXPECT_TRUE(same(records[2], third));
    EXPECT_TRUE(same(records[3], third));
    EXPECT_TRUE(same(records[4], first));
    EXPECT_EQ(21, records[4].id);
    EXPECT_TRUE(isMarked(records[5]));
    EXPECT_STREQ("", test::messages());
    EXPECT_EQ(2, test::callCount(test::OPEN));
    EXPECT_STREQ("  0" FIRST "  1" SECOND "  2" THIRD, test::fileText("one"));
    EXPECT_STREQ("  0" THIRD " 21" FIRST, test::fileText("two"));
}

TEST(StationInfo, readerOfTwoFilesAcceptsEmptyOnes)
{
    test::writeFile("none", "");
    test::writeFile("one", "  0" SECOND);
    StaConnection records[2];
    test::mark(records);
    EXPECT_TRUE(stationNodeInfoReader("none", "none", records));
    EXPECT_TRUE(isMarked(records));
    EXPECT_TRUE(stationNodeInfoReader("none", "one", records));
    EXPECT_TRUE(same(records[0], second));
    test::mark(records);
    EXPECT_TRUE(stationNodeInfoReader("one", "none", records));
    EXPECT_TRUE(same(records[0], second));
    EXPECT_TRUE(isMarked(records[1]));
}

TEST(StationInfo, readerOfTwoFilesCountsLinesThatConvertNothing)
{
    test::writeFile("one", "text\n7\n");
    test::writeFile("two", "more\n  1" SECOND);
    StaConnection records[4];
    test::mark(records);
    EXPECT_TRUE(stationNodeInfoReader("one", "two", records));
    EXPECT_TRUE(isMarked(records[0]));
    EXPECT_EQ(7, records[1].id);
    EXPECT_EQ(0x5555, records[1].rssi);
    EXPECT_TRUE(isMarked(records[2]));
    EXPECT_TRUE(same(records[3], second));
}

TEST(StationInfo, readerOfTwoFilesSplitsOverlongLinesOfBoth)
{
    char text[1200];
    snprintf(text, sizeof text, "%1022s2%s", "1 a b 1", "34 c d 5\n");
    test::writeFile("one", text);
    test::writeFile("two", text);
    StaConnection records[4];
    test::mark(records);
    EXPECT_TRUE(stationNodeInfoReader("one", "two", records));
    for (int i = 0; i < 4; i += 2) {
        EXPECT_EQ(12, records[i].connectBand);
        EXPECT_EQ(34, records[i + 1].id);
        EXPECT_EQ(5, records[i + 1].connectBand);
    }
}

TEST(StationInfo, readerOfTwoFilesTreatsAReadErrorAsTheEndOfAFile)
{
    mkdir("directory", 0777);
    test::writeFile("one", "  0" FIRST);
    StaConnection records[2];
    test::mark(records);
    EXPECT_TRUE(stationNodeInfoReader("directory", "one", records));
    EXPECT_TRUE(same(records[0], first));
    test::mark(records);
    EXPECT_TRUE(stationNodeInfoReader("one", "directory", records));
    EXPECT_TRUE(isMarked(records[1]));
    EXPECT_STREQ("", test::messages());
}

/* Where either of two files is missing, both are opened and neither is read. */
static bool readTwo(const char* path, const char* path2, int closes)
{
    StaConnection records[2];
    test::mark(records);
    test::writeFile("one", "  0" FIRST);
    test::writeFile("two", "  0" SECOND);
    const bool result = stationNodeInfoReader(path, path2, records);
    EXPECT_TRUE(isMarked(records));
    EXPECT_EQ(2, test::callCount(test::OPEN));
    EXPECT_EQ(closes, test::callCount(test::CLOSE));
    return result;
}

TEST(StationInfo, readerOfTwoFilesReportsFailures)
{
    static const Row rows[] = {
        Row("cannot open the first file", NO_FILE, noFault, [] { return readTwo("no", "two", 1); }, false,
            {"E stationNodeInfoReader: Failed to read file: no.\n"}),
        Row("names the first path where it cannot open the second file", NO_FILE, noFault,
            [] { return readTwo("one", "no", 1); }, false,
            {"E stationNodeInfoReader: Failed to read file: one.\n"}),
        Row("cannot open either file", NO_FILE, noFault, [] { return readTwo("no", "nor", 0); }, false,
            {"E stationNodeInfoReader: Failed to read file: no.\n"}),
        Row("fails at a blank line of the first", NO_FILE, noFault,
            [] {
                test::writeFile("one", "  0" FIRST "\n  1" SECOND);
                test::writeFile("two", "  0" THIRD);
                StaConnection records[4];
                test::mark(records);
                const bool result = stationNodeInfoReader("one", "two", records);
                EXPECT_TRUE(same(records[0], first));
                EXPECT_TRUE(isMarked(&records[1], 3 * sizeof records[1]));
                EXPECT_EQ(2, test::callCount(test::CLOSE));
                return result;
            },
            false, {"E stationNodeInfoReader: sscanf error, path: one"}),
        Row("fails at a blank line of the second", NO_FILE, noFault,
            [] {
                test::writeFile("one", "  0" FIRST);
                test::writeFile("two", "  0" THIRD " \n");
                StaConnection records[3];
                test::mark(records);
                const bool result = stationNodeInfoReader("one", "two", records);
                EXPECT_TRUE(same(records[0], first));
                EXPECT_TRUE(same(records[1], third));
                EXPECT_TRUE(isMarked(records[2]));
                EXPECT_EQ(2, test::callCount(test::CLOSE));
                return result;
            },
            false, {"E stationNodeInfoReader: sscanf error, path: two"}),
        Row(
            "ignores a failed close", NO_FILE, failsFrom(CLOSE, 1),
            [] {
                test::writeFile("one", "  0" FIRST);
                test::writeFile("two", "  0" SECOND);
                StaConnection records[2];
                const bool result = stationNodeInfoReader("one", "two", records);
                EXPECT_TRUE(same(records[1], second));
                return result;
            },
            true),
    };
    expectRows(rows);
}

/* ---- Append ------------------------------------------------------------- */

TEST(StationInfo, appendPutsTheNewSamplesAfterTheOld)
{
    test::writeFile("f", " 40" FIRST " 41" SECOND);
    StaConnection incoming[] = {third, first, second};
    EXPECT_TRUE(stationInfoAppendWriter("f", incoming, 2));
    EXPECT_STREQ("  0" FIRST "  1" SECOND "  2" THIRD "  3" FIRST, test::fileText("f"));
    EXPECT_STREQ("", test::messages());
    EXPECT_TRUE(same(incoming[0], third));
    EXPECT_EQ(902, incoming[0].id);
    EXPECT_EQ(1, test::callCount(test::ALLOCATE));
}

TEST(StationInfo, appendKeepsTheNewest128Samples)
{
    static const struct {
        int old;
        int added;
        int oldest;
    } cases[] = {{120, 10, 3}, {127, 1, 1},     {128, 1, 2},   {126, 1, 1},     {1, 127, 1},
                 {1, 128, 2},  {128, 0, 1},     {129, 0, 2},   {128, 128, 129}, {200, 1, 74},
                 {1, 129, 3},  {100, 300, 273}, {255, 1, 129}, {256, 44, 173},  {5, 0, 1}};
    for (const auto& one : cases) {
        const int newest = one.old + one.added;
        test::writeFile("f", sampleLines(1, one.old, 7));
        EXPECT_TRUE(stationInfoAppendWriter("f", samples(one.old + 1, one.added), one.added));
        EXPECT_STREQ(sampleLines(one.oldest, newest, 0), test::fileText("f"));
        EXPECT_EQ(newest < 128 ? newest : 128, test::fileLines("f"));
    }
    EXPECT_STREQ("", test::messages());
}

TEST(StationInfo, appendTreatsANegativeCountAsZero)
{
    const int counts[] = {-1, -5, -200, INT_MIN};
    for (const int staNum : counts) {
        test::writeFile("f", "  5" FIRST "  6" SECOND);
        StaConnection incoming = third;
        EXPECT_TRUE(stationInfoAppendWriter("f", &incoming, staNum));
        EXPECT_STREQ("  0" FIRST "  1" SECOND, test::fileText("f"));
        test::writeFile("f", sampleLines(1, 130, 0));
        EXPECT_TRUE(stationInfoAppendWriter("f", &incoming, staNum));
        EXPECT_STREQ(sampleLines(3, 130, 0), test::fileText("f"));
    }
    EXPECT_STREQ("", test::messages());
}

TEST(StationInfo, appendToNoSamplesHasNoLimit)
{
    EXPECT_TRUE(stationInfoAppendWriter("f", samples(1, 300), 300));
    EXPECT_STREQ(sampleLines(1, 300, 0), test::fileText("f"));
    test::writeFile("f", "");
    EXPECT_TRUE(stationInfoAppendWriter("f", samples(1, 129), 129));
    EXPECT_STREQ(sampleLines(1, 129, 0), test::fileText("f"));
}

TEST(StationInfo, appendOfNothingToNoSamplesLeavesAnEmptyFile)
{
    const int counts[] = {0, -1, INT_MIN};
    for (const int staNum : counts) {
        test::clearMessages();
        unlink("f");
        StaConnection incoming = first;
        EXPECT_TRUE(stationInfoAppendWriter("f", &incoming, staNum));
        EXPECT_MESSAGES(counterCannotOpen, appendSavesAlone, appendSaved);
        EXPECT_EQ(0, test::fileSize("f"));

        test::clearMessages();
        EXPECT_TRUE(stationInfoAppendWriter("f", &incoming, staNum));
        EXPECT_MESSAGES(appendSavesAlone, appendSaved);
        EXPECT_EQ(0, test::fileSize("f"));
    }
}

TEST(StationInfo, appendKeepsTheCountedSamplesOfAFileThatGrows)
{
    test::writeFile("f", sampleLines(1, 2, 0));
    test::beforeOpen(2, growToMany);
    EXPECT_TRUE(stationInfoAppendWriter("f", samples(3, 3), 3));
    EXPECT_STREQ(sampleLines(1, 5, 0), test::fileText("f"));

    test::writeFile("f", sampleLines(1, 2, 0));
    test::beforeOpen(2, growToMany);
    EXPECT_TRUE(stationInfoAppendWriter("f", samples(3, 1), 0));
    EXPECT_STREQ(sampleLines(1, 2, 0), test::fileText("f"));
    EXPECT_STREQ("", test::messages());
}

static bool append(StaConnection record, const char* path = "f")
{
    return stationInfoAppendWriter(path, &record, 1);
}

static bool appendThird()
{
    return append(third);
}

TEST(StationInfo, appendReportsItsStepsAndFailures)
{
    static const Row rows[] = {
        Row(
            "saves the incoming samples in a missing file", NO_FILE, noFault,
            [] {
                StaConnection incoming[] = {second, third};
                const bool result = stationInfoAppendWriter("f", incoming, 2);
                EXPECT_EQ(0, test::callCount(test::ALLOCATE));
                return result;
            },
            true, {counterCannotOpen, appendSavesAlone, appendSaved}, "  0" SECOND "  1" THIRD),
        Row(
            "saves the incoming samples in an empty file", "", noFault, [] { return append(second); }, true,
            {appendSavesAlone, appendSaved}, "  0" SECOND),
        Row("reports that the incoming samples cannot be saved", NO_FILE, noFault,
            [] { return append(first, "no/file"); }, false,
            {"E dataLineCounter: Failed to read file: no/file\n", appendSavesAlone,
             "E stationNodeInfoWriter: fopen error, path: no/file.",
             "E stationInfoAppendWriter: Failed to write to file: no/file"}),
        Row(
            "reports a failed print of the incoming samples", "", fails(WRITE, 2),
            [] {
                StaConnection incoming[] = {first, second};
                return stationInfoAppendWriter("f", incoming, 2);
            },
            false, {appendSavesAlone, writerCannotPrint, appendCannotSave}, "  0" FIRST),
        Row("counts the file before it refuses null samples", NO_FILE, noFault,
            [] { return stationInfoAppendWriter("f", nullptr, 1); }, false,
            {counterCannotOpen, appendRefusesNull}),
        Row("refuses null samples on a file with records", "  9" FIRST, noFault,
            [] { return stationInfoAppendWriter("f", nullptr, 1); }, false, {appendRefusesNull}),
        Row("refuses no null samples on a file with records", "  9" FIRST, noFault,
            [] { return stationInfoAppendWriter("f", nullptr, 0); }, false, {appendRefusesNull}),
        Row("refuses a negative number of null samples on a file with records", "  9" FIRST, noFault,
            [] { return stationInfoAppendWriter("f", nullptr, -1); }, false, {appendRefusesNull}),
        Row("reports a failed allocation", "  9" FIRST, failsFrom(ALLOCATE, 1), [] { return append(second); },
            false, {appendCannotAllocate}),
        Row("cannot allocate more samples than an int counts", "  9" FIRST, noFault,
            [] {
                StaConnection incoming = third;
                return stationInfoAppendWriter("f", &incoming, INT_MAX);
            },
            false, {appendCannotAllocate}),
        Row("cannot allocate the samples that an int just does not count", "  9" FIRST " 10" SECOND, noFault,
            [] {
                StaConnection incoming = third;
                return stationInfoAppendWriter("f", &incoming, INT_MAX - 1);
            },
            false, {appendCannotAllocate}),
        Row("reports a file that cannot be read", "  9" FIRST "\n", noFault,
            [] {
                StaConnection incoming = second;
                const bool result = stationInfoAppendWriter("f", &incoming, 1);
                EXPECT_TRUE(same(incoming, second));
                return result;
            },
            false, {readerCannotRead, appendCannotRead}),
        Row("releases the array before it reports a failed write", "  9" FIRST, fails(OPEN, 3),
            [] {
                StaConnection incoming = third;
                const bool result = stationInfoAppendWriter("f", &incoming, 1);
                EXPECT_EQ(0, test::arraysHeldAtLastMessage());
                return result;
            },
            false, {writerCannotOpen, appendCannotRewrite}),
        Row("reports a reader that cannot open", "  9" FIRST, fails(OPEN, 2), appendThird, false,
            {readerCannotOpen, appendCannotRead}),
        Row("reports a writer that cannot open", "  9" FIRST, fails(OPEN, 3), appendThird, false,
            {writerCannotOpen, appendCannotRewrite}),
        Row("replaces a file that cannot be opened for the count", "  9" FIRST, fails(OPEN, 1), appendThird,
            true, {counterCannotOpen, appendSavesAlone, appendSaved}, "  0" THIRD),
        Row("treats a failed close of the count as no samples", "  9" FIRST, fails(CLOSE, 1), appendThird,
            true, {counterCannotClose, appendSavesAlone, appendSaved}, "  0" THIRD),
        Row("reports a failed rewrite of the first sample", "  8" FIRST "  9" SECOND, fails(WRITE, 1),
            appendThird, false, {writerCannotPrint, appendCannotRewrite}, ""),
        Row("reports a failed rewrite of the second sample", "  8" FIRST "  9" SECOND, fails(WRITE, 2),
            appendThird, false, {writerCannotPrint, appendCannotRewrite}, "  0" FIRST),
        Row("reports a failed rewrite of the new sample", "  8" FIRST "  9" SECOND, fails(WRITE, 3),
            appendThird, false, {writerCannotPrint, appendCannotRewrite}, "  0" FIRST "  1" SECOND),
        Row("ignores the other failed closes", "  9" FIRST, failsFrom(CLOSE, 2), appendThird, true, {},
            "  0" FIRST "  1" THIRD),
        Row("writes an empty sample for one that disappears", "  9" FIRST " 10" SECOND,
            changes(2, keepFirstAlone), appendThird, true, {}, "  0" FIRST "  1" EMPTY_RECORD "  2" THIRD),
        Row("writes an empty sample for the only one that disappears", "  9" FIRST, changes(2, emptyFile),
            appendThird, true, {}, "  0" EMPTY_RECORD "  1" THIRD),
        Row("writes an empty sample for one that cannot be read", "  9" FIRST, changes(2, failReads),
            appendThird, true, {}, "  0" EMPTY_RECORD "  1" THIRD),
        Row("cannot read a file that is removed", "  9" FIRST, changes(2, removeFile), appendThird, false,
            {readerCannotOpen, appendCannotRead}, NO_FILE),
        Row("treats a directory as an empty file", DIRECTORY, noFault, appendThird, false,
            {appendSavesAlone, writerCannotOpen, appendCannotSave}),
    };
    expectRows(rows);
}

/* ---- Rates of two streams ----------------------------------------------- */

TEST(StationInfo, mimoSyncTurnsRatesIntoThoseOfTwoStreams)
{
    static const struct {
        uint16_t mimo, rxRate, txRate, rxAfter, txAfter;
    } cases[] = {{1, 100, 7, 200, 14},
                 {1, 40000, 32767, 14464, 65534},
                 {1, 32768, 65535, 0, 65534},
                 {1, 0, 1, 0, 2},
                 {3, 100, 50, 66, 33},
                 {3, 65535, 40000, 43690, 26666},
                 {3, 1, 2, 0, 1},
                 {3, 0, 3, 0, 2},
                 {4, 100, 51, 50, 25},
                 {4, 65535, 1, 32767, 0},
                 {8, 100, 51, 25, 12},
                 {8, 65535, 3, 16383, 0},
                 {8, 4, 7, 1, 1}};
    for (const auto& one : cases) {
        StaConnection record = first;
        record.mimo = one.mimo;
        record.rxRate = one.rxRate;
        record.txRate = one.txRate;
        mimoSync(&record, 1);
        StaConnection expected = first;
        expected.mimo = 2;
        expected.rxRate = one.rxAfter;
        expected.txRate = one.txAfter;
        EXPECT_TRUE(same(record, expected));
        EXPECT_EQ(900, record.id);
    }
    EXPECT_STREQ("", test::messages());
    EXPECT_EQ(0, test::callCount(test::OPEN));
}

TEST(StationInfo, mimoSyncLeavesOtherStreamCountsAlone)
{
    static const uint16_t others[] = {0,  2,   5,   6,   7,   9,   10,  16,  98,
                                      99, 100, 255, 256, 257, 259, 260, 264, 65535};
    for (const uint16_t mimo : others) {
        StaConnection record = second;
        record.mimo = mimo;
        mimoSync(&record, 1);
        StaConnection expected = second;
        expected.mimo = mimo;
        EXPECT_TRUE(same(record, expected));
        EXPECT_EQ(901, record.id);
    }
    EXPECT_STREQ("", test::messages());
}

TEST(StationInfo, mimoSyncChangesTheFirstRecordsAlone)
{
    StaConnection records[] = {third, third, third, third};
    records[0].mimo = MIMO_1;
    records[1].mimo = MIMO_OTHERS;
    records[2].mimo = MIMO_1;
    records[3].mimo = MIMO_1;
    mimoSync(records, 0);
    mimoSync(records, -1);
    EXPECT_EQ(1, records[0].mimo);
    mimoSync(records, 3);
    EXPECT_EQ(6, records[0].rxRate);
    EXPECT_EQ(8, records[0].txRate);
    EXPECT_EQ(2, records[0].mimo);
    EXPECT_EQ(3, records[1].rxRate);
    EXPECT_EQ(99, records[1].mimo);
    EXPECT_EQ(6, records[2].rxRate);
    EXPECT_EQ(2, records[2].mimo);
    EXPECT_EQ(3, records[3].rxRate);
    EXPECT_EQ(1, records[3].mimo);
}

TEST(StationInfo, mimoSyncCountsPastEightBits)
{
    StaConnection* records = samples(1, 300);
    for (int i = 0; i < 300; ++i) {
        records[i].mimo = MIMO_4;
        records[i].rxRate = 90;
    }
    mimoSync(records, 300);
    for (int i = 0; i < 300; ++i) {
        EXPECT_EQ(2, records[i].mimo);
        EXPECT_EQ(45, records[i].rxRate);
    }
}

TEST(StationInfo, mimoValuesAreTheInterfaces)
{
    EXPECT_EQ(0, static_cast<int>(MIMO_UNKONOW));
    EXPECT_EQ(1, static_cast<int>(MIMO_1));
    EXPECT_EQ(2, static_cast<int>(MIMO_2));
    EXPECT_EQ(3, static_cast<int>(MIMO_3));
    EXPECT_EQ(4, static_cast<int>(MIMO_4));
    EXPECT_EQ(8, static_cast<int>(MIMO_8));
    EXPECT_EQ(99, static_cast<int>(MIMO_OTHERS));
}
