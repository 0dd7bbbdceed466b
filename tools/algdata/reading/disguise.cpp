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

/* Whether every second byte is NUL, beginning with the byte at `first` (0 or 1), and no other byte is. */
bool hasNulsAt(size_t first, std::string_view bytes)
{
    constexpr size_t maxLooked = 512; /* enough to be sure */
    if (bytes.size() < 2 || bytes.size() % 2 != 0)
        return false;
    for (size_t i = 0; i < std::min(bytes.size(), maxLooked); ++i)
        if ((bytes[i] == '\0') != (i % 2 == first))
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
    for (const Magic& magic : compressed)
        if (beginsWith(bytes, magic.start))
            return {Disguise::Compressed, magic.name, "plain text", ""};
    const bool marked = beginsWith(bytes, "\xFF\xFE") || beginsWith(bytes, "\xFE\xFF");
    if (marked || hasNulsAt(0, bytes) || hasNulsAt(1, bytes))
        return {Disguise::Utf16, "UTF-16 text", "plain text", withoutNuls(bytes.substr(marked ? 2 : 0))};
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
