/* SPDX-License-Identifier: Apache-2.0 */
#include "messages.h"
#include "scenario.h"

#include <limits.h>
#include <sys/stat.h>

using namespace messages::candidate;
using namespace test;

#define FIRST "112233445566 1 2 203 40004 5 6 7 8\n"
#define SECOND "aabbccddeeff 11 12 13 1014 15 16 17 99\n"

static const CandidateAp first = {"112233445566", 1, 2, 203, 40004, 5, 6, 7, 8};
static const CandidateAp second = {"aabbccddeeff", 11, 12, 13, 1014, 15, 16, 17, 99};

static bool same(const CandidateAp& a, const CandidateAp& b)
{
    return strcmp(a.apMac, b.apMac) == 0 && a.connectBand == b.connectBand &&
           a.roamingAvailable == b.roamingAvailable && a.rssi == b.rssi && a.throughput == b.throughput &&
           a.wifimode == b.wifimode && a.bandwidth == b.bandwidth && a.mcslevel == b.mcslevel &&
           a.mimo == b.mimo;
}

/* ---- Writer ------------------------------------------------------------- */

TEST(CandidateApInfo, writerPutsEveryFieldInItsPlace)
{
    CandidateAp record = first;
    EXPECT_TRUE(candidateApNodeInfoWriter("f", &record, 1));
    EXPECT_STREQ("112233445566 1 2 203 40004 5 6 7 8\n", test::fileText("f"));
    EXPECT_STREQ("", test::messages());
    EXPECT_TRUE(same(record, first));
}

TEST(CandidateApInfo, recordIsWrittenAndReadsBackUnchanged)
{
    CandidateAp record = {"aabbccddeeff", 1, 1, 200, 866, 5, 2, 9, 2};
    EXPECT_TRUE(candidateApNodeInfoWriter("f", &record, 1));
    EXPECT_STREQ("aabbccddeeff 1 1 200 866 5 2 9 2\n", test::fileText("f"));
    CandidateAp loaded = {};
    EXPECT_TRUE(candidateApNodeInfoReader("f", &loaded));
    EXPECT_TRUE(same(loaded, record));
}

TEST(CandidateApInfo, largestValuesAreCarriedWhole)
{
    CandidateAp record = {"ffffffffffff", 255, 255, 255, 65535, 255, 255, 255, 255};
    EXPECT_TRUE(candidateApNodeInfoWriter("f", &record, 1));
    EXPECT_STREQ("ffffffffffff 255 255 255 65535 255 255 255 255\n", test::fileText("f"));
    CandidateAp loaded = {};
    EXPECT_TRUE(candidateApNodeInfoReader("f", &loaded));
    EXPECT_TRUE(same(loaded, record));
}

TEST(CandidateApInfo, writerAlignsShortMacsToTheRightAndPrintsLongOnesWhole)
{
    CandidateAp records[] = {{"abc", 1, 2, 3, 4, 5, 6, 7, 8},
                             {"", 1, 2, 3, 4, 5, 6, 7, 8},
                             {"aabbccddeeff001", 1, 2, 3, 4, 5, 6, 7, 8}};
    EXPECT_TRUE(candidateApNodeInfoWriter("f", records, 3));
    EXPECT_STREQ("         abc 1 2 3 4 5 6 7 8\n"
                 "             1 2 3 4 5 6 7 8\n"
                 "aabbccddeeff001 1 2 3 4 5 6 7 8\n",
                 test::fileText("f"));
}

TEST(CandidateApInfo, writerWritesTheFirstRecordsInOrder)
{
    CandidateAp records[] = {first, second, first};
    EXPECT_TRUE(candidateApNodeInfoWriter("f", records, 2));
    EXPECT_STREQ(FIRST SECOND, test::fileText("f"));
    EXPECT_TRUE(candidateApNodeInfoWriter("f", records, 3));
    EXPECT_STREQ(FIRST SECOND FIRST, test::fileText("f"));
}

TEST(CandidateApInfo, writerCountsPastEightBits)
{
    static CandidateAp records[300];
    EXPECT_TRUE(candidateApNodeInfoWriter("f", records, 300));
    EXPECT_EQ(300, test::fileLines("f"));
}

TEST(CandidateApInfo, writerReplacesTheWholeFile)
{
    test::writeFile("f", FIRST FIRST FIRST);
    CandidateAp record = second;
    EXPECT_TRUE(candidateApNodeInfoWriter("f", &record, 1));
    EXPECT_STREQ(SECOND, test::fileText("f"));
}

TEST(CandidateApInfo, writerOfNoRecordsLeavesAnEmptyFile)
{
    const int counts[] = {0, -1, INT_MIN};
    for (const int canApNum : counts) {
        test::writeFile("f", FIRST);
        CandidateAp record = second;
        EXPECT_TRUE(candidateApNodeInfoWriter("f", &record, canApNum));
        EXPECT_EQ(0, test::fileSize("f"));
    }
    EXPECT_STREQ("", test::messages());
}

