/* SPDX-License-Identifier: Apache-2.0 */
/* What `algdata check` looks for. */
#ifndef ALGDATA_RULES_H
#define ALGDATA_RULES_H

#include <string>
#include <string_view>
#include <vector>

#include "reading/kinds.h"

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
    IndexTooMany
};

/* A note is worth knowing, but no fault: a healthy file may have it. */
enum class Severity : uint8_t { Error, Warning, Note };

const char* nameOf(Severity severity);
std::vector<std::string> severityNames();

struct RuleText {
    Rule rule;
    Severity severity;
    const char* name;
    const char* summary;
    const char* explanation;
};

/* All rules, in the order of the enumeration. */
formats::List<RuleText> rules();

const RuleText& textOf(Rule rule);
std::vector<std::string> ruleNames();

/* Null where there is none. */
const RuleText* findRule(const std::string& name);

/* The rule that a value of the field breaks, of a field that names one. */
Rule ruleOf(const Field& field);

struct Finding {
    size_t line;
    size_t column; /* both from 1 */
    Rule rule;
    std::string field;
    std::string text;
};

/* Every fault of a file, in order of its place. */
std::vector<Finding> findFaults(const Kind& kind, std::string_view bytes);

} // namespace algdata

#endif
