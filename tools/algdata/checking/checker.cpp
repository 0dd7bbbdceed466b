/* SPDX-License-Identifier: Apache-2.0 */
/* Finds the faults of a file that the readers accept without a message. */
#include <algorithm>
#include <array>
#include <unordered_map>
#include <unordered_set>

#include <fmt/format.h>

#include "checking/rules.h"
#include "reading/disguise.h"
#include "records/keys.h"
#include "records/records.h"
#include "text/hash.h"
#include "text/wording.h"

namespace algdata
{

namespace
{

/* A writer prints an empty MAC as this many blanks. */
constexpr size_t emptyMacWidth = 12;

/* The module counts and reads lines through a buffer of this many characters, including the newline. */
constexpr size_t lineBufferLength = 1023;

/* ---- Keys --------------------------------------------------------------- */

/*
 * The keys of the lines so far, for finding keys that repeat or differ only in letter case.
 * Hashes and places in the file stand for the texts, so that a large file needs little memory.
 */
class Keys
{
  public:
    /* Adds a key. Returns the line of the same key, or 0 if the key is new. */
    size_t addKey(const std::string& key, size_t line)
    {
        const auto [at, added] = lines.try_emplace(hashOf(key), line);
        return added ? 0 : at->second;
    }

    /*
     * Adds a MAC of a column. Returns the place of its first spelling if this spelling is new and
     * differs from it in letter case only; otherwise null.
     */
    const char* addMac(size_t column, Token mac)
    {
        const std::string folded = lowered(mac);
        const auto [at, added] = macs.try_emplace(hashOf(folded).low + column, mac);
        const Token first = at->second;
        if (added || first == mac || lowered(first) != folded)
            return nullptr;
        const bool isNew = otherSpellings.insert(std::to_string(column) + " " + std::string(mac)).second;
        return isNew ? first.data() : nullptr;
    }

  private:
    struct LowHalf {
        size_t operator()(const Hash& hash) const { return static_cast<size_t>(hash.low); }
    };

    std::unordered_map<Hash, size_t, LowHalf> lines;
    std::unordered_map<uint64_t, Token> macs;
    std::unordered_set<std::string> otherSpellings;
};

/* ---- The checker -------------------------------------------------------- */

class Checker
{
  public:
    Checker(const Kind& checkedKind, std::string_view bytes) : kind(checkedKind), all(bytes) {}
    Faults run();

  private:
    using Cells = std::vector<Token>;

    void report(Rule rule, const char* at, std::string field, std::string text);
    size_t lineOf(const char* at) const;
    void checkMark();
    void checkTail();
    void reportRepeated();
    void checkEnd(const Line& line, bool whole);

    /* One line */
    bool checkText(const Line& line);
    void checkCharacters(const Line& line);
    void checkReturns(const Line& line);
    void checkIndent(const Field& first, const Line& line);
    void checkBlank(const Line& line);
    bool fillCells(const Layout& layout, const Line& line, Cells& cells);
    bool fillAroundEmptyMacs(const Layout& layout, const Line& line, Cells& cells);
    void reportCount(const Layout& layout, const Line& line);

    /* One field */
    void checkCells(const Layout& layout, const Cells& cells);
    void checkMac(const Layout& layout, size_t column, Token value);
    void checkNumber(const Layout& layout, size_t column, Token value);
    void checkFloat(const Column& column, Token value);
    void checkForm(const std::string& name, Token value, bool minusZero);
    std::string overrunText(const Column& column, uint64_t number) const;
    void checkMeaning(const Column& column, Token value, uint64_t number);
    void checkLoaded(const Column& column, Token value, uint64_t number);
    bool checkWidth(const Layout& layout, size_t column, Token value);

    /* One record, compared with the others */
    void checkKey(const Layout& layout, const Cells& cells, size_t line, Keys& keys, bool unique);
    void checkPosition(const Cells& cells);
    void checkCap(size_t count, const char* at);

    /* One file, by its shape */
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
    Faults faults = {};
    std::vector<Token> tokens; /* fields of the current line, at most one more than expected */
    size_t found = 0;          /* fields of the current line, all of them */
    size_t records = 0;
    /* A fault that is reported once for all its lines. */
    struct Repeated {
        const char* first = nullptr;
        size_t lines = 0;

