/* SPDX-License-Identifier: Apache-2.0 */
#include "printing/recordWriter.h"

#include <algorithm>
#include <array>

#include <fmt/format.h>

#include "text/wording.h"

namespace algdata
{

/* ---- Values ------------------------------------------------------------- */

namespace
{

bool areDigits(std::string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), isDigit);
}

bool isPlainInteger(std::string_view text)
{
    return areDigits(text) && (text[0] != '0' || text.size() == 1);
}

/* A decimal number that is valid JSON as it is: no plus, digits on both sides of the point, no exponent. */
bool isPlainDecimal(std::string_view text)
{
    if (!text.empty() && text[0] == '-')
        text.remove_prefix(1);
    const size_t point = std::min(text.find('.'), text.size());
    return isPlainInteger(text.substr(0, point)) &&
           (point == text.size() || areDigits(text.substr(point + 1)));
}

std::string_view floatText(const Field& field, Token value, std::string& buffer)
{
    constexpr size_t surelyFits = 38; /* a number of so many characters cannot exceed a float */
    const bool plain = isPlainDecimal(value);
    if (plain && value.size() <= surelyFits)
        return value;
    const std::optional<double> number = numberIn(field, value);
    if (!number)
        return {};
    return plain ? value : std::string_view(buffer = fmt::format("{}", static_cast<float>(*number)));
}

/* A number of so many digits fits the type. */
size_t surelyFits(Type type)
{
    return type == Type::U8 ? 2 : type == Type::U16 ? 4 : 9;
}

std::string_view integerText(const Field& field, Token value, std::string& buffer)
{
    const bool plain = isPlainInteger(value);
    if (plain && value.size() <= surelyFits(field.type))
        return value;
    const std::optional<Number> number = wholeNumber(value);
    if (!number || !inRange(field, *number))
        return {};
    return plain ? value : std::string_view(buffer = std::to_string(readsAs(field, *number)));
}

/* The exported text of a value; empty if the value is damaged. `buffer` stores a text that is converted. */
std::string_view exportText(const Field& field, Token value, std::string& buffer)
{
    if (field.type == Type::Mac)
        return isMac(value) ? value : std::string_view();
    return field.type == Type::F32 ? floatText(field, value, buffer) : integerText(field, value, buffer);
}

} // namespace

/* ---- Records ------------------------------------------------------------ */

RecordWriter::RecordWriter(Output& output, const Options& commonOptions)
    : out(output), options(commonOptions), objects(output, commonOptions.format), rows(output)
{
}

void RecordWriter::expect(const Kind& ofFile)
{
    expected = !expects || expected == &ofFile ? &ofFile : nullptr;
    expects = true;
}

void RecordWriter::startFile(const Source& from)
{
    const bool newKind = kind != from.kind;
    if (newKind && kind != nullptr && options.format == Format::Csv)
        throw OutputFailure(
            fmt::format("{} is of kind {}, expected {}: a CSV file contains one kind; select one with "
                        "--where kind={}, or write one file per kind with -o DIRECTORY/",
                        from.name, from.kind->name, kind->name, kind->name));
    source = &from;
    damage.emplace(from, options.loaded);
    if (newKind)
        startKind(*from.kind);
    opening = "\"kind\":" + jsonText(kind->name) + ",\"source\":" + jsonText(from.name);
}

void RecordWriter::startKind(const Kind& of)
{
    kind = &of;
    selection = selectionFor(of, options);
    if (options.format == Format::Csv) {
        startCsv();
        return;
    }
    head = jsonPlan(selection.head, kind->head, selection.head.empty() ? "" : ",");
    entry = jsonPlan(selection.entry, kind->entry, "{");
}

void RecordWriter::put(const Record& record)
{
    damage->addLines(record.wrongLines);
    if (options.format == Format::Csv)
        putCsv(record);
    else
        putJson(record);
}

Status RecordWriter::endFile()
{
    return damage->report(options.format == Format::Csv ? "left empty" : "written as null");
}

