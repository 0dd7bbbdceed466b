/* SPDX-License-Identifier: Apache-2.0 */
#include "messages.h"
#include "scenario.h"

#include <sys/stat.h>

using namespace messages::apRankIndex;
using namespace test;

/* What sampleIndex() is written as. */
static const char sampleText[] = "2 7 3 1600000001\n"
                                 "aabbccddee01 aabbccddee02 1 1001\n"
                                 "          ab            c 255 65535\n";

static void setEntry(ApThrRank* entry, const char* device, const char* father, uint8_t rank,
                     uint16_t throughput)
{
    snprintf(entry->deviceMAC, sizeof entry->deviceMAC, "%s", device);
    snprintf(entry->fatherMAC, sizeof entry->fatherMAC, "%s", father);
    entry->apRank = rank;
    entry->throughput = throughput;
}

static ApRankIndex sampleIndex()
{
    ApRankIndex index = {};
    setEntry(&index.apRank[0], "aabbccddee01", "aabbccddee02", 1, 1001);
    setEntry(&index.apRank[1], "ab", "c", 255, 65535);
    index.cnt = 2;
    index.process_re = 7;
    index.alg_strategy = ALG_STRATEGY_GET_BEST;
    index.starttime = 1600000001U;
    return index;
}

/* A record for a reader to fill, in which nothing is zero. */
static ApRankIndex filledIndex()
{
    ApRankIndex index = {};
    for (int i = 0; i < 30; ++i)
        setEntry(&index.apRank[i], "kept", "keptToo", static_cast<uint8_t>(100 + i),
                 static_cast<uint16_t>(5000 + i));
    index.cnt = 29;
    index.process_re = 99;
    index.alg_strategy = ALG_STRATEGY_REDICAL;
    index.starttime = 12345;
    return index;
}

/* A record of `cnt` entries, the first 30 of them from device numbers 0 to 29. */
static ApRankIndex numberedIndex(uint8_t cnt)
{
    ApRankIndex index = {};
    for (int i = 0; i < 30; ++i) {
        char device[16];
        snprintf(device, sizeof device, "%012d", i);
        setEntry(&index.apRank[i], device, "ff", static_cast<uint8_t>(i + 1), static_cast<uint16_t>(i + 2));
    }
    index.cnt = cnt;
    index.process_re = 1;
    index.alg_strategy = ALG_STRATEGY_CAREFUL;
    index.starttime = 5;
    return index;
}

/* A file of a header and `lines` entry lines, from device numbers 0 on. */
static void writeIndex(const char* header, int lines)
{
    static char text[4096];
    int length = snprintf(text, sizeof text, "%s", header);
    for (int i = 0; i < lines; ++i)
        length += snprintf(text + length, sizeof text - static_cast<size_t>(length), "%012d ff %d %d\n", i,
                           i + 1, i + 2);
    test::writeBytes("f", text, static_cast<size_t>(length));
}

static void expectEntry(const ApThrRank& entry, const char* device, const char* father, int rank,
                        int throughput)
{
    EXPECT_STREQ(device, entry.deviceMAC);
    EXPECT_STREQ(father, entry.fatherMAC);
    EXPECT_EQ(rank, entry.apRank);
    EXPECT_EQ(throughput, entry.throughput);
}

static void expectHeader(const ApRankIndex& index, int cnt, int processRe, uint32_t strategy,
                         uint32_t starttime)
{
    EXPECT_EQ(cnt, index.cnt);
    EXPECT_EQ(processRe, index.process_re);
    EXPECT_EQ(strategy, index.alg_strategy);
    EXPECT_EQ(starttime, index.starttime);
}

/* Expects the entries from `first` on, and no header field, as filledIndex() made them. */
static void expectKeptEntries(const ApRankIndex& index, int first)
{
    for (int i = first; i < 30; ++i)
        expectEntry(index.apRank[i], "kept", "keptToo", 100 + i, 5000 + i);
}

static void expectKept(const ApRankIndex& index)
{
    expectHeader(index, 29, 99, ALG_STRATEGY_REDICAL, 12345);
    expectKeptEntries(index, 0);
}

/* ---- Reader ------------------------------------------------------------- */

