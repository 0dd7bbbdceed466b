/* SPDX-License-Identifier: Apache-2.0 */
#include <stdio.h>

#include "../dataInterface.h"
#include "diagnostics.h"
#include "text.h"

/* A value whose print fails is reported, in the parse's text on purpose, and the rest goes on. */
static void reportScorePrint(int printed, const char* path)
{
    if (printed == -1)
        LOG_ERROR("libzo: [%s:%d]: sscanf error, path: %s.", "scoreInfoWriter", __LINE__, path);
}

static bool printScore(TextOut& out, const char* path, const ScoreInfo* score)
{
    if (print(out, FORMAT("%12s %2hhu %.2f %2hhu %4hu %.2f %4hu"), score->fatherMAC, score->apRank,
              score->hopsFactor, score->timeDelayTestCnt, score->timeDelayAverage, score->timeNormalization,
              score->thrputPredict) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fprintf error, path:%s.\n", "scoreInfoWriter", __LINE__, path);
        return false;
    }
    for (int j = 0; j < ALG_BANDS; ++j)
        reportScorePrint(print(out, FORMAT(" %2hhu"), score->rssi[j]), path);
    for (int j = 0; j < ALG_BANDS; ++j)
        reportScorePrint(print(out, FORMAT(" %4hu"), score->negoRate[j]), path);
    for (int j = 0; j < ALG_BANDS; ++j)
        reportScorePrint(print(out, FORMAT(" %4hu"), score->patRate[j]), path);
    print(out, FORMAT("\n"));
    return true;
}

bool scoreInfoWriter(const char* path, ScoreInfo* pScoreInfo, int apNum)
{
    FILE* fp = fopen(path, "w");
    if (fp == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: Failed to write file: %s.\n", __func__, __LINE__, path);
        return false;
    }
    TextOut out;
    startText(out, fp);
    for (int i = 0; i < apNum && pScoreInfo[i].fatherMAC[0] != '\0'; ++i) {
        if (!printScore(out, path, &pScoreInfo[i])) {
            closeText(out);
            return false;
        }
    }
    if (closeText(out) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", __func__, __LINE__, path);
        return false;
    }
    return true;
}

/* A read that meets the end of the file is reported, and reading goes on. Gives whether it did not. */
static bool reportScoreEnd(int converted, const char* path)
{
    if (converted == -1)
        LOG_ERROR("libzo: [%s:%d]: sscanf error, path: %s.\n", "scoreInfoReader", __LINE__, path);
    return converted != -1;
}

static void scanScore(TextIn& in, const char* path, ScoreInfo* score)
{
    if (!reportScoreEnd(scan(in, FORMAT("%12s %hhu %f %hhu %hu %f %hu"), score->fatherMAC, score->apRank,
                             score->hopsFactor, score->timeDelayTestCnt, score->timeDelayAverage,
                             score->timeNormalization, score->thrputPredict),
                        path))
        return;
    for (int j = 0; j < ALG_BANDS; ++j)
        reportScoreEnd(scan(in, FORMAT(" %hhu"), score->rssi[j]), path);
    for (int j = 0; j < ALG_BANDS; ++j)
        reportScoreEnd(scan(in, FORMAT(" %hu"), score->negoRate[j]), path);
    for (int j = 0; j < ALG_BANDS; ++j)
        reportScoreEnd(scan(in, FORMAT(" %hu"), score->patRate[j]), path);
}

bool scoreInfoReader(const char* path, ScoreInfo* pScoreInfo, int cnt)
{
    FILE* fp = fopen(path, "r");
    if (fp == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file : %s.\n", __func__, __LINE__, path);
        return false;
    }
    TextIn in;
    startText(in, fp);
    for (int i = 0; i < cnt; ++i)
        scanScore(in, path, &pScoreInfo[i]);
    if (fclose(fp) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path: %s.\n", __func__, __LINE__, path);
        return false;
    }
    return true;
}

/* Tells an empty file from one that is not; the number it meets is never given, by design. */
int scoreInfoCntReader(const char* path)
{
    FILE* fp = fopen(path, "r");
    if (fp == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file : %s.\n", __func__, __LINE__, path);
        return 0;
    }
    TextIn in;
    startText(in, fp);
    int cnt = 0;
    const int converted = scan(in, FORMAT("%d"), cnt);
    fclose(fp);
    return converted == -1 ? 1 : 0;
}
