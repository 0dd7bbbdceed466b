/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALGDATA_SPARKLINE_H
#define ALGDATA_SPARKLINE_H

#include <string>
#include <vector>

namespace algdata
{

/*
 * Draws values as a row of bars, "▁▄█" for 1 2 3: the smallest is the lowest bar. A value that is
 * not a number is a gap. Of more than `width` values, each bar is the mean of its neighbours.
 */
std::string sparkline(const std::vector<double>& values, size_t width);

} // namespace algdata

#endif
