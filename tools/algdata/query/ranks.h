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

/* The rank of a field's text: a MAC in any letter case, or a number. */
Rank rankOf(const Field& field, Token text);

/* The rank of a whole number. Also of one that a text is, whatever its size. */
Rank rankOfWhole(int64_t number);
Rank rankOfWhole(Token text);

/* The rank of a condition's value. Throws Failure if the field cannot have the value. */
Rank rankOf(const Condition& condition, const Field& field);

bool holds(Condition::Test test, Rank value, Rank wanted);

} // namespace algdata

#endif
