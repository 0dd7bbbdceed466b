/* SPDX-License-Identifier: Apache-2.0 */
#ifndef FORMATS_AP_ALL_INFO_H
#define FORMATS_AP_ALL_INFO_H

#include "apNodeInfo.h"

namespace formats
{

/* ---- AP-all ------------------------------------------------------------- */

/* A field of the node, at its place in an AP-all record. */
constexpr Field ofNode(const char* name)
{
    Field field = fieldNamed(apNodeFields, name);
    field.offset += offsetof(ApInfoAllV2, apNodeV2);
    field.interleaved = field.count > 1;
    return field;
}

inline constexpr Field apAllFields[] = {
    FIELD(ApInfoAllV2, alg_version.major_ver, "major version of the control data"),
    FIELD(ApInfoAllV2, alg_version.minor_ver, "minor version of the control data"),
    ofNode("deviceMAC"),
    ofNode("fatherDeviceMAC"),
    ofNode("plcUtilization"),
    ofNode("plcRate"),
    ofNode("ethernetUtilization"),
    ofNode("ethernetRate"),
    FIELD(ApInfoAllV2, apNodeV2.tipc_node, "node number"),
    ofNode("wirelessChannelUtilization"),
    ofNode("wirelessRxRate"),
    ofNode("wirelessTxRate"),
    ofNode("offset"),
    BAND_FIELD(ApInfoAllV2, algWifiMode, available, "whether the band is usable"),
    BAND_FIELD(ApInfoAllV2, algWifiMode, NSS, "spatial streams of the band"),
    BAND_FIELD(ApInfoAllV2, algWifiMode, wifiMode, "Wi-Fi mode code of the band"),
    BAND_FIELD(ApInfoAllV2, algWifiMode, bandWidth, "bandwidth code of the band"),
    BAND_FIELD(ApInfoAllV2, algWifiMode, mcsLevel, "MCS level of the band"),
    BAND_FIELD(ApInfoAllV2, algWifiMode, channel, "channel of the band"),
    BAND_FIELD(ApInfoAllV2, algWifiMode, reserved, "reserved"),
};

inline constexpr Kind apAll =
    kind("ap-all", "full information per node", RECORD(ApInfoAllV2), Shape::Lines)
        .alias("apall")
        .fields(apAllFields, LineEnd::Alone)
        .inParts("ap_all_band", "band")
        .blankAfterEach()
        .readBy("apAllInfoReader")
        .readBy("apAllInfoOnlyReader")
        .writtenBy("apAllInfoWriter")
        .updatedBy("updataSingleApAllInfo")
        .deletedBy("deleteSingleApAllInfo")
        .numberOfRecordsFrom("caller's count; updates: line count")
        .foundBy("deviceMAC")
        .atBlankLine("it counts as a record: apAllInfoOnlyReader and with it updates and deletes fail, "
                     "apAllInfoReader returns an empty record");

/* ---- AP-all detail ------------------------------------------------------ */

constexpr size_t fieldsNotInDetail = 3;

constexpr bool isInDetail(const Field& field)
{
    return !sameText(field.name, "major_ver") && !sameText(field.name, "minor_ver") &&
           !sameText(field.name, "tipc_node");
}

struct ApAllDetailFields {
    Field fields[listOf(apAllFields).count - fieldsNotInDetail];
};

/* The AP-all line without three of its fields. Its reader changes no value. */
constexpr ApAllDetailFields detailOfApAll()
{
    ApAllDetailFields detail = {};
    size_t count = 0;
    for (const Field& field : apAllFields) {
        if (isInDetail(field)) {
            detail.fields[count] = field;
            detail.fields[count++].loads(Load::AsStored);
        }
    }
    return detail;
}

inline constexpr ApAllDetailFields apAllDetailFields = detailOfApAll();

inline constexpr Kind apAllDetail =
    kind("ap-all-detail", "full information per node, detail form", RECORD(ApInfoAllV2), Shape::Lines)
        .alias("detail")
        .fields(apAllDetailFields.fields, LineEnd::Alone)
        .inParts("ap_all_detail_band", "band")
        .blankAfterEach()
        .readBy("apAllDetailInfoReader")
        .writtenBy("apAllDetailInfoWriter")
        .numberOfRecordsFrom("caller's count")
        .keeps(UINT8_MAX, "one call reads at most 255 records and returns the last")
        .atBlankLine(
            "it counts as a record, so apAllDetailInfoReader reaches the end of the file early and fails");

} // namespace formats

#endif