TEST(ApRankIndexInfo, readerLoadsTheHeaderAndEveryEntry)
{
    test::writeFile("f", sampleText);
    ApRankIndex index = filledIndex();
    EXPECT_TRUE(apRankIndexInfoReader("f", &index));
    expectHeader(index, 2, 7, ALG_STRATEGY_GET_BEST, 1600000001U);
    expectEntry(index.apRank[0], "aabbccddee01", "aabbccddee02", 1, 1001);
    expectEntry(index.apRank[1], "ab", "c", 255, 65535);
    expectKeptEntries(index, 2);
    EXPECT_STREQ("", test::messages());
    EXPECT_STREQ(sampleText, test::fileText("f"));
}

TEST(ApRankIndexInfo, readerOfAHeaderAloneLoadsNoEntry)
{
    test::writeFile("f", "0 255 4294967295 4294967295");
    ApRankIndex index = filledIndex();
    EXPECT_TRUE(apRankIndexInfoReader("f", &index));
    expectHeader(index, 0, 255, 4294967295U, 4294967295U);
    expectKeptEntries(index, 0);
    EXPECT_STREQ("", test::messages());
}

TEST(ApRankIndexInfo, readerReadsTheLastLineWithoutItsNewline)
{
    test::writeFile("f", "1 2 3 4\naa bb 5 6");
    ApRankIndex index = filledIndex();
    EXPECT_TRUE(apRankIndexInfoReader("f", &index));
    expectHeader(index, 1, 2, 3, 4);
    expectEntry(index.apRank[0], "aa", "bb", 5, 6);
    expectKeptEntries(index, 1);
}

TEST(ApRankIndexInfo, readerReadsMoreEntriesThanTheHeaderStates)
{
    test::writeFile("f", "2 1 1 1\naa a1 1 11\nbb b1 2 22\ncc c1 3 33\n");
    ApRankIndex index = filledIndex();
    EXPECT_TRUE(apRankIndexInfoReader("f", &index));
    expectHeader(index, 2, 1, 1, 1);
    expectEntry(index.apRank[0], "aa", "a1", 1, 11);
    expectEntry(index.apRank[1], "bb", "b1", 2, 22);
    expectEntry(index.apRank[2], "cc", "c1", 3, 33);
    expectKeptEntries(index, 3);
    EXPECT_STREQ("", test::messages());
}

TEST(ApRankIndexInfo, readerReadsFewerEntriesThanTheHeaderStates)
{
    test::writeFile("f", "3 1 1 1\naa a1 1 11\n");
    ApRankIndex index = filledIndex();
    EXPECT_TRUE(apRankIndexInfoReader("f", &index));
    expectHeader(index, 3, 1, 1, 1);
    expectEntry(index.apRank[0], "aa", "a1", 1, 11);
    expectKeptEntries(index, 1);
    EXPECT_STREQ("", test::messages());
}

TEST(ApRankIndexInfo, readerReadsTwelveCharactersOfAMac)
{
    test::writeFile("f", "3 1 1 1\naabbccddeeff01 5 6\naa aabbccddeeff17 8\naa bb 3 4 more\n");
    ApRankIndex index = filledIndex();
    EXPECT_TRUE(apRankIndexInfoReader("f", &index));
    expectEntry(index.apRank[0], "aabbccddeeff", "01", 5, 6);
    expectEntry(index.apRank[1], "aa", "aabbccddeeff", 17, 8);
    expectEntry(index.apRank[2], "aa", "bb", 3, 4);
}

TEST(ApRankIndexInfo, readerReadsLeadingZerosAsDecimal)
{
    test::writeFile("f", "010 011 012 013\naa bb 014 015\n");
    ApRankIndex index = filledIndex();
    EXPECT_TRUE(apRankIndexInfoReader("f", &index));
    expectHeader(index, 10, 11, 12, 13);
    expectEntry(index.apRank[0], "aa", "bb", 14, 15);
}

TEST(ApRankIndexInfo, readerKeepsUnconvertedHeaderFields)
{
    static const struct {
        const char* text;
        int cnt;
        int processRe;
        uint32_t strategy;
    } rows[] = {{"1\n", 1, 99, 2},      {"1 8\n", 1, 8, 2},      {"1 8 3\n", 1, 8, 3},
                {"1 8 3 x\n", 1, 8, 3}, {"1 x 3 4\n", 1, 99, 2}, {"x\n", 29, 99, 2}};
    for (const auto& row : rows) {
        ApRankIndex index = filledIndex();
        test::writeFile("f", row.text);
        EXPECT_TRUE(apRankIndexInfoReader("f", &index));
        expectHeader(index, row.cnt, row.processRe, row.strategy, 12345);
        expectKeptEntries(index, 0);
    }
    EXPECT_STREQ("", test::messages());
}

