/* SPDX-License-Identifier: Apache-2.0 */
#include <stdio.h>

#include "../dataInterface.h"
#include "diagnostics.h"
#include "text.h"

bool apAlgOutputInfoReader(const char* path, ApAlgInterfaceOutput* pApAlgOutput)
{
    FILE* fp = fopen(path, "r");
    if (fp == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file : %s.\n", __func__, __LINE__, path);
        return false;
    }
    TextIn in;
    startText(in, fp);
    if (takeLine(in) && scan(in, FORMAT("%12s %12s %u %hhu\n"), pApAlgOutput->srcMAC, pApAlgOutput->dstMAC,
                             pApAlgOutput->algStrategy, pApAlgOutput->timeout) == -1) {
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

bool apAlgOutputInfoWriter(const char* path, ApAlgInterfaceOutput* pApAlgOutput)
{
    FILE* fp = fopen(path, "w");
    if (fp == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: fopen error, path: %s.", __func__, __LINE__, path);
        return false;
    }
    TextOut out;
    startText(out, fp);
    bool result = true;
    /* Signed out, unsigned in, on purpose: the strategies 0 to 3 look the same in both. */
    if (print(out, FORMAT("%12s %12s %d %hhu\n"), pApAlgOutput->srcMAC, pApAlgOutput->dstMAC,
              static_cast<int>(pApAlgOutput->algStrategy), pApAlgOutput->timeout) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fprintf error, path: %s", __func__, __LINE__, path);
        result = false;
    }
    if (closeText(out) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", __func__, __LINE__, path);
        return false;
    }
    return result;
}
