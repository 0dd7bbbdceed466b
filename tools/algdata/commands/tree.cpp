/* SPDX-License-Identifier: Apache-2.0 */
/* `algdata tree`: draws the mesh of each home. */
#include <cstdlib>

#include <fmt/format.h>

#include "commands/commands.h"
#include "mesh/homes.h"
#include "printing/table.h"

namespace algdata
{

namespace
{

/* ---- The values of a device -------------------------------------------------- */

/* "band 2", or the medium if it has no bands. */
std::string mediumText(const Backhaul& link)
{
    return link.medium == Backhaul::Wireless ? fmt::format("band {}", link.band) : wordFor(link.medium);
}

std::string orEmpty(uint32_t value)
{
    return value == 0 ? "" : std::to_string(value);
}

/* Per band, without the last bands that nobody uses. */
std::string airText(const MeshDevice& device)
{
    if (!device.metrics)
        return "";
    const Bands& air = device.metrics->air;
    size_t used = air.size();
    while (used > 1 && air[used - 1] == 0)
        --used;
    std::vector<uint32_t> shown(air.begin(), air.begin() + static_cast<ptrdiff_t>(used));
    return fmt::format("{}", fmt::join(shown, " "));
}

/* What is wrong with the place of the device in the tree. */
std::string attachmentText(const MeshDevice& device)
{
    switch (device.attachment) {
    case Attachment::Cycle:
        return fmt::format("in a cycle: its father is {}", macText(device.fathers[0].value));
    case Attachment::UnknownFather:
        return fmt::format("no file lists its father {}", macText(device.fathers[0].value));
    case Attachment::NoFather:
        return "no file states its father";
    case Attachment::Root:
    case Attachment::Child:
        break;
    }
    return "";
}

std::string noteOf(const MeshDevice& device)
{
    std::string note = attachmentText(device);
    for (const bool rank : {false, true})
        if (disagree(rank ? device.ranks : device.fathers))
            note += (note.empty() ? "" : "; ") + std::string("files state different ") +
                    (rank ? "ranks" : "fathers");
    return note;
}

/* The columns that describe a device. */
enum {
    NameAt,
    RankAt,
    MediumAt,
    BandAt,
    RssiAt,
    RxRateAt,
    TxRateAt,
    AirAt,
    ThroughputAt,
    StationsAt,
    ColumnCount
};

struct Heading {
    const char* drawn; /* above a tree, where room is scarce */
    const char* name;  /* as in `algdata sql` */
    bool numeric;
};
constexpr Heading headings[ColumnCount] = {
    {"name", "deviceName", false},      {"rank", "apRank", true},       {"medium", "medium", false},
    {"band", "backhaulBand", true},     {"rssi", "backhaulRssi", true}, {"rxRate", "backhaulRxRate", true},
    {"txRate", "backhaulTxRate", true}, {"air", "air", false},          {"throughput", "throughput", true},
    {"stations", "stations", true}};

std::vector<std::string> valuesOf(const Mesh& mesh, const MeshDevice& device)
{
    const Backhaul& link = device.backhaul;
    return {mesh.nameOf(device.mac),
            device.ranks.empty() ? "" : std::to_string(device.ranks[0].value),
            wordFor(link.medium),
            link.medium == Backhaul::Wireless ? std::to_string(link.band) : "",
            orEmpty(link.rssi),
            orEmpty(link.rxRate),
            orEmpty(link.txRate),
            airText(device),
            device.throughput ? std::to_string(device.throughput->value) : "",
            mesh.hasStations ? std::to_string(device.stations) : ""};
}

/* ---- Text ---------------------------------------------------------------------- */

struct Lines {
    const char *through, *child, *last, *none;
};

/* Lines of characters that every terminal has, or of those that a UTF-8 locale has. */
const Lines& linesOfLocale()
{
    static const Lines ascii = {"|   ", "|-- ", "`-- ", "    "};
    static const Lines unicode = {"\u2502   ", "\u251c\u2500\u2500 ", "\u2514\u2500\u2500 ", "    "};
    return MB_CUR_MAX > 1 ? unicode : ascii;
}

/* The lines before each device of a tree. */
class Branches
{
  public:
    std::string next(const TreeNode& node)
    {
        constexpr size_t maxDrawn = 20;
        open.resize(node.depth);
        if (node.depth != 0)
            open.back() = !node.last;
        if (node.depth > maxDrawn)
            return fmt::format("... depth {} ", node.depth);
        std::string text;
        for (size_t i = 0; i + 1 < node.depth; ++i)
            text += open[i] ? lines.through : lines.none;
        return text + (node.depth == 0 ? "" : node.last ? lines.last : lines.child);
    }

