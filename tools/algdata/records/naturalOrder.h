/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALGDATA_NATURAL_ORDER_H
#define ALGDATA_NATURAL_ORDER_H

#include <string_view>

namespace algdata
{

/* Compares texts as people do: digits by the value of the number, so that "s2" is before "s10". */
bool isNaturallyLess(std::string_view a, std::string_view b);

} // namespace algdata

#endif
