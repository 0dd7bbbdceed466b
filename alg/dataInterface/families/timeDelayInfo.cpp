/* SPDX-License-Identifier: Apache-2.0 */
#include <stdlib.h>

#include "../../dataInterface.h"
#include "../shared/diagnostics.h"
#include "../shared/records.h"
#include "../text/fields.h"

namespace [[gnu::visibility("hidden")]] alg_internal
{

/* ---- One record --------------------------------------------------------- */

enum { MIN_DELAY = 1, MAX_DELAY = 1000 };

static void reportSample(const TextIn& /* in */, const char* path)
{
    LOG_ERROR("libzo: [%s:%d]: sscanf error, path: %s.\n", "timeDelayInfoReader", __LINE__, path);
}

/* The writer logs "sscanf error" too, on purpose. */
static void reportSample(const TextOut& /* out */, const char* path)
{
    LOG_ERROR("libzo: [%s:%d]: sscanf error, path: %s.", "timeDelayInfoWriter", __LINE__, path);
}

/* Returns false if the MAC fails. A sample that fails is reported, and the loop goes on. */
template <typename Text, typename Info> static bool timeDelayLine(Text& text, Info& info, const char* path)
{
    if (!fields(text, FORMAT("%12s"), info.fatherMAC))
        return false;
    int j = 0;
    while ((j = arrayFields(text, FORMATS(" %hu", " %3hu"), info.delayTime, j)) < ALG_DELAY_SAMPLES) {
        reportSample(text, path);
        ++j;
    }
    endLine(text);
    return true;
}

static void clampSamples(TimeDelayInfo& info)
{
    for (int j = 0; j < ALG_DELAY_SAMPLES; ++j) {
        if (info.delayTime[j] > MAX_DELAY)
            info.delayTime[j] = MAX_DELAY;
        if (info.delayTime[j] < MIN_DELAY)
            info.delayTime[j] = MIN_DELAY;
    }
}

} // namespace alg_internal

using namespace alg_internal;

/* ---- Whole files -------------------------------------------------------- */

bool timeDelayInfoReader(const char* path, TimeDelayInfo* pTimeDelayInfo, int cnt)
{
    TextIn in;
    if (!openText(in, path)) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file : %s.\n", __func__, __LINE__, path);
        return false;
    }
    for (int i = 0; i < cnt; ++i) {
        if (!timeDelayLine(in, pTimeDelayInfo[i], path))
            LOG_ERROR("libzo: [%s:%d]: sscanf error, path: %s.\n", __func__, __LINE__, path);
    }
    for (int i = 0; i < cnt; ++i)
        clampSamples(pTimeDelayInfo[i]);
    if (closeText(in) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path: %s.\n", __func__, __LINE__, path);
        return false;
    }
    return true;
}

