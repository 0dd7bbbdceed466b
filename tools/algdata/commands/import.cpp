/* SPDX-License-Identifier: Apache-2.0 */
/* `algdata import`: records from JSON, NDJSON or CSV, written by the module. */
#include <algorithm>
#include <cmath>
#include <map>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "commands/commands.h"
#include "output/output.h"
#include "output/table.h"
#include "view/loaded.h"

namespace algdata
{

namespace
{

using Json = nlohmann::json;

/* A station file's positions have three digits to be read into. */
constexpr size_t mostStationLines = 1000;

/* Why records cannot be written; the first few are enough to tell. */
class Refusals
{
  public:
    void add(size_t record, const std::string& field, const std::string& why)
    {
        if (++count <= most)
            message(fmt::format("record {}{}{}: {}", record + 1, field.empty() ? "" : ", ", field, why));
    }
    void add(const std::string& why)
    {
        ++count;
        message(why);
    }
    bool any() const
    {
        if (count > most)
            message(fmt::format("and {} more", count - most));
        return count != 0;
    }

  private:
    static constexpr size_t most = 20;
    size_t count = 0;
};

struct Incoming {
    const Kind& kind;
    Texts texts;
    std::vector<Record> records;
    Refusals refusals;
};

/* ---- JSON --------------------------------------------------------------- */

Token textOf(const Field& field, const Json& value, const std::string& name, size_t record, Incoming& in)
{
    if (field.type == Type::Mac && value.is_string())
        return in.texts.add(value.get<std::string>());
    const bool fits = field.type == Type::F32 ? value.is_number() : value.is_number_integer();
    if (field.type != Type::Mac && fits)
        return in.texts.add(value.dump());
    in.refusals.add(record, name,
                    fmt::format("{} is no {}",
                                value.dump(-1, ' ', true, Json::error_handler_t::replace).substr(0, 40),
                                field.type == Type::Mac   ? "text"
                                : field.type == Type::F32 ? "number"
                                                          : "whole number"));
    return in.texts.add("0");
}

/* One JSON object's fields, laid into columns. `known`: other names that may stand there. */
std::vector<Token> cellsFrom(const Json& object, const Layout& layout, const std::string& where,
                             size_t record, const std::vector<std::string>& known, Incoming& in)
{
    std::vector<Token> cells(layout.columns.size());
    std::vector<std::string> names = known;
    for (size_t i = 0; i < layout.fields.size(); ++i) {
        const Field& field = layout.fields[i];
        names.emplace_back(field.name);
        const auto at = object.find(field.name);
        if (at == object.end() || at->is_null())
            continue;
        if (field.count == 1) {
            cells[layout.placeOf[i][0]] = textOf(field, *at, where + field.name, record, in);
            continue;
        }
        if (!at->is_array() || at->size() != static_cast<size_t>(field.count)) {
            in.refusals.add(record, where + field.name,
                            fmt::format("expected a list of {} values", field.count));
            continue;
        }
        for (size_t j = 0; j < at->size(); ++j)
            cells[layout.placeOf[i][j]] =
                textOf(field, (*at)[j], fmt::format("{}{}.{}", where, field.name, j), record, in);
    }
    for (const auto& item : object.items())
        if (std::find(names.begin(), names.end(), item.key()) == names.end())
            in.refusals.add(record, where + printable(item.key()),
                            fmt::format("{} has no such field", in.kind.name));
    return cells;
}

void addObject(const Json& object, Incoming& in)
{
    const size_t number = in.records.size();
    Record& record = in.records.emplace_back();
    record.index = number;
    if (!object.is_object())
        throw Failure(fmt::format("record {} is no object", number + 1));
    const auto said = object.find("kind");
    if (said != object.end() && *said != in.kind.name)
        in.refusals.add(number, "kind",
                        fmt::format("{} is not {}", said->dump(-1, ' ', true, Json::error_handler_t::replace),
                                    in.kind.name));
    std::vector<std::string> known = {"kind", "source"};
    if (in.kind.hasEntries())
        known.emplace_back(in.kind.entries.name);
    record.cells = cellsFrom(object, in.kind.head, "", number, known, in);
    const auto entries = in.kind.hasEntries() ? object.find(in.kind.entries.name) : object.end();
    if (entries == object.end())
        return;
    if (!entries->is_array())
        throw Failure(fmt::format("record {}, {}: expected a list", number + 1, in.kind.entries.name));
    for (size_t i = 0; i < entries->size(); ++i) {
        if (!(*entries)[i].is_object())
            throw Failure(
                fmt::format("record {}, {}.{}: expected an object", number + 1, in.kind.entries.name, i));
        const std::string where = fmt::format("{}.{}.", in.kind.entries.name, i);
        record.entries.push_back(cellsFrom((*entries)[i], in.kind.entry, where, number, {}, in));
    }
}

Json parsed(std::string_view text, const std::string& name)
{
    try {
        return Json::parse(text);
    } catch (const Json::parse_error& error) {
        throw Failure(fmt::format("{}: no JSON: byte {}", name, error.byte));
    }
}

void addJson(std::string_view text, const std::string& name, Incoming& in)
{
    const Json whole = parsed(text, name);
    if (!whole.is_array())
        addObject(whole, in);
    else
        for (const Json& object : whole)
            addObject(object, in);
}

void addNdjson(std::string_view text, const std::string& name, Incoming& in)
{
    Lines lines(text);
    Line line;
    while (lines.next(line))
        if (!isBlank(line.text))
            addObject(parsed(line.text, fmt::format("{}, line {}", name, line.number)), in);
}

/* ---- CSV ---------------------------------------------------------------- */

/* The next row, as RFC 4180 has it; a lone LF ends a row too. */
bool nextRow(std::string_view& rest, std::vector<std::string>& row, const std::string& name)
{
    row.clear();
    if (rest.empty())
        return false;
    for (;;) {
        std::string& cell = row.emplace_back();
        if (!rest.empty() && rest[0] == '"') {
            rest.remove_prefix(1);
            for (;; rest.remove_prefix(1)) {
                if (rest.empty())
                    throw Failure(name + ": a quoted value of the CSV does not end");
                if (rest[0] == '"' && (rest.size() < 2 || rest[1] != '"'))
                    break;
                if (rest[0] == '"')
                    rest.remove_prefix(1);
                cell += rest[0];
            }
            rest.remove_prefix(1);
        }
        const size_t end = std::min(rest.find_first_of(",\r\n"), rest.size());
        cell += rest.substr(0, end);
        rest.remove_prefix(end);
        if (rest.empty())
            return true;
        const char ended = rest[0];
        rest.remove_prefix(ended == '\r' && rest.size() > 1 && rest[1] == '\n' ? 2 : 1);
        if (ended != ',')
            return true;
    }
}

struct CsvColumns {
    std::vector<size_t> head; /* column of the layout by column of the text, SIZE_MAX for none */
    std::vector<size_t> entry;
    size_t entryNumber = SIZE_MAX;
    size_t kind = SIZE_MAX;
};

size_t columnOf(const Layout& layout, const std::string& name)
{
    for (size_t i = 0; i < layout.columns.size(); ++i)
        if (layout.columns[i].name == name)
            return i;
    return SIZE_MAX;
}

CsvColumns columnsFrom(const std::vector<std::string>& header, Incoming& in)
{
    CsvColumns columns;
    for (size_t i = 0; i < header.size(); ++i) {
        columns.head.push_back(columnOf(in.kind.head, header[i]));
        columns.entry.push_back(columnOf(in.kind.entry, header[i]));
        if (header[i] == "kind")
            columns.kind = i;
        else if (header[i] == "entry" && in.kind.hasEntries())
            columns.entryNumber = i;
        else if (header[i] != "source" && columns.head[i] == SIZE_MAX && columns.entry[i] == SIZE_MAX)
            in.refusals.add(
                fmt::format("column {}: {} has no such field", printable(header[i]), in.kind.name));
    }
    return columns;
}

std::vector<Token> rowCells(const std::vector<std::string>& row, const std::vector<size_t>& places,
                            size_t columns, Incoming& in)
{
    std::vector<Token> cells(columns);
    for (size_t i = 0; i < row.size(); ++i)
        if (places[i] != SIZE_MAX)
            cells[places[i]] = in.texts.add(row[i]);
    return cells;
}

void addCsv(std::string_view text, const std::string& name, Incoming& in)
{
    std::vector<std::string> row;
    if (!nextRow(text, row, name))
        return;
    const std::vector<std::string> header = row;
    const CsvColumns columns = columnsFrom(header, in);
    if (in.refusals.any())
        throw Failure(name + ": its first row does not name the fields");
    while (nextRow(text, row, name)) {
        if (row.size() == 1 && row[0].empty())
            continue;
        if (row.size() != header.size())
            throw Failure(fmt::format("{}: row {} has {} values, expected {}", name, in.records.size() + 1,
                                      row.size(), header.size()));
        const std::string entry = columns.entryNumber == SIZE_MAX ? "" : row[columns.entryNumber];
        if (entry.empty() || entry == "0" || in.records.empty()) {
            Record& record = in.records.emplace_back();
            record.index = in.records.size() - 1;
            record.cells = rowCells(row, columns.head, in.kind.head.columns.size(), in);
        }
        if (columns.kind != SIZE_MAX && row[columns.kind] != in.kind.name)
            in.refusals.add(in.records.size() - 1, "kind",
                            fmt::format("{} is not {}", printable(row[columns.kind]), in.kind.name));
        if (!entry.empty())
            in.records.back().entries.push_back(
                rowCells(row, columns.entry, in.kind.entry.columns.size(), in));
    }
}

/* ---- What a file can hold ----------------------------------------------- */

/* Empty where it can. */
std::string whyNot(const Field& field, Token value)
{
    if (!present(value))
        return "it is missing";
    if (field.type == Type::Mac) {
        const bool text = std::all_of(value.begin(), value.end(), [](char c) { return c > ' ' && c <= '~'; });
        if (value.empty())
            return "an empty MAC is skipped on reading, and all that follow shift";
        if (!text)
            return fmt::format("{} would be split on reading", printable(value));
        return value.size() > 12 ? fmt::format("{} has {} characters and would be split after 12 on reading",
                                               printable(value), value.size())
                                 : "";
    }
    if (field.type == Type::F32) {
        const std::optional<float> number = wholeFloat(value);
        return number && std::isfinite(*number) ? "" : printable(value) + " is no number that fits";
    }
    const std::optional<Number> number = wholeNumber(value);
    if (!number)
        return printable(value) + " is no whole number";
    if (!inRange(field, *number))
        return fmt::format("{} does not fit, expected 0 to {}", printable(value), typeMax(field.type));
    const size_t digits = std::to_string(number->magnitude).size();
    if (field.widthIn != 0 && digits > static_cast<size_t>(field.widthIn))
        return fmt::format("{} has {} digits and would be split after {} on reading", number->magnitude,
                           digits, field.widthIn);
    return "";
}

/* Refuses what cannot stand; brings the rest to the form in which it is written. */
void settle(const Layout& layout, const std::string& where, std::vector<Token>& cells, size_t record,
            Incoming& in)
{
    for (size_t i = 0; i < cells.size(); ++i) {
        const Column& column = layout.columns[i];
        if (column.field->position) {
            cells[i] = in.texts.add(std::to_string(record));
            continue;
        }
        if (!present(cells[i]) && in.kind.hasEntries() && where.empty() &&
            column.name == in.kind.entries.countName)
            cells[i] = in.texts.add(std::to_string(in.records[record].entries.size()));
        const std::string why = whyNot(*column.field, cells[i]);
        if (!why.empty())
            in.refusals.add(record, where + column.name, why);
        else if (column.field->type != Type::Mac && column.field->type != Type::F32)
            cells[i] = in.texts.add(std::to_string(wholeNumber(cells[i])->magnitude));
    }
}

void settleEntries(Record& record, Incoming& in)
{
    if (!in.kind.hasEntries())
        return;
    const size_t entries = record.entries.size();
    if (entries > in.kind.entries.capacity)
        in.refusals.add(record.index, in.kind.entries.name,
                        fmt::format("{} entries, there is room for {}", entries, in.kind.entries.capacity));
    const Token said = record.cells[columnOf(in.kind.head, in.kind.entries.countName)];
    if (present(said) && said != std::to_string(entries))
        in.refusals.add(record.index, in.kind.entries.countName,
                        fmt::format("{} is said, {} follow", printable(said), entries));
    for (size_t i = 0; i < entries; ++i)
        settle(in.kind.entry, fmt::format("{}.{}.", in.kind.entries.name, i), record.entries[i], record.index,
               in);
}

void settleAll(Incoming& in)
{
    const size_t count = in.records.size();
    const bool single = in.kind.shape == Shape::Index || in.kind.cap == 1;
    if (single && count != 1)
        in.refusals.add(fmt::format("{} records, expected one: a file of kind {} holds exactly one", count,
                                    in.kind.name));
    if (in.kind.head.fields[0].position && count > mostStationLines)
        in.refusals.add(
            mostStationLines, in.kind.head.fields[0].name,
            fmt::format("{} records, expected at most {}: positions of four digits are split on reading",
                        count, mostStationLines));
    if (in.kind.shape == Shape::Devices && count > UINT8_MAX)
        in.refusals.add(
            fmt::format("{} devices, expected at most {}: the count is read in 8 bits", count, UINT8_MAX));
    for (Record& record : in.records) {
        settle(in.kind.head, "", record.cells, record.index, in);
        settleEntries(record, in);
    }
}

/* ---- Writing ------------------------------------------------------------ */

std::string expectedText(const Incoming& in)
{
    std::string text = writtenPreamble(in.kind, in.records.size());
    for (const Record& record : in.records)
        text += written(in.kind, record);
    return text;
}

/* The module writes to a file aside, which then becomes the result. */
std::string moduleText(const Incoming& in)
{
    const TemporaryFile aside;
    Image image = imageOf(in.kind, in.records);
    if (!storeImage(image, aside.path()))
        throw OutputFailure(fmt::format("{} failed", in.kind.writer()));
    Source source;
    readSource(aside.path(), source);
    if (source.bytes != expectedText(in))
        throw OutputFailure(fmt::format("{} did not write these records as they are", in.kind.writer()));
    return source.bytes;
}

void parse(const Source& source, Format format, Incoming& in)
{
    const size_t start = source.bytes.find_first_not_of(" \t\r\n");
    const char first = start == std::string::npos ? '\0' : source.bytes[start];
    if (format == Format::Text)
        format = first == '['                 ? Format::Json
                 : first != '{'               ? Format::Csv
                 : Json::accept(source.bytes) ? Format::Json
                                              : Format::Ndjson;
    if (format == Format::Json)
        addJson(source.bytes, source.name, in);
    else if (format == Format::Ndjson)
        addNdjson(source.bytes, source.name, in);
    else if (format == Format::Csv)
        addCsv(source.bytes, source.name, in);
    else
        throw Failure("import reads json, ndjson or csv");
}

} // namespace

Status runImport(Options options)
{
    if (options.kind == nullptr)
        throw Failure("import needs --kind; there are " + kindNames());
    if (options.kind->writer() == nullptr)
        throw Failure(
            fmt::format("{} files are only read: the module has no writer for them", options.kind->name));
    Source source;
    readSource(options.paths[0], source);
    Incoming in = {*options.kind, {}, {}, {}};
    parse(source, options.format, in);
    settleAll(in);
    if (in.refusals.any()) {
        message("nothing is written");
        return Findings;
    }
    const std::string text = moduleText(in);
    Output out(options);
    out.put(text);
    out.close(AllWell);
    return AllWell;
}

} // namespace algdata
