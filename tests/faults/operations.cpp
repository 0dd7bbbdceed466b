/* SPDX-License-Identifier: Apache-2.0 */
#include "operations.h"

#include <stddef.h>

template <typename Record> static Record* as(void* records)
{
    return static_cast<Record*>(records);
}

const Reader readers[READERS] = {
    {"apNodeInfoReaderV2", AP_NODE,
     [](void* r, int n, char (*m)[ALG_MAC_SIZE]) {
         return apNodeInfoReaderV2("f", static_cast<uint8_t>(n), as<ApNodeV2>(r), m);
     },
     expectApNodes},
    {"apAllInfoOnlyReader", AP_ALL,
     [](void* r, int n, char (*m)[ALG_MAC_SIZE]) {
         return apAllInfoOnlyReader("f", as<ApInfoAllV2>(r), n, m);
     },
     expectApAllRaw},
    {"apAllInfoReader", AP_ALL,
     [](void* r, int n, char (*m)[ALG_MAC_SIZE]) { return apAllInfoReader("f", as<ApInfoAllV2>(r), n, m); },
     expectApAllBounded},
    {"apAllDetailInfoReader", AP_DETAIL,
     [](void* r, int n, char (*m)[ALG_MAC_SIZE]) {
         return apAllDetailInfoReader("f", as<ApInfoAllV2>(r), static_cast<uint8_t>(n), m);
     },
     expectApDetail},
    {"bridgingApNodeInfoReader", BRIDGING,
     [](void* r, int, char (*)[ALG_MAC_SIZE]) {
         return bridgingApNodeInfoReader("f", as<BridgingNodeV2>(r));
     },
     expectBridging},
    {"stationInfoOnlyReader", STATION,
     [](void* r, int, char (*)[ALG_MAC_SIZE]) { return stationInfoOnlyReader("f", as<StaConnection>(r)); },
     expectStations},
    {"stationNodeInfoReader", STATION,
     [](void* r, int, char (*)[ALG_MAC_SIZE]) {
         return stationNodeInfoReader("empty", "f", as<StaConnection>(r));
     },
     expectStations},
    {"candidateApNodeInfoReader", CANDIDATE,
     [](void* r, int, char (*)[ALG_MAC_SIZE]) { return candidateApNodeInfoReader("f", as<CandidateAp>(r)); },
     expectCandidates},
    {"patParameterReader", PAT_V1,
     [](void* r, int n, char (*)[ALG_MAC_SIZE]) { return patParameterReader("f", n, as<PatParameter>(r)); },
     expectPatV1},
    {"patParameterReaderV2", PAT_V2,
     [](void* r, int n, char (*)[ALG_MAC_SIZE]) {
         return patParameterReaderV2("f", n, as<PatParameterV2>(r));
     },
     expectPatV2},
    {"scanningInfoReader", SCANNING,
     [](void* r, int, char (*)[ALG_MAC_SIZE]) { return scanningInfoReader("f", as<ScanningInfo>(r)); },
     expectScans},
    {"timeDelayInfoReader", TIME_DELAY,
     [](void* r, int n, char (*)[ALG_MAC_SIZE]) { return timeDelayInfoReader("f", as<TimeDelayInfo>(r), n); },
     expectDelays},
    {"scoreInfoReader", SCORE,
     [](void* r, int n, char (*)[ALG_MAC_SIZE]) { return scoreInfoReader("f", as<ScoreInfo>(r), n); },
     expectScores},
    {"scoreInfoCntReader", SCORE,
     [](void*, int, char (*)[ALG_MAC_SIZE]) { return scoreInfoCntReader("f") == 1; },
     [](Text file, void*, int, char (*)[ALG_MAC_SIZE]) { return expectedScoreCnt(file) == 1; }},
    {"apRankInfoReader", AP_RANK,
     [](void* r, int, char (*)[ALG_MAC_SIZE]) { return apRankInfoReader("f", as<ApRank>(r)); }, expectRanks},
    {"apRankIndexInfoReader", RANK_INDEX,
     [](void* r, int, char (*)[ALG_MAC_SIZE]) { return apRankIndexInfoReader("f", as<ApRankIndex>(r)); },
     expectRankIndex},
    {"apAlgOutputInfoReader", OUTPUT,
     [](void* r, int, char (*)[ALG_MAC_SIZE]) {
         return apAlgOutputInfoReader("f", as<ApAlgInterfaceOutput>(r));
     },
     expectOutput},
};

