/* SPDX-License-Identifier: Apache-2.0 */
#include "checking/rules.h"

#include <iterator>

namespace algdata
{

namespace
{

/* In the order of the enumeration. */
constexpr const char* severityTexts[] = {"error", "warning", "note"};

/* In the order of the enumeration. */
constexpr RuleText table[] = {
    {Rule::UnknownKind, Severity::Error, "unknown-kind", "no kind of record file fits the content",
     "A file is of the kind that at least two thirds of its lines fit, by their number of fields, their "
     "MACs and their numbers. Such a line may have one field missing or too many, or one field in eight "
     "(at least one) that is something else, as long as one of its MACs is whole. Of kinds with up to four "
     "fields, one line must fit completely. Where no kind fits, or two fit equally well, the file cannot be "
     "checked: choose the kind with --kind. Files of a directory that fit no kind are only counted."},
    {Rule::Compressed, Severity::Error, "compressed", "the file is compressed",
     "Readers read plain text only. Decompress the file first, for instance with `zcat FILE | algdata check "
     "-`. A compressed file of a directory is only counted, for its kind cannot be told."},
    {Rule::Utf16, Severity::Error, "utf-16", "the file is UTF-16 text",
     "Every second byte is a NUL byte, which ends a line for the readers that parse lines and is part of a "
     "text for the others: no field is read as it stands. An editor saved the file in this form. "
     "`iconv -f UTF-16 -t ASCII` brings it back."},
    {Rule::ByteOrderMark, Severity::Error, "byte-order-mark", "the file begins with a byte order mark",
     "An editor puts the three bytes EF BB BF before text that it saves as UTF-8. To the readers they are "
     "part of the first field. A MAC takes them in and loses its last three characters to the next field; "
     "a number is not read, and neither is what follows it."},
    {Rule::EmptyFile, Severity::Note, "empty-file", "the file holds no records",
     "An empty file is valid for every kind: readers return with nothing. The version 2 PAT reader fills "
     "it with its default record. It is worth a look because a write that was interrupted right after "
     "opening leaves one, too."},
    {Rule::FieldCount, Severity::Error, "field-count", "a line has too few or too many fields",
     "Every kind has a fixed number of fields per line. Readers that parse line by line accept a short "
     "line and leave the missing fields as the array held them, and ignore what is too many. Readers "
     "that parse field after field take the missing fields from the next line, or the extra ones as the "
     "beginning of the next record: every value after that place belongs to another field. No reader "
     "reports either."},
    {Rule::BlankLine, Severity::Error, "blank-line", "a line holds nothing but white space",
     "Records are counted by lines, so a blank line counts as a record. What follows differs by kind: "
     "most readers fail on it, and with them every update and append; the time-delay functions silently "
     "drop the next record that is inserted. The finding says which. The PAT readers skip blank lines."},
    {Rule::TornRecord, Severity::Error, "torn-record", "the file ends in the middle of a record",
     "The last line has no newline and too few fields: the write of the file was cut off. Writers "
     "truncate the file first and write it whole, so a power cut or a full disk leaves such an end."},
    {Rule::NoFinalNewline, Severity::Warning, "no-final-newline", "the last line does not end in a newline",
     "Readers accept the line. But every writer ends each line with a newline, so the write may have "
     "been cut off inside the last number, which then reads as a smaller one."},
    {Rule::ZeroedTail, Severity::Error, "zeroed-tail", "the file ends in NUL bytes",
     "A power cut can leave the end of a file as zeros. Line readers stop at the first NUL byte of a "
     "line and count the line as a record; field readers read the NUL bytes as part of a text."},
    {Rule::NulByte, Severity::Error, "nul-byte", "a NUL byte in the middle of the text",
     "To a reader that parses lines a NUL byte ends the line: the fields after it keep what the array "
     "held, and a line that begins with one is a blank line."},
    {Rule::NonText, Severity::Error, "non-text", "a byte that no writer prints",
     "Record files hold letters, digits, points, signs, blanks and newlines. Anything else came from "
     "elsewhere: a damaged block, a file of another program."},
    {Rule::CarriageReturn, Severity::Warning, "carriage-return", "lines end in CR LF",
     "The readers read a carriage return as white space, so nothing is lost; the file went through an "
     "editor or a transfer that changes line ends."},
    {Rule::LoneReturn, Severity::Error, "lone-return", "a carriage return without a line feed",
     "The readers read a carriage return as white space, and only a line feed ends a line. Text whose lines "
     "end in CR alone is one line to them: they count one record, and the others are not read."},
    {Rule::Tab, Severity::Warning, "tab", "a tab or other white space in place of a blank",
     "No writer prints one. The readers skip it like a blank, so nothing is lost; the file was written or "
     "edited by something else. The first one is reported, with the number of lines that have one."},
    {Rule::LeadingBlanks, Severity::Warning, "leading-blanks",
     "lines begin with more blanks than a writer prints",
     "The readers skip them, so nothing is lost; the file was written or edited by something else. The "
     "first such line is reported, with their number. Blanks in place of an empty MAC are `mac-empty`."},
    {Rule::LineTooLong, Severity::Error, "line-too-long", "a line of 1023 characters or more",
     "Lines are counted and read through a buffer of 1024 bytes: a line of 1023 characters or more is "
     "counted and parsed as two records, split at an arbitrary place."},
    {Rule::NotANumber, Severity::Error, "not-a-number", "a numeric field holds something else",
     "A formatted read stops at the first character that does not fit. A line reader leaves this field "
     "and all after it as the array held them. A field reader stays at the place: every numeric field "
     "that follows fails in the same way until a text field consumes the characters. Neither reports it."},
    {Rule::OutOfRange, Severity::Error, "out-of-range", "a number does not fit the field's type",
     "The number is cut to the field's 8, 16 or 32 bits without a message: 300 reads as 44 in an 8-bit "
     "field, -1 as 255."},
    {Rule::LeadingZeros, Severity::Warning, "leading-zeros", "a number with leading zeros",
     "No writer prints one. The readers read 007 as 7, in decimal. But an update compares and writes the "
     "number, so the next write changes the text."},
    {Rule::Sign, Severity::Warning, "sign", "a number with a sign that no writer prints",
     "The readers read +7 as 7 and -0 as 0. But an update compares and writes the number, so the next write "
     "changes the text."},
    {Rule::TooWide, Severity::Error, "too-wide", "a number has more digits than are read",
     "The station and scanning readers read at most 2, 3 or 4 digits for some fields. The digits that "
     "are left over become the next field, and every later field of the line takes the value before it. "
     "A station file of more than 1000 lines always has it: its positions reach 4 digits."},
    {Rule::MacShort, Severity::Error, "mac-short", "a MAC of fewer than 12 characters",
     "Readers accept it. It matches no 12-digit key."},
    {Rule::MacLong, Severity::Error, "mac-long", "a MAC of more than 12 characters",
     "A MAC is read with at most 12 characters. The rest becomes the next field, and all that follow "
     "shift."},
    {Rule::MacEmpty, Severity::Error, "mac-empty", "blanks where a MAC should stand",
     "An empty MAC is written as 12 blanks. On reading they are skipped as white space and the next "
     "field takes the MAC's place; all that follow shift."},
    {Rule::MacNotHex, Severity::Error, "mac-not-hex", "a MAC with a character that is no hexadecimal digit",
     "Readers accept any characters. Such a MAC matches no device."},
    {Rule::DuplicateKey, Severity::Warning, "duplicate-key", "the same key twice",
     "Updates replace, and deletes remove, the first record with a key; later ones stay as they are and "
     "grow stale. Kinds that are histories (station, scanning, time-delay, bridging) may repeat keys."},
    {Rule::KeyCase, Severity::Warning, "key-case", "MACs that differ in letter case only",
     "Keys are compared exactly. A MAC in another letter case is another device: updates add a second "
     "record instead of replacing the first."},
    {Rule::OverCap, Severity::Warning, "over-cap", "more records than the kind's functions keep",
     "The next append cuts a station file to the newest 128, a scanning or time-delay file to the newest "
     "256. A bridging log of more than 64 keeps its length. An AP node or detail reader reads at most "
     "255 records at once. A version 2 PAT file's device count is read in 8 bits."},
    {Rule::ExtraLines, Severity::Warning, "extra-lines", "lines that are never read",
     "Of an algorithm output file only the first line is read."},
    {Rule::Position, Severity::Warning, "position", "positions do not count 0, 1, 2, ...",
     "Every write of a station file numbers the lines from 0. Another order shows that lines were lost, "
     "moved or added by other means."},
    {Rule::Clamped, Severity::Warning, "clamped", "a value that the reader cuts to its largest",
     "The readers bound some values before the algorithm sees them: delays to at most 1000, rates to at "
     "most 10000. What the file says beyond that is lost to the algorithm."},
    {Rule::LoadsAsOne, Severity::Note, "loads-as-one", "a value that the reader raises to 1",
     "Where a reader would return 0 it returns 1: for a delay of 0, an RSSI of 3 and below, a utilization "
     "of 95 and above. Such values are usual, but the algorithm cannot tell them from 1. A rate of 0, as "
     "of a band that is not in use, is raised as well but not reported."},
    {Rule::Mimo, Severity::Warning, "mimo", "a stream count outside the MIMO codes",
     "The codes are 0, 1, 2, 3, 4, 8 and 99. A sample with any other value is left alone when rates are "
     "brought to two streams."},
    {Rule::Strategy, Severity::Error, "strategy", "a strategy outside 0 to 3",
     "Strategies are 0 unknown, 1 careful, 2 radical, 3 get best. Readers return any number."},
    {Rule::PatCount, Severity::Error, "pat-count", "the PAT count line and the devices differ",
     "The first line of a version 2 PAT file says how many devices follow. Of more devices the last are "
     "not read; of fewer, the reader logs the end of the file for each missing one and returns what the "
     "array held."},
    {Rule::PatEntries, Severity::Error, "pat-entries", "commonPatNum and the entries differ",
     "commonPatNum says how many entry lines follow. Where they differ the reader reads an entry as a "
     "device or a device as an entry, and all that follow shift."},
    {Rule::PatTooMany, Severity::Error, "pat-too-many", "commonPatNum is over 100",
     "A device has room for 100 entries. The reader keeps the first 100 and reads past the others."},
    {Rule::PatOrder, Severity::Error, "pat-order", "a PAT order outside its 5, 5 or 4 places",
     "bandOrder and channelWidthOrder are 0 to 4, mcsOrder is 0 to 3. Any other has no peak threshold: "
     "it counts as 1."},
    {Rule::PatFlags, Severity::Warning, "pat-flags", "isChanged has bits that mean nothing",
     "Bit 0 says that paraB changed, bit 1 that paraC did."},
    {Rule::IndexCount, Severity::Error, "index-count", "cnt and the ranked devices differ",
     "The header's cnt says how many entry lines follow. Readers read all entry lines but report cnt: of "
     "more entries the last are lost on the next write, of fewer the rest are whatever the array held."},
    {Rule::IndexTooMany, Severity::Error, "index-too-many", "more than 30 ranked devices",
     "A ranking has room for 30 devices. The reader refuses a file with more entry lines. A larger cnt "
     "is loaded as it stands, and a host that trusts it reads past the entries."},
};

constexpr bool isInOrder()
{
    for (size_t i = 0; i < std::size(table); ++i)
        if (static_cast<size_t>(table[i].rule) != i)
            return false;
    return true;
}
static_assert(isInOrder());

constexpr const RuleText* find(const char* name)
{
    for (const RuleText& text : table)
        if (formats::sameText(text.name, name))
            return &text;
    return nullptr;
}

constexpr bool areKnown(const formats::List<Field>& fields)
{
    for (const Field& field : fields)
        if (field.rule[0] != '\0' && find(field.rule) == nullptr)
            return false;
    return true;
}

/* A field names the rule that its values can break. */
constexpr bool fieldsNameKnownRules()
{
    for (const formats::Kind* kind : formats::kinds)
        if (!areKnown(kind->record.fields) || !areKnown(kind->entries.layout.fields))
            return false;
    return true;
}
static_assert(fieldsNameKnownRules());

} // namespace

const char* nameOf(Severity severity)
{
    return severityTexts[static_cast<size_t>(severity)];
}

std::vector<std::string> severityNames()
{
    return {std::begin(severityTexts), std::end(severityTexts)};
}

formats::List<RuleText> rules()
{
    return formats::listOf(table);
}

const RuleText& textOf(Rule rule)
{
    return table[static_cast<size_t>(rule)];
}

std::vector<std::string> ruleNames()
{
    std::vector<std::string> names;
    for (const RuleText& text : table)
        names.emplace_back(text.name);
    return names;
}

const RuleText* findRule(const std::string& name)
{
    return find(name.c_str());
}

Rule ruleOf(const Field& field)
{
    return find(field.rule)->rule;
}

} // namespace algdata
