/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALGDATA_RANKS_H
#define ALGDATA_RANKS_H

#include <cstdint>
#include <optional>

#include "commandline/options.h"
#include "reading/records.h"

namespace algdata
{

/* A value's place in the order of all values of its type, however it is written. */
using Rank = uint64_t;

/* Of what is no value of the type: a damaged field. It comes after all others. */
constexpr Rank noRank = UINT64_MAX;

/* A MAC in any letter case; a number in decimal. */
Rank rankOf(Type type, Token text);

Rank rankOfWhole(int64_t number);

/* The value of a condition on a field; throws Failure where the field cannot have it. */
Rank rankOf(const Condition& condition, const Field& field);

/* A number as std::from_chars reads it, and nothing after it; finite. */
std::optional<double> finiteNumber(Token text);

/* The number that stands in a field of this type; null where it is none, or does not fit. */
std::optional<double> numberOf(Type type, Token text);

bool holds(Condition::Test test, Rank value, Rank wanted);

} // namespace algdata

#endif
