/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Damaged files, as a power cut or a bad block leaves them: every kind of file is cut at
 * every byte, has every byte replaced by hostile ones, and gets blocks of zeros. Every
 * reader and every update runs on each of them. Its result has to match recordOracle.h
 * byte by byte.
 */
#include "operations.h"

/* ---- Records filled with a pattern that shows writes ---------------------- */

enum { UNREAD = 0xA5, RECORDS_ROOM = 1 << 18, GUARD = 512 };

enum { MACS = 16 };
static unsigned char actualRecords[RECORDS_ROOM];
static unsigned char expectedRecords[RECORDS_ROOM];
static char actualMacs[MACS][ALG_MAC_SIZE];
static char expectedMacs[MACS][ALG_MAC_SIZE];

/* ---- One torn file ------------------------------------------------------ */

static char torn[FILE_ROOM];
static size_t tornSize;
static char damage[96]; /* for the report */
static long tornFiles;
static long runs;

/* Counts a comparison, and reports it if the results differ. */
static void expectRun(bool equal, const char* function, const char* what)
{
    ++runs;
    if (equal)
        return;
    char report[256];
    snprintf(report, sizeof report, "%s: %s: unexpected %s", damage, function, what);
    EXPECT_STREQ("", report);
}

static Text tornText()
{
    return {torn, tornSize, 0};
}

static void runReader(const Reader& reader, int count)
{
    const int lines = expectedLines(tornText());
    const size_t used = recordSize(reader.kind) * static_cast<size_t>(lines > count ? lines : count) + GUARD;
    ASSERT_LE(used, sizeof actualRecords);
    memset(actualRecords, UNREAD, used);
    memset(expectedRecords, UNREAD, used);
    memset(actualMacs, UNREAD, sizeof actualMacs);
    memset(expectedMacs, UNREAD, sizeof expectedMacs);
    const bool actual = reader.read(actualRecords, count, actualMacs);
    const bool expected = reader.expected(tornText(), expectedRecords, count, expectedMacs);
    expectRun(actual == expected, reader.name, "result");
    expectRun(memcmp(actualRecords, expectedRecords, used) == 0, reader.name, "records");
    for (int i = 0; i < MACS; ++i) {
        if (strncmp(actualMacs[i], expectedMacs[i], ALG_MAC_SIZE) != 0)
            expectRun(false, reader.name, "MACs");
    }
    test::closeLeftStreams(); /* patParameterReader() leaks the stream of an empty file */
}

static void runReaders(Kind kind, int count)
{
    test::writeBytes("f", torn, tornSize);
    expectRun(dataLineCounter("f") == expectedLines(tornText()), "dataLineCounter", "count");
    for (const Reader& reader : readers) {
        if (reader.kind == kind)
            runReader(reader, count);
    }
    if (kind == PAT_V2 && tornSize == 0)
        expectRun(fileIs(defaultPatFile, strlen(defaultPatFile)), "patParameterReaderV2", "file");
    else
        expectRun(fileIs(torn, tornSize), "a reader", "file");
}

static void runUpdate(const Update& update, const void* income)
{
    static char expectedFile[FILE_ROOM];
    AnyRecord passed;
    size_t size;
    const bool expected = expectUpdate(update.rule, tornText(), income, expectedFile, &size);
    memcpy(&passed, income, recordSize(update.rule.kind));
    test::writeBytes("f", torn, tornSize);
    const bool actual = update.run(&passed);
    expectRun(actual == (expected || !reportsFailure(update)), update.name, "result");
    expectRun(fileIs(expectedFile, size), update.name, "file");
    expectRun(memcmp(&passed, income, recordSize(update.rule.kind)) == 0, update.name, "income");
}

