/* SPDX-License-Identifier: Apache-2.0 */
/* --where, --sort and --head, over the records of one file. */
#ifndef ALGDATA_QUERY_H
#define ALGDATA_QUERY_H

#include <functional>

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
    /* The options' fields and values are those that requireFields() has seen. */
    Query(const Source& source, const Options& options);

    /* False where the kind or the source does not fit, or a condition is on another kind's field. */
    bool wantsFile() const { return fileFits; }

    /* Whether a record fits, or one entry of it; null for the record. */
    bool fitsPart(const Record& record, const std::vector<Token>* entry) const;

    /* Removes the entries that do not fit; false where the record itself does not. */
    bool keep(Record& record) const;

    bool sorts() const { return !headKeys.empty(); }

    /* Orders the places of records in a view. */
    void sort(View& view, std::vector<size_t>& places) const;

    /* Orders the entries of a record. */
    void sortEntries(Record& record) const;

  private:
    struct Term {
        Condition::Test test;
        Rank wanted;
        Type type;
        std::vector<size_t> columns;
    };
    struct Key {
        Type type;
        size_t column;
        bool descending;
    };
    void addCondition(const Condition& condition, const std::string& sourceName);
    static bool addTerm(std::vector<Term>& terms, const Layout& layout, const Condition& condition);
    static bool addKeys(std::vector<Key>& keys, const Layout& layout, const SortKey& key);
    static bool fits(const Term& term, const std::vector<Token>& cells);
    static bool fitsAll(const std::vector<Term>& terms, const std::vector<Token>& cells);
    static Rank rankBy(const Key& key, const std::vector<Token>& cells);

    const Kind& kind;
    bool fileFits = true;
    std::vector<Term> headTerms;
    std::vector<Term> entryTerms;
    std::vector<Key> headKeys;
    std::vector<Key> entryKeys;
};

/* How much a file holds, or how much of it was visited. */
struct Extent {
    size_t records = 0;
    size_t entries = 0;
    size_t fullest = 0; /* entries of one record */
    size_t odd = 0;     /* lines whose number of fields is wrong */

    void add(const Record& record);
    void add(const Extent& other);
};

/* "1 of 12 records, 3 of 30 entries"; entries only where some are cut. */
std::string extentText(const Extent& shown, const Extent& all);

struct Visited {
    bool wanted = false; /* by the conditions on kind and source */
    Extent all;
    Extent shown;
};

/*
 * Visits the records of a source in the view asked for, filtered, sorted and
 * cut, and counts all of them.
 */
Visited eachRecord(const Source& source, const Options& options, const std::function<void(Record&)>& visit);

} // namespace algdata

#endif
