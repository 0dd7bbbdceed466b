/* SPDX-License-Identifier: Apache-2.0 */
#include "sqlite/functions.h"

#include <algorithm>
#include <memory>
#include <new>

#include <fmt/format.h>

#include "formats/formats.h"
#include "options/options.h"
#include "reading/pathTemplate.h"
#include "sqlite/sqlite.h"
#include "text/suggest.h"
#include "text/wording.h"

namespace algdata
{

namespace
{

/* Null for a value that is null, or if there is no memory. */
std::optional<std::string_view> textOf(sqlite3_value* value)
{
    const unsigned char* text = sqlite3_value_text(value);
    if (text == nullptr)
        return std::nullopt;
    return std::string_view(reinterpret_cast<const char*>(text),
                            static_cast<size_t>(sqlite3_value_bytes(value)));
}

void setText(sqlite3_context* result, const std::string& text)
{
    sqlite3_result_text64(result, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

/* Exceptions must not pass through SQLite. */
template <typename Call> void guarded(sqlite3_context* result, Call&& call)
{
    try {
        call();
    } catch (const std::bad_alloc&) {
        sqlite3_result_error_nomem(result);
    } catch (const std::exception& failure) {
        sqlite3_result_error(result, failure.what(), -1);
    }
}

/* ---- MACs --------------------------------------------------------------- */

/* The next character of a MAC in lower case, without separators; -1 at the end. */
int nextOfMac(std::string_view text, size_t& at)
{
    while (at < text.size() && (text[at] == ':' || text[at] == '-'))
        ++at;
    if (at == text.size())
        return -1;
    const unsigned char c = static_cast<unsigned char>(text[at++]);
    return c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c;
}

int compareMacs(void* /*unused*/, int sizeA, const void* textA, int sizeB, const void* textB)
{
    const std::string_view a(static_cast<const char*>(textA), static_cast<size_t>(sizeA));
    const std::string_view b(static_cast<const char*>(textB), static_cast<size_t>(sizeB));
    size_t same = 0; /* most MACs are equal at the beginning */
    while (same < a.size() && same < b.size() && a[same] == b[same])
        ++same;
    for (size_t atA = same, atB = same;;) {
        const int one = nextOfMac(a, atA);
        const int other = nextOfMac(b, atB);
        if (one != other || one < 0)
            return one - other;
    }
}

void setNameOf(sqlite3_context* result, std::string_view mac)
{
    const DeviceNames& names = *static_cast<const DeviceNames*>(sqlite3_user_data(result));
    std::string key;
    size_t at = 0;
    for (int c = nextOfMac(mac, at); c >= 0 && key.size() <= formats::macWidth; c = nextOfMac(mac, at))
        key += static_cast<char>(c);
    const auto name = names.find(key);
    if (name != names.end())
        setText(result, name->second);
}

void nameOf(sqlite3_context* result, int /*count*/, sqlite3_value** arguments)
{
    guarded(result, [&] {
        if (const std::optional<std::string_view> mac = textOf(arguments[0]))
            setNameOf(result, *mac);
    });
}

/* ---- Paths -------------------------------------------------------------- */

/* The template of path_part(), which SQLite keeps from row to row while its text is the same. */
const PathTemplate& templateOf(sqlite3_context* result, sqlite3_value* written,
                               std::unique_ptr<PathTemplate>& parsed)
{
    const void* const kept = sqlite3_get_auxdata(result, 1);
    if (kept != nullptr)
        return *static_cast<const PathTemplate*>(kept);
    parsed = std::make_unique<PathTemplate>(std::string(textOf(written).value_or("")), "path_part()");
    return *parsed;
}

void setPathPart(sqlite3_context* result, sqlite3_value** arguments)
{
    std::unique_ptr<PathTemplate> parsed;
    const PathTemplate& like = templateOf(result, arguments[1], parsed);
    const std::string name(textOf(arguments[2]).value_or(""));
    const std::vector<std::string>& names = like.names();
    const auto found = std::find(names.begin(), names.end(), name);
    if (found == names.end())
        throw Failure(fmt::format("path_part(): no name {} in {}{}", inQuotes(name), inQuotes(like.text()),
                                  didYouMean(name, names)));
    if (const std::optional<std::string_view> path = textOf(arguments[0])) {
        const std::optional<PathTemplate::Values> values = like.parse(endOfPath(*path, like));
        const auto at = static_cast<size_t>(found - names.begin());
        if (values && (*values)[at])
            setText(result, *(*values)[at]);
    }
    if (parsed != nullptr)
        sqlite3_set_auxdata(result, 1, parsed.release(),
                            [](void* kept) { delete static_cast<PathTemplate*>(kept); });
}

void pathPart(sqlite3_context* result, int /*count*/, sqlite3_value** arguments)
{
    guarded(result, [&] { setPathPart(result, arguments); });
}

} // namespace

int registerFunctions(sqlite3* database)
{
    const int result =
        sqlite3_create_collation_v2(database, "mac", SQLITE_UTF8, nullptr, compareMacs, nullptr);
    if (result != SQLITE_OK)
        return result;
    constexpr int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
    return sqlite3_create_function_v2(database, "path_part", 3, flags, nullptr, pathPart, nullptr, nullptr,
                                      nullptr);
}

int registerNames(sqlite3* database, const DeviceNames& names)
{
    void* const given = const_cast<DeviceNames*>(&names); /* SQLite only returns it */
    return sqlite3_create_function_v2(database, "name_of", 1, SQLITE_UTF8 | SQLITE_DETERMINISTIC, given,
                                      nameOf, nullptr, nullptr, nullptr);
}

} // namespace algdata
