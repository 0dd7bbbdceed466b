/* SPDX-License-Identifier: Apache-2.0 */
/* `algdata show`: records as aligned tables. */
#include <algorithm>

#include <fmt/format.h>

#include "commands/commands.h"
#include "printing/recordWriter.h"
#include "printing/table.h"
#include "query/fields.h"
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

void addCells(TableRow& row, const std::vector<Pick>& picks, const std::vector<Token>* cells)
{
    for (const Pick& pick : picks)
        for (const size_t column : pick.columns)
            row.push_back(cells == nullptr ? "" : shown((*cells)[column]));
}

/* The rows of a table for the records of one file. */
class RecordRows
{
  public:
    RecordRows(const Source& source, const Selection& of);

    void addColumns(TablePrinter& table) const;

    /* Calls visit(row) for each row of a record. */
    template <typename Visit> void each(const Record& record, const Visit& visit) const;

  private:
    static void addColumns(TablePrinter& table, const std::vector<Pick>& picks, bool oneEach);
    TableRow rowOf(const Record& record, size_t row) const;
    TableRow turnedRowOf(const Record& record, size_t slot) const;

    const Selection& selection;
    const bool turned;
    TableRow file; /* the cells that are the same in every row: kind and source, if --columns names them */
    size_t slots = 1;
};

RecordRows::RecordRows(const Source& source, const Selection& of)
    : selection(of), turned(showsArraysAsColumns(*source.kind))
{
    if (selection.kind)
        file.emplace_back(source.kind->name);
    if (selection.source)
        file.push_back(printable(source.name));
    for (const Pick& pick : selection.head)
        slots = std::max(slots, pick.columns.size());
}

void RecordRows::addColumns(TablePrinter& table) const
{
    if (selection.kind)
        table.addColumn("kind", false);
    if (selection.source)
        table.addColumn("source", false);
    if (turned)
        for (const char* name : {"slot", "band", "width", "mcs"})
            table.addColumn(name, true);
    addColumns(table, selection.head, turned);
    addColumns(table, selection.entry, false);
}

void RecordRows::addColumns(TablePrinter& table, const std::vector<Pick>& picks, bool oneEach)
{
    for (const Pick& pick : picks)
        table.addColumn(pick.name, pick.field->type != Type::Mac, oneEach ? 1 : pick.columns.size());
}

template <typename Visit> void RecordRows::each(const Record& record, const Visit& visit) const
{
    const size_t entries = selection.entry.empty() ? 1 : std::max<size_t>(record.entries.size(), 1);
    for (size_t row = 0; row < (turned ? slots : entries); ++row)
        visit(turned ? turnedRowOf(record, row) : rowOf(record, row));
}

/* One row per entry. Only the first row shows the record's own fields, so that its beginning is visible. */
TableRow RecordRows::rowOf(const Record& record, size_t row) const
{
    TableRow cells = file;
    addCells(cells, selection.head, row == 0 ? &record.cells : nullptr);
    addCells(cells, selection.entry, row < record.entries.size() ? &record.entries[row] : nullptr);
    return cells;
}

TableRow RecordRows::turnedRowOf(const Record& record, size_t slot) const
{
    TableRow cells = file;
    const size_t width = slot / ALG_MCS_ORDERS;
    for (const size_t number :
         {slot, width / ALG_CHANNEL_WIDTHS, width % ALG_CHANNEL_WIDTHS, slot % ALG_MCS_ORDERS})
        cells.push_back(std::to_string(number));
    for (const Pick& pick : selection.head)
        cells.push_back(slot < pick.columns.size() ? shown(record.cells[pick.columns[slot]]) : "");
    return cells;
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

/* Visits the records twice, for the widths and for the rows, so that no row has to be kept. */
Status showSource(Output& out, Source& source, Filter& filter, bool& first)
{
    const Options& options = filter.options();
    if (source.kind == nullptr) {
        printTitle(out, options, printable(source.name) + ": no records", first);
        return AllWell;
    }
    const Selection selection = selectionFor(*source.kind, options);
    const RecordRows rows(source, selection);
    TablePrinter table;
    rows.addColumns(table);
    Damage damage(source, options.loaded);
    SelectedRecords records(source, filter);
    const Visited visited = records.each([&](const Record& record) {
        noteDamage(damage, source.kind->head, selection.head, record.cells);
        for (const std::vector<Token>& entry : record.entries)
            noteDamage(damage, source.kind->entry, selection.entry, entry);
        rows.each(record, [&](const TableRow& row) { table.measure(row); });
    });
    if (!visited.matches || !selection.applies())
        return AllWell;
    printTitle(out, options, titleOf(source, options, visited), first);
    table.putHeadings(out, options.format);
    records.again([&](const Record& record) {
        rows.each(record, [&](const TableRow& row) { table.put(out, options.format, row); });
    });
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
    Filter filter(options);
    const Status status = eachFileWithFields(
        options, filter, [&](Source& source) { return showSource(out, source, filter, first); });
    out.close(status);
    return status;
}

} // namespace algdata
