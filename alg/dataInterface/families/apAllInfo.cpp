/* SPDX-License-Identifier: Apache-2.0 */
#include <stdlib.h>
#include <string.h>

#include "../../dataInterface.h"
#include "../shared/apNodeBounds.h"
#include "../shared/diagnostics.h"
#include "../shared/records.h"
#include "../text/fields.h"

namespace [[gnu::visibility("hidden")]] alg_internal
{

/* ---- One record --------------------------------------------------------- */

/* The bands and the end of the line, the same in AP-all and in detail lines. */
template <typename Text, typename Info> static bool apAllBands(Text& text, Info& info)
{
    auto& node = info.apNodeV2;
    for (int j = 0; j < ALG_BANDS; ++j) {
        auto& mode = info.algWifiMode[j];
        if (!fields(text, FORMAT("%hhu %hu %hu %hu %hhu %hhu %hhu %hhu %hhu %hhu %hhu "),
                    node.wirelessChannelUtilization[j], node.wirelessRxRate[j], node.wirelessTxRate[j],
                    node.offset[j], mode.available, mode.NSS, mode.wifiMode, mode.bandWidth, mode.mcsLevel,
                    mode.channel, mode.reserved))
            return false;
    }
    return endLine(text);
}

template <typename Text, typename Info> static bool apAllLine(Text& text, Info& info)
{
    auto& node = info.apNodeV2;
    return fields(text, FORMAT("%hhu %hhu %12s %12s %hhu %hu %hhu %hu %hhu "), info.alg_version.major_ver,
                  info.alg_version.minor_ver, node.deviceMAC, node.fatherDeviceMAC, node.plcUtilization,
                  node.plcRate, node.ethernetUtilization, node.ethernetRate, node.tipc_node) &&
           apAllBands(text, info);
}

template <typename Text, typename Info> static bool apAllDetailLine(Text& text, Info& info)
{
    auto& node = info.apNodeV2;
    return fields(text, FORMAT("%12s %12s %hhu %hu %hhu %hu "), node.deviceMAC, node.fatherDeviceMAC,
                  node.plcUtilization, node.plcRate, node.ethernetUtilization, node.ethernetRate) &&
           apAllBands(text, info);
}

/* ---- Updates ------------------------------------------------------------ */

/* Allocates and reads the file's records. A failure is reported under the name `function`. */
static ApInfoAllV2* loadApAll(const char* function, const char* path, int count)
{
    ApInfoAllV2* records = allocateRecords<ApInfoAllV2>(count, 0);
    if (records == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: Failed to allocate memory for ApInfoAll", function, __LINE__);
        return nullptr;
    }
    if (!apAllInfoOnlyReader(path, records, count, nullptr)) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file: %s", function, __LINE__, path);
        free(records);
        return nullptr;
    }
    return records;
}

static int findApAll(const ApInfoAllV2* records, int count, const char* mac)
{
    return findRecord(records, offsetof(ApInfoAllV2, apNodeV2) + offsetof(ApNodeV2, deviceMAC), count, mac);
}

} // namespace alg_internal

using namespace alg_internal;

/* ---- AP-all lines ------------------------------------------------------- */

bool apAllInfoWriter(const char* path, ApInfoAllV2* pApInfoAllV2, int cnt, bool replaceVersion)
{
    (void)replaceVersion; /* the version written is always the record's own */
    TextOut out;
    if (!openText(out, path)) {
        LOG_ERROR("libzo: [%s:%d]: fopen error, path: %s.", __func__, __LINE__, path);
        return false;
    }
    bool result = true;
    for (int i = 0; i < cnt && result; ++i) {
        const ApInfoAllV2& info = pApInfoAllV2[i];
        result = apAllLine(out, info);
        if (!result)
            LOG_ERROR("libzo: [%s:%d]: fprintf error, path:%s.\n", __func__, __LINE__, path);
    }
    if (closeText(out) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", __func__, __LINE__, path);
        return false;
    }
    return result;
}

bool apAllInfoOnlyReader(const char* path, ApInfoAllV2* pApInfoAllV2, int cnt, char (*macPool)[ALG_MAC_SIZE])
{
    TextIn in;
    if (!openText(in, path)) {
        /* The text of the PAT files, spelling included, on purpose. */
        LOG_INFO("libzo: [%s:%d]: pat file does not exit.\n", __func__, __LINE__);
        return false;
    }
    bool result = true;
    for (int i = 0; i < cnt && result; ++i) {
        result = apAllLine(in, pApInfoAllV2[i]);
        if (!result)
            LOG_ERROR("libzo: [%s:%d]: fscanf error, path:%s.\n", __func__, __LINE__, path);
        else if (macPool != nullptr)
            memcpy(macPool[i], pApInfoAllV2[i].apNodeV2.deviceMAC, sizeof macPool[i]);
    }
    if (closeText(in) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", __func__, __LINE__, path);
        return false;
    }
    return result;
}

/* Always true, on purpose: only the log reports a missing or short file. */
bool apAllInfoReader(const char* path, ApInfoAllV2* pApInfoAllV2, int cnt, char (*macPool)[ALG_MAC_SIZE])
{
    apAllInfoOnlyReader(path, pApInfoAllV2, cnt, macPool);
    for (int i = 0; i < cnt; ++i)
        convertLoadedApNode(pApInfoAllV2[i].apNodeV2);
    return true;
}

