/* SPDX-License-Identifier: Apache-2.0 */
#include "store.h"

#include <cstdio>
#include <filesystem>
#include <memory>

#include "text.h"

namespace filesystem = std::filesystem;

namespace
{

const char* const nodeInfoFile = "ap_node_info.txt";
const char* const allInfoFile = "ap_all_info.txt";
const char* const previousInfoFile = "ap_all_info_previous.txt";
const char* const fapDetailFile = "ap_all_detail_fap.txt";
const char* const linksFile = "bridging_now.txt";
const char* const linkLogFile = "bridging_fap_log.txt";
const char* const fapStationsFile = "stations_fap.txt";
const char* const reStationsFile = "stations_res.txt";
const char* const stationLogFile = "stations_history.txt";
const char* const scanningFile = "scanning.txt";
const char* const delayLogFile = "time_delay_history.txt";
const char* const olderPatFile = "pat_v1.txt";
const char* const meshPatFile = "pat_v2_res.txt";
const char* const fapPatFile = "pat_v2_fap.txt";
const char* const candidatesFile = "candidate_aps.txt";
const char* const rankFile = "ap_rank.txt";
const char* const indexFile = "ap_rank_index.txt";
const char* const decisionFile = "decision.txt";

/* One file per RE, named family_MAC.txt. */
const char* const reLinks = "bridging_re";
const char* const reDelays = "time_delay_re";
const char* const reScores = "score_re";

/* The rank of a node that is not ranked yet. */
constexpr uint8_t unranked = 255;

void check(bool done, const char* what, const std::string& path)
{
    if (!done)
        throw StoreError(std::string("cannot ") + what + " " + path);
}

int lines(const std::string& path)
{
    const int count = dataLineCounter(path.c_str());
    check(count >= 0, "count the lines of", path);
    return count;
}

template <typename Record> int sizeOf(const std::vector<Record>& records)
{
    return static_cast<int>(records.size());
}

/* There are two kinds of readers. Both fill one record per line. */
template <typename Record>
std::vector<Record> loadAll(const std::string& path, bool (*reader)(const char*, Record*))
{
    std::vector<Record> records(lines(path));
    check(reader(path.c_str(), records.data()), "load", path);
    return records;
}

template <typename Record>
std::vector<Record> loadAll(const std::string& path, bool (*reader)(const char*, Record*, int))
{
    std::vector<Record> records(lines(path));
    check(reader(path.c_str(), records.data(), sizeOf(records)), "load", path);
    return records;
}

} // namespace

/* ---- The directory ------------------------------------------------------ */

Store::Store(const std::string& directoryPath, const std::vector<std::string>& nodeMacs)
    : directory(directoryPath), macs(nodeMacs), fap(nodeMacs.front()),
      res(nodeMacs.begin() + 1, nodeMacs.end())
{
    known = {
        {nodeInfoFile, "link metrics of every node"},
        {allInfoFile, "all information of every node"},
        {previousInfoFile, "the same, of the round before"},
        {fapDetailFile, "the FAP in detail"},
        {linksFile, "wireless backhaul of this round"},
        {linkLogFile, "the FAP's log of backhaul reports"},
        {fapStationsFile, "stations of the FAP"},
        {reStationsFile, "stations of the REs"},
        {stationLogFile, "station samples, newest 128"},
        {scanningFile, "sightings, newest 256"},
        {delayLogFile, "latency to the father, newest 256"},
        {olderPatFile, "older firmware's PAT, one per node"},
        {meshPatFile, "PAT of the REs"},
        {fapPatFile, "PAT of the FAP"},
        {candidatesFile, "candidate APs of one station"},
        {rankFile, "rank of every node"},
        {indexFile, "ranked nodes and the run"},
        {decisionFile, "the decision"},
    };
    for (const std::string& re : res) {
        known.push_back({std::string(reLinks) + "_" + re + ".txt", "links to the fathers it had"});
        known.push_back({std::string(reDelays) + "_" + re + ".txt", "latency to candidate fathers"});
        known.push_back({std::string(reScores) + "_" + re + ".txt", "scores of candidate fathers"});
    }
    createFiles();
}

std::string Store::path(const std::string& name) const
{
    return (filesystem::path(directory) / name).string();
}

