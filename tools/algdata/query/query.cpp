/* SPDX-License-Identifier: Apache-2.0 */
#include "query/query.h"

#include <algorithm>
#include <charconv>

#include "view/view.h"

namespace algdata
{

/* ---- Names of fields ---------------------------------------------------- */

std::vector<size_t> columnsNamed(const Layout& layout, const std::string& name)
{
    for (size_t i = 0; i < layout.fields.size(); ++i)
        if (name == layout.fields[i].name)
            return layout.placeOf[i];
    for (size_t i = 0; i < layout.columns.size(); ++i)
        if (name == layout.columns[i].name)
            return {i};
    return {};
}

namespace
{

void requireField(const std::string& name)
{
    if (name == "kind" || name == "source")
        return;
    for (const Kind& kind : kinds())
        if (!columnsNamed(kind.head, name).empty() || !columnsNamed(kind.entry, name).empty())
            return;
    throw Failure("no kind has a field " + name + "; `algdata kinds` lists the fields");
}

} // namespace

void requireFields(const Options& options)
{
    for (const std::string& name : options.columns)
        requireField(name);
    for (const Condition& condition : options.where)
        requireField(condition.field);
    for (const SortKey& key : options.sort)
        requireField(key.field);
}

Condition conditionFrom(const std::string& text)
{
    const size_t at = text.find_first_of("=<>!");
    if (at == 0 || at == std::string::npos || (text[at] == '!' && text.compare(at, 2, "!=") != 0))
        throw Failure("--where " + text + ": expected field=value, or !=, <, <=, > or >= for the =");
    Condition condition;
    condition.field = text.substr(0, at);
    const bool withEqual = text[at] != '=' && at + 1 < text.size() && text[at + 1] == '=';
    condition.value = text.substr(at + (withEqual ? 2 : 1));
    switch (text[at]) {
    case '!':
        condition.test = Condition::Unequal;
        break;
    case '<':
        condition.test = withEqual ? Condition::LessOrEqual : Condition::Less;
        break;
    case '>':
        condition.test = withEqual ? Condition::GreaterOrEqual : Condition::Greater;
        break;
    default:
        condition.test = Condition::Equal;
    }
    return condition;
}

SortKey sortKeyFrom(const std::string& text)
{
    const bool descending = !text.empty() && text[0] == '-';
    return {descending ? text.substr(1) : text, descending};
}

/* ---- Comparing ---------------------------------------------------------- */

namespace
{

std::optional<double> numberIn(Token text)
{
    double value = 0;
    const char* end = text.data() + text.size();
    if (text.empty() || std::from_chars(text.data(), end, value).ptr != end || value != value)
        return std::nullopt;
    return value;
}

/* MACs are never numbers, whatever their digits. */
int compare(const Field& field, Token a, Token b)
{
    return field.type == Type::Mac ? a.compare(b) : compareTexts(a, b);
}

} // namespace

int compareTexts(std::string_view a, std::string_view b)
{
    const std::optional<double> x = numberIn(a);
    const std::optional<double> y = numberIn(b);
    if (x && y)
        return *x < *y ? -1 : *x > *y ? 1 : 0;
    /* Numbers stand before all else, so that there is one order. */
    return x ? -1 : y ? 1 : a.compare(b);
}

bool holds(Condition::Test test, int order)
{
    switch (test) {
    case Condition::Equal:
    case Condition::Unequal:
        return order == 0;
    case Condition::Less:
        return order < 0;
    case Condition::LessOrEqual:
        return order <= 0;
    case Condition::Greater:
        return order > 0;
    case Condition::GreaterOrEqual:
        return order >= 0;
    }
    return false;
}

namespace
{

/* Of an array some element has to fit; with != none may be equal. */
bool fits(const Condition& condition, const Layout& layout, const std::vector<size_t>& columns,
          const std::vector<Token>& cells)
{
    const bool found = std::any_of(columns.begin(), columns.end(), [&](size_t column) {
        return present(cells[column]) &&
               holds(condition.test, compare(*layout.columns[column].field, cells[column], condition.value));
    });
    return found != (condition.test == Condition::Unequal);
}

bool fitsText(const Condition& condition, const std::string& text)
{
    return holds(condition.test, text.compare(condition.value)) != (condition.test == Condition::Unequal);
}

/* Conditions and sort keys, looked up in one kind. */
class Query
{
  public:
    Query(const Source& source, const Options& options);

    bool wantsFile() const { return fileFits; }

    /* Takes entries that do not fit out of the record; false where the record itself does not. */
    bool keep(Record& record) const;

    void sort(std::vector<Record>& records) const;

  private:
    struct Term {
        const Condition* condition;
        std::vector<size_t> columns;
    };
    struct Key {
        std::vector<size_t> columns;
        bool descending;
    };

