/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The arrays in which updates, appends and deletes edit the records of a file.
 * Every call frees its arrays, except updataSingleApAllInfo() when it cannot grow
 * its array: that leak is part of the interface.
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
 * A zeroed array of `oldCount` + `newCount` records. Null if a count is negative,
 * if the sum or the size in bytes overflows, or if there is no memory.
 */
template <typename Record> Record* allocateRecords(int oldCount, int newCount)
{
    return static_cast<Record*>(allocateBytes(oldCount, newCount, sizeof(Record)));
}

/* Grows the array by one record. Null if it cannot grow; the old array then stays valid. */
template <typename Record> Record* growByOneRecord(Record* records, int count)
{
    return static_cast<Record*>(growBytes(records, count, sizeof(Record)));
}

/*
 * Index of the first record whose key equals `key` over a MAC text field, or
 * `count` if there is none.
 */
template <typename Record> int findRecord(const Record* records, size_t keyOffset, int count, const char* key)
{
    return findKey(records, sizeof(Record), keyOffset, count, key);
}

} // namespace alg_internal

#endif
