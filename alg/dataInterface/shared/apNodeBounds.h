/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALG_DATA_INTERFACE_AP_NODE_BOUNDS_H
#define ALG_DATA_INTERFACE_AP_NODE_BOUNDS_H

#include "../../algDataInterfaceStruct.h"

namespace [[gnu::visibility("hidden")]] alg_internal
{

/*
 * Converts a node's stored values into those that the algorithm computes with:
 * every utilization (wireless, power line, Ethernet) becomes 95 minus its value,
 * at least 1; every wireless rate is limited to 1 to 10000, plcRate to at most
 * 10000. The other fields are unchanged.
 */
void convertLoadedApNode(ApNodeV2& node);

} // namespace alg_internal

#endif
