/* SPDX-License-Identifier: Apache-2.0 */
/* --where, --sort, --head and --columns, over the records of one file. */
#ifndef ALGDATA_QUERY_H
#define ALGDATA_QUERY_H

#include <functional>

#include "reading/records.h"
#include "reading/source.h"

namespace algdata
{

/* One field to be shown: all its elements, or one. */
struct Pick {
    const Field* field;
    std::vector<size_t> columns; /* of the layout, in order of the elements */
    std::string name;
};

/* The fields to be shown. */
struct Selection {
    std::vector<Pick> head;
    std::vector<Pick> entry;
    bool empty() const { return head.empty() && entry.empty(); }
};

/* By --columns, in its order; all fields where it is not given. */
Selection selectionFor(const Kind& kind, const Options& options);

/* Columns of a layout that a name means: one element, or all of the field. Empty: no such field. */
std::vector<size_t> columnsNamed(const Layout& layout, const std::string& name);

/* Numbers by value and first, all else by its characters: below, at or above zero. */
int compareTexts(std::string_view a, std::string_view b);
bool holds(Condition::Test test, int order);

/* Throws Failure where --columns, --where or --sort names a field that no kind has. */
void requireFields(const Options& options);

/* The records of a source in the view asked for, filtered, sorted and cut. */
void eachRecord(const Source& source, const Options& options, const std::function<void(Record&)>& visit);

} // namespace algdata

#endif
