/* SPDX-License-Identifier: Apache-2.0 */
#include "query/changes.h"

#include <algorithm>

#include "records/keys.h"

namespace algdata
{

const Record& RecordAt::operator[](size_t place)
{
    if (place != current)
        source.readAt(place, record);
    current = place;
    return record;
}

/* A file without records needs no count line. */
bool CountLine::isRight() const
{
    if (!present(stated))
        return records == 0;
    const std::optional<Number> number = wholeNumber(stated);
    return number && number->magnitude == records && (!number->negative || records == 0);
}

namespace
{

using Items = std::vector<Item>;

bool isHashLess(const Item& a, const Item& b)
{
    return a.hash == b.hash ? isBefore(a, b) : a.hash < b.hash;
}

const Layout& layoutOf(const Kind& kind, const Item& item)
{
    return item.isEntry() ? kind.entry : kind.head;
}

/* The key of an item. The key of an entry includes the key of its record. */
std::string keyOf(const Kind& kind, const Item& item, const Record& record)
{
    std::string key = (item.isEntry() ? "entry " : "record ") + keyValues(kind.head, record.cells);
    if (item.isEntry())
        key += "\n" + keyValues(kind.entry, item.cellsOf(record));
    return key;
}

/* All fields except the position, which every write renumbers. */
std::string contentOf(const Kind& kind, const Item& item, const Record& record)
{
    std::string content = keyOf(kind, item, record);
    const Layout& layout = layoutOf(kind, item);
    const std::vector<Token>& cells = item.cellsOf(record);
    for (size_t i = 0; i < cells.size(); ++i)
        if (!layout.columns[i].field->position)
            (content += present(cells[i]) ? "\n" : "\n\n") += cells[i];
    return content;
}

Items itemsOf(const Kind& kind, View& view, CountLine& count, size_t& wrongLines)
{
    Items items;
    items.reserve(view.sizeHint());
    Record record;
    while (view.next(record)) {
        ++count.records;
        wrongLines += record.wrongLines;
        for (uint32_t part = 0; part <= record.entries.size(); ++part) {
            Item& item = items.emplace_back(Item{{}, record.place, part});
            item.hash = hashOf(contentOf(kind, item, record));
        }
    }
    count.stated = view.countLine();
    return items;
}

/* Removes pairs of items with the same hash, one of each side. Calls `paired` for each pair. */
template <typename Paired> void dropPairs(Items& before, Items& after, const Paired& paired)
{
    std::sort(before.begin(), before.end(), isHashLess);
    std::sort(after.begin(), after.end(), isHashLess);
    auto keptBefore = before.begin();
    auto keptAfter = after.begin();
    auto a = before.begin();
    auto b = after.begin();
    while (a != before.end() && b != after.end()) {
        if (a->hash == b->hash)
            paired(*a++, *b++);
        else if (a->hash < b->hash)
            *keptBefore++ = *a++;
        else
            *keptAfter++ = *b++;
    }
    before.erase(keptBefore, a);
    after.erase(keptAfter, b);
}

void hashKeys(const Kind& kind, View& view, Items& items)
{
    std::sort(items.begin(), items.end(), isBefore);
    RecordAt records(view);
    for (Item& item : items)
        item.hash = hashOf(keyOf(kind, item, records[item.place]));
}

} // namespace

/*
 * Pairs records with equal content first, then those with equal keys. So in a history, where keys repeat,
 * the old records pair with themselves and only the new ones are reported.
 */
Changes changesBetween(const Kind& kind, View& before, View& after)
{
    Changes changes;
    Items& removed = changes.removed;
    Items& added = changes.added;
    removed = itemsOf(kind, before, changes.countBefore, changes.wrongLinesBefore);
    added = itemsOf(kind, after, changes.countAfter, changes.wrongLinesAfter);
    dropPairs(removed, added, [](const Item&, const Item&) {});
    hashKeys(kind, before, removed);
    hashKeys(kind, after, added);
    dropPairs(removed, added, [&](const Item& a, const Item& b) { changes.changed.push_back({a, b}); });
    std::sort(changes.changed.begin(), changes.changed.end(),
              [](const ItemPair& a, const ItemPair& b) { return isBefore(a.before, b.before); });
    std::sort(removed.begin(), removed.end(), isBefore);
    std::sort(added.begin(), added.end(), isBefore);
    return changes;
}

} // namespace algdata
