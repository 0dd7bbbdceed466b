/* SPDX-License-Identifier: Apache-2.0 */
#include "changes.h"

#include <stddef.h>

/* ---- The records that are written ---------------------------------------- */

static Records written;

/* The example records from the i-th on. */
template <typename Record> static Record* examples(Kind kind, int i, int count)
{
    for (int k = 0; k < count; ++k)
        fillRecord(kind, i + k, written.bytes + sizeof(Record) * static_cast<size_t>(k));
    return reinterpret_cast<Record*>(written.bytes);
}

/* More records than any file has at its start, so these are new ones. */
enum { FIRST_NEW = 300 };

template <typename Record> static Record* newRecords(Kind kind, int i, int count)
{
    return examples<Record>(kind, FIRST_NEW + i * count, count);
}

/* A new record for an update. Each second one has the key of the file's i-th record. */
template <typename Record> static Record* keyedRecord(Kind kind, int i, size_t key)
{
    Record old;
    fillRecord(kind, i, &old);
    Record* const record = newRecords<Record>(kind, i, 1);
    if (i % 2 == 0)
        memcpy(reinterpret_cast<char*>(record) + key, reinterpret_cast<char*>(&old) + key, ALG_MAC_SIZE);
    return record;
}

/* ---- The functions -------------------------------------------------------- */

/* The records of a file that a writer replaces, and of one that an update changes. */
enum { FEW = 20, MANY = 60 };

static int few(int i)
{
    return FEW + i % 5;
}

const Change changes[] = {
    {"touchFile", AP_RANK, -1, [](const char* path, int) { return touchFile(path); }},
    {"apNodeInfoWriterV2", AP_NODE, FEW,
     [](const char* path, int i) {
         return apNodeInfoWriterV2(path, few(i), examples<ApNodeV2>(AP_NODE, i, few(i)));
     }},
    {"apAllInfoWriter", AP_ALL, FEW,
     [](const char* path, int i) {
         return apAllInfoWriter(path, examples<ApInfoAllV2>(AP_ALL, i, few(i)), few(i), false);
     }},
    {"apAllDetailInfoWriter", AP_DETAIL, FEW,
     [](const char* path, int i) {
         return apAllDetailInfoWriter(path, examples<ApInfoAllV2>(AP_DETAIL, i, 1), few(i), false);
     }},
    {"updataSingleApAllInfo", AP_ALL, MANY,
     [](const char* path, int i) {
         return updataSingleApAllInfo(
             path, keyedRecord<ApInfoAllV2>(AP_ALL, i, offsetof(ApInfoAllV2, apNodeV2.deviceMAC)));
     }},
    {"deleteSingleApAllInfo", AP_ALL, MANY,
     [](const char* path, int i) {
         return deleteSingleApAllInfo(path, examples<ApInfoAllV2>(AP_ALL, i, 1)->apNodeV2.deviceMAC);
     }},
    {"bridgingApNodeInfoWriter", BRIDGING, FEW,
     [](const char* path, int i) {
         return bridgingApNodeInfoWriter(path, examples<BridgingNodeV2>(BRIDGING, i, few(i)), few(i));
     }},
    {"updateSingleBridgingInfo (FAP)", BRIDGING, ALG_FAP_BRIDGING_CAP - FEW,
     [](const char* path, int i) {
         return updateSingleBridgingInfo(path, newRecords<BridgingNodeV2>(BRIDGING, i, 1), true);
     }},
    {"updateSingleBridgingInfo (RE)", BRIDGING, MANY,
     [](const char* path, int i) {
         return updateSingleBridgingInfo(
             path, keyedRecord<BridgingNodeV2>(BRIDGING, i, offsetof(BridgingNodeV2, fatherDeviceMAC)),
             false);
     }},
    {"stationNodeInfoWriter", STATION, FEW,
     [](const char* path, int i) {
         return stationNodeInfoWriter(path, examples<StaConnection>(STATION, i, few(i)), few(i));
     }},
    {"stationInfoAppendWriter", STATION, ALG_STATION_CAP - FEW,
     [](const char* path, int i) {
         return stationInfoAppendWriter(path, newRecords<StaConnection>(STATION, i, 2), 2);
     }},
    {"candidateApNodeInfoWriter", CANDIDATE, FEW,
     [](const char* path, int i) {
         return candidateApNodeInfoWriter(path, examples<CandidateAp>(CANDIDATE, i, few(i)), few(i));
     }},
    {"patParameterReaderV2", PAT_V2, -1,
     [](const char* path, int) {
         return patParameterReaderV2(path, 1, reinterpret_cast<PatParameterV2*>(written.bytes));
     }},
    {"patParameterWriterV2", PAT_V2, FEW,
     [](const char* path, int i) {
         return patParameterWriterV2(path, few(i), examples<PatParameterV2>(PAT_V2, i, few(i)), nullptr);
     }},
    {"updateSinglePatV2", PAT_V2, FEW,
     [](const char* path, int i) {
         updateSinglePatV2(path, examples<PatParameterV2>(PAT_V2, i, 1));
         return true; /* it always returns false */
     }},
    {"patInitV2", PAT_V2, FEW,
     [](const char* path, int i) {
         patInitV2(path, examples<PatParameterV2>(PAT_V2, i, 1)->deviceMac);
         return true;
     }},
    {"scanningInfoWriter", SCANNING, FEW,
     [](const char* path, int i) {
         return scanningInfoWriter(path, examples<ScanningInfo>(SCANNING, i, few(i)), few(i));
     }},
    {"scanningInfoDeleter", SCANNING, MANY,
     [](const char* path, int i) {
         return scanningInfoDeleter(path, examples<ScanningInfo>(SCANNING, i, 1)->deviceMAC);
     }},
    {"scanningInfoDeleter (no file)", SCANNING, -1,
     [](const char* path, int i) {
         return scanningInfoDeleter(path, examples<ScanningInfo>(SCANNING, i, 1)->deviceMAC);
     }},
    {"appendScanningInfo", SCANNING, ALG_SCANNING_CAP - FEW,
     [](const char* path, int i) {
         return appendScanningInfo(path, newRecords<ScanningInfo>(SCANNING, i, 3), 3);
     }},
    {"appendSingleScanningInfo", SCANNING, ALG_SCANNING_CAP - FEW,
     [](const char* path, int i) {
         return appendSingleScanningInfo(path, newRecords<ScanningInfo>(SCANNING, i, 1));
     }},
    {"timeDelayInfoWriter", TIME_DELAY, FEW,
     [](const char* path, int i) {
         return timeDelayInfoWriter(path, examples<TimeDelayInfo>(TIME_DELAY, i, few(i)), few(i));
     }},
    {"emptyTimeDelayFile", TIME_DELAY, FEW,
     [](const char* path, int i) {
         return i % 2 == 1
                    ? emptyTimeDelayFile(path)
                    : timeDelayInfoWriter(path, examples<TimeDelayInfo>(TIME_DELAY, i, few(i)), few(i));
     }},
    {"updateSingleTimeDelayInfo", TIME_DELAY, MANY,
     [](const char* path, int i) {
         return updateSingleTimeDelayInfo(
             path, keyedRecord<TimeDelayInfo>(TIME_DELAY, i, offsetof(TimeDelayInfo, fatherMAC)));
     }},
    {"appendSingleTimeDelayInfo", TIME_DELAY, ALG_TIME_DELAY_CAP - FEW,
     [](const char* path, int i) {
         return appendSingleTimeDelayInfo(path, newRecords<TimeDelayInfo>(TIME_DELAY, i, 1));
     }},
    {"scoreInfoWriter", SCORE, FEW,
     [](const char* path, int i) {
         return scoreInfoWriter(path, examples<ScoreInfo>(SCORE, i, few(i)), few(i));
     }},
    {"apRankInfoWriter", AP_RANK, FEW,
     [](const char* path, int i) {
         return apRankInfoWriter(path, examples<ApRank>(AP_RANK, i, few(i)), few(i));
     }},
    {"updataSingleApRankInfo", AP_RANK, MANY,
     [](const char* path, int i) {
         return updataSingleApRankInfo(path, keyedRecord<ApRank>(AP_RANK, i, offsetof(ApRank, deviceMAC)));
     }},
    {"apRankIndexInfoWriter", RANK_INDEX, FEW,
     [](const char* path, int i) {
         return apRankIndexInfoWriter(path, examples<ApRankIndex>(RANK_INDEX, few(i), 1));
     }},
    {"apAlgOutputInfoWriter", OUTPUT, 1,
     [](const char* path, int i) {
         return apAlgOutputInfoWriter(path, examples<ApAlgInterfaceOutput>(OUTPUT, i, 1));
     }},
};

