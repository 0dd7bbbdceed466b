/* SPDX-License-Identifier: Apache-2.0 */
#include "query/differences.h"

#include "output/wording.h"
#include "reading/keys.h"

namespace algdata
{

namespace
{

std::string valueOf(const Pick& pick, const std::vector<Token>& cells)
{
    std::string value;
    for (const size_t column : pick.columns)
        value += (value.empty() ? "" : " ") + printable(present(cells[column]) ? cells[column] : "-");
    return value;
}

} // namespace

DifferenceTexts::DifferenceTexts(const Source& before, const Source& after, const Options& options,
                                 View& oldView, View& newView, FieldsOfOneSide ofOneSide)
    : kind(*before.kind), allFields(options.columns.empty()), oneSided(ofOneSide),
      selection(selectionFor(kind, options)), oldQuery(before, options), newQuery(after, options),
      oldRecords(oldView), newRecords(newView)
{
}

void DifferenceTexts::each(const Changes& changes, const std::function<void(const Difference&)>& visit)
{
    const auto show = [&](const std::optional<Difference>& difference) {
        if (difference)
            visit(*difference);
    };
    if (changes.countsDiffer())
        show(ofCounts(changes.countBefore, changes.countAfter));
    auto changed = changes.changed.begin();
    for (const Item& removed : changes.removed) {
        for (; changed != changes.changed.end() && isBefore(changed->before, removed); ++changed)
            show(ofChanged(changed->before, changed->after));
        show(ofRemoved(removed));
    }
    for (; changed != changes.changed.end(); ++changed)
        show(ofChanged(changed->before, changed->after));
    for (const Item& added : changes.added)
        show(ofAdded(added));
}

std::string DifferenceTexts::keyOf(const Item& item, const Record& record) const
{
    const std::string key = keyText(kind.head, record.cells);
    if (!item.isEntry())
        return key.empty() ? "the header" : key;
    return key + (key.empty() ? "" : " ") + keyText(kind.entry, item.cellsOf(record));
}

bool DifferenceTexts::fits(const Query& query, const Item& item, const Record& record)
{
    return query.fitsPart(record, item.isEntry() ? &item.cellsOf(record) : nullptr);
}

std::optional<Difference> DifferenceTexts::ofRemoved(const Item& item)
{
    return ofOneSide("removed", item, oldRecords[item.place], oldQuery);
}

std::optional<Difference> DifferenceTexts::ofAdded(const Item& item)
{
    return ofOneSide("added", item, newRecords[item.place], newQuery);
}

std::optional<Difference> DifferenceTexts::ofOneSide(const char* what, const Item& item, const Record& record,
                                                     const Query& query) const
{
    if (picksOf(item).empty() || !fits(query, item, record))
        return std::nullopt;
    Difference shown = {what, keyOf(item, record), {}};
    if (oneSided == FieldsOfOneSide::None)
        return shown;
    const bool added = &query == &newQuery;
    for (const Pick& pick : picksOf(item))
        if (!pick.field->key && !pick.field->position) {
            const std::string value = valueOf(pick, item.cellsOf(record));
            shown.fields.push_back({pick.name, added ? "" : value, added ? value : ""});
        }
    return shown;
}

std::optional<Difference> DifferenceTexts::ofChanged(const Item& before, const Item& after)
{
    const Record& old = oldRecords[before.place];
    const Record& fresh = newRecords[after.place];
    if (!fits(oldQuery, before, old) && !fits(newQuery, after, fresh))
        return std::nullopt;
    Difference shown = {"changed", keyOf(before, old), {}};
    for (const Pick& pick : picksOf(before)) {
        const std::string was = valueOf(pick, before.cellsOf(old));
        const std::string is = valueOf(pick, after.cellsOf(fresh));
        if (was != is && !pick.field->position)
            shown.fields.push_back({pick.name, was, is});
    }
    return shown.fields.empty() ? std::nullopt : std::optional(shown);
}

/* The count line has no field, so --columns and a condition on a field reject it. */
std::optional<Difference> DifferenceTexts::ofCounts(const CountLine& before, const CountLine& after) const
{
    Record none;
    none.cells.resize(kind.head.columns.size());
    if (!allFields || !oldQuery.fitsPart(none, nullptr))
        return std::nullopt;
    const auto text = [](Token stated) { return present(stated) ? printable(stated) : "-"; };
    return Difference{"changed", "the count line", {{"count", text(before.stated), text(after.stated)}}};
}

} // namespace algdata
