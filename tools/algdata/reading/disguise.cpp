/* SPDX-License-Identifier: Apache-2.0 */
#include "reading/disguise.h"

#include <algorithm>

namespace algdata
{

namespace
{

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";

bool beginsWith(std::string_view bytes, std::string_view start)
{
    return bytes.substr(0, start.size()) == start;
}

/* Whether of each `width` bytes only the one at `place` is not NUL. */
bool hasTextAt(size_t place, size_t width, std::string_view bytes)
{
    constexpr size_t maxLooked = 512; /* enough to be sure */
    if (bytes.empty() || bytes.size() % width != 0)
        return false;
    for (size_t i = 0; i < std::min(bytes.size(), maxLooked); ++i)
        if ((bytes[i] != '\0') != (i % width == place))
            return false;
    return true;
}

std::string withoutNuls(std::string_view bytes)
{
    std::string text;
    std::copy_if(bytes.begin(), bytes.end(), std::back_inserter(text), [](char c) { return c != '\0'; });
    return text;
}

} // namespace

Disguise disguiseOf(std::string_view bytes)
{
    struct Magic {
        std::string_view start;
        const char* name;
    };
    static const Magic compressed[] = {
        {"\x1F\x8B", "gzip-compressed"},
        {"\xFD"
         "7zXZ",
         "xz-compressed"},
        {"\x28\xB5\x2F\xFD", "zstd-compressed"},
        {"BZh", "bzip2-compressed"},
        {"PK\x03\x04", "a zip archive"},
    };
    /* UTF-32 first, because one of its marks begins like one of UTF-16. */
    struct Encoding {
        std::string_view mark;
        size_t width; /* of an ASCII character */
        size_t place; /* of its byte that is not NUL */
        const char* name;
    };
    static const Encoding encodings[] = {
        {{"\xFF\xFE\0\0", 4}, 4, 0, "UTF-32 text"},
        {{"\0\0\xFE\xFF", 4}, 4, 3, "UTF-32 text"},
        {"\xFF\xFE", 2, 0, "UTF-16 text"},
        {"\xFE\xFF", 2, 1, "UTF-16 text"},
    };
    for (const Magic& magic : compressed)
        if (beginsWith(bytes, magic.start))
            return {Disguise::Compressed, magic.name, "plain text", ""};
    for (const Encoding& encoding : encodings) {
        const bool marked = beginsWith(bytes, encoding.mark);
        if (marked || hasTextAt(encoding.place, encoding.width, bytes))
            return {Disguise::Wide, encoding.name, "plain text",
                    withoutNuls(bytes.substr(marked ? encoding.mark.size() : 0))};
    }
    return {};
}

Disguise loneReturnsIn(std::string_view bytes)
{
    if (bytes.find('\n') != std::string_view::npos)
        return {};
    const size_t first = bytes.find('\r');
    if (bytes.find_first_not_of(" \r", first) == std::string_view::npos)
        return {}; /* none, or only after the last line */
    std::string plain(bytes);
    std::replace(plain.begin(), plain.end(), '\r', '\n');
    return {Disguise::LoneReturns, "text whose lines end in CR only", "LF at the end of each line", plain};
}

std::string_view withoutMark(std::string_view bytes)
{
    return beginsWith(bytes, utf8Mark) ? bytes.substr(utf8Mark.size()) : bytes;
}

} // namespace algdata
