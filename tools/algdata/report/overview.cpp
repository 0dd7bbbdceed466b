/* SPDX-License-Identifier: Apache-2.0 */
/* The top of a snapshot: what is decided, what is wrong, and the tree of the mesh. */
#include <ctime>
#include <map>
#include <set>

#include <fmt/format.h>

#include "report/decision.h"
#include "report/figure.h"
#include "report/sections.h"
#include "report/svg/tree.h"
#include "text/wording.h"

namespace algdata
{

namespace
{

/* ---- Facts in words ------------------------------------------------------------------ */

/* The other candidate with the highest predicted throughput. */
std::string runnerUpText(const Snapshot& snapshot, const ReportedDecision& decision)
{
    const KeptFile* scores = candidateFileOf(snapshot, decision.device);
    if (!decision.moves || scores == nullptr)
        return "";
    for (const Candidate& candidate : candidatesOf(*scores))
        if (candidate.mac != decision.to && (!decision.from || candidate.mac != *decision.from))
            return fmt::format("{}, predicted throughput {}", snapshot.label(candidate.mac),
                               svg::numberText(candidate.throughput));
    return "";
}

size_t clientsOf(const Snapshot& snapshot)
{
    std::set<Mac> stations;
    for (const StationSample& sample : snapshot.mesh.stations)
        stations.insert(sample.station);
    return stations.size();
}

void writeFact(Html& html, const char* name, const std::string& value, const std::string& href = "")
{
    if (value.empty())
        return;
    const Html::Element fact = html.in("div");
    html.element("dt", name);
    const Html::Element text = html.in("dd");
    if (href.empty())
        html.text(value);
    else
        html.element("a", {{"href", href}}, value);
}

void writeFacts(Html& html, const Snapshot& snapshot, const std::vector<ReportedDecision>& decisions)
{
    const Html::Element facts = html.in("dl", {{"class", "facts"}});
    writeFact(html, "Devices", std::to_string(snapshot.mesh.devices.size()),
              snapshot.mesh.devices.empty() ? "" : "#" + snapshot.id + "-devices");
    if (snapshot.mesh.hasStations)
        writeFact(html, "Clients", std::to_string(clientsOf(snapshot)), "#" + snapshot.id + "-clients");
    writeFact(html, "Weakest wireless signal", weakestText(snapshot, linksOf(snapshot)),
              "#" + snapshot.id + "-links");
    if (!decisions.empty())
        writeFact(html, "Best other candidate", runnerUpText(snapshot, decisions[0]),
                  "#" + snapshot.id + "-candidates");
}

void writeDecisions(Html& html, const Snapshot& snapshot, const std::vector<ReportedDecision>& decisions)
{
    if (decisions.empty())
        html.element("p", {{"class", "decision"}}, "No file of these states a decision");
    for (const ReportedDecision& decision : decisions)
        html.element("p", {{"class", "decision"}}, wordsOf(snapshot, decision));
}

void writeBadges(Html& html, const Snapshot& snapshot)
{
    static constexpr std::array<std::pair<Severity, const char*>, 3> badges = {
        {{Severity::Error, "error"}, {Severity::Warning, "warning"}, {Severity::Note, "note"}}};
    const Html::Element list = html.in("p", {{"class", "badges"}});
    html.text("Findings in the files: ");
    for (const auto& [severity, name] : badges) {
        const size_t count = snapshot.count(severity);
        html.element("a",
                     {{"href", "#" + snapshot.id + "-findings"},
                      {"class", fmt::format("badge {}{}", name, count == 0 ? " zero" : "")}},
                     plural(count, name));
        html.text(" ");
    }
}

/* ---- The tree --------------------------------------------------------------------------- */

std::string mediumText(const Backhaul& link)
{
    switch (link.medium) {
    case Backhaul::Wireless:
        return fmt::format("band {}", link.band);
    case Backhaul::Ethernet:
        return "Ethernet";
    case Backhaul::PowerLine:
        return "power line";
    case Backhaul::Unknown:
        break;
    }
    return "";
}

std::string rankText(const MeshDevice& device)
{
    return device.ranks.empty() ? "" : std::to_string(device.ranks[0].value);
}

std::optional<double> unlessZero(uint32_t value)
{
    return value == 0 ? std::nullopt : std::optional<double>(value);
}

/* "rank 2 · band 1 · RSSI 30 · 865/821" */
std::string detailOf(const MeshDevice& device)
{
    std::vector<std::string> parts;
    if (!device.ranks.empty())
        parts.push_back("rank " + rankText(device));
    const Backhaul& link = device.backhaul;
    if (link.medium != Backhaul::Unknown)
        parts.push_back(mediumText(link));
    if (link.rssi != 0)
        parts.push_back(fmt::format("RSSI {}", link.rssi));
    if (link.rxRate != 0 || link.txRate != 0)
        parts.push_back(fmt::format("{}/{}", link.rxRate, link.txRate));
    return fmt::format("{}", fmt::join(parts, " \u00b7 "));
}

/* What is wrong with the place of the device in the tree. */
std::string attachmentText(const Snapshot& snapshot, const MeshDevice& device)
{
    switch (device.attachment) {
    case Attachment::Cycle:
        return "in a cycle: its father is " + snapshot.label(device.fathers[0].value);
    case Attachment::UnknownFather:
        return "no file lists its father " + snapshot.label(device.fathers[0].value);
    case Attachment::NoFather:
        return "no file states its father";
    case Attachment::Root:
    case Attachment::Child:
        break;
    }
    return "";
}

/* A father that a less trusted file states. */
struct OtherFather {
    Mac device, father;
    std::string kind;
};

std::vector<OtherFather> otherFathersOf(const Mesh& mesh)
{
    std::vector<OtherFather> others;
    for (const MeshDevice& device : mesh.devices) {
        const Claims claims = presentOf(device.fathers);
        std::set<uint64_t> known;
        for (const Claim& claim : claims)
            if (known.insert(claim.value).second && &claim != &claims.front())
                others.push_back({device.mac, claim.value, mesh.files[claim.place.file].kind->name});
    }
    return others;
}

class TreeCards
{
  public:
    TreeCards(const Snapshot& of, const std::vector<ReportedDecision>& made)
        : snapshot(of), decisions(made), others(otherFathersOf(of.mesh))
    {
    }

