/* SPDX-License-Identifier: Apache-2.0 */
#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "../dataInterface.h"
#include "diagnostics.h"
#include "text.h"
#include "workingArray.h"

/* Written and read with the same string: minimum widths out, maximum widths in. */
static constexpr auto stationLine =
    FORMAT("%3hu %12s %12s %2hu %4hu %4hu %4hu %4hu %hu %hu %hu %hu %hu %hu %hu\n");

/* ---- Whole files -------------------------------------------------------- */

static int scanStation(TextIn& in, StaConnection* sta)
{
    return scan(in, stationLine, sta->id, sta->deviceMac, sta->apMac, sta->connectBand, sta->rssi,
                sta->rxRate, sta->txRate, sta->rxPackageCount, sta->txPackageCount, sta->wifimode,
                sta->bandwidth, sta->mcslevel, sta->mimo, sta->kvrCapacity, sta->noiselevel);
}

/*
 * Reads lines into records until the end of the file or of the room; the
 * destination moves on by one record per line, whatever the line gave. The
 * number of lines read, or -1 at a blank line, reported for `function`.
 */
static int readStations(const char* function, FILE* fp, const char* path, StaConnection* stas, int room)
{
    TextIn in;
    startText(in, fp);
    int count = 0;
    while (count < room && takeLine(in)) {
        if (scanStation(in, &stas[count]) == -1) {
            LOG_ERROR("libzo: [%s:%d]: sscanf error, path: %s", function, __LINE__, path);
            return -1;
        }
        ++count;
    }
    return count;
}

/* The reader of one file, for an array of at most `room` records. */
static bool readStationFile(const char* path, StaConnection* stas, int room)
{
    FILE* fp = fopen(path, "r");
    if (fp == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file: %s.\n", "stationInfoOnlyReader", __LINE__, path);
        return false;
    }
    const int count = readStations("stationInfoOnlyReader", fp, path, stas, room);
    fclose(fp);
    return count != -1;
}

bool stationInfoOnlyReader(const char* path, StaConnection* pNodeSta)
{
    return readStationFile(path, pNodeSta, INT_MAX);
}

bool stationNodeInfoReader(const char* path, const char* path2, StaConnection* pNodeSta)
{
    FILE* fp = fopen(path, "r");
    FILE* fp2 = fopen(path2, "r");
    bool result = false;
    if (fp == nullptr || fp2 == nullptr) {
        /* Names the first path even when it was the second that failed, on purpose. */
        LOG_ERROR("libzo: [%s:%d]: Failed to read file: %s.\n", __func__, __LINE__, path);
    } else {
        const int count = readStations(__func__, fp, path, pNodeSta, INT_MAX);
        result = count != -1 && readStations(__func__, fp2, path2, pNodeSta + count, INT_MAX) != -1;
    }
    if (fp != nullptr)
        fclose(fp);
    if (fp2 != nullptr)
        fclose(fp2);
    return result;
}

bool stationNodeInfoWriter(const char* path, StaConnection* pNodeSta, int staNum)
{
    FILE* fp = fopen(path, "w");
    if (fp == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: fopen error, path: %s.", __func__, __LINE__, path);
        return false;
    }
    TextOut out;
    startText(out, fp);
    for (int i = 0; i < staNum; ++i) {
        const StaConnection* sta = &pNodeSta[i];
        const uint16_t position = static_cast<uint16_t>(i); /* in place of the id, on purpose */
        if (print(out, stationLine, position, sta->deviceMac, sta->apMac, sta->connectBand, sta->rssi,
                  sta->rxRate, sta->txRate, sta->rxPackageCount, sta->txPackageCount, sta->wifimode,
                  sta->bandwidth, sta->mcslevel, sta->mimo, sta->kvrCapacity, sta->noiselevel) == -1) {
            LOG_ERROR("libzo: [%s:%d]: fprintf error, path: %s", __func__, __LINE__, path);
            closeText(out);
            return false;
        }
    }
    closeText(out);
    return true;
}

/* ---- New samples behind the old ----------------------------------------- */

bool stationInfoAppendWriter(const char* path, StaConnection* pIncomeStaInfo, int staNum)
{
    const int num = dataLineCounter(path);
    if (pIncomeStaInfo == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: null pIncomeStaInfo", __func__, __LINE__);
        return false;
    }
    if (num <= 0) { /* the first save has no cap */
        LOG_INFO("libzo: [%s:%d]: Just save income sta info data", __func__, __LINE__);
        if (!stationNodeInfoWriter(path, pIncomeStaInfo, staNum)) {
            LOG_ERROR("libzo: [%s:%d]: Failed to write to file: %s", __func__, __LINE__, path);
            return false;
        }
        LOG_INFO("libzo: [%s:%d]: Sta Info has been written to file: %s", __func__, __LINE__, path);
        return true;
    }

    const int income = staNum > 0 ? staNum : 0;
    StaConnection* stas = static_cast<StaConnection*>(allocateRecords(num, income, sizeof(StaConnection)));
    if (stas == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: Failed to allocate memory for StaConnection", __func__, __LINE__);
        return false;
    }
    if (!readStationFile(path, stas, num)) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file: %s", __func__, __LINE__, path);
        free(stas);
        return false;
    }
    memcpy(stas + num, pIncomeStaInfo, static_cast<size_t>(income) * sizeof *stas);

    const int total = num + income;
    const int start = total > ALG_STATION_CAP ? total - ALG_STATION_CAP : 0;
    const bool result = stationNodeInfoWriter(path, stas + start, total - start);
    free(stas);
    if (!result)
        LOG_ERROR("libzo: [%s:%d]: Failed to add new sta info data to file: %s", __func__, __LINE__, path);
    return result;
}

/* ---- Rates in memory ---------------------------------------------------- */

/* A rate over `streams` streams as its equivalent over two; a product over 16 bits wraps. */
static uint16_t twoStreamRate(uint16_t rate, uint16_t streams)
{
    return static_cast<uint16_t>(static_cast<uint32_t>(rate) * 2U / streams);
}

void mimoSync(StaConnection* pNodeSta, int cnt)
{
    for (int i = 0; i < cnt; ++i) {
        StaConnection* sta = &pNodeSta[i];
        if (sta->mimo != MIMO_1 && sta->mimo != MIMO_3 && sta->mimo != MIMO_4 && sta->mimo != MIMO_8)
            continue;
        /* The MIMO_ values of these are their stream counts. */
        sta->rxRate = twoStreamRate(sta->rxRate, sta->mimo);
        sta->txRate = twoStreamRate(sta->txRate, sta->mimo);
        sta->mimo = MIMO_2;
    }
}
