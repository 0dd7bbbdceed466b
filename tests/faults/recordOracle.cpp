/* SPDX-License-Identifier: Apache-2.0 */
#include "recordOracle.h"

#include "formats/access.h"

/* ---- Scanning ----------------------------------------------------------- */

enum { END = -1 };

static bool isBlank(int c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}
static bool isDigit(int c)
{
    return c >= '0' && c <= '9';
}

/* The next byte, or END. */
static int peek(const Text& text)
{
    if (text.at == text.size)
        return END;
    return static_cast<unsigned char>(text.bytes[text.at]);
}

static void skipBlanks(Text& text)
{
    while (isBlank(peek(text)))
        ++text.at;
}

/* Copies the characters up to a blank, including NULs, and terminates the copy. */
static bool convertText(Text& text, int width, char* to)
{
    int length = 0;
    for (; length < width && peek(text) != END && !isBlank(peek(text)); ++text.at)
        to[length++] = text.bytes[text.at];
    to[length] = '\0';
    return true;
}

enum { NO_WIDTH = 1 << 20 };

/* A sign and digits. A number of more than 64 bits becomes the largest one of 64 bits, even with a minus. */
static bool convertNumber(Text& text, int width, unsigned long long* to)
{
    const bool minus = peek(text) == '-';
    if (minus || peek(text) == '+') {
        ++text.at;
        --width;
    }
    if (width == 0 || !isDigit(peek(text)))
        return false; /* the sign remains consumed */
    unsigned long long value = 0;
    bool tooLarge = false;
    for (; width > 0 && isDigit(peek(text)); --width, ++text.at) {
        const unsigned digit = static_cast<unsigned>(peek(text) - '0');
        tooLarge = tooLarge || value > (~0ULL - digit) / 10;
        value = value * 10 + digit;
    }
    if (tooLarge)
        value = ~0ULL;
    else if (minus)
        value = 0 - value;
    *to = value;
    return true;
}

/* Digits with a point and an exponent. The files of these tests contain no other floats. */
static bool convertFloat(Text& text, float* to)
{
    char number[512];
    size_t length = 0;
    bool digit = false;
    bool point = false;
    bool exponent = false;
    if (peek(text) == '-' || peek(text) == '+')
        number[length++] = text.bytes[text.at++];
    for (; length < sizeof number - 1; ++text.at) {
        const int c = peek(text);
        if (isDigit(c))
            digit = true;
        else if (c == '.' && !point)
            point = true;
        else if ((c == 'e' || c == 'E') && digit && !exponent)
            exponent = point = true;
        else if (!((c == '-' || c == '+') && exponent && (number[length - 1] | 0x20) == 'e'))
            break;
        number[length++] = static_cast<char>(c);
    }
    number[length] = '\0';
    if (!digit)
        return false; /* what was read remains consumed */
    *to = strtof(number, nullptr);
    return true;
}

/* Reads one field of a record or an entry. A number is truncated to the type of the field. */
static bool convert(Text& text, const formats::Field& field, void* base, int element)
{
    if (field.type == formats::Type::Mac)
        return convertText(text, field.widthIn, formats::addressOf(field, base, element));
    if (field.type == formats::Type::F32) {
        float value;
        if (!convertFloat(text, &value))
            return false;
        formats::setReal(field, base, element, value);
        return true;
    }
    unsigned long long value;
    if (!convertNumber(text, field.widthIn != 0 ? field.widthIn : static_cast<int>(NO_WIDTH), &value))
        return false;
    formats::setNumber(field, base, element, static_cast<uint32_t>(value));
    return true;
}

/* Returns how many fields one call converts; END if the text ends before the first field. */
static int scanStep(Text& text, const formats::Step& step, int element, void* base)
{
    int converted = 0;
    for (const formats::Field& field : step.fields) {
        skipBlanks(text);
        if (peek(text) == END)
            return converted == 0 ? END : converted;
        if (!convert(text, field, base, element))
            return converted;
        ++converted;
    }
    return converted;
}

