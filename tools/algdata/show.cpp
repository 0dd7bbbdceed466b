/* SPDX-License-Identifier: Apache-2.0 */
/* `algdata show` and `algdata kinds`. */
#include <algorithm>

#include <fmt/format.h>

#include "commands.h"
#include "exporting.h"
#include "query.h"
#include "table.h"

namespace algdata
{

/* ---- show --------------------------------------------------------------- */

namespace
{

/* A record whose arrays are long is turned over: a row per place, not a column. */
bool isTurned(const Kind& kind)
{
    return kind.shape == Shape::Stream;
}

std::string shown(Token value)
{
    return present(value) ? printable(value) : "-";
}

void addHeadings(Table& table, const std::vector<Pick>& picks, bool turned)
{
    for (const Pick& pick : picks)
        table.addColumn(pick.name, pick.field->type != Type::Mac, turned ? 1 : pick.columns.size());
}

void addCells(Table& table, const std::vector<Pick>& picks, const std::vector<Token>* cells)
{
    for (const Pick& pick : picks)
        for (const size_t column : pick.columns)
            table.add(cells == nullptr ? "" : shown((*cells)[column]));
}

/* The head stands on the first row alone, so that the eye finds where a record begins. */
void addRecord(Table& table, const Selection& selection, const Record& record)
{
    const size_t rows = selection.entry.empty() ? 1 : std::max<size_t>(record.entries.size(), 1);
    for (size_t row = 0; row < rows; ++row) {
        table.addRow();
        addCells(table, selection.head, row == 0 ? &record.cells : nullptr);
        addCells(table, selection.entry, row < record.entries.size() ? &record.entries[row] : nullptr);
    }
}

void addTurnedHeadings(Table& table, const Selection& selection)
{
    for (const char* name : {"slot", "band", "width", "mcs"})
        table.addColumn(name, true);
    addHeadings(table, selection.head, true);
}

void addTurnedRecord(Table& table, const Selection& selection, const Record& record)
{
    size_t slots = 1;
    for (const Pick& pick : selection.head)
        slots = std::max(slots, pick.columns.size());
    for (size_t slot = 0; slot < slots; ++slot) {
        table.addRow();
        for (const size_t number : {slot, slot / 20, slot / 4 % 5, slot % 4})
            table.add(std::to_string(number));
        for (const Pick& pick : selection.head)
            table.add(slot < pick.columns.size() ? shown(record.cells[pick.columns[slot]]) : "");
    }
}

std::string titleOf(const Source& source, const Options& options, size_t records)
{
    const Kind& kind = *source.kind;
    std::string title = fmt::format("{}: {}, {} record{}", printable(source.name), kind.name, records,
                                    records == 1 ? "" : "s");
    if (kind.cap > 1 && !kind.hasEntries())
        title += fmt::format(" (cap {})", kind.cap);
    if (options.loaded)
        title += fmt::format(", as {} hands them out", kind.reader());
    return title;
}

Status showSource(Output& out, Source& source, const Options& options, bool& any)
{
    source.kind = kindOf(source, options);
    if (source.kind == nullptr)
        return Findings;
    const Selection selection = selectionFor(*source.kind, options);
    const bool turned = isTurned(*source.kind);
    Table table;
    size_t records = 0;
    size_t odd = 0;
    if (turned)
        addTurnedHeadings(table, selection);
    else
        addHeadings(table, selection.head, false);
    addHeadings(table, selection.entry, false);
    eachRecord(source, options, [&](const Record& record) {
        ++records;
        odd += record.odd;
        if (turned)
            addTurnedRecord(table, selection, record);
        else
            addRecord(table, selection, record);
    });
    if (any)
        out.put('\n');
    any = true;
    const bool markdown = options.format == Format::Markdown;
    out.put(fmt::format("{}{}{}{}\n{}", markdown ? "### " : "", out.bold(), titleOf(source, options, records),
                        out.plain(), markdown ? "\n" : ""));
    if (!selection.empty())
        table.print(out, options.format);
    if (odd != 0)
        message(fmt::format("{}: {} line{} with a wrong number of fields; `algdata check` tells where",
                            source.name, odd, odd == 1 ? "" : "s"));
    return odd != 0 ? Findings : AllWell;
}

} // namespace

Status runShow(Options options)
{
    if (options.format != Format::Text && options.format != Format::Table &&
        options.format != Format::Markdown)
        return runExport(std::move(options));
    requireFields(options);
    Output out(options, true);
    bool any = false;
    const Status status = eachSource(options, [&](Source& source) {
        try {
            return showSource(out, source, options, any);
        } catch (const Failure& failure) {
            message(failure.what());
            return Findings;
        }
    });
    out.close();
    return status;
}

/* ---- kinds -------------------------------------------------------------- */

namespace
{

struct Row {
    const Kind& kind;
    const Field& field;
    const char* part; /* "record", or the name of the entries */
};

std::string keyOf(const Kind& kind)
{
    std::string key;
    for (const Layout* layout : {&kind.head, &kind.entry})
        for (const Field& field : layout->fields)
            if (field.key && !(layout == &kind.entry && kind.shape == Shape::Devices))
                key += (key.empty() ? "" : " + ") + std::string(field.name);
    return key;
}

std::string aliasesOf(const Kind& kind)
{
    std::string names;
    for (const char* alias : kind.aliases)
        names += (names.empty() ? "" : ", ") + std::string(alias);
    return names;
}

std::string rangeOf(const Field& field)
{
    if (field.type == Type::Mac)
        return "12 hex digits";
    return field.type == Type::F32 ? "two decimals" : fmt::format("0..{}", largest(field));
}

std::string widthOf(const Field& field)
{
    if (field.type == Type::Mac || field.widthIn != 0)
        return fmt::format("{}/{}", field.widthOut, field.widthIn);
    return field.widthOut != 0 ? fmt::format("{}/-", field.widthOut) : "-";
}

std::vector<Row> rowsOf(const Kind& kind)
{
    std::vector<Row> rows;
    for (const Field& field : kind.head.fields)
        rows.push_back({kind, field, "record"});
    for (const Field& field : kind.entry.fields)
        rows.push_back({kind, field, kind.entries.name});
    return rows;
}

void printKind(Output& out, const Kind& kind)
{
    const std::string aliases = aliasesOf(kind);
    out.put(fmt::format("{}{}{}: {}{}\n", out.bold(), kind.name, out.plain(), kind.title,
                        aliases.empty() ? "" : " (also " + aliases + ")"));
    out.put(fmt::format("  key {}{}; {}; read by {}{}\n", keyOf(kind), kind.unique ? "" : ", may repeat",
                        kind.capText, kind.reader(),
                        kind.writer() == nullptr ? ", never written"
                                                 : fmt::format(", written by {}", kind.writer())));
    Table table;
    for (const char* heading : {"in", "field", "type", "range", "width out/in", "when loaded", "meaning"})
        table.addColumn(heading, false);
    for (const Row& row : rowsOf(kind)) {
        const Field& field = row.field;
        table.addRow();
        for (const std::string& text :
             {std::string(row.part), std::string(field.name),
              typeName(field.type) + (field.count > 1 ? fmt::format("[{}]", field.count) : ""),
              rangeOf(field), widthOf(field), std::string(loadText(field.load)), meaningOf(field)})
            table.add(text);
    }
    table.print(out, Format::Table);
}

/* One row per field, for the formats that programs read. */
Rows fieldRows(const std::vector<const Kind*>& wanted)
{
    Rows rows;
    for (const char* name : {"kind", "aliases", "title", "key"})
        rows.addColumn(name);
    rows.addColumn("cap", true);
    for (const char* name : {"readBy", "writtenBy", "in", "field", "type"})
        rows.addColumn(name);
    rows.addColumn("count", true);
    for (const char* name : {"range", "loaded", "meaning"})
        rows.addColumn(name);
    for (const Kind* kind : wanted)
        for (const Row& row : rowsOf(*kind))
            rows.addRow({kind->name, aliasesOf(*kind), kind->title, keyOf(*kind),
                         kind->cap == 0 ? "" : std::to_string(kind->cap), kind->reader(),
                         kind->writer() == nullptr ? "" : kind->writer(), row.part, row.field.name,
                         typeName(row.field.type), std::to_string(row.field.count), rangeOf(row.field),
                         loadText(row.field.load), meaningOf(row.field)});
    return rows;
}

bool isNarrowed(const Options& options)
{
    return !options.where.empty() || !options.sort.empty() || !options.columns.empty() || options.head;
}

} // namespace

Status runKinds(Options options)
{
    std::vector<const Kind*> wanted;
    for (const Kind& kind : kinds())
        if (options.kind == nullptr || options.kind == &kind)
            wanted.push_back(&kind);
    Output out(options, true);
    if (options.format == Format::Text && !isNarrowed(options)) {
        for (size_t i = 0; i < wanted.size(); ++i) {
            out.put(i == 0 ? "" : "\n");
            printKind(out, *wanted[i]);
        }
    } else {
        Rows rows = fieldRows(wanted);
        rows.narrow(options);
        rows.print(out, options);
    }
    out.close();
    return AllWell;
}

} // namespace algdata
