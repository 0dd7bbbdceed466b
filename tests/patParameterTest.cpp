/* SPDX-License-Identifier: Apache-2.0 */
/* The files of PAT parameters, version 1 and version 2. */
#include "messages.h"
#include "scenario.h"

#include <limits.h>
#include <stdarg.h>
#include <sys/stat.h>

using namespace messages::fileHelpers;
using namespace messages::pat;
using namespace test;

/* The default file of one device, whose MAC stands before this. */
#define DEFAULT_ENTRIES                                      \
    " 15\n"                                                  \
    "0 0 1 0 64 46094\n0 0 1 1 64 46094\n0 0 1 2 64 46094\n" \
    "0 1 3 0 64 46094\n0 1 3 1 64 46094\n0 1 3 2 64 46094\n" \
    "0 2 3 0 64 46094\n0 2 3 1 64 46094\n0 2 3 2 64 46094\n" \
    "0 3 3 0 64 46094\n0 3 3 1 64 46094\n0 3 3 2 64 46094\n" \
    "0 4 3 0 64 46094\n0 4 3 1 64 46094\n0 4 3 2 64 46094\n"

#define DEFAULT_FILE "1\n000000000000" DEFAULT_ENTRIES

/* ---- Texts of any length ------------------------------------------------ */

static char text[1 << 16];
static size_t textLength;

static void addText(const char* format, ...) __attribute__((format(printf, 1, 2)));
static void addText(const char* format, ...)
{
    va_list args;
    va_start(args, format);
    const int length = vsnprintf(text + textLength, sizeof text - textLength, format, args);
    va_end(args);
    textLength += static_cast<size_t>(length);
}

static void beginText()
{
    textLength = 0;
    text[0] = '\0';
}

/* ---- Version 2 records -------------------------------------------------- */

/* More records than a file can state. */
static PatParameterV2 pats[300];

/* An empty record, one for each test that needs few of them. */
static void clearPats()
{
    memset(pats, 0, sizeof pats);
}

static void setMac(char (&field)[16], const char* mac)
{
    snprintf(field, sizeof field, "%s", mac);
}

static void setEntry(SinglePat* entry, int isChanged, int band, int width, int mcs, int paraB, int paraC)
{
    entry->isChanged = static_cast<uint8_t>(isChanged);
    entry->bandOrder = static_cast<uint8_t>(band);
    entry->channelWidthOrder = static_cast<uint8_t>(width);
    entry->mcsOrder = static_cast<uint8_t>(mcs);
    entry->paraB = static_cast<uint8_t>(paraB);
    entry->paraC = static_cast<uint16_t>(paraC);
}

/* Entry k: k+1 to k+5, and 60000+k. */
static void setDevice(PatParameterV2* pat, const char* mac, int count)
{
    setMac(pat->deviceMac, mac);
    pat->commonPatNum = static_cast<uint8_t>(count);
    for (int k = 0; k < count && k < 100; ++k)
        setEntry(&pat->singlePat[k], k + 1, k + 2, k + 3, k + 4, k + 5, 60000 + k);
}

/* The text of setDevice()'s entries. */
static void addEntries(int count)
{
    for (int k = 0; k < count; ++k)
        addText("%d %d %d %d %d %d\n", (k + 1) % 256, (k + 2) % 256, (k + 3) % 256, (k + 4) % 256,
                (k + 5) % 256, 60000 + k);
}

static bool isEntry(const SinglePat* entry, int isChanged, int band, int width, int mcs, int paraB, int paraC)
{
    return entry->isChanged == isChanged && entry->bandOrder == band && entry->channelWidthOrder == width &&
           entry->mcsOrder == mcs && entry->paraB == paraB && entry->paraC == paraC;
}

static void fillPats()
{
    test::mark(pats);
}

static bool isDefault(const PatParameterV2* pat)
{
    bool is = strcmp(pat->deviceMac, "000000000000") == 0 && pat->commonPatNum == 15;
    for (int mcs = 0; mcs < 3; ++mcs) {
        is = is && isEntry(&pat->singlePat[mcs], 0, 0, 1, mcs, 64, 46094);
        for (int band = 1; band < 5; ++band)
            is = is && isEntry(&pat->singlePat[3 * band + mcs], 0, band, 3, mcs, 64, 46094);
    }
    return is;
}

/* ---- Version 2 writer --------------------------------------------------- */

TEST(PatParameter, writerWritesCountDevicesAndEntries)
{
    clearPats();
    setDevice(&pats[0], "0A1B2C3D4E5F", 2);
    setDevice(&pats[1], "102030405060", 1);
    setEntry(&pats[1].singlePat[0], 255, 254, 253, 252, 251, 65535);
    EXPECT_TRUE(patParameterWriterV2("f", 2, pats, nullptr));
    EXPECT_STREQ("2\n"
                 "0A1B2C3D4E5F 2\n"
                 "1 2 3 4 5 60000\n"
                 "2 3 4 5 6 60001\n"
                 "102030405060 1\n"
                 "255 254 253 252 251 65535\n",
                 test::fileText("f"));
    EXPECT_EQ(0, test::messageCount());
}

TEST(PatParameter, writerOfNoDevicesWritesTheCountAlone)
{
    clearPats();
    EXPECT_TRUE(patParameterWriterV2("f", 0, pats, nullptr));
    EXPECT_STREQ("0\n", test::fileText("f"));
}

TEST(PatParameter, writerOfANegativeCountWritesItAlone)
{
    clearPats();
    EXPECT_TRUE(patParameterWriterV2("f", -2, pats, nullptr));
    EXPECT_STREQ("-2\n", test::fileText("f"));
}

TEST(PatParameter, writerWritesADeviceWithoutEntriesAsItsLineAlone)
{
    clearPats();
    setDevice(&pats[0], "0A1B2C3D4E5F", 0);
    EXPECT_TRUE(patParameterWriterV2("f", 1, pats, nullptr));
    EXPECT_STREQ("1\n0A1B2C3D4E5F 0\n", test::fileText("f"));
}

TEST(PatParameter, writerReplacesTheFile)
{
    test::writeFile("f", "3\nsomething much longer than what comes now\nand more of it\n");
    clearPats();
    setDevice(&pats[0], "0A1B2C3D4E5F", 1);
    EXPECT_TRUE(patParameterWriterV2("f", 1, pats, nullptr));
    EXPECT_STREQ("1\n0A1B2C3D4E5F 1\n1 2 3 4 5 60000\n", test::fileText("f"));
}

TEST(PatParameter, writerAlignsShortMacsRightAndWritesLongOnesWhole)
{
    clearPats();
    setDevice(&pats[0], "abc", 0);
    setDevice(&pats[1], "", 0);
    setDevice(&pats[2], "ABCDEFGHIJKLMNO", 0);
    EXPECT_TRUE(patParameterWriterV2("f", 3, pats, nullptr));
    EXPECT_STREQ("3\n         abc 0\n             0\nABCDEFGHIJKLMNO 0\n", test::fileText("f"));
}

