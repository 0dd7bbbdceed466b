/* SPDX-License-Identifier: Apache-2.0 */
#include "home.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "text.h"

namespace
{

constexpr double macEfficiency = 0.65; /* share of a Wi-Fi rate that reaches the user */
constexpr double busiest = 0.94;
constexpr double homeWidth = 12;
constexpr double homeDepth = 9;

enum Bands { only24 = 0x01, upTo5 = 0x07, upTo6 = 0x0f };

bool has(int bands, int band)
{
    return (bands >> band & 1) != 0;
}

/* Wi-Fi 4 ends at MCS 7 and Wi-Fi 5 at MCS 9, in the steps of the table in radio.cpp. */
int highestMcs(int generation)
{
    return generation <= 4 ? 7 : generation == 5 ? 9 : 11;
}

/* Packets of 1500 bytes in a sample of 100 ms. The field of the file has four digits. */
uint16_t packets(double megabits)
{
    return static_cast<uint16_t>(std::clamp(std::lround(megabits * 0.1e6 / 12000), 1L, 9999L));
}

uint8_t percent(double share)
{
    return static_cast<uint8_t>(std::lround(100 * std::clamp(share, 0.0, busiest)));
}

} // namespace

/* ---- The nodes and the stations ----------------------------------------- */

Home::Home(uint64_t seed) : random(seed), powerLineRate(340)
{
    nodes = {
        {"0a4e00000001", "FAP hall", {2.0, 4.0, 0}, upTo6, -1, -1, true, {}, {}, 0},
        {"0a4e00000002", "RE1 living room", {10.0, 3.0, 0}, upTo6, 0, -1, false, {}, {}, 0},
        {"0a4e00000003", "RE2 study", {3.0, 7.0, 1}, upTo6, 0, 0, false, {}, {}, 0},
        {"0a4e00000004", "RE3 workshop", {11.0, 8.0, 0}, upTo5, 0, -1, true, {}, {}, 0},
        {"0a4e00000005", "RE4 bedroom", {9.0, 3.0, 1}, upTo6, 0, -1, false, {}, {}, 0},
        {"0a4e00000006", "RE5 attic", {6.0, 5.0, 2}, upTo5, 1, -1, false, {}, {}, 0},
    };
    using namespace radio;
    stations = {
        {"0a5700000001", "Anna's phone", {3, 2, 0}, upTo6, 2, 6, width160, 7, 8, true, 0, -1, 0},
        {"0a5700000002", "Ben's phone", {9, 5, 1}, upTo5, 2, 6, width80, 7, 8, true, 0, -1, 0},
        {"0a5700000003", "Cleo's phone", {5, 3, 2}, upTo5, 2, 5, width80, 3, 6, true, 0, -1, 0},
        {"0a5700000004", "laptop", {2, 6, 1}, upTo6, 2, 6, width160, 7, 20, true, 0, -1, 0},
        {"0a5700000005", "work station", {4, 8, 1}, upTo6, 4, 7, width160, 7, 45, false, 0, -1, 0},
        {"0a5700000006", "television", {11, 2, 0}, upTo5, 2, 5, width80, 0, 28, false, 0, -1, 0},
        {"0a5700000007", "console", {9, 1, 0}, upTo5, 3, 6, width80, 0, 35, false, 0, -1, 0},
        {"0a5700000008", "tablet", {10, 4, 1}, upTo5, 2, 5, width80, 3, 12, true, 0, -1, 0},
        {"0a5700000009", "printer", {3, 8, 1}, only24, 1, 4, width20, 0, 0.3, false, 0, -1, 0},
        {"0a570000000a", "camera", {11, 8, 0}, only24, 1, 4, width20, 0, 4, false, 0, -1, 0},
        {"0a570000000b", "doorbell", {1, 1, 0}, only24, 1, 4, width20, 0, 2, false, 0, -1, 0},
        {"0a570000000c", "thermostat", {6, 2, 0}, only24, 1, 4, width20, 0, 0.1, false, 0, -1, 0},
        {"0a570000000d", "projector", {8, 6, 2}, upTo5, 2, 6, width80, 3, 30, false, 0, -1, 0},
        {"0a570000000e", "loudspeaker", {8, 7, 0}, only24, 2, 4, width20, 0, 1, false, 0, -1, 0},
    };
    neighbours = {
        {"0aee00000001", {-7, 3, 0}, 0, 1},
        {"0aee00000002", {-8, 6, 1}, 1, 44},
        {"0aee00000003", {19, 4, 0}, 0, 11},
        {"0aee00000004", {21, 7, 1}, 2, 108},
    };

    fades.assign((nodes.size() + stations.size()) * nodes.size(), 0.0);
    driftFades(0, 3);
    for (Node& node : nodes)
        for (int band = 0; band < ALG_BANDS; ++band)
            node.interference[band] = radio::band(band).interference;
    passTime();
}

