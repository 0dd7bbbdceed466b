/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Holds algdata's table of kinds against the module. Each record's members are
 * named here once more, by hand: what the module writes must be read by the
 * table under these names, and what the table writes must reach these members.
 */
#include <cstdio>
#include <cstring>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <sstream>
#include <unistd.h>

#include "checking/rules.h"
#include "dataInterface.h"
#include "reading/detect.h"
#include "reading/records.h"
#include "view/loaded.h"

namespace
{

using namespace algdata;

/* ---- The members, by name ----------------------------------------------- */

template <typename V> void visit(ApNodeV2& r, V& v, bool withNodeNumber)
{
    v("deviceMAC", r.deviceMAC);
    v("fatherDeviceMAC", r.fatherDeviceMAC);
    v("wirelessChannelUtilization", r.wirelessChannelUtilization);
    v("plcUtilization", r.plcUtilization);
    v("ethernetUtilization", r.ethernetUtilization);
    v("wirelessRxRate", r.wirelessRxRate);
    v("wirelessTxRate", r.wirelessTxRate);
    v("plcRate", r.plcRate);
    v("ethernetRate", r.ethernetRate);
    v("offset", r.offset);
    if (withNodeNumber)
        v("tipc_node", r.tipc_node);
}

template <typename V> void visit(const Kind&, ApNodeV2& r, V& v)
{
    visit(r, v, false);
}

template <typename V> void visit(const Kind& kind, ApInfoAllV2& r, V& v)
{
    const bool whole = std::string(kind.name) == "ap-all";
    if (whole) {
        v("major_ver", r.alg_version.major_ver);
        v("minor_ver", r.alg_version.minor_ver);
    }
    visit(r.apNodeV2, v, whole);
    for (int j = 0; j < 5; ++j) {
        AlgWifiMode& mode = r.algWifiMode[j];
        const std::string band = "." + std::to_string(j);
        v("available" + band, mode.available);
        v("NSS" + band, mode.NSS);
        v("wifiMode" + band, mode.wifiMode);
        v("bandWidth" + band, mode.bandWidth);
        v("mcsLevel" + band, mode.mcsLevel);
        v("channel" + band, mode.channel);
        v("reserved" + band, mode.reserved);
    }
}

template <typename V> void visit(const Kind&, BridgingNodeV2& r, V& v)
{
    v("deviceMAC", r.deviceMAC);
    v("fatherDeviceMAC", r.fatherDeviceMAC);
    v("bridgingRssi", r.bridgingRssi);
    v("bridgingRxRate", r.bridgingRxRate);
    v("bridgingTxRate", r.bridgingTxRate);
    v("bridgingRxMcs", r.bridgingRxMcs);
    v("bridgingTxMcs", r.bridgingTxMcs);
}

/* Without the id, which every write sets to the position. */
template <typename V> void visit(const Kind&, StaConnection& r, V& v)
{
    v("deviceMac", r.deviceMac);
    v("apMac", r.apMac);
    v("connectBand", r.connectBand);
    v("rssi", r.rssi);
    v("rxRate", r.rxRate);
    v("txRate", r.txRate);
    v("rxPackageCount", r.rxPackageCount);
    v("txPackageCount", r.txPackageCount);
    v("wifimode", r.wifimode);
    v("bandwidth", r.bandwidth);
    v("mcslevel", r.mcslevel);
    v("mimo", r.mimo);
    v("kvrCapacity", r.kvrCapacity);
    v("noiselevel", r.noiselevel);
}

template <typename V> void visit(const Kind&, CandidateAp& r, V& v)
{
    v("apMac", r.apMac);
    v("connectBand", r.connectBand);
    v("roamingAvailable", r.roamingAvailable);
    v("rssi", r.rssi);
    v("throughput", r.throughput);
    v("wifimode", r.wifimode);
    v("bandwidth", r.bandwidth);
    v("mcslevel", r.mcslevel);
    v("mimo", r.mimo);
}

template <typename V> void visit(const Kind&, PatParameter& r, V& v)
{
    v("deviceMac", r.deviceMac);
    v("bParameter", r.bParameter);
    v("cParameter", r.cParameter);
}

constexpr int entriesHere = 3;

template <typename V> void visit(const Kind&, PatParameterV2& r, V& v)
{
    v("deviceMac", r.deviceMac);
    r.commonPatNum = entriesHere;
    for (int j = 0; j < entriesHere; ++j) {
        v.entry = j;
        v("isChanged", r.singlePat[j].isChanged);
        v("bandOrder", r.singlePat[j].bandOrder);
        v("channelWidthOrder", r.singlePat[j].channelWidthOrder);
        v("mcsOrder", r.singlePat[j].mcsOrder);
        v("paraB", r.singlePat[j].paraB);
        v("paraC", r.singlePat[j].paraC);
    }
    v.entry = -1;
}

template <typename V> void visit(const Kind&, ScanningInfo& r, V& v)
{
    v("deviceMAC", r.deviceMAC);
    v("neighbourMAC", r.neighbourMAC);
    v("band", r.band);
    v("channel", r.channel);
    v("rssi", r.rssi);
}

template <typename V> void visit(const Kind&, TimeDelayInfo& r, V& v)
{
    v("fatherMAC", r.fatherMAC);
    v("delayTime", r.delayTime);
}

template <typename V> void visit(const Kind&, ScoreInfo& r, V& v)
{
    v("fatherMAC", r.fatherMAC);
    v("apRank", r.apRank);
    v("hopsFactor", r.hopsFactor);
    v("timeDelayTestCnt", r.timeDelayTestCnt);
    v("timeDelayAverage", r.timeDelayAverage);
    v("timeNormalization", r.timeNormalization);
    v("thrputPredict", r.thrputPredict);
    v("rssi", r.rssi);
    v("negoRate", r.negoRate);
    v("patRate", r.patRate);
}

template <typename V> void visit(const Kind&, ApRank& r, V& v)
{
    v("deviceMAC", r.deviceMAC);
    v("ethFatherMAC", r.ethFatherMAC);
    v("apRank", r.apRank);
}

template <typename V> void visit(const Kind&, ApRankIndex& r, V& v)
{
    r.cnt = entriesHere;
    v("process_re", r.process_re);
    v("alg_strategy", r.alg_strategy);
    v("starttime", r.starttime);
    for (int j = 0; j < entriesHere; ++j) {
        v.entry = j;
        v("deviceMAC", r.apRank[j].deviceMAC);
        v("fatherMAC", r.apRank[j].fatherMAC);
        v("apRank", r.apRank[j].apRank);
        v("throughput", r.apRank[j].throughput);
    }
    v.entry = -1;
}

template <typename V> void visit(const Kind&, ApAlgInterfaceOutput& r, V& v)
{
    v("srcMAC", r.srcMAC);
    v("dstMAC", r.dstMAC);
    v("algStrategy", r.algStrategy);
    v("timeout", r.timeout);
}

/* ---- Visitors ----------------------------------------------------------- */

/* Takes arrays apart into "name.0", "name.1", ... and hands single members to `One`. */
template <typename One> struct Members {
    One& one;
    int entry = -1;

    void operator()(const std::string& name, char (&mac)[16]) { one.mac(entry, name, mac); }
    template <typename T> void operator()(const std::string& name, T& number)
    {
        one.number(entry, name, number);
    }
    template <typename T, size_t n> void operator()(const std::string& name, T (&numbers)[n])
    {
        for (size_t i = 0; i < n; ++i)
            one.number(entry, name + "." + std::to_string(i), numbers[i]);
    }
};

/* Gives each member a value of its own. */
struct Fill {
    int last = 0;
    void mac(int, const std::string&, char (&mac)[16])
    {
        std::snprintf(mac, sizeof mac, "a0b1c2d3e4%02x", ++last & 255);
    }
    template <typename T> void number(int, const std::string&, T& number)
    {
        number = static_cast<T>(++last % 90 + 5);
    }
    void number(int, const std::string&, float& number) { number = static_cast<float>(++last) + 0.25F; }
};

/* Notes each member's value as a text, under entry and name. */
struct Note {
    std::map<std::pair<int, std::string>, std::string> texts;
    void mac(int entry, const std::string& name, char (&mac)[16]) { texts[{entry, name}] = mac; }
    template <typename T> void number(int entry, const std::string& name, T& number)
    {
        texts[{entry, name}] = std::to_string(static_cast<unsigned long>(number));
    }
    void number(int entry, const std::string& name, float& number)
    {
        std::ostringstream text;
        text << std::fixed;
        text.precision(2);
        text << number;
        texts[{entry, name}] = text.str();
    }
};

using Noted = std::map<std::pair<int, std::string>, std::string>;

template <typename R> Noted noted(const Kind& kind, R& record)
{
    Note note;
    Members<Note> members{note};
    visit(kind, record, members);
    return note.texts;
}

/* ---- Both ways ---------------------------------------------------------- */

class TableTest : public testing::Test
{
  protected:
    TableTest() { path = testing::TempDir() + "algdataTable." + std::to_string(getpid()); }
    ~TableTest() override { unlink(path.c_str()); }