TEST(PatParameter, writerWritesMoreDevicesThanTheCountReadsBack)
{
    clearPats();
    EXPECT_TRUE(patParameterWriterV2("f", 300, pats, nullptr));
    EXPECT_STREQ("300", test::fileLine("f", 0));
    EXPECT_EQ(301, test::fileLines("f"));
}

TEST(PatParameter, writerWritesAHundredEntries)
{
    clearPats();
    setDevice(&pats[0], "0A1B2C3D4E5F", 100);
    EXPECT_TRUE(patParameterWriterV2("f", 1, pats, nullptr));
    beginText();
    addText("1\n0A1B2C3D4E5F 100\n");
    addEntries(100);
    EXPECT_STREQ(text, test::fileText("f"));
}

TEST(PatParameter, writerWritesAHundredOfMoreEntries)
{
    static const int counts[] = {101, 128, 255};
    for (int count : counts) {
        clearPats();
        setDevice(&pats[0], "0A1B2C3D4E5F", count);
        setDevice(&pats[1], "102030405060", 1);
        EXPECT_TRUE(patParameterWriterV2("f", 2, pats, nullptr));
        beginText();
        addText("2\n0A1B2C3D4E5F 100\n");
        addEntries(100);
        addText("102030405060 1\n1 2 3 4 5 60000\n");
        EXPECT_STREQ(text, test::fileText("f"));
        EXPECT_EQ(0, test::messageCount());
    }
}

TEST(PatParameter, writerDoesNotUseThePoolOfMacs)
{
    static char macPool[2][16] = {"A0A1A2A3A4A5", "B0B1B2B3B4B5"};
    clearPats();
    setDevice(&pats[0], "0A1B2C3D4E5F", 1);
    EXPECT_TRUE(patParameterWriterV2("f", 1, pats, macPool));
    EXPECT_STREQ("1\n0A1B2C3D4E5F 1\n1 2 3 4 5 60000\n", test::fileText("f"));
    EXPECT_STREQ("A0A1A2A3A4A5", macPool[0]);
    EXPECT_STREQ("B0B1B2B3B4B5", macPool[1]);
}

TEST(PatParameter, writerLeavesTheRecords)
{
    static PatParameterV2 before;
    clearPats();
    setDevice(&pats[0], "0A1B2C3D4E5F", 255);
    before = pats[0];
    EXPECT_TRUE(patParameterWriterV2("f", 1, pats, nullptr));
    EXPECT_TRUE(memcmp(&before, &pats[0], sizeof before) == 0);
}

static bool writeTwoDevices()
{
    clearPats();
    setDevice(&pats[0], "0A1B2C3D4E5F", 2);
    setDevice(&pats[1], "102030405060", 1);
    return patParameterWriterV2("f", 2, pats, nullptr);
}

TEST(PatParameter, writerStopsAtEachFailedPrint)
{
    static const char* const prints[] = {"2",
                                         "\n",
                                         "0A1B2C3D4E5F 2\n",
                                         "1 2 3 4 5 60000\n",
                                         "2 3 4 5 6 60001\n",
                                         "102030405060 1\n",
                                         "1 2 3 4 5 60000\n"};
    expectStopsAtEachPrint(writeTwoDevices, prints, writerCannotPrint);
}

TEST(PatParameter, writerDoesNotLookAtTheClose)
{
    clearPats();
    setDevice(&pats[0], "0A1B2C3D4E5F", 1);
    EXPECT_TRUE(patParameterWriterV2("/dev/full", 1, pats, nullptr));
    test::failNth(test::CLOSE, 1);
    EXPECT_TRUE(patParameterWriterV2("f", 1, pats, nullptr));
    EXPECT_STREQ("1\n0A1B2C3D4E5F 1\n1 2 3 4 5 60000\n", test::fileText("f"));
    EXPECT_EQ(0, test::messageCount());
    EXPECT_EQ(2, test::callCount(test::CLOSE));
}

static bool writeOne()
{
    clearPats();
    return patParameterWriterV2("f", 1, pats, nullptr);
}

TEST(PatParameter, writerReportsFailures)
{
    static const Row rows[] = {
        Row("of a file that cannot be opened fails", NO_FILE, noFault,
            [] {
                clearPats();
                return patParameterWriterV2("no/file", 1, pats, nullptr);
            },
            false, {"E patParameterWriterV2: Failed to write file: no/file.\n"}),
        Row("leaves a file that it cannot open", "as it was\n", fails(OPEN, 1),
            [] {
                clearPats();
                const bool result = patParameterWriterV2("f", 1, pats, nullptr);
                EXPECT_EQ(1, test::callCount(test::OPEN));
                return result;
            },
            false, {writerCannotOpen}),
        Row("reports a failed print on a full device", NO_FILE, noFault,
            [] {
                clearPats();
                for (int i = 0; i < 20; ++i)
                    setDevice(&pats[i], "0A1B2C3D4E5F", 100);
                return patParameterWriterV2("/dev/full", 20, pats, nullptr);
            },
            false, {"E patParameterWriterV2: fprintf error, path:/dev/full.\n"}),
        Row("does not look at the close after a failed print", NO_FILE, failBoth(WRITE, 1, CLOSE, 1),
            writeOne, false, {writerCannotPrint}, ""),
    };
    expectRows(rows);
}

/* ---- Replacing the file by one device ----------------------------------- */

TEST(PatParameter, updateReplacesAllDevicesByOneAndReturnsFalse)
{
    clearPats();
    for (int i = 0; i < 5; ++i)
        setDevice(&pats[i], "A0A1A2A3A4A5", i);
    EXPECT_TRUE(patParameterWriterV2("f", 5, pats, nullptr));
    setDevice(&pats[5], "102030405060", 2);
    EXPECT_FALSE(updateSinglePatV2("f", &pats[5]));
    EXPECT_STREQ("1\n102030405060 2\n1 2 3 4 5 60000\n2 3 4 5 6 60001\n", test::fileText("f"));
    EXPECT_EQ(0, test::messageCount());
}

TEST(PatParameter, updateCreatesAMissingFileAndReturnsFalse)
{
    clearPats();
    setDevice(&pats[0], "102030405060", 1);
    EXPECT_FALSE(updateSinglePatV2("f", &pats[0]));
    EXPECT_STREQ("1\n102030405060 1\n1 2 3 4 5 60000\n", test::fileText("f"));
    EXPECT_EQ(0, test::messageCount());
    EXPECT_EQ(1, test::callCount(test::OPEN));
}

