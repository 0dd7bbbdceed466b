/* SPDX-License-Identifier: Apache-2.0 */
/* `algdata stats`: counts records and keys, and summarises the values of each field. */
#include <algorithm>
#include <map>

#include <fmt/format.h>

#include "commands/commands.h"
#include "printing/table.h"
#include "query/fields.h"
#include "query/figures.h"
#include "query/query.h"
#include "query/visit.h"
#include "reading/damage.h"
#include "records/keys.h"

namespace algdata
{

namespace
{

struct KindStats {
    size_t files = 0;
    Extent all;         /* before the filters */
    Extent shown;       /* after the filters */
    size_t fullest = 0; /* the largest number of records of a file, or of entries of a record */
    Distinct keys;
    std::vector<FieldFigures> head;
    std::vector<FieldFigures> entry;
};

using AllStats = std::map<const Kind*, KindStats>;

void addValues(std::vector<FieldFigures>& figures, const std::vector<Pick>& picks,
               const std::vector<Token>& cells)
{
    for (size_t i = 0; i < picks.size(); ++i)
        for (const size_t column : picks[i].columns)
            figures[i].add(cells[column]);
}

void addRecord(KindStats& stats, const Kind& kind, const Selection& selection, const Record& record)
{
    const bool keyOfEntries = &keyLayout(kind) == &kind.entry;
    if (!keyOfEntries)
        stats.keys.add(keyValues(kind.head, record.cells));
    addValues(stats.head, selection.head, record.cells);
    for (const std::vector<Token>& entry : record.entries) {
        addValues(stats.entry, selection.entry, entry);
        if (keyOfEntries)
            stats.keys.add(keyValues(kind.entry, entry));
    }
}

void addSource(AllStats& all, const Source& source, Filter& filter)
{
    const Options& options = filter.options();
    const Kind& kind = *source.kind;
    const Selection selection = selectionFor(kind, options);
    if (!selection.applies() || (filter.selects() && !filter.of(kind).matchesFile(source)))
        return;
    KindStats& stats = all[source.kind];
    if (stats.head.empty() && stats.entry.empty()) {
        for (const Pick& pick : selection.head)
            stats.head.emplace_back(pick);
        for (const Pick& pick : selection.entry)
            stats.entry.emplace_back(pick);
    }
    const Visited visited =
        eachRecord(source, filter, [&](const Record& record) { addRecord(stats, kind, selection, record); });
    ++stats.files; /* not before: a reader can refuse the file */
    stats.all.add(visited.all);
    stats.shown.add(visited.shown);
    stats.fullest = std::max(stats.fullest, kind.hasEntries() ? visited.all.fullest : visited.all.records);
}

/* ---- Printing ----------------------------------------------------------- */

/* How many entries a record, or how many records a file, has at most; 0 for no limit. */
size_t capacityOf(const Kind& kind)
{
    return kind.hasEntries() ? kind.entries.capacity : static_cast<size_t>(kind.cap);
}

constexpr const char* figureNames[] = {"values", "bad", "distinct", "zeros", "min", "median", "max"};

std::vector<std::string> figuresOf(const FieldFigures& field)
{
    return {std::to_string(field.values()), std::to_string(field.bad()),  std::to_string(field.distinct()),
            std::to_string(field.zeros()),  figureText(field.smallest()), figureText(field.median()),
            figureText(field.largest())};
}

/* The names of the figures that are estimates, such as "keys, distinct". */
std::string estimatesOf(const KindStats& stats, const FieldFigures& field)
{
    std::string names = stats.keys.isExact() ? "" : "keys";
    for (const auto& [exact, name] :
         {std::pair(field.distinctIsExact(), "distinct"), std::pair(field.medianIsExact(), "median")})
        if (!exact)
            names += (names.empty() ? "" : ", ") + std::string(name);
    return names;
}

/* The mark of an estimate. */
const char* tilde(bool exact)
{
    return exact ? "" : "~";
}

void addRow(Table& table, const FieldFigures& field)
{
    table.addRow();
    table.add(field.name());
    const std::vector<std::string> figures = figuresOf(field);
    for (size_t i = 0; i < figures.size(); ++i) {
        const std::string name = figureNames[i];
        const bool exact =
            name == "distinct" ? field.distinctIsExact() : name != "median" || field.medianIsExact();
        table.add(tilde(exact) + figures[i]);
    }
}

void printKind(Output& out, const Kind& kind, const KindStats& stats, Format format)
{
    const size_t capacity = capacityOf(kind);
    std::string line = fmt::format("{}: {}, {}, {}{}", kind.name, plural(stats.files, "file"),
                                   extentText(stats.shown, stats.all), tilde(stats.keys.isExact()),
                                   plural(stats.keys.count(), "distinct key"));
    if (capacity > 1)
        line += fmt::format("; the fullest has {} of {} ({}%)", stats.fullest, capacity,
                            stats.fullest * 100 / capacity);
    out.put(fmt::format("{}{}{}{}\n{}", format == Format::Markdown ? "### " : "", out.bold(), line,
                        out.plain(), format == Format::Markdown ? "\n" : ""));
    Table table;
    table.addColumn("field", false);
    for (const char* name : figureNames)
        table.addColumn(name, true);
    for (const std::vector<FieldFigures>* part : {&stats.head, &stats.entry})
        for (const FieldFigures& field : *part)
            addRow(table, field);
    if (table.rowCount() != 0)
        table.print(out, format);
}

Rows rowsOf(const AllStats& all)
{
    Rows rows;
    rows.addColumn("kind");
    for (const char* name : {"files", "records", "keys", "fullest", "cap"})
        rows.addColumn(name, true);
    rows.addColumn("field");
    for (const char* name : figureNames)
        rows.addColumn(name, true);
    rows.addColumn("estimated");
    for (const Kind& kind : kinds()) {
        const auto at = all.find(&kind);
        if (at == all.end() || at->second.files == 0)
            continue;
        const KindStats& stats = at->second;
        const size_t capacity = capacityOf(kind);
        for (const std::vector<FieldFigures>* part : {&stats.head, &stats.entry})
            for (const FieldFigures& field : *part) {
                std::vector<std::string> row = {kind.name,
                                                std::to_string(stats.files),
                                                std::to_string(stats.shown.records),
                                                std::to_string(stats.keys.count()),
                                                std::to_string(stats.fullest),
                                                capacity == 0 ? "" : std::to_string(capacity),
                                                field.name()};
                for (const std::string& text : figuresOf(field))
                    row.push_back(text);
                row.push_back(estimatesOf(stats, field));
                rows.addRow(row);
            }
    }
    return rows;
}

void print(Output& out, const AllStats& all, const Options& options)
{
    if (options.format == Format::Json || options.format == Format::Ndjson || options.format == Format::Csv) {
        Options plain = options;
        plain.columns.clear();
        rowsOf(all).print(out, plain);
        return;
    }
    bool first = true;
    for (const Kind& kind : kinds()) {
        const auto at = all.find(&kind);
        if (at == all.end() || at->second.files == 0)
            continue;
        out.put(first ? "" : "\n");
        first = false;
        printKind(out, kind, at->second, options.format);
    }
}

/* Reports the values and lines that are not in the figures. */
Status reportDamage(const AllStats& all)
{
    size_t bad = 0;
    size_t wrongLines = 0;
    for (const auto& [kind, stats] : all) {
        wrongLines += stats.all.wrongLines;
        for (const std::vector<FieldFigures>* part : {&stats.head, &stats.entry})
            for (const FieldFigures& field : *part)
                bad += field.bad();
    }
    return algdata::reportDamage(bad, wrongLines);
}

} // namespace

Status runStats(Options options)
{
    requireFields(options);
    AllStats all;
    Filter filter(options);
    const Status status = eachFileWithFields(options, filter, [&](Source& source) {
        if (source.kind != nullptr) /* not an empty file */
            addSource(all, source, filter);
        return AllWell;
    });
    Output out(options);
    print(out, all, options);
    out.close(status);
    return worse(status, reportDamage(all));
}

} // namespace algdata
