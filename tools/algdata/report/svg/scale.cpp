/* SPDX-License-Identifier: Apache-2.0 */
#include "report/svg/scale.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numeric>

#include <fmt/format.h>

namespace algdata::svg
{

double Scale::at(double value) const
{
    if (greatest <= least)
        return begin;
    const double part = std::clamp((value - least) / (greatest - least), 0.0, 1.0);
    return begin + part * (end - begin);
}

namespace
{

/* 1, 2 or 5 times a power of ten, so that about five of them make the length. */
double roundStep(double length)
{
    const double power = std::pow(10.0, std::floor(std::log10(length / 5)));
    for (const double factor : {1.0, 2.0, 5.0})
        if (length / (power * factor) <= 5)
            return power * factor;
    return power * 10;
}

} // namespace

std::vector<double> roundTicks(double least, double greatest, bool whole)
{
    if (greatest <= least)
        return least == 0 ? std::vector<double>{0, 1}
                          : roundTicks(std::min(0.0, least), std::max(0.0, greatest), whole);
    const double step = std::max(roundStep(greatest - least), whole ? 1.0 : 0.0);
    std::vector<double> ticks;
    const auto first = static_cast<int64_t>(std::floor(least / step));
    const auto last = static_cast<int64_t>(std::ceil(greatest / step));
    for (int64_t i = first; i <= last; ++i)
        ticks.push_back(static_cast<double>(i) * step);
    return ticks;
}

Scale scaleOf(const std::vector<double>& ticks, double begin, double end)
{
    return {ticks.front(), ticks.back(), begin, end};
}

std::string numberText(double value)
{
    const double rounded = std::round(value * 1e4) / 1e4;
    if (rounded == std::round(rounded))
        return fmt::format("{:.0f}", rounded == 0 ? 0.0 : rounded);
    std::string text = fmt::format("{:.4f}", rounded);
    text.resize(text.find_last_not_of('0') + 1);
    return text;
}

std::vector<double> spread(const std::vector<double>& wanted, double distance, double begin, double end)
{
    std::vector<size_t> order(wanted.size());
    std::iota(order.begin(), order.end(), size_t(0));
    std::stable_sort(order.begin(), order.end(), [&](size_t a, size_t b) { return wanted[a] < wanted[b]; });
    std::vector<double> placed = wanted;
    double free = begin;
    for (const size_t i : order) {
        placed[i] = std::max(placed[i], free);
        free = placed[i] + distance;
    }
    double limit = end;
    for (auto at = order.rbegin(); at != order.rend(); ++at) {
        placed[*at] = std::min(placed[*at], limit);
        limit = placed[*at] - distance;
    }
    return placed;
}

int stepOf(double value, double greatest, int steps)
{
    if (greatest <= 0)
        return 0;
    const int step = static_cast<int>(std::floor(value / greatest * steps));
    return std::clamp(step, 0, steps - 1);
}

Spread spreadOf(std::vector<double> samples)
{
    std::sort(samples.begin(), samples.end());
    const auto at = [&](double part) {
        const double place = part * static_cast<double>(samples.size() - 1);
        const auto below = static_cast<size_t>(place);
        const size_t above = std::min(below + 1, samples.size() - 1);
        return samples[below] + (place - std::floor(place)) * (samples[above] - samples[below]);
    };
    return {at(0), at(0.25), at(0.5), at(0.75), at(1)};
}

} // namespace algdata::svg
