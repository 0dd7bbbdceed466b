/* SPDX-License-Identifier: Apache-2.0 */
#include "query/changes.h"

#include <algorithm>

#include "reading/keys.h"

namespace algdata
{

const Record& RecordAt::operator[](size_t place)
{
    if (place != current)
        source.readAt(place, record);
    current = place;
    return record;
}

namespace
{

using Items = std::vector<Item>;

bool hashesBefore(const Item& a, const Item& b)
{
    return a.hash == b.hash ? standsBefore(a, b) : a.hash < b.hash;
}

const Layout& layoutOf(const Kind& kind, const Item& item)
{
    return item.isEntry() ? kind.entry : kind.head;
}

/* An entry's key is that of its record and its own. */
std::string keyOf(const Kind& kind, const Item& item, const Record& record)
{
    std::string key = (item.isEntry() ? "entry " : "record ") + keyValues(kind.head, record.cells);
    if (item.isEntry())
        key += "\n" + keyValues(kind.entry, item.cellsOf(record));
    return key;
}

/* All fields but the position, which every write renumbers. */
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

Items itemsOf(const Kind& kind, View& view, size_t& odd)
{
    Items items;
    items.reserve(view.sizeHint());
    Record record;
    while (view.next(record)) {
        odd += record.odd;
        for (uint32_t part = 0; part <= record.entries.size(); ++part) {
            Item& item = items.emplace_back(Item{{}, record.place, part});
            item.hash = hashOf(contentOf(kind, item, record));
        }
    }
    return items;
}

/* Removes the items that have the same hash on both sides, each with one of the other side. */
template <typename Paired> void dropPairs(Items& before, Items& after, const Paired& paired)
{
    std::sort(before.begin(), before.end(), hashesBefore);
    std::sort(after.begin(), after.end(), hashesBefore);
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
    std::sort(items.begin(), items.end(), standsBefore);
    RecordAt records(view);
    for (Item& item : items)
        item.hash = hashOf(keyOf(kind, item, records[item.place]));
}

} // namespace

/* Equal records first, so that in a history only what is new remains to be told. */
Changes changesBetween(const Kind& kind, View& before, View& after)
{
    Changes changes;
    Items& removed = changes.removed;
    Items& added = changes.added;
    removed = itemsOf(kind, before, changes.oddBefore);
    added = itemsOf(kind, after, changes.oddAfter);
    dropPairs(removed, added, [](const Item&, const Item&) {});
    hashKeys(kind, before, removed);
    hashKeys(kind, after, added);
    dropPairs(removed, added, [&](const Item& a, const Item& b) { changes.changed.push_back({a, b}); });
    std::sort(changes.changed.begin(), changes.changed.end(),
              [](const ItemPair& a, const ItemPair& b) { return standsBefore(a.before, b.before); });
    std::sort(removed.begin(), removed.end(), standsBefore);
    std::sort(added.begin(), added.end(), standsBefore);
    return changes;
}

} // namespace algdata
