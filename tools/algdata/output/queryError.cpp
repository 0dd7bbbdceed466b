/* SPDX-License-Identifier: Apache-2.0 */
#include "output/queryError.h"

#include <algorithm>

#include <fmt/format.h>

#include "output/output.h"
#include "records/records.h"
#include "text/wording.h"

namespace algdata
{

namespace
{

bool isWordCharacter(char c)
{
    return c == '_' || isDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/* The end of a text in quotes that begins here. */
size_t endOfQuoted(const std::string& query, size_t at)
{
    const size_t close = query.find(query[at], at + 1);
    return close == std::string::npos ? query.size() : close + 1;
}

} // namespace

std::vector<Word> wordsOf(const std::string& query)
{
    std::vector<Word> words;
    for (size_t at = 0; at < query.size();) {
        size_t end = at + 1;
        if (query[at] == '\'' || query[at] == '"') {
            end = endOfQuoted(query, at);
            if (query[at] == '"' && end > at + 2)
                words.push_back({query.substr(at + 1, end - at - 2), at});
        } else if (query.compare(at, 2, "--") == 0) {
            end = std::min(query.find('\n', at), query.size());
        } else if (query.compare(at, 2, "/*") == 0) {
            const size_t close = query.find("*/", at + 2);
            end = close == std::string::npos ? query.size() : close + 2;
        } else if (isWordCharacter(query[at])) {
            while (end < query.size() && isWordCharacter(query[end]))
                ++end;
            words.push_back({query.substr(at, end - at), at});
        }
        at = end;
    }
    return words;
}

std::optional<size_t> placeOf(const std::string& word, const std::string& query)
{
    for (const Word& one : wordsOf(query))
        if (lowered(one.text) == lowered(word))
            return one.offset;
    return std::nullopt;
}

std::optional<std::string> restAfter(const std::string& prefix, const std::string& text)
{
    if (text.compare(0, prefix.size(), prefix) != 0)
        return std::nullopt;
    return text.substr(prefix.size());
}

std::string caretText(const QueryError& error)
{
    if (!error.offset || *error.offset > error.query.size())
        return "";
    const size_t newline = error.query.rfind('\n', *error.offset == 0 ? 0 : *error.offset - 1);
    const size_t begin = newline == std::string::npos || newline >= *error.offset ? 0 : newline + 1;
    const size_t end = std::min(error.query.find('\n', *error.offset), error.query.size());
    constexpr size_t shownBefore = 60;
    constexpr size_t shownAfter = 40;
    const size_t from = *error.offset - begin > shownBefore ? *error.offset - shownBefore : begin;
    const size_t to = std::min(end, *error.offset + shownAfter);
    const std::string before = printable(std::string_view(error.query).substr(from, *error.offset - from));
    const std::string rest =
        printable(std::string_view(error.query).substr(*error.offset, to - *error.offset));
    return fmt::format("    {}{}\n    {:{}}^\n", before, rest, "", columnsOf(before));
}

void printFailure(const std::exception& failure)
{
    message(failure.what());
    const auto* query = dynamic_cast<const QueryFailure*>(&failure);
    if (query == nullptr)
        return;
    std::fputs(caretText(query->error).c_str(), stderr);
    if (!query->error.hint.empty())
        message(query->error.hint);
}

} // namespace algdata
