/* SPDX-License-Identifier: Apache-2.0 */
#include <string.h>

#include "../../dataInterface.h"
#include "../shared/diagnostics.h"
#include "../shared/patEntries.h"
#include "../text/fields.h"

namespace [[gnu::visibility("hidden")]] alg_internal
{

/* ---- Version 1: read only ----------------------------------------------- */

/* Reports each value that is missing at the end of the file. */
static void readPatValues(TextIn& in, const char* path, uint16_t (&values)[ALG_PAT_CAPACITY])
{
    for (int k = 0; k < ALG_PAT_CAPACITY; ++k) {
        if (!fields(in, FORMAT(" %hu"), values[k]))
            LOG_ERROR("libzo: [%s:%d]: sscanf error, path: %s.\n", "patParameterReader", __LINE__, path);
    }
}

/* ---- Version 2: lines --------------------------------------------------- */

/* Returns the number of fields converted (of two), or -1. */
template <typename Text, typename Mac, typename Count>
static int patDeviceLine(Text& text, Mac& deviceMac, Count& commonPatNum)
{
    return convertFields(text, FORMATS("%12s %hhu", "%12s %hhu\n"), deviceMac, commonPatNum);
}

template <typename Text, typename Entry> static bool patEntryLine(Text& text, Entry& entry)
{
    return fields(text, FORMATS("%hhu %hhu %hhu %hhu %hhu %hu", "%hhu %hhu %hhu %hhu %hhu %hu\n"),
                  entry.isChanged, entry.bandOrder, entry.channelWidthOrder, entry.mcsOrder, entry.paraB,
                  entry.paraC);
}

/* ---- Version 2: writing ------------------------------------------------- */

static bool printPatDevice(TextOut& out, const PatParameterV2& pat)
{
    const uint8_t entries = patEntries(pat.commonPatNum);
    if (patDeviceLine(out, pat.deviceMac, entries) == -1)
        return false;
    for (int j = 0; j < entries; ++j) {
        if (!patEntryLine(out, pat.singlePat[j]))
            return false;
    }
    return true;
}

static bool printPatDevices(TextOut& out, int count, const PatParameterV2* pats)
{
    if (!fields(out, FORMAT("%d"), count) || !endLine(out))
        return false;
    for (int i = 0; i < count; ++i) {
        if (!printPatDevice(out, pats[i]))
            return false;
    }
    return true;
}

/* ---- Version 2: reading ------------------------------------------------- */

static void reportPatError(const char* path)
{
    LOG_ERROR("libzo: [%s:%d]: fscanf error, path: %s.\n", "patParameterReaderV2", __LINE__, path);
}

/*
 * A record has room for ALG_PAT_CAPACITY entries. A device line that states more
 * is reported once, and commonPatNum is set to the capacity. The extra entries
 * are read and dropped, so that the next device is read correctly. If the line
 * states no count, commonPatNum keeps the caller's value, and that many entries
 * are read.
 */
static void readPatDevice(TextIn& in, const char* path, PatParameterV2& pat)
{
    const int converted = patDeviceLine(in, pat.deviceMac, pat.commonPatNum);
    const int entries = pat.commonPatNum;
    const bool statesTooMany = converted == 2 && entries > ALG_PAT_CAPACITY;
    if (converted == -1 || statesTooMany)
        reportPatError(path);
    if (statesTooMany)
        pat.commonPatNum = ALG_PAT_CAPACITY;

    SinglePat dropped;
    for (int j = 0; j < entries; ++j) {
        if (!patEntryLine(in, j < ALG_PAT_CAPACITY ? pat.singlePat[j] : dropped))
            reportPatError(path);
    }
}

/* Not inlined, so that its buffer and the record of patInitV2() are not on the stack together. */
[[gnu::noinline]] static void readPatDevices(File file, const char* path, int count, PatParameterV2* pats)
{
    TextIn in;
    startText(in, file);
    uint8_t stated = 0;
    if (!fields(in, FORMAT("%hhu"), stated))
        reportPatError(path);
    for (int i = 0; i < stated && i < count; ++i)
        readPatDevice(in, path, pats[i]);
}

} // namespace alg_internal

using namespace alg_internal;

/* ---- Interface: version 1 ----------------------------------------------- */

bool patParameterReader(const char* path, int cnt, PatParameter* pPatParameter)
{
    File file;
    if (!openFile(file, path, "r") || dataLineCounter(path) == 0) {
        LOG_ERROR("libzo: [%s:%d]: pat file %s does not exit.", __func__, __LINE__, path);
        return false; /* an empty file's stream stays open, on purpose */
    }
    TextIn in;
    startText(in, file);
    for (int i = 0; i < cnt; ++i) {
        PatParameter& pat = pPatParameter[i];
        if (!fields(in, FORMAT("%12s"), pat.deviceMac)) {
            LOG_ERROR("libzo: [%s:%d]: sscanf error, path: %s.\n", __func__, __LINE__, path);
            continue;
        }
        readPatValues(in, path, pat.bParameter);
        readPatValues(in, path, pat.cParameter);
    }
    if (closeText(in) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", __func__, __LINE__, path);
        return false;
    }
    return true;
}

/* ---- Interface: version 2 ----------------------------------------------- */

bool patParameterWriterV2(const char* path, int apNum, PatParameterV2* pPatParameterV2,
                          char (*macPool)[ALG_MAC_SIZE])
{
    (void)macPool; /* part of the interface, without effect */
    TextOut out;
    if (!openText(out, path)) {
        LOG_ERROR("libzo: [%s:%d]: Failed to write file: %s.\n", __func__, __LINE__, path);
        return false;
    }
    const bool result = printPatDevices(out, apNum, pPatParameterV2);
    if (!result)
        LOG_ERROR("libzo: [%s:%d]: fprintf error, path:%s.\n", __func__, __LINE__, path);
    closeText(out);
    return result;
}

bool patParameterReaderV2(const char* path, int cnt, PatParameterV2* pPatParameterV2)
{
    char defaultMac[ALG_MAC_SIZE] = "000000000000";
    File file;
    if (!openFile(file, path, "r")) {
        LOG_INFO("libzo: [%s:%d]: pat file does not exit, init it.", __func__, __LINE__);
        patInitV2(path, defaultMac);
        if (!openFile(file, path, "r"))
            return false;
    }
    if (dataLineCounter(path) == 0) {
        /* The open stream has not read anything yet, so it will read what patInitV2() writes. */
        LOG_INFO("libzo: [%s:%d]: pat file does not exit, init it.", __func__, __LINE__);
        patInitV2(path, defaultMac);
    }

    readPatDevices(file, path, cnt, pPatParameterV2);
    if (closeFile(file) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", __func__, __LINE__, path);
        return false;
    }
    return true;
}

/* Always false, on purpose, even when the record is written. */
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
        SinglePat& entry = pat.singlePat[i];
        entry.bandOrder = peekThrStructure[i].bandOrder;
        entry.channelWidthOrder = peekThrStructure[i].channelWidthOrder;
        entry.mcsOrder = peekThrStructure[i].mcsOrder;
        entry.paraB = 64;    /* b = 0.1512 */
        entry.paraC = 46094; /* c = -20.49984 */
    }
    patParameterWriterV2(path, 1, &pat, nullptr);
}
