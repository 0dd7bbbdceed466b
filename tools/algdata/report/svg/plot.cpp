/* SPDX-License-Identifier: Apache-2.0 */
#include "report/svg/plot.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <fmt/format.h>

namespace algdata::svg
{

namespace
{

constexpr double letter = 8.2;     /* the width of an average one, at 13 pixels */
constexpr double chartWidth = 480; /* two fit beside each other, and one fits a phone */
constexpr double axisHeight = 44;

double widthOf(const std::string& text)
{
    return letter * static_cast<double>(text.size());
}

/* The text, shortened to a width. */
std::string fitted(const std::string& text, double width)
{
    return shortened(text, static_cast<size_t>(std::max(letter, width) / letter));
}

std::string colorClass(size_t number)
{
    return fmt::format("k{}", number % 6);
}

} // namespace

/* ---- Parts of a drawing -------------------------------------------------------- */

std::string shortened(const std::string& text, size_t most)
{
    std::string shown = visible(text);
    size_t characters = 0;
    size_t cut = 0;
    for (size_t i = 0; i < shown.size(); ++i) {
        if ((static_cast<unsigned char>(shown[i]) & 0xc0U) == 0x80)
            continue;
        if (++characters == most)
            cut = i;
        if (characters > most)
            return shown.substr(0, cut) + "\u2026";
    }
    return shown;
}

Html::Element drawing(Html& html, const Heading& heading, double width, double height, const char* role)
{
    const std::string titleId = heading.id + "-title";
    const std::string textId = heading.id + "-desc";
    Html::Element svg =
        html.in("svg", {{"role", role},
                        {"aria-labelledby", titleId + " " + textId},
                        {"width", width},
                        {"height", height},
                        {"viewBox", fmt::format("0 0 {} {}", coordinate(width), coordinate(height))},
                        {"font-family", "sans-serif"},
                        {"font-size", "13"}});
    html.element("title", {{"id", titleId}}, heading.title);
    html.element("desc", {{"id", textId}}, heading.description);
    return svg;
}

void textAt(Html& html, double x, double y, const char* anchor, const std::string& text,
            const std::string& classes)
{
    Attributes attributes = {{"x", x}, {"y", y}, {"text-anchor", anchor}};
    if (!classes.empty())
        attributes.emplace_back("class", classes);
    html.element("text", attributes, text);
}

namespace
{

/* Around 0, 0. */
const char* pathOf(Shape shape)
{
    switch (shape) {
    case Shape::Circle:
        return "M-4.5 0a4.5 4.5 0 1 0 9 0a4.5 4.5 0 1 0-9 0z";
    case Shape::Square:
        return "M-4-4h8v8h-8z";
    case Shape::Triangle:
        return "M0-5L5 4H-5z";
    case Shape::Diamond:
        return "M0-5.5L5.5 0L0 5.5L-5.5 0z";
    case Shape::Cross:
        return "M-1.7-5h3.4v3.3h3.3v3.4h-3.3v3.3h-3.4v-3.3h-3.3v-3.4h3.3z";
    case Shape::TriangleDown:
        break;
    }
    return "M0 5L5-4H-5z";
}

} // namespace

namespace
{

/* "mark-0", or "hollow-0" for the outline; "sample" for a small filled circle. */
std::string markId(Shape shape, bool hollow)
{
    return fmt::format("{}-{}", hollow ? "hollow" : "mark", static_cast<int>(shape));
}

void defineMark(Html& html, const std::string& id, Shape shape, bool hollow, const char* scale)
{
    Attributes attributes = {{"id", id}, {"d", pathOf(shape)}, {"fill", hollow ? "none" : "currentColor"}};
    if (hollow)
        attributes.insert(attributes.end(), {{"stroke", "currentColor"}, {"stroke-width", "1.6"}});
    if (scale != nullptr)
        attributes.emplace_back("transform", scale);
    html.empty("path", attributes);
}

} // namespace

void defineMarks(Html& html)
{
    const Html::Element svg = html.in("svg", {{"width", "0"}, {"height", "0"}, {"aria-hidden", "true"}});
    const Html::Element defs = html.in("defs");
    for (size_t i = 0; i < shapeCount; ++i)
        for (const bool hollow : {false, true})
            defineMark(html, markId(shapeOf(i), hollow), shapeOf(i), hollow, nullptr);
    defineMark(html, "sample", Shape::Circle, false, "scale(0.6)");
}

namespace
{

void useMark(Html& html, double x, double y, const std::string& id, const std::string& classes,
             const std::string& title)
{
    const Html::Element use = html.in("use", {{"class", classes}, {"href", "#" + id}, {"x", x}, {"y", y}});
    if (!title.empty())
        html.element("title", title);
}

} // namespace

void markAt(Html& html, double x, double y, Shape shape, bool hollow, const std::string& classes,
            const std::string& title)
{
    useMark(html, x, y, markId(shape, hollow), classes, title);
}

void lineFrom(Html& html, double x1, double y1, double x2, double y2, const char* classes)
{
    html.empty(
        "line",
        {{"class", classes}, {"x1", x1}, {"y1", y1}, {"x2", x2}, {"y2", y2}, {"stroke", "currentColor"}});
}

namespace
{

/* The ticks of a horizontal axis below a plot, with lines up to its top. */
void drawXAxis(Html& html, const Scale& x, const std::vector<double>& ticks, double top, double bottom,
               const std::string& title)
{
    for (const double tick : ticks) {
        lineFrom(html, x.at(tick), top, x.at(tick), bottom, "grid");
        textAt(html, x.at(tick), bottom + 16, "middle", numberText(tick), "tick");
    }
    textAt(html, (x.begin + x.end) / 2, bottom + 34, "middle", title, "axis");
}

void drawYAxis(Html& html, const Scale& y, const std::vector<double>& ticks, double left, double right,
               const std::string& title)
{
    for (const double tick : ticks) {
        lineFrom(html, left, y.at(tick), right, y.at(tick), "grid");
        textAt(html, left - 6, y.at(tick) + 4, "end", numberText(tick), "tick");
    }
    textAt(html, left, y.end - 12, "start", title, "axis");
}

} // namespace

/* ---- Dot plots --------------------------------------------------------------------- */

DotLayout layoutOf(const DotPlot& plot)
{
    double greatest = 0;
    bool sampled = false;
    for (const DotRow& row : plot.rows) {
        sampled = sampled || row.samples;
        for (const Mark& mark : row.marks)
            greatest = std::max(greatest, mark.value);
    }
    DotLayout layout;
    layout.ticks = roundTicks(0, greatest);
    layout.x = scaleOf(layout.ticks, 14, chartWidth - 24);
    layout.top = 22;
    layout.rowHeight = sampled ? 34 : 40; /* samples are not moved up or down */
    layout.width = chartWidth;
    layout.height = layout.top + layout.rowHeight * static_cast<double>(plot.rows.size()) + axisHeight;
    return layout;
}

namespace
{

void drawSpread(Html& html, const Scale& x, double y, const Spread& spread)
{
    lineFrom(html, x.at(spread.least), y, x.at(spread.greatest), y, "whisker");
    html.empty("rect", {{"class", "box"},
                        {"x", x.at(spread.lowerQuartile)},
                        {"y", y - 7},
                        {"width", std::max(1.0, x.at(spread.upperQuartile) - x.at(spread.lowerQuartile))},
                        {"height", 14.0},
                        {"fill", "none"},
                        {"stroke", "currentColor"}});
}

void drawMarks(Html& html, const DotRow& row, const Scale& x, double y)
{
    std::vector<double> positions;
    for (const Mark& mark : row.marks)
        positions.push_back(x.at(mark.value));
    if (row.samples) {
        for (const double position : positions)
            useMark(html, position, y, "sample", colorClass(0), "");
        return;
    }
    const std::vector<double> moved = dodges(positions);
    for (size_t i = 0; i < row.marks.size(); ++i)
        markAt(html, positions[i], y + moved[i], row.marks[i].shape, row.marks[i].hollow,
               colorClass(static_cast<size_t>(row.marks[i].shape)), row.marks[i].text);
}

} // namespace

std::vector<double> dodges(const std::vector<double>& positions)
{
    static constexpr std::array<double, 5> steps = {0, -7, 7, -10, 10};
    constexpr double near = 8;
    std::vector<double> moved;
    for (size_t i = 0; i < positions.size(); ++i) {
        size_t step = 0;
        for (size_t k = 0; k < i; ++k)
            if (std::abs(positions[k] - positions[i]) < near && moved[k] == steps[step] &&
                step + 1 < steps.size()) {
                ++step;
                k = SIZE_MAX; /* begin again with the next step */
            }
        moved.push_back(steps[step]);
    }
    return moved;
}

void draw(Html& html, const DotPlot& plot)
{
    const DotLayout layout = layoutOf(plot);
    const Html::Element svg = drawing(html, plot.heading, layout.width, layout.height);
    const double bottom = layout.height - axisHeight;
    drawXAxis(html, layout.x, layout.ticks, layout.top, bottom, plot.axis);
    textAt(html, layout.width - 2, layout.top - 8, "end", plot.note, "axis");
    for (size_t i = 0; i < plot.rows.size(); ++i) {
        const DotRow& row = plot.rows[i];
        const double y = layout.laneOf(i);
        const double room = layout.width - widthOf(row.note) - 16;
        textAt(html, 2, y - 15, "start", fitted(row.label, row.strong ? room / 1.1 : room),
               row.strong ? "name strong" : "name");
        textAt(html, layout.width - 2, y - 15, "end", row.note, "note");
        lineFrom(html, layout.x.begin, y, layout.x.end, y, "row");
        if (row.spread)
            drawSpread(html, layout.x, y, *row.spread);
        drawMarks(html, row, layout.x, y);
        if (row.spread)
            lineFrom(html, layout.x.at(row.spread->median), y - 9, layout.x.at(row.spread->median), y + 9,
                     "median");
    }
}

void drawLegend(Html& html, const std::vector<LegendEntry>& entries)
{
    const Html::Element list = html.in("ul", {{"class", "legend"}});
    for (const LegendEntry& entry : entries) {
        const Html::Element item = html.in("li");
        {
            const Html::Element svg = html.in(
                "svg",
                {{"width", "16"}, {"height", "16"}, {"viewBox", "-8 -8 16 16"}, {"aria-hidden", "true"}});
            markAt(html, 0, 0, entry.shape, entry.hollow, colorClass(entry.color), "");
        }
        html.text(" " + entry.text);
    }
}

/* ---- Scatter plots ------------------------------------------------------------------- */

void draw(Html& html, const Scatter& plot)
{
    double xGreatest = 0;
    double yGreatest = 0;
    for (const ScatterPoint& point : plot.points) {
        xGreatest = std::max(xGreatest, point.x);
        yGreatest = std::max(yGreatest, point.y);
    }
    const std::vector<double> xTicks = roundTicks(0, xGreatest);
    const std::vector<double> yTicks = roundTicks(0, yGreatest);
    const Scale x = scaleOf(xTicks, 56, chartWidth - 24);
    const Scale y = scaleOf(yTicks, 260, 30);
    const Html::Element svg = drawing(html, plot.heading, chartWidth, y.begin + axisHeight);
    drawXAxis(html, x, xTicks, y.end, y.begin, plot.xAxis);
    drawYAxis(html, y, yTicks, x.begin, x.end, plot.yAxis);
    for (const ScatterPoint& point : plot.points)
        markAt(html, x.at(point.x), y.at(point.y), shapeOf(point.group), false, colorClass(point.group),
               point.text);
}

/* ---- Lines ----------------------------------------------------------------------------- */

std::vector<Segment> segmentsOf(const Line& line, const std::vector<size_t>& starts)
{
    std::vector<Segment> segments;
    for (size_t i = 0; i < line.values.size(); ++i) {
        if (!line.values[i])
            continue;
        const bool starting = std::find(starts.begin(), starts.end(), i) != starts.end();
        if (i != 0 && line.values[i - 1] && !starting)
            segments.back().last = i;
        else
            segments.push_back({i, i});
    }
    return segments;
}

namespace
{

/* Patterns, so that lines can be told apart without colours. */
const char* dashOf(size_t number)
{
    static constexpr std::array<const char*, 4> dashes = {"none", "7 3", "2 3", "9 3 2 3"};
    return dashes[number % dashes.size()];
}

struct LineLayout {
    Scale x, y;
    double labelAt; /* of the lines' ends */

