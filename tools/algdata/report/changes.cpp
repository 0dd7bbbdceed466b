/* SPDX-License-Identifier: Apache-2.0 */
/* What changes from snapshot to snapshot. */
#include <algorithm>
#include <map>
#include <set>

#include <fmt/format.h>

#include "report/decision.h"
#include "report/figure.h"
#include "report/sections.h"

namespace algdata
{

namespace
{

const MeshDevice* deviceOf(const Snapshot& snapshot, Mac mac)
{
    const size_t index = snapshot.mesh.find(mac);
    return index == SIZE_MAX ? nullptr : &snapshot.mesh.devices[index];
}

/* ---- What differs ------------------------------------------------------------------------- */

struct Measure {
    const char* name;
    std::optional<double> (*of)(const Snapshot&, const MeshDevice&);
};

std::optional<double> rankOf(const Snapshot& /*snapshot*/, const MeshDevice& device)
{
    return device.ranks.empty() ? std::nullopt
                                : std::optional<double>(static_cast<double>(device.ranks[0].value));
}

std::optional<double> rssiOf(const Snapshot& /*snapshot*/, const MeshDevice& device)
{
    return device.backhaul.rssi == 0 ? std::nullopt : std::optional<double>(device.backhaul.rssi);
}

std::optional<double> throughputOf(const Snapshot& /*snapshot*/, const MeshDevice& device)
{
    return device.throughput ? std::optional<double>(static_cast<double>(device.throughput->value))
                             : std::nullopt;
}

/* The median of the samples to the present father. */
std::optional<double> delayOf(const Snapshot& snapshot, const MeshDevice& device)
{
    if (device.fathers.empty())
        return std::nullopt;
    for (const KeptFile* file : snapshot.filesOf("time-delay", false)) {
        if (snapshot.meshFile(*file).owner != device.mac)
            continue;
        for (const KeptRecord& record : file->kept) {
            const Values values(file->kind->head, record.cells);
            if (values.mac("fatherMAC") != device.fathers[0].value)
                continue;
            std::vector<double> samples;
            for (int i = 0; i < values.count("delayTime"); ++i)
                if (const std::optional<double> sample = values.number("delayTime", i))
                    samples.push_back(*sample);
            if (!samples.empty())
                return svg::spreadOf(samples).median;
        }
    }
    return std::nullopt;
}

constexpr Measure measures[] = {{"rank", rankOf},
                                {"RSSI of the backhaul", rssiOf},
                                {"throughput", throughputOf},
                                {"median delay to the father", delayOf}};

std::string fatherText(const Snapshot& snapshot, const MeshDevice& device)
{
    if (device.fathers.empty())
        return "";
    return device.fathers[0].value == noMac ? "none: it is the root"
                                            : snapshot.label(device.fathers[0].value);
}

std::string decisionText(const Snapshot& snapshot)
{
    const std::vector<ReportedDecision> decisions = decisionsOf(snapshot);
    return decisions.empty() ? "" : wordsOf(snapshot, decisions[0]);
}

class Differences
{
  public:
    PageTable between(const Snapshot& before, const Snapshot& after)
    {
        table.caption = fmt::format("From {} to {}", before.name, after.name);
        table.columns = {{"device"}, {"what"}, {"before", false, true}, {"after", false, true}};
        add("decision", "the home", decisionText(before), decisionText(after));
        std::set<Mac> macs;
        for (const Snapshot* one : {&before, &after})
            for (const MeshDevice& device : one->mesh.devices)
                macs.insert(device.mac);
        for (const Mac mac : macs)
            compareFathers(before, after, mac);
        for (const Measure& measure : measures)
            for (const Mac mac : macs)
                compareMeasure(before, after, mac, measure);
        return std::move(table);
    }

  private:
    void add(const char* what, const std::string& device, const std::string& before, const std::string& after)
    {
        if (before != after)
            table.rows.push_back({"", {device, what, before, after}});
    }

