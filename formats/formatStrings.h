/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The format strings that follow from a description. They equal the literals that
 * the module passes to its text layer. A program that uses the C library can pass
 * them to fscanf() and fprintf().
 */
#ifndef FORMATS_FORMAT_STRINGS_H
#define FORMATS_FORMAT_STRINGS_H

#include "formats.h"

namespace formats
{

enum class Direction : uint8_t { In, Out };

/* A text to which pieces are appended. It has room for the longest format. */
struct FormatString {
    char text[128] = {};
    size_t length = 0;

    constexpr void add(const char* piece)
    {
        while (*piece != '\0')
            text[length++] = *piece++;
    }
    constexpr void addWidth(int width)
    {
        if (width >= 10)
            text[length++] = static_cast<char>('0' + width / 10);
        if (width > 0)
            text[length++] = static_cast<char>('0' + width % 10);
    }
};

/* The conversion of a number, without "%" and width. */
constexpr const char* numberConversion(const Field& field, Direction direction)
{
    if (direction == Direction::Out ? field.printsSigned : field.readsSigned)
        return "d";
    return field.type == Type::U8 ? "hhu" : field.type == Type::U16 ? "hu" : "u";
}

constexpr void addConversion(FormatString& format, const Field& field, Direction direction)
{
    format.add("%");
    if (field.type == Type::F32) {
        format.add(direction == Direction::Out ? ".2f" : "f");
        return;
    }
    format.addWidth(direction == Direction::Out ? field.widthOut : field.widthIn);
    format.add(field.type == Type::Mac ? "s" : numberConversion(field, direction));
}

/* The format of one step. */
constexpr FormatString formatString(const Kind& kind, const Layout& layout, const Step& step,
                                    Direction direction)
{
    FormatString format;
    for (const Field& field : step.fields) {
        if (!kind.trailingBlank && (!step.first || &field != step.fields.begin()))
            format.add(" ");
        addConversion(format, field, direction);
        if (kind.trailingBlank)
            format.add(" ");
    }
    if (layout.lineEnd == LineEnd::InFormat && (direction == Direction::Out || kind.readByLine))
        format.add("\n");
    return format;
}

/* ---- All of them -------------------------------------------------------- */

using FormatStrings = FixedList<FormatString, 64>;

constexpr void addOnce(FormatStrings& formats, const FormatString& added)
{
    for (const FormatString& format : formats) {
        if (sameText(format.text, added.text))
            return;
    }
    formats.add(added);
}

constexpr void addLayout(FormatStrings& formats, const Kind& kind, const Layout& layout, Direction direction)
{
    for (const Step& step : Steps{layout})
        addOnce(formats, formatString(kind, layout, step, direction));
    if (direction == Direction::Out && layout.lineEnd == LineEnd::Alone) {
        FormatString lineEnd;
        lineEnd.add("\n");
        addOnce(formats, lineEnd);
    }
}

/* All formats of a direction, without duplicates. */
constexpr FormatStrings allFormatStrings(Direction direction)
{
    FormatStrings formats;
    for (const Kind* kind : kinds) {
        if (direction == Direction::Out && kind->writer() == nullptr)
            continue;
        addLayout(formats, *kind, kind->preamble, direction);
        addLayout(formats, *kind, kind->record, direction);
        addLayout(formats, *kind, kind->entries.layout, direction);
        if (direction == Direction::In)
            addLayout(formats, *kind, kind->probe, direction);
    }
    return formats;
}

inline constexpr FormatStrings inFormats = allFormatStrings(Direction::In);
inline constexpr FormatStrings outFormats = allFormatStrings(Direction::Out);

/* One of the formats as a type, as the module's text layer requires it. */
template <Direction direction, size_t index> struct FormatAt {
    static constexpr const char* text()
    {
        return (direction == Direction::In ? inFormats : outFormats).items[index].text;
    }
};

} // namespace formats

#endif
