/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALG_DATA_INTERFACE_SCAN_FLOAT_H
#define ALG_DATA_INTERFACE_SCAN_FLOAT_H

#include "input.h"

namespace [[gnu::visibility("hidden")]] alg_internal
{

/*
 * Reads a float in any form that fscanf() accepts: decimal, hexadecimal,
 * infinity, not a number. Returns false if there is none; characters that could
 * begin a float are consumed.
 */
bool scanAnyFloat(TextIn& in, float* real);

} // namespace alg_internal

#endif