TEST(PatParameter, updateReportsFailuresAndReturnsFalse)
{
    static const Row rows[] = {
        Row("without a record leaves the file", "as it was\n", noFault,
            [] {
                const bool result = updateSinglePatV2("f", nullptr);
                EXPECT_EQ(0, test::callCount(test::OPEN));
                return result;
            },
            false, {updateRefusesNull}),
        Row("cannot open its file returns false", NO_FILE, noFault,
            [] {
                clearPats();
                return updateSinglePatV2("no/file", &pats[0]);
            },
            false, {"E patParameterWriterV2: Failed to write file: no/file.\n"}),
        Row(
            "cannot print returns false", NO_FILE, fails(WRITE, 4),
            [] {
                clearPats();
                setDevice(&pats[0], "102030405060", 1);
                return updateSinglePatV2("f", &pats[0]);
            },
            false, {writerCannotPrint}, "1\n102030405060 1\n"),
    };
    expectRows(rows);
}

/* ---- Default file ------------------------------------------------------- */

static void initialise(const char* path, const char* name)
{
    char mac[16];
    setMac(mac, name);
    patInitV2(path, mac);
}

TEST(PatParameter, initWritesTheDefaultEntriesOfADevice)
{
    initialise("f", "0A1B2C3D4E5F");
    EXPECT_STREQ("1\n0A1B2C3D4E5F" DEFAULT_ENTRIES, test::fileText("f"));
    EXPECT_EQ(0, test::messageCount());
    EXPECT_EQ(1, test::callCount(test::OPEN));
}

TEST(PatParameter, initOfTheDefaultDeviceWritesSeventeenLines)
{
    initialise("f", "000000000000");
    EXPECT_STREQ(DEFAULT_FILE, test::fileText("f"));
    EXPECT_EQ(17, test::fileLines("f"));
}

TEST(PatParameter, initReplacesTheFile)
{
    clearPats();
    setDevice(&pats[0], "102030405060", 60);
    EXPECT_TRUE(patParameterWriterV2("f", 1, pats, nullptr));
    initialise("f", "0A1B2C3D4E5F");
    EXPECT_STREQ("1\n0A1B2C3D4E5F" DEFAULT_ENTRIES, test::fileText("f"));
}

TEST(PatParameter, initWritesShortAndLongNames)
{
    initialise("f", "abc");
    EXPECT_STREQ("1\n         abc" DEFAULT_ENTRIES, test::fileText("f"));
    initialise("f", "ABCDEFGHIJKLMNO");
    EXPECT_STREQ("1\nABCDEFGHIJKLMNO" DEFAULT_ENTRIES, test::fileText("f"));
}

TEST(PatParameter, initThatCannotWriteLeavesTheWritersMessage)
{
    initialise("no/file", "0A1B2C3D4E5F");
    EXPECT_MESSAGES("E patParameterWriterV2: Failed to write file: no/file.\n");
    test::clearMessages();
    test::failNth(test::WRITE, 3);
    initialise("f", "0A1B2C3D4E5F");
    EXPECT_MESSAGES(writerCannotPrint);
    EXPECT_STREQ("1\n", test::fileText("f"));
}

/* ---- Version 2 reader: records ------------------------------------------ */

TEST(PatParameter, readerReadsDevicesAndEntries)
{
    test::writeFile("f", "2\n"
                         "0A1B2C3D4E5F 2\n"
                         "1 2 3 4 5 60000\n"
                         "6 7 8 9 10 60001\n"
                         "102030405060 1\n"
                         "255 254 253 252 251 65535\n");
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("f", 2, pats));
    EXPECT_STREQ("0A1B2C3D4E5F", pats[0].deviceMac);
    EXPECT_EQ(2, pats[0].commonPatNum);
    EXPECT_TRUE(isEntry(&pats[0].singlePat[0], 1, 2, 3, 4, 5, 60000));
    EXPECT_TRUE(isEntry(&pats[0].singlePat[1], 6, 7, 8, 9, 10, 60001));
    EXPECT_TRUE(isMarked(pats[0].singlePat[2]));
    EXPECT_STREQ("102030405060", pats[1].deviceMac);
    EXPECT_EQ(1, pats[1].commonPatNum);
    EXPECT_TRUE(isEntry(&pats[1].singlePat[0], 255, 254, 253, 252, 251, 65535));
    EXPECT_TRUE(isMarked(pats[1].singlePat[1]));
    EXPECT_TRUE(isMarked(pats[2]));
    EXPECT_EQ(0, test::messageCount());
}

TEST(PatParameter, readerOpensReadsAndCountsOnce)
{
    test::writeFile("f", "1\n0A1B2C3D4E5F 0\n");
    clearPats();
    EXPECT_TRUE(patParameterReaderV2("f", 1, pats));
    EXPECT_EQ(2, test::callCount(test::OPEN));
    EXPECT_EQ(2, test::callCount(test::CLOSE));
    EXPECT_STREQ("1\n0A1B2C3D4E5F 0\n", test::fileText("f"));
}

TEST(PatParameter, writtenRecordsComeBack)
{
    clearPats();
    setDevice(&pats[0], "0A1B2C3D4E5F", 100);
    setDevice(&pats[1], "102030405060", 0);
    setDevice(&pats[2], "A0A1A2A3A4A5", 7);
    EXPECT_TRUE(patParameterWriterV2("f", 3, pats, nullptr));
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("f", 3, pats));
    static const char* const macs[] = {"0A1B2C3D4E5F", "102030405060", "A0A1A2A3A4A5"};
    static const int counts[] = {100, 0, 7};
    for (int i = 0; i < 3; ++i) {
        EXPECT_STREQ(macs[i], pats[i].deviceMac);
        EXPECT_EQ(counts[i], pats[i].commonPatNum);
        for (int k = 0; k < counts[i]; ++k)
            EXPECT_TRUE(isEntry(&pats[i].singlePat[k], k + 1, k + 2, k + 3, k + 4, k + 5, 60000 + k));
    }
    EXPECT_TRUE(isMarked(pats[2].singlePat[7]));
    EXPECT_EQ(0, test::messageCount());
}

TEST(PatParameter, changeFlagsComeBack)
{
    clearPats();
    setDevice(&pats[0], "0A1B2C3D4E5F", 4);
    for (int flags = 0; flags < 4; ++flags)
        pats[0].singlePat[flags].isChanged = static_cast<uint8_t>(flags);
    EXPECT_TRUE(patParameterWriterV2("f", 1, pats, nullptr));
    clearPats();
    EXPECT_TRUE(patParameterReaderV2("f", 1, pats));
    for (int flags = 0; flags < 4; ++flags)
        EXPECT_EQ(flags, pats[0].singlePat[flags].isChanged);
}

