/* SPDX-License-Identifier: Apache-2.0 */
/* The candidates of each decision side by side, as the score files state them. */
#include <algorithm>

#include <fmt/format.h>

#include "report/decision.h"
#include "report/sections.h"
#include "report/table.h"

namespace algdata
{

namespace
{

/* The delays that were measured to a candidate; null if there is no record. */
const KeptRecord* delaysTo(const Snapshot& snapshot, std::optional<Mac> device, Mac father,
                           const KeptFile** from)
{
    for (const KeptFile* file : snapshot.filesOf("time-delay", false)) {
        if (!device || snapshot.meshFile(*file).owner != device)
            continue;
        for (const KeptRecord& record : file->kept)
            if (Values(file->kind->head, record.cells).mac("fatherMAC") == father) {
                *from = file;
                return &record;
            }
    }
    return nullptr;
}

/* A table with the candidates as columns. */
class SideBySide
{
  public:
    SideBySide(const Snapshot& of, std::optional<Mac> device, const std::vector<Candidate>& all)
        : snapshot(of), owner(device), candidates(all)
    {
    }

    PageTable table(std::optional<Mac> present, std::optional<Mac> chosen);

  private:
    void addColumns(std::optional<Mac> present, std::optional<Mac> chosen);
    void addValue(const char* field, const std::string& name, const char* unsetIfZero);
    void addBands(const char* field, const std::string& name);
    void addDelays();

