/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Another process changes the file while a call of the module is running: before the
 * count, between the count and the read, and before the write. The module writes
 * nothing past an array, and reads as many records as it has counted.
 */
#include "operations.h"

#include <sys/stat.h>
#include <unistd.h>

/* ---- Changes of the file ------------------------------------------------ */

enum Change { GROWN, LONG_LINE, BLANK_LINES, ZEROS, SHRUNK, EMPTIED, REMOVED, DIRECTORY, CHANGES };

static Kind kind;
static char original[FILE_ROOM];
static size_t originalSize;
static char changed[FILE_ROOM];
static size_t changedSize;
static Change change;
static bool changeHappened;

static void prepare(int records, Change next)
{
    change = next;
    changeHappened = false;
    originalSize = exampleFile(kind, records, original);
    changedSize = next == GROWN     ? exampleFile(kind, records + 100, changed)
                  : next == SHRUNK  ? exampleFile(kind, records / 2, changed)
                  : next == EMPTIED ? 0
                                    : 9000;
    if (next == LONG_LINE)
        memset(changed, '7', changedSize);
    else if (next == BLANK_LINES)
        memset(changed, '\n', changedSize);
    else if (next == ZEROS)
        memset(changed, 0, changedSize);
    rmdir("f");
    test::writeBytes("f", original, originalSize);
}

static void changeFile(const char* path)
{
    changeHappened = true;
    if (change < REMOVED)
        return test::writeBytes(path, changed, changedSize);
    unlink(path);
    if (change == DIRECTORY)
        mkdir(path, 0777);
}

/* Whether the file is still as the change left it. */
static bool fileIsAsChanged()
{
    struct stat status;
    const bool exists = stat("f", &status) == 0;
    if (change == REMOVED)
        return !exists;
    if (change == DIRECTORY)
        return exists && S_ISDIR(status.st_mode);
    return fileIs(changed, changedSize);
}

/* ---- Updates ------------------------------------------------------------ */

static char expectedFile[FILE_ROOM];
static long changedFiles;

/* Reports the case if the expectation is not met. */
static void expectThat(bool condition, const char* function, int opening, const char* what)
{
    if (condition)
        return;
    char report[200];
    snprintf(report, sizeof report, "%s, change %d before open %d: %s", function, change, opening, what);
    EXPECT_STREQ("", report);
}

/* Changes the file before the `opening`-th open of one update. Returns false if there is no such open. */
static bool runChanged(const Update& update, const AnyRecord& income, int opening)
{
    AnyRecord passed;
    memcpy(&passed, &income, sizeof passed);
    test::clearMessages();
    test::beforeOpen(opening, changeFile);
    const bool result = update.run(&passed);
    test::beforeOpen(0, nullptr);
    if (!changeHappened)
        return false;
    ++changedFiles;
    expectThat(test::brokenGuards() == 0, update.name, opening, "written past an array");
    expectThat(test::openStreams() == 0 && test::heldArrays() == 0, update.name, opening, "leaked");
    expectThat(memcmp(&passed, &income, recordSize(kind)) == 0, update.name, opening, "income changed");
    if (change == GROWN) {
        const bool counted = opening > 1;
        const Text text = {counted ? original : changed, counted ? originalSize : changedSize, 0};
        size_t size;
        const bool succeeds = expectUpdate(update.rule, text, &income, expectedFile, &size);
        expectThat(result == succeeds || !reportsFailure(update), update.name, opening, "result");
        expectThat(succeeds ? fileIs(expectedFile, size) : fileIsAsChanged(), update.name, opening, "file");
    } else if (!result) {
        expectThat(fileIsAsChanged(), update.name, opening, "failed update changed the file");
    }
    return true;
}

/* Every change before every open of the update. */
static void runAllChanges(const Update& update, int records)
{
    AnyRecord income;
    AnyRecord second;
    fillRecord(kind, 500, &income);
    fillRecord(kind, records / 2, &second);
    for (int same = 0; same < 2; ++same) {
        for (int next = 0; next < CHANGES; ++next) {
            int opening = 1;
            for (prepare(records, static_cast<Change>(next)); runChanged(update, income, opening); ++opening)
                prepare(records, static_cast<Change>(next));
            EXPECT_GE(opening, 2);
            EXPECT_LE(opening, kind == BRIDGING ? 5 : 4);
        }
        memcpy(income.bytes + update.rule.key, second.bytes + update.rule.key, ALG_MAC_SIZE);
    }
}

TEST(Growth, updates)
{
    static const int counts[] = {
        1, 2, 7, ALG_FAP_BRIDGING_CAP - 1, ALG_FAP_BRIDGING_CAP, ALG_STATION_CAP, ALG_SCANNING_CAP};
    changedFiles = 0;
    test::guardArrays();
    for (const Update& update : updates) {
        kind = update.rule.kind;
        for (const int records : counts) {
            if (update.rule.rule != OVERWRITE) /* these neither count nor read */
                runAllChanges(update, records);
        }
    }
    rmdir("f");
    printf("files changed during an update: %ld\n", changedFiles);
    EXPECT_GT(changedFiles, 3000);
}

/* The tests above can only fail if a guard zone notices a write. */
TEST(Growth, guardZoneShowsAWritePastAnArray)
{
#if !defined(__SANITIZE_ADDRESS__)
    test::guardArrays();
    char* volatile array = static_cast<char*>(calloc(3, 5));
    array[15] = 1;
    free(array);
    EXPECT_EQ(1, test::brokenGuards());
    array = static_cast<char*>(realloc(calloc(1, 8), 16));
    array[15] = 1;
    free(array);
    EXPECT_EQ(1, test::brokenGuards());
#endif
    EXPECT_EQ(0, test::heldArrays());
}

/* ---- Readers that count ------------------------------------------------- */

enum { UNREAD = 0xA5, ARRAY_ROOM = 1 << 16 };

static unsigned char array[ARRAY_ROOM];

/* Whether no byte from `used` on has been written. */
static bool restIsUnread(size_t used)
{
    while (used < sizeof array && array[used] == UNREAD)
        ++used;
    return used == sizeof array;
}

TEST(Growth, readersThatCount)
{
    changedFiles = 0;
    for (const Reader& reader : readers) {
        kind = reader.kind;
        if (kind != BRIDGING && kind != PAT_V1 && kind != PAT_V2)
            continue;
        for (int records = 1; records < 12; ++records) {
            for (int next = 0; next < CHANGES; ++next) {
                for (int opening = 1; opening < 6; ++opening) {
                    prepare(records, static_cast<Change>(next));
                    memset(array, UNREAD, sizeof array);
                    test::clearMessages();
                    test::beforeOpen(opening, changeFile);
                    reader.read(array, records, nullptr);
                    test::beforeOpen(0, nullptr);
                    if (!changeHappened)
                        break;
                    ++changedFiles;
                    /* The caller sizes the array before the bridging reader counts: it cannot know of a later
                     * change. */
                    if (kind != BRIDGING || opening > 1)
                        expectThat(restIsUnread(recordSize(kind) * static_cast<size_t>(records)), reader.name,
                                   opening, "written past the array");
                    if (kind == PAT_V1) /* it leaks the stream of an empty file */
                        test::closeLeftStreams();
                    expectThat(test::openStreams() == 0, reader.name, opening, "stream leaked");
                }
            }
        }
    }
    rmdir("f");
    printf("files changed during a reader that counts: %ld\n", changedFiles);
    EXPECT_GT(changedFiles, 400);
}
