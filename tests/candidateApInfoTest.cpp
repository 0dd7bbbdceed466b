/* SPDX-License-Identifier: Apache-2.0 */
#include "testing.h"

#include <limits.h>
#include <sys/stat.h>

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

/* ---- Writer ------------------------------------------------------------- */

TEST(CandidateApInfo, writerPutsEveryFieldInItsPlace)
{
    CandidateAp record = first;
    EXPECT_TRUE(candidateApNodeInfoWriter("candidates", &record, 1));
    EXPECT_STREQ(test::fileText("candidates"), "112233445566 1 2 203 40004 5 6 7 8\n");
    EXPECT_STREQ(test::messages(), "");
    EXPECT_TRUE(same(record, first));
}

TEST(CandidateApInfo, recordIsWrittenAndReadsBackUnchanged)
{
    CandidateAp record = {"aabbccddeeff", 1, 1, 200, 866, 5, 2, 9, 2};
    EXPECT_TRUE(candidateApNodeInfoWriter("candidates", &record, 1));
    EXPECT_STREQ(test::fileText("candidates"), "aabbccddeeff 1 1 200 866 5 2 9 2\n");
    CandidateAp loaded = {};
    EXPECT_TRUE(candidateApNodeInfoReader("candidates", &loaded));
    EXPECT_TRUE(same(loaded, record));
}

TEST(CandidateApInfo, largestValuesAreCarriedWhole)
{
    CandidateAp record = {"ffffffffffff", 255, 255, 255, 65535, 255, 255, 255, 255};
    EXPECT_TRUE(candidateApNodeInfoWriter("candidates", &record, 1));
    EXPECT_STREQ(test::fileText("candidates"), "ffffffffffff 255 255 255 65535 255 255 255 255\n");
    CandidateAp loaded = {};
    EXPECT_TRUE(candidateApNodeInfoReader("candidates", &loaded));
    EXPECT_TRUE(same(loaded, record));
}

TEST(CandidateApInfo, writerAlignsShortMacsToTheRightAndPrintsLongOnesWhole)
{
    CandidateAp records[] = {{"abc", 1, 2, 3, 4, 5, 6, 7, 8},
                             {"", 1, 2, 3, 4, 5, 6, 7, 8},
                             {"aabbccddeeff001", 1, 2, 3, 4, 5, 6, 7, 8}};
    EXPECT_TRUE(candidateApNodeInfoWriter("candidates", records, 3));
    EXPECT_STREQ(test::fileText("candidates"), "         abc 1 2 3 4 5 6 7 8\n"
                                               "             1 2 3 4 5 6 7 8\n"
                                               "aabbccddeeff001 1 2 3 4 5 6 7 8\n");
}

TEST(CandidateApInfo, writerWritesTheFirstRecordsInOrder)
{
    CandidateAp records[] = {first, second, first};
    EXPECT_TRUE(candidateApNodeInfoWriter("candidates", records, 2));
    EXPECT_STREQ(test::fileText("candidates"), FIRST SECOND);
    EXPECT_TRUE(candidateApNodeInfoWriter("candidates", records, 3));
    EXPECT_STREQ(test::fileText("candidates"), FIRST SECOND FIRST);
}

TEST(CandidateApInfo, writerCountsPastEightBits)
{
    static CandidateAp records[300];
    EXPECT_TRUE(candidateApNodeInfoWriter("candidates", records, 300));
    EXPECT_EQ(test::fileLines("candidates"), 300);
}

TEST(CandidateApInfo, writerReplacesTheWholeFile)
{
    test::writeFile("candidates", FIRST FIRST FIRST);
    CandidateAp record = second;
    EXPECT_TRUE(candidateApNodeInfoWriter("candidates", &record, 1));
    EXPECT_STREQ(test::fileText("candidates"), SECOND);
}

TEST(CandidateApInfo, writerOfNoRecordsLeavesAnEmptyFile)
{
    const int counts[] = {0, -1, INT_MIN};
    for (const int canApNum : counts) {
        test::writeFile("candidates", FIRST);
        CandidateAp record = second;
        EXPECT_TRUE(candidateApNodeInfoWriter("candidates", &record, canApNum));
        EXPECT_EQ(test::fileSize("candidates"), 0);
    }
    EXPECT_STREQ(test::messages(), "");
}

