/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Records as a host makes them, within the range of their format, are written
 * and read back: what comes back is what the format's rules say, field by
 * field. The updates are held against the records that they leave in the file.
 */
#include "support/fuzzing.h"

#include <stdio.h>

enum { MOST = 8 }; /* records of one run */

#define EXPECT_MAC(field, loaded, record) FUZZ_EXPECT(strcmp((loaded).field, (record).field) == 0)
#define EXPECT_FIELD(field, loaded, record) FUZZ_EXPECT((loaded).field == (record).field)

/* ---- AP node info ------------------------------------------------------- */

static uint8_t freeUtilization(uint8_t used)
{
    return used < 94 ? static_cast<uint8_t>(95 - used) : 1;
}
static uint16_t atMost10000(uint16_t rate)
{
    return rate < 10000 ? rate : 10000;
}
static uint16_t wirelessRate(uint16_t rate)
{
    return rate == 0 ? 1 : atMost10000(rate);
}

static void fillNode(fuzz::Input& in, ApNodeV2& node)
{
    in.fill(node);
    in.hexMac(node.deviceMAC);
    in.hexMac(node.fatherDeviceMAC);
}

static void expectBounded(const ApNodeV2& loaded, const ApNodeV2& node)
{
    EXPECT_MAC(deviceMAC, loaded, node);
    EXPECT_MAC(fatherDeviceMAC, loaded, node);
    for (int j = 0; j < 5; ++j) {
        FUZZ_EXPECT(loaded.wirelessChannelUtilization[j] ==
                    freeUtilization(node.wirelessChannelUtilization[j]));
        FUZZ_EXPECT(loaded.wirelessRxRate[j] == wirelessRate(node.wirelessRxRate[j]));
        FUZZ_EXPECT(loaded.wirelessTxRate[j] == wirelessRate(node.wirelessTxRate[j]));
        EXPECT_FIELD(offset[j], loaded, node);
    }
    FUZZ_EXPECT(loaded.plcUtilization == freeUtilization(node.plcUtilization));
    FUZZ_EXPECT(loaded.ethernetUtilization == freeUtilization(node.ethernetUtilization));
    FUZZ_EXPECT(loaded.plcRate == atMost10000(node.plcRate));
    EXPECT_FIELD(ethernetRate, loaded, node);
}

static void apNodes(fuzz::Input& in, const char* path, int count)
{
    fuzz::Array<ApNodeV2> nodes(count);
    fuzz::Array<ApNodeV2> loaded(count);
    fuzz::Array<char[16]> macs(count);
    for (int i = 0; i < count; ++i)
        fillNode(in, nodes[i]);
    FUZZ_EXPECT(apNodeInfoWriterV2(path, count, nodes.get()));
    FUZZ_EXPECT(apNodeInfoReaderV2(path, static_cast<uint8_t>(count), loaded.get(), macs.get()));
    for (int i = 0; i < count; ++i) {
        expectBounded(loaded[i], nodes[i]);
        FUZZ_EXPECT(strcmp(macs[i], nodes[i].deviceMAC) == 0);
    }
}

/* ---- AP-all info -------------------------------------------------------- */

static void expectSameInfo(const ApInfoAllV2& loaded, const ApInfoAllV2& info)
{
    EXPECT_FIELD(alg_version.major_ver, loaded, info);
    EXPECT_FIELD(alg_version.minor_ver, loaded, info);
    const ApNodeV2& got = loaded.apNodeV2;
    const ApNodeV2& node = info.apNodeV2;
    EXPECT_MAC(deviceMAC, got, node);
    EXPECT_MAC(fatherDeviceMAC, got, node);
    EXPECT_FIELD(plcUtilization, got, node);
    EXPECT_FIELD(plcRate, got, node);
    EXPECT_FIELD(ethernetUtilization, got, node);
    EXPECT_FIELD(ethernetRate, got, node);
    EXPECT_FIELD(tipc_node, got, node);
    for (int j = 0; j < 5; ++j) {
        EXPECT_FIELD(wirelessChannelUtilization[j], got, node);
        EXPECT_FIELD(wirelessRxRate[j], got, node);
        EXPECT_FIELD(wirelessTxRate[j], got, node);
        EXPECT_FIELD(offset[j], got, node);
    }
    FUZZ_EXPECT(memcmp(loaded.algWifiMode, info.algWifiMode, sizeof info.algWifiMode) == 0);
}

