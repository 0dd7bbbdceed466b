/* SPDX-License-Identifier: Apache-2.0 */
/* The backhaul links, the delays and the air in use. */
#include <algorithm>

#include <fmt/format.h>

#include "report/decision.h"
#include "report/figure.h"
#include "report/sections.h"

namespace algdata
{

namespace
{

/* Of the bands that have a mark. */
std::vector<svg::LegendEntry> bandLegend(const svg::DotPlot& plot)
{
    std::vector<svg::LegendEntry> legend;
    for (size_t band = 0; band < ALG_BANDS; ++band) {
        const auto isOfBand = [&](const svg::Mark& mark) { return mark.shape == svg::shapeOf(band); };
        const auto has = [&](const svg::DotRow& row) {
            return std::any_of(row.marks.begin(), row.marks.end(), isOfBand);
        };
        if (std::any_of(plot.rows.begin(), plot.rows.end(), has))
            legend.push_back({fmt::format("band {}", band), svg::shapeOf(band), false, band});
    }
    return legend;
}

/* ---- RSSI and rates ---------------------------------------------------------------------- */

PageTable linkTable(const Snapshot& snapshot, const std::vector<ReportedLink>& links)
{
    PageTable table;
    table.caption = "Links by band, as stored";
    table.columns = {{"link"},          {"band", true},   {"RSSI", true},   {"rx rate", true},
                     {"tx rate", true}, {"rx MCS", true}, {"tx MCS", true}, {"file"}};
    for (const ReportedLink& link : links)
        for (int band = 0; band < ALG_BANDS; ++band) {
            const Values values = link.values();
            table.rows.push_back(
                {band == 0 ? snapshot.recordId(*link.file, link.record->line) : "",
                 {fmt::format("{} to {}", snapshot.label(link.device), snapshot.label(link.father)),
                  std::to_string(band), values.text("bridgingRssi", band),
                  values.text("bridgingRxRate", band), values.text("bridgingTxRate", band),
                  values.text("bridgingRxMcs", band), values.text("bridgingTxMcs", band),
                  snapshot.meshFile(*link.file).name}});
        }
    return table;
}

/* Marks of the bands in use; a band with the value 0 is not in use. */
template <typename Value>
void addMarks(svg::DotRow& row, const ReportedLink& link, const char* what, bool hollow, Value value)
{
    for (int band = 0; band < ALG_BANDS; ++band) {
        const double number = value(link.values(), band);
        if (number > 0)
            row.marks.push_back({number, svg::shapeOf(static_cast<size_t>(band)), hollow,
                                 fmt::format("band {}: {} {}", band, what, svg::numberText(number))});
    }
}

/* "0:40 1:42 3:36": the values of the bands in use. */
std::string bandNote(const Values& values, const char* field)
{
    std::string text;
    for (int band = 0; band < ALG_BANDS; ++band)
        if (values.number("bridgingRssi", band).value_or(0) > 0)
            text += fmt::format("{}{}:{}", text.empty() ? "" : " ", band, values.text(field, band));
    return text;
}

svg::DotPlot signalPlot(const Snapshot& snapshot, const std::vector<ReportedLink>& links)
{
    svg::DotPlot plot;
    plot.heading = {
        snapshot.id + "-rssi", "Signal strength of the links",
        "RSSI of each link per band, as stored, higher is stronger. A band without a mark is not in use."};
    plot.axis = "RSSI, as stored";
    plot.note = "band:RSSI";
    for (const ReportedLink& link : links) {
        svg::DotRow row;
        row.label = fmt::format("{} to {}", snapshot.label(link.device), snapshot.label(link.father));
        addMarks(row, link, "RSSI", false, [](const Values& values, int band) {
            return values.number("bridgingRssi", band).value_or(0);
        });
        row.note = bandNote(link.values(), "bridgingRssi");
        plot.rows.push_back(std::move(row));
    }
    limitRows(plot);
    return plot;
}

/* Two lines per link: receive and transmit. */
svg::DotPlot ratePlot(const Snapshot& snapshot, const std::vector<ReportedLink>& links)
{
    svg::DotPlot plot;
    plot.heading = {
        snapshot.id + "-rates", "Rates of the links",
        "Receive (filled) and transmit (hollow) rate of each link per band, as stored, and the MCS."};
    plot.axis = "rate, as stored";
    plot.note = "band:MCS";
    for (const ReportedLink& link : links)
        for (const bool transmit : {false, true}) {
            const char* const field = transmit ? "bridgingTxRate" : "bridgingRxRate";
            svg::DotRow row;
            row.label = fmt::format("{}, {}", snapshot.label(link.device), transmit ? "transmit" : "receive");
            addMarks(row, link, transmit ? "tx rate" : "rx rate", transmit,
                     [&](const Values& values, int band) { return values.number(field, band).value_or(0); });
            row.note = bandNote(link.values(), transmit ? "bridgingTxMcs" : "bridgingRxMcs");
            plot.rows.push_back(std::move(row));
        }
    limitRows(plot);
    return plot;
}

void writeSignals(Html& html, const Snapshot& snapshot)
{
    const std::vector<ReportedLink> links = linksOf(snapshot);
    if (links.empty()) {
        writeMissing(html, "No bridging file states a wireless link.");
        return;
    }
    if (const std::string weakest = weakestText(snapshot, links); !weakest.empty())
        html.element("p", {{"class", "answer"}}, "Weakest wireless signal: " + weakest + ".");
    const svg::DotPlot signals = signalPlot(snapshot, links);
    writeFigure(html, signals, bandLegend(signals), linkTable(snapshot, links));
    PageTable values = linkTable(snapshot, links);
    values.caption = "Rates and MCS by band, as stored";
    const svg::DotPlot rates = ratePlot(snapshot, links);
    writeFigure(html, rates, bandLegend(rates), values);
}

/* ---- Delays --------------------------------------------------------------------------------- */

struct DelaySeries {
    std::string label;
    std::string id;
    const KeptFile* file;
    const KeptRecord* record;
    bool present; /* to the present father of the device */