bool timeDelayInfoWriter(const char* path, TimeDelayInfo* pTimeDelayInfo, int cnt)
{
    TextOut out;
    if (!openText(out, path)) {
        LOG_ERROR("libzo: [%s:%d]: Failed to write file: %s.\n", __func__, __LINE__, path);
        return false;
    }
    for (int i = 0; i < cnt && pTimeDelayInfo[i].fatherMAC[0] != '\0'; ++i) {
        const TimeDelayInfo& info = pTimeDelayInfo[i];
        if (!timeDelayLine(out, info, path)) {
            LOG_ERROR("libzo: [%s:%d]: fprintf error, path:%s.\n", __func__, __LINE__, path);
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
    File file;
    /* "wb+", not "w", on purpose: it fails for a file that cannot be read. */
    if (!openFile(file, path, "wb+")) {
        LOG_ERROR("libzo: [%s:%d]: Failed to write file: %s.\n", __func__, __LINE__, path);
        return false;
    }
    if (closeFile(file) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", __func__, __LINE__, path);
        return false;
    }
    return true;
}

/* ---- Update and append -------------------------------------------------- */

bool updateSingleTimeDelayInfo(const char* path, TimeDelayInfo* pIncomeTimeDelayInfo)
{
    const int oldCount = dataLineCounter(path);
    if (pIncomeTimeDelayInfo == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: null pIncomeTimeDelayInfo", __func__, __LINE__);
        return false;
    }
    if (oldCount <= 0) {
        LOG_INFO("libzo: [%s:%d]: Just save income time dalay data", __func__, __LINE__);
        if (!timeDelayInfoWriter(path, pIncomeTimeDelayInfo, 1)) {
            LOG_ERROR("libzo: [%s:%d]: Failed to write to file: %s", __func__, __LINE__, path);
            return false;
        }
        LOG_INFO("libzo: [%s:%d]: time delay Info has been written to file: %s", __func__, __LINE__, path);
        return true;
    }

    TimeDelayInfo* records = allocateRecords<TimeDelayInfo>(oldCount, 1);
    if (records == nullptr) {
        /* The text names the scanning record, on purpose. */
        LOG_ERROR("libzo: [%s:%d]: Failed to allocate memory for ScanningInfo", __func__, __LINE__);
        return false;
    }
    if (!timeDelayInfoReader(path, records, oldCount)) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file: %s", __func__, __LINE__, path);
        free(records);
        return false;
    }

    const int index =
        findRecord(records, offsetof(TimeDelayInfo, fatherMAC), oldCount, pIncomeTimeDelayInfo->fatherMAC);
    const bool found = index < oldCount;
    if (found)
        LOG_INFO("libzo: [%s:%d]: income time delay info found @index %d", __func__, __LINE__, index);
    else
        LOG_INFO("libzo: [%s:%d]: income time delay info not found, inserting...", __func__, __LINE__);
    records[index] = *pIncomeTimeDelayInfo;

    const bool saved = timeDelayInfoWriter(path, records, found ? oldCount : oldCount + 1);
    if (!saved && found)
        LOG_ERROR("libzo: [%s:%d]: Failed to save new time delay info to file: %s", __func__, __LINE__, path);
    else if (!saved)
        LOG_ERROR("libzo: [%s:%d]: Failed to add time delay info data to file: %s", __func__, __LINE__, path);
    free(records);
    return saved;
}

bool appendSingleTimeDelayInfo(const char* path, TimeDelayInfo* pIncomeTimeDelayInfo)
{
    const int oldCount = dataLineCounter(path);
    if (pIncomeTimeDelayInfo == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: null pIncomeTimeDelayInfo", __func__, __LINE__);
        return false;
    }
    if (oldCount <= 0) {
        LOG_INFO("libzo: [%s:%d]: Just save income timeDelay data", __func__, __LINE__);
        if (!timeDelayInfoWriter(path, pIncomeTimeDelayInfo, 1)) {
            LOG_ERROR("libzo: [%s:%d]: Failed to write to file: %s", __func__, __LINE__, path);
            return false;
        }
        LOG_INFO("libzo: [%s:%d]: Time delay Info has been written to file: %s", __func__, __LINE__, path);
        return true;
    }

    TimeDelayInfo* records = allocateRecords<TimeDelayInfo>(oldCount, 1);
    if (records == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: Failed to allocate memory for TimeDelayInfo", __func__, __LINE__);
        return false;
    }
    if (!timeDelayInfoReader(path, records, oldCount)) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file: %s", __func__, __LINE__, path);
        free(records);
        return false;
    }
    records[oldCount] = *pIncomeTimeDelayInfo;

    const int total = oldCount + 1;
    const int start = total > ALG_TIME_DELAY_CAP ? total - ALG_TIME_DELAY_CAP : 0;
    const bool saved = timeDelayInfoWriter(path, records + start, total - start);
    if (!saved)
        LOG_ERROR("libzo: [%s:%d]: Failed to add new timeDelay info data to file: %s", __func__, __LINE__,
                  path);
    free(records);
    return saved;
}