TEST(PatParameter, readerReadsADeviceWithoutEntries)
{
    test::writeFile("f", "1\n0A1B2C3D4E5F 0\n");
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("f", 1, pats));
    EXPECT_STREQ("0A1B2C3D4E5F", pats[0].deviceMac);
    EXPECT_EQ(0, pats[0].commonPatNum);
    EXPECT_TRUE(isMarked(pats[0].singlePat[0]));
    EXPECT_EQ(0, test::messageCount());
}

TEST(PatParameter, readerStopsAtTheCallersCount)
{
    test::writeFile("f", "3\n0A1B2C3D4E5F 0\n102030405060 0\nA0A1A2A3A4A5 0\n");
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("f", 2, pats));
    EXPECT_STREQ("0A1B2C3D4E5F", pats[0].deviceMac);
    EXPECT_STREQ("102030405060", pats[1].deviceMac);
    EXPECT_TRUE(isMarked(pats[2]));
}

TEST(PatParameter, readerStopsAtTheFilesCount)
{
    test::writeFile("f", "1\n0A1B2C3D4E5F 0\n102030405060 0\n");
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("f", 4, pats));
    EXPECT_STREQ("0A1B2C3D4E5F", pats[0].deviceMac);
    EXPECT_TRUE(isMarked(pats[1]));
    EXPECT_TRUE(isMarked(pats[2]));
    EXPECT_TRUE(isMarked(pats[3]));
    EXPECT_EQ(0, test::messageCount());
}

TEST(PatParameter, readerOfNoDevicesSucceeds)
{
    test::writeFile("f", "0\n0A1B2C3D4E5F 0\n");
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("f", 1, pats));
    EXPECT_TRUE(isMarked(pats[0]));
    EXPECT_EQ(0, test::messageCount());
}

TEST(PatParameter, readerForNoOrFewerDevicesReadsNone)
{
    test::writeFile("f", "1\n0A1B2C3D4E5F 0\n");
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("f", 0, pats));
    EXPECT_TRUE(patParameterReaderV2("f", -1, pats));
    EXPECT_TRUE(patParameterReaderV2("f", INT_MIN, pats));
    EXPECT_TRUE(isMarked(pats[0]));
    EXPECT_EQ(0, test::messageCount());
}

TEST(PatParameter, readerReads255Devices)
{
    beginText();
    addText("255\n");
    for (int i = 0; i < 256; ++i)
        addText("%012d 0\n", i);
    test::writeFile("f", text);
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("f", 300, pats));
    EXPECT_STREQ("000000000000", pats[0].deviceMac);
    EXPECT_STREQ("000000000254", pats[254].deviceMac);
    EXPECT_TRUE(isMarked(pats[255]));
    EXPECT_EQ(0, test::messageCount());
}

TEST(PatParameter, readerAcceptsAnyCountOfTheCaller)
{
    test::writeFile("f", "1\n0A1B2C3D4E5F 0\n");
    static const int counts[] = {255, 256, 257, INT_MAX};
    for (int count : counts) {
        fillPats();
        EXPECT_TRUE(patParameterReaderV2("f", count, pats));
        EXPECT_STREQ("0A1B2C3D4E5F", pats[0].deviceMac);
        EXPECT_TRUE(isMarked(pats[1]));
    }
}

TEST(PatParameter, readerAcceptsAnyWhiteSpaceBetweenFields)
{
    test::writeFile("f", "\n 1\t0A1B2C3D4E5F\n\n2 1 2\n3 4 5 60000 6 7 8\t9 10\n\n 60001");
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("f", 1, pats));
    EXPECT_STREQ("0A1B2C3D4E5F", pats[0].deviceMac);
    EXPECT_TRUE(isEntry(&pats[0].singlePat[0], 1, 2, 3, 4, 5, 60000));
    EXPECT_TRUE(isEntry(&pats[0].singlePat[1], 6, 7, 8, 9, 10, 60001));
    EXPECT_EQ(0, test::messageCount());
}

TEST(PatParameter, readerReadsTwelveCharactersOfAMac)
{
    test::writeFile("f", "1\n0A1B2C3D4E5F1\n1 2 3 4 5 60000\n");
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("f", 1, pats));
    EXPECT_STREQ("0A1B2C3D4E5F", pats[0].deviceMac);
    EXPECT_EQ(1, pats[0].commonPatNum);
    EXPECT_TRUE(isEntry(&pats[0].singlePat[0], 1, 2, 3, 4, 5, 60000));
}

TEST(PatParameter, readerReadsDecimalsWithLeadingZeros)
{
    test::writeFile("f", "01\n0A1B2C3D4E5F 01\n010 011 012 013 014 015\n");
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("f", 1, pats));
    EXPECT_EQ(1, pats[0].commonPatNum);
    EXPECT_TRUE(isEntry(&pats[0].singlePat[0], 10, 11, 12, 13, 14, 15));
}

/* ---- Version 2 reader: ends and faults of the text ---------------------- */

TEST(PatParameter, readerTreatsACountThatDoesNotConvertAsNone)
{
    test::writeFile("f", "x\n0A1B2C3D4E5F 0\n");
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("f", 2, pats));
    EXPECT_EQ(0, test::messageCount());
    EXPECT_TRUE(isMarked(pats[0]));
}

TEST(PatParameter, readerKeepsTheCountWhereTheDevicesCountDoesNotConvert)
{
    test::writeFile("f", "1\n0A1B2C3D4E5F x\n");
    clearPats();
    setDevice(&pats[0], "102030405060", 2);
    EXPECT_TRUE(patParameterReaderV2("f", 1, pats));
    EXPECT_EQ(0, test::messageCount());
    EXPECT_STREQ("0A1B2C3D4E5F", pats[0].deviceMac);
    EXPECT_EQ(2, pats[0].commonPatNum);
    EXPECT_TRUE(isEntry(&pats[0].singlePat[1], 2, 3, 4, 5, 6, 60001));
}

TEST(PatParameter, readerGoesOnAfterAnEntryThatDoesNotConvert)
{
    test::writeFile("f", "2\n0A1B2C3D4E5F 1\n6 7 x 1 2 3\n");
    clearPats();
    setDevice(&pats[0], "102030405060", 1);
    EXPECT_TRUE(patParameterReaderV2("f", 2, pats));
    EXPECT_EQ(0, test::messageCount());
    EXPECT_TRUE(isEntry(&pats[0].singlePat[0], 6, 7, 3, 4, 5, 60000));
    EXPECT_STREQ("x", pats[1].deviceMac);
    EXPECT_EQ(1, pats[1].commonPatNum);
    EXPECT_TRUE(isEntry(&pats[1].singlePat[0], 2, 3, 0, 0, 0, 0));
}

