/* SPDX-License-Identifier: Apache-2.0 */
#include "kinds.h"

#include <stdexcept>

#include "dataInterface.h"

namespace algdata
{

namespace
{

/* ---- Fields ------------------------------------------------------------- */

/* A field with the properties that differ from the plain ones. */
struct Described : Field {
    Described(const char* fieldName, Type fieldType, size_t fieldOffset, const char* fieldMeaning)
    {
        name = fieldName;
        type = fieldType;
        offset = fieldOffset;
        meaning = fieldMeaning;
        stride = typeSize(fieldType);
        if (fieldType == Type::Mac)
            widthOut = widthIn = 12;
    }
    Described& times(int elements) { return count = elements, *this; }
    Described& bands() { return times(5); }
    Described& bandsApart(size_t bytes) { return stride = bytes, interleaved = true, times(5); }
    Described& bandByBand() { return interleaved = true, times(5); }
    Described& written(int width) { return widthOut = width, *this; }
    Described& width(int both) { return widthOut = widthIn = both, *this; }
    Described& upTo(uint64_t value, const char* broken) { return limit = value, rule = broken, *this; }
    Described& loads(Load how) { return load = how, *this; }
    Described& asKey() { return key = true, *this; }
    Described& asPosition() { return position = true, *this; }
};

#define MAC(record, member, meaning) Described(#member, Type::Mac, offsetof(record, member), meaning)
#define U8(record, member, meaning) Described(#member, Type::U8, offsetof(record, member), meaning)
#define U16(record, member, meaning) Described(#member, Type::U16, offsetof(record, member), meaning)
#define U32(record, member, meaning) Described(#member, Type::U32, offsetof(record, member), meaning)
#define F32(record, member, meaning) Described(#member, Type::F32, offsetof(record, member), meaning)

constexpr size_t nodeAt = offsetof(ApInfoAllV2, apNodeV2);
constexpr size_t versionAt = offsetof(ApInfoAllV2, alg_version);
constexpr size_t modeAt = offsetof(ApInfoAllV2, algWifiMode);

Described inNode(Described field)
{
    return field.offset += nodeAt, field;
}
Described inVersion(Described field)
{
    return field.offset += versionAt, field;
}
Described inMode(Described field)
{
    return field.offset += modeAt, field.bandsApart(sizeof(AlgWifiMode));
}

std::vector<Field> apNodeFields()
{
    using R = ApNodeV2;
    return {
        MAC(R, deviceMAC, "the node").asKey(),
        MAC(R, fatherDeviceMAC, "its current father"),
        U8(R, wirelessChannelUtilization, "channel utilization per band").bands().loads(Load::Utilization),
        U8(R, plcUtilization, "utilization of the power-line link").loads(Load::Utilization),
        U8(R, ethernetUtilization, "utilization of the Ethernet link").loads(Load::Utilization),
        U16(R, wirelessRxRate, "receive rate per band").bands().loads(Load::Rate),
        U16(R, wirelessTxRate, "transmit rate per band").bands().loads(Load::Rate),
        U16(R, plcRate, "power-line link rate").loads(Load::PlcRate),
        U16(R, ethernetRate, "Ethernet link rate"),
        U16(R, offset, "offset per band").bands(),
    };
}

std::vector<Field> detailHead()
{
    using R = ApNodeV2;
    return {
        inNode(MAC(R, deviceMAC, "the node")).asKey(),
        inNode(MAC(R, fatherDeviceMAC, "its current father")),
        inNode(U8(R, plcUtilization, "utilization of the power-line link")).loads(Load::Utilization),
        inNode(U16(R, plcRate, "power-line link rate")).loads(Load::PlcRate),
        inNode(U8(R, ethernetUtilization, "utilization of the Ethernet link")).loads(Load::Utilization),
        inNode(U16(R, ethernetRate, "Ethernet link rate")),
    };
}

std::vector<Field> apAllBands()
{
    using R = ApNodeV2;
    using M = AlgWifiMode;
    return {
        inNode(U8(R, wirelessChannelUtilization, "channel utilization per band"))
            .bandByBand()
            .loads(Load::Utilization),
        inNode(U16(R, wirelessRxRate, "receive rate per band")).bandByBand().loads(Load::Rate),
        inNode(U16(R, wirelessTxRate, "transmit rate per band")).bandByBand().loads(Load::Rate),
        inNode(U16(R, offset, "offset per band")).bandByBand(),
        inMode(U8(M, available, "whether the band is usable")),
        inMode(U8(M, NSS, "spatial streams of the band")),
        inMode(U8(M, wifiMode, "Wi-Fi mode code of the band")),
        inMode(U8(M, bandWidth, "bandwidth code of the band")),
        inMode(U8(M, mcsLevel, "MCS level of the band")),
        inMode(U8(M, channel, "channel of the band")),
        inMode(U8(M, reserved, "reserved")),
    };
}

/* The detail line's values come back raw: its reader converts nothing. */
std::vector<Field> detailFields()
{
    std::vector<Field> fields = detailHead();
    for (const Field& field : apAllBands())
        fields.push_back(field);
    for (Field& field : fields)
        field.load = Load::AsStored;
    return fields;
}

std::vector<Field> apAllFields()
{
    std::vector<Field> fields = {
        inVersion(U8(ALG_CTRL_VERSION, major_ver, "major version of the control data")),
        inVersion(U8(ALG_CTRL_VERSION, minor_ver, "minor version of the control data")),
    };
    for (const Field& field : detailHead())
        fields.push_back(field);
    fields.push_back(inNode(U8(ApNodeV2, tipc_node, "node number")));
    for (const Field& field : apAllBands())
        fields.push_back(field);
    return fields;
}

std::vector<Field> bridgingFields()
{
    using R = BridgingNodeV2;
    return {
        MAC(R, deviceMAC, "the node whose link this is").asKey(),
        MAC(R, fatherDeviceMAC, "its father; 000000000000 in the FAP's own record").asKey(),
        U8(R, bridgingRssi, "signal strength per band").bandByBand(),
        U16(R, bridgingRxRate, "receive rate per band").bandByBand(),
        U16(R, bridgingTxRate, "transmit rate per band").bandByBand(),
        U8(R, bridgingRxMcs, "receive MCS per band").bandByBand(),
        U8(R, bridgingTxMcs, "transmit MCS per band").bandByBand(),
    };
}

std::vector<Field> stationFields()
{
    using R = StaConnection;
    return {
        U16(R, id, "position in the file; every write renumbers").width(3).asPosition(),
        MAC(R, deviceMac, "the station").asKey(),
        MAC(R, apMac, "the AP it is connected to").asKey(),
        U16(R, connectBand, "band index of the connection").width(2),
        U16(R, rssi, "received signal strength, as reported").width(4),
        U16(R, rxRate, "receive rate").width(4),
        U16(R, txRate, "transmit rate").width(4),
        U16(R, rxPackageCount, "packets received").width(4),
        U16(R, txPackageCount, "packets sent"),
        U16(R, wifimode, "Wi-Fi mode code"),
        U16(R, bandwidth, "channel width code"),
        U16(R, mcslevel, "MCS level"),
        U16(R, mimo, "spatial streams: 0, 1, 2, 3, 4, 8 or 99"),
        U16(R, kvrCapacity, "k/v/r roaming capability"),
        U16(R, noiselevel, "noise level"),
    };
}

std::vector<Field> candidateFields()
{
    using R = CandidateAp;
    return {
        MAC(R, apMac, "the candidate AP").asKey(),
        U8(R, connectBand, "band index on which the station would connect").asKey(),
        U8(R, roamingAvailable, "whether roaming there is possible, 0 or not 0"),
        U8(R, rssi, "signal strength expected there"),
        U16(R, throughput, "throughput expected there"),
        U8(R, wifimode, "Wi-Fi mode code"),
        U8(R, bandwidth, "channel width code"),
        U8(R, mcslevel, "MCS level"),
        U8(R, mimo, "spatial streams: 0, 1, 2, 3, 4, 8 or 99"),
    };
}

std::vector<Field> patV1Fields()
{
    using R = PatParameter;
    return {
        MAC(R, deviceMac, "the device").asKey(),
        U16(R, bParameter, "parameter b per slot: band * 20 + width * 4 + MCS order").times(100),
        U16(R, cParameter, "parameter c per slot, in the same order").times(100),
    };
}

std::vector<Field> patV2Head()
{
    using R = PatParameterV2;
    return {
        MAC(R, deviceMac, "the device").asKey(),
        U8(R, commonPatNum, "number of entries").upTo(100, "pat-too-many"),
    };
}

std::vector<Field> patV2Entry()
{
    using R = SinglePat;
    return {
        U8(R, isChanged, "bit 0: paraB changed, bit 1: paraC changed").upTo(3, "pat-flags"),
        U8(R, bandOrder, "band index").upTo(4, "pat-order").asKey(),
        U8(R, channelWidthOrder, "channel-width index").upTo(4, "pat-order").asKey(),
        U8(R, mcsOrder, "MCS index").upTo(3, "pat-order").asKey(),
        U8(R, paraB, "b = paraB * 0.0008 + 0.1"),
        U16(R, paraC, "c = paraC * 0.00064 - 50"),
    };
}

std::vector<Field> scanningFields()
{
    using R = ScanningInfo;
    return {
        MAC(R, deviceMAC, "the AP that made the scan").asKey(),
        MAC(R, neighbourMAC, "the neighbour that was seen").asKey(),
        U8(R, band, "band of the sighting").width(2).asKey(),
        U8(R, channel, "channel number").width(3).asKey(),
        U8(R, rssi, "received signal strength").width(3).loads(Load::Rssi),
    };
}

std::vector<Field> timeDelayFields()
{
    using R = TimeDelayInfo;
    return {
        MAC(R, fatherMAC, "the father that the delays were measured towards").asKey(),
        U16(R, delayTime, "the delay samples").times(15).written(3).loads(Load::Delay),
    };
}

std::vector<Field> scoreFields()
{
    using R = ScoreInfo;
    return {
        MAC(R, fatherMAC, "the candidate father").asKey(),
        U8(R, apRank, "its rank").written(2),
        F32(R, hopsFactor, "hop factor, two decimals"),
        U8(R, timeDelayTestCnt, "number of delay tests").written(2),
        U16(R, timeDelayAverage, "average delay").written(4),
        F32(R, timeNormalization, "normalised time, two decimals"),
        U16(R, thrputPredict, "predicted throughput").written(4),
        U8(R, rssi, "signal strength per band").bands().written(2),
        U16(R, negoRate, "negotiated rate per band").bands().written(4),
        U16(R, patRate, "PAT rate per band").bands().written(4),
    };
}

std::vector<Field> apRankFields()
{
    using R = ApRank;
    return {
        MAC(R, deviceMAC, "the device").asKey(),
        MAC(R, ethFatherMAC, "its father over Ethernet"),
        U8(R, apRank, "rank (hop level)"),
    };
}

std::vector<Field> indexHead()
{
    using R = ApRankIndex;
    return {
        U8(R, cnt, "number of ranked devices").upTo(30, "index-too-many"),
        U8(R, process_re, "RE-processing value of the run"),
        U32(R, alg_strategy, "strategy: 0 unknown, 1 careful, 2 radical, 3 get best").upTo(3, "strategy"),
        U32(R, starttime, "start of the run"),
    };
}

std::vector<Field> indexEntry()
{
    using R = ApThrRank;
    return {
        MAC(R, deviceMAC, "the ranked device").asKey(),
        MAC(R, fatherMAC, "its father"),
        U8(R, apRank, "rank (hop level)"),
        U16(R, throughput, "its throughput"),
    };
}

std::vector<Field> outputFields()
{
    using R = ApAlgInterfaceOutput;
    return {
        MAC(R, srcMAC, "source device").asKey(),
        MAC(R, dstMAC, "destination device").asKey(),
        U32(R, algStrategy, "strategy: 0 unknown, 1 careful, 2 radical, 3 get best").upTo(3, "strategy"),
        U8(R, timeout, "timeout of the decision"),
    };
}

#undef MAC
#undef U8
#undef U16
#undef U32
#undef F32

/* ---- Layouts ------------------------------------------------------------ */

/* The fields that are interleaved with field `first`, as one past the last. */
size_t endOfGroup(const std::vector<Field>& fields, size_t first)
{
    size_t end = first + 1;
    while (fields[first].interleaved && end < fields.size() && fields[end].interleaved)
        ++end;
    return end;
}

void addColumn(Layout& layout, size_t field, int element)
{
    const Field& of = layout.fields[field];
    layout.placeOf[field].push_back(layout.columns.size());
    layout.columns.push_back(
        {&of, element, of.count == 1 ? of.name : of.name + ("." + std::to_string(element))});
}

/* Must run once the fields stand still: columns point to them. */
void layOut(Layout& layout)
{
    layout.columns.clear();
    layout.placeOf.assign(layout.fields.size(), {});
    for (size_t first = 0; first < layout.fields.size();) {
        const size_t end = endOfGroup(layout.fields, first);
        for (int element = 0; element < layout.fields[first].count; ++element)
            for (size_t field = first; field < end; ++field)
                addColumn(layout, field, element);
        first = end;
    }
}

Layout fieldsOnly(std::vector<Field> fields)
{
    return {std::move(fields), {}, {}};
}

/* ---- Kinds -------------------------------------------------------------- */

Kind apNode()
{
    return {"ap-node",
            {"apnode", "node"},
            "link metrics per node",
            Shape::Lines,
            sizeof(ApNodeV2),
            fieldsOnly(apNodeFields()),
            "apNodeInfoReaderV2",
            "apNodeInfoWriterV2",
            false,
            false,
            true,
            255,
            "one reading takes at most 255 records",
            "it counts as a record, so apNodeInfoReaderV2 meets the end of the file early and fails",
            true,
            {}};
}

Kind apAll()
{
    return {"ap-all",
            {"apall"},
            "full information per node",
            Shape::Lines,
            sizeof(ApInfoAllV2),
            fieldsOnly(apAllFields()),
            "apAllInfoReader",
            "apAllInfoWriter",
            false,
            true,
            true,
            0,
            "no cap",
            "it counts as a record: apAllInfoOnlyReader and with it updates and deletes fail, "
            "apAllInfoReader hands out "
            "an empty record",
            true,
            {}};
}

Kind apAllDetail()
{
    return {"ap-all-detail",
            {"detail"},
            "full information per node, detail form",
            Shape::Lines,
            sizeof(ApInfoAllV2),
            fieldsOnly(detailFields()),
            "apAllDetailInfoReader",
            "apAllDetailInfoWriter",
            false,
            true,
            true,
            255,
            "one reading takes at most 255 records and keeps the last",
            "it counts as a record, so apAllDetailInfoReader meets the end of the file early and fails",
            true,
            {}};
}

Kind bridging()
{
    return {"bridging",
            {"bridge"},
            "backhaul link metrics",
            Shape::Lines,
            sizeof(BridgingNodeV2),
            fieldsOnly(bridgingFields()),
            "bridgingApNodeInfoReader",
            "bridgingApNodeInfoWriter",
            false,
            true,
            false,
            64,
            "the FAP's log is held at 64; an RE's table has no cap",
            "it counts as a record: bridgingApNodeInfoReader fails, and updateSingleBridgingInfo drops the "
            "next record "
            "and still returns true",
            true,
            {}};
}

Kind station()
{
    return {
        "station",
        {"sta"},
        "station connection samples",
        Shape::Lines,
        sizeof(StaConnection),
        fieldsOnly(stationFields()),
        "stationInfoOnlyReader",
        "stationNodeInfoWriter",
        true,
        false,
        false,
        128,
        "an append keeps the newest 128",
        "stationInfoOnlyReader and stationNodeInfoReader fail on it, and with them stationInfoAppendWriter",
        true,
        {}};
}

Kind candidate()
{
    return {"candidate",
            {"can"},
            "candidate APs of a station",
            Shape::Lines,
            sizeof(CandidateAp),
            fieldsOnly(candidateFields()),
            "candidateApNodeInfoReader",
            "candidateApNodeInfoWriter",
            true,
            false,
            true,
            0,
            "no cap",
            "candidateApNodeInfoReader fails on it",
            true,
            {}};
}

Kind patV1()
{
    return {"pat-v1",
            {"pat1"},
            "PAT parameters, version 1",
            Shape::Stream,
            sizeof(PatParameter),
            fieldsOnly(patV1Fields()),
            "patParameterReader",
            nullptr,
            false,
            false,
            true,
            0,
            "the caller says how many devices",
            "the reader skips it",
            false,
            {}};
}

Kind patV2()
{
    Kind kind = {"pat-v2",
                 {"pat", "pat2"},
                 "PAT parameters, version 2",
                 Shape::Devices,
                 sizeof(PatParameterV2),
                 fieldsOnly(patV2Head()),
                 "patParameterReaderV2",
                 "patParameterWriterV2",
                 false,
                 false,
                 true,
                 255,
                 "at most 255 devices of at most 100 entries",
                 "the reader skips it",
                 false,
                 fieldsOnly(patV2Entry())};
    kind.entryName = "singlePat";
    kind.countName = "commonPatNum";
    kind.entryOffset = offsetof(PatParameterV2, singlePat);
    kind.entrySize = sizeof(SinglePat);
    kind.entryMax = 100;
    return kind;
}

Kind scanning()
{
    return {"scanning",
            {"scan"},
            "neighbour sightings",
            Shape::Lines,
            sizeof(ScanningInfo),
            fieldsOnly(scanningFields()),
            "scanningInfoReader",
            "scanningInfoWriter",
            true,
            false,
            false,
            256,
            "an append keeps the newest 256",
            "scanningInfoReader fails on it, and with it scanningInfoDeleter, appendScanningInfo and "
            "appendSingleScanningInfo",
            true,
            {}};
}

Kind timeDelay()
{
    return {"time-delay",
            {"delay", "timedelay"},
            "latency samples per father",
            Shape::Lines,
            sizeof(TimeDelayInfo),
            fieldsOnly(timeDelayFields()),
            "timeDelayInfoReader",
            "timeDelayInfoWriter",
            false,
            false,
            false,
            256,
            "an append keeps the newest 256; an update has no cap",
            "it counts as a record: timeDelayInfoReader hands out an empty one, and the next record that "
            "updateSingleTimeDelayInfo inserts or appendSingleTimeDelayInfo adds is silently dropped",
            true,
            {}};
}

Kind score()
{
    return {"score",
            {},
            "scores per candidate father",
            Shape::Lines,
            sizeof(ScoreInfo),
            fieldsOnly(scoreFields()),
            "scoreInfoReader",
            "scoreInfoWriter",
            false,
            false,
            true,
            0,
            "no cap",
            "it counts as a record, so scoreInfoReader hands out one with what the array held before",
            true,
            {}};
}

Kind apRank()
{
    return {"ap-rank",
            {"rank"},
            "rank per node",
            Shape::Lines,
            sizeof(ApRank),
            fieldsOnly(apRankFields()),
            "apRankInfoReader",
            "apRankInfoWriter",
            true,
            false,
            true,
            0,
            "no cap",
            "apRankInfoReader fails on it, and with it updataSingleApRankInfo",
            true,
            {}};
}

Kind apRankIndex()
{
    Kind kind = {"ap-rank-index",
                 {"rank-index", "index"},
                 "ranking and state of the run",
                 Shape::Index,
                 sizeof(ApRankIndex),
                 fieldsOnly(indexHead()),
                 "apRankIndexInfoReader",
                 "apRankIndexInfoWriter",
                 true,
                 false,
                 true,
                 30,
                 "at most 30 ranked devices",
                 "apRankIndexInfoReader fails on it",
                 true,
                 fieldsOnly(indexEntry())};
    kind.entryName = "apRank";
    kind.countName = "cnt";
    kind.entryOffset = offsetof(ApRankIndex, apRank);
    kind.entrySize = sizeof(ApThrRank);
    kind.entryMax = 30;
    return kind;
}

Kind algOutput()
{
    return {"alg-output",
            {"output", "decision"},
            "the algorithm's latest decision",
            Shape::Lines,
            sizeof(ApAlgInterfaceOutput),
            fieldsOnly(outputFields()),
            "apAlgOutputInfoReader",
            "apAlgOutputInfoWriter",
            true,
            false,
            false,
            1,
            "only the first line is read",
            "apAlgOutputInfoReader fails on a blank first line and never reads another",
            true,
            {}};
}

std::vector<Kind> allKinds()
{
    std::vector<Kind> all = {apNode(),    apAll(),  apAllDetail(), bridging(), station(),
                             candidate(), patV1(),  patV2(),       scanning(), timeDelay(),
                             score(),     apRank(), apRankIndex(), algOutput()};
    for (Kind& kind : all) {
        layOut(kind.head);
        layOut(kind.entry);
    }
    return all;
}

} // namespace

const std::vector<Kind>& kinds()
{
    static const std::vector<Kind> table = allKinds();
    return table;
}

const Kind* findKind(std::string_view name)
{
    for (const Kind& kind : kinds()) {
        if (name == kind.name)
            return &kind;
        for (const char* alias : kind.aliases)
            if (name == alias)
                return &kind;
    }
    return nullptr;
}

const Kind& kindNamed(std::string_view name)
{
    const Kind* kind = findKind(name);
    if (kind == nullptr)
        throw std::logic_error("no such kind: " + std::string(name));
    return *kind;
}

std::string kindNames()
{
    std::string names;
    for (const Kind& kind : kinds())
        names += (names.empty() ? "" : ", ") + std::string(kind.name);
    return names;
}

const char* typeName(Type type)
{
    switch (type) {
    case Type::Mac:
        return "MAC";
    case Type::U8:
        return "uint8";
    case Type::U16:
        return "uint16";
    case Type::U32:
        return "uint32";
    case Type::F32:
        return "float";
    }
    return "";
}

size_t typeSize(Type type)
{
    switch (type) {
    case Type::Mac:
        return 16;
    case Type::U8:
        return 1;
    case Type::U16:
        return 2;
    default:
        return 4;
    }
}

uint64_t typeMax(Type type)
{
    return type == Type::U8 ? UINT8_MAX : type == Type::U16 ? UINT16_MAX : UINT32_MAX;
}

uint64_t largest(const Field& field)
{
    return field.limit != 0 ? field.limit : typeMax(field.type);
}

uint64_t loadedValue(const Field& field, uint64_t stored)
{
    const uint64_t rssiLoss = ai_yra_rssi_compensation;
    switch (field.load) {
    case Load::Utilization:
        return stored >= 95 ? 1 : 95 - stored;
    case Load::Rate:
        return stored == 0 ? 1 : stored > 10000 ? 10000 : stored;
    case Load::PlcRate:
        return stored > 10000 ? 10000 : stored;
    case Load::Rssi:
        return stored > rssiLoss ? stored - rssiLoss : 1;
    case Load::Delay:
        return stored < 1 ? 1 : stored > 1000 ? 1000 : stored;
    case Load::AsStored:
        break;
    }
    return stored;
}

const char* loadText(Load load)
{
    switch (load) {
    case Load::Utilization:
        return "95 - value, at least 1";
    case Load::Rate:
        return "1 to 10000";
    case Load::PlcRate:
        return "at most 10000";
    case Load::Rssi:
        return "value - 3, at least 1";
    case Load::Delay:
        return "1 to 1000";
    case Load::AsStored:
        break;
    }
    return "";
}

} // namespace algdata
