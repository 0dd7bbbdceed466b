/* SPDX-License-Identifier: Apache-2.0 */
#include <stdio.h>

#include "../dataInterface.h"
#include "diagnostics.h"
#include "text.h"

/* Written and read with the same strings. */
static constexpr auto rankIndexHeader = FORMAT("%hhu %hhu %u %u\n");
static constexpr auto rankIndexEntry = FORMAT("%12s %12s %hhu %hu\n");

/* The header, then every entry line, whatever count the header states. False at a 31st entry. */
static bool scanRankIndex(TextIn& in, ApRankIndex* index)
{
    if (!takeLine(in))
        return true; /* an empty file leaves the record as it was */
    if (scan(in, rankIndexHeader, index->cnt, index->process_re, index->alg_strategy, index->starttime) == -1)
        return false;
    for (int i = 0; takeLine(in); ++i) {
        if (i == ALG_RANK_INDEX_CAPACITY)
            return false;
        ApThrRank* rank = &index->apRank[i];
        if (scan(in, rankIndexEntry, rank->deviceMAC, rank->fatherMAC, rank->apRank, rank->throughput) == -1)
            return false;
    }
    return true;
}

bool apRankIndexInfoReader(const char* path, ApRankIndex* pApRankIndex)
{
    FILE* fp = fopen(path, "r");
    if (fp == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file : %s.\n", __func__, __LINE__, path);
        return false;
    }
    TextIn in;
    startText(in, fp);
    if (!scanRankIndex(in, pApRankIndex)) {
        LOG_ERROR("libzo: [%s:%d]: sscanf error, path: %s.\n", __func__, __LINE__, path);
        fclose(fp);
        return false;
    }
    if (fclose(fp) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path: %s.\n", __func__, __LINE__, path);
        return false;
    }
    return true;
}

static bool printRankIndex(TextOut& out, const ApRankIndex* index)
{
    if (print(out, rankIndexHeader, index->cnt, index->process_re, index->alg_strategy, index->starttime) ==
        -1)
        return false;
    for (int i = 0; i < index->cnt; ++i) {
        const ApThrRank* rank = &index->apRank[i];
        if (print(out, rankIndexEntry, rank->deviceMAC, rank->fatherMAC, rank->apRank, rank->throughput) ==
            -1)
            return false;
    }
    return true;
}

bool apRankIndexInfoWriter(const char* path, ApRankIndex* pApRankIndex)
{
    if (pApRankIndex->cnt > ALG_RANK_INDEX_CAPACITY) {
        /* Refused before the file is opened, so that it stays as it was. */
        LOG_ERROR("libzo: [%s:%d]: fprintf error, path: %s", __func__, __LINE__, path);
        return false;
    }
    FILE* fp = fopen(path, "w");
    if (fp == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: fopen error, path: %s.", __func__, __LINE__, path);
        return false;
    }
    TextOut out;
    startText(out, fp);
    const bool result = printRankIndex(out, pApRankIndex);
    if (!result)
        LOG_ERROR("libzo: [%s:%d]: fprintf error, path: %s", __func__, __LINE__, path);
    if (closeText(out) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", __func__, __LINE__, path);
        return false;
    }
    return result;
}
