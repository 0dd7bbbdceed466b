/* SPDX-License-Identifier: Apache-2.0 */
#include "recordOracle.h"

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

/* One conversion of a format: its letter, its maximum width and how many h stand before it. */
struct Conversion {
    char letter;
    int width;
    int shorter;
};

static Conversion parseConversion(const char*& format)
{
    Conversion conversion = {'\0', 0, 0};
    for (++format; isDigit(*format); ++format)
        conversion.width = conversion.width * 10 + (*format - '0');
    if (conversion.width == 0)
        conversion.width = 1 << 20;
    for (; *format == 'h'; ++format)
        ++conversion.shorter;
    conversion.letter = *format++;
    return conversion;
}

/* Everything up to a blank, NULs too; the destination is terminated. */
static bool convertText(Text& text, int width, char* to)
{
    int length = 0;
    for (; length < width && peek(text) != END && !isBlank(peek(text)); ++text.at)
        to[length++] = text.bytes[text.at];
    to[length] = '\0';
    return true;
}

/* A sign and digits; more than 64 bits is the largest number of 64 bits, whatever the sign. */
static bool convertNumber(Text& text, const Conversion& conversion, void* to)
{
    int width = conversion.width;
    const bool minus = peek(text) == '-';
    if (minus || peek(text) == '+') {
        ++text.at;
        --width;
    }
    if (width == 0 || !isDigit(peek(text)))
        return false; /* the sign stays consumed */
    unsigned long long value = 0;
    bool over = false;
    for (; width > 0 && isDigit(peek(text)); --width, ++text.at) {
        const unsigned digit = static_cast<unsigned>(peek(text) - '0');
        over = over || value > (~0ULL - digit) / 10;
        value = value * 10 + digit;
    }
    if (over)
        value = ~0ULL;
    else if (minus)
        value = 0 - value;
    if (conversion.shorter == 2)
        *static_cast<uint8_t*>(to) = static_cast<uint8_t>(value);
    else if (conversion.shorter == 1)
        *static_cast<uint16_t*>(to) = static_cast<uint16_t>(value);
    else
        *static_cast<uint32_t*>(to) = static_cast<uint32_t>(value);
    return true;
}

/* Digits with a point and an exponent; the files of these tests hold no other floats. */
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
        return false; /* what was taken stays consumed */
    *to = strtof(number, nullptr);
    return true;
}

static bool convert(Text& text, const Conversion& conversion, void* to)
{
    if (conversion.letter == 's')
        return convertText(text, conversion.width, static_cast<char*>(to));
    if (conversion.letter == 'f')
        return convertFloat(text, static_cast<float*>(to));
    return convertNumber(text, conversion, to);
}

/* How many fields were converted; END when the text ends before the first. */
static int scanInto(Text& text, const char* format, void* const* places)
{
    int converted = 0;
    while (*format != '\0') {
        if (isBlank(*format)) {
            skipBlanks(text);
            ++format;
            continue;
        }
        const Conversion conversion = parseConversion(format);
        skipBlanks(text);
        if (peek(text) == END)
            return converted == 0 ? END : converted;
        if (!convert(text, conversion, places[converted]))
            return converted;
        ++converted;
    }
    return converted;
}

template <typename... Place> static int scan(Text& text, const char* format, Place*... place)
{
    void* const places[] = {place...};
    return scanInto(text, format, places);
}

/* ---- Lines -------------------------------------------------------------- */

/* The next line or 1023 characters of one, up to its first NUL. False at the end of the file. */
static bool takeLine(Text& file, Text& line)
{
    if (file.at == file.size)
        return false;
    line = {file.bytes + file.at, 0, 0};
    size_t taken = 0;
    for (bool ended = false; !ended && taken < 1023 && file.at < file.size; ++taken)
        ended = file.bytes[file.at++] == '\n';
    while (line.size < taken && line.bytes[line.size] != '\0')
        ++line.size;
    return true;
}

int expectedLines(Text file)
{
    int lines = 0;
    for (Text line; takeLine(file, line);)
        ++lines;
    return lines;
}

/* ---- Readers by fields -------------------------------------------------- */

static bool scanFive(Text& file, const char* format, uint8_t* to)
{
    for (int j = 0; j < 5; ++j) {
        if (scan(file, format, &to[j]) == END)
            return false;
    }
    return true;
}

static bool scanFive(Text& file, const char* format, uint16_t* to)
{
    for (int j = 0; j < 5; ++j) {
        if (scan(file, format, &to[j]) == END)
            return false;
    }
    return true;
}