TEST(PatParameter, readerReportsAReadError)
{
    test::writeFile("f", "1\n0A1B2C3D4E5F 0\n");
    fillPats();
    test::failNth(test::OPEN, 2); /* the counter's, so that it makes no reads */
    test::failFrom(test::READ, 1);
    EXPECT_TRUE(patParameterReaderV2("f", 1, pats));
    EXPECT_MESSAGES(counterCannotOpen, readerCannotRead);
    EXPECT_TRUE(isMarked(pats[0]));
    EXPECT_STREQ("1\n0A1B2C3D4E5F 0\n", test::fileText("f"));
}

TEST(PatParameter, readerReportsTheEndOfTheFile)
{
    static const Row rows[] = {
        Row("reports a count at the end of the file", "\n", noFault,
            [] {
                fillPats();
                const bool result = patParameterReaderV2("f", 2, pats);
                EXPECT_TRUE(isMarked(pats[0]));
                return result;
            },
            true, {readerCannotRead}),
        Row("reports every device at the end of the file", "3\n0A1B2C3D4E5F 0\n", noFault,
            [] {
                clearPats();
                setMac(pats[1].deviceMac, "held");
                const bool result = patParameterReaderV2("f", 3, pats);
                EXPECT_STREQ("0A1B2C3D4E5F", pats[0].deviceMac);
                EXPECT_STREQ("held", pats[1].deviceMac);
                EXPECT_EQ(0, pats[1].commonPatNum);
                return result;
            },
            true, {readerCannotRead, readerCannotRead}),
        Row("reads as many entries as a device at the end of the file held", "1\n", noFault,
            [] {
                static PatParameterV2 held;
                clearPats();
                setDevice(&pats[0], "102030405060", 2);
                held = pats[0];
                const bool result = patParameterReaderV2("f", 1, pats);
                EXPECT_TRUE(memcmp(&held, &pats[0], sizeof held) == 0);
                return result;
            },
            true, {readerCannotRead, readerCannotRead, readerCannotRead}),
        Row("reads as many entries as held where the device's count is missing", "1\n0A1B2C3D4E5F\n", noFault,
            [] {
                clearPats();
                setDevice(&pats[0], "102030405060", 2);
                const bool result = patParameterReaderV2("f", 1, pats);
                EXPECT_STREQ("0A1B2C3D4E5F", pats[0].deviceMac);
                EXPECT_EQ(2, pats[0].commonPatNum);
                EXPECT_TRUE(isEntry(&pats[0].singlePat[0], 1, 2, 3, 4, 5, 60000));
                EXPECT_TRUE(isEntry(&pats[0].singlePat[1], 2, 3, 4, 5, 6, 60001));
                return result;
            },
            true, {readerCannotRead, readerCannotRead}),
        Row("reports every entry at the end of the file", "1\n0A1B2C3D4E5F 3\n6 7 8 9 10 60009\n", noFault,
            [] {
                fillPats();
                const bool result = patParameterReaderV2("f", 1, pats);
                EXPECT_EQ(3, pats[0].commonPatNum);
                EXPECT_TRUE(isEntry(&pats[0].singlePat[0], 6, 7, 8, 9, 10, 60009));
                EXPECT_TRUE(isMarked(pats[0].singlePat[1]));
                EXPECT_TRUE(isMarked(pats[0].singlePat[2]));
                return result;
            },
            true, {readerCannotRead, readerCannotRead}),
        Row("does not notice an entry that is cut short", "1\n0A1B2C3D4E5F 2\n6 7 8 9 10\n", noFault,
            [] {
                clearPats();
                setDevice(&pats[0], "102030405060", 2);
                const bool result = patParameterReaderV2("f", 1, pats);
                EXPECT_TRUE(isEntry(&pats[0].singlePat[0], 6, 7, 8, 9, 10, 60000));
                EXPECT_TRUE(isEntry(&pats[0].singlePat[1], 2, 3, 4, 5, 6, 60001));
                return result;
            },
            true, {readerCannotRead}),
    };
    expectRows(rows);
}

/* ---- Version 2 reader: more entries than a record holds ------------------ */

TEST(PatParameter, readerReadsAHundredEntriesWithoutComplaint)
{
    beginText();
    addText("1\n0A1B2C3D4E5F 100\n");
    addEntries(100);
    test::writeFile("f", text);
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("f", 1, pats));
    EXPECT_EQ(100, pats[0].commonPatNum);
    EXPECT_TRUE(isEntry(&pats[0].singlePat[0], 1, 2, 3, 4, 5, 60000));
    EXPECT_TRUE(isEntry(&pats[0].singlePat[99], 100, 101, 102, 103, 104, 60099));
    EXPECT_TRUE(isMarked(pats[1]));
    EXPECT_EQ(0, test::messageCount());
}

TEST(PatParameter, readerKeepsAHundredEntriesAndReadsTheNextDeviceFromItsPlace)
{
    static const int counts[] = {101, 102, 130, 255};
    for (int count : counts) {
        beginText();
        addText("2\n0A1B2C3D4E5F %d\n", count);
        addEntries(count);
        addText("102030405060 1\n11 12 13 14 15 16\n");
        test::writeFile("f", text);
        test::clearMessages();
        fillPats();
        EXPECT_TRUE(patParameterReaderV2("f", 2, pats));
        EXPECT_MESSAGES(readerCannotRead);
        EXPECT_STREQ("0A1B2C3D4E5F", pats[0].deviceMac);
        EXPECT_EQ(100, pats[0].commonPatNum);
        for (int k = 0; k < 100; ++k)
            EXPECT_TRUE(isEntry(&pats[0].singlePat[k], k + 1, k + 2, k + 3, k + 4, k + 5, 60000 + k));
        EXPECT_STREQ("102030405060", pats[1].deviceMac);
        EXPECT_EQ(1, pats[1].commonPatNum);
        EXPECT_TRUE(isEntry(&pats[1].singlePat[0], 11, 12, 13, 14, 15, 16));
        EXPECT_TRUE(isMarked(pats[2]));
    }
}

TEST(PatParameter, readerWritesNothingAfterTheLastRecord)
{
    PatParameterV2* pat = static_cast<PatParameterV2*>(malloc(sizeof *pat));
    ASSERT_TRUE(pat != nullptr);
    beginText();
    addText("1\n0A1B2C3D4E5F 255\n");
    addEntries(255);
    test::writeFile("f", text);
    EXPECT_TRUE(patParameterReaderV2("f", 1, pat));
    EXPECT_EQ(100, pat->commonPatNum);
    EXPECT_TRUE(isEntry(&pat->singlePat[99], 100, 101, 102, 103, 104, 60099));
    free(pat);
}

