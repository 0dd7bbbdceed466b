/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Visits the fields of a record in the order of its line, as described in formats/.
 * A visitor is called with the name and the value of each field, and endLine() after
 * the last field of a line. With this, each store is written once for all records.
 * The compiler unrolls the walk: no description is read at run time.
 */
#ifndef ALG_BENCH_FIELDS_H
#define ALG_BENCH_FIELDS_H

#include "dataInterface.h"
#include "formats/compileTime.h"

/* The kind of file that stores the record. */
constexpr const formats::Kind& kindOf(const BridgingNodeV2*)
{
    return formats::bridging;
}
constexpr const formats::Kind& kindOf(const StaConnection*)
{
    return formats::station;
}
constexpr const formats::Kind& kindOf(const ScanningInfo*)
{
    return formats::scanning;
}
constexpr const formats::Kind& kindOf(const TimeDelayInfo*)
{
    return formats::timeDelay;
}
constexpr const formats::Kind& kindOf(const ApInfoAllV2*)
{
    return formats::apAll;
}
constexpr const formats::Kind& kindOf(const ApRank*)
{
    return formats::apRank;
}
constexpr const formats::Kind& kindOf(const PatParameterV2*)
{
    return formats::patV2;
}
constexpr const formats::Kind& kindOf(const ScoreInfo*)
{
    return formats::score;
}
template <typename Record> inline constexpr const formats::Kind& KIND = kindOf(static_cast<Record*>(nullptr));

template <const formats::Kind& kind, formats::Part part, typename Visitor>
[[gnu::always_inline]] inline void visitLine(Visitor& v, void* base)
{
    formats::eachMember<kind, part>(
        [&v, base](auto member, int element) { v(member.names.text[element], member.of(base, element)); });
    v.endLine();
}

/* Visits a record and its entries, which are lines of their own. */
template <typename Visitor, typename Record> void visit(Visitor& v, Record& record)
{
    constexpr const formats::Kind& kind = KIND<Record>;
    visitLine<kind, formats::Part::Record>(v, &record);
    if constexpr (kind.hasEntries()) {
        const size_t entries = formats::entriesIn<kind>(&record);
        for (size_t i = 0; i < entries; ++i)
            visitLine<kind, formats::Part::Entry>(v, formats::entryAt(kind, &record, i));
    }
}

/* PAT files begin with the number of their devices. */
template <typename Record>
inline constexpr bool HAS_COUNT_LINE = KIND<Record>.shape == formats::Shape::Devices;

#endif
