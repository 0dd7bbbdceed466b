/* SPDX-License-Identifier: Apache-2.0 */
#include "importing/normalize.h"

#include <cmath>

#include <fmt/format.h>

#include "text/wording.h"

namespace algdata
{

namespace
{

/* The reader reads at most three digits of a station's position. */
constexpr size_t maxPositions = 1000;

/*
 * Normalises the values of one record. Each normalize function replaces the cell and
 * returns why its value is refused, or an empty text.
 */
class Normalizer
{
  public:
    Normalizer(const Kind& ofKind, Record& theRecord, bool round, Texts& newTexts, const Refuse& report)
        : kind(ofKind), record(theRecord), rounding(round), texts(newTexts), refuse(report)
    {
    }

    void run();

  private:
    void normalizeCells(const Layout& layout, const std::string& where, std::vector<Token>& cells);
    std::string normalizeValue(const Column& column, Token& cell);
    std::string normalizePosition(Token& cell);
    std::string normalizeCount(Token& cell);
    std::string normalizeFloat(const Field& field, Token& cell);
    std::string normalizeInteger(const Field& field, Token& cell);

    const Kind& kind;
    Record& record;
    const bool rounding;
    Texts& texts;
    const Refuse& refuse;
};

void Normalizer::run()
{
    const size_t entries = record.entries.size();
    normalizeCells(kind.head, "", record.cells);
    if (kind.hasEntries() && entries > kind.entries.capacity)
        refuse(kind.entries.name,
               fmt::format("{}, expected at most {}", plural(entries, "entry"), kind.entries.capacity));
    for (size_t i = 0; i < entries; ++i)
        normalizeCells(kind.entry, fmt::format("{}.{}.", kind.entries.name, i), record.entries[i]);
}

void Normalizer::normalizeCells(const Layout& layout, const std::string& where, std::vector<Token>& cells)
{
    for (size_t i = 0; i < cells.size(); ++i) {
        const Column& column = layout.columns[i];
        const bool count =
            &layout == &kind.head && kind.hasEntries() && column.name == kind.entries.countName;
        const std::string refusal = column.field->position ? normalizePosition(cells[i])
                                    : count                ? normalizeCount(cells[i])
                                                           : normalizeValue(column, cells[i]);
        if (!refusal.empty())
            refuse(where + column.name, refusal);
    }
}

std::string Normalizer::normalizeValue(const Column& column, Token& cell)
{
    if (!present(cell))
        return "missing";
    if (column.field->type == Type::Mac)
        return isMac(cell) ? "" : fmt::format("{}, expected 12 hexadecimal digits", inQuotes(cell));
    return column.field->type == Type::F32 ? normalizeFloat(*column.field, cell)
                                           : normalizeInteger(*column.field, cell);
}

/* The position is the record's index, because every write renumbers the records. */
std::string Normalizer::normalizePosition(Token& cell)
{
    const std::string position = std::to_string(record.index);
    const Token stated = cell;
    cell = texts.add(position);
    if (record.index == maxPositions)
        return fmt::format("too many records, expected at most {}: the reader splits positions of 4 digits",
                           maxPositions);
    return !present(stated) || stated == position
               ? ""
               : fmt::format("{}, expected {}: it is the record's position and can be left out",
                             inQuotes(stated), position);
}

std::string Normalizer::normalizeCount(Token& cell)
{
    const std::string entries = std::to_string(record.entries.size());
    const Token stated = cell;
    cell = texts.add(entries);
    return !present(stated) || stated == entries
               ? ""
               : fmt::format("{}, expected {}: it is the number of entries and can be left out",
                             inQuotes(stated), entries);
}

/* A writer prints two decimals. */
std::string Normalizer::normalizeFloat(const Field& field, Token& cell)
{
    const std::optional<double> exact = numberIn(field, cell);
    if (!exact)
        return fmt::format("{}, expected a decimal number in the range of a float", inQuotes(cell));
    const Token stored = texts.add(fmt::format("{:.2f}", static_cast<float>(*exact)));
    const std::optional<double> back = decimalNumber(stored);
    const bool same = back == exact && std::signbit(*back) == std::signbit(*exact);
    const Token stated = cell;
    cell = stored;
    return same || rounding
               ? ""
               : fmt::format("{} would read back as {}; --round allows it", inQuotes(stated), stored);
}

std::string Normalizer::normalizeInteger(const Field& field, Token& cell)
{
    const std::optional<Number> number = wholeNumber(cell);
    if (!number)
        return fmt::format("{}, expected a whole number", inQuotes(cell));
    if (!inRange(field, *number))
        return fmt::format("{} does not fit, expected 0 to {}", inQuotes(cell), typeMax(field.type));
    const uint64_t value = readsAs(field, *number);
    const std::string stored =
        field.printsSigned ? std::to_string(static_cast<int32_t>(value)) : std::to_string(value);
    if (field.widthIn != 0 && stored.size() > static_cast<size_t>(field.widthIn))
        return fmt::format("{} has {} digits, expected at most {}: the reader splits it", inQuotes(cell),
                           stored.size(), field.widthIn);
    if (cell != stored)
        cell = texts.add(stored);
    return "";
}

} // namespace

void normalize(const Kind& kind, Record& record, bool round, Texts& texts, const Refuse& refuse)
{
    Normalizer(kind, record, round, texts, refuse).run();
}

} // namespace algdata