enum AtEnd {
    STOPS,    /* every call that returns -1 ends the record */
    CONTINUES /* only the result of a record's first call counts */
};

/* Reads all fields of a layout. Returns false if a call whose result counts reaches the end of the text. */
static bool scanLayout(Text& text, const formats::Layout& layout, void* base, AtEnd atEnd)
{
    for (const formats::Step& step : formats::Steps{layout}) {
        for (int element = 0; element < step.times; ++element) {
            if (scanStep(text, step, element, base) == END && (step.first || atEnd == STOPS))
                return false;
        }
    }
    return true;
}

/* ---- Lines -------------------------------------------------------------- */

/*
 * Reads the next line, at most 1023 characters of it, and cuts it at its first NUL. Returns false at end of
 * file.
 */
static bool readLine(Text& file, Text& line)
{
    if (file.at == file.size)
        return false;
    line = {file.bytes + file.at, 0, 0};
    size_t length = 0;
    for (bool complete = false; !complete && length < 1023 && file.at < file.size; ++length)
        complete = file.bytes[file.at++] == '\n';
    while (line.size < length && line.bytes[line.size] != '\0')
        ++line.size;
    return true;
}

int expectedLines(Text file)
{
    int lines = 0;
    for (Text line; readLine(file, line);)
        ++lines;
    return lines;
}

/* ---- Readers by fields -------------------------------------------------- */

static void* recordOf(const formats::Kind& format, void* records, int i)
{
    return static_cast<char*>(records) + format.type.size * static_cast<size_t>(i);
}

/* Applies the reader's bounds to every field of the record, even if it was not read. */
static void load(const formats::Kind& format, void* record)
{
    formats::eachField(format.record, [record](const formats::Field& field, int element) {
        if (field.load != formats::Load::AsStored)
            formats::setNumber(field, record, element,
                               formats::loadedValue(field, formats::number(field, record, element), 3));
    });
}

/* Reads up to `count` records until the file ends. Returns how many are complete. */
static int scanRecords(const formats::Kind& format, Text& file, void* records, int count)
{
    int read = 0;
    while (read < count && scanLayout(file, format.record, recordOf(format, records, read), STOPS))
        ++read;
    return read;
}

static void loadRecords(const formats::Kind& format, void* records, int count)
{
    for (int i = 0; i < count; ++i)
        load(format, recordOf(format, records, i));
}

/* Copies the key of each record, which is its device. */
static void copyMacs(const formats::Kind& format, const void* records, int count, char (*macs)[ALG_MAC_SIZE])
{
    const formats::Field* device = format.record.fields.begin();
    while (!device->key)
        ++device;
    const char* record = static_cast<const char*>(records);
    for (int i = 0; i < count; ++i, record += format.type.size)
        memcpy(macs[i], formats::addressOf(*device, record, 0), ALG_MAC_SIZE);
}

bool expectApNodes(Text file, void* records, int count, char (*macs)[ALG_MAC_SIZE])
{
    if (scanRecords(formats::apNode, file, records, count) < count)
        return false;
    copyMacs(formats::apNode, records, count, macs);
    loadRecords(formats::apNode, records, count);
    return true;
}

bool expectApAllRaw(Text file, void* records, int count, char (*macs)[ALG_MAC_SIZE])
{
    const int read = scanRecords(formats::apAll, file, records, count);
    if (macs != nullptr)
        copyMacs(formats::apAll, records, read, macs);
    return read == count;
}

bool expectApAllBounded(Text file, void* records, int count, char (*macs)[ALG_MAC_SIZE])
{
    expectApAllRaw(file, records, count, macs);
    loadRecords(formats::apAll, records, count);
    return true;
}

/* Every record is read into the first one. */
bool expectApDetail(Text file, void* records, int count, char (*)[ALG_MAC_SIZE])
{
    for (int i = 0; i < count; ++i) {
        if (scanRecords(formats::apAllDetail, file, records, 1) < 1)
            return false;
    }
    return true;
}

