/* SPDX-License-Identifier: Apache-2.0 */
#ifndef FORMATS_STATION_INFO_H
#define FORMATS_STATION_INFO_H

#include "values.h"

namespace formats
{

inline constexpr Field stationFields[] = {
    FIELD(StaConnection, id, "position in the file; every write renumbers it").width(3).asPosition(),
    FIELD(StaConnection, deviceMac, "the station").asKey(),
    FIELD(StaConnection, apMac, "the AP it is connected to").asKey(),
    FIELD(StaConnection, connectBand, "band index of the connection").width(2),
    FIELD(StaConnection, rssi, "received signal strength, as reported").inUnit(hostUnit).width(4),
    FIELD(StaConnection, rxRate, "receive rate").inUnit(hostUnit).width(4),
    FIELD(StaConnection, txRate, "transmit rate").inUnit(hostUnit).width(4),
    FIELD(StaConnection, rxPackageCount, "packets received").inUnit("packets").width(4),
    FIELD(StaConnection, txPackageCount, "packets sent").inUnit("packets"),
    FIELD(StaConnection, wifimode, "Wi-Fi mode code"),
    FIELD(StaConnection, bandwidth, "channel width code"),
    FIELD(StaConnection, mcslevel, "MCS level"),
    FIELD(StaConnection, mimo, "spatial streams").named(mimoValues).onlyNamed("mimo"),
    FIELD(StaConnection, kvrCapacity, "k/v/r roaming capability"),
    FIELD(StaConnection, noiselevel, "noise level").inUnit(hostUnit),
};

inline constexpr Kind station =
    kind("station", "station connection samples", RECORD(StaConnection), Shape::Lines)
        .alias("sta")
        .fields(stationFields, LineEnd::InFormat)
        .byLine()
        .readBy("stationInfoOnlyReader")
        .readBy("stationNodeInfoReader")
        .writtenBy("stationNodeInfoWriter")
        .appendedBy("stationInfoAppendWriter")
        .numberOfRecordsFrom("lines")
        .keysRepeat()
        .keeps(ALG_STATION_CAP, "an append keeps the newest 128")
        .atBlankLine("stationInfoOnlyReader and stationNodeInfoReader fail on it, and with them "
                     "stationInfoAppendWriter");

} // namespace formats

#endif
