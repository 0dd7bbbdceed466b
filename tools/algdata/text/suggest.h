/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALGDATA_SUGGEST_H
#define ALGDATA_SUGGEST_H

#include <string>
#include <vector>

namespace algdata
{

/* "; did you mean station?" if the word resembles one of the choices; otherwise empty. */
std::string didYouMean(const std::string& word, const std::vector<std::string>& choices);

} // namespace algdata

#endif
