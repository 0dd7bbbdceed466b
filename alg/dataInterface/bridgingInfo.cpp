/* SPDX-License-Identifier: Apache-2.0 */
#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "../dataInterface.h"
#include "diagnostics.h"
#include "text.h"
#include "workingArray.h"

/* ---- Whole files -------------------------------------------------------- */

static bool scanBridgingNode(TextIn& in, BridgingNodeV2* node)
{
    if (scan(in, FORMAT("%12s %12s "), node->deviceMAC, node->fatherDeviceMAC) == -1)
        return false;
    for (int j = 0; j < ALG_BANDS; ++j) {
        if (scan(in, FORMAT("%hhu %hu %hu %hhu %hhu "), node->bridgingRssi[j], node->bridgingRxRate[j],
                 node->bridgingTxRate[j], node->bridgingRxMcs[j], node->bridgingTxMcs[j]) == -1)
            return false;
    }
    return true;
}

static bool printBridgingNode(TextOut& out, const BridgingNodeV2* node)
{
    if (print(out, FORMAT("%12s %12s "), node->deviceMAC, node->fatherDeviceMAC) == -1)
        return false;
    for (int j = 0; j < ALG_BANDS; ++j) {
        if (print(out, FORMAT("%hhu %hu %hu %hhu %hhu "), node->bridgingRssi[j], node->bridgingRxRate[j],
                  node->bridgingTxRate[j], node->bridgingRxMcs[j], node->bridgingTxMcs[j]) == -1)
            return false;
    }
    return print(out, FORMAT("\n")) != -1;
}

/* The reader, for an array of at most `room` records: a file that has grown is read that far. */
static bool readBridgingNodes(const char* path, BridgingNodeV2* nodes, int room)
{
    const int lines = dataLineCounter(path);
    const int cnt = lines < room ? lines : room;
    FILE* fp = fopen(path, "r");
    if (fp == nullptr) {
        /* Informational, and in the PAT file's wording, on purpose. */
        LOG_INFO("libzo: [%s:%d]: pat file does not exit.\n", "bridgingApNodeInfoReader", __LINE__);
        return false;
    }
    TextIn in;
    startText(in, fp);

    bool result = true;
    for (int i = 0; i < cnt && result; ++i) {
        if (!scanBridgingNode(in, &nodes[i])) {
            LOG_ERROR("libzo: [%s:%d]: fscanf error, path:%s.\n", "bridgingApNodeInfoReader", __LINE__, path);
            result = false;
        }
    }

    if (fclose(fp) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", "bridgingApNodeInfoReader", __LINE__, path);
        return false;
    }
    return result;
}

bool bridgingApNodeInfoReader(const char* path, BridgingNodeV2* pBridgingNodeV2)
{
    return readBridgingNodes(path, pBridgingNodeV2, INT_MAX);
}

bool bridgingApNodeInfoWriter(const char* path, BridgingNodeV2* pBridgingNodeV2, int cnt)
{
    FILE* fp = fopen(path, "w");
    if (fp == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: fopen error, path: %s.", __func__, __LINE__, path);
        return false;
    }
    TextOut out;
    startText(out, fp);
    for (int i = 0; i < cnt; ++i) {
        if (!printBridgingNode(out, &pBridgingNodeV2[i])) {
            LOG_ERROR("libzo: [%s:%d]: fprintf error, path:%s.\n", __func__, __LINE__, path);
            closeText(out);
            return false;
        }
    }
    closeText(out);
    return true;
}

/* ---- One record into a file --------------------------------------------- */
/* The two rules share their first save and their load, and report under their own names. */

static void saveBridgingAlone(const char* function, const char* path, BridgingNodeV2* pIncomeBridgingInfo)
{
    LOG_INFO("libzo: [%s:%d]: Just save income bridging data", function, __LINE__);
    if (bridgingApNodeInfoWriter(path, pIncomeBridgingInfo, 1))
        LOG_INFO("libzo: [%s:%d]: Bridging Info has been written to file: %s", function, __LINE__, path);
    else
        LOG_ERROR("libzo: [%s:%d]: Failed to write to file: %s", function, __LINE__, path);
}