TEST(ApRankIndexInfo, readerKeepsUnconvertedEntryFields)
{
    test::writeFile("f", "5 1 1 1\naa\naa bb\naa bb 3\naa bb x 4\naa bb 3 x\n");
    ApRankIndex index = filledIndex();
    EXPECT_TRUE(apRankIndexInfoReader("f", &index));
    expectEntry(index.apRank[0], "aa", "keptToo", 100, 5000);
    expectEntry(index.apRank[1], "aa", "bb", 101, 5001);
    expectEntry(index.apRank[2], "aa", "bb", 3, 5002);
    expectEntry(index.apRank[3], "aa", "bb", 103, 5003);
    expectEntry(index.apRank[4], "aa", "bb", 3, 5004);
    expectKeptEntries(index, 5);
    EXPECT_STREQ("", test::messages());
}

TEST(ApRankIndexInfo, readerOfAnEmptyFileChangesNothingAndSucceeds)
{
    test::writeFile("f", "");
    ApRankIndex index = filledIndex();
    EXPECT_TRUE(apRankIndexInfoReader("f", &index));
    expectKept(index);
    EXPECT_STREQ("", test::messages());
}

TEST(ApRankIndexInfo, readerTreatsEveryKindOfBlankLineAsAnError)
{
    static const char* const texts[] = {" \t \n",        "   ",          "\r\n",
                                        "1 2 3 4\n  \n", "1 2 3 4\n \t", "1 2 3 4\n\n"};
    for (const char* text : texts) {
        ApRankIndex index = filledIndex();
        test::writeFile("f", text);
        test::clearMessages();
        EXPECT_FALSE(apRankIndexInfoReader("f", &index));
        expectKeptEntries(index, 0);
        EXPECT_MESSAGES(readerCannotRead);
    }
}

TEST(ApRankIndexInfo, readerTreatsALineThatBeginsWithANulAsBlank)
{
    ApRankIndex index = filledIndex();
    test::writeBytes("f", "\0001 2 3 4\n", 9);
    EXPECT_FALSE(apRankIndexInfoReader("f", &index));
    expectKept(index);
    test::writeBytes("f", "29 99 2 12345\n\0aa bb 5 6\n", 25);
    EXPECT_FALSE(apRankIndexInfoReader("f", &index));
    expectKept(index);
    EXPECT_MESSAGES(readerCannotRead, readerCannotRead);
}

TEST(ApRankIndexInfo, readerDoesNotLookAtTheCloseAfterABlankLine)
{
    static const char* const texts[] = {"\n", "1 2 3 4\n\n"};
    for (const char* text : texts) {
        ApRankIndex index = filledIndex();
        test::writeFile("f", text);
        test::clearMessages();
        test::failNth(test::CLOSE, 1);
        EXPECT_FALSE(apRankIndexInfoReader("f", &index));
        EXPECT_MESSAGES(readerCannotRead);
    }
    EXPECT_EQ(2, test::callCount(test::CLOSE));
}

TEST(ApRankIndexInfo, readerReadsALineOfMoreThan1023CharactersAsTwo)
{
    char text[2200];
    memset(text, ' ', sizeof text);
    memcpy(text, "2 7 3 5", 7);
    memcpy(text + 1023, "aa bb 1 2", 9);
    snprintf(text + 2046, sizeof text - 2046, "cc dd 3 4\n");
    test::writeFile("f", text);
    ApRankIndex index = filledIndex();
    EXPECT_TRUE(apRankIndexInfoReader("f", &index));
    expectHeader(index, 2, 7, 3, 5);
    expectEntry(index.apRank[0], "aa", "bb", 1, 2);
    expectEntry(index.apRank[1], "cc", "dd", 3, 4);
    expectKeptEntries(index, 2);
}

TEST(ApRankIndexInfo, readerReadsALineOf1022CharactersAsOne)
{
    char text[2200];
    memset(text, ' ', sizeof text);
    memcpy(text, "2 7 3 5", 7);
    memcpy(text + 1022, "\naa bb 1 2", 10);
    snprintf(text + 2045, sizeof text - 2045, "\ncc dd 3 4\n");
    test::writeFile("f", text);
    ApRankIndex index = filledIndex();
    EXPECT_TRUE(apRankIndexInfoReader("f", &index));
    expectHeader(index, 2, 7, 3, 5);
    expectEntry(index.apRank[0], "aa", "bb", 1, 2);
    expectEntry(index.apRank[1], "cc", "dd", 3, 4);
    expectKeptEntries(index, 2);
}

