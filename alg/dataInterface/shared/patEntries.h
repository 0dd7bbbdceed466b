/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALG_DATA_INTERFACE_PAT_ENTRIES_H
#define ALG_DATA_INTERFACE_PAT_ENTRIES_H

#include <stdint.h>

#include "../../capacities.h"

namespace [[gnu::visibility("hidden")]] alg_internal
{

/* Limits commonPatNum to ALG_PAT_CAPACITY. */
inline uint8_t patEntries(uint8_t commonPatNum)
{
    return commonPatNum < ALG_PAT_CAPACITY ? commonPatNum : static_cast<uint8_t>(ALG_PAT_CAPACITY);
}

} // namespace alg_internal

#endif