    std::vector<double> samples(bool loaded) const
    {
        const Values values(file->kind->head, record->cells);
        std::vector<double> all;
        for (int i = 0; i < values.count("delayTime"); ++i)
            if (const std::optional<double> sample =
                    loaded ? values.loaded("delayTime", i) : values.number("delayTime", i))
                all.push_back(*sample);
        return all;
    }
};

bool isPresentFather(const Mesh& mesh, Mac device, Mac father)
{
    const size_t index = mesh.find(device);
    return index != SIZE_MAX && !mesh.devices[index].fathers.empty() &&
           mesh.devices[index].fathers[0].value == father;
}

std::vector<DelaySeries> delaysOf(const Snapshot& snapshot)
{
    std::vector<DelaySeries> all;
    for (const KeptFile* file : snapshot.filesOf("time-delay", false)) {
        const std::optional<Mac> owner = snapshot.meshFile(*file).owner;
        const std::string from = owner ? snapshot.label(*owner) : snapshot.meshFile(*file).name;
        for (const KeptRecord& record : file->kept) {
            const Mac father = Values(file->kind->head, record.cells).mac("fatherMAC");
            all.push_back({fmt::format("{} to {}", from, father == noMac ? "\u2013" : snapshot.label(father)),
                           snapshot.recordId(*file, record.line), file, &record,
                           owner && isPresentFather(snapshot.mesh, *owner, father)});
        }
    }
    return all;
}

svg::DotPlot delayPlot(const Snapshot& snapshot, const std::vector<DelaySeries>& delays, bool loaded)
{
    const std::string view = loaded ? "as loaded" : "as stored";
    svg::DotPlot plot;
    plot.heading = {
        fmt::format("{}-delays-{}", snapshot.id, loaded ? "loaded" : "stored"), "Delays, " + view,
        "The delay samples of each device to each father: a mark per sample, a line at the median, a box "
        "from the lower to the upper quartile. Bold: the present father."};
    plot.axis = "delay, " + view;
    plot.note = "median (quartiles)";
    for (const DelaySeries& one : delays) {
        svg::DotRow row;
        row.label = one.label;
        row.strong = one.present;
        row.samples = true;
        const std::vector<double> samples = one.samples(loaded);
        for (const double sample : samples)
            row.marks.push_back({sample, svg::Shape::Circle, false, ""});
        if (!samples.empty()) {
            row.spread = svg::spreadOf(samples);
            row.note = fmt::format("{} ({}\u2013{})", svg::numberText(row.spread->median),
                                   svg::numberText(row.spread->lowerQuartile),
                                   svg::numberText(row.spread->upperQuartile));
        }
        plot.rows.push_back(std::move(row));
    }
    limitRows(plot);
    return plot;
}

PageTable delayTable(const std::vector<DelaySeries>& delays, bool loaded)
{
    PageTable table;
    table.caption = loaded ? "Delays, as loaded" : "Delays, as stored";
    table.columns = {{"link"}, {"median", true}, {"least", true}, {"greatest", true}};
    for (int i = 0; i < ALG_DELAY_SAMPLES; ++i)
        table.columns.push_back({fmt::format("sample {}", i), true});
    for (const DelaySeries& one : delays) {
        const std::vector<double> samples = one.samples(loaded);
        PageRow row = {loaded ? "" : one.id, {one.label}};
        if (samples.empty()) {
            row.cells.resize(4);
        } else {
            const svg::Spread spread = svg::spreadOf(samples);
            for (const double number : {spread.median, spread.least, spread.greatest})
                row.cells.emplace_back(std::optional<double>(number));
        }
        const Values values(one.file->kind->head, one.record->cells);
        for (int i = 0; i < ALG_DELAY_SAMPLES; ++i)
            row.cells.emplace_back(loaded ? values.loaded("delayTime", i) : values.number("delayTime", i));
        table.rows.push_back(std::move(row));
    }
    return table;
}

void writeDelays(Html& html, const Snapshot& snapshot)
{
    const std::vector<DelaySeries> delays = delaysOf(snapshot);
    if (delays.empty()) {
        html.element("h4", "Delays");
        writeMissing(html, "No file states delays.");
        return;
    }
    const bool differ = std::any_of(delays.begin(), delays.end(), [](const DelaySeries& one) {
        return one.samples(false) != one.samples(true);
    });
    if (!differ) {
        writeFigure(html, delayPlot(snapshot, delays, false), {}, delayTable(delays, false));
        html.element("p", {{"class", "desc"}}, "The reader changes none of these delays.");
        return;
    }
    for (const bool loaded : {false, true})
        writeFigure(html, delayPlot(snapshot, delays, loaded), {}, delayTable(delays, loaded),
                    loaded ? "loaded" : "stored");
}

/* ---- Air in use -------------------------------------------------------------------------------- */

/* What a device states about its air, from the file that is believed. */
struct AirRecord {
    Mac device;
    const KeptFile* file;
    const KeptRecord* record;
};

/* Null if there are too many records before it to keep it. */
const KeptRecord* recordAt(const KeptFile& file, size_t line)
{
    const auto at = std::lower_bound(file.kept.begin(), file.kept.end(), line,
                                     [](const KeptRecord& one, size_t wanted) { return one.line < wanted; });
    return at != file.kept.end() && at->line == line ? &*at : nullptr;
}

std::vector<AirRecord> airOf(const Snapshot& snapshot)
{
    std::vector<AirRecord> all;
    for (const MeshDevice& device : snapshot.mesh.devices) {
        if (!device.metrics)
            continue;
        const Place& place = device.metrics->from.place;
        for (const KeptFile& file : snapshot.files)
            if (file.index == place.file)
                if (const KeptRecord* record = recordAt(file, place.line))
                    all.push_back({device.mac, &file, record});
    }
    return all;
}

constexpr const char* utilizations[] = {"plcUtilization", "ethernetUtilization"};

svg::HeatMap airMap(const Snapshot& snapshot, const std::vector<AirRecord>& records, bool loaded)
{
    svg::HeatMap map;
    map.heading = {
        fmt::format("{}-air-{}", snapshot.id, loaded ? "loaded" : "stored"),
        loaded ? "Utilization, as loaded (95 minus what is in use)" : "Air in use, as stored",
        loaded ? "Utilization of each device per band and cable, as the readers return it: 95 minus the "
                 "stored value, at least 1. Lower means busier."
               : "Air in use of each device per band, and the use of its cables. Higher means busier."};
    for (int band = 0; band < ALG_BANDS; ++band)
        map.columns.push_back(fmt::format("band {}", band));
    map.columns.insert(map.columns.end(), {"PLC", "Ethernet"});
    map.greatest = 100;
    for (const AirRecord& one : records) {
        const Values values(one.file->kind->head, one.record->cells);
        svg::HeatMap::Row row = {snapshot.label(one.device), {}};
        for (int band = 0; band < ALG_BANDS; ++band)
            row.values.push_back(loaded ? values.loaded("wirelessChannelUtilization", band)
                                        : values.number("wirelessChannelUtilization", band));
        for (const char* field : utilizations)
            row.values.push_back(loaded ? values.loaded(field) : values.number(field));
        map.rows.push_back(std::move(row));
    }
    limitRows(map);
    return map;
}

PageTable tableOf(const svg::HeatMap& map)
{
    PageTable table;
    table.caption = map.heading.title;
    table.columns.push_back({"device"});
    for (const std::string& name : map.columns)
        table.columns.push_back({name, true});
    for (const svg::HeatMap::Row& from : map.rows) {
        PageRow row = {"", {from.label}};
        for (const std::optional<double>& value : from.values)
            row.cells.emplace_back(value);
        table.rows.push_back(std::move(row));
    }
    return table;
}

void writeAir(Html& html, const Snapshot& snapshot)
{
    html.element("h4", "Air and cables");
    const std::vector<AirRecord> records = airOf(snapshot);
    if (records.empty()) {
        writeMissing(html, "No ap-node or ap-all file states the air in use.");
        return;
    }
    for (const bool loaded : {false, true}) {
        const svg::HeatMap map = airMap(snapshot, records, loaded);
        writeFigure(html, map, {}, tableOf(map), loaded ? "loaded" : "stored");
    }
}

} // namespace

void writeLinks(Html& html, const Snapshot& snapshot)
{
    const Html::Element section = sectionOf(html, snapshot, "links", "Links");
    writeSignals(html, snapshot);
    writeDelays(html, snapshot);
    writeAir(html, snapshot);
}

} // namespace algdata
