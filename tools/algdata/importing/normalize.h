/* SPDX-License-Identifier: Apache-2.0 */
/* Checks whether a record would read back unchanged from a file. */
#ifndef ALGDATA_NORMALIZE_H
#define ALGDATA_NORMALIZE_H

#include <functional>
#include <string>

#include "records/records.h"

namespace algdata
{

using Refuse = std::function<void(const std::string& field, const std::string& why)>;

/*
 * Converts the record's values to the form that a writer prints, and refuses each
 * value that would read back differently. Positions and counts of entries may be
 * missing; they are filled in. `round` allows floats with more than two decimals.
 * New texts are stored in `texts`.
 */
void normalize(const Kind& kind, Record& record, bool round, Texts& texts, const Refuse& refuse);

} // namespace algdata

#endif
