/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Runs every function once, on files at their caps, and prints its use of the heap, then
 * the size of every record. scripts/footprint reads the output.
 *
 * The module allocates with calloc and realloc. The C library allocates streams with
 * malloc, in fopen or at the first use of the stream.
 */
#include <stddef.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "dataInterface.h"

int g_yra_debug = 0;
void libzo_log(const char*, ...) {}

/* ---- The heap ----------------------------------------------------------- */

struct Account {
    int allocations;
    int growths;
    size_t allocated;
    size_t peak;
};

static Account module;
static Account library;

struct Block {
    void* start;
    size_t size;
    Account* account;
};
static Block blocks[64];
static bool measuring;
static bool inModuleCall; /* inside calloc or realloc, which may call malloc */

static Block* findBlock(const void* start)
{
    for (Block& block : blocks) {
        if (block.start == start)
            return &block;
    }
    return nullptr;
}

static void charge(Account& account, size_t size)
{
    account.allocated += size;
    if (account.allocated > account.peak)
        account.peak = account.allocated;
}

static void* remember(void* start, size_t size, Account& account)
{
    if (!measuring || start == nullptr)
        return start;
    Block* block = findBlock(nullptr);
    if (block == nullptr)
        abort();
    *block = {start, size, &account};
    charge(account, size);
    return start;
}

static void forget(const void* start)
{
    Block* block = start == nullptr ? nullptr : findBlock(start);
    if (block == nullptr)
        return;
    block->account->allocated -= block->size;
    block->start = nullptr;
}

extern "C" {
void* __real_malloc(size_t size);
void* __real_calloc(size_t count, size_t size);
void* __real_realloc(void* start, size_t size);
void __real_free(void* start);

void* __wrap_malloc(size_t size)
{
    if (inModuleCall)
        return __real_malloc(size);
    library.allocations += measuring;
    return remember(__real_malloc(size), size, library);
}

void* __wrap_calloc(size_t count, size_t size)
{
    inModuleCall = true;
    void* start = __real_calloc(count, size);
    inModuleCall = false;
    module.allocations += measuring;
    return remember(start, count * size, module);
}

/* The worst case: the old block and the new one exist at the same time, while realloc copies. */
void* __wrap_realloc(void* start, size_t size)
{
    inModuleCall = true;
    void* grown = __real_realloc(start, size);
    inModuleCall = false;
    module.growths += measuring;
    remember(grown, size, module);
    forget(start);
    return grown;
}

void __wrap_free(void* start)
{
    forget(start);
    __real_free(start);
}
}

/* ---- Files and records at the caps -------------------------------------- */

enum {
    NODES = ALG_RANK_INDEX_CAPACITY, /* also for the files without a cap */
    BRIDGES = ALG_FAP_BRIDGING_CAP,
    SAMPLES = ALG_STATION_CAP,
    SIGHTINGS = ALG_SCANNING_CAP,
    DELAYS = ALG_TIME_DELAY_CAP
};

/* Large enough for any call; zero except for the members set below. */
static ApNodeV2 nodes[NODES];
static ApInfoAllV2 infos[NODES];
static BridgingNodeV2 bridges[BRIDGES];
static StaConnection stations[2 * SAMPLES];
static CandidateAp candidates[NODES];
static PatParameter pats[NODES];
static PatParameterV2 patsV2[NODES];
static AlgPatParameter algPats[NODES];
static AlgPatParameterV2 algPatsV2[NODES];
static ScanningInfo scans[SIGHTINGS];
static TimeDelayInfo delays[DELAYS];
static ScoreInfo scores[NODES];
static ApRank ranks[NODES];
static ApRankIndex rankIndex;
static ApAlgInterfaceOutput output;
static char pool[NODES][ALG_MAC_SIZE];
static char known[ALG_MAC_SIZE] = "aabbccdd0007";
static char unknown[ALG_MAC_SIZE] = "aabbccddffff";

template <typename T, size_t n> static void name(T (&records)[n], char (T::*mac)[ALG_MAC_SIZE])
{
    for (size_t i = 0; i < n; ++i)
        snprintf(records[i].*mac, ALG_MAC_SIZE, "aabbccdd%04u", static_cast<unsigned>(i) % 10000);
}

static void fillRecords()
{
    name(nodes, &ApNodeV2::deviceMAC);
    name(nodes, &ApNodeV2::fatherDeviceMAC);
    for (int i = 0; i < NODES; ++i)
        infos[i].apNodeV2 = nodes[i];
    name(bridges, &BridgingNodeV2::deviceMAC);
    name(bridges, &BridgingNodeV2::fatherDeviceMAC);
    name(stations, &StaConnection::deviceMac);
    name(stations, &StaConnection::apMac);
    name(candidates, &CandidateAp::apMac);
    name(pats, &PatParameter::deviceMac);
    name(patsV2, &PatParameterV2::deviceMac);
    for (PatParameterV2& pat : patsV2)
        pat.commonPatNum = ALG_PAT_CAPACITY;
    name(algPatsV2, &AlgPatParameterV2::deviceMac);
    name(scans, &ScanningInfo::deviceMAC);
    name(scans, &ScanningInfo::neighbourMAC);
    name(delays, &TimeDelayInfo::fatherMAC);
    name(scores, &ScoreInfo::fatherMAC);
    name(ranks, &ApRank::deviceMAC);
    name(ranks, &ApRank::ethFatherMAC);
    rankIndex.cnt = NODES;
    name(rankIndex.apRank, &ApThrRank::deviceMAC);
    name(rankIndex.apRank, &ApThrRank::fatherMAC);
    memcpy(output.srcMAC, known, sizeof known);
    memcpy(output.dstMAC, unknown, sizeof unknown);
}

