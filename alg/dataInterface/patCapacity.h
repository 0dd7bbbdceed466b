/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALG_DATA_INTERFACE_PAT_CAPACITY_H
#define ALG_DATA_INTERFACE_PAT_CAPACITY_H

#include <stdint.h>

/* Values of a version 1 array, entries of a version 2 record. */
enum { PAT_CAPACITY = 100 };

/* The entries that a record can hold of the number it states. */
inline uint8_t patEntries(uint8_t commonPatNum)
{
    return commonPatNum < PAT_CAPACITY ? commonPatNum : static_cast<uint8_t>(PAT_CAPACITY);
}

#endif