/* ---- Detail lines ------------------------------------------------------- */

/* Every line is the first record of the array, on purpose. */
bool apAllDetailInfoWriter(const char* path, ApInfoAllV2* pApInfoAllV2, int cnt, bool replaceVersion)
{
    (void)replaceVersion; /* a detail line has no version */
    TextOut out;
    if (!openText(out, path)) {
        LOG_ERROR("libzo: [%s:%d]: fopen error, path: %s.", __func__, __LINE__, path);
        return false;
    }
    for (int i = 0; i < cnt; ++i) {
        const ApInfoAllV2& info = *pApInfoAllV2;
        if (!apAllDetailLine(out, info)) {
            LOG_ERROR("libzo: [%s:%d]: fprintf error, path:%s.\n", __func__, __LINE__, path);
            closeText(out);
            return false;
        }
    }
    closeText(out);
    return true;
}

/* Reads all lines into the first record of the array, on purpose. */
bool apAllDetailInfoReader(const char* path, ApInfoAllV2* pApInfoAllV2, uint8_t cnt,
                           char (*macPool)[ALG_MAC_SIZE])
{
    (void)macPool; /* part of the interface, without effect */
    TextIn in;
    if (!openText(in, path)) {
        LOG_INFO("libzo: [%s:%d]: pat file does not exit.\n", __func__, __LINE__);
        return false;
    }
    bool result = true;
    for (int i = 0; i < cnt && result; ++i) {
        result = apAllDetailLine(in, *pApInfoAllV2);
        if (!result)
            LOG_ERROR("libzo: [%s:%d]: fscanf error, path:%s.\n", __func__, __LINE__, path);
    }
    if (closeText(in) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", __func__, __LINE__, path);
        return false;
    }
    return result;
}

/* ---- Update and delete -------------------------------------------------- */

bool updataSingleApAllInfo(const char* path, ApInfoAllV2* pIncomeApInfoAll)
{
    const int oldCount = dataLineCounter(path);
    if (pIncomeApInfoAll == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: null pIncomeApInfoAll", __func__, __LINE__);
        return false;
    }
    ALG_LOG_FROM(6, "libzo: [%s:%d]: Income AP InfoAll from %s, %d items of old ApInfo", __func__, __LINE__,
                 pIncomeApInfoAll->apNodeV2.deviceMAC, oldCount);

    if (oldCount < 1) {
        LOG_INFO("libzo: [%s:%d]: Just save apAllInfo", __func__, __LINE__);
        if (!apAllInfoWriter(path, pIncomeApInfoAll, 1, false)) {
            LOG_ERROR("libzo: [%s:%d]: Failed to write to file: %s", __func__, __LINE__, path);
            return false;
        }
        LOG_INFO("libzo: [%s:%d]: AP InfoALl has been written to file: %s", __func__, __LINE__, path);
        return true;
    }

    ApInfoAllV2* records = loadApAll(__func__, path, oldCount);
    if (records == nullptr)
        return false;

    const int index = findApAll(records, oldCount, pIncomeApInfoAll->apNodeV2.deviceMAC);
    if (index < oldCount) {
        LOG_INFO("libzo: [%s:%d]: income ap info found @index %d", __func__, __LINE__, index);
        records[index] = *pIncomeApInfoAll;
        const bool saved = apAllInfoWriter(path, records, oldCount, false);
        free(records);
        if (!saved)
            LOG_ERROR("libzo: [%s:%d]: Failed to save new ap info to file: %s", __func__, __LINE__, path);
        return saved;
    }

    LOG_INFO("libzo: [%s:%d]: income ap info not found, inserting...", __func__, __LINE__);
    ApInfoAllV2* grown = growByOneRecord(records, oldCount);
    if (grown == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: failed to reallocte memory.", __func__, __LINE__);
        return false; /* leaks `records`, on purpose */
    }
    grown[oldCount] = *pIncomeApInfoAll;
    const bool saved = apAllInfoWriter(path, grown, oldCount + 1, false);
    free(grown);
    if (!saved)
        LOG_ERROR("libzo: [%s:%d]: Failed to add ap info data to file: %s", __func__, __LINE__, path);
    return saved;
}

bool deleteSingleApAllInfo(const char* path, char* mac)
{
    const int oldCount = dataLineCounter(path);
    ApInfoAllV2* records = loadApAll(__func__, path, oldCount);
    if (records == nullptr)
        return false;

    const int index = findApAll(records, oldCount, mac);
    if (index == oldCount) {
        free(records);
        LOG_ERROR("libzo: [%s:%d]: Cannot find the mac in the ap info.", __func__, __LINE__);
        return false;
    }

    records[index] = records[oldCount - 1]; /* the last record fills the gap */
    const bool saved = apAllInfoWriter(path, records, oldCount - 1, false);
    free(records);
    if (!saved)
        LOG_ERROR("libzo: [%s:%d]: Failed to add ap info data to file: %s", __func__, __LINE__, path);
    return saved;
}
