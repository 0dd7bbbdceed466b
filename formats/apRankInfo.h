/* SPDX-License-Identifier: Apache-2.0 */
#ifndef FORMATS_AP_RANK_INFO_H
#define FORMATS_AP_RANK_INFO_H

#include "algDataInterfaceStruct.h"
#include "format.h"

namespace formats
{

inline constexpr Field apRankFields[] = {
    FIELD(ApRank, deviceMAC, "the device").asKey(),
    FIELD(ApRank, ethFatherMAC, "its father over Ethernet"),
    FIELD(ApRank, apRank, "rank (hop level)"),
};

inline constexpr Kind apRank =
    kind("ap-rank", "rank per node", RECORD(ApRank), Shape::Lines)
        .alias("rank")
        .fields(apRankFields, LineEnd::InFormat)
        .byLine()
        .readBy("apRankInfoReader")
        .writtenBy("apRankInfoWriter")
        .updatedBy("updataSingleApRankInfo")
        .numberOfRecordsFrom("lines")
        .foundBy("deviceMAC")
        .atBlankLine("apRankInfoReader fails on it, and with it updataSingleApRankInfo");

} // namespace formats

#endif
