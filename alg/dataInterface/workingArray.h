/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The working arrays of the updates, appends and deletes: zeroed records that
 * one call owns and releases with free(), and what the whole file is read into.
 */
#ifndef ALG_DATA_INTERFACE_WORKING_ARRAY_H
#define ALG_DATA_INTERFACE_WORKING_ARRAY_H

#include <stddef.h>

#pragma GCC visibility push(hidden)

/*
 * A zeroed array of `oldCount` + `incomeCount` records; null when either count
 * is negative, their sum or the size in bytes cannot be held, or there is no
 * memory. An array of no records is an array all the same: C libraries differ
 * in what they return for it.
 */
void* allocateRecords(int oldCount, int incomeCount, size_t recordSize);

/*
 * The array of `count` records with room for one more. Null when it cannot be
 * grown, and then the old array stays as it was and is still the caller's.
 */
void* growByOneRecord(void* records, int count, size_t recordSize);

#pragma GCC visibility pop

#endif
