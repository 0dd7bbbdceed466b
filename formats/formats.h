/* SPDX-License-Identifier: Apache-2.0 */
/* Every kind of record file, in the order of their families. */
#ifndef FORMATS_FORMATS_H
#define FORMATS_FORMATS_H

#include "apAlgOutputInfo.h"
#include "apAllInfo.h"
#include "apNodeInfo.h"
#include "apRankIndexInfo.h"
#include "apRankInfo.h"
#include "bridgingInfo.h"
#include "candidateApInfo.h"
#include "patParameter.h"
#include "scanningInfo.h"
#include "scoreInfo.h"
#include "stationInfo.h"
#include "timeDelayInfo.h"

#undef FIELD
#undef BAND_FIELD
#undef RECORD
#undef ENTRIES

namespace formats
{

inline constexpr const Kind* kinds[] = {
    &apNode, &apAll,    &apAllDetail, &bridging, &station, &candidate,   &patV1,
    &patV2,  &scanning, &timeDelay,   &score,    &apRank,  &apRankIndex, &algOutput,
};

/* The kind of this name or alias; null if there is none. */
constexpr const Kind* findKind(const char* name)
{
    for (const Kind* kind : kinds) {
        if (sameText(kind->name, name))
            return kind;
        for (const char* alias : kind->aliases) {
            if (sameText(alias, name))
                return kind;
        }
    }
    return nullptr;
}

} // namespace formats

#endif