    std::vector<svg::TreeCard> all()
    {
        for (const TreeNode& node : snapshot.mesh.tree)
            addDevice(node);
        return std::move(cards);
    }

  private:
    void addDevice(const TreeNode& node);
    void addGuests(Mac father);
    svg::TreeCard cardOf(const MeshDevice& device) const;
    bool isMoved(Mac mac) const;
    bool isDevice(Mac mac) const { return snapshot.mesh.find(mac) != SIZE_MAX; }

    const Snapshot& snapshot;
    const std::vector<ReportedDecision>& decisions;
    std::vector<OtherFather> others;
    std::vector<svg::TreeCard> cards;
    std::vector<size_t> above; /* the cards of the fathers, by depth */
};

bool TreeCards::isMoved(Mac mac) const
{
    for (const ReportedDecision& decision : decisions)
        if (decision.moves && decision.device == mac && decision.from != decision.to)
            return true;
    return false;
}

svg::TreeCard TreeCards::cardOf(const MeshDevice& device) const
{
    svg::TreeCard card;
    card.name = snapshot.label(device.mac);
    card.marked = isMoved(device.mac);
    if (card.marked)
        card.name += " (moves)";
    const std::string wrong = attachmentText(snapshot, device);
    card.detail = wrong.empty() ? detailOf(device) : wrong;
    card.href = "#" + snapshot.deviceId(device.mac);
    for (int band = 0; band < ALG_BANDS; ++band)
        card.cells.push_back(device.metrics
                                 ? std::optional<double>(device.metrics->air[static_cast<size_t>(band)])
                                 : std::nullopt);
    return card;
}

/* The devices that a decision or another file places below this one, and a client that moves away. */
void TreeCards::addGuests(Mac father)
{
    const size_t at = cards.size() - 1;
    const auto add = [&](svg::TreeCard::Kind kind, Mac mac, const std::string& detail) {
        svg::TreeCard card;
        card.kind = kind;
        card.father = at;
        card.name = snapshot.label(mac);
        card.detail = detail;
        card.marked = kind != svg::TreeCard::Disputed;
        card.href = "#" + (isDevice(mac) ? snapshot.deviceId(mac) : snapshot.id + "-clients");
        cards.push_back(std::move(card));
    };
    for (const ReportedDecision& decision : decisions)
        if (decision.moves && decision.from == father && decision.from != decision.to &&
            !isDevice(decision.device))
            add(svg::TreeCard::Present, decision.device, "client (moves)");
    for (const ReportedDecision& decision : decisions)
        if (decision.moves && decision.to == father && decision.from != decision.to)
            add(svg::TreeCard::Moves, decision.device, "moves here by the decision");
    for (const OtherFather& other : others)
        if (other.father == father)
            add(svg::TreeCard::Disputed, other.device, fmt::format("is here in the {} file", other.kind));
}

void TreeCards::addDevice(const TreeNode& node)
{
    const MeshDevice& device = snapshot.mesh.devices[node.device];
    svg::TreeCard card = cardOf(device);
    above.resize(node.depth);
    if (node.depth != 0)
        card.father = above.back();
    above.push_back(cards.size());
    cards.push_back(std::move(card));
    addGuests(device.mac);
}

svg::Tree treeOf(const Snapshot& snapshot, const std::vector<ReportedDecision>& decisions)
{
    svg::Tree tree;
    tree.heading = {
        snapshot.id + "-tree", "The mesh",
        "Each device below its father, with rank, link to the father (RSSI, receive and transmit rate) "
        "and, at the right, the air in use per band, as stored. A wireless link uses several bands; the "
        "card has the one with the highest rate, Links has all. A dashed card is a device at a second "
        "place: where the decision moves it, or where another file has it."};
    for (int band = 0; band < ALG_BANDS; ++band)
        tree.columns.push_back(fmt::format("air {}", band));
    tree.cards = TreeCards(snapshot, decisions).all();
    constexpr size_t maxCards = 500;
    if (tree.cards.size() > maxCards) {
        tree.heading.description +=
            fmt::format(" The drawing has the first {} of {} cards.", maxCards, tree.cards.size());
        tree.cards.resize(maxCards);
    }
    return tree;
}

void writeTree(Html& html, const svg::Tree& tree)
{
    {
        const Html::Element box = scrollBox(html, "The mesh, drawing");
        svg::draw(html, tree);
    }
    html.element("p", {{"class", "desc"}}, tree.heading.description);
}

/* The father with a link to its row, if it has one. */
PageCell fatherCell(const Snapshot& snapshot, const MeshDevice& device)
{
    if (device.fathers.empty() || device.fathers[0].value == noMac)
        return {};
    const Mac father = device.fathers[0].value;
    return {snapshot.label(father),
            snapshot.mesh.find(father) == SIZE_MAX ? "" : "#" + snapshot.deviceId(father)};
}

std::string noteOf(const Snapshot& snapshot, const MeshDevice& device)
{
    std::string note = attachmentText(snapshot, device);
    for (const bool rank : {false, true})
        if (disagree(rank ? device.ranks : device.fathers))
            note += (note.empty() ? "" : "; ") + std::string("files state different ") +
                    (rank ? "ranks" : "fathers");
    return note;
}

PageRow deviceRow(const Snapshot& snapshot, const MeshDevice& device)
{
    const Backhaul& link = device.backhaul;
    PageRow row = {snapshot.deviceId(device.mac),
                   {snapshot.label(device.mac), macText(device.mac), rankText(device),
                    fatherCell(snapshot, device), mediumText(link), PageCell(unlessZero(link.rssi)),
                    PageCell(unlessZero(link.rxRate)), PageCell(unlessZero(link.txRate)),
                    device.throughput ? std::to_string(device.throughput->value) : "",
                    snapshot.mesh.hasStations ? std::to_string(device.stations) : ""}};
    for (size_t band = 0; band < ALG_BANDS; ++band)
        row.cells.emplace_back(device.metrics ? std::to_string(device.metrics->air[band]) : "");
    return row;
}

/* Beside the names, because a wide table may be cut off. */
void addNotes(PageTable& table, const Snapshot& snapshot)
{
    table.columns.insert(table.columns.begin() + 1, {"note", false, true});
    for (size_t i = 0; i < table.rows.size(); ++i) {
        const MeshDevice& device = snapshot.mesh.devices[snapshot.mesh.tree[i].device];
        std::vector<PageCell>& cells = table.rows[i].cells;
        cells.insert(cells.begin() + 1, PageCell(noteOf(snapshot, device)));
    }
}

PageTable deviceTable(const Snapshot& snapshot)
{
    PageTable table;
    table.caption = "Devices";
    table.columns = {{"device"},           {"MAC"},          {"rank", true},    {"father"},
                     {"medium"},           {"RSSI", true},   {"rx rate", true}, {"tx rate", true},
                     {"throughput", true}, {"clients", true}};
    for (int band = 0; band < ALG_BANDS; ++band)
        table.columns.push_back({fmt::format("air {}", band), true});
    bool noted = false;
    for (const TreeNode& node : snapshot.mesh.tree) {
        table.rows.push_back(deviceRow(snapshot, snapshot.mesh.devices[node.device]));
        noted = noted || !noteOf(snapshot, snapshot.mesh.devices[node.device]).empty();
    }
    if (noted)
        addNotes(table, snapshot);
    return table;
}

} // namespace

std::string startText(const Snapshot& snapshot)
{
    for (const KeptFile* file : snapshot.filesOf("ap-rank-index", false)) {
        if (file->kept.empty())
            continue;
        std::string start = Values(file->kind->head, file->kept[0].cells).text("starttime");
        const std::optional<Number> number = wholeNumber(start);
        constexpr uint64_t year2001 = 978307200;
        if (!number || number->negative || number->magnitude < year2001 || number->magnitude > UINT32_MAX)
            return start;
        const auto seconds = static_cast<time_t>(number->magnitude);
        std::tm date = {};
        gmtime_r(&seconds, &date);
        return fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02} UTC ({})", date.tm_year + 1900,
                           date.tm_mon + 1, date.tm_mday, date.tm_hour, date.tm_min, date.tm_sec, start);
    }
    return "";
}

Html::Element sectionOf(Html& html, const Snapshot& snapshot, const char* name, const char* title)
{
    Html::Element section = html.in("section", {{"id", snapshot.id + "-" + name}});
    html.element("h3", title);
    return section;
}

void writeMissing(Html& html, const std::string& text)
{
    html.element("p", {{"class", "absent"}}, text);
}

void writeOverview(Html& html, const Snapshot& snapshot)
{
    const std::vector<ReportedDecision> decisions = decisionsOf(snapshot);
    {
        const Html::Element section = sectionOf(html, snapshot, "overview", "Decision and mesh");
        writeDecisions(html, snapshot, decisions);
        writeBadges(html, snapshot);
        writeFacts(html, snapshot, decisions);
        if (snapshot.mesh.devices.empty()) {
            writeMissing(html, "No file of these lists a device.");
            return;
        }
        writeTree(html, treeOf(snapshot, decisions));
    }
    const Html::Element section = sectionOf(html, snapshot, "devices", "Devices");
    writeTable(html, deviceTable(snapshot));
}

} // namespace algdata
