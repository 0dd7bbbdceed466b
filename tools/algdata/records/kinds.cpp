/* SPDX-License-Identifier: Apache-2.0 */
#include "records/kinds.h"

#include <stdexcept>

#include "dataInterface.h"

namespace algdata
{

namespace
{

Layout laidOut(const formats::Layout& described)
{
    Layout layout;
    layout.fields = described.fields;
    layout.placeOf.resize(described.fields.size());
    formats::eachField(described, [&layout](const Field& field, int element) {
        const std::string name = field.count == 1 ? field.name : field.name + ("." + std::to_string(element));
        layout.placeOf[static_cast<size_t>(&field - layout.fields.begin())].push_back(layout.columns.size());
        if (field.key)
            layout.key.push_back(layout.columns.size());
        layout.columns.push_back({&field, element, name});
    });
    return layout;
}

std::vector<Kind> allKinds()
{
    std::vector<Kind> all;
    for (const formats::Kind* kind : formats::kinds)
        all.push_back({*kind, laidOut(kind->record), laidOut(kind->entries.layout)});
    return all;
}

} // namespace

const std::vector<Kind>& kinds()
{
    static const std::vector<Kind> table = allKinds();
    return table;
}

const Kind* findKind(std::string_view name)
{
    const formats::Kind* found = formats::findKind(std::string(name).c_str());
    for (const Kind& kind : kinds())
        if (found != nullptr && found->name == kind.name)
            return &kind;
    return nullptr;
}

const Kind& kindNamed(std::string_view name)
{
    const Kind* kind = findKind(name);
    if (kind == nullptr)
        throw std::logic_error("no such kind: " + std::string(name));
    return *kind;
}

std::vector<std::string> kindWords()
{
    std::vector<std::string> words;
    for (const Kind& kind : kinds()) {
        words.emplace_back(kind.name);
        words.insert(words.end(), kind.aliases.begin(), kind.aliases.end());
    }
    return words;
}

std::string kindNames()
{
    std::string names;
    for (const Kind& kind : kinds())
        names += (names.empty() ? "" : ", ") + std::string(kind.name);
    return names;
}

uint64_t loadedValue(const Field& field, uint64_t stored)
{
    return formats::loadedValue(field, static_cast<uint32_t>(stored), ai_yra_rssi_compensation);
}

} // namespace algdata
