/* SPDX-License-Identifier: Apache-2.0 */
#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "../dataInterface.h"
#include "diagnostics.h"
#include "text.h"
#include "workingArray.h"

/* Written and read with the same string. */
static constexpr auto apRankLine = FORMAT("%12s %12s %hhu\n");

/* ---- Whole files -------------------------------------------------------- */

/* The reader, for an array of at most `room` records: a file that has grown is read that far. */
static bool readApRankFile(const char* path, ApRank* ranks, int room)
{
    FILE* fp = fopen(path, "r");
    if (fp == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file : %s.\n", "apRankInfoReader", __LINE__, path);
        return false;
    }
    TextIn in;
    startText(in, fp);
    for (int i = 0; i < room && takeLine(in); ++i) {
        if (scan(in, apRankLine, ranks[i].deviceMAC, ranks[i].ethFatherMAC, ranks[i].apRank) == -1) {
            LOG_ERROR("libzo: [%s:%d]: sscanf error, path: %s.\n", "apRankInfoReader", __LINE__, path);
            fclose(fp);
            return false;
        }
    }
    if (fclose(fp) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path: %s.\n", "apRankInfoReader", __LINE__, path);
        return false;
    }
    return true;
}

bool apRankInfoReader(const char* path, ApRank* pApRank)
{
    return readApRankFile(path, pApRank, INT_MAX);
}

bool apRankInfoWriter(const char* path, ApRank* pApRank, int cnt)
{
    FILE* fp = fopen(path, "w");
    if (fp == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: fopen error, path: %s.", __func__, __LINE__, path);
        return false;
    }
    TextOut out;
    startText(out, fp);

    bool result = true;
    for (int i = 0; i < cnt && result; ++i) {
        const ApRank* rank = &pApRank[i];
        if (print(out, apRankLine, rank->deviceMAC, rank->ethFatherMAC, rank->apRank) == -1) {
            LOG_ERROR("libzo: [%s:%d]: fprintf error, path: %s", __func__, __LINE__, path);
            result = false;
        }
    }

    if (closeText(out) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", __func__, __LINE__, path);
        return false;
    }
    return result;
}

/* ---- One device of a file ----------------------------------------------- */

/* Allocates and reads the file's `num` records for `function`, which reports failures as its own. */
static ApRank* loadApRanks(const char* function, const char* path, int num)
{
    ApRank* ranks = static_cast<ApRank*>(allocateRecords(num, 0, sizeof(ApRank)));
    if (ranks == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: Failed to allocate memory for pApRank", function, __LINE__);
        return nullptr;
    }
    if (!readApRankFile(path, ranks, num)) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file: %s", function, __LINE__, path);
        free(ranks);
        return nullptr;
    }
    return ranks;
}

bool updataSingleApRankInfo(const char* path, ApRank* pIncomeApRank)
{
    const int num = dataLineCounter(path);
    if (pIncomeApRank == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: null pIncomeApRank", __func__, __LINE__);
        return false;
    }
    LOG_INFO("libzo: [%s:%d]: Income AP Rank from %s, %d items of old ApRankInfo", __func__, __LINE__,
             pIncomeApRank->deviceMAC, num);

    if (num < 1) {
        LOG_INFO("libzo: [%s:%d]: Just save apRankInfo", __func__, __LINE__);
        if (!apRankInfoWriter(path, pIncomeApRank, 1)) {
            LOG_ERROR("libzo: [%s:%d]: Failed to write to file: %s", __func__, __LINE__, path);
            return false;
        }
        LOG_INFO("libzo: [%s:%d]: AP rank info has been written to file: %s", __func__, __LINE__, path);
        return true;
    }

    ApRank* pApRank = loadApRanks(__func__, path, num);
    if (pApRank == nullptr)
        return false;

    int at = 0;
    while (at < num &&
           strncmp(pApRank[at].deviceMAC, pIncomeApRank->deviceMAC, sizeof pApRank[at].deviceMAC) != 0)
        ++at;

    bool result;
    if (at < num) {
        LOG_INFO("libzo: [%s:%d]: income ap rank info found @index %d", __func__, __LINE__, at);
        pApRank[at] = *pIncomeApRank;
        result = apRankInfoWriter(path, pApRank, num);
        if (!result) /* says "ap info", as it stands */
            LOG_ERROR("libzo: [%s:%d]: Failed to save new ap info to file: %s", __func__, __LINE__, path);
    } else {
        LOG_INFO("libzo: [%s:%d]: income ap rank info not found, inserting...", __func__, __LINE__);
        ApRank* grown = static_cast<ApRank*>(growByOneRecord(pApRank, num, sizeof(ApRank)));
        if (grown == nullptr) {
            LOG_ERROR("libzo: [%s:%d]: failed to reallocte memory.", __func__, __LINE__);
            free(pApRank);
            return false;
        }
        pApRank = grown;
        pApRank[num] = *pIncomeApRank;
        result = apRankInfoWriter(path, pApRank, num + 1);
        if (!result)
            LOG_ERROR("libzo: [%s:%d]: Failed to add ap rank info data to file: %s", __func__, __LINE__,
                      path);
    }
    free(pApRank);
    return result;
}
