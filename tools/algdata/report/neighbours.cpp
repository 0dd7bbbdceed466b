/* SPDX-License-Identifier: Apache-2.0 */
/* The sightings of neighbours. */
#include <algorithm>
#include <map>
#include <set>

#include <fmt/format.h>

#include "report/figure.h"
#include "report/sections.h"

namespace algdata
{

namespace
{

/* What was seen on a channel. */
struct Channel {
    size_t sightings = 0;
    std::set<std::string> neighbours;
    std::optional<double> strongest, strongestLoaded;
};

using Channels = std::map<std::pair<double, double>, Channel>; /* by band and channel */

std::vector<const KeptFile*> filesOf(const Snapshot& snapshot)
{
    std::vector<const KeptFile*> files = snapshot.filesOf("scanning", false);
    return files.empty() ? snapshot.filesOf("scanning", true) : files;
}

Channels channelsOf(const std::vector<const KeptFile*>& files)
{
    Channels channels;
    for (const KeptFile* file : files)
        for (const KeptRecord& record : file->kept) {
            const Values values(file->kind->head, record.cells);
            const std::optional<double> band = values.number("band");
            const std::optional<double> number = values.number("channel");
            if (!band || !number)
                continue;
            Channel& channel = channels[{*band, *number}];
            ++channel.sightings;
            channel.neighbours.insert(values.text("neighbourMAC"));
            channel.strongest = std::max(channel.strongest, values.number("rssi"));
            channel.strongestLoaded = std::max(channel.strongestLoaded, values.loaded("rssi"));
        }
    return channels;
}

void writeChannels(Html& html, const Snapshot& snapshot, const Channels& channels)
{
    svg::DotPlot plot;
    plot.heading = {snapshot.id + "-channels", "Sightings per band and channel",
                    "How often neighbours were seen on each channel, and how many different ones."};
    plot.axis = "sightings";
    plot.note = "neighbours";
    PageTable table;
    table.caption = "Sightings per band and channel";
    table.columns = {{"channel"},
                     {"band", true},
                     {"sightings", true},
                     {"neighbours", true},
                     {"strongest RSSI, as stored", true},
                     {"as loaded", true}};
    std::vector<svg::LegendEntry> legend;
    std::set<size_t> bands;
    for (const auto& [place, channel] : channels) {
        const auto band = static_cast<size_t>(place.first);
        const std::string name = fmt::format("band {}, channel {}", band, svg::numberText(place.second));
        const auto sightings = static_cast<double>(channel.sightings);
        table.rows.push_back({"",
                              {svg::numberText(place.second), std::to_string(band),
                               std::to_string(channel.sightings), std::to_string(channel.neighbours.size()),
                               PageCell(channel.strongest), PageCell(channel.strongestLoaded)}});
        plot.rows.push_back(
            {name,
             {{sightings, svg::shapeOf(band), false, name + ": " + svg::numberText(sightings)}},
             std::nullopt,
             std::to_string(channel.neighbours.size())});
        if (bands.insert(band).second)
            legend.push_back({fmt::format("band {}", band), svg::shapeOf(band), false, band});
    }
    limitRows(plot);
    writeFigure(html, plot, legend, table);
}

void writeSightings(Html& html, const Snapshot& snapshot, const std::vector<const KeptFile*>& files)
{
    PageTable table;
    table.caption = "Sightings";
    table.columns = {
        {"neighbour"},      {"seen by"}, {"band", true}, {"channel", true}, {"RSSI, as stored", true},
        {"as loaded", true}};
    for (const KeptFile* file : files) {
        table.total += file->records;
        for (const KeptRecord& record : file->kept) {
            const Values values(file->kind->head, record.cells);
            const Mac mac = values.mac("deviceMAC");
            table.rows.push_back(
                {snapshot.recordId(*file, record.line),
                 {values.text("neighbourMAC"), mac == noMac ? values.text("deviceMAC") : snapshot.label(mac),
                  values.text("band"), values.text("channel"), values.text("rssi"),
                  PageCell(values.loaded("rssi"))}});
        }
    }
    const Html::Element details = html.in("details", {{"class", "more"}});
    html.element("summary", "Every sighting");
    writeTable(html, table);
}

} // namespace

void writeNeighbours(Html& html, const Snapshot& snapshot)
{
    const Html::Element section = sectionOf(html, snapshot, "neighbours", "Neighbours");
    const std::vector<const KeptFile*> files = filesOf(snapshot);
    const Channels channels = channelsOf(files);
    if (channels.empty()) {
        writeMissing(html, "No scanning file has sightings.");
        return;
    }
    writeChannels(html, snapshot, channels);
    writeSightings(html, snapshot, files);
}

} // namespace algdata
