/* SPDX-License-Identifier: Apache-2.0 */
#include "records/mac.h"

#include <charconv>

#include <fmt/format.h>

#include "records/records.h"

namespace algdata
{

std::optional<Mac> macFrom(std::string_view text)
{
    if (!isMac(text))
        return std::nullopt;
    Mac mac = 0;
    std::from_chars(text.data(), text.data() + text.size(), mac, 16);
    return mac;
}

std::string macText(Mac mac)
{
    return fmt::format("{:012x}", mac);
}

std::optional<Mac> macInName(std::string_view path)
{
    const std::string_view name = path.substr(path.rfind('/') + 1); /* the whole path if it has no slash */
    size_t end = name.size();
    while (end != 0) {
        size_t begin = end;
        while (begin != 0 && isHexDigit(name[begin - 1]))
            --begin;
        if (const std::optional<Mac> mac = macFrom(name.substr(begin, end - begin)))
            return mac;
        end = begin == end ? end - 1 : begin;
    }
    return std::nullopt;
}

} // namespace algdata