std::vector<std::string> Home::nodeMacs() const
{
    std::vector<std::string> macs;
    for (const Node& node : nodes)
        macs.push_back(node.mac);
    return macs;
}

std::string Home::ethernetFather(const std::string& mac) const
{
    const Node& node = nodes[nodeIndex(mac)];
    return node.cable < 0 ? std::string() : nodes[node.cable].mac;
}

std::string Home::label(const std::string& mac) const
{
    for (const Node& node : nodes)
        if (node.mac == mac)
            return node.name;
    for (const Station& station : stations)
        if (station.mac == mac)
            return station.name;
    return mac;
}

int Home::nodeIndex(const std::string& mac) const
{
    for (size_t i = 0; i < nodes.size(); ++i)
        if (nodes[i].mac == mac)
            return static_cast<int>(i);
    return -1;
}

bool Home::isBelow(int node, int ancestor) const
{
    for (; node >= 0; node = nodes[node].father)
        if (node == ancestor)
            return true;
    return false;
}

/* ---- Time --------------------------------------------------------------- */

void Home::passTime()
{
    driftFades(0.9, 1.4);
    powerLineRate = std::clamp(powerLineRate + random.normal(25), 180.0, 480.0);

    for (Node& node : nodes)
        for (int band = 0; band < ALG_BANDS; ++band) {
            const double mean = radio::band(band).interference;
            double& share = node.interference[band];
            share = std::clamp(mean + 0.7 * (share - mean) + random.normal(0.15 * mean), 0.0, 0.8);
        }

    for (Station& station : stations) {
        station.demand = station.usualDemand * random.between(0.4, 1.6);
        if (station.carried && random.below(3) == 0) {
            const double x = random.between(0.5, homeWidth - 0.5);
            const double y = random.between(0.5, homeDepth - 0.5);
            station.place = {x, y, random.below(3)};
        }
    }
    letStationsRoam();
    computeLoad();
}

/* A link fades equally in both directions and on all bands. */
double& Home::fade(int a, int b)
{
    return fades[std::max(a, b) * nodes.size() + std::min(a, b)];
}

double Home::fade(int a, int b) const
{
    return fades[std::max(a, b) * nodes.size() + std::min(a, b)];
}

void Home::driftFades(double keep, double deviation)
{
    for (double& value : fades)
        value = keep * value + random.normal(deviation);
}

/* A station stays with its AP until the signal is almost lost, then moves to the strongest. */
void Home::letStationsRoam()
{
    for (size_t i = 0; i < stations.size(); ++i) {
        const int self = static_cast<int>(i);
        Station& station = stations[i];
        if (station.ap < 0 || stationMcs(stationBand(station.ap, self), station.ap, self) < 1)
            station.ap = strongestAp(self);
        station.band = stationBand(station.ap, self);
    }
}

/* Adds up the traffic along the tree, then the use of each band at each node. */
void Home::computeLoad()
{
    for (Node& node : nodes) {
        node.traffic = 0;
        std::copy(std::begin(node.interference), std::end(node.interference), std::begin(node.busy));
    }
    for (size_t i = 0; i < stations.size(); ++i) {
        const Station& station = stations[i];
        for (int node = station.ap; node >= 0; node = nodes[node].father)
            nodes[node].traffic += station.demand;
        const int mcs = stationMcs(station.band, station.ap, static_cast<int>(i));
        const double rate = std::max(
            1, radio::rateFor(mcs, stationWidth(station.band, station), std::min(station.streams, 2)));
        nodes[station.ap].busy[station.band] += station.demand / (macEfficiency * rate);
    }
    for (size_t i = 1; i < nodes.size(); ++i) {
        const int re = static_cast<int>(i);
        const int father = nodes[i].father;
        const int band = backhaulBand(re, father);
        if (medium(re, father) != Medium::wireless || band < 0)
            continue;
        const double share = nodes[i].traffic / (macEfficiency * backhaulRate(band, re, father));
        nodes[i].busy[band] += share;
        nodes[father].busy[band] += share;
    }
    for (Node& node : nodes)
        for (double& share : node.busy)
            share = std::min(share, busiest);
}

