/* SPDX-License-Identifier: Apache-2.0 */
#include "text/wording.h"

#include <algorithm>
#include <clocale>
#include <cstring>
#include <cwchar>
#include <langinfo.h>

#include <fmt/format.h>

namespace algdata
{

namespace
{

/* The first character of a text. */
struct Character {
    size_t length; /* in bytes */
    int columns;   /* on a terminal; 0 or less if it is not visible */
};

Character firstOf(std::string_view text)
{
    if (text[0] >= ' ' && text[0] <= '~')
        return {1, 1};
    wchar_t wide = 0;
    std::mbstate_t state = {};
    const size_t length = std::mbrtowc(&wide, text.data(), text.size(), &state);
    if (length == 0 || length > text.size()) /* a NUL, or not a character */
        return {1, 0};
    return {length, wcwidth(wide)};
}

} // namespace

std::string printable(std::string_view text)
{
    std::string shown;
    while (!text.empty()) {
        const Character first = firstOf(text);
        for (const char c : text.substr(0, first.length)) {
            if (first.columns > 0)
                shown += c;
            else
                shown += fmt::format("\\x{:02x}", static_cast<unsigned char>(c));
        }
        text.remove_prefix(first.length);
    }
    return shown;
}

std::string inQuotes(std::string_view text)
{
    constexpr size_t maxLength = 24;
    return "`" + printable(text.substr(0, maxLength)) + (text.size() > maxLength ? "..." : "") + "`";
}

size_t columnsOf(std::string_view text)
{
    size_t columns = 0;
    while (!text.empty()) {
        const Character first = firstOf(text);
        columns += first.columns > 0 ? static_cast<size_t>(first.columns) : 0;
        text.remove_prefix(first.length);
    }
    return columns;
}

std::string plural(size_t count, std::string_view noun)
{
    if (count == 1)
        return fmt::format("1 {}", noun);
    if (noun.back() == 'y' && noun.find_last_of("aeiou") != noun.size() - 2) /* entry, not key */
        return fmt::format("{} {}ies", count, noun.substr(0, noun.size() - 1));
    return fmt::format("{} {}s", count, noun);
}

std::string countShown(size_t shown, size_t all, std::string_view noun)
{
    return (shown == all ? "" : fmt::format("{} of ", shown)) + plural(all, noun);
}

std::string lowered(std::string_view text)
{
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return lower;
}

bool showsUnicode()
{
    return std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0;
}

void useLocaleCharacters()
{
    /* In other character sets, a byte above 127 can be a control character of the terminal. */
    if (std::setlocale(LC_CTYPE, "") == nullptr || !showsUnicode())
        std::setlocale(LC_CTYPE, "C");
}

} // namespace algdata
