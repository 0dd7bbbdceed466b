/* SPDX-License-Identifier: Apache-2.0 */
#ifndef FORMATS_TIME_DELAY_INFO_H
#define FORMATS_TIME_DELAY_INFO_H

#include "algDataInterfaceStruct.h"
#include "format.h"

namespace formats
{

inline constexpr Field timeDelayFields[] = {
    FIELD(TimeDelayInfo, fatherMAC, "the father to which the delays were measured").asKey(),
    FIELD(TimeDelayInfo, delayTime, "the delay samples").inUnit(hostUnit).printedWidth(3).loads(Load::Delay),
};

inline constexpr Kind timeDelay =
    kind("time-delay", "latency samples per father", RECORD(TimeDelayInfo), Shape::Lines)
        .alias("delay")
        .alias("timedelay")
        .fields(timeDelayFields, LineEnd::Alone)
        .inParts("time_delay_sample", "sample")
        .endsAtEmptyMac()
        .readBy("timeDelayInfoReader")
        .writtenBy("timeDelayInfoWriter")
        .emptiedBy("emptyTimeDelayFile")
        .updatedBy("updateSingleTimeDelayInfo")
        .appendedBy("appendSingleTimeDelayInfo")
        .numberOfRecordsFrom("caller's count; updates: line count")
        .foundBy("fatherMAC")
        .keysRepeat()
        .keeps(ALG_TIME_DELAY_CAP, "an append keeps the newest 256; an update has no cap")
        .atBlankLine(
            "it counts as a record: timeDelayInfoReader returns an empty one, and a new record of "
            "updateSingleTimeDelayInfo or appendSingleTimeDelayInfo is not stored, without a message");

} // namespace formats

#endif