TEST(ApRankIndexInfo, readerLoadsThirtyEntries)
{
    ApRankIndex index = filledIndex();
    writeIndex("30 7 3 5\n", 30);
    EXPECT_TRUE(apRankIndexInfoReader("f", &index));
    expectHeader(index, 30, 7, 3, 5);
    for (int i = 0; i < 30; ++i) {
        char device[16];
        snprintf(device, sizeof device, "%012d", i);
        expectEntry(index.apRank[i], device, "ff", i + 1, i + 2);
    }
    EXPECT_STREQ("", test::messages());
}

TEST(ApRankIndexInfo, readerKeepsAnyCountThatTheHeaderStates)
{
    static const struct {
        const char* header;
        int cnt;
    } rows[] = {{"30 7 3 5\n", 30}, {"31 7 3 5\n", 31}, {"128 7 3 5\n", 128}, {"255 7 3 5\n", 255}};
    static const int lines[] = {0, 1, 30};
    for (const auto& row : rows) {
        for (int count : lines) {
            ApRankIndex index = filledIndex();
            writeIndex(row.header, count);
            EXPECT_TRUE(apRankIndexInfoReader("f", &index));
            expectHeader(index, row.cnt, 7, 3, 5);
        }
    }
    EXPECT_STREQ("", test::messages());
}

static bool readNothing()
{
    ApRankIndex index = filledIndex();
    const bool result = apRankIndexInfoReader("f", &index);
    expectKept(index);
    return result;
}

TEST(ApRankIndexInfo, readerReportsFailures)
{
    static const Row rows[] = {
        Row("stops at a blank header", "\n1 2 3 4\naa bb 5 6\n", noFault, readNothing, false,
            {readerCannotRead}),
        Row("stops at a blank entry with the earlier ones filled", "2 7 3 5\naa bb 5 6\n\ncc dd 7 8\n",
            noFault,
            [] {
                ApRankIndex index = filledIndex();
                const bool result = apRankIndexInfoReader("f", &index);
                expectHeader(index, 2, 7, 3, 5);
                expectEntry(index.apRank[0], "aa", "bb", 5, 6);
                expectKeptEntries(index, 1);
                return result;
            },
            false, {readerCannotRead}),
        Row(
            "refuses a thirty first entry", NO_FILE, noFault,
            [] {
                ApRankIndex index = filledIndex();
                writeIndex("30 7 3 5\n", 31);
                const bool result = apRankIndexInfoReader("f", &index);
                expectHeader(index, 30, 7, 3, 5);
                expectEntry(index.apRank[0], "000000000000", "ff", 1, 2);
                expectEntry(index.apRank[29], "000000000029", "ff", 30, 31);
                return result;
            },
            false, {readerCannotRead}, ANY_FILE),
        Row(
            "refuses many entries once and keeps the stated count", NO_FILE, noFault,
            [] {
                ApRankIndex index = filledIndex();
                writeIndex("2 7 3 5\n", 100);
                const bool result = apRankIndexInfoReader("f", &index);
                expectHeader(index, 2, 7, 3, 5);
                expectEntry(index.apRank[29], "000000000029", "ff", 30, 31);
                return result;
            },
            false, {readerCannotRead}, ANY_FILE),
        Row(
            "keeps a stated count above thirty when it refuses a thirty first entry", NO_FILE, noFault,
            [] {
                ApRankIndex index = filledIndex();
                writeIndex("200 7 3 5\n", 31);
                const bool result = apRankIndexInfoReader("f", &index);
                expectHeader(index, 200, 7, 3, 5);
                expectEntry(index.apRank[29], "000000000029", "ff", 30, 31);
                return result;
            },
            false, {readerCannotRead}, ANY_FILE),
        Row("of a missing file fails", NO_FILE, noFault, readNothing, false, {readerCannotOpen}),
        Row("reports a failed close", sampleText, fails(CLOSE, 1),
            [] {
                ApRankIndex index = filledIndex();
                const bool result = apRankIndexInfoReader("f", &index);
                expectHeader(index, 2, 7, ALG_STRATEGY_GET_BEST, 1600000001U);
                expectEntry(index.apRank[1], "ab", "c", 255, 65535);
                return result;
            },
            false, {readerCannotClose}),
        Row("reports a failed close of an empty file", "", fails(CLOSE, 1), readNothing, false,
            {readerCannotClose}),
        Row("treats a read error as the end", sampleText, failsFrom(READ, 1), readNothing, true),
        Row("treats a directory as an empty file", DIRECTORY, noFault, readNothing, true),
    };
    expectRows(rows);
}

