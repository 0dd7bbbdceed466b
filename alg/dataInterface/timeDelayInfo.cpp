/* SPDX-License-Identifier: Apache-2.0 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "../dataInterface.h"
#include "diagnostics.h"
#include "text.h"
#include "workingArray.h"

enum {
    DELAY_LOWER = 1,    /* bounds of a loaded sample */
    DELAY_UPPER = 1000
};

/* ---- Whole files -------------------------------------------------------- */

/* What meets the end of the file is reported, and reading goes on. */
static void scanTimeDelay(TextIn& in, const char* path, TimeDelayInfo* info)
{
    if (scan(in, FORMAT("%12s"), info->fatherMAC) == -1) {
        LOG_ERROR("libzo: [%s:%d]: sscanf error, path: %s.\n", "timeDelayInfoReader", __LINE__, path);
        return;
    }
    for (int j = 0; j < ALG_DELAY_SAMPLES; ++j) {
        if (scan(in, FORMAT(" %hu"), info->delayTime[j]) == -1)
            LOG_ERROR("libzo: [%s:%d]: sscanf error, path: %s.\n", "timeDelayInfoReader", __LINE__, path);
    }
}

static void clampSamples(TimeDelayInfo* info)
{
    for (int j = 0; j < ALG_DELAY_SAMPLES; ++j) {
        if (info->delayTime[j] >= DELAY_UPPER)
            info->delayTime[j] = DELAY_UPPER;
        if (info->delayTime[j] < DELAY_LOWER)
            info->delayTime[j] = DELAY_LOWER;
    }
}

bool timeDelayInfoReader(const char* path, TimeDelayInfo* pTimeDelayInfo, int cnt)
{
    FILE* fp = fopen(path, "r");
    if (fp == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file : %s.\n", __func__, __LINE__, path);
        return false;
    }
    TextIn in;
    startText(in, fp);
    for (int i = 0; i < cnt; ++i)
        scanTimeDelay(in, path, &pTimeDelayInfo[i]);
    for (int i = 0; i < cnt; ++i)
        clampSamples(&pTimeDelayInfo[i]);
    if (fclose(fp) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path: %s.\n", __func__, __LINE__, path);
        return false;
    }
    return true;
}

/* False when the MAC's print fails; a failed sample is reported, in the parse's text on purpose. */
static bool printTimeDelay(TextOut& out, const char* path, const TimeDelayInfo* info)
{
    if (print(out, FORMAT("%12s"), info->fatherMAC) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fprintf error, path:%s.\n", "timeDelayInfoWriter", __LINE__, path);
        return false;
    }
    for (int j = 0; j < ALG_DELAY_SAMPLES; ++j) {
        if (print(out, FORMAT(" %3hu"), info->delayTime[j]) == -1)
            LOG_ERROR("libzo: [%s:%d]: sscanf error, path: %s.", "timeDelayInfoWriter", __LINE__, path);
    }
    print(out, FORMAT("\n"));
    return true;
}

