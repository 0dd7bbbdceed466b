/* SPDX-License-Identifier: Apache-2.0 */
#include "reading/detect.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "reading/records.h"

namespace algdata
{

namespace
{

/* How many lines speak for each kind, by its place in the table. */
using Votes = std::vector<size_t>;

constexpr size_t linesThatSettle = 8;

struct Lengths {
    using Counts = std::array<size_t, 256>; /* lines by their number of fields; the last for all above */
    Counts of{};
    Counts withMac{}; /* of these, lines that begin with a MAC */
    size_t lines = 0;
    size_t fields = 0;
    std::vector<Token> first; /* fields of the first line */
    size_t firstFound = 0;
};

Lengths measure(std::string_view bytes, size_t mostLines)
{
    Lengths lengths;
    Lines lines(bytes);
    Line line;
    std::vector<Token> tokens;
    while (lengths.lines < mostLines && lines.next(line)) {
        const size_t found = split(line.text, tokens, 64);
        if (found == 0 || tokens[0][0] == '\0')
            continue;
        if (lengths.lines != 0 && !line.ended)
            continue; /* perhaps torn: the lines before it know better */
        if (lengths.lines++ == 0) {
            lengths.first = tokens;
            lengths.firstFound = found;
        }
        lengths.fields += found;
        const size_t length = std::min(found, lengths.of.size() - 1);
        ++lengths.of[length];
        lengths.withMac[length] += isMacLike(tokens[0]);
    }
    return lengths;
}

size_t votesForDevices(const Lengths& lengths)
{
    const bool countLine = lengths.firstFound == 1 && wholeNumber(lengths.first[0]);
    if (!countLine && lengths.of[6] == 0)
        return 0;
    return lengths.of[6] + lengths.of[2] + (countLine ? 1 : 0);
}

size_t votesForIndex(const Lengths& lengths)
{
    const bool header = lengths.firstFound == 4 && !isMacLike(lengths.first[0]);
    return header || lengths.lines > 1 ? lengths.withMac[4] + (header ? 1 : 0) : 0;
}

size_t votesForOutput(const Lengths& lengths)
{
    return lengths.firstFound == 4 && isMacLike(lengths.first[0]) ? lengths.withMac[4] : 0;
}

size_t votesFor(const Kind& kind, const Lengths& lengths)
{
    switch (kind.shape) {
    case Shape::Devices:
        return votesForDevices(lengths);
    case Shape::Index:
        return votesForIndex(lengths);
    case Shape::Stream:
    case Shape::Lines:
        break;
    }
    const size_t columns = kind.head.columns.size();
    if (columns == 4)
        return votesForOutput(lengths);
    const bool macFirst = kind.head.columns[0].field->type == Type::Mac;
    return macFirst ? lengths.withMac[columns] : lengths.of[columns] - lengths.withMac[columns];
}

/* For damaged files in which no line is whole: the kind whose first line comes nearest. */
size_t nearness(const Kind& kind, const Lengths& lengths)
{
    constexpr size_t reach = 3;
    const size_t columns = kind.head.columns.size();
    if (kind.shape == Shape::Stream) /* its lines can have any length */
        return isMacLike(lengths.first[0]) && lengths.fields > columns / 2 ? reach : 0;
    if (kind.shape != Shape::Lines || columns < 5)
        return 0;
    const size_t found = lengths.firstFound;
    const size_t apart = found > columns ? found - columns : columns - found;
    const bool macFirst = kind.head.columns[0].field->type == Type::Mac;
    return apart >= reach || macFirst != isMacLike(lengths.first[0]) ? 0 : reach - apart;
}

template <typename Count> Detection best(Count count)
{
    Detection detection;
    size_t most = 0;
    for (const Kind& kind : kinds()) {
        const size_t votes = count(kind);
        if (votes == 0 || votes < most)
            continue;
        if (votes > most)
            detection.fits.clear();
        most = votes;
        detection.fits.push_back(&kind);
    }
    if (detection.fits.size() == 1)
        detection.kind = detection.fits[0];
    return detection;
}

/* A few lines of one length that only one kind has need no count of the others. */
const Kind* settledByFirstLines(const Lengths& lengths)
{
    const size_t found = lengths.firstFound;
    if (found < 5 || found == 6 || found >= lengths.of.size() || lengths.of[found] != lengths.lines)
        return nullptr;
    for (const Kind& kind : kinds())
        if (kind.shape == Shape::Lines && kind.head.columns.size() == found)
            return &kind;
    return nullptr;
}

} // namespace

Detection detectKind(std::string_view bytes)
{
    Detection detection;
    Lengths lengths = measure(bytes, linesThatSettle);
    if (lengths.lines == 0) {
        lengths = measure(bytes, SIZE_MAX);
        detection.empty = lengths.lines == 0;
        if (detection.empty)
            return detection;
    }
    detection.kind = settledByFirstLines(lengths);
    if (detection.kind != nullptr)
        return detection;
    lengths = measure(bytes, SIZE_MAX);
    detection = best([&](const Kind& kind) { return votesFor(kind, lengths); });
    return detection.fits.empty() ? best([&](const Kind& kind) { return nearness(kind, lengths); })
                                  : detection;
}

std::string Detection::reason() const
{
    if (empty)
        return "it holds no records, so its content does not tell the kind; choose one with --kind";
    if (fits.empty())
        return "its lines fit no kind; choose one with --kind (`algdata kinds` lists them)";
    std::string names;
    for (const Kind* fit : fits)
        names += (names.empty() ? "" : " or ") + std::string(fit->name);
    return "its content fits " + names + "; choose one with --kind";
}

} // namespace algdata
