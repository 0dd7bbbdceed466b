/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALGDATA_CHANGES_H
#define ALGDATA_CHANGES_H

#include <string>
#include <vector>

#include "text/hash.h"
#include "view/view.h"

namespace algdata
{

/* A unit of comparison: a record without its entries, or one entry. */
struct Item {
    Hash hash; /* of the content, later of the key */
    size_t place;
    uint32_t part; /* 0 for the record, otherwise the number of the entry, from 1 */

    bool isEntry() const { return part != 0; }
    const std::vector<Token>& cellsOf(const Record& record) const
    {
        return isEntry() ? record.entries[part - 1] : record.cells;
    }
};

/* Whether a comes before b in their file. */
inline bool isBefore(const Item& a, const Item& b)
{
    return std::tie(a.place, a.part) < std::tie(b.place, b.part);
}

struct ItemPair {
    Item before;
    Item after;
};

/* The count line of a file, and what it should be. */
struct CountLine {
    Token stated; /* null: none */
    size_t records = 0;

    bool isRight() const;
};

/* The lists are in the order of the file; `changed` in that of the old file. */
struct Changes {
    std::vector<ItemPair> changed; /* same key, different content */
    std::vector<Item> removed;
    std::vector<Item> added;
    CountLine countBefore;
    CountLine countAfter;
    size_t wrongLinesBefore = 0; /* lines with a wrong number of fields */
    size_t wrongLinesAfter = 0;

    /* A count line that follows the number of records is no difference of its own. */
    bool countsDiffer() const
    {
        return countBefore.stated != countAfter.stated && !(countBefore.isRight() && countAfter.isRight());
    }
};

/*
 * Compares the records of two views of one kind. Keeps only a hash and a place per
 * record, so that large files need little more memory than their bytes.
 */
Changes changesBetween(const Kind& kind, View& before, View& after);

/* Reads records by their place. Caches the last one. */
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
