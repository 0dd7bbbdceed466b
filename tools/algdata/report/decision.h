/* SPDX-License-Identifier: Apache-2.0 */
/* The decisions and the backhaul links of a snapshot, as its files state them. */
#ifndef ALGDATA_DECISION_H
#define ALGDATA_DECISION_H

#include <optional>
#include <string>
#include <vector>

#include "report/snapshot.h"

namespace algdata
{

struct ReportedDecision {
    Mac device = noMac, to = noMac;
    std::optional<Mac> from; /* the present father or AP; null if no file states it */
    bool moves = false;      /* the device and its target are stated */
    std::string strategy;    /* "get best"; empty if it has no name */
    std::optional<double> timeout;
    std::string file;
};

/* The first record of each decision file of the present. */
std::vector<ReportedDecision> decisionsOf(const Snapshot& snapshot);

/* "RE5 attic moves from RE1 living room to RE2 study, get best, within 30 s" */
std::string wordsOf(const Snapshot& snapshot, const ReportedDecision& decision);

/* A record about the wireless link of a device. */
struct ReportedLink {
    Mac device, father;
    const KeptFile* file;
    const KeptRecord* record;

    Values values() const { return {file->kind->head, record->cells}; }
};

/* Those of the present or, if no file states them, the newest one of each device in a history. */
std::vector<ReportedLink> linksOf(const Snapshot& snapshot);

/*
 * The link and band with the lowest RSSI that is not 0: "RE1 to FAP, band 1, RSSI 20". Empty if there
 * is none.
 */
std::string weakestText(const Snapshot& snapshot, const std::vector<ReportedLink>& links);

/* A candidate father of a score file, or a candidate AP of a station. */
struct Candidate {
    Mac mac;
    const KeptFile* file;
    const KeptRecord* record;
    double throughput; /* predicted; 0 if it is not stated */

    Values values() const { return {file->kind->head, record->cells}; }
};

/* In the order of the predicted throughput, the highest first. */
std::vector<Candidate> candidatesOf(const KeptFile& file);

/*
 * The score file of a device; for a station the file of candidate APs, if it is the only one: the file
 * does not say whose candidates it has. Otherwise null.
 */
const KeptFile* candidateFileOf(const Snapshot& snapshot, Mac device);

} // namespace algdata

#endif
