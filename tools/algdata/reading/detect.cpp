/* SPDX-License-Identifier: Apache-2.0 */
#include "reading/detect.h"

#include <algorithm>
#include <array>

#include "records/records.h"

namespace algdata
{

namespace
{

/* ---- One line ----------------------------------------------------------- */

/* How well a line matches a kind. */
enum class Fit : uint8_t { None, Damaged, Complete };

bool hasType(const Field& field, Token token)
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

/* The number of wrong fields that a damaged line can have. */
size_t maxWrongFields(const Layout& layout)
{
    return std::max<size_t>(layout.columns.size() / 8, 1);
}

/*
 * A missing or additional field counts as one wrong field. It shifts the fields after it: at the first
 * field of the wrong type, the loop skips a column or a token.
 */
Fit fitOf(const Layout& layout, const std::vector<Token>& tokens, size_t found)
{
    const size_t columns = layout.columns.size();
    if (found + 1 < columns || found > columns + 1)
        return Fit::None;
    bool shifted = found == columns;
    bool intactMac = !hasMac(layout); /* or none is needed */
    size_t wrong = shifted ? 0 : 1;
    for (size_t column = 0, token = 0; column < columns && token < found;) {
        const Field& field = *layout.columns[column].field;
        const bool matches = hasType(field, tokens[token]);
        if (!matches && !shifted) {
            shifted = true;
            ++(found < columns ? column : token);
            continue;
        }
        wrong += matches ? 0 : 1;
        intactMac = intactMac || (matches && field.type == Type::Mac);
        ++column;
        ++token;
    }
    if (wrong == 0)
        return Fit::Complete;
    return intactMac && wrong <= maxWrongFields(layout) ? Fit::Damaged : Fit::None;
}

/* Whether the line can be the beginning of a torn line. Its last field can be torn too. */
bool isStartOf(const Layout& layout, const std::vector<Token>& tokens, size_t found)
{
    const size_t columns = layout.columns.size();
    if (found >= columns || found * 2 < columns)
        return false;
    bool intactMac = false;
    for (size_t i = 0; i + 1 < found; ++i) {
        const Field& field = *layout.columns[i].field;
        if (!hasType(field, tokens[i]))
            return false;
        intactMac = intactMac || field.type == Type::Mac;
    }
    return intactMac;
}

/* ---- All lines, for one kind -------------------------------------------- */

struct Tally {
    const Kind* kind = nullptr;
    size_t lines = 0;
    size_t complete = 0;
    size_t damaged = 0;
    size_t heads = 0;          /* complete lines that begin a record */
    size_t entries = 0;        /* complete lines of an entry */
    bool hasCountLine = false; /* the first line is a count line */
    bool statesNone = false;   /* the first line states that no records or entries follow */

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

/*
 * Whether a first line states that nothing follows: the count line "0", or an index header with count 0.
 * A decision that nothing moves has only zeros too, but two of them have the twelve digits of a MAC.
 */
bool statesNoneFollow(const Kind& kind, const std::vector<Token>& tokens, size_t found)
{
    if (isCountLine(kind, tokens, found))
        return tokens[0] == "0";
    if (kind.shape != Shape::Index || fitOf(kind.head, tokens, found) != Fit::Complete)
        return false;
    for (size_t i = 0; i < found; ++i) {
        const Field& field = *kind.head.columns[i].field;
        const Number number = *wholeNumber(tokens[i]);
        const bool isCount = kind.head.columns[i].name == kind.entries.countName;
        if (isMac(tokens[i]) || number.negative || number.magnitude > (isCount ? 0 : largest(field)))
            return false;
    }
    return true;
}

void addLine(Tally& tally, const std::vector<Token>& tokens, size_t found)
{
    const Kind& kind = *tally.kind;
    const bool first = tally.lines == 0;
    if (first) {
        tally.statesNone = statesNoneFollow(kind, tokens, found);
        tally.hasCountLine = isCountLine(kind, tokens, found);
    }
    if (tally.hasCountLine && first) {
        tally.add(Fit::Complete);
        return;
    }
    const bool entryOnly = kind.shape == Shape::Index && !first;
    const Fit head = entryOnly ? Fit::None : fitOf(kind.head, tokens, found);
    const Fit entry = kind.hasEntries() ? fitOf(kind.entry, tokens, found) : Fit::None;
    tally.heads += head == Fit::Complete ? 1 : 0;
    tally.entries += entry == Fit::Complete ? 1 : 0;
    tally.add(std::max(head, entry));
}

/*
 * Whether the matching lines are enough evidence. A single entry line, or a device line
 * without a count line, can also be a record of another kind. With few fields, a line
 * that has a wrong one matches too easily.
 */
bool isConclusive(const Tally& tally)
{
    constexpr size_t few = 4;
    if (tally.statesNone && tally.lines == 1)
        return true;
    if (tally.kind->shape == Shape::Devices)
        return tally.heads > 0 && (tally.hasCountLine || tally.entries > 0);
    if (tally.kind->shape == Shape::Index)
        return tally.entries > 0 && tally.lines > 1;
    return tally.complete > 0 || tally.kind->head.columns.size() > few;
}

bool fits(const Tally& tally)
{
    const size_t fitting = tally.complete + tally.damaged;
    return fitting > 0 && fitting * 3 >= tally.lines * 2 && isConclusive(tally);
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

/* Counts records instead of lines, because line breaks mean nothing in a stream. A MAC begins a record. */
Tally tallyOfStream(const Kind& kind, std::string_view bytes)
{
    const size_t columns = kind.head.columns.size();
    Tally tally;
    tally.kind = &kind;
    size_t found = 0;
    size_t wrong = 0;
    const auto finish = [&] {
        const bool damaged = found * 2 >= columns && wrong <= maxWrongFields(kind.head);
        tally.add(found == columns && wrong == 0 ? Fit::Complete : damaged ? Fit::Damaged : Fit::None);
        found = wrong = 0;
    };
    eachToken(bytes, [&](Token token) {
        if (found == columns || (found > 0 && beginsStreamRecord(token)))
            finish();
        const bool matches = hasType(*kind.head.columns[found].field, token);
        /* A sequence of numbers without a MAC can be anything. */
        wrong += matches ? 0 : found == 0 ? columns : 1;
        ++found;
    });
    if (found > 0)
        finish();
    return tally;
}

/* ---- The whole file ----------------------------------------------------- */

/* How many fields of a line have to be looked at: those of the longest kind and one more. */
size_t maxFields()
{
    size_t max = 0;
    for (const Kind& kind : kinds())
        max = std::max(max, kind.shape == Shape::Stream ? 0 : kind.head.columns.size() + 1);
    return max;
}

/* Whether a line says nothing about the kind: it is blank, zeroed, or the torn end of the file. */
bool saysNothing(const Line& line, const std::vector<Token>& tokens, bool first)
{
    return tokens.empty() || tokens[0][0] == '\0' || (!first && !line.ended);
}

struct Tallies {
    std::vector<Tally> all;        /* of all kinds except streams */
    std::vector<const Kind*> torn; /* the kinds that a single torn line can belong to */
    size_t lines = 0;
};

Tallies tallyLines(std::string_view bytes)
{
    Tallies tallies;
    for (const Kind& kind : kinds())
        if (kind.shape != Shape::Stream)
            tallies.all.emplace_back().kind = &kind;
    Lines lines(bytes);
    Line line;
    std::vector<Token> tokens;
    const size_t max = maxFields();
    while (lines.next(line)) {
        const size_t found = split(line.text, tokens, max);
        if (saysNothing(line, tokens, tallies.lines == 0))
            continue;
        const bool torn = !line.ended && line.text.back() != '\r';
        for (Tally& tally : tallies.all)
            addLine(tally, tokens, found);
        for (const Kind& kind : kinds())
            if (tallies.lines == 0 && torn && kind.shape == Shape::Lines &&
                isStartOf(kind.head, tokens, found))
                tallies.torn.push_back(&kind);
        ++tallies.lines;
    }
    return tallies;
}

/* The kinds that match best: by complete lines, then by damaged lines. */
std::vector<const Kind*> bestOf(const Tallies& tallies)
{
    std::vector<const Kind*> best;
    std::array<size_t, 2> highest = {0, 0};
    for (const Tally& tally : tallies.all) {
        const std::array<size_t, 2> votes = {tally.complete, tally.damaged};
        if (!fits(tally) || votes < highest)
            continue;
        if (votes > highest)
            best.clear();
        highest = votes;
        best.push_back(tally.kind);
    }
    for (const Kind* kind : tallies.torn)
        if (tallies.lines == 1 && std::find(best.begin(), best.end(), kind) == best.end())
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

/* The kind that the line matches; null if it matches no kind, or can also be an entry line. */
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
 * The fast path: if a few lines from different places of the file all match one kind
 * completely, that is the kind. Otherwise null. So a good file is not split into
 * fields twice.
 */
const Kind* kindOfSample(std::string_view bytes)
{
    constexpr size_t samples = 8;
    const Kind* common = nullptr;
    std::vector<Token> tokens;
    const size_t max = maxFields();
    for (size_t i = 0; i < samples; ++i) {
        const size_t at = bytes.size() * i / samples;
        const size_t begin = i == 0 ? 0 : bytes.find('\n', at) + 1; /* 0 if there is none */
        const size_t end = bytes.find('\n', begin);
        if (end == std::string_view::npos || (i > 0 && begin == 0))
            break;
        const size_t found = split(bytes.substr(begin, end - begin), tokens, max);
        const Kind* kind = onlyKindOf(tokens, found);
        if (kind == nullptr || (common != nullptr && kind != common))
            return nullptr;
        common = kind;
    }
    return common;
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
    const Kind* sampled = kindOfSample(bytes);
    if (sampled != nullptr)
        return detectionOf({sampled});
    const Tallies tallies = tallyLines(bytes);
    if (tallies.lines == 0) {
        Detection blank;
        blank.content = Content::Blank;
        return blank;
    }
    std::vector<const Kind*> fits = bestOf(tallies);
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
    /* Before the bytes as they are: as one line, two records can look like one of another kind. */
    disguise = loneReturnsIn(withoutMark(bytes));
    if (disguise.form != Disguise::None) {
        Detection detection = disguised(std::move(disguise));
        const auto isStream = [](const Kind* kind) { return kind->shape == Shape::Stream; };
        if (!detection.fits.empty() && std::none_of(detection.fits.begin(), detection.fits.end(), isStream))
            return detection;
    }
    return detectPlain(withoutMark(bytes));
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

bool Detection::canBe(const Kind& asked) const
{
    return hasNoRecords() || std::find(fits.begin(), fits.end(), &asked) != fits.end();
}

std::string Detection::reason() const
{
    if (hasNoRecords())
        return "it has no records, so its kind cannot be detected; select the kind with --kind";
    if (content == Content::Disguised)
        return std::string("it is ") + disguise.name + ", expected " + disguise.expected +
               (fits.size() == 1 ? std::string("; the plain text is of kind ") + fits[0]->name : "");
    if (content == Content::Other)
        return "not a record file: its lines match no kind (`algdata kinds` lists the kinds); --kind reads it "
               "anyway";
    std::string names;
    for (const Kind* fit : fits)
        names += (names.empty() ? "" : " and ") + std::string(fit->name);
    return "its content matches " + names + "; select the kind with --kind";
}

} // namespace algdata
