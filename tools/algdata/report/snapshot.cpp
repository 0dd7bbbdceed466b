/* SPDX-License-Identifier: Apache-2.0 */
#include "report/snapshot.h"

#include <algorithm>
#include <filesystem>

#include <fmt/format.h>

#include "checking/faults.h"
#include "mesh/audit.h"
#include "mesh/homes.h"
#include "records/naturalOrder.h"

namespace algdata
{

namespace fs = std::filesystem;

/* ---- Values --------------------------------------------------------------------- */

const Field& Values::field(const char* name) const
{
    return *std::find_if(layout.fields.begin(), layout.fields.end(),
                         [&](const Field& known) { return formats::sameText(known.name, name); });
}

const std::string& Values::text(const char* name, int element) const
{
    const auto index = static_cast<size_t>(&field(name) - layout.fields.begin());
    return cells[layout.placeOf[index][static_cast<size_t>(element)]];
}

std::optional<double> Values::number(const char* name, int element) const
{
    const std::string& stored = text(name, element);
    return stored.empty() ? std::nullopt : numberIn(field(name), stored);
}

std::optional<double> Values::loaded(const char* name, int element) const
{
    const std::optional<double> stored = number(name, element);
    if (!stored)
        return stored;
    return static_cast<double>(loadedValue(field(name), static_cast<uint64_t>(*stored)));
}

Mac Values::mac(const char* name) const
{
    return macFrom(text(name)).value_or(noMac);
}

/* ---- Snapshots ------------------------------------------------------------------ */

size_t Snapshot::count(Severity severity) const
{
    size_t found = 0;
    for (const PageFinding& finding : findings)
        found += textOf(finding.rule).severity == severity ? finding.times : 0;
    return found;
}

std::string Snapshot::label(Mac mac) const
{
    const std::string given = mesh.nameOf(mac);
    return given.empty() ? macText(mac) : given;
}

std::string Snapshot::longLabel(Mac mac) const
{
    const std::string given = mesh.nameOf(mac);
    return given.empty() ? macText(mac) : given + " " + macText(mac);
}

std::string Snapshot::recordId(const KeptFile& file, size_t line) const
{
    return fmt::format("{}-f{}-{}", id, file.index + 1, line);
}

std::vector<const KeptFile*> Snapshot::filesOf(const char* kind, bool past) const
{
    std::vector<const KeptFile*> found;
    for (const KeptFile& file : files)
        if (formats::sameText(file.kind->name, kind) && meshFile(file).past == past)
            found.push_back(&file);
    return found;
}

namespace
{

/* ---- Paths -------------------------------------------------------------------------- */

using Parts = std::vector<std::string>;

Parts partsOf(const std::string& path)
{
    Parts parts;
    for (const fs::path& part : fs::path(path).lexically_normal())
        if (!part.empty() && part != ".")
            parts.push_back(part.string());
    return parts;
}

/* The number of parts that all paths have in common at their beginnings. */
size_t commonParts(const std::vector<Parts>& paths)
{
    size_t common = paths.empty() ? 0 : paths[0].size();
    for (const Parts& path : paths) {
        size_t same = 0;
        while (same < common && same < path.size() && path[same] == paths[0][same])
            ++same;
        common = same;
    }
    return common;
}

std::string joined(const Parts& parts, size_t from)
{
    std::string text;
    for (size_t i = from; i < parts.size(); ++i)
        text += (text.empty() || text == "/" ? "" : "/") + parts[i];
    return text;
}

/* The name of a directory, also of "." and "..". */
std::string directoryName(const Parts& parts)
{
    const Parts all = partsOf(fs::absolute(joined(parts, 0).empty() ? "." : joined(parts, 0)).string());
    return all.empty() ? "" : all.back();
}

/* ---- Reading ------------------------------------------------------------------------ */

std::vector<std::string> texts(const std::vector<Token>& tokens)
{
    return {tokens.begin(), tokens.end()};
}

KeptFile keptFile(const Source& source, const Kind& kind, size_t index)
{
    KeptFile file = {index, &kind, 0, {}};
    RecordReader records(kind, source.bytes);
    for (Record record; records.next(record); ++file.records) {
        if (file.records >= maxRows)
            continue;
        KeptRecord kept = {record.line, texts(record.cells), {}};
        for (const std::vector<Token>& entry : record.entries)
            kept.entries.push_back(texts(entry));
        file.kept.push_back(std::move(kept));
    }
    return file;
}

/* The findings of `check`, of each rule at most as many as a table has rows. */
void addFaults(const Source& source, const Detection& detection, std::vector<PageFinding>& findings)
{
    std::map<Rule, size_t> listed;
    Faults faults = faultsOf(source, detection);
    for (Finding& finding : faults.kept)
        if (listed[finding.rule]++ < maxRows)
            findings.push_back({finding.rule, source.name, finding.line, std::move(finding.field),
                                std::move(finding.text), ""});
    for (const RuleText* rule : rulesOf(Scope::File)) {
        const size_t more = faults[rule->rule] - std::min(faults[rule->rule], maxRows);
        if (more != 0)
            findings.push_back(
                {rule->rule, source.name, 0, "", "more findings of this rule, not listed", "", more});
    }
}

std::string placesText(const Mesh& mesh, const std::vector<Place>& places)
{
    std::string text;
    for (const Place& place : places)
        text += (text.empty() ? "" : ", ") + mesh.text(place);
    return text;
}

void addContradictions(Snapshot& snapshot)
{
    for (MeshFinding& finding : audit(snapshot.mesh))
        snapshot.findings.push_back({finding.rule, snapshot.mesh.files[finding.place.file].name,
                                     finding.place.line, std::move(finding.field), std::move(finding.text),
                                     placesText(snapshot.mesh, finding.also)});
    std::stable_sort(snapshot.findings.begin(), snapshot.findings.end(),
                     [](const PageFinding& a, const PageFinding& b) {
                         return textOf(a.rule).severity < textOf(b.rule).severity;
                     });
}

/* Names the files from the directory on that has all of them. */
void shortenNames(Snapshot& snapshot)
{
    std::vector<Parts> directories;
    for (const MeshFile& file : snapshot.mesh.files) {
        directories.push_back(partsOf(file.name));
        directories.back().pop_back();
    }
    for (const PageFinding& finding : snapshot.findings) {
        directories.push_back(partsOf(finding.file));
        directories.back().pop_back();
    }
    const size_t common = commonParts(directories);
    for (MeshFile& file : snapshot.mesh.files)
        file.name = joined(partsOf(file.name), common);
    for (PageFinding& finding : snapshot.findings)
        finding.file = joined(partsOf(finding.file), common);
}

/* In the name of a file, the name of a device becomes "name1" and so on. */
std::string withoutNames(std::string file, const std::vector<std::string>& names)
{
    for (size_t i = 0; i < names.size(); ++i)
        for (size_t at = 0; (at = file.find(names[i], at)) != std::string::npos;) {
            const std::string instead = fmt::format("name{}", i + 1);
            file.replace(at, names[i].size(), instead);
            at += instead.size();
        }
    return file;
}

void leaveOutNames(Snapshot& snapshot)
{
    std::vector<std::string> names;
    for (const auto& [mac, name] : snapshot.mesh.names)
        if (!name.empty())
            names.push_back(name);
    /* The longest first, because one can be a part of another. */
    std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
        return a.size() != b.size() ? a.size() > b.size() : a < b;
    });
    snapshot.mesh.names.clear();
    for (MeshFile& file : snapshot.mesh.files)
        file.name = withoutNames(file.name, names);
    for (PageFinding& finding : snapshot.findings)
        finding.file = withoutNames(finding.file, names);
}

