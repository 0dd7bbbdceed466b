/* SPDX-License-Identifier: Apache-2.0 */
/* The histories in the files of one snapshot: a value per record, the oldest first. */
#include <algorithm>

#include <fmt/format.h>

#include "report/figure.h"
#include "report/sections.h"

namespace algdata
{

namespace
{

/* What a history of a kind shows. */
struct HistoryOf {
    const char* kind;
    const char* title;
    const char* axis;
    std::vector<const char*> key;
    std::optional<double> (*value)(const Values&);
    const char* description;
};

/* Of the bands in use, the strongest. */
std::optional<double> strongestBand(const Values& values)
{
    std::optional<double> strongest;
    for (int band = 0; band < ALG_BANDS; ++band) {
        const std::optional<double> rssi = values.number("bridgingRssi", band);
        if (rssi && *rssi > 0)
            strongest = std::max(strongest, rssi);
    }
    return strongest;
}

std::optional<double> stationRssi(const Values& values)
{
    return values.number("rssi");
}

std::optional<double> medianDelay(const Values& values)
{
    std::vector<double> samples;
    for (int i = 0; i < values.count("delayTime"); ++i)
        if (const std::optional<double> sample = values.number("delayTime", i))
            samples.push_back(*sample);
    return samples.empty() ? std::nullopt : std::optional<double>(svg::spreadOf(samples).median);
}

const std::vector<HistoryOf>& histories()
{
    static const std::vector<HistoryOf> all = {
        {"bridging",
         "RSSI of the links",
         "RSSI of the strongest band",
         {"deviceMAC", "fatherDeviceMAC"},
         strongestBand,
         "A line per link, its records in the order of the file, the newest last."},
        {"station",
         "RSSI of the clients",
         "RSSI, as stored",
         {"deviceMac"},
         stationRssi,
         "A line per client, its records in the order of the file, the newest last."},
        {"time-delay",
         "Delays",
         "median delay",
         {"fatherMAC"},
         medianDelay,
         "A line per father, its records in the order of the file, the newest last. A record does not say "
         "which device has measured: if several have written to the file, the line goes from one to another."},
    };
    return all;
}

/* Of each key, at most so many values are shown, the newest ones. */
constexpr size_t maxValues = 128;

std::string keyOf(const Snapshot& snapshot, const HistoryOf& history, const Values& values)
{
    std::string text;
    for (const char* field : history.key) {
        const Mac mac = values.mac(field);
        text += (text.empty() ? "" : " to ") + (mac == noMac ? values.text(field) : snapshot.label(mac));
    }
    return text;
}

/* A line per key, with the key's records in the order of the file. */
std::vector<svg::Line> linesOf(const Snapshot& snapshot, const HistoryOf& history, const KeptFile& file)
{
    std::vector<svg::Line> lines;
    for (const KeptRecord& record : file.kept) {
        const Values values(file.kind->head, record.cells);
        if (!history.value(values))
            continue;
        const std::string key = keyOf(snapshot, history, values);
        auto at = std::find_if(lines.begin(), lines.end(),
                               [&](const svg::Line& line) { return line.label == key; });
        if (at == lines.end())
            at = lines.insert(lines.end(), {key, {}});
        at->values.push_back(history.value(values));
    }
    for (svg::Line& line : lines)
        if (line.values.size() > maxValues)
            line.values.erase(line.values.begin(), line.values.end() - static_cast<ptrdiff_t>(maxValues));
    return lines;
}

bool writeHistory(Html& html, const Snapshot& snapshot, const HistoryOf& history, const KeptFile& file)
{
    svg::LineChart chart;
    chart.lines = linesOf(snapshot, history, file);
    size_t longest = 0;
    for (const svg::Line& line : chart.lines)
        longest = std::max(longest, line.values.size());
    if (longest < 2)
        return false;
    chart.heading = {fmt::format("{}-h{}", snapshot.id, file.index + 1),
                     fmt::format("{} in {}", history.title, snapshot.meshFile(file).name),
                     history.description};
    chart.axis = history.axis;
    chart.xAxis = "record";
    for (size_t i = 0; i < longest; ++i)
        chart.names.push_back(std::to_string(i + 1));
    for (svg::Line& line : chart.lines)
        line.values.resize(longest);
    const PageTable table = tableOf(chart, "record");
    limitLines(chart);
    writeFigure(html, chart, {}, table);
    return true;
}

} // namespace

void writeHistories(Html& html, const Snapshot& snapshot)
{
    const Html::Element section = sectionOf(html, snapshot, "histories", "Histories");
    bool any = false;
    for (const HistoryOf& history : histories())
        for (const KeptFile* file : snapshot.filesOf(history.kind, true))
            any = writeHistory(html, snapshot, history, *file) || any;
    if (!any)
        writeMissing(html, "No file has several records of one key.");
}

} // namespace algdata