/* ---- Writer ------------------------------------------------------------- */

TEST(ApRankIndexInfo, writerPrintsTheHeaderAndTheValidEntries)
{
    ApRankIndex index = sampleIndex();
    setEntry(&index.apRank[2], "notValid", "any", 9, 9);
    ApRankIndex before;
    memcpy(&before, &index, sizeof index);
    EXPECT_TRUE(apRankIndexInfoWriter("f", &index));
    EXPECT_STREQ(sampleText, test::fileText("f"));
    EXPECT_EQ(0, memcmp(&before, &index, sizeof index));
    EXPECT_STREQ("", test::messages());
}

TEST(ApRankIndexInfo, writerPrintsEntriesAsTheyStand)
{
    ApRankIndex index = {};
    index.cnt = 3;
    setEntry(&index.apRank[1], "0123456789abcde", "fedcba987654321", 12, 0);
    setEntry(&index.apRank[2], "", "aa", 0, 7);
    EXPECT_TRUE(apRankIndexInfoWriter("f", &index));
    EXPECT_STREQ("3 0 0 0\n"
                 "                          0 0\n"
                 "0123456789abcde fedcba987654321 12 0\n"
                 "                       aa 0 7\n",
                 test::fileText("f"));
}

TEST(ApRankIndexInfo, writerOfNoEntriesPrintsTheHeaderAlone)
{
    ApRankIndex index = sampleIndex();
    index.cnt = 0;
    test::writeFile("f", sampleText);
    EXPECT_TRUE(apRankIndexInfoWriter("f", &index));
    EXPECT_STREQ("0 7 3 1600000001\n", test::fileText("f"));
}

TEST(ApRankIndexInfo, writerPrintsTheLargestHeaderUnsigned)
{
    ApRankIndex index = {};
    index.process_re = 255;
    index.alg_strategy = ALG_STRATEGY{4294967294U};
    index.starttime = 4294967295U;
    EXPECT_TRUE(apRankIndexInfoWriter("f", &index));
    EXPECT_STREQ("0 255 4294967294 4294967295\n", test::fileText("f"));
}

TEST(ApRankIndexInfo, everyStrategyAndStartTimeSurvivesAWriteAndARead)
{
    static const uint32_t values[] = {0, 1, 2, 3, 4, 65536, 2147483647U, 2147483648U, 4294967295U};
    for (uint32_t value : values) {
        ApRankIndex index = sampleIndex();
        ApRankIndex read = filledIndex();
        index.alg_strategy = ALG_STRATEGY{value};
        index.starttime = 4294967295U - value;
        EXPECT_TRUE(apRankIndexInfoWriter("f", &index));
        EXPECT_TRUE(apRankIndexInfoReader("f", &read));
        expectHeader(read, 2, 7, value, 4294967295U - value);
        expectEntry(read.apRank[0], "aabbccddee01", "aabbccddee02", 1, 1001);
        expectEntry(read.apRank[1], "ab", "c", 255, 65535);
    }
}

TEST(ApRankIndexInfo, writerPrintsThirtyEntries)
{
    ApRankIndex index = numberedIndex(30);
    EXPECT_TRUE(apRankIndexInfoWriter("f", &index));
    EXPECT_EQ(31, test::fileLines("f"));
    EXPECT_STREQ("30 1 1 5", test::fileLine("f", 0));
    EXPECT_STREQ("000000000000           ff 1 2", test::fileLine("f", 1));
    EXPECT_STREQ("000000000029           ff 30 31", test::fileLine("f", 30));
    EXPECT_STREQ("", test::messages());
}

TEST(ApRankIndexInfo, writerRefusesMoreThanThirtyEntriesBeforeItOpensTheFile)
{
    static const uint8_t counts[] = {31, 32, 128, 255};
    for (uint8_t count : counts) {
        ApRankIndex index = numberedIndex(count);
        test::writeFile("f", sampleText);
        test::clearMessages();
        EXPECT_FALSE(apRankIndexInfoWriter("f", &index));
        EXPECT_MESSAGES(writerCannotPrint);
        EXPECT_STREQ(sampleText, test::fileText("f"));
        EXPECT_FALSE(apRankIndexInfoWriter("missing", &index));
        EXPECT_EQ(-1, test::fileSize("missing"));
        EXPECT_EQ(count, index.cnt);
    }
    EXPECT_EQ(0, test::callCount(test::OPEN));
}

