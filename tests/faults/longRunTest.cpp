/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Many updates on one file of each kind that has updates: descriptors, memory
 * and the file's length stay where they are, and the caps hold at every step.
 */
#ifndef _GNU_SOURCE
#define _GNU_SOURCE
#endif
#define _FILE_OFFSET_BITS 64
#include "operations.h"

#include <dirent.h>
#if defined(__GLIBC__)
#include <malloc.h>
#endif

#if defined(__SANITIZE_ADDRESS__)
enum { RUN = 5000, AT_CAP = 300, LOOKS = 10 };
#else
enum { RUN = 100000, AT_CAP = 5000, LOOKS = 50 };
#endif

/* ---- What the process holds --------------------------------------------- */

static int openDescriptors()
{
    DIR* directory = opendir("/proc/self/fd");
    if (directory == nullptr)
        return -1;
    int count = 0;
    while (readdir(directory) != nullptr)
        ++count;
    closedir(directory);
    return count;
}

/* Bytes that the C library has given out; 0 where it does not tell. */
static size_t heapBytes()
{
#if defined(__GLIBC__) && (__GLIBC__ > 2 || __GLIBC_MINOR__ >= 33)
    return mallinfo2().uordblks;
#else
    return 0;
#endif
}

struct Holding {
    int descriptors;
    size_t heap;
};

static Holding held()
{
    return {openDescriptors(), heapBytes()};
}

static void expectHeld(const Holding& before)
{
    const Holding now = held();
    EXPECT_EQ(before.descriptors, now.descriptors);
    EXPECT_EQ(before.heap, now.heap);
    EXPECT_EQ(0, test::heldArrays());
    EXPECT_EQ(0, test::openStreams());
}

/*
 * Runs `step(i)` `count` times and looks at what the process holds now and
 * then. A step returns whether all was as it should be.
 */
static void runLong(const char* name, int count, bool (*step)(int i))
{
    int good = 0;
    Holding before = {0, 0};
    for (int i = 0; i < count; ++i) {
        test::clearMessages();
        if (i == count / LOOKS) /* what the C library keeps for itself is there by now */
            before = held();
        good += step(i);
        if (i > count / LOOKS && i % (count / LOOKS) == 0)
            expectHeld(before);
    }
    EXPECT_EQ(count, good);
    expectHeld(before);
    printf("%s: %d updates, file of %ld bytes\n", name, count, test::fileSize("f"));
}

/* ---- Updates of a key --------------------------------------------------- */

static char file[FILE_ROOM];
static size_t size;

static const Update& updateNamed(const char* name)
{
    int i = 0;
    while (strcmp(updates[i].name, name) != 0)
        ++i;
    return updates[i];
}

static void startWith(Kind kind, int records)
{
    size = exampleFile(kind, records, file);
    test::writeBytes("f", file, size);
}

/* Record i % 3 of the file is stored over itself: the file stays byte for byte. */
static bool storeAgain(const char* name, int i)
{
    const Update& update = updateNamed(name);
    AnyRecord record;
    fillRecord(update.rule.kind, 1 + i % 3, &record);
    return update.run(&record) && test::fileSize("f") == static_cast<long>(size) &&
           (i % 1000 != 0 || fileIs(file, size));
}

TEST(LongRun, apAllUpdate)
{
    startWith(AP_ALL, 4);
    runLong("AP-all update", RUN, [](int i) { return storeAgain("updataSingleApAllInfo", i); });
}

TEST(LongRun, bridgingUpdateOfAnRe)
{
    startWith(BRIDGING, 4);
    runLong("bridging update, RE", RUN, [](int i) { return storeAgain("updateSingleBridgingInfo, RE", i); });
}

TEST(LongRun, apRankUpdate)
{
    startWith(AP_RANK, 4);
    runLong("AP rank update", RUN, [](int i) { return storeAgain("updataSingleApRankInfo", i); });
}

TEST(LongRun, timeDelayUpdate)
{
    TimeDelayInfo delays[4];
    for (int i = 0; i < 4; ++i) { /* within the bounds, so that a load changes nothing */
        fillRecord(TIME_DELAY, i, &delays[i]);
        for (uint16_t& time : delays[i].delayTime)
            time = static_cast<uint16_t>(time > 1000 ? 1000 : time + 1);
    }
    size = printRecords(TIME_DELAY, delays, 4, file);
    test::writeBytes("f", file, size);
    runLong("time delay update", RUN, [](int i) {
        TimeDelayInfo* loaded = static_cast<TimeDelayInfo*>(calloc(4, sizeof(TimeDelayInfo)));
        bool good = timeDelayInfoReader("f", loaded, 4) && updateSingleTimeDelayInfo("f", &loaded[i % 4]);
        free(loaded);
        good = good && test::fileSize("f") == static_cast<long>(size);
        return good && (i % 1000 != 0 || fileIs(file, size));
    });
}

