/* SPDX-License-Identifier: Apache-2.0 */
#ifndef FORMATS_SCORE_INFO_H
#define FORMATS_SCORE_INFO_H

#include "algDataInterfaceStruct.h"
#include "format.h"

namespace formats
{

inline constexpr Field scoreFields[] = {
    FIELD(ScoreInfo, fatherMAC, "the candidate father").asKey(),
    FIELD(ScoreInfo, apRank, "its rank").printedWidth(2),
    FIELD(ScoreInfo, hopsFactor, "hop factor, two decimals"),
    FIELD(ScoreInfo, timeDelayTestCnt, "number of delay tests").printedWidth(2),
    FIELD(ScoreInfo, timeDelayAverage, "average delay").inUnit(hostUnit).printedWidth(4),
    FIELD(ScoreInfo, timeNormalization, "normalised time, two decimals"),
    FIELD(ScoreInfo, thrputPredict, "predicted throughput").inUnit(hostUnit).printedWidth(4),
    FIELD(ScoreInfo, rssi, "signal strength per band").inUnit(hostUnit).printedWidth(2),
    FIELD(ScoreInfo, negoRate, "negotiated rate per band").inUnit(hostUnit).printedWidth(4),
    FIELD(ScoreInfo, patRate, "PAT rate per band").inUnit(hostUnit).printedWidth(4),
};

/* scoreInfoCntReader() tries to read a number, only to find out whether the file is empty. */
inline constexpr Field scoreProbe[] = {
    field<uint32_t>("number", 0, "whether the file has any content").readSigned(),
};

inline constexpr Kind score =
    kind("score", "scores per candidate father", RECORD(ScoreInfo), Shape::Lines)
        .fields(scoreFields, LineEnd::Alone)
        .inParts("score_band", "band")
        .endsAtEmptyMac()
        .readBy("scoreInfoReader")
        .writtenBy("scoreInfoWriter")
        .testedBy("scoreInfoCntReader", scoreProbe)
        .numberOfRecordsFrom("caller's count")
        .atBlankLine("it counts as a record, so scoreInfoReader leaves one record of the array unchanged");

} // namespace formats

#endif
