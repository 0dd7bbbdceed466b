/* SPDX-License-Identifier: Apache-2.0 */
#include "printing/differenceText.h"

#include <fmt/format.h>

namespace algdata
{

std::string differenceText(const Difference& difference, const Output& out)
{
    const std::string_view what = difference.what;
    const bool changed = what == "changed";
    const char* color = changed ? out.yellow() : what == "added" ? out.green() : out.red();
    const char* sign = changed ? "~" : what == "added" ? "+" : "-";
    std::string text =
        fmt::format("{}{} {:<7}{} {}", color, sign, difference.what, out.plain(), difference.key);
    const char* separator = ": ";
    for (const Difference::Values& values : difference.fields) {
        const char* arrow = changed ? " -> " : "";
        text += fmt::format("{}{} {}{}{}", separator, values.field, values.before, arrow, values.after);
        separator = ", ";
    }
    return text;
}

} // namespace algdata