bool expectBridging(Text file, void* records, int, char (*)[ALG_MAC_SIZE])
{
    const int lines = expectedLines(file);
    return scanRecords(formats::bridging, file, records, lines) == lines;
}

/* Reads `count` records, even after the end of the file. Missing fields remain unchanged. */
static void scanPastEnd(const formats::Kind& format, Text& file, void* records, int count)
{
    for (int i = 0; i < count; ++i)
        scanLayout(file, format.record, recordOf(format, records, i), CONTINUES);
}

bool expectPatV1(Text file, void* records, int count, char (*)[ALG_MAC_SIZE])
{
    if (file.size == 0)
        return false;
    scanPastEnd(formats::patV1, file, records, count);
    return true;
}

const char defaultPatFile[] = "1\n000000000000 15\n"
                              "0 0 1 0 64 46094\n0 0 1 1 64 46094\n0 0 1 2 64 46094\n"
                              "0 1 3 0 64 46094\n0 1 3 1 64 46094\n0 1 3 2 64 46094\n"
                              "0 2 3 0 64 46094\n0 2 3 1 64 46094\n0 2 3 2 64 46094\n"
                              "0 3 3 0 64 46094\n0 3 3 1 64 46094\n0 3 3 2 64 46094\n"
                              "0 4 3 0 64 46094\n0 4 3 1 64 46094\n0 4 3 2 64 46094\n";

/*
 * Reads a device and its entries. A count above the capacity becomes the capacity; a device line without a
 * count leaves the old one.
 */
static void scanPatDevice(Text& file, PatParameterV2* pat)
{
    const int converted = scanStep(file, formats::stepFrom(formats::patV2.record, 0), 0, pat);
    const int entries = pat->commonPatNum;
    if (converted == 2 && entries > ALG_PAT_CAPACITY)
        pat->commonPatNum = ALG_PAT_CAPACITY;
    for (int k = 0; k < entries; ++k) {
        SinglePat discarded;
        scanLayout(file, formats::patV2.entries.layout,
                   k < ALG_PAT_CAPACITY ? &pat->singlePat[k] : &discarded, CONTINUES);
    }
}

bool expectPatV2(Text file, void* records, int count, char (*)[ALG_MAC_SIZE])
{
    if (file.size == 0)
        file = {defaultPatFile, sizeof defaultPatFile - 1, 0};
    uint8_t devices = 0;
    scanLayout(file, formats::patV2.preamble, &devices, CONTINUES);
    for (int i = 0; i < devices && i < count; ++i)
        scanPatDevice(file, &static_cast<PatParameterV2*>(records)[i]);
    return true;
}

bool expectDelays(Text file, void* records, int count, char (*)[ALG_MAC_SIZE])
{
    scanPastEnd(formats::timeDelay, file, records, count);
    loadRecords(formats::timeDelay, records, count);
    return true;
}

bool expectScores(Text file, void* records, int count, char (*)[ALG_MAC_SIZE])
{
    scanPastEnd(formats::score, file, records, count);
    return true;
}

int expectedScoreCnt(Text file)
{
    uint32_t number;
    return scanLayout(file, formats::score.probe, &number, STOPS) ? 0 : 1;
}

/* ---- Readers by lines --------------------------------------------------- */

/* Reads one line into a record or an entry. Returns false for a blank line. */
static bool scanLine(Text line, const formats::Layout& layout, void* base)
{
    return scanLayout(line, layout, base, STOPS);
}

/* Reads each line into a record. Returns false at a blank line. */
static bool scanLines(const formats::Kind& format, Text& file, void* records)
{
    Text line;
    for (int i = 0; readLine(file, line); ++i) {
        void* record = recordOf(format, records, i);
        if (!scanLine(line, format.record, record))
            return false;
        load(format, record);
    }
    return true;
}

bool expectStations(Text file, void* records, int, char (*)[ALG_MAC_SIZE])
{
    return scanLines(formats::station, file, records);
}

