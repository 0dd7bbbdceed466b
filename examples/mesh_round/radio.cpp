/* SPDX-License-Identifier: Apache-2.0 */
#include "radio.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace radio
{

namespace
{

constexpr double floorHeight = 2.8;
constexpr double roomWidth = 4.0;
constexpr double roomDepth = 4.5;

constexpr Band bands[ALG_BANDS] = {
    {"2.4 GHz", 2437, 20, 4, 12, width40, 6, 0.34},       {"5 GHz low", 5250, 23, 6, 16, width160, 36, 0.20},
    {"5 GHz high", 5570, 24, 6, 16, width160, 100, 0.12}, {"6 GHz low", 6025, 23, 7, 18, width160, 1, 0.04},
    {"6 GHz high", 6825, 23, 7, 19, width160, 161, 0.02},
};

/* One row of the MCS table, with the signal that a current receiver needs at 20 MHz. */
struct McsRow {
    double needsDbm;
    double bitsPerCarrier; /* bits of the modulation times the coding rate */
};

constexpr McsRow mcsTable[] = {
    {-88, 1 * 1.0 / 2}, {-85, 2 * 1.0 / 2}, {-83, 2 * 3.0 / 4},  {-80, 4 * 1.0 / 2},
    {-76, 4 * 3.0 / 4}, {-72, 6 * 2.0 / 3}, {-71, 6 * 3.0 / 4},  {-70, 6 * 5.0 / 6},
    {-65, 8 * 3.0 / 4}, {-63, 8 * 5.0 / 6}, {-60, 10 * 3.0 / 4}, {-58, 10 * 5.0 / 6},
};

constexpr int dataCarriers[] = {234, 468, 980, 1960}; /* per width code */
constexpr double symbolMicroseconds = 13.6;

/* Rooms form a grid, so the grid lines between two places are the walls between them. */
int wallsBetween(const Place& a, const Place& b)
{
    auto lines = [](double from, double to, double spacing) {
        return std::abs(static_cast<int>(from / spacing) - static_cast<int>(to / spacing));
    };
    return lines(a.x, b.x, roomWidth) + lines(a.y, b.y, roomDepth);
}

} // namespace

const Band& band(int index)
{
    return bands[index];
}

double meanSignal(int bandIndex, const Place& from, const Place& to)
{
    const Band& air = band(bandIndex);
    const double rise = floorHeight * (from.floor - to.floor);
    const double metres = std::max(
        1.0, std::sqrt((from.x - to.x) * (from.x - to.x) + (from.y - to.y) * (from.y - to.y) + rise * rise));
    const double lossAtOneMetre = 20 * std::log10(air.megahertz) - 27.55;

    return air.powerDbm - lossAtOneMetre - 22 * std::log10(metres) - air.wallDb * wallsBetween(from, to) -
           air.floorDb * std::abs(from.floor - to.floor);
}

int mcsFor(double dbm, Width width)
{
    const double atWidth20 = dbm - 3.0 * width; /* each doubling of the width doubles the noise */
    int mcs = -1;
    for (const McsRow& row : mcsTable) {
        if (atWidth20 < row.needsDbm)
            break;
        ++mcs;
    }
    return mcs;
}

int rateFor(int mcs, Width width, int streams)
{
    if (mcs < 0)
        return 0;
    return static_cast<int>(
        std::lround(dataCarriers[width] * mcsTable[mcs].bitsPerCarrier * streams / symbolMicroseconds));
}

uint8_t mcsOrder(int mcs)
{
    return mcs <= 7 ? 0 : mcs <= 9 ? 1 : 2;
}

uint8_t signalCode(double dbm)
{
    return static_cast<uint8_t>(std::clamp(std::lround(dbm) - noiseFloorDbm, 0L, 255L));
}

int signalDbm(uint8_t code)
{
    return noiseFloorDbm + code;
}

} // namespace radio
