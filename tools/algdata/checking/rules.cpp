/* SPDX-License-Identifier: Apache-2.0 */
#include "checking/rules.h"

namespace algdata
{

const std::vector<Rule>& rules()
{
    static const std::vector<Rule> table = {
        {"unknown-kind", true, "no kind of record file fits the content",
         "The kind is found from the number of fields per line. Where no kind fits, or two fit equally well, "
         "the file "
         "cannot be checked. Choose the kind with --kind."},
        {"empty-file", false, "the file holds no records",
         "An empty file is valid for every kind: readers return with nothing. The version 2 PAT reader fills "
         "it with its "
         "default record. It is a warning because a write that was interrupted right after opening leaves "
         "one, too."},
        {"field-count", true, "a line has too few or too many fields",
         "Every kind has a fixed number of fields per line. Readers that parse line by line accept a short "
         "line and leave "
         "the missing fields as the array held them, and ignore what is too many. Readers that parse field "
         "after field "
         "take the missing fields from the next line, or the extra ones as the beginning of the next record: "
         "every value "
         "behind that place belongs to another field. No reader reports either."},
        {"blank-line", true, "a line holds nothing but white space",
         "Records are counted by lines, so a blank line counts as a record. What follows differs by kind: "
         "most readers "
         "fail on it, and with them every update and append; the time-delay functions silently drop the next "
         "record that "
         "is inserted. The finding says which. The PAT readers skip blank lines."},
        {"torn-record", true, "the file ends in the middle of a record",
         "The last line has no newline and too few fields: the write of the file was cut off. Writers "
         "truncate the file "
         "first and write it whole, so a power cut or a full disk leaves such an end."},
        {"no-final-newline", false, "the last line does not end in a newline",
         "Readers accept the line. But every writer ends each line with a newline, so the write may have "
         "been cut off "
         "inside the last number, which then reads as a smaller one."},
        {"zeroed-tail", true, "the file ends in NUL bytes",
         "A power cut can leave the end of a file as zeros. Line readers stop at the first NUL byte of a "
         "line and count "
         "the line as a record; field readers take the NUL bytes as part of a text."},
        {"nul-byte", true, "a NUL byte amid the text",
         "To a reader that parses lines a NUL byte ends the line: the fields behind it keep what the array "
         "held, and a "
         "line that begins with one is a blank line."},
        {"non-text", true, "a byte that no writer prints",
         "Record files hold letters, digits, points, signs, blanks and newlines. Anything else came from "
         "elsewhere: a "
         "damaged block, a file of another program."},
        {"carriage-return", false, "lines end in CR LF",
         "The readers take a carriage return for white space, so nothing is lost; the file went through an "
         "editor or a "
         "transfer that changes line ends."},
        {"line-too-long", true, "a line of 1023 characters or more",
         "Lines are counted and read through a buffer of 1024 bytes: a line of 1023 characters or more is "
         "counted and "
         "parsed as two records, split at an arbitrary place."},
        {"not-a-number", true, "a numeric field holds something else",
         "A formatted read stops at the first character that does not fit. A line reader leaves this field "
         "and all behind "
         "it as the array held them. A field reader stays at the place: every numeric field that follows "
         "fails in the same "
         "way until a text field takes the characters. Neither reports it."},
        {"out-of-range", true, "a number does not fit the field's type",
         "The number is cut to the field's 8, 16 or 32 bits without a message: 300 reads as 44 in an 8-bit "
         "field, -1 as "
         "255."},
        {"too-wide", true, "a number has more digits than are read",
         "The station and scanning readers take at most 2, 3 or 4 digits for some fields. The digits that "
         "are left over "
         "become the next field, and every later field of the line takes the value before it. A station file "
         "of more than "
         "1000 lines always has it: its positions reach 4 digits."},
        {"mac-short", true, "a MAC of fewer than 12 characters",
         "Readers accept it. It matches no 12-digit key."},
        {"mac-long", true, "a MAC of more than 12 characters",
         "A MAC is read with at most 12 characters. The rest becomes the next field, and all that follow "
         "shift."},
        {"mac-empty", true, "blanks where a MAC should stand",
         "An empty MAC is written as 12 blanks. On reading they are skipped as white space and the next "
         "field takes the "
         "MAC's place; all that follow shift."},
        {"mac-not-hex", true, "a MAC with a character that is no hexadecimal digit",
         "Readers accept any characters. Such a MAC matches no device."},
        {"duplicate-key", false, "the same key twice",
         "Updates replace, and deletes remove, the first record with a key; later ones stay as they are and "
         "grow stale. "
         "Kinds that are histories (station, scanning, time-delay, bridging) may repeat keys."},
        {"key-case", false, "MACs that differ in letter case only",
         "Keys are compared exactly. A MAC in another letter case is another device: updates add a second "
         "record instead "
         "of replacing the first."},
        {"over-cap", false, "more records than the kind's functions keep",
         "The next append cuts a station file to the newest 128, a scanning or time-delay file to the newest "
         "256. A "
         "bridging log of more than 64 keeps its length. An AP node or detail reader takes at most 255 "
         "records at once. "
         "A version 2 PAT file's device count is read in 8 bits."},
        {"extra-lines", false, "lines that are never read",
         "Of an algorithm output file only the first line is read."},
        {"position", false, "positions do not count 0, 1, 2, ...",
         "Every write of a station file numbers the lines from 0. Another order tells that lines were lost, "
         "moved or added "
         "by other means."},
        {"clamped", false, "a value that the reader will bound",
         "The readers bound some values before the algorithm sees them: delays to 1..1000, rates to at most "
         "10000, "
         "utilizations of 95 and above and RSSI values of 3 and below all to 1. A rate of 0, as of a band "
         "that is not in "
         "use, is raised to 1 as well but not reported."},
        {"mimo", false, "a stream count outside the MIMO codes",
         "The codes are 0, 1, 2, 3, 4, 8 and 99. A sample with any other value is left alone when rates are "
         "brought to two "
         "streams."},
        {"strategy", true, "a strategy outside 0 to 3",
         "Strategies are 0 unknown, 1 careful, 2 radical, 3 get best. Readers hand out any number."},
        {"pat-count", true, "the PAT count line and the devices differ",
         "The first line of a version 2 PAT file says how many devices follow. Of more devices the last are "
         "not read; of "
         "fewer, the reader logs the end of the file for each missing one and hands out what the array "
         "held."},
        {"pat-entries", true, "commonPatNum and the entries differ",
         "commonPatNum says how many entry lines follow. Where they differ the reader takes an entry for a "
         "device or a "
         "device for an entry, and all that follow shift."},
        {"pat-too-many", true, "commonPatNum is over 100",
         "A device has room for 100 entries. The reader keeps the first 100 and reads past the others."},
        {"pat-order", true, "a PAT order outside its 5, 5 or 4 places",
         "bandOrder and channelWidthOrder are 0 to 4, mcsOrder is 0 to 3. Any other has no peak threshold: "
         "it counts as 1."},
        {"pat-flags", false, "isChanged has bits that mean nothing",
         "Bit 0 says that paraB changed, bit 1 that paraC did."},
        {"index-count", true, "cnt and the ranked devices differ",
         "The header's cnt says how many entry lines follow. Readers take all entry lines but report cnt: of "
         "more entries "
         "the last are lost on the next write, of fewer the rest are whatever the array held."},
        {"index-too-many", true, "more than 30 ranked devices",
         "A ranking has room for 30 devices. The reader refuses a file with more entry lines. A larger cnt "
         "is loaded as it stands, and a host that trusts it reads past the entries."},
    };
    return table;
}

const Rule* findRule(std::string_view name)
{
    for (const Rule& rule : rules())
        if (name == rule.name)
            return &rule;
    return nullptr;
}

} // namespace algdata
