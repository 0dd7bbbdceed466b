/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The measured operations under common names for all records: read a file into an
 * array, write a file from an array, change a file by one record. Here for the
 * module; formatted.h does the same with the C library's formatted calls.
 */
#ifndef ALG_BENCH_CALLS_H
#define ALG_BENCH_CALLS_H

#include "dataInterface.h"

enum class Change {
    REPLACE, /* replaces the record with the same key, or adds the record */
    APPEND,  /* adds the record; a full file evicts the oldest one */
    ERASE    /* deletes all records with the same key */
};

constexpr int capOf(const BridgingNodeV2*)
{
    return ALG_FAP_BRIDGING_CAP;
}
constexpr int capOf(const StaConnection*)
{
    return ALG_STATION_CAP;
}
constexpr int capOf(const ScanningInfo*)
{
    return ALG_SCANNING_CAP;
}
constexpr int capOf(const TimeDelayInfo*)
{
    return ALG_TIME_DELAY_CAP;
}
constexpr int capOf(const void*) /* the other kinds have no cap */
{
    return 0;
}

struct ModuleCalls {
    static bool read(const char* path, BridgingNodeV2* records, int)
    {
        return bridgingApNodeInfoReader(path, records);
    }
    static bool read(const char* path, StaConnection* records, int)
    {
        return stationInfoOnlyReader(path, records);
    }
    static bool read(const char* path, ScanningInfo* records, int)
    {
        return scanningInfoReader(path, records);
    }
    static bool read(const char* path, TimeDelayInfo* records, int count)
    {
        return timeDelayInfoReader(path, records, count);
    }
    static bool read(const char* path, ApInfoAllV2* records, int count)
    {
        return apAllInfoOnlyReader(path, records, count, nullptr);
    }
    static bool read(const char* path, ApRank* records, int) { return apRankInfoReader(path, records); }
    static bool read(const char* path, PatParameterV2* records, int count)
    {
        return patParameterReaderV2(path, count, records);
    }
    static bool read(const char* path, ScoreInfo* records, int count)
    {
        return scoreInfoReader(path, records, count);
    }

    static bool write(const char* path, BridgingNodeV2* records, int count)
    {
        return bridgingApNodeInfoWriter(path, records, count);
    }
    static bool write(const char* path, StaConnection* records, int count)
    {
        return stationNodeInfoWriter(path, records, count);
    }
    static bool write(const char* path, ScanningInfo* records, int count)
    {
        return scanningInfoWriter(path, records, count);
    }
    static bool write(const char* path, TimeDelayInfo* records, int count)
    {
        return timeDelayInfoWriter(path, records, count);
    }
    static bool write(const char* path, ApInfoAllV2* records, int count)
    {
        return apAllInfoWriter(path, records, count, false);
    }
    static bool write(const char* path, ApRank* records, int count)
    {
        return apRankInfoWriter(path, records, count);
    }
    static bool write(const char* path, PatParameterV2* records, int count)
    {
        return patParameterWriterV2(path, count, records, nullptr);
    }
    static bool write(const char* path, ScoreInfo* records, int count)
    {
        return scoreInfoWriter(path, records, count);
    }

    static bool change(const char* path, Change how, BridgingNodeV2* income)
    {
        return updateSingleBridgingInfo(path, income, how == Change::APPEND);
    }
    static bool change(const char* path, Change, StaConnection* income)
    {
        return stationInfoAppendWriter(path, income, 1);
    }
    static bool change(const char* path, Change how, ScanningInfo* income)
    {
        return how == Change::ERASE ? scanningInfoDeleter(path, income->deviceMAC)
                                    : appendSingleScanningInfo(path, income);
    }
    static bool change(const char* path, Change how, TimeDelayInfo* income)
    {
        return how == Change::REPLACE ? updateSingleTimeDelayInfo(path, income)
                                      : appendSingleTimeDelayInfo(path, income);
    }
    static bool change(const char* path, Change, ApInfoAllV2* income)
    {
        return updataSingleApAllInfo(path, income);
    }
    static bool change(const char* path, Change, ApRank* income)
    {
        return updataSingleApRankInfo(path, income);
    }
};

#endif
