/* SPDX-License-Identifier: Apache-2.0 */
#include "query/query.h"

#include <algorithm>

#include "text/wording.h"

namespace algdata
{

/* ---- Visiting ----------------------------------------------------------- */

void Extent::add(const Record& record)
{
    ++records;
    entries += record.entries.size();
    fullest = std::max(fullest, record.entries.size());
    wrongLines += record.wrongLines;
}

void Extent::add(const Extent& other)
{
    records += other.records;
    entries += other.entries;
    fullest = std::max(fullest, other.fullest);
    wrongLines += other.wrongLines;
}

std::string extentText(const Extent& shown, const Extent& all)
{
    std::string text = countShown(shown.records, all.records, "record");
    if (shown.entries != all.entries)
        text += ", " + countShown(shown.entries, all.entries, "entry");
    return text;
}

SelectedRecords::SelectedRecords(const Source& of, Filter& with) : source(of), filter(with)
{
    const Options& options = filter.options();
    limit = std::min(options.head.value_or(SIZE_MAX), filter.remaining());
    KindFilter* const own = filter.selects() ? &filter.of(*source.kind) : nullptr;
    if (own != nullptr && !own->matchesFile(source))
        return;
    view.emplace(source, options.loaded);
    if (own != nullptr && own->selects())
        kind = own;
}

Visited SelectedRecords::each(const VisitRecord& visit)
{
    Visited visited;
    visited.matches = view.has_value();
    if (!visited.matches)
        return visited;
    const auto count = [&](Record& record) {
        visited.shown.add(record);
        visit(record);
    };
    if (kind == nullptr)
        eachOfFile(count, visited.all);
    else if (kind->streams())
        eachMatching(count, visited.all);
    else {
        kind->start(source, *view, [&](const Record& record) { visited.all.add(record); });
        chosen = kind->chosen(limit);
        eachChosen(count);
    }
    filter.count(visited.shown.records);
    return visited;
}

void SelectedRecords::again(const VisitRecord& visit)
{
    Extent all;
    if (view)
        view->restart();
    if (view && kind == nullptr)
        eachOfFile(visit, all);
    else if (view && kind->streams())
        eachMatching(visit, all);
    else
        eachChosen(visit);
}

void SelectedRecords::eachOfFile(const VisitRecord& visit, Extent& all)
{
    Record record;
    for (size_t shown = 0; view->next(record); ++shown) {
        all.add(record);
        if (shown < limit)
            visit(record);
    }
}

/* The records after the last one to show are only counted. */
void SelectedRecords::eachMatching(const VisitRecord& visit, Extent& all)
{
    kind->start(source, *view, [&](const Record& record) { all.add(record); });
    Record* record = nullptr;
    for (size_t shown = 0; shown < limit && (record = kind->next()) != nullptr; ++shown)
        visit(*record);
    Record rest;
    while (view->next(rest))
        all.add(rest);
}

void SelectedRecords::eachChosen(const VisitRecord& visit)
{
    Record record;
    for (const Chosen& one : chosen) {
        view->readAt(one.place, record);
        kind->keep(record, one);
        visit(record);
    }
}

Visited eachRecord(const Source& source, Filter& filter, const VisitRecord& visit)
{
    return SelectedRecords(source, filter).each(visit);
}

} // namespace algdata
