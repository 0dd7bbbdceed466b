/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Charts in SVG. What a chart shows is also in its title, its description and the table
 * beside it. Presentation attributes keep it readable where style sheets are blocked.
 */
#ifndef ALGDATA_PLOT_H
#define ALGDATA_PLOT_H

#include <optional>
#include <string>
#include <vector>

#include "report/html.h"
#include "report/svg/scale.h"

namespace algdata::svg
{

/* Titles have ids, so that the drawing can name them: `id` is unique on the page. */
struct Heading {
    std::string id, title, description;
};

/* The shape of a mark, so that a reader needs no colours. A band has the shape of its number. */
enum class Shape : uint8_t { Circle, Square, Triangle, Diamond, Cross, TriangleDown };
inline constexpr int shapeCount = 6;
inline Shape shapeOf(size_t number)
{
    return static_cast<Shape>(number % shapeCount);
}

struct Mark {
    double value;
    Shape shape;
    bool hollow;
    std::string text; /* shown when it is pointed at */
};

/* A line of a dot plot, below its label and its note. */
struct DotRow {
    std::string label;
    std::vector<Mark> marks;
    std::optional<Spread> spread; /* drawn as a box with the median */
    std::string note;             /* beside the label */
    bool strong = false;
    bool samples = false; /* small marks that may cover each other, below the median */
};

struct DotPlot {
    Heading heading;
    std::string axis; /* what the values are */
    std::string note; /* what the notes are */
    std::vector<DotRow> rows;
};

struct LegendEntry {
    std::string text;
    Shape shape;
    bool hollow;
    size_t color;
};

/* How far marks of a line that would cover each other are moved up or down, in pixels. */
std::vector<double> dodges(const std::vector<double>& positions);

/* Where the parts of a dot plot stand, in pixels. */
struct DotLayout {
    double width, height;
    Scale x;
    double top, rowHeight;
    std::vector<double> ticks;

    /* The height at which the marks of a row stand. */
    double laneOf(size_t row) const { return top + rowHeight * (static_cast<double>(row) + 0.7); }
};
DotLayout layoutOf(const DotPlot& plot);

void draw(Html& html, const DotPlot& plot);

/* What the shapes mean. */
void drawLegend(Html& html, const std::vector<LegendEntry>& entries);

/* A point per record: two values and the shape of a group. */
struct ScatterPoint {
    double x, y;
    size_t group;
    std::string text;
};

struct Scatter {
    Heading heading;
    std::string xAxis, yAxis;
    std::vector<ScatterPoint> points;
};
void draw(Html& html, const Scatter& plot);

struct Line {
    std::string label;
    std::vector<std::optional<double>> values; /* by the chart's names; null is a gap */
};

struct LineChart {
    Heading heading;
    std::string axis, xAxis;
    std::vector<std::string> names; /* along x */
    std::vector<Line> lines;
    std::vector<size_t> starts =
        {}; /* where along x all lines start anew, because what is before is unrelated */
};

/* A part of a line without gaps; `starts` are those of the chart. */
struct Segment {
    size_t first, last;
};
std::vector<Segment> segmentsOf(const Line& line, const std::vector<size_t>& starts = {});

void draw(Html& html, const LineChart& chart);

struct HeatMap {
    Heading heading;
    std::vector<std::string> columns;
    struct Row {
        std::string label;
        std::vector<std::optional<double>> values;
    };
    std::vector<Row> rows;
    double greatest; /* the value of the strongest colour */
};
void draw(Html& html, const HeatMap& map);

/* At most `most` characters, the last of them an ellipsis if it is shortened. */
std::string shortened(const std::string& text, size_t most);

/* A drawing with its title and description. It is an image, unless it has links. */
Html::Element drawing(Html& html, const Heading& heading, double width, double height,
                      const char* role = "img");

void textAt(Html& html, double x, double y, const char* anchor, const std::string& text,
            const std::string& classes = "");
void markAt(Html& html, double x, double y, Shape shape, bool hollow, const std::string& classes,
            const std::string& title);

/* Has to be once on a page with charts. */
void defineMarks(Html& html);
void lineFrom(Html& html, double x1, double y1, double x2, double y2, const char* classes);

} // namespace algdata::svg

#endif