/* Runs the updates with an income whose key is in the undamaged file, and with one whose key is not. */
static void runUpdates(Kind kind)
{
    AnyRecord known;
    AnyRecord added;
    AnyRecord second;
    for (const Update& update : updates) {
        if (update.rule.kind != kind)
            continue;
        fillRecord(kind, 7, &added);
        fillRecord(kind, 8, &known);
        fillRecord(kind, 1, &second);
        memcpy(known.bytes + update.rule.key, second.bytes + update.rule.key, ALG_MAC_SIZE);
        runUpdate(update, &known);
        if (update.rule.rule == REPLACE_OR_ADD)
            runUpdate(update, &added);
    }
}

static void runTorn(Kind kind, int count)
{
    ++tornFiles;
    test::clearMessages();
    runReaders(kind, count);
    runUpdates(kind);
}

/* ---- All damages of one file -------------------------------------------- */

static void describe(Kind kind, const char* what, size_t at, int with)
{
    snprintf(damage, sizeof damage, "%s file, %s at byte %ld with %d", formatOf(kind).name, what,
             static_cast<long>(at), with);
}

/* Runs with up to `length` bytes from `at` on replaced by `with`. */
static void runReplaced(Kind kind, int count, const char* file, size_t size, size_t at, size_t length,
                        char with)
{
    memcpy(torn, file, size);
    tornSize = size;
    memset(torn + at, with, length < size - at ? length : size - at);
    runTorn(kind, count);
}

static const char hostile[] = {'\0', ' ', '\n', '7', 'g', '-', '\xFF', '+', '.', 'e'};
static const size_t blocks[] = {16, 64, 512};

static void damageFile(Kind kind, int count, const char* file, size_t size)
{
    for (size_t at = 0; at <= size; ++at) {
        describe(kind, "cut", at, 0);
        memcpy(torn, file, at);
        tornSize = at;
        runTorn(kind, count);
    }
    for (size_t at = 0; at < size; ++at) {
        for (const char byte : hostile) {
            describe(kind, "replaced", at, byte);
            runReplaced(kind, count, file, size, at, 1, byte);
        }
        for (const size_t block : blocks) {
            describe(kind, "zeroed block", at, static_cast<int>(block));
            runReplaced(kind, count, file, size, at, block, '\0');
        }
    }
}

static void damageKind(Kind kind, int count)
{
    static char file[FILE_ROOM];
    test::writeFile("empty", "");
    tornFiles = 0;
    runs = 0;
    damageFile(kind, count, file, exampleFile(kind, count, file));
    printf("torn %s files: %ld, results compared: %ld\n", formatOf(kind).name, tornFiles, runs);
}

TEST(TornFiles, apNode)
{
    damageKind(AP_NODE, 3);
    EXPECT_GT(tornFiles, 3000);
}

TEST(TornFiles, apAll)
{
    damageKind(AP_ALL, 2);
    EXPECT_GT(tornFiles, 3000);
}

TEST(TornFiles, apDetail)
{
    damageKind(AP_DETAIL, 2);
    EXPECT_GT(tornFiles, 3000);
}

TEST(TornFiles, bridging)
{
    damageKind(BRIDGING, 3);
    EXPECT_GT(tornFiles, 3000);
}

TEST(TornFiles, station)
{
    damageKind(STATION, 3);
    EXPECT_GT(tornFiles, 2000);
}

TEST(TornFiles, candidate)
{
    damageKind(CANDIDATE, 5);
    EXPECT_GT(tornFiles, 1500);
}

TEST(TornFiles, patVersion1)
{
    damageKind(PAT_V1, 1);
    EXPECT_GT(tornFiles, 7000);
}

TEST(TornFiles, patVersion2)
{
    damageKind(PAT_V2, 3);
    EXPECT_GT(tornFiles, 2000);
}

TEST(TornFiles, scanning)
{
    damageKind(SCANNING, 4);
    EXPECT_GT(tornFiles, 1500);
}

TEST(TornFiles, timeDelay)
{
    damageKind(TIME_DELAY, 3);
    EXPECT_GT(tornFiles, 2000);
}

