/* SPDX-License-Identifier: Apache-2.0 */
#include "messages.h"
#include "scenario.h"

#include <limits.h>
#include <sys/stat.h>

using namespace messages::fileHelpers;
using namespace messages::scanning;
using namespace test;

static const char oneLine[] = "aabbccddee01 aabbccddee02  1  36  40\n";
static const char threeLines[] = "aabbccddee01 aabbccddee02  1  36  40\n"
                                 "aabbccddee03 aabbccddee04  2 149  60\n"
                                 "aabbccddee01 aabbccddee05  3   6  80\n";
static const char blankInside[] = "aabbccddee01 aabbccddee02  1  36  40\n"
                                  "\n"
                                  "aabbccddee03 aabbccddee04  2 149  60\n";

static ScanningInfo sighting(const char* device, const char* neighbour, uint8_t band, uint8_t channel,
                             uint8_t rssi)
{
    ScanningInfo info = {};
    snprintf(info.deviceMAC, sizeof info.deviceMAC, "%s", device);
    snprintf(info.neighbourMAC, sizeof info.neighbourMAC, "%s", neighbour);
    info.band = band;
    info.channel = channel;
    info.rssi = rssi;
    return info;
}

static void expectSighting(const ScanningInfo& info, const char* device, const char* neighbour, int band,
                           int channel, int rssi)
{
    EXPECT_STREQ(device, info.deviceMAC);
    EXPECT_STREQ(neighbour, info.neighbourMAC);
    EXPECT_EQ(band, info.band);
    EXPECT_EQ(channel, info.channel);
    EXPECT_EQ(rssi, info.rssi);
}

/* A history of `count` lines, line i from device number i, all of rssi 50. */
static void writeHistory(int count)
{
    static char text[400 * 37 + 1];
    int length = 0;
    for (int i = 0; i < count; ++i)
        length += snprintf(text + length, sizeof text - static_cast<size_t>(length),
                           "%012d bbbbbbbbbbbb  1  36  50\n", i);
    test::writeBytes("f", text, static_cast<size_t>(length));
}

static ScanningInfo many[600];

static ScanningInfo* manySightings()
{
    for (int i = 0; i < 600; ++i) {
        many[i] = sighting("", "cccccccccccc", 2, 40, 70);
        snprintf(many[i].deviceMAC, sizeof many[i].deviceMAC, "n%011d", i);
    }
    return many;
}

/* ---- Reader ------------------------------------------------------------- */

TEST(ScanningInfo, readerLoadsEveryFieldOfEveryLine)
{
    test::writeFile("f", threeLines);
    ScanningInfo infos[4] = {};
    infos[3] = sighting("kept", "keptToo", 7, 8, 9);
    EXPECT_TRUE(scanningInfoReader("f", infos));
    expectSighting(infos[0], "aabbccddee01", "aabbccddee02", 1, 36, 37);
    expectSighting(infos[1], "aabbccddee03", "aabbccddee04", 2, 149, 57);
    expectSighting(infos[2], "aabbccddee01", "aabbccddee05", 3, 6, 77);
    expectSighting(infos[3], "kept", "keptToo", 7, 8, 9);
    EXPECT_STREQ("", test::messages());
    EXPECT_STREQ(threeLines, test::fileText("f"));
}

TEST(ScanningInfo, readerReadsTheLastLineWithoutItsNewline)
{
    test::writeFile("f", "aa bb 1 2 13\ncc dd 4 5 16");
    ScanningInfo infos[2] = {};
    EXPECT_TRUE(scanningInfoReader("f", infos));
    expectSighting(infos[0], "aa", "bb", 1, 2, 10);
    expectSighting(infos[1], "cc", "dd", 4, 5, 13);
}

TEST(ScanningInfo, readerLowersTheRssiByThreeButNotBelowOne)
{
    test::writeFile("f", "aa bb 1 2 0\naa bb 1 2 1\naa bb 1 2 2\naa bb 1 2 3\naa bb 1 2 4\naa bb 1 2 5\n"
                         "aa bb 1 2 6\naa bb 1 2 127\naa bb 1 2 128\naa bb 1 2 254\naa bb 1 2 255\n");
    static const int expected[] = {1, 1, 1, 1, 1, 2, 3, 124, 125, 251, 252};
    ScanningInfo infos[11] = {};
    EXPECT_TRUE(scanningInfoReader("f", infos));
    for (int i = 0; i < 11; ++i)
        EXPECT_EQ(expected[i], infos[i].rssi);
}

TEST(ScanningInfo, readerFollowsTheCompensationSetting)
{
    test::writeFile("f", "aa bb 1 2 0\naa bb 1 2 1\naa bb 1 2 2\naa bb 1 2 254\naa bb 1 2 255\n");
    static const struct {
        uint8_t setting;
        int expected[5];
    } rows[] = {{0, {1, 1, 2, 254, 255}}, {1, {1, 1, 1, 253, 254}}, {128, {1, 1, 1, 126, 127}},
                {253, {1, 1, 1, 1, 2}},   {254, {1, 1, 1, 1, 1}},   {255, {1, 1, 1, 1, 1}}};
    for (const auto& row : rows) {
        ScanningInfo infos[5] = {};
        ai_yra_rssi_compensation = row.setting;
        EXPECT_TRUE(scanningInfoReader("f", infos));
        for (int i = 0; i < 5; ++i)
            EXPECT_EQ(row.expected[i], infos[i].rssi);
        EXPECT_EQ(row.setting, ai_yra_rssi_compensation);
    }
}

