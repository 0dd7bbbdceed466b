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
    {Rule::UnknownKind, Severity::Error, "unknown-kind", "the kind of the file cannot be detected",
     "A file is of a kind if at least two thirds of its lines match the kind: its number of fields, its MACs "
     "and its numbers. A matching line may be damaged: one field missing or too many, or one field in eight "
     "(at least one) of the wrong type, as long as one of its MACs is intact. For kinds with up to four "
     "fields, at least one line must match completely. If no kind matches, or two match equally well, the "
     "file cannot be checked: select the kind with --kind. In a directory, files that match no kind are "
     "only counted."},
    {Rule::Compressed, Severity::Error, "compressed", "the file is compressed",
     "Readers read plain text only. Decompress the file first, for example with `zcat FILE | algdata check "
     "-`. In a directory, compressed files are only counted, because their kind cannot be detected."},
    {Rule::Utf16, Severity::Error, "utf-16", "the file is UTF-16 or UTF-32 text",
     "Every second byte is a NUL byte, or three of four. It ends the line for readers that parse lines, and is part of a text "
     "for the others, so no field is read correctly. An editor saved the file in this encoding. "
     "`iconv -f UTF-16 -t ASCII` restores it, or with UTF-32 instead of UTF-16."},
    {Rule::ByteOrderMark, Severity::Error, "byte-order-mark", "the file begins with a byte order mark",
     "Some editors write the three bytes EF BB BF before text that they save as UTF-8. For the readers they "
     "are part of the first field. A MAC field consumes them, and the last three characters of the MAC "
     "become the next field. A number field is not read, and neither are the fields after it."},
    {Rule::EmptyFile, Severity::Note, "empty-file", "the file has no records",
     "An empty file is valid for every kind: readers return no records. The version 2 PAT reader fills "
     "the file with its default record. A write that was interrupted right after opening the file also "
     "leaves an empty file."},
    {Rule::FieldCount, Severity::Error, "field-count", "a line has too few or too many fields",
     "Every kind has a fixed number of fields per line. Readers that parse lines accept a short line: the "
     "missing fields keep the array's old values. They ignore extra fields. Readers that parse field after "
     "field read the missing fields from the next line, and extra fields as the beginning of the next "
     "record: every later value goes into the wrong field. No reader reports it."},
    {Rule::BlankLine, Severity::Error, "blank-line", "a line has only white space",
     "Records are counted by lines, so a blank line counts as a record. The effect depends on the kind, and "
     "the finding states it. Most readers fail on a blank line, and with them every update and append. "
     "The time-delay functions silently drop the next record that is inserted. The PAT readers skip blank "
     "lines."},
    {Rule::TornRecord, Severity::Error, "torn-record", "the file ends in the middle of a record",
     "The last line has no newline and too few fields: the file was not written completely. Writers truncate "
     "the file and then write all of it, so a power failure or a full disk can leave such an end."},
    {Rule::NoFinalNewline, Severity::Warning, "no-final-newline", "the last line does not end in a newline",
     "Readers accept the line. But every writer ends each line with a newline, so the write may have "
     "stopped inside the last number, which then reads as a smaller number."},
    {Rule::ZeroedTail, Severity::Error, "zeroed-tail", "the file ends in NUL bytes",
     "A power failure can leave zeros at the end of a file. Readers that parse lines stop at the first NUL "
     "byte of a line and count the line as a record. The other readers read the NUL bytes as part of a text."},
    {Rule::NulByte, Severity::Error, "nul-byte", "a NUL byte in the middle of the text",
     "For a reader that parses lines, a NUL byte ends the line: the fields after it keep the array's old "
     "values, and a line that begins with a NUL byte is a blank line."},
    {Rule::NonText, Severity::Error, "non-text", "a byte that no writer prints",
     "Record files contain only letters, digits, points, signs, blanks and newlines. Any other byte comes "
     "from a damaged block or from another program."},
    {Rule::CarriageReturn, Severity::Warning, "carriage-return", "lines end in CR LF",
     "The readers skip a carriage return as white space, so nothing is lost. An editor or a file transfer "
     "changed the line ends."},
    {Rule::LoneReturn, Severity::Error, "lone-return", "a carriage return without a line feed",
     "The readers skip a carriage return as white space; only a line feed ends a line. Text whose lines end "
     "in CR only is one line for them: they count one record and do not read the others."},
    {Rule::Tab, Severity::Warning, "tab", "a tab or other white space instead of a blank",
     "The readers skip it like a blank, so nothing is lost. But no writer prints it: another program or a "
     "person changed the file. Only the first one is reported, with the number of affected lines."},
    {Rule::LeadingBlanks, Severity::Warning, "leading-blanks",
     "lines begin with more blanks than a writer prints",
     "The readers skip the blanks, so nothing is lost. But no writer prints them: another program or a person "
     "changed the file. Only the first line is reported, with the number of affected lines. For the blanks "
     "of an empty MAC see `mac-empty`."},
    {Rule::LineTooLong, Severity::Error, "line-too-long", "a line of 1023 characters or more",
     "Lines are counted and read through a buffer of 1024 bytes. A line of 1023 characters or more is "
     "counted and parsed as two records, and the split can be inside a value."},
    {Rule::NotANumber, Severity::Error, "not-a-number", "a number field has a text that is not a number",
     "A formatted read stops at the first character that does not match. In a reader that parses lines, this "
     "field and all later fields of the line keep the array's old values. A reader that parses field after "
     "field stays at the character: no later number is read until a text field consumes it. No reader "
     "reports it."},
    {Rule::OutOfRange, Severity::Error, "out-of-range", "a number does not fit the field's type",
     "The number is truncated to the field's 8, 16 or 32 bits without a message: in an 8-bit field 300 reads "
     "as 44, and -1 as 255."},
    {Rule::LeadingZeros, Severity::Warning, "leading-zeros", "a number with leading zeros",
     "No writer prints leading zeros. The readers read 007 as the decimal number 7. An update writes the "
     "number, so the next write changes the text."},
    {Rule::Sign, Severity::Warning, "sign", "a number with a sign that no writer prints",
     "The readers read +7 as 7 and -0 as 0. An update writes the number, so the next write changes the "
     "text."},
    {Rule::TooWide, Severity::Error, "too-wide", "a number has more digits than are read",
     "The station and scanning readers read at most 2, 3 or 4 digits of some fields. The remaining digits are "
     "read as the next field, and every later field of the line gets the value of the field before it. "
     "Every station file of more than 1000 lines has this fault, because its positions reach 4 digits."},
    {Rule::MacShort, Severity::Error, "mac-short", "a MAC of fewer than 12 characters",
     "Readers accept it, but it matches no key of 12 digits."},
    {Rule::MacLong, Severity::Error, "mac-long", "a MAC of more than 12 characters",
     "At most 12 characters of a MAC are read. The rest is read as the next field, and all later fields "
     "shift."},
    {Rule::MacEmpty, Severity::Error, "mac-empty", "blanks instead of a MAC",
     "Writers print an empty MAC as 12 blanks. Readers skip them as white space and read the next field as "
     "the MAC; all later fields shift."},
    {Rule::MacNotHex, Severity::Error, "mac-not-hex",
     "a MAC with a character that is not a hexadecimal digit",
     "Readers accept any characters, but such a MAC matches no device."},
    {Rule::DuplicateKey, Severity::Warning, "duplicate-key", "the same key twice",
     "An update replaces, and a delete removes, only the first record of a key; later records stay and "
     "become outdated. Keys may repeat in the kinds that are histories (station, scanning, time-delay, "
     "bridging)."},
    {Rule::KeyCase, Severity::Warning, "key-case", "MACs that differ in letter case only",
     "Keys are compared exactly, so a MAC in another letter case is another device: an update adds a second "
     "record instead of replacing the first."},
    {Rule::OverCap, Severity::Warning, "over-cap", "more records than the kind's functions keep",
     "The next append keeps only the newest 128 records of a station file, and the newest 256 of a scanning "
     "or time-delay file. A bridging log of more than 64 records keeps its length. The ap-node and "
     "ap-all-detail readers read at most 255 records per call. The device count of a version 2 PAT file is "
     "read into 8 bits."},
    {Rule::ExtraLines, Severity::Warning, "extra-lines", "lines that are never read",
     "Only the first line of an algorithm output file is read."},
    {Rule::Position, Severity::Warning, "position", "positions are not 0, 1, 2, ...",
     "Every write of a station file numbers its lines from 0. Other positions show that something else "
     "removed, moved or added lines."},
    {Rule::Clamped, Severity::Warning, "clamped", "a value above the reader's maximum",
     "The readers bound some values before the algorithm sees them: delays to 1000, rates to 10000. The "
     "algorithm does not see the larger value of the file."},
    {Rule::LoadsAsOne, Severity::Note, "loads-as-one", "a value that the reader raises to 1",
     "Some readers return 1 instead of 0: for a delay of 0, an RSSI of at most 3 and a utilization of at "
     "least 95. Such values are common, but the algorithm cannot distinguish them from 1. A rate of 0, the "
     "usual rate of an unused band, is raised too but not reported."},
    {Rule::Mimo, Severity::Warning, "mimo", "a stream count outside the MIMO codes",
     "The codes are 0, 1, 2, 3, 4, 8 and 99. When rates are converted to two streams, a sample with any "
     "other code is not converted."},
    {Rule::Strategy, Severity::Error, "strategy", "a strategy outside 0 to 3",
     "The strategies are 0 unknown, 1 careful, 2 radical and 3 get best. Readers accept any number.",
     "Let the algorithm decide again. A strategy that comes back shows that the record was not initialised."},
    {Rule::PatCount, Severity::Error, "pat-count", "the PAT count line and the devices differ",
     "The first line of a version 2 PAT file states how many devices follow. If there are more, the last ones "
     "are not read. If there are fewer, the reader logs the end of the file for each missing device and "
     "returns the array's old values for it."},
    {Rule::PatEntries, Severity::Error, "pat-entries", "commonPatNum and the entries differ",
     "commonPatNum states how many entry lines follow. If the number differs, the reader reads an entry as a "
     "device or a device as an entry, and all later values shift."},
    {Rule::PatTooMany, Severity::Error, "pat-too-many", "commonPatNum is over 100",
     "A device has at most 100 entries. The reader keeps the first 100 and skips the others."},
    {Rule::PatOrder, Severity::Error, "pat-order", "a PAT order outside its range",
     "bandOrder and channelWidthOrder are 0 to 4, mcsOrder is 0 to 3. For any other order there is no peak "
     "threshold, and 1 is used instead."},
    {Rule::PatFlags, Severity::Warning, "pat-flags", "isChanged has bits without a meaning",
     "Bit 0 means that paraB changed, bit 1 that paraC changed."},
    {Rule::IndexCount, Severity::Error, "index-count", "cnt and the ranked devices differ",
     "The header's cnt states how many entry lines follow. The reader reads all entry lines but returns cnt. "
     "If there are more lines, the last ones are lost on the next write. If there are fewer, the remaining "
     "entries keep the array's old values."},
    {Rule::IndexTooMany, Severity::Error, "index-too-many", "more than 30 ranked devices",
     "A ranking has at most 30 devices. The reader refuses a file with more entry lines. But it returns a "
     "larger cnt as it is, and a host that relies on cnt reads past the end of the array."},

    /* ---- Across files ---- */

    {Rule::FatherCycle, Severity::Error, "father-cycle", "devices whose fathers form a cycle",
     "Each device has a path of fathers to the FAP. A device that is its own father, or that is above its "
     "own father, has none: whoever follows the fathers never arrives.",
     "Compare the fathers in the files that the finding lists. Often one file is older than the others: a "
     "device moved while they were saved. If all agree, the devices reported each other: look for the moves "
     "before."},
    {Rule::UnknownFather, Severity::Error, "unknown-father", "a father that no file lists as a device",
     "The rank index, AP rank, ap-node and ap-all files list every device of the mesh. The father of a "
     "device, or a father with a score, must be one of them. This rule needs at least one of these files.",
     "If the father has left the home, its sons have to be measured again. If not, it is missing in the "
     "files: see the time of the files and the FAP's list of nodes."},
    {Rule::FatherDiffers, Severity::Warning, "father-differs", "files state different fathers of a device",
     "The files of the present are compared: rank index, ap-node, ap-all, bridging, and the father over "
     "Ethernet of AP rank, if there is one. Histories and older copies are not. The first file of this order "
     "is believed.",
     "Take the files of one moment. If they are, the device moved between a measurement and the ranking: the "
     "next round corrects it. A difference that stays comes from a file that is no longer saved."},
    {Rule::RankStep, Severity::Error, "rank-step", "a rank that is not the father's plus one",
     "The rank is the hop level. Both ranks come from files of one kind: rank index or AP rank.",
     "Compare the father of the device in the other files. A single wrong rank was kept from before a move; "
     "updataSingleApRankInfo() replaces it."},
    {Rule::RankDiffers, Severity::Warning, "rank-differs", "files state different ranks of a device",
     "The rank index and the AP rank file state the rank of each device. They are saved one after the other.",
     "Take the files of one moment. If they are, one of the two saves failed or was left out."},
    {Rule::DecisionUnknown, Severity::Error, "decision-unknown",
     "a decision from or to a device that no file lists",
     "The source of a decision is a device or a station, and its target is a device. The host cannot carry "
     "out any other decision. A decision from and to 000000000000 means that everything stays.",
     "If the device has left the home, the decision is outdated. If not, see the files that should list it."},
    {Rule::DecisionPresent, Severity::Warning, "decision-present", "a decision to the present father or AP",
     "The device is where the decision wants it, so the decision has no effect. Right after the move was "
     "carried out this is normal, until the next round replaces the decision.",
     "If it stays for several rounds, the algorithm decides on outdated fathers: see father-differs."},
    {Rule::MissingDevice, Severity::Warning, "missing-device", "a device in one file, but missing in another",
     "The rank index, AP rank, ap-node and ap-all files list every device of the mesh, as long as they have "
     "records and the ranking has room. A file that is named after a device belongs to one of them.",
     "A new device is missing until the next round. A device that has left stays where no delete removed it: "
     "deleteSingleApAllInfo() removes it from an ap-all file."},
    {Rule::DeviceCase, Severity::Warning, "device-case", "the same MAC in different letter case",
     "Keys are compared exactly, so the two spellings are two devices for the functions and for the "
     "algorithm: an update adds a second record, and a father is not found.",
     "Let the host spell MACs one way before it saves them."},
    {Rule::StationTwice, Severity::Warning, "station-twice", "a station is connected to two APs at once",
     "A station has one AP. Files of the present are compared: those in which no station has two samples "
     "on the same band of the same AP, and whose name does not say that they are older.",
     "One of the APs has not noticed that the station has left: see its association timeout."},
    {Rule::ThroughputAboveLink, Severity::Warning, "throughput-above-link",
     "a throughput above the rate of the link",
     "The throughput of a device in the rank index is compared with the highest rate of the link to its "
     "father, as `algdata tree` shows it. No device can transmit faster than its link. The rule assumes the "
     "same unit for both.",
     "The link was measured after the ranking, or the model's parameters are wrong: see the PAT file of the "
     "father."},
    {Rule::ScoreInputs, Severity::Warning, "score-inputs", "a score whose inputs were bounded or not set",
     "A score without delay tests, delay or throughput, or with a signal but no rate, was computed from "
     "values that nobody measured. The reader bounds delay samples to 1000, so a score that uses larger ones "
     "is too good. The delays are those of the file that is named after the same device.",
     "Do not rely on a decision that such a score led to. Probe the father again."},
    {Rule::FrozenSamples, Severity::Warning, "frozen-samples", "the samples of a history are all equal",
     "Eight or more records with the same key have exactly the same values. Measurements vary, so the "
     "source has stopped measuring and repeats its last result. Station, bridging and time-delay files are "
     "examined.",
     "Restart the daemon that measures, and see whether the values change."},
    {Rule::FullHistory, Severity::Note, "full-history", "a history has reached its cap",
     "Each new record evicts the oldest one. A full history is normal in a home that runs for long, but what "
     "happened before its first record is lost.",
     "Save the files more often if you need a longer history."},
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

