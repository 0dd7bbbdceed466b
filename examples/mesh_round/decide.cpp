/* SPDX-License-Identifier: Apache-2.0 */
#include "decide.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "radio.h"
#include "text.h"

namespace
{

constexpr double internetLine = 1000; /* Mbit/s into the FAP */
constexpr double macEfficiency = 0.65;
constexpr double powerLineEfficiency = 0.7;
constexpr double ethernetEfficiency = 0.94;
constexpr double delayScale = 50;       /* 5 ms, in tenths of a millisecond */
constexpr double worthMovingNode = 1.3; /* a node's move interrupts everyone below it */
constexpr double worthMovingStation = 1.5;

/* The readers return 95 minus the utilization, so 95 is an idle link. */
double freeShare(uint8_t converted)
{
    return converted / 95.0;
}

double modelRate(double peak, double b, double c, double signal)
{
    return peak / (1 + std::exp(-b * (signal + c)));
}

uint16_t rounded(double value)
{
    return static_cast<uint16_t>(std::lround(std::clamp(value, 0.0, 65535.0)));
}

uint8_t clearMcsOrder(uint8_t signal, uint8_t width)
{
    return radio::mcsOrder(radio::mcsFor(radio::signalDbm(signal), static_cast<radio::Width>(width)));
}

/* The model of one configuration; null if there is none. */
template <typename Pat> auto* findConfiguration(Pat& pat, int band, uint8_t width, uint8_t mcsOrder)
{
    auto* const end = pat.algSinglePat + pat.commonPatNum;
    auto* const found = std::find_if(pat.algSinglePat, end, [&](const AlgSinglePat& single) {
        return single.bandOrder == band && single.channelWidthOrder == width && single.mcsOrder == mcsOrder;
    });
    return found == end ? nullptr : found;
}

struct Link {
    bool wireless = false;
    uint8_t rssi[ALG_BANDS] = {};
    uint16_t negoRate[ALG_BANDS] = {};
    uint16_t patRate[ALG_BANDS] = {};
    double throughput = 0;
};

class Planner
{
  public:
    explicit Planner(const Knowledge& knowledge) : known(knowledge) {}

    Plan makePlan(uint32_t now) const;

  private:
    const ApInfoAllV2& node(const std::string& mac) const;
    std::string father(const std::string& mac) const;
    int hops(const std::string& mac) const;
    bool isBelow(const std::string& mac, const std::string& ancestor) const;
    std::string ethernetFather(const std::string& mac) const;

    uint8_t seen(const std::string& listener, const std::string& heard, int band) const;
    uint8_t logged(const std::string& re, const std::string& to, int band) const;
    const BridgingNodeV2* oldLink(const std::string& re, const std::string& to) const;
    Link wirelessLink(const std::string& re, const std::string& to) const;
    Link link(const std::string& re, const std::string& to) const;
    double through(const Link& hop, const std::string& to) const;
    double throughput(const std::string& mac) const;

    ScoreInfo score(const std::string& re, const TimeDelayInfo& delay) const;
    std::vector<ScoreInfo> scoreFathers(const std::string& re) const;
    std::vector<ApRank> ranks() const;
    ApRankIndex index(const Plan& plan, uint32_t now) const;

    std::string weakestStation() const;
    std::optional<double> meanSignal(const StaConnection& now) const;
    std::vector<CandidateAp> candidateAps(const StaConnection& sample) const;
    const StaConnection& station(const std::string& mac) const;

    bool decideNode(Plan& plan) const;
    bool decideStation(Plan& plan) const;