TEST(ScanningInfo, readerKeepsToTheInputWidths)
{
    test::writeFile("f", "aabbccddeeff1 7 12 5 30\n" /* a MAC of 13: the rest is the neighbour */
                         "aa aabbccddeeff9 8 21\n"   /* the same for the neighbour: the rest is the band */
                         "aa bb 123 45 6\n"          /* a band of 3: the rest is the channel */
                         "aa bb 1 1234 5\n"          /* a channel of 4: the rest is the rssi */
                         "aa bb 99 255 1004\n");     /* an rssi of 4: the rest is left */
    ScanningInfo infos[5] = {};
    EXPECT_TRUE(scanningInfoReader("f", infos));
    expectSighting(infos[0], "aabbccddeeff", "1", 7, 12, 2);
    expectSighting(infos[1], "aa", "aabbccddeeff", 9, 8, 18);
    expectSighting(infos[2], "aa", "bb", 12, 3, 42);
    expectSighting(infos[3], "aa", "bb", 1, 123, 1);
    expectSighting(infos[4], "aa", "bb", 99, 255, 97);
}

TEST(ScanningInfo, readerSkipsBlanksBeforeFieldsAndIgnoresWhatFollows)
{
    test::writeFile("f", "  \t aa    bb\t 1   2    30 more 5\n         cc           dd  3   4  50  \n");
    ScanningInfo infos[2] = {};
    EXPECT_TRUE(scanningInfoReader("f", infos));
    expectSighting(infos[0], "aa", "bb", 1, 2, 27);
    expectSighting(infos[1], "cc", "dd", 3, 4, 47);
}

TEST(ScanningInfo, readerReadsLeadingZerosAsDecimal)
{
    test::writeFile("f", "aa bb 07 010 020\naa bb 09 011 021\n");
    ScanningInfo infos[2] = {};
    EXPECT_TRUE(scanningInfoReader("f", infos));
    expectSighting(infos[0], "aa", "bb", 7, 10, 17);
    expectSighting(infos[1], "aa", "bb", 9, 11, 18);
}

TEST(ScanningInfo, readerKeepsUnconvertedFieldsAndStillCompensatesTheRssi)
{
    test::writeFile("f", "aa\naa bb\naa bb 1\naa bb 1 2\naa bb x 2 90\naa bb 1 x 90\naa bb 1 2 x\n");
    ScanningInfo infos[7];
    for (ScanningInfo& info : infos)
        info = sighting("kept", "keptToo", 7, 8, 100);
    infos[6].rssi = 2;
    EXPECT_TRUE(scanningInfoReader("f", infos));
    expectSighting(infos[0], "aa", "keptToo", 7, 8, 97);
    expectSighting(infos[1], "aa", "bb", 7, 8, 97);
    expectSighting(infos[2], "aa", "bb", 1, 8, 97);
    expectSighting(infos[3], "aa", "bb", 1, 2, 97);
    expectSighting(infos[4], "aa", "bb", 7, 8, 97);
    expectSighting(infos[5], "aa", "bb", 1, 8, 97);
    expectSighting(infos[6], "aa", "bb", 1, 2, 1);
    EXPECT_STREQ("", test::messages());
}

TEST(ScanningInfo, readerTreatsEveryKindOfBlankLineAsAnError)
{
    static const char* const texts[] = {"\n", "     \n", " \t \n", "   ", "\r\n"};
    for (const char* text : texts) {
        ScanningInfo info = sighting("kept", "keptToo", 7, 8, 100);
        test::writeFile("f", text);
        test::clearMessages();
        EXPECT_FALSE(scanningInfoReader("f", &info));
        expectSighting(info, "kept", "keptToo", 7, 8, 100);
        EXPECT_MESSAGES(readerCannotRead);
    }
}

TEST(ScanningInfo, readerTreatsALineThatBeginsWithANulAsBlank)
{
    ScanningInfo info = sighting("kept", "keptToo", 7, 8, 100);
    test::writeBytes("f", "\0aa bb 1 2 30\n", 14);
    EXPECT_FALSE(scanningInfoReader("f", &info));
    expectSighting(info, "kept", "keptToo", 7, 8, 100);
    EXPECT_MESSAGES(readerCannotRead);
}

TEST(ScanningInfo, readerReadsALineOfMoreThan1023CharactersAsTwo)
{
    char text[1100];
    memset(text, ' ', sizeof text);
    memcpy(text, "aa bb 1 2 30", 12);
    snprintf(text + 1023, sizeof text - 1023, "cc dd 3 4 50\nee ff 5 6 70\n");
    test::writeFile("f", text);
    EXPECT_EQ(3, dataLineCounter("f"));
    ScanningInfo infos[3] = {};
    EXPECT_TRUE(scanningInfoReader("f", infos));
    expectSighting(infos[0], "aa", "bb", 1, 2, 27);
    expectSighting(infos[1], "cc", "dd", 3, 4, 47);
    expectSighting(infos[2], "ee", "ff", 5, 6, 67);
}

TEST(ScanningInfo, readerReadsALineOf1022CharactersAsOne)
{
    char text[1100];
    memset(text, ' ', sizeof text);
    memcpy(text, "aa bb 1 2 30", 12);
    snprintf(text + 1022, sizeof text - 1022, "\ncc dd 3 4 50\n");
    test::writeFile("f", text);
    ScanningInfo infos[2] = {};
    EXPECT_TRUE(scanningInfoReader("f", infos));
    expectSighting(infos[0], "aa", "bb", 1, 2, 27);
    expectSighting(infos[1], "cc", "dd", 3, 4, 47);
}

