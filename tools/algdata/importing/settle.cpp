/* SPDX-License-Identifier: Apache-2.0 */
#include "importing/settle.h"

#include <cfloat>
#include <charconv>
#include <climits>
#include <cmath>

#include <fmt/format.h>

#include "output/wording.h"

namespace algdata
{

namespace
{

/* A station file's positions have three digits to be read into. */
constexpr size_t mostPositions = 1000;

/* The decimal number that the whole text is: no hexadecimal digits, no infinity. */
std::optional<double> decimalIn(std::string_view text)
{
    if (!text.empty() && text[0] == '+')
        text.remove_prefix(1);
    double number = 0;
    const char* const end = text.data() + text.size();
    const std::from_chars_result result = std::from_chars(text.data(), end, number);
    if (text.empty() || result.ec != std::errc() || result.ptr != end || !std::isfinite(number))
        return std::nullopt;
    return number;
}

/* The values of one record, one after the other. */
class Settling
{
  public:
    Settling(const Kind& ofKind, Record& theRecord, bool round, Texts& made, const Refuse& report)
        : kind(ofKind), record(theRecord), rounding(round), texts(made), refuse(report)
    {
    }

    void run();

  private:
    void settleCells(const Layout& layout, const std::string& where, std::vector<Token>& cells);
    std::string whyNot(const Column& column, Token& cell);
    std::string whyNotPosition(Token& cell);
    std::string whyNotCount(Token& cell);
    std::string whyNotFloat(Token& cell);
    std::string whyNotInteger(const Field& field, Token& cell);

    const Kind& kind;
    Record& record;
    const bool rounding;
    Texts& texts;
    const Refuse& refuse;
};

void Settling::run()
{
    const size_t entries = record.entries.size();
    settleCells(kind.head, "", record.cells);
    if (kind.hasEntries() && entries > kind.entries.capacity)
        refuse(kind.entries.name,
               fmt::format("{}, there is room for {}", plural(entries, "entry"), kind.entries.capacity));
    for (size_t i = 0; i < entries; ++i)
        settleCells(kind.entry, fmt::format("{}.{}.", kind.entries.name, i), record.entries[i]);
}

void Settling::settleCells(const Layout& layout, const std::string& where, std::vector<Token>& cells)
{
    for (size_t i = 0; i < cells.size(); ++i) {
        const Column& column = layout.columns[i];
        const bool count =
            &layout == &kind.head && kind.hasEntries() && column.name == kind.entries.countName;
        const std::string why = column.field->position ? whyNotPosition(cells[i])
                                : count                ? whyNotCount(cells[i])
                                                       : whyNot(column, cells[i]);
        if (!why.empty())
            refuse(where + column.name, why);
    }
}

/* Empty where nothing is against it. */
std::string Settling::whyNot(const Column& column, Token& cell)
{
    if (!present(cell))
        return "it is missing";
    if (column.field->type == Type::Mac)
        return isMac(cell) ? "" : fmt::format("{}, expected 12 hexadecimal digits", inQuotes(cell));
    return column.field->type == Type::F32 ? whyNotFloat(cell) : whyNotInteger(*column.field, cell);
}

/* Every write numbers the records anew. */
std::string Settling::whyNotPosition(Token& cell)
{
    const std::string position = std::to_string(record.index);
    const Token stated = cell;
    cell = texts.add(position);
    if (record.index == mostPositions)
        return fmt::format("more than {} records: positions of four digits are split on reading",
                           mostPositions);
    return !present(stated) || stated == position
               ? ""
               : fmt::format("{}, expected {}: it is the record's position and can be left out",
                             inQuotes(stated), position);
}

std::string Settling::whyNotCount(Token& cell)
{
    const std::string entries = std::to_string(record.entries.size());
    const Token stated = cell;
    cell = texts.add(entries);
    return !present(stated) || stated == entries
               ? ""
               : fmt::format("{}, expected {}: it is the number of entries and can be left out",
                             inQuotes(stated), entries);
}

/* A file has two decimals. */
std::string Settling::whyNotFloat(Token& cell)
{
    const std::optional<double> exact = decimalIn(cell);
    if (!exact || std::abs(*exact) > static_cast<double>(FLT_MAX))
        return fmt::format("{}, expected a decimal number that a float can hold", inQuotes(cell));
    const Token stored = texts.add(fmt::format("{:.2f}", static_cast<float>(*exact)));
    const std::optional<double> back = decimalIn(stored);
    const bool same = back == exact && std::signbit(*back) == std::signbit(*exact);
    const Token stated = cell;
    cell = stored;
    return same || rounding
               ? ""
               : fmt::format("{} would come back as {}; --round allows that", inQuotes(stated), stored);
}

std::string Settling::whyNotInteger(const Field& field, Token& cell)
{
    const std::optional<Number> number = wholeNumber(cell);
    if (!number)
        return fmt::format("{}, expected a whole number", inQuotes(cell));
    /* What is printed signed comes back as the same bits. */
    const bool negative = number->negative && !number->huge && field.printsSigned &&
                          field.type == Type::U32 && number->magnitude <= uint64_t(INT32_MAX) + 1;
    if (!inRange(field, *number) && !negative)
        return fmt::format("{} does not fit, expected 0 to {}", inQuotes(cell), typeMax(field.type));
    const uint64_t value = readsAs(field, *number);
    const std::string stored =
        field.printsSigned ? std::to_string(static_cast<int32_t>(value)) : std::to_string(value);
    if (field.widthIn != 0 && stored.size() > static_cast<size_t>(field.widthIn))
        return fmt::format("{} has {} digits and would be split after {} on reading", inQuotes(cell),
                           stored.size(), field.widthIn);
    if (cell != stored)
        cell = texts.add(stored);
    return "";
}

} // namespace

void settle(const Kind& kind, Record& record, bool round, Texts& texts, const Refuse& refuse)
{
    Settling(kind, record, round, texts, refuse).run();
}

} // namespace algdata
