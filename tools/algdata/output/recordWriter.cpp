/* SPDX-License-Identifier: Apache-2.0 */
#include "output/recordWriter.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <fmt/format.h>

#include "commands/commands.h"

namespace algdata
{

/* ---- Values ------------------------------------------------------------- */

namespace
{

/* Characters that stand in a JSON text as they are. */
std::array<bool, 256> plainCharacters()
{
    std::array<bool, 256> plain{};
    for (size_t c = 0x20; c < 0x7f; ++c)
        plain[c] = c != '"' && c != '\\';
    return plain;
}

const std::array<bool, 256> plainCharacter = plainCharacters();

bool isPlain(std::string_view text)
{
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return plainCharacter[static_cast<uint8_t>(c)]; });
}

/* Bytes of the UTF-8 character that begins the text, 0 where there is none. */
size_t utf8Length(std::string_view text)
{
    const uint8_t lead = static_cast<uint8_t>(text[0]);
    const size_t length = lead >= 0xc2 && lead < 0xe0   ? 2
                          : lead >= 0xe0 && lead < 0xf0 ? 3
                          : lead >= 0xf0 && lead < 0xf5 ? 4
                                                        : 0;
    if (length == 0 || text.size() < length)
        return 0;
    for (size_t i = 1; i < length; ++i)
        if ((static_cast<uint8_t>(text[i]) & 0xc0) != 0x80)
            return 0;
    const uint8_t second = static_cast<uint8_t>(text[1]);
    const bool tooLong = (lead == 0xe0 && second < 0xa0) || (lead == 0xf0 && second < 0x90);
    const bool noCharacter = (lead == 0xed && second >= 0xa0) || (lead == 0xf4 && second >= 0x90);
    return tooLong || noCharacter ? 0 : length;
}

bool isPlainInteger(Token value)
{
    if (value.size() > 19 || (value[0] == '0' && value.size() > 1))
        return false;
    return std::all_of(value.begin(), value.end(), isDigit);
}

/* Digits, a point, digits: as JSON writes a number too. */
bool isPlainDecimal(Token value)
{
    const size_t point = value.find('.');
    if (point == Token::npos)
        return isPlainInteger(value);
    const Token fraction = value.substr(point + 1);
    return point > 0 && isPlainInteger(value.substr(0, point)) && !fraction.empty() &&
           std::all_of(fraction.begin(), fraction.end(), isDigit);
}

/* The number in JSON's form; nothing where the value is none. */
std::string jsonNumber(Type type, Token value)
{
    if (type == Type::F32) {
        const std::optional<float> number = wholeFloat(value);
        return number && std::isfinite(*number) ? fmt::format("{}", *number) : "";
    }
    const std::optional<Number> number = wholeNumber(value);
    if (!number || number->huge)
        return "";
    return fmt::format("{}{}", number->negative && number->magnitude != 0 ? "-" : "", number->magnitude);
}

} // namespace

std::string jsonText(std::string_view text)
{
    std::string quoted = "\"";
    while (!text.empty()) {
        const size_t length = plainCharacter[static_cast<uint8_t>(text[0])] ? 1 : utf8Length(text);
        if (length > 0)
            quoted += text.substr(0, length);
        else if (text[0] == '"' || text[0] == '\\')
            (quoted += '\\') += text[0];
        else
            quoted += fmt::format("\\u{:04x}", static_cast<uint8_t>(text[0]));
        text.remove_prefix(std::max<size_t>(length, 1));
    }
    return quoted + '"';
}

std::string csvText(std::string_view text)
{
    if (text.find_first_of("\",\r\n") == std::string_view::npos)
        return std::string(text);
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"')
            quoted += '"';
        quoted += c;
    }
    return quoted + '"';
}

void putJsonValue(Output& out, Type type, Token value)
{
    if (!present(value)) {
        out.put("null");
    } else if (type == Type::Mac) {
        out.put(jsonText(value));
    } else {
        const std::string number = jsonNumber(type, value);
        out.put(number.empty() ? jsonText(value) : number);
    }
}

/* ---- Records ------------------------------------------------------------ */

RecordWriter::RecordWriter(Output& output, const Options& commonOptions) : out(output), options(commonOptions)
{
}