TEST(ScanningInfo, readerTreatsTheNewlineAfter1023CharactersAsABlankLine)
{
    char text[1100];
    memset(text, ' ', sizeof text);
    memcpy(text, "aa bb 1 2 30", 12);
    snprintf(text + 1023, sizeof text - 1023, "\n");
    test::writeFile("f", text);
    ScanningInfo infos[2] = {};
    EXPECT_FALSE(scanningInfoReader("f", infos));
    expectSighting(infos[0], "aa", "bb", 1, 2, 27);
    EXPECT_MESSAGES(readerCannotRead);
}

TEST(ScanningInfo, readerOfAnEmptyFileReadsNothingAndSucceeds)
{
    ScanningInfo info = sighting("kept", "keptToo", 7, 8, 100);
    test::writeFile("f", "");
    EXPECT_TRUE(scanningInfoReader("f", &info));
    expectSighting(info, "kept", "keptToo", 7, 8, 100);
    EXPECT_STREQ("", test::messages());
}

static bool readNothing()
{
    ScanningInfo info = sighting("kept", "keptToo", 7, 8, 100);
    const bool result = scanningInfoReader("f", &info);
    expectSighting(info, "kept", "keptToo", 7, 8, 100);
    return result;
}

TEST(ScanningInfo, readerReportsFailures)
{
    static const Row rows[] = {
        Row("stops at a blank line with the earlier records filled", blankInside, noFault,
            [] {
                ScanningInfo infos[3];
                for (ScanningInfo& info : infos)
                    info = sighting("kept", "keptToo", 7, 8, 100);
                const bool result = scanningInfoReader("f", infos);
                expectSighting(infos[0], "aabbccddee01", "aabbccddee02", 1, 36, 37);
                expectSighting(infos[1], "kept", "keptToo", 7, 8, 100);
                expectSighting(infos[2], "kept", "keptToo", 7, 8, 100);
                return result;
            },
            false, {readerCannotRead}),
        Row("reports a blank line", blankInside, noFault,
            [] {
                ScanningInfo infos[3] = {};
                return scanningInfoReader("f", infos);
            },
            false, {readerCannotRead}),
        Row("does not look at the close after a blank line", blankInside, fails(CLOSE, 1),
            [] {
                ScanningInfo infos[3] = {};
                return scanningInfoReader("f", infos);
            },
            false, {readerCannotRead}),
        Row("of a missing file fails", NO_FILE, noFault, readNothing, false, {readerCannotOpen}),
        Row("reports a failed close", oneLine, fails(CLOSE, 1),
            [] {
                ScanningInfo info = {};
                const bool result = scanningInfoReader("f", &info);
                expectSighting(info, "aabbccddee01", "aabbccddee02", 1, 36, 37);
                return result;
            },
            false, {readerCannotClose}),
        Row("treats a read error as the end", oneLine, failsFrom(READ, 1), readNothing, true),
        Row("treats a directory as an empty file", DIRECTORY, noFault, readNothing, true),
    };
    expectRows(rows);
}

/* ---- Writer ------------------------------------------------------------- */

TEST(ScanningInfo, writerPrintsOneAlignedLinePerRecord)
{
    ScanningInfo infos[] = {sighting("aabbccddee01", "aabbccddee02", 1, 36, 40),
                            sighting("ab", "c", 12, 3, 200), sighting("aabbccddee05", "06", 255, 254, 0),
                            sighting("0123456789abcde", "fedcba987654321", 0, 0, 253)};
    ScanningInfo before[4];
    memcpy(before, infos, sizeof infos);
    EXPECT_TRUE(scanningInfoWriter("f", infos, 4));
    EXPECT_STREQ("aabbccddee01 aabbccddee02  1  36  40\n"
                 "          ab            c 12   3 200\n"
                 "aabbccddee05           06 255 254   0\n"
                 "0123456789abcde fedcba987654321  0   0 253\n",
                 test::fileText("f"));
    EXPECT_EQ(0, memcmp(before, infos, sizeof infos));
    EXPECT_STREQ("", test::messages());
}

TEST(ScanningInfo, writerIgnoresTheCompensation)
{
    ScanningInfo info = sighting("aa", "bb", 1, 2, 3);
    ai_yra_rssi_compensation = 200;
    EXPECT_TRUE(scanningInfoWriter("f", &info, 1));
    EXPECT_STREQ("          aa           bb  1   2   3\n", test::fileText("f"));
}

TEST(ScanningInfo, writerPrintsRecordsWithEmptyMacs)
{
    ScanningInfo infos[] = {sighting("", "", 1, 2, 3), sighting("aa", "bb", 4, 5, 6), ScanningInfo()};
    EXPECT_TRUE(scanningInfoWriter("f", infos, 3));
    EXPECT_STREQ("                           1   2   3\n"
                 "          aa           bb  4   5   6\n"
                 "                           0   0   0\n",
                 test::fileText("f"));
}

TEST(ScanningInfo, writerReplacesTheFileByTheFirstRecords)
{
    ScanningInfo infos[] = {sighting("aa", "bb", 1, 2, 3), sighting("cc", "dd", 4, 5, 6),
                            sighting("ee", "ff", 7, 8, 9)};
    test::writeFile("f", threeLines);
    EXPECT_TRUE(scanningInfoWriter("f", infos, 2));
    EXPECT_STREQ("          aa           bb  1   2   3\n"
                 "          cc           dd  4   5   6\n",
                 test::fileText("f"));
}

