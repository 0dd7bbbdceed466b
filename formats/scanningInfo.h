/* SPDX-License-Identifier: Apache-2.0 */
#ifndef FORMATS_SCANNING_INFO_H
#define FORMATS_SCANNING_INFO_H

#include "algDataInterfaceStruct.h"
#include "format.h"

namespace formats
{

inline constexpr Field scanningFields[] = {
    FIELD(ScanningInfo, deviceMAC, "the AP that scanned").asKey(),
    FIELD(ScanningInfo, neighbourMAC, "the neighbour that was seen").asKey(),
    FIELD(ScanningInfo, band, "band of the sighting").width(2).asKey(),
    FIELD(ScanningInfo, channel, "channel number").width(3).asKey(),
    FIELD(ScanningInfo, rssi, "received signal strength").inUnit(hostUnit).width(3).loads(Load::Rssi),
};

inline constexpr Kind scanning =
    kind("scanning", "neighbour sightings", RECORD(ScanningInfo), Shape::Lines)
        .alias("scan")
        .fields(scanningFields, LineEnd::InFormat)
        .byLine()
        .readBy("scanningInfoReader")
        .writtenBy("scanningInfoWriter")
        .deletedBy("scanningInfoDeleter")
        .appendedBy("appendScanningInfo")
        .appendedBy("appendSingleScanningInfo")
        .numberOfRecordsFrom("lines")
        .foundBy("delete: deviceMAC")
        .keysRepeat()
        .keeps(ALG_SCANNING_CAP, "an append keeps the newest 256")
        .atBlankLine(
            "scanningInfoReader fails on it, and with it scanningInfoDeleter, appendScanningInfo and "
            "appendSingleScanningInfo");

} // namespace formats

#endif
