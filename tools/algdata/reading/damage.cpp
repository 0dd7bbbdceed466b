/* SPDX-License-Identifier: Apache-2.0 */
#include "reading/damage.h"

#include <algorithm>

#include <fmt/format.h>

#include "output/output.h"
#include "text/wording.h"

namespace algdata
{

namespace
{

/* "12 hexadecimal digits" */
std::string expectedIn(const Field& field, Token value)
{
    if (field.type == Type::Mac)
        return "12 hexadecimal digits";
    if (field.type == Type::F32)
        return "a number";
    return wholeNumber(value) ? fmt::format("0 to {}", typeMax(field.type)) : "a whole number";
}

} // namespace

void Damage::addValue(const Column& column, Token value)
{
    if (values++ != 0)
        return;
    const auto newlines = loaded ? 0 : std::count(source->bytes.data(), value.data(), '\n');
    first =
        fmt::format("{}{}: {}: {}, expected {}", source->name, loaded ? "" : fmt::format(":{}", newlines + 1),
                    column.name, inQuotes(value), expectedIn(*column.field, value));
}

std::vector<std::string> Damage::texts(const char* shownAs) const
{
    std::vector<std::string> all;
    if (lines != 0)
        all.push_back(wrongLinesText(source->name, lines));
    if (values != 0)
        all.push_back(
            fmt::format("{} ({} in this file, {})", first, plural(values, "damaged value"), shownAs));
    return all;
}

Status Damage::report(const char* shownAs) const
{
    for (const std::string& text : texts(shownAs))
        message(text);
    return lines + values != 0 ? Findings : AllWell;
}

std::string wrongLinesText(const std::string& source, size_t lines)
{
    return fmt::format("{}: {} with a wrong number of fields; `algdata check` shows where", source,
                       plural(lines, "line"));
}

Status reportDamage(size_t values, size_t wrongLines)
{
    if (values != 0)
        message(fmt::format("{}, not in the figures; `algdata check` shows where",
                            plural(values, "damaged value")));
    if (wrongLines != 0)
        message(fmt::format("{} with a wrong number of fields; `algdata check` shows where",
                            plural(wrongLines, "line")));
    return values + wrongLines != 0 ? Findings : AllWell;
}

} // namespace algdata
