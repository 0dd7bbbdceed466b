/* SPDX-License-Identifier: Apache-2.0 */
#include <stdio.h>
#include <string.h>

#include "../dataInterface.h"
#include "apNodeBounds.h"
#include "diagnostics.h"
#include "text.h"

static bool printPerBand(TextOut& out, const uint16_t* values)
{
    for (int j = 0; j < ALG_BANDS; ++j) {
        if (print(out, FORMAT(" %hu"), values[j]) == -1)
            return false;
    }
    return true;
}

/* One print per piece and per element; false at the first that fails. */
static bool printApNode(TextOut& out, const ApNodeV2* node)
{
    if (print(out, FORMAT("%12s %12s"), node->deviceMAC, node->fatherDeviceMAC) == -1)
        return false;
    for (int j = 0; j < ALG_BANDS; ++j) {
        if (print(out, FORMAT(" %hhu"), node->wirelessChannelUtilization[j]) == -1)
            return false;
    }
    if (print(out, FORMAT(" %hhu %hhu"), node->plcUtilization, node->ethernetUtilization) == -1)
        return false;
    if (!printPerBand(out, node->wirelessRxRate))
        return false;
    if (!printPerBand(out, node->wirelessTxRate))
        return false;
    if (print(out, FORMAT(" %hu %hu"), node->plcRate, node->ethernetRate) == -1)
        return false;
    if (!printPerBand(out, node->offset))
        return false;
    return print(out, FORMAT("\n")) != -1;
}

bool apNodeInfoWriterV2(const char* path, int cnt, ApNodeV2* pApNodeV2)
{
    FILE* fp = fopen(path, "w");
    if (fp == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: fopen error, path: %s.", __func__, __LINE__, path);
        return false;
    }
    TextOut out;
    startText(out, fp);
    for (int i = 0; i < cnt; ++i) {
        if (!printApNode(out, &pApNodeV2[i])) {
            LOG_ERROR("libzo: [%s:%d]: fprintf error, path: %s", __func__, __LINE__, path);
            closeText(out);
            return false;
        }
    }
    closeText(out);
    return true;
}

static bool scanPerBand(TextIn& in, uint16_t* values)
{
    for (int j = 0; j < ALG_BANDS; ++j) {
        if (scan(in, FORMAT(" %hu"), values[j]) == -1)
            return false;
    }
    return true;
}

static bool scanUtilizations(TextIn& in, const char* path, ApNodeV2* node)
{
    for (int j = 0; j < ALG_BANDS; ++j) {
        if (scan(in, FORMAT(" %hhu"), node->wirelessChannelUtilization[j]) == -1) {
            LOG_ERROR("libzo: [%s:%d]: sscanf error part 2_2, path: %s\n", "apNodeInfoReaderV2", __LINE__,
                      path);
            return false;
        }
    }
    if (scan(in, FORMAT(" %hhu %hhu"), node->plcUtilization, node->ethernetUtilization) == -1) {
        LOG_ERROR("libzo: [%s:%d]: sscanf error part 2_3, path: %s\n", "apNodeInfoReaderV2", __LINE__, path);
        return false;
    }
    return true;
}

static bool scanRates(TextIn& in, const char* path, ApNodeV2* node)
{
    if (!scanPerBand(in, node->wirelessRxRate)) {
        LOG_ERROR("libzo: [%s:%d]: sscanf error part 2_4, path: %s\n", "apNodeInfoReaderV2", __LINE__, path);
        return false;
    }
    if (!scanPerBand(in, node->wirelessTxRate)) {
        LOG_ERROR("libzo: [%s:%d]: sscanf error part 2_5, path: %s\n", "apNodeInfoReaderV2", __LINE__, path);
        return false;
    }
    if (scan(in, FORMAT(" %hu %hu"), node->plcRate, node->ethernetRate) == -1) {
        LOG_ERROR("libzo: [%s:%d]: sscanf error part 2_6, path: %s\n", "apNodeInfoReaderV2", __LINE__, path);
        return false;
    }
    return true;
}

/* The seven steps of one record; the odd numbering of the texts is kept on purpose. */
static bool scanApNode(TextIn& in, const char* path, ApNodeV2* node)
{
    if (scan(in, FORMAT("%12s %12s"), node->deviceMAC, node->fatherDeviceMAC) == -1) {
        LOG_ERROR("libzo: [%s:%d]: sscanf error part 1, path: %s\n", "apNodeInfoReaderV2", __LINE__, path);
        return false;
    }
    if (!scanUtilizations(in, path, node) || !scanRates(in, path, node))
        return false;
    if (!scanPerBand(in, node->offset)) {
        LOG_ERROR("libzo: [%s:%d]: sscanf error part 2_7, path: %s\n", "apNodeInfoReaderV2", __LINE__, path);
        return false;
    }
    return true;
}

bool apNodeInfoReaderV2(const char* path, uint8_t apNum, ApNodeV2* pApNodeV2, char (*macPool)[ALG_MAC_SIZE])
{
    FILE* fp = fopen(path, "r");
    if (fp == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file: %s.\n", __func__, __LINE__, path);
        return false;
    }
    TextIn in;
    startText(in, fp);
    for (int i = 0; i < apNum; ++i) {
        if (!scanApNode(in, path, &pApNodeV2[i])) {
            fclose(fp);
            return false;
        }
    }
    for (int i = 0; i < apNum; ++i)
        memcpy(macPool[i], pApNodeV2[i].deviceMAC, sizeof macPool[i]);
    for (int i = 0; i < apNum; ++i)
        boundApNode(&pApNodeV2[i]);
    fclose(fp);
    return true;
}

/* What is left of the link, out of 95, and never nothing. */
static uint8_t freeUtilization(uint8_t used)
{
    const int left = 95 - used;
    return static_cast<uint8_t>(left < 1 ? 1 : left);
}

static uint16_t boundRate(uint16_t rate)
{
    if (rate > 10000)
        return 10000;
    return rate == 0 ? 1 : rate;
}

void boundApNode(ApNodeV2* node)
{
    for (int j = 0; j < ALG_BANDS; ++j) {
        node->wirelessChannelUtilization[j] = freeUtilization(node->wirelessChannelUtilization[j]);
        node->wirelessRxRate[j] = boundRate(node->wirelessRxRate[j]);
        node->wirelessTxRate[j] = boundRate(node->wirelessTxRate[j]);
    }
    node->plcUtilization = freeUtilization(node->plcUtilization);
    node->ethernetUtilization = freeUtilization(node->ethernetUtilization);
    if (node->plcRate > 10000)
        node->plcRate = 10000; /* no floor: 0 says that there is no power line */
}
