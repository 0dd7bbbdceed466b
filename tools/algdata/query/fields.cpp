/* SPDX-License-Identifier: Apache-2.0 */
#include "query/fields.h"

#include <algorithm>

#include <fmt/format.h>

#include "options/arguments.h"
#include "query/filter.h"
#include "text/suggest.h"

namespace algdata
{

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

/* ---- Unknown names ------------------------------------------------------ */

bool namesTheFile(const std::string& name)
{
    return name == "kind" || name == "source";
}

namespace
{

using Kinds = std::vector<const Kind*>;

/* The kind, or all kinds if null. */
Kinds onlyOrAll(const Kind* only)
{
    if (only != nullptr)
        return {only};
    Kinds all;
    for (const Kind& kind : kinds())
        all.push_back(&kind);
    return all;
}

/* The fields of this name, one per layout that has it. */
std::vector<const Field*> fieldsNamed(const std::string& name, const Kinds& among)
{
    std::vector<const Field*> found;
    for (const Kind* kind : among)
        for (const Layout* layout : {&kind->head, &kind->entry}) {
            const std::vector<size_t> columns = columnsNamed(*layout, name);
            if (!columns.empty())
                found.push_back(layout->columns[columns[0]].field);
        }
    return found;
}

/* "scanning has no field", "none of scanning, station has a field" or "no kind has a field". */
std::string whoHasNoField(const Kinds& among)
{
    if (among.size() == kinds().size())
        return "no kind has a field";
    if (among.size() == 1)
        return fmt::format("{} has no field", among[0]->name);
    std::string names;
    for (const Kind* kind : among)
        names += (names.empty() ? "" : ", ") + std::string(kind->name);
    return fmt::format("none of {} has a field", names);
}

std::vector<std::string> fieldNamesOf(const Kinds& among)
{
    std::vector<std::string> names;
    for (const Kind* one : among)
        for (const Layout* layout : {&one->head, &one->entry})
            for (const Field& field : layout->fields)
                if (std::find(names.begin(), names.end(), field.name) == names.end())
                    names.emplace_back(field.name);
    return names;
}

[[noreturn]] void throwUnknownField(const char* option, const std::string& name, const Kinds& among)
{
    const std::string array = name.substr(0, name.find('.'));
    int elements = 0;
    for (const Field* field : fieldsNamed(array, among))
        elements = std::max(elements, field->count);
    std::string hint;
    if (elements > 1)
        hint = fmt::format("; expected {}.0 to {}.{}", array, array, elements - 1);
    else if (elements == 1)
        hint = fmt::format("; {} is not an array", array);
    else
        hint = didYouMean(name, fieldNamesOf(among));
    throw Failure(fmt::format("{}: {} {}{} (`algdata kinds{}` lists the fields)", option,
                              whoHasNoField(among), name, hint,
                              among.size() == 1 ? std::string(" --kind ") + among[0]->name : ""));
}

} // namespace

std::vector<const Field*> requireField(const char* option, const std::string& name, const Kinds& among)
{
    std::vector<const Field*> fields = fieldsNamed(name, among);
    if (fields.empty())
        throwUnknownField(option, name, among);
    return fields;
}

namespace
{

void requireCondition(const Condition& condition, const Kinds& among)
{
    if (condition.field == "source") {
        requireWord(condition, {});
    } else if (condition.field == "kind") {
        requireWord(condition, kindWords());
    } else {
        for (const Field* field : requireField("--where", condition.field, among))
            valueFor(condition, *field);
    }
}

} // namespace

std::vector<std::string> fieldNames(const Kind* kind)
{
    return fieldNamesOf(onlyOrAll(kind));
}

void requireDistinct(const std::vector<std::string>& names)
{
    for (size_t i = 0; i < names.size(); ++i)
        for (size_t j = 0; j < i; ++j) {
            const std::string& one = names[i].size() < names[j].size() ? names[i] : names[j];
            const std::string& other = names[i].size() < names[j].size() ? names[j] : names[i];
            if (other == one)
                throw Failure(fmt::format("--columns: {} is given twice", one));
            if (other.compare(0, one.size() + 1, one + ".") == 0)
                throw Failure(fmt::format("--columns: {} is given twice, also as part of {}", other, one));
        }
}

void requireFields(const Options& options)
{
    requireFieldsOf(onlyOrAll(options.kind), options);
}

void requireFieldsOf(const std::vector<const Kind*>& among, const Options& options)
{
    for (const std::string& name : options.columns)
        if (!namesTheFile(name))
            requireField("--columns", name, among);
    requireDistinct(options.columns);
    for (const Condition& condition : options.where)
        if (!condition.isExpression())
            requireCondition(condition, among);
    for (const SortKey& key : options.sort)
        if (key.expression.empty() && !namesTheFile(key.field))
            requireField("--sort", key.field, among);
    requireExpressions(among, options);
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
    Selection selection;
    if (options.columns.empty()) {
        selection.head = allOf(kind.head);
        selection.entry = allOf(kind.entry);
    }
    for (const std::string& name : options.columns) {
        const std::vector<size_t> head = columnsNamed(kind.head, name);
        const std::vector<size_t> entry = columnsNamed(kind.entry, name);
        selection.kind = selection.kind || name == "kind";
        selection.source = selection.source || name == "source";
        if (!head.empty())
            selection.head.push_back({kind.head.columns[head[0]].field, head, name});
        else if (!entry.empty())
            selection.entry.push_back({kind.entry.columns[entry[0]].field, entry, name});
    }
    selection.onlyFile =
        !options.columns.empty() && std::all_of(options.columns.begin(), options.columns.end(), namesTheFile);
    return selection;
}

} // namespace algdata
