/* SPDX-License-Identifier: Apache-2.0 */
/* The records of one file that the options select. */
#ifndef ALGDATA_QUERY_H
#define ALGDATA_QUERY_H

#include <functional>
#include <optional>

#include "query/filter.h"

namespace algdata
{

/* The size of a file, or of its visited part. */
struct Extent {
    size_t records = 0;
    size_t entries = 0;
    size_t fullest = 0;    /* largest number of entries of a record */
    size_t wrongLines = 0; /* lines with a wrong number of fields */

    void add(const Record& record);
    void add(const Extent& other);
};

/* "1 of 12 records, 3 of 30 entries"; entries are mentioned only if some are not shown. */
std::string extentText(const Extent& shown, const Extent& all);

struct Visited {
    bool matches = false; /* the conditions on kind and source */
    Extent all;
    Extent shown;
};

using VisitRecord = std::function<void(Record&)>;

/* The records of a source that --view, --where, --sort, --head and --limit select. None of them is kept. */
class SelectedRecords
{
  public:
    /* The source must live as long. Throws Failure if the module's reader refuses the file. */
    SelectedRecords(const Source& of, Filter& with);

    /* Visits the records. Returns the counts of all and of the visited ones. */
    Visited each(const VisitRecord& visit);

    /* After each(), visits the same records again. */
    void again(const VisitRecord& visit);

  private:
    void eachOfFile(const VisitRecord& visit, Extent& all);
    void eachMatching(const VisitRecord& visit, Extent& all);
    void eachChosen(const VisitRecord& visit);

    const Source& source;
    Filter& filter;
    KindFilter* kind = nullptr; /* null without conditions and order */
    std::optional<View> view;   /* null if the conditions on kind and source do not match */
    size_t limit;
    std::vector<Chosen> chosen; /* if the records cannot be shown while they are read */
};

/* Visits the selected records of a source once. */
Visited eachRecord(const Source& source, Filter& filter, const VisitRecord& visit);

} // namespace algdata

#endif
