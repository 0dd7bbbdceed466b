/* SPDX-License-Identifier: Apache-2.0 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "../dataInterface.h"
#include "apNodeBounds.h"
#include "diagnostics.h"
#include "text.h"
#include "workingArray.h"

/* ---- One line ----------------------------------------------------------- */

/* The five band groups and the newline, the same in AP-all and detail lines. */
static bool printBands(TextOut& out, const ApInfoAllV2* info)
{
    const ApNodeV2* node = &info->apNodeV2;
    for (int j = 0; j < ALG_BANDS; ++j) {
        const AlgWifiMode* mode = &info->algWifiMode[j];
        if (print(out, FORMAT("%hhu %hu %hu %hu %hhu %hhu %hhu %hhu %hhu %hhu %hhu "),
                  node->wirelessChannelUtilization[j], node->wirelessRxRate[j], node->wirelessTxRate[j],
                  node->offset[j], mode->available, mode->NSS, mode->wifiMode, mode->bandWidth,
                  mode->mcsLevel, mode->channel, mode->reserved) == -1)
            return false;
    }
    return print(out, FORMAT("\n")) != -1;
}

static bool scanBands(TextIn& in, ApInfoAllV2* info)
{
    ApNodeV2* node = &info->apNodeV2;
    for (int j = 0; j < ALG_BANDS; ++j) {
        AlgWifiMode* mode = &info->algWifiMode[j];
        if (scan(in, FORMAT("%hhu %hu %hu %hu %hhu %hhu %hhu %hhu %hhu %hhu %hhu "),
                 node->wirelessChannelUtilization[j], node->wirelessRxRate[j], node->wirelessTxRate[j],
                 node->offset[j], mode->available, mode->NSS, mode->wifiMode, mode->bandWidth, mode->mcsLevel,
                 mode->channel, mode->reserved) == -1)
            return false;
    }
    return true;
}

static bool printApAll(TextOut& out, const ApInfoAllV2* info)
{
    const ApNodeV2* node = &info->apNodeV2;
    if (print(out, FORMAT("%hhu %hhu %12s %12s %hhu %hu %hhu %hu %hhu "), info->alg_version.major_ver,
              info->alg_version.minor_ver, node->deviceMAC, node->fatherDeviceMAC, node->plcUtilization,
              node->plcRate, node->ethernetUtilization, node->ethernetRate, node->tipc_node) == -1)
        return false;
    return printBands(out, info);
}

static bool scanApAll(TextIn& in, ApInfoAllV2* info)
{
    ApNodeV2* node = &info->apNodeV2;
    if (scan(in, FORMAT("%hhu %hhu %12s %12s %hhu %hu %hhu %hu %hhu "), info->alg_version.major_ver,
             info->alg_version.minor_ver, node->deviceMAC, node->fatherDeviceMAC, node->plcUtilization,
             node->plcRate, node->ethernetUtilization, node->ethernetRate, node->tipc_node) == -1)
        return false;
    return scanBands(in, info);
}

static bool printApAllDetail(TextOut& out, const ApInfoAllV2* info)
{
    const ApNodeV2* node = &info->apNodeV2;
    if (print(out, FORMAT("%12s %12s %hhu %hu %hhu %hu "), node->deviceMAC, node->fatherDeviceMAC,
              node->plcUtilization, node->plcRate, node->ethernetUtilization, node->ethernetRate) == -1)
        return false;
    return printBands(out, info);
}

static bool scanApAllDetail(TextIn& in, ApInfoAllV2* info)
{
    ApNodeV2* node = &info->apNodeV2;
    if (scan(in, FORMAT("%12s %12s %hhu %hu %hhu %hu "), node->deviceMAC, node->fatherDeviceMAC,
             node->plcUtilization, node->plcRate, node->ethernetUtilization, node->ethernetRate) == -1)
        return false;
    return scanBands(in, info);
}

/* ---- Whole files -------------------------------------------------------- */