static const size_t apAllKey = offsetof(ApInfoAllV2, apNodeV2.deviceMAC);
static const size_t bridgingFather = offsetof(BridgingNodeV2, fatherDeviceMAC);

const Update updates[UPDATES] = {
    {"updataSingleApAllInfo",
     {AP_ALL, REPLACE_OR_ADD, apAllKey, 0, expectApAllRaw},
     [](void* income) { return updataSingleApAllInfo("f", as<ApInfoAllV2>(income)); }},
    {"deleteSingleApAllInfo",
     {AP_ALL, FILL_WITH_LAST, apAllKey, 0, expectApAllRaw},
     [](void* income) { return deleteSingleApAllInfo("f", as<ApInfoAllV2>(income)->apNodeV2.deviceMAC); }},
    {"updateSingleBridgingInfo, FAP",
     {BRIDGING, ADD_ONE_FOR_ONE, 0, ALG_FAP_BRIDGING_CAP, expectBridging},
     [](void* income) { return updateSingleBridgingInfo("f", as<BridgingNodeV2>(income), true); }},
    {"updateSingleBridgingInfo, RE",
     {BRIDGING, REPLACE_OR_ADD, bridgingFather, 0, expectBridging},
     [](void* income) { return updateSingleBridgingInfo("f", as<BridgingNodeV2>(income), false); }},
    {"stationInfoAppendWriter",
     {STATION, ADD_AND_CAP, 0, ALG_STATION_CAP, expectStations},
     [](void* income) { return stationInfoAppendWriter("f", as<StaConnection>(income), 1); }},
    {"updateSinglePatV2",
     {PAT_V2, OVERWRITE, 0, 0, expectPatV2},
     [](void* income) { return updateSinglePatV2("f", as<PatParameterV2>(income)); }},
    {"scanningInfoDeleter",
     {SCANNING, DROP_ALL, 0, 0, expectScans},
     [](void* income) { return scanningInfoDeleter("f", as<ScanningInfo>(income)->deviceMAC); }},
    {"appendScanningInfo",
     {SCANNING, ADD_AND_CAP, 0, ALG_SCANNING_CAP, expectScans},
     [](void* income) { return appendScanningInfo("f", as<ScanningInfo>(income), 1); }},
    {"appendSingleScanningInfo",
     {SCANNING, ADD_AND_CAP, 0, ALG_SCANNING_CAP, expectScans},
     [](void* income) { return appendSingleScanningInfo("f", as<ScanningInfo>(income)); }},
    {"updateSingleTimeDelayInfo",
     {TIME_DELAY, REPLACE_OR_ADD, 0, 0, expectDelays},
     [](void* income) { return updateSingleTimeDelayInfo("f", as<TimeDelayInfo>(income)); }},
    {"appendSingleTimeDelayInfo",
     {TIME_DELAY, ADD_AND_CAP, 0, ALG_TIME_DELAY_CAP, expectDelays},
     [](void* income) { return appendSingleTimeDelayInfo("f", as<TimeDelayInfo>(income)); }},
    {"updataSingleApRankInfo",
     {AP_RANK, REPLACE_OR_ADD, 0, 0, expectRanks},
     [](void* income) { return updataSingleApRankInfo("f", as<ApRank>(income)); }},
};

bool reportsFailure(const Update& update)
{
    return update.rule.kind != BRIDGING;
}

bool fileIs(const char* bytes, size_t size)
{
    static char now[FILE_ROOM];
    const long length = test::readBytes("f", now, sizeof now);
    return length == static_cast<long>(size) && memcmp(now, bytes, size) == 0;
}