constexpr bool nameKnownRules(const formats::List<Field>& fields)
{
    for (const Field& field : fields)
        if (field.rule[0] != '\0' && find(field.rule) == nullptr)
            return false;
    return true;
}

/* Whether every rule that a field names exists. */
constexpr bool fieldsNameKnownRules()
{
    for (const formats::Kind* kind : formats::kinds)
        if (!nameKnownRules(kind->record.fields) || !nameKnownRules(kind->entries.layout.fields))
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

/* Strategy is the only rule of both commands. */
std::vector<const RuleText*> rulesOf(Scope scope)
{
    std::vector<const RuleText*> found;
    for (const RuleText& text : table) {
        const bool ofHome = text.rule > Rule::IndexTooMany;
        if (ofHome == (scope == Scope::Home) || text.rule == Rule::Strategy)
            found.push_back(&text);
    }
    return found;
}

std::vector<std::string> ruleNames(Scope scope)
{
    std::vector<std::string> names;
    for (const RuleText* text : rulesOf(scope))
        names.emplace_back(text->name);
    return names;
}

const RuleText& textOf(Rule rule)
{
    return table[static_cast<size_t>(rule)];
}

const RuleText* findRule(Scope scope, const std::string& name)
{
    for (const RuleText* text : rulesOf(scope))
        if (name == text->name)
            return text;
    return nullptr;
}

Rule ruleOf(const Field& field)
{
    return find(field.rule)->rule;
}

} // namespace algdata
