/* SPDX-License-Identifier: Apache-2.0 */
#include "query/differences.h"

#include "records/keys.h"
#include "text/wording.h"

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

DifferenceTexts::Side::Side(const Source& of, Filter& with)
    : source(of), filter(with.selects() ? &with.of(*of.kind) : nullptr),
      matches(filter == nullptr || filter->matchesFile(source))
{
}

bool DifferenceTexts::Side::fits(const Item& item, const Record& record) const
{
    return matches && (filter == nullptr || filter->matchesPart(source, record, item.part));
}

DifferenceTexts::DifferenceTexts(const Source& before, const Source& after, Filter& filter, View& oldView,
                                 View& newView, FieldsOfOneSide ofOneSide)
    : kind(*before.kind), allFields(filter.options().columns.empty()), oneSided(ofOneSide),
      selection(selectionFor(kind, filter.options())), oldSide(before, filter), newSide(after, filter),
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

std::optional<Difference> DifferenceTexts::ofRemoved(const Item& item)
{
    return ofOneSide("removed", item, oldRecords[item.place], oldSide);
}

std::optional<Difference> DifferenceTexts::ofAdded(const Item& item)
{
    return ofOneSide("added", item, newRecords[item.place], newSide);
}

std::optional<Difference> DifferenceTexts::ofOneSide(const char* what, const Item& item, const Record& record,
                                                     const Side& side) const
{
    if (picksOf(item).empty() || !side.fits(item, record))
        return std::nullopt;
    Difference shown = {what, keyOf(item, record), {}};
    if (oneSided == FieldsOfOneSide::None)
        return shown;
    const bool added = &side == &newSide;
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
    if (!oldSide.fits(before, old) && !newSide.fits(after, fresh))
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
    if (!allFields || !oldSide.fits({}, none))
        return std::nullopt;
    const auto text = [](Token stated) { return present(stated) ? printable(stated) : "-"; };
    return Difference{"changed", "the count line", {{"count", text(before.stated), text(after.stated)}}};
}

} // namespace algdata