std::string Store::path(const char* family, const std::string& re) const
{
    return path(std::string(family) + "_" + re + ".txt");
}

/*
 * Creates every file that is updated in place, so that no first update reports a
 * missing file. The module itself creates the PAT files.
 */
void Store::createFiles()
{
    std::error_code error;
    if (filesystem::exists(directory, error) && !filesystem::is_directory(directory, error))
        throw DirectoryError(directory + " is not a directory");
    filesystem::create_directory(directory, error);
    if (error)
        throw DirectoryError("cannot create directory '" + directory + "': " + error.message());

    for (const File& file : known) {
        filesystem::remove(path(file.name), error);
        if (error)
            throw DirectoryError("cannot replace " + path(file.name) + ": " + error.message());
        const bool createdByModule = file.name == meshPatFile || file.name == fapPatFile;
        if (!createdByModule && !touchFile(path(file.name).c_str()))
            throw DirectoryError("cannot write to directory " + directory);
    }
    patInitV2(path(fapPatFile).c_str(), fap.data());
}

/* ---- Before the first round --------------------------------------------- */

void Store::writeOlderFirmwareFiles(ApInfoAllV2 extender, std::vector<ScanningInfo> sightings)
{
    check(apAllInfoWriter(path(allInfoFile).c_str(), &extender, 1, false), "save", path(allInfoFile));
    check(scanningInfoWriter(path(scanningFile).c_str(), sightings.data(), sizeOf(sightings)), "save",
          path(scanningFile));
    writeOlderPat();
}

/* The module only reads version 1, so this writes it: per line a MAC, 100 values b, 100 values c. */
void Store::writeOlderPat() const
{
    const std::string file = path(olderPatFile);
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(std::fopen(file.c_str(), "w"), std::fclose);
    check(stream != nullptr, "save", file);
    for (size_t node = 0; node < macs.size(); ++node) {
        std::fprintf(stream.get(), "%s", macs[node].c_str());
        for (int slot = 0; slot < ALG_PAT_CAPACITY; ++slot)
            std::fprintf(stream.get(), " %d", 60 + slot % 4);
        for (int slot = 0; slot < ALG_PAT_CAPACITY; ++slot)
            std::fprintf(stream.get(), " %d", 46094 + 400 * static_cast<int>(node) - 25 * (slot / 20));
        std::fprintf(stream.get(), "\n");
    }
    check(std::fflush(stream.get()) == 0 && std::ferror(stream.get()) == 0, "save", file);
}

/* The mesh starts with the FAP. The REs join one by one, without a rank and without delays. */
void Store::introduceNodes(const PerDevice<std::string>& ethernetFathers)
{
    const std::string file = path(rankFile);
    ApRank record = {};
    putText(record.deviceMAC, fap);
    putText(record.ethFatherMAC, noMac);
    check(apRankInfoWriter(file.c_str(), &record, 1), "save", file);

    for (const std::string& re : res) {
        const auto cable = ethernetFathers.find(re);
        putText(record.deviceMAC, re);
        putText(record.ethFatherMAC, cable == ethernetFathers.end() ? noMac : cable->second);
        record.apRank = unranked;
        check(updataSingleApRankInfo(file.c_str(), &record), "update", file);
        check(emptyTimeDelayFile(path(reDelays, re).c_str()), "empty", path(reDelays, re));
    }
}

void Store::forgetNode(std::string mac)
{
    check(deleteSingleApAllInfo(path(allInfoFile).c_str(), mac.data()), "delete a node from",
          path(allInfoFile));
    check(scanningInfoDeleter(path(scanningFile).c_str(), mac.c_str()), "delete from", path(scanningFile));
}

void Store::forgetPlace(const std::string& re)
{
    check(scanningInfoDeleter(path(scanningFile).c_str(), re.c_str()), "delete from", path(scanningFile));
    check(emptyTimeDelayFile(path(reDelays, re).c_str()), "empty", path(reDelays, re));
}

/* ---- The measurements of a round ---------------------------------------- */

/*
 * Copies the file of the last round with the reader that converts nothing.
 * apAllInfoReader() converts utilizations, and those must not be written back.
 */
