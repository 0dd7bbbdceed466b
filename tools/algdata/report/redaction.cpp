/* SPDX-License-Identifier: Apache-2.0 */
#include "report/redaction.h"

#include <algorithm>

#include <fmt/format.h>

#include "records/records.h"
#include "text/wording.h"

namespace algdata
{

namespace
{

/* The length of a MAC in pairs, such as 0a:4e:00:00:00:01, at a place of a text; 0 if there is none. */
size_t pairsAt(const std::string& text, size_t at)
{
    constexpr size_t length = 17;
    if (text.size() - at < length)
        return 0;
    const char separator = text[at + 2];
    if (separator != ':' && separator != '-')
        return 0;
    for (size_t i = 0; i < length; ++i)
        if (i % 3 == 2 ? text[at + i] != separator : !isHexDigit(text[at + i]))
            return 0;
    return length;
}

/* Numbers have digits only and at most ten of them, words have letters only. */
bool isMacLikeRun(const std::string& run)
{
    constexpr size_t longerThanNumbers = 11;
    constexpr size_t shortestPart = 6;
    const bool digit = std::any_of(run.begin(), run.end(), isDigit);
    const bool letter = !std::all_of(run.begin(), run.end(), isDigit);
    return run.size() >= longerThanNumbers || (run.size() >= shortestPart && digit && letter);
}

} // namespace

std::string Redaction::shortNameOf(const std::string& digits)
{
    std::string key;
    for (const char c : lowered(digits))
        if (isHexDigit(c))
            key += c;
    return names.try_emplace(key, fmt::format("M{}", names.size() + 1)).first->second;
}

std::string Redaction::of(const std::string& text)
{
    std::string redacted;
    for (size_t at = 0; at < text.size();) {
        if (const size_t pairs = pairsAt(text, at); pairs != 0) {
            redacted += shortNameOf(text.substr(at, pairs));
            at += pairs;
            continue;
        }
        size_t end = at;
        while (end < text.size() && isHexDigit(text[end]))
            ++end;
        const std::string run = text.substr(at, end - at);
        const bool none = run == "000000000000";
        redacted += !none && isMacLikeRun(run) ? shortNameOf(run) : run;
        at = end;
        if (at < text.size())
            redacted += text[at++];
    }
    return redacted;
}

} // namespace algdata