TEST(ScanningInfo, writerOfNoRecordsLeavesAnEmptyFile)
{
    static const int counts[] = {0, -1, INT_MIN};
    ScanningInfo info = sighting("aa", "bb", 1, 2, 3);
    for (int count : counts) {
        test::writeFile("f", threeLines);
        EXPECT_TRUE(scanningInfoWriter("f", &info, count));
        EXPECT_EQ(0L, test::fileSize("f"));
        remove("f");
        EXPECT_TRUE(scanningInfoWriter("f", &info, count));
        EXPECT_EQ(0L, test::fileSize("f"));
    }
    EXPECT_STREQ("", test::messages());
}

TEST(ScanningInfo, writerHasNoCap)
{
    EXPECT_TRUE(scanningInfoWriter("f", manySightings(), 600));
    EXPECT_EQ(600, test::fileLines("f"));
    EXPECT_STREQ("n00000000000 cccccccccccc  2  40  70", test::fileLine("f", 0));
    EXPECT_STREQ("n00000000599 cccccccccccc  2  40  70", test::fileLine("f", 599));
}

static bool writeThree()
{
    ScanningInfo infos[] = {sighting("aa", "bb", 1, 2, 3), sighting("cc", "dd", 4, 5, 6),
                            sighting("ee", "ff", 7, 8, 9)};
    return scanningInfoWriter("f", infos, 3);
}

TEST(ScanningInfo, writerStopsAtEachFailedPrint)
{
    static const char* const prints[] = {"          aa           bb  1   2   3\n",
                                         "          cc           dd  4   5   6\n",
                                         "          ee           ff  7   8   9\n"};
    expectStopsAtEachPrint(writeThree, prints, writerCannotClose);
}

TEST(ScanningInfo, whatTheWriterWritesTheReaderReadsLowered)
{
    ScanningInfo infos[] = {sighting("aabbccddee01", "aabbccddee02", 1, 36, 40),
                            sighting("ab", "c", 99, 255, 255)};
    EXPECT_TRUE(scanningInfoWriter("f", infos, 2));
    ScanningInfo read[2] = {};
    EXPECT_TRUE(scanningInfoReader("f", read));
    expectSighting(read[0], "aabbccddee01", "aabbccddee02", 1, 36, 37);
    expectSighting(read[1], "ab", "c", 99, 255, 252);
}

static bool write(ScanningInfo info, const char* path = "f")
{
    return scanningInfoWriter(path, &info, 1);
}

TEST(ScanningInfo, writerReportsFailures)
{
    static const Row rows[] = {
        Row("reports a failed open", NO_FILE, noFault,
            [] { return write(sighting("aa", "bb", 1, 2, 3), "no/file"); }, false,
            {"E scanningInfoWriter: Failed to write file: no/file.\n"}),
        Row(
            "reports a failed print once even if the close fails too", NO_FILE, failBoth(WRITE, 1, CLOSE, 1),
            [] { return write(sighting("aa", "bb", 1, 2, 3)); }, false, {writerCannotClose}, ""),
        Row(
            "reports a failed close", NO_FILE, fails(CLOSE, 1),
            [] { return write(sighting("aa", "bb", 1, 2, 3)); }, false, {writerCannotClose},
            "          aa           bb  1   2   3\n"),
        Row(
            "of no records reports a failed close", NO_FILE, fails(CLOSE, 1),
            [] { return scanningInfoWriter("f", nullptr, 0); }, false, {writerCannotClose}, ""),
        Row("fails once on a full device", NO_FILE, noFault,
            [] { return scanningInfoWriter("/dev/full", manySightings(), 1); }, false,
            {"E scanningInfoWriter: fclose error, path:/dev/full.\n"}),
        Row("fails once on a full device that a long file reaches early", NO_FILE, noFault,
            [] { return scanningInfoWriter("/dev/full", manySightings(), 600); }, false,
            {"E scanningInfoWriter: fclose error, path:/dev/full.\n"}),
    };
    expectRows(rows);
}

/* ---- Deleter ------------------------------------------------------------ */

TEST(ScanningInfo, deleterDropsEveryLineOfTheDeviceAndKeepsTheOrder)
{
    test::writeFile("f", "aa 01 1 2 30\nbb 02 3 4 40\naa 03 5 6 50\ncc 04 7 8 60\nbb 05 9 10 2\n");
    EXPECT_TRUE(scanningInfoDeleter("f", "aa"));
    EXPECT_STREQ("          bb           02  3   4  37\n"
                 "          cc           04  7   8  57\n"
                 "          bb           05  9  10   1\n",
                 test::fileText("f"));
    EXPECT_STREQ("", test::messages());
}

TEST(ScanningInfo, deleterDropsTheFirstAndTheLastLine)
{
    test::writeFile("f", "aa 01 1 2 30\nbb 02 3 4 40\naa 03 5 6 50\n");
    EXPECT_TRUE(scanningInfoDeleter("f", "aa"));
    EXPECT_STREQ("          bb           02  3   4  37\n", test::fileText("f"));
}

TEST(ScanningInfo, deleterDoesNotLookAtTheNeighbour)
{
    test::writeFile("f", "bb aa 1 2 30\n");
    EXPECT_TRUE(scanningInfoDeleter("f", "aa"));
    EXPECT_STREQ("          bb           aa  1   2  27\n", test::fileText("f"));
}