void Store::saveNodes(std::vector<ApInfoAllV2> nodes)
{
    const std::string file = path(allInfoFile);
    std::vector<ApInfoAllV2> old(lines(file));
    check(apAllInfoOnlyReader(file.c_str(), old.data(), sizeOf(old), nullptr), "load", file);
    check(apAllInfoWriter(path(previousInfoFile).c_str(), old.data(), sizeOf(old), false), "save",
          path(previousInfoFile));

    std::vector<ApNodeV2> metrics;
    for (ApInfoAllV2& node : nodes) {
        check(updataSingleApAllInfo(file.c_str(), &node), "update", file);
        metrics.push_back(node.apNodeV2);
    }
    check(apNodeInfoWriterV2(path(nodeInfoFile).c_str(), sizeOf(metrics), metrics.data()), "save",
          path(nodeInfoFile));
    /* The detail writer and reader handle one node, the first of the array. */
    check(apAllDetailInfoWriter(path(fapDetailFile).c_str(), nodes.data(), 1, false), "save",
          path(fapDetailFile));
}

/*
 * The FAP logs every report except its own; each RE keeps one line per father.
 * updateSingleBridgingInfo() always returns true, so count the lines to be sure.
 */
void Store::saveBackhaul(std::vector<BridgingNodeV2> links)
{
    check(bridgingApNodeInfoWriter(path(linksFile).c_str(), links.data(), sizeOf(links)), "save",
          path(linksFile));
    for (BridgingNodeV2& link : links) {
        updateSingleBridgingInfo(path(linkLogFile).c_str(), &link, true);
        if (same(link.fatherDeviceMAC, noMac))
            continue;
        const std::string own = path(reLinks, link.deviceMAC);
        updateSingleBridgingInfo(own.c_str(), &link, false);
        check(lines(own) > 0 && lines(path(linkLogFile)) > 0, "update", own);
    }
}

void Store::saveStations(std::vector<StaConnection> stations)
{
    std::vector<StaConnection> ofFap;
    std::vector<StaConnection> ofRes;
    for (const StaConnection& station : stations)
        (same(station.apMac, fap) ? ofFap : ofRes).push_back(station);

    check(stationNodeInfoWriter(path(fapStationsFile).c_str(), ofFap.data(), sizeOf(ofFap)), "save",
          path(fapStationsFile));
    check(stationNodeInfoWriter(path(reStationsFile).c_str(), ofRes.data(), sizeOf(ofRes)), "save",
          path(reStationsFile));
    check(stationInfoAppendWriter(path(stationLogFile).c_str(), stations.data(), sizeOf(stations)),
          "append to", path(stationLogFile));
}

/*
 * Each append and each delete lowers the signals in the file by the RSSI
 * compensation, so older sightings fade. The scan of this round is appended last:
 * only the reader lowers it, once.
 */
void Store::saveSightings(std::vector<ScanningInfo> sightings, ScanningInfo passing)
{
    const std::string file = path(scanningFile);
    check(appendSingleScanningInfo(file.c_str(), &passing), "append to", file);
    check(appendScanningInfo(file.c_str(), sightings.data(), sizeOf(sightings)), "append to", file);
}

bool Store::hasDelays(const std::string& re) const
{
    return lines(path(reDelays, re)) > 0;
}

void Store::saveDelays(const std::string& re, std::vector<TimeDelayInfo> probes)
{
    const std::string file = path(reDelays, re);
    check(timeDelayInfoWriter(file.c_str(), probes.data(), sizeOf(probes)), "save", file);
}

void Store::updateDelay(const std::string& re, TimeDelayInfo probe)
{
    const std::string file = path(reDelays, re);
    check(updateSingleTimeDelayInfo(file.c_str(), &probe), "update", file);
}

void Store::logDelay(TimeDelayInfo probe)
{
    const std::string file = path(delayLogFile);
    check(appendSingleTimeDelayInfo(file.c_str(), &probe), "append to", file);
}

/* ---- Loading ------------------------------------------------------------ */

