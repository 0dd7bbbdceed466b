/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Filters and sorts small files with any texts for --where and --sort. The first line of
 * the input is the condition, the second the order. It expects that a condition only
 * leaves records out, that it and its opposite share none, that an order keeps them all,
 * and that the place of an error lies in the text.
 */
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string_view>

#include <sqlite3.h>

#include "options/arguments.h"
#include "query/fields.h"
#include "query/recordRows.h"
#include "support/exported.h"

using namespace algdata;

namespace
{

using Lines = std::vector<std::string>;

constexpr sqlite3_int64 maxMemory = 20'000'000;

void expect(bool holds)
{
    if (!holds)
        abort();
}

/* ---- The files ---------------------------------------------------------- */

Source sample(const char* kind, const char* bytes)
{
    Source source;
    source.name = kind;
    source.bytes = bytes;
    source.kind = &kindNamed(kind);
    return source;
}

/* Its records have no parts: a condition selects each or leaves it out. */
const Source& withoutParts()
{
    static const Source one = sample("scanning", "0A1B2C3D4E5F 102030405060  1  36  40\n"
                                                 "102030405060 0A1B2C3D4E5F  0   6  72\n"
                                                 "0A1B2C3D4E5F 0A1B2C3D4E5F  1  36  40\n"
                                                 "102030405060            x  9   6  -1\n");
    return one;
}

/* A condition on the parts selects some of them. */
const std::vector<Source>& withParts()
{
    static const std::vector<Source> all = {
        sample("time-delay",
               "0A1B2C3D4E5F   0   1   5  10 999 1000 1001 65535   3   3   3   3   3   3   3\n"
               "102030405060   7   7   7   7   7    7    7     7   7   7   7   7   7   7   7\n"),
        sample("ap-rank-index", "2 1 2 1700000000\n0A1B2C3D4E5F 000000000000 0 1400\n"
                                "102030405060 0A1B2C3D4E5F 1 1100\n")};
    return all;
}

Lines linesOf(const std::string& text)
{
    Lines lines;
    for (size_t at = 0; at < text.size(); at = text.find('\n', at) + 1)
        lines.push_back(text.substr(at, text.find('\n', at) - at));
    return lines;
}

/* The records of a file as an export writes them; null if the options are refused. */
std::optional<Lines> recordsOf(const Source& source, const Options& options)
{
    try {
        requireFieldsOf({source.kind}, options);
        return linesOf(exported(source, options));
    } catch (const QueryFailure& failure) {
        const QueryError& error = failure.error;
        expect(!error.text.empty() && (!error.offset || *error.offset <= error.query.size()));
        expect(caretText(error).empty() == !error.offset);
        return std::nullopt;
    } catch (const Failure&) {
        return std::nullopt;
    } catch (const std::bad_alloc&) {
        return std::nullopt;
    }
}

Lines sorted(Lines lines)
{
    std::sort(lines.begin(), lines.end());
    return lines;
}

bool contains(const Lines& all, const Lines& some)
{
    const Lines a = sorted(all);
    const Lines b = sorted(some);
    return std::includes(a.begin(), a.end(), b.begin(), b.end());
}

/* ---- The options -------------------------------------------------------- */

Options optionsFor(const std::string& where, const std::string& order)
{
    Options options;
    options.format = Format::Ndjson;
    const ColumnNames names = {fieldNames(nullptr), otherColumns()};
    if (!where.empty())
        options.where.push_back(conditionFrom(where, names));
    if (!order.empty())
        options.sort = sortKeysFrom(order);
    return options;
}

/* Whether a text can use chance or the clock. */
bool varies(const std::string& text)
{
    for (const char* word : {"random", "date(", "time(", "julianday", "unixepoch", "now", "current"})
        for (size_t at = 0; at < text.size(); ++at)
            if (sqlite3_strnicmp(text.c_str() + at, word, static_cast<int>(std::string_view(word).size())) ==
                0)
                return true;
    return false;
}

/* ---- The tests ---------------------------------------------------------- */

void testCondition(const std::string& text)
{
    const std::optional<Lines> chosen = recordsOf(withoutParts(), optionsFor(text, ""));
    if (!chosen)
        return;
    Lines both = *chosen;
    if (optionsFor(text, "").where[0].isExpression())
        if (const std::optional<Lines> others =
                recordsOf(withoutParts(), optionsFor("NOT (" + text + "\n)", "")))
            both.insert(both.end(), others->begin(), others->end());
    expect(contains(*recordsOf(withoutParts(), optionsFor("", "")), both));
}

void testOrder(const std::string& text)
{
    const std::optional<Lines> ordered = recordsOf(withoutParts(), optionsFor("", text));
    expect(!ordered || sorted(*ordered) == sorted(*recordsOf(withoutParts(), optionsFor("", ""))));
}

/* The entries that a condition keeps cannot be told from the lines, so this only looks for crashes. */
void testParts(const std::string& where, const std::string& order)
{
    for (const Source& source : withParts())
        recordsOf(source, optionsFor(where, order));
}

void test(const std::string& where, const std::string& order)
{
    testParts(where, order);
    if (!where.empty())
        testCondition(where);
    if (!order.empty())
        testOrder(order);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const sqlite3_int64 limited = sqlite3_hard_heap_limit64(maxMemory);
    (void)limited;
    const std::string text(reinterpret_cast<const char*>(data), size);
    if (text.find('\0') != std::string::npos || varies(text))
        return 0; /* an argument of a command has no NUL */
    const size_t end = std::min(text.find('\n'), text.size());
    try {
        test(text.substr(0, end), text.substr(std::min(end + 1, text.size())));
    } catch (const Failure&) {
    }
    return 0;
}