TEST(ScanningInfo, deleterOfAnAbsentDeviceLowersEveryLine)
{
    test::writeFile("f", threeLines);
    EXPECT_TRUE(scanningInfoDeleter("f", "aabbccddee09"));
    EXPECT_STREQ("aabbccddee01 aabbccddee02  1  36  37\n"
                 "aabbccddee03 aabbccddee04  2 149  57\n"
                 "aabbccddee01 aabbccddee05  3   6  77\n",
                 test::fileText("f"));
    EXPECT_TRUE(scanningInfoDeleter("f", "aabbccddee09"));
    EXPECT_STREQ("aabbccddee01 aabbccddee02  1  36  34\n"
                 "aabbccddee03 aabbccddee04  2 149  54\n"
                 "aabbccddee01 aabbccddee05  3   6  74\n",
                 test::fileText("f"));
    EXPECT_STREQ("", test::messages());
}

TEST(ScanningInfo, deleterOfTheOwnerOfEveryLineLeavesAnEmptyFile)
{
    test::writeFile("f", "aa 01 1 2 30\naa 03 5 6 50\n");
    EXPECT_TRUE(scanningInfoDeleter("f", "aa"));
    EXPECT_EQ(0L, test::fileSize("f"));
    EXPECT_STREQ("", test::messages());
}

TEST(ScanningInfo, deleterComparesWholeKeysExactly)
{
    static const char* const others[] = {"AABBCCDDEE01",
                                         "aabbccddee0",
                                         "aabbccddee012",
                                         "aabbccddee02",
                                         "babbccddee01",
                                         "aabbccddee01abcd",
                                         "",
                                         " aabbccddee01"};
    for (const char* other : others) {
        test::writeFile("f", oneLine);
        EXPECT_TRUE(scanningInfoDeleter("f", other));
        EXPECT_STREQ("aabbccddee01 aabbccddee02  1  36  37\n", test::fileText("f"));
    }
    EXPECT_TRUE(scanningInfoDeleter("f", "aabbccddee01"));
    EXPECT_EQ(0L, test::fileSize("f"));
}

TEST(ScanningInfo, deleterComparesNoCharacterAfterTheKeysEnd)
{
    test::writeFile("f", "aa 01 1 2 30\n");
    EXPECT_TRUE(scanningInfoDeleter("f", "aa\0bb"));
    EXPECT_EQ(0L, test::fileSize("f"));
}

TEST(ScanningInfo, deleterHasNoCap)
{
    writeHistory(300);
    EXPECT_TRUE(scanningInfoDeleter("f", "000000000150"));
    EXPECT_EQ(299, test::fileLines("f"));
    EXPECT_STREQ("000000000000 bbbbbbbbbbbb  1  36  47", test::fileLine("f", 0));
    EXPECT_STREQ("000000000149 bbbbbbbbbbbb  1  36  47", test::fileLine("f", 149));
    EXPECT_STREQ("000000000151 bbbbbbbbbbbb  1  36  47", test::fileLine("f", 150));
    EXPECT_STREQ("000000000299 bbbbbbbbbbbb  1  36  47", test::fileLine("f", 298));
}

static bool deleteDevice()
{
    return scanningInfoDeleter("f", "aabbccddee01");
}

static bool deleteNobody()
{
    return scanningInfoDeleter("f", "nobody");
}

TEST(ScanningInfo, deleterReportsItsStepsAndFailures)
{
    static const Row rows[] = {
        Row("of a missing file succeeds and creates nothing", NO_FILE, noFault,
            [] { return scanningInfoDeleter("f", "aa"); }, true, {counterCannotOpen, deleterFindsNoHistory}),
        Row("of an empty file succeeds without a write", "", noFault,
            [] {
                const bool result = scanningInfoDeleter("f", nullptr);
                EXPECT_EQ(1, test::callCount(test::OPEN));
                return result;
            },
            true, {deleterFindsNoHistory}),
        Row("of an uncountable file succeeds and leaves it", oneLine, fails(CLOSE, 1), deleteDevice, true,
            {counterCannotClose, deleterFindsNoHistory}),
        Row("reports a failed first allocation", oneLine, fails(ALLOCATE, 1), deleteDevice, false,
            {deleterCannotAllocate}),
        Row("reports a failed second allocation", oneLine, fails(ALLOCATE, 2), deleteDevice, false,
            {deleterCannotAllocate}),
        Row("reports two failed allocations once", oneLine, failsFrom(ALLOCATE, 1), deleteDevice, false,
            {deleterCannotAllocate}),
        Row("reports a failed read", blankInside, noFault, deleteDevice, false,
            {readerCannotRead, deleterCannotRead}),
        Row("reports a reader that cannot open", oneLine, fails(OPEN, 2), deleteDevice, false,
            {readerCannotOpen, deleterCannotRead}),
        Row("reports a reader that cannot close", oneLine, fails(CLOSE, 2), deleteDevice, false,
            {readerCannotClose, deleterCannotRead}),
        Row("reports a failed write", threeLines, fails(OPEN, 3), deleteDevice, false,
            {writerCannotOpen, deleterCannotRewrite}),
        Row("leaves what was printed before a failed print", threeLines, fails(WRITE, 2), deleteNobody, false,
            {writerCannotClose, deleterCannotRewrite}, "aabbccddee01 aabbccddee02  1  36  37\n"),
        Row("reports a writer that cannot close", oneLine, fails(CLOSE, 3), deleteDevice, false,
            {writerCannotClose, deleterCannotRewrite}, ""),
        Row("walks all counted records of a file that shrinks", threeLines,
            changes(2, [](const char* path) { test::writeFile(path, oneLine); }), deleteNobody, true, {},
            "aabbccddee01 aabbccddee02  1  36  37\n"
            "                           0   0   0\n"
            "                           0   0   0\n"),
    };
    expectRows(rows);
}