TEST(CandidateApInfo, writerReportsAFailedOpen)
{
    CandidateAp record = first;
    test::setLevel(3);
    EXPECT_FALSE(candidateApNodeInfoWriter("no/candidates", &record, 1));
    EXPECT_STREQ(test::messages(),
                 "libzo: [candidateApNodeInfoWriter:#]: Failed to write file: no/candidates.\n|");
    test::clearMessages();
    test::setLevel(2);
    EXPECT_FALSE(candidateApNodeInfoWriter("no/candidates", &record, 1));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(CandidateApInfo, writerThatCannotOpenLeavesTheFileAlone)
{
    test::writeFile("candidates", SECOND);
    CandidateAp record = first;
    test::failNth(test::OPEN, 1);
    EXPECT_FALSE(candidateApNodeInfoWriter("candidates", &record, 1));
    EXPECT_STREQ(test::fileText("candidates"), SECOND);
    EXPECT_EQ(test::callCount(test::CLOSE), 0);
}

TEST(CandidateApInfo, writerStopsAtTheFirstFailedPrint)
{
    static const char* const written[] = {"", FIRST, FIRST SECOND};
    CandidateAp records[] = {first, second, first};
    for (int k = 1; k <= 3; ++k) {
        test::clearMessages();
        test::failNth(test::WRITE, k);
        EXPECT_FALSE(candidateApNodeInfoWriter("candidates", records, 3));
        EXPECT_STREQ(test::messages(),
                     "libzo: [candidateApNodeInfoWriter:#]: fclose error, path:candidates.\n|");
        EXPECT_STREQ(test::fileText("candidates"), written[k - 1]);
        EXPECT_EQ(test::openStreams(), 0);
    }
}

TEST(CandidateApInfo, failedPrintIsAnError)
{
    CandidateAp record = first;
    test::failFrom(test::WRITE, 1);
    test::setLevel(3);
    EXPECT_FALSE(candidateApNodeInfoWriter("candidates", &record, 1));
    EXPECT_EQ(test::messageCount(), 1);
    test::setLevel(2);
    EXPECT_FALSE(candidateApNodeInfoWriter("candidates", &record, 1));
    EXPECT_EQ(test::messageCount(), 1);
}

TEST(CandidateApInfo, writerReportsAFailedCloseOnceAfterAFailedPrint)
{
    CandidateAp record = first;
    test::failNth(test::WRITE, 1);
    test::failFrom(test::CLOSE, 1);
    EXPECT_FALSE(candidateApNodeInfoWriter("candidates", &record, 1));
    EXPECT_STREQ(test::messages(), "libzo: [candidateApNodeInfoWriter:#]: fclose error, path:candidates.\n|");
}

TEST(CandidateApInfo, writerReportsAFailedClose)
{
    CandidateAp record = first;
    test::setLevel(3);
    test::failFrom(test::CLOSE, 1);
    EXPECT_FALSE(candidateApNodeInfoWriter("candidates", &record, 1));
    EXPECT_STREQ(test::messages(), "libzo: [candidateApNodeInfoWriter:#]: fclose error, path:candidates.\n|");
    EXPECT_STREQ(test::fileText("candidates"), FIRST);
    test::clearMessages();
    test::setLevel(2);
    EXPECT_FALSE(candidateApNodeInfoWriter("candidates", &record, 1));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(CandidateApInfo, writerNoticesAFullDevice)
{
    static CandidateAp records[1000];
    EXPECT_FALSE(candidateApNodeInfoWriter("/dev/full", records, 1));
    EXPECT_STREQ(test::messages(), "libzo: [candidateApNodeInfoWriter:#]: fclose error, path:/dev/full.\n|");
    test::clearMessages();
    EXPECT_FALSE(candidateApNodeInfoWriter("/dev/full", records, 1000));
    EXPECT_STREQ(test::messages(), "libzo: [candidateApNodeInfoWriter:#]: fclose error, path:/dev/full.\n|");
}

/* ---- Reader ------------------------------------------------------------- */

TEST(CandidateApInfo, readerFillsEveryField)
{
    test::writeFile("candidates", FIRST SECOND);
    CandidateAp records[3];
    mark(records, sizeof records);
    EXPECT_TRUE(candidateApNodeInfoReader("candidates", records));
    EXPECT_TRUE(same(records[0], first));
    EXPECT_TRUE(same(records[1], second));
    EXPECT_TRUE(isMarked(&records[2], sizeof records[2]));
    EXPECT_STREQ(test::messages(), "");
    EXPECT_STREQ(test::fileText("candidates"), FIRST SECOND);
    EXPECT_EQ(test::callCount(test::OPEN), 1);
}

TEST(CandidateApInfo, readerTakesALastLineWithoutItsEnd)
{
    test::writeFile("candidates", FIRST "aabbccddeeff 11 12 13 1014 15 16 17 99");
    CandidateAp records[2] = {};
    EXPECT_TRUE(candidateApNodeInfoReader("candidates", records));
    EXPECT_TRUE(same(records[1], second));
}

TEST(CandidateApInfo, readerOfAnEmptyFileReadsNothingAndSucceeds)
{
    test::writeFile("candidates", "");
    CandidateAp record;
    mark(&record, sizeof record);
    EXPECT_TRUE(candidateApNodeInfoReader("candidates", &record));
    EXPECT_TRUE(isMarked(&record, sizeof record));
    EXPECT_STREQ(test::messages(), "");
}

TEST(CandidateApInfo, readerReportsAFailedOpen)
{
    CandidateAp record;
    mark(&record, sizeof record);
    test::setLevel(3);
    EXPECT_FALSE(candidateApNodeInfoReader("candidates", &record));
    EXPECT_STREQ(test::messages(),
                 "libzo: [candidateApNodeInfoReader:#]: Failed to read file: candidates.\n|");
    EXPECT_TRUE(isMarked(&record, sizeof record));
    EXPECT_STREQ(test::fileText("candidates"), "<missing>");
    test::clearMessages();
    test::setLevel(2);
    EXPECT_FALSE(candidateApNodeInfoReader("candidates", &record));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(CandidateApInfo, readerFailsAtABlankLine)
{
    static const char* const texts[] = {FIRST "\n" SECOND, FIRST "  \t \n" SECOND, FIRST "\n", FIRST "  "};
    for (const char* text : texts) {
        test::writeFile("candidates", text);
        test::clearMessages();
        CandidateAp records[3];
        mark(records, sizeof records);
        EXPECT_FALSE(candidateApNodeInfoReader("candidates", records));
        EXPECT_STREQ(test::messages(),
                     "libzo: [candidateApNodeInfoReader:#]: sscanf error, path: candidates|");
        EXPECT_TRUE(same(records[0], first));
        EXPECT_TRUE(isMarked(&records[1], 2 * sizeof records[1]));
        EXPECT_EQ(test::openStreams(), 0);
    }
}

TEST(CandidateApInfo, blankLineIsAnError)
{
    test::writeFile("candidates", "\n");
    CandidateAp record;
    test::setLevel(3);
    EXPECT_FALSE(candidateApNodeInfoReader("candidates", &record));
    EXPECT_EQ(test::messageCount(), 1);
    test::setLevel(2);
    EXPECT_FALSE(candidateApNodeInfoReader("candidates", &record));
    EXPECT_EQ(test::messageCount(), 1);
}

TEST(CandidateApInfo, readerFailsAtALineThatStartsWithANul)
{
    test::writeBytes("candidates",
                     "\0"
                     "12233445566 1 2 3\n",
                     19);
    CandidateAp record;
    mark(&record, sizeof record);
    EXPECT_FALSE(candidateApNodeInfoReader("candidates", &record));
    EXPECT_STREQ(test::messages(), "libzo: [candidateApNodeInfoReader:#]: sscanf error, path: candidates|");
    EXPECT_TRUE(isMarked(&record, sizeof record));
}

TEST(CandidateApInfo, readerAcceptsALineWithFewerFields)
{
    test::writeFile("candidates", "a\nbb 1 2 3\n" SECOND);
    CandidateAp records[3];
    mark(records, sizeof records);
    EXPECT_TRUE(candidateApNodeInfoReader("candidates", records));
    EXPECT_STREQ(test::messages(), "");
    EXPECT_STREQ(records[0].apMac, "a");
    EXPECT_EQ(records[0].connectBand, 0x55);
    EXPECT_EQ(records[0].mimo, 0x55);
    EXPECT_STREQ(records[1].apMac, "bb");
    EXPECT_EQ(records[1].connectBand, 1);
    EXPECT_EQ(records[1].roamingAvailable, 2);
    EXPECT_EQ(records[1].rssi, 3);
    EXPECT_EQ(records[1].throughput, 0x5555);
    EXPECT_EQ(records[1].mimo, 0x55);
    EXPECT_TRUE(same(records[2], second));
}

TEST(CandidateApInfo, readerKeepsTheFieldsBehindOneThatIsNoNumber)
{
    test::writeFile("candidates", "112233445566 1 x 3 4 5 6 7 8\n" SECOND);
    CandidateAp records[2];
    mark(records, sizeof records);
    EXPECT_TRUE(candidateApNodeInfoReader("candidates", records));
    EXPECT_EQ(records[0].connectBand, 1);
    EXPECT_EQ(records[0].roamingAvailable, 0x55);
    EXPECT_EQ(records[0].rssi, 0x55);
    EXPECT_TRUE(same(records[1], second));
}

TEST(CandidateApInfo, readerIgnoresWhatFollowsTheLastField)
{
    test::writeFile("candidates", "112233445566 1 2 203 40004 5 6 7 8 9 10 11\n" SECOND);
    CandidateAp records[2] = {};
    EXPECT_TRUE(candidateApNodeInfoReader("candidates", records));
    EXPECT_TRUE(same(records[0], first));
    EXPECT_TRUE(same(records[1], second));
}

TEST(CandidateApInfo, readerTakesTwelveCharactersOfTheMac)
{
    test::writeFile("candidates", "112233445566177 2 203 40004 5 6 7 8 9\n");
    CandidateAp record;
    mark(&record, sizeof record);
    EXPECT_TRUE(candidateApNodeInfoReader("candidates", &record));
    EXPECT_STREQ(record.apMac, "112233445566");
    EXPECT_EQ(record.connectBand, 177);
    EXPECT_EQ(record.roamingAvailable, 2);
    EXPECT_EQ(record.mimo, 8);
}

TEST(CandidateApInfo, readerStoresShortMacsWithoutTheirBlanks)
{
    test::writeFile("candidates", "         abc 1 2 203 40004 5 6 7 8\n");
    CandidateAp record;
    mark(&record, sizeof record);
    EXPECT_TRUE(candidateApNodeInfoReader("candidates", &record));
    EXPECT_STREQ(record.apMac, "abc");
    EXPECT_EQ(record.connectBand, 1);
}

TEST(CandidateApInfo, readerSplitsAnOverlongLineAfter1023Characters)
{
    char text[1200];
    snprintf(text, sizeof text, "%1022s2%s", "112233445566 1", "203445566778 3 4 5 6\n");
    test::writeFile("candidates", text);
    CandidateAp records[2];
    mark(records, sizeof records);
    EXPECT_TRUE(candidateApNodeInfoReader("candidates", records));
    EXPECT_STREQ(records[0].apMac, "112233445566");
    EXPECT_EQ(records[0].connectBand, 12);
    EXPECT_EQ(records[0].roamingAvailable, 0x55);
    EXPECT_STREQ(records[1].apMac, "203445566778");
    EXPECT_EQ(records[1].connectBand, 3);
}

TEST(CandidateApInfo, readerFailsAtABlankRestOfAnOverlongLine)
{
    char text[2048];
    snprintf(text, sizeof text, "112233445566 1 2 203 40004 5 6 7 8%1100s\n", "");
    test::writeFile("candidates", text);
    CandidateAp records[2];
    mark(records, sizeof records);
    EXPECT_FALSE(candidateApNodeInfoReader("candidates", records));
    EXPECT_TRUE(same(records[0], first));
    EXPECT_TRUE(isMarked(&records[1], sizeof records[1]));
}

TEST(CandidateApInfo, readerReportsAFailedClose)
{
    test::writeFile("candidates", FIRST);
    CandidateAp record = {};
    test::setLevel(3);
    test::failFrom(test::CLOSE, 1);
    EXPECT_FALSE(candidateApNodeInfoReader("candidates", &record));
    EXPECT_STREQ(test::messages(), "libzo: [candidateApNodeInfoReader:#]: fclose error, path:candidates.\n|");
    EXPECT_TRUE(same(record, first));
    test::clearMessages();
    test::setLevel(2);
    EXPECT_FALSE(candidateApNodeInfoReader("candidates", &record));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(CandidateApInfo, readerReportsNoFailedCloseAfterABlankLine)
{
    test::writeFile("candidates", "\n");
    CandidateAp record;
    test::failFrom(test::CLOSE, 1);
    EXPECT_FALSE(candidateApNodeInfoReader("candidates", &record));
    EXPECT_STREQ(test::messages(), "libzo: [candidateApNodeInfoReader:#]: sscanf error, path: candidates|");
}

TEST(CandidateApInfo, readerTakesAReadErrorForTheEndOfTheFile)
{
    test::writeFile("candidates", FIRST);
    CandidateAp record;
    mark(&record, sizeof record);
    test::failFrom(test::READ, 1);
    EXPECT_TRUE(candidateApNodeInfoReader("candidates", &record));
    EXPECT_TRUE(isMarked(&record, sizeof record));
    test::failNothing();
    mkdir("directory", 0777);
    EXPECT_TRUE(candidateApNodeInfoReader("directory", &record));
    EXPECT_TRUE(isMarked(&record, sizeof record));
    EXPECT_STREQ(test::messages(), "");
}