        void add(const char* at)
        {
            if (lines++ == 0)
                first = at;
        }
    };
    Repeated tabs;
    Repeated indents;
    size_t loneReturns = 0; /* of the current line */
    bool returnSeen = false;
    bool positionSeen = false;
    std::optional<uint64_t> stated; /* number of devices in the count line */
    const char* statedAt = nullptr;
};

/* From 1; 0 if the place is not in a line. */
size_t Checker::lineOf(const char* at) const
{
    const auto next = std::upper_bound(lineStarts.begin(), lineStarts.end(), at);
    return static_cast<size_t>(next - lineStarts.begin());
}

void Checker::report(Rule rule, const char* at, std::string field, std::string text)
{
    if (++faults[rule] > maxFindings)
        return;
    const size_t line = lineOf(at);
    const size_t column = line == 0 ? 0 : static_cast<size_t>(at - lineStarts[line - 1]);
    faults.kept.push_back({std::max<size_t>(line, 1), column + 1, rule, std::move(field), std::move(text)});
}

Faults Checker::run()
{
    lineStarts.reserve(static_cast<size_t>(std::count(all.begin(), all.end(), '\n')) + 1);
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
    reportRepeated();
    std::stable_sort(faults.kept.begin(), faults.kept.end(), [](const Finding& a, const Finding& b) {
        return a.line != b.line ? a.line < b.line : a.column < b.column;
    });
    return std::move(faults);
}

/* Reports a byte order mark and removes it, so that its consequences are not reported too. */
void Checker::checkMark()
{
    const std::string_view plain = withoutMark(all);
    if (plain.size() == all.size())
        return;
    const Layout& head = kind.head;
    const bool mac = kind.shape != Shape::Devices && head.columns[0].field->type == Type::Mac;
    const char* const effect =
        mac ? "it is read as part of the MAC, whose last 3 characters become the next field, and all later fields shift"
        : kind.readByLine ? "this field and all later fields keep the array's old values"
                          : "no number is read until a MAC field consumes the mark";
    report(Rule::ByteOrderMark, all.data(), kind.shape == Shape::Devices ? "count" : head.columns[0].name,
           fmt::format("a UTF-8 byte order mark, expected none: {}", effect));
    all = plain;
}

void Checker::reportRepeated()
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

/* Reports NUL bytes at the end of the file and removes them, so that they are one finding only. */
void Checker::checkTail()
{
    const size_t last = all.find_last_not_of('\0');
    const size_t keep = last == std::string_view::npos ? 0 : last + 1;
    if (all.empty()) {
        report(Rule::EmptyFile, all.data(), "", "no records");
    } else if (keep < all.size()) {
        report(Rule::ZeroedTail, all.data() + keep, "",
               plural(all.size() - keep, "NUL byte") + " at the end of the file, expected text");
        all = all.substr(0, keep);
    }
}

/* ---- Lines -------------------------------------------------------------- */

/* Returns false for a blank line. */
bool Checker::checkText(const Line& line)
{
    checkCharacters(line);
    checkReturns(line);
    const bool throughBuffer = kind.shape == Shape::Lines || kind.shape == Shape::Index;
    if (throughBuffer && line.text.size() >= lineBufferLength)
        report(Rule::LineTooLong, line.text.data() + lineBufferLength - 1, "",
               fmt::format("{} characters, expected at most {}: the rest counts as another record",
                           line.text.size(), lineBufferLength - 1));
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
                   " in the text, expected none: for a reader that parses lines the line ends here");
    if (strange != nullptr)
        report(Rule::NonText, strange, "",
               fmt::format("byte 0x{:02x}, expected text", static_cast<unsigned char>(*strange)));
    if (tab != nullptr)
        tabs.add(tab);
}

/* A carriage return before LF belongs to the line end. Anywhere else it ends no line for the readers. */
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
                   " without a line feed, expected LF: for the readers the line continues");
    if (!returnSeen && line.ended && !line.text.empty() && *last == '\r') {
        returnSeen = true;
        report(Rule::CarriageReturn, last, "",
               "the line ends in CR LF, expected LF; the readers skip the CR");
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

/*
 * Assigns the fields of a line to the columns of the layout. If their number is wrong, reports it and
 * returns false.
 */
bool Checker::fillCells(const Layout& layout, const Line& line, Cells& cells)
{
    const size_t columns = layout.columns.size();
    found = split(line.text, tokens, columns + 1);
    if (found == columns) {
        cells = tokens;
        checkIndent(*layout.columns[0].field, line);
        return true;
    }
    if (found < columns && fillAroundEmptyMacs(layout, line, cells))
        return true;
    if (loneReturns == 0)
        reportCount(layout, line);
    return false;
}

/* A writer begins a line with blanks only if the first field is shorter than its width. */
void Checker::checkIndent(const Field& first, const Line& line)
{
    const size_t width = static_cast<size_t>(first.widthOut);
    const size_t printed = width > tokens[0].size() ? width - tokens[0].size() : 0;
    if (static_cast<size_t>(tokens[0].data() - line.text.data()) > printed)
        indents.add(line.text.data());
}

/*
 * Assigns the fields of a line that has empty MACs, if their blanks explain all missing fields. An
 * empty MAC is emptyMacWidth blanks, after the blank that separates it from the field before.
 */
bool Checker::fillAroundEmptyMacs(const Layout& layout, const Line& line, Cells& cells)
{
    std::vector<size_t> empty;
    cells.assign(layout.columns.size(), Token());
    size_t token = 0;
    const char* gap = line.text.data();
    for (size_t column = 0; column < layout.columns.size(); ++column) {
        const char* const next = token < found ? tokens[token].data() : line.text.data() + line.text.size();
        const bool mac = layout.columns[column].field->type == Type::Mac;
        const size_t width = emptyMacWidth + (column == 0 ? 0 : 1);
        if (mac && static_cast<size_t>(next - gap) >= width) {
            gap += width;
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
                "12 blanks, expected 12 hexadecimal digits: the reader skips them, {} is read in their place "
                "and all later fields shift",
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
        effect = fmt::format("{} and all later fields are missing", layout.columns[found].name);
    else if (few && kind.readByLine)
        effect =
            fmt::format("{} and all later fields keep the array's old values", layout.columns[found].name);
    else if (few)
        effect =
            fmt::format("{} and all later fields are read from the next line", layout.columns[found].name);
    else if (kind.readByLine)
        effect = fmt::format("the text after {} is ignored", layout.columns.back().name);
    else
        effect = fmt::format("the text after {} is read as the next record", layout.columns.back().name);
    const char* at = few ? line.text.data() + line.text.size() : tokens[columns].data();
    report(torn ? Rule::TornRecord : Rule::FieldCount, at, few ? layout.columns[found].name : "",
           fmt::format("{}{}, expected {}: {}", torn ? "the file ends here after " : "",
                       plural(found, "field"), columns, effect));
}

void Checker::checkEnd(const Line& line, bool whole)
{
    if (!line.ended && whole && !line.text.empty())
        report(Rule::NoFinalNewline, line.text.data() + line.text.size(), "",
               "the file ends without a newline, expected one: the last value may be incomplete");
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
            column + 1 < layout.columns.size() ? layout.columns[column + 1].name : "the next field";
        report(Rule::MacLong, value.data(), name,
               fmt::format(
                   "{} has {} characters, expected 12: it reads as {}, {} as {}, and all later fields shift",
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

/* Reports a number that is longer than the reader's width, which splits it. Returns true then. */
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
        effect = fmt::format("it reads as {}, {} as {}, and all later fields shift", value.substr(0, width),
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
                                                                         : "the next field");
        report(Rule::NotANumber, value.data() + digits, of.name,
               fmt::format("{}, expected a number: {} and all later numbers {}", inQuotes(value), start,
                           kind.readByLine ? "keep the array's old values"
                                           : "are not read until a MAC field consumes the text"));
        return;
    }
    if (checkWidth(layout, column, value))
        return;
    if (inRange(*of.field, *number)) {
        checkForm(of.name, value, number->negative && number->magnitude == 0);
        checkMeaning(of, value, readsAs(*of.field, *number));
        return;
    }
    report(Rule::OutOfRange, value.data(), of.name,
           fmt::format("{} does not fit, expected 0 to {}: it reads as {}{}", inQuotes(value),
                       typeMax(of.field->type), readsAs(*of.field, *number),
                       overrunText(of, readsAs(*of.field, *number))));
}

/* Reports a number that the readers accept, but that no writer prints in this form. */
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

/* The risk of a count that exceeds the array's capacity, for a host that relies on it. Otherwise empty. */
std::string Checker::overrunText(const Column& column, uint64_t number) const
{
    const size_t capacity = kind.entries.capacity;
    if (kind.shape != Shape::Index || column.name != kind.entries.countName || number <= capacity)
        return "";
    return fmt::format(
        "; the reader does not bound it, and a host that relies on it reads {} after the {} of the array",
        plural(number - capacity, "entry"), capacity);
}

void Checker::checkFloat(const Column& column, Token value)
{
    if (numberIn(*column.field, value))
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

/* Values that a reader bounds. A value above the bound is lost; a value that is raised to 1 is common. */
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
        report(
            cut ? Rule::Clamped : Rule::LoadsAsOne, value.data(), column.name,
            fmt::format("{} is loaded as {}; the reader's conversion: {}", number, loaded, loadText(load)));
}

/* Checks whether a number that fits its type has a meaning. */
void Checker::checkMeaning(const Column& column, Token value, uint64_t number)
{
    const Field& field = *column.field;
    if (field.limit != 0 && number > field.limit)
        report(ruleOf(field), value.data(), column.name,
               fmt::format("{}, {}{}", number, limitText(field), overrunText(column, number)));
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
        if (layout.columns[column].field->type != Type::Mac)
            continue;
        const Token mac = cells[column];
        if (const char* first = keys.addMac(column, mac))
            report(Rule::KeyCase, mac.data(), layout.columns[column].name,
                   fmt::format(
                       "{} and {} in line {} differ in letter case, expected one spelling: they count as two "
                       "devices",
                       inQuotes(mac), inQuotes(Token(first, mac.size())), lineOf(first)));
    }
    const size_t same = unique && at != nullptr ? keys.addKey(keyValues(layout, cells), line) : 0;
    if (same != 0)
        report(
            Rule::DuplicateKey, at, keyNames(layout, "+"),
            fmt::format("the same key as in line {}, expected each key once: updates change only the first",
                        same));
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
           fmt::format("{}, expected {}: lines were lost, moved or added; the next write renumbers them",
                       inQuotes(cells[0]), records));
}

/* Reports the first record above the cap. `at` is where it begins. */
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
        /* Blank lines after the only line that is read do no harm. */
        if (kind.cap == 1 && records > 0 && isBlank(line.text))
            continue;
        if (!checkText(line))
            continue;
        const bool whole = fillCells(kind.head, line, cells);
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
                               last ? "the missing fields keep the array's old values"
                                    : "all later fields shift"));
        checkKey(kind.head, record.cells, record.line, keys, kind.unique);
    }
    checkEnd(line, true);
}

/*
 * Checks the count line of a Devices file, its first line. Returns false if that line is not a count
 * line but already a device or an entry, which the caller has to check.
 */
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
                   fmt::format("{}, expected {}: {} follow{}; {}", inQuotes(head[column]), entries,
                               plural(entries, "entry"), entries == 1 ? "s" : "", effect));
    }
}

void Checker::checkDevices()
{
    constexpr const char* shift = "all later values are read from the wrong place";
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
        const bool whole = fillCells(device ? kind.head : kind.entry, line, cells);
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
               fmt::format("{}, expected {}: {}", plural(*stated, "device"), records,
                           *stated < records ? "the last ones are not read"
                                             : "the missing ones keep the array's old values"));
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
        const bool whole = fillCells(layout, line, cells);
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
    checkEntryCount(head, entries, Rule::IndexCount,
                    "the reader reads all lines but returns the stated count");
}

} // namespace

Faults findFaults(const Kind& kind, std::string_view bytes)
{
    return Checker(kind, bytes).run();
}

} // namespace algdata
