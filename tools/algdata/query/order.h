/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALGDATA_ORDER_H
#define ALGDATA_ORDER_H

#include "query/filter.h"

namespace algdata
{

/* The order of --sort over the records of several files. Keeps the values that it compares, not the records.
 */
class RecordOrder
{
  public:
    /* The filter must live as long. */
    explicit RecordOrder(Filter& of);

    /* Adds a record, of which a text of this size is at a place. */
    void add(const Source& source, const Record& record, size_t place, size_t size);

    /* Visits the place and size of the first records in order. */
    void each(size_t most, const std::function<void(size_t place, size_t size)>& visit);

  private:
    size_t columnFor(const RowColumn& column);
    void addTerms(const SortKey& key);

    Filter& filter;
    Expressions expressions;
    std::vector<RowColumn> columns;
    std::map<const Kind*, std::vector<std::pair<size_t, size_t>>> fill; /* column here, column of the kind */
    std::string terms;
    std::optional<Prepared> insertion;
};

} // namespace algdata

#endif
