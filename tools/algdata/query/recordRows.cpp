/* SPDX-License-Identifier: Apache-2.0 */
#include "query/recordRows.h"

#include <algorithm>

#include "query/fields.h"

namespace algdata
{

/* ---- Columns ------------------------------------------------------------ */

RecordRows::RecordRows(const Kind& of, bool isLoaded) : kind(of), loaded(isLoaded)
{
    add("kind", "TEXT", {From::Kind});
    add("source", "TEXT", {From::Source});
    addLayout(kind.head, From::Head);
    addLayout(kind.entry, From::Entry);
    if (kind.hasEntries() || elements > 1) {
        part = kind.hasEntries() ? "entry" : kind.part;
        add(part, "INTEGER", {From::Part, true});
    }
    add("_line", "INTEGER", {From::Line});
    add("_record", "INTEGER", {From::Record});
}

/* The first column of a name counts. */
void RecordRows::add(const std::string& name, const std::string& type, Origin origin)
{
    const auto same = [&](const RowColumn& column) { return column.name == name; };
    if (std::any_of(all.begin(), all.end(), same))
        return;
    all.push_back({name, type});
    origins.push_back(std::move(origin));
}

void RecordRows::addLayout(const Layout& layout, From where)
{
    for (size_t i = 0; i < layout.fields.size(); ++i) {
        const Field& field = layout.fields[i];
        const std::vector<size_t>& places = layout.placeOf[i];
        for (const size_t place : places)
            add(layout.columns[place].name, columnType(field.type),
                {where, where == From::Entry, &field, {place}});
        if (places.size() > 1)
            add(field.name, columnType(field.type), {where, true, &field, places});
        elements = std::max(elements, places.size());
    }
}

std::vector<size_t> RecordRows::columnsNamed(const std::string& name) const
{
    std::vector<size_t> found;
    for (size_t i = 0; i < all.size(); ++i) {
        const bool element = origins[i].field != nullptr && name == origins[i].field->name;
        if (origins[i].places.size() <= 1 && (element || all[i].name == name))
            found.push_back(i);
    }
    return found;
}

/* ---- Rows --------------------------------------------------------------- */

void RecordRows::show(const Source& source, View& view, bool withParts,
                      std::function<void(const Record&)> reads)
{
    sourceName = source.name;
    from = &view;
    begin = 0;
    whenRead = std::move(reads);
    parted = withParts;
    shown = &current;
}

void RecordRows::show(const Source& source, const Record& record, size_t which)
{
    sourceName = source.name;
    from = nullptr;
    shown = &record;
    begin = which < AllParts ? which : 0;
    end = which == AllParts ? partsOf(record) : begin + 1;
}

/* A record without entries is a row, too. */
size_t RecordRows::partsOf(const Record& record) const
{
    return kind.hasEntries() ? std::max<size_t>(record.entries.size(), 1) : elements;
}

void RecordRows::first()
{
    at = begin;
    ended = shown == nullptr;
    if (from != nullptr)
        nextRecord();
}

void RecordRows::next()
{
    if (++at < end)
        return;
    if (from != nullptr)
        nextRecord();
    else
        ended = true;
}

void RecordRows::nextRecord()
{
    ended = !from->next(current);
    if (ended)
        return;
    whenRead(current);
    at = 0;
    end = parted ? partsOf(current) : 1;
}

SqlValue RecordRows::value(size_t column)
{
    const Origin& origin = origins[column];
    switch (origin.from) {
    case From::Kind:
        return textValue(kind.name);
    case From::Source:
        return textValue(sourceName);
    case From::Line:
        return loaded ? SqlValue() : sizeValue(shown->line);
    case From::Record:
        return sizeValue(shown->index);
    case From::Part:
        return kind.hasEntries() && at >= shown->entries.size() ? SqlValue() : sizeValue(at);
    case From::Head:
        if (origin.places.size() == 1)
            return valueOf(*origin.field, shown->cells[origin.places[0]]);
        return at < origin.places.size() ? valueOf(*origin.field, shown->cells[origin.places[at]])
                                         : SqlValue();
    case From::Entry:
        if (at < shown->entries.size())
            return valueOf(*origin.field, shown->entries[at][origin.places[0]]);
        break;
    }
    return {};
}

std::vector<std::string> otherColumns()
{
    std::vector<std::string> names = {"_line", "_record"};
    const std::vector<std::string> fields = fieldNames(nullptr);
    for (const Kind& kind : kinds()) {
        const RecordRows rows(kind, false);
        if (!rows.partName().empty() &&
            std::find(fields.begin(), fields.end(), rows.partName()) == fields.end())
            names.push_back(rows.partName());
    }
    return names;
}

} // namespace algdata