/* Names the snapshots from the directory on that has all of them. */
void nameSnapshots(ReportedHome& home, bool anonymous)
{
    std::vector<Parts> directories;
    for (const Snapshot& snapshot : home.snapshots)
        directories.push_back(partsOf(snapshot.name));
    const size_t common = commonParts(directories);
    const Parts parent(directories[0].begin(), directories[0].begin() + static_cast<ptrdiff_t>(common));
    home.name = anonymous ? "home" : directoryName(parent);
    for (size_t i = 0; i < home.snapshots.size(); ++i) {
        const std::string rest = joined(directories[i], common);
        home.snapshots[i].name = anonymous      ? fmt::format("snapshot {}", i + 1)
                                 : rest.empty() ? home.name
                                                : rest;
        home.snapshots[i].id = fmt::format("s{}", i + 1);
    }
}

} // namespace

ReportedHome readHome(const Options& options, bool anonymous)
{
    ReportedHome home;
    std::map<std::string, Snapshot> open;
    const VisitHomeFile keep = [&](const std::string& name, const Source& source, const Kind* kind,
                                   const Detection& detection, const Mesh& mesh) {
        Snapshot& snapshot = open[name];
        addFaults(source, detection, snapshot.findings);
        if (kind != nullptr)
            snapshot.files.push_back(keptFile(source, *kind, mesh.files.size() - 1));
    };
    const VisitHome finish = [&](const std::string& name, Mesh& mesh) {
        Snapshot& snapshot = open[name];
        snapshot.name = name;
        snapshot.mesh = std::move(mesh);
        shortenNames(snapshot);
        if (anonymous)
            leaveOutNames(snapshot);
        addContradictions(snapshot);
        home.snapshots.push_back(std::move(snapshot));
        open.erase(name);
    };
    home.complete = eachHome(options, finish, keep) != Unusable;
    std::sort(home.snapshots.begin(), home.snapshots.end(),
              [](const Snapshot& a, const Snapshot& b) { return isNaturallyLess(a.name, b.name); });
    if (!home.snapshots.empty())
        nameSnapshots(home, anonymous);
    return home;
}

} // namespace algdata
