/* SPDX-License-Identifier: Apache-2.0 */
#include "recordFiles.h"

#include <stdarg.h>

const char* const kindNames[KINDS] = {"AP node",   "AP-all",  "AP detail",  "bridging", "station",
                                      "candidate", "PAT v1",  "PAT v2",     "scanning", "time delay",
                                      "score",     "AP rank", "rank index", "output"};

static const size_t recordSizes[KINDS] = {
    sizeof(ApNodeV2),      sizeof(ApInfoAllV2),         sizeof(ApInfoAllV2),  sizeof(BridgingNodeV2),
    sizeof(StaConnection), sizeof(CandidateAp),         sizeof(PatParameter), sizeof(PatParameterV2),
    sizeof(ScanningInfo),  sizeof(TimeDelayInfo),       sizeof(ScoreInfo),    sizeof(ApRank),
    sizeof(ApRankIndex),   sizeof(ApAlgInterfaceOutput)};

size_t recordSize(Kind kind)
{
    return recordSizes[kind];
}

/* ---- Example records ---------------------------------------------------- */

/* One MAC with letters, and one that can be taken for a number. */
static void setMacs(char* device, char* father, int i)
{
    snprintf(device, 16, "a1b2c3d4%04x", static_cast<unsigned>(i) & 0xFFFF);
    if (father != nullptr)
        snprintf(father, 16, "11223344%04d", i % 10000);
}

static uint8_t u8(int value)
{
    return static_cast<uint8_t>(value);
}
static uint16_t u16(int value)
{
    return static_cast<uint16_t>(value);
}

static void fillNode(ApNodeV2* node, int i)
{
    setMacs(node->deviceMAC, node->fatherDeviceMAC, i);
    for (int j = 0; j < 5; ++j) {
        node->wirelessChannelUtilization[j] = u8(10 * j + i);
        node->wirelessRxRate[j] = u16(300 * j + i);
        node->wirelessTxRate[j] = u16(3001 * j + i);
        node->offset[j] = u16(13 * j);
    }
    node->plcUtilization = u8(90 + i);
    node->ethernetUtilization = 7;
    node->plcRate = u16(i);
    node->ethernetRate = 1000;
    node->tipc_node = u8(i + 1);
}

static void fillAll(ApInfoAllV2* all, int i)
{
    all->alg_version.major_ver = 2;
    all->alg_version.minor_ver = u8(i);
    fillNode(&all->apNodeV2, i);
    for (int j = 0; j < 5; ++j) {
        AlgWifiMode* mode = &all->algWifiMode[j];
        mode->available = 1;
        mode->NSS = u8(j);
        mode->wifiMode = 6;
        mode->bandWidth = u8(20 * j);
        mode->mcsLevel = 11;
        mode->channel = u8(36 + j);
        mode->reserved = 0;
    }
}

static void fillBridging(BridgingNodeV2* node, int i)
{
    setMacs(node->deviceMAC, node->fatherDeviceMAC, i);
    for (int j = 0; j < 5; ++j) {
        node->bridgingRssi[j] = u8(40 + i);
        node->bridgingRxRate[j] = u16(866 * j);
        node->bridgingTxRate[j] = u16(780 + j);
        node->bridgingRxMcs[j] = u8(j);
        node->bridgingTxMcs[j] = 9;
    }
}

static void fillStation(StaConnection* sta, int i)
{
    sta->id = u16(i);
    setMacs(sta->deviceMac, sta->apMac, i);
    sta->connectBand = u16(i % 3);
    sta->rssi = 45;
    sta->rxRate = 866;
    sta->txRate = 1200;
    sta->rxPackageCount = u16(i);
    sta->txPackageCount = 54321;
    sta->wifimode = 5;
    sta->bandwidth = 80;
    sta->mcslevel = 9;
    sta->mimo = 2;
    sta->kvrCapacity = 7;
    sta->noiselevel = 95;
}

static void fillCandidate(CandidateAp* candidate, int i)
{
    setMacs(candidate->apMac, nullptr, i);
    candidate->connectBand = 1;
    candidate->roamingAvailable = 1;
    candidate->rssi = u8(200 + i);
    candidate->throughput = u16(866 + i);
    candidate->wifimode = 5;
    candidate->bandwidth = 2;
    candidate->mcslevel = 9;
    candidate->mimo = 2;
}

static void fillPatV1(PatParameter* pat, int i)
{
    setMacs(pat->deviceMac, nullptr, i);
    for (int k = 0; k < 100; ++k) {
        pat->bParameter[k] = u16(k + i);
        pat->cParameter[k] = u16(46 * k);
    }
}

static void fillEntry(SinglePat* entry, int i)
{
    entry->isChanged = u8(i % 4);
    entry->bandOrder = u8(i % 5);
    entry->channelWidthOrder = 3;
    entry->mcsOrder = u8(i % 3);
    entry->paraB = u8(64 + i);
    entry->paraC = u16(46094 + i);
}

