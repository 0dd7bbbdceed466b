/* SPDX-License-Identifier: Apache-2.0 */
#include "mesh/audit.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <tuple>

#include <fmt/format.h>

#include "text/wording.h"

namespace algdata
{

namespace
{

class Auditor
{
  public:
    explicit Auditor(const Mesh& audited) : mesh(audited), roster(audited.hasRoster()) {}
    std::vector<MeshFinding> run();

  private:
    void report(Rule rule, Place place, const char* field, std::string text, std::vector<Place> also = {});

    /* The tree */
    void checkCycles();
    void checkFathers();
    void checkAgreement(Rule rule, const Claims& claims, const MeshDevice& device);
    void checkRanks();
    void checkSteps(Origin origin);
    void checkThroughput();

    /* Devices */
    void checkRosters();
    void checkOwners();
    void checkSpellings();
    void checkStations();

    /* Decisions, scores and histories */
    void checkDecisions();
    void checkDevicesOf(const Decision& decision);
    void checkTargetOf(const Decision& decision);
    void checkStrategies();
    void checkScores();
    void checkHistories();

    bool isKnown(Mac mac) const { return mac == noMac || mesh.find(mac) != SIZE_MAX; }
    bool isStation(Mac mac) const { return allStations.count(mac) != 0; }
    std::string nameOf(Mac mac) const;