static uint8_t unused(uint8_t used)
{
    return static_cast<uint8_t>(used >= 94 ? 1 : 95 - used);
}

static uint16_t rateWithin(uint16_t rate, uint16_t least)
{
    return rate > 10000 ? static_cast<uint16_t>(10000) : rate < least ? least : rate;
}

static void boundNode(ApNodeV2* node)
{
    for (int j = 0; j < 5; ++j) {
        node->wirelessChannelUtilization[j] = unused(node->wirelessChannelUtilization[j]);
        node->wirelessRxRate[j] = rateWithin(node->wirelessRxRate[j], 1);
        node->wirelessTxRate[j] = rateWithin(node->wirelessTxRate[j], 1);
    }
    node->plcUtilization = unused(node->plcUtilization);
    node->ethernetUtilization = unused(node->ethernetUtilization);
    node->plcRate = rateWithin(node->plcRate, 0);
}

static bool scanNode(Text& file, ApNodeV2* node)
{
    return scan(file, "%12s %12s", node->deviceMAC, node->fatherDeviceMAC) != END &&
           scanFive(file, " %hhu", node->wirelessChannelUtilization) &&
           scan(file, " %hhu %hhu", &node->plcUtilization, &node->ethernetUtilization) != END &&
           scanFive(file, " %hu", node->wirelessRxRate) && scanFive(file, " %hu", node->wirelessTxRate) &&
           scan(file, " %hu %hu", &node->plcRate, &node->ethernetRate) != END &&
           scanFive(file, " %hu", node->offset);
}

bool expectApNodes(Text file, void* records, int count, char (*macs)[16])
{
    ApNodeV2* nodes = static_cast<ApNodeV2*>(records);
    for (int i = 0; i < count; ++i) {
        if (!scanNode(file, &nodes[i]))
            return false;
    }
    for (int i = 0; i < count; ++i) {
        memcpy(macs[i], nodes[i].deviceMAC, 16);
        boundNode(&nodes[i]);
    }
    return true;
}

static bool scanAll(Text& file, ApInfoAllV2* all, bool detail)
{
    ApNodeV2* node = &all->apNodeV2;
    const int head =
        detail
            ? scan(file, "%12s %12s %hhu %hu %hhu %hu ", node->deviceMAC, node->fatherDeviceMAC,
                   &node->plcUtilization, &node->plcRate, &node->ethernetUtilization, &node->ethernetRate)
            : scan(file, "%hhu %hhu %12s %12s %hhu %hu %hhu %hu %hhu ", &all->alg_version.major_ver,
                   &all->alg_version.minor_ver, node->deviceMAC, node->fatherDeviceMAC, &node->plcUtilization,
                   &node->plcRate, &node->ethernetUtilization, &node->ethernetRate, &node->tipc_node);
    if (head == END)
        return false;
    for (int j = 0; j < 5; ++j) {
        AlgWifiMode* mode = &all->algWifiMode[j];
        if (scan(file, "%hhu %hu %hu %hu %hhu %hhu %hhu %hhu %hhu %hhu %hhu ",
                 &node->wirelessChannelUtilization[j], &node->wirelessRxRate[j], &node->wirelessTxRate[j],
                 &node->offset[j], &mode->available, &mode->NSS, &mode->wifiMode, &mode->bandWidth,
                 &mode->mcsLevel, &mode->channel, &mode->reserved) == END)
            return false;
    }
    return true;
}

bool expectApAllRaw(Text file, void* records, int count, char (*macs)[16])
{
    ApInfoAllV2* alls = static_cast<ApInfoAllV2*>(records);
    for (int i = 0; i < count; ++i) {
        if (!scanAll(file, &alls[i], false))
            return false;
        if (macs != nullptr)
            memcpy(macs[i], alls[i].apNodeV2.deviceMAC, 16);
    }
    return true;
}

bool expectApAllBounded(Text file, void* records, int count, char (*macs)[16])
{
    expectApAllRaw(file, records, count, macs);
    for (int i = 0; i < count; ++i)
        boundNode(&static_cast<ApInfoAllV2*>(records)[i].apNodeV2);
    return true;
}

bool expectApDetail(Text file, void* records, int count, char (*)[16])
{
    for (int i = 0; i < count; ++i) {
        if (!scanAll(file, static_cast<ApInfoAllV2*>(records), true))
            return false;
    }
    return true;
}

