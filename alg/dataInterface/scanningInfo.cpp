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
static constexpr auto scanningLine = FORMAT("%12s %12s %2hhu %3hhu %3hhu\n");

/* ---- Whole files -------------------------------------------------------- */

static uint8_t compensatedRssi(uint8_t rssi)
{
    const int lowered = rssi - ai_yra_rssi_compensation;
    return static_cast<uint8_t>(lowered < 1 ? 1 : lowered);
}

/* The reader, for an array of at most `room` records: a file that has grown is read that far. */
static bool readScanningFile(const char* path, ScanningInfo* scans, int room)
{
    FILE* fp = fopen(path, "r");
    if (fp == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file : %s.\n", "scanningInfoReader", __LINE__, path);
        return false;
    }
    TextIn in;
    startText(in, fp);
    for (int i = 0; i < room && takeLine(in); ++i) {
        ScanningInfo* seen = &scans[i];
        if (scan(in, scanningLine, seen->deviceMAC, seen->neighbourMAC, seen->band, seen->channel,
                 seen->rssi) == -1) {
            LOG_ERROR("libzo: [%s:%d]: sscanf error, path: %s.\n", "scanningInfoReader", __LINE__, path);
            fclose(fp);
            return false;
        }
        seen->rssi = compensatedRssi(seen->rssi);
    }
    if (fclose(fp) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path: %s.\n", "scanningInfoReader", __LINE__, path);
        return false;
    }
    return true;
}

bool scanningInfoReader(const char* path, ScanningInfo* pScanningInfo)
{
    return readScanningFile(path, pScanningInfo, INT_MAX);
}

bool scanningInfoWriter(const char* path, ScanningInfo* pScanningInfo, int cnt)
{
    FILE* fp = fopen(path, "w");
    if (fp == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: Failed to write file: %s.\n", __func__, __LINE__, path);
        return false;
    }
    TextOut out;
    startText(out, fp);
    for (int i = 0; i < cnt; ++i) {
        const ScanningInfo* seen = &pScanningInfo[i];
        if (print(out, scanningLine, seen->deviceMAC, seen->neighbourMAC, seen->band, seen->channel,
                  seen->rssi) == -1) {
            /* The close's text serves for a failed print too, on purpose. */
            LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", __func__, __LINE__, path);
            closeText(out);
            return false;
        }
    }
    if (closeText(out) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", __func__, __LINE__, path);
        return false;
    }
    return true;
}

/* ---- Sightings out of and into a file ----------------------------------- */
/*
 * Each pass loads through the reader and writes back what it loaded, so every
 * line that survives is stored with its RSSI lowered once more. That is meant.
 */

/* Copies the sightings of all other APs in their order; gives how many there are. */
static int keepOtherScans(const ScanningInfo* scans, int num, const char* curApMac, ScanningInfo* kept)
{
    int cnt = 0;
    for (int i = 0; i < num; ++i) {
        if (strncmp(scans[i].deviceMAC, curApMac, sizeof scans[i].deviceMAC) != 0)
            kept[cnt++] = scans[i];
    }
    return cnt;
}

bool scanningInfoDeleter(const char* path, const char* curApMac)
{
    const int scanningInfoNum = dataLineCounter(path);
    if (scanningInfoNum <= 0) {
        LOG_INFO("libzo: [%s:%d]: There is no history data, just return.", __func__, __LINE__);
        return true;
    }

    ScanningInfo* pScanningInfo =
        static_cast<ScanningInfo*>(allocateRecords(scanningInfoNum, 0, sizeof(ScanningInfo)));
    ScanningInfo* pNewScanningInfo =
        static_cast<ScanningInfo*>(allocateRecords(scanningInfoNum, 0, sizeof(ScanningInfo)));
    bool result = false;
    if (pScanningInfo == nullptr || pNewScanningInfo == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: Failed to allocate memory for ScanningInfo", __func__, __LINE__);
    } else if (!readScanningFile(path, pScanningInfo, scanningInfoNum)) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file: %s", __func__, __LINE__, path);
    } else {
        const int cnt = keepOtherScans(pScanningInfo, scanningInfoNum, curApMac, pNewScanningInfo);
        result = scanningInfoWriter(path, pNewScanningInfo, cnt);
        if (!result)
            LOG_ERROR("libzo: [%s:%d]: Failed to add new scanning info data to file: %s", __func__, __LINE__,
                      path);
    }
    free(pScanningInfo);
    free(pNewScanningInfo);
    return result;
}

/* Both appends, each under its own name. */
static bool appendScans(const char* function, const char* path, ScanningInfo* pIncomeScanningInfo, int cnt)
{
    const int scanningInfoNum = dataLineCounter(path);
    if (pIncomeScanningInfo == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: null pIncomeScanningInfo", function, __LINE__);
        return false;
    }
    if (scanningInfoNum <= 0) { /* the first save has no cap */
        LOG_INFO("libzo: [%s:%d]: Just save income scanning data", function, __LINE__);
        if (!scanningInfoWriter(path, pIncomeScanningInfo, cnt)) {
            LOG_ERROR("libzo: [%s:%d]: Failed to write to file: %s", function, __LINE__, path);
            return false;
        }
        LOG_INFO("libzo: [%s:%d]: Scanning Info has been written to file: %s", function, __LINE__, path);
        return true;
    }

    /* A negative count is an impossible size, so it fails here. */
    ScanningInfo* pNewScanningInfo =
        static_cast<ScanningInfo*>(allocateRecords(scanningInfoNum, cnt, sizeof(ScanningInfo)));
    if (pNewScanningInfo == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: Failed to allocate memory for ScanningInfo", function, __LINE__);
        return false;
    }
    if (!readScanningFile(path, pNewScanningInfo, scanningInfoNum)) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file: %s", function, __LINE__, path);
        free(pNewScanningInfo);
        return false;
    }
    memcpy(pNewScanningInfo + scanningInfoNum, pIncomeScanningInfo,
           static_cast<size_t>(cnt) * sizeof *pNewScanningInfo);

    const int totalCnt = scanningInfoNum + cnt;
    const int startIndex = totalCnt > ALG_SCANNING_CAP ? totalCnt - ALG_SCANNING_CAP : 0;
    const bool result = scanningInfoWriter(path, pNewScanningInfo + startIndex, totalCnt - startIndex);
    if (!result)
        LOG_ERROR("libzo: [%s:%d]: Failed to add new scanning info data to file: %s", function, __LINE__,
                  path);
    free(pNewScanningInfo);
    return result;
}

bool appendScanningInfo(const char* path, ScanningInfo* pIncomeScanningInfo, int cnt)
{
    return appendScans(__func__, path, pIncomeScanningInfo, cnt);
}

bool appendSingleScanningInfo(const char* path, ScanningInfo* pIncomeScanningInfo)
{
    return appendScans(__func__, path, pIncomeScanningInfo, 1);
}