bool Home::move(const std::string& device, const std::string& target)
{
    const int to = nodeIndex(target);
    const int re = nodeIndex(device);
    if (to < 0)
        return false;

    if (re > 0) {
        if (isBelow(to, re) || (medium(re, to) == Medium::wireless && backhaulBand(re, to) < 0))
            return false;
        nodes[re].father = to;
    } else {
        auto station = std::find_if(stations.begin(), stations.end(),
                                    [&](const Station& candidate) { return candidate.mac == device; });
        if (station == stations.end())
            return false;
        station->ap = to;
    }
    letStationsRoam();
    computeLoad();
    return true;
}

/* ---- Links between nodes ------------------------------------------------ */

Home::Medium Home::medium(int re, int father) const
{
    if (nodes[re].cable == father)
        return Medium::ethernet;
    if (nodes[re].onPowerLine && nodes[father].onPowerLine)
        return Medium::powerLine;
    return Medium::wireless;
}

double Home::signal(int band, int from, int to) const
{
    return radio::meanSignal(band, nodes[from].place, nodes[to].place) + fade(from, to);
}

int Home::backhaulRate(int band, int re, int father) const
{
    if (!has(nodes[re].bands & nodes[father].bands, band))
        return 0;
    const radio::Width width = radio::band(band).width;
    return radio::rateFor(radio::mcsFor(signal(band, father, re), width), width, 2);
}

int Home::backhaulBand(int re, int father) const
{
    int best = -1;
    double bestRate = 0;
    for (int band = 0; band < ALG_BANDS; ++band) {
        const double rate = backhaulRate(band, re, father) * (1 - nodes[father].interference[band]);
        if (rate > bestRate) {
            best = band;
            bestRate = rate;
        }
    }
    return best;
}

/* What a link can carry for users if it has no other traffic. */
double Home::capacity(int re, int father) const
{
    switch (medium(re, father)) {
    case Medium::ethernet:
        return 940;
    case Medium::powerLine:
        return 0.7 * powerLineRate;
    case Medium::wireless:
        break;
    }
    const int band = backhaulBand(re, father);
    return band < 0 ? 0
                    : macEfficiency * backhaulRate(band, re, father) * (1 - nodes[father].interference[band]);
}

/* The delay of one hop in milliseconds. It grows with the load of the link. */
double Home::hopDelay(int re, int father) const
{
    const double ownDelay[] = {0.3, 3.0, 1.2}; /* in the order of Medium */
    const double load = std::min(0.9, nodes[re].traffic / std::max(1.0, capacity(re, father)));
    return ownDelay[static_cast<int>(medium(re, father))] / (1 - load);
}

std::vector<std::string> Home::fathersInReach(const std::string& re) const
{
    std::vector<std::string> fathers;
    const int self = nodeIndex(re);
    for (size_t i = 0; i < nodes.size(); ++i) {
        const int other = static_cast<int>(i);
        if (!isBelow(other, self) && capacity(self, other) > 0)
            fathers.push_back(nodes[i].mac);
    }
    return fathers;
}

TimeDelayInfo Home::probeDelay(const std::string& re, const std::string& father)
{
    TimeDelayInfo probe = {};
    putText(probe.fatherMAC, father);

    int node = nodeIndex(father);
    double milliseconds = hopDelay(nodeIndex(re), node);
    for (; nodes[node].father >= 0; node = nodes[node].father)
        milliseconds += hopDelay(node, nodes[node].father);

    for (uint16_t& sample : probe.delayTime) {
        const double jitter = 1 + 0.25 * random.uniform();
        const double spike = random.below(20) == 0 ? 3 : 1;
        sample =
            static_cast<uint16_t>(std::clamp(std::lround(10 * milliseconds * jitter * spike), 1L, 1000L));
    }
    return probe;
}

/* ---- Links of stations -------------------------------------------------- */

double Home::stationSignal(int band, int ap, int station) const
{
    return radio::meanSignal(band, nodes[ap].place, stations[station].place) +
           fade(ap, static_cast<int>(nodes.size()) + station);
}

radio::Width Home::stationWidth(int band, const Station& station)
{
    return band == 0 ? radio::width20 : station.width;
}

int Home::stationMcs(int band, int ap, int station) const
{
    if (!has(nodes[ap].bands & stations[station].bands, band))
        return -1;
    const int mcs = radio::mcsFor(stationSignal(band, ap, station), stationWidth(band, stations[station]));
    return std::min(mcs, highestMcs(stations[station].generation));
}

