/* SPDX-License-Identifier: Apache-2.0 */
#include "query/ranks.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

#include <fmt/format.h>

#include "commandline/arguments.h"

namespace algdata
{

namespace
{

constexpr Rank signBit = Rank(1) << 63;

/* Twelve hexadecimal digits as a number. */
Rank rankOfMac(Token text)
{
    if (!isMac(text))
        return noRank;
    Rank rank = 0;
    std::from_chars(text.data(), text.data() + text.size(), rank, 16);
    return rank;
}

Rank rankOfReal(double number)
{
    number += 0.0; /* turns -0 into 0 */
    Rank bits;
    std::memcpy(&bits, &number, sizeof bits);
    return (bits & signBit) != 0 ? ~bits : bits | signBit;
}

/* "a4:c3:f0:00:00:10" as "a4c3f0000010". */
std::string withoutColons(const std::string& text)
{
    std::string digits;
    for (size_t i = 0; i < text.size(); ++i) {
        const bool separator = text.size() == 17 && i % 3 == 2;
        if (separator != (text[i] == ':'))
            return text;
        if (!separator)
            digits += text[i];
    }
    return digits;
}

} // namespace

std::optional<double> finiteNumber(Token text)
{
    double number = 0;
    const char* const end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, number);
    if (text.empty() || stopped != end || error != std::errc() || !std::isfinite(number))
        return std::nullopt;
    return number;
}

std::optional<double> numberOf(Type type, Token text)
{
    if (!present(text))
        return std::nullopt;
    if (type == Type::F32) {
        const bool plus = text.size() > 1 && text[0] == '+' && text[1] != '-';
        const std::optional<double> number = finiteNumber(text.substr(plus ? 1 : 0));
        const bool fits = number && std::fabs(*number) <= std::numeric_limits<float>::max();
        return fits ? number : std::nullopt;
    }
    const std::optional<Number> number = wholeNumber(text);
    const bool fits = number && !number->huge && number->magnitude <= typeMax(type) &&
                      (!number->negative || number->magnitude == 0);
    return fits ? std::optional<double>(static_cast<double>(number->magnitude)) : std::nullopt;
}

Rank rankOfWhole(int64_t number)
{
    return static_cast<Rank>(number) ^ signBit;
}

Rank rankOf(Type type, Token text)
{
    if (!present(text))
        return noRank;
    if (type == Type::Mac)
        return rankOfMac(text);
    if (type == Type::F32) {
        const std::optional<double> number = numberOf(type, text);
        return number ? rankOfReal(*number) : noRank;
    }
    const std::optional<Number> number = wholeNumber(text);
    if (!number || number->huge || number->magnitude >= INT64_MAX)
        return noRank;
    const int64_t magnitude = static_cast<int64_t>(number->magnitude);
    return rankOfWhole(number->negative ? -magnitude : magnitude);
}

Rank rankOf(const Condition& condition, const Field& field)
{
    if (field.type == Type::Mac) {
        const Rank rank = rankOfMac(withoutColons(condition.value));
        if (rank == noRank)
            throwMalformed("--where", condition.text, condition.at,
                           "12 hexadecimal digits (colons are allowed)");
        return rank;
    }
    if (field.type == Type::F32) {
        const std::optional<double> number = finiteNumber(condition.value);
        if (!number)
            throwMalformed("--where", condition.text, condition.at, "a number");
        return rankOfReal(*number);
    }
    return rankOfWhole(wholeNumberOf(condition));
}

bool holds(Condition::Test test, Rank value, Rank wanted)
{
    switch (test) {
    case Condition::Equal:
        return value == wanted;
    case Condition::Unequal:
        return value != wanted;
    case Condition::Less:
        return value < wanted;
    case Condition::LessOrEqual:
        return value <= wanted;
    case Condition::Greater:
        return value > wanted && value != noRank;
    case Condition::GreaterOrEqual:
        return value >= wanted && value != noRank;
    }
    return false;
}

} // namespace algdata
