/* SPDX-License-Identifier: Apache-2.0 */
#ifndef FORMATS_AP_ALG_OUTPUT_INFO_H
#define FORMATS_AP_ALG_OUTPUT_INFO_H

#include "values.h"

namespace formats
{

inline constexpr Field algOutputFields[] = {
    FIELD(ApAlgInterfaceOutput, srcMAC, "source device").asKey(),
    FIELD(ApAlgInterfaceOutput, dstMAC, "destination device").asKey(),
    FIELD(ApAlgInterfaceOutput, algStrategy, "strategy")
        .named(strategyValues)
        .upTo(ALG_STRATEGY_GET_BEST, "strategy")
        .printedSigned(),
    FIELD(ApAlgInterfaceOutput, timeout, "timeout of the decision").inUnit(hostUnit),
};

inline constexpr Kind algOutput =
    kind("alg-output", "the algorithm's latest decision", RECORD(ApAlgInterfaceOutput), Shape::Lines)
        .alias("output")
        .alias("decision")
        .fields(algOutputFields, LineEnd::InFormat)
        .byLine()
        .readBy("apAlgOutputInfoReader")
        .writtenBy("apAlgOutputInfoWriter")
        .numberOfRecordsFrom("first line")
        .keysRepeat()
        .keeps(1, "only the first line is read")
        .atBlankLine("apAlgOutputInfoReader fails on a blank first line and never reads another");

} // namespace formats

#endif