int Home::stationBand(int ap, int station) const
{
    int best = 0;
    int bestRate = 0;
    for (int band = 0; band < ALG_BANDS; ++band) {
        const int mcs = stationMcs(band, ap, station);
        const int rate =
            radio::rateFor(mcs, stationWidth(band, stations[station]), stations[station].streams);
        if (rate > bestRate) {
            best = band;
            bestRate = rate;
        }
    }
    return best;
}

int Home::strongestAp(int station) const
{
    int best = 0;
    for (size_t ap = 1; ap < nodes.size(); ++ap)
        if (stationSignal(0, static_cast<int>(ap), station) > stationSignal(0, best, station))
            best = static_cast<int>(ap);
    return best;
}

/* ---- Measurements ------------------------------------------------------- */

ApNodeV2 Home::nodeMetrics(int index) const
{
    const Node& node = nodes[index];
    ApNodeV2 metrics = {};
    putText(metrics.deviceMAC, node.mac);
    putText(metrics.fatherDeviceMAC, node.father < 0 ? noMac : nodes[node.father].mac);
    metrics.tipc_node = static_cast<uint8_t>(index + 1);

    const bool isRe = node.father >= 0;
    const Medium link = isRe ? medium(index, node.father) : Medium::wireless;
    for (int band = 0; band < ALG_BANDS; ++band) {
        metrics.offset[band] = static_cast<uint16_t>(10 * index + band); /* calibration, tenths of a dB */
        if (!has(node.bands, band))
            continue;
        metrics.wirelessChannelUtilization[band] = percent(node.busy[band]);
        if (isRe && link == Medium::wireless) {
            const auto rate = static_cast<uint16_t>(backhaulRate(band, index, node.father));
            metrics.wirelessRxRate[band] = rate;
            metrics.wirelessTxRate[band] = static_cast<uint16_t>(rate * 19 / 20);
        }
    }
    if (node.onPowerLine) {
        metrics.plcRate = static_cast<uint16_t>(std::lround(powerLineRate));
        metrics.plcUtilization = link == Medium::powerLine ? percent(node.traffic / capacity(index, 0)) : 0;
    }
    if (node.cable >= 0) {
        metrics.ethernetRate = 1000;
        metrics.ethernetUtilization =
            link == Medium::ethernet ? percent(node.traffic / metrics.ethernetRate) : 0;
    }
    return metrics;
}

std::vector<ApInfoAllV2> Home::measureNodes()
{
    std::vector<ApInfoAllV2> all;
    for (size_t i = 0; i < nodes.size(); ++i) {
        ApInfoAllV2 info = {};
        info.alg_version = {2, 1};
        info.apNodeV2 = nodeMetrics(static_cast<int>(i));
        for (int band = 0; band < ALG_BANDS; ++band) {
            if (!has(nodes[i].bands, band))
                continue;
            AlgWifiMode& mode = info.algWifiMode[band];
            mode.available = 1;
            mode.NSS = MIMO_2;
            mode.wifiMode = 6;
            mode.bandWidth = radio::band(band).width;
            mode.mcsLevel = 11;
            mode.channel = radio::band(band).channel;
        }
        all.push_back(info);
    }
    return all;
}

/* Reports each RE on a wireless link, and the FAP without a father and without values. */
std::vector<BridgingNodeV2> Home::measureBackhaul()
{
    std::vector<BridgingNodeV2> links;
    for (size_t i = 0; i < nodes.size(); ++i) {
        const int self = static_cast<int>(i);
        const int father = nodes[i].father;
        if (father >= 0 && medium(self, father) != Medium::wireless)
            continue;

        BridgingNodeV2 link = {};
        putText(link.deviceMAC, nodes[i].mac);
        putText(link.fatherDeviceMAC, father < 0 ? noMac : nodes[father].mac);
        for (int band = 0; father >= 0 && band < ALG_BANDS; ++band) {
            const int rate = backhaulRate(band, self, father);
            if (rate == 0)
                continue;
            const double dbm = signal(band, father, self);
            const int mcs = radio::mcsFor(dbm, radio::band(band).width);
            link.bridgingRssi[band] = radio::signalCode(dbm + random.normal(0.7));
            link.bridgingRxRate[band] = static_cast<uint16_t>(rate);
            link.bridgingTxRate[band] = static_cast<uint16_t>(rate * 19 / 20);
            link.bridgingRxMcs[band] = static_cast<uint8_t>(mcs);
            link.bridgingTxMcs[band] = static_cast<uint8_t>(mcs);
        }
        links.push_back(link);
    }
    return links;
}

