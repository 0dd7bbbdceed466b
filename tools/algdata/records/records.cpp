/* SPDX-License-Identifier: Apache-2.0 */
#include "records/records.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

#include <fmt/format.h>

namespace algdata
{

namespace
{

/* A table instead of comparisons: digits and letters of a MAC mix, so branches would be mispredicted. */
constexpr std::array<bool, 256> hexDigitTable()
{
    std::array<bool, 256> table{};
    for (const char c : std::string_view("0123456789abcdefABCDEF"))
        table[static_cast<unsigned char>(c)] = true;
    return table;
}

constexpr std::array<bool, 256> hexDigits = hexDigitTable();

} // namespace

bool isHexDigit(char c)
{
    return hexDigits[static_cast<unsigned char>(c)];
}

bool isBlank(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), isSpace);
}

bool Lines::next(Line& line)
{
    if (rest.empty())
        return false;
    const void* newline = std::memchr(rest.data(), '\n', rest.size());
    const size_t length = newline == nullptr
                              ? rest.size()
                              : static_cast<size_t>(static_cast<const char*>(newline) - rest.data());
    line = {rest.substr(0, length), ++number, newline != nullptr};
    rest.remove_prefix(length + (newline != nullptr ? 1 : 0));
    return true;
}

size_t split(std::string_view line, std::vector<Token>& tokens, size_t max)
{
    tokens.clear();
    size_t found = 0;
    const char* at = line.data();
    const char* const end = at + line.size();
    for (;;) {
        while (at != end && isSpace(*at))
            ++at;
        if (at == end)
            return found;
        const char* const begin = at;
        while (at != end && !isSpace(*at))
            ++at;
        if (found++ < max)
            tokens.emplace_back(begin, static_cast<size_t>(at - begin));
    }
}

std::optional<Number> wholeNumber(std::string_view text)
{
    Number number;
    if (!text.empty() && (text[0] == '-' || text[0] == '+')) {
        number.negative = text[0] == '-';
        text.remove_prefix(1);
    }
    if (text.empty())
        return std::nullopt;
    for (const char c : text) {
        if (!isDigit(c))
            return std::nullopt;
        const uint64_t digit = static_cast<uint64_t>(c - '0');
        number.huge = number.huge || number.magnitude > (UINT64_MAX - digit) / 10;
        number.magnitude = number.huge ? UINT64_MAX : number.magnitude * 10 + digit;
    }
    return number;
}

uint64_t readsAs(const Field& field, const Number& number)
{
    const uint64_t value = number.negative && !number.huge ? 0 - number.magnitude : number.magnitude;
    return value & typeMax(field.type);
}

bool inRange(const Field& field, const Number& number)
{
    if (number.huge || number.magnitude > typeMax(field.type))
        return false;
    const bool printed =
        field.printsSigned && field.type == Type::U32 && number.magnitude <= uint64_t(INT32_MAX) + 1;
    return !number.negative || number.magnitude == 0 || printed;
}

std::optional<double> decimalNumber(std::string_view text)
{
    if (text.size() > 1 && text[0] == '+' && text[1] != '-')
        text.remove_prefix(1);
    double number = 0;
    const char* const end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, number);
    if (text.empty() || stopped != end || error != std::errc() || !std::isfinite(number))
        return std::nullopt;
    return number;
}

std::optional<double> numberIn(const Field& field, Token text)
{
    if (field.type == Type::F32) {
        const std::optional<double> number = decimalNumber(text);
        const bool fits = number && std::fabs(*number) <= std::numeric_limits<float>::max();
        return fits ? number : std::nullopt;
    }
    const std::optional<Number> number = wholeNumber(text);
    if (!number || !inRange(field, *number))
        return std::nullopt;
    return static_cast<double>(readsAs(field, *number));
}

std::optional<float> wholeFloat(std::string_view text)
{
    if (text.empty() || text.size() > 64 || isSpace(text[0]))
        return std::nullopt;
    char buffer[65] = {};
    std::memcpy(buffer, text.data(), text.size());
    char* end = nullptr;
    const float value = std::strtof(buffer, &end);
    if (end != buffer + text.size())
        return std::nullopt;
    return value;
}

bool isMac(std::string_view text)
{
    return text.size() == 12 && std::all_of(text.begin(), text.end(), isHexDigit);
}

bool isDamaged(const Field& field, Token text)
{
    return field.type == Type::Mac ? !isMac(text) : !numberIn(field, text);
}

bool isMacLike(std::string_view text)
{
    return text.size() >= 10 || !wholeNumber(text);
}

bool beginsDevice(const std::vector<Token>& tokens, size_t found)
{
    return found == 2 || (found > 0 && found != 6 && isMacLike(tokens[0]));
}

bool beginsStreamRecord(std::string_view token)
{
    return isMac(token);
}

/* ---- Records ------------------------------------------------------------ */

RecordReader::RecordReader(const Kind& recordKind, std::string_view bytes)
    : kind(recordKind), all(bytes), lines(bytes)
{
    line.number = 1;
}

