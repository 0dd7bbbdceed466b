/* SPDX-License-Identifier: Apache-2.0 */
#include "query/figures.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include <fmt/format.h>

#include "text/hash.h"

namespace algdata
{

namespace
{

/* Up to so many distinct values are counted exactly. Also the size of the sample beyond that. */
constexpr size_t exactLimit = 8192;

/* With 2^14 registers the standard error of the estimate is 0.8 %. */
constexpr unsigned registerBits = 14;

} // namespace

/* ---- Distinct texts ----------------------------------------------------- */

void Distinct::add(std::string_view text)
{
    const uint64_t hash = hashOf(text).high;
    if (!isExact()) {
        estimate(hash);
        return;
    }
    hashes.insert(hash);
    if (hashes.size() <= exactLimit)
        return;
    registers.assign(size_t(1) << registerBits, 0);
    for (const uint64_t known : hashes)
        estimate(known);
    std::unordered_set<uint64_t>().swap(hashes);
}

/* HyperLogLog: the high bits choose a register, which keeps the longest run of leading zeros of the rest. */
void Distinct::estimate(uint64_t hash)
{
    uint8_t& longest = registers[hash >> (64 - registerBits)];
    uint64_t rest = hash << registerBits;
    uint8_t run = 1;
    for (; run <= 64 - registerBits && (rest >> 63) == 0; rest <<= 1)
        ++run;
    longest = std::max(longest, run);
}

size_t Distinct::count() const
{
    if (isExact())
        return hashes.size();
    const double all = static_cast<double>(registers.size());
    double sum = 0;
    for (const uint8_t run : registers)
        sum += std::ldexp(1, -run);
    const double estimated = 0.7213 / (1 + 1.079 / all) * all * all / sum;
    const auto empty = std::count(registers.begin(), registers.end(), 0);
    /* While many registers are empty, their number is the better estimate. */
    const bool few = estimated <= 2.5 * all && empty != 0;
    return static_cast<size_t>(
        std::lround(few ? all * std::log(all / static_cast<double>(empty)) : estimated));
}

/* ---- Numbers ------------------------------------------------------------ */

void SmallNumbers::add(uint16_t number)
{
    Page& page = pages[number >> 8];
    if (page.empty())
        page.assign(256, 0);
    ++page[number & 255];
}

size_t SmallNumbers::distinct() const
{
    size_t count = 0;
    for (const Page& page : pages)
        count +=
            static_cast<size_t>(std::count_if(page.begin(), page.end(), [](size_t n) { return n != 0; }));
    return count;
}

double SmallNumbers::at(size_t place) const
{
    for (size_t high = 0; high < std::size(pages); ++high) {
        for (size_t low = 0; low < pages[high].size(); ++low) {
            if (place < pages[high][low])
                return static_cast<double>(high * 256 + low);
            place -= pages[high][low];
        }
    }
    return 0;
}

void OtherNumbers::add(double number)
{
    if (!isExact()) {
        addToSample(number);
        return;
    }
    ++counts[number];
    if (counts.size() <= exactLimit)
        return;
    for (const auto& [known, times] : counts)
        for (size_t i = 0; i < times; ++i)
            addToSample(known);
    counts.clear();
}

/* Reservoir sampling: keeps the first numbers; later ones replace them with probability exactLimit / seen. */
void OtherNumbers::addToSample(double number)
{
    char bytes[sizeof number];
    std::memcpy(bytes, &number, sizeof number);
    different.add({bytes, sizeof bytes});
    ++seen;
    const size_t place = seen <= exactLimit ? seen - 1 : static_cast<size_t>(mixed(seen) % seen);
    if (place >= exactLimit)
        return;
    sample.resize(std::max(sample.size(), place + 1));
    sample[place] = number;
}

double OtherNumbers::at(size_t place) const
{
    if (!isExact()) {
        std::vector<double> ordered = sample;
        std::sort(ordered.begin(), ordered.end());
        return ordered[static_cast<size_t>(static_cast<double>(place) / static_cast<double>(seen) *
                                           static_cast<double>(ordered.size()))];
    }
    for (const auto& [number, times] : counts) {
        if (place < times)
            return number;
        place -= times;
    }
    return 0;
}

/* ---- A field ------------------------------------------------------------ */

FieldFigures::FieldFigures(const Pick& pick) : fieldName(pick.name), field(*pick.field) {}

void FieldFigures::add(Token value)
{
    if (isMac()) {
        if (!present(value) || !algdata::isMac(value)) {
            ++damaged;
            return;
        }
        ++count;
        zeroCount += value == "000000000000" ? 1 : 0;
        macs.add(value);
        return;
    }
    const std::optional<double> number = numberIn(field, value);
    if (!number)
        ++damaged;
    else
        addNumber(*number);
}

void FieldFigures::addNumber(double number)
{
    ++count;
    zeroCount += number == 0 ? 1 : 0;
    least = std::min(least.value_or(number), number);
    greatest = std::max(greatest.value_or(number), number);
    if (field.type == Type::U8 || field.type == Type::U16) {
        if (small == nullptr)
            small = std::make_unique<SmallNumbers>();
        small->add(static_cast<uint16_t>(number));
    } else {
        others.add(number);
    }
}

size_t FieldFigures::distinct() const
{
    return isMac() ? macs.count() : small != nullptr ? small->distinct() : others.distinct();
}

bool FieldFigures::distinctIsExact() const
{
    return macs.isExact() && others.isExact();
}

double FieldFigures::at(size_t place) const
{
    return small != nullptr ? small->at(place) : others.at(place);
}

std::optional<double> FieldFigures::median() const
{
    if (isMac() || count == 0)
        return std::nullopt;
    return (at((count - 1) / 2) + at(count / 2)) / 2;
}

std::optional<double> medianOf(std::vector<double>& values)
{
    if (values.empty())
        return std::nullopt;
    std::sort(values.begin(), values.end());
    return (values[(values.size() - 1) / 2] + values[values.size() / 2]) / 2;
}

std::string figureText(const std::optional<double>& number)
{
    return number ? fmt::format("{:.12g}", *number) : "";
}

} // namespace algdata