static bool writeThree()
{
    CandidateAp records[] = {first, second, first};
    return candidateApNodeInfoWriter("f", records, 3);
}

TEST(CandidateApInfo, writerStopsAtEachFailedPrint)
{
    static const char* const prints[] = {FIRST, SECOND, FIRST};
    expectStopsAtEachPrint(writeThree, prints, writerCannotClose);
}

static bool write(CandidateAp record, const char* path = "f")
{
    return candidateApNodeInfoWriter(path, &record, 1);
}

static bool writeFirst()
{
    return write(first);
}

TEST(CandidateApInfo, writerReportsFailures)
{
    static const Row rows[] = {
        Row("reports a failed open", NO_FILE, noFault, [] { return write(first, "no/file"); }, false,
            {"E candidateApNodeInfoWriter: Failed to write file: no/file.\n"}),
        Row("leaves a file that it cannot open", SECOND, fails(OPEN, 1), writeFirst, false,
            {writerCannotOpen}),
        Row("reports a failed close once after a failed print", NO_FILE, failBoth(WRITE, 1, CLOSE, 1),
            writeFirst, false, {writerCannotClose}, ""),
        Row("reports a failed close", NO_FILE, failsFrom(CLOSE, 1), writeFirst, false, {writerCannotClose},
            FIRST),
        Row("notices a full device", NO_FILE, noFault,
            [] {
                static CandidateAp records[1000];
                return candidateApNodeInfoWriter("/dev/full", records, 1);
            },
            false, {"E candidateApNodeInfoWriter: fclose error, path:/dev/full.\n"}),
        Row("notices a full device in the middle of a long file", NO_FILE, noFault,
            [] {
                static CandidateAp records[1000];
                return candidateApNodeInfoWriter("/dev/full", records, 1000);
            },
            false, {"E candidateApNodeInfoWriter: fclose error, path:/dev/full.\n"}),
    };
    expectRows(rows);
}

/* ---- Reader ------------------------------------------------------------- */

TEST(CandidateApInfo, readerFillsEveryField)
{
    test::writeFile("f", FIRST SECOND);
    CandidateAp records[3];
    test::mark(records);
    EXPECT_TRUE(candidateApNodeInfoReader("f", records));
    EXPECT_TRUE(same(records[0], first));
    EXPECT_TRUE(same(records[1], second));
    EXPECT_TRUE(isMarked(records[2]));
    EXPECT_STREQ("", test::messages());
    EXPECT_STREQ(FIRST SECOND, test::fileText("f"));
    EXPECT_EQ(1, test::callCount(test::OPEN));
}

TEST(CandidateApInfo, readerReadsALastLineWithoutItsEnd)
{
    test::writeFile("f", FIRST "aabbccddeeff 11 12 13 1014 15 16 17 99");
    CandidateAp records[2] = {};
    EXPECT_TRUE(candidateApNodeInfoReader("f", records));
    EXPECT_TRUE(same(records[1], second));
}

TEST(CandidateApInfo, readerOfAnEmptyFileReadsNothingAndSucceeds)
{
    test::writeFile("f", "");
    CandidateAp record;
    test::mark(record);
    EXPECT_TRUE(candidateApNodeInfoReader("f", &record));
    EXPECT_TRUE(isMarked(record));
    EXPECT_STREQ("", test::messages());
}

TEST(CandidateApInfo, readerFailsAtABlankLine)
{
    static const char* const texts[] = {FIRST "\n" SECOND, FIRST "  \t \n" SECOND, FIRST "\n", FIRST "  "};
    for (const char* text : texts) {
        test::writeFile("f", text);
        test::clearMessages();
        CandidateAp records[3];
        test::mark(records);
        EXPECT_FALSE(candidateApNodeInfoReader("f", records));
        EXPECT_MESSAGES(readerCannotRead);
        EXPECT_TRUE(same(records[0], first));
        EXPECT_TRUE(isMarked(&records[1], 2 * sizeof records[1]));
        EXPECT_EQ(0, test::openStreams());
    }
}

TEST(CandidateApInfo, readerAcceptsALineWithFewerFields)
{
    test::writeFile("f", "a\nbb 1 2 3\n" SECOND);
    CandidateAp records[3];
    test::mark(records);
    EXPECT_TRUE(candidateApNodeInfoReader("f", records));
    EXPECT_STREQ("", test::messages());
    EXPECT_STREQ("a", records[0].apMac);
    EXPECT_EQ(0x55, records[0].connectBand);
    EXPECT_EQ(0x55, records[0].mimo);
    EXPECT_STREQ("bb", records[1].apMac);
    EXPECT_EQ(1, records[1].connectBand);
    EXPECT_EQ(2, records[1].roamingAvailable);
    EXPECT_EQ(3, records[1].rssi);
    EXPECT_EQ(0x5555, records[1].throughput);
    EXPECT_EQ(0x55, records[1].mimo);
    EXPECT_TRUE(same(records[2], second));
}