static void apAll(fuzz::Input& in, const char* path, int count)
{
    fuzz::Array<ApInfoAllV2> infos(count + 1);
    for (int i = 0; i <= count; ++i) {
        in.fill(infos[i]);
        fillNode(in, infos[i].apNodeV2);
        snprintf(infos[i].apNodeV2.deviceMAC, 16, "%012x", i); /* no key twice */
    }
    FUZZ_EXPECT(apAllInfoWriter(path, infos.get(), count, false));

    /* The first key replaced, then a new one added, then the first one deleted. */
    if (count > 0) {
        in.fill(infos[0].algWifiMode);
        FUZZ_EXPECT(updataSingleApAllInfo(path, &infos[0]));
    }
    FUZZ_EXPECT(updataSingleApAllInfo(path, &infos[count]));
    fuzz::Array<ApInfoAllV2> loaded(count + 1);
    FUZZ_EXPECT(fuzz::records(path) == count + 1);
    FUZZ_EXPECT(apAllInfoOnlyReader(path, loaded.get(), count + 1, nullptr));
    for (int i = 0; i <= count; ++i)
        expectSameInfo(loaded[i], infos[i]);

    FUZZ_EXPECT(deleteSingleApAllInfo(path, infos[0].apNodeV2.deviceMAC));
    FUZZ_EXPECT(fuzz::records(path) == count);
    FUZZ_EXPECT(apAllInfoOnlyReader(path, loaded.get(), count, nullptr));
    if (count > 0)
        expectSameInfo(loaded[0], infos[count]);
    for (int i = 1; i < count; ++i)
        expectSameInfo(loaded[i], infos[i]);
}

/* ---- Bridging info ------------------------------------------------------ */

static void expectSameLink(const BridgingNodeV2& loaded, const BridgingNodeV2& node)
{
    EXPECT_MAC(deviceMAC, loaded, node);
    EXPECT_MAC(fatherDeviceMAC, loaded, node);
    for (int j = 0; j < 5; ++j) {
        EXPECT_FIELD(bridgingRssi[j], loaded, node);
        EXPECT_FIELD(bridgingRxRate[j], loaded, node);
        EXPECT_FIELD(bridgingTxRate[j], loaded, node);
        EXPECT_FIELD(bridgingRxMcs[j], loaded, node);
        EXPECT_FIELD(bridgingTxMcs[j], loaded, node);
    }
}

/* Each record brought in by an update: all stay, for there are few and no father comes twice. */
static void bridging(fuzz::Input& in, const char* path, int count)
{
    const bool isFap = in.upTo(1) == 1;
    FUZZ_EXPECT(bridgingApNodeInfoWriter(path, nullptr, 0));
    fuzz::Array<BridgingNodeV2> nodes(count);
    for (int i = 0; i < count; ++i) {
        in.fill(nodes[i]);
        in.hexMac(nodes[i].deviceMAC);
        memset(nodes[i].fatherDeviceMAC, 0, 16);
        snprintf(nodes[i].fatherDeviceMAC, 16, "%012x", i + 1);
        FUZZ_EXPECT(updateSingleBridgingInfo(path, &nodes[i], isFap));
    }
    FUZZ_EXPECT(fuzz::records(path) == count);
    fuzz::Array<BridgingNodeV2> loaded(count);
    FUZZ_EXPECT(bridgingApNodeInfoReader(path, loaded.get()));
    for (int i = 0; i < count; ++i)
        expectSameLink(loaded[i], nodes[i]);
}

