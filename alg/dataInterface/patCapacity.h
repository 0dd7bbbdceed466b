/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALG_DATA_INTERFACE_PAT_CAPACITY_H
#define ALG_DATA_INTERFACE_PAT_CAPACITY_H

#include <stdint.h>

#include "capacities.h"

/* The entries that a record can hold of the number it states. */
inline uint8_t patEntries(uint8_t commonPatNum)
{
    return commonPatNum < ALG_PAT_CAPACITY ? commonPatNum : static_cast<uint8_t>(ALG_PAT_CAPACITY);
}

#endif
