/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A host whose record files survive a power cut. It saves a decision, the rank of a
 * device and a round of delays, each through durably(). Each run adds a round.
 *
 *     durable_host [DIRECTORY]
 *
 * For each kind of change there are two functions. One calls the module, the other
 * compares the file with what was meant. The second one compares all records, because
 * some faults make an update write old records back empty; see docs/security.md.
 */
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "dataInterface.h"
#include "durable.h"

int g_yra_debug = 3;

void libzo_log(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    vfprintf(stderr, format, arguments);
    va_end(arguments);
}

static bool create(const char* path, void* what)
{
    (void)what;
    return touchFile(path);
}

static bool isReadable(const char* path, void* what)
{
    (void)what;
    return dataLineCounter(path) >= 0;
}

/* ---- A writer: the latest decision --------------------------------------- */

static bool writeDecision(const char* path, void* what)
{
    return apAlgOutputInfoWriter(path, what);
}

static bool isDecision(const char* path, void* what)
{
    const ApAlgInterfaceOutput* meant = what;
    ApAlgInterfaceOutput found = {0};
    return apAlgOutputInfoReader(path, &found) && strcmp(found.srcMAC, meant->srcMAC) == 0 &&
           strcmp(found.dstMAC, meant->dstMAC) == 0 && found.algStrategy == meant->algStrategy &&
           found.timeout == meant->timeout;
}

/* ---- An update: the rank of one device ----------------------------------- */

enum { MAX_RANKS = 32, MAX_DELAYS = ALG_TIME_DELAY_CAP };

typedef struct RankUpdate {
    ApRank income;
    int count; /* of the records after the update */
    ApRank meant[MAX_RANKS];
} RankUpdate;

static bool updateRank(const char* path, void* what)
{
    return updataSingleApRankInfo(path, &((RankUpdate*)what)->income);
}

static bool hasMeantRanks(const char* path, void* what)
{
    const RankUpdate* update = what;
    ApRank found[MAX_RANKS] = {0};
    return dataLineCounter(path) == update->count && apRankInfoReader(path, found) &&
           memcmp(found, update->meant, sizeof found) == 0;
}

static bool saveRank(const char* path, ApRank income)
{
    RankUpdate update = {.income = income, .count = dataLineCounter(path)};
    if (update.count < 0 || update.count >= MAX_RANKS || !apRankInfoReader(path, update.meant))
        return false;

    int at = 0;
    while (at < update.count && strcmp(update.meant[at].deviceMAC, income.deviceMAC) != 0)
        ++at;
    update.meant[at] = income;
    update.count += at == update.count;
    return durably(path, updateRank, hasMeantRanks, &update);
}

/* ---- An append: the delays of one round ---------------------------------- */

typedef struct DelayAppend {
    TimeDelayInfo income;
    int count; /* of the records after the append */
    TimeDelayInfo meant[MAX_DELAYS];
} DelayAppend;

static bool appendDelays(const char* path, void* what)
{
    return appendSingleTimeDelayInfo(path, &((DelayAppend*)what)->income);
}

static bool hasMeantDelays(const char* path, void* what)
{
    const DelayAppend* append = what;
    TimeDelayInfo found[MAX_DELAYS] = {0};
    return dataLineCounter(path) == append->count && timeDelayInfoReader(path, found, append->count) &&
           memcmp(found, append->meant, sizeof found) == 0;
}

static bool saveDelays(const char* path, TimeDelayInfo income)
{
    DelayAppend append = {.income = income, .count = dataLineCounter(path)};
    if (append.count < 0 || append.count > MAX_DELAYS ||
        !timeDelayInfoReader(path, append.meant, append.count))
        return false;

    if (append.count == MAX_DELAYS) { /* the append evicts the oldest record */
        memmove(append.meant, append.meant + 1, sizeof append.meant - sizeof append.meant[0]);
        --append.count;
    }
    append.meant[append.count++] = income;
    return durably(path, appendDelays, hasMeantDelays, &append);
}

/* ---- One round ------------------------------------------------------------ */

int main(int argc, char** argv)
{
    const char* directory = argc > 1 ? argv[1] : ".";
    char decision[4096];
    char ranks[4096];
    char delays[4096];
    snprintf(decision, sizeof decision, "%s/durable_decision.txt", directory);
    snprintf(ranks, sizeof ranks, "%s/durable_ranks.txt", directory);
    snprintf(delays, sizeof delays, "%s/durable_delays.txt", directory);

    ApAlgInterfaceOutput roam = {"0a4e00000002", "0a4e00000003", ALG_STRATEGY_CAREFUL, 60};
    const ApRank attic = {"0a4e00000003", "000000000000", 2};
    const TimeDelayInfo round = {"0a4e00000001", {3, 4, 3, 5, 3, 3, 4, 3, 3, 6, 3, 3, 4, 3, 3}};

    const bool saved = durably(ranks, create, isReadable, NULL) &&
                       durably(delays, create, isReadable, NULL) &&
                       durably(decision, writeDecision, isDecision, &roam) && saveRank(ranks, attic) &&
                       saveDelays(delays, round);
    if (!saved)
        return EXIT_FAILURE;
    printf("saved 1 decision, %d rank, %d round(s) of delays\n", dataLineCounter(ranks),
           dataLineCounter(delays));
    return EXIT_SUCCESS;
}
