/* SPDX-License-Identifier: Apache-2.0 */
#include "report/html.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>

#include <fmt/format.h>

namespace algdata
{

namespace
{

/* ---- Characters ------------------------------------------------------------- */

/* The first character of a text. */
struct Character {
    size_t length;  /* in bytes */
    char32_t value; /* invalid if the first byte begins no character */
};
constexpr char32_t invalid = 0xffffffff;

/* The number of bytes that the first byte of a character announces; 0 if it begins none. */
size_t lengthFrom(unsigned char first)
{
    if (first < 0x80)
        return 1;
    if (first < 0xc2 || first > 0xf4)
        return 0;
    return first < 0xe0 ? 2 : first < 0xf0 ? 3 : 4;
}

Character firstOf(std::string_view text)
{
    static constexpr std::array<char32_t, 5> least = {0, 0, 0x80, 0x800, 0x10000};
    const auto first = static_cast<unsigned char>(text[0]);
    const size_t length = lengthFrom(first);
    if (length == 1)
        return {1, first};
    if (length == 0 || length > text.size())
        return {1, invalid};
    char32_t value = first & (0xffU >> (length + 1));
    for (size_t i = 1; i < length; ++i) {
        const auto next = static_cast<unsigned char>(text[i]);
        if ((next & 0xc0U) != 0x80)
            return {1, invalid};
        value = (value << 6U) | (next & 0x3fU);
    }
    const bool surrogate = value >= 0xd800 && value <= 0xdfff;
    if (value < least[length] || value > 0x10ffff || surrogate)
        return {1, invalid};
    return {length, value};
}

struct Range {
    char32_t first, last;
};

/* Controls, line separators, marks of direction, characters without width, and those that are none. */
bool isHidden(char32_t value)
{
    static constexpr std::array<Range, 12> hidden = {{{0, 0x1f},
                                                      {0x7f, 0x9f},
                                                      {0xad, 0xad},
                                                      {0x61c, 0x61c},
                                                      {0x180e, 0x180e},
                                                      {0x200b, 0x200f},
                                                      {0x2028, 0x202e},
                                                      {0x2060, 0x206f},
                                                      {0xfdd0, 0xfdef},
                                                      {0xfeff, 0xfeff},
                                                      {0xfff9, 0xfffb},
                                                      {0xe0000, 0xe007f}}};
    for (const Range& range : hidden)
        if (value >= range.first && value <= range.last)
            return true;
    return (value & 0xfffeU) == 0xfffe;
}

using Escape = const char* (*)(char c);

std::string escaped(std::string_view text, Escape escape)
{
    std::string result;
    for (const char c : text) {
        const char* const instead = escape(c);
        if (instead == nullptr)
            result += c;
        else
            result += instead;
    }
    return result;
}

const char* textEscape(char c)
{
    return c == '&' ? "&amp;" : c == '<' ? "&lt;" : c == '>' ? "&gt;" : nullptr;
}

const char* attributeEscape(char c)
{
    return c == '"' ? "&quot;" : c == '\'' ? "&#39;" : textEscape(c);
}

const char* jsonEscape(char c)
{
    switch (c) {
    case '<':
        return "\\u003c";
    case '>':
        return "\\u003e";
    case '&':
        return "\\u0026";
    case '"':
        return "\\\"";
    case '\\':
        return "\\\\";
    default:
        return nullptr;
    }
}

} // namespace

std::string visible(std::string_view text)
{
    std::string shown;
    while (!text.empty()) {
        const Character first = firstOf(text);
        if (first.value == invalid || (first.length == 1 && isHidden(first.value)))
            shown += fmt::format("\\x{:02x}", static_cast<unsigned char>(text[0]));
        else if (isHidden(first.value))
            shown += fmt::format("\\u{{{:04x}}}", static_cast<uint32_t>(first.value));
        else
            shown += text.substr(0, first.length);
        text.remove_prefix(first.length);
    }
    return shown;
}

std::string textEscaped(std::string_view text)
{
    return escaped(visible(text), textEscape);
}

std::string attributeEscaped(std::string_view text)
{
    return escaped(visible(text), attributeEscape);
}

std::string jsonEscaped(std::string_view text)
{
    return '"' + escaped(visible(text), jsonEscape) + '"';
}

std::string coordinate(double value)
{
    const double rounded = std::round(value * 10) / 10;
    const bool whole = rounded == std::round(rounded);
    return fmt::format("{:.{}f}", rounded == 0 ? 0.0 : rounded, whole ? 0 : 1);
}

/* ---- Elements ----------------------------------------------------------------- */

void Html::start(const char* name, const Attributes& attributes)
{
    page += fmt::format("<{}", name);
    for (const Attribute& attribute : attributes) {
        page += fmt::format(" {}=\"{}\"", attribute.name, attributeEscaped(rewritten(attribute.value)));
        if (std::strcmp(attribute.name, "id") == 0)
            ids.insert(attribute.value);
    }
    page += '>';
}

void Html::close(const char* name)
{
    page += fmt::format("</{}>", name);
    static const std::set<std::string_view> blocks = {"tr",     "table", "section", "p",      "ul",
                                                      "li",     "svg",   "g",       "figure", "article",
                                                      "header", "main",  "div",     "head"};
    if (blocks.count(name) != 0)
        page += '\n';
}

Html::Element Html::in(const char* name, const Attributes& attributes)
{
    start(name, attributes);
    return {*this, name};
}

void Html::text(const std::string& content)
{
    page += textEscaped(rewritten(content));
}

void Html::element(const char* name, const Attributes& attributes, const std::string& content)
{
    start(name, attributes);
    text(content);
    close(name);
}

void Html::empty(const char* name, const Attributes& attributes)
{
    static const std::set<std::string_view> withoutEnd = {"meta", "br", "hr", "input"};
    start(name, attributes);
    if (withoutEnd.count(name) == 0)
        page += fmt::format("</{}>", name);
}

std::string Html::json(const std::string& content) const
{
    return jsonEscaped(rewritten(content));
}

} // namespace algdata