static bool write(ApRankIndex index, const char* path = "f")
{
    return apRankIndexInfoWriter(path, &index);
}

static bool writeSample()
{
    return write(sampleIndex());
}

TEST(ApRankIndexInfo, writerStopsAtEachFailedPrint)
{
    static const char* const prints[] = {"2 7 3 1600000001\n", "aabbccddee01 aabbccddee02 1 1001\n",
                                         "          ab            c 255 65535\n"};
    expectStopsAtEachPrint(writeSample, prints, writerCannotPrint);
}

TEST(ApRankIndexInfo, whatTheWriterWritesTheReaderReads)
{
    ApRankIndex index = numberedIndex(30);
    ApRankIndex read = filledIndex();
    EXPECT_TRUE(apRankIndexInfoWriter("f", &index));
    EXPECT_TRUE(apRankIndexInfoReader("f", &read));
    expectHeader(read, 30, 1, ALG_STRATEGY_CAREFUL, 5);
    for (int i = 0; i < 30; ++i)
        expectEntry(read.apRank[i], index.apRank[i].deviceMAC, "ff", i + 1, i + 2);
}

TEST(ApRankIndexInfo, headerLineThatSetsNothingLeavesEvenAnOverlargeCountAlone)
{
    ApRankIndex index;
    memset(&index, 0, sizeof index);
    index.cnt = 77;
    test::writeFile("f", "x\n112233445566 aabbccddeeff 2 500\n");
    EXPECT_TRUE(apRankIndexInfoReader("f", &index));
    EXPECT_EQ(77, index.cnt);
    EXPECT_EQ(500, index.apRank[0].throughput);
    test::writeFile("f", "\n");
    EXPECT_FALSE(apRankIndexInfoReader("f", &index));
    EXPECT_EQ(77, index.cnt);
}

TEST(ApRankIndexInfo, tooManyEntriesLeaveACountThatTheHeaderDidNotState)
{
    ApRankIndex index;
    memset(&index, 0, sizeof index);
    index.cnt = 77;
    char text[31 * 32 + 8] = "x\n";
    for (int i = 0; i < 31; ++i)
        strcat(text, "112233445566 aabbccddeeff 2 500\n");
    test::writeFile("f", text);
    EXPECT_FALSE(apRankIndexInfoReader("f", &index));
    EXPECT_EQ(77, index.cnt);
    EXPECT_EQ(500, index.apRank[29].throughput);
}

TEST(ApRankIndexInfo, writerReportsFailures)
{
    static const Row rows[] = {
        Row("reports more than thirty entries", NO_FILE, noFault, [] { return write(numberedIndex(31)); },
            false, {writerCannotPrint}),
        Row("reports a failed open without a close", NO_FILE, noFault,
            [] { return write(sampleIndex(), "no/file"); }, false,
            {"E apRankIndexInfoWriter: fopen error, path: no/file."}),
        Row("reports a failed close after a failed print of the header", NO_FILE,
            failBoth(WRITE, 1, CLOSE, 1), writeSample, false, {writerCannotPrint, writerCannotClose}, ""),
        Row("reports a failed close after a failed print of an entry", NO_FILE, failBoth(WRITE, 2, CLOSE, 1),
            writeSample, false, {writerCannotPrint, writerCannotClose}, "2 7 3 1600000001\n"),
        Row("reports a failed close", NO_FILE, fails(CLOSE, 1), writeSample, false, {writerCannotClose},
            sampleText),
        Row("reports the close that fails on a full device", NO_FILE, noFault,
            [] { return write(sampleIndex(), "/dev/full"); }, false,
            {"E apRankIndexInfoWriter: fclose error, path:/dev/full.\n"}),
        Row("reports the print that fails on a full device", NO_FILE, unbuffered,
            [] { return write(sampleIndex(), "/dev/full"); }, false,
            {"E apRankIndexInfoWriter: fprintf error, path: /dev/full"}),
    };
    expectRows(rows);
}

TEST(ApRankIndexInfo, readerOfAnEmptyFileNeedsNoRecord)
{
    test::writeFile("f", "");
    EXPECT_TRUE(apRankIndexInfoReader("f", nullptr));
}
