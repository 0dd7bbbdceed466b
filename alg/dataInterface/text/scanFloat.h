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

/* Reads a sign where there is one. Returns whether it is a minus. A character is left when it is called. */
inline bool scanSign(TextIn& in)
{
    const bool minus = *in.at == '-';
    if (minus || *in.at == '+')
        ++in.at;
    return minus;
}

} // namespace gnu::visibility("hidden")]]alg_internal

#endif