TEST(PatParameter, readerTriesAsManyEntriesAsTheRecordHeldAndStoresAHundred)
{
    test::writeFile("f", "1\n");
    clearPats();
    setDevice(&pats[0], "102030405060", 255);
    setDevice(&pats[1], "A0A1A2A3A4A5", 1);
    EXPECT_TRUE(patParameterReaderV2("f", 1, pats));
    EXPECT_EQ(255, pats[0].commonPatNum);
    EXPECT_EQ(1 + 255, test::messageCount()); /* the device line, then every entry */
    EXPECT_TRUE(isEntry(&pats[0].singlePat[99], 100, 101, 102, 103, 104, 60099));
    EXPECT_STREQ("A0A1A2A3A4A5", pats[1].deviceMac);
    EXPECT_TRUE(isEntry(&pats[1].singlePat[0], 1, 2, 3, 4, 5, 60000));
}

TEST(PatParameter, readerDropsEntriesPastTheHundredthOfAHeldCount)
{
    beginText();
    addText("2\n0A1B2C3D4E5F x\n");
    test::writeFile("f", text);
    clearPats();
    setDevice(&pats[0], "102030405060", 101);
    EXPECT_TRUE(patParameterReaderV2("f", 1, pats));
    EXPECT_STREQ("0A1B2C3D4E5F", pats[0].deviceMac);
    EXPECT_EQ(101, pats[0].commonPatNum);
    EXPECT_EQ(0, test::messageCount()); /* the letter is in the way of every entry, and no end is met */
}

TEST(PatParameter, readerReportsTooManyEntries)
{
    static const Row rows[] = {
        Row(
            "reports every device with too many entries", NO_FILE, noFault,
            [] {
                beginText();
                addText("2\n0A1B2C3D4E5F 101\n");
                addEntries(101);
                addText("102030405060 101\n");
                addEntries(101);
                test::writeFile("f", text);
                clearPats();
                const bool result = patParameterReaderV2("f", 2, pats);
                EXPECT_EQ(100, pats[0].commonPatNum);
                EXPECT_EQ(100, pats[1].commonPatNum);
                return result;
            },
            true, {readerCannotRead, readerCannotRead}, ANY_FILE),
        Row(
            "reports too many entries", NO_FILE, noFault,
            [] {
                beginText();
                addText("1\n0A1B2C3D4E5F 101\n");
                addEntries(101);
                test::writeFile("f", text);
                clearPats();
                const bool result = patParameterReaderV2("f", 1, pats);
                EXPECT_EQ(100, pats[0].commonPatNum);
                return result;
            },
            true, {readerCannotRead}, ANY_FILE),
    };
    expectRows(rows);
}

/* ---- Version 2 reader: files that are missing or empty ------------------ */

TEST(PatParameter, readerOfAMissingFileCreatesAndReadsTheDefault)
{
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("f", 1, pats));
    EXPECT_STREQ(DEFAULT_FILE, test::fileText("f"));
    EXPECT_TRUE(isDefault(&pats[0]));
    EXPECT_TRUE(isMarked(pats[0].singlePat[15]));
    EXPECT_TRUE(isMarked(pats[1]));
    EXPECT_MESSAGES(readerMakesDefault);
    EXPECT_EQ(4, test::callCount(test::OPEN));
    EXPECT_EQ(3, test::callCount(test::CLOSE));
}

TEST(PatParameter, readerOfAnEmptyFileCreatesAndReadsTheDefault)
{
    test::writeFile("f", "");
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("f", 1, pats));
    EXPECT_STREQ(DEFAULT_FILE, test::fileText("f"));
    EXPECT_TRUE(isDefault(&pats[0]));
    EXPECT_TRUE(isMarked(pats[1]));
    EXPECT_MESSAGES(readerMakesDefault);
    EXPECT_EQ(3, test::callCount(test::OPEN));
    EXPECT_EQ(3, test::callCount(test::CLOSE));
}

TEST(PatParameter, readerForNoDevicesCreatesTheDefaultAllTheSame)
{
    EXPECT_TRUE(patParameterReaderV2("f", 0, nullptr));
    EXPECT_STREQ(DEFAULT_FILE, test::fileText("f"));
}

TEST(PatParameter, readerReadsOneDeviceOfTheDefault)
{
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("f", 5, pats));
    EXPECT_TRUE(isDefault(&pats[0]));
    EXPECT_TRUE(isMarked(pats[1]));
}

TEST(PatParameter, readerReadsWhatThereIsOfADefaultCutShort)
{
    clearPats();
    test::failNth(test::WRITE, 5);
    EXPECT_TRUE(patParameterReaderV2("f", 1, pats));
    EXPECT_STREQ("1\n000000000000 15\n0 0 1 0 64 46094\n", test::fileText("f"));
    EXPECT_TRUE(isEntry(&pats[0].singlePat[0], 0, 0, 1, 0, 64, 46094));
    EXPECT_TRUE(isEntry(&pats[0].singlePat[1], 0, 0, 0, 0, 0, 0));
    EXPECT_EQ(14, timesLogged(readerCannotRead));
    EXPECT_EQ(16, test::messageCount());
}

static bool readDefault()
{
    clearPats();
    const bool result = patParameterReaderV2("f", 1, pats);
    EXPECT_TRUE(isDefault(&pats[0]));
    return result;
}

static bool readNothing()
{
    fillPats();
    const bool result = patParameterReaderV2("f", 1, pats);
    EXPECT_TRUE(isMarked(pats[0]));
    return result;
}