    const Snapshot& snapshot;
    std::optional<Mac> owner;
    const std::vector<Candidate>& candidates;
    PageTable made;
};

void SideBySide::addColumns(std::optional<Mac> present, std::optional<Mac> chosen)
{
    made.columns.push_back({"value"});
    PageRow role = {"", {"role"}};
    for (const Candidate& candidate : candidates) {
        made.columns.push_back({snapshot.label(candidate.mac), true});
        const bool isPresent = present && candidate.mac == *present;
        const bool isChosen = chosen && candidate.mac == *chosen;
        role.cells.emplace_back(isPresent && isChosen ? "present father, chosen"
                                : isPresent           ? "present father"
                                : isChosen            ? "chosen"
                                                      : "candidate");
    }
    role.classes = "roles";
    made.rows.push_back(std::move(role));
}

void SideBySide::addValue(const char* field, const std::string& name, const char* unsetIfZero)
{
    PageRow row = {"", {name}};
    for (const Candidate& candidate : candidates) {
        PageCell cell(candidate.values().text(field));
        if (unsetIfZero != nullptr && candidate.values().number(field) == 0.0)
            cell.note = unsetIfZero;
        row.cells.push_back(std::move(cell));
    }
    made.rows.push_back(std::move(row));
}

/* One row per band that a candidate uses. */
void SideBySide::addBands(const char* field, const std::string& name)
{
    for (int band = 0; band < ALG_BANDS; ++band) {
        PageRow row = {"", {fmt::format("{}, band {}", name, band)}};
        bool used = false;
        for (const Candidate& candidate : candidates) {
            const std::string text = candidate.values().text(field, band);
            const bool unset = candidate.values().number(field, band) == 0.0;
            used = used || (!text.empty() && !unset);
            row.cells.emplace_back(text, "", unset ? "unset" : "");
        }
        if (used)
            made.rows.push_back(std::move(row));
    }
}

/* The samples with those marked that the reader changes. */
void SideBySide::addDelays()
{
    PageRow row = {"", {"delay samples, as stored"}};
    bool any = false;
    for (const Candidate& candidate : candidates) {
        const KeptFile* file = nullptr;
        const KeptRecord* record = delaysTo(snapshot, owner, candidate.mac, &file);
        std::string text;
        int clamped = 0;
        for (int i = 0; record != nullptr && i < ALG_DELAY_SAMPLES; ++i) {
            const Values values(file->kind->head, record->cells);
            const std::string& sample = values.text("delayTime", i);
            text += (text.empty() ? "" : " ") + (sample.empty() ? "\u2013" : sample);
            clamped += values.number("delayTime", i) != values.loaded("delayTime", i) ? 1 : 0;
        }
        any = any || record != nullptr;
        row.cells.emplace_back(text, "",
                               clamped == 0 ? "" : fmt::format("{} clamped by the reader", clamped));
    }
    row.classes = "samples";
    if (any)
        made.rows.push_back(std::move(row));
}

PageTable SideBySide::table(std::optional<Mac> present, std::optional<Mac> chosen)
{
    made.sortable = false;
    addColumns(present, chosen);
    addValue("thrputPredict", "predicted throughput", "unset");
    addValue("apRank", "rank (hops)", nullptr);
    addValue("hopsFactor", "hop factor", nullptr);
    addValue("timeDelayAverage", "average delay", "unset");
    addValue("timeDelayTestCnt", "delay tests", "unset");
    addValue("timeNormalization", "normalised time", nullptr);
    addBands("rssi", "RSSI");
    addBands("negoRate", "negotiated rate");
    addBands("patRate", "PAT rate");
    addDelays();
    return std::move(made);
}

/* More columns than this cannot be compared. */
constexpr size_t maxCandidates = 64;

void writeScores(Html& html, const Snapshot& snapshot, const KeptFile& file, const ReportedDecision* decision)
{
    const std::optional<Mac> owner = snapshot.meshFile(file).owner;
    std::vector<Candidate> candidates = candidatesOf(file);
    const std::string name = owner ? snapshot.label(*owner) : snapshot.meshFile(file).name;
    std::optional<Mac> present;
    const size_t device = owner ? snapshot.mesh.find(*owner) : SIZE_MAX;
    if (device != SIZE_MAX && !snapshot.mesh.devices[device].fathers.empty())
        present = snapshot.mesh.devices[device].fathers[0].value;
    html.element("h4", (decision != nullptr ? "Decided: candidates of " : "Candidates of ") + name);
    if (candidates.empty()) {
        writeMissing(html, "The score file has no candidates.");
        return;
    }
    const size_t all = candidates.size();
    candidates.resize(std::min(all, maxCandidates));
    PageTable table =
        SideBySide(snapshot, owner, candidates)
            .table(present, decision != nullptr ? std::optional<Mac>(decision->to) : std::nullopt);
    table.caption =
        fmt::format("Candidate fathers of {}, in the order of predicted throughput ({}{})", name,
                    snapshot.meshFile(file).name,
                    all > maxCandidates ? fmt::format(", the first {} of {}", maxCandidates, all) : "");
    writeTable(html, table);
}

} // namespace

void writeCandidates(Html& html, const Snapshot& snapshot)
{
    const Html::Element section = sectionOf(html, snapshot, "candidates", "Candidates");
    std::vector<const KeptFile*> files = snapshot.filesOf("score", false);
    const std::vector<ReportedDecision> decisions = decisionsOf(snapshot);
    const auto decisionOf = [&](const KeptFile* file) -> const ReportedDecision* {
        for (const ReportedDecision& decision : decisions)
            if (decision.moves && snapshot.meshFile(*file).owner == decision.device)
                return &decision;
        return nullptr;
    };
    std::stable_partition(files.begin(), files.end(),
                          [&](const KeptFile* file) { return decisionOf(file) != nullptr; });
    if (files.empty()) {
        writeMissing(html, "No score file states candidates.");
        return;
    }
    html.element("p", {{"class", "desc"}},
                 "What the score files say. Which of the values led to the decision is not in the files.");
    for (const KeptFile* file : files)
        if (decisionOf(file) != nullptr)
            writeScores(html, snapshot, *file, decisionOf(file));
    if (std::all_of(files.begin(), files.end(), decisionOf))
        return;
    const Html::Element details = html.in("details", {{"class", "more"}});
    html.element("summary", "Devices without a decision");
    for (const KeptFile* file : files)
        if (decisionOf(file) == nullptr)
            writeScores(html, snapshot, *file, nullptr);
}

} // namespace algdata