static void fillPatV2(PatParameterV2* pat, int i)
{
    setMacs(pat->deviceMac, nullptr, i);
    pat->commonPatNum = u8(2 + i % 3);
    for (int k = 0; k < pat->commonPatNum; ++k)
        fillEntry(&pat->singlePat[k], k + i);
}

static void fillScan(ScanningInfo* scan, int i)
{
    setMacs(scan->deviceMAC, scan->neighbourMAC, i);
    scan->band = u8(i % 3);
    scan->channel = u8(36 + i % 100);
    scan->rssi = u8(i % 50);
}

static void fillDelay(TimeDelayInfo* delay, int i)
{
    setMacs(delay->fatherMAC, nullptr, i);
    for (int j = 0; j < 15; ++j)
        delay->delayTime[j] = u16(j * j * j * j / 30 + i);
}

static void fillScore(ScoreInfo* score, int i)
{
    setMacs(score->fatherMAC, nullptr, i);
    score->apRank = u8(i);
    score->hopsFactor = 1.5F + static_cast<float>(i);
    score->timeDelayTestCnt = 15;
    score->timeDelayAverage = u16(30 + i);
    score->timeNormalization = 0.25F;
    score->thrputPredict = 1201;
    for (int j = 0; j < 5; ++j) {
        score->rssi[j] = u8(40 + j);
        score->negoRate[j] = u16(866 * j);
        score->patRate[j] = u16(5000 + j);
    }
}

static void fillRank(ApRank* rank, int i)
{
    setMacs(rank->deviceMAC, rank->ethFatherMAC, i);
    rank->apRank = u8(i);
}

static void fillIndexEntry(ApThrRank* rank, int i)
{
    setMacs(rank->deviceMAC, rank->fatherMAC, i);
    rank->apRank = u8(i);
    rank->throughput = u16(2402 + i);
}

static void fillIndex(ApRankIndex* index, int entries)
{
    index->cnt = u8(entries);
    index->process_re = 1;
    index->alg_strategy = ALG_STRATEGY_REDICAL;
    index->starttime = 4294967295U;
    for (int i = 0; i < entries && i < 30; ++i)
        fillIndexEntry(&index->apRank[i], i);
}

static void fillOutput(ApAlgInterfaceOutput* output, int i)
{
    setMacs(output->srcMAC, output->dstMAC, i);
    output->algStrategy = ALG_STRATEGY_GET_BEST;
    output->timeout = u8(30 + i);
}

void fillRecord(Kind kind, int i, void* record)
{
    memset(record, 0, recordSizes[kind]);
    switch (kind) {
    case AP_NODE:
        return fillNode(static_cast<ApNodeV2*>(record), i);
    case AP_ALL:
    case AP_DETAIL:
        return fillAll(static_cast<ApInfoAllV2*>(record), i);
    case BRIDGING:
        return fillBridging(static_cast<BridgingNodeV2*>(record), i);
    case STATION:
        return fillStation(static_cast<StaConnection*>(record), i);
    case CANDIDATE:
        return fillCandidate(static_cast<CandidateAp*>(record), i);
    case PAT_V1:
        return fillPatV1(static_cast<PatParameter*>(record), i);
    case PAT_V2:
        return fillPatV2(static_cast<PatParameterV2*>(record), i);
    case SCANNING:
        return fillScan(static_cast<ScanningInfo*>(record), i);
    case TIME_DELAY:
        return fillDelay(static_cast<TimeDelayInfo*>(record), i);
    case SCORE:
        return fillScore(static_cast<ScoreInfo*>(record), i);
    case AP_RANK:
        return fillRank(static_cast<ApRank*>(record), i);
    case RANK_INDEX:
        return fillIndex(static_cast<ApRankIndex*>(record), i);
    case OUTPUT:
        return fillOutput(static_cast<ApAlgInterfaceOutput*>(record), i);
    case KINDS:
        break;
    }
}

/* ---- Their text --------------------------------------------------------- */

/* A text that grows at its end. */
struct Out {
    char* text;
    size_t length;
};

static void put(Out& out, const char* format, ...) __attribute__((format(printf, 2, 3)));
static void put(Out& out, const char* format, ...)
{
    va_list args;
    va_start(args, format);
    const int length = vsnprintf(out.text + out.length, FILE_ROOM - out.length, format, args);
    va_end(args);
    out.length += static_cast<size_t>(length);
    if (out.length >= FILE_ROOM)
        abort(); /* a test asks for more than there is room for */
}