void RecordReader::seek(size_t place)
{
    lines = Lines(all.substr(place));
    offset = place;
    pending = false;
    count = place == 0 ? 0 : 1; /* a count line is expected only at place 0 */
}

bool RecordReader::next(Record& record)
{
    record.entries.clear();
    record.wrongLines = 0;
    bool read = false;
    switch (kind.shape) {
    case Shape::Lines:
        read = nextLine(record);
        break;
    case Shape::Stream:
        read = nextOfStream(record);
        break;
    case Shape::Devices:
        read = nextDevice(record);
        break;
    case Shape::Index:
        read = nextIndex(record);
        break;
    }
    record.index = read ? count++ : record.index;
    return read;
}

/* Reads the next line that is not blank. */
bool RecordReader::advance()
{
    const size_t max = std::max(kind.head.columns.size(), kind.entry.columns.size());
    while (lines.next(line)) {
        found = split(line.text, tokens, max);
        if (found != 0)
            return true;
    }
    return false;
}

void RecordReader::startAt(const char* at, Record& record) const
{
    record.line = line.number;
    record.place = static_cast<size_t>(at - all.data());
}

/* Assigns the fields of the current line to the columns of a layout. Missing fields have no data. */
void RecordReader::fillCells(std::vector<Token>& cells, const Layout& layout, Record& record)
{
    const size_t columns = layout.columns.size();
    cells.assign(tokens.begin(), tokens.begin() + static_cast<ptrdiff_t>(std::min(columns, tokens.size())));
    cells.resize(columns);
    record.wrongLines += found != columns ? 1 : 0;
}

bool RecordReader::nextLine(Record& record)
{
    if (!advance())
        return false;
    startAt(line.text.data(), record);
    fillCells(record.cells, kind.head, record);
    return true;
}

/*
 * Finds the next field of a stream without consuming it. Null at the end. The search ends with the
 * field, not with its line: all records of a file can be on one line.
 */
Token RecordReader::peek()
{
    for (; offset < all.size() && isSpace(all[offset]); ++offset)
        line.number += all[offset] == '\n' ? 1 : 0;
    size_t end = offset;
    while (end < all.size() && !isSpace(all[end]))
        ++end;
    return end == offset ? Token() : all.substr(offset, end - offset);
}

bool RecordReader::nextOfStream(Record& record)
{
    record.cells.clear();
    const size_t columns = kind.head.columns.size();
    while (record.cells.size() < columns) {
        const Token token = peek();
        if (!present(token) || (!record.cells.empty() && beginsStreamRecord(token)))
            break;
        if (record.cells.empty())
            startAt(token.data(), record);
        record.cells.push_back(token);
        offset += token.size();
    }
    if (record.cells.empty())
        return false;
    record.wrongLines += record.cells.size() != columns ? 1 : 0;
    record.cells.resize(columns);
    return true;
}

bool RecordReader::nextDevice(Record& record)
{
    if (!pending) {
        if (!advance())
            return false;
        const bool isCount = count == 0 && found == 1 && !isMacLike(tokens[0]);
        if (isCount)
            stated = tokens[0];
        if (isCount && !advance())
            return false;
    }
    pending = false;
    startAt(line.text.data(), record);
    if (beginsDevice(tokens, found)) {
        fillCells(record.cells, kind.head, record);
        if (!advance())
            return true;
    } else { /* entries without a device */
        record.cells.assign(kind.head.columns.size(), Token());
        ++record.wrongLines;
    }
    do {
        pending = beginsDevice(tokens, found);
        if (!pending)
            fillCells(record.entries.emplace_back(), kind.entry, record);
    } while (!pending && advance());
    return true;
}

bool RecordReader::nextIndex(Record& record)
{
    if (!advance())
        return false;
    startAt(line.text.data(), record);
    fillCells(record.cells, kind.head, record);
    while (advance())
        fillCells(record.entries.emplace_back(), kind.entry, record);
    return true;
}

/* ---- Writing ------------------------------------------------------------ */

namespace
{

void appendFields(std::string& text, const Layout& layout, const std::vector<Token>& cells,
                  bool trailingBlank)
{
    for (size_t i = 0; i < layout.columns.size(); ++i) {
        if (i != 0 && !trailingBlank)
            text += ' ';
        const Field& field = *layout.columns[i].field;
        const std::optional<float> number = field.type == Type::F32 ? wholeFloat(cells[i]) : std::nullopt;
        if (number)
            text += fmt::format("{:.2f}", static_cast<double>(*number));
        else
            text += fmt::format("{:>{}}", cells[i], field.widthOut);
        if (trailingBlank)
            text += ' ';
    }
    text += '\n';
}

} // namespace

std::string written(const Kind& kind, const Record& record)
{
    std::string text;
    appendFields(text, kind.head, record.cells, kind.trailingBlank);
    for (const std::vector<Token>& entry : record.entries)
        appendFields(text, kind.entry, entry, kind.trailingBlank);
    return text;
}

std::string writtenPreamble(const Kind& kind, size_t records)
{
    return kind.shape == Shape::Devices ? fmt::format("{}\n", records) : "";
}

} // namespace algdata
