/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALG_DATA_INTERFACE_AP_NODE_BOUNDS_H
#define ALG_DATA_INTERFACE_AP_NODE_BOUNDS_H

#include "algDataInterfaceStruct.h"

#pragma GCC visibility push(hidden)

/*
 * Turns a node's raw figures into the bounded values that the algorithm
 * computes with: every utilization (wireless, power line, Ethernet) into
 * 95 minus its value, at least 1; every wireless rate into 1 to 10000; plcRate
 * into at most 10000, with no floor on purpose. The other fields stay.
 */
void boundApNode(ApNodeV2* node);

#pragma GCC visibility pop

#endif
