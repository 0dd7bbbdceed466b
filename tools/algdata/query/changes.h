/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALGDATA_CHANGES_H
#define ALGDATA_CHANGES_H

#include <string>
#include <vector>

#include "query/hash.h"
#include "view/view.h"

namespace algdata
{

/* What is compared: a record without its entries, or one entry. */
struct Item {
    Hash hash; /* of its content, or of its key */
    size_t place;
    uint32_t part; /* 0: the record; else its entry of this number, from 1 */

    bool isEntry() const { return part != 0; }
    const std::vector<Token>& cellsOf(const Record& record) const
    {
        return isEntry() ? record.entries[part - 1] : record.cells;
    }
};

/* In the order of the file. */
inline bool standsBefore(const Item& a, const Item& b)
{
    return std::tie(a.place, a.part) < std::tie(b.place, b.part);
}

struct ItemPair {
    Item before;
    Item after;
};

/* Each in the order of its file. */
struct Changes {
    std::vector<ItemPair> changed; /* the same key, another content */
    std::vector<Item> removed;
    std::vector<Item> added;
    size_t oddBefore = 0; /* lines with a wrong number of fields */
    size_t oddAfter = 0;
};

/*
 * Compares the records of two views of one kind. Only a hash and a place per
 * record are kept, so that large files need little more memory than their bytes.
 */
Changes changesBetween(const Kind& kind, View& before, View& after);

/* Reads records by their place, the same one again without reading it. */
class RecordAt
{
  public:
    explicit RecordAt(View& view) : source(view) {}
    const Record& operator[](size_t place);

  private:
    View& source;
    Record record;
    size_t current = SIZE_MAX;
};

} // namespace algdata

#endif
