/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALGDATA_DIFFERENCE_TEXT_H
#define ALGDATA_DIFFERENCE_TEXT_H

#include <string>

#include "output/output.h"
#include "query/differences.h"

namespace algdata
{

/* "~ changed deviceMAC 0a4e00000001: plcRate 348 -> 339, ...", with the colours of the output. */
std::string differenceText(const Difference& difference, const Output& out);

} // namespace algdata

#endif
