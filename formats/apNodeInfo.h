/* SPDX-License-Identifier: Apache-2.0 */
#ifndef FORMATS_AP_NODE_INFO_H
#define FORMATS_AP_NODE_INFO_H

#include "algDataInterfaceStruct.h"
#include "format.h"

namespace formats
{

/* AP-all files contain these fields too, in another order. */
inline constexpr Field apNodeFields[] = {
    FIELD(ApNodeV2, deviceMAC, "the node").asKey(),
    FIELD(ApNodeV2, fatherDeviceMAC, "its current father"),
    FIELD(ApNodeV2, wirelessChannelUtilization, "channel utilization per band")
        .inUnit(hostUnit)
        .loads(Load::Utilization),
    FIELD(ApNodeV2, plcUtilization, "utilization of the power-line link")
        .inUnit(hostUnit)
        .loads(Load::Utilization),
    FIELD(ApNodeV2, ethernetUtilization, "utilization of the Ethernet link")
        .inUnit(hostUnit)
        .loads(Load::Utilization),
    FIELD(ApNodeV2, wirelessRxRate, "receive rate per band").inUnit(hostUnit).loads(Load::Rate),
    FIELD(ApNodeV2, wirelessTxRate, "transmit rate per band").inUnit(hostUnit).loads(Load::Rate),
    FIELD(ApNodeV2, plcRate, "power-line link rate").inUnit(hostUnit).loads(Load::PlcRate),
    FIELD(ApNodeV2, ethernetRate, "Ethernet link rate").inUnit(hostUnit),
    FIELD(ApNodeV2, offset, "offset per band").inUnit(hostUnit),
};

inline constexpr Kind apNode =
    kind("ap-node", "link metrics per node", RECORD(ApNodeV2), Shape::Lines)
        .alias("apnode")
        .alias("node")
        .fields(apNodeFields, LineEnd::Alone)
        .inParts("ap_node_band", "band")
        .readBy("apNodeInfoReaderV2")
        .writtenBy("apNodeInfoWriterV2")
        .numberOfRecordsFrom("caller's count")
        .keeps(UINT8_MAX, "one call reads at most 255 records")
        .atBlankLine(
            "it counts as a record, so apNodeInfoReaderV2 reaches the end of the file early and fails");

} // namespace formats

#endif
