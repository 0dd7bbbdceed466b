/* SPDX-License-Identifier: Apache-2.0 */
/* Finds the faults of a file: what the readers would swallow. */
#include <algorithm>
#include <array>
#include <cmath>
#include <unordered_map>

#include <fmt/format.h>

#include "checking/rules.h"
#include "output/table.h"
#include "reading/disguise.h"
#include "reading/keys.h"
#include "reading/records.h"

namespace algdata
{

namespace
{

/* Room that an empty MAC leaves: its 12 blanks and the one that parts the fields. */
constexpr size_t emptyMac = 12;

/* The buffer of the counter and of the line readers holds this many characters, the newline included. */
constexpr size_t slice = 1023;

std::string lowered(std::string_view text)
{
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return lower;
}

/* A field's text in a message: short, and nothing that disturbs a terminal. */
/* ---- Keys --------------------------------------------------------------- */

/* Where keys have been seen, exactly and without regard to letter case. */
class Keys
{
  public:
    /* The line of the same key, 0 where it is new. */
    size_t sameAs(const std::string& key, size_t line)
    {
        const auto [at, added] = exact.try_emplace(key, line);
        return added ? 0 : at->second;
    }

    struct Spelling {
        std::string text;
        size_t line = 0;
    };

    /* The first other spelling of a MAC that is new itself; line 0 where there is none. */
    Spelling otherSpelling(size_t column, Token mac, size_t line)
    {
        const std::string place = std::to_string(column) + " ";
        if (!spelled.try_emplace(place + std::string(mac), line).second)
            return {};
        const auto [at, added] = folded.try_emplace(place + lowered(mac), Spelling{std::string(mac), line});
        return added ? Spelling() : at->second;
    }

  private:
    std::unordered_map<std::string, size_t> exact;
    std::unordered_map<std::string, size_t> spelled;
    std::unordered_map<std::string, Spelling> folded;
};

/* ---- The checker -------------------------------------------------------- */

class Checker
{
  public:
    Checker(const Kind& checkedKind, std::string_view bytes) : kind(checkedKind), all(bytes) {}
    std::vector<Finding> run();

  private:
    using Cells = std::vector<Token>;

    void report(Rule rule, const char* at, std::string field, std::string text);
    void checkMark();
    void checkTail();
    void reportNoted();
    void checkEnd(const Line& line, bool whole);

    /* One line */
    bool checkText(const Line& line);
    void checkCharacters(const Line& line);
    void checkReturns(const Line& line);
    void checkIndent(const Field& first, const Line& line);
    void checkBlank(const Line& line);
    bool layCells(const Layout& layout, const Line& line, Cells& cells);
    bool layAroundEmptyMacs(const Layout& layout, const Line& line, Cells& cells);
    void reportCount(const Layout& layout, const Line& line);

    /* One field */
    void checkCells(const Layout& layout, const Cells& cells);
    void checkMac(const Layout& layout, size_t column, Token value);
    void checkNumber(const Layout& layout, size_t column, Token value);
    void checkFloat(const Column& column, Token value);
    void checkForm(const std::string& name, Token value, bool minusZero);
    std::string trustText(const Column& column, uint64_t number) const;
    void checkMeaning(const Column& column, Token value, uint64_t number);
    void checkLoaded(const Column& column, Token value, uint64_t number);
    bool checkWidth(const Layout& layout, size_t column, Token value);

    /* One record and all */
    void checkKey(const Layout& layout, const Cells& cells, size_t line, Keys& keys, bool unique);
    void checkPosition(const Cells& cells);
    void checkCap(size_t count, const char* at);

    /* By shape */
    void checkLines();
    void checkStream();
    void checkDevices();
    void checkIndex();
    bool checkCountLine(Lines& lines, Line& line);
    void checkDeviceCount();
    void checkEntryCount(const Cells& head, size_t entries, Rule rule, const char* effect);

    const Kind& kind;
    std::string_view all;
    std::vector<const char*> lineStarts;
    std::vector<Finding> findings;
    std::vector<Token> tokens; /* of the current line, and one more than it should have */
    size_t found = 0;
    size_t records = 0;
    /* What one finding tells for all lines that have it. */
    struct Noted {
        const char* first = nullptr;
        size_t lines = 0;

