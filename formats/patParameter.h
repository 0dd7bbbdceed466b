/* SPDX-License-Identifier: Apache-2.0 */
#ifndef FORMATS_PAT_PARAMETER_H
#define FORMATS_PAT_PARAMETER_H

#include "algDataInterfaceStruct.h"
#include "format.h"

namespace formats
{

/* ---- Version 1 ---------------------------------------------------------- */

inline constexpr Field patV1Fields[] = {
    FIELD(PatParameter, deviceMac, "the device").asKey(),
    FIELD(PatParameter, bParameter, "parameter b per slot: band * 20 + width * 4 + MCS order")
        .inUnit("b = value * 0.0008 + 0.1"),
    FIELD(PatParameter, cParameter, "parameter c per slot, in the same order")
        .inUnit("c = value * 0.00064 - 50 - ai_yra_patc_compensation"),
};

inline constexpr Kind patV1 = kind("pat-v1", "PAT parameters, version 1", RECORD(PatParameter), Shape::Stream)
                                  .alias("pat1")
                                  .fields(patV1Fields, LineEnd::None)
                                  .inParts("pat_v1_slot", "slot")
                                  .readBy("patParameterReader")
                                  .numberOfRecordsFrom("caller's count")
                                  .keeps(0, "the caller states the number of devices")
                                  .skipsBlankLines();

/* ---- Version 2 ---------------------------------------------------------- */

/* The module prints it from an int and reads it into 8 bits. */
inline constexpr Field patV2CountLine[] = {
    field<uint8_t>("devices", 0, "number of devices").printedSigned(),
};

inline constexpr Field patV2Device[] = {
    FIELD(PatParameterV2, deviceMac, "the device").asKey(),
    FIELD(PatParameterV2, commonPatNum, "number of entries").upTo(ALG_PAT_CAPACITY, "pat-too-many"),
};

inline constexpr Field patV2Entry[] = {
    FIELD(SinglePat, isChanged, "bit 0: paraB changed, bit 1: paraC changed").upTo(3, "pat-flags"),
    FIELD(SinglePat, bandOrder, "band index").upTo(ALG_BANDS - 1, "pat-order").asKey(),
    FIELD(SinglePat, channelWidthOrder, "channel-width index")
        .upTo(ALG_CHANNEL_WIDTHS - 1, "pat-order")
        .asKey(),
    FIELD(SinglePat, mcsOrder, "MCS index").upTo(ALG_MCS_ORDERS - 1, "pat-order").asKey(),
    FIELD(SinglePat, paraB, "b = paraB * 0.0008 + 0.1"),
    FIELD(SinglePat, paraC, "c = paraC * 0.00064 - 50"),
};

inline constexpr Kind patV2 =
    kind("pat-v2", "PAT parameters, version 2", RECORD(PatParameterV2), Shape::Devices)
        .alias("pat")
        .alias("pat2")
        .beginsWith(patV2CountLine, LineEnd::Alone)
        .fields(patV2Device, LineEnd::InFormat)
        .contains(ENTRIES(PatParameterV2, singlePat, SinglePat, commonPatNum), patV2Entry, LineEnd::InFormat)
        .inParts("pat_entry", "entry")
        .readBy("patParameterReaderV2")
        .writtenBy("patParameterWriterV2")
        .updatedBy("updateSinglePatV2")
        .createdBy("patInitV2")
        .numberOfRecordsFrom("first line, at most the caller's count")
        .foundBy("none: an update replaces the file")
        .keeps(UINT8_MAX, "at most 255 devices with at most 100 entries each")
        .skipsBlankLines();

} // namespace formats

#endif
