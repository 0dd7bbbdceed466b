/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A small random number generator (splitmix64). The distributions of <random> differ
 * between libraries, and a seed must give the same home everywhere.
 */
#ifndef MESH_ROUND_RANDOM_H
#define MESH_ROUND_RANDOM_H

#include <cstdint>

class Random
{
  public:
    explicit Random(uint64_t seed) : state(seed) {}

    uint64_t next()
    {
        uint64_t z = (state += 0x9e3779b97f4a7c15U);
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9U;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebU;
        return z ^ (z >> 31);
    }

    /* At least 0 and less than 1. */
    double uniform() { return static_cast<double>(next() >> 11) / 9007199254740992.0; }

    double between(double low, double high) { return low + (high - low) * uniform(); }

    int below(int bound) { return static_cast<int>(uniform() * bound); }

    /* Roughly normal: the sum of twelve uniform numbers. */
    double normal(double deviation)
    {
        double sum = -6;
        for (int i = 0; i < 12; ++i)
            sum += uniform();
        return sum * deviation;
    }

  private:
    uint64_t state;
};

#endif
