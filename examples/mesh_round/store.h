/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The record files of one directory: saves into them and loads from them. No other
 * part of this program calls the module's readers, writers, updates, appends and
 * deletes.
 *
 * Each load calls dataLineCounter() to size an array, then the reader.
 */
#ifndef MESH_ROUND_STORE_H
#define MESH_ROUND_STORE_H

#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "dataInterface.h"

/* The directory cannot be used at all. */
struct DirectoryError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/* A save or a load failed. */
struct StoreError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

template <typename Value> using PerDevice = std::map<std::string, Value>; /* keyed by MAC */

/* What the algorithm knows when it decides, all of it loaded from files. */
struct Knowledge {
    std::vector<std::string> macs;       /* the nodes, the FAP first */
    std::vector<ApInfoAllV2> nodes;      /* with 95 minus each utilization, as the reader returns it */
    std::vector<BridgingNodeV2> links;   /* the wireless backhaul of this round */
    std::vector<BridgingNodeV2> linkLog; /* the FAP's log of it, newest last */
    std::vector<StaConnection> stations; /* rates scaled to two streams */
    std::vector<StaConnection> stationLog;
    std::vector<ScanningInfo> sightings; /* newest last */
    std::vector<ApRank> ranks;
    PerDevice<AlgPatParameterV2> pat;                /* of every node */
    PerDevice<AlgPatParameter> olderPat;             /* of every node, from the older firmware */
    PerDevice<std::vector<BridgingNodeV2>> oldLinks; /* per RE: the last link to each father it had */
    PerDevice<std::vector<TimeDelayInfo>> delays;    /* per RE: by candidate father */
    PerDevice<std::vector<ScoreInfo>> scores;        /* per RE: of the last round, if any */
};

struct FileSummary {
    std::string name;
    std::string holds;
    int records;
    unsigned long bytes;
};

class Store
{
  public:
    /* Creates the directory if it is missing, and replaces its record files by empty ones. */
    Store(const std::string& directory, const std::vector<std::string>& nodeMacs);

    /* The files of an older firmware: one extender, its sightings, the version 1 PAT file. */
    void writeOlderFirmwareFiles(ApInfoAllV2 extender, std::vector<ScanningInfo> sightings);

    void introduceNodes(const PerDevice<std::string>& ethernetFathers);
    void forgetNode(std::string mac);        /* it has left the home */
    void forgetPlace(const std::string& re); /* it has moved: its sightings and delays are stale */

    void saveNodes(std::vector<ApInfoAllV2> nodes);
    void saveBackhaul(std::vector<BridgingNodeV2> links);
    void saveStations(std::vector<StaConnection> stations);
    void saveSightings(std::vector<ScanningInfo> sightings, ScanningInfo passing);
    bool hasDelays(const std::string& re) const;
    void saveDelays(const std::string& re, std::vector<TimeDelayInfo> probes);
    void updateDelay(const std::string& re, TimeDelayInfo probe);
    void logDelay(TimeDelayInfo probe);

    Knowledge load() const;

    void savePat(PerDevice<AlgPatParameterV2> pat);
    void saveScores(const std::string& re, std::vector<ScoreInfo> scores);
    void saveRanks(std::vector<ApRank> ranks);
    void saveIndex(ApRankIndex index);
    void saveCandidates(std::vector<CandidateAp> candidates);
    void saveDecision(ApAlgInterfaceOutput decision);

    std::vector<ScoreInfo> loadScores(const std::string& re) const;
    ApRankIndex loadIndex() const;
    std::vector<CandidateAp> loadCandidates() const;
    ApAlgInterfaceOutput loadDecision() const;
    ApInfoAllV2 loadFapDetail() const;

    std::vector<FileSummary> files() const;

  private:
    struct File {
        std::string name;
        std::string holds;
    };

    std::string path(const std::string& name) const;
    std::string path(const char* family, const std::string& re) const;
    void createFiles();
    void writeOlderPat() const;
    std::vector<ApInfoAllV2> loadNodes() const;
    std::vector<StaConnection> loadStations() const;
    std::vector<PatParameterV2> loadMeshPat() const;
    PatParameterV2 loadFapPat() const;
    PerDevice<AlgPatParameterV2> loadPat() const;
    PerDevice<AlgPatParameter> loadOlderPat() const;
    int recordsOf(const std::string& name) const;

    std::string directory;
    std::vector<std::string> macs; /* the FAP first */
    std::string fap;
    std::vector<std::string> res;
    std::vector<File> known;
};

#endif