/* ---- Stations ----------------------------------------------------------- */

static void fillStation(fuzz::Input& in, StaConnection& sta)
{
    in.fill(sta);
    in.hexMac(sta.deviceMac);
    in.hexMac(sta.apMac);
    sta.connectBand %= 100; /* what fits into the widths of a line */
    sta.rssi %= 10000;
    sta.rxRate %= 10000;
    sta.txRate %= 10000;
    sta.rxPackageCount %= 10000;
}

static void expectSameStation(const StaConnection& loaded, const StaConnection& sta, int position)
{
    FUZZ_EXPECT(loaded.id == position);
    EXPECT_MAC(deviceMac, loaded, sta);
    EXPECT_MAC(apMac, loaded, sta);
    EXPECT_FIELD(connectBand, loaded, sta);
    EXPECT_FIELD(rssi, loaded, sta);
    EXPECT_FIELD(rxRate, loaded, sta);
    EXPECT_FIELD(txRate, loaded, sta);
    EXPECT_FIELD(rxPackageCount, loaded, sta);
    EXPECT_FIELD(txPackageCount, loaded, sta);
    EXPECT_FIELD(wifimode, loaded, sta);
    EXPECT_FIELD(bandwidth, loaded, sta);
    EXPECT_FIELD(mcslevel, loaded, sta);
    EXPECT_FIELD(mimo, loaded, sta);
    EXPECT_FIELD(kvrCapacity, loaded, sta);
    EXPECT_FIELD(noiselevel, loaded, sta);
}

/* A history near its cap, and new samples behind it: the newest 128 stay. */
static void stations(fuzz::Input& in, const char* path, int count)
{
    enum { CAP = 128 };
    const int old = 1 + in.upTo(CAP);
    fuzz::Array<StaConnection> stas(old + count);
    for (int i = 0; i < stas.count(); ++i) {
        if (i < 3 || i >= old)
            fillStation(in, stas[i]);
        else
            stas[i] = stas[i - 3];
    }
    FUZZ_EXPECT(stationNodeInfoWriter(path, stas.get(), old));
    FUZZ_EXPECT(stationInfoAppendWriter(path, stas.get() + old, count));

    const int total = old + count;
    const int kept = total < CAP ? total : static_cast<int>(CAP);
    FUZZ_EXPECT(fuzz::records(path) == kept);
    fuzz::Array<StaConnection> loaded(kept);
    FUZZ_EXPECT(stationInfoOnlyReader(path, loaded.get()));
    for (int i = 0; i < kept; ++i)
        expectSameStation(loaded[i], stas[total - kept + i], i);
}

static void candidates(fuzz::Input& in, const char* path, int count)
{
    fuzz::Array<CandidateAp> aps(count);
    fuzz::Array<CandidateAp> loaded(count);
    for (int i = 0; i < count; ++i) {
        in.fill(aps[i]);
        in.hexMac(aps[i].apMac);
    }
    FUZZ_EXPECT(candidateApNodeInfoWriter(path, aps.get(), count));
    FUZZ_EXPECT(fuzz::records(path) == count);
    FUZZ_EXPECT(candidateApNodeInfoReader(path, loaded.get()));
    for (int i = 0; i < count; ++i) {
        EXPECT_MAC(apMac, loaded[i], aps[i]);
        EXPECT_FIELD(connectBand, loaded[i], aps[i]);
        EXPECT_FIELD(roamingAvailable, loaded[i], aps[i]);
        EXPECT_FIELD(rssi, loaded[i], aps[i]);
        EXPECT_FIELD(throughput, loaded[i], aps[i]);
        EXPECT_FIELD(wifimode, loaded[i], aps[i]);
        EXPECT_FIELD(bandwidth, loaded[i], aps[i]);
        EXPECT_FIELD(mcslevel, loaded[i], aps[i]);
        EXPECT_FIELD(mimo, loaded[i], aps[i]);
    }
}

/* ---- PAT parameters ----------------------------------------------------- */