Knowledge Store::load() const
{
    Knowledge knowledge;
    std::vector<ApNodeV2> metrics(lines(path(nodeInfoFile)));
    const auto pool = std::make_unique<char[][ALG_MAC_SIZE]>(metrics.size());
    check(apNodeInfoReaderV2(path(nodeInfoFile).c_str(), static_cast<uint8_t>(metrics.size()), metrics.data(),
                             pool.get()),
          "load", path(nodeInfoFile));
    for (size_t i = 0; i < metrics.size(); ++i)
        knowledge.macs.push_back(pool[i]);

    knowledge.nodes = loadNodes();
    knowledge.links = loadAll(path(linksFile), bridgingApNodeInfoReader);
    knowledge.linkLog = loadAll(path(linkLogFile), bridgingApNodeInfoReader);
    knowledge.stations = loadStations();
    knowledge.stationLog = loadAll(path(stationLogFile), stationInfoOnlyReader);
    knowledge.sightings = loadAll(path(scanningFile), scanningInfoReader);
    knowledge.ranks = loadAll(path(rankFile), apRankInfoReader);
    knowledge.pat = loadPat();
    knowledge.olderPat = loadOlderPat();
    for (const std::string& re : res) {
        knowledge.oldLinks[re] = loadAll(path(reLinks, re), bridgingApNodeInfoReader);
        knowledge.delays[re] = loadAll(path(reDelays, re), timeDelayInfoReader);
        knowledge.scores[re] = loadScores(re);
    }
    return knowledge;
}

/* apAllInfoReader() returns true even for a missing file, so check the number of lines. */
std::vector<ApInfoAllV2> Store::loadNodes() const
{
    const std::string file = path(allInfoFile);
    std::vector<ApInfoAllV2> nodes(lines(file));
    check(nodes.size() == macs.size(), "find every node in", file);
    apAllInfoReader(file.c_str(), nodes.data(), sizeOf(nodes), nullptr);
    return nodes;
}

/* Loads two files into one array and scales all rates to two streams, to compare them. */
std::vector<StaConnection> Store::loadStations() const
{
    const std::string first = path(fapStationsFile);
    const std::string second = path(reStationsFile);
    std::vector<StaConnection> stations(lines(first) + lines(second));
    check(stationNodeInfoReader(first.c_str(), second.c_str(), stations.data()), "load", first);
    mimoSync(stations.data(), sizeOf(stations));
    return stations;
}

/* scoreInfoCntReader() returns 1 for an empty file: there are no scores yet. */
std::vector<ScoreInfo> Store::loadScores(const std::string& re) const
{
    const std::string file = path(reScores, re);
    if (scoreInfoCntReader(file.c_str()) == 1)
        return {};
    return loadAll(file, scoreInfoReader);
}

ApRankIndex Store::loadIndex() const
{
    ApRankIndex index = {};
    check(apRankIndexInfoReader(path(indexFile).c_str(), &index), "load", path(indexFile));
    return index;
}

std::vector<CandidateAp> Store::loadCandidates() const
{
    return loadAll(path(candidatesFile), candidateApNodeInfoReader);
}

/* Before the first decision the file is empty and the record stays zero: no move. */
ApAlgInterfaceOutput Store::loadDecision() const
{
    ApAlgInterfaceOutput decision = {};
    check(apAlgOutputInfoReader(path(decisionFile).c_str(), &decision), "load", path(decisionFile));
    return decision;
}

ApInfoAllV2 Store::loadFapDetail() const
{
    ApInfoAllV2 detail = {};
    check(apAllDetailInfoReader(path(fapDetailFile).c_str(), &detail, 1, nullptr), "load",
          path(fapDetailFile));
    return detail;
}

/* ---- PAT parameters ----------------------------------------------------- */

/* The reader creates a missing file with one default device. Each RE starts from a copy of it. */
std::vector<PatParameterV2> Store::loadMeshPat() const
{
    const std::string file = path(meshPatFile);
    std::vector<PatParameterV2> records(res.size());
    check(patParameterReaderV2(file.c_str(), sizeOf(records), records.data()), "load", file);
    if (same(records[0].deviceMac, noMac)) {
        const PatParameterV2 initial = records[0];
        for (size_t i = 0; i < res.size(); ++i) {
            records[i] = initial;
            putText(records[i].deviceMac, res[i]);
        }
    }
    return records;
}

