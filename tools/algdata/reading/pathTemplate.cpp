/* SPDX-License-Identifier: Apache-2.0 */
#include "reading/pathTemplate.h"

#include <algorithm>

#include <fmt/format.h>

#include "options/options.h"
#include "records/records.h"
#include "text/suggest.h"
#include "text/wording.h"

namespace algdata
{

std::vector<std::string_view> componentsOf(std::string_view path)
{
    std::vector<std::string_view> components;
    for (;;) {
        const size_t slash = path.find('/');
        components.push_back(path.substr(0, slash));
        if (slash == std::string_view::npos)
            return components;
        path.remove_prefix(slash + 1);
    }
}

std::string_view endOfPath(std::string_view path, const PathTemplate& like)
{
    size_t begin = path.size();
    for (size_t i = 0; i < like.depth() && begin != 0; ++i) {
        const size_t slash = path.rfind('/', begin - 1);
        if (slash == std::string_view::npos)
            return path;
        begin = slash;
    }
    return path.substr(std::min(begin + 1, path.size()));
}

/* ---- Parsing a template ------------------------------------------------- */

namespace
{

bool isNameCharacter(char c)
{
    return c == '_' || isDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isName(std::string_view text)
{
    return !text.empty() && text[0] != '_' && !isDigit(text[0]) &&
           std::all_of(text.begin(), text.end(), isNameCharacter);
}

bool isKindWord(std::string_view text)
{
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](char c) { return c == '-' || isNameCharacter(c); });
}

} // namespace

PathTemplate::PathTemplate(const std::string& written, const char* where) : whole(written), from(where)
{
    std::string_view rest = whole;
    const size_t equals = rest.find('=');
    if (equals != std::string_view::npos && isKindWord(rest.substr(0, equals))) {
        const std::string word(rest.substr(0, equals));
        fixed = findKind(word);
        if (fixed == nullptr)
            refuse(fmt::format("unknown kind {}{} (expected one of {})", word, didYouMean(word, kindWords()),
                               kindNames()));
        rest.remove_prefix(equals + 1);
    }
    if (rest.empty())
        refuse("it is empty, expected a path such as {home}/{snapshot}/score_{device}.txt");
    if (rest[0] == '/')
        refuse("it begins with a slash, expected a path below the PATH of the command");
    for (const std::string_view component : componentsOf(rest))
        components.push_back(parsed(component));
}

void PathTemplate::refuse(const std::string& why) const
{
    throw Failure(fmt::format("{} {}: {}", from, inQuotes(whole), why));
}

PathTemplate::Component PathTemplate::parsed(std::string_view component)
{
    if (component.empty())
        refuse("a component is empty, expected one slash between two components");
    if (component[0] == '.')
        refuse(fmt::format("{} begins with a dot; hidden files are not read", inQuotes(component)));
    Component pieces;
    for (size_t at = 0; at < component.size();) {
        const size_t special = std::min(component.find_first_of("{}*", at), component.size());
        if (special > at)
            pieces.push_back({std::string(component.substr(at, special - at)), literal});
        at = special;
        if (at == component.size())
            break;
        if (component[at] == '*') {
            pieces.push_back({"", anything});
            ++at;
            continue;
        }
        const size_t close = component.find('}', at);
        const std::string name(component.substr(at + 1, close - at - 1));
        if (component[at] == '}' || close == std::string_view::npos || !isName(name))
            refuse(fmt::format(
                "expected a name in braces in {}, of letters, digits and _, beginning with a letter",
                inQuotes(component)));
        if (!pieces.empty() && pieces.back().name != literal)
            refuse(fmt::format("expected a text before {{{}}}: two parts side by side cannot be separated",
                               name));
        pieces.push_back({"", indexOf(name)});
        at = close + 1;
    }
    const auto isOpen = [](const Piece& piece) { return piece.name != literal; };
    if (std::count_if(pieces.begin(), pieces.end(), isOpen) > maxParts)
        refuse(fmt::format("{} has more than {} names and *", inQuotes(component), maxParts));
    return pieces;
}

size_t PathTemplate::indexOf(const std::string& name)
{
    const auto found = std::find(allNames.begin(), allNames.end(), name);
    if (found == allNames.end())
        return allNames.push_back(name), allNames.size() - 1;
    return static_cast<size_t>(found - allNames.begin());
}

size_t PathTemplate::componentOf(size_t name) const
{
    const auto has = [&](const Component& pieces) {
        return std::any_of(pieces.begin(), pieces.end(),
                           [&](const Piece& piece) { return piece.name == name; });
    };
    return static_cast<size_t>(std::find_if(components.begin(), components.end(), has) - components.begin());
}

/* ---- Matching ----------------------------------------------------------- */

/* Matches a part of any length, at least one byte, the shortest first. */
bool PathTemplate::matchPart(const Piece* piece, const Piece* end, std::string_view rest, Values& values)
{
    const bool named = piece->name != anything;
    if (named && values[piece->name]) {
        const std::string& known = *values[piece->name];
        return !known.empty() && rest.substr(0, known.size()) == known &&
               matchPieces(piece + 1, end, rest.substr(known.size()), values);
    }
    for (size_t length = 1; length <= rest.size(); ++length) {
        if (named)
            values[piece->name] = std::string(rest.substr(0, length));
        if (matchPieces(piece + 1, end, rest.substr(length), values))
            return true;
    }
    if (named)
        values[piece->name].reset();
    return false;
}

bool PathTemplate::matchPieces(const Piece* piece, const Piece* end, std::string_view rest, Values& values)
{
    if (piece == end)
        return rest.empty();
    if (piece->name != literal)
        return matchPart(piece, end, rest, values);
    return rest.substr(0, piece->text.size()) == piece->text &&
           matchPieces(piece + 1, end, rest.substr(piece->text.size()), values);
}

bool PathTemplate::match(size_t at, std::string_view component, Values& values) const
{
    const Component& pieces = components[at];
    return matchPieces(pieces.data(), pieces.data() + pieces.size(), component, values);
}

std::optional<PathTemplate::Values> PathTemplate::parse(std::string_view path) const
{
    const std::vector<std::string_view> parts = componentsOf(path);
    Values values(allNames.size());
    if (parts.size() != components.size())
        return std::nullopt;
    for (size_t at = 0; at < parts.size(); ++at)
        if (!match(at, parts[at], values))
            return std::nullopt;
    return values;
}

std::optional<std::string> PathTemplate::build(size_t at, const Values& values) const
{
    std::string component;
    for (const Piece& piece : components[at]) {
        if (piece.name == anything || (piece.name != literal && !values[piece.name]))
            return std::nullopt;
        component += piece.name == literal ? piece.text : *values[piece.name];
    }
    return component;
}

} // namespace algdata
