/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Many updates of one file, for each kind that has updates. The open descriptors, the
 * allocated memory and the length of the file do not grow, and no step exceeds a cap.
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
enum { STEPS = 5000, STEPS_AT_CAP = 300, CHECKS = 10 };
#else
enum { STEPS = 100000, STEPS_AT_CAP = 5000, CHECKS = 50 };
#endif

/* ---- Resources of the process ------------------------------------------- */

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

/* Allocated bytes of the heap; 0 if the C library does not report them. */
static size_t heapBytes()
{
#if defined(__GLIBC__) && (__GLIBC__ > 2 || __GLIBC_MINOR__ >= 33)
    return mallinfo2().uordblks;
#else
    return 0;
#endif
}

struct Resources {
    int descriptors;
    size_t heap;
};

static Resources usedResources()
{
    return {openDescriptors(), heapBytes()};
}

static void expectUnchanged(const Resources& before)
{
    const Resources now = usedResources();
    EXPECT_EQ(before.descriptors, now.descriptors);
    EXPECT_EQ(before.heap, now.heap);
    EXPECT_EQ(0, test::heldArrays());
    EXPECT_EQ(0, test::openStreams());
}

/*
 * Runs `step(i)` `count` times and checks the resources of the process at intervals.
 * A step returns whether its own expectations are met.
 */
static void runLong(const char* name, int count, bool (*step)(int i))
{
    int passed = 0;
    Resources before = {0, 0};
    for (int i = 0; i < count; ++i) {
        test::clearMessages();
        if (i == count / CHECKS) /* by now, the C library has allocated its own buffers */
            before = usedResources();
        passed += step(i);
        if (i > count / CHECKS && i % (count / CHECKS) == 0)
            expectUnchanged(before);
    }
    EXPECT_EQ(count, passed);
    expectUnchanged(before);
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

/* Replaces one of three records by itself: the file does not change. */
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
    runLong("AP-all update", STEPS, [](int i) { return storeAgain("updataSingleApAllInfo", i); });
}

TEST(LongRun, bridgingUpdateOfAnRe)
{
    startWith(BRIDGING, 4);
    runLong("bridging update, RE", STEPS,
            [](int i) { return storeAgain("updateSingleBridgingInfo, RE", i); });
}

TEST(LongRun, apRankUpdate)
{
    startWith(AP_RANK, 4);
    runLong("AP rank update", STEPS, [](int i) { return storeAgain("updataSingleApRankInfo", i); });
}

TEST(LongRun, timeDelayUpdate)
{
    TimeDelayInfo delays[4];
    for (int i = 0; i < 4; ++i) { /* within the bounds of the reader, so that it changes no value */
        fillRecord(TIME_DELAY, i, &delays[i]);
        for (uint16_t& time : delays[i].delayTime)
            time = static_cast<uint16_t>(time > 1000 ? 1000 : time + 1);
    }
    size = printRecords(TIME_DELAY, delays, 4, file);
    test::writeBytes("f", file, size);
    runLong("time delay update", STEPS, [](int i) {
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
    runLong("PAT update", STEPS, [](int) {
        PatParameterV2 record;
        fillRecord(PAT_V2, 1, &record);
        return !updateSinglePatV2("f", &record) && test::fileSize("f") == static_cast<long>(size);
    });
    EXPECT_TRUE(fileIs(file, size));
}

/* Deletes a node and inserts it again: the length is the same after every second step. */
TEST(LongRun, apAllDelete)
{
    startWith(AP_ALL, 4);
    runLong("AP-all delete and insert", STEPS, [](int i) {
        AnyRecord record;
        fillRecord(AP_ALL, i / 2 % 4, &record);
        const bool deletes = i % 2 == 0;
        const bool succeeded =
            updateNamed(deletes ? "deleteSingleApAllInfo" : "updataSingleApAllInfo").run(&record);
        const long now = test::fileSize("f");
        return succeeded && (deletes ? now < static_cast<long>(size) : now == static_cast<long>(size));
    });
}

/* ---- Histories ---------------------------------------------------------- */

/* The number of lines of "f", counted without the module. */
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

/* Adds the sample: the file has one more line, at most as many as the cap. All lines are equally long. */
static bool addSample(int lines)
{
    const int cap = history->rule.cap;
    const int expected = lines + 1 < cap ? lines + 1 : cap;
    return history->run(&sample) && linesNow() == expected && test::fileSize("f") == expected * lineLength;
}

/*
 * Fills a history from an empty file beyond its cap, then starts many short ones, each
 * by emptying the file.
 */
static void runHistory(const char* name)
{
    history = &updateNamed(name);
    fillRecord(history->rule.kind, 20, &sample);
    if (history->rule.kind == SCANNING)
        sample.scan.rssi = 1; /* the lowest value, so that a read changes nothing */
    if (history->rule.kind == TIME_DELAY) {
        for (uint16_t& time : sample.delay.delayTime)
            time = static_cast<uint16_t>(time > 1000 ? 1000 : time);
    }
    lineLength = static_cast<long>(printRecords(history->rule.kind, &sample, 1, file));
    test::writeFile("f", "");
    runLong(name, STEPS_AT_CAP, [](int i) { return addSample(i); });
    EXPECT_EQ(history->rule.cap, linesNow());
    runLong(name, STEPS - STEPS_AT_CAP, [](int i) {
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

/* Appends two sightings of one AP and deletes them again. */
TEST(LongRun, scanningDelete)
{
    startWith(SCANNING, 3);
    runLong("scanning append and delete", STEPS, [](int i) {
        ScanningInfo scans[2];
        fillRecord(SCANNING, 20, &scans[0]);
        fillRecord(SCANNING, 20, &scans[1]);
        const bool succeeded =
            i % 2 == 0 ? appendScanningInfo("f", scans, 2) : scanningInfoDeleter("f", scans[0].deviceMAC);
        return succeeded && linesNow() == (i % 2 == 0 ? 5 : 3) &&
               test::fileSize("f") == static_cast<long>(i % 2 == 0 ? size / 3 * 5 : size);
    });
}
