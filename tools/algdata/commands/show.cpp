/* SPDX-License-Identifier: Apache-2.0 */
/* `algdata show`: records as aligned tables. */
#include <algorithm>

#include <fmt/format.h>

#include "commands/commands.h"
#include "output/recordWriter.h"
#include "output/table.h"
#include "query/query.h"
#include "reading/walk.h"

namespace algdata
{

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

/* What each row repeats of the file: its kind and its source, where --columns asks for them. */
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

/* The head stands on the first row alone, so that the eye finds where a record begins. */
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
        title += fmt::format(", as {} hands them out", kind.reader());
    return title;
}

/* `any`: something stands above it. */
void printTitle(Output& out, const Options& options, const std::string& title, bool& any)
{
    if (any)
        out.put('\n');
    any = true;
    const bool markdown = options.format == Format::Markdown;
    out.put(fmt::format("{}{}{}{}\n{}", markdown ? "### " : "", out.bold(), title, out.plain(),
                        markdown ? "\n" : ""));
}

Status showSource(Output& out, Source& source, const Options& options, bool& any)
{
    if (source.kind == nullptr) {
        printTitle(out, options, printable(source.name) + ": no records", any);
        return AllWell;
    }
    const Selection selection = selectionFor(*source.kind, options);
    const bool turned = isTurned(*source.kind);
    const std::vector<std::string> file = fileCells(source, selection);
    Table table;
    addAllHeadings(table, selection, turned);
    const Visited visited = eachRecord(source, options, [&](const Record& record) {
        if (turned)
            addTurnedRecord(table, file, selection, record);
        else
            addRecord(table, file, selection, record);
    });
    if (!visited.wanted || !selection.applies())
        return AllWell;
    printTitle(out, options, titleOf(source, options, visited), any);
    table.print(out, options.format);
    const size_t odd = visited.all.odd;
    if (odd != 0)
        reportOddLines(source.name, odd);
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
    const Status status = eachRecordFile(options, [&](Source& source) {
        try {
            return showSource(out, source, options, any);
        } catch (const Failure& failure) {
            message(failure.what());
            return Findings;
        }
    });
    out.close(status);
    return status;
}

} // namespace algdata