std::vector<StaConnection> Home::measureStations()
{
    std::vector<StaConnection> samples;
    for (size_t i = 0; i < stations.size(); ++i) {
        const int self = static_cast<int>(i);
        const Station& station = stations[i];
        const radio::Width width = stationWidth(station.band, station);
        const int mcs = std::max(0, stationMcs(station.band, station.ap, self));
        const int rate = radio::rateFor(mcs, width, station.streams);

        StaConnection sample = {};
        putText(sample.deviceMac, station.mac);
        putText(sample.apMac, nodes[station.ap].mac);
        sample.connectBand = static_cast<uint16_t>(station.band);
        sample.rssi = radio::signalCode(stationSignal(station.band, station.ap, self) + random.normal(1));
        sample.rxRate = static_cast<uint16_t>(rate);
        sample.txRate = static_cast<uint16_t>(rate * 9 / 10);
        sample.rxPackageCount = packets(station.demand);
        sample.txPackageCount = packets(station.demand / 12);
        sample.wifimode = station.generation;
        sample.bandwidth = width;
        sample.mcslevel = static_cast<uint16_t>(mcs);
        sample.mimo = static_cast<uint16_t>(station.streams);
        sample.kvrCapacity = station.roaming;
        sample.noiselevel = -radio::noiseFloorDbm;
        samples.push_back(sample);
    }
    return samples;
}

/* Leaves out a signal that is too weak to tell from noise. */
void Home::appendSighting(std::vector<ScanningInfo>& sightings, int listener, const std::string& heard,
                          int band, uint8_t channel, double dbm)
{
    const uint8_t code = radio::signalCode(dbm + random.normal(1));
    if (code < 6 || !has(nodes[listener].bands, band))
        return;
    ScanningInfo sighting = {};
    putText(sighting.deviceMAC, nodes[listener].mac);
    putText(sighting.neighbourMAC, heard);
    sighting.band = static_cast<uint8_t>(band);
    sighting.channel = channel;
    sighting.rssi = code;
    sightings.push_back(sighting);
}

/* Every node hears the other nodes, the stations and the neighbours, each on its bands. */
std::vector<ScanningInfo> Home::scan()
{
    std::vector<ScanningInfo> sightings;
    const int nodeCount = static_cast<int>(nodes.size());
    for (int self = 0; self < nodeCount; ++self) {
        for (int other = 0; other < nodeCount; ++other)
            for (int band = 0; other != self && band < ALG_BANDS; ++band)
                if (has(nodes[other].bands, band))
                    appendSighting(sightings, self, nodes[other].mac, band, radio::band(band).channel,
                                   signal(band, other, self));
        for (size_t i = 0; i < stations.size(); ++i)
            appendSighting(sightings, self, stations[i].mac, stations[i].band,
                           radio::band(stations[i].band).channel,
                           stationSignal(stations[i].band, self, static_cast<int>(i)));
        for (const Neighbour& neighbour : neighbours)
            appendSighting(sightings, self, neighbour.mac, neighbour.band, neighbour.channel,
                           radio::meanSignal(neighbour.band, neighbour.place, nodes[self].place));
    }
    return sightings;
}

/* Someone passes the house with a hotspot. The FAP is next to the street and hears it. */
ScanningInfo Home::passingHotspot()
{
    ScanningInfo sighting = {};
    char mac[ALG_MAC_SIZE];
    std::snprintf(mac, sizeof mac, "0aef%08x", static_cast<unsigned>(random.next() & 0xffffffffU));
    putText(sighting.deviceMAC, nodes[0].mac);
    putText(sighting.neighbourMAC, mac);
    sighting.band = 0;
    sighting.channel = 6;
    sighting.rssi = static_cast<uint8_t>(10 + random.below(15));
    return sighting;
}

/* ---- The extender that has left ----------------------------------------- */

ApInfoAllV2 Home::retiredExtender() const
{
    ApInfoAllV2 info = {};
    info.alg_version = {1, 4};
    info.apNodeV2 = nodeMetrics(1);
    putText(info.apNodeV2.deviceMAC, "0a4e000000ff");
    info.apNodeV2.tipc_node = 99;
    return info;
}

std::vector<ScanningInfo> Home::retiredSightings() const
{
    std::vector<ScanningInfo> sightings(2);
    for (size_t i = 0; i < sightings.size(); ++i) {
        putText(sightings[i].deviceMAC, "0a4e000000ff");
        putText(sightings[i].neighbourMAC, nodes[i].mac);
        sightings[i].channel = radio::band(0).channel;
        sightings[i].rssi = 40;
    }
    return sightings;
}
