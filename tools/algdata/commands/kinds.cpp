/* SPDX-License-Identifier: Apache-2.0 */
/* `algdata kinds`: lists every kind of record file with its fields. */
#include <algorithm>

#include <fmt/format.h>

#include "commands/commands.h"
#include "formats/meaning.h"
#include "output/output.h"
#include "printing/table.h"
#include "records/keys.h"
#include "sql/tables.h"

namespace algdata
{

namespace
{

struct Row {
    const Kind& kind;
    const Field& field;
    const char* part; /* "record", or the name of the array of entries */
};

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
    return field.type == Type::F32 ? "two decimals" : fmt::format("0..{}", formats::storable(field));
}

/* Empty if there is no width. */
std::string widthText(int width)
{
    return width == 0 ? "" : std::to_string(width);
}

/* The minimum when written and the maximum when read. */
std::string widthsOf(const Field& field)
{
    const std::string out = widthText(field.widthOut);
    const std::string in = widthText(field.widthIn);
    return out.empty() && in.empty() ? "-" : (out.empty() ? "-" : out) + "/" + (in.empty() ? "-" : in);
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
    out.put(fmt::format("  key {}{}; {}; read by {}{}\n", keyNames(keyLayout(kind), " + "),
                        kind.unique ? "" : ", may repeat", kind.capText, kind.reader(),
                        kind.writer() == nullptr ? ", no writer"
                                                 : fmt::format(", written by {}", kind.writer())));
    Table table;
    for (const char* heading :
         {"in", "field", "type", "range", "unit", "width out/in", "when loaded", "meaning"})
        table.addColumn(heading, false);
    for (const Row& row : rowsOf(kind)) {
        const Field& field = row.field;
        table.addRow();
        for (const std::string& text :
             {std::string(row.part), std::string(field.name),
              typeName(field.type) + (field.count > 1 ? fmt::format("[{}]", field.count) : ""),
              rangeOf(field), std::string(field.unit), widthsOf(field), std::string(loadText(field.load)),
              meaningOf(field)})
            table.add(text);
    }
    table.print(out, Format::Table);
}

/* The table of `algdata sql` with a row per record; for an array or a field of an entry, with a row per part.
 */
const SqlTable& tableOf(const Row& row)
{
    const auto has = [&](const SqlTable& table) {
        return std::any_of(table.columns.begin(), table.columns.end(),
                           [&](const SqlColumn& column) { return column.field == &row.field; });
    };
    return *std::find_if(sqlTables().begin(), sqlTables().end(), has);
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
    rows.addColumn("range");
    rows.addColumn("unit");
    rows.addColumn("widthOut", true);
    rows.addColumn("widthIn", true);
    rows.addColumn("loaded");
    rows.addColumn("meaning");
    rows.addColumn("table");
    rows.addColumn("index");
    for (const Kind* kind : wanted) {
        for (const Row& row : rowsOf(*kind)) {
            const SqlTable& table = tableOf(row);
            rows.addRow({kind->name, aliasesOf(*kind), kind->title, keyNames(keyLayout(*kind), " + "),
                         kind->cap == 0 ? "" : std::to_string(kind->cap), kind->reader(),
                         kind->writer() == nullptr ? "" : kind->writer(), row.part, row.field.name,
                         typeName(row.field.type), std::to_string(row.field.count), rangeOf(row.field),
                         row.field.unit, widthText(row.field.widthOut), widthText(row.field.widthIn),
                         loadText(row.field.load), meaningOf(row.field), table.name,
                         table.row == RowOf::Part ? kind->part : ""});
        }
    }
    return rows;
}

bool isNarrowed(const Options& options)
{
    return !options.where.empty() || !options.sort.empty() || !options.columns.empty() || options.head ||
           options.limit;
}

} // namespace

std::vector<std::string> kindColumns()
{
    return fieldRows({}).columnNames();
}

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
    out.close(AllWell);
    return AllWell;
}

} // namespace algdata