TEST(LongRun, patUpdate)
{
    PatParameterV2 pat;
    fillRecord(PAT_V2, 1, &pat);
    size = printRecords(PAT_V2, &pat, 1, file);
    runLong("PAT update", RUN, [](int) {
        PatParameterV2 record;
        fillRecord(PAT_V2, 1, &record);
        return !updateSinglePatV2("f", &record) && test::fileSize("f") == static_cast<long>(size);
    });
    EXPECT_TRUE(fileIs(file, size));
}

/* One node goes and comes back: the length is the same after every two. */
TEST(LongRun, apAllDelete)
{
    startWith(AP_ALL, 4);
    runLong("AP-all delete and insert", RUN, [](int i) {
        AnyRecord record;
        fillRecord(AP_ALL, i / 2 % 4, &record);
        const bool deletes = i % 2 == 0;
        const bool done =
            updateNamed(deletes ? "deleteSingleApAllInfo" : "updataSingleApAllInfo").run(&record);
        const long now = test::fileSize("f");
        return done && (deletes ? now < static_cast<long>(size) : now == static_cast<long>(size));
    });
}

/* ---- Histories ---------------------------------------------------------- */

/* Lines of "f", counted apart from the module. */
static int linesNow()
{
    static char now[FILE_ROOM];
    const long length = test::readBytes("f", now, sizeof now);
    int lines = 0;
    for (long i = 0; i < length; ++i)
        lines += now[i] == '\n';
    return lines;
}

static const Update* history;
static AnyRecord sample;
static long lineLength;

/* Adds the sample; the file then holds one line more than before, up to the cap, and all lines are alike. */
static bool addSample(int lines)
{
    const int cap = history->rule.cap;
    const int wanted = lines + 1 < cap ? lines + 1 : cap;
    return history->run(&sample) && linesNow() == wanted && test::fileSize("f") == wanted * lineLength;
}

/*
 * A history from nothing to over its cap and on, and then many short ones,
 * each begun anew by emptying the file.
 */
static void runHistory(const char* name)
{
    history = &updateNamed(name);
    fillRecord(history->rule.kind, 20, &sample);
    if (history->rule.kind == SCANNING)
        sample.scan.rssi = 1; /* as low as it gets: a load changes nothing */
    if (history->rule.kind == TIME_DELAY) {
        for (uint16_t& time : sample.delay.delayTime)
            time = static_cast<uint16_t>(time > 1000 ? 1000 : time);
    }
    lineLength = static_cast<long>(printRecords(history->rule.kind, &sample, 1, file));
    test::writeFile("f", "");
    runLong(name, AT_CAP, [](int i) { return addSample(i); });
    EXPECT_EQ(history->rule.cap, linesNow());
    runLong(name, RUN - AT_CAP, [](int i) {
        if (i % 8 == 0)
            test::writeFile("f", "");
        return addSample(i % 8);
    });
}

TEST(LongRun, bridgingLogOfTheFap)
{
    runHistory("updateSingleBridgingInfo, FAP");
}
TEST(LongRun, stationAppend)
{
    runHistory("stationInfoAppendWriter");
}
TEST(LongRun, scanningAppend)
{
    runHistory("appendScanningInfo");
}
TEST(LongRun, scanningSingleAppend)
{
    runHistory("appendSingleScanningInfo");
}
TEST(LongRun, timeDelayAppend)
{
    runHistory("appendSingleTimeDelayInfo");
}

/* Sightings of one AP come, and go. */
TEST(LongRun, scanningDelete)
{
    startWith(SCANNING, 3);
    runLong("scanning append and delete", RUN, [](int i) {
        ScanningInfo scans[2];
        fillRecord(SCANNING, 20, &scans[0]);
        fillRecord(SCANNING, 20, &scans[1]);
        const bool done =
            i % 2 == 0 ? appendScanningInfo("f", scans, 2) : scanningInfoDeleter("f", scans[0].deviceMAC);
        return done && linesNow() == (i % 2 == 0 ? 5 : 3) &&
               test::fileSize("f") == static_cast<long>(i % 2 == 0 ? size / 3 * 5 : size);
    });
}
