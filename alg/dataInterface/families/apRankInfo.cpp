/* SPDX-License-Identifier: Apache-2.0 */
#include <limits.h>
#include <stdlib.h>

#include "../../dataInterface.h"
#include "../shared/diagnostics.h"
#include "../shared/records.h"
#include "../text/fields.h"

namespace [[gnu::visibility("hidden")]] alg_internal
{

/* ---- One record --------------------------------------------------------- */

template <typename Text, typename Rank> static bool apRankLine(Text& text, Rank& rank)
{
    return fields(text, FORMAT("%12s %12s %hhu\n"), rank.deviceMAC, rank.ethFatherMAC, rank.apRank);
}

/* ---- Whole files -------------------------------------------------------- */

/* Reads at most `maxRecords` records, even if the file has grown since the caller counted its lines. */
static bool readApRanks(const char* path, ApRank* records, int maxRecords)
{
    static const char function[] = "apRankInfoReader";
    TextIn in;
    if (!openText(in, path)) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file : %s.\n", function, __LINE__, path);
        return false;
    }
    for (int i = 0; i < maxRecords && nextLine(in); ++i) {
        if (!apRankLine(in, records[i])) {
            LOG_ERROR("libzo: [%s:%d]: sscanf error, path: %s.\n", function, __LINE__, path);
            closeText(in);
            return false;
        }
    }
    if (closeText(in) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path: %s.\n", function, __LINE__, path);
        return false;
    }
    return true;
}

/* ---- Update ------------------------------------------------------------- */

/* Allocates and reads the file's records. A failure is reported under the name `function`. */
static ApRank* loadApRanks(const char* function, const char* path, int count)
{
    ApRank* records = allocateRecords<ApRank>(count, 0);
    if (records == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: Failed to allocate memory for pApRank", function, __LINE__);
        return nullptr;
    }
    if (!readApRanks(path, records, count)) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file: %s", function, __LINE__, path);
        free(records);
        return nullptr;
    }
    return records;
}

} // namespace alg_internal

using namespace alg_internal;

/* ---- Interface: whole files --------------------------------------------- */

bool apRankInfoReader(const char* path, ApRank* pApRank)
{
    return readApRanks(path, pApRank, INT_MAX);
}

bool apRankInfoWriter(const char* path, ApRank* pApRank, int cnt)
{
    TextOut out;
    if (!openText(out, path)) {
        LOG_ERROR("libzo: [%s:%d]: fopen error, path: %s.", __func__, __LINE__, path);
        return false;
    }
    bool result = true;
    for (int i = 0; i < cnt && result; ++i) {
        const ApRank& rank = pApRank[i];
        result = apRankLine(out, rank);
        if (!result)
            LOG_ERROR("libzo: [%s:%d]: fprintf error, path: %s", __func__, __LINE__, path);
    }
    if (closeText(out) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", __func__, __LINE__, path);
        return false;
    }
    return result;
}

/* ---- Interface: update -------------------------------------------------- */

bool updataSingleApRankInfo(const char* path, ApRank* pIncomeApRank)
{
    const int oldCount = dataLineCounter(path);
    if (pIncomeApRank == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: null pIncomeApRank", __func__, __LINE__);
        return false;
    }
    ALG_LOG_FROM(6, "libzo: [%s:%d]: Income AP Rank from %s, %d items of old ApRankInfo", __func__, __LINE__,
                 pIncomeApRank->deviceMAC, oldCount);

    if (oldCount < 1) {
        LOG_INFO("libzo: [%s:%d]: Just save apRankInfo", __func__, __LINE__);
        if (!apRankInfoWriter(path, pIncomeApRank, 1)) {
            LOG_ERROR("libzo: [%s:%d]: Failed to write to file: %s", __func__, __LINE__, path);
            return false;
        }
        LOG_INFO("libzo: [%s:%d]: AP rank info has been written to file: %s", __func__, __LINE__, path);
        return true;
    }

    ApRank* records = loadApRanks(__func__, path, oldCount);
    if (records == nullptr)
        return false;

    const int index = findRecord(records, offsetof(ApRank, deviceMAC), oldCount, pIncomeApRank->deviceMAC);
    if (index < oldCount) {
        LOG_INFO("libzo: [%s:%d]: income ap rank info found @index %d", __func__, __LINE__, index);
        records[index] = *pIncomeApRank;
        const bool saved = apRankInfoWriter(path, records, oldCount);
        if (!saved) /* the text says "ap info", on purpose */
            LOG_ERROR("libzo: [%s:%d]: Failed to save new ap info to file: %s", __func__, __LINE__, path);
        free(records);
        return saved;
    }

    LOG_INFO("libzo: [%s:%d]: income ap rank info not found, inserting...", __func__, __LINE__);
    ApRank* grown = growByOneRecord(records, oldCount);
    if (grown == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: failed to reallocte memory.", __func__, __LINE__);
        free(records);
        return false;
    }
    grown[oldCount] = *pIncomeApRank;
    const bool saved = apRankInfoWriter(path, grown, oldCount + 1);
    if (!saved)
        LOG_ERROR("libzo: [%s:%d]: Failed to add ap rank info data to file: %s", __func__, __LINE__, path);
    free(grown);
    return saved;
}
