/* SPDX-License-Identifier: Apache-2.0 */
#include <limits.h>
#include <stdlib.h>
#include <string.h>

#include "../../dataInterface.h"
#include "../shared/diagnostics.h"
#include "../shared/records.h"
#include "../text/fields.h"

namespace [[gnu::visibility("hidden")]] alg_internal
{

/* ---- One record --------------------------------------------------------- */

/* A reader passes the record's id; the writer passes the position in the file. */
template <typename Text, typename Id, typename Station>
static bool stationLine(Text& text, Id& id, Station& station)
{
    return fields(text, FORMAT("%3hu %12s %12s %2hu %4hu %4hu %4hu %4hu %hu %hu %hu %hu %hu %hu %hu\n"), id,
                  station.deviceMac, station.apMac, station.connectBand, station.rssi, station.rxRate,
                  station.txRate, station.rxPackageCount, station.txPackageCount, station.wifimode,
                  station.bandwidth, station.mcslevel, station.mimo, station.kvrCapacity, station.noiselevel);
}

/* ---- Whole files -------------------------------------------------------- */

/*
 * Reads a file that is open: one record for each line, at most `maxRecords`. A
 * line with too few fields is a record too. Returns the number of lines read, or
 * -1 at a blank line, which is reported under the name `function`.
 */
static int readStationLines(const char* function, File file, const char* path, StaConnection* records,
                            int maxRecords)
{
    TextIn in;
    startText(in, file);
    int count = 0;
    for (; count < maxRecords && nextLine(in); ++count) {
        if (!stationLine(in, records[count].id, records[count])) {
            LOG_ERROR("libzo: [%s:%d]: sscanf error, path: %s", function, __LINE__, path);
            return -1;
        }
    }
    return count;
}

/* Reads at most `maxRecords` records, even if the file has grown since the caller counted its lines. */
static bool readStations(const char* path, StaConnection* records, int maxRecords)
{
    static const char function[] = "stationInfoOnlyReader";
    File file;
    if (!openFile(file, path, "r")) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file: %s.\n", function, __LINE__, path);
        return false;
    }
    const int count = readStationLines(function, file, path, records, maxRecords);
    closeFile(file);
    return count != -1;
}

/* ---- Rates -------------------------------------------------------------- */

/* Converts a rate of `streams` spatial streams to two streams. A result above 65535 wraps. */
static uint16_t twoStreamRate(uint16_t rate, uint16_t streams)
{
    return static_cast<uint16_t>(static_cast<uint32_t>(rate) * 2U / streams);
}

} // namespace alg_internal

using namespace alg_internal;

/* ---- Interface: whole files --------------------------------------------- */

bool stationInfoOnlyReader(const char* path, StaConnection* pNodeSta)
{
    return readStations(path, pNodeSta, INT_MAX);
}

bool stationNodeInfoReader(const char* path, const char* path2, StaConnection* pNodeSta)
{
    File file;
    File file2;
    const bool opened = openFile(file, path, "r");
    const bool opened2 = openFile(file2, path2, "r");
    bool result = false;
    if (!opened || !opened2) {
        /* Names the first path even if only the second failed, on purpose. */
        LOG_ERROR("libzo: [%s:%d]: Failed to read file: %s.\n", __func__, __LINE__, path);
    } else {
        const int count = readStationLines(__func__, file, path, pNodeSta, INT_MAX);
        result = count != -1 && readStationLines(__func__, file2, path2, pNodeSta + count, INT_MAX) != -1;
    }
    if (opened)
        closeFile(file);
    if (opened2)
        closeFile(file2);
    return result;
}

bool stationNodeInfoWriter(const char* path, StaConnection* pNodeSta, int staNum)
{
    TextOut out;
    if (!openText(out, path)) {
        LOG_ERROR("libzo: [%s:%d]: fopen error, path: %s.", __func__, __LINE__, path);
        return false;
    }
    for (int i = 0; i < staNum; ++i) {
        const StaConnection& station = pNodeSta[i];
        const uint16_t position = static_cast<uint16_t>(i);
        if (!stationLine(out, position, station)) {
            LOG_ERROR("libzo: [%s:%d]: fprintf error, path: %s", __func__, __LINE__, path);
            closeText(out);
            return false;
        }
    }
    closeText(out);
    return true;
}

/* ---- Interface: append -------------------------------------------------- */

bool stationInfoAppendWriter(const char* path, StaConnection* pIncomeStaInfo, int staNum)
{
    const int oldCount = dataLineCounter(path);
    if (pIncomeStaInfo == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: null pIncomeStaInfo", __func__, __LINE__);
        return false;
    }
    if (oldCount <= 0) { /* the first save has no cap */
        LOG_INFO("libzo: [%s:%d]: Just save income sta info data", __func__, __LINE__);
        if (!stationNodeInfoWriter(path, pIncomeStaInfo, staNum)) {
            LOG_ERROR("libzo: [%s:%d]: Failed to write to file: %s", __func__, __LINE__, path);
            return false;
        }
        LOG_INFO("libzo: [%s:%d]: Sta Info has been written to file: %s", __func__, __LINE__, path);
        return true;
    }

    const int newCount = staNum > 0 ? staNum : 0;
    StaConnection* records = allocateRecords<StaConnection>(oldCount, newCount);
    if (records == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: Failed to allocate memory for StaConnection", __func__, __LINE__);
        return false;
    }
    if (!readStations(path, records, oldCount)) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file: %s", __func__, __LINE__, path);
        free(records);
        return false;
    }
    memcpy(records + oldCount, pIncomeStaInfo, static_cast<size_t>(newCount) * sizeof *records);

    const int total = oldCount + newCount;
    const int start = total > ALG_STATION_CAP ? total - ALG_STATION_CAP : 0;
    const bool saved = stationNodeInfoWriter(path, records + start, total - start);
    free(records);
    if (!saved)
        LOG_ERROR("libzo: [%s:%d]: Failed to add new sta info data to file: %s", __func__, __LINE__, path);
    return saved;
}

/* ---- Interface: rates in memory ----------------------------------------- */

void mimoSync(StaConnection* pNodeSta, int cnt)
{
    for (int i = 0; i < cnt; ++i) {
        StaConnection& station = pNodeSta[i];
        const uint16_t mimo = station.mimo;
        if (mimo != MIMO_1 && mimo != MIMO_3 && mimo != MIMO_4 && mimo != MIMO_8)
            continue;
        /* These MIMO_ values are their numbers of streams. */
        station.rxRate = twoStreamRate(station.rxRate, mimo);
        station.txRate = twoStreamRate(station.txRate, mimo);
        station.mimo = MIMO_2;
    }
}
