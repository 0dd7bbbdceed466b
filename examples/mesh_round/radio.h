/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The radio of the simulated home: its five bands, how a signal fades, and which
 * MCS and rate a signal allows.
 *
 * The codes belong to this host; the module stores them as numbers. Only the band
 * and width indices match the module's threshold tables: getPeekThr() lists 40 MHz
 * on band 0 and 160 MHz on the others.
 */
#ifndef MESH_ROUND_RADIO_H
#define MESH_ROUND_RADIO_H

#include <cstdint>

#include "capacities.h"

namespace radio
{

/* Channel width codes. */
enum Width : uint8_t { width20, width40, width80, width160 };

struct Band {
    const char* name;
    double megahertz;
    double powerDbm;     /* radiated power of a mesh node */
    double wallDb;       /* loss through an inner wall */
    double floorDb;      /* loss through a ceiling */
    Width width;         /* channel width of the backhaul */
    uint8_t channel;     /* the home's channel on the band */
    double interference; /* mean share of the air that the neighbours use */
};

const Band& band(int index);

/* A place in the home in metres; z counts whole floors from the ground. */
struct Place {
    double x;
    double y;
    int floor;
};

/* The mean signal in dBm that a node at `from` has at `to`. */
double meanSignal(int bandIndex, const Place& from, const Place& to);

/* The highest MCS that a signal allows, 0 to 11; -1 if it allows none. */
int mcsFor(double dbm, Width width);

/* The rate in Mbit/s (802.11ax, short guard interval); 0 for an MCS of -1. */
int rateFor(int mcs, Width width, int streams);

/* The order of an MCS in the version 2 throughput model: 0 up to MCS 7, 1 up to MCS 9, 2 above. */
uint8_t mcsOrder(int mcs);

/* The signal code of the records: dB above a noise floor of -95 dBm, 0 at or below it. */
constexpr int noiseFloorDbm = -95;
uint8_t signalCode(double dbm);
int signalDbm(uint8_t code);

} // namespace radio

#endif
