/* SPDX-License-Identifier: Apache-2.0 */
#include "mesh/mesh.h"

#include <algorithm>
#include <tuple>

#include <fmt/format.h>

#include "mesh/meshReader.h"

namespace algdata
{

const char* wordFor(Backhaul::Medium medium)
{
    constexpr const char* words[] = {"", "wireless", "ethernet", "plc"}; /* by medium */
    return words[medium];
}

size_t bestBand(const Bands& bands)
{
    return static_cast<size_t>(std::max_element(bands.begin(), bands.end()) - bands.begin());
}

Claims presentOf(const Claims& claims)
{
    Claims present;
    for (const Claim& claim : claims)
        if (!claim.past)
            present.push_back(claim);
    return present;
}

bool disagree(const Claims& claims)
{
    const Claims present = presentOf(claims);
    return std::any_of(present.begin(), present.end(),
                       [&](const Claim& claim) { return claim.value != present[0].value; });
}

/* ---- Reading --------------------------------------------------------------- */

void Mesh::add(const Source& source, const Kind& kind, std::optional<Mac> owner)
{
    MeshReader(*this, source, kind, owner).read();
}

MeshDevice& Mesh::device(Mac mac)
{
    const auto [at, added] = indexes.try_emplace(mac, devices.size());
    if (added)
        devices.emplace_back().mac = mac;
    return devices[at->second];
}

/* Remembers the second spelling of a MAC, but not all its places. */
void Mesh::spell(Mac mac, Token text, Place place)
{
    const auto [at, added] = firstSpellings.try_emplace(mac, FirstSpelling{std::string(text), place, false});
    FirstSpelling& known = at->second;
    if (added || known.differs || known.text == text)
        return;
    known.differs = true;
    spellings.push_back({mac, known.text, std::string(text), known.place, place});
}

size_t Mesh::find(Mac mac) const
{
    const auto at = indexes.find(mac);
    return at == indexes.end() ? SIZE_MAX : at->second;
}

std::string Mesh::nameOf(Mac mac) const
{
    const auto at = names.find(mac);
    return at == names.end() ? "" : at->second;
}

std::string Mesh::text(const Place& place) const
{
    return fmt::format("{}:{}", files[place.file].name, place.line);
}

bool Mesh::hasRoster() const
{
    return std::any_of(files.begin(), files.end(), [](const MeshFile& file) {
        return rosterOf(file) != rosterKinds.size() && !file.past && file.records != 0;
    });
}

size_t rosterOf(const MeshFile& file)
{
    const auto* const at = std::find_if(rosterKinds.begin(), rosterKinds.end(), [&](const char* kind) {
        return formats::sameText(kind, file.kind->name);
    });
    return static_cast<size_t>(at - rosterKinds.begin());
}

/* ---- The present --------------------------------------------------------------- */

void Mesh::settle()
{
    std::sort(devices.begin(), devices.end(),
              [](const MeshDevice& a, const MeshDevice& b) { return a.mac < b.mac; });
    for (size_t i = 0; i < devices.size(); ++i)
        indexes[devices[i].mac] = i;
    chooseFathers();
    markCycles();
    chooseBackhauls();
    countStations();
    buildTree();
}

void Mesh::chooseFathers()
{
    const auto order = [](const Claim& a, const Claim& b) {
        return std::tie(a.past, a.origin, a.place.file, a.place.line) <
               std::tie(b.past, b.origin, b.place.file, b.place.line);
    };
    for (MeshDevice& device : devices) {
        std::sort(device.fathers.begin(), device.fathers.end(), order);
        std::sort(device.ranks.begin(), device.ranks.end(), order);
        if (device.fathers.empty())
            continue;
        const Mac father = device.fathers[0].value;
        device.father = father == noMac ? SIZE_MAX : find(father);
        device.attachment = father == noMac             ? Attachment::Root
                            : device.father != SIZE_MAX ? Attachment::Child
                                                        : Attachment::UnknownFather;
    }
}

/* Follows the fathers of each device until it meets a device that was visited before. */
void Mesh::markCycles()
{
    std::vector<size_t> visit(devices.size(), 0); /* the number of the walk that visited the device */
    for (size_t start = 0; start < devices.size(); ++start) {
        size_t at = start;
        while (at != SIZE_MAX && visit[at] == 0) {
            visit[at] = start + 1;
            at = devices[at].father;
        }
        if (at == SIZE_MAX || visit[at] != start + 1)
            continue;
        while (devices[at].attachment != Attachment::Cycle) {
            devices[at].attachment = Attachment::Cycle;
            at = devices[at].father;
        }
    }
}

void Mesh::countStations()
{
    const std::vector<StationSample>& samples = stations.empty() ? pastStations : stations;
    std::unordered_map<Mac, std::vector<Mac>> aps; /* of each station; usually one */
    for (const StationSample& sample : samples) {
        std::vector<Mac>& known = aps[sample.station];
        if (&samples == &pastStations)
            known.clear(); /* the newest sample is the last one */
        if (std::find(known.begin(), known.end(), sample.ap) == known.end())
            known.push_back(sample.ap);
    }
    for (const auto& [station, all] : aps)
        for (const Mac ap : all)
            if (find(ap) != SIZE_MAX)
                ++devices[find(ap)].stations;
}

/* ---- Links -------------------------------------------------------------------- */

namespace
{

Backhaul wireless(const Bands& rssi, const Bands& rxRate, const Bands& txRate, bool past)
{
    const Bands& strongest = largest(rxRate) != 0 ? rxRate : largest(txRate) != 0 ? txRate : rssi;
    const size_t band = bestBand(strongest);
    return {Backhaul::Wireless, static_cast<uint32_t>(band), rssi[band], rxRate[band], txRate[band], past};
}

Backhaul wireless(const LinkReport& report)
{
    return wireless(report.rssi, report.rxRate, report.txRate, report.past);
}

Backhaul wired(Backhaul::Medium medium, uint32_t rate, const Metrics& metrics)
{
    return {medium, 0, 0, rate, rate, metrics.from.past};
}

bool hasValues(const LinkReport& report)
{
    return largest(report.rssi) != 0 || largest(report.rxRate) != 0 || largest(report.txRate) != 0;
}

/*
 * A cable to the father comes first. A device on a wireless link can have a cable or a power line to
 * another device, so their rates count last.
 */
Backhaul backhaulOf(bool cable, const Metrics& metrics, const LinkReport* report)
{
    if (cable)
        return wired(Backhaul::Ethernet, metrics.ethernetRate, metrics);
    if (report != nullptr && !report->past && hasValues(*report))
        return wireless(*report);
    if (largest(metrics.rxRate) != 0 || largest(metrics.txRate) != 0)
        return wireless(report == nullptr ? Bands{} : report->rssi, metrics.rxRate, metrics.txRate,
                        metrics.from.past);
    if (metrics.plcRate != 0)
        return wired(Backhaul::PowerLine, metrics.plcRate, metrics);
    if (metrics.ethernetRate != 0)
        return wired(Backhaul::Ethernet, metrics.ethernetRate, metrics);
    if (report != nullptr && hasValues(*report))
        return wireless(*report);
    return {};
}

} // namespace

/* For each device the report about the link to its father: a present one, or else the newest. */
std::vector<const LinkReport*> Mesh::reportsToFathers() const
{
    std::vector<const LinkReport*> reports(devices.size());
    for (const LinkReport& link : links) {
        const size_t device = find(link.device);
        const size_t father = device == SIZE_MAX ? SIZE_MAX : devices[device].father;
        if (father == SIZE_MAX || devices[father].mac != link.father)
            continue;
        const bool newer = reports[device] == nullptr || reports[device]->past || !link.past;
        if (newer)
            reports[device] = &link;
    }
    return reports;
}

void Mesh::chooseBackhauls()
{
    const std::vector<const LinkReport*> reports = reportsToFathers();
    for (size_t i = 0; i < devices.size(); ++i) {
        MeshDevice& device = devices[i];
        if (device.father == SIZE_MAX)
            continue;
        const Mac father = devices[device.father].mac;
        const auto isCable = [&](const Claim& claim) {
            return claim.origin == Origin::ApRank && claim.value == father && !claim.past;
        };
        const bool cable = std::any_of(device.fathers.begin(), device.fathers.end(), isCable);
        device.backhaul = backhaulOf(cable, device.metrics.value_or(Metrics{}), reports[i]);
    }
}

/* ---- The tree ------------------------------------------------------------------- */

void Mesh::buildTree()
{
    std::vector<std::vector<size_t>> children(devices.size());
    for (size_t i = 0; i < devices.size(); ++i)
        if (devices[i].father != SIZE_MAX)
            children[devices[i].father].push_back(i);

    std::vector<bool> drawn(devices.size());
    std::vector<TreeNode> waiting;
    const auto draw = [&](size_t top) {
        waiting.push_back({top, 0, true});
        while (!waiting.empty()) {
            const TreeNode node = waiting.back();
            waiting.pop_back();
            drawn[node.device] = true;
            tree.push_back(node);
            const size_t below = waiting.size();
            const std::vector<size_t>& sons = children[node.device];
            for (auto child = sons.rbegin(); child != sons.rend(); ++child)
                if (!drawn[*child]) /* it can only be drawn already in a cycle */
                    waiting.push_back({*child, node.depth + 1, waiting.size() == below});
        }
    };
    for (const Attachment top :
         {Attachment::Root, Attachment::UnknownFather, Attachment::NoFather, Attachment::Cycle})
        for (size_t i = 0; i < devices.size(); ++i)
            if (devices[i].attachment == top && !drawn[i])
                draw(i);
}

std::string Mesh::pathTo(size_t device) const
{
    std::vector<size_t> above;
    for (size_t at = device; at != SIZE_MAX; at = devices[at].father) {
        if (std::find(above.begin(), above.end(), at) != above.end())
            break;
        if (above.size() == maxPath)
            return ".../" + pathText(above);
        above.push_back(at);
    }
    return pathText(above);
}

std::string Mesh::pathText(const std::vector<size_t>& above) const
{
    std::string text;
    for (auto at = above.rbegin(); at != above.rend(); ++at)
        text += (text.empty() ? "" : "/") + macText(devices[*at].mac);
    return text;
}

} // namespace algdata
