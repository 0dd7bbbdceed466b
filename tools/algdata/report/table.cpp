/* SPDX-License-Identifier: Apache-2.0 */
#include "report/table.h"

#include <algorithm>

#include <fmt/format.h>

#include "report/snapshot.h"
#include "report/svg/scale.h"
#include "text/wording.h"

namespace algdata
{

PageCell::PageCell(std::optional<double> number) : text(number ? svg::numberText(*number) : "") {}

namespace
{

void writeCell(Html& html, const PageCell& cell, const char* name, const PageColumn& column)
{
    Attributes attributes;
    if (column.numeric || column.wide)
        attributes.emplace_back("class", column.numeric ? "number" : "wide");
    if (std::string_view(name) == "th")
        attributes.emplace_back("scope", "row");
    const Html::Element element = html.in(name, attributes);
    if (cell.text.empty())
        html.element("span", {{"class", "missing"}}, "\u2013");
    else if (cell.href.empty())
        html.text(cell.text);
    else
        html.element("a", {{"href", cell.href}}, cell.text);
    if (!cell.note.empty())
        html.element("span", {{"class", "mark-note"}}, " " + cell.note);
}

void writeRow(Html& html, const PageTable& table, const PageRow& row)
{
    Attributes attributes;
    if (!row.id.empty() && !html.hasId(row.id))
        attributes.emplace_back("id", row.id);
    if (!row.classes.empty())
        attributes.emplace_back("class", row.classes);
    const Html::Element element = html.in("tr", attributes);
    for (size_t i = 0; i < row.cells.size(); ++i)
        writeCell(html, row.cells[i], i == 0 ? "th" : "td", table.columns[i]);
}

std::string captionOf(const PageTable& table, size_t shown)
{
    const size_t all = std::max(table.total, table.rows.size());
    return shown == all ? table.caption : fmt::format("{}: {}", table.caption, countShown(shown, all, "row"));
}

void writeContent(Html& html, const PageTable& table)
{
    const size_t shown = std::min(table.rows.size(), maxRows);
    const std::string caption = captionOf(table, shown);
    const Html::Element box = scrollBox(html, caption);
    const Html::Element element = html.in("table", {{"class", table.sortable ? "sortable" : "fixed"}});
    html.element("caption", caption);
    {
        const Html::Element head = html.in("thead");
        const Html::Element row = html.in("tr");
        for (const PageColumn& column : table.columns)
            html.element("th", {{"scope", "col"}, {"class", column.numeric ? "number" : "words"}},
                         column.name);
    }
    const Html::Element body = html.in("tbody");
    for (size_t i = 0; i < shown; ++i)
        writeRow(html, table, table.rows[i]);
}

} // namespace

Html::Element scrollBox(Html& html, const std::string& label)
{
    return html.in("div", {{"class", "scroll"}, {"tabindex", "0"}, {"role", "group"}, {"aria-label", label}});
}

void writeTable(Html& html, const PageTable& table)
{
    if (!table.collapsed) {
        writeContent(html, table);
        return;
    }
    const Html::Element details = html.in("details");
    html.element("summary", "The values as a table");
    writeContent(html, table);
}

} // namespace algdata