  private:
    const Lines& lines = linesOfLocale();
    std::vector<bool> open; /* by depth: another child follows */
};

/* A column without any value is left out. */
std::vector<bool> usedColumns(const std::vector<std::vector<std::string>>& rows)
{
    std::vector<bool> used(ColumnCount + 1);
    for (const std::vector<std::string>& row : rows)
        for (size_t i = 0; i < row.size(); ++i)
            used[i] = used[i] || !row[i].empty();
    return used;
}

/* "files state different fathers of 0a4e00000005: ..." */
void printDisagreement(Output& out, const Mesh& mesh, const MeshDevice& device, bool rank)
{
    const Claims claims = presentOf(rank ? device.ranks : device.fathers);
    if (!disagree(claims))
        return;
    out.put(fmt::format("{}the {} of {} differs:{}", out.yellow(), rank ? "rank" : "father",
                        macText(device.mac), out.plain()));
    for (const Claim& claim : claims)
        out.put(fmt::format("{} {} in {}", &claim == &claims.front() ? "" : ",",
                            rank ? std::to_string(claim.value) : macText(claim.value),
                            printable(mesh.text(claim.place))));
    out.put('\n');
}

void printText(Output& out, const std::string& home, const Mesh& mesh, bool first)
{
    std::vector<std::vector<std::string>> rows;
    for (const TreeNode& node : mesh.tree) {
        const MeshDevice& device = mesh.devices[node.device];
        rows.push_back(valuesOf(mesh, device));
        rows.back()[MediumAt] = mediumText(device.backhaul);
        rows.back()[BandAt].clear(); /* the medium names it */
        rows.back().push_back(attachmentText(device));
    }
    const std::vector<bool> used = usedColumns(rows);
    Table table;
    table.addColumn("device", false);
    for (size_t i = 0; i < ColumnCount; ++i)
        if (used[i])
            table.addColumn(headings[i].drawn, headings[i].numeric);
    if (used[ColumnCount])
        table.addColumn("note", false);
    Branches branches;
    for (size_t i = 0; i < rows.size(); ++i) {
        table.addRow();
        table.add(branches.next(mesh.tree[i]) + macText(mesh.devices[mesh.tree[i].device].mac));
        for (size_t column = 0; column <= ColumnCount; ++column)
            if (used[column])
                table.add(printable(rows[i][column]));
    }
    out.put(fmt::format("{}{}{}{}: {} from {}\n", first ? "" : "\n", out.bold(), printable(home), out.plain(),
                        plural(mesh.devices.size(), "device"), plural(mesh.files.size(), "file")));
    if (!rows.empty())
        table.print(out, Format::Text);
    for (const TreeNode& node : mesh.tree)
        for (const bool rank : {false, true})
            printDisagreement(out, mesh, mesh.devices[node.device], rank);
}

/* ---- Graphs ---------------------------------------------------------------------- */

std::string dotText(const std::string& text)
{
    std::string quoted;
    for (const char c : printable(text))
        (quoted += c == '"' || c == '\\' ? "\\" : "") += c;
    return '"' + quoted + '"';
}

std::string labelOf(const Mesh& mesh, const MeshDevice& device)
{
    std::string label = macText(device.mac);
    const std::string name = mesh.nameOf(device.mac);
    if (!name.empty())
        label += " " + name;
    if (!device.ranks.empty())
        label += fmt::format(" rank {}", device.ranks[0].value);
    return label;
}

std::string linkLabelOf(const MeshDevice& device)
{
    const Backhaul& link = device.backhaul;
    std::string label = mediumText(link);
    if (link.rssi != 0)
        label += fmt::format(" rssi {}", link.rssi);
    if (link.rxRate != 0 || link.txRate != 0)
        label += fmt::format(" rate {}/{}", link.rxRate, link.txRate);
    return label;
}

/* One cluster per home. The numbers keep devices of several homes apart. */
void printDot(Output& out, const std::string& home, const Mesh& mesh, size_t number)
{
    const auto id = [&](Mac mac) { return fmt::format("\"{}/{}\"", number, macText(mac)); };
    out.put(fmt::format("  subgraph cluster_{} {{\n    label={};\n", number, dotText(home)));
    for (const MeshDevice& device : mesh.devices) {
        const bool dashed = device.attachment != Attachment::Root && device.attachment != Attachment::Child;
        out.put(fmt::format("    {} [label={}{}];\n", id(device.mac), dotText(labelOf(mesh, device)),
                            dashed ? ",style=dashed" : ""));
        if (device.attachment == Attachment::UnknownFather)
            out.put(fmt::format("    {} [label={},style=dotted];\n", id(device.fathers[0].value),
                                dotText(macText(device.fathers[0].value) + " unknown")));
    }
    for (const MeshDevice& device : mesh.devices)
        if (!device.fathers.empty() && device.attachment != Attachment::Root)
            out.put(fmt::format("    {} -> {} [label={}];\n", id(device.fathers[0].value), id(device.mac),
                                dotText(linkLabelOf(device))));
    out.put("  }\n");
}

/* ---- Rows -------------------------------------------------------------------------- */

Rows emptyRows()
{
    Rows rows;
    for (const char* name : {"home", "deviceMAC", "fatherMAC"})
        rows.addColumn(name);
    rows.addColumn("depth", true);
    rows.addColumn("rootPath");
    for (const Heading& heading : headings)
        rows.addColumn(heading.name, heading.numeric);
    rows.addColumn("note");
    return rows;
}

Rows rowsOf(const std::string& home, const Mesh& mesh)
{
    Rows rows = emptyRows();
    for (const TreeNode& node : mesh.tree) {
        const MeshDevice& device = mesh.devices[node.device];
        std::vector<std::string> row = {home, macText(device.mac),
                                        device.fathers.empty() ? "" : macText(device.fathers[0].value),
                                        std::to_string(node.depth), mesh.pathTo(node.device)};
        const std::vector<std::string> values = valuesOf(mesh, device);
        row.insert(row.end(), values.begin(), values.end());
        row.push_back(noteOf(device));
        rows.addRow(std::move(row));
    }
    return rows;
}

void addRows(const std::string& home, const Mesh& mesh, RowsFilter& filter, Rows& all)
{
    Rows rows = rowsOf(home, mesh);
    filter.narrowUnit(rows);
    for (const std::vector<std::string>& row : rows.all())
        all.addRow(row);
}

bool isWhole(const Mesh& mesh)
{
    for (const MeshDevice& device : mesh.devices)
        if (!noteOf(device).empty())
            return false;
    return true;
}

} // namespace

std::vector<std::string> treeColumns()
{
    return emptyRows().columnNames();
}

Status runTree(Options options)
{
    Output out(options);
    Rows all = emptyRows();
    RowsFilter filter(all, options);
    const bool selected = !options.columns.empty() || !options.where.empty() || !options.sort.empty() ||
                          options.head || options.limit;
    const bool drawn = options.format == Format::Text && !selected;
    if (options.format == Format::Dot && selected)
        throw Failure(
            "--format dot: it has whole trees, so --where, --sort, --head, --limit and --columns do not apply");
    if (options.format == Format::Dot)
        out.put("digraph mesh {\n");
    size_t homes = 0;
    bool whole = true;
    const Status status = eachHome(options, [&](const std::string& home, Mesh& mesh) {
        whole = isWhole(mesh) && whole;
        if (drawn)
            printText(out, home, mesh, homes == 0);
        else if (options.format == Format::Dot)
            printDot(out, home, mesh, homes);
        else
            addRows(home, mesh, filter, all);
        ++homes;
    });
    if (options.format == Format::Dot)
        out.put("}\n");
    else if (drawn && homes == 0)
        out.put("no devices\n");
    else if (!drawn) {
        filter.narrowAll(all);
        all.print(out, options);
    }
    out.close(status);
    return worse(status, whole ? AllWell : Findings);
}

} // namespace algdata