bool apAllInfoWriter(const char* path, ApInfoAllV2* pApInfoAllV2, int cnt, bool replaceVersion)
{
    (void)replaceVersion; /* the version written is always the record's own */
    FILE* fp = fopen(path, "w");
    if (fp == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: fopen error, path: %s.", __func__, __LINE__, path);
        return false;
    }
    TextOut out;
    startText(out, fp);

    bool result = true;
    for (int i = 0; i < cnt && result; ++i) {
        if (!printApAll(out, &pApInfoAllV2[i])) {
            LOG_ERROR("libzo: [%s:%d]: fprintf error, path:%s.\n", __func__, __LINE__, path);
            result = false;
        }
    }

    if (closeText(out) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", __func__, __LINE__, path);
        return false;
    }
    return result;
}

bool apAllInfoOnlyReader(const char* path, ApInfoAllV2* pApInfoAllV2, int cnt, char (*macPool)[ALG_MAC_SIZE])
{
    FILE* fp = fopen(path, "r");
    if (fp == nullptr) {
        /* The PAT file's wording, spelling included, serves here too. */
        LOG_INFO("libzo: [%s:%d]: pat file does not exit.\n", __func__, __LINE__);
        return false;
    }
    TextIn in;
    startText(in, fp);

    bool result = true;
    for (int i = 0; i < cnt && result; ++i) {
        if (!scanApAll(in, &pApInfoAllV2[i])) {
            LOG_ERROR("libzo: [%s:%d]: fscanf error, path:%s.\n", __func__, __LINE__, path);
            result = false;
        } else if (macPool != nullptr) {
            memcpy(macPool[i], pApInfoAllV2[i].apNodeV2.deviceMAC, sizeof macPool[i]);
        }
    }

    if (fclose(fp) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", __func__, __LINE__, path);
        return false;
    }
    return result;
}

/* By design the caller is not told of a missing or short file: only the log is. */
bool apAllInfoReader(const char* path, ApInfoAllV2* pApInfoAllV2, int cnt, char (*macPool)[ALG_MAC_SIZE])
{
    apAllInfoOnlyReader(path, pApInfoAllV2, cnt, macPool);
    for (int i = 0; i < cnt; ++i)
        boundApNode(&pApInfoAllV2[i].apNodeV2);
    return true;
}

/* By design every line is the first record: the writer does not move on. */
bool apAllDetailInfoWriter(const char* path, ApInfoAllV2* pApInfoAllV2, int cnt, bool replaceVersion)
{
    (void)replaceVersion; /* a detail line has no version */
    FILE* fp = fopen(path, "w");
    if (fp == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: fopen error, path: %s.", __func__, __LINE__, path);
        return false;
    }
    TextOut out;
    startText(out, fp);
    for (int i = 0; i < cnt; ++i) {
        if (!printApAllDetail(out, pApInfoAllV2)) {
            LOG_ERROR("libzo: [%s:%d]: fprintf error, path:%s.\n", __func__, __LINE__, path);
            closeText(out);
            return false;
        }
    }
    closeText(out);
    return true;
}

/* Like its writer it stays on the first record, which ends up as the last line read. */
bool apAllDetailInfoReader(const char* path, ApInfoAllV2* pApInfoAllV2, uint8_t cnt, char (*macPool)[ALG_MAC_SIZE])
{
    (void)macPool; /* accepted and left alone */
    FILE* fp = fopen(path, "r");
    if (fp == nullptr) {
        LOG_INFO("libzo: [%s:%d]: pat file does not exit.\n", __func__, __LINE__);
        return false;
    }
    TextIn in;
    startText(in, fp);

    bool result = true;
    for (int i = 0; i < cnt && result; ++i) {
        if (!scanApAllDetail(in, pApInfoAllV2)) {
            LOG_ERROR("libzo: [%s:%d]: fscanf error, path:%s.\n", __func__, __LINE__, path);
            result = false;
        }
    }

    if (fclose(fp) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", __func__, __LINE__, path);
        return false;
    }
    return result;
}

/* ---- One node of a file ------------------------------------------------- */

