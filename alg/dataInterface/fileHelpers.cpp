/* SPDX-License-Identifier: Apache-2.0 */
#include <stdio.h>

#include "../dataInterface.h"
#include "diagnostics.h"
#include "text.h"

int dataLineCounter(const char* path)
{
    FILE* fp = fopen(path, "r");
    if (fp == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file: %s\n", __func__, __LINE__, path);
        return -1;
    }

    const int count = countLines(fp);
    if (fclose(fp) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", __func__, __LINE__, path);
        return -1;
    }
    return count;
}

bool touchFile(const char* path)
{
    FILE* fp = fopen(path, "r");
    if (fp != nullptr) {
        fclose(fp);
        return true;
    }

    fp = fopen(path, "w");
    if (fp == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: Failed to create file: %s\n", __func__, __LINE__, path);
        return false;
    }
    if (fclose(fp) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", __func__, __LINE__, path);
        return false;
    }
    return true;
}
