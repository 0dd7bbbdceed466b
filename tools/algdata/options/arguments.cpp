/* SPDX-License-Identifier: Apache-2.0 */
#include "options/arguments.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <set>

#include <fmt/format.h>

#include "text/suggest.h"
#include "text/wording.h"

namespace algdata
{

namespace
{

constexpr const char* blanks = " \t";

/* Whether the name of a field or of a column can contain this character. */
bool isNameCharacter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '.';
}

size_t skip(const std::string& text, size_t at, bool (*matches)(char))
{
    while (at < text.size() && matches(text[at]))
        ++at;
    return at;
}

size_t skipBlanks(const std::string& text, size_t at)
{
    return skip(text, at, [](char c) { return c == ' ' || c == '\t'; });
}

struct Operator {
    const char* text;
    Condition::Test test;
};

constexpr std::array<Operator, 6> operators = {{{"=", Condition::Equal},
                                                {"!=", Condition::Unequal},
                                                {"<", Condition::Less},
                                                {"<=", Condition::LessOrEqual},
                                                {">", Condition::Greater},
                                                {">=", Condition::GreaterOrEqual}}};

/* The number of the character at this byte, from 1. A multi-byte UTF-8 character counts once. */
size_t characterNumber(const std::string& text, size_t at)
{
    const auto begins = [](char c) { return (static_cast<unsigned char>(c) & 0xc0) != 0x80; };
    const auto end = text.begin() + static_cast<std::ptrdiff_t>(at);
    return static_cast<size_t>(std::count_if(text.begin(), end, begins)) + 1;
}

bool isSignCharacter(char c)
{
    return c == '=' || c == '<' || c == '>' || c == '!';
}

/* Whether it is no value but the rest of an expression: it has quotes, parentheses, operators or their words.
 */
bool isExpression(const std::string& value)
{
    if (value.find_first_of("'\"()=<>!|") != std::string::npos)
        return true;
    static const std::set<std::string> words = {"and",     "or",      "not",  "is",     "in",     "like",
                                                "between", "collate", "glob", "isnull", "notnull"};
    for (size_t at = 0; at < value.size();) {
        const size_t begin = std::min(value.find_first_not_of(blanks, at), value.size());
        at = std::min(value.find_first_of(blanks, begin), value.size());
        if (words.count(lowered(value.substr(begin, at - begin))) != 0)
            return true;
    }
    return false;
}

/* A name between commas. */
struct Item {
    std::string name;
    size_t at;
};

std::vector<Item> itemsOf(const std::string& option, const std::string& text)
{
    std::vector<Item> items;
    for (size_t at = 0;; ++at) {
        const size_t begin = skipBlanks(text, at);
        at = std::min(text.find(',', begin), text.size());
        std::string name = text.substr(begin, at - begin);
        name.erase(name.find_last_not_of(blanks) + 1);
        if (name.empty())
            throwMalformed(option, text, begin, "the name of a field");
        items.push_back({name, begin});
        if (at == text.size())
            return items;
    }
}

} // namespace

void throwMalformed(const std::string& option, const std::string& text, size_t at,
                    const std::string& expected)
{
    const std::string rest = text.substr(at);
    throw Failure(fmt::format("{} '{}': expected {} at character {}, {}", option, text, expected,
                              characterNumber(text, at), "found " + (rest.empty() ? "nothing" : rest)));
}

Condition conditionFrom(const std::string& text, const ColumnNames& names)
{
    Condition condition;
    condition.text = text;
    const size_t name = skipBlanks(text, 0);
    const size_t nameEnd = skip(text, name, isNameCharacter);
    if (name == text.size())
        throwMalformed("--where", text, name, "the name of a field");
    const size_t sign = skipBlanks(text, nameEnd);
    const size_t signEnd = skip(text, sign, isSignCharacter);
    const std::string written = text.substr(sign, signEnd - sign);
    const auto* const found = std::find_if(operators.begin(), operators.end(),
                                           [&](const Operator& known) { return written == known.text; });
    if (nameEnd == name || found == operators.end())
        return condition;
    condition.test = found->test;
    condition.at = skipBlanks(text, signEnd);
    condition.value = text.substr(condition.at);
    condition.value.erase(condition.value.find_last_not_of(blanks) + 1);
    if (condition.value.empty())
        throwMalformed("--where", text, condition.at, "a value");
    const std::string field = text.substr(name, nameEnd - name);
    const std::string start = condition.value.substr(0, skip(condition.value, 0, isNameCharacter));
    const auto isOneOf = [](const std::vector<std::string>& all, const std::string& one) {
        return std::find(all.begin(), all.end(), one) != all.end();
    };
    const bool isText = field == "kind" || field == "source";
    if (!isOneOf(names.others, field) && (isText || !isOneOf(names.fields, start)) &&
        !isExpression(condition.value))
        condition.field = field;
    return condition;
}

int64_t wholeNumberOf(const Condition& condition)
{
    int64_t number = 0;
    const std::string& value = condition.value;
    const char* const end = value.data() + value.size();
    const auto [stopped, error] = std::from_chars(value.data(), end, number);
    if (error == std::errc::result_out_of_range || number == INT64_MAX)
        throwMalformed("--where", condition.text, condition.at,
                       fmt::format("a number of at most {}", INT64_MAX - 1));
    if (stopped != end || error != std::errc() || number < 0)
        throwMalformed("--where", condition.text, condition.at, "a whole number of at least 0");
    return number;
}

void requireWord(const Condition& condition, const std::vector<std::string>& words)
{
    if (condition.test != Condition::Equal && condition.test != Condition::Unequal)
        throw Failure(
            fmt::format("--where '{}': {} is text, expected = or !=", condition.text, condition.field));
    if (words.empty() || std::find(words.begin(), words.end(), condition.value) != words.end())
        return;
    throw Failure(fmt::format("--where '{}': {} has no value {}{} (expected one of {})", condition.text,
                              condition.field, condition.value, didYouMean(condition.value, words),
                              fmt::join(words, ", ")));
}

std::vector<std::string> namesFrom(const std::string& option, const std::string& text)
{
    std::vector<std::string> names;
    for (Item& item : itemsOf(option, text))
        names.push_back(std::move(item.name));
    return names;
}

std::vector<SortKey> sortKeysFrom(const std::string& text)
{
    std::vector<SortKey> keys;
    for (const Item& item : itemsOf("--sort", text)) {
        const size_t name = item.name[0] == '-' ? 1 : 0;
        if (item.name.size() == name)
            throwMalformed("--sort", text, item.at + name, "the name of a field");
        if (skip(item.name, std::min(item.name.find_first_not_of('-'), item.name.size()), isNameCharacter) !=
            item.name.size())
            return {{"", false, text}};
        keys.push_back({item.name.substr(name), name != 0});
    }
    return keys;
}

size_t countFrom(const std::string& option, const std::string& text)
{
    size_t count = 0;
    const char* const end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, count);
    if (error == std::errc::result_out_of_range)
        throw Failure(fmt::format("{} {}: expected at most {}", option, text, SIZE_MAX));
    if (stopped != end || error != std::errc())
        throw Failure(fmt::format("{} {}: expected a whole number of at least 0", option, text));
    return count;
}

double secondsFrom(const std::string& option, const std::string& text)
{
    constexpr double most = 1e6;
    double seconds = 0;
    const char* const end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, seconds);
    if (stopped != end || error != std::errc() || !(seconds > 0 && seconds <= most))
        throw Failure(
            fmt::format("{} {}: expected a number of seconds above 0, at most {}", option, text, most));
    return seconds;
}

} // namespace algdata
