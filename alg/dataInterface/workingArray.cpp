/* SPDX-License-Identifier: Apache-2.0 */
#include "workingArray.h"

#include <limits.h>
#include <stdlib.h>

void* allocateRecords(int oldCount, int incomeCount, size_t recordSize)
{
    if (oldCount < 0 || incomeCount < 0 || oldCount > INT_MAX - incomeCount)
        return nullptr;
    const size_t count = static_cast<size_t>(oldCount + incomeCount);
    return calloc(count > 0 ? count : 1, recordSize);
}

void* growByOneRecord(void* records, int count, size_t recordSize)
{
    return count < INT_MAX ? realloc(records, (static_cast<size_t>(count) + 1) * recordSize) : nullptr;
}
