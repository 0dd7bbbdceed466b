/* SPDX-License-Identifier: Apache-2.0 */
/* Tables of a page, which its script can sort and filter. */
#ifndef ALGDATA_PAGE_TABLE_H
#define ALGDATA_PAGE_TABLE_H

#include <optional>
#include <string>
#include <vector>

#include "report/html.h"

namespace algdata
{

struct PageCell {
    std::string text; /* empty: a dash, for a missing value */
    std::string href; /* empty: no link */
    std::string note; /* in words what is special about the value: "clamped" */

    PageCell(std::string shown = "", std::string link = "", std::string mark = "")
        : text(std::move(shown)), href(std::move(link)), note(std::move(mark))
    {
    }
    PageCell(const char* shown) : text(shown) {}
    PageCell(std::optional<double> number);
};

struct PageColumn {
    std::string name;
    bool numeric = false;
    bool wide = false; /* sentences, which may take several lines */
};

struct PageRow {
    std::string id; /* may be empty */
    std::vector<PageCell> cells;
    std::string classes = {};
};

struct PageTable {
    std::string caption;
    std::vector<PageColumn> columns; /* the first names the rows */
    std::vector<PageRow> rows;
    size_t total = 0;       /* rows that there are; 0: as many as in `rows` */
    bool sortable = true;   /* false where the order of the rows says something */
    bool collapsed = false; /* shown on demand, because a chart shows the same */
};

/* A box for what can be wider than the page. The keyboard scrolls it too. */
Html::Element scrollBox(Html& html, const std::string& label);

/* At most maxRows rows. If there are more, the caption says how many. */
void writeTable(Html& html, const PageTable& table);

} // namespace algdata

#endif