    const Kind& kind;
    bool fileFits = true;
    std::vector<Term> headTerms;
    std::vector<Term> entryTerms;
    std::vector<Key> headKeys;
    std::vector<Key> entryKeys;
};

Query::Query(const Source& source, const Options& options) : kind(*source.kind)
{
    for (const Condition& condition : options.where) {
        if (condition.field == "kind" || condition.field == "source") {
            const bool byKind = condition.field == "kind";
            fileFits = fileFits && fitsText(condition, byKind ? std::string(kind.name) : source.name);
            continue;
        }
        const std::vector<size_t> head = columnsNamed(kind.head, condition.field);
        const std::vector<size_t> entry = columnsNamed(kind.entry, condition.field);
        if (!head.empty())
            headTerms.push_back({&condition, head});
        else if (!entry.empty())
            entryTerms.push_back({&condition, entry});
        else
            fileFits = false; /* a field of another kind */
    }
    for (const SortKey& key : options.sort) {
        const std::vector<size_t> head = columnsNamed(kind.head, key.field);
        const std::vector<size_t> entry = columnsNamed(kind.entry, key.field);
        if (!head.empty())
            headKeys.push_back({head, key.descending});
        else if (!entry.empty())
            entryKeys.push_back({entry, key.descending});
    }
}

bool Query::keep(Record& record) const
{
    for (const Term& term : headTerms)
        if (!fits(*term.condition, kind.head, term.columns, record.cells))
            return false;
    if (entryTerms.empty())
        return true;
    const auto misfit = [&](const std::vector<Token>& cells) {
        return std::any_of(entryTerms.begin(), entryTerms.end(), [&](const Term& term) {
            return !fits(*term.condition, kind.entry, term.columns, cells);
        });
    };
    record.entries.erase(std::remove_if(record.entries.begin(), record.entries.end(), misfit),
                         record.entries.end());
    return !record.entries.empty();
}

void Query::sort(std::vector<Record>& records) const
{
    const auto before = [](const std::vector<Key>& keys, const Layout& layout, const std::vector<Token>& a,
                           const std::vector<Token>& b) {
        for (const Key& key : keys)
            for (const size_t column : key.columns) {
                const int order = compare(*layout.columns[column].field, a[column], b[column]);
                if (order != 0)
                    return (order < 0) != key.descending;
            }
        return false;
    };
    if (!headKeys.empty())
        std::stable_sort(records.begin(), records.end(), [&](const Record& a, const Record& b) {
            return before(headKeys, kind.head, a.cells, b.cells);
        });
    if (entryKeys.empty())
        return;
    for (Record& record : records)
        std::stable_sort(record.entries.begin(), record.entries.end(),
                         [&](const std::vector<Token>& a, const std::vector<Token>& b) {
                             return before(entryKeys, kind.entry, a, b);
                         });
}

/* Reads ahead of nothing: a record is handed on as soon as it is there. */
void eachStored(const Source& source, const Query& query, size_t most,
                const std::function<void(Record&)>& visit)
{
    RecordReader reader(*source.kind, source.bytes);
    Record record;
    while (most > 0 && reader.next(record)) {
        if (!query.keep(record))
            continue;
        visit(record);
        --most;
    }
}

} // namespace

void eachRecord(const Source& source, const Options& options, const std::function<void(Record&)>& visit)
{
    const Query query(source, options);
    const size_t most = options.head.value_or(SIZE_MAX);
    if (!query.wantsFile())
        return;
    if (!options.loaded && options.sort.empty()) {
        eachStored(source, query, most, visit);
        return;
    }
    Texts texts;
    std::vector<Record> records;
    if (options.loaded) {
        View view(source, true);
        for (Record record; view.next(record);) {
            Record& kept = records.emplace_back(record);
            for (Token& cell : kept.cells)
                cell = texts.add(std::string(cell));
            for (std::vector<Token>& entry : kept.entries)
                for (Token& cell : entry)
                    cell = texts.add(std::string(cell));
        }
    } else
        eachStored(source, query, SIZE_MAX, [&](Record& record) { records.push_back(record); });
    const auto unwanted = [&](Record& record) { return options.loaded && !query.keep(record); };
    records.erase(std::remove_if(records.begin(), records.end(), unwanted), records.end());
    query.sort(records);
    for (size_t i = 0; i < records.size() && i < most; ++i)
        visit(records[i]);
}

/* ---- Selection ---------------------------------------------------------- */

namespace
{

std::vector<Pick> allOf(const Layout& layout)
{
    std::vector<Pick> picks;
    for (size_t i = 0; i < layout.fields.size(); ++i)
        picks.push_back({&layout.fields[i], layout.placeOf[i], layout.fields[i].name});
    return picks;
}

} // namespace

Selection selectionFor(const Kind& kind, const Options& options)
{
    if (options.columns.empty())
        return {allOf(kind.head), allOf(kind.entry)};
    Selection selection;
    for (const std::string& name : options.columns) {
        const std::vector<size_t> head = columnsNamed(kind.head, name);
        const std::vector<size_t> entry = columnsNamed(kind.entry, name);
        if (!head.empty())
            selection.head.push_back({kind.head.columns[head[0]].field, head, name});
        else if (!entry.empty())
            selection.entry.push_back({kind.entry.columns[entry[0]].field, entry, name});
    }
    return selection;
}

} // namespace algdata
