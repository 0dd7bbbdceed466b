/* SPDX-License-Identifier: Apache-2.0 */
#include "report/figure.h"

#include <fmt/format.h>

namespace algdata
{

PageTable tableOf(const svg::LineChart& chart, const char* firstColumn)
{
    PageTable table;
    table.caption = chart.heading.title;
    table.columns.push_back({firstColumn});
    for (const std::string& name : chart.names)
        table.columns.push_back({name, true});
    for (const svg::Line& line : chart.lines) {
        PageRow row = {"", {line.label}};
        for (const std::optional<double>& value : line.values)
            row.cells.emplace_back(value);
        table.rows.push_back(std::move(row));
    }
    return table;
}

void limitLines(svg::LineChart& chart)
{
    constexpr size_t maxLines = 24;
    if (chart.lines.size() <= maxLines)
        return;
    chart.heading.description +=
        fmt::format(" The chart has the first {} of {}.", maxLines, chart.lines.size());
    chart.lines.resize(maxLines);
}

} // namespace algdata