TEST(PatParameter, readerReportsTheDefaultFileAndFailures)
{
    static const Row rows[] = {
        Row("notes the creation of a missing file", NO_FILE, noFault, readDefault, true, {readerMakesDefault},
            DEFAULT_FILE),
        Row(
            "notes the replacement of an empty file", "", noFault,
            [] {
                clearPats();
                return patParameterReaderV2("f", 1, pats);
            },
            true, {readerMakesDefault}, DEFAULT_FILE),
        Row("replaces a file that it cannot open", "1\n0A1B2C3D4E5F 0\n", fails(OPEN, 1), readDefault, true,
            {readerMakesDefault}, DEFAULT_FILE),
        Row("fails where the default cannot be created", NO_FILE, noFault,
            [] {
                fillPats();
                const bool result = patParameterReaderV2("no/file", 1, pats);
                EXPECT_TRUE(isMarked(pats[0]));
                EXPECT_EQ(3, test::callCount(test::OPEN));
                return result;
            },
            false, {readerMakesDefault, "E patParameterWriterV2: Failed to write file: no/file.\n"}),
        Row(
            "fails without a message where the default cannot be opened", NO_FILE, fails(OPEN, 3),
            [] {
                fillPats();
                const bool result = patParameterReaderV2("f", 1, pats);
                EXPECT_TRUE(isMarked(pats[0]));
                EXPECT_EQ(3, test::callCount(test::OPEN));
                return result;
            },
            false, {readerMakesDefault}, DEFAULT_FILE),
        Row("tries the default again where it was not written", NO_FILE, fails(WRITE, 1), readDefault, true,
            {readerMakesDefault, writerCannotPrint, readerMakesDefault}, DEFAULT_FILE),
        Row("of an empty file that cannot be written finds no count", "", fails(OPEN, 3), readNothing, true,
            {readerMakesDefault, writerCannotOpen, readerCannotRead}),
        Row("of a directory finds no count", DIRECTORY, noFault, readNothing, true,
            {readerMakesDefault, writerCannotOpen, readerCannotRead}),
        Row("treats a file whose lines cannot be read as empty", "1\n0A1B2C3D4E5F 0\n", fails(READ, 1),
            readDefault, true, {readerMakesDefault}, DEFAULT_FILE),
        Row("goes on where the lines cannot be counted", "1\n0A1B2C3D4E5F 0\n", fails(OPEN, 2),
            [] {
                clearPats();
                const bool result = patParameterReaderV2("f", 1, pats);
                EXPECT_STREQ("0A1B2C3D4E5F", pats[0].deviceMac);
                return result;
            },
            true, {counterCannotOpen}),
        Row("does not initialise where the lines cannot be counted", "", fails(CLOSE, 1),
            [] {
                clearPats();
                return patParameterReaderV2("f", 1, pats);
            },
            true, {counterCannotClose, readerCannotRead}),
        Row("reads the default where its lines cannot be counted", NO_FILE, fails(OPEN, 4), readDefault, true,
            {readerMakesDefault, counterCannotOpen}, DEFAULT_FILE),
        Row("reports a failed close and keeps what it read", "1\n0A1B2C3D4E5F 1\n1 2 3 4 5 60000\n",
            fails(CLOSE, 2),
            [] {
                clearPats();
                const bool result = patParameterReaderV2("f", 1, pats);
                EXPECT_STREQ("0A1B2C3D4E5F", pats[0].deviceMac);
                EXPECT_TRUE(isEntry(&pats[0].singlePat[0], 1, 2, 3, 4, 5, 60000));
                return result;
            },
            false, {readerCannotClose}),
        Row("reports a failed close of the default", NO_FILE, fails(CLOSE, 3), readDefault, false,
            {readerMakesDefault, readerCannotClose}, DEFAULT_FILE),
    };
    expectRows(rows);
}

/* ---- Version 1 reader --------------------------------------------------- */

static PatParameter oldPats[4];

static void fillOldPats()
{
    test::mark(oldPats);
}

/* A device with b from `first` up and c from `first` + 100 up. */
static void addOldDevice(const char* mac, int first, const char* between)
{
    addText("%s", mac);
    for (int slot = 0; slot < 200; ++slot)
        addText("%s%d", between, first + slot);
    addText("\n");
}

static bool isOldDevice(const PatParameter* pat, const char* mac, int first)
{
    bool is = strcmp(pat->deviceMac, mac) == 0;
    for (int slot = 0; slot < 100; ++slot)
        is = is && pat->bParameter[slot] == first + slot && pat->cParameter[slot] == first + 100 + slot;
    return is;
}

TEST(PatParameter, oldReaderReadsEveryDevice)
{
    beginText();
    addOldDevice("0A1B2C3D4E5F", 0, " ");
    addOldDevice("102030405060", 65336, " ");
    addOldDevice("A0A1A2A3A4A5", 300, " ");
    test::writeFile("f", text);
    fillOldPats();
    EXPECT_TRUE(patParameterReader("f", 3, oldPats));
    EXPECT_TRUE(isOldDevice(&oldPats[0], "0A1B2C3D4E5F", 0));
    EXPECT_TRUE(isOldDevice(&oldPats[1], "102030405060", 65336));
    EXPECT_TRUE(isOldDevice(&oldPats[2], "A0A1A2A3A4A5", 300));
    EXPECT_TRUE(isMarked(oldPats[3]));
    EXPECT_EQ(0, test::messageCount());
    EXPECT_STREQ(text, test::fileText("f"));
}

TEST(PatParameter, oldReaderOpensFirstAndCountsSecond)
{
    beginText();
    addOldDevice("0A1B2C3D4E5F", 1, " ");
    test::writeFile("f", text);
    fillOldPats();
    EXPECT_TRUE(patParameterReader("f", 1, oldPats));
    EXPECT_EQ(2, test::callCount(test::OPEN));
    EXPECT_EQ(2, test::callCount(test::CLOSE));
}

TEST(PatParameter, oldReaderAcceptsAnyWhiteSpaceBetweenValues)
{
    beginText();
    addOldDevice("\n\n  0A1B2C3D4E5F", 1, "\n");
    addOldDevice("102030405060", 1000, " \t\n\n ");
    test::writeFile("f", text);
    fillOldPats();
    EXPECT_TRUE(patParameterReader("f", 2, oldPats));
    EXPECT_TRUE(isOldDevice(&oldPats[0], "0A1B2C3D4E5F", 1));
    EXPECT_TRUE(isOldDevice(&oldPats[1], "102030405060", 1000));
    EXPECT_EQ(0, test::messageCount());
}

TEST(PatParameter, oldReaderReadsTwelveCharactersOfAMac)
{
    beginText();
    addOldDevice("0A1B2C3D4E5F7", 1, " "); /* the 7 is the first b */
    test::writeFile("f", text);
    fillOldPats();
    EXPECT_TRUE(patParameterReader("f", 1, oldPats));
    EXPECT_STREQ("0A1B2C3D4E5F", oldPats[0].deviceMac);
    EXPECT_EQ(7, oldPats[0].bParameter[0]);
    EXPECT_EQ(1, oldPats[0].bParameter[1]);
    EXPECT_EQ(199, oldPats[0].cParameter[99]);
}

TEST(PatParameter, oldReaderReadsDecimalsWithLeadingZeros)
{
    beginText();
    addOldDevice("0A1B2C3D4E5F", 8, " 0");
    test::writeFile("f", text);
    fillOldPats();
    EXPECT_TRUE(patParameterReader("f", 1, oldPats));
    EXPECT_TRUE(isOldDevice(&oldPats[0], "0A1B2C3D4E5F", 8));
}

TEST(PatParameter, oldReaderStopsAtTheCallersCount)
{
    beginText();
    addOldDevice("0A1B2C3D4E5F", 1, " ");
    addOldDevice("102030405060", 1, " ");
    test::writeFile("f", text);
    fillOldPats();
    EXPECT_TRUE(patParameterReader("f", 1, oldPats));
    EXPECT_TRUE(isOldDevice(&oldPats[0], "0A1B2C3D4E5F", 1));
    EXPECT_TRUE(isMarked(oldPats[1]));
}

