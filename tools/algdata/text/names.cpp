/* SPDX-License-Identifier: Apache-2.0 */
#include "text/names.h"

#include <algorithm>

#include <fmt/format.h>

namespace algdata
{

namespace
{

/* FNV-1a, with its bits spread so that the low ones choose a slot. Never 0. */
uint64_t hashOf(std::string_view name)
{
    uint64_t hash = 0xcbf29ce484222325;
    for (const char c : name)
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3;
    hash = (hash ^ (hash >> 32)) * 0x94d049bb133111eb;
    return std::max<uint64_t>(hash ^ (hash >> 32), 1);
}

} // namespace

void NamesLeftOut::add(const std::string& name)
{
    if (all++ < maxNames)
        names += (names.empty() ? "" : ", ") + name;
}

std::string NamesLeftOut::text() const
{
    return all > maxNames ? fmt::format("{} and {} more", names, all - maxNames) : names;
}

bool NameSet::add(std::string_view name)
{
    const uint64_t hash = hashOf(name);
    const size_t mask = slots.size() - 1;
    for (size_t at = hash & mask; slots[at] != 0; at = (at + 1) & mask)
        if (slots[at] == hash)
            return false;
    if (++used > slots.size() / 4 * 3) {
        std::vector<uint64_t> old(slots.size() * 2);
        old.swap(slots);
        for (const uint64_t one : old)
            if (one != 0)
                insert(one);
    }
    insert(hash);
    return true;
}

void NameSet::insert(uint64_t hash)
{
    const size_t mask = slots.size() - 1;
    size_t at = hash & mask;
    while (slots[at] != 0)
        at = (at + 1) & mask;
    slots[at] = hash;
}

} // namespace algdata