bool expectBridging(Text file, void* records, int, char (*)[16])
{
    const int lines = expectedLines(file);
    for (int i = 0; i < lines; ++i) {
        BridgingNodeV2* node = &static_cast<BridgingNodeV2*>(records)[i];
        if (scan(file, "%12s %12s ", node->deviceMAC, node->fatherDeviceMAC) == END)
            return false;
        for (int j = 0; j < 5; ++j) {
            if (scan(file, "%hhu %hu %hu %hhu %hhu ", &node->bridgingRssi[j], &node->bridgingRxRate[j],
                     &node->bridgingTxRate[j], &node->bridgingRxMcs[j], &node->bridgingTxMcs[j]) == END)
                return false;
        }
    }
    return true;
}

bool expectPatV1(Text file, void* records, int count, char (*)[16])
{
    if (file.size == 0)
        return false;
    for (int i = 0; i < count; ++i) {
        PatParameter* pat = &static_cast<PatParameter*>(records)[i];
        if (scan(file, "%12s", pat->deviceMac) == END)
            continue;
        for (int k = 0; k < ALG_PAT_CAPACITY; ++k)
            scan(file, " %hu", &pat->bParameter[k]);
        for (int k = 0; k < ALG_PAT_CAPACITY; ++k)
            scan(file, " %hu", &pat->cParameter[k]);
    }
    return true;
}

const char defaultPatFile[] = "1\n000000000000 15\n"
                              "0 0 1 0 64 46094\n0 0 1 1 64 46094\n0 0 1 2 64 46094\n"
                              "0 1 3 0 64 46094\n0 1 3 1 64 46094\n0 1 3 2 64 46094\n"
                              "0 2 3 0 64 46094\n0 2 3 1 64 46094\n0 2 3 2 64 46094\n"
                              "0 3 3 0 64 46094\n0 3 3 1 64 46094\n0 3 3 2 64 46094\n"
                              "0 4 3 0 64 46094\n0 4 3 1 64 46094\n0 4 3 2 64 46094\n";

bool expectPatV2(Text file, void* records, int count, char (*)[16])
{
    if (file.size == 0)
        file = {defaultPatFile, sizeof defaultPatFile - 1, 0};
    uint8_t devices = 0;
    scan(file, "%hhu", &devices);
    for (int i = 0; i < devices && i < count; ++i) {
        PatParameterV2* pat = &static_cast<PatParameterV2*>(records)[i];
        const int converted = scan(file, "%12s %hhu", pat->deviceMac, &pat->commonPatNum);
        const int entries = pat->commonPatNum;
        if (converted == 2 && entries > ALG_PAT_CAPACITY)
            pat->commonPatNum = ALG_PAT_CAPACITY;
        for (int k = 0; k < entries; ++k) {
            SinglePat lost;
            SinglePat* entry = k < ALG_PAT_CAPACITY ? &pat->singlePat[k] : &lost;
            scan(file, "%hhu %hhu %hhu %hhu %hhu %hu", &entry->isChanged, &entry->bandOrder,
                 &entry->channelWidthOrder, &entry->mcsOrder, &entry->paraB, &entry->paraC);
        }
    }
    return true;
}

bool expectDelays(Text file, void* records, int count, char (*)[16])
{
    for (int i = 0; i < count; ++i) {
        TimeDelayInfo* delay = &static_cast<TimeDelayInfo*>(records)[i];
        if (scan(file, "%12s", delay->fatherMAC) != END) {
            for (int j = 0; j < 15; ++j)
                scan(file, " %hu", &delay->delayTime[j]);
        }
        for (int j = 0; j < 15; ++j) {
            const uint16_t time = delay->delayTime[j];
            delay->delayTime[j] = static_cast<uint16_t>(time > 1000 ? 1000 : time == 0 ? 1 : time);
        }
    }
    return true;
}

bool expectScores(Text file, void* records, int count, char (*)[16])
{
    for (int i = 0; i < count; ++i) {
        ScoreInfo* score = &static_cast<ScoreInfo*>(records)[i];
        if (scan(file, "%12s %hhu %f %hhu %hu %f %hu", score->fatherMAC, &score->apRank, &score->hopsFactor,
                 &score->timeDelayTestCnt, &score->timeDelayAverage, &score->timeNormalization,
                 &score->thrputPredict) == END)
            continue;
        for (int j = 0; j < 5; ++j)
            scan(file, " %hhu", &score->rssi[j]);
        for (int j = 0; j < 5; ++j)
            scan(file, " %hu", &score->negoRate[j]);
        for (int j = 0; j < 5; ++j)
            scan(file, " %hu", &score->patRate[j]);
    }
    return true;
}