    void compareFathers(const Snapshot& before, const Snapshot& after, Mac mac)
    {
        const MeshDevice* old = deviceOf(before, mac);
        const MeshDevice* now = deviceOf(after, mac);
        const std::string name = (now != nullptr ? after : before).label(mac);
        if (old != nullptr && now != nullptr)
            add("father", name, fatherText(before, *old), fatherText(after, *now));
        else
            add("device", name, old == nullptr ? "not listed" : "listed",
                now == nullptr ? "not listed" : "listed");
    }

    void compareMeasure(const Snapshot& before, const Snapshot& after, Mac mac, const Measure& measure)
    {
        const MeshDevice* old = deviceOf(before, mac);
        const MeshDevice* now = deviceOf(after, mac);
        if (old != nullptr && now != nullptr)
            add(measure.name, after.label(mac), PageCell(measure.of(before, *old)).text,
                PageCell(measure.of(after, *now)).text);
    }

    PageTable table;
};

void writeDifferences(Html& html, const ReportedHome& home)
{
    html.element("h3", "What changed");
    for (size_t i = home.snapshots.size(); i-- > 1;) {
        const PageTable table = Differences().between(home.snapshots[i - 1], home.snapshots[i]);
        if (table.rows.empty()) {
            writeMissing(html, table.caption + ": nothing");
            continue;
        }
        if (i + 1 == home.snapshots.size()) {
            writeTable(html, table);
            continue;
        }
        const Html::Element details = html.in("details", {{"class", "more"}});
        html.element("summary", fmt::format("{}: {} changes", table.caption, table.rows.size()));
        writeTable(html, table);
    }
}

/* ---- Lines over time ---------------------------------------------------------------------------- */

/* A line per device. */
void writeLines(Html& html, const ReportedHome& home, const Measure& measure, size_t number)
{
    std::map<Mac, svg::Line> lines;
    for (size_t i = 0; i < home.snapshots.size(); ++i)
        for (const MeshDevice& device : home.snapshots[i].mesh.devices) {
            svg::Line& line = lines[device.mac];
            line.label = home.snapshots[i].label(device.mac);
            line.values.resize(home.snapshots.size());
            line.values[i] = measure.of(home.snapshots[i], device);
        }
    svg::LineChart chart;
    chart.heading = {fmt::format("over-{}", number), fmt::format("Over the snapshots: {}", measure.name),
                     "A line per device. A gap is a snapshot without the value."};
    chart.axis = measure.name;
    chart.xAxis = "snapshot";
    for (const Snapshot& snapshot : home.snapshots)
        chart.names.push_back(snapshot.name);
    for (const auto& [mac, line] : lines)
        if (!svg::segmentsOf(line).empty())
            chart.lines.push_back(line);
    if (chart.lines.empty())
        return;
    const PageTable table = tableOf(chart, "device");
    limitLines(chart);
    writeFigure(html, chart, {}, table);
}

} // namespace

void writeDecisions(Html& html, const ReportedHome& home)
{
    if (home.snapshots.size() < 2)
        return;
    const Html::Element section = html.in("section", {{"id", "snapshots"}, {"class", "short"}});
    html.element("h2", "Snapshots");
    PageTable table;
    table.caption = "Decision of each snapshot, the newest first";
    table.columns = {
        {"snapshot"}, {"decision", false, true}, {"devices", true}, {"errors", true}, {"warnings", true}};
    for (size_t i = home.snapshots.size(); i-- > 0;) {
        const Snapshot& snapshot = home.snapshots[i];
        table.rows.push_back(
            {"",
             {PageCell(snapshot.name, "#" + snapshot.id), decisionText(snapshot),
              std::to_string(snapshot.mesh.devices.size()), std::to_string(snapshot.count(Severity::Error)),
              std::to_string(snapshot.count(Severity::Warning))}});
    }
    writeTable(html, table);
    html.element("a", {{"href", "#changes"}}, "What changed between them, and lines over time");
}

void writeChanges(Html& html, const ReportedHome& home)
{
    if (home.snapshots.size() < 2)
        return;
    const Html::Element section = html.in("section", {{"id", "changes"}});
    html.element("h2", "Over the snapshots");
    writeDifferences(html, home);
    size_t number = 0;
    for (const Measure& measure : measures)
        writeLines(html, home, measure, number++);
}

} // namespace algdata
