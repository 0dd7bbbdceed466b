/* SPDX-License-Identifier: Apache-2.0 */
/* Named values of fields, and the enumerations that are field types. */
#ifndef FORMATS_VALUES_H
#define FORMATS_VALUES_H

#include "format.h"

#include "algDataInterfaceStruct.h"
#include "algDefines.h"

namespace formats
{

/* The codes of StaConnection.mimo and CandidateAp.mimo. */
inline constexpr NamedValue mimoValues[] = {
    {MIMO_UNKONOW, "MIMO_UNKONOW", "unknown"},
    {MIMO_1, "MIMO_1", ""},
    {MIMO_2, "MIMO_2", ""},
    {MIMO_3, "MIMO_3", ""},
    {MIMO_4, "MIMO_4", ""},
    {MIMO_8, "MIMO_8", ""},
    {MIMO_OTHERS, "MIMO_OTHERS", "others"},
};

template <> struct MemberType<ALG_STRATEGY> : MemberType<uint32_t> {
};

/* The strategies of ApRankIndex.alg_strategy and ApAlgInterfaceOutput.algStrategy. */
inline constexpr NamedValue strategyValues[] = {
    {ALG_STRATEGY_UNKNOW, "ALG_STRATEGY_UNKNOW", "unknown"},
    {ALG_STRATEGY_CAREFUL, "ALG_STRATEGY_CAREFUL", "careful"},
    {ALG_STRATEGY_REDICAL, "ALG_STRATEGY_REDICAL", "radical"},
    {ALG_STRATEGY_GET_BEST, "ALG_STRATEGY_GET_BEST", "get best"},
};

} // namespace formats

#endif