/* ---- Append ------------------------------------------------------------- */

TEST(ScanningInfo, appendAddsTheRecordsAtTheEnd)
{
    ScanningInfo income[] = {sighting("ee", "01", 7, 8, 2), sighting("ff", "02", 9, 10, 255),
                             sighting("gg", "03", 11, 12, 90)};
    ScanningInfo before[3];
    memcpy(before, income, sizeof income);
    test::writeFile("f", "aa bb 1 2 30\ncc dd 3 4 40\n");
    EXPECT_TRUE(appendScanningInfo("f", income, 2));
    EXPECT_STREQ("          aa           bb  1   2  27\n"
                 "          cc           dd  3   4  37\n"
                 "          ee           01  7   8   2\n"
                 "          ff           02  9  10 255\n",
                 test::fileText("f"));
    EXPECT_EQ(0, memcmp(before, income, sizeof income));
    EXPECT_STREQ("", test::messages());
}

TEST(ScanningInfo, appendLowersTheOldLinesAtEveryPass)
{
    ScanningInfo income = sighting("cc", "dd", 3, 4, 50);
    test::writeFile("f", "aa bb 1 2 40\n");
    EXPECT_TRUE(appendScanningInfo("f", &income, 1));
    EXPECT_STREQ("          aa           bb  1   2  37\n"
                 "          cc           dd  3   4  50\n",
                 test::fileText("f"));
    EXPECT_TRUE(appendScanningInfo("f", &income, 1));
    EXPECT_STREQ("          aa           bb  1   2  34\n"
                 "          cc           dd  3   4  47\n"
                 "          cc           dd  3   4  50\n",
                 test::fileText("f"));
}

TEST(ScanningInfo, appendDoesNotLookForTheSameSighting)
{
    ScanningInfo income = sighting("aabbccddee01", "aabbccddee02", 1, 36, 40);
    test::writeFile("f", oneLine);
    EXPECT_TRUE(appendScanningInfo("f", &income, 1));
    EXPECT_STREQ("aabbccddee01 aabbccddee02  1  36  37\n"
                 "aabbccddee01 aabbccddee02  1  36  40\n",
                 test::fileText("f"));
}

TEST(ScanningInfo, appendHasNoCapOnTheFirstSave)
{
    ScanningInfo income = sighting("aa", "bb", 1, 2, 3);
    test::writeFile("f", "");
    EXPECT_TRUE(appendScanningInfo("f", manySightings(), 300));
    EXPECT_EQ(300, test::fileLines("f"));
    EXPECT_STREQ("n00000000000 cccccccccccc  2  40  70", test::fileLine("f", 0));
    EXPECT_STREQ("n00000000299 cccccccccccc  2  40  70", test::fileLine("f", 299));
    EXPECT_TRUE(appendSingleScanningInfo("f", &income));
    EXPECT_EQ(256, test::fileLines("f"));
    EXPECT_STREQ("n00000000045 cccccccccccc  2  40  67", test::fileLine("f", 0));
    EXPECT_STREQ("n00000000299 cccccccccccc  2  40  67", test::fileLine("f", 254));
    EXPECT_STREQ("          aa           bb  1   2   3", test::fileLine("f", 255));
}

TEST(ScanningInfo, appendKeepsTheNewest256)
{
    static const struct {
        int old;
        int income;
        int lines;
        const char* first;
    } rows[] = {{250, 5, 255, "000000000000 bbbbbbbbbbbb  1  36  47"},
                {250, 6, 256, "000000000000 bbbbbbbbbbbb  1  36  47"},
                {250, 7, 256, "000000000001 bbbbbbbbbbbb  1  36  47"},
                {256, 1, 256, "000000000001 bbbbbbbbbbbb  1  36  47"},
                {300, 1, 256, "000000000045 bbbbbbbbbbbb  1  36  47"},
                {1, 255, 256, "000000000000 bbbbbbbbbbbb  1  36  47"},
                {1, 256, 256, "n00000000000 cccccccccccc  2  40  70"},
                {1, 300, 256, "n00000000044 cccccccccccc  2  40  70"}};
    for (const auto& row : rows) {
        char last[40];
        snprintf(last, sizeof last, "n%011d cccccccccccc  2  40  70", row.income - 1);
        writeHistory(row.old);
        EXPECT_TRUE(appendScanningInfo("f", manySightings(), row.income));
        EXPECT_EQ(row.lines, test::fileLines("f"));
        EXPECT_STREQ(row.first, test::fileLine("f", 0));
        EXPECT_STREQ(last, test::fileLine("f", row.lines - 1));
    }
    EXPECT_STREQ("", test::messages());
}

TEST(ScanningInfo, appendOfNoRecordsLowersTheFileAndCapsIt)
{
    ScanningInfo income = sighting("aa", "bb", 1, 2, 3);
    test::writeFile("f", oneLine);
    EXPECT_TRUE(appendScanningInfo("f", &income, 0));
    EXPECT_STREQ("aabbccddee01 aabbccddee02  1  36  37\n", test::fileText("f"));
    writeHistory(258);
    EXPECT_TRUE(appendScanningInfo("f", &income, 0));
    EXPECT_EQ(256, test::fileLines("f"));
    EXPECT_STREQ("000000000002 bbbbbbbbbbbb  1  36  47", test::fileLine("f", 0));
    EXPECT_STREQ("000000000257 bbbbbbbbbbbb  1  36  47", test::fileLine("f", 255));
    EXPECT_STREQ("", test::messages());
}

