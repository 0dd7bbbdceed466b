/* SPDX-License-Identifier: Apache-2.0 */
#include "query/order.h"

#include <algorithm>

#include <fmt/format.h>

#include "text/wording.h"

namespace algdata
{

namespace
{

constexpr size_t placeAt = 0;
constexpr size_t sizeAt = 1;

} // namespace

/* The table has the columns that the order reads, of all kinds. The other kinds have null there. */
RecordOrder::RecordOrder(Filter& of) : filter(of), columns{{"_place", "INTEGER"}, {"_size", "INTEGER"}}
{
    for (const Kind& kind : kinds()) {
        if (filter.options().kind != nullptr && filter.options().kind != &kind)
            continue;
        KindFilter& own = filter.of(kind);
        const std::vector<RowColumn>& all = own.table().columns();
        for (size_t i = 0; i < all.size(); ++i)
            if (own.sortColumns().count(all[i].name) != 0)
                fill[&kind].emplace_back(columnFor(all[i]), i);
    }
    for (const SortKey& key : filter.options().sort)
        addTerms(key);
    expressions.create("shown", columns);
    std::string values = "?";
    for (size_t i = 1; i < columns.size(); ++i)
        values += ", ?";
    insertion = expressions.prepareOwn("INSERT INTO shown VALUES (" + values + ")");
}

/* SQL does not distinguish names by their letter case. */
size_t RecordOrder::columnFor(const RowColumn& column)
{
    const auto same = [&](const RowColumn& other) { return lowered(other.name) == lowered(column.name); };
    const auto found = std::find_if(columns.begin(), columns.end(), same);
    const size_t index = static_cast<size_t>(found - columns.begin());
    if (index == columns.size())
        columns.push_back(column);
    return index;
}

void RecordOrder::addTerms(const SortKey& key)
{
    if (!key.expression.empty()) {
        terms += key.expression + "\n, ";
        return;
    }
    for (const RowColumn& column : columns)
        if (column.name == key.field || column.name.compare(0, key.field.size() + 1, key.field + ".") == 0)
            terms += sortSql(column.name, key.descending) + ", ";
}

void RecordOrder::add(const Source& source, const Record& record, size_t place, size_t size)
{
    for (size_t i = 0; i < columns.size(); ++i)
        insertion->bind(static_cast<int>(i) + 1, SqlValue());
    insertion->bind(placeAt + 1, sizeValue(place));
    insertion->bind(sizeAt + 1, sizeValue(size));
    RecordRows& row = filter.of(*source.kind).rowOf(source, record);
    for (const auto& [here, there] : fill[source.kind])
        insertion->bind(static_cast<int>(here) + 1, row.value(there));
    insertion->step();
    insertion->reset();
}

void RecordOrder::each(size_t most, const std::function<void(size_t place, size_t size)>& visit)
{
    Prepared ordered =
        expressions.prepare("SELECT _place, _size FROM shown ORDER BY " + terms + "rowid LIMIT ?1");
    ordered.bind(1, sizeValue(std::min<size_t>(most, INT64_MAX)));
    while (ordered.step())
        visit(static_cast<size_t>(ordered.integer(placeAt)), static_cast<size_t>(ordered.integer(sizeAt)));
}

} // namespace algdata
