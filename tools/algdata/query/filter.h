/* SPDX-License-Identifier: Apache-2.0 */
/* --where, --sort and --limit. */
#ifndef ALGDATA_FILTER_H
#define ALGDATA_FILTER_H

#include <map>

#include "query/expressions.h"
#include "query/recordRows.h"

namespace algdata
{

/* A record that a filter selects, and the entries of it that match. */
struct Chosen {
    size_t place;
    std::vector<size_t> entries;
};

/* The conditions and the order for the records of one kind. */
class KindFilter
{
  public:
    KindFilter(Expressions& with, const Kind& of, bool loaded);

    /* What is wrong with an expression for this kind; null if it is well. */
    std::optional<ExpressionFault> faultIn(const Expression& expression);

    /* Prepares the conditions and the order. Throws QueryFailure. */
    void prepare(const Options& options);

    /* False if a condition on kind and source rejects the file, or if one names a field of another kind. */
    bool matchesFile(const Source& source);

    /* Whether an entry of a record matches, from 1, or if `part` is 0 the record. */
    bool matchesPart(const Source& source, const Record& record, size_t part);

    /* Without conditions and order, all records match, and a reader needs no filter. */
    bool selects() const { return records.has_value(); }

    /* Whether each record can be shown at once: there is no order, and no condition on its parts. */
    bool streams() const { return !sorts && !usesParts; }

    /* Begins with the records of a view. Those that are read are passed to `reads`, also if they do not
     * match. */
    void start(const Source& source, View& view, std::function<void(const Record&)> reads);

    /* After start(), the next record that matches; null after the last one. Only if streams(). */
    Record* next();

    /* After start(), the first records that match, in order. */
    std::vector<Chosen> chosen(size_t most);

    /* Keeps the entries of a record that match, in order. */
    void keep(Record& record, const Chosen& chosen) const;

    const RecordRows& table() const { return rows; }

    /* The columns that the order reads. */
    const std::set<std::string>& sortColumns() const { return sortedBy; }

    /* The values of a record for its order. It is the only row until the next call of another function. */
    RecordRows& rowOf(const Source& source, const Record& record);

  private:
    struct Where {
        std::string sql; /* empty: no condition */
        std::vector<BoundValue> values;
    };
    bool addCondition(const Condition& condition);
    void addSimple(const Condition& condition, const std::vector<size_t>& of);
    void addSort(const std::vector<SortKey>& keys);
    bool readsOnlyFile() const;
    void noteParts();

    /* Whether the statement keeps only the first rows while it sorts, because each row is a record. */
    bool keepsFirst() const { return sorts && !usesParts; }

    Expressions& expressions;
    const Kind& kind;
    RecordRows rows;
    bool possible = true; /* no condition names a field of another kind */
    bool sorts = false;
    bool usesParts = false;
    Where ofFile;
    Where ofRecords;
    std::string order;
    std::set<std::string> sortedBy;
    std::optional<Prepared> file;
    std::optional<Prepared> records;
};

/* The filters of all kinds. Its statements are prepared once, and used for every file. */
class Filter
{
  public:
    /* requireFields() must have accepted the options. */
    explicit Filter(const Options& of);

    /* False if the options select all records, in the order of the file. */
    bool selects() const { return !chosen.where.empty() || !chosen.sort.empty(); }

    KindFilter& of(const Kind& kind);

    /* How many records --limit still allows. */
    size_t remaining() const { return left; }
    void count(size_t shown) { left -= shown; }

    const Options& options() const { return chosen; }

  private:
    const Options& chosen;
    size_t left;
    std::unique_ptr<Expressions> expressions; /* null until a kind needs it */
    std::map<const Kind*, std::unique_ptr<KindFilter>> kinds;
};

/* Throws QueryFailure if an expression of --where or --sort is wrong for all of these kinds. */
void requireExpressions(const std::vector<const Kind*>& among, const Options& options);

/* The value of a condition. Throws Failure if the field cannot have it. */
BoundValue valueFor(const Condition& condition, const Field& field);

} // namespace algdata

#endif