/* Index of the first record with this key, or `cnt`. */
static int findApAll(const ApInfoAllV2* infos, int cnt, const char* mac)
{
    int i = 0;
    while (i < cnt && strncmp(infos[i].apNodeV2.deviceMAC, mac, sizeof infos[i].apNodeV2.deviceMAC) != 0)
        ++i;
    return i;
}

/* Allocates and reads the file's `num` records for `function`, which reports failures as its own. */
static ApInfoAllV2* loadApAll(const char* function, const char* path, int num)
{
    ApInfoAllV2* infos = static_cast<ApInfoAllV2*>(allocateRecords(num, 0, sizeof(ApInfoAllV2)));
    if (infos == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: Failed to allocate memory for ApInfoAll", function, __LINE__);
        return nullptr;
    }
    if (!apAllInfoOnlyReader(path, infos, num, nullptr)) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file: %s", function, __LINE__, path);
        free(infos);
        return nullptr;
    }
    return infos;
}

bool updataSingleApAllInfo(const char* path, ApInfoAllV2* pIncomeApInfoAll)
{
    const int num = dataLineCounter(path);
    if (pIncomeApInfoAll == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: null pIncomeApInfoAll", __func__, __LINE__);
        return false;
    }
    LOG_INFO("libzo: [%s:%d]: Income AP InfoAll from %s, %d items of old ApInfo", __func__, __LINE__,
             pIncomeApInfoAll->apNodeV2.deviceMAC, num);

    if (num < 1) {
        LOG_INFO("libzo: [%s:%d]: Just save apAllInfo", __func__, __LINE__);
        if (!apAllInfoWriter(path, pIncomeApInfoAll, 1, false)) {
            LOG_ERROR("libzo: [%s:%d]: Failed to write to file: %s", __func__, __LINE__, path);
            return false;
        }
        LOG_INFO("libzo: [%s:%d]: AP InfoALl has been written to file: %s", __func__, __LINE__, path);
        return true;
    }

    ApInfoAllV2* infos = loadApAll(__func__, path, num);
    if (infos == nullptr)
        return false;

    bool result;
    const int at = findApAll(infos, num, pIncomeApInfoAll->apNodeV2.deviceMAC);
    if (at < num) {
        LOG_INFO("libzo: [%s:%d]: income ap info found @index %d", __func__, __LINE__, at);
        infos[at] = *pIncomeApInfoAll;
        result = apAllInfoWriter(path, infos, num, false);
        free(infos);
        if (!result)
            LOG_ERROR("libzo: [%s:%d]: Failed to save new ap info to file: %s", __func__, __LINE__, path);
    } else {
        LOG_INFO("libzo: [%s:%d]: income ap info not found, inserting...", __func__, __LINE__);
        ApInfoAllV2* grown = static_cast<ApInfoAllV2*>(growByOneRecord(infos, num, sizeof(ApInfoAllV2)));
        if (grown == nullptr) {
            LOG_ERROR("libzo: [%s:%d]: failed to reallocte memory.", __func__, __LINE__);
            return false; /* gives up the array that was read into, as it stands */
        }
        infos = grown;
        infos[num] = *pIncomeApInfoAll;
        result = apAllInfoWriter(path, infos, num + 1, false);
        free(infos);
        if (!result)
            LOG_ERROR("libzo: [%s:%d]: Failed to add ap info data to file: %s", __func__, __LINE__, path);
    }
    return result;
}

bool deleteSingleApAllInfo(const char* path, char* mac)
{
    const int num = dataLineCounter(path);
    ApInfoAllV2* infos = loadApAll(__func__, path, num);
    if (infos == nullptr)
        return false;

    const int at = findApAll(infos, num, mac);
    if (at == num) {
        free(infos);
        LOG_ERROR("libzo: [%s:%d]: Cannot find the mac in the ap info.", __func__, __LINE__);
        return false;
    }

    infos[at] = infos[num - 1]; /* the last record fills the gap */
    const bool result = apAllInfoWriter(path, infos, num - 1, false);
    free(infos);
    if (!result)
        LOG_ERROR("libzo: [%s:%d]: Failed to add ap info data to file: %s", __func__, __LINE__, path);
    return result;
}
