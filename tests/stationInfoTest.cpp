/* SPDX-License-Identifier: Apache-2.0 */
#include "testing.h"

#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

/* The lines of three samples behind their position. */
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

/* Whether two samples are equal but for their ids. */
static bool same(const StaConnection& a, const StaConnection& b)
{
    return strcmp(a.deviceMac, b.deviceMac) == 0 && strcmp(a.apMac, b.apMac) == 0 &&
           a.connectBand == b.connectBand && a.rssi == b.rssi && a.rxRate == b.rxRate &&
           a.txRate == b.txRate && a.rxPackageCount == b.rxPackageCount &&
           a.txPackageCount == b.txPackageCount && a.wifimode == b.wifimode && a.bandwidth == b.bandwidth &&
           a.mcslevel == b.mcslevel && a.mimo == b.mimo && a.kvrCapacity == b.kvrCapacity &&
           a.noiselevel == b.noiselevel;
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
    EXPECT_TRUE(stationNodeInfoWriter("stations", records, 3));
    EXPECT_STREQ(test::fileText("stations"),
                 "  0 112233445566 aabbccddeeff  7   45  866  780 1234 54321 5 2 9 3 6 95\n"
                 "  1 223344556677 bbccddeeff00 18 1049 1120 2130 3140 41 51 61 71 81 91 10\n"
                 "  2 334455667788 ccddeeff0011  1    2    3    4    5 6 7 8 9 10 11 12\n");
    EXPECT_STREQ(test::messages(), "");
}

TEST(StationInfo, writerLeavesTheRecordsAndTheirIdsAlone)
{
    StaConnection records[] = {first, second};
    EXPECT_TRUE(stationNodeInfoWriter("stations", records, 2));
    EXPECT_EQ(records[0].id, 900);
    EXPECT_EQ(records[1].id, 901);
    EXPECT_TRUE(same(records[0], first));
    EXPECT_TRUE(same(records[1], second));
}

TEST(StationInfo, writerPrintsTheLargestValuesWhole)
{
    StaConnection record = {65535, "ffffffffffff", "eeeeeeeeeeee", 65535, 65535, 65535, 65535, 65535,
                            65535, 65535,          65535,          65535, 65535, 65535, 65535};
    EXPECT_TRUE(stationNodeInfoWriter("stations", &record, 1));
    EXPECT_STREQ(test::fileText("stations"),
                 "  0 ffffffffffff eeeeeeeeeeee 65535 65535 65535 65535 65535 65535 65535 65535 65535 65535 "
                 "65535 65535\n");
}

TEST(StationInfo, writerAlignsShortMacsToTheRightAndPrintsLongOnesWhole)
{
    StaConnection records[] = {
        {0, "abc", "", 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12},
        {0, "112233445566778", "aabbccddeeff001", 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12},
        {0, "", "aabbccddeeff", 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}};
    EXPECT_TRUE(stationNodeInfoWriter("stations", records, 3));
    EXPECT_STREQ(test::fileText("stations"),
                 "  0          abc               1    2    3    4    5 6 7 8 9 10 11 12\n"
                 "  1 112233445566778 aabbccddeeff001  1    2    3    4    5 6 7 8 9 10 11 12\n"
                 "  2              aabbccddeeff  1    2    3    4    5 6 7 8 9 10 11 12\n");
}

TEST(StationInfo, writerReplacesTheWholeFile)
{
    test::writeFile("stations", "  0" FIRST "  1" SECOND "  2" THIRD);
    StaConnection records[] = {third, first};
    EXPECT_TRUE(stationNodeInfoWriter("stations", records, 1));
    EXPECT_STREQ(test::fileText("stations"), "  0" THIRD);
}

TEST(StationInfo, writerOfNoRecordsLeavesAnEmptyFile)
{
    const int counts[] = {0, -1, INT_MIN};
    for (const int staNum : counts) {
        test::writeFile("stations", "  0" FIRST);
        StaConnection record = second;
        EXPECT_TRUE(stationNodeInfoWriter("stations", &record, staNum));
        EXPECT_EQ(test::fileSize("stations"), 0);
    }
    EXPECT_STREQ(test::messages(), "");
}

TEST(StationInfo, writerPrintsPositionsOfFourDigits)
{
    static StaConnection records[1001];
    EXPECT_TRUE(stationNodeInfoWriter("stations", records, 1001));
    EXPECT_EQ(test::fileLines("stations"), 1001);
    EXPECT_EQ(strncmp(test::fileLine("stations", 99), " 99  ", 5), 0);
    EXPECT_EQ(strncmp(test::fileLine("stations", 300), "300  ", 5), 0);
    EXPECT_EQ(strncmp(test::fileLine("stations", 999), "999  ", 5), 0);
    EXPECT_EQ(strncmp(test::fileLine("stations", 1000), "1000  ", 6), 0);
}

TEST(StationInfo, writerWritesAllOfMoreRecordsThanPositionsCount)
{
    static StaConnection records[65538];
    strcpy(records[65536].deviceMac, "112233445566");
    records[65537] = third;
    EXPECT_TRUE(stationNodeInfoWriter("stations", records, 65538));
    EXPECT_EQ(test::fileLines("stations"), 65538);
    EXPECT_EQ(strncmp(test::fileLine("stations", 65535), "65535  ", 7), 0);
    EXPECT_EQ(strncmp(test::fileLine("stations", 65536), "  0 112233445566 ", 17), 0);
    EXPECT_EQ(strncmp(test::fileLine("stations", 65537), "  1 334455667788 ccddeeff0011 ", 30), 0);
}

