/* SPDX-License-Identifier: Apache-2.0 */
/* The differences of two files as texts, filtered by --where and --columns. */
#ifndef ALGDATA_DIFFERENCES_H
#define ALGDATA_DIFFERENCES_H

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "query/changes.h"
#include "query/fields.h"
#include "query/filter.h"

namespace algdata
{

struct Difference {
    const char* what; /* "added", "removed" or "changed" */
    std::string key;
    struct Values {
        std::string field;
        std::string before; /* empty for an added record */
        std::string after;  /* empty for a removed record */
    };
    std::vector<Values> fields;
};

/* The fields of an added or removed record. A changed record has those that changed. */
enum class FieldsOfOneSide : uint8_t { None, All };

class DifferenceTexts
{
    /* The filter for the records of one of the files. */
    class Side
    {
      public:
        Side(const Source& of, Filter& with);
        bool fits(const Item& item, const Record& record) const;

      private:
        const Source& source;
        KindFilter* const filter; /* null without conditions */
        const bool matches;       /* the conditions on kind and source */
    };

  public:
    /* The kind of both sources is that of `before`. The sources, the filter and the views must live as long.
     */
    DifferenceTexts(const Source& before, const Source& after, Filter& filter, View& oldView, View& newView,
                    FieldsOfOneSide ofOneSide = FieldsOfOneSide::None);

    /*
     * Visits the count line, removed and changed records in the order of the old file, then added records.
     * Leaves out what the filters reject.
     */
    void each(const Changes& changes, const std::function<void(const Difference&)>& visit);

  private:
    std::optional<Difference> ofRemoved(const Item& item);
    std::optional<Difference> ofAdded(const Item& item);
    std::optional<Difference> ofChanged(const Item& before, const Item& after);
    std::optional<Difference> ofCounts(const CountLine& before, const CountLine& after) const;
    std::optional<Difference> ofOneSide(const char* what, const Item& item, const Record& record,
                                        const Side& side) const;
    std::string keyOf(const Item& item, const Record& record) const;
    const std::vector<Pick>& picksOf(const Item& item) const
    {
        return item.isEntry() ? selection.entry : selection.head;
    }

    const Kind& kind;
    const bool allFields; /* without --columns */
    const FieldsOfOneSide oneSided;
    const Selection selection;
    const Side oldSide;
    const Side newSide;
    RecordAt oldRecords;
    RecordAt newRecords;
};

} // namespace algdata

#endif
