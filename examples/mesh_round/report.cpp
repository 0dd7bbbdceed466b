/* SPDX-License-Identifier: Apache-2.0 */
#include "report.h"

#include <cstdio>

#include "decide.h"
#include "radio.h"
#include "text.h"

namespace
{

const char* strategyName(ALG_STRATEGY strategy)
{
    switch (strategy) {
    case ALG_STRATEGY_CAREFUL:
        return "careful";
    case ALG_STRATEGY_REDICAL:
        return "radical";
    case ALG_STRATEGY_GET_BEST:
        return "get best";
    default:
        return "none";
    }
}

/* Describes the fastest band of a reported link. */
std::string describeWireless(const BridgingNodeV2& link)
{
    int best = 0;
    for (int band = 1; band < ALG_BANDS; ++band)
        if (link.bridgingRxRate[band] > link.bridgingRxRate[best])
            best = band;

    const radio::Band& air = radio::band(best);
    char text[64];
    std::snprintf(text, sizeof text, "%s, %d dBm, %d of %d", air.name,
                  radio::signalDbm(link.bridgingRssi[best]), link.bridgingRxRate[best],
                  radio::rateFor(11, air.width, 2));
    return text;
}

std::string describeLink(const Knowledge& known, const ApThrRank& node)
{
    if (same(node.fatherMAC, noMac))
        return "the Internet";
    for (const BridgingNodeV2& link : known.links)
        if (same(link.deviceMAC, node.deviceMAC))
            return describeWireless(link);
    for (const ApRank& rank : known.ranks)
        if (same(rank.deviceMAC, node.deviceMAC) && same(rank.ethFatherMAC, node.fatherMAC))
            return "Ethernet";
    return "power line";
}

int stationsOf(const Knowledge& known, const std::string& ap)
{
    int count = 0;
    for (const StaConnection& station : known.stations)
        count += same(station.apMac, ap) ? 1 : 0;
    return count;
}

void printBranch(const Home& home, const Knowledge& known, const ApRankIndex& index,
                 const std::string& father, const std::string& indent)
{
    int left = 0;
    for (int i = 0; i < index.cnt; ++i)
        left += same(index.apRank[i].fatherMAC, father) ? 1 : 0;

    for (int i = 0; i < index.cnt; ++i) {
        const ApThrRank& node = index.apRank[i];
        if (!same(node.fatherMAC, father))
            continue;
        const bool root = father == noMac;
        const bool last = --left == 0;
        const std::string name = (root ? "" : indent + (last ? "`-- " : "|-- ")) + home.label(node.deviceMAC);
        std::printf("    %-32s %-34s %6d %10d\n", name.c_str(), describeLink(known, node).c_str(),
                    node.throughput, stationsOf(known, node.deviceMAC));
        printBranch(home, known, index, node.deviceMAC, root ? "" : indent + (last ? "    " : "|   "));
    }
}

void printScores(const Home& home, const std::vector<ScoreInfo>& scores)
{
    std::printf("    %-32s %6s %10s %8s %8s\n", "candidate father", "hops", "delay ms", "Mbit/s", "points");
    for (const ScoreInfo& score : scores)
        std::printf("    %-32s %6d %10.1f %8d %8.0f\n", home.label(score.fatherMAC).c_str(), score.apRank,
                    score.timeDelayAverage / 10.0, score.thrputPredict, points(score));
}

void printCandidates(const Home& home, const std::vector<CandidateAp>& candidates)
{
    std::printf("    %-32s %-12s %6s %8s\n", "candidate AP", "band", "dBm", "Mbit/s");
    for (const CandidateAp& candidate : candidates)
        std::printf("    %-32s %-12s %6d %8d\n", home.label(candidate.apMac).c_str(),
                    radio::band(candidate.connectBand).name, radio::signalDbm(candidate.rssi),
                    candidate.throughput);
}

void printDecision(const Home& home, const Store& store, const std::string& station)
{
    const ApAlgInterfaceOutput decision = store.loadDecision();
    const std::vector<CandidateAp> candidates = store.loadCandidates();
    if (!candidates.empty())
        std::printf("  The weakest station that can roam: %s, %zu APs in reach\n",
                    home.label(station).c_str(), candidates.size());

    if (decision.algStrategy == ALG_STRATEGY_UNKNOW) {
        std::printf("  Decision: everything stays, nothing is worth a move\n");
        return;
    }
    std::printf("  Decision: %s to %s (%s, within %d s)\n", home.label(decision.srcMAC).c_str(),
                home.label(decision.dstMAC).c_str(), strategyName(decision.algStrategy), decision.timeout);
    if (decision.srcMAC == station)
        printCandidates(home, candidates);
    else
        printScores(home, store.loadScores(decision.srcMAC));
}

} // namespace

void report::header(const std::string& directory, uint64_t seed)
{
    std::printf("A simulated home mesh, seed %llu, records in %s\n", static_cast<unsigned long long>(seed),
                directory.c_str());
    std::printf("Compensation: PAT %.1f, RSSI %d\n", ai_yra_patc_compensation, ai_yra_rssi_compensation);
    std::printf("The scoring is an illustration, not the algorithm.\n");
}

void report::moved(const Home& home, const ApAlgInterfaceOutput& decision, bool possible)
{
    std::printf("  %s %s %s\n", home.label(decision.srcMAC).c_str(),
                possible ? "has moved to" : "could not reach", home.label(decision.dstMAC).c_str());
}

void report::round(const Home& home, const Store& store, const Knowledge& known, const std::string& station)
{
    const ApInfoAllV2 fap = store.loadFapDetail();
    const ApRankIndex index = store.loadIndex();

    std::printf("  %-34s %-34s %6s %10s\n", "The mesh", "link to the father, dBm, Mbit/s", "Mbit/s",
                "stations");
    printBranch(home, known, index, noMac, "");
    std::printf("  The FAP's air in use:");
    for (int band = 0; band < ALG_BANDS; ++band)
        if (fap.algWifiMode[band].available != 0)
            std::printf("%s %s %d%%", band == 0 ? "" : ",", radio::band(band).name,
                        fap.apNodeV2.wirelessChannelUtilization[band]);
    std::printf("\n");
    printDecision(home, store, station);
}

void report::files(const Store& store, const std::string& directory)
{
    std::printf("\nThe files in %s\n", directory.c_str());
    std::printf("  %-34s %-36s %8s %8s\n", "file", "holds", "records", "bytes");
    for (const FileSummary& file : store.files())
        std::printf("  %-34s %-36s %8d %8lu\n", file.name.c_str(), file.holds.c_str(), file.records,
                    file.bytes);
}