    double xOf(size_t i) const { return x.at(static_cast<double>(i)); }
};

void drawLine(Html& html, const LineChart& chart, size_t number, const LineLayout& layout)
{
    const Line& line = chart.lines[number];
    for (const Segment& segment : segmentsOf(line, chart.starts)) {
        std::string points;
        for (size_t i = segment.first; i <= segment.last; ++i)
            points += fmt::format("{}{},{}", points.empty() ? "" : " ", coordinate(layout.xOf(i)),
                                  coordinate(layout.y.at(*line.values[i])));
        html.empty("polyline", {{"class", "line " + colorClass(number)},
                                {"points", points},
                                {"fill", "none"},
                                {"stroke", "currentColor"},
                                {"stroke-dasharray", dashOf(number)}});
    }
    for (size_t i = 0; i < line.values.size(); ++i)
        if (line.values[i])
            markAt(html, layout.xOf(i), layout.y.at(*line.values[i]), shapeOf(number), false,
                   colorClass(number),
                   fmt::format("{}, {}: {}", line.label, chart.names[i], numberText(*line.values[i])));
}

/* The names of the lines beside their last values, moved apart where they would overlap. */
void drawLineLabels(Html& html, const LineChart& chart, const LineLayout& layout)
{
    std::vector<double> wanted;
    std::vector<size_t> shown;
    for (size_t i = 0; i < chart.lines.size(); ++i) {
        const std::vector<Segment> segments = segmentsOf(chart.lines[i]);
        if (segments.empty())
            continue;
        shown.push_back(i);
        wanted.push_back(layout.y.at(*chart.lines[i].values[segments.back().last]));
    }
    const std::vector<double> placed = spread(wanted, 15, layout.y.end, layout.y.begin);
    for (size_t i = 0; i < shown.size(); ++i) {
        lineFrom(html, layout.x.end + 6, wanted[i], layout.labelAt - 14, placed[i], "leader");
        markAt(html, layout.labelAt - 6, placed[i], shapeOf(shown[i]), false, colorClass(shown[i]), "");
        textAt(html, layout.labelAt + 4, placed[i] + 4, "start", shortened(chart.lines[shown[i]].label, 25));
    }
}

/* From 0 on, unless all values are negative. */
std::vector<double> ticksOf(const LineChart& chart)
{
    std::optional<double> least;
    std::optional<double> greatest;
    bool whole = true;
    for (const Line& line : chart.lines)
        for (const std::optional<double>& value : line.values) {
            if (!value)
                continue;
            least = std::min(least.value_or(*value), *value);
            greatest = std::max(greatest.value_or(*value), *value);
            whole = whole && *value == std::round(*value);
        }
    if (least.value_or(0) >= 0)
        return roundTicks(0, greatest.value_or(0), whole);
    return roundTicks(*least, *greatest, whole);
}

/* As many names as fit along the axis, always the first and the last; or those where the lines start. */
void drawNames(Html& html, const LineChart& chart, const LineLayout& layout)
{
    const double room =
        (layout.x.end - layout.x.begin) / static_cast<double>(std::max<size_t>(chart.names.size(), 2) - 1);
    const size_t every = std::max<size_t>(1, static_cast<size_t>(std::ceil(70 / room)));
    const size_t last = chart.names.size() - 1;
    for (size_t i = 0; i < chart.names.size(); ++i) {
        const bool starting = std::find(chart.starts.begin(), chart.starts.end(), i) != chart.starts.end();
        const bool shown =
            chart.starts.empty() ? i == last || (i % every == 0 && last - i >= every) : starting || i == 0;
        lineFrom(html, layout.xOf(i), layout.y.begin, layout.xOf(i), layout.y.begin + 4, "grid");
        if (shown)
            textAt(html, layout.xOf(i), layout.y.begin + 18, "middle", shortened(chart.names[i], 11), "tick");
    }
    textAt(html, (layout.x.begin + layout.x.end) / 2, layout.y.begin + 36, "middle", chart.xAxis, "axis");
}

} // namespace

void draw(Html& html, const LineChart& chart)
{
    const std::vector<double> ticks = ticksOf(chart);
    const double bottom = std::max(230.0, 40 + 15 * static_cast<double>(chart.lines.size()));
    const double last = static_cast<double>(std::max<size_t>(chart.names.size(), 2) - 1);
    const LineLayout layout = {{0, last, 60, 256}, scaleOf(ticks, bottom, 34), 292};
    const Html::Element svg = drawing(html, chart.heading, chartWidth, bottom + axisHeight);
    drawYAxis(html, layout.y, ticks, layout.x.begin - 8, layout.x.end + 6, chart.axis);
    drawNames(html, chart, layout);
    for (size_t i = 0; i < chart.lines.size(); ++i)
        drawLine(html, chart, i, layout);
    drawLineLabels(html, chart, layout);
}

/* ---- Heat maps ---------------------------------------------------------------------------- */

void draw(Html& html, const HeatMap& map)
{
    constexpr double cellWidth = 48;
    constexpr double cellHeight = 26;
    constexpr double top = 26;
    constexpr int steps = 5;
    const double left = chartWidth - cellWidth * static_cast<double>(map.columns.size()) - 2;
    const Html::Element svg =
        drawing(html, map.heading, chartWidth, top + cellHeight * static_cast<double>(map.rows.size()) + 2);
    for (size_t i = 0; i < map.columns.size(); ++i)
        textAt(html, left + cellWidth * (static_cast<double>(i) + 0.5), top - 8, "middle", map.columns[i],
               "axis");
    for (size_t r = 0; r < map.rows.size(); ++r) {
        const double y = top + cellHeight * static_cast<double>(r);
        textAt(html, 2, y + 17, "start", fitted(map.rows[r].label, left - 4));
        for (size_t i = 0; i < map.rows[r].values.size(); ++i) {
            const std::optional<double>& value = map.rows[r].values[i];
            const double x = left + cellWidth * static_cast<double>(i);
            const int step = value ? stepOf(*value, map.greatest, steps) : 0;
            html.empty("rect", {{"class", value ? fmt::format("heat h{}", step) : "heat none"},
                                {"x", x},
                                {"y", y},
                                {"width", cellWidth - 2},
                                {"height", cellHeight - 2},
                                {"fill", "none"},
                                {"stroke", "currentColor"}});
            textAt(html, x + cellWidth / 2 - 1, y + 16, "middle", value ? numberText(*value) : "\u2013",
                   fmt::format("heattext t{}", step));
        }
    }
}

} // namespace algdata::svg
