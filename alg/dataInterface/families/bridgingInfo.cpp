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

template <typename Text, typename Node> static bool bridgingLine(Text& text, Node& node)
{
    if (!fields(text, FORMAT("%12s %12s "), node.deviceMAC, node.fatherDeviceMAC))
        return false;
    for (int j = 0; j < ALG_BANDS; ++j) {
        if (!fields(text, FORMAT("%hhu %hu %hu %hhu %hhu "), node.bridgingRssi[j], node.bridgingRxRate[j],
                    node.bridgingTxRate[j], node.bridgingRxMcs[j], node.bridgingTxMcs[j]))
            return false;
    }
    return endLine(text);
}

/* ---- Whole files -------------------------------------------------------- */

/* Reads at most `maxRecords` records, even if the file has grown since the caller counted its lines. */
static bool readBridging(const char* path, BridgingNodeV2* records, int maxRecords)
{
    static const char function[] = "bridgingApNodeInfoReader";
    const int lines = dataLineCounter(path);
    const int count = lines < maxRecords ? lines : maxRecords;
    TextIn in;
    if (!openText(in, path)) {
        /* Informational, and with the text of the PAT files, on purpose. */
        LOG_INFO("libzo: [%s:%d]: pat file does not exit.\n", function, __LINE__);
        return false;
    }
    bool result = true;
    for (int i = 0; i < count && result; ++i) {
        result = bridgingLine(in, records[i]);
        if (!result)
            LOG_ERROR("libzo: [%s:%d]: fscanf error, path:%s.\n", function, __LINE__, path);
    }
    if (closeText(in) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", function, __LINE__, path);
        return false;
    }
    return result;
}

/* ---- Updates ------------------------------------------------------------ */
/* Both updates use the first two functions; `function` is the name in their messages. */

static void saveOneBridging(const char* function, const char* path, BridgingNodeV2* pIncomeBridgingInfo)
{
    LOG_INFO("libzo: [%s:%d]: Just save income bridging data", function, __LINE__);
    if (bridgingApNodeInfoWriter(path, pIncomeBridgingInfo, 1))
        LOG_INFO("libzo: [%s:%d]: Bridging Info has been written to file: %s", function, __LINE__, path);
    else
        LOG_ERROR("libzo: [%s:%d]: Failed to write to file: %s", function, __LINE__, path);
}

/* The file's records and room for one more, or null. */
static BridgingNodeV2* loadBridging(const char* function, const char* path, int oldCount)
{
    BridgingNodeV2* records = allocateRecords<BridgingNodeV2>(oldCount, 1);
    if (records == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: Failed to allocate memory for BridgingNode", function, __LINE__);
        return nullptr;
    }
    if (!readBridging(path, records, oldCount)) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file: %s", function, __LINE__, path);
        free(records);
        return nullptr;
    }
    return records;
}

/* A log of the other nodes' reports: no search, so a node that reports twice is logged twice. */
static bool updateFapSingleBridgingInfo(const char* path, BridgingNodeV2* pIncomeBridgingInfo)
{
    const int oldCount = dataLineCounter(path);
    if (pIncomeBridgingInfo == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: null pIncomeBridgingInfo", __func__, __LINE__);
        return true;
    }
    if (strcmp(pIncomeBridgingInfo->fatherDeviceMAC, "000000000000") == 0) {
        LOG_INFO("libzo: [%s:%d]: It's FAP itself bridging info, ignore it.", __func__, __LINE__);
        return true;
    }
    if (oldCount <= 0) {
        saveOneBridging(__func__, path, pIncomeBridgingInfo);
        return true;
    }

    BridgingNodeV2* records = loadBridging(__func__, path, oldCount);
    if (records == nullptr)
        return true;
    records[oldCount] = *pIncomeBridgingInfo;

    /* A full log evicts one record for each new one. A log above the cap keeps its length, on purpose. */
    const bool full = oldCount + 1 > ALG_FAP_BRIDGING_CAP;
    const int start = full ? 1 : 0;
    const int count = full ? oldCount : oldCount + 1;
    if (!bridgingApNodeInfoWriter(path, records + start, count))
        LOG_ERROR("libzo: [%s:%d]: Failed to add new bridging info data to file: %s", __func__, __LINE__,
                  path);
    free(records);
    return true;
}

/* A table with one record per father and no cap. */
static bool updateReSingleBridgingInfo(const char* path, BridgingNodeV2* pIncomeBridgingInfo)
{
    const int oldCount = dataLineCounter(path);
    if (pIncomeBridgingInfo == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: null pIncomeBridgingInfo", __func__, __LINE__);
        return true;
    }
    if (oldCount <= 0) {
        saveOneBridging(__func__, path, pIncomeBridgingInfo);
        return true;
    }

    BridgingNodeV2* records = loadBridging(__func__, path, oldCount);
    if (records == nullptr)
        return true;

    int index = 0; /* this key is compared without the bound of ALG_MAC_SIZE, on purpose */
    while (index < oldCount &&
           strcmp(records[index].fatherDeviceMAC, pIncomeBridgingInfo->fatherDeviceMAC) != 0)
        ++index;
    const int count = index < oldCount ? oldCount : oldCount + 1;
    records[index] = *pIncomeBridgingInfo;
    if (!bridgingApNodeInfoWriter(path, records, count))
        LOG_ERROR("libzo: [%s:%d]: Failed to add new bridging info data to file: %s", __func__, __LINE__,
                  path);
    free(records);
    return true;
}

} // namespace alg_internal

using namespace alg_internal;

bool bridgingApNodeInfoReader(const char* path, BridgingNodeV2* pBridgingNodeV2)
{
    return readBridging(path, pBridgingNodeV2, INT_MAX);
}

bool bridgingApNodeInfoWriter(const char* path, BridgingNodeV2* pBridgingNodeV2, int cnt)
{
    TextOut out;
    if (!openText(out, path)) {
        LOG_ERROR("libzo: [%s:%d]: fopen error, path: %s.", __func__, __LINE__, path);
        return false;
    }
    for (int i = 0; i < cnt; ++i) {
        const BridgingNodeV2& node = pBridgingNodeV2[i];
        if (!bridgingLine(out, node)) {
            LOG_ERROR("libzo: [%s:%d]: fprintf error, path:%s.\n", __func__, __LINE__, path);
            closeText(out);
            return false;
        }
    }
    closeText(out);
    return true;
}

/* Always true, on purpose: only the log reports a failure. */
bool updateSingleBridgingInfo(const char* path, BridgingNodeV2* pIncomeBridgingInfo, bool isFap)
{
    return isFap ? updateFapSingleBridgingInfo(path, pIncomeBridgingInfo)
                 : updateReSingleBridgingInfo(path, pIncomeBridgingInfo);
}
