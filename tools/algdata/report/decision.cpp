/* SPDX-License-Identifier: Apache-2.0 */
#include "report/decision.h"

#include <algorithm>
#include <map>

#include <fmt/format.h>

#include "report/svg/scale.h"

namespace algdata
{

namespace
{

std::optional<Mac> presentFather(const Mesh& mesh, Mac mac)
{
    const size_t index = mesh.find(mac);
    if (index != SIZE_MAX && !mesh.devices[index].fathers.empty())
        return mesh.devices[index].fathers[0].value;
    for (const StationSample& sample : mesh.stations)
        if (sample.station == mac)
            return sample.ap;
    return std::nullopt;
}

std::string strategyText(const Values& values)
{
    const std::optional<double> number = values.number("algStrategy");
    for (const formats::NamedValue& named : formats::strategyValues)
        if (number && *number == named.value)
            return named.text;
    return "";
}

} // namespace

std::vector<ReportedDecision> decisionsOf(const Snapshot& snapshot)
{
    std::vector<ReportedDecision> decisions;
    for (const KeptFile* file : snapshot.filesOf("alg-output", false)) {
        if (file->kept.empty())
            continue;
        const Values values(file->kind->head, file->kept[0].cells);
        ReportedDecision decision;
        decision.device = values.mac("srcMAC");
        decision.to = values.mac("dstMAC");
        decision.moves = decision.device != noMac && decision.to != noMac;
        decision.from = presentFather(snapshot.mesh, decision.device);
        decision.strategy = strategyText(values);
        decision.timeout = values.number("timeout");
        decision.file = snapshot.meshFile(*file).name;
        decisions.push_back(std::move(decision));
    }
    return decisions;
}

std::string wordsOf(const Snapshot& snapshot, const ReportedDecision& decision)
{
    if (!decision.moves)
        return "Every device stays where it is";
    std::string text = snapshot.label(decision.device);
    if (decision.from && *decision.from == decision.to) {
        text += " stays at " + snapshot.label(decision.to) + ", where it is";
    } else {
        text += " moves";
        if (decision.from && *decision.from != noMac)
            text += " from " + snapshot.label(*decision.from);
        text += " to " + snapshot.label(decision.to);
    }
    if (!decision.strategy.empty())
        text += ", " + decision.strategy;
    if (decision.timeout)
        text += fmt::format(", within {} s", svg::numberText(*decision.timeout));
    return text;
}

std::vector<ReportedLink> linksOf(const Snapshot& snapshot)
{
    std::vector<ReportedLink> links;
    const auto add = [&](const KeptFile& file, const KeptRecord& record) {
        const Values values(file.kind->head, record.cells);
        const ReportedLink link = {values.mac("deviceMAC"), values.mac("fatherDeviceMAC"), &file, &record};
        if (link.device != noMac && link.father != noMac)
            links.push_back(link);
    };
    for (const KeptFile* file : snapshot.filesOf("bridging", false))
        for (const KeptRecord& record : file->kept)
            add(*file, record);
    if (!links.empty())
        return links;
    std::map<Mac, std::pair<const KeptFile*, const KeptRecord*>> newest;
    for (const KeptFile* file : snapshot.filesOf("bridging", true))
        for (const KeptRecord& record : file->kept)
            newest[Values(file->kind->head, record.cells).mac("deviceMAC")] = {file, &record};
    for (const auto& [mac, found] : newest)
        add(*found.first, *found.second);
    return links;
}

namespace
{

struct WeakestLink {
    Mac device, father;
    int band;
    double rssi;
};

/* The lowest RSSI that is not 0; null if there is none. */
std::optional<WeakestLink> weakestOf(const std::vector<ReportedLink>& links)
{
    std::optional<WeakestLink> weakest;
    for (const ReportedLink& link : links)
        for (int band = 0; band < ALG_BANDS; ++band) {
            const double rssi = link.values().number("bridgingRssi", band).value_or(0);
            if (rssi > 0 && (!weakest || rssi < weakest->rssi))
                weakest = WeakestLink{link.device, link.father, band, rssi};
        }
    return weakest;
}

} // namespace

std::string weakestText(const Snapshot& snapshot, const std::vector<ReportedLink>& links)
{
    const std::optional<WeakestLink> weakest = weakestOf(links);
    if (!weakest)
        return "";
    return fmt::format("{} to {}, band {}, RSSI {}", snapshot.label(weakest->device),
                       snapshot.label(weakest->father), weakest->band, svg::numberText(weakest->rssi));
}

std::vector<Candidate> candidatesOf(const KeptFile& file)
{
    const bool score = formats::sameText(file.kind->name, "score");
    std::vector<Candidate> candidates;
    for (const KeptRecord& record : file.kept) {
        const Values values(file.kind->head, record.cells);
        const Mac mac = values.mac(score ? "fatherMAC" : "apMac");
        if (mac != noMac)
            candidates.push_back(
                {mac, &file, &record, values.number(score ? "thrputPredict" : "throughput").value_or(0)});
    }
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const Candidate& a, const Candidate& b) { return a.throughput > b.throughput; });
    return candidates;
}

const KeptFile* candidateFileOf(const Snapshot& snapshot, Mac device)
{
    for (const KeptFile* file : snapshot.filesOf("score", false))
        if (snapshot.meshFile(*file).owner == device)
            return file;
    const std::vector<const KeptFile*> files = snapshot.filesOf("candidate", false);
    const bool station = snapshot.mesh.find(device) == SIZE_MAX;
    return station && files.size() == 1 ? files[0] : nullptr;
}

} // namespace algdata