    std::string fileText() const
    {
        std::ifstream file(path);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
    void writeText(const std::string& text) const { std::ofstream(path) << text; }

    template <typename R> Image filled(const Kind& kind, size_t count) const
    {
        EXPECT_EQ(kind.type.size, sizeof(R));
        Image image;
        image.kind = &kind;
        image.count = count;
        image.bytes.assign((count + 1) * sizeof(R), '\0');
        Fill fill;
        for (size_t i = 0; i < count; ++i) {
            Members<Fill> members{fill};
            visit(kind, reinterpret_cast<R*>(image.bytes.data())[i], members);
        }
        return image;
    }

    /* A record read by the table against the members. */
    void expectFields(const Kind& kind, const Record& record, const Noted& expected) const
    {
        EXPECT_EQ(record.odd, 0U);
        for (const auto& [place, text] : expected) {
            const Layout& layout = place.first < 0 ? kind.head : kind.entry;
            const auto& cells =
                place.first < 0 ? record.cells : record.entries.at(static_cast<size_t>(place.first));
            size_t named = 0;
            for (size_t i = 0; i < layout.columns.size(); ++i)
                if (layout.columns[i].name == place.second) {
                    ++named;
                    EXPECT_EQ(cells[i], text) << kind.name << " " << place.second;
                }
            EXPECT_EQ(named, 1U) << kind.name << " " << place.second;
        }
        /* All but the count of entries and the position are named above. */
        const size_t unnamed = (kind.hasEntries() ? 1U : 0U) + (kind.head.fields[0].position ? 1U : 0U);
        EXPECT_EQ(expected.size() + unnamed,
                  kind.head.columns.size() + record.entries.size() * kind.entry.columns.size());
    }

    /* What the module's reader makes of a field. */
    std::string asLoaded(const Kind& kind, const std::pair<int, std::string>& place,
                         const std::string& stored) const
    {
        const Layout& layout = place.first < 0 ? kind.head : kind.entry;
        for (const Column& column : layout.columns)
            if (column.name == place.second && column.field->load != Load::AsStored)
                return std::to_string(loadedValue(*column.field, std::stoul(stored)));
        return stored;
    }

    template <typename R> void moduleWritesTableReads(const Kind& kind, Image& image)
    {
        ASSERT_TRUE(storeImage(image, path));
        const std::string text = fileText();
        EXPECT_EQ(detectKind(text).kind, &kind);
        EXPECT_TRUE(findFaults(kind, text).empty()) << kind.name;
        RecordReader reader(kind, text);
        Record record;
        std::string again = writtenPreamble(kind, image.count);
        for (size_t i = 0; i < image.count; ++i) {
            ASSERT_TRUE(reader.next(record));
            expectFields(kind, record, noted(kind, reinterpret_cast<R*>(image.bytes.data())[i]));
            again += written(kind, record);
        }
        EXPECT_FALSE(reader.next(record));
        EXPECT_EQ(again, text);
    }

    template <typename R> void tableWritesModuleReads(const Kind& kind, Image& image)
    {
        Texts texts;
        std::string text = writtenPreamble(kind, image.count);
        for (Record& record : recordsOf(image, texts))
            text += written(kind, record);
        writeText(text);
        Image loaded = loadImage(kind, path);
        ASSERT_TRUE(loaded.accepted) << kind.name;
        ASSERT_EQ(loaded.count, image.count) << kind.name;
        for (size_t i = 0; i < image.count; ++i) {
            const Noted stored = noted(kind, reinterpret_cast<R*>(image.bytes.data())[i]);
            const Noted got = noted(kind, reinterpret_cast<R*>(loaded.bytes.data())[i]);
            for (const auto& [place, value] : stored)
                EXPECT_EQ(got.at(place), asLoaded(kind, place, value)) << kind.name << " " << place.second;
        }
    }

    template <typename R> void bothWays(const char* name, size_t count)
    {
        const Kind& kind = kindNamed(name);
        Image image = filled<R>(kind, count);
        moduleWritesTableReads<R>(kind, image);
        tableWritesModuleReads<R>(kind, image);
    }

    std::string path;
};

TEST_F(TableTest, ApNode)
{
    bothWays<ApNodeV2>("ap-node", 3);
}
TEST_F(TableTest, ApAll)
{
    bothWays<ApInfoAllV2>("ap-all", 3);
}
TEST_F(TableTest, ApAllDetail)
{
    bothWays<ApInfoAllV2>("ap-all-detail", 1);
}
TEST_F(TableTest, Bridging)
{
    bothWays<BridgingNodeV2>("bridging", 3);
}
TEST_F(TableTest, Scanning)
{
    bothWays<ScanningInfo>("scanning", 3);
}
TEST_F(TableTest, TimeDelay)
{
    bothWays<TimeDelayInfo>("time-delay", 3);
}
TEST_F(TableTest, Score)
{
    bothWays<ScoreInfo>("score", 3);
}
TEST_F(TableTest, ApRank)
{
    bothWays<ApRank>("ap-rank", 3);
}

/* The values given to every field are in range, but not every one is a code or an order. */
TEST_F(TableTest, Station)
{
    const Kind& kind = kindNamed("station");
    Image image = filled<StaConnection>(kind, 3);
    for (size_t i = 0; i < 3; ++i) {
        StaConnection& record = reinterpret_cast<StaConnection*>(image.bytes.data())[i];
        record.id = static_cast<uint16_t>(i);
        record.mimo = MIMO_OTHERS;
    }
    moduleWritesTableReads<StaConnection>(kind, image);
    tableWritesModuleReads<StaConnection>(kind, image);
}

TEST_F(TableTest, Candidate)
{
    const Kind& kind = kindNamed("candidate");
    Image image = filled<CandidateAp>(kind, 3);
    for (size_t i = 0; i < 3; ++i)
        reinterpret_cast<CandidateAp*>(image.bytes.data())[i].mimo = MIMO_8;
    moduleWritesTableReads<CandidateAp>(kind, image);
    tableWritesModuleReads<CandidateAp>(kind, image);
}

TEST_F(TableTest, PatV2)
{
    const Kind& kind = kindNamed("pat-v2");
    Image image = filled<PatParameterV2>(kind, 2);
    for (size_t i = 0; i < 2; ++i)
        for (int j = 0; j < entriesHere; ++j) {
            SinglePat& entry = reinterpret_cast<PatParameterV2*>(image.bytes.data())[i].singlePat[j];
            entry.isChanged = 3;
            entry.bandOrder = static_cast<uint8_t>(j + 2);
            entry.channelWidthOrder = static_cast<uint8_t>(j + 1);
            entry.mcsOrder = static_cast<uint8_t>(j);
        }
    moduleWritesTableReads<PatParameterV2>(kind, image);
    tableWritesModuleReads<PatParameterV2>(kind, image);
}

TEST_F(TableTest, ApRankIndex)
{
    const Kind& kind = kindNamed("ap-rank-index");
    Image image = filled<ApRankIndex>(kind, 1);
    ApRankIndex& record = reinterpret_cast<ApRankIndex*>(image.bytes.data())[0];
    record.alg_strategy = ALG_STRATEGY_GET_BEST;
    record.starttime = 4294967295U;
    moduleWritesTableReads<ApRankIndex>(kind, image);
    tableWritesModuleReads<ApRankIndex>(kind, image);
}

TEST_F(TableTest, AlgOutput)
{
    const Kind& kind = kindNamed("alg-output");
    Image image = filled<ApAlgInterfaceOutput>(kind, 1);
    reinterpret_cast<ApAlgInterfaceOutput*>(image.bytes.data())[0].algStrategy = ALG_STRATEGY_REDICAL;
    moduleWritesTableReads<ApAlgInterfaceOutput>(kind, image);
    tableWritesModuleReads<ApAlgInterfaceOutput>(kind, image);
}

/* The module has no writer for version 1: only the other way. */
TEST_F(TableTest, PatV1)
{
    const Kind& kind = kindNamed("pat-v1");
    Image image = filled<PatParameter>(kind, 2);
    EXPECT_FALSE(storeImage(image, path));
    tableWritesModuleReads<PatParameter>(kind, image);
    const std::string text = fileText();
    EXPECT_EQ(detectKind(text).kind, &kind);
    RecordReader reader(kind, text);
    Record record;
    for (size_t i = 0; i < 2; ++i) {
        ASSERT_TRUE(reader.next(record));
        expectFields(kind, record, noted(kind, reinterpret_cast<PatParameter*>(image.bytes.data())[i]));
    }
    EXPECT_FALSE(reader.next(record));
}

/* Values at the bounds go through the reader's conversions as the table says. */
TEST_F(TableTest, BoundsAreAsTheReadersHaveThem)
{
    for (const int bound : {0, 1, 3, 4, 94, 95, 255, 999, 1000, 1001, 9999, 10000, 10001, 65535}) {
        const uint16_t value = static_cast<uint16_t>(bound);
        TimeDelayInfo delay = {};
        std::strcpy(delay.fatherMAC, "a0b1c2d3e4f5");
        std::fill(std::begin(delay.delayTime), std::end(delay.delayTime), value);
        ASSERT_TRUE(timeDelayInfoWriter(path.c_str(), &delay, 1));
        ASSERT_TRUE(timeDelayInfoReader(path.c_str(), &delay, 1));
        EXPECT_EQ(delay.delayTime[14], loadedValue(kindNamed("time-delay").head.fields[1], value));

        ApNodeV2 node = {};
        char pool[1][16];
        std::strcpy(node.deviceMAC, "a0b1c2d3e4f5");
        std::strcpy(node.fatherDeviceMAC, "a0b1c2d3e4f6");
        node.plcUtilization = static_cast<uint8_t>(value);
        node.wirelessTxRate[4] = node.plcRate = value;
        const uint8_t utilization = node.plcUtilization;
        ASSERT_TRUE(apNodeInfoWriterV2(path.c_str(), 1, &node));
        ASSERT_TRUE(apNodeInfoReaderV2(path.c_str(), 1, &node, pool));
        const formats::List<Field>& fields = kindNamed("ap-node").head.fields;
        EXPECT_EQ(node.plcUtilization, loadedValue(fields[3], utilization));
        EXPECT_EQ(node.wirelessTxRate[4], loadedValue(fields[6], value));
        EXPECT_EQ(node.plcRate, loadedValue(fields[7], value));

        ScanningInfo scan = {};
        std::strcpy(scan.deviceMAC, "a0b1c2d3e4f5");
        std::strcpy(scan.neighbourMAC, "a0b1c2d3e4f6");
        scan.rssi = static_cast<uint8_t>(value);
        const uint8_t rssi = scan.rssi;
        ASSERT_TRUE(scanningInfoWriter(path.c_str(), &scan, 1));
        ASSERT_TRUE(scanningInfoReader(path.c_str(), &scan));
        EXPECT_EQ(scan.rssi, loadedValue(kindNamed("scanning").head.fields[4], rssi));
    }
}

/* What check says of a number that does not fit is what the C library makes of it. */
TEST_F(TableTest, NumbersReadAsTheCLibraryReadsThem)
{
    Field u8;
    Field u16;
    Field u32;
    u16.type = Type::U16;
    u32.type = Type::U32;
    for (const char* text : {"0", "255", "256", "300", "-1", "-300", "+7", "007", "65535", "65536",
                             "4294967295", "4294967296", "18446744073709551615", "18446744073709551616",
                             "-18446744073709551616", "99999999999999999999999"}) {
        uint8_t asU8 = 0;
        uint16_t asU16 = 0;
        uint32_t asU32 = 0;
        ASSERT_EQ(std::sscanf(text, "%hhu", &asU8), 1);
        ASSERT_EQ(std::sscanf(text, "%hu", &asU16), 1);
        ASSERT_EQ(std::sscanf(text, "%u", &asU32), 1);
        const std::optional<Number> number = wholeNumber(text);
        ASSERT_TRUE(number) << text;
        EXPECT_EQ(readsAs(u8, *number), asU8) << text;
        EXPECT_EQ(readsAs(u16, *number), asU16) << text;
        EXPECT_EQ(readsAs(u32, *number), asU32) << text;
    }
}

/* A number that is too wide is split as check says. */
TEST_F(TableTest, WideNumbersSplitAsCheckSays)
{
    const std::string text = "  0 5c969d0000a1 a4c3f0000010  1   40 12345  866  100 200 5 2 9 2 3 95\n";
    writeText(text);
    StaConnection record = {};
    ASSERT_TRUE(stationInfoOnlyReader(path.c_str(), &record));
    EXPECT_EQ(record.rxRate, 1234);
    EXPECT_EQ(record.txRate, 5);
    EXPECT_EQ(record.rxPackageCount, 866);
    const std::vector<Finding> findings = findFaults(kindNamed("station"), text);
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_STREQ(findings[0].rule->name, "too-wide");
    EXPECT_EQ(findings[0].column, text.find("12345") + 1);
    EXPECT_NE(findings[0].text.find("it reads as 1234, txRate as 5"), std::string::npos);
}

/* A blank line is said to break what it breaks. */
TEST_F(TableTest, BlankLinesBreakWhatCheckSays)
{
    const std::string line = "a4c3f0000010 000000000000 1\n";
    writeText(line + "\n" + line);
    ApRank records[3] = {};
    EXPECT_FALSE(apRankInfoReader(path.c_str(), records));
    EXPECT_TRUE(kindNamed("ap-rank").blankLineBreaks);

    TimeDelayInfo delay = {};
    std::strcpy(delay.fatherMAC, "a4c3f0000010");
    ASSERT_TRUE(timeDelayInfoWriter(path.c_str(), &delay, 1));
    writeText(fileText() + "\n");
    std::strcpy(delay.fatherMAC, "a4c3f0000011");
    EXPECT_TRUE(appendSingleTimeDelayInfo(path.c_str(), &delay));
    EXPECT_EQ(fileText().find("a4c3f0000011"), std::string::npos);
    EXPECT_TRUE(kindNamed("time-delay").blankLineBreaks);
}

} // namespace
