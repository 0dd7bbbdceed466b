/* SPDX-License-Identifier: Apache-2.0 */
/* Where values stand in a chart. */
#ifndef ALGDATA_SCALE_H
#define ALGDATA_SCALE_H

#include <string>
#include <vector>

namespace algdata::svg
{

/* Maps the values from `least` to `greatest` to the positions from `begin` to `end`. */
struct Scale {
    double least = 0, greatest = 1;
    double begin = 0, end = 1;

    /* A value outside of the scale stands at its edge. */
    double at(double value) const;
};

/* 2 to 7 round numbers that enclose the values; {0, 1} if both are 0. With `whole`, whole numbers only. */
std::vector<double> roundTicks(double least, double greatest, bool whole = false);

/* A scale from the first to the last of its ticks. */
Scale scaleOf(const std::vector<double>& ticks, double begin, double end);

/* "1200" or "0.1512": a number of a chart, with at most four decimals. */
std::string numberText(double value);

/* Moves positions apart until neighbours have at least this distance, within the limits if they fit. */
std::vector<double> spread(const std::vector<double>& wanted, double distance, double begin, double end);

/* The step, from 0 to steps - 1, of a value from 0 to `greatest`. */
int stepOf(double value, double greatest, int steps);

/* What describes a set of samples. */
struct Spread {
    double least, lowerQuartile, median, upperQuartile, greatest;
};

/* Only for a set that is not empty. A quartile between two samples is their weighted mean. */
Spread spreadOf(std::vector<double> samples);

} // namespace algdata::svg

#endif
