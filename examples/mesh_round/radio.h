/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The air of the simulated home: its five bands, how a signal fades, and which
 * MCS and rate a signal carries.
 *
 * The codes are this host's own; the module stores them as plain numbers. Only
 * the band and width indices are chosen to fit the module's threshold tables:
 * 40 MHz on band 0 and 160 MHz on the others are what getPeekThr() lists.
 */
#ifndef MESH_ROUND_RADIO_H
#define MESH_ROUND_RADIO_H

#include <cstdint>

namespace radio
{

constexpr int bandCount = 5;

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
    double interference; /* mean share of the air that the neighbours take */
};

const Band& band(int index);

/* A place in the home in metres; z counts whole floors from the ground. */
struct Place {
    double x;
    double y;
    int floor;
};

/* Mean signal in dBm at `to` of a mesh node at `from`. */
double meanSignal(int bandIndex, const Place& from, const Place& to);

/* Highest MCS that a signal carries, 0 to 11; -1 when it carries none. */
int mcsFor(double dbm, Width width);

/* Rate in Mbit/s (802.11ax, short guard interval). An mcs of -1 gives 0. */
int rateFor(int mcs, Width width, int streams);

/* Order of an MCS in the version 2 throughput model: 0 up to MCS 7, 1 up to MCS 9, 2 above. */
uint8_t mcsOrder(int mcs);

/* Signal code of the records: dB above a noise floor of -95 dBm, 0 when at or below it. */
constexpr int noiseFloorDbm = -95;
uint8_t signalCode(double dbm);
int signalDbm(uint8_t code);

} // namespace radio

#endif
