/* SPDX-License-Identifier: Apache-2.0 */
/* The files of PAT parameters, version 1 and version 2. */
#include "testing.h"

#include <limits.h>
#include <stdarg.h>
#include <sys/stat.h>

#define INIT_NOTE "libzo: [patParameterReaderV2:#]: pat file does not exit, init it.|"
#define SCAN_ERROR_V2 "libzo: [patParameterReaderV2:#]: fscanf error, path: pat.\n|"
#define SCAN_ERROR_V1 "libzo: [patParameterReader:#]: sscanf error, path: pat.\n|"

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

/* How often a message stands in the transcript. */
static int timesLogged(const char* message)
{
    int times = 0;
    for (const char* at = test::messages(); (at = strstr(at, message)) != nullptr; at += strlen(message))
        ++times;
    return times;
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

/* Fills records with a pattern that isUntouched() knows again. */
static void fillPats()
{
    memset(pats, 0x5A, sizeof pats);
}

static bool isUntouched(const void* record, size_t size)
{
    const unsigned char* bytes = static_cast<const unsigned char*>(record);
    for (size_t i = 0; i < size; ++i) {
        if (bytes[i] != 0x5A)
            return false;
    }
    return true;
}

static bool isUntouched(const PatParameterV2* pat)
{
    return isUntouched(pat, sizeof *pat);
}
static bool isUntouched(const SinglePat* entry)
{
    return isUntouched(entry, sizeof *entry);
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

TEST(PatParameter, recordsHaveNaturalAlignment)
{
    EXPECT_EQ(sizeof(PatParameter), 416U);
    EXPECT_EQ(offsetof(PatParameter, bParameter), 16U);
    EXPECT_EQ(offsetof(PatParameter, cParameter), 216U);
    EXPECT_EQ(sizeof(SinglePat), 8U);
    EXPECT_EQ(offsetof(SinglePat, isChanged), 0U);
    EXPECT_EQ(offsetof(SinglePat, bandOrder), 1U);
    EXPECT_EQ(offsetof(SinglePat, channelWidthOrder), 2U);
    EXPECT_EQ(offsetof(SinglePat, mcsOrder), 3U);
    EXPECT_EQ(offsetof(SinglePat, paraB), 4U);
    EXPECT_EQ(offsetof(SinglePat, paraC), 6U);
    EXPECT_EQ(sizeof(PatParameterV2), 818U);
    EXPECT_EQ(offsetof(PatParameterV2, commonPatNum), 16U);
    EXPECT_EQ(offsetof(PatParameterV2, singlePat), 18U);
}

/* ---- Version 2 writer --------------------------------------------------- */

TEST(PatParameter, writerWritesCountDevicesAndEntries)
{
    clearPats();
    setDevice(&pats[0], "0A1B2C3D4E5F", 2);
    setDevice(&pats[1], "102030405060", 1);
    setEntry(&pats[1].singlePat[0], 255, 254, 253, 252, 251, 65535);
    EXPECT_TRUE(patParameterWriterV2("pat", 2, pats, nullptr));
    EXPECT_STREQ(test::fileText("pat"), "2\n"
                                        "0A1B2C3D4E5F 2\n"
                                        "1 2 3 4 5 60000\n"
                                        "2 3 4 5 6 60001\n"
                                        "102030405060 1\n"
                                        "255 254 253 252 251 65535\n");
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(PatParameter, writerOfNoDevicesWritesTheCountAlone)
{
    clearPats();
    EXPECT_TRUE(patParameterWriterV2("pat", 0, pats, nullptr));
    EXPECT_STREQ(test::fileText("pat"), "0\n");
}

TEST(PatParameter, writerOfANegativeCountWritesItAlone)
{
    clearPats();
    EXPECT_TRUE(patParameterWriterV2("pat", -2, pats, nullptr));
    EXPECT_STREQ(test::fileText("pat"), "-2\n");
}

TEST(PatParameter, writerWritesADeviceWithoutEntriesAsItsLineAlone)
{
    clearPats();
    setDevice(&pats[0], "0A1B2C3D4E5F", 0);
    EXPECT_TRUE(patParameterWriterV2("pat", 1, pats, nullptr));
    EXPECT_STREQ(test::fileText("pat"), "1\n0A1B2C3D4E5F 0\n");
}

TEST(PatParameter, writerReplacesTheFile)
{
    test::writeFile("pat", "3\nsomething much longer than what comes now\nand more of it\n");
    clearPats();
    setDevice(&pats[0], "0A1B2C3D4E5F", 1);
    EXPECT_TRUE(patParameterWriterV2("pat", 1, pats, nullptr));
    EXPECT_STREQ(test::fileText("pat"), "1\n0A1B2C3D4E5F 1\n1 2 3 4 5 60000\n");
}

TEST(PatParameter, writerAlignsShortMacsRightAndWritesLongOnesWhole)
{
    clearPats();
    setDevice(&pats[0], "abc", 0);
    setDevice(&pats[1], "", 0);
    setDevice(&pats[2], "ABCDEFGHIJKLMNO", 0);
    EXPECT_TRUE(patParameterWriterV2("pat", 3, pats, nullptr));
    EXPECT_STREQ(test::fileText("pat"), "3\n         abc 0\n             0\nABCDEFGHIJKLMNO 0\n");
}

TEST(PatParameter, writerWritesMoreDevicesThanTheCountReadsBack)
{
    clearPats();
    EXPECT_TRUE(patParameterWriterV2("pat", 300, pats, nullptr));
    EXPECT_STREQ(test::fileLine("pat", 0), "300");
    EXPECT_EQ(test::fileLines("pat"), 301);
}

TEST(PatParameter, writerWritesAHundredEntries)
{
    clearPats();
    setDevice(&pats[0], "0A1B2C3D4E5F", 100);
    EXPECT_TRUE(patParameterWriterV2("pat", 1, pats, nullptr));
    beginText();
    addText("1\n0A1B2C3D4E5F 100\n");
    addEntries(100);
    EXPECT_STREQ(test::fileText("pat"), text);
}

TEST(PatParameter, writerTakesMoreThanAHundredEntriesAsAHundred)
{
    static const int counts[] = {101, 128, 255};
    for (int count : counts) {
        clearPats();
        setDevice(&pats[0], "0A1B2C3D4E5F", count);
        setDevice(&pats[1], "102030405060", 1);
        EXPECT_TRUE(patParameterWriterV2("pat", 2, pats, nullptr));
        beginText();
        addText("2\n0A1B2C3D4E5F 100\n");
        addEntries(100);
        addText("102030405060 1\n1 2 3 4 5 60000\n");
        EXPECT_STREQ(test::fileText("pat"), text);
        EXPECT_EQ(test::messageCount(), 0);
    }
}

TEST(PatParameter, writerDoesNotUseThePoolOfMacs)
{
    static char macPool[2][16] = {"A0A1A2A3A4A5", "B0B1B2B3B4B5"};
    clearPats();
    setDevice(&pats[0], "0A1B2C3D4E5F", 1);
    EXPECT_TRUE(patParameterWriterV2("pat", 1, pats, macPool));
    EXPECT_STREQ(test::fileText("pat"), "1\n0A1B2C3D4E5F 1\n1 2 3 4 5 60000\n");
    EXPECT_STREQ(macPool[0], "A0A1A2A3A4A5");
    EXPECT_STREQ(macPool[1], "B0B1B2B3B4B5");
}

TEST(PatParameter, writerLeavesTheRecords)
{
    static PatParameterV2 before;
    clearPats();
    setDevice(&pats[0], "0A1B2C3D4E5F", 255);
    before = pats[0];
    EXPECT_TRUE(patParameterWriterV2("pat", 1, pats, nullptr));
    EXPECT_TRUE(memcmp(&before, &pats[0], sizeof before) == 0);
}

TEST(PatParameter, writerOfAFileThatCannotBeOpenedFails)
{
    clearPats();
    EXPECT_FALSE(patParameterWriterV2("no/pat", 1, pats, nullptr));
    EXPECT_STREQ(test::messages(), "libzo: [patParameterWriterV2:#]: Failed to write file: no/pat.\n|");
    EXPECT_EQ(test::callCount(test::CLOSE), 0);
}

TEST(PatParameter, writerLeavesAFileThatItCannotOpen)
{
    test::writeFile("pat", "as it was\n");
    clearPats();
    test::failNth(test::OPEN, 1);
    EXPECT_FALSE(patParameterWriterV2("pat", 1, pats, nullptr));
    EXPECT_STREQ(test::fileText("pat"), "as it was\n");
    EXPECT_EQ(test::callCount(test::OPEN), 1);
}

TEST(PatParameter, writerReportsAFailedOpenFromLevelThree)
{
    clearPats();
    test::setLevel(3);
    EXPECT_FALSE(patParameterWriterV2("no/pat", 1, pats, nullptr));
    EXPECT_STREQ(test::messages(), "libzo: [patParameterWriterV2:#]: Failed to write file: no/pat.\n|");
    test::clearMessages();
    test::setLevel(2);
    EXPECT_FALSE(patParameterWriterV2("no/pat", 1, pats, nullptr));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(PatParameter, writerStopsAtTheFirstFailedPrint)
{
    static const char* const left[] = {
        "",
        "2",
        "2\n",
        "2\n0A1B2C3D4E5F 2\n",
        "2\n0A1B2C3D4E5F 2\n1 2 3 4 5 60000\n",
        "2\n0A1B2C3D4E5F 2\n1 2 3 4 5 60000\n2 3 4 5 6 60001\n",
        "2\n0A1B2C3D4E5F 2\n1 2 3 4 5 60000\n2 3 4 5 6 60001\n102030405060 1\n",
    };
    clearPats();
    setDevice(&pats[0], "0A1B2C3D4E5F", 2);
    setDevice(&pats[1], "102030405060", 1);
    for (int k = 0; k < 7; ++k) {
        test::clearMessages();
        test::writeFile("pat", "as it was\n");
        test::failNth(test::WRITE, k + 1);
        EXPECT_FALSE(patParameterWriterV2("pat", 2, pats, nullptr));
        EXPECT_STREQ(test::fileText("pat"), left[k]);
        EXPECT_STREQ(test::messages(), "libzo: [patParameterWriterV2:#]: fprintf error, path:pat.\n|");
        EXPECT_EQ(test::callCount(test::CLOSE), k + 1);
        EXPECT_EQ(test::openStreams(), 0);
    }
}

TEST(PatParameter, writerMakesNoMorePrintsThanItsLines)
{
    clearPats();
    setDevice(&pats[0], "0A1B2C3D4E5F", 2);
    setDevice(&pats[1], "102030405060", 1);
    test::failNth(test::WRITE, 8);
    EXPECT_TRUE(patParameterWriterV2("pat", 2, pats, nullptr));
    EXPECT_EQ(test::callCount(test::WRITE), 7);
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(PatParameter, writerReportsAFailedPrintFromLevelThree)
{
    clearPats();
    test::failFrom(test::WRITE, 1);
    test::setLevel(3);
    EXPECT_FALSE(patParameterWriterV2("pat", 1, pats, nullptr));
    EXPECT_STREQ(test::messages(), "libzo: [patParameterWriterV2:#]: fprintf error, path:pat.\n|");
    test::clearMessages();
    test::setLevel(2);
    EXPECT_FALSE(patParameterWriterV2("pat", 1, pats, nullptr));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(PatParameter, writerReportsAFailedPrintOnAFullDevice)
{
    clearPats();
    for (int i = 0; i < 20; ++i)
        setDevice(&pats[i], "0A1B2C3D4E5F", 100);
    EXPECT_FALSE(patParameterWriterV2("/dev/full", 20, pats, nullptr));
    EXPECT_STREQ(test::messages(), "libzo: [patParameterWriterV2:#]: fprintf error, path:/dev/full.\n|");
}

TEST(PatParameter, writerDoesNotLookAtTheClose)
{
    clearPats();
    setDevice(&pats[0], "0A1B2C3D4E5F", 1);
    EXPECT_TRUE(patParameterWriterV2("/dev/full", 1, pats, nullptr));
    test::failNth(test::CLOSE, 1);
    EXPECT_TRUE(patParameterWriterV2("pat", 1, pats, nullptr));
    EXPECT_STREQ(test::fileText("pat"), "1\n0A1B2C3D4E5F 1\n1 2 3 4 5 60000\n");
    EXPECT_EQ(test::messageCount(), 0);
    EXPECT_EQ(test::callCount(test::CLOSE), 2);
}

TEST(PatParameter, writerDoesNotLookAtTheCloseAfterAFailedPrint)
{
    clearPats();
    test::failNth(test::WRITE, 1);
    test::failNth(test::CLOSE, 1);
    EXPECT_FALSE(patParameterWriterV2("pat", 1, pats, nullptr));
    EXPECT_STREQ(test::messages(), "libzo: [patParameterWriterV2:#]: fprintf error, path:pat.\n|");
}

/* ---- Replacing the file by one device ----------------------------------- */

TEST(PatParameter, updateReplacesAllDevicesByOneAndReturnsFalse)
{
    clearPats();
    for (int i = 0; i < 5; ++i)
        setDevice(&pats[i], "A0A1A2A3A4A5", i);
    EXPECT_TRUE(patParameterWriterV2("pat", 5, pats, nullptr));
    setDevice(&pats[5], "102030405060", 2);
    EXPECT_FALSE(updateSinglePatV2("pat", &pats[5]));
    EXPECT_STREQ(test::fileText("pat"), "1\n102030405060 2\n1 2 3 4 5 60000\n2 3 4 5 6 60001\n");
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(PatParameter, updateCreatesAMissingFileAndReturnsFalse)
{
    clearPats();
    setDevice(&pats[0], "102030405060", 1);
    EXPECT_FALSE(updateSinglePatV2("pat", &pats[0]));
    EXPECT_STREQ(test::fileText("pat"), "1\n102030405060 1\n1 2 3 4 5 60000\n");
    EXPECT_EQ(test::messageCount(), 0);
    EXPECT_EQ(test::callCount(test::OPEN), 1);
}

TEST(PatParameter, updateWithoutARecordLeavesTheFile)
{
    test::writeFile("pat", "as it was\n");
    EXPECT_FALSE(updateSinglePatV2("pat", nullptr));
    EXPECT_STREQ(test::messages(), "libzo: [updateSinglePatV2:#]: null pIncomeParameterV2|");
    EXPECT_STREQ(test::fileText("pat"), "as it was\n");
    EXPECT_EQ(test::callCount(test::OPEN), 0);
}

TEST(PatParameter, updateReportsAMissingRecordFromLevelThree)
{
    test::setLevel(3);
    EXPECT_FALSE(updateSinglePatV2("pat", nullptr));
    EXPECT_STREQ(test::messages(), "libzo: [updateSinglePatV2:#]: null pIncomeParameterV2|");
    test::clearMessages();
    test::setLevel(2);
    EXPECT_FALSE(updateSinglePatV2("pat", nullptr));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(PatParameter, updateThatCannotOpenItsFileReturnsFalse)
{
    clearPats();
    EXPECT_FALSE(updateSinglePatV2("no/pat", &pats[0]));
    EXPECT_STREQ(test::messages(), "libzo: [patParameterWriterV2:#]: Failed to write file: no/pat.\n|");
}

TEST(PatParameter, updateThatCannotPrintReturnsFalse)
{
    clearPats();
    setDevice(&pats[0], "102030405060", 1);
    test::failNth(test::WRITE, 4);
    EXPECT_FALSE(updateSinglePatV2("pat", &pats[0]));
    EXPECT_STREQ(test::fileText("pat"), "1\n102030405060 1\n");
    EXPECT_STREQ(test::messages(), "libzo: [patParameterWriterV2:#]: fprintf error, path:pat.\n|");
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
    initialise("pat", "0A1B2C3D4E5F");
    EXPECT_STREQ(test::fileText("pat"), "1\n0A1B2C3D4E5F" DEFAULT_ENTRIES);
    EXPECT_EQ(test::messageCount(), 0);
    EXPECT_EQ(test::callCount(test::OPEN), 1);
}

TEST(PatParameter, initOfTheDefaultDeviceWritesSeventeenLines)
{
    initialise("pat", "000000000000");
    EXPECT_STREQ(test::fileText("pat"), DEFAULT_FILE);
    EXPECT_EQ(test::fileLines("pat"), 17);
}

TEST(PatParameter, initReplacesTheFile)
{
    clearPats();
    setDevice(&pats[0], "102030405060", 60);
    EXPECT_TRUE(patParameterWriterV2("pat", 1, pats, nullptr));
    initialise("pat", "0A1B2C3D4E5F");
    EXPECT_STREQ(test::fileText("pat"), "1\n0A1B2C3D4E5F" DEFAULT_ENTRIES);
}

TEST(PatParameter, initTakesShortAndLongNames)
{
    initialise("pat", "abc");
    EXPECT_STREQ(test::fileText("pat"), "1\n         abc" DEFAULT_ENTRIES);
    initialise("pat", "ABCDEFGHIJKLMNO");
    EXPECT_STREQ(test::fileText("pat"), "1\nABCDEFGHIJKLMNO" DEFAULT_ENTRIES);
}

TEST(PatParameter, initThatCannotWriteLeavesTheWritersMessage)
{
    initialise("no/pat", "0A1B2C3D4E5F");
    EXPECT_STREQ(test::messages(), "libzo: [patParameterWriterV2:#]: Failed to write file: no/pat.\n|");
    test::clearMessages();
    test::failNth(test::WRITE, 3);
    initialise("pat", "0A1B2C3D4E5F");
    EXPECT_STREQ(test::messages(), "libzo: [patParameterWriterV2:#]: fprintf error, path:pat.\n|");
    EXPECT_STREQ(test::fileText("pat"), "1\n");
}

/* ---- Version 2 reader: records ------------------------------------------ */

TEST(PatParameter, readerReadsDevicesAndEntries)
{
    test::writeFile("pat", "2\n"
                           "0A1B2C3D4E5F 2\n"
                           "1 2 3 4 5 60000\n"
                           "6 7 8 9 10 60001\n"
                           "102030405060 1\n"
                           "255 254 253 252 251 65535\n");
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("pat", 2, pats));
    EXPECT_STREQ(pats[0].deviceMac, "0A1B2C3D4E5F");
    EXPECT_EQ(pats[0].commonPatNum, 2);
    EXPECT_TRUE(isEntry(&pats[0].singlePat[0], 1, 2, 3, 4, 5, 60000));
    EXPECT_TRUE(isEntry(&pats[0].singlePat[1], 6, 7, 8, 9, 10, 60001));
    EXPECT_TRUE(isUntouched(&pats[0].singlePat[2]));
    EXPECT_STREQ(pats[1].deviceMac, "102030405060");
    EXPECT_EQ(pats[1].commonPatNum, 1);
    EXPECT_TRUE(isEntry(&pats[1].singlePat[0], 255, 254, 253, 252, 251, 65535));
    EXPECT_TRUE(isUntouched(&pats[1].singlePat[1]));
    EXPECT_TRUE(isUntouched(&pats[2]));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(PatParameter, readerOpensReadsAndCountsOnce)
{
    test::writeFile("pat", "1\n0A1B2C3D4E5F 0\n");
    clearPats();
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    EXPECT_EQ(test::callCount(test::OPEN), 2);
    EXPECT_EQ(test::callCount(test::CLOSE), 2);
    EXPECT_STREQ(test::fileText("pat"), "1\n0A1B2C3D4E5F 0\n");
}

TEST(PatParameter, writtenRecordsComeBack)
{
    clearPats();
    setDevice(&pats[0], "0A1B2C3D4E5F", 100);
    setDevice(&pats[1], "102030405060", 0);
    setDevice(&pats[2], "A0A1A2A3A4A5", 7);
    EXPECT_TRUE(patParameterWriterV2("pat", 3, pats, nullptr));
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("pat", 3, pats));
    static const char* const macs[] = {"0A1B2C3D4E5F", "102030405060", "A0A1A2A3A4A5"};
    static const int counts[] = {100, 0, 7};
    for (int i = 0; i < 3; ++i) {
        EXPECT_STREQ(pats[i].deviceMac, macs[i]);
        EXPECT_EQ(pats[i].commonPatNum, counts[i]);
        for (int k = 0; k < counts[i]; ++k)
            EXPECT_TRUE(isEntry(&pats[i].singlePat[k], k + 1, k + 2, k + 3, k + 4, k + 5, 60000 + k));
    }
    EXPECT_TRUE(isUntouched(&pats[2].singlePat[7]));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(PatParameter, changeFlagsComeBack)
{
    clearPats();
    setDevice(&pats[0], "0A1B2C3D4E5F", 4);
    for (int flags = 0; flags < 4; ++flags)
        pats[0].singlePat[flags].isChanged = static_cast<uint8_t>(flags);
    EXPECT_TRUE(patParameterWriterV2("pat", 1, pats, nullptr));
    clearPats();
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    for (int flags = 0; flags < 4; ++flags)
        EXPECT_EQ(pats[0].singlePat[flags].isChanged, flags);
}

TEST(PatParameter, readerReadsADeviceWithoutEntries)
{
    test::writeFile("pat", "1\n0A1B2C3D4E5F 0\n");
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    EXPECT_STREQ(pats[0].deviceMac, "0A1B2C3D4E5F");
    EXPECT_EQ(pats[0].commonPatNum, 0);
    EXPECT_TRUE(isUntouched(&pats[0].singlePat[0]));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(PatParameter, readerStopsAtTheCallersCount)
{
    test::writeFile("pat", "3\n0A1B2C3D4E5F 0\n102030405060 0\nA0A1A2A3A4A5 0\n");
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("pat", 2, pats));
    EXPECT_STREQ(pats[0].deviceMac, "0A1B2C3D4E5F");
    EXPECT_STREQ(pats[1].deviceMac, "102030405060");
    EXPECT_TRUE(isUntouched(&pats[2]));
}

TEST(PatParameter, readerStopsAtTheFilesCount)
{
    test::writeFile("pat", "1\n0A1B2C3D4E5F 0\n102030405060 0\n");
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("pat", 4, pats));
    EXPECT_STREQ(pats[0].deviceMac, "0A1B2C3D4E5F");
    EXPECT_TRUE(isUntouched(&pats[1]));
    EXPECT_TRUE(isUntouched(&pats[2]));
    EXPECT_TRUE(isUntouched(&pats[3]));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(PatParameter, readerOfNoDevicesSucceeds)
{
    test::writeFile("pat", "0\n0A1B2C3D4E5F 0\n");
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    EXPECT_TRUE(isUntouched(&pats[0]));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(PatParameter, readerForNoOrFewerDevicesReadsNone)
{
    test::writeFile("pat", "1\n0A1B2C3D4E5F 0\n");
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("pat", 0, pats));
    EXPECT_TRUE(patParameterReaderV2("pat", -1, pats));
    EXPECT_TRUE(patParameterReaderV2("pat", INT_MIN, pats));
    EXPECT_TRUE(isUntouched(&pats[0]));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(PatParameter, readerReads255Devices)
{
    beginText();
    addText("255\n");
    for (int i = 0; i < 256; ++i)
        addText("%012d 0\n", i);
    test::writeFile("pat", text);
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("pat", 300, pats));
    EXPECT_STREQ(pats[0].deviceMac, "000000000000");
    EXPECT_STREQ(pats[254].deviceMac, "000000000254");
    EXPECT_TRUE(isUntouched(&pats[255]));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(PatParameter, readerTakesAnyCountOfTheCaller)
{
    test::writeFile("pat", "1\n0A1B2C3D4E5F 0\n");
    static const int counts[] = {255, 256, 257, INT_MAX};
    for (int count : counts) {
        fillPats();
        EXPECT_TRUE(patParameterReaderV2("pat", count, pats));
        EXPECT_STREQ(pats[0].deviceMac, "0A1B2C3D4E5F");
        EXPECT_TRUE(isUntouched(&pats[1]));
    }
}

TEST(PatParameter, readerTakesAnyWhiteSpaceBetweenFields)
{
    test::writeFile("pat", "\n 1\t0A1B2C3D4E5F\n\n2 1 2\n3 4 5 60000 6 7 8\t9 10\n\n 60001");
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    EXPECT_STREQ(pats[0].deviceMac, "0A1B2C3D4E5F");
    EXPECT_TRUE(isEntry(&pats[0].singlePat[0], 1, 2, 3, 4, 5, 60000));
    EXPECT_TRUE(isEntry(&pats[0].singlePat[1], 6, 7, 8, 9, 10, 60001));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(PatParameter, readerTakesTwelveCharactersOfAMac)
{
    test::writeFile("pat", "1\n0A1B2C3D4E5F1\n1 2 3 4 5 60000\n");
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    EXPECT_STREQ(pats[0].deviceMac, "0A1B2C3D4E5F");
    EXPECT_EQ(pats[0].commonPatNum, 1);
    EXPECT_TRUE(isEntry(&pats[0].singlePat[0], 1, 2, 3, 4, 5, 60000));
}

TEST(PatParameter, readerTakesDecimalsWithLeadingZeros)
{
    test::writeFile("pat", "01\n0A1B2C3D4E5F 01\n010 011 012 013 014 015\n");
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    EXPECT_EQ(pats[0].commonPatNum, 1);
    EXPECT_TRUE(isEntry(&pats[0].singlePat[0], 10, 11, 12, 13, 14, 15));
}

/* ---- Version 2 reader: ends and faults of the text ---------------------- */

TEST(PatParameter, readerReportsACountAtTheEndOfTheFile)
{
    test::writeFile("pat", "\n");
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("pat", 2, pats));
    EXPECT_STREQ(test::messages(), SCAN_ERROR_V2);
    EXPECT_TRUE(isUntouched(&pats[0]));
}

TEST(PatParameter, readerTakesACountThatDoesNotConvertAsNone)
{
    test::writeFile("pat", "x\n0A1B2C3D4E5F 0\n");
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("pat", 2, pats));
    EXPECT_EQ(test::messageCount(), 0);
    EXPECT_TRUE(isUntouched(&pats[0]));
}

TEST(PatParameter, readerReportsEveryDeviceAtTheEndOfTheFile)
{
    test::writeFile("pat", "3\n0A1B2C3D4E5F 0\n");
    clearPats();
    setMac(pats[1].deviceMac, "held");
    EXPECT_TRUE(patParameterReaderV2("pat", 3, pats));
    EXPECT_STREQ(test::messages(), SCAN_ERROR_V2 SCAN_ERROR_V2);
    EXPECT_STREQ(pats[0].deviceMac, "0A1B2C3D4E5F");
    EXPECT_STREQ(pats[1].deviceMac, "held");
    EXPECT_EQ(pats[1].commonPatNum, 0);
}

TEST(PatParameter, readerReadsAsManyEntriesAsADeviceAtTheEndOfTheFileHeld)
{
    static PatParameterV2 held;
    test::writeFile("pat", "1\n");
    clearPats();
    setDevice(&pats[0], "102030405060", 2);
    held = pats[0];
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    EXPECT_STREQ(test::messages(), SCAN_ERROR_V2 SCAN_ERROR_V2 SCAN_ERROR_V2);
    EXPECT_TRUE(memcmp(&held, &pats[0], sizeof held) == 0);
}

TEST(PatParameter, readerReadsAsManyEntriesAsHeldWhereTheDevicesCountIsMissing)
{
    test::writeFile("pat", "1\n0A1B2C3D4E5F\n");
    clearPats();
    setDevice(&pats[0], "102030405060", 2);
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    EXPECT_STREQ(test::messages(), SCAN_ERROR_V2 SCAN_ERROR_V2);
    EXPECT_STREQ(pats[0].deviceMac, "0A1B2C3D4E5F");
    EXPECT_EQ(pats[0].commonPatNum, 2);
    EXPECT_TRUE(isEntry(&pats[0].singlePat[0], 1, 2, 3, 4, 5, 60000));
    EXPECT_TRUE(isEntry(&pats[0].singlePat[1], 2, 3, 4, 5, 6, 60001));
}

TEST(PatParameter, readerKeepsTheCountWhereTheDevicesCountDoesNotConvert)
{
    test::writeFile("pat", "1\n0A1B2C3D4E5F x\n");
    clearPats();
    setDevice(&pats[0], "102030405060", 2);
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    EXPECT_EQ(test::messageCount(), 0);
    EXPECT_STREQ(pats[0].deviceMac, "0A1B2C3D4E5F");
    EXPECT_EQ(pats[0].commonPatNum, 2);
    EXPECT_TRUE(isEntry(&pats[0].singlePat[1], 2, 3, 4, 5, 6, 60001));
}

TEST(PatParameter, readerReportsEveryEntryAtTheEndOfTheFile)
{
    test::writeFile("pat", "1\n0A1B2C3D4E5F 3\n6 7 8 9 10 60009\n");
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    EXPECT_STREQ(test::messages(), SCAN_ERROR_V2 SCAN_ERROR_V2);
    EXPECT_EQ(pats[0].commonPatNum, 3);
    EXPECT_TRUE(isEntry(&pats[0].singlePat[0], 6, 7, 8, 9, 10, 60009));
    EXPECT_TRUE(isUntouched(&pats[0].singlePat[1]));
    EXPECT_TRUE(isUntouched(&pats[0].singlePat[2]));
}

TEST(PatParameter, readerDoesNotNoticeAnEntryThatIsCutShort)
{
    test::writeFile("pat", "1\n0A1B2C3D4E5F 2\n6 7 8 9 10\n");
    clearPats();
    setDevice(&pats[0], "102030405060", 2);
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    EXPECT_STREQ(test::messages(), SCAN_ERROR_V2);
    EXPECT_TRUE(isEntry(&pats[0].singlePat[0], 6, 7, 8, 9, 10, 60000));
    EXPECT_TRUE(isEntry(&pats[0].singlePat[1], 2, 3, 4, 5, 6, 60001));
}

TEST(PatParameter, readerGoesOnBehindAnEntryThatDoesNotConvert)
{
    test::writeFile("pat", "2\n0A1B2C3D4E5F 1\n6 7 x 1 2 3\n");
    clearPats();
    setDevice(&pats[0], "102030405060", 1);
    EXPECT_TRUE(patParameterReaderV2("pat", 2, pats));
    EXPECT_EQ(test::messageCount(), 0);
    EXPECT_TRUE(isEntry(&pats[0].singlePat[0], 6, 7, 3, 4, 5, 60000));
    EXPECT_STREQ(pats[1].deviceMac, "x");
    EXPECT_EQ(pats[1].commonPatNum, 1);
    EXPECT_TRUE(isEntry(&pats[1].singlePat[0], 2, 3, 0, 0, 0, 0));
}

TEST(PatParameter, readerReportsTheEndOfTheFileFromLevelThree)
{
    test::writeFile("pat", "\n");
    clearPats();
    test::setLevel(3);
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    EXPECT_STREQ(test::messages(), SCAN_ERROR_V2);
    test::clearMessages();
    test::setLevel(2);
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(PatParameter, readerReportsDevicesAndEntriesAtTheEndFromLevelThree)
{
    test::writeFile("pat", "2\n0A1B2C3D4E5F 1\n");
    clearPats();
    test::setLevel(3);
    EXPECT_TRUE(patParameterReaderV2("pat", 2, pats));
    EXPECT_STREQ(test::messages(), SCAN_ERROR_V2 SCAN_ERROR_V2);
    test::clearMessages();
    test::setLevel(2);
    EXPECT_TRUE(patParameterReaderV2("pat", 2, pats));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(PatParameter, readerReportsAReadError)
{
    test::writeFile("pat", "1\n0A1B2C3D4E5F 0\n");
    fillPats();
    test::failNth(test::OPEN, 2); /* the counter's, so that it makes no reads */
    test::failFrom(test::READ, 1);
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    EXPECT_STREQ(test::messages(), "libzo: [dataLineCounter:#]: Failed to read file: pat\n|" SCAN_ERROR_V2);
    EXPECT_TRUE(isUntouched(&pats[0]));
    EXPECT_STREQ(test::fileText("pat"), "1\n0A1B2C3D4E5F 0\n");
}

/* ---- Version 2 reader: more entries than a record holds ------------------ */

TEST(PatParameter, readerReadsAHundredEntriesWithoutComplaint)
{
    beginText();
    addText("1\n0A1B2C3D4E5F 100\n");
    addEntries(100);
    test::writeFile("pat", text);
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    EXPECT_EQ(pats[0].commonPatNum, 100);
    EXPECT_TRUE(isEntry(&pats[0].singlePat[0], 1, 2, 3, 4, 5, 60000));
    EXPECT_TRUE(isEntry(&pats[0].singlePat[99], 100, 101, 102, 103, 104, 60099));
    EXPECT_TRUE(isUntouched(&pats[1]));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(PatParameter, readerKeepsAHundredEntriesAndReadsTheNextDeviceFromItsPlace)
{
    static const int counts[] = {101, 102, 130, 255};
    for (int count : counts) {
        beginText();
        addText("2\n0A1B2C3D4E5F %d\n", count);
        addEntries(count);
        addText("102030405060 1\n11 12 13 14 15 16\n");
        test::writeFile("pat", text);
        test::clearMessages();
        fillPats();
        EXPECT_TRUE(patParameterReaderV2("pat", 2, pats));
        EXPECT_STREQ(test::messages(), SCAN_ERROR_V2);
        EXPECT_STREQ(pats[0].deviceMac, "0A1B2C3D4E5F");
        EXPECT_EQ(pats[0].commonPatNum, 100);
        for (int k = 0; k < 100; ++k)
            EXPECT_TRUE(isEntry(&pats[0].singlePat[k], k + 1, k + 2, k + 3, k + 4, k + 5, 60000 + k));
        EXPECT_STREQ(pats[1].deviceMac, "102030405060");
        EXPECT_EQ(pats[1].commonPatNum, 1);
        EXPECT_TRUE(isEntry(&pats[1].singlePat[0], 11, 12, 13, 14, 15, 16));
        EXPECT_TRUE(isUntouched(&pats[2]));
    }
}

TEST(PatParameter, readerWritesNothingBehindTheLastRecord)
{
    PatParameterV2* pat = static_cast<PatParameterV2*>(malloc(sizeof *pat));
    ASSERT_TRUE(pat != nullptr);
    beginText();
    addText("1\n0A1B2C3D4E5F 255\n");
    addEntries(255);
    test::writeFile("pat", text);
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pat));
    EXPECT_EQ(pat->commonPatNum, 100);
    EXPECT_TRUE(isEntry(&pat->singlePat[99], 100, 101, 102, 103, 104, 60099));
    free(pat);
}

TEST(PatParameter, readerTriesAsManyEntriesAsTheRecordHeldAndStoresAHundred)
{
    test::writeFile("pat", "1\n");
    clearPats();
    setDevice(&pats[0], "102030405060", 255);
    setDevice(&pats[1], "A0A1A2A3A4A5", 1);
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    EXPECT_EQ(pats[0].commonPatNum, 255);
    EXPECT_EQ(test::messageCount(), 1 + 255); /* the device line, then every entry */
    EXPECT_TRUE(isEntry(&pats[0].singlePat[99], 100, 101, 102, 103, 104, 60099));
    EXPECT_STREQ(pats[1].deviceMac, "A0A1A2A3A4A5");
    EXPECT_TRUE(isEntry(&pats[1].singlePat[0], 1, 2, 3, 4, 5, 60000));
}

TEST(PatParameter, readerDropsEntriesPastTheHundredthOfAHeldCount)
{
    beginText();
    addText("2\n0A1B2C3D4E5F x\n");
    test::writeFile("pat", text);
    clearPats();
    setDevice(&pats[0], "102030405060", 101);
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    EXPECT_STREQ(pats[0].deviceMac, "0A1B2C3D4E5F");
    EXPECT_EQ(pats[0].commonPatNum, 101);
    EXPECT_EQ(test::messageCount(), 0); /* the letter is in the way of every entry, and no end is met */
}

TEST(PatParameter, readerReportsEveryDeviceWithTooManyEntries)
{
    beginText();
    addText("2\n0A1B2C3D4E5F 101\n");
    addEntries(101);
    addText("102030405060 101\n");
    addEntries(101);
    test::writeFile("pat", text);
    clearPats();
    EXPECT_TRUE(patParameterReaderV2("pat", 2, pats));
    EXPECT_STREQ(test::messages(), SCAN_ERROR_V2 SCAN_ERROR_V2);
    EXPECT_EQ(pats[0].commonPatNum, 100);
    EXPECT_EQ(pats[1].commonPatNum, 100);
}

TEST(PatParameter, readerReportsTooManyEntriesFromLevelThree)
{
    beginText();
    addText("1\n0A1B2C3D4E5F 101\n");
    addEntries(101);
    test::writeFile("pat", text);
    clearPats();
    test::setLevel(3);
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    EXPECT_STREQ(test::messages(), SCAN_ERROR_V2);
    test::clearMessages();
    test::setLevel(2);
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    EXPECT_EQ(test::messageCount(), 0);
    EXPECT_EQ(pats[0].commonPatNum, 100);
}

/* ---- Version 2 reader: files that are missing or empty ------------------ */

TEST(PatParameter, readerOfAMissingFileCreatesAndReadsTheDefault)
{
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    EXPECT_STREQ(test::fileText("pat"), DEFAULT_FILE);
    EXPECT_TRUE(isDefault(&pats[0]));
    EXPECT_TRUE(isUntouched(&pats[0].singlePat[15]));
    EXPECT_TRUE(isUntouched(&pats[1]));
    EXPECT_STREQ(test::messages(), INIT_NOTE);
    EXPECT_EQ(test::callCount(test::OPEN), 4);
    EXPECT_EQ(test::callCount(test::CLOSE), 3);
}

TEST(PatParameter, readerOfAnEmptyFileCreatesAndReadsTheDefault)
{
    test::writeFile("pat", "");
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    EXPECT_STREQ(test::fileText("pat"), DEFAULT_FILE);
    EXPECT_TRUE(isDefault(&pats[0]));
    EXPECT_TRUE(isUntouched(&pats[1]));
    EXPECT_STREQ(test::messages(), INIT_NOTE);
    EXPECT_EQ(test::callCount(test::OPEN), 3);
    EXPECT_EQ(test::callCount(test::CLOSE), 3);
}

TEST(PatParameter, readerForNoDevicesCreatesTheDefaultAllTheSame)
{
    EXPECT_TRUE(patParameterReaderV2("pat", 0, nullptr));
    EXPECT_STREQ(test::fileText("pat"), DEFAULT_FILE);
}

TEST(PatParameter, readerReadsOneDeviceOfTheDefault)
{
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("pat", 5, pats));
    EXPECT_TRUE(isDefault(&pats[0]));
    EXPECT_TRUE(isUntouched(&pats[1]));
}

TEST(PatParameter, readerNotesTheCreationFromLevelSix)
{
    clearPats();
    test::setLevel(5);
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    EXPECT_EQ(test::messageCount(), 0);
    EXPECT_TRUE(isDefault(&pats[0]));
    test::writeFile("pat", "");
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    EXPECT_EQ(test::messageCount(), 0);
    EXPECT_STREQ(test::fileText("pat"), DEFAULT_FILE);
}

TEST(PatParameter, readerReplacesAFileThatItCannotOpen)
{
    test::writeFile("pat", "1\n0A1B2C3D4E5F 0\n");
    clearPats();
    test::failNth(test::OPEN, 1);
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    EXPECT_STREQ(test::fileText("pat"), DEFAULT_FILE);
    EXPECT_TRUE(isDefault(&pats[0]));
    EXPECT_STREQ(test::messages(), INIT_NOTE);
}

TEST(PatParameter, readerFailsWhereTheDefaultCannotBeCreated)
{
    fillPats();
    EXPECT_FALSE(patParameterReaderV2("no/pat", 1, pats));
    EXPECT_STREQ(test::messages(), "libzo: [patParameterReaderV2:#]: pat file does not exit, init it.|"
                                   "libzo: [patParameterWriterV2:#]: Failed to write file: no/pat.\n|");
    EXPECT_TRUE(isUntouched(&pats[0]));
    EXPECT_EQ(test::callCount(test::OPEN), 3);
    EXPECT_EQ(test::callCount(test::CLOSE), 0);
}

TEST(PatParameter, readerFailsWithoutAMessageWhereTheDefaultCannotBeOpened)
{
    fillPats();
    test::failNth(test::OPEN, 3);
    EXPECT_FALSE(patParameterReaderV2("pat", 1, pats));
    EXPECT_STREQ(test::messages(), INIT_NOTE);
    EXPECT_STREQ(test::fileText("pat"), DEFAULT_FILE);
    EXPECT_TRUE(isUntouched(&pats[0]));
    EXPECT_EQ(test::callCount(test::OPEN), 3);
}

TEST(PatParameter, readerTriesTheDefaultAgainWhereItWasNotWritten)
{
    clearPats();
    test::failNth(test::WRITE, 1);
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    EXPECT_STREQ(test::messages(),
                 INIT_NOTE "libzo: [patParameterWriterV2:#]: fprintf error, path:pat.\n|" INIT_NOTE);
    EXPECT_STREQ(test::fileText("pat"), DEFAULT_FILE);
    EXPECT_TRUE(isDefault(&pats[0]));
}

TEST(PatParameter, readerReadsWhatThereIsOfADefaultCutShort)
{
    clearPats();
    test::failNth(test::WRITE, 5);
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    EXPECT_STREQ(test::fileText("pat"), "1\n000000000000 15\n0 0 1 0 64 46094\n");
    EXPECT_TRUE(isEntry(&pats[0].singlePat[0], 0, 0, 1, 0, 64, 46094));
    EXPECT_TRUE(isEntry(&pats[0].singlePat[1], 0, 0, 0, 0, 0, 0));
    EXPECT_EQ(timesLogged(SCAN_ERROR_V2), 14);
    EXPECT_EQ(test::messageCount(), 16);
}

TEST(PatParameter, readerOfAnEmptyFileThatCannotBeWrittenFindsNoCount)
{
    test::writeFile("pat", "");
    fillPats();
    test::failNth(test::OPEN, 3);
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    EXPECT_STREQ(test::messages(),
                 INIT_NOTE "libzo: [patParameterWriterV2:#]: Failed to write file: pat.\n|" SCAN_ERROR_V2);
    EXPECT_STREQ(test::fileText("pat"), "");
    EXPECT_TRUE(isUntouched(&pats[0]));
}

TEST(PatParameter, readerOfADirectoryFindsNoCount)
{
    mkdir("pat", 0777);
    fillPats();
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    EXPECT_STREQ(test::messages(),
                 INIT_NOTE "libzo: [patParameterWriterV2:#]: Failed to write file: pat.\n|" SCAN_ERROR_V2);
    EXPECT_TRUE(isUntouched(&pats[0]));
}

TEST(PatParameter, readerTakesAFileWhoseLinesCannotBeReadAsEmpty)
{
    test::writeFile("pat", "1\n0A1B2C3D4E5F 0\n");
    clearPats();
    test::failNth(test::READ, 1); /* the counter's first */
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    EXPECT_STREQ(test::messages(), INIT_NOTE);
    EXPECT_STREQ(test::fileText("pat"), DEFAULT_FILE);
    EXPECT_TRUE(isDefault(&pats[0]));
}

TEST(PatParameter, readerGoesOnWhereTheLinesCannotBeCounted)
{
    test::writeFile("pat", "1\n0A1B2C3D4E5F 0\n");
    clearPats();
    test::failNth(test::OPEN, 2);
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    EXPECT_STREQ(test::messages(), "libzo: [dataLineCounter:#]: Failed to read file: pat\n|");
    EXPECT_STREQ(pats[0].deviceMac, "0A1B2C3D4E5F");
}

TEST(PatParameter, readerDoesNotInitialiseWhereTheLinesCannotBeCounted)
{
    test::writeFile("pat", "");
    clearPats();
    test::failNth(test::CLOSE, 1);
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    EXPECT_STREQ(test::messages(), "libzo: [dataLineCounter:#]: fclose error, path:pat.\n|" SCAN_ERROR_V2);
    EXPECT_STREQ(test::fileText("pat"), "");
}

TEST(PatParameter, readerReadsTheDefaultWhereItsLinesCannotBeCounted)
{
    clearPats();
    test::failNth(test::OPEN, 4);
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    EXPECT_STREQ(test::messages(), INIT_NOTE "libzo: [dataLineCounter:#]: Failed to read file: pat\n|");
    EXPECT_TRUE(isDefault(&pats[0]));
}

TEST(PatParameter, readerReportsAFailedCloseAndKeepsWhatItRead)
{
    test::writeFile("pat", "1\n0A1B2C3D4E5F 1\n1 2 3 4 5 60000\n");
    clearPats();
    test::failNth(test::CLOSE, 2);
    EXPECT_FALSE(patParameterReaderV2("pat", 1, pats));
    EXPECT_STREQ(test::messages(), "libzo: [patParameterReaderV2:#]: fclose error, path:pat.\n|");
    EXPECT_STREQ(pats[0].deviceMac, "0A1B2C3D4E5F");
    EXPECT_TRUE(isEntry(&pats[0].singlePat[0], 1, 2, 3, 4, 5, 60000));
}

TEST(PatParameter, readerReportsAFailedCloseOfTheDefault)
{
    clearPats();
    test::failNth(test::CLOSE, 3);
    EXPECT_FALSE(patParameterReaderV2("pat", 1, pats));
    EXPECT_STREQ(test::messages(), INIT_NOTE "libzo: [patParameterReaderV2:#]: fclose error, path:pat.\n|");
    EXPECT_TRUE(isDefault(&pats[0]));
}

TEST(PatParameter, readerReportsAFailedCloseFromLevelThree)
{
    test::writeFile("pat", "0\n");
    test::setLevel(3);
    test::failNth(test::CLOSE, 2);
    EXPECT_FALSE(patParameterReaderV2("pat", 0, pats));
    EXPECT_STREQ(test::messages(), "libzo: [patParameterReaderV2:#]: fclose error, path:pat.\n|");
    test::clearMessages();
    test::setLevel(2);
    test::failNth(test::CLOSE, 2);
    EXPECT_FALSE(patParameterReaderV2("pat", 0, pats));
    EXPECT_EQ(test::messageCount(), 0);
}

/* ---- Version 1 reader --------------------------------------------------- */

static PatParameter oldPats[4];

static void fillOldPats()
{
    memset(oldPats, 0x5A, sizeof oldPats);
}

static bool isUntouched(const PatParameter* pat)
{
    return isUntouched(pat, sizeof *pat);
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
    test::writeFile("pat", text);
    fillOldPats();
    EXPECT_TRUE(patParameterReader("pat", 3, oldPats));
    EXPECT_TRUE(isOldDevice(&oldPats[0], "0A1B2C3D4E5F", 0));
    EXPECT_TRUE(isOldDevice(&oldPats[1], "102030405060", 65336));
    EXPECT_TRUE(isOldDevice(&oldPats[2], "A0A1A2A3A4A5", 300));
    EXPECT_TRUE(isUntouched(&oldPats[3]));
    EXPECT_EQ(test::messageCount(), 0);
    EXPECT_STREQ(test::fileText("pat"), text);
}

TEST(PatParameter, oldReaderOpensFirstAndCountsSecond)
{
    beginText();
    addOldDevice("0A1B2C3D4E5F", 1, " ");
    test::writeFile("pat", text);
    fillOldPats();
    EXPECT_TRUE(patParameterReader("pat", 1, oldPats));
    EXPECT_EQ(test::callCount(test::OPEN), 2);
    EXPECT_EQ(test::callCount(test::CLOSE), 2);
}

TEST(PatParameter, oldReaderTakesAnyWhiteSpaceBetweenValues)
{
    beginText();
    addOldDevice("\n\n  0A1B2C3D4E5F", 1, "\n");
    addOldDevice("102030405060", 1000, " \t\n\n ");
    test::writeFile("pat", text);
    fillOldPats();
    EXPECT_TRUE(patParameterReader("pat", 2, oldPats));
    EXPECT_TRUE(isOldDevice(&oldPats[0], "0A1B2C3D4E5F", 1));
    EXPECT_TRUE(isOldDevice(&oldPats[1], "102030405060", 1000));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(PatParameter, oldReaderTakesTwelveCharactersOfAMac)
{
    beginText();
    addOldDevice("0A1B2C3D4E5F7", 1, " "); /* the 7 is the first b */
    test::writeFile("pat", text);
    fillOldPats();
    EXPECT_TRUE(patParameterReader("pat", 1, oldPats));
    EXPECT_STREQ(oldPats[0].deviceMac, "0A1B2C3D4E5F");
    EXPECT_EQ(oldPats[0].bParameter[0], 7);
    EXPECT_EQ(oldPats[0].bParameter[1], 1);
    EXPECT_EQ(oldPats[0].cParameter[99], 199);
}

TEST(PatParameter, oldReaderTakesDecimalsWithLeadingZeros)
{
    beginText();
    addOldDevice("0A1B2C3D4E5F", 8, " 0");
    test::writeFile("pat", text);
    fillOldPats();
    EXPECT_TRUE(patParameterReader("pat", 1, oldPats));
    EXPECT_TRUE(isOldDevice(&oldPats[0], "0A1B2C3D4E5F", 8));
}

TEST(PatParameter, oldReaderStopsAtTheCallersCount)
{
    beginText();
    addOldDevice("0A1B2C3D4E5F", 1, " ");
    addOldDevice("102030405060", 1, " ");
    test::writeFile("pat", text);
    fillOldPats();
    EXPECT_TRUE(patParameterReader("pat", 1, oldPats));
    EXPECT_TRUE(isOldDevice(&oldPats[0], "0A1B2C3D4E5F", 1));
    EXPECT_TRUE(isUntouched(&oldPats[1]));
}

TEST(PatParameter, oldReaderForNoDevicesReadsNone)
{
    beginText();
    addOldDevice("0A1B2C3D4E5F", 1, " ");
    test::writeFile("pat", text);
    fillOldPats();
    EXPECT_TRUE(patParameterReader("pat", 0, oldPats));
    EXPECT_TRUE(patParameterReader("pat", -1, oldPats));
    EXPECT_TRUE(isUntouched(&oldPats[0]));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(PatParameter, oldReaderOfAMissingFileFailsWithoutCounting)
{
    fillOldPats();
    EXPECT_FALSE(patParameterReader("pat", 1, oldPats));
    EXPECT_STREQ(test::messages(), "libzo: [patParameterReader:#]: pat file pat does not exit.|");
    EXPECT_STREQ(test::fileText("pat"), "<missing>");
    EXPECT_TRUE(isUntouched(&oldPats[0]));
    EXPECT_EQ(test::callCount(test::OPEN), 1);
    EXPECT_EQ(test::callCount(test::CLOSE), 0);
}

TEST(PatParameter, oldReaderDoesNotCountAFileThatItCannotOpen)
{
    test::writeFile("pat", "0A1B2C3D4E5F\n");
    test::failNth(test::OPEN, 1);
    EXPECT_FALSE(patParameterReader("pat", 1, oldPats));
    EXPECT_STREQ(test::messages(), "libzo: [patParameterReader:#]: pat file pat does not exit.|");
    EXPECT_EQ(test::callCount(test::OPEN), 1);
}

TEST(PatParameter, oldReaderOfAnEmptyFileFailsAndLeavesItsStreamOpen)
{
    test::writeFile("pat", "");
    fillOldPats();
    EXPECT_FALSE(patParameterReader("pat", 1, oldPats));
    EXPECT_STREQ(test::messages(), "libzo: [patParameterReader:#]: pat file pat does not exit.|");
    EXPECT_STREQ(test::fileText("pat"), "");
    EXPECT_TRUE(isUntouched(&oldPats[0]));
    EXPECT_EQ(test::openStreams(), 1);
    EXPECT_EQ(test::callCount(test::OPEN), 2);
    EXPECT_EQ(test::callCount(test::CLOSE), 1);
    test::closeLeftStreams();
}

TEST(PatParameter, oldReaderOfADirectoryFails)
{
    mkdir("pat", 0777);
    EXPECT_FALSE(patParameterReader("pat", 0, oldPats));
    EXPECT_STREQ(test::messages(), "libzo: [patParameterReader:#]: pat file pat does not exit.|");
    EXPECT_EQ(test::openStreams(), 1);
    test::closeLeftStreams();
}

TEST(PatParameter, oldReaderReportsAMissingOrEmptyFileFromLevelThree)
{
    test::setLevel(3);
    EXPECT_FALSE(patParameterReader("pat", 1, oldPats));
    test::writeFile("pat", "");
    EXPECT_FALSE(patParameterReader("pat", 1, oldPats));
    EXPECT_STREQ(test::messages(), "libzo: [patParameterReader:#]: pat file pat does not exit.|"
                                   "libzo: [patParameterReader:#]: pat file pat does not exit.|");
    test::clearMessages();
    test::setLevel(2);
    EXPECT_FALSE(patParameterReader("pat", 1, oldPats));
    EXPECT_FALSE(patParameterReader("no/pat", 1, oldPats));
    EXPECT_EQ(test::messageCount(), 0);
    test::closeLeftStreams();
}

TEST(PatParameter, oldReaderGoesOnWhereTheLinesCannotBeCounted)
{
    beginText();
    addOldDevice("0A1B2C3D4E5F", 1, " ");
    test::writeFile("pat", text);
    fillOldPats();
    test::failNth(test::OPEN, 2);
    EXPECT_TRUE(patParameterReader("pat", 1, oldPats));
    EXPECT_STREQ(test::messages(), "libzo: [dataLineCounter:#]: Failed to read file: pat\n|");
    EXPECT_TRUE(isOldDevice(&oldPats[0], "0A1B2C3D4E5F", 1));
}

TEST(PatParameter, oldReaderReadsAnEmptyFileThatCannotBeCounted)
{
    test::writeFile("pat", "");
    fillOldPats();
    test::failNth(test::CLOSE, 1);
    EXPECT_TRUE(patParameterReader("pat", 1, oldPats));
    EXPECT_STREQ(test::messages(), "libzo: [dataLineCounter:#]: fclose error, path:pat.\n|" SCAN_ERROR_V1);
    EXPECT_TRUE(isUntouched(&oldPats[0]));
    EXPECT_EQ(test::openStreams(), 0);
}

TEST(PatParameter, oldReaderReportsEveryDeviceAtTheEndOfTheFile)
{
    beginText();
    addOldDevice("0A1B2C3D4E5F", 1, " ");
    test::writeFile("pat", text);
    fillOldPats();
    EXPECT_TRUE(patParameterReader("pat", 3, oldPats));
    EXPECT_STREQ(test::messages(), SCAN_ERROR_V1 SCAN_ERROR_V1);
    EXPECT_TRUE(isOldDevice(&oldPats[0], "0A1B2C3D4E5F", 1));
    EXPECT_TRUE(isUntouched(&oldPats[1]));
    EXPECT_TRUE(isUntouched(&oldPats[2]));
}

TEST(PatParameter, oldReaderOfABlankFileReportsEveryDevice)
{
    test::writeFile("pat", "\n");
    fillOldPats();
    EXPECT_TRUE(patParameterReader("pat", 2, oldPats));
    EXPECT_STREQ(test::messages(), SCAN_ERROR_V1 SCAN_ERROR_V1);
    EXPECT_TRUE(isUntouched(&oldPats[0]));
}

TEST(PatParameter, oldReaderReportsEveryValueAtTheEndOfTheFile)
{
    test::writeFile("pat", "0A1B2C3D4E5F 5 6 7\n");
    fillOldPats();
    EXPECT_TRUE(patParameterReader("pat", 1, oldPats));
    EXPECT_EQ(test::messageCount(), 197);
    EXPECT_EQ(timesLogged(SCAN_ERROR_V1), 197);
    EXPECT_STREQ(oldPats[0].deviceMac, "0A1B2C3D4E5F");
    EXPECT_EQ(oldPats[0].bParameter[0], 5);
    EXPECT_EQ(oldPats[0].bParameter[1], 6);
    EXPECT_EQ(oldPats[0].bParameter[2], 7);
    EXPECT_TRUE(isUntouched(&oldPats[0].bParameter[3], 97 * sizeof(uint16_t)));
    EXPECT_TRUE(isUntouched(oldPats[0].cParameter, sizeof oldPats[0].cParameter));
}

TEST(PatParameter, oldReaderReportsTheLastValueMissing)
{
    beginText();
    addOldDevice("0A1B2C3D4E5F", 1, " ");
    text[textLength - 5] = '\0'; /* without " 200" */
    test::writeFile("pat", text);
    fillOldPats();
    EXPECT_TRUE(patParameterReader("pat", 1, oldPats));
    EXPECT_STREQ(test::messages(), SCAN_ERROR_V1);
    EXPECT_EQ(oldPats[0].cParameter[98], 199);
    EXPECT_TRUE(isUntouched(&oldPats[0].cParameter[99], sizeof(uint16_t)));
}

TEST(PatParameter, oldReaderDoesNotNoticeValuesThatDoNotConvert)
{
    beginText();
    addText("0A1B2C3D4E5F 5 x\n");
    addOldDevice("", 1, " ");
    test::writeFile("pat", text);
    fillOldPats();
    EXPECT_TRUE(patParameterReader("pat", 2, oldPats));
    EXPECT_EQ(test::messageCount(), 0);
    EXPECT_EQ(oldPats[0].bParameter[0], 5);
    EXPECT_TRUE(isUntouched(&oldPats[0].bParameter[1], 99 * sizeof(uint16_t)));
    EXPECT_TRUE(isUntouched(oldPats[0].cParameter, sizeof oldPats[0].cParameter));
    EXPECT_TRUE(isOldDevice(&oldPats[1], "x", 1));
}

TEST(PatParameter, oldReaderReportsTheEndOfTheFileFromLevelThree)
{
    beginText();
    addOldDevice("0A1B2C3D4E5F", 1, " ");
    text[textLength - 5] = '\0';
    test::writeFile("pat", text);
    test::setLevel(3);
    EXPECT_TRUE(patParameterReader("pat", 2, oldPats));
    EXPECT_STREQ(test::messages(), SCAN_ERROR_V1 SCAN_ERROR_V1);
    test::clearMessages();
    test::setLevel(2);
    EXPECT_TRUE(patParameterReader("pat", 2, oldPats));
    test::writeFile("pat", "0A1B2C3D4E5F\n");
    EXPECT_TRUE(patParameterReader("pat", 1, oldPats));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(PatParameter, oldReaderReportsAReadError)
{
    test::writeFile("pat", "0A1B2C3D4E5F 1 2 3\n");
    fillOldPats();
    test::failNth(test::OPEN, 2); /* the counter's, so that it makes no reads */
    test::failFrom(test::READ, 1);
    EXPECT_TRUE(patParameterReader("pat", 2, oldPats));
    EXPECT_STREQ(test::messages(),
                 "libzo: [dataLineCounter:#]: Failed to read file: pat\n|" SCAN_ERROR_V1 SCAN_ERROR_V1);
    EXPECT_TRUE(isUntouched(&oldPats[0]));
}

TEST(PatParameter, oldReaderReportsAFailedCloseAndKeepsWhatItRead)
{
    beginText();
    addOldDevice("0A1B2C3D4E5F", 1, " ");
    test::writeFile("pat", text);
    fillOldPats();
    test::failNth(test::CLOSE, 2);
    EXPECT_FALSE(patParameterReader("pat", 1, oldPats));
    EXPECT_STREQ(test::messages(), "libzo: [patParameterReader:#]: fclose error, path:pat.\n|");
    EXPECT_TRUE(isOldDevice(&oldPats[0], "0A1B2C3D4E5F", 1));
}

TEST(PatParameter, oldReaderReportsAFailedCloseFromLevelThree)
{
    test::writeFile("pat", "0A1B2C3D4E5F\n");
    test::setLevel(3);
    test::failNth(test::CLOSE, 2);
    EXPECT_FALSE(patParameterReader("pat", 0, oldPats));
    EXPECT_STREQ(test::messages(), "libzo: [patParameterReader:#]: fclose error, path:pat.\n|");
    test::clearMessages();
    test::setLevel(2);
    test::failNth(test::CLOSE, 2);
    EXPECT_FALSE(patParameterReader("pat", 0, oldPats));
    EXPECT_EQ(test::messageCount(), 0);
}
