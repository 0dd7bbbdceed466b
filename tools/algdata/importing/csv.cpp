/* SPDX-License-Identifier: Apache-2.0 */
#include <algorithm>

#include <fmt/format.h>

#include "importing/readers.h"
#include "text/wording.h"

namespace algdata
{

namespace
{

/* ---- Rows --------------------------------------------------------------- */

/* Parses rows by RFC 4180. An LF or a CR alone also ends a row. */
class CsvRows
{
  public:
    CsvRows(std::string_view text, const std::string& sourceName) : rest(text), name(sourceName) {}

    /* Reads the next row. An empty cell is a Token without data. Returns false at the end. */
    bool next(std::vector<Token>& row);

    [[noreturn]] void fail(const std::string& why) const
    {
        throw Failure(fmt::format("{}, row {}: {}", name, number, why));
    }

  private:
    Token cell();
    Token quotedCell();

    std::string_view rest;
    const std::string& name;
    size_t number = 0; /* of the row, from 1 */
    Texts texts;       /* cells that contain quotation marks */
};

bool CsvRows::next(std::vector<Token>& row)
{
    row.clear();
    if (rest.empty())
        return false;
    ++number;
    for (;;) {
        const Token value = !rest.empty() && rest[0] == '"' ? quotedCell() : cell();
        row.push_back(value.empty() ? Token() : value);
        if (rest.empty())
            return true;
        const char ended = rest[0];
        rest.remove_prefix(rest.substr(0, 2) == "\r\n" ? 2 : 1);
        if (ended != ',')
            return true;
    }
}

Token CsvRows::cell()
{
    const Token value = rest.substr(0, rest.find_first_of(",\r\n"));
    if (value.find('"') != Token::npos)
        fail("a quotation mark inside an unquoted value");
    rest.remove_prefix(value.size());
    return value;
}

Token CsvRows::quotedCell()
{
    std::string value;
    bool copied = false;
    size_t begin = 1;
    size_t end = rest.find('"', begin);
    for (; rest.substr(std::min(end, rest.size()), 2) == "\"\""; end = rest.find('"', begin)) {
        value += rest.substr(begin, end + 1 - begin);
        copied = true;
        begin = end + 2;
    }
    if (end == Token::npos)
        fail("a quoted value without a closing quotation mark");
    const Token last = rest.substr(begin, end - begin);
    rest.remove_prefix(end + 1);
    if (!rest.empty() && rest.find_first_of(",\r\n") != 0)
        fail("text after the closing quotation mark of a value");
    return copied ? texts.add(value + std::string(last)) : last;
}

/* ---- Header ------------------------------------------------------------- */

constexpr size_t none = SIZE_MAX;

/* Which columns of the text contain which fields; each vector is indexed by the column of the text. */
struct Header {
    std::vector<size_t> head;  /* columns of the record's layout, or none */
    std::vector<size_t> entry; /* columns of the entry's layout, or none */
    size_t number = none;      /* the text's column with the number of the entry */
    size_t kind = none;        /* the text's column with the kind */
};

size_t columnOf(const Layout& layout, Token name)
{
    for (size_t i = 0; i < layout.columns.size(); ++i)
        if (name == layout.columns[i].name)
            return i;
    return none;
}

Header headerFrom(const std::vector<Token>& names, Incoming& in)
{
    Header header;
    for (size_t i = 0; i < names.size(); ++i) {
        const Token name = names[i];
        header.head.push_back(columnOf(in.kind().head, name));
        header.entry.push_back(columnOf(in.kind().entry, name));
        if (name == "kind")
            header.kind = i;
        else if (name == "entry" && in.kind().hasEntries())
            header.number = i;
        else if (name != "source" && header.head[i] == none && header.entry[i] == none)
            in.refuse(fmt::format("column {}: {} has no such field", inQuotes(name), in.kind().name));
        if (std::count(names.begin(), names.begin() + static_cast<ptrdiff_t>(i), name) != 0)
            in.refuse(fmt::format("column {}: duplicate", inQuotes(name)));
    }
    if (header.number == none && in.kind().hasEntries())
        in.refuse("column entry: missing, needed to find the rows that begin a record");
    return header;
}

/* ---- Records ------------------------------------------------------------ */

/* Collects rows into records. A record is one row or, if the kind has entries, one row per entry. */
class CsvRecords
{
  public:
    CsvRecords(const std::vector<Token>& names, Incoming& incoming)
        : in(incoming), header(headerFrom(names, incoming))
    {
    }

    void add(const std::vector<Token>& row);

    /* Adds the current record, if any, to the import. */
    void finish();

  private:
    static std::vector<Token> cellsOf(const std::vector<Token>& row, const std::vector<size_t>& places,
                                      const Layout& layout);
    void addEntry(Token number, std::vector<Token> cells);

    Incoming& in;
    const Header header;
    Record record;
    bool started = false;
};

std::vector<Token> CsvRecords::cellsOf(const std::vector<Token>& row, const std::vector<size_t>& places,
                                       const Layout& layout)
{
    std::vector<Token> cells(layout.columns.size());
    for (size_t i = 0; i < row.size(); ++i)
        if (places[i] != none)
            cells[places[i]] = row[i];
    return cells;
}

void CsvRecords::add(const std::vector<Token>& row)
{
    const Token number = header.number == none ? Token() : row[header.number];
    std::vector<Token> cells = cellsOf(row, header.head, in.kind().head);
    if (!started || !present(number) || number == "0") {
        finish();
        started = true;
        record.cells = std::move(cells);
        record.entries.clear();
    } else if (cells != record.cells) {
        in.refuse("entry " + inQuotes(number), "a field of the record differs from the record's first "
                                               "row");
    }
    if (header.kind != none && present(row[header.kind]) && row[header.kind] != in.kind().name)
        in.refuse("kind", fmt::format("{}, expected {}", inQuotes(row[header.kind]), in.kind().name));
    if (in.kind().hasEntries())
        addEntry(number, cellsOf(row, header.entry, in.kind().entry));
}

void CsvRecords::addEntry(Token number, std::vector<Token> cells)
{
    if (present(number)) {
        if (number != std::to_string(record.entries.size()))
            in.refuse("entry", fmt::format("{}, expected {}", inQuotes(number), record.entries.size()));
        record.entries.push_back(std::move(cells));
    } else if (std::any_of(cells.begin(), cells.end(), present)) {
        in.refuse("entry", "missing, but the row has values of an entry");
    }
}

void CsvRecords::finish()
{
    if (started)
        in.add(record);
}

} // namespace

void readCsv(std::string_view text, const std::string& name, Incoming& in)
{
    CsvRows rows(text, name);
    std::vector<Token> row;
    if (!rows.next(row))
        return;
    const size_t columns = row.size();
    CsvRecords records(row, in);
    if (in.refused())
        throw Failure(
            fmt::format("{}: expected the field names of {} in the first row", name, in.kind().name));
    while (rows.next(row)) {
        const bool blank = row.size() == 1 && !present(row[0]);
        if (blank)
            continue;
        if (row.size() != columns)
            rows.fail(fmt::format("{}, expected {}", plural(row.size(), "value"), columns));
        records.add(row);
    }
    records.finish();
}

} // namespace algdata
