/* SPDX-License-Identifier: Apache-2.0 */
/* `algdata show`: records as aligned tables. */
#include <algorithm>

#include <fmt/format.h>

#include "commands/commands.h"
#include "output/recordWriter.h"
#include "output/table.h"
#include "query/query.h"
#include "query/visit.h"

namespace algdata
{

namespace
{

/* The arrays of a stream's record are long: they are shown as columns, with one row per element. */
bool showsArraysAsColumns(const Kind& kind)
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

/* The cells that are the same in every row of a file: kind and source, if --columns names them. */
std::vector<std::string> fileCells(const Source& source, const Selection& selection)
{
    std::vector<std::string> cells;
    if (selection.kind)
        cells.emplace_back(source.kind->name);
    if (selection.source)
        cells.push_back(printable(source.name));
    return cells;
}

void startRow(Table& table, const std::vector<std::string>& file)
{
    table.addRow();
    for (const std::string& cell : file)
        table.add(cell);
}

/* One row per entry. Only the first row shows the record's own fields, so that its beginning is visible. */
void addRecord(Table& table, const std::vector<std::string>& file, const Selection& selection,
               const Record& record)
{
    const size_t rows = selection.entry.empty() ? 1 : std::max<size_t>(record.entries.size(), 1);
    for (size_t row = 0; row < rows; ++row) {
        startRow(table, file);
        addCells(table, selection.head, row == 0 ? &record.cells : nullptr);
        addCells(table, selection.entry, row < record.entries.size() ? &record.entries[row] : nullptr);
    }
}

void addTurnedRecord(Table& table, const std::vector<std::string>& file, const Selection& selection,
                     const Record& record)
{
    size_t slots = 1;
    for (const Pick& pick : selection.head)
        slots = std::max(slots, pick.columns.size());
    for (size_t slot = 0; slot < slots; ++slot) {
        startRow(table, file);
        const size_t width = slot / ALG_MCS_ORDERS;
        for (const size_t number :
             {slot, width / ALG_CHANNEL_WIDTHS, width % ALG_CHANNEL_WIDTHS, slot % ALG_MCS_ORDERS})
            table.add(std::to_string(number));
        for (const Pick& pick : selection.head)
            table.add(slot < pick.columns.size() ? shown(record.cells[pick.columns[slot]]) : "");
    }
}

void addAllHeadings(Table& table, const Selection& selection, bool turned)
{
    if (selection.kind)
        table.addColumn("kind", false);
    if (selection.source)
        table.addColumn("source", false);
    if (turned)
        for (const char* name : {"slot", "band", "width", "mcs"})
            table.addColumn(name, true);
    addHeadings(table, selection.head, turned);
    addHeadings(table, selection.entry, false);
}

std::string titleOf(const Source& source, const Options& options, const Visited& visited)
{
    const Kind& kind = *source.kind;
    std::string title =
        fmt::format("{}: {}, {}", printable(source.name), kind.name, extentText(visited.shown, visited.all));
    if (kind.cap > 1 && !kind.hasEntries())
        title += fmt::format(" (cap {})", kind.cap);
    if (options.loaded)
        title += fmt::format(", as {} returns them", kind.reader());
    return title;
}

void printTitle(Output& out, const Options& options, const std::string& title, bool& first)
{
    if (!first)
        out.put('\n');
    first = false;
    const bool markdown = options.format == Format::Markdown;
    out.put(fmt::format("{}{}{}{}\n{}", markdown ? "### " : "", out.bold(), title, out.plain(),
                        markdown ? "\n" : ""));
}

void noteDamage(Damage& damage, const Layout& layout, const std::vector<Pick>& picks,
                const std::vector<Token>& cells)
{
    for (const Pick& pick : picks)
        for (const size_t column : pick.columns)
            if (present(cells[column]) && isDamaged(*pick.field, cells[column]))
                damage.addValue(layout.columns[column], cells[column]);
}

Status showSource(Output& out, Source& source, const Options& options, bool& first)
{
    if (source.kind == nullptr) {
        printTitle(out, options, printable(source.name) + ": no records", first);
        return AllWell;
    }
    const Selection selection = selectionFor(*source.kind, options);
    const bool turned = showsArraysAsColumns(*source.kind);
    const std::vector<std::string> file = fileCells(source, selection);
    Table table;
    addAllHeadings(table, selection, turned);
    Damage damage(source, options.loaded);
    const Visited visited = eachRecord(source, options, [&](const Record& record) {
        noteDamage(damage, source.kind->head, selection.head, record.cells);
        for (const std::vector<Token>& entry : record.entries)
            noteDamage(damage, source.kind->entry, selection.entry, entry);
        if (turned)
            addTurnedRecord(table, file, selection, record);
        else
            addRecord(table, file, selection, record);
    });
    if (!visited.matches || !selection.applies())
        return AllWell;
    printTitle(out, options, titleOf(source, options, visited), first);
    table.print(out, options.format);
    damage.addLines(visited.all.wrongLines);
    return damage.report("shown as they are");
}

} // namespace

Status runShow(Options options)
{
    if (options.format != Format::Text && options.format != Format::Table &&
        options.format != Format::Markdown)
        return runExport(std::move(options));
    requireFields(options);
    Output out(options, true);
    bool first = true;
    const Status status =
        eachFileWithFields(options, [&](Source& source) { return showSource(out, source, options, first); });
    out.close(status);
    return status;
}

} // namespace algdata
