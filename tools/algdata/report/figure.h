/* SPDX-License-Identifier: Apache-2.0 */
/* A chart with its caption, its legend and the table of its values. */
#ifndef ALGDATA_FIGURE_H
#define ALGDATA_FIGURE_H

#include <fmt/format.h>

#include "report/svg/plot.h"
#include "report/table.h"

namespace algdata
{

/* A chart shows at most so many lines; its table has all. */
inline constexpr size_t maxChartRows = 80;

/* The values of a line chart: a row per line. */
PageTable tableOf(const svg::LineChart& chart, const char* firstColumn);

/* Of many lines the first ones, because more cannot be told apart; the description says so. */
void limitLines(svg::LineChart& chart);

/* The same for the rows of other charts. */
template <typename Chart> void limitRows(Chart& chart)
{
    if (chart.rows.size() <= maxChartRows)
        return;
    chart.heading.description +=
        fmt::format(" The chart has the first {} of {}.", maxChartRows, chart.rows.size());
    chart.rows.resize(maxChartRows);
}

/*
 * `chart` is anything that svg::draw() draws. `view` is "stored" or "loaded" where the page
 * can switch between the two, otherwise empty.
 */
template <typename Chart>
void writeFigure(Html& html, const Chart& chart, const std::vector<svg::LegendEntry>& legend,
                 PageTable values, const std::string& view = "")
{
    Attributes attributes = {{"class", "chart"}};
    if (!view.empty())
        attributes.emplace_back("data-view", view);
    const Html::Element figure = html.in("figure", attributes);
    html.element("figcaption", chart.heading.title);
    if (!legend.empty())
        svg::drawLegend(html, legend);
    {
        const Html::Element box = scrollBox(html, chart.heading.title + ", chart");
        svg::draw(html, chart);
    }
    html.element("p", {{"class", "desc"}}, chart.heading.description);
    values.collapsed = true;
    writeTable(html, values);
}

} // namespace algdata

#endif