TEST(PatParameter, oldReaderForNoDevicesReadsNone)
{
    beginText();
    addOldDevice("0A1B2C3D4E5F", 1, " ");
    test::writeFile("f", text);
    fillOldPats();
    EXPECT_TRUE(patParameterReader("f", 0, oldPats));
    EXPECT_TRUE(patParameterReader("f", -1, oldPats));
    EXPECT_TRUE(isMarked(oldPats[0]));
    EXPECT_EQ(0, test::messageCount());
}

TEST(PatParameter, oldReaderReportsEveryValueAtTheEndOfTheFile)
{
    test::writeFile("f", "0A1B2C3D4E5F 5 6 7\n");
    fillOldPats();
    EXPECT_TRUE(patParameterReader("f", 1, oldPats));
    EXPECT_EQ(197, test::messageCount());
    EXPECT_EQ(197, timesLogged(oldReaderCannotRead));
    EXPECT_STREQ("0A1B2C3D4E5F", oldPats[0].deviceMac);
    EXPECT_EQ(5, oldPats[0].bParameter[0]);
    EXPECT_EQ(6, oldPats[0].bParameter[1]);
    EXPECT_EQ(7, oldPats[0].bParameter[2]);
    EXPECT_TRUE(isMarked(&oldPats[0].bParameter[3], 97 * sizeof(uint16_t)));
    EXPECT_TRUE(isMarked(oldPats[0].cParameter));
}

TEST(PatParameter, oldReaderDoesNotNoticeValuesThatDoNotConvert)
{
    beginText();
    addText("0A1B2C3D4E5F 5 x\n");
    addOldDevice("", 1, " ");
    test::writeFile("f", text);
    fillOldPats();
    EXPECT_TRUE(patParameterReader("f", 2, oldPats));
    EXPECT_EQ(0, test::messageCount());
    EXPECT_EQ(5, oldPats[0].bParameter[0]);
    EXPECT_TRUE(isMarked(&oldPats[0].bParameter[1], 99 * sizeof(uint16_t)));
    EXPECT_TRUE(isMarked(oldPats[0].cParameter));
    EXPECT_TRUE(isOldDevice(&oldPats[1], "x", 1));
}

TEST(PatParameter, oldReaderReportsAReadError)
{
    test::writeFile("f", "0A1B2C3D4E5F 1 2 3\n");
    fillOldPats();
    test::failNth(test::OPEN, 2); /* the counter's, so that it makes no reads */
    test::failFrom(test::READ, 1);
    EXPECT_TRUE(patParameterReader("f", 2, oldPats));
    EXPECT_MESSAGES(counterCannotOpen, oldReaderCannotRead, oldReaderCannotRead);
    EXPECT_TRUE(isMarked(oldPats[0]));
}

static bool writeAndReadOldDevice()
{
    beginText();
    addOldDevice("0A1B2C3D4E5F", 1, " ");
    test::writeFile("f", text);
    fillOldPats();
    const bool result = patParameterReader("f", 1, oldPats);
    EXPECT_TRUE(isOldDevice(&oldPats[0], "0A1B2C3D4E5F", 1));
    return result;
}

static bool readNoOldDevice()
{
    fillOldPats();
    const bool result = patParameterReader("f", 2, oldPats);
    EXPECT_TRUE(isMarked(oldPats[0]));
    return result;
}

TEST(PatParameter, oldReaderReportsFailures)
{
    static const Row rows[] = {
        Row("of a missing file fails without counting", NO_FILE, noFault,
            [] {
                fillOldPats();
                const bool result = patParameterReader("f", 1, oldPats);
                EXPECT_TRUE(isMarked(oldPats[0]));
                EXPECT_EQ(1, test::callCount(test::OPEN));
                return result;
            },
            false, {oldReaderCannotOpen}),
        Row("does not count a file that it cannot open", "0A1B2C3D4E5F\n", fails(OPEN, 1),
            [] {
                const bool result = patParameterReader("f", 1, oldPats);
                EXPECT_EQ(1, test::callCount(test::OPEN));
                return result;
            },
            false, {oldReaderCannotOpen}),
        Row("of an empty file fails and leaves its stream open", "", noFault,
            [] {
                fillOldPats();
                const bool result = patParameterReader("f", 1, oldPats);
                EXPECT_TRUE(isMarked(oldPats[0]));
                EXPECT_EQ(1, test::openStreams());
                EXPECT_EQ(2, test::callCount(test::OPEN));
                test::closeLeftStreams();
                return result;
            },
            false, {oldReaderCannotOpen}),
        Row("of a directory fails", DIRECTORY, noFault,
            [] {
                const bool result = patParameterReader("f", 0, oldPats);
                EXPECT_EQ(1, test::openStreams());
                test::closeLeftStreams();
                return result;
            },
            false, {oldReaderCannotOpen}),
        Row("goes on where the lines cannot be counted", NO_FILE, fails(OPEN, 2), writeAndReadOldDevice, true,
            {counterCannotOpen}, ANY_FILE),
        Row("reads an empty file that cannot be counted", "", fails(CLOSE, 1),
            [] {
                fillOldPats();
                const bool result = patParameterReader("f", 1, oldPats);
                EXPECT_TRUE(isMarked(oldPats[0]));
                return result;
            },
            true, {counterCannotClose, oldReaderCannotRead}),
        Row(
            "reports every device at the end of the file", NO_FILE, noFault,
            [] {
                beginText();
                addOldDevice("0A1B2C3D4E5F", 1, " ");
                test::writeFile("f", text);
                fillOldPats();
                const bool result = patParameterReader("f", 3, oldPats);
                EXPECT_TRUE(isOldDevice(&oldPats[0], "0A1B2C3D4E5F", 1));
                EXPECT_TRUE(isMarked(oldPats[1]));
                EXPECT_TRUE(isMarked(oldPats[2]));
                return result;
            },
            true, {oldReaderCannotRead, oldReaderCannotRead}, ANY_FILE),
        Row("of a blank file reports every device", "\n", noFault, readNoOldDevice, true,
            {oldReaderCannotRead, oldReaderCannotRead}),
        Row(
            "reports the last value missing", NO_FILE, noFault,
            [] {
                beginText();
                addOldDevice("0A1B2C3D4E5F", 1, " ");
                text[textLength - 5] = '\0'; /* without " 200" */
                test::writeFile("f", text);
                fillOldPats();
                const bool result = patParameterReader("f", 1, oldPats);
                EXPECT_EQ(199, oldPats[0].cParameter[98]);
                EXPECT_TRUE(isMarked(&oldPats[0].cParameter[99], sizeof(uint16_t)));
                return result;
            },
            true, {oldReaderCannotRead}, ANY_FILE),
        Row("reports a failed close and keeps what it read", NO_FILE, fails(CLOSE, 2), writeAndReadOldDevice,
            false, {oldReaderCannotClose}, ANY_FILE),
    };
    expectRows(rows);
}
