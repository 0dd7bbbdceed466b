/* SPDX-License-Identifier: Apache-2.0 */
#include "reading/detect.h"

#include <algorithm>
#include <array>

#include "reading/records.h"

namespace algdata
{

namespace
{

/* ---- One line ----------------------------------------------------------- */

enum class Fit : uint8_t { Foreign, Damaged, Complete };

bool suits(const Field& field, Token token)
{
    if (field.type == Type::Mac)
        return isMac(token);
    return field.type == Type::F32 ? wholeFloat(token).has_value() : wholeNumber(token).has_value();
}

bool hasMac(const Layout& layout)
{
    const auto isMacField = [](const Field& field) { return field.type == Type::Mac; };
    return std::any_of(layout.fields.begin(), layout.fields.end(), isMacField);
}

/* Wrong fields that a damaged line may have. */
size_t tolerated(const Layout& layout)
{
    return std::max<size_t>(layout.columns.size() / 8, 1);
}

/* A field that is missing, or one too many, counts as wrong and shifts those after it. */
Fit fitOf(const Layout& layout, const std::vector<Token>& tokens, size_t found)
{
    const size_t columns = layout.columns.size();
    if (found + 1 < columns || found > columns + 1)
        return Fit::Foreign;
    bool shifted = found == columns;
    bool vouched = !hasMac(layout);
    size_t wrong = shifted ? 0 : 1;
    for (size_t column = 0, token = 0; column < columns && token < found;) {
        const Field& field = *layout.columns[column].field;
        const bool suited = suits(field, tokens[token]);
        if (!suited && !shifted) {
            shifted = true;
            ++(found < columns ? column : token);
            continue;
        }
        wrong += suited ? 0 : 1;
        vouched = vouched || (suited && field.type == Type::Mac);
        ++column;
        ++token;
    }
    if (wrong == 0)
        return Fit::Complete;
    return vouched && wrong <= tolerated(layout) ? Fit::Damaged : Fit::Foreign;
}

/* Of a line that was cut off; the last of its fields may be cut as well. */
bool isStartOf(const Layout& layout, const std::vector<Token>& tokens, size_t found)
{
    const size_t columns = layout.columns.size();
    if (found >= columns || found * 2 < columns)
        return false;
    bool vouched = false;
    for (size_t i = 0; i + 1 < found; ++i) {
        const Field& field = *layout.columns[i].field;
        if (!suits(field, tokens[i]))
            return false;
        vouched = vouched || field.type == Type::Mac;
    }
    return vouched;
}

/* ---- All lines, for one kind -------------------------------------------- */

struct Tally {
    const Kind* kind = nullptr;
    size_t lines = 0;
    size_t complete = 0;
    size_t damaged = 0;
    size_t heads = 0;     /* complete lines of a record's head */
    size_t entries = 0;   /* complete lines of an entry */
    bool counted = false; /* it begins with a count line */
    bool bare = false;    /* its first line says that nothing follows */

