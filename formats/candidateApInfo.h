/* SPDX-License-Identifier: Apache-2.0 */
#ifndef FORMATS_CANDIDATE_AP_INFO_H
#define FORMATS_CANDIDATE_AP_INFO_H

#include "values.h"

namespace formats
{

inline constexpr Field candidateFields[] = {
    FIELD(CandidateAp, apMac, "the candidate AP").asKey(),
    FIELD(CandidateAp, connectBand, "band index on which the station would connect").asKey(),
    FIELD(CandidateAp, roamingAvailable, "whether roaming there is possible, 0 or not 0"),
    FIELD(CandidateAp, rssi, "signal strength expected there").inUnit(hostUnit),
    FIELD(CandidateAp, throughput, "throughput expected there").inUnit(hostUnit),
    FIELD(CandidateAp, wifimode, "Wi-Fi mode code"),
    FIELD(CandidateAp, bandwidth, "channel width code"),
    FIELD(CandidateAp, mcslevel, "MCS level"),
    FIELD(CandidateAp, mimo, "spatial streams").named(mimoValues).onlyNamed("mimo"),
};

inline constexpr Kind candidate =
    kind("candidate", "candidate APs of a station", RECORD(CandidateAp), Shape::Lines)
        .alias("can")
        .fields(candidateFields, LineEnd::InFormat)
        .byLine()
        .readBy("candidateApNodeInfoReader")
        .writtenBy("candidateApNodeInfoWriter")
        .numberOfRecordsFrom("lines")
        .atBlankLine("candidateApNodeInfoReader fails on it");

} // namespace formats

#endif
