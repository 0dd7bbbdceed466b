/* SPDX-License-Identifier: Apache-2.0 */
#ifndef FORMATS_AP_RANK_INDEX_INFO_H
#define FORMATS_AP_RANK_INDEX_INFO_H

#include "values.h"

namespace formats
{

inline constexpr Field rankIndexHeader[] = {
    FIELD(ApRankIndex, cnt, "number of ranked devices").upTo(ALG_RANK_INDEX_CAPACITY, "index-too-many"),
    FIELD(ApRankIndex, process_re, "RE-processing value of the run"),
    FIELD(ApRankIndex, alg_strategy, "strategy")
        .named(strategyValues)
        .upTo(ALG_STRATEGY_GET_BEST, "strategy"),
    FIELD(ApRankIndex, starttime, "start of the run").inUnit(hostUnit),
};

inline constexpr Field rankIndexEntry[] = {
    FIELD(ApThrRank, deviceMAC, "the ranked device").asKey(),
    FIELD(ApThrRank, fatherMAC, "its father"),
    FIELD(ApThrRank, apRank, "rank (hop level)"),
    FIELD(ApThrRank, throughput, "its throughput").inUnit(hostUnit),
};

inline constexpr Kind apRankIndex =
    kind("ap-rank-index", "ranking and state of the run", RECORD(ApRankIndex), Shape::Index)
        .alias("rank-index")
        .alias("index")
        .fields(rankIndexHeader, LineEnd::InFormat)
        .contains(ENTRIES(ApRankIndex, apRank, ApThrRank, cnt), rankIndexEntry, LineEnd::InFormat)
        .inParts("rank_entry", "entry")
        .byLine()
        .readBy("apRankIndexInfoReader")
        .writtenBy("apRankIndexInfoWriter")
        .numberOfRecordsFrom("lines after the first")
        .keeps(ALG_RANK_INDEX_CAPACITY, "at most 30 ranked devices")
        .atBlankLine("apRankIndexInfoReader fails on it");

} // namespace formats

#endif
