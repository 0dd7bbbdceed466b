/* SPDX-License-Identifier: Apache-2.0 */
#include <stdio.h>
#include <string.h>

#include "../dataInterface.h"
#include "diagnostics.h"
#include "patCapacity.h"
#include "text.h"

#define PAT_ENTRY "%hhu %hhu %hhu %hhu %hhu %hu"

/* ---- Version 1 ---------------------------------------------------------- */

/* Every value that meets the end of the file is reported, and reading goes on. */
static void scanPatValues(TextIn& in, const char* path, uint16_t* values)
{
    for (int k = 0; k < ALG_PAT_CAPACITY; ++k) {
        if (scan(in, FORMAT(" %hu"), values[k]) == -1)
            LOG_ERROR("libzo: [%s:%d]: sscanf error, path: %s.\n", "patParameterReader", __LINE__, path);
    }
}

bool patParameterReader(const char* path, int cnt, PatParameter* pPatParameter)
{
    FILE* fp = fopen(path, "r");
    if (fp == nullptr || dataLineCounter(path) == 0) {
        LOG_ERROR("libzo: [%s:%d]: pat file %s does not exit.", __func__, __LINE__, path);
        return false; /* the stream of an empty file stays open, as it stands */
    }
    TextIn in;
    startText(in, fp);
    for (int i = 0; i < cnt; ++i) {
        PatParameter* pat = &pPatParameter[i];
        if (scan(in, FORMAT("%12s"), pat->deviceMac) == -1) {
            LOG_ERROR("libzo: [%s:%d]: sscanf error, path: %s.\n", __func__, __LINE__, path);
            continue;
        }
        scanPatValues(in, path, pat->bParameter);
        scanPatValues(in, path, pat->cParameter);
    }
    if (fclose(fp) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", __func__, __LINE__, path);
        return false;
    }
    return true;
}

/* ---- Version 2: writing ------------------------------------------------- */

static bool printPatDevice(TextOut& out, const PatParameterV2* pat)
{
    if (print(out, FORMAT("%12s %hhu\n"), pat->deviceMac, patEntries(pat->commonPatNum)) == -1)
        return false;
    for (int j = 0; j < patEntries(pat->commonPatNum); ++j) {
        const SinglePat* entry = &pat->singlePat[j];
        if (print(out, FORMAT(PAT_ENTRY "\n"), entry->isChanged, entry->bandOrder, entry->channelWidthOrder,
                  entry->mcsOrder, entry->paraB, entry->paraC) == -1)
            return false;
    }
    return true;
}

static bool printPatDevices(TextOut& out, int apNum, const PatParameterV2* pats)
{
    if (print(out, FORMAT("%d"), apNum) == -1 || print(out, FORMAT("\n")) == -1)
        return false;
    for (int i = 0; i < apNum; ++i) {
        if (!printPatDevice(out, &pats[i]))
            return false;
    }
    return true;
}

bool patParameterWriterV2(const char* path, int apNum, PatParameterV2* pPatParameterV2, char (*macPool)[ALG_MAC_SIZE])
{
    (void)macPool; /* accepted and not used */
    FILE* fp = fopen(path, "w");
    if (fp == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: Failed to write file: %s.\n", __func__, __LINE__, path);
        return false;
    }
    TextOut out;
    startText(out, fp);
    const bool result = printPatDevices(out, apNum, pPatParameterV2);
    if (!result)
        LOG_ERROR("libzo: [%s:%d]: fprintf error, path:%s.\n", __func__, __LINE__, path);
    closeText(out);
    return result;
}

/* False in every case, on purpose: success cannot be read from it. */
bool updateSinglePatV2(const char* path, PatParameterV2* pIncomeParameterV2)
{
    if (pIncomeParameterV2 == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: null pIncomeParameterV2", __func__, __LINE__);
        return false;
    }
    patParameterWriterV2(path, 1, pIncomeParameterV2, nullptr);
    return false;
}

