/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALG_DATA_INTERFACE_SCAN_FLOAT_H
#define ALG_DATA_INTERFACE_SCAN_FLOAT_H

#include "input.h"

namespace [[gnu::visibility("hidden")]] alg_internal
{

/*
 * Reads a float in any form that fscanf() accepts: decimal, hexadecimal,
 * infinity, not a number. False where there is none; the characters that began
 * one are consumed.
 */
bool scanAnyFloat(TextIn& in, float* real);

} // namespace alg_internal

#endif
