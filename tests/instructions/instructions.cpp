/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Runs each operation once inside the function measured(), so that a tool can count its
 * instructions. Prints the operations in the order of their runs: kind, operation,
 * records, side.
 *
 *     instruction_counts DIRECTORY            all rows
 *     instruction_counts DIRECTORY ROW TIMES  row number ROW, TIMES times
 *
 * It needs only the C library, so that it runs on the target too.
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "calls.h"
#include "formatted.h"
#include "samples.h"

int g_yra_debug = 0;
void libzo_log(const char*, ...) {}

enum class Operation { READ, WRITE, CHANGE };

static char path[4096];
enum { ALL_ROWS = -1 };
static int wanted = ALL_ROWS;
static int times = 1;
static int row;

template <typename Record> struct Job {
    Operation operation;
    Change how;
    Record* records;
    Record* loaded;
    int count;
    Record income;
};

template <typename Calls, typename Record> static bool change(Change how, Record* income)
{
    return Calls::change(path, how, income);
}
/* These records have no update. */
template <typename Calls> static bool change(Change, PatParameterV2*)
{
    return false;
}
template <typename Calls> static bool change(Change, ScoreInfo*)
{
    return false;
}

template <typename Calls, typename Record> static bool perform(Job<Record>& job)
{
    switch (job.operation) {
    case Operation::READ:
        return Calls::read(path, job.loaded, job.count);
    case Operation::WRITE:
        return Calls::write(path, job.records, job.count);
    default:
        return change<Calls>(job.how, &job.income);
    }
}

/* The tool counts the instructions of this function and of its callees. */
extern "C" __attribute__((noinline)) bool measured(bool (*run)(void*), void* job)
{
    return run(job);
}

template <typename Calls, typename Record> static bool runJob(void* job)
{
    return perform<Calls>(*static_cast<Job<Record>*>(job));
}

static void require(bool condition, const char* what)
{
    if (!condition) {
        fprintf(stderr, "instruction_counts: %s\n", what);
        exit(1);
    }
}

template <typename Record>
static void count(const char* kind, const char* operation, const char* side, bool (*run)(void*),
                  Job<Record>& job)
{
    if (wanted != row++ && wanted != ALL_ROWS)
        return;
    printf("%s %s %d %s\n", kind, operation, job.count, side);
    for (int i = 0; i < job.count; ++i)
        makeSample(&job.records[i], i, 0);
    makeSample(&job.income, job.how == Change::APPEND ? job.count : job.count / 2, 1);
    require(FormattedCalls::write(path, job.records, job.count), path);
    for (int i = 0; i < times; ++i)
        require(measured(run, &job), operation);
}

template <typename Record> static void countBoth(const char* kind, const char* operation, Job<Record>& job)
{
    count(kind, operation, "module", runJob<ModuleCalls, Record>, job);
    count(kind, operation, "formatted", runJob<FormattedCalls, Record>, job);
}

template <typename Record>
static void countKind(const char* kind, int records, const char* change, Change how = Change::APPEND)
{
    Job<Record> job = {Operation::READ, how, nullptr, nullptr, records, {}};
    job.records = static_cast<Record*>(calloc(static_cast<size_t>(records), sizeof(Record)));
    job.loaded = static_cast<Record*>(calloc(static_cast<size_t>(records), sizeof(Record)));
    require(job.records != nullptr && job.loaded != nullptr, "no memory");
    if (how != Change::ERASE) { /* an earlier job has measured read and write */
        countBoth(kind, "read", job);
        job.operation = Operation::WRITE;
        countBoth(kind, "write", job);
    }
    job.operation = Operation::CHANGE;
    if (change != nullptr)
        countBoth(kind, change, job);
    free(job.records);
    free(job.loaded);
}

int main(int argc, char** argv)
{
    if (argc != 2 && argc != 4) {
        fprintf(stderr, "usage: instruction_counts DIRECTORY [ROW TIMES]\n");
        return 2;
    }
    snprintf(path, sizeof path, "%s/records.txt", argv[1]);
    if (argc == 4) {
        wanted = atoi(argv[2]);
        times = atoi(argv[3]);
    }
    countKind<BridgingNodeV2>("bridging-fap", ALG_FAP_BRIDGING_CAP, "update");
    countKind<BridgingNodeV2>("bridging-re", 200, "update", Change::REPLACE);
    countKind<StaConnection>("stations", ALG_STATION_CAP, "append");
    countKind<ScanningInfo>("scanning", ALG_SCANNING_CAP, "append");
    countKind<ScanningInfo>("scanning", ALG_SCANNING_CAP, "delete", Change::ERASE);
    countKind<TimeDelayInfo>("time-delay", 30, "update", Change::REPLACE);
    countKind<TimeDelayInfo>("time-delay", ALG_TIME_DELAY_CAP, "append");
    countKind<ApInfoAllV2>("ap-all", 30, "update", Change::REPLACE);
    countKind<ApRank>("ap-rank", 30, "update", Change::REPLACE);
    countKind<PatParameterV2>("pat", 30, nullptr);
    countKind<ScoreInfo>("scores", 30, nullptr);
    unlink(path);
    return 0;
}
