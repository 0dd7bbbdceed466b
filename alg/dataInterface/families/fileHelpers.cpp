/* SPDX-License-Identifier: Apache-2.0 */
#include "../../dataInterface.h"
#include "../shared/diagnostics.h"
#include "../text/input.h"

using namespace alg_internal;

int dataLineCounter(const char* path)
{
    File file;
    if (!openFile(file, path, "r")) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file: %s\n", __func__, __LINE__, path);
        return -1;
    }
    const int count = countLines(file);
    if (closeFile(file) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", __func__, __LINE__, path);
        return -1;
    }
    return count;
}

bool touchFile(const char* path)
{
    File file;
    if (openFile(file, path, "r")) {
        closeFile(file);
        return true;
    }
    if (!openFile(file, path, "w")) {
        LOG_ERROR("libzo: [%s:%d]: Failed to create file: %s\n", __func__, __LINE__, path);
        return false;
    }
    if (closeFile(file) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", __func__, __LINE__, path);
        return false;
    }
    return true;
}