TEST(CandidateApInfo, readerKeepsTheFieldsAfterOneThatIsNoNumber)
{
    test::writeFile("f", "112233445566 1 x 3 4 5 6 7 8\n" SECOND);
    CandidateAp records[2];
    test::mark(records);
    EXPECT_TRUE(candidateApNodeInfoReader("f", records));
    EXPECT_EQ(1, records[0].connectBand);
    EXPECT_EQ(0x55, records[0].roamingAvailable);
    EXPECT_EQ(0x55, records[0].rssi);
    EXPECT_TRUE(same(records[1], second));
}

TEST(CandidateApInfo, readerIgnoresWhatFollowsTheLastField)
{
    test::writeFile("f", "112233445566 1 2 203 40004 5 6 7 8 9 10 11\n" SECOND);
    CandidateAp records[2] = {};
    EXPECT_TRUE(candidateApNodeInfoReader("f", records));
    EXPECT_TRUE(same(records[0], first));
    EXPECT_TRUE(same(records[1], second));
}

TEST(CandidateApInfo, readerReadsTwelveCharactersOfTheMac)
{
    test::writeFile("f", "112233445566177 2 203 40004 5 6 7 8 9\n");
    CandidateAp record;
    test::mark(record);
    EXPECT_TRUE(candidateApNodeInfoReader("f", &record));
    EXPECT_STREQ("112233445566", record.apMac);
    EXPECT_EQ(177, record.connectBand);
    EXPECT_EQ(2, record.roamingAvailable);
    EXPECT_EQ(8, record.mimo);
}

TEST(CandidateApInfo, readerStoresShortMacsWithoutTheirBlanks)
{
    test::writeFile("f", "         abc 1 2 203 40004 5 6 7 8\n");
    CandidateAp record;
    test::mark(record);
    EXPECT_TRUE(candidateApNodeInfoReader("f", &record));
    EXPECT_STREQ("abc", record.apMac);
    EXPECT_EQ(1, record.connectBand);
}

TEST(CandidateApInfo, readerSplitsAnOverlongLineAfter1023Characters)
{
    char text[1200];
    snprintf(text, sizeof text, "%1022s2%s", "112233445566 1", "203445566778 3 4 5 6\n");
    test::writeFile("f", text);
    CandidateAp records[2];
    test::mark(records);
    EXPECT_TRUE(candidateApNodeInfoReader("f", records));
    EXPECT_STREQ("112233445566", records[0].apMac);
    EXPECT_EQ(12, records[0].connectBand);
    EXPECT_EQ(0x55, records[0].roamingAvailable);
    EXPECT_STREQ("203445566778", records[1].apMac);
    EXPECT_EQ(3, records[1].connectBand);
}

TEST(CandidateApInfo, readerFailsAtABlankRestOfAnOverlongLine)
{
    char text[2048];
    snprintf(text, sizeof text, "112233445566 1 2 203 40004 5 6 7 8%1100s\n", "");
    test::writeFile("f", text);
    CandidateAp records[2];
    test::mark(records);
    EXPECT_FALSE(candidateApNodeInfoReader("f", records));
    EXPECT_TRUE(same(records[0], first));
    EXPECT_TRUE(isMarked(records[1]));
}

static bool readNothing()
{
    CandidateAp record;
    test::mark(record);
    const bool result = candidateApNodeInfoReader("f", &record);
    EXPECT_TRUE(isMarked(record));
    return result;
}

TEST(CandidateApInfo, readerReportsFailures)
{
    static const Row rows[] = {
        Row("reports a failed open", NO_FILE, noFault, readNothing, false, {readerCannotOpen}),
        Row("fails at a blank first line", "\n", noFault, readNothing, false, {readerCannotRead}),
        Row(
            "fails at a line that starts with a nul", NO_FILE, noFault,
            [] {
                test::writeBytes("f",
                                 "\0"
                                 "12233445566 1 2 3\n",
                                 19);
                CandidateAp record;
                test::mark(record);
                const bool result = candidateApNodeInfoReader("f", &record);
                EXPECT_TRUE(isMarked(record));
                return result;
            },
            false, {readerCannotRead}, ANY_FILE),
        Row("reports a failed close", FIRST, failsFrom(CLOSE, 1),
            [] {
                CandidateAp record = {};
                const bool result = candidateApNodeInfoReader("f", &record);
                EXPECT_TRUE(same(record, first));
                return result;
            },
            false, {readerCannotClose}),
        Row("reports no failed close after a blank line", "\n", failsFrom(CLOSE, 1),
            [] {
                CandidateAp record;
                return candidateApNodeInfoReader("f", &record);
            },
            false, {readerCannotRead}),
        Row("treats a read error as the end of the file", FIRST, failsFrom(READ, 1), readNothing, true),
        Row("treats a directory as an empty file", DIRECTORY, noFault, readNothing, true),
    };
    expectRows(rows);
}
