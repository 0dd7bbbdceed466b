/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The simulated home: one FAP and five REs on three floors, 14 stations, four
 * neighbours. It takes the place of the drivers and daemons of a real host. The
 * host can only measure it, and can only move a device to another father or AP.
 *
 * Units of the measurements: rates in Mbit/s, utilizations in percent, delays
 * in tenths of a millisecond, signals in the code of radio.h.
 */
#ifndef MESH_ROUND_HOME_H
#define MESH_ROUND_HOME_H

#include <cstdint>
#include <string>
#include <vector>

#include "dataInterface.h"
#include "radio.h"
#include "random.h"

class Home
{
  public:
    explicit Home(uint64_t seed);

    /* Lets time pass between two rounds: people walk, links fade, neighbours use the air. */
    void passTime();

    /* Moves an RE to a father or a station to an AP; false if that is impossible. */
    bool move(const std::string& device, const std::string& target);

    /* The nodes in order of their numbers, the FAP first. */
    std::vector<std::string> nodeMacs() const;
    std::string ethernetFather(const std::string& mac) const; /* empty if there is no cable */
    std::string label(const std::string& mac) const;          /* a readable name */

    /* The measurements of a round. */
    std::vector<ApInfoAllV2> measureNodes();
    std::vector<BridgingNodeV2> measureBackhaul();
    std::vector<StaConnection> measureStations();
    std::vector<ScanningInfo> scan();
    ScanningInfo passingHotspot();

    /* The nodes that can be the RE's father: those in reach, except the nodes below it. */
    std::vector<std::string> fathersInReach(const std::string& re) const;
    TimeDelayInfo probeDelay(const std::string& re, const std::string& father);

    /* An extender that has left the home but is still in the files of an older firmware. */
    ApInfoAllV2 retiredExtender() const;
    std::vector<ScanningInfo> retiredSightings() const;

  private:
    enum class Medium { ethernet, powerLine, wireless };

    struct Node {
        std::string mac;
        std::string name;
        radio::Place place;
        int bands;  /* one bit per band index */
        int father; /* index of a node; -1 for the FAP */
        int cable;  /* node at the other end of an Ethernet cable; -1 without one */
        bool onPowerLine;
        double interference[ALG_BANDS]; /* share of the air that neighbours use here */
        double busy[ALG_BANDS];         /* share of the air that anyone uses here */
        double traffic;                 /* of its stations and of all nodes below it */
    };

    struct Station {
        std::string mac;
        std::string name;
        radio::Place place;
        int bands;
        int streams;
        uint8_t generation; /* of Wi-Fi, 4 to 7 */
        radio::Width width; /* above 2.4 GHz; on 2.4 GHz it is 20 MHz */
        uint8_t roaming;    /* bit 0: k, bit 1: v, bit 2: r */
        double usualDemand;
        bool carried; /* moves with a person */
        double demand;
        int ap;
        int band;
    };

    struct Neighbour {
        std::string mac;
        radio::Place place;
        int band;
        uint8_t channel;
    };

    int nodeIndex(const std::string& mac) const;
    bool isBelow(int node, int ancestor) const;
    double& fade(int a, int b);
    double fade(int a, int b) const;
    void driftFades(double keep, double deviation);

    Medium medium(int re, int father) const;
    double signal(int band, int from, int to) const;
    int backhaulRate(int band, int re, int father) const;
    int backhaulBand(int re, int father) const;
    double capacity(int re, int father) const;
    double hopDelay(int re, int father) const;

    double stationSignal(int band, int ap, int station) const;
    int stationMcs(int band, int ap, int station) const;
    static radio::Width stationWidth(int band, const Station& station);
    int stationBand(int ap, int station) const;
    int strongestAp(int station) const;
    void letStationsRoam();
    void computeLoad();

    ApNodeV2 nodeMetrics(int index) const;
    void appendSighting(std::vector<ScanningInfo>& sightings, int listener, const std::string& heard,
                        int band, uint8_t channel, double dbm);

    Random random;
    std::vector<Node> nodes;
    std::vector<Station> stations;
    std::vector<Neighbour> neighbours;
    std::vector<double> fades; /* dB per pair of devices, nodes before stations */
    double powerLineRate;
};

#endif