/* The file's records with room for one more behind them, or null. */
static BridgingNodeV2* loadBridgingNodes(const char* function, const char* path, int bridgingInfoNum)
{
    BridgingNodeV2* nodes =
        static_cast<BridgingNodeV2*>(allocateRecords(bridgingInfoNum, 1, sizeof(BridgingNodeV2)));
    if (nodes == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: Failed to allocate memory for BridgingNode", function, __LINE__);
        return nullptr;
    }
    if (!readBridgingNodes(path, nodes, bridgingInfoNum)) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file: %s", function, __LINE__, path);
        free(nodes);
        return nullptr;
    }
    return nodes;
}

/* A rolling log of the other nodes' reports: no search, a node that reports twice is logged twice. */
static bool updateFapSingleBridgingInfo(const char* path, BridgingNodeV2* pIncomeBridgingInfo)
{
    const int bridgingInfoNum = dataLineCounter(path);
    if (pIncomeBridgingInfo == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: null pIncomeBridgingInfo", __func__, __LINE__);
        return true;
    }
    if (strcmp(pIncomeBridgingInfo->fatherDeviceMAC, "000000000000") == 0) {
        LOG_INFO("libzo: [%s:%d]: It's FAP itself bridging info, ignore it.", __func__, __LINE__);
        return true;
    }
    if (bridgingInfoNum <= 0) {
        saveBridgingAlone(__func__, path, pIncomeBridgingInfo);
        return true;
    }

    BridgingNodeV2* pNewBridgingInfo = loadBridgingNodes(__func__, path, bridgingInfoNum);
    if (pNewBridgingInfo == nullptr)
        return true;
    pNewBridgingInfo[bridgingInfoNum] = *pIncomeBridgingInfo;

    /* One out for one in: a log that is already longer keeps its length, on purpose. */
    int startIndex = 0;
    int bridgingInfoCnt = bridgingInfoNum + 1;
    if (bridgingInfoCnt > ALG_FAP_BRIDGING_CAP) {
        startIndex = 1;
        bridgingInfoCnt = bridgingInfoNum;
    }
    if (!bridgingApNodeInfoWriter(path, pNewBridgingInfo + startIndex, bridgingInfoCnt))
        LOG_ERROR("libzo: [%s:%d]: Failed to add new bridging info data to file: %s", __func__, __LINE__,
                  path);
    free(pNewBridgingInfo);
    return true;
}

/* A table with one record per father, however many fathers there are. */
static bool updateReSingleBridgingInfo(const char* path, BridgingNodeV2* pIncomeBridgingInfo)
{
    const int bridgingInfoNum = dataLineCounter(path);
    if (pIncomeBridgingInfo == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: null pIncomeBridgingInfo", __func__, __LINE__);
        return true;
    }
    if (bridgingInfoNum <= 0) {
        saveBridgingAlone(__func__, path, pIncomeBridgingInfo);
        return true;
    }

    BridgingNodeV2* pNewBridgingInfo = loadBridgingNodes(__func__, path, bridgingInfoNum);
    if (pNewBridgingInfo == nullptr)
        return true;

    int i = 0;
    while (i < bridgingInfoNum &&
           strcmp(pNewBridgingInfo[i].fatherDeviceMAC, pIncomeBridgingInfo->fatherDeviceMAC) != 0)
        ++i;
    const bool findApflag = i < bridgingInfoNum;
    const int bridgingInfoCnt = findApflag ? bridgingInfoNum : bridgingInfoNum + 1;
    pNewBridgingInfo[i] = *pIncomeBridgingInfo;

    if (!bridgingApNodeInfoWriter(path, pNewBridgingInfo, bridgingInfoCnt))
        LOG_ERROR("libzo: [%s:%d]: Failed to add new bridging info data to file: %s", __func__, __LINE__,
                  path);
    free(pNewBridgingInfo);
    return true;
}

/* Always true, on purpose: whether it went well is in the log alone. */
bool updateSingleBridgingInfo(const char* path, BridgingNodeV2* pIncomeBridgingInfo, bool isFap)
{
    return isFap ? updateFapSingleBridgingInfo(path, pIncomeBridgingInfo)
                 : updateReSingleBridgingInfo(path, pIncomeBridgingInfo);
}
