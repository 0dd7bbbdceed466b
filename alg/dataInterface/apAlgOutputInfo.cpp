/* SPDX-License-Identifier: Apache-2.0 */
#include <stdio.h>

#include "../dataInterface.h"
#include "diagnostics.h"
#include "line.h"

static int parseOutput(const char* line, ApAlgInterfaceOutput* output)
{
    unsigned strategy = output->algStrategy;
    const int converted =
        sscanf(line, "%12s %12s %u %hhu\n", output->srcMAC, output->dstMAC, &strategy, &output->timeout);
    output->algStrategy = strategy;
    return converted;
}

bool apAlgOutputInfoReader(const char* path, ApAlgInterfaceOutput* pApAlgOutput)
{
    FILE* fp = fopen(path, "r");
    if (fp == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file : %s.\n", __func__, __LINE__, path);
        return false;
    }
    char line[LINE_BUFFER_SIZE];
    if (fgets(line, sizeof line, fp) != nullptr && parseOutput(line, pApAlgOutput) == -1) {
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
    bool result = true;
    /* Signed out, unsigned in, on purpose: the strategies 0 to 3 look the same in both. */
    if (fprintf(fp, "%12s %12s %d %hhu\n", pApAlgOutput->srcMAC, pApAlgOutput->dstMAC,
                static_cast<int>(pApAlgOutput->algStrategy), pApAlgOutput->timeout) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fprintf error, path: %s", __func__, __LINE__, path);
        result = false;
    }
    if (fclose(fp) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", __func__, __LINE__, path);
        return false;
    }
    return result;
}
