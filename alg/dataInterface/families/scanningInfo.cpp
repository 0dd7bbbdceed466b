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

template <typename Text, typename Sighting> static bool scanningLine(Text& text, Sighting& sighting)
{
    return fields(text, FORMAT("%12s %12s %2hhu %3hhu %3hhu\n"), sighting.deviceMAC, sighting.neighbourMAC,
                  sighting.band, sighting.channel, sighting.rssi);
}

static uint8_t compensatedRssi(uint8_t rssi)
{
    const int lowered = rssi - ai_yra_rssi_compensation;
    return static_cast<uint8_t>(lowered < 1 ? 1 : lowered);
}

/* ---- Whole files -------------------------------------------------------- */

/* Reads at most `maxRecords` records, even if the file has grown since the caller counted its lines. */
static bool readScanning(const char* path, ScanningInfo* records, int maxRecords)
{
    static const char function[] = "scanningInfoReader";
    TextIn in;
    if (!openText(in, path)) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file : %s.\n", function, __LINE__, path);
        return false;
    }
    for (int i = 0; i < maxRecords && nextLine(in); ++i) {
        if (!scanningLine(in, records[i])) {
            LOG_ERROR("libzo: [%s:%d]: sscanf error, path: %s.\n", function, __LINE__, path);
            closeText(in);
            return false;
        }
        records[i].rssi = compensatedRssi(records[i].rssi);
    }
    if (closeText(in) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path: %s.\n", function, __LINE__, path);
        return false;
    }
    return true;
}

/* ---- Deletes and appends ------------------------------------------------ */
/*
 * They load through the reader and write back what it returns. So the RSSI of
 * every record that they keep is lowered once more, on purpose.
 */

/* Copies the sightings of all other APs, in their order. Returns their number. */
static int copyOtherSightings(const ScanningInfo* records, int count, const char* curApMac,
                              ScanningInfo* others)
{
    int copied = 0;
    for (int i = 0; i < count; ++i) {
        if (strncmp(records[i].deviceMAC, curApMac, sizeof records[i].deviceMAC) != 0)
            others[copied++] = records[i];
    }
    return copied;
}

/* Both appends. Messages are reported under the name `function`. */
static bool appendSightings(const char* function, const char* path, ScanningInfo* pIncomeScanningInfo,
                            int newCount)
{
    const int oldCount = dataLineCounter(path);
    if (pIncomeScanningInfo == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: null pIncomeScanningInfo", function, __LINE__);
        return false;
    }
    if (oldCount <= 0) { /* the first save has no cap */
        LOG_INFO("libzo: [%s:%d]: Just save income scanning data", function, __LINE__);
        if (!scanningInfoWriter(path, pIncomeScanningInfo, newCount)) {
            LOG_ERROR("libzo: [%s:%d]: Failed to write to file: %s", function, __LINE__, path);
            return false;
        }
        LOG_INFO("libzo: [%s:%d]: Scanning Info has been written to file: %s", function, __LINE__, path);
        return true;
    }

    ScanningInfo* records = allocateRecords<ScanningInfo>(oldCount, newCount);
    if (records == nullptr) { /* a negative count ends here too */
        LOG_ERROR("libzo: [%s:%d]: Failed to allocate memory for ScanningInfo", function, __LINE__);
        return false;
    }
    if (!readScanning(path, records, oldCount)) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file: %s", function, __LINE__, path);
        free(records);
        return false;
    }
    memcpy(records + oldCount, pIncomeScanningInfo, static_cast<size_t>(newCount) * sizeof *records);

    const int total = oldCount + newCount;
    const int start = total > ALG_SCANNING_CAP ? total - ALG_SCANNING_CAP : 0;
    const bool saved = scanningInfoWriter(path, records + start, total - start);
    if (!saved)
        LOG_ERROR("libzo: [%s:%d]: Failed to add new scanning info data to file: %s", function, __LINE__,
                  path);
    free(records);
    return saved;
}

} // namespace alg_internal

using namespace alg_internal;

/* ---- Interface: whole files --------------------------------------------- */

bool scanningInfoReader(const char* path, ScanningInfo* pScanningInfo)
{
    return readScanning(path, pScanningInfo, INT_MAX);
}

bool scanningInfoWriter(const char* path, ScanningInfo* pScanningInfo, int cnt)
{
    TextOut out;
    if (!openText(out, path)) {
        LOG_ERROR("libzo: [%s:%d]: Failed to write file: %s.\n", __func__, __LINE__, path);
        return false;
    }
    for (int i = 0; i < cnt; ++i) {
        const ScanningInfo& sighting = pScanningInfo[i];
        if (!scanningLine(out, sighting)) {
            /* A failed print logs the text of a failed close, on purpose. */
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

/* ---- Interface: deletes and appends ------------------------------------- */

bool scanningInfoDeleter(const char* path, const char* curApMac)
{
    const int oldCount = dataLineCounter(path);
    if (oldCount <= 0) {
        LOG_INFO("libzo: [%s:%d]: There is no history data, just return.", __func__, __LINE__);
        return true;
    }

    ScanningInfo* records = allocateRecords<ScanningInfo>(oldCount, 0);
    ScanningInfo* others = allocateRecords<ScanningInfo>(oldCount, 0);
    bool saved = false;
    if (records == nullptr || others == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: Failed to allocate memory for ScanningInfo", __func__, __LINE__);
    } else if (!readScanning(path, records, oldCount)) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file: %s", __func__, __LINE__, path);
    } else {
        const int count = copyOtherSightings(records, oldCount, curApMac, others);
        saved = scanningInfoWriter(path, others, count);
        if (!saved)
            LOG_ERROR("libzo: [%s:%d]: Failed to add new scanning info data to file: %s", __func__, __LINE__,
                      path);
    }
    free(records);
    free(others);
    return saved;
}

bool appendScanningInfo(const char* path, ScanningInfo* pIncomeScanningInfo, int cnt)
{
    return appendSightings(__func__, path, pIncomeScanningInfo, cnt);
}

bool appendSingleScanningInfo(const char* path, ScanningInfo* pIncomeScanningInfo)
{
    return appendSightings(__func__, path, pIncomeScanningInfo, 1);
}