static void expectSamePat(const PatParameterV2& loaded, const PatParameterV2& pat)
{
    EXPECT_MAC(deviceMac, loaded, pat);
    const int entries = pat.commonPatNum < 100 ? pat.commonPatNum : 100;
    FUZZ_EXPECT(loaded.commonPatNum == entries);
    for (int j = 0; j < entries; ++j) {
        EXPECT_FIELD(singlePat[j].isChanged, loaded, pat);
        EXPECT_FIELD(singlePat[j].bandOrder, loaded, pat);
        EXPECT_FIELD(singlePat[j].channelWidthOrder, loaded, pat);
        EXPECT_FIELD(singlePat[j].mcsOrder, loaded, pat);
        EXPECT_FIELD(singlePat[j].paraB, loaded, pat);
        EXPECT_FIELD(singlePat[j].paraC, loaded, pat);
    }
}

/* Into a file and back, into floats and back; a value that then changes raises its flag. */
static void pats(fuzz::Input& in, const char* path, int count)
{
    fuzz::Array<PatParameterV2> pats(count);
    fuzz::Array<PatParameterV2> loaded(count);
    fuzz::Array<AlgPatParameterV2> algs(count);
    for (int i = 0; i < count; ++i) {
        in.fill(pats[i]);
        in.hexMac(pats[i].deviceMac);
        pats[i].commonPatNum %= i == 0 ? 256 : 8; /* one that may be too many, the others quick */
    }
    FUZZ_EXPECT(patParameterWriterV2(path, count, pats.get(), nullptr));
    FUZZ_EXPECT(patParameterReaderV2(path, count, loaded.get()));
    patInt2AlgV2(count, loaded.get(), algs.get());
    FUZZ_EXPECT(patAlg2IntV2(count, loaded.get(), algs.get()));
    for (int i = 0; i < count; ++i) {
        expectSamePat(loaded[i], pats[i]);
        if (loaded[i].commonPatNum == 0)
            continue;
        loaded[i].singlePat[0].paraB ^= 1;
        FUZZ_EXPECT(patAlg2IntV2(1, &loaded[i], &algs[i]));
        FUZZ_EXPECT(loaded[i].singlePat[0].isChanged == (pats[i].singlePat[0].isChanged | 1));
        FUZZ_EXPECT(loaded[i].singlePat[0].paraB == pats[i].singlePat[0].paraB);
    }
}

/* ---- Measurement history ------------------------------------------------ */

static uint8_t faded(uint8_t rssi, int times)
{
    const int lowered = rssi - times * ai_yra_rssi_compensation;
    return static_cast<uint8_t>(lowered < 1 ? 1 : lowered);
}

/* Old sightings fade twice, once when the new ones are added and once when all are read. */
static void scans(fuzz::Input& in, const char* path, int count)
{
    ai_yra_rssi_compensation = in.byte();
    fuzz::Array<ScanningInfo> scans(count + 1);
    for (int i = 0; i <= count; ++i) {
        in.fill(scans[i]);
        in.hexMac(scans[i].deviceMAC);
        in.hexMac(scans[i].neighbourMAC);
        scans[i].band %= 100;
    }
    FUZZ_EXPECT(scanningInfoWriter(path, scans.get(), 1));
    FUZZ_EXPECT(appendScanningInfo(path, scans.get() + 1, count));
    FUZZ_EXPECT(fuzz::records(path) == count + 1);
    fuzz::Array<ScanningInfo> loaded(count + 1);
    FUZZ_EXPECT(scanningInfoReader(path, loaded.get()));
    for (int i = 0; i <= count; ++i) {
        EXPECT_MAC(deviceMAC, loaded[i], scans[i]);
        EXPECT_MAC(neighbourMAC, loaded[i], scans[i]);
        EXPECT_FIELD(band, loaded[i], scans[i]);
        EXPECT_FIELD(channel, loaded[i], scans[i]);
        FUZZ_EXPECT(loaded[i].rssi == faded(scans[i].rssi, i == 0 ? 2 : 1));
    }

    int others = 0;
    for (int i = 0; i <= count; ++i)
        others += strcmp(scans[i].deviceMAC, scans[0].deviceMAC) != 0;
    FUZZ_EXPECT(scanningInfoDeleter(path, scans[0].deviceMAC));
    FUZZ_EXPECT(fuzz::records(path) == others);
}

