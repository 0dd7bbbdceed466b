/* SPDX-License-Identifier: Apache-2.0 */
#include "records/naturalOrder.h"

#include <algorithm>

#include "records/records.h"

namespace algdata
{

namespace
{

/* Removes the digits at the beginning of a text and returns them without leading zeros. */
std::string_view cutNumber(std::string_view& text)
{
    const auto* const end = std::find_if_not(text.begin(), text.end(), isDigit);
    std::string_view number = text.substr(0, static_cast<size_t>(end - text.begin()));
    text.remove_prefix(number.size());
    number.remove_prefix(std::min(number.find_first_not_of('0'), number.size()));
    return number;
}

/* Negative if a is before b, 0 if they differ at most in leading zeros. */
int compare(std::string_view a, std::string_view b)
{
    while (!a.empty() && !b.empty()) {
        if (isDigit(a[0]) && isDigit(b[0])) {
            const std::string_view first = cutNumber(a);
            const std::string_view second = cutNumber(b);
            if (first.size() != second.size())
                return first.size() < second.size() ? -1 : 1;
            if (first != second)
                return first.compare(second);
        } else if (a[0] != b[0]) {
            return static_cast<unsigned char>(a[0]) < static_cast<unsigned char>(b[0]) ? -1 : 1;
        } else {
            a.remove_prefix(1);
            b.remove_prefix(1);
        }
    }
    return a.empty() ? (b.empty() ? 0 : -1) : 1;
}

} // namespace

bool isNaturallyLess(std::string_view a, std::string_view b)
{
    const int order = compare(a, b);
    return order != 0 ? order < 0 : a < b;
}

} // namespace algdata