int expectedScoreCnt(Text file)
{
    uint32_t number;
    return scan(file, "%d", &number) == END ? 1 : 0;
}

/* ---- Readers by lines --------------------------------------------------- */

bool expectStations(Text file, void* records, int, char (*)[16])
{
    StaConnection* sta = static_cast<StaConnection*>(records);
    for (Text line; takeLine(file, line); ++sta) {
        if (scan(line, "%3hu %12s %12s %2hu %4hu %4hu %4hu %4hu %hu %hu %hu %hu %hu %hu %hu\n", &sta->id,
                 sta->deviceMac, sta->apMac, &sta->connectBand, &sta->rssi, &sta->rxRate, &sta->txRate,
                 &sta->rxPackageCount, &sta->txPackageCount, &sta->wifimode, &sta->bandwidth, &sta->mcslevel,
                 &sta->mimo, &sta->kvrCapacity, &sta->noiselevel) == END)
            return false;
    }
    return true;
}

bool expectCandidates(Text file, void* records, int, char (*)[16])
{
    CandidateAp* ap = static_cast<CandidateAp*>(records);
    for (Text line; takeLine(file, line); ++ap) {
        if (scan(line, "%12s %hhu %hhu %hhu %hu %hhu %hhu %hhu %hhu\n", ap->apMac, &ap->connectBand,
                 &ap->roamingAvailable, &ap->rssi, &ap->throughput, &ap->wifimode, &ap->bandwidth,
                 &ap->mcslevel, &ap->mimo) == END)
            return false;
    }
    return true;
}

bool expectScans(Text file, void* records, int, char (*)[16])
{
    ScanningInfo* info = static_cast<ScanningInfo*>(records);
    for (Text line; takeLine(file, line); ++info) {
        if (scan(line, "%12s %12s %2hhu %3hhu %3hhu\n", info->deviceMAC, info->neighbourMAC, &info->band,
                 &info->channel, &info->rssi) == END)
            return false;
        info->rssi = static_cast<uint8_t>(info->rssi > 4 ? info->rssi - 3 : 1);
    }
    return true;
}

bool expectRanks(Text file, void* records, int, char (*)[16])
{
    ApRank* rank = static_cast<ApRank*>(records);
    for (Text line; takeLine(file, line); ++rank) {
        if (scan(line, "%12s %12s %hhu\n", rank->deviceMAC, rank->ethFatherMAC, &rank->apRank) == END)
            return false;
    }
    return true;
}

bool expectRankIndex(Text file, void* records, int, char (*)[16])
{
    ApRankIndex* index = static_cast<ApRankIndex*>(records);
    Text line;
    if (!takeLine(file, line))
        return true;
    const int converted = scan(line, "%hhu %hhu %u %u\n", &index->cnt, &index->process_re, &index->alg_strategy,
                            &index->starttime);
    if (converted == END)
        return false;
    for (int i = 0; takeLine(file, line); ++i) {
        if (i == ALG_RANK_INDEX_CAPACITY)
            return false;
        ApThrRank* rank = &index->apRank[i];
        if (scan(line, "%12s %12s %hhu %hu\n", rank->deviceMAC, rank->fatherMAC, &rank->apRank,
                 &rank->throughput) == END)
            return false;
    }
    return true;
}

bool expectOutput(Text file, void* records, int, char (*)[16])
{
    ApAlgInterfaceOutput* output = static_cast<ApAlgInterfaceOutput*>(records);
    Text line;
    return !takeLine(file, line) || scan(line, "%12s %12s %u %hhu\n", output->srcMAC, output->dstMAC,
                                         &output->algStrategy, &output->timeout) != END;
}

/* ---- Updates ------------------------------------------------------------ */

static char work[FILE_ROOM]; /* the records of one update */

static char* recordAt(Kind kind, int i)
{
    return work + recordSize(kind) * static_cast<size_t>(i);
}

static bool sameKey(const UpdateRule& update, int i, const void* income)
{
    return strncmp(recordAt(update.kind, i) + update.key, static_cast<const char*>(income) + update.key,
                   16) == 0;
}

/* Applies the rule to `count` records; gives how many there are then, -1 for no write. `*first` is the first
 * of them. */
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
    memset(work, 0, recordSize(update.kind) * static_cast<size_t>(count + 1));
    if (!update.read(file, work, count, nullptr))
        return false;
    int first = 0;
    const int left = applyRule(update, count, income, &first);
    if (left < 0)
        return false;
    *size = printRecords(update.kind, recordAt(update.kind, first), left, text);
    return true;
}