    const Knowledge& known;
};

/* ---- The tree ----------------------------------------------------------- */

const ApInfoAllV2& Planner::node(const std::string& mac) const
{
    return *std::find_if(known.nodes.begin(), known.nodes.end(),
                         [&](const ApInfoAllV2& info) { return same(info.apNodeV2.deviceMAC, mac); });
}

std::string Planner::father(const std::string& mac) const
{
    return node(mac).apNodeV2.fatherDeviceMAC;
}

int Planner::hops(const std::string& mac) const
{
    const std::string above = father(mac);
    return above == noMac ? 0 : 1 + hops(above);
}

bool Planner::isBelow(const std::string& mac, const std::string& ancestor) const
{
    return mac != noMac && (mac == ancestor || isBelow(father(mac), ancestor));
}

std::string Planner::ethernetFather(const std::string& mac) const
{
    for (const ApRank& rank : known.ranks)
        if (same(rank.deviceMAC, mac))
            return rank.ethFatherMAC;
    return noMac;
}

/* ---- Links -------------------------------------------------------------- */

/* The signal of the newest sighting; 0 if there is none. */
uint8_t Planner::seen(const std::string& listener, const std::string& heard, int band) const
{
    for (auto sighting = known.sightings.rbegin(); sighting != known.sightings.rend(); ++sighting)
        if (sighting->band == band && same(sighting->deviceMAC, listener) &&
            same(sighting->neighbourMAC, heard))
            return sighting->rssi;
    return 0;
}

/* The mean signal of the FAP's last three reports of a link; 0 if there is none. */
uint8_t Planner::logged(const std::string& re, const std::string& to, int band) const
{
    int sum = 0;
    int count = 0;
    for (auto report = known.linkLog.rbegin(); report != known.linkLog.rend() && count < 3; ++report) {
        if (!same(report->deviceMAC, re) || !same(report->fatherDeviceMAC, to) ||
            report->bridgingRssi[band] == 0)
            continue;
        sum += report->bridgingRssi[band];
        ++count;
    }
    return static_cast<uint8_t>(count == 0 ? 0 : sum / count);
}

const BridgingNodeV2* Planner::oldLink(const std::string& re, const std::string& to) const
{
    for (const BridgingNodeV2& old : known.oldLinks.at(re))
        if (same(old.fatherDeviceMAC, to))
            return &old;
    return nullptr;
}

/*
 * The signal of the link in use comes from its reports, that of any other link from
 * the RE's scan. With a former father, the rates negotiated then are assumed again.
 */
Link Planner::wirelessLink(const std::string& re, const std::string& to) const
{
    Link result;
    result.wireless = true;
    const ApInfoAllV2& above = node(to);
    const BridgingNodeV2* old = oldLink(re, to);
    const bool inUse = father(re) == to;

    for (int band = 0; band < ALG_BANDS; ++band) {
        const AlgWifiMode& mode = above.algWifiMode[band];
        const uint8_t signal = inUse ? logged(re, to, band) : seen(re, to, band);
        if (mode.available == 0 || node(re).algWifiMode[band].available == 0 || signal == 0)
            continue;
        const auto width = static_cast<radio::Width>(mode.bandWidth);
        const int mcs = radio::mcsFor(radio::signalDbm(signal), width);
        const uint8_t order = radio::mcsOrder(mcs);
        const AlgSinglePat* model = findConfiguration(known.pat.at(to), band, width, order);
        if (mcs < 0 || model == nullptr || getPeekThr(static_cast<uint8_t>(band), width, order) == 1)
            continue; /* a threshold of 1 means that the configuration has none */

        result.rssi[band] = signal;
        result.negoRate[band] = old != nullptr && old->bridgingRxRate[band] > 0
                                    ? old->bridgingRxRate[band]
                                    : rounded(radio::rateFor(mcs, width, std::min<int>(mode.NSS, MIMO_2)));
        result.patRate[band] = rounded(modelRate(model->paraA, model->paraB, model->paraC, signal));
        const double rate = std::min<double>(macEfficiency * result.negoRate[band], result.patRate[band]);
        result.throughput =
            std::max(result.throughput, rate * freeShare(above.apNodeV2.wirelessChannelUtilization[band]));
    }
    return result;
}

Link Planner::link(const std::string& re, const std::string& to) const
{
    const ApNodeV2& below = node(re).apNodeV2;
    Link wired;
    if (ethernetFather(re) == to) {
        wired.throughput = ethernetEfficiency * below.ethernetRate * freeShare(below.ethernetUtilization);
        return wired;
    }
    if (below.plcRate > 0 && node(to).apNodeV2.plcRate > 0) {
        wired.throughput = powerLineEfficiency * below.plcRate * freeShare(below.plcUtilization);
        return wired;
    }
    return wirelessLink(re, to);
}

/* The throughput to the FAP over a link to a node. */
double Planner::through(const Link& hop, const std::string& to) const
{
    const double onward = throughput(to);
    if (hop.throughput <= 0 || onward <= 0)
        return 0;
    const bool sharesAir = hop.wireless && father(to) != noMac && link(to, father(to)).wireless;
    return sharesAir ? 1 / (1 / hop.throughput + 1 / onward) : std::min(hop.throughput, onward);
}

double Planner::throughput(const std::string& mac) const
{
    const std::string above = father(mac);
    return above == noMac ? internetLine : through(link(mac, above), above);
}

/* ---- Scores ------------------------------------------------------------- */

ScoreInfo Planner::score(const std::string& re, const TimeDelayInfo& delay) const
{
    ScoreInfo result = {};
    const std::string to = delay.fatherMAC;
    const Link hop = link(re, to);

    putText(result.fatherMAC, to);
    result.apRank = static_cast<uint8_t>(hops(to));
    result.hopsFactor = static_cast<float>(1 / (1 + 0.15 * result.apRank));

    int sum = 0;
    for (const uint16_t sample : delay.delayTime)
        sum += sample;
    result.timeDelayTestCnt = static_cast<uint8_t>(std::size(delay.delayTime));
    result.timeDelayAverage = rounded(static_cast<double>(sum) / result.timeDelayTestCnt);
    result.timeNormalization = static_cast<float>(delayScale / (delayScale + result.timeDelayAverage));

    double predicted = through(hop, to);
    for (const ScoreInfo& former : known.scores.at(re))
        if (same(former.fatherMAC, to))
            predicted = (predicted + former.thrputPredict) / 2; /* dampens a single odd measurement */
    result.thrputPredict = rounded(predicted);

    std::copy(std::begin(hop.rssi), std::end(hop.rssi), result.rssi);
    std::copy(std::begin(hop.negoRate), std::end(hop.negoRate), result.negoRate);
    std::copy(std::begin(hop.patRate), std::end(hop.patRate), result.patRate);
    return result;
}

/* Candidates are the fathers that have answered a probe, except nodes below the RE. */
std::vector<ScoreInfo> Planner::scoreFathers(const std::string& re) const
{
    std::vector<ScoreInfo> scores;
    for (const TimeDelayInfo& delay : known.delays.at(re))
        if (!isBelow(delay.fatherMAC, re))
            scores.push_back(score(re, delay));
    std::stable_sort(scores.begin(), scores.end(),
                     [](const ScoreInfo& a, const ScoreInfo& b) { return points(a) > points(b); });
    return scores;
}

/* ---- Ranks -------------------------------------------------------------- */

std::vector<ApRank> Planner::ranks() const
{
    std::vector<ApRank> ranked = known.ranks;
    for (ApRank& rank : ranked)
        rank.apRank = static_cast<uint8_t>(hops(rank.deviceMAC));
    return ranked;
}

/* Orders the nodes by hops, then by throughput. */
ApRankIndex Planner::index(const Plan& plan, uint32_t now) const
{
    std::vector<ApThrRank> entries;
    for (const ApRank& rank : plan.ranks) {
        ApThrRank entry = {};
        putText(entry.deviceMAC, rank.deviceMAC);
        putText(entry.fatherMAC, father(rank.deviceMAC));
        entry.apRank = rank.apRank;
        entry.throughput = rounded(throughput(rank.deviceMAC));
        entries.push_back(entry);
    }
    std::stable_sort(entries.begin(), entries.end(), [](const ApThrRank& a, const ApThrRank& b) {
        return a.apRank != b.apRank ? a.apRank < b.apRank : a.throughput > b.throughput;
    });
    if (entries.size() > ALG_RANK_INDEX_CAPACITY)
        entries.resize(ALG_RANK_INDEX_CAPACITY);

    ApRankIndex result = {};
    std::copy(entries.begin(), entries.end(), result.apRank);
    result.cnt = static_cast<uint8_t>(entries.size());
    result.process_re = static_cast<uint8_t>(plan.scores.size());
    result.alg_strategy = plan.decision.algStrategy;
    result.starttime = now;
    return result;
}

/* ---- Stations ----------------------------------------------------------- */

const StaConnection& Planner::station(const std::string& mac) const
{
    return *std::find_if(known.stations.begin(), known.stations.end(),
                         [&](const StaConnection& sample) { return same(sample.deviceMac, mac); });
}

/* The mean of the newest three samples on this AP and band; none without 802.11v, as it cannot roam. */
std::optional<double> Planner::meanSignal(const StaConnection& now) const
{
    if ((now.kvrCapacity & 2) == 0)
        return std::nullopt;
    double sum = 0;
    int count = 0;
    for (auto old = known.stationLog.rbegin(); old != known.stationLog.rend() && count < 3; ++old) {
        if (!same(old->deviceMac, now.deviceMac) || !same(old->apMac, now.apMac) ||
            old->connectBand != now.connectBand)
            continue;
        sum += old->rssi;
        ++count;
    }
    return count == 0 ? now.rssi : sum / count;
}

std::string Planner::weakestStation() const
{
    std::string weakest;
    double weakestSignal = 256;
    for (const StaConnection& sample : known.stations) {
        const std::optional<double> signal = meanSignal(sample);
        if (signal && *signal < weakestSignal) {
            weakestSignal = *signal;
            weakest = sample.deviceMac;
        }
    }
    return weakest;
}

/*
 * Stations use the version 1 parameters of the older firmware, because these include
 * narrow channels. Their MCS order is the Wi-Fi generation, 4 to 7.
 */
std::vector<CandidateAp> Planner::candidateAps(const StaConnection& sample) const
{
    const int generation = std::clamp<int>(sample.wifimode, 4, 7);
    const int width = std::min<int>(sample.bandwidth, radio::width160);
    const int band = sample.connectBand;
    std::vector<CandidateAp> candidates;

    for (const std::string& mac : known.macs) {
        const bool current = same(sample.apMac, mac);
        const uint8_t signal = current ? rounded(meanSignal(sample).value_or(sample.rssi)) & 0xff
                                       : seen(mac, sample.deviceMac, band);
        const int mcs = radio::mcsFor(radio::signalDbm(signal), static_cast<radio::Width>(width));
        const float* model = known.olderPat.at(mac).allParameter[band][width][generation - 4];
        if (!current && (signal == 0 || mcs < 0))
            continue;

        CandidateAp candidate = {};
        putText(candidate.apMac, mac);
        candidate.connectBand = static_cast<uint8_t>(band);
        candidate.roamingAvailable = mcs >= 0 ? 1 : 0;
        candidate.rssi = signal;
        const double air = modelRate(model[0], model[1], model[2], signal) *
                           freeShare(node(mac).apNodeV2.wirelessChannelUtilization[band]);
        candidate.throughput = rounded(std::min(air, throughput(mac)));
        candidate.wifimode = static_cast<uint8_t>(generation);
        candidate.bandwidth = static_cast<uint8_t>(width);
        candidate.mcslevel = static_cast<uint8_t>(std::max(0, mcs));
        candidate.mimo = MIMO_2;
        candidates.push_back(candidate);
    }
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const CandidateAp& a, const CandidateAp& b) { return a.throughput > b.throughput; });
    return candidates;
}

