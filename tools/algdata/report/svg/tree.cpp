/* SPDX-License-Identifier: Apache-2.0 */
#include "report/svg/tree.h"

#include <algorithm>

#include <fmt/format.h>

namespace algdata::svg
{

namespace
{

constexpr double indent = 26;
constexpr size_t maxIndents = 12; /* deeper devices are not moved further to the right */
constexpr double cardWidth = 280;
constexpr double cardHeight = 42;
constexpr double rowHeight = 50;
constexpr double topMargin = 28;

} // namespace

TreeLayout layoutOf(const Tree& tree)
{
    TreeLayout layout = {};
    std::vector<size_t> depths;
    size_t deepest = 0;
    for (const TreeCard& card : tree.cards) {
        depths.push_back(card.father == SIZE_MAX ? 0 : depths[card.father] + 1);
        const size_t indents = std::min(depths.back(), maxIndents);
        deepest = std::max(deepest, indents);
        layout.boxes.push_back({2 + indent * static_cast<double>(indents),
                                topMargin + rowHeight * static_cast<double>(layout.boxes.size()), cardWidth,
                                cardHeight});
    }
    layout.cellsAt = 2 + indent * static_cast<double>(deepest) + cardWidth + 16;
    layout.width = layout.cellsAt + cellSize * static_cast<double>(tree.columns.size()) + 2;
    layout.height = topMargin + rowHeight * static_cast<double>(tree.cards.size());
    return layout;
}

namespace
{

const char* classOf(const TreeCard& card)
{
    return card.kind == TreeCard::Moves      ? "card moves"
           : card.kind == TreeCard::Disputed ? "card disputed"
           : card.marked                     ? "card marked"
                                             : "card";
}

const char* dashOf(const TreeCard& card)
{
    return card.kind == TreeCard::Moves ? "6 3" : card.kind == TreeCard::Disputed ? "2 3" : "none";
}

/* From the lower left of the father to the left of the card. */
void drawBranch(Html& html, const CardBox& father, const CardBox& box, const TreeCard& card)
{
    const double x = father.x + indent / 2;
    const double y = box.y + box.height / 2;
    html.empty("path", {{"class", "branch"},
                        {"d", fmt::format("M{} {}V{}H{}", coordinate(x), coordinate(father.y + father.height),
                                          coordinate(y), coordinate(std::max(box.x, x + 6)))},
                        {"fill", "none"},
                        {"stroke", "currentColor"},
                        {"stroke-dasharray", dashOf(card)}});
}

void drawCells(Html& html, const Tree& tree, const TreeCard& card, const CardBox& box, double left)
{
    for (size_t i = 0; i < card.cells.size() && i < tree.columns.size(); ++i) {
        const double x = left + cellSize * static_cast<double>(i);
        const int step = card.cells[i] ? stepOf(*card.cells[i], 100, 5) : 0;
        html.empty("rect", {{"class", card.cells[i] ? fmt::format("heat h{}", step) : "heat none"},
                            {"x", x},
                            {"y", box.y + 9},
                            {"width", cellSize - 2},
                            {"height", 24.0},
                            {"fill", "none"},
                            {"stroke", "currentColor"}});
        textAt(html, x + cellSize / 2 - 1, box.y + 26, "middle",
               card.cells[i] ? numberText(*card.cells[i]) : "\u2013", fmt::format("heattext t{}", step));
    }
}

void drawCard(Html& html, const TreeCard& card, const CardBox& box)
{
    const Html::Element link = html.in("a", {{"href", card.href}, {"class", classOf(card)}});
    html.empty("rect", {{"class", "cardbox"},
                        {"x", box.x},
                        {"y", box.y},
                        {"width", box.width},
                        {"height", box.height},
                        {"rx", "6"},
                        {"fill", "none"},
                        {"stroke", "currentColor"},
                        {"stroke-dasharray", dashOf(card)}});
    textAt(html, box.x + 10, box.y + 18, "start", shortened(card.name, 34), "strong");
    textAt(html, box.x + 10, box.y + 35, "start", shortened(card.detail, 46), "detail");
}

} // namespace

void draw(Html& html, const Tree& tree)
{
    const TreeLayout layout = layoutOf(tree);
    const Html::Element svg = drawing(html, tree.heading, layout.width, layout.height, "group");
    for (size_t i = 0; i < tree.columns.size(); ++i)
        textAt(html, layout.cellsAt + cellSize * (static_cast<double>(i) + 0.5) - 1, topMargin - 8, "middle",
               tree.columns[i], "axis");
    for (size_t i = 0; i < tree.cards.size(); ++i)
        if (tree.cards[i].father != SIZE_MAX)
            drawBranch(html, layout.boxes[tree.cards[i].father], layout.boxes[i], tree.cards[i]);
    for (size_t i = 0; i < tree.cards.size(); ++i) {
        drawCard(html, tree.cards[i], layout.boxes[i]);
        drawCells(html, tree, tree.cards[i], layout.boxes[i], layout.cellsAt);
    }
}

} // namespace algdata::svg