static void putNode(Out& out, const ApNodeV2& node)
{
    put(out, "%12s %12s", node.deviceMAC, node.fatherDeviceMAC);
    for (int j = 0; j < 5; ++j)
        put(out, " %d", node.wirelessChannelUtilization[j]);
    put(out, " %d %d", node.plcUtilization, node.ethernetUtilization);
    for (int j = 0; j < 5; ++j)
        put(out, " %d", node.wirelessRxRate[j]);
    for (int j = 0; j < 5; ++j)
        put(out, " %d", node.wirelessTxRate[j]);
    put(out, " %d %d", node.plcRate, node.ethernetRate);
    for (int j = 0; j < 5; ++j)
        put(out, " %d", node.offset[j]);
    put(out, "\n");
}

static void putAll(Out& out, const ApInfoAllV2& all, bool detail)
{
    const ApNodeV2& node = all.apNodeV2;
    if (!detail)
        put(out, "%d %d ", all.alg_version.major_ver, all.alg_version.minor_ver);
    put(out, "%12s %12s %d %d %d %d ", node.deviceMAC, node.fatherDeviceMAC, node.plcUtilization,
        node.plcRate, node.ethernetUtilization, node.ethernetRate);
    if (!detail)
        put(out, "%d ", node.tipc_node);
    for (int j = 0; j < 5; ++j) {
        const AlgWifiMode& mode = all.algWifiMode[j];
        put(out, "%d %d %d %d ", node.wirelessChannelUtilization[j], node.wirelessRxRate[j],
            node.wirelessTxRate[j], node.offset[j]);
        put(out, "%d %d %d %d %d %d %d ", mode.available, mode.NSS, mode.wifiMode, mode.bandWidth,
            mode.mcsLevel, mode.channel, mode.reserved);
    }
    put(out, "\n");
}

static void putBridging(Out& out, const BridgingNodeV2& node)
{
    put(out, "%12s %12s ", node.deviceMAC, node.fatherDeviceMAC);
    for (int j = 0; j < 5; ++j)
        put(out, "%d %d %d %d %d ", node.bridgingRssi[j], node.bridgingRxRate[j], node.bridgingTxRate[j],
            node.bridgingRxMcs[j], node.bridgingTxMcs[j]);
    put(out, "\n");
}

static void putStation(Out& out, const StaConnection& sta, int position)
{
    put(out, "%3d %12s %12s %2d %4d %4d %4d %4d ", position, sta.deviceMac, sta.apMac, sta.connectBand,
        sta.rssi, sta.rxRate, sta.txRate, sta.rxPackageCount);
    put(out, "%d %d %d %d %d %d %d\n", sta.txPackageCount, sta.wifimode, sta.bandwidth, sta.mcslevel,
        sta.mimo, sta.kvrCapacity, sta.noiselevel);
}

static void putCandidate(Out& out, const CandidateAp& candidate)
{
    put(out, "%12s %d %d %d %d %d %d %d %d\n", candidate.apMac, candidate.connectBand,
        candidate.roamingAvailable, candidate.rssi, candidate.throughput, candidate.wifimode,
        candidate.bandwidth, candidate.mcslevel, candidate.mimo);
}

static void putPatV1(Out& out, const PatParameter& pat)
{
    put(out, "%12s", pat.deviceMac);
    for (int k = 0; k < 100; ++k)
        put(out, " %d", pat.bParameter[k]);
    for (int k = 0; k < 100; ++k)
        put(out, " %d", pat.cParameter[k]);
    put(out, "\n");
}

static void putEntry(Out& out, const SinglePat& entry)
{
    put(out, "%d %d %d %d %d %d\n", entry.isChanged, entry.bandOrder, entry.channelWidthOrder, entry.mcsOrder,
        entry.paraB, entry.paraC);
}

static void putPatV2(Out& out, const PatParameterV2& pat)
{
    const int entries = pat.commonPatNum > 100 ? 100 : pat.commonPatNum;
    put(out, "%12s %d\n", pat.deviceMac, entries);
    for (int k = 0; k < entries; ++k)
        putEntry(out, pat.singlePat[k]);
}

static void putDelay(Out& out, const TimeDelayInfo& delay)
{
    put(out, "%12s", delay.fatherMAC);
    for (int j = 0; j < 15; ++j)
        put(out, " %3d", delay.delayTime[j]);
    put(out, "\n");
}

static void putScore(Out& out, const ScoreInfo& score)
{
    put(out, "%12s %2d %.2f %2d %4d %.2f %4d", score.fatherMAC, score.apRank,
        static_cast<double>(score.hopsFactor), score.timeDelayTestCnt, score.timeDelayAverage,
        static_cast<double>(score.timeNormalization), score.thrputPredict);
    for (int j = 0; j < 5; ++j)
        put(out, " %2d", score.rssi[j]);
    for (int j = 0; j < 5; ++j)
        put(out, " %4d", score.negoRate[j]);
    for (int j = 0; j < 5; ++j)
        put(out, " %4d", score.patRate[j]);
    put(out, "\n");
}

