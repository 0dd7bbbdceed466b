/* SPDX-License-Identifier: Apache-2.0 */
/* `algdata stats`: what the values of each field look like. */
#include <algorithm>
#include <charconv>
#include <map>
#include <set>
#include <unordered_set>

#include <fmt/format.h>

#include "commands/commands.h"
#include "output/table.h"
#include "query/query.h"
#include "reading/keys.h"
#include "reading/walk.h"

namespace algdata
{

namespace
{

struct FieldStats {
    std::string name;
    bool text = false;
    size_t values = 0;
    size_t zeros = 0;
    std::map<double, size_t> numbers; /* how often each value is there */
    std::unordered_set<std::string> texts;
};

struct KindStats {
    size_t files = 0;
    size_t records = 0;
    size_t fullest = 0; /* records, or entries, of one file */
    std::unordered_set<std::string> keys;
    std::vector<FieldStats> head;
    std::vector<FieldStats> entry;
};

std::vector<FieldStats> emptyStats(const std::vector<Pick>& picks)
{
    std::vector<FieldStats> stats;
    for (const Pick& pick : picks) {
        FieldStats& field = stats.emplace_back();
        field.name = pick.name;
        field.text = pick.field->type == Type::Mac;
    }
    return stats;
}

void addValue(FieldStats& field, Token value)
{
    if (!present(value))
        return;
    if (field.text) {
        ++field.values;
        field.zeros += value == "000000000000" ? 1 : 0;
        field.texts.emplace(value);
        return;
    }
    double number = 0;
    const char* const end = value.data() + value.size();
    if (std::from_chars(value.data(), end, number).ptr != end || number != number)
        return; /* no number: for check to tell */
    ++field.values;
    field.zeros += number == 0 ? 1 : 0;
    ++field.numbers[number];
}

void addValues(std::vector<FieldStats>& stats, const std::vector<Pick>& picks,
               const std::vector<Token>& cells)
{
    for (size_t i = 0; i < picks.size(); ++i)
        for (const size_t column : picks[i].columns)
            addValue(stats[i], cells[column]);
}

void addKey(KindStats& stats, const Layout& layout, const std::vector<Token>& cells)
{
    if (!layout.key.empty())
        stats.keys.insert(keyValues(layout, cells));
}

using AllStats = std::map<const Kind*, KindStats>;

void addSource(AllStats& all, const Source& source, const Options& options)
{
    const Kind& kind = *source.kind;
    const Selection selection = selectionFor(kind, options);
    KindStats& stats = all[source.kind];
    if (stats.files++ == 0) {
        stats.head = emptyStats(selection.head);
        stats.entry = emptyStats(selection.entry);
    }
    size_t held = 0;
    eachRecord(source, options, [&](const Record& record) {
        ++stats.records;
        held = kind.hasEntries() ? std::max(held, record.entries.size()) : held + 1;
        addKey(stats, kind.head, record.cells);
        addValues(stats.head, selection.head, record.cells);
        for (const std::vector<Token>& entry : record.entries) {
            addValues(stats.entry, selection.entry, entry);
            if (&keyLayout(kind) == &kind.entry)
                addKey(stats, kind.entry, entry);
        }
    });
    stats.fullest = std::max(stats.fullest, held);
}

/* ---- Printing ----------------------------------------------------------- */

size_t roomOf(const Kind& kind)
{
    return kind.hasEntries() ? kind.entries.capacity : static_cast<size_t>(kind.cap);
}

/* Of an even number of values the mean of the two in the middle. */
double median(const FieldStats& field)
{
    const auto at = [&](size_t place) {
        for (const auto& [value, count] : field.numbers) {
            if (place < count)
                return value;
            place -= count;
        }
        return 0.0;
    };
    return (at((field.values - 1) / 2) + at(field.values / 2)) / 2;
}

std::string textOf(double number)
{
    return fmt::format("{:.10g}", number);
}

std::vector<std::string> figures(const FieldStats& field)
{
    const bool numbers = !field.text && field.values != 0;
    return {field.name,
            std::to_string(field.values),
            std::to_string(field.text ? field.texts.size() : field.numbers.size()),
            std::to_string(field.zeros),
            numbers ? textOf(field.numbers.begin()->first) : "",
            numbers ? textOf(median(field)) : "",
            numbers ? textOf(field.numbers.rbegin()->first) : ""};
}

void printKind(Output& out, const Kind& kind, const KindStats& stats, Format format)
{
    const size_t room = roomOf(kind);
    std::string line =
        fmt::format("{}: {}, {}, {}", kind.name, plural(stats.files, "file"), plural(stats.records, "record"),
                    plural(stats.keys.size(), "distinct key"));
    if (room > 1)
        line += fmt::format("; the fullest holds {} of {} ({}%)", stats.fullest, room,
                            stats.fullest * 100 / room);
    out.put(fmt::format("{}{}{}{}\n{}", format == Format::Markdown ? "### " : "", out.bold(), line,
                        out.plain(), format == Format::Markdown ? "\n" : ""));
    Table table;
    table.addColumn("field", false);
    for (const char* name : {"values", "distinct", "zeros", "min", "median", "max"})
        table.addColumn(name, true);
    for (const std::vector<FieldStats>* part : {&stats.head, &stats.entry})
        for (const FieldStats& field : *part) {
            table.addRow();
            for (const std::string& text : figures(field))
                table.add(text);
        }
    table.print(out, format);
}

Rows rowsOf(const AllStats& all)
{
    Rows rows;
    rows.addColumn("kind");
    for (const char* name : {"files", "records", "keys", "fullest", "cap"})
        rows.addColumn(name, true);
    rows.addColumn("field");
    for (const char* name : {"values", "distinct", "zeros", "min", "median", "max"})
        rows.addColumn(name, true);
    for (const Kind& kind : kinds()) {
        const auto at = all.find(&kind);
        if (at == all.end())
            continue;
        const KindStats& stats = at->second;
        const std::vector<std::string> common = {kind.name,
                                                 std::to_string(stats.files),
                                                 std::to_string(stats.records),
                                                 std::to_string(stats.keys.size()),
                                                 std::to_string(stats.fullest),
                                                 roomOf(kind) == 0 ? "" : std::to_string(roomOf(kind))};
        for (const std::vector<FieldStats>* part : {&stats.head, &stats.entry})
            for (const FieldStats& field : *part) {
                std::vector<std::string> row = common;
                for (const std::string& text : figures(field))
                    row.push_back(text);
                rows.addRow(row);
            }
    }
    return rows;
}

} // namespace

Status runStats(Options options)
{
    requireFields(options);
    AllStats all;
    const Status status = eachRecordFile(options, [&](Source& source) {
        if (source.kind == nullptr)
            return AllWell; /* an empty file */
        try {
            addSource(all, source, options);
        } catch (const Failure& failure) {
            message(failure.what());
            return Findings;
        }
        return AllWell;
    });
    Output out(options);
    const bool tables = options.format == Format::Text || options.format == Format::Table ||
                        options.format == Format::Markdown;
    bool any = false;
    for (const Kind& kind : kinds()) {
        const auto at = all.find(&kind);
        if (!tables || at == all.end() || at->second.records == 0)
            continue;
        out.put(any ? "\n" : "");
        any = true;
        printKind(out, kind, at->second, options.format);
    }
    if (!tables) {
        Options plain = options;
        plain.columns.clear();
        rowsOf(all).print(out, plain);
    }
    out.close(status);
    return status;
}

} // namespace algdata