/* ---- The decision ------------------------------------------------------- */

/* A larger gain gets a bolder strategy and a shorter timeout. */
ApAlgInterfaceOutput decision(const std::string& device, const std::string& to, double gain)
{
    ApAlgInterfaceOutput output = {};
    putText(output.srcMAC, device);
    putText(output.dstMAC, to);
    output.algStrategy = gain >= 3     ? ALG_STRATEGY_GET_BEST
                         : gain >= 1.8 ? ALG_STRATEGY_REDICAL
                                       : ALG_STRATEGY_CAREFUL;
    output.timeout = gain >= 3 ? 30 : gain >= 1.8 ? 60 : 120;
    return output;
}

bool Planner::decideNode(Plan& plan) const
{
    double bestGain = worthMovingNode;
    bool found = false;
    for (const auto& [re, scores] : plan.scores) {
        const std::string current = father(re);
        const auto now = std::find_if(scores.begin(), scores.end(),
                                      [&](const ScoreInfo& score) { return same(score.fatherMAC, current); });
        if (scores.empty() || same(scores.front().fatherMAC, current))
            continue;
        const double today = now == scores.end() ? 0 : points(*now);
        const double gain = points(scores.front()) / std::max(1.0, today);
        if (gain > bestGain) {
            bestGain = gain;
            plan.decision = decision(re, scores.front().fatherMAC, gain);
            found = true;
        }
    }
    return found;
}