bool timeDelayInfoWriter(const char* path, TimeDelayInfo* pTimeDelayInfo, int cnt)
{
    FILE* fp = fopen(path, "w");
    if (fp == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: Failed to write file: %s.\n", __func__, __LINE__, path);
        return false;
    }
    TextOut out;
    startText(out, fp);
    for (int i = 0; i < cnt && pTimeDelayInfo[i].fatherMAC[0] != '\0'; ++i) {
        if (!printTimeDelay(out, path, &pTimeDelayInfo[i])) {
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

bool emptyTimeDelayFile(const char* path)
{
    FILE* fp = fopen(path, "wb+");
    if (fp == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: Failed to write file: %s.\n", __func__, __LINE__, path);
        return false;
    }
    if (fclose(fp) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", __func__, __LINE__, path);
        return false;
    }
    return true;
}

/* ---- One record into a file --------------------------------------------- */

/* Reads the file's records for `function`, which reports a failure as its own; then the array is released. */
static bool loadTimeDelays(const char* function, const char* path, TimeDelayInfo* infos, int num)
{
    if (timeDelayInfoReader(path, infos, num))
        return true;
    LOG_ERROR("libzo: [%s:%d]: Failed to read file: %s", function, __LINE__, path);
    free(infos);
    return false;
}

/* Replaces the first record of the same father, or adds one at the end; never caps. */
bool updateSingleTimeDelayInfo(const char* path, TimeDelayInfo* pIncomeTimeDelayInfo)
{
    const int timeDelayInfoNum = dataLineCounter(path);
    if (pIncomeTimeDelayInfo == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: null pIncomeTimeDelayInfo", __func__, __LINE__);
        return false;
    }
    if (timeDelayInfoNum <= 0) {
        LOG_INFO("libzo: [%s:%d]: Just save income time dalay data", __func__, __LINE__);
        if (!timeDelayInfoWriter(path, pIncomeTimeDelayInfo, 1)) {
            LOG_ERROR("libzo: [%s:%d]: Failed to write to file: %s", __func__, __LINE__, path);
            return false;
        }
        LOG_INFO("libzo: [%s:%d]: time delay Info has been written to file: %s", __func__, __LINE__, path);
        return true;
    }

    TimeDelayInfo* pNewDelayInfo =
        static_cast<TimeDelayInfo*>(allocateRecords(timeDelayInfoNum, 1, sizeof(TimeDelayInfo)));
    if (pNewDelayInfo == nullptr) {
        /* Names the scanning family's record, on purpose. */
        LOG_ERROR("libzo: [%s:%d]: Failed to allocate memory for ScanningInfo", __func__, __LINE__);
        return false;
    }
    if (!loadTimeDelays(__func__, path, pNewDelayInfo, timeDelayInfoNum))
        return false;

    int ind = 0;
    while (ind < timeDelayInfoNum && strncmp(pNewDelayInfo[ind].fatherMAC, pIncomeTimeDelayInfo->fatherMAC,
                                             sizeof pNewDelayInfo[ind].fatherMAC) != 0)
        ++ind;
    const bool found = ind < timeDelayInfoNum;
    if (found)
        LOG_INFO("libzo: [%s:%d]: income time delay info found @index %d", __func__, __LINE__, ind);
    else
        LOG_INFO("libzo: [%s:%d]: income time delay info not found, inserting...", __func__, __LINE__);
    pNewDelayInfo[ind] = *pIncomeTimeDelayInfo;

    const bool result =
        timeDelayInfoWriter(path, pNewDelayInfo, found ? timeDelayInfoNum : timeDelayInfoNum + 1);
    if (!result && found)
        LOG_ERROR("libzo: [%s:%d]: Failed to save new time delay info to file: %s", __func__, __LINE__, path);
    else if (!result)
        LOG_ERROR("libzo: [%s:%d]: Failed to add time delay info data to file: %s", __func__, __LINE__, path);
    free(pNewDelayInfo);
    return result;
}

/* Always adds at the end, whatever its father, and keeps the newest. */
bool appendSingleTimeDelayInfo(const char* path, TimeDelayInfo* pIncomeTimeDelayInfo)
{
    const int timeDelayInfoNum = dataLineCounter(path);
    if (pIncomeTimeDelayInfo == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: null pIncomeTimeDelayInfo", __func__, __LINE__);
        return false;
    }
    if (timeDelayInfoNum <= 0) {
        LOG_INFO("libzo: [%s:%d]: Just save income timeDelay data", __func__, __LINE__);
        if (!timeDelayInfoWriter(path, pIncomeTimeDelayInfo, 1)) {
            LOG_ERROR("libzo: [%s:%d]: Failed to write to file: %s", __func__, __LINE__, path);
            return false;
        }
        LOG_INFO("libzo: [%s:%d]: Time delay Info has been written to file: %s", __func__, __LINE__, path);
        return true;
    }

    TimeDelayInfo* pNewTimeDelayInfo =
        static_cast<TimeDelayInfo*>(allocateRecords(timeDelayInfoNum, 1, sizeof(TimeDelayInfo)));
    if (pNewTimeDelayInfo == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: Failed to allocate memory for TimeDelayInfo", __func__, __LINE__);
        return false;
    }
    if (!loadTimeDelays(__func__, path, pNewTimeDelayInfo, timeDelayInfoNum))
        return false;
    pNewTimeDelayInfo[timeDelayInfoNum] = *pIncomeTimeDelayInfo;

    const int totalCnt = timeDelayInfoNum + 1;
    const int startIndex = totalCnt > ALG_TIME_DELAY_CAP ? totalCnt - ALG_TIME_DELAY_CAP : 0;
    const bool result = timeDelayInfoWriter(path, pNewTimeDelayInfo + startIndex, totalCnt - startIndex);
    if (!result)
        LOG_ERROR("libzo: [%s:%d]: Failed to add new timeDelay info data to file: %s", __func__, __LINE__,
                  path);
    free(pNewTimeDelayInfo);
    return result;
}