TEST(StationInfo, writerReportsAFailedOpen)
{
    StaConnection record = first;
    test::setLevel(3);
    EXPECT_FALSE(stationNodeInfoWriter("no/stations", &record, 1));
    EXPECT_STREQ(test::messages(), "libzo: [stationNodeInfoWriter:#]: fopen error, path: no/stations.|");
    test::clearMessages();
    test::setLevel(2);
    EXPECT_FALSE(stationNodeInfoWriter("no/stations", &record, 1));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(StationInfo, writerThatCannotOpenLeavesTheFileAlone)
{
    test::writeFile("stations", "  0" SECOND);
    StaConnection record = first;
    test::failNth(test::OPEN, 1);
    EXPECT_FALSE(stationNodeInfoWriter("stations", &record, 1));
    EXPECT_STREQ(test::fileText("stations"), "  0" SECOND);
}

TEST(StationInfo, writerStopsAtTheFirstFailedPrint)
{
    static const char* const written[] = {"", "  0" FIRST, "  0" FIRST "  1" SECOND};
    StaConnection records[] = {first, second, third};
    for (int k = 1; k <= 3; ++k) {
        test::clearMessages();
        test::failNth(test::WRITE, k);
        EXPECT_FALSE(stationNodeInfoWriter("stations", records, 3));
        EXPECT_STREQ(test::messages(), "libzo: [stationNodeInfoWriter:#]: fprintf error, path: stations|");
        EXPECT_STREQ(test::fileText("stations"), written[k - 1]);
        EXPECT_EQ(test::openStreams(), 0);
    }
}

TEST(StationInfo, failedPrintIsAnError)
{
    StaConnection record = first;
    test::failFrom(test::WRITE, 1);
    test::setLevel(3);
    EXPECT_FALSE(stationNodeInfoWriter("stations", &record, 1));
    EXPECT_EQ(test::messageCount(), 1);
    test::setLevel(2);
    EXPECT_FALSE(stationNodeInfoWriter("stations", &record, 1));
    EXPECT_EQ(test::messageCount(), 1);
}

TEST(StationInfo, writerNeverLooksAtTheClose)
{
    StaConnection record = first;
    test::failFrom(test::CLOSE, 1);
    EXPECT_TRUE(stationNodeInfoWriter("stations", &record, 1));
    EXPECT_STREQ(test::messages(), "");
    EXPECT_STREQ(test::fileText("stations"), "  0" FIRST);
    test::failNth(test::WRITE, 1);
    EXPECT_FALSE(stationNodeInfoWriter("stations", &record, 1));
    EXPECT_STREQ(test::messages(), "libzo: [stationNodeInfoWriter:#]: fprintf error, path: stations|");
}

TEST(StationInfo, writerNoticesAFullDeviceWhileItPrints)
{
    EXPECT_FALSE(stationNodeInfoWriter("/dev/full", samples(1, 400), 400));
    EXPECT_STREQ(test::messages(), "libzo: [stationNodeInfoWriter:#]: fprintf error, path: /dev/full|");
    test::clearMessages();
    EXPECT_TRUE(stationNodeInfoWriter("/dev/full", samples(1, 1), 1));
    EXPECT_STREQ(test::messages(), "");
}

/* ---- Reader of one file ------------------------------------------------- */

TEST(StationInfo, readerFillsEveryField)
{
    test::writeFile("stations", "  0" FIRST " 17" SECOND "999" THIRD);
    StaConnection records[4];
    mark(records, sizeof records);
    EXPECT_TRUE(stationInfoOnlyReader("stations", records));
    EXPECT_EQ(records[0].id, 0);
    EXPECT_EQ(records[1].id, 17);
    EXPECT_EQ(records[2].id, 999);
    EXPECT_TRUE(same(records[0], first));
    EXPECT_TRUE(same(records[1], second));
    EXPECT_TRUE(same(records[2], third));
    EXPECT_TRUE(isMarked(&records[3], sizeof records[3]));
    EXPECT_STREQ(test::messages(), "");
    EXPECT_EQ(test::callCount(test::OPEN), 1);
    EXPECT_STREQ(test::fileText("stations"), "  0" FIRST " 17" SECOND "999" THIRD);
}

TEST(StationInfo, readerTakesTheLargestValuesOfEveryWidth)
{
    test::writeFile("stations", "999 a b 99 9999 9999 9999 9999 65535 65534 65533 65532 65531 65530 65529");
    StaConnection record;
    mark(&record, sizeof record);
    EXPECT_TRUE(stationInfoOnlyReader("stations", &record));
    const StaConnection expected = {999,   "a",   "b",   99,    9999,  9999,  9999, 9999,
                                    65535, 65534, 65533, 65532, 65531, 65530, 65529};
    EXPECT_TRUE(same(record, expected));
    EXPECT_EQ(record.id, 999);
}

TEST(StationInfo, readerOfAnEmptyFileReadsNothingAndSucceeds)
{
    test::writeFile("stations", "");
    StaConnection record;
    mark(&record, sizeof record);
    EXPECT_TRUE(stationInfoOnlyReader("stations", &record));
    EXPECT_TRUE(isMarked(&record, sizeof record));
    EXPECT_STREQ(test::messages(), "");
}

TEST(StationInfo, readerReportsAFailedOpen)
{
    StaConnection record;
    mark(&record, sizeof record);
    test::setLevel(3);
    EXPECT_FALSE(stationInfoOnlyReader("stations", &record));
    EXPECT_STREQ(test::messages(), "libzo: [stationInfoOnlyReader:#]: Failed to read file: stations.\n|");
    EXPECT_TRUE(isMarked(&record, sizeof record));
    EXPECT_STREQ(test::fileText("stations"), "<missing>");
    test::clearMessages();
    test::setLevel(2);
    EXPECT_FALSE(stationInfoOnlyReader("stations", &record));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(StationInfo, readerFailsAtABlankLine)
{
    static const char* const texts[] = {"  0" FIRST "\n" SECOND, "  0" FIRST " \t \n" SECOND,
                                        "  0" FIRST "\n", "  0" FIRST "  "};
    for (const char* text : texts) {
        test::writeFile("stations", text);
        test::clearMessages();
        StaConnection records[3];
        mark(records, sizeof records);
        EXPECT_FALSE(stationInfoOnlyReader("stations", records));
        EXPECT_STREQ(test::messages(), "libzo: [stationInfoOnlyReader:#]: sscanf error, path: stations|");
        EXPECT_TRUE(same(records[0], first));
        EXPECT_TRUE(isMarked(&records[1], 2 * sizeof records[1]));
        EXPECT_EQ(test::openStreams(), 0);
    }
}

TEST(StationInfo, blankLineIsAnError)
{
    test::writeFile("stations", "\n");
    StaConnection record;
    test::setLevel(3);
    EXPECT_FALSE(stationInfoOnlyReader("stations", &record));
    EXPECT_EQ(test::messageCount(), 1);
    test::setLevel(2);
    EXPECT_FALSE(stationInfoOnlyReader("stations", &record));
    EXPECT_EQ(test::messageCount(), 1);
}

TEST(StationInfo, readerFailsAtALineThatStartsWithANul)
{
    test::writeBytes("stations", "\0 1 2 3\n", 8);
    StaConnection record;
    mark(&record, sizeof record);
    EXPECT_FALSE(stationInfoOnlyReader("stations", &record));
    EXPECT_STREQ(test::messages(), "libzo: [stationInfoOnlyReader:#]: sscanf error, path: stations|");
    EXPECT_TRUE(isMarked(&record, sizeof record));
}

TEST(StationInfo, readerAcceptsALineWithFewerFields)
{
    test::writeFile("stations", "5\n  6 a b 7 8\n  2" THIRD);
    StaConnection records[3];
    mark(records, sizeof records);
    EXPECT_TRUE(stationInfoOnlyReader("stations", records));
    EXPECT_STREQ(test::messages(), "");
    EXPECT_EQ(records[0].id, 5);
    EXPECT_TRUE(isMarked(records[0].deviceMac, sizeof records[0].deviceMac));
    EXPECT_EQ(records[0].noiselevel, 0x5555);
    EXPECT_EQ(records[1].id, 6);
    EXPECT_STREQ(records[1].deviceMac, "a");
    EXPECT_STREQ(records[1].apMac, "b");
    EXPECT_EQ(records[1].connectBand, 7);
    EXPECT_EQ(records[1].rssi, 8);
    EXPECT_EQ(records[1].rxRate, 0x5555);
    EXPECT_EQ(records[1].noiselevel, 0x5555);
    EXPECT_TRUE(same(records[2], third));
}

TEST(StationInfo, readerGivesALineOfTextThatIsNoNumberItsRecord)
{
    test::writeFile("stations", "xyz 1 2 3\n  1" SECOND);
    StaConnection records[2];
    mark(records, sizeof records);
    EXPECT_TRUE(stationInfoOnlyReader("stations", records));
    EXPECT_STREQ(test::messages(), "");
    EXPECT_TRUE(isMarked(&records[0], sizeof records[0]));
    EXPECT_TRUE(same(records[1], second));
}

TEST(StationInfo, readerSplitsARateThatIsTooWide)
{
    test::writeFile("stations", "  0 a b 1 2 12345 6 7 8 9 10 11 12 13 14 15\n");
    StaConnection record;
    mark(&record, sizeof record);
    EXPECT_TRUE(stationInfoOnlyReader("stations", &record));
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
        test::writeFile("stations", one.line);
        StaConnection record;
        mark(&record, sizeof record);
        EXPECT_TRUE(stationInfoOnlyReader("stations", &record));
        EXPECT_EQ(record.id, one.expected.id);
        EXPECT_TRUE(same(record, one.expected));
    }
}

TEST(StationInfo, readerTakesTheApForAnEmptyDevice)
{
    test::writeFile("stations", "  0              aabbccddeeff  1    2    3    4    5 6 7 8 9 10 11 12\n");
    StaConnection record;
    mark(&record, sizeof record);
    EXPECT_TRUE(stationInfoOnlyReader("stations", &record));
    const StaConnection expected = {0, "aabbccddeeff", "1", 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 0x5555};
    EXPECT_TRUE(same(record, expected));
}

TEST(StationInfo, readerSplitsAnOverlongLineAfter1023Characters)
{
    char text[1200];
    snprintf(text, sizeof text, "%1022s2%s", "1 a b 1", "34 c d 5\n");
    test::writeFile("stations", text);
    StaConnection records[2];
    mark(records, sizeof records);
    EXPECT_TRUE(stationInfoOnlyReader("stations", records));
    EXPECT_EQ(records[0].connectBand, 12);
    EXPECT_EQ(records[0].rssi, 0x5555);
    EXPECT_EQ(records[1].id, 34);
    EXPECT_STREQ(records[1].deviceMac, "c");
    EXPECT_EQ(records[1].connectBand, 5);
}

TEST(StationInfo, readerFailsAtABlankRestOfAnOverlongLine)
{
    char text[2048];
    snprintf(text, sizeof text, "  0%.*s%1100s\n", static_cast<int>(sizeof FIRST) - 2, FIRST, "");
    test::writeFile("stations", text);
    StaConnection records[2];
    mark(records, sizeof records);
    EXPECT_FALSE(stationInfoOnlyReader("stations", records));
    EXPECT_TRUE(same(records[0], first));
    EXPECT_TRUE(isMarked(&records[1], sizeof records[1]));
}

TEST(StationInfo, readerIgnoresAFailedClose)
{
    test::writeFile("stations", "  0" FIRST);
    StaConnection record;
    test::failFrom(test::CLOSE, 1);
    EXPECT_TRUE(stationInfoOnlyReader("stations", &record));
    EXPECT_TRUE(same(record, first));
    EXPECT_STREQ(test::messages(), "");
    test::writeFile("stations", "\n");
    EXPECT_FALSE(stationInfoOnlyReader("stations", &record));
    EXPECT_STREQ(test::messages(), "libzo: [stationInfoOnlyReader:#]: sscanf error, path: stations|");
}

TEST(StationInfo, readerTakesAReadErrorForTheEndOfTheFile)
{
    test::writeFile("stations", "  0" FIRST);
    StaConnection record;
    mark(&record, sizeof record);
    test::failFrom(test::READ, 1);
    EXPECT_TRUE(stationInfoOnlyReader("stations", &record));
    test::failNothing();
    mkdir("directory", 0777);
    EXPECT_TRUE(stationInfoOnlyReader("directory", &record));
    EXPECT_TRUE(isMarked(&record, sizeof record));
    EXPECT_STREQ(test::messages(), "");
}

/* ---- Reader of two files ------------------------------------------------ */

TEST(StationInfo, readerOfTwoFilesFillsOneArray)
{
    test::writeFile("one", "  0" FIRST "  1" SECOND "  2" THIRD);
    test::writeFile("two", "  0" THIRD " 21" FIRST);
    StaConnection records[6];
    mark(records, sizeof records);
    EXPECT_TRUE(stationNodeInfoReader("one", "two", records));
    EXPECT_TRUE(same(records[0], first));
    EXPECT_TRUE(same(records[1], second));
    EXPECT_EQ(records[1].id, 1);
    EXPECT_TRUE(same(records[2], third));
    EXPECT_TRUE(same(records[3], third));
    EXPECT_TRUE(same(records[4], first));
    EXPECT_EQ(records[4].id, 21);
    EXPECT_TRUE(isMarked(&records[5], sizeof records[5]));
    EXPECT_STREQ(test::messages(), "");
    EXPECT_EQ(test::callCount(test::OPEN), 2);
    EXPECT_STREQ(test::fileText("one"), "  0" FIRST "  1" SECOND "  2" THIRD);
    EXPECT_STREQ(test::fileText("two"), "  0" THIRD " 21" FIRST);
}

TEST(StationInfo, readerOfTwoFilesTakesEmptyOnes)
{
    test::writeFile("none", "");
    test::writeFile("one", "  0" SECOND);
    StaConnection records[2];
    mark(records, sizeof records);
    EXPECT_TRUE(stationNodeInfoReader("none", "none", records));
    EXPECT_TRUE(isMarked(records, sizeof records));
    EXPECT_TRUE(stationNodeInfoReader("none", "one", records));
    EXPECT_TRUE(same(records[0], second));
    mark(records, sizeof records);
    EXPECT_TRUE(stationNodeInfoReader("one", "none", records));
    EXPECT_TRUE(same(records[0], second));
    EXPECT_TRUE(isMarked(&records[1], sizeof records[1]));
}

TEST(StationInfo, readerOfTwoFilesCountsLinesThatConvertNothing)
{
    test::writeFile("one", "text\n7\n");
    test::writeFile("two", "more\n  1" SECOND);
    StaConnection records[4];
    mark(records, sizeof records);
    EXPECT_TRUE(stationNodeInfoReader("one", "two", records));
    EXPECT_TRUE(isMarked(&records[0], sizeof records[0]));
    EXPECT_EQ(records[1].id, 7);
    EXPECT_EQ(records[1].rssi, 0x5555);
    EXPECT_TRUE(isMarked(&records[2], sizeof records[2]));
    EXPECT_TRUE(same(records[3], second));
}

TEST(StationInfo, readerOfTwoFilesNamesTheFirstPathForEitherFailedOpen)
{
    test::writeFile("one", "  0" FIRST);
    test::writeFile("two", "  0" SECOND);
    static const struct {
        const char* path;
        const char* path2;
        const char* message;
    } cases[] = {
        {"no", "two", "libzo: [stationNodeInfoReader:#]: Failed to read file: no.\n|"},
        {"one", "no", "libzo: [stationNodeInfoReader:#]: Failed to read file: one.\n|"},
        {"no", "nor", "libzo: [stationNodeInfoReader:#]: Failed to read file: no.\n|"},
    };
    StaConnection records[2];
    mark(records, sizeof records);
    test::setLevel(3);
    int opens = 0;
    for (const auto& one : cases) {
        test::clearMessages();
        EXPECT_FALSE(stationNodeInfoReader(one.path, one.path2, records));
        EXPECT_STREQ(test::messages(), one.message);
        opens += 2;
        EXPECT_EQ(test::callCount(test::OPEN), opens);
        EXPECT_EQ(test::openStreams(), 0);
    }
    EXPECT_EQ(test::callCount(test::CLOSE), 2);
    EXPECT_TRUE(isMarked(records, sizeof records));
    test::clearMessages();
    test::setLevel(2);
    EXPECT_FALSE(stationNodeInfoReader("one", "no", records));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(StationInfo, readerOfTwoFilesFailsAtABlankLineOfTheFirst)
{
    test::writeFile("one", "  0" FIRST "\n  1" SECOND);
    test::writeFile("two", "  0" THIRD);
    StaConnection records[4];
    mark(records, sizeof records);
    test::setLevel(3);
    EXPECT_FALSE(stationNodeInfoReader("one", "two", records));
    EXPECT_STREQ(test::messages(), "libzo: [stationNodeInfoReader:#]: sscanf error, path: one|");
    EXPECT_TRUE(same(records[0], first));
    EXPECT_TRUE(isMarked(&records[1], 3 * sizeof records[1]));
    EXPECT_EQ(test::callCount(test::CLOSE), 2);
    test::clearMessages();
    test::setLevel(2);
    EXPECT_FALSE(stationNodeInfoReader("one", "two", records));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(StationInfo, readerOfTwoFilesFailsAtABlankLineOfTheSecond)
{
    test::writeFile("one", "  0" FIRST);
    test::writeFile("two", "  0" THIRD " \n");
    StaConnection records[3];
    mark(records, sizeof records);
    test::setLevel(3);
    EXPECT_FALSE(stationNodeInfoReader("one", "two", records));
    EXPECT_STREQ(test::messages(), "libzo: [stationNodeInfoReader:#]: sscanf error, path: two|");
    EXPECT_TRUE(same(records[0], first));
    EXPECT_TRUE(same(records[1], third));
    EXPECT_TRUE(isMarked(&records[2], sizeof records[2]));
    EXPECT_EQ(test::callCount(test::CLOSE), 2);
    test::clearMessages();
    test::setLevel(2);
    EXPECT_FALSE(stationNodeInfoReader("one", "two", records));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(StationInfo, readerOfTwoFilesSplitsOverlongLinesOfBoth)
{
    char text[1200];
    snprintf(text, sizeof text, "%1022s2%s", "1 a b 1", "34 c d 5\n");
    test::writeFile("one", text);
    test::writeFile("two", text);
    StaConnection records[4];
    mark(records, sizeof records);
    EXPECT_TRUE(stationNodeInfoReader("one", "two", records));
    for (int i = 0; i < 4; i += 2) {
        EXPECT_EQ(records[i].connectBand, 12);
        EXPECT_EQ(records[i + 1].id, 34);
        EXPECT_EQ(records[i + 1].connectBand, 5);
    }
}

TEST(StationInfo, readerOfTwoFilesIgnoresAFailedClose)
{
    test::writeFile("one", "  0" FIRST);
    test::writeFile("two", "  0" SECOND);
    StaConnection records[2];
    test::failFrom(test::CLOSE, 1);
    EXPECT_TRUE(stationNodeInfoReader("one", "two", records));
    EXPECT_TRUE(same(records[1], second));
    EXPECT_STREQ(test::messages(), "");
}

TEST(StationInfo, readerOfTwoFilesTakesAReadErrorForTheEndOfAFile)
{
    mkdir("directory", 0777);
    test::writeFile("one", "  0" FIRST);
    StaConnection records[2];
    mark(records, sizeof records);
    EXPECT_TRUE(stationNodeInfoReader("directory", "one", records));
    EXPECT_TRUE(same(records[0], first));
    mark(records, sizeof records);
    EXPECT_TRUE(stationNodeInfoReader("one", "directory", records));
    EXPECT_TRUE(isMarked(&records[1], sizeof records[1]));
    EXPECT_STREQ(test::messages(), "");
}

/* ---- Append ------------------------------------------------------------- */

TEST(StationInfo, appendPutsTheNewSamplesBehindTheOld)
{
    test::writeFile("stations", " 40" FIRST " 41" SECOND);
    StaConnection incoming[] = {third, first, second};
    EXPECT_TRUE(stationInfoAppendWriter("stations", incoming, 2));
    EXPECT_STREQ(test::fileText("stations"), "  0" FIRST "  1" SECOND "  2" THIRD "  3" FIRST);
    EXPECT_STREQ(test::messages(), "");
    EXPECT_TRUE(same(incoming[0], third));
    EXPECT_EQ(incoming[0].id, 902);
    EXPECT_EQ(test::callCount(test::ALLOCATE), 1);
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
        test::writeFile("stations", sampleLines(1, one.old, 7));
        EXPECT_TRUE(stationInfoAppendWriter("stations", samples(one.old + 1, one.added), one.added));
        EXPECT_STREQ(test::fileText("stations"), sampleLines(one.oldest, newest, 0));
        EXPECT_EQ(test::fileLines("stations"), newest < 128 ? newest : 128);
    }
    EXPECT_STREQ(test::messages(), "");
}

TEST(StationInfo, appendTakesANegativeCountForZero)
{
    const int counts[] = {-1, -5, -200, INT_MIN};
    for (const int staNum : counts) {
        test::writeFile("stations", "  5" FIRST "  6" SECOND);
        StaConnection incoming = third;
        EXPECT_TRUE(stationInfoAppendWriter("stations", &incoming, staNum));
        EXPECT_STREQ(test::fileText("stations"), "  0" FIRST "  1" SECOND);
        test::writeFile("stations", sampleLines(1, 130, 0));
        EXPECT_TRUE(stationInfoAppendWriter("stations", &incoming, staNum));
        EXPECT_STREQ(test::fileText("stations"), sampleLines(3, 130, 0));
    }
    EXPECT_STREQ(test::messages(), "");
}

TEST(StationInfo, appendSavesTheIncomingSamplesInAMissingFile)
{
    StaConnection incoming[] = {second, third};
    EXPECT_TRUE(stationInfoAppendWriter("stations", incoming, 2));
    EXPECT_STREQ(test::messages(),
                 "libzo: [dataLineCounter:#]: Failed to read file: stations\n|"
                 "libzo: [stationInfoAppendWriter:#]: Just save income sta info data|"
                 "libzo: [stationInfoAppendWriter:#]: Sta Info has been written to file: stations|");
    EXPECT_STREQ(test::fileText("stations"), "  0" SECOND "  1" THIRD);
    EXPECT_EQ(test::callCount(test::ALLOCATE), 0);
}

TEST(StationInfo, appendSavesTheIncomingSamplesInAnEmptyFile)
{
    test::writeFile("stations", "");
    StaConnection incoming = second;
    EXPECT_TRUE(stationInfoAppendWriter("stations", &incoming, 1));
    EXPECT_STREQ(test::messages(),
                 "libzo: [stationInfoAppendWriter:#]: Just save income sta info data|"
                 "libzo: [stationInfoAppendWriter:#]: Sta Info has been written to file: stations|");
    EXPECT_STREQ(test::fileText("stations"), "  0" SECOND);
    test::writeFile("stations", "");
    test::clearMessages();
    test::setLevel(5);
    EXPECT_TRUE(stationInfoAppendWriter("stations", &incoming, 1));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(StationInfo, appendToNoSamplesHasNoLimit)
{
    EXPECT_TRUE(stationInfoAppendWriter("stations", samples(1, 300), 300));
    EXPECT_STREQ(test::fileText("stations"), sampleLines(1, 300, 0));
    test::writeFile("stations", "");
    EXPECT_TRUE(stationInfoAppendWriter("stations", samples(1, 129), 129));
    EXPECT_STREQ(test::fileText("stations"), sampleLines(1, 129, 0));
}

TEST(StationInfo, appendOfNothingToNoSamplesLeavesAnEmptyFile)
{
    const int counts[] = {0, -1, INT_MIN};
    for (const int staNum : counts) {
        test::clearMessages();
        unlink("stations");
        StaConnection incoming = first;
        EXPECT_TRUE(stationInfoAppendWriter("stations", &incoming, staNum));
        EXPECT_STREQ(test::messages(),
                     "libzo: [dataLineCounter:#]: Failed to read file: stations\n|"
                     "libzo: [stationInfoAppendWriter:#]: Just save income sta info data|"
                     "libzo: [stationInfoAppendWriter:#]: Sta Info has been written to file: stations|");
        EXPECT_EQ(test::fileSize("stations"), 0);

        test::clearMessages();
        EXPECT_TRUE(stationInfoAppendWriter("stations", &incoming, staNum));
        EXPECT_STREQ(test::messages(),
                     "libzo: [stationInfoAppendWriter:#]: Just save income sta info data|"
                     "libzo: [stationInfoAppendWriter:#]: Sta Info has been written to file: stations|");
        EXPECT_EQ(test::fileSize("stations"), 0);
    }
}

TEST(StationInfo, appendReportsThatTheIncomingSamplesCannotBeSaved)
{
    StaConnection incoming = first;
    EXPECT_FALSE(stationInfoAppendWriter("no/stations", &incoming, 1));
    EXPECT_STREQ(test::messages(),
                 "libzo: [dataLineCounter:#]: Failed to read file: no/stations\n|"
                 "libzo: [stationInfoAppendWriter:#]: Just save income sta info data|"
                 "libzo: [stationNodeInfoWriter:#]: fopen error, path: no/stations.|"
                 "libzo: [stationInfoAppendWriter:#]: Failed to write to file: no/stations|");
    test::clearMessages();
    test::setLevel(3);
    EXPECT_FALSE(stationInfoAppendWriter("no/stations", &incoming, 1));
    EXPECT_STREQ(test::messages(),
                 "libzo: [dataLineCounter:#]: Failed to read file: no/stations\n|"
                 "libzo: [stationNodeInfoWriter:#]: fopen error, path: no/stations.|"
                 "libzo: [stationInfoAppendWriter:#]: Failed to write to file: no/stations|");
    test::clearMessages();
    test::setLevel(2);
    EXPECT_FALSE(stationInfoAppendWriter("no/stations", &incoming, 1));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(StationInfo, appendReportsAFailedPrintOfTheIncomingSamples)
{
    test::writeFile("stations", "");
    StaConnection incoming[] = {first, second};
    test::failNth(test::WRITE, 2);
    EXPECT_FALSE(stationInfoAppendWriter("stations", incoming, 2));
    EXPECT_STREQ(test::messages(), "libzo: [stationInfoAppendWriter:#]: Just save income sta info data|"
                                   "libzo: [stationNodeInfoWriter:#]: fprintf error, path: stations|"
                                   "libzo: [stationInfoAppendWriter:#]: Failed to write to file: stations|");
    EXPECT_STREQ(test::fileText("stations"), "  0" FIRST);
}

TEST(StationInfo, appendCountsTheFileBeforeItRefusesNullSamples)
{
    EXPECT_FALSE(stationInfoAppendWriter("stations", nullptr, 1));
    EXPECT_STREQ(test::messages(), "libzo: [dataLineCounter:#]: Failed to read file: stations\n|"
                                   "libzo: [stationInfoAppendWriter:#]: null pIncomeStaInfo|");
    EXPECT_STREQ(test::fileText("stations"), "<missing>");
}

TEST(StationInfo, appendRefusesNullSamplesAsAnError)
{
    test::writeFile("stations", "  9" FIRST);
    const int counts[] = {1, 0, -1};
    for (const int staNum : counts) {
        test::clearMessages();
        test::setLevel(3);
        EXPECT_FALSE(stationInfoAppendWriter("stations", nullptr, staNum));
        EXPECT_STREQ(test::messages(), "libzo: [stationInfoAppendWriter:#]: null pIncomeStaInfo|");
        EXPECT_STREQ(test::fileText("stations"), "  9" FIRST);
        test::clearMessages();
        test::setLevel(2);
        EXPECT_FALSE(stationInfoAppendWriter("stations", nullptr, staNum));
        EXPECT_EQ(test::messageCount(), 0);
    }
}

TEST(StationInfo, appendReportsAFailedAllocation)
{
    test::writeFile("stations", "  9" FIRST);
    StaConnection incoming = second;
    test::setLevel(3);
    test::failFrom(test::ALLOCATE, 1);
    EXPECT_FALSE(stationInfoAppendWriter("stations", &incoming, 1));
    EXPECT_STREQ(test::messages(),
                 "libzo: [stationInfoAppendWriter:#]: Failed to allocate memory for StaConnection|");
    EXPECT_STREQ(test::fileText("stations"), "  9" FIRST);
    test::clearMessages();
    test::setLevel(2);
    EXPECT_FALSE(stationInfoAppendWriter("stations", &incoming, 1));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(StationInfo, appendCannotAllocateMoreSamplesThanAnIntCounts)
{
    StaConnection incoming = third;
    test::writeFile("stations", "  9" FIRST);
    EXPECT_FALSE(stationInfoAppendWriter("stations", &incoming, INT_MAX));
    EXPECT_STREQ(test::messages(),
                 "libzo: [stationInfoAppendWriter:#]: Failed to allocate memory for StaConnection|");
    EXPECT_STREQ(test::fileText("stations"), "  9" FIRST);

    test::clearMessages();
    test::writeFile("stations", "  9" FIRST " 10" SECOND);
    EXPECT_FALSE(stationInfoAppendWriter("stations", &incoming, INT_MAX - 1));
    EXPECT_STREQ(test::messages(),
                 "libzo: [stationInfoAppendWriter:#]: Failed to allocate memory for StaConnection|");
    EXPECT_STREQ(test::fileText("stations"), "  9" FIRST " 10" SECOND);
}

TEST(StationInfo, appendReportsAFileThatCannotBeRead)
{
    test::writeFile("stations", "  9" FIRST "\n");
    StaConnection incoming = second;
    test::setLevel(3);
    EXPECT_FALSE(stationInfoAppendWriter("stations", &incoming, 1));
    EXPECT_STREQ(test::messages(), "libzo: [stationInfoOnlyReader:#]: sscanf error, path: stations|"
                                   "libzo: [stationInfoAppendWriter:#]: Failed to read file: stations|");
    EXPECT_STREQ(test::fileText("stations"), "  9" FIRST "\n");
    EXPECT_TRUE(same(incoming, second));
    test::clearMessages();
    test::setLevel(2);
    EXPECT_FALSE(stationInfoAppendWriter("stations", &incoming, 1));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(StationInfo, appendReleasesTheArrayBeforeItReportsAFailedWrite)
{
    StaConnection incoming = third;
    test::writeFile("stations", "  9" FIRST);
    test::failNth(test::OPEN, 3);
    EXPECT_FALSE(stationInfoAppendWriter("stations", &incoming, 1));
    EXPECT_EQ(test::arraysHeldAtLastMessage(), 0);
}

TEST(StationInfo, appendMeetsAFailedOpenOfEveryStep)
{
    StaConnection incoming = third;
    test::writeFile("stations", "  9" FIRST);
    test::failNth(test::OPEN, 2);
    EXPECT_FALSE(stationInfoAppendWriter("stations", &incoming, 1));
    EXPECT_STREQ(test::messages(), "libzo: [stationInfoOnlyReader:#]: Failed to read file: stations.\n|"
                                   "libzo: [stationInfoAppendWriter:#]: Failed to read file: stations|");
    EXPECT_STREQ(test::fileText("stations"), "  9" FIRST);

    test::clearMessages();
    test::failNth(test::OPEN, 3);
    EXPECT_FALSE(stationInfoAppendWriter("stations", &incoming, 1));
    EXPECT_STREQ(test::messages(),
                 "libzo: [stationNodeInfoWriter:#]: fopen error, path: stations.|"
                 "libzo: [stationInfoAppendWriter:#]: Failed to add new sta info data to file: stations|");
    EXPECT_STREQ(test::fileText("stations"), "  9" FIRST);

    test::clearMessages();
    test::failNth(test::OPEN, 1);
    EXPECT_TRUE(stationInfoAppendWriter("stations", &incoming, 1));
    EXPECT_STREQ(test::messages(),
                 "libzo: [dataLineCounter:#]: Failed to read file: stations\n|"
                 "libzo: [stationInfoAppendWriter:#]: Just save income sta info data|"
                 "libzo: [stationInfoAppendWriter:#]: Sta Info has been written to file: stations|");
    EXPECT_STREQ(test::fileText("stations"), "  0" THIRD);
}

TEST(StationInfo, appendTakesAFailedCloseOfTheCountForNoSamples)
{
    StaConnection incoming = third;
    test::writeFile("stations", "  9" FIRST);
    test::setLevel(3);
    test::failNth(test::CLOSE, 1);
    EXPECT_TRUE(stationInfoAppendWriter("stations", &incoming, 1));
    EXPECT_STREQ(test::messages(), "libzo: [dataLineCounter:#]: fclose error, path:stations.\n|");
    EXPECT_STREQ(test::fileText("stations"), "  0" THIRD);
}

TEST(StationInfo, appendIgnoresTheOtherFailedCloses)
{
    StaConnection incoming = third;
    test::writeFile("stations", "  9" FIRST);
    test::failFrom(test::CLOSE, 2);
    EXPECT_TRUE(stationInfoAppendWriter("stations", &incoming, 1));
    EXPECT_STREQ(test::messages(), "");
    EXPECT_STREQ(test::fileText("stations"), "  0" FIRST "  1" THIRD);
}

TEST(StationInfo, appendReportsAFailedRewrite)
{
    static const char* const written[] = {"", "  0" FIRST, "  0" FIRST "  1" SECOND};
    StaConnection incoming = third;
    test::setLevel(3);
    for (int k = 1; k <= 3; ++k) {
        test::writeFile("stations", "  8" FIRST "  9" SECOND);
        test::clearMessages();
        test::failNth(test::WRITE, k);
        EXPECT_FALSE(stationInfoAppendWriter("stations", &incoming, 1));
        EXPECT_STREQ(
            test::messages(),
            "libzo: [stationNodeInfoWriter:#]: fprintf error, path: stations|"
            "libzo: [stationInfoAppendWriter:#]: Failed to add new sta info data to file: stations|");
        EXPECT_STREQ(test::fileText("stations"), written[k - 1]);
    }
    test::writeFile("stations", "  8" FIRST);
    test::clearMessages();
    test::setLevel(2);
    test::failNth(test::WRITE, 1);
    EXPECT_FALSE(stationInfoAppendWriter("stations", &incoming, 1));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(StationInfo, appendKeepsTheCountedSamplesOfAFileThatGrows)
{
    test::writeFile("stations", sampleLines(1, 2, 0));
    test::beforeOpen(2, growToMany);
    EXPECT_TRUE(stationInfoAppendWriter("stations", samples(3, 3), 3));
    EXPECT_STREQ(test::fileText("stations"), sampleLines(1, 5, 0));

    test::writeFile("stations", sampleLines(1, 2, 0));
    test::beforeOpen(2, growToMany);
    EXPECT_TRUE(stationInfoAppendWriter("stations", samples(3, 1), 0));
    EXPECT_STREQ(test::fileText("stations"), sampleLines(1, 2, 0));
    EXPECT_STREQ(test::messages(), "");
}

TEST(StationInfo, appendWritesEmptySamplesForThoseThatAreGone)
{
    StaConnection incoming = third;
    test::writeFile("stations", "  9" FIRST " 10" SECOND);
    test::beforeOpen(2, keepFirstAlone);
    EXPECT_TRUE(stationInfoAppendWriter("stations", &incoming, 1));
    EXPECT_STREQ(test::fileText("stations"), "  0" FIRST "  1" EMPTY_RECORD "  2" THIRD);

    test::writeFile("stations", "  9" FIRST);
    test::beforeOpen(2, emptyFile);
    EXPECT_TRUE(stationInfoAppendWriter("stations", &incoming, 1));
    EXPECT_STREQ(test::fileText("stations"), "  0" EMPTY_RECORD "  1" THIRD);

    test::writeFile("stations", "  9" FIRST);
    test::beforeOpen(2, failReads);
    EXPECT_TRUE(stationInfoAppendWriter("stations", &incoming, 1));
    EXPECT_STREQ(test::fileText("stations"), "  0" EMPTY_RECORD "  1" THIRD);
    EXPECT_STREQ(test::messages(), "");
}

TEST(StationInfo, appendCannotReadAFileThatIsRemoved)
{
    StaConnection incoming = third;
    test::writeFile("stations", "  9" FIRST);
    test::beforeOpen(2, removeFile);
    EXPECT_FALSE(stationInfoAppendWriter("stations", &incoming, 1));
    EXPECT_STREQ(test::messages(), "libzo: [stationInfoOnlyReader:#]: Failed to read file: stations.\n|"
                                   "libzo: [stationInfoAppendWriter:#]: Failed to read file: stations|");
    EXPECT_STREQ(test::fileText("stations"), "<missing>");
}

TEST(StationInfo, appendTakesADirectoryForAnEmptyFile)
{
    mkdir("stations", 0777);
    StaConnection incoming = third;
    test::setLevel(3);
    EXPECT_FALSE(stationInfoAppendWriter("stations", &incoming, 1));
    EXPECT_STREQ(test::messages(), "libzo: [stationNodeInfoWriter:#]: fopen error, path: stations.|"
                                   "libzo: [stationInfoAppendWriter:#]: Failed to write to file: stations|");
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
        EXPECT_EQ(record.id, 900);
    }
    EXPECT_STREQ(test::messages(), "");
    EXPECT_EQ(test::callCount(test::OPEN), 0);
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
        EXPECT_EQ(record.id, 901);
    }
    EXPECT_STREQ(test::messages(), "");
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
    EXPECT_EQ(records[0].mimo, 1);
    mimoSync(records, 3);
    EXPECT_EQ(records[0].rxRate, 6);
    EXPECT_EQ(records[0].txRate, 8);
    EXPECT_EQ(records[0].mimo, 2);
    EXPECT_EQ(records[1].rxRate, 3);
    EXPECT_EQ(records[1].mimo, 99);
    EXPECT_EQ(records[2].rxRate, 6);
    EXPECT_EQ(records[2].mimo, 2);
    EXPECT_EQ(records[3].rxRate, 3);
    EXPECT_EQ(records[3].mimo, 1);
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
        EXPECT_EQ(records[i].mimo, 2);
        EXPECT_EQ(records[i].rxRate, 45);
    }
}

TEST(StationInfo, mimoValuesAreTheInterfaces)
{
    EXPECT_EQ(static_cast<int>(MIMO_UNKONOW), 0);
    EXPECT_EQ(static_cast<int>(MIMO_1), 1);
    EXPECT_EQ(static_cast<int>(MIMO_2), 2);
    EXPECT_EQ(static_cast<int>(MIMO_3), 3);
    EXPECT_EQ(static_cast<int>(MIMO_4), 4);
    EXPECT_EQ(static_cast<int>(MIMO_8), 8);
    EXPECT_EQ(static_cast<int>(MIMO_OTHERS), 99);
}
