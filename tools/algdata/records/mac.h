/* SPDX-License-Identifier: Apache-2.0 */
/* MACs as numbers: two spellings of the same device are equal. */
#ifndef ALGDATA_MAC_H
#define ALGDATA_MAC_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace algdata
{

using Mac = uint64_t;

/* 000000000000, the father of the FAP. */
inline constexpr Mac noMac = 0;

/* Null unless the text is twelve hexadecimal digits. */
std::optional<Mac> macFrom(std::string_view text);

/* Twelve hexadecimal digits, in lower case. */
std::string macText(Mac mac);

/* The MAC in a file's name, such as score_re_0a4e00000002.txt: the last twelve hexadecimal digits in a row.
 */
std::optional<Mac> macInName(std::string_view path);

} // namespace algdata

#endif
