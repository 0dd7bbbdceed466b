/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The rules of `algdata check` and `algdata audit`, and the function that applies the
 * rules of `check` to a file.
 */
#ifndef ALGDATA_RULES_H
#define ALGDATA_RULES_H

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "records/kinds.h"

namespace algdata
{

enum class Rule : uint8_t {
    UnknownKind,
    Compressed,
    Utf16,
    ByteOrderMark,
    EmptyFile,
    FieldCount,
    BlankLine,
    TornRecord,
    NoFinalNewline,
    ZeroedTail,
    NulByte,
    NonText,
    CarriageReturn,
    LoneReturn,
    Tab,
    LeadingBlanks,
    LineTooLong,
    NotANumber,
    OutOfRange,
    LeadingZeros,
    Sign,
    TooWide,
    MacShort,
    MacLong,
    MacEmpty,
    MacNotHex,
    DuplicateKey,
    KeyCase,
    OverCap,
    ExtraLines,
    Position,
    Clamped,
    LoadsAsOne,
    Mimo,
    Strategy,
    PatCount,
    PatEntries,
    PatTooMany,
    PatOrder,
    PatFlags,
    IndexCount,
    IndexTooMany,
    /* The rules of `audit`, except Strategy */
    FatherCycle,
    UnknownFather,
    FatherDiffers,
    RankStep,
    RankDiffers,
    DecisionUnknown,
    DecisionPresent,
    MissingDevice,
    DeviceCase,
    StationTwice,
    ThroughputAboveLink,
    ScoreInputs,
    FrozenSamples,
    FullHistory
};

inline constexpr size_t ruleCount = static_cast<size_t>(Rule::FullHistory) + 1;

/* A note is worth knowing but not a fault: a healthy file may have notes. */
enum class Severity : uint8_t { Error, Warning, Note };

const char* nameOf(Severity severity);
std::vector<std::string> severityNames();

struct RuleText {
    Rule rule;
    Severity severity;
    const char* name;
    const char* summary;
    const char* explanation;
    const char* advice = ""; /* what to do; empty where the explanation says it */
};

/* What a rule is applied to: each file by `check`, all files of a home by `audit`. */
enum class Scope : uint8_t { File, Home };

/* The rules of a command, in the order of the enumeration. */
std::vector<const RuleText*> rulesOf(Scope scope);
std::vector<std::string> ruleNames(Scope scope);

const RuleText& textOf(Rule rule);

/* The rule of this name; null if there is none. */
const RuleText* findRule(Scope scope, const std::string& name);

/* The rule that an invalid value of the field breaks. Only for a field that names a rule. */
Rule ruleOf(const Field& field);

struct Finding {
    size_t line;
    size_t column; /* both from 1 */
    Rule rule;
    std::string field;
    std::string text;
};

/* Of one rule, at most this number of findings is kept, so that a large damaged file needs little memory. */
constexpr size_t maxFindings = 10000;

struct Faults {
    std::vector<Finding> kept;        /* in the order of their places */
    std::array<size_t, ruleCount> of; /* all findings, by rule */

    size_t& operator[](Rule rule) { return of[static_cast<size_t>(rule)]; }
};

/* The faults and notes of a file. */
Faults findFaults(const Kind& kind, std::string_view bytes);

} // namespace algdata

#endif