void patInitV2(const char* path, char* mac)
{
    PatParameterV2 pat;
    memset(&pat, 0, sizeof pat);
    memcpy(pat.deviceMac, mac, strnlen(mac, sizeof pat.deviceMac));
    pat.commonPatNum = PEEK_THR_STRUCTURE_NUM;
    for (int i = 0; i < PEEK_THR_STRUCTURE_NUM; ++i) {
        SinglePat* entry = &pat.singlePat[i];
        entry->bandOrder = peekThrStructure[i].bandOrder;
        entry->channelWidthOrder = peekThrStructure[i].channelWidthOrder;
        entry->mcsOrder = peekThrStructure[i].mcsOrder;
        entry->paraB = 64;    /* b = 0.1512 */
        entry->paraC = 46094; /* c = -20.49984 */
    }
    patParameterWriterV2(path, 1, &pat, nullptr);
}

/* ---- Version 2: reading ------------------------------------------------- */

/* A read that meets the end of the file is reported, and reading goes on. */
static void reportPatEnd(int converted, const char* path)
{
    if (converted == -1)
        LOG_ERROR("libzo: [%s:%d]: fscanf error, path: %s.\n", "patParameterReaderV2", __LINE__, path);
}

/*
 * A record holds 100 entries. A device line that states more is reported once,
 * and commonPatNum becomes 100; the further entries are read and dropped, so
 * that the next device is read from its place. Where the device line states no
 * count, the one that the record held decides how many entries are read.
 */
static void scanPatDevice(TextIn& in, const char* path, PatParameterV2* pat)
{
    const int converted = scan(in, FORMAT("%12s %hhu"), pat->deviceMac, pat->commonPatNum);
    reportPatEnd(converted, path);
    const int entries = pat->commonPatNum;
    if (converted == 2 && entries > ALG_PAT_CAPACITY) {
        LOG_ERROR("libzo: [%s:%d]: fscanf error, path: %s.\n", "patParameterReaderV2", __LINE__, path);
        pat->commonPatNum = ALG_PAT_CAPACITY;
    }

    SinglePat dropped;
    for (int j = 0; j < entries; ++j) {
        SinglePat* entry = j < ALG_PAT_CAPACITY ? &pat->singlePat[j] : &dropped;
        reportPatEnd(scan(in, FORMAT(PAT_ENTRY), entry->isChanged, entry->bandOrder, entry->channelWidthOrder,
                          entry->mcsOrder, entry->paraB, entry->paraC),
                     path);
    }
}

/* Not inlined: its buffer and the record of patInitV2() need not share the stack. */
[[gnu::noinline]] static void scanPatDevices(FILE* fp, const char* path, int cnt, PatParameterV2* pats)
{
    TextIn in;
    startText(in, fp);
    uint8_t stated = 0;
    reportPatEnd(scan(in, FORMAT("%hhu"), stated), path);
    for (int i = 0; i < stated && i < cnt; ++i)
        scanPatDevice(in, path, &pats[i]);
}

bool patParameterReaderV2(const char* path, int cnt, PatParameterV2* pPatParameterV2)
{
    char defaultMac[ALG_MAC_SIZE] = "000000000000";
    FILE* fp = fopen(path, "r");
    if (fp == nullptr) {
        LOG_INFO("libzo: [%s:%d]: pat file does not exit, init it.", __func__, __LINE__);
        patInitV2(path, defaultMac);
        fp = fopen(path, "r");
        if (fp == nullptr)
            return false;
    }
    if (dataLineCounter(path) == 0) {
        /* The stream has read nothing yet, and goes on to read what is written here. */
        LOG_INFO("libzo: [%s:%d]: pat file does not exit, init it.", __func__, __LINE__);
        patInitV2(path, defaultMac);
    }

    scanPatDevices(fp, path, cnt, pPatParameterV2);
    if (fclose(fp) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", __func__, __LINE__, path);
        return false;
    }
    return true;
}