bool expectCandidates(Text file, void* records, int, char (*)[ALG_MAC_SIZE])
{
    return scanLines(formats::candidate, file, records);
}

bool expectScans(Text file, void* records, int, char (*)[ALG_MAC_SIZE])
{
    return scanLines(formats::scanning, file, records);
}

bool expectRanks(Text file, void* records, int, char (*)[ALG_MAC_SIZE])
{
    return scanLines(formats::apRank, file, records);
}

bool expectRankIndex(Text file, void* records, int, char (*)[ALG_MAC_SIZE])
{
    const formats::Kind& format = formats::apRankIndex;
    Text line;
    if (!readLine(file, line))
        return true;
    if (!scanLine(line, format.record, records))
        return false;
    for (size_t i = 0; readLine(file, line); ++i) {
        if (i == format.entries.capacity ||
            !scanLine(line, format.entries.layout, formats::entryAt(format, records, i)))
            return false;
    }
    return true;
}

bool expectOutput(Text file, void* records, int, char (*)[ALG_MAC_SIZE])
{
    Text line;
    return !readLine(file, line) || scanLine(line, formats::algOutput.record, records);
}

/* ---- Updates ------------------------------------------------------------ */

static char updateRecords[FILE_ROOM];

static char* recordAt(Kind kind, int i)
{
    return updateRecords + recordSize(kind) * static_cast<size_t>(i);
}

static bool sameKey(const UpdateRule& update, int i, const void* income)
{
    return strncmp(recordAt(update.kind, i) + update.key, static_cast<const char*>(income) + update.key,
                   ALG_MAC_SIZE) == 0;
}

/*
 * Applies the rule to `count` records. Returns the new number of records, or -1 if the update does not write.
 * `*first` is the index of the first record to write.
 */
static int applyRule(const UpdateRule& update, int count, const void* income, int* first)
{
    const size_t size = recordSize(update.kind);
    int at = 0;
    switch (update.rule) {
    case REPLACE_OR_ADD:
        while (at < count && !sameKey(update, at, income))
            ++at;
        memcpy(recordAt(update.kind, at), income, size);
        return at < count ? count : count + 1;
    case ADD_AND_CAP:
        memcpy(recordAt(update.kind, count), income, size);
        *first = count + 1 > update.cap ? count + 1 - update.cap : 0;
        return count + 1 - *first;
    case ADD_ONE_FOR_ONE:
        memcpy(recordAt(update.kind, count), income, size);
        *first = count + 1 > update.cap ? 1 : 0;
        return count + 1 - *first;
    case FILL_WITH_LAST:
        while (at < count && !sameKey(update, at, income))
            ++at;
        if (at == count)
            return -1;
        memmove(recordAt(update.kind, at), recordAt(update.kind, count - 1), size);
        return count - 1;
    case DROP_ALL:
        for (int i = 0; i < count; ++i) {
            if (!sameKey(update, i, income))
                memmove(recordAt(update.kind, at++), recordAt(update.kind, i), size);
        }
        return at;
    case OVERWRITE:
        break;
    }
    return -1;
}

bool expectUpdate(const UpdateRule& update, Text file, const void* income, char* text, size_t* size)
{
    const bool deletes = update.rule == FILL_WITH_LAST || update.rule == DROP_ALL;
    const int count = expectedLines(file);
    memcpy(text, file.bytes, file.size);
    *size = file.size;
    if (update.rule == OVERWRITE || (count == 0 && !deletes)) {
        *size = printRecords(update.kind, income, 1, text);
        return update.rule != OVERWRITE;
    }
    if (count == 0)
        return update.rule == DROP_ALL;
    memset(updateRecords, 0, recordSize(update.kind) * static_cast<size_t>(count + 1));
    if (!update.read(file, updateRecords, count, nullptr))
        return false;
    int first = 0;
    const int newCount = applyRule(update, count, income, &first);
    if (newCount < 0)
        return false;
    *size = printRecords(update.kind, recordAt(update.kind, first), newCount, text);
    return true;
}