/* What stands between the values: "name":value,"name":[value,value],... */
RecordWriter::Plan RecordWriter::jsonPlan(const std::vector<Pick>& picks, const Layout& layout,
                                          const char* opening)
{
    Plan plan;
    std::string before = opening;
    for (const Pick& pick : picks) {
        const bool array = pick.columns.size() > 1;
        before += (&pick == picks.data() ? "" : ",") + jsonText(pick.name) + (array ? ":[" : ":");
        for (size_t i = 0; i < pick.columns.size(); ++i) {
            const bool mac = pick.field->type == Type::Mac;
            plan.pieces.push_back(
                {before + (mac ? "\"" : ""), pick.columns[i], layout.columns[pick.columns[i]].field->type});
            before = std::string(mac ? "\"" : "") + (i + 1 < pick.columns.size() ? "," : array ? "]" : "");
        }
    }
    plan.after = before;
    return plan;
}

void RecordWriter::startFile(const Source& source)
{
    const bool newKind = kind != source.kind;
    kind = source.kind;
    if (newKind)
        selection = selectionFor(*kind, options);
    if (options.format == Format::Csv) {
        opening = std::string(kind->name) + "," + csvText(source.name);
        if (newKind)
            startCsv();
        return;
    }
    if (newKind) {
        head = jsonPlan(selection.head, kind->head, selection.head.empty() ? "" : ",");
        entry = jsonPlan(selection.entry, kind->entry, "{");
    }
    opening = "{\"kind\":" + jsonText(kind->name) + ",\"source\":" + jsonText(source.name);
}

void RecordWriter::put(const Record& record)
{
    sound = sound && record.odd == 0;
    if (options.format == Format::Csv)
        putCsv(record);
    else
        putJson(record);
}

void RecordWriter::finish()
{
    if (options.format == Format::Json)
        out.put(any ? "\n]\n" : "[]\n");
}

/* ---- JSON --------------------------------------------------------------- */

/* The common case by hand, since this is where an export spends its time. */
void RecordWriter::putValue(Type type, Token value)
{
    const bool plain = present(value) && (type == Type::Mac   ? isPlain(value)
                                          : type == Type::F32 ? isPlainDecimal(value)
                                                              : isPlainInteger(value));
    if (plain) {
        out.put(value);
        return;
    }
    if (type == Type::Mac) { /* the plan has the quotation marks */
        const std::string text = jsonText(value);
        out.put(std::string_view(text).substr(1, text.size() - 2));
        return;
    }
    sound = sound && present(value) && !jsonNumber(type, value).empty();
    putJsonValue(out, type, value);
}

void RecordWriter::putPlan(const Plan& plan, const std::vector<Token>& cells)
{
    for (const Piece& piece : plan.pieces) {
        out.put(piece.before);
        putValue(piece.type, cells[piece.column]);
    }
    out.put(plan.after);
}

void RecordWriter::putJson(const Record& record)
{
    if (options.format == Format::Json)
        out.put(any ? ",\n" : "[\n");
    any = true;
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
    out.put('}');
    if (options.format == Format::Ndjson)
        out.put('\n');
}

/* ---- CSV ---------------------------------------------------------------- */

namespace
{

void addNames(std::string& line, const std::vector<Pick>& picks, const Layout& layout)
{
    for (const Pick& pick : picks)
        for (const size_t column : pick.columns)
            line += "," + csvText(layout.columns[column].name);
}

} // namespace

/* A table of its own for each kind, an empty line between two. */
void RecordWriter::startCsv()
{
    std::string line = "kind,source";
    addNames(line, selection.head, kind->head);
    if (!selection.entry.empty())
        line += ",entry";
    addNames(line, selection.entry, kind->entry);
    out.put(any ? "\r\n" : "");
    out.put(line);
    out.put("\r\n");
    any = true;
}

void RecordWriter::putCsvCells(const std::vector<Pick>& picks, const std::vector<Token>* cells)
{
    for (const Pick& pick : picks)
        for (const size_t column : pick.columns) {
            out.put(',');
            const Token value = cells != nullptr ? (*cells)[column] : Token();
            if (cells != nullptr && pick.field->type != Type::Mac)
                sound = sound && present(value) && !jsonNumber(pick.field->type, value).empty();
            out.put(present(value) ? csvText(value) : "");
        }
}

/* One row per record, or per entry where the kind has them. */
void RecordWriter::putCsv(const Record& record)
{
    const size_t rows = selection.entry.empty() ? 1 : std::max<size_t>(record.entries.size(), 1);
    for (size_t row = 0; row < rows; ++row) {
        out.put(opening);
        putCsvCells(selection.head, &record.cells);
        if (!selection.entry.empty()) {
            const bool none = record.entries.empty();
            out.put(',');
            out.put(none ? "" : std::to_string(row));
            putCsvCells(selection.entry, none ? nullptr : &record.entries[row]);
        }
        out.put("\r\n");
    }
}

} // namespace algdata