void RecordWriter::finish()
{
    if (options.format != Format::Csv)
        objects.finish();
    else if (kind == nullptr && expected != nullptr)
        startKind(*expected);
}

/* ---- JSON --------------------------------------------------------------- */

/* Prepares the text around the values: "name":value,"name":[value,value],... */
RecordWriter::Plan RecordWriter::jsonPlan(const std::vector<Pick>& picks, const Layout& layout,
                                          const char* opening)
{
    Plan plan;
    plan.layout = &layout;
    std::string before = opening;
    for (const Pick& pick : picks) {
        const bool array = pick.columns.size() > 1;
        before += (&pick == picks.data() ? "" : ",") + jsonText(pick.name) + (array ? ":[" : ":");
        for (size_t i = 0; i < pick.columns.size(); ++i) {
            plan.pieces.push_back({before, pick.columns[i], pick.field});
            before = i + 1 < pick.columns.size() ? "," : array ? "]" : "";
        }
    }
    plan.after = before;
    return plan;
}

/* The hot loop of an export. */
void RecordWriter::putPlan(const Plan& plan, const std::vector<Token>& cells)
{
    std::array<char, formats::macWidth + 2> quoted;
    quoted.fill('"');
    for (const Piece& piece : plan.pieces) {
        const Token value = cells[piece.column];
        const std::string_view text = present(value) ? exportText(*piece.field, value, buffer) : "";
        out.put(piece.before);
        if (text.empty()) {
            out.put("null");
            if (present(value))
                damage->addValue(plan.layout->columns[piece.column], value);
        } else if (piece.field->type == Type::Mac) {
            out.put({quoted.data(), text.copy(quoted.data() + 1, formats::macWidth) + 2});
        } else {
            out.put(text);
        }
    }
    out.put(plan.after);
}

void RecordWriter::putJson(const Record& record)
{
    objects.begin();
    out.put(opening);
    putPlan(head, record.cells);
    if (!selection.entry.empty()) {
        out.put(',');
        out.put(jsonText(kind->entries.name));
        out.put(":[");
        for (size_t i = 0; i < record.entries.size(); ++i) {
            if (i != 0)
                out.put(',');
            putPlan(entry, record.entries[i]);
            out.put('}');
        }
        out.put(']');
    }
    objects.end();
}

/* ---- CSV ---------------------------------------------------------------- */

void RecordWriter::startCsv()
{
    rows.cell("kind");
    rows.cell("source");
    for (const Pick& pick : selection.head)
        for (const size_t column : pick.columns)
            rows.cell(kind->head.columns[column].name);
    if (!selection.entry.empty())
        rows.cell("entry");
    for (const Pick& pick : selection.entry)
        for (const size_t column : pick.columns)
            rows.cell(kind->entry.columns[column].name);
    rows.end();
}

/* `again`: the cells repeat those of the previous row, so their damage is already counted. */
void RecordWriter::putCsvCells(const std::vector<Pick>& picks, const Layout& layout,
                               const std::vector<Token>* cells, bool again)
{
    for (const Pick& pick : picks)
        for (const size_t column : pick.columns) {
            const Token value = cells != nullptr ? (*cells)[column] : Token();
            const std::string_view text = present(value) ? exportText(*pick.field, value, buffer) : "";
            if (present(value) && text.empty() && !again)
                damage->addValue(layout.columns[column], value);
            rows.plainCell(text);
        }
}

/* One row per record or, if the kind has entries, per entry. */
void RecordWriter::putCsv(const Record& record)
{
    const size_t count = selection.entry.empty() ? 1 : std::max<size_t>(record.entries.size(), 1);
    for (size_t row = 0; row < count; ++row) {
        rows.cell(kind->name);
        rows.cell(source->name);
        putCsvCells(selection.head, kind->head, &record.cells, row > 0);
        if (!selection.entry.empty()) {
            const bool none = record.entries.empty();
            rows.cell(none ? "" : std::to_string(row));
            putCsvCells(selection.entry, kind->entry, none ? nullptr : &record.entries[row], false);
        }
        rows.end();
    }
}

} // namespace algdata