TEST(TornFiles, score)
{
    damageKind(SCORE, 2);
    EXPECT_GT(tornFiles, 2000);
}

TEST(TornFiles, apRank)
{
    damageKind(AP_RANK, 4);
    EXPECT_GT(tornFiles, 1200);
}

TEST(TornFiles, rankIndex)
{
    damageKind(RANK_INDEX, 4);
    EXPECT_GT(tornFiles, 1200);
}

TEST(TornFiles, output)
{
    damageKind(OUTPUT, 2);
    EXPECT_GT(tornFiles, 600);
}

/* ---- Damages that need special files ------------------------------------ */

/* Numbers with more digits than any type can store. */
TEST(TornFiles, rowsOfDigits)
{
    static char file[FILE_ROOM];
    test::writeFile("empty", "");
    tornFiles = 0;
    for (int kind = 0; kind < KINDS; ++kind) {
        const Kind of = static_cast<Kind>(kind);
        const size_t size = exampleFile(of, 2, file);
        for (size_t at = 0; at < size; at += 3) {
            describe(of, "row of digits", at, '9');
            runReplaced(of, 2, file, size, at, 40, '9');
        }
    }
    EXPECT_GT(tornFiles, 1000);
}

/* Lines of about 1023 characters, which is the limit of one read, damaged near that limit. */
TEST(TornFiles, longLines)
{
    static const Kind byLine[] = {STATION, CANDIDATE, SCANNING, AP_RANK, RANK_INDEX, OUTPUT};
    static char file[FILE_ROOM];
    test::writeFile("empty", "");
    tornFiles = 0;
    for (const Kind kind : byLine) {
        for (size_t length = 1018; length < 1030; ++length) { /* of the first line, without its newline */
            const size_t size = exampleFile(kind, 2, file);
            const size_t line = strcspn(file, "\n");
            memmove(file + length, file + line, size - line);
            memset(file + line, ' ', length - line);
            const size_t longSize = size + length - line;
            for (size_t at = 1012; at < 1036; ++at) {
                for (const char byte : hostile) {
                    describe(kind, "long line", at, byte);
                    runReplaced(kind, 2, file, longSize, at, 1, byte);
                }
            }
        }
    }
    EXPECT_GT(tornFiles, 12000);
}

/* A rank index with as many entries as its capacity and with more, damaged in its header. */
TEST(TornFiles, rankIndexAtItsCapacity)
{
    static char file[FILE_ROOM];
    tornFiles = 0;
    for (int entries = ALG_RANK_INDEX_CAPACITY - 1; entries <= ALG_RANK_INDEX_CAPACITY + 2; ++entries) {
        const size_t size = exampleFile(RANK_INDEX, entries, file);
        for (size_t at = 0; at < 20; ++at) {
            for (const char byte : hostile) {
                describe(RANK_INDEX, "full file", at, byte);
                runReplaced(RANK_INDEX, 1, file, size, at, 1, byte);
            }
        }
        for (size_t at = 0; at <= size; ++at) {
            describe(RANK_INDEX, "full file cut", at, 0);
            memcpy(torn, file, at);
            tornSize = at;
            runTorn(RANK_INDEX, 1);
        }
    }
    EXPECT_GT(tornFiles, 4000);
}

/* A PAT device with as many entries as its capacity and with more. */
TEST(TornFiles, patAtItsCapacity)
{
    static char file[FILE_ROOM];
    tornFiles = 0;
    for (int entries = ALG_PAT_CAPACITY - 1; entries <= ALG_PAT_CAPACITY + 2; ++entries) {
        const size_t size = patFileOfEntries(entries, file);
        for (size_t at = 0; at < size; at += at < 30 ? 1 : 29) {
            for (const char byte : hostile) {
                describe(PAT_V2, "full file", at, byte);
                runReplaced(PAT_V2, 2, file, size, at, 1, byte);
            }
        }
    }
    EXPECT_GT(tornFiles, 1500);
}
