/* SPDX-License-Identifier: Apache-2.0 */
/* Whether a record would come back from a file as it goes in. */
#ifndef ALGDATA_SETTLE_H
#define ALGDATA_SETTLE_H

#include <functional>
#include <string>

#include "reading/records.h"

namespace algdata
{

using Refuse = std::function<void(const std::string& field, const std::string& why)>;

/*
 * Brings the record's values to the form in which a file has them, and refuses
 * each that would not come back the same. Positions and counts of entries may
 * be missing. `round` allows a float that has more than two decimals.
 */
void settle(const Kind& kind, Record& record, bool round, Texts& texts, const Refuse& refuse);

} // namespace algdata

#endif
