/* SPDX-License-Identifier: Apache-2.0 */
#include "records.h"

#include <limits.h>
#include <stdlib.h>
#include <string.h>

#include "../../capacities.h"

namespace [[gnu::visibility("hidden")]] alg_internal
{

void* allocateBytes(int oldCount, int newCount, size_t recordSize)
{
    if (oldCount < 0 || newCount < 0 || oldCount > INT_MAX - newCount)
        return nullptr;
    /* At least one record: C libraries differ in what calloc() returns for none. */
    const size_t count = static_cast<size_t>(oldCount) + static_cast<size_t>(newCount);
    return calloc(count > 0 ? count : 1, recordSize);
}

void* growBytes(void* records, int count, size_t recordSize)
{
    return count < INT_MAX ? realloc(records, (static_cast<size_t>(count) + 1) * recordSize) : nullptr;
}

int findKey(const void* records, size_t recordSize, size_t keyOffset, int count, const char* key)
{
    const char* at = static_cast<const char*>(records) + keyOffset;
    int i = 0;
    for (; i < count && strncmp(at, key, ALG_MAC_SIZE) != 0; ++i)
        at += recordSize;
    return i;
}

} // namespace alg_internal
