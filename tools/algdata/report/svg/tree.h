/* SPDX-License-Identifier: Apache-2.0 */
/* Draws the tree of a mesh: a card per device, the children below and to the right of their father. */
#ifndef ALGDATA_SVG_TREE_H
#define ALGDATA_SVG_TREE_H

#include <optional>
#include <string>
#include <vector>

#include "report/svg/plot.h"

namespace algdata::svg
{

struct TreeCard {
    enum Kind : uint8_t {
        Present,
        Moves,   /* where a decision moves the device to */
        Disputed /* where another file says that the device is */
    };
    Kind kind = Present;
    size_t father = SIZE_MAX; /* index of a card before this one; SIZE_MAX if none is drawn */
    std::string name, detail;
    std::string href;
    std::vector<std::optional<double>> cells; /* at the right: air in use per band */
    bool marked = false;                      /* the device that a decision moves */
};

struct Tree {
    Heading heading;
    std::vector<std::string> columns; /* of the cells */
    std::vector<TreeCard> cards;
};

struct CardBox {
    double x, y, width, height;
};

struct TreeLayout {
    double width, height;
    double cellsAt;
    std::vector<CardBox> boxes;
};

inline constexpr double cellSize = 34; /* the width of a cell with air in use */

TreeLayout layoutOf(const Tree& tree);
void draw(Html& html, const Tree& tree);

} // namespace algdata::svg

#endif
