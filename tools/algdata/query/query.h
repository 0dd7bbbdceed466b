/* SPDX-License-Identifier: Apache-2.0 */
/* --where, --sort and --head, over the records of one file. */
#ifndef ALGDATA_QUERY_H
#define ALGDATA_QUERY_H

#include <functional>
#include <optional>

#include "query/fields.h"
#include "query/ranks.h"
#include "reading/records.h"
#include "reading/source.h"
#include "view/view.h"

namespace algdata
{

/* Conditions and sort keys, looked up in the kind of one source. */
class Query
{
  public:
    /* requireFields() must have accepted the options. */
    Query(const Source& source, const Options& options);

    /* False if the kind or the source does not match, or if a condition names a field of another kind. */
    bool matchesFile() const { return fileFits; }

    /* Whether an entry of a record matches or, if `entry` is null, the record. */
    bool fitsPart(const Record& record, const std::vector<Token>* entry) const;

    /* Removes the entries that do not match. Returns false if the record does not match. */
    bool keep(Record& record) const;

    bool sorts() const { return !headKeys.empty(); }

    /* Sorts the places of records in a view. */
    void sort(View& view, std::vector<size_t>& places) const;

    /* Sorts the entries of a record. */
    void sortEntries(Record& record) const;

  private:
    struct Term {
        Condition::Test test;
        Rank wanted;
        const Field* field;
        std::vector<size_t> columns;
    };
    struct Key {
        const Field* field;
        size_t column;
        bool descending;
    };
    void addCondition(const Condition& condition, const std::string& sourceName);
    static bool addTerm(std::vector<Term>& terms, const Layout& layout, const Condition& condition);
    static bool addKeys(std::vector<Key>& keys, const Layout& layout, const SortKey& key);
    static bool fits(const Term& term, const std::vector<Token>& cells);
    static bool fitsAll(const std::vector<Term>& terms, const std::vector<Token>& cells);
    template <size_t Keys> static void sortBy(View& view, std::vector<size_t>& places, const Key* keys);
    static Rank rankBy(const Key& key, const std::vector<Token>& cells);

    const Kind& kind;
    bool fileFits = true;
    std::vector<Term> headTerms;
    std::vector<Term> entryTerms;
    std::vector<Key> headKeys;
    std::vector<Key> entryKeys;
};

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

/* The records of a source that --view, --where, --sort and --head select. None of them is kept in memory. */
class SelectedRecords
{
  public:
    /* The source must live as long. Throws Failure if the module's reader refuses the file. */
    SelectedRecords(const Source& source, const Options& options);

    /* Visits the records. Returns the counts of all and of the visited ones. */
    Visited each(const VisitRecord& visit);

    /* After each(), visits the same records again. */
    void again(const VisitRecord& visit);

  private:
    void show(Record& record, const VisitRecord& visit) const;
    void eachSorted(const VisitRecord& visit);

    const Query query;
    std::optional<View> view; /* null if the conditions on kind and source do not match */
    const size_t limit;
    std::vector<size_t> places; /* only used for sorting */
};

/* Visits the selected records of a source once. */
Visited eachRecord(const Source& source, const Options& options, const VisitRecord& visit);

} // namespace algdata

#endif
