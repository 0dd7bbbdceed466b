/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALGDATA_SUGGEST_H
#define ALGDATA_SUGGEST_H

#include <string>
#include <vector>

namespace algdata
{

/* "; did you mean station?" for a word that is near one of the choices, else nothing. */
std::string didYouMean(const std::string& word, const std::vector<std::string>& choices);

} // namespace algdata

#endif
