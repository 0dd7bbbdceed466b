/* SPDX-License-Identifier: Apache-2.0 */
/* The PAT parameters of each device beside the default thresholds. */
#include <algorithm>

#include <fmt/format.h>

#include "dataInterface.h"
#include "report/figure.h"
#include "report/sections.h"

namespace algdata
{

namespace
{

/* A configuration of a device: its parameters as the module converts them. */
struct PatLine {
    std::string device, id;
    int band, width, mcs;
    int32_t threshold;
    std::optional<double> b, c;
    std::string storedB, storedC;
};

std::vector<PatLine> linesOf(const Snapshot& snapshot, size_t& total)
{
    std::vector<PatLine> lines;
    for (const KeptFile* file : snapshot.filesOf("pat-v2", false))
        for (const KeptRecord& record : file->kept) {
            const Mac mac = Values(file->kind->head, record.cells).mac("deviceMac");
            total += record.entries.size();
            for (const std::vector<std::string>& entry : record.entries) {
                const Values values(file->kind->entry, entry);
                const auto order = [&](const char* name) {
                    return static_cast<int>(values.number(name).value_or(0));
                };
                PatLine line = {mac == noMac ? "" : snapshot.label(mac),
                                "",
                                order("bandOrder"),
                                order("channelWidthOrder"),
                                order("mcsOrder"),
                                0,
                                std::nullopt,
                                std::nullopt,
                                values.text("paraB"),
                                values.text("paraC")};
                line.threshold = getPeekThr(static_cast<uint8_t>(line.band), static_cast<uint8_t>(line.width),
                                            static_cast<uint8_t>(line.mcs));
                if (const std::optional<double> b = values.number("paraB"))
                    line.b = *b * 0.0008 + 0.1;
                if (const std::optional<double> c = values.number("paraC"))
                    line.c = *c * 0.00064 - 50;
                if (lines.size() < maxRows)
                    lines.push_back(std::move(line));
            }
        }
    return lines;
}

struct Parameter {
    const char* name;
    const char* title;
    const char* description;
    std::optional<double> (*of)(const PatLine&);
};

/* Damaged orders have no place in a chart. */
bool isConfiguration(const PatLine& line)
{
    return line.band < ALG_BANDS && line.width < ALG_CHANNEL_WIDTHS && line.mcs < ALG_MCS_ORDERS;
}

/* "1/3/0": band, width and MCS order. */
std::string configurationOf(const PatLine& line)
{
    return fmt::format("{}/{}/{}", line.band, line.width, line.mcs);
}

/* The index of a name in a list, which gets the name if it lacks it. */
size_t indexIn(std::vector<std::string>& names, const std::string& name)
{
    const auto at = std::find(names.begin(), names.end(), name);
    if (at != names.end())
        return static_cast<size_t>(at - names.begin());
    names.push_back(name);
    return names.size() - 1;
}

/* A line per device over the configurations. The thresholds are the same for every device. */
svg::LineChart chartOf(const Snapshot& snapshot, const std::vector<PatLine>& lines,
                       const Parameter& parameter)
{
    svg::LineChart chart;
    chart.heading = {fmt::format("{}-pat-{}", snapshot.id, parameter.name), parameter.title,
                     parameter.description};
    chart.axis = parameter.name;
    chart.xAxis = "band / width / MCS order";
    const bool shared = std::string_view(parameter.name) == "threshold";
    std::vector<std::string> devices;
    std::vector<std::pair<int, int>> widths; /* band and width of each configuration */
    for (const PatLine& line : lines) {
        if (!isConfiguration(line))
            continue;
        const size_t place = indexIn(chart.names, configurationOf(line));
        if (place == widths.size()) {
            widths.emplace_back(line.band, line.width);
            if (place != 0 && widths[place - 1] != widths[place])
                chart.starts.push_back(place);
        }
        const size_t device = indexIn(devices, shared ? "default" : line.device);
        if (device == chart.lines.size())
            chart.lines.push_back({devices[device], {}});
        std::vector<std::optional<double>>& values = chart.lines[device].values;
        values.resize(std::max(values.size(), place + 1));
        values[place] = parameter.of(line);
    }
    for (svg::Line& line : chart.lines)
        line.values.resize(chart.names.size());
    return chart;
}

void writeChart(Html& html, const Snapshot& snapshot, const std::vector<PatLine>& lines,
                const Parameter& parameter)
{
    svg::LineChart chart = chartOf(snapshot, lines, parameter);
    if (chart.lines.empty())
        return;
    const PageTable table = tableOf(chart, "device");
    limitLines(chart);
    writeFigure(html, chart, {}, table);
}

} // namespace

void writePat(Html& html, const Snapshot& snapshot)
{
    const Html::Element section = sectionOf(html, snapshot, "pat", "PAT parameters");
    size_t total = 0;
    const std::vector<PatLine> lines = linesOf(snapshot, total);
    if (lines.empty()) {
        writeMissing(html, "No PAT file of version 2 has entries.");
        return;
    }
    PageTable table;
    table.caption = "PAT entries beside the default thresholds";
    table.columns = {{"device"},
                     {"band", true},
                     {"width", true},
                     {"MCS order", true},
                     {"default threshold", true},
                     {"paraB, as stored", true},
                     {"b", true},
                     {"paraC, as stored", true},
                     {"c", true}};
    table.total = total;
    for (const PatLine& line : lines)
        table.rows.push_back(
            {"",
             {line.device, std::to_string(line.band), std::to_string(line.width), std::to_string(line.mcs),
              std::to_string(line.threshold), line.storedB, line.b ? fmt::format("{:.4f}", *line.b) : "",
              line.storedC, line.c ? fmt::format("{:.4f}", *line.c) : ""}});
    static const Parameter parameters[] = {
        {"threshold", "Default thresholds",
         "The module's threshold of each configuration, the same for every device.",
         [](const PatLine& line) { return std::optional<double>(line.threshold); }},
        {"b", "PAT parameter b", "b of each entry, as the module converts it. A line per device and width.",
         [](const PatLine& line) { return line.b; }},
        {"c", "PAT parameter c", "c of each entry, as the module converts it. A line per device and width.",
         [](const PatLine& line) { return line.c; }},
    };
    for (const Parameter& parameter : parameters)
        writeChart(html, snapshot, lines, parameter);
    const Html::Element details = html.in("details", {{"class", "more"}});
    html.element("summary", "Every entry");
    writeTable(html, table);
}

} // namespace algdata
