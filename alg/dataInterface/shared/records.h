/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The working arrays of updates, appends and deletes. Every path of a call frees
 * its array, except one in updataSingleApAllInfo().
 */
#ifndef ALG_DATA_INTERFACE_RECORDS_H
#define ALG_DATA_INTERFACE_RECORDS_H

#include <stddef.h>

namespace [[gnu::visibility("hidden")]] alg_internal
{

void* allocateBytes(int oldCount, int newCount, size_t recordSize);
void* growBytes(void* records, int count, size_t recordSize);
int findKey(const void* records, size_t recordSize, size_t keyOffset, int count, const char* key);

/*
 * A zeroed array of `oldCount` + `newCount` records. Null when a count is negative,
 * when the sum or the size in bytes cannot be held, and when there is no memory.
 */
template <typename Record> Record* allocateRecords(int oldCount, int newCount)
{
    return static_cast<Record*>(allocateBytes(oldCount, newCount, sizeof(Record)));
}

/* The array with room for one more record. Null when it cannot grow; the old array is then still allocated.
 */
template <typename Record> Record* growByOneRecord(Record* records, int count)
{
    return static_cast<Record*>(growBytes(records, count, sizeof(Record)));
}

/*
 * Index of the first record whose key equals `key` over a MAC text field, or
 * `count` where there is none.
 */
template <typename Record> int findRecord(const Record* records, size_t keyOffset, int count, const char* key)
{
    return findKey(records, sizeof(Record), keyOffset, count, key);
}

} // namespace alg_internal

#endif
