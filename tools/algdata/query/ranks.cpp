/* SPDX-License-Identifier: Apache-2.0 */
#include "query/ranks.h"

#include <charconv>
#include <cstring>

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

Rank rankOfWhole(int64_t number)
{
    return static_cast<Rank>(number) ^ signBit;
}

Rank rankOfWhole(Token text)
{
    const std::optional<Number> number = wholeNumber(text);
    if (!number || number->huge || number->magnitude >= INT64_MAX)
        return noRank;
    const int64_t magnitude = static_cast<int64_t>(number->magnitude);
    return rankOfWhole(number->negative ? -magnitude : magnitude);
}

Rank rankOf(const Field& field, Token text)
{
    if (field.type == Type::Mac)
        return rankOfMac(text);
    const std::optional<double> number = numberIn(field, text);
    if (!number)
        return noRank;
    return field.type == Type::F32 ? rankOfReal(*number) : rankOfWhole(static_cast<int64_t>(*number));
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
        const std::optional<double> number = decimalNumber(condition.value);
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