static uint16_t clampedDelay(uint16_t delay)
{
    if (delay < 1)
        return 1;
    return delay < 1000 ? delay : 1000;
}

static void delays(fuzz::Input& in, const char* path, int count)
{
    FUZZ_EXPECT(emptyTimeDelayFile(path));
    fuzz::Array<TimeDelayInfo> infos(count);
    for (int i = 0; i < count; ++i) {
        in.fill(infos[i]);
        memset(infos[i].fatherMAC, 0, 16);
        snprintf(infos[i].fatherMAC, 16, "%012x", i);
        FUZZ_EXPECT(i % 2 == 0 ? updateSingleTimeDelayInfo(path, &infos[i])
                               : appendSingleTimeDelayInfo(path, &infos[i]));
    }
    FUZZ_EXPECT(fuzz::records(path) == count);
    fuzz::Array<TimeDelayInfo> loaded(count);
    FUZZ_EXPECT(timeDelayInfoReader(path, loaded.get(), count));
    for (int i = 0; i < count; ++i) {
        EXPECT_MAC(fatherMAC, loaded[i], infos[i]);
        for (int j = 0; j < 15; ++j)
            FUZZ_EXPECT(loaded[i].delayTime[j] == clampedDelay(infos[i].delayTime[j]));
    }
}

/* What two decimals leave of a factor. */
static float twoDecimals(float value)
{
    char text[64];
    snprintf(text, sizeof text, "%.2f", static_cast<double>(value));
    return strtof(text, nullptr);
}

static void expectSameScore(const ScoreInfo& loaded, const ScoreInfo& score)
{
    EXPECT_MAC(fatherMAC, loaded, score);
    EXPECT_FIELD(apRank, loaded, score);
    FUZZ_EXPECT(loaded.hopsFactor == twoDecimals(score.hopsFactor));
    EXPECT_FIELD(timeDelayTestCnt, loaded, score);
    EXPECT_FIELD(timeDelayAverage, loaded, score);
    FUZZ_EXPECT(loaded.timeNormalization == twoDecimals(score.timeNormalization));
    EXPECT_FIELD(thrputPredict, loaded, score);
    for (int j = 0; j < 5; ++j) {
        EXPECT_FIELD(rssi[j], loaded, score);
        EXPECT_FIELD(negoRate[j], loaded, score);
        EXPECT_FIELD(patRate[j], loaded, score);
    }
}

static void scores(fuzz::Input& in, const char* path, int count)
{
    fuzz::Array<ScoreInfo> scores(count);
    fuzz::Array<ScoreInfo> loaded(count);
    for (int i = 0; i < count; ++i) {
        in.fill(scores[i]);
        in.hexMac(scores[i].fatherMAC);
        scores[i].hopsFactor = static_cast<float>(in.byte()) / 7.0F - 18.0F;
        scores[i].timeNormalization = static_cast<float>(in.byte()) * 4321.0F;
    }
    FUZZ_EXPECT(scoreInfoWriter(path, scores.get(), count));
    FUZZ_EXPECT(fuzz::records(path) == count);
    FUZZ_EXPECT(scoreInfoCntReader(path) == (count == 0 ? 1 : 0));
    FUZZ_EXPECT(scoreInfoReader(path, loaded.get(), count));
    for (int i = 0; i < count; ++i)
        expectSameScore(loaded[i], scores[i]);
}

/* ---- Ranking and decisions ---------------------------------------------- */

