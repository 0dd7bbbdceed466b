/* SPDX-License-Identifier: Apache-2.0 */
/* The stations, and the APs that they could roam to. */
#include <algorithm>

#include <fmt/format.h>

#include "report/decision.h"
#include "report/figure.h"
#include "report/sections.h"

namespace algdata
{

namespace
{

struct Client {
    const KeptFile* file;
    const KeptRecord* record;

    Values values() const { return {file->kind->head, record->cells}; }
};

std::vector<Client> clientsOf(const Snapshot& snapshot)
{
    std::vector<Client> clients;
    for (const KeptFile* file : snapshot.filesOf("station", false))
        for (const KeptRecord& record : file->kept)
            clients.push_back({file, &record});
    return clients;
}

/* The name of the device or, if it is no MAC, the text itself. */
std::string labelOf(const Snapshot& snapshot, const Values& values, const char* field)
{
    const Mac mac = values.mac(field);
    return mac == noMac ? values.text(field) : snapshot.label(mac);
}

PageCell linkTo(const Snapshot& snapshot, const Values& values, const char* field)
{
    const Mac mac = values.mac(field);
    const bool known = snapshot.mesh.find(mac) != SIZE_MAX;
    return {labelOf(snapshot, values, field), known ? "#" + snapshot.deviceId(mac) : ""};
}

PageTable clientTable(const Snapshot& snapshot, const std::vector<Client>& clients)
{
    static constexpr std::array<std::pair<const char*, const char*>, 11> numbers = {
        {{"connectBand", "band"},
         {"rssi", "RSSI"},
         {"rxRate", "rx rate"},
         {"txRate", "tx rate"},
         {"rxPackageCount", "rx packets"},
         {"txPackageCount", "tx packets"},
         {"wifimode", "Wi-Fi mode"},
         {"bandwidth", "width"},
         {"mcslevel", "MCS"},
         {"mimo", "streams"},
         {"noiselevel", "noise"}}};
    PageTable table;
    table.caption = "Clients, as stored";
    table.columns = {{"client"}, {"AP"}};
    for (const auto& [field, name] : numbers)
        table.columns.push_back({name, true});
    table.columns.push_back({"file"});
    for (const Client& client : clients) {
        const Values values = client.values();
        PageRow row = {snapshot.recordId(*client.file, client.record->line),
                       {labelOf(snapshot, values, "deviceMac"), linkTo(snapshot, values, "apMac")}};
        for (const auto& [field, name] : numbers)
            row.cells.emplace_back(values.text(field));
        row.cells.emplace_back(snapshot.meshFile(*client.file).name);
        table.rows.push_back(std::move(row));
    }
    for (const KeptFile* file : snapshot.filesOf("station", false))
        table.total += file->records;
    return table;
}

void writePlot(Html& html, const Snapshot& snapshot, const std::vector<Client>& clients)
{
    svg::Scatter plot;
    plot.heading = {snapshot.id + "-clientplot", "Signal strength and rate of the clients",
                    "A mark per client: its RSSI and its receive rate, as stored. The shape is the band."};
    plot.xAxis = "RSSI, as stored";
    plot.yAxis = "receive rate, as stored";
    PageTable table;
    table.caption = "Signal strength and rate of the clients, as stored";
    table.columns = {{"client"}, {"band", true}, {"RSSI", true}, {"rx rate", true}};
    std::vector<svg::LegendEntry> legend;
    std::array<bool, svg::shapeCount> used = {};
    for (const Client& client : clients) {
        const Values values = client.values();
        const std::optional<double> rssi = values.number("rssi");
        const std::optional<double> rate = values.number("rxRate");
        const std::string name = labelOf(snapshot, values, "deviceMac");
        const auto band = static_cast<size_t>(values.number("connectBand").value_or(0));
        table.rows.push_back({"", {name, values.text("connectBand"), PageCell(rssi), PageCell(rate)}});
        if (!rssi || !rate || plot.points.size() >= maxRows)
            continue;
        used[band % svg::shapeCount] = true;
        plot.points.push_back({*rssi, *rate, band,
                               fmt::format("{}: RSSI {}, rx rate {}, band {}", name, svg::numberText(*rssi),
                                           svg::numberText(*rate), band)});
    }
    for (size_t band = 0; band < used.size(); ++band)
        if (used[band])
            legend.push_back({fmt::format("band {}", band), svg::shapeOf(band), false, band});
    if (!plot.points.empty())
        writeFigure(html, plot, legend, table);
}

/* A file does not say whose candidates it has: only its name can. */
void writeCandidateAps(Html& html, const Snapshot& snapshot)
{
    for (const KeptFile* file : snapshot.filesOf("candidate", false)) {
        const std::vector<Candidate> candidates = candidatesOf(*file);
        const MeshFile& source = snapshot.meshFile(*file);
        PageTable table;
        table.caption = fmt::format("Candidate APs{} in {}, in the order of the expected throughput",
                                    source.owner ? " of " + snapshot.label(*source.owner) : "", source.name);
        table.columns = {{"AP"},          {"band", true},       {"can roam", true},
                         {"RSSI", true},  {"throughput", true}, {"Wi-Fi mode", true},
                         {"width", true}, {"MCS", true},        {"streams", true}};
        for (const Candidate& candidate : candidates) {
            const Values values = candidate.values();
            PageRow row = {snapshot.recordId(*file, candidate.record->line),
                           {linkTo(snapshot, values, "apMac")}};
            for (const char* field : {"connectBand", "roamingAvailable", "rssi", "throughput", "wifimode",
                                      "bandwidth", "mcslevel", "mimo"})
                row.cells.emplace_back(values.text(field));
            table.rows.push_back(std::move(row));
        }
        table.total = std::max(table.rows.size(), file->records > maxRows ? file->records : 0);
        writeTable(html, table);
    }
}

} // namespace

void writeClients(Html& html, const Snapshot& snapshot)
{
    const Html::Element section = sectionOf(html, snapshot, "clients", "Clients");
    const std::vector<Client> clients = clientsOf(snapshot);
    if (clients.empty()) {
        writeMissing(html, "No station file of the present has records.");
    } else {
        writeTable(html, clientTable(snapshot, clients));
        writePlot(html, snapshot, clients);
    }
    writeCandidateAps(html, snapshot);
}

} // namespace algdata