        void note(const char* at)
        {
            if (lines++ == 0)
                first = at;
        }
    };
    Noted tabs;
    Noted indents;
    size_t loneReturns = 0; /* of the current line */
    bool returnSeen = false;
    bool positionSeen = false;
    std::optional<uint64_t> stated; /* devices, by the count line */
    const char* statedAt = nullptr;
};

void Checker::report(Rule rule, const char* at, std::string field, std::string text)
{
    const auto next = std::upper_bound(lineStarts.begin(), lineStarts.end(), at);
    const size_t line = static_cast<size_t>(next - lineStarts.begin());
    const size_t column = line == 0 ? 0 : static_cast<size_t>(at - lineStarts[line - 1]);
    findings.push_back({std::max<size_t>(line, 1), column + 1, rule, std::move(field), std::move(text)});
}

std::vector<Finding> Checker::run()
{
    lineStarts.push_back(all.data());
    for (size_t at = all.find('\n'); at != std::string_view::npos && at + 1 < all.size();
         at = all.find('\n', at + 1))
        lineStarts.push_back(all.data() + at + 1);
    checkMark();
    checkTail();
    if (kind.shape == Shape::Lines)
        checkLines();
    else if (kind.shape == Shape::Stream)
        checkStream();
    else if (kind.shape == Shape::Devices)
        checkDevices();
    else
        checkIndex();
    reportNoted();
    std::stable_sort(findings.begin(), findings.end(), [](const Finding& a, const Finding& b) {
        return a.line != b.line ? a.line < b.line : a.column < b.column;
    });
    return std::move(findings);
}

/* Takes a byte order mark off, so that its consequences are not reported as well. */
void Checker::checkMark()
{
    const std::string_view plain = withoutMark(all);
    if (plain.size() == all.size())
        return;
    const Layout& head = kind.head;
    const bool mac = kind.shape != Shape::Devices && head.columns[0].field->type == Type::Mac;
    const char* const effect =
        mac ? "it is read as part of the MAC, whose last 3 characters become the next field, and all that follow shift"
        : kind.readByLine ? "this field and those after it keep what the array held"
                          : "no number is read until a MAC consumes the mark";
    report(Rule::ByteOrderMark, all.data(), kind.shape == Shape::Devices ? "count" : head.columns[0].name,
           fmt::format("a UTF-8 byte order mark, expected none: {}", effect));
    all = plain;
}

void Checker::reportNoted()
{
    if (tabs.lines != 0)
        report(Rule::Tab, tabs.first, "",
               fmt::format("byte 0x{:02x} between fields, expected blanks; the readers skip it (in {})",
                           static_cast<unsigned char>(*tabs.first), plural(tabs.lines, "line")));
    if (indents.lines != 0)
        report(Rule::LeadingBlanks, indents.first, "",
               fmt::format("blanks before the first field, expected none; the readers skip them (in {})",
                           plural(indents.lines, "line")));
}

/* Takes a tail of NUL bytes off, so that it is one finding and not one per line. */
void Checker::checkTail()
{
    const size_t last = all.find_last_not_of('\0');
    const size_t keep = last == std::string_view::npos ? 0 : last + 1;
    if (all.empty()) {
        report(Rule::EmptyFile, all.data(), "", "no records");
    } else if (keep < all.size()) {
        report(Rule::ZeroedTail, all.data() + keep, "",
               plural(all.size() - keep, "NUL byte") + " up to the end of the file, expected text");
        all = all.substr(0, keep);
    }
}

/* ---- Lines -------------------------------------------------------------- */

/* False for a line that holds no fields. */
bool Checker::checkText(const Line& line)
{
    checkCharacters(line);
    checkReturns(line);
    const bool bySlices = kind.shape == Shape::Lines || kind.shape == Shape::Index;
    if (bySlices && line.text.size() >= slice)
        report(Rule::LineTooLong, line.text.data() + slice - 1, "",
               fmt::format("{} characters, expected at most {}: what follows counts as another record",
                           line.text.size(), slice - 1));
    if (!isBlank(line.text))
        return true;
    checkBlank(line);
    return false;
}

void Checker::checkCharacters(const Line& line)
{
    size_t nuls = 0;
    const char* firstNul = nullptr;
    const char* strange = nullptr;
    const char* tab = nullptr;
    for (const char& c : line.text) {
        if (c == '\0' && nuls++ == 0)
            firstNul = &c;
        const bool text = (c > ' ' && c <= '~') || isSpace(c) || c == '\0';
        if (!text && strange == nullptr)
            strange = &c;
        if (isSpace(c) && c != ' ' && c != '\r' && tab == nullptr)
            tab = &c;
    }
    if (nuls != 0)
        report(Rule::NulByte, firstNul, "",
               plural(nuls, "NUL byte") +
                   " amid the text, expected none: a line reader takes the line to end here");
    if (strange != nullptr)
        report(Rule::NonText, strange, "",
               fmt::format("byte 0x{:02x}, expected text", static_cast<unsigned char>(*strange)));
    if (tab != nullptr)
        tabs.note(tab);
}

/* Before the line's LF a carriage return is part of the line's end; elsewhere it ends no line. */
void Checker::checkReturns(const Line& line)
{
    loneReturns = 0;
    const char* first = nullptr;
    const char* const last = line.text.data() + line.text.size() - 1;
    for (const char& c : line.text)
        if (c == '\r' && (&c != last || !line.ended) && loneReturns++ == 0)
            first = &c;
    if (loneReturns != 0)
        report(Rule::LoneReturn, first, "",
               plural(loneReturns, "carriage return") +
                   " without a line feed, expected LF: to the readers the line goes on");
    if (!returnSeen && line.ended && !line.text.empty() && *last == '\r') {
        returnSeen = true;
        report(Rule::CarriageReturn, last, "", "the line ends in CR LF, expected LF; the readers skip it");
    }
}

void Checker::checkBlank(const Line& line)
{
    if (!kind.blankLineBreaks)
        report(Rule::BlankLine, line.text.data(), "",
               fmt::format("a blank line, expected none; {}", kind.blankLine));
    else
        report(Rule::BlankLine, line.text.data(), "",
               fmt::format("a blank line, expected a record: {}", kind.blankLine));
}

/* Fields into columns; reports and gives false where they do not fill them. */
bool Checker::layCells(const Layout& layout, const Line& line, Cells& cells)
{
    const size_t columns = layout.columns.size();
    found = split(line.text, tokens, columns + 1);
    if (found == columns) {
        cells = tokens;
        checkIndent(*layout.columns[0].field, line);
        return true;
    }
    if (found < columns && layAroundEmptyMacs(layout, line, cells))
        return true;
    if (loneReturns == 0)
        reportCount(layout, line);
    return false;
}

/* A writer prints blanks only where the first field is shorter than its width. */
void Checker::checkIndent(const Field& first, const Line& line)
{
    const size_t width = static_cast<size_t>(first.widthOut);
    const size_t printed = width > tokens[0].size() ? width - tokens[0].size() : 0;
    if (static_cast<size_t>(tokens[0].data() - line.text.data()) > printed)
        indents.note(line.text.data());
}

/* Where MACs are empty their blanks still show where they should stand. */
bool Checker::layAroundEmptyMacs(const Layout& layout, const Line& line, Cells& cells)
{
    std::vector<size_t> empty;
    cells.assign(layout.columns.size(), Token());
    size_t token = 0;
    const char* gap = line.text.data();
    for (size_t column = 0; column < layout.columns.size(); ++column) {
        const char* const next = token < found ? tokens[token].data() : line.text.data() + line.text.size();
        const bool mac = layout.columns[column].field->type == Type::Mac;
        if (mac && static_cast<size_t>(next - gap) >= emptyMac + (column == 0 ? 0 : 1)) {
            gap += emptyMac + (column == 0 ? 0 : 1);
            empty.push_back(column);
        } else if (token < found) {
            cells[column] = tokens[token++];
            gap = cells[column].data() + cells[column].size();
        }
    }
    if (empty.empty() || found + empty.size() != layout.columns.size())
        return false;
    for (const size_t column : empty) {
        const Column& next = layout.columns[std::min(column + 1, layout.columns.size() - 1)];
        const char* at = column == 0 ? line.text.data() : cells[column - 1].data() + cells[column - 1].size();
        if (column != 0 && !present(cells[column - 1]))
            at = line.text.data();
        report(
            Rule::MacEmpty, at, layout.columns[column].name,
            fmt::format(
                "12 blanks, expected 12 hexadecimal digits: they are skipped, {} is read in their place and "
                "all that follow shift",
                next.name));
    }
    return true;
}

void Checker::reportCount(const Layout& layout, const Line& line)
{
    const size_t columns = layout.columns.size();
    const bool few = found < columns;
    const bool torn = few && !line.ended;
    std::string effect;
    if (torn)
        effect = fmt::format("{} and what follows are not there", layout.columns[found].name);
    else if (few && kind.readByLine)
        effect = fmt::format("{} and what follows keep what the array held", layout.columns[found].name);
    else if (few)
        effect = fmt::format("{} and what follows are taken from the next line", layout.columns[found].name);
    else if (kind.readByLine)
        effect = fmt::format("what follows {} is ignored", layout.columns.back().name);
    else
        effect = fmt::format("what follows {} begins the next record", layout.columns.back().name);
    const char* at = few ? line.text.data() + line.text.size() : tokens[columns].data();
    report(torn ? Rule::TornRecord : Rule::FieldCount, at, few ? layout.columns[found].name : "",
           fmt::format("{}{}, expected {}: {}", torn ? "the file ends here after " : "",
                       plural(found, "field"), columns, effect));
}

void Checker::checkEnd(const Line& line, bool whole)
{
    if (!line.ended && whole && !line.text.empty())
        report(Rule::NoFinalNewline, line.text.data() + line.text.size(), "",
               "the file ends without a newline, expected one: its last value may be cut short");
}

/* ---- Fields ------------------------------------------------------------- */

void Checker::checkCells(const Layout& layout, const Cells& cells)
{
    for (size_t column = 0; column < cells.size(); ++column) {
        if (!present(cells[column]))
            continue;
        const Type type = layout.columns[column].field->type;
        if (type == Type::Mac)
            checkMac(layout, column, cells[column]);
        else if (type == Type::F32)
            checkFloat(layout.columns[column], cells[column]);
        else
            checkNumber(layout, column, cells[column]);
    }
}

void Checker::checkMac(const Layout& layout, size_t column, Token value)
{
    const std::string& name = layout.columns[column].name;
    if (value.size() > 12) {
        const std::string next =
            column + 1 < layout.columns.size() ? layout.columns[column + 1].name : "what follows";
        report(Rule::MacLong, value.data(), name,
               fmt::format(
                   "{} has {} characters, expected 12: it reads as {}, {} as {}, and all that follow shift",
                   inQuotes(value), value.size(), inQuotes(value.substr(0, 12)), next,
                   inQuotes(value.substr(12))));
        return;
    }
    const auto* const wrong = std::find_if_not(value.begin(), value.end(), isHexDigit);
    if (wrong != value.end())
        report(Rule::MacNotHex, value.data() + (wrong - value.begin()), name,
               fmt::format("{} in {}, expected 12 hexadecimal digits",
                           inQuotes(value.substr(static_cast<size_t>(wrong - value.begin()), 1)),
                           inQuotes(value)));
    if (value.size() < 12)
        report(Rule::MacShort, value.data(), name,
               fmt::format("{} has {}, expected 12 hexadecimal digits", inQuotes(value),
                           plural(value.size(), "character")));
}

/* True where the number is split on reading. */
bool Checker::checkWidth(const Layout& layout, size_t column, Token value)
{
    const Column& of = layout.columns[column];
    const size_t width = static_cast<size_t>(of.field->widthIn);
    if (width == 0 || value.size() <= width)
        return false;
    const Token rest = value.substr(width);
    std::string effect = fmt::format("it reads as {}, and {} is not read", value.substr(0, width), rest);
    if (column + 1 < layout.columns.size()) {
        const Column& next = layout.columns[column + 1];
        const size_t nextWidth =
            next.field->widthIn == 0 ? rest.size() : static_cast<size_t>(next.field->widthIn);
        effect = fmt::format("it reads as {}, {} as {}, and all that follow shift", value.substr(0, width),
                             next.name, rest.substr(0, nextWidth));
    }
    report(Rule::TooWide, value.data(), of.name,
           fmt::format("{} has {} characters, expected at most {}: {}", inQuotes(value), value.size(), width,
                       effect));
    return true;
}

void Checker::checkNumber(const Layout& layout, size_t column, Token value)
{
    const Column& of = layout.columns[column];
    const std::optional<Number> number = wholeNumber(value);
    if (!number) {
        const size_t digits = std::min(value.find_first_not_of("0123456789"), value.size());
        const std::string start =
            digits == 0 ? "it"
                        : fmt::format("it reads as {}, and {}", value.substr(0, digits),
                                      column + 1 < layout.columns.size() ? layout.columns[column + 1].name
                                                                         : "what follows");
        report(Rule::NotANumber, value.data() + digits, of.name,
               fmt::format("{}, expected a number: {} and the numbers behind {}", inQuotes(value), start,
                           kind.readByLine ? "keep what the array held"
                                           : "read nothing until a MAC takes the text"));
        return;
    }
    if (checkWidth(layout, column, value))
        return;
    if (inRange(*of.field, *number)) {
        checkForm(of.name, value, number->negative);
        checkMeaning(of, value, number->magnitude);
        return;
    }
    report(Rule::OutOfRange, value.data(), of.name,
           fmt::format("{} does not fit, expected 0 to {}: it reads as {}{}", inQuotes(value),
                       typeMax(of.field->type), readsAs(*of.field, *number),
                       trustText(of, readsAs(*of.field, *number))));
}

/* A number that reads as it stands, but not as a writer would print it. */
void Checker::checkForm(const std::string& name, Token value, bool minusZero)
{
    const bool sign = value[0] == '+' || value[0] == '-';
    const Token digits = value.substr(sign ? 1 : 0);
    if (value[0] == '+' || minusZero)
        report(Rule::Sign, value.data(), name,
               fmt::format("{}, expected no sign: it reads as {}", inQuotes(value), digits));
    if (digits.size() > 1 && digits[0] == '0' && isDigit(digits[1]))
        report(Rule::LeadingZeros, digits.data(), name,
               fmt::format("{}, expected no leading zeros: the readers skip them", inQuotes(value)));
}

/* What a count over the room means to a host that goes by it; empty for other fields. */
std::string Checker::trustText(const Column& column, uint64_t number) const
{
    const size_t room = kind.entries.capacity;
    if (kind.shape != Shape::Index || column.name != kind.entries.countName || number <= room)
        return "";
    return fmt::format(
        "; the reader hands it out unbounded, and a host that trusts it reads {} after the {} that "
        "there is room for",
        plural(number - room, "entry"), room);
}

void Checker::checkFloat(const Column& column, Token value)
{
    const std::optional<float> number = wholeFloat(value);
    if (number && std::isfinite(*number))
        checkForm(column.name, value, false);
    else
        report(Rule::NotANumber, value.data(), column.name,
               fmt::format("{}, expected a number with two decimals", inQuotes(value)));
}

std::string limitText(const Field& field)
{
    return fmt::format("expected 0 to {}", field.limit);
}

/* "expected 0, 1 or 2" */
std::string valuesText(const Field& field)
{
    std::string text = "expected ";
    for (size_t i = 0; i < field.values.size(); ++i)
        text += (i == 0                        ? ""
                 : i + 1 < field.values.size() ? ", "
                                               : " or ") +
                std::to_string(field.values[i].value);
    return text;
}

/* Values that a reader bounds: what it cuts is lost, what it raises is usual. */
void Checker::checkLoaded(const Column& column, Token value, uint64_t number)
{
    const Load load = column.field->load;
    const uint64_t loaded = loadedValue(*column.field, number);
    const bool rate = load == Load::Rate || load == Load::PlcRate;
    const bool cut = (rate || load == Load::Delay) && number > loaded;
    const bool raised = (load == Load::Utilization && number >= 95) ||
                        (load == Load::Rssi && loaded == 1 && number < 4) ||
                        (load == Load::Delay && number < loaded);
    if (cut || raised)
        report(cut ? Rule::Clamped : Rule::LoadsAsOne, value.data(), column.name,
               fmt::format("{} is loaded as {}; the reader's rule: {}", number, loaded, loadText(load)));
}

/* The value is a number of its type; now whether it makes sense. */
void Checker::checkMeaning(const Column& column, Token value, uint64_t number)
{
    const Field& field = *column.field;
    if (field.limit != 0 && number > field.limit)
        report(ruleOf(field), value.data(), column.name,
               fmt::format("{}, {}{}", number, limitText(field), trustText(column, number)));
    checkLoaded(column, value, number);
    const auto isNumber = [number](const formats::NamedValue& named) { return named.value == number; };
    if (field.values.size() != 0 && field.limit == 0 &&
        std::none_of(field.values.begin(), field.values.end(), isNumber))
        report(ruleOf(field), value.data(), column.name, fmt::format("{}, {}", number, valuesText(field)));
}

/* ---- Records ------------------------------------------------------------ */

void Checker::checkKey(const Layout& layout, const Cells& cells, size_t line, Keys& keys, bool unique)
{
    const char* at = nullptr;
    for (const size_t column : layout.key) {
        if (!present(cells[column]))
            continue;
        at = at == nullptr ? cells[column].data() : at;
        const Keys::Spelling other = layout.columns[column].field->type == Type::Mac
                                         ? keys.otherSpelling(column, cells[column], line)
                                         : Keys::Spelling();
        if (other.line != 0)
            report(Rule::KeyCase, cells[column].data(), layout.columns[column].name,
                   fmt::format(
                       "{} is {} of line {} in another letter case, expected one spelling: they count as two "
                       "devices",
                       inQuotes(cells[column]), inQuotes(other.text), other.line));
    }
    const size_t same = unique && at != nullptr ? keys.sameAs(keyValues(layout, cells), line) : 0;
    if (same != 0)
        report(
            Rule::DuplicateKey, at, keyNames(layout, "+"),
            fmt::format("the same key as in line {}, expected it once: updates reach the first only", same));
}

void Checker::checkPosition(const Cells& cells)
{
    const Column& first = kind.head.columns[0];
    if (!first.field->position || positionSeen || !present(cells[0]))
        return;
    const std::optional<Number> number = wholeNumber(cells[0]);
    if (!number || number->magnitude == records)
        return;
    positionSeen = true;
    report(Rule::Position, cells[0].data(), first.name,
           fmt::format("{}, expected {}: lines were lost, moved or added; the next write numbers anew",
                       inQuotes(cells[0]), records));
}

/* `at`: where the first record stands that is too many. */
void Checker::checkCap(size_t count, const char* at)
{
    if (kind.cap == 0 || count != static_cast<size_t>(kind.cap) + 1 || kind.hasEntries())
        return;
    if (kind.cap == 1)
        report(Rule::ExtraLines, at, "", "a second line, expected one: it is never read");
    else
        report(Rule::OverCap, at, "",
               fmt::format("record {}, expected at most {}: {}", count, kind.cap, kind.capText));
}

/* ---- Shapes ------------------------------------------------------------- */

void Checker::checkLines()
{
    Lines lines(all);
    Line line;
    Keys keys;
    Cells cells;
    while (lines.next(line)) {
        /* Blank lines behind the only line that is read do no harm. */
        if (kind.cap == 1 && records > 0 && isBlank(line.text))
            continue;
        if (!checkText(line))
            continue;
        const bool whole = layCells(kind.head, line, cells);
        if (whole) {
            checkCells(kind.head, cells);
            checkPosition(cells);
            checkKey(kind.head, cells, line.number, keys, kind.unique);
        }
        checkCap(++records, line.text.data());
        checkEnd(line, whole || found > kind.head.columns.size());
    }
}

void Checker::checkStream()
{
    Lines lines(all);
    Line line;
    while (lines.next(line))
        checkText(line);
    RecordReader reader(kind, all);
    Record record;
    Keys keys;
    while (reader.next(record)) {
        const size_t columns = record.cells.size();
        const size_t have =
            static_cast<size_t>(std::count_if(record.cells.begin(), record.cells.end(), present));
        const char* const end = record.cells[have - 1].data() + record.cells[have - 1].size();
        const bool last = isBlank(all.substr(static_cast<size_t>(end - all.data())));
        checkCells(kind.head, record.cells);
        if (have != columns)
            report(last ? Rule::TornRecord : Rule::FieldCount, end, kind.head.columns[have].name,
                   fmt::format("{}{}, expected {}: {}", last ? "the file ends here after " : "",
                               plural(have, "field"), columns,
                               last ? "the rest keeps what the array held" : "all that follow shift"));
        checkKey(kind.head, record.cells, record.line, keys, kind.unique);
    }
    checkEnd(line, true);
}

/* The first line of a Devices file; true when it was one, and used up. */
bool Checker::checkCountLine(Lines& lines, Line& line)
{
    const Field& count = kind.preamble.fields[0];
    for (;;) {
        if (!lines.next(line))
            return true;
        if (checkText(line))
            break;
    }
    found = split(line.text, tokens, 8);
    const std::optional<Number> number = found == 1 ? wholeNumber(tokens[0]) : std::nullopt;
    if (!number) {
        report(Rule::PatCount, line.text.data(), "",
               "no count line, expected the number of devices alone on the first line");
        return found == 1 && !isMacLike(tokens[0]);
    }
    statedAt = tokens[0].data();
    stated = readsAs(count, *number);
    if (inRange(count, *number))
        checkForm("count", tokens[0], number->negative);
    else
        report(
            Rule::OutOfRange, statedAt, "count",
            fmt::format("{} does not fit, expected 0 to 255: it reads as {}", inQuotes(tokens[0]), *stated));
    checkIndent(count, line);
    checkEnd(line, true);
    return true;
}

void Checker::checkEntryCount(const Cells& head, size_t entries, Rule rule, const char* effect)
{
    for (size_t column = 0; column < head.size(); ++column) {
        const Column& of = kind.head.columns[column];
        const std::optional<Number> number = of.name == kind.entries.countName && present(head[column])
                                                 ? wholeNumber(head[column])
                                                 : std::nullopt;
        if (number && (number->negative || number->magnitude != entries))
            report(rule, head[column].data(), of.name,
                   fmt::format("{} is said, expected {}: {} follow{}; {}", inQuotes(head[column]), entries,
                               plural(entries, "entry"), entries == 1 ? "s" : "", effect));
    }
}

void Checker::checkDevices()
{
    constexpr const char* shift = "from there on every value is read from the wrong place";
    Lines lines(all);
    Line line;
    Keys keys;
    Keys entryKeys;
    Cells head;
    Cells cells;
    size_t entries = 0;
    bool pending = !checkCountLine(lines, line);
    bool orphan = false;
    while (pending || lines.next(line)) {
        if (!pending && !checkText(line))
            continue;
        pending = false;
        found = split(line.text, tokens, 8);
        const bool device = beginsDevice(tokens, found);
        const bool whole = layCells(device ? kind.head : kind.entry, line, cells);
        if (whole)
            checkCells(device ? kind.head : kind.entry, cells);
        checkEnd(line, whole);
        if (device) {
            checkEntryCount(head, entries, Rule::PatEntries, shift);
            head = whole ? cells : Cells();
            entries = 0;
            entryKeys = Keys();
            ++records;
            if (whole)
                checkKey(kind.head, cells, line.number, keys, kind.unique);
            continue;
        }
        ++entries;
        if (records == 0 && !orphan)
            report(Rule::PatEntries, line.text.data(), "",
                   "an entry before the first device, expected a device line");
        orphan = records == 0;
        if (whole)
            checkKey(kind.entry, cells, line.number, entryKeys, true);
    }
    checkEntryCount(head, entries, Rule::PatEntries, shift);
    checkDeviceCount();
}

void Checker::checkDeviceCount()
{
    if (stated && *stated != records)
        report(Rule::PatCount, statedAt, "count",
               fmt::format("{} stated, expected {}: {}", plural(*stated, "device"), records,
                           *stated < records ? "the last are not read"
                                             : "the missing ones are handed out as the array held them"));
}

void Checker::checkIndex()
{
    Lines lines(all);
    Line line;
    Keys keys;
    Cells head;
    Cells cells;
    size_t entries = 0;
    const char* extra = nullptr;
    for (bool first = true; lines.next(line);) {
        if (!checkText(line))
            continue;
        const Layout& layout = first ? kind.head : kind.entry;
        const bool whole = layCells(layout, line, cells);
        checkEnd(line, whole);
        if (whole)
            checkCells(layout, cells);
        if (first) {
            head = whole ? cells : Cells();
            first = false;
            continue;
        }
        if (++entries == kind.entries.capacity + 1)
            extra = line.text.data();
        if (whole)
            checkKey(kind.entry, cells, line.number, keys, true);
    }
    if (extra != nullptr)
        report(Rule::IndexTooMany, extra, "",
               fmt::format("{} entry lines, expected at most {}: the reader refuses the file", entries,
                           kind.entries.capacity));
    checkEntryCount(head, entries, Rule::IndexCount, "the reader takes all lines but reports what is said");
}

} // namespace

std::vector<Finding> findFaults(const Kind& kind, std::string_view bytes)
{
    return Checker(kind, bytes).run();
}

} // namespace algdata