static void ranks(fuzz::Input& in, const char* path, int count)
{
    FUZZ_EXPECT(apRankInfoWriter(path, nullptr, 0));
    fuzz::Array<ApRank> ranks(count);
    for (int i = 0; i < count; ++i) {
        in.fill(ranks[i]);
        memset(ranks[i].deviceMAC, 0, 16);
        snprintf(ranks[i].deviceMAC, 16, "%012x", i);
        in.hexMac(ranks[i].ethFatherMAC);
        FUZZ_EXPECT(updataSingleApRankInfo(path, &ranks[i]));
    }
    if (count > 0) {
        ranks[count / 2].apRank = in.byte();
        FUZZ_EXPECT(updataSingleApRankInfo(path, &ranks[count / 2]));
    }
    FUZZ_EXPECT(fuzz::records(path) == count);
    fuzz::Array<ApRank> loaded(count);
    FUZZ_EXPECT(apRankInfoReader(path, loaded.get()));
    for (int i = 0; i < count; ++i) {
        EXPECT_MAC(deviceMAC, loaded[i], ranks[i]);
        EXPECT_MAC(ethFatherMAC, loaded[i], ranks[i]);
        EXPECT_FIELD(apRank, loaded[i], ranks[i]);
    }
}

static void rankIndex(fuzz::Input& in, const char* path, int)
{
    fuzz::Array<ApRankIndex> index(1);
    fuzz::Array<ApRankIndex> loaded(1);
    in.fill(index[0]);
    index[0].cnt %= 31;
    for (int i = 0; i < index[0].cnt; ++i) {
        in.hexMac(index[0].apRank[i].deviceMAC);
        in.hexMac(index[0].apRank[i].fatherMAC);
    }
    FUZZ_EXPECT(apRankIndexInfoWriter(path, index.get()));
    FUZZ_EXPECT(apRankIndexInfoReader(path, loaded.get()));
    EXPECT_FIELD(cnt, loaded[0], index[0]);
    EXPECT_FIELD(process_re, loaded[0], index[0]);
    EXPECT_FIELD(alg_strategy, loaded[0], index[0]);
    EXPECT_FIELD(starttime, loaded[0], index[0]);
    for (int i = 0; i < index[0].cnt; ++i) {
        EXPECT_MAC(apRank[i].deviceMAC, loaded[0], index[0]);
        EXPECT_MAC(apRank[i].fatherMAC, loaded[0], index[0]);
        EXPECT_FIELD(apRank[i].apRank, loaded[0], index[0]);
        EXPECT_FIELD(apRank[i].throughput, loaded[0], index[0]);
    }
}

static void output(fuzz::Input& in, const char* path, int)
{
    fuzz::Array<ApAlgInterfaceOutput> outputs(1);
    fuzz::Array<ApAlgInterfaceOutput> loaded(1);
    in.fill(outputs[0]);
    in.hexMac(outputs[0].srcMAC);
    in.hexMac(outputs[0].dstMAC);
    FUZZ_EXPECT(apAlgOutputInfoWriter(path, outputs.get()));
    FUZZ_EXPECT(apAlgOutputInfoReader(path, loaded.get()));
    EXPECT_MAC(srcMAC, loaded[0], outputs[0]);
    EXPECT_MAC(dstMAC, loaded[0], outputs[0]);
    EXPECT_FIELD(algStrategy, loaded[0], outputs[0]);
    EXPECT_FIELD(timeout, loaded[0], outputs[0]);
}

/* ---- All families ------------------------------------------------------- */

FUZZ_TARGET(roundTrip)
{
    typedef void (*RoundTrip)(fuzz::Input & in, const char* path, int count);
    static const RoundTrip trips[] = {apNodes, apAll,  bridging, stations, candidates, pats,
                                      scans,   delays, scores,   ranks,    rankIndex,  output};
    const RoundTrip trip = trips[in.upTo(sizeof trips / sizeof trips[0] - 1)];
    const int count = in.upTo(MOST);
    trip(in, fuzz::memoryFile(), count);
}