static bool fillFiles()
{
    bool written = apNodeInfoWriterV2("node", NODES, nodes) && apAllInfoWriter("all", infos, NODES, false);
    written &= apAllDetailInfoWriter("detail", infos, NODES, false);
    written &= bridgingApNodeInfoWriter("bridging", bridges, BRIDGES);
    written &= stationNodeInfoWriter("station", stations, SAMPLES);
    written &= candidateApNodeInfoWriter("candidate", candidates, NODES);
    written &= patParameterWriterV2("pat2", NODES, patsV2, nullptr);
    written &= scanningInfoWriter("scanning", scans, SIGHTINGS);
    written &= timeDelayInfoWriter("delay", delays, DELAYS) && scoreInfoWriter("score", scores, NODES);
    written &= apRankInfoWriter("rank", ranks, NODES) && apRankIndexInfoWriter("index", &rankIndex);
    written &= apAlgOutputInfoWriter("output", &output) && emptyTimeDelayFile("empty");
    remove("missing");
    return written;
}

/* Version 1 has no writer. */
static void fillPatV1()
{
    FILE* file = fopen("pat1", "w");
    if (file == nullptr)
        abort();
    for (int i = 0; i < NODES; ++i) {
        fprintf(file, "aabbccdd%04d", i);
        for (int k = 0; k < 2 * ALG_PAT_CAPACITY; ++k)
            fprintf(file, " %d", 255);
        fprintf(file, "\n");
    }
    fclose(file);
}

/* ---- One call of each function ------------------------------------------ */

template <typename T> static void setMac(T& record, char (T::*mac)[ALG_MAC_SIZE], const char* value)
{
    memcpy(record.*mac, value, ALG_MAC_SIZE);
}

static ApInfoAllV2 newInfo;
static BridgingNodeV2 newBridge;
static ApRank newRank;
static TimeDelayInfo newDelay;

struct Call {
    const char* function;
    void (*run)();
};