    void add(Fit fit)
    {
        ++lines;
        complete += fit == Fit::Complete ? 1 : 0;
        damaged += fit == Fit::Damaged ? 1 : 0;
    }
};

bool isCountLine(const Kind& kind, const std::vector<Token>& tokens, size_t found)
{
    return kind.shape == Shape::Devices && found == 1 && wholeNumber(tokens[0]);
}

/* "0" as a count line, or an index's header of no entries whose numbers all make sense. */
bool saysNothingFollows(const Kind& kind, const std::vector<Token>& tokens, size_t found)
{
    if (isCountLine(kind, tokens, found))
        return tokens[0] == "0";
    if (kind.shape != Shape::Index || fitOf(kind.head, tokens, found) != Fit::Complete)
        return false;
    for (size_t i = 0; i < found; ++i) {
        const Field& field = *kind.head.columns[i].field;
        const Number number = *wholeNumber(tokens[i]);
        const bool counts = kind.head.columns[i].name == kind.entries.countName;
        if (number.negative || number.magnitude > (counts ? 0 : largest(field)))
            return false;
    }
    return true;
}

void addLine(Tally& tally, const std::vector<Token>& tokens, size_t found)
{
    const Kind& kind = *tally.kind;
    const bool first = tally.lines == 0;
    if (first) {
        tally.bare = saysNothingFollows(kind, tokens, found);
        tally.counted = isCountLine(kind, tokens, found);
    }
    if (tally.counted && first) {
        tally.add(Fit::Complete);
        return;
    }
    const bool entryOnly = kind.shape == Shape::Index && !first;
    const Fit head = entryOnly ? Fit::Foreign : fitOf(kind.head, tokens, found);
    const Fit entry = kind.hasEntries() ? fitOf(kind.entry, tokens, found) : Fit::Foreign;
    tally.heads += head == Fit::Complete ? 1 : 0;
    tally.entries += entry == Fit::Complete ? 1 : 0;
    tally.add(std::max(head, entry));
}

/*
 * A single line of an entry can be a record of another kind, and so can a device
 * without a count. Of few fields one that is wrong leaves too little to go by.
 */
bool hasWhatItNeeds(const Tally& tally)
{
    constexpr size_t few = 4;
    if (tally.bare && tally.lines == 1)
        return true;
    if (tally.kind->shape == Shape::Devices)
        return tally.heads > 0 && (tally.counted || tally.entries > 0);
    if (tally.kind->shape == Shape::Index)
        return tally.entries > 0 && tally.lines > 1;
    return tally.complete > 0 || tally.kind->head.columns.size() > few;
}

bool fits(const Tally& tally)
{
    const size_t fitting = tally.complete + tally.damaged;
    return fitting > 0 && fitting * 3 >= tally.lines * 2 && hasWhatItNeeds(tally);
}

/* ---- Streams ------------------------------------------------------------ */

template <typename Visit> void eachToken(std::string_view bytes, Visit visit)
{
    const char* at = bytes.data();
    const char* const end = at + bytes.size();
    for (;;) {
        at = std::find_if_not(at, end, isSpace);
        if (at == end)
            return;
        const char* const begin = at;
        at = std::find_if(at, end, isSpace);
        visit(Token(begin, static_cast<size_t>(at - begin)));
    }
}

/* Records in place of lines: a stream's lines mean nothing. A MAC begins one. */
Tally tallyOfStream(const Kind& kind, std::string_view bytes)
{
    const size_t columns = kind.head.columns.size();
    Tally tally;
    tally.kind = &kind;
    size_t found = 0;
    size_t wrong = 0;
    const auto finish = [&] {
        const bool damaged = found * 2 >= columns && wrong <= tolerated(kind.head);
        tally.add(found == columns && wrong == 0 ? Fit::Complete : damaged ? Fit::Damaged : Fit::Foreign);
        found = wrong = 0;
    };
    eachToken(bytes, [&](Token token) {
        if (found == columns || (found > 0 && beginsStreamRecord(token)))
            finish();
        const bool suited = suits(*kind.head.columns[found].field, token);
        /* Without its MAC a run of numbers can be anything. */
        wrong += suited ? 0 : found == 0 ? columns : 1;
        ++found;
    });
    if (found > 0)
        finish();
    return tally;
}

/* ---- The whole file ----------------------------------------------------- */

/* Fields of a line that count: those of the longest kind, and one that is too many. */
size_t mostFields()
{
    size_t most = 0;
    for (const Kind& kind : kinds())
        most = std::max(most, kind.shape == Shape::Stream ? 0 : kind.head.columns.size() + 1);
    return most;
}

/* What remains of a file that was cut off, or of a block that was never written, tells nothing. */
bool tellsNothing(const Line& line, const std::vector<Token>& tokens, bool first)
{
    return tokens.empty() || tokens[0][0] == '\0' || (!first && !line.ended);
}

struct Lookup {
    std::vector<Tally> tallies;      /* of the kinds that lie in lines */
    std::vector<const Kind*> cutOff; /* those that a single line without its end can begin */
    size_t lines = 0;
};

Lookup lookThrough(std::string_view bytes)
{
    Lookup lookup;
    for (const Kind& kind : kinds())
        if (kind.shape != Shape::Stream)
            lookup.tallies.emplace_back().kind = &kind;
    Lines lines(bytes);
    Line line;
    std::vector<Token> tokens;
    const size_t most = mostFields();
    while (lines.next(line)) {
        const size_t found = split(line.text, tokens, most);
        if (tellsNothing(line, tokens, lookup.lines == 0))
            continue;
        for (Tally& tally : lookup.tallies)
            addLine(tally, tokens, found);
        for (const Kind& kind : kinds())
            if (lookup.lines == 0 && !line.ended && kind.shape == Shape::Lines &&
                isStartOf(kind.head, tokens, found))
                lookup.cutOff.push_back(&kind);
        ++lookup.lines;
    }
    return lookup;
}

/* The kinds that fit best: by complete lines, then by damaged ones. */
std::vector<const Kind*> bestOf(const Lookup& lookup)
{
    std::vector<const Kind*> best;
    std::array<size_t, 2> most = {0, 0};
    for (const Tally& tally : lookup.tallies) {
        const std::array<size_t, 2> votes = {tally.complete, tally.damaged};
        if (!fits(tally) || votes < most)
            continue;
        if (votes > most)
            best.clear();
        most = votes;
        best.push_back(tally.kind);
    }
    for (const Kind* kind : lookup.cutOff)
        if (lookup.lines == 1 && most[0] == 0 && std::find(best.begin(), best.end(), kind) == best.end())
            best.push_back(kind);
    return best;
}

std::vector<const Kind*> streamsThatFit(std::string_view bytes)
{
    std::vector<const Kind*> found;
    for (const Kind& kind : kinds())
        if (kind.shape == Shape::Stream && fits(tallyOfStream(kind, bytes)))
            found.push_back(&kind);
    return found;
}

/* Null where the line fits no kind of lines, or can stand in a file of another shape too. */
const Kind* onlyKindOf(const std::vector<Token>& tokens, size_t found)
{
    const Kind* only = nullptr;
    for (const Kind& kind : kinds()) {
        if (kind.hasEntries() && kind.entry.columns.size() == found)
            return nullptr;
        if (kind.shape == Shape::Lines && fitOf(kind.head, tokens, found) == Fit::Complete)
            only = &kind;
    }
    return only;
}

/*
 * A few lines spread over the file settle it when all fit one kind completely,
 * so that a good file is not split into fields twice.
 */
const Kind* settledBySample(std::string_view bytes)
{
    constexpr size_t samples = 8;
    const Kind* settled = nullptr;
    std::vector<Token> tokens;
    const size_t most = mostFields();
    for (size_t i = 0; i < samples; ++i) {
        const size_t at = bytes.size() * i / samples;
        const size_t begin = i == 0 ? 0 : bytes.find('\n', at) + 1; /* 0 also where there is none */
        const size_t end = bytes.find('\n', begin);
        if (end == std::string_view::npos || (i > 0 && begin == 0))
            break;
        const size_t found = split(bytes.substr(begin, end - begin), tokens, most);
        const Kind* kind = onlyKindOf(tokens, found);
        if (kind == nullptr || (settled != nullptr && kind != settled))
            return nullptr;
        settled = kind;
    }
    return settled;
}

Detection detectionOf(std::vector<const Kind*> fits)
{
    Detection detection;
    if (!fits.empty())
        detection.content = Content::Records;
    if (fits.size() == 1)
        detection.kind = fits[0];
    detection.fits = std::move(fits);
    return detection;
}

Detection detectPlain(std::string_view bytes)
{
    const Kind* settled = settledBySample(bytes);
    if (settled != nullptr)
        return detectionOf({settled});
    const Lookup lookup = lookThrough(bytes);
    if (lookup.lines == 0) {
        Detection blank;
        blank.content = Content::Blank;
        return blank;
    }
    std::vector<const Kind*> fits = bestOf(lookup);
    if (fits.empty())
        fits = streamsThatFit(bytes);
    return detectionOf(std::move(fits));
}

Detection disguised(Disguise disguise)
{
    Detection detection = detectPlain(disguise.plain);
    detection.content = Content::Disguised;
    detection.kind = nullptr;
    detection.disguise = std::move(disguise);
    return detection;
}

} // namespace

Detection detectKind(std::string_view bytes)
{
    if (bytes.empty()) {
        Detection empty;
        empty.content = Content::Empty;
        return empty;
    }
    Disguise disguise = disguiseOf(bytes);
    if (disguise.form != Disguise::None)
        return disguised(std::move(disguise));
    Detection detection = detectPlain(withoutMark(bytes));
    if (detection.content != Content::Other)
        return detection;
    disguise = loneReturnsIn(bytes);
    if (disguise.form == Disguise::None)
        return detection;
    Detection underneath = disguised(std::move(disguise));
    return underneath.fits.empty() ? detection : underneath;
}

Detection detectKind(std::string_view bytes, const Kind* asked)
{
    if (asked == nullptr)
        return detectKind(bytes);
    Disguise disguise = disguiseOf(bytes);
    return disguise.form != Disguise::None ? disguised(std::move(disguise)) : detectionOf({asked});
}

bool Detection::isRecordFile() const
{
    return content == Content::Disguised ? !fits.empty() : content != Content::Other;
}

bool Detection::mayBe(const Kind& asked) const
{
    return hasNoRecords() || std::find(fits.begin(), fits.end(), &asked) != fits.end();
}

std::string Detection::reason() const
{
    if (hasNoRecords())
        return "it holds no records, so its content does not tell the kind; choose one with --kind";
    if (content == Content::Disguised)
        return std::string("it is ") + disguise.name + ", expected " + disguise.expected +
               (fits.size() == 1 ? std::string("; as such it would be ") + fits[0]->name : "");
    if (content == Content::Other)
        return "not a record file: its lines fit no kind (`algdata kinds` lists them); choose one with "
               "--kind "
               "to read it nevertheless";
    std::string names;
    for (const Kind* fit : fits)
        names += (names.empty() ? "" : " or ") + std::string(fit->name);
    return "its content fits " + names + "; choose one with --kind";
}

} // namespace algdata
