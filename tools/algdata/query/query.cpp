/* SPDX-License-Identifier: Apache-2.0 */
#include "query/query.h"

#include <algorithm>
#include <array>

#include "output/wording.h"

namespace algdata
{

Query::Query(const Source& source, const Options& options) : kind(*source.kind)
{
    for (const Condition& condition : options.where)
        addCondition(condition, source.name);
    for (const SortKey& key : options.sort)
        if (!addKeys(headKeys, kind.head, key))
            addKeys(entryKeys, kind.entry, key);
}

void Query::addCondition(const Condition& condition, const std::string& sourceName)
{
    const bool equal = condition.test == Condition::Equal;
    if (condition.field == "source")
        fileFits = fileFits && (condition.value == sourceName) == equal;
    else if (condition.field == "kind")
        fileFits = fileFits && (findKind(condition.value) == &kind) == equal;
    else if (!addTerm(headTerms, kind.head, condition) && !addTerm(entryTerms, kind.entry, condition))
        fileFits = false; /* a field of another kind */
}

bool Query::addTerm(std::vector<Term>& terms, const Layout& layout, const Condition& condition)
{
    const std::vector<size_t> columns = columnsNamed(layout, condition.field);
    if (columns.empty())
        return false;
    const Field& field = *layout.columns[columns[0]].field;
    terms.push_back({condition.test, rankOf(condition, field), &field, columns});
    return true;
}

bool Query::addKeys(std::vector<Key>& keys, const Layout& layout, const SortKey& key)
{
    const std::vector<size_t> columns = columnsNamed(layout, key.field);
    for (const size_t column : columns)
        keys.push_back({layout.columns[column].field, column, key.descending});
    return !columns.empty();
}

/* ---- Filtering ---------------------------------------------------------- */

/* For an array, one matching element is enough. With != no element may be equal. */
bool Query::fits(const Term& term, const std::vector<Token>& cells)
{
    const auto matches = [&](size_t column) {
        const Condition::Test test = term.test == Condition::Unequal ? Condition::Equal : term.test;
        return holds(test, rankOf(*term.field, cells[column]), term.wanted);
    };
    return std::any_of(term.columns.begin(), term.columns.end(), matches) !=
           (term.test == Condition::Unequal);
}

bool Query::fitsAll(const std::vector<Term>& terms, const std::vector<Token>& cells)
{
    return std::all_of(terms.begin(), terms.end(), [&](const Term& term) { return fits(term, cells); });
}

/* A record matches a condition on its entries if one of the entries matches. */
bool Query::fitsPart(const Record& record, const std::vector<Token>* entry) const
{
    if (!fileFits || !fitsAll(headTerms, record.cells))
        return false;
    if (entry != nullptr || entryTerms.empty())
        return entry == nullptr || fitsAll(entryTerms, *entry);
    return std::any_of(record.entries.begin(), record.entries.end(),
                       [&](const std::vector<Token>& one) { return fitsAll(entryTerms, one); });
}

bool Query::keep(Record& record) const
{
    if (!fitsAll(headTerms, record.cells))
        return false;
    if (entryTerms.empty())
        return true;
    const auto fails = [&](const std::vector<Token>& entry) { return !fitsAll(entryTerms, entry); };
    record.entries.erase(std::remove_if(record.entries.begin(), record.entries.end(), fails),
                         record.entries.end());
    return !record.entries.empty();
}

/* ---- Sorting ------------------------------------------------------------ */

/* Damaged values are last in both directions. */
Rank Query::rankBy(const Key& key, const std::vector<Token>& cells)
{
    const Rank rank = rankOf(*key.field, cells[key.column]);
    return key.descending && rank != noRank ? noRank - 1 - rank : rank;
}

/* Sorts by this number of keys. Records that are equal keep their order. */
template <size_t Keys> void Query::sortBy(View& view, std::vector<size_t>& places, const Key* keys)
{
    struct Ranked {
        std::array<Rank, Keys> ranks;
        size_t place;
    };
    std::vector<Ranked> order;
    order.reserve(places.size());
    Record record;
    for (const size_t place : places) {
        view.readAt(place, record);
        Ranked& one = order.emplace_back();
        one.place = place;
        std::transform(keys, keys + Keys, one.ranks.begin(),
                       [&](const Key& key) { return rankBy(key, record.cells); });
    }
    std::stable_sort(order.begin(), order.end(),
                     [](const Ranked& a, const Ranked& b) { return a.ranks < b.ranks; });
    std::transform(order.begin(), order.end(), places.begin(), [](const Ranked& one) { return one.place; });
}

/*
 * The last keys first. Each pass reads the records again, so that a large file needs no memory for all
 * values. An array has many keys, so a pass sorts by several of them.
 */
void Query::sort(View& view, std::vector<size_t>& places) const
{
    constexpr size_t many = 16;
    constexpr size_t few = 4;
    for (size_t left = headKeys.size(); left > 0;) {
        const size_t keys = left >= many ? many : left >= few ? few : 1;
        left -= keys;
        const auto sortPass = keys == many ? sortBy<many> : keys == few ? sortBy<few> : sortBy<1>;
        sortPass(view, places, &headKeys[left]);
    }
}

void Query::sortEntries(Record& record) const
{
    for (auto key = entryKeys.rbegin(); key != entryKeys.rend(); ++key)
        std::stable_sort(record.entries.begin(), record.entries.end(),
                         [key](const std::vector<Token>& a, const std::vector<Token>& b) {
                             return rankBy(*key, a) < rankBy(*key, b);
                         });
}

/* ---- Visiting ----------------------------------------------------------- */

void Extent::add(const Record& record)
{
    ++records;
    entries += record.entries.size();
    fullest = std::max(fullest, record.entries.size());
    wrongLines += record.wrongLines;
}

void Extent::add(const Extent& other)
{
    records += other.records;
    entries += other.entries;
    fullest = std::max(fullest, other.fullest);
    wrongLines += other.wrongLines;
}

std::string extentText(const Extent& shown, const Extent& all)
{
    std::string text = countShown(shown.records, all.records, "record");
    if (shown.entries != all.entries)
        text += ", " + countShown(shown.entries, all.entries, "entry");
    return text;
}

SelectedRecords::SelectedRecords(const Source& source, const Options& options)
    : query(source, options), limit(options.head.value_or(SIZE_MAX))
{
    if (query.matchesFile())
        view.emplace(source, options.loaded);
}

Visited SelectedRecords::each(const VisitRecord& visit)
{
    Visited visited;
    visited.matches = view.has_value();
    const auto count = [&](Record& record) {
        visited.shown.add(record);
        visit(record);
    };
    Record record;
    while (view && view->next(record)) {
        visited.all.add(record);
        if (!query.keep(record))
            continue;
        if (query.sorts())
            places.push_back(record.place);
        else if (visited.shown.records < limit)
            show(record, count);
    }
    if (!places.empty())
        query.sort(*view, places);
    places.resize(std::min(places.size(), limit));
    eachSorted(count);
    return visited;
}

void SelectedRecords::again(const VisitRecord& visit)
{
    eachSorted(visit);
    if (!view || query.sorts())
        return;
    view->restart();
    Record record;
    for (size_t shown = 0; shown < limit && view->next(record);) {
        if (!query.keep(record))
            continue;
        ++shown;
        show(record, visit);
    }
}

void SelectedRecords::show(Record& record, const VisitRecord& visit) const
{
    query.sortEntries(record);
    visit(record);
}

void SelectedRecords::eachSorted(const VisitRecord& visit)
{
    Record record;
    for (const size_t place : places) {
        view->readAt(place, record);
        query.keep(record);
        show(record, visit);
    }
}

Visited eachRecord(const Source& source, const Options& options, const VisitRecord& visit)
{
    return SelectedRecords(source, options).each(visit);
}

} // namespace algdata