bool Planner::decideStation(Plan& plan) const
{
    if (plan.station.empty() || plan.candidates.empty())
        return false;
    const std::string current = station(plan.station).apMac;
    const CandidateAp& best = plan.candidates.front();
    const auto now =
        std::find_if(plan.candidates.begin(), plan.candidates.end(),
                     [&](const CandidateAp& candidate) { return same(candidate.apMac, current); });
    const double gain = best.throughput / std::max(1.0, static_cast<double>(now->throughput));
    if (same(best.apMac, current) || best.roamingAvailable == 0 || gain < worthMovingStation)
        return false;
    plan.decision = decision(plan.station, best.apMac, gain);
    return true;
}

Plan Planner::makePlan(uint32_t now) const
{
    Plan plan = {};
    for (const std::string& mac : known.macs)
        if (father(mac) != noMac)
            plan.scores[mac] = scoreFathers(mac);

    plan.station = weakestStation();
    if (!plan.station.empty())
        plan.candidates = candidateAps(station(plan.station));

    /* At most one move per round. Nodes come first, because the AP of a station may be about to move. */
    if (!decideNode(plan) && !decideStation(plan)) {
        putText(plan.decision.srcMAC, noMac);
        putText(plan.decision.dstMAC, noMac);
        plan.decision.algStrategy = ALG_STRATEGY_UNKNOW;
    }
    plan.ranks = ranks();
    plan.index = index(plan, now);
    return plan;
}

} // namespace

double points(const ScoreInfo& score)
{
    return static_cast<double>(score.thrputPredict) * score.hopsFactor * score.timeNormalization;
}

Plan decide(const Knowledge& known, uint32_t now)
{
    return Planner(known).makePlan(now);
}

void learn(Knowledge& known)
{
    for (const BridgingNodeV2& link : known.links) {
        if (same(link.fatherDeviceMAC, noMac))
            continue;
        AlgPatParameterV2& pat = known.pat.at(link.fatherDeviceMAC);
        for (int band = 0; band < ALG_BANDS; ++band) {
            const uint8_t signal = link.bridgingRssi[band];
            const uint8_t width = radio::band(band).width;
            AlgSinglePat* model = findConfiguration(pat, band, width, clearMcsOrder(signal, width));
            if (signal == 0 || model == nullptr)
                continue;
            const double reached = macEfficiency * link.bridgingRxRate[band];
            const double error = reached - modelRate(model->paraA, model->paraB, model->paraC, signal);
            const double step = std::clamp(4 * error / model->paraA, -1.0, 1.0);
            model->paraC = static_cast<float>(std::clamp(model->paraC + step, -49.0, -9.0));
        }
    }
}