    const Mesh& mesh;
    const bool roster;
    std::set<Mac> allStations;
    std::vector<MeshFinding> findings;
};

void Auditor::report(Rule rule, Place place, const char* field, std::string text, std::vector<Place> also)
{
    findings.push_back({rule, place, field, std::move(text), std::move(also)});
}

std::string Auditor::nameOf(Mac mac) const
{
    const std::string name = mesh.nameOf(mac);
    return name.empty() ? macText(mac) : fmt::format("{} ({})", macText(mac), name);
}

std::vector<MeshFinding> Auditor::run()
{
    for (const std::vector<StationSample>* samples : {&mesh.stations, &mesh.pastStations})
        for (const StationSample& sample : *samples)
            allStations.insert(sample.station);
    checkCycles();
    checkFathers();
    checkRanks();
    checkThroughput();
    checkRosters();
    checkOwners();
    checkSpellings();
    checkStations();
    checkDecisions();
    checkStrategies();
    checkScores();
    checkHistories();
    std::stable_sort(findings.begin(), findings.end(),
                     [](const MeshFinding& a, const MeshFinding& b) { return a.rule < b.rule; });
    return std::move(findings);
}

/* ---- The tree -------------------------------------------------------------- */

/* The field of a claim about the father. */
const char* fatherField(Origin origin)
{
    return origin == Origin::RankIndex ? "fatherMAC"
           : origin == Origin::ApRank  ? "ethFatherMAC"
                                       : "fatherDeviceMAC";
}

std::vector<Place> placesAfterFirst(const Claims& claims)
{
    std::vector<Place> places;
    for (size_t i = 1; i < claims.size(); ++i)
        places.push_back(claims[i].place);
    return places;
}

/* One finding per cycle, at its first device. */
void Auditor::checkCycles()
{
    std::vector<bool> reported(mesh.devices.size());
    for (size_t start = 0; start < mesh.devices.size(); ++start) {
        if (mesh.devices[start].attachment != Attachment::Cycle || reported[start])
            continue;
        constexpr size_t maxNamed = 8;
        std::string text;
        size_t length = 0;
        for (size_t at = start; !reported[at]; at = mesh.devices[at].father) {
            reported[at] = true;
            if (length++ < maxNamed)
                text += macText(mesh.devices[at].mac) + " -> ";
        }
        const Claim& claim = mesh.devices[start].fathers[0];
        report(Rule::FatherCycle, claim.place, fatherField(claim.origin),
               fmt::format("{}{}{}, expected a path to the FAP: {} in a cycle", text,
                           length > maxNamed ? "... -> " : "", macText(mesh.devices[start].mac),
                           plural(length, "device")),
               placesAfterFirst(presentOf(mesh.devices[start].fathers)));
    }
}

/* Each father of each device that no file lists, once, and fathers that differ. */
void Auditor::checkFathers()
{
    for (const MeshDevice& device : mesh.devices) {
        const Claims present = presentOf(device.fathers);
        std::set<uint64_t> reported;
        for (const Claim& claim : present)
            if (roster && !isKnown(claim.value) && reported.insert(claim.value).second)
                report(Rule::UnknownFather, claim.place, fatherField(claim.origin),
                       fmt::format("{} is the father of {}, but no file lists it as a device",
                                   nameOf(claim.value), nameOf(device.mac)));
        checkAgreement(Rule::FatherDiffers, present, device);
    }
    for (const ScoreRecord& score : mesh.scores)
        if (roster && !isKnown(score.father))
            report(Rule::UnknownFather, score.place, "fatherMAC",
                   fmt::format("{} is scored as a father, but no file lists it as a device",
                               nameOf(score.father)));
}

/* What the claim says, as text. */
std::string valueText(Rule rule, const Claim& claim)
{
    return rule == Rule::RankDiffers ? std::to_string(claim.value) : macText(claim.value);
}

void Auditor::checkAgreement(Rule rule, const Claims& claims, const MeshDevice& device)
{
    if (!disagree(claims))
        return;
    std::string text;
    std::vector<Place> also;
    std::set<std::string> said;
    for (const Claim& claim : claims) {
        const std::string value = valueText(rule, claim);
        if (&claim != &claims.front())
            also.push_back(claim.place);
        if (said.insert(value).second)
            text += fmt::format("{}{} says {}", text.empty() ? "" : ", ",
                                mesh.files[claim.place.file].kind->name, value);
    }
    const Claim& first = claims[0];
    const bool rank = rule == Rule::RankDiffers;
    report(rule, first.place, rank ? "apRank" : fatherField(first.origin),
           fmt::format("the {} of {} differs: {}", rank ? "rank" : "father", nameOf(device.mac), text),
           std::move(also));
}

void Auditor::checkRanks()
{
    for (const MeshDevice& device : mesh.devices)
        checkAgreement(Rule::RankDiffers, presentOf(device.ranks), device);
    checkSteps(Origin::RankIndex);
    checkSteps(Origin::ApRank);
}

const Claim* claimOf(const Claims& claims, Origin origin)
{
    const auto at = std::find_if(claims.begin(), claims.end(),
                                 [&](const Claim& claim) { return claim.origin == origin && !claim.past; });
    return at == claims.end() ? nullptr : &*at;
}

/* Compares the rank of each device with that of its father, both from files of one kind. */
void Auditor::checkSteps(Origin origin)
{
    for (const MeshDevice& device : mesh.devices) {
        if (device.attachment != Attachment::Child) /* no ranks can be right in a cycle */
            continue;
        const MeshDevice& father = mesh.devices[device.father];
        const Claim* own = claimOf(device.ranks, origin);
        const Claim* above = claimOf(father.ranks, origin);
        if (own == nullptr || above == nullptr || own->value == above->value + 1)
            continue;
        report(Rule::RankStep, own->place, "apRank",
               fmt::format("{} has rank {}, expected {}: its father {} has rank {}", nameOf(device.mac),
                           own->value, above->value + 1, nameOf(father.mac), above->value),
               {above->place});
    }
}

void Auditor::checkThroughput()
{
    for (const MeshDevice& device : mesh.devices) {
        const uint32_t rate =
            device.backhaul.past ? 0 : std::max(device.backhaul.rxRate, device.backhaul.txRate);
        if (!device.throughput || device.throughput->past || rate == 0 || device.throughput->value <= rate)
            continue;
        report(Rule::ThroughputAboveLink, device.throughput->place, "throughput",
               fmt::format("{} has throughput {}, but the rate of its link to {} is {}", nameOf(device.mac),
                           device.throughput->value, nameOf(mesh.devices[device.father].mac), rate));
    }
}

/* ---- Devices ------------------------------------------------------------------ */

/* The kinds of which a file has records. A full ranking lists only some of the devices. */
std::array<bool, rosterKinds.size()> completeRosters(const Mesh& mesh)
{
    std::array<bool, rosterKinds.size()> complete = {};
    bool fullIndex = false;
    for (const MeshFile& file : mesh.files) {
        const size_t kind = rosterOf(file);
        if (kind == rosterKinds.size() || file.past || file.records == 0)
            continue;
        complete[kind] = true;
        fullIndex = fullIndex || (kind == 0 && file.records >= ALG_RANK_INDEX_CAPACITY);
    }
    complete[0] = complete[0] && !fullIndex;
    return complete;
}

void Auditor::checkRosters()
{
    const std::array<bool, rosterKinds.size()> complete = completeRosters(mesh);
    for (const MeshDevice& device : mesh.devices) {
        std::array<const Place*, rosterKinds.size()> listed = {};
        for (const Claim& listing : device.listings) {
            const size_t kind = rosterOf(mesh.files[listing.place.file]);
            if (!listing.past && kind != rosterKinds.size())
                listed[kind] = &listing.place;
        }
        size_t first = 0;
        while (first < listed.size() && listed[first] == nullptr)
            ++first;
        std::vector<std::string> missing;
        for (size_t kind = 0; kind < complete.size(); ++kind)
            if (complete[kind] && listed[kind] == nullptr)
                missing.emplace_back(rosterKinds[kind]);
        if (first != listed.size() && !missing.empty())
            report(Rule::MissingDevice, *listed[first], "deviceMAC",
                   fmt::format("{} is in the {} file, but not in {}", nameOf(device.mac), rosterKinds[first],
                               fmt::join(missing, ", ")));
    }
}

/* A file that is named after a device that no file lists. */
void Auditor::checkOwners()
{
    if (!roster)
        return;
    for (size_t file = 0; file < mesh.files.size(); ++file) {
        const std::optional<Mac> owner = mesh.files[file].owner;
        if (owner && !isKnown(*owner) && !isStation(*owner) && !mesh.files[file].past)
            report(Rule::MissingDevice, {file, 1}, "",
                   fmt::format("the file is named after {}, but no file lists this device", nameOf(*owner)));
    }
}

void Auditor::checkSpellings()
{
    for (const Spelling& spelling : mesh.spellings)
        report(Rule::DeviceCase, spelling.otherPlace, "",
               fmt::format("{} and {} are one device, expected one spelling: keys are compared exactly",
                           spelling.first, spelling.other),
               {spelling.firstPlace});
}

void Auditor::checkStations()
{
    std::map<Mac, const StationSample*> first;
    std::set<Mac> reported;
    for (const StationSample& sample : mesh.stations) {
        const StationSample* known = first.try_emplace(sample.station, &sample).first->second;
        if (known->ap == sample.ap || !reported.insert(sample.station).second)
            continue;
        report(Rule::StationTwice, sample.place, "apMac",
               fmt::format("station {} is connected to {} and to {} at once", nameOf(sample.station),
                           nameOf(known->ap), nameOf(sample.ap)),
               {known->place});
    }
}

/* ---- Decisions ------------------------------------------------------------------- */

void Auditor::checkDecisions()
{
    for (const Decision& decision : mesh.decisions) {
        const bool none = decision.from == noMac && decision.to == noMac; /* everything stays */
        if (none)
            continue;
        checkDevicesOf(decision);
        checkTargetOf(decision);
    }
}

void Auditor::checkDevicesOf(const Decision& decision)
{
    if (!roster)
        return;
    const auto known = [&](Mac mac) { return mac != noMac && isKnown(mac); };
    if (decision.from && !known(*decision.from) && !isStation(*decision.from))
        report(Rule::DecisionUnknown, decision.place, "srcMAC",
               fmt::format("{} is to move, but no file lists it as a device or a station",
                           nameOf(*decision.from)));
    if (decision.to && !known(*decision.to))
        report(Rule::DecisionUnknown, decision.place, "dstMAC",
               fmt::format("{} is the target, but no file lists it as a device", nameOf(*decision.to)));
}

void Auditor::checkTargetOf(const Decision& decision)
{
    if (!decision.from || !decision.to)
        return;
    const size_t device = mesh.find(*decision.from);
    const Claim* claim = device == SIZE_MAX || mesh.devices[device].fathers.empty()
                             ? nullptr
                             : &mesh.devices[device].fathers.front();
    if (claim != nullptr && claim->value == *decision.to)
        report(Rule::DecisionPresent, decision.place, "dstMAC",
               fmt::format("{} is already the father of {}", nameOf(*decision.to), nameOf(*decision.from)),
               {claim->place});
    for (const StationSample& sample : mesh.stations)
        if (sample.station == *decision.from && sample.ap == *decision.to)
            report(Rule::DecisionPresent, decision.place, "dstMAC",
                   fmt::format("station {} is already connected to {}", nameOf(*decision.from),
                               nameOf(*decision.to)),
                   {sample.place});
}

void Auditor::checkStrategies()
{
    for (const StrategyRecord& strategy : mesh.strategies)
        if (!strategy.value || *strategy.value > ALG_STRATEGY_GET_BEST)
            report(Rule::Strategy, strategy.place, strategy.field.c_str(),
                   strategy.value ? fmt::format("strategy {}, expected 0 to 3", *strategy.value)
                                  : "the strategy is not a number, expected 0 to 3");
}

/* ---- Scores and histories ----------------------------------------------------------- */

void Auditor::checkScores()
{
    using Key = std::tuple<std::optional<Mac>, Mac>;
    std::map<Key, const DelayRecord*> delays;
    for (const DelayRecord& delay : mesh.delays)
        delays[{mesh.files[delay.place.file].owner, delay.father}] = &delay;

    for (const ScoreRecord& score : mesh.scores) {
        const auto unset = [&](const char* field, const std::string& text) {
            report(Rule::ScoreInputs, score.place, field,
                   fmt::format("the score of {} uses {}", nameOf(score.father), text));
        };
        if (score.tests.value_or(0) == 0)
            unset("timeDelayTestCnt", "no delay tests");
        else if (score.delay.value_or(0) == 0)
            unset("timeDelayAverage", "an average delay of 0, which no sample has");
        if (score.throughput.value_or(0) == 0)
            unset("thrputPredict", "no predicted throughput");
        else if (score.anySignal && !score.anyRate)
            unset("negoRate", "a signal without any rate");
        const auto delay = delays.find({mesh.files[score.place.file].owner, score.father});
        if (delay != delays.end() && delay->second->above != 0)
            report(Rule::ScoreInputs, score.place, "timeDelayAverage",
                   fmt::format("the score of {} uses delays that the reader bounds: {} above 1000",
                               nameOf(score.father), plural(delay->second->above, "sample")),
                   {delay->second->place});
    }
}

/* Whether appends to files of this kind evict old records. Only the FAP's log of links does. */
bool isHistory(const MeshFile& file)
{
    const std::string_view kind = file.kind->name;
    return kind == "station" || kind == "scanning" || kind == "time-delay" ||
           (kind == "bridging" && file.past);
}

void Auditor::checkHistories()
{
    for (size_t i = 0; i < mesh.files.size(); ++i) {
        const MeshFile& file = mesh.files[i];
        if (isHistory(file) && file.records >= static_cast<size_t>(file.kind->cap))
            report(Rule::FullHistory, {i, 1}, "",
                   fmt::format("{}, the cap of {} files is {}: each new record evicts the oldest",
                               plural(file.records, "record"), file.kind->name, file.kind->cap));
    }
    for (const Frozen& frozen : mesh.frozen)
        report(Rule::FrozenSamples, frozen.place, "",
               fmt::format("all {} of {} are equal, expected measurements that vary",
                           plural(frozen.records, "record"), frozen.key));
}

} // namespace

std::vector<MeshFinding> audit(const Mesh& mesh)
{
    return Auditor(mesh).run();
}

} // namespace algdata