TEST(ScanningInfo, appendOfANegativeCountFailsAtTheAllocationAndLeavesTheFile)
{
    static const int counts[] = {-1, -2, -400, INT_MIN};
    ScanningInfo income = sighting("aa", "bb", 1, 2, 3);
    test::writeFile("f", oneLine);
    for (int count : counts) {
        test::clearMessages();
        EXPECT_FALSE(appendScanningInfo("f", &income, count));
        EXPECT_MESSAGES(appendCannotAllocate);
        EXPECT_STREQ(oneLine, test::fileText("f"));
    }
}

TEST(ScanningInfo, appendOfNoRecordsToAMissingOrEmptyFileLeavesAnEmptyFile)
{
    static const int counts[] = {0, -1, INT_MIN};
    ScanningInfo income = sighting("aa", "bb", 1, 2, 3);
    for (int count : counts) {
        remove("f");
        test::clearMessages();
        EXPECT_TRUE(appendScanningInfo("f", &income, count));
        EXPECT_EQ(0L, test::fileSize("f"));
        EXPECT_TRUE(appendScanningInfo("f", &income, count));
        EXPECT_EQ(0L, test::fileSize("f"));
        EXPECT_MESSAGES(counterCannotOpen, appendSavesAlone, appendSaved, appendSavesAlone, appendSaved);
    }
}

static bool append(ScanningInfo income, const char* path = "f")
{
    return appendScanningInfo(path, &income, 1);
}

static bool appendOne()
{
    return append(sighting("aa", "bb", 1, 2, 3));
}

TEST(ScanningInfo, appendReportsItsStepsAndFailures)
{
    static const Row rows[] = {
        Row(
            "to a missing file saves the records alone", NO_FILE, noFault,
            [] {
                ScanningInfo income[] = {sighting("aa", "bb", 1, 2, 3), sighting("cc", "dd", 4, 5, 6)};
                return appendScanningInfo("f", income, 2);
            },
            true, {counterCannotOpen, appendSavesAlone, appendSaved},
            "          aa           bb  1   2   3\n"
            "          cc           dd  4   5   6\n"),
        Row("to an empty file saves the records alone", "", noFault, appendOne, true,
            {appendSavesAlone, appendSaved}, "          aa           bb  1   2   3\n"),
        Row("to a file that cannot be counted replaces it", threeLines, fails(CLOSE, 1), appendOne, true,
            {counterCannotClose, appendSavesAlone, appendSaved}, "          aa           bb  1   2   3\n"),
        Row("refuses a null pointer after the count", NO_FILE, noFault,
            [] { return appendScanningInfo("f", nullptr, 1); }, false,
            {counterCannotOpen, appendRefusesNull}),
        Row("refuses a null pointer on a file with records", oneLine, noFault,
            [] { return appendScanningInfo("f", nullptr, 0); }, false, {appendRefusesNull}),
        Row("reports a failed first save", NO_FILE, noFault,
            [] { return append(sighting("aa", "bb", 1, 2, 3), "no/file"); }, false,
            {"E dataLineCounter: Failed to read file: no/file\n", appendSavesAlone,
             "E scanningInfoWriter: Failed to write file: no/file.\n",
             "E appendScanningInfo: Failed to write to file: no/file"}),
        Row("reports a failed allocation", oneLine, fails(ALLOCATE, 1), appendOne, false,
            {appendCannotAllocate}),
        Row("of a count that overflows fails as an allocation does", oneLine, noFault,
            [] {
                ScanningInfo income = sighting("aa", "bb", 1, 2, 3);
                return appendScanningInfo("f", &income, INT_MAX);
            },
            false, {appendCannotAllocate}),
        Row("reports a failed read", blankInside, noFault, appendOne, false,
            {readerCannotRead, appendCannotRead}),
        Row("reports a reader that cannot open", oneLine, fails(OPEN, 2), appendOne, false,
            {readerCannotOpen, appendCannotRead}),
        Row("reports a reader that cannot close", oneLine, fails(CLOSE, 2), appendOne, false,
            {readerCannotClose, appendCannotRead}),
        Row("reports a failed write", oneLine, fails(OPEN, 3), appendOne, false,
            {writerCannotOpen, appendCannotRewrite}),
        Row("leaves what was printed before a failed print", oneLine, fails(WRITE, 2), appendOne, false,
            {writerCannotClose, appendCannotRewrite}, "aabbccddee01 aabbccddee02  1  36  37\n"),
        Row("to a directory fails", DIRECTORY, noFault, appendOne, false,
            {appendSavesAlone, writerCannotOpen, appendCannotSave}),
        Row("puts the records after all counted ones of a file that shrinks", threeLines,
            changes(2, [](const char* path) { test::writeFile(path, oneLine); }), appendOne, true, {},
            "aabbccddee01 aabbccddee02  1  36  37\n"
            "                           0   0   0\n"
            "                           0   0   0\n"
            "          aa           bb  1   2   3\n"),
    };
    expectRows(rows);
}

/* ---- Single append ------------------------------------------------------ */

