/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALGDATA_RANKS_H
#define ALGDATA_RANKS_H

#include <cstdint>
#include <optional>

#include "commandline/options.h"
#include "reading/records.h"

namespace algdata
{

/* A number that orders the values of a type. Equal values have equal ranks, whatever their text. */
using Rank = uint64_t;

/* The rank of a damaged value. It is higher than all others. */
constexpr Rank noRank = UINT64_MAX;

/* The rank of a field's text: a MAC in any letter case, or a decimal number. */
Rank rankOf(Type type, Token text);

/* The rank of an integer field with this value. */
Rank rankOfWhole(int64_t number);

/* The rank of a condition's value. Throws Failure if the field cannot have the value. */
Rank rankOf(const Condition& condition, const Field& field);

/* The finite number that the whole text is, as std::from_chars reads it. */
std::optional<double> finiteNumber(Token text);

/* The number in a field of this type; null if it is damaged or does not fit. */
std::optional<double> numberOf(Type type, Token text);

bool holds(Condition::Test test, Rank value, Rank wanted);

} // namespace algdata

#endif