static const Call calls[] = {
    {"dataLineCounter", [] { dataLineCounter("scanning"); }},
    {"touchFile", [] { touchFile("missing"); }},
    {"apNodeInfoWriterV2", [] { apNodeInfoWriterV2("node", NODES, nodes); }},
    {"apNodeInfoReaderV2", [] { apNodeInfoReaderV2("node", NODES, nodes, pool); }},
    {"apAllInfoWriter", [] { apAllInfoWriter("all", infos, NODES, false); }},
    {"apAllInfoOnlyReader", [] { apAllInfoOnlyReader("all", infos, NODES, pool); }},
    {"apAllInfoReader", [] { apAllInfoReader("all", infos, NODES, pool); }},
    {"apAllDetailInfoWriter", [] { apAllDetailInfoWriter("detail", infos, NODES, false); }},
    {"apAllDetailInfoReader", [] { apAllDetailInfoReader("detail", infos, NODES, pool); }},
    {"updataSingleApAllInfo", [] { updataSingleApAllInfo("all", &newInfo); }},
    {"deleteSingleApAllInfo", [] { deleteSingleApAllInfo("all", known); }},
    {"bridgingApNodeInfoReader", [] { bridgingApNodeInfoReader("bridging", bridges); }},
    {"bridgingApNodeInfoWriter", [] { bridgingApNodeInfoWriter("bridging", bridges, BRIDGES); }},
    {"updateSingleBridgingInfo", [] { updateSingleBridgingInfo("bridging", &newBridge, true); }},
    {"stationInfoOnlyReader", [] { stationInfoOnlyReader("station", stations); }},
    {"stationNodeInfoReader", [] { stationNodeInfoReader("station", "station", stations); }},
    {"stationNodeInfoWriter", [] { stationNodeInfoWriter("station", stations, SAMPLES); }},
    {"stationInfoAppendWriter", [] { stationInfoAppendWriter("station", stations, 1); }},
    {"mimoSync", [] { mimoSync(stations, SAMPLES); }},
    {"candidateApNodeInfoReader", [] { candidateApNodeInfoReader("candidate", candidates); }},
    {"candidateApNodeInfoWriter", [] { candidateApNodeInfoWriter("candidate", candidates, NODES); }},
    {"patParameterReader", [] { patParameterReader("pat1", NODES, pats); }},
    {"patParameterReaderV2", [] { patParameterReaderV2("pat2", NODES, patsV2); }},
    {"patParameterWriterV2", [] { patParameterWriterV2("pat2", NODES, patsV2, pool); }},
    {"updateSinglePatV2", [] { updateSinglePatV2("pat2", patsV2); }},
    {"patInitV2", [] { patInitV2("pat2", known); }},
    {"patInt2Alg", [] { patInt2Alg(NODES, pats, algPats); }},
    {"patInt2AlgV2", [] { patInt2AlgV2(NODES, patsV2, algPatsV2); }},
    {"patAlg2IntV2", [] { patAlg2IntV2(NODES, patsV2, algPatsV2); }},
    {"getPeekThr", [] { getPeekThr(4, 3, 2); }},
    {"ai_alg_set_patc_comp", [] { ai_alg_set_patc_comp(10); }},
    {"scanningInfoReader", [] { scanningInfoReader("scanning", scans); }},
    {"scanningInfoWriter", [] { scanningInfoWriter("scanning", scans, SIGHTINGS); }},
    {"scanningInfoDeleter", [] { scanningInfoDeleter("scanning", known); }},
    {"appendScanningInfo", [] { appendScanningInfo("scanning", scans, 1); }},
    {"appendSingleScanningInfo", [] { appendSingleScanningInfo("scanning", scans); }},
    {"timeDelayInfoReader", [] { timeDelayInfoReader("delay", delays, DELAYS); }},
    {"timeDelayInfoWriter", [] { timeDelayInfoWriter("delay", delays, DELAYS); }},
    {"emptyTimeDelayFile", [] { emptyTimeDelayFile("empty"); }},
    {"updateSingleTimeDelayInfo", [] { updateSingleTimeDelayInfo("delay", &newDelay); }},
    {"appendSingleTimeDelayInfo", [] { appendSingleTimeDelayInfo("delay", &newDelay); }},
    {"scoreInfoWriter", [] { scoreInfoWriter("score", scores, NODES); }},
    {"scoreInfoReader", [] { scoreInfoReader("score", scores, NODES); }},
    {"scoreInfoCntReader", [] { scoreInfoCntReader("score"); }},
    {"apRankInfoReader", [] { apRankInfoReader("rank", ranks); }},
    {"apRankInfoWriter", [] { apRankInfoWriter("rank", ranks, NODES); }},
    {"updataSingleApRankInfo", [] { updataSingleApRankInfo("rank", &newRank); }},
    {"apRankIndexInfoReader", [] { apRankIndexInfoReader("index", &rankIndex); }},
    {"apRankIndexInfoWriter", [] { apRankIndexInfoWriter("index", &rankIndex); }},
    {"apAlgOutputInfoReader", [] { apAlgOutputInfoReader("output", &output); }},
    {"apAlgOutputInfoWriter", [] { apAlgOutputInfoWriter("output", &output); }},
};

static void measure(const Call& call)
{
    fillRecords();
    if (!fillFiles())
        abort();
    module = {};
    library = {};
    measuring = true;
    call.run();
    measuring = false;
    printf("call %s %d %d %lu %d %lu\n", call.function, module.allocations, module.growths,
           static_cast<unsigned long>(module.peak), library.allocations,
           static_cast<unsigned long>(library.peak));
    if (module.allocated != 0 || library.allocated != 0) {
        printf("%s: leaked memory\n", call.function);
        exit(1);
    }
}

#define PRINT_SIZE(record) printf("record " #record " %lu\n", static_cast<unsigned long>(sizeof(record)))

static void printSizes()
{
    PRINT_SIZE(ApNodeV2);
    PRINT_SIZE(ApInfoAllV2);
    PRINT_SIZE(BridgingNodeV2);
    PRINT_SIZE(StaConnection);
    PRINT_SIZE(CandidateAp);
    PRINT_SIZE(PatParameter);
    PRINT_SIZE(PatParameterV2);
    PRINT_SIZE(AlgPatParameter);
    PRINT_SIZE(AlgPatParameterV2);
    PRINT_SIZE(ScanningInfo);
    PRINT_SIZE(TimeDelayInfo);
    PRINT_SIZE(ScoreInfo);
    PRINT_SIZE(ApRank);
    PRINT_SIZE(ApRankIndex);
    PRINT_SIZE(ApAlgInterfaceOutput);
}

/* Runs in the directory that the argument names. */
int main(int argc, char** argv)
{
    if (argc != 2 || chdir(argv[1]) != 0) {
        fprintf(stderr, "usage: footprint_memory <directory>\n");
        return 2;
    }
    setvbuf(stdout, nullptr, _IONBF, 0);
    setMac(newInfo.apNodeV2, &ApNodeV2::deviceMAC, unknown);
    setMac(newBridge, &BridgingNodeV2::deviceMAC, unknown);
    setMac(newBridge, &BridgingNodeV2::fatherDeviceMAC, unknown);
    setMac(newRank, &ApRank::deviceMAC, unknown);
    setMac(newDelay, &TimeDelayInfo::fatherMAC, unknown);
    fillPatV1();
    for (const Call& call : calls)
        measure(call);
    printSizes();
    return 0;
}