static void putIndexEntry(Out& out, const ApThrRank& rank)
{
    put(out, "%12s %12s %d %d\n", rank.deviceMAC, rank.fatherMAC, rank.apRank, rank.throughput);
}

static void putIndexHeader(Out& out, const ApRankIndex& index)
{
    put(out, "%d %d %u %u\n", index.cnt, index.process_re, index.alg_strategy, index.starttime);
}

static void putIndex(Out& out, const ApRankIndex& index)
{
    putIndexHeader(out, index);
    for (int i = 0; i < index.cnt; ++i)
        putIndexEntry(out, index.apRank[i]);
}

/* One record of a kind; false where the writer ends the file before it. */
static bool putRecord(Out& out, Kind kind, const void* record, int position)
{
    const ScanningInfo* scan = static_cast<const ScanningInfo*>(record);
    const ApRank* rank = static_cast<const ApRank*>(record);
    const ApAlgInterfaceOutput* output = static_cast<const ApAlgInterfaceOutput*>(record);
    const bool emptyMac = *static_cast<const char*>(record) == '\0'; /* where the MAC is the first field */
    switch (kind) {
    case AP_NODE:
        putNode(out, *static_cast<const ApNodeV2*>(record));
        break;
    case AP_ALL:
        putAll(out, *static_cast<const ApInfoAllV2*>(record), false);
        break;
    case AP_DETAIL:
        putAll(out, *static_cast<const ApInfoAllV2*>(record), true);
        break;
    case BRIDGING:
        putBridging(out, *static_cast<const BridgingNodeV2*>(record));
        break;
    case STATION:
        putStation(out, *static_cast<const StaConnection*>(record), position);
        break;
    case CANDIDATE:
        putCandidate(out, *static_cast<const CandidateAp*>(record));
        break;
    case PAT_V1:
        putPatV1(out, *static_cast<const PatParameter*>(record));
        break;
    case PAT_V2:
        putPatV2(out, *static_cast<const PatParameterV2*>(record));
        break;
    case SCANNING:
        put(out, "%12s %12s %2d %3d %3d\n", scan->deviceMAC, scan->neighbourMAC, scan->band, scan->channel,
            scan->rssi);
        break;
    case TIME_DELAY:
        if (emptyMac)
            return false;
        putDelay(out, *static_cast<const TimeDelayInfo*>(record));
        break;
    case SCORE:
        if (emptyMac)
            return false;
        putScore(out, *static_cast<const ScoreInfo*>(record));
        break;
    case AP_RANK:
        put(out, "%12s %12s %d\n", rank->deviceMAC, rank->ethFatherMAC, rank->apRank);
        break;
    case RANK_INDEX:
        putIndex(out, *static_cast<const ApRankIndex*>(record));
        break;
    case OUTPUT:
        put(out, "%12s %12s %d %d\n", output->srcMAC, output->dstMAC, static_cast<int>(output->algStrategy),
            output->timeout);
        break;
    case KINDS:
        return false;
    }
    return true;
}

size_t printRecords(Kind kind, const void* records, int count, char* text)
{
    Out out = {text, 0};
    if (kind == PAT_V2)
        put(out, "%d\n", count);
    const char* record = static_cast<const char*>(records);
    for (int i = 0; i < count && putRecord(out, kind, record, i); ++i)
        record += recordSizes[kind];
    return out.length;
}

/* ---- Valid files -------------------------------------------------------- */

/* More entries than a record holds can be stated: so the file is put together here. */
static size_t exampleIndexFile(int entries, char* text)
{
    Out out = {text, 0};
    ApRankIndex index;
    fillRecord(RANK_INDEX, entries, &index);
    putIndexHeader(out, index);
    for (int i = 0; i < entries; ++i) {
        ApThrRank rank = {};
        fillIndexEntry(&rank, i);
        putIndexEntry(out, rank);
    }
    return out.length;
}

size_t patFileOfEntries(int entries, char* text)
{
    Out out = {text, 0};
    put(out, "1\na1b2c3d4e5f6 %d\n", entries);
    for (int i = 0; i < entries; ++i) {
        SinglePat entry;
        fillEntry(&entry, i);
        putEntry(out, entry);
    }
    return out.length;
}

size_t exampleFile(Kind kind, int count, char* text)
{
    if (kind == RANK_INDEX)
        return exampleIndexFile(count, text);
    Out out = {text, 0};
    if (kind == PAT_V2)
        put(out, "%d\n", count);
    for (int i = 0; i < count; ++i) {
        union {
            PatParameterV2 largest;
            ApRankIndex index;
        } record;
        fillRecord(kind, i, &record);
        putRecord(out, kind, &record, i);
    }
    return out.length;
}
