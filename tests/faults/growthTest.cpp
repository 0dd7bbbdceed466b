/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A file that grows, shrinks or is replaced while a call of the module works
 * on it: between the count and the read, and before the write. Nothing is
 * written past an array, and what was counted is what is read.
 */
#include "operations.h"

#include <sys/stat.h>
#include <unistd.h>

/* ---- What happens to the file ------------------------------------------- */

enum Change { GROWN, LONG_LINE, BLANK_LINES, ZEROES, SHRUNK, EMPTIED, REMOVED, DIRECTORY, CHANGES };

static Kind kind;
static char original[FILE_ROOM];
static size_t originalSize;
static char changed[FILE_ROOM];
static size_t changedSize;
static Change change;
static bool changeHappened;

static void prepare(int records, Change of)
{
    change = of;
    changeHappened = false;
    originalSize = exampleFile(kind, records, original);
    changedSize = of == GROWN     ? exampleFile(kind, records + 100, changed)
                  : of == SHRUNK  ? exampleFile(kind, records / 2, changed)
                  : of == EMPTIED ? 0
                                  : 9000;
    if (of == LONG_LINE)
        memset(changed, '7', changedSize);
    else if (of == BLANK_LINES)
        memset(changed, '\n', changedSize);
    else if (of == ZEROES)
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

/* Whether the file is as the change has left it. */
static bool fileIsAsChanged()
{
    struct stat status;
    const bool there = stat("f", &status) == 0;
    if (change == REMOVED)
        return !there;
    if (change == DIRECTORY)
        return there && S_ISDIR(status.st_mode);
    return fileIs(changed, changedSize);
}

/* ---- Updates ------------------------------------------------------------ */

static char wanted[FILE_ROOM];
static long growths;

/* A report that names the case, where something does not hold. */
static void expectHeld(bool holds, const char* function, int opening, const char* what)
{
    if (holds)
        return;
    char report[200];
    snprintf(report, sizeof report, "%s, change %d before open %d: %s", function, change, opening, what);
    EXPECT_STREQ("", report);
}

/* The file changes before the `opening`-th open of one update; false when there is no such open. */
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
    ++growths;
    expectHeld(test::brokenGuards() == 0, update.name, opening, "written past an array");
    expectHeld(test::openStreams() == 0 && test::heldArrays() == 0, update.name, opening, "leaked");
    expectHeld(memcmp(&passed, &income, recordSize(kind)) == 0, update.name, opening, "income changed");
    if (change == GROWN) {
        const bool counted = opening > 1;
        const Text read = {counted ? original : changed, counted ? originalSize : changedSize, 0};
        size_t size;
        const bool done = expectUpdate(update.rule, read, &income, wanted, &size);
        expectHeld(result == done || !tellsResult(update), update.name, opening, "result");
        expectHeld(done ? fileIs(wanted, size) : fileIsAsChanged(), update.name, opening, "file");
    } else if (!result) {
        expectHeld(fileIsAsChanged(), update.name, opening, "file touched by a failure");
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
        for (int of = 0; of < CHANGES; ++of) {
            int opening = 1;
            for (prepare(records, static_cast<Change>(of)); runChanged(update, income, opening); ++opening)
                prepare(records, static_cast<Change>(of));
            EXPECT_GE(opening, 2);
            EXPECT_LE(opening, kind == BRIDGING ? 5 : 4);
        }
        memcpy(income.bytes + update.rule.key, second.bytes + update.rule.key, 16);
    }
}

TEST(Growth, updates)
{
    static const int counts[] = {1, 2, 7, 63, 64, 128, 256};
    growths = 0;
    test::guardArrays();
    for (const Update& update : updates) {
        kind = update.rule.kind;
        for (const int records : counts) {
            if (update.rule.rule != OVERWRITE) /* which neither counts nor reads */
                runAllChanges(update, records);
        }
    }
    rmdir("f");
    printf("files changed under an update: %ld\n", growths);
    EXPECT_GT(growths, 3000);
}

/* A guard zone that cannot be broken would show nothing. */
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

/* Whether all bytes from `used` on are as they were. */
static bool restIsUnread(size_t used)
{
    while (used < sizeof array && array[used] == UNREAD)
        ++used;
    return used == sizeof array;
}

TEST(Growth, readersThatCount)
{
    growths = 0;
    for (const Reader& reader : readers) {
        kind = reader.kind;
        if (kind != BRIDGING && kind != PAT_V1 && kind != PAT_V2)
            continue;
        for (int records = 1; records < 12; ++records) {
            for (int of = 0; of < CHANGES; ++of) {
                for (int opening = 1; opening < 6; ++opening) {
                    prepare(records, static_cast<Change>(of));
                    memset(array, UNREAD, sizeof array);
                    test::clearMessages();
                    test::beforeOpen(opening, changeFile);
                    reader.read(array, records, nullptr);
                    test::beforeOpen(0, nullptr);
                    if (!changeHappened)
                        break;
                    ++growths;
                    /* What changes before the bridging reader has counted is the caller's to know. */
                    if (kind != BRIDGING || opening > 1)
                        expectHeld(restIsUnread(recordSize(kind) * static_cast<size_t>(records)), reader.name,
                                   opening, "written past the array");
                    if (kind == PAT_V1) /* it leaves the stream of an empty file */
                        test::closeLeftStreams();
                    expectHeld(test::openStreams() == 0, reader.name, opening, "stream left");
                }
            }
        }
    }
    rmdir("f");
    printf("files changed under a reader that counts: %ld\n", growths);
    EXPECT_GT(growths, 400);
}