PatParameterV2 Store::loadFapPat() const
{
    PatParameterV2 record = {};
    check(patParameterReaderV2(path(fapPatFile).c_str(), 1, &record), "load", path(fapPatFile));
    return record;
}

PerDevice<AlgPatParameterV2> Store::loadPat() const
{
    std::vector<PatParameterV2> stored = loadMeshPat();
    stored.push_back(loadFapPat());
    std::vector<AlgPatParameterV2> values(stored.size());
    patInt2AlgV2(sizeOf(stored), stored.data(), values.data());

    PerDevice<AlgPatParameterV2> pat;
    for (const AlgPatParameterV2& value : values)
        pat[value.deviceMac] = value;
    return pat;
}

/* The conversion of version 1 does not copy the device's MAC, so this copies it. */
PerDevice<AlgPatParameter> Store::loadOlderPat() const
{
    const std::string file = path(olderPatFile);
    std::vector<PatParameter> stored(lines(file));
    check(patParameterReader(file.c_str(), sizeOf(stored), stored.data()), "load", file);
    std::vector<AlgPatParameter> values(stored.size());
    patInt2Alg(sizeOf(stored), stored.data(), values.data());

    PerDevice<AlgPatParameter> pat;
    for (size_t i = 0; i < stored.size(); ++i) {
        putText(values[i].deviceMac, stored[i].deviceMac);
        pat[stored[i].deviceMac] = values[i];
    }
    return pat;
}

/* The conversion marks each integer that it changes, so it starts from those of the file. */
void Store::savePat(PerDevice<AlgPatParameterV2> pat)
{
    std::vector<PatParameterV2> stored = loadMeshPat();
    std::vector<AlgPatParameterV2> values;
    values.reserve(stored.size());
    for (const PatParameterV2& record : stored)
        values.push_back(pat.at(record.deviceMac));
    patAlg2IntV2(sizeOf(stored), stored.data(), values.data());
    check(patParameterWriterV2(path(meshPatFile).c_str(), sizeOf(stored), stored.data(), nullptr), "save",
          path(meshPatFile));

    /* updateSinglePatV2() returns false even on success, so read the file back. */
    PatParameterV2 own = loadFapPat();
    patAlg2IntV2(1, &own, &pat.at(fap));
    updateSinglePatV2(path(fapPatFile).c_str(), &own);
    const PatParameterV2 again = loadFapPat();
    check(same(again.deviceMac, fap) && again.singlePat[0].paraC == own.singlePat[0].paraC, "save",
          path(fapPatFile));
}

/* ---- The results of a round --------------------------------------------- */

void Store::saveScores(const std::string& re, std::vector<ScoreInfo> scores)
{
    const std::string file = path(reScores, re);
    check(scoreInfoWriter(file.c_str(), scores.data(), sizeOf(scores)), "save", file);
}

void Store::saveRanks(std::vector<ApRank> ranks)
{
    for (ApRank& rank : ranks)
        check(updataSingleApRankInfo(path(rankFile).c_str(), &rank), "update", path(rankFile));
}

void Store::saveIndex(ApRankIndex index)
{
    check(apRankIndexInfoWriter(path(indexFile).c_str(), &index), "save", path(indexFile));
}

void Store::saveCandidates(std::vector<CandidateAp> candidates)
{
    const std::string file = path(candidatesFile);
    check(candidateApNodeInfoWriter(file.c_str(), candidates.data(), sizeOf(candidates)), "save", file);
}

void Store::saveDecision(ApAlgInterfaceOutput decision)
{
    check(apAlgOutputInfoWriter(path(decisionFile).c_str(), &decision), "save", path(decisionFile));
}

/* ---- A summary of the files --------------------------------------------- */

/* One record per line, except in the rank index and in version 2 PAT files. */
int Store::recordsOf(const std::string& name) const
{
    if (name == meshPatFile)
        return sizeOf(res);
    if (name == fapPatFile)
        return 1;
    if (name == indexFile)
        return lines(path(name)) - 1;
    return lines(path(name));
}

std::vector<FileSummary> Store::files() const
{
    std::vector<FileSummary> summaries;
    for (const File& file : known)
        summaries.push_back({file.name, file.holds, recordsOf(file.name),
                             static_cast<unsigned long>(filesystem::file_size(path(file.name)))});
    return summaries;
}