const size_t changeCount = sizeof changes / sizeof changes[0];

/* ---- The readers ----------------------------------------------------------- */

template <typename Record> static Record* as(Records& records)
{
    return reinterpret_cast<Record*>(records.bytes);
}

static bool readLines(Kind kind, const char* path, Records& records)
{
    char macs[UINT8_MAX][ALG_MAC_SIZE];
    const int lines = records.lines;
    const auto count = static_cast<uint8_t>(lines);
    switch (kind) {
    case AP_NODE:
        return apNodeInfoReaderV2(path, count, as<ApNodeV2>(records), macs);
    case AP_ALL:
        return apAllInfoOnlyReader(path, as<ApInfoAllV2>(records), lines, nullptr);
    case AP_DETAIL:
        return apAllDetailInfoReader(path, as<ApInfoAllV2>(records), count, nullptr);
    case BRIDGING:
        return bridgingApNodeInfoReader(path, as<BridgingNodeV2>(records));
    case STATION:
        return stationInfoOnlyReader(path, as<StaConnection>(records));
    case CANDIDATE:
        return candidateApNodeInfoReader(path, as<CandidateAp>(records));
    case PAT_V2:
        return patParameterReaderV2(path, lines, as<PatParameterV2>(records));
    case SCANNING:
        return scanningInfoReader(path, as<ScanningInfo>(records));
    case TIME_DELAY:
        return timeDelayInfoReader(path, as<TimeDelayInfo>(records), lines);
    case SCORE:
        return scoreInfoReader(path, as<ScoreInfo>(records), lines);
    case AP_RANK:
        return apRankInfoReader(path, as<ApRank>(records));
    case RANK_INDEX:
        return apRankIndexInfoReader(path, as<ApRankIndex>(records));
    case OUTPUT:
        return apAlgOutputInfoReader(path, as<ApAlgInterfaceOutput>(records));
    default:
        return false; /* nothing writes a PAT file of version 1 */
    }
}

bool readRecords(Kind kind, const char* path, Records& records)
{
    memset(&records, 0, sizeof records);
    records.lines = dataLineCounter(path);
    return records.lines >= 0 && readLines(kind, path, records);
}