TEST(ScanningInfo, singleAppendAddsTheRecordAtTheEnd)
{
    ScanningInfo income = sighting("aabbccddee01", "ee", 7, 8, 2);
    const ScanningInfo before = income;
    test::writeFile("f", threeLines);
    EXPECT_TRUE(appendSingleScanningInfo("f", &income));
    EXPECT_STREQ("aabbccddee01 aabbccddee02  1  36  37\n"
                 "aabbccddee03 aabbccddee04  2 149  57\n"
                 "aabbccddee01 aabbccddee05  3   6  77\n"
                 "aabbccddee01           ee  7   8   2\n",
                 test::fileText("f"));
    EXPECT_EQ(0, memcmp(&before, &income, sizeof income));
    EXPECT_STREQ("", test::messages());
}

TEST(ScanningInfo, singleAppendKeepsTheNewest256)
{
    static const struct {
        int old;
        int lines;
        const char* first;
    } rows[] = {{254, 255, "000000000000 bbbbbbbbbbbb  1  36  47"},
                {255, 256, "000000000000 bbbbbbbbbbbb  1  36  47"},
                {256, 256, "000000000001 bbbbbbbbbbbb  1  36  47"},
                {257, 256, "000000000002 bbbbbbbbbbbb  1  36  47"},
                {300, 256, "000000000045 bbbbbbbbbbbb  1  36  47"}};
    ScanningInfo income = sighting("aa", "bb", 1, 2, 3);
    for (const auto& row : rows) {
        char last[40];
        snprintf(last, sizeof last, "%012d bbbbbbbbbbbb  1  36  47", row.old - 1);
        writeHistory(row.old);
        EXPECT_TRUE(appendSingleScanningInfo("f", &income));
        EXPECT_EQ(row.lines, test::fileLines("f"));
        EXPECT_STREQ(row.first, test::fileLine("f", 0));
        EXPECT_STREQ(last, test::fileLine("f", row.lines - 2));
        EXPECT_STREQ("          aa           bb  1   2   3", test::fileLine("f", row.lines - 1));
    }
}

static bool appendSingle(ScanningInfo income, const char* path = "f")
{
    return appendSingleScanningInfo(path, &income);
}

static bool appendSingleOne()
{
    return appendSingle(sighting("aa", "bb", 1, 2, 3));
}

TEST(ScanningInfo, singleAppendReportsItsStepsAndFailures)
{
    static const Row rows[] = {
        Row("to a missing file saves the record alone", NO_FILE, noFault, appendSingleOne, true,
            {counterCannotOpen, appendSingleSavesAlone, appendSingleSaved},
            "          aa           bb  1   2   3\n"),
        Row("to an empty file saves the record alone", "", noFault, appendSingleOne, true,
            {appendSingleSavesAlone, appendSingleSaved}, "          aa           bb  1   2   3\n"),
        Row("to a file that cannot be counted replaces it", threeLines, fails(OPEN, 1), appendSingleOne, true,
            {counterCannotOpen, appendSingleSavesAlone, appendSingleSaved},
            "          aa           bb  1   2   3\n"),
        Row("refuses a null pointer after the count", NO_FILE, noFault,
            [] { return appendSingleScanningInfo("f", nullptr); }, false,
            {counterCannotOpen, appendSingleRefusesNull}),
        Row("refuses a null pointer on a file with records", oneLine, noFault,
            [] { return appendSingleScanningInfo("f", nullptr); }, false, {appendSingleRefusesNull}),
        Row("reports a failed first save", NO_FILE, noFault,
            [] { return appendSingle(sighting("aa", "bb", 1, 2, 3), "no/file"); }, false,
            {"E dataLineCounter: Failed to read file: no/file\n", appendSingleSavesAlone,
             "E scanningInfoWriter: Failed to write file: no/file.\n",
             "E appendSingleScanningInfo: Failed to write to file: no/file"}),
        Row("reports a failed allocation", oneLine, fails(ALLOCATE, 1), appendSingleOne, false,
            {appendSingleCannotAllocate}),
        Row("reports a failed read", blankInside, noFault, appendSingleOne, false,
            {readerCannotRead, appendSingleCannotRead}),
        Row("reports a failed write", oneLine, fails(OPEN, 3), appendSingleOne, false,
            {writerCannotOpen, appendSingleCannotRewrite}),
        Row("reports a writer that cannot close", oneLine, fails(CLOSE, 3), appendSingleOne, false,
            {writerCannotClose, appendSingleCannotRewrite},
            "aabbccddee01 aabbccddee02  1  36  37\n"
            "          aa           bb  1   2   3\n"),
    };
    expectRows(rows);
}

/* ---- A file that grows between the count and the read ------------------- */

static void growTo400(const char*)
{
    writeHistory(400);
}

TEST(ScanningInfo, fileThatGrowsStaysWithinTheArrays)
{
    static const Row rows[] = {
        Row("deleter of a file that grows stays within its arrays", oneLine, changes(2, growTo400),
            deleteNobody, true, {}, "000000000000 bbbbbbbbbbbb  1  36  47\n"),
        Row("append to a file that grows stays within its array", oneLine, changes(2, growTo400), appendOne,
            true, {},
            "000000000000 bbbbbbbbbbbb  1  36  47\n"
            "          aa           bb  1   2   3\n"),
        Row("single append to a file that grows stays within its array", oneLine, changes(2, growTo400),
            appendSingleOne, true, {},
            "000000000000 bbbbbbbbbbbb  1  36  47\n"
            "          aa           bb  1   2   3\n"),
    };
    expectRows(rows);
}
