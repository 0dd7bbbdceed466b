/* SPDX-License-Identifier: Apache-2.0 */
#include "text/sparkline.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace algdata
{

namespace
{

constexpr const char* bars[] = {"▁", "▂", "▃", "▄", "▅", "▆", "▇", "█"};
constexpr size_t levels = std::size(bars);

/* The mean of the numbers in a part of the values; not a number if there are none. */
double meanOf(const std::vector<double>& values, size_t begin, size_t end)
{
    double sum = 0;
    size_t count = 0;
    for (size_t i = begin; i < end; ++i) {
        sum += std::isnan(values[i]) ? 0 : values[i];
        count += std::isnan(values[i]) ? 0 : 1;
    }
    return count == 0 ? std::nan("") : sum / static_cast<double>(count);
}

} // namespace

std::string sparkline(const std::vector<double>& values, size_t width)
{
    const size_t columns = std::min(values.size(), width);
    std::vector<double> means;
    for (size_t i = 0; i < columns; ++i)
        means.push_back(meanOf(values, i * values.size() / columns, (i + 1) * values.size() / columns));
    double least = std::nan("");
    double greatest = std::nan("");
    for (const double mean : means) {
        least = std::fmin(least, mean);
        greatest = std::fmax(greatest, mean);
    }
    std::string text;
    for (const double mean : means) {
        const double share = greatest > least ? (mean - least) / (greatest - least) : 0.5;
        text += std::isnan(mean) ? " " : bars[std::lround(share * (levels - 1))];
    }
    return text;
}

} // namespace algdata
