/* SPDX-License-Identifier: Apache-2.0 */
#ifndef FORMATS_BRIDGING_INFO_H
#define FORMATS_BRIDGING_INFO_H

#include "algDataInterfaceStruct.h"
#include "format.h"

namespace formats
{

inline constexpr Field bridgingFields[] = {
    FIELD(BridgingNodeV2, deviceMAC, "the node whose link this is").asKey(),
    FIELD(BridgingNodeV2, fatherDeviceMAC, "its father; 000000000000 in the FAP's own record").asKey(),
    FIELD(BridgingNodeV2, bridgingRssi, "signal strength per band").inUnit(hostUnit).bandByBand(),
    FIELD(BridgingNodeV2, bridgingRxRate, "receive rate per band").inUnit(hostUnit).bandByBand(),
    FIELD(BridgingNodeV2, bridgingTxRate, "transmit rate per band").inUnit(hostUnit).bandByBand(),
    FIELD(BridgingNodeV2, bridgingRxMcs, "receive MCS per band").bandByBand(),
    FIELD(BridgingNodeV2, bridgingTxMcs, "transmit MCS per band").bandByBand(),
};

inline constexpr Kind bridging =
    kind("bridging", "backhaul link metrics", RECORD(BridgingNodeV2), Shape::Lines)
        .alias("bridge")
        .fields(bridgingFields, LineEnd::Alone)
        .inParts("bridging_band", "band")
        .blankAfterEach()
        .readBy("bridgingApNodeInfoReader")
        .writtenBy("bridgingApNodeInfoWriter")
        .updatedBy("updateSingleBridgingInfo")
        .numberOfRecordsFrom("line count")
        .foundBy("FAP: none; RE: fatherDeviceMAC")
        .keysRepeat()
        .keeps(ALG_FAP_BRIDGING_CAP, "the FAP's log grows to 64 records; an RE's table has no cap")
        .atBlankLine(
            "it counts as a record: bridgingApNodeInfoReader fails, and updateSingleBridgingInfo does "
            "not store the new record, but returns true");

} // namespace formats

#endif
