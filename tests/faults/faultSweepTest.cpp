/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Every function that touches a file, on files in every state, with every call
 * of every kind failing: the k-th one, once and from then on, for every k until
 * the function ends without reaching it. What may come of it is stated below,
 * function by function and kind by kind.
 */
#include "messages.h"
#include "recordOracle.h"

#include <stddef.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace messages;

/* ---- The functions ------------------------------------------------------ */

enum Doing { READS, WRITES, UPDATES };
enum Result {
    TELLS,        /* false is a failure, and has its message */
    COUNTS,       /* so is -1 */
    ALWAYS_TRUE,  /* whatever happens */
    ALWAYS_FALSE, /* whatever happens */
    NOTHING       /* nothing to tell by */
};
enum Closing {
    REPORTED, /* a failed close is a failure */
    IGNORED,  /* a failed close changes nothing */
    EITHER    /* depends on the way taken */
};

/* The lists of messages that may come: the function's own, and those of what it uses. */
struct MessageLists {
    const char* const* lists[4];
};

struct Operation {
    constexpr Operation(const char* name, Kind kind, Doing doing, Result result, Closing closing,
                        bool (*tells)(), MessageLists messages, ExpectedReader expected = nullptr,
                        bool byLine = false)
        : name(name), kind(kind), doing(doing), result(result), closing(closing), tells(tells),
          counts(nullptr), messages(messages), expected(expected), byLine(byLine)
    {
    }
    constexpr Operation(const char* name, Kind kind, Doing doing, Result result, Closing closing,
                        int (*counts)(), MessageLists messages, ExpectedReader expected = nullptr,
                        bool byLine = false)
        : name(name), kind(kind), doing(doing), result(result), closing(closing), tells(nullptr),
          counts(counts), messages(messages), expected(expected), byLine(byLine)
    {
    }

    int run() const { return tells != nullptr ? tells() : counts(); }

    const char* name;
    Kind kind;
    Doing doing;
    Result result;
    Closing closing;
    bool (*tells)();
    int (*counts)();
    MessageLists messages;
    ExpectedReader expected; /* of a reader that does not count: what it returns for a file that ends early */
    bool byLine;             /* it reads whole lines, so that a line cut by a failed read is none */
};

/* stationNodeInfoReader() names its first file where it cannot open either. */
static const char* const bothStationMessages[] = {"E stationNodeInfoReader: Failed to read file: empty.\n",
                                                  station::bothReaderCannotRead, nullptr};

/* What the functions are given: `count` records in `array`, and one income. */
enum { ARRAY_ROOM = 1 << 15 };
static union {
    unsigned char bytes[ARRAY_ROOM];
    long long aligned;
} array;
static char macs[512][16];
static int count;
static union {
    char bytes[sizeof(PatParameterV2)];
    ApInfoAllV2 apAll;
    BridgingNodeV2 bridging;
    StaConnection station;
    PatParameterV2 pat;
    ScanningInfo scan;
    TimeDelayInfo delay;
    ApRank rank;
} income;

template <typename Record> static Record* records()
{
    return reinterpret_cast<Record*>(array.bytes);
}

static uint8_t count8()
{
    return static_cast<uint8_t>(count);
}

static const Operation operations[] = {
    Operation(
        "dataLineCounter", AP_RANK, READS, COUNTS, REPORTED, [] { return dataLineCounter("f"); },
        {fileHelpers::counterMessages}, nullptr, true),
    Operation("touchFile", AP_RANK, UPDATES, TELLS, EITHER, [] { return touchFile("f"); },
              {fileHelpers::touchMessages}),
    Operation("apNodeInfoWriterV2", AP_NODE, WRITES, TELLS, IGNORED,
              [] { return apNodeInfoWriterV2("f", count, records<ApNodeV2>()); }, {apNode::writerMessages}),
    Operation(
        "apNodeInfoReaderV2", AP_NODE, READS, TELLS, IGNORED,
        [] { return apNodeInfoReaderV2("f", count8(), records<ApNodeV2>(), macs); }, {apNode::readerMessages},
        expectApNodes),
    Operation("apAllInfoWriter", AP_ALL, WRITES, TELLS, REPORTED,
              [] { return apAllInfoWriter("f", records<ApInfoAllV2>(), count, false); },
              {apAll::writerMessages}),
    Operation(
        "apAllInfoOnlyReader", AP_ALL, READS, TELLS, REPORTED,
        [] { return apAllInfoOnlyReader("f", records<ApInfoAllV2>(), count, macs); }, {apAll::readerMessages},
        expectApAllRaw),
    Operation(
        "apAllInfoReader", AP_ALL, READS, ALWAYS_TRUE, IGNORED,
        [] { return apAllInfoReader("f", records<ApInfoAllV2>(), count, macs); }, {apAll::readerMessages},
        expectApAllBounded),
    Operation("apAllDetailInfoWriter", AP_DETAIL, WRITES, TELLS, IGNORED,
              [] { return apAllDetailInfoWriter("f", records<ApInfoAllV2>(), count, false); },
              {apAll::detailWriterMessages}),
    Operation(
        "apAllDetailInfoReader", AP_DETAIL, READS, TELLS, REPORTED,
        [] { return apAllDetailInfoReader("f", records<ApInfoAllV2>(), count8(), macs); },
        {apAll::detailReaderMessages}, expectApDetail),
    Operation(
        "updataSingleApAllInfo", AP_ALL, UPDATES, TELLS, EITHER,
        [] { return updataSingleApAllInfo("f", &income.apAll); },
        {fileHelpers::counterMessages, apAll::readerMessages, apAll::writerMessages, apAll::updateMessages}),
    Operation(
        "deleteSingleApAllInfo", AP_ALL, UPDATES, TELLS, EITHER,
        [] { return deleteSingleApAllInfo("f", income.apAll.apNodeV2.deviceMAC); },
        {fileHelpers::counterMessages, apAll::readerMessages, apAll::writerMessages, apAll::deleterMessages}),
    Operation("bridgingApNodeInfoReader", BRIDGING, READS, TELLS, EITHER,
              [] { return bridgingApNodeInfoReader("f", records<BridgingNodeV2>()); },
              {fileHelpers::counterMessages, bridging::readerMessages}),
    Operation("bridgingApNodeInfoWriter", BRIDGING, WRITES, TELLS, IGNORED,
              [] { return bridgingApNodeInfoWriter("f", records<BridgingNodeV2>(), count); },
              {bridging::writerMessages}),
    Operation("updateSingleBridgingInfo (FAP)", BRIDGING, UPDATES, ALWAYS_TRUE, EITHER,
              [] { return updateSingleBridgingInfo("f", &income.bridging, true); },
              {fileHelpers::counterMessages, bridging::readerMessages, bridging::writerMessages,
               bridging::fapMessages}),
    Operation("updateSingleBridgingInfo (RE)", BRIDGING, UPDATES, ALWAYS_TRUE, EITHER,
              [] { return updateSingleBridgingInfo("f", &income.bridging, false); },
              {fileHelpers::counterMessages, bridging::readerMessages, bridging::writerMessages,
               bridging::reMessages}),
    Operation(
        "stationInfoOnlyReader", STATION, READS, TELLS, IGNORED,
        [] { return stationInfoOnlyReader("f", records<StaConnection>()); }, {station::readerMessages},
        expectStations, true),
    Operation(
        "stationNodeInfoReader", STATION, READS, TELLS, IGNORED,
        [] { return stationNodeInfoReader("empty", "f", records<StaConnection>()); }, {bothStationMessages},
        expectStations, true),
    Operation("stationNodeInfoWriter", STATION, WRITES, TELLS, IGNORED,
              [] { return stationNodeInfoWriter("f", records<StaConnection>(), count); },
              {station::writerMessages}),
    Operation("stationInfoAppendWriter", STATION, UPDATES, TELLS, EITHER,
              [] { return stationInfoAppendWriter("f", &income.station, 1); },
              {fileHelpers::counterMessages, station::readerMessages, station::writerMessages,
               station::appendMessages}),
    Operation(
        "candidateApNodeInfoReader", CANDIDATE, READS, TELLS, REPORTED,
        [] { return candidateApNodeInfoReader("f", records<CandidateAp>()); }, {candidate::readerMessages},
        expectCandidates, true),
    Operation("candidateApNodeInfoWriter", CANDIDATE, WRITES, TELLS, REPORTED,
              [] { return candidateApNodeInfoWriter("f", records<CandidateAp>(), count); },
              {candidate::writerMessages}),
    Operation("patParameterReader", PAT_V1, READS, TELLS, REPORTED,
              [] { return patParameterReader("f", count, records<PatParameter>()); },
              {fileHelpers::counterMessages, pat::oldReaderMessages}),
    Operation("patParameterReaderV2", PAT_V2, UPDATES, TELLS, REPORTED,
              [] { return patParameterReaderV2("f", count, records<PatParameterV2>()); },
              {fileHelpers::counterMessages, pat::writerMessages, pat::readerMessages}),
    Operation("patParameterWriterV2", PAT_V2, WRITES, TELLS, IGNORED,
              [] { return patParameterWriterV2("f", count, records<PatParameterV2>(), nullptr); },
              {pat::writerMessages}),
    Operation("updateSinglePatV2", PAT_V2, UPDATES, ALWAYS_FALSE, IGNORED,
              [] { return updateSinglePatV2("f", &income.pat); }, {pat::writerMessages}),
    Operation("patInitV2", PAT_V2, UPDATES, NOTHING, IGNORED,
              [] {
                  patInitV2("f", income.pat.deviceMac);
                  return 0;
              },
              {pat::writerMessages}),
    Operation(
        "scanningInfoReader", SCANNING, READS, TELLS, REPORTED,
        [] { return scanningInfoReader("f", records<ScanningInfo>()); }, {scanning::readerMessages},
        expectScans, true),
    Operation("scanningInfoWriter", SCANNING, WRITES, TELLS, REPORTED,
              [] { return scanningInfoWriter("f", records<ScanningInfo>(), count); },
              {scanning::writerMessages}),
    Operation("scanningInfoDeleter", SCANNING, UPDATES, TELLS, EITHER,
              [] { return scanningInfoDeleter("f", income.scan.deviceMAC); },
              {fileHelpers::counterMessages, scanning::readerMessages, scanning::writerMessages,
               scanning::deleterMessages}),
    Operation("appendScanningInfo", SCANNING, UPDATES, TELLS, EITHER,
              [] { return appendScanningInfo("f", &income.scan, 1); },
              {fileHelpers::counterMessages, scanning::readerMessages, scanning::writerMessages,
               scanning::appendMessages}),
    Operation("appendSingleScanningInfo", SCANNING, UPDATES, TELLS, EITHER,
              [] { return appendSingleScanningInfo("f", &income.scan); },
              {fileHelpers::counterMessages, scanning::readerMessages, scanning::writerMessages,
               scanning::appendSingleMessages}),
    Operation(
        "timeDelayInfoReader", TIME_DELAY, READS, TELLS, REPORTED,
        [] { return timeDelayInfoReader("f", records<TimeDelayInfo>(), count); }, {timeDelay::readerMessages},
        expectDelays),
    Operation("timeDelayInfoWriter", TIME_DELAY, WRITES, TELLS, REPORTED,
              [] { return timeDelayInfoWriter("f", records<TimeDelayInfo>(), count); },
              {timeDelay::writerMessages}),
    Operation("emptyTimeDelayFile", TIME_DELAY, UPDATES, TELLS, REPORTED,
              [] { return emptyTimeDelayFile("f"); }, {timeDelay::emptierMessages}),
    Operation("updateSingleTimeDelayInfo", TIME_DELAY, UPDATES, TELLS, EITHER,
              [] { return updateSingleTimeDelayInfo("f", &income.delay); },
              {fileHelpers::counterMessages, timeDelay::readerMessages, timeDelay::writerMessages,
               timeDelay::updateMessages}),
    Operation("appendSingleTimeDelayInfo", TIME_DELAY, UPDATES, TELLS, EITHER,
              [] { return appendSingleTimeDelayInfo("f", &income.delay); },
              {fileHelpers::counterMessages, timeDelay::readerMessages, timeDelay::writerMessages,
               timeDelay::appendMessages}),
    Operation("scoreInfoWriter", SCORE, WRITES, TELLS, REPORTED,
              [] { return scoreInfoWriter("f", records<ScoreInfo>(), count); }, {score::writerMessages}),
    Operation(
        "scoreInfoReader", SCORE, READS, TELLS, REPORTED,
        [] { return scoreInfoReader("f", records<ScoreInfo>(), count); }, {score::readerMessages},
        expectScores),
    Operation(
        "scoreInfoCntReader", SCORE, READS, NOTHING, IGNORED, [] { return scoreInfoCntReader("f"); },
        {score::countReaderMessages},
        [](Text file, void*, int, char (*)[16]) { return expectedScoreCnt(file) == 1; }),
    Operation(
        "apRankInfoReader", AP_RANK, READS, TELLS, REPORTED,
        [] { return apRankInfoReader("f", records<ApRank>()); }, {apRank::readerMessages}, expectRanks, true),
    Operation("apRankInfoWriter", AP_RANK, WRITES, TELLS, REPORTED,
              [] { return apRankInfoWriter("f", records<ApRank>(), count); }, {apRank::writerMessages}),
    Operation("updataSingleApRankInfo", AP_RANK, UPDATES, TELLS, EITHER,
              [] { return updataSingleApRankInfo("f", &income.rank); },
              {fileHelpers::counterMessages, apRank::readerMessages, apRank::writerMessages,
               apRank::updateMessages}),
    Operation(
        "apRankIndexInfoReader", RANK_INDEX, READS, TELLS, REPORTED,
        [] { return apRankIndexInfoReader("f", records<ApRankIndex>()); }, {apRankIndex::readerMessages},
        expectRankIndex, true),
    Operation("apRankIndexInfoWriter", RANK_INDEX, WRITES, TELLS, REPORTED,
              [] { return apRankIndexInfoWriter("f", records<ApRankIndex>()); },
              {apRankIndex::writerMessages}),
    Operation(
        "apAlgOutputInfoReader", OUTPUT, READS, TELLS, REPORTED,
        [] { return apAlgOutputInfoReader("f", records<ApAlgInterfaceOutput>()); }, {output::readerMessages},
        expectOutput, true),
    Operation("apAlgOutputInfoWriter", OUTPUT, WRITES, TELLS, REPORTED,
              [] { return apAlgOutputInfoWriter("f", records<ApAlgInterfaceOutput>()); },
              {output::writerMessages}),
};

/* ---- The files ---------------------------------------------------------- */

enum State {
    MISSING,
    EMPTY,
    ONE,
    SEVERAL,
    AT_CAP,
    OVER_CAP,
    BLANK_LINE,
    SHORT_LINE,
    UNTERMINATED,
    DIRECTORY,
    STATES
};

/* Where a kind has no cap: a file of some length. (PAT version 2: entries of one device.) */
static const int caps[KINDS] = {20, 20, 20, 64, 128, 20, 2, 100, 256, 256, 20, 20, 30, 2};

static char before[FILE_ROOM];
static size_t beforeSize;
static State state;

/* Removes what stands from `from` to the end of its line, except the newline. */
static void cutLine(size_t from)
{
    const size_t rest = strcspn(before + from, "\n");
    memmove(before + from, before + from + rest, beforeSize + 1 - from - rest);
    beforeSize -= rest;
}

static void blankLine(size_t at)
{
    memmove(before + at + 1, before + at, beforeSize + 1 - at);
    before[at] = '\n';
    ++beforeSize;
}

static void makeState(Kind kind, State of)
{
    state = of;
    count = of == AT_CAP     ? caps[kind]
            : of == OVER_CAP ? caps[kind] + 1
            : of == ONE      ? 1
            : of == MISSING  ? 2
                             : 3;
    if (kind == PAT_V2 && count >= 100) {
        beforeSize = patFileOfEntries(count, before);
        count = 1;
    } else {
        beforeSize = exampleFile(kind, count, before);
    }
    before[beforeSize] = '\0';
    const size_t second = strcspn(before, "\n") + 1; /* the file has a second line, except in ONE */
    if (of == BLANK_LINE)
        blankLine(second);
    else if (of == SHORT_LINE)
        cutLine(second + 14);
    else if (of == UNTERMINATED)
        --beforeSize;
    else if (of == EMPTY)
        beforeSize = 0;
}

/* The state's file, before every run. */
static void putFile()
{
    if (unlink("f") != 0)
        rmdir("f");
    if (state == DIRECTORY)
        mkdir("f", 0777);
    else if (state != MISSING)
        test::writeBytes("f", before, beforeSize);
}

/* ---- One run ------------------------------------------------------------ */

enum { UNREAD = 0xA5 };

/* A file's bytes; -1 where there is no file that can be read. */
struct Bytes {
    char bytes[FILE_ROOM];
    long size;
};

static int result;
static Bytes after;
static bool held;      /* what was given was left as it was */
static long bytesRead; /* by the run, where reads are counted */

static void fillArray(const Operation& op)
{
    memset(array.bytes, UNREAD, sizeof array.bytes);
    if (op.doing != WRITES)
        return;
    if (op.kind == RANK_INDEX) { /* as many entries as the file of the state */
        fillRecord(RANK_INDEX, count, array.bytes);
        return;
    }
    for (int i = 0; i < count; ++i)
        fillRecord(op.kind, i, array.bytes + recordSize(op.kind) * static_cast<size_t>(i));
    if (op.kind == PAT_V2 && (state == AT_CAP || state == OVER_CAP)) {
        PatParameterV2* pat = records<PatParameterV2>();
        pat->commonPatNum = static_cast<uint8_t>(state == AT_CAP ? 100 : 101);
    }
}

/* Runs the function on the state's file; the faults are armed by `arm`. */
static void runOperation(const Operation& op, void (*arm)())
{
    static unsigned char given[ARRAY_ROOM];
    static char givenIncome[sizeof income];
    putFile();
    fillArray(op);
    memcpy(given, array.bytes, sizeof given);
    memcpy(givenIncome, income.bytes, sizeof givenIncome);
    test::clearMessages();
    bytesRead = test::bytesRead();
    arm();
    result = op.run();
    test::failNothing();
    bytesRead = test::bytesRead() - bytesRead;
    held = memcmp(givenIncome, income.bytes, sizeof givenIncome) == 0 &&
           (op.doing != WRITES || memcmp(given, array.bytes, sizeof given) == 0);
    after.size = test::readBytes("f", after.bytes, sizeof after.bytes);
}

/* ---- What a run without a fault does ------------------------------------- */

static void copyBytes(Bytes& to, const Bytes& from)
{
    to.size = from.size;
    memcpy(to.bytes, from.bytes, from.size > 0 ? static_cast<size_t>(from.size) : 0);
}

static int cleanResult;
static Bytes clean; /* the file it leaves */
static Bytes alone; /* the file it leaves where there was none */
static unsigned char cleanArray[ARRAY_ROOM];

static void runClean(const Operation& op)
{
    const State of = state;
    state = MISSING;
    runOperation(op, [] {});
    copyBytes(alone, after);
    test::closeLeftStreams();
    state = of;
    runOperation(op, [] {});
    cleanResult = result;
    copyBytes(clean, after);
    memcpy(cleanArray, array.bytes, sizeof cleanArray);
    test::closeLeftStreams();
}

/* ---- Messages ----------------------------------------------------------- */

/* Whether a message of the transcript is the one stated, in which '*' stands for a word. */
static bool matches(const char* message, const char* stated)
{
    const size_t name = strcspn(stated, ":");
    if (message[0] != '[' || strncmp(message + 1, stated, name) != 0 ||
        strncmp(message + 1 + name, ":#]: ", 5) != 0)
        return false;
    message += 1 + name + 5;
    for (const char* text = stated + name + 2; *text != '\0'; ++text) {
        if (*text == '*')
            message += strspn(message, "-0123456789abcdefghijklmnopqrstuvwxyz");
        else if (*message++ != *text)
            return false;
    }
    return *message == '|';
}

/* An informational message that a failed open has instead of an error. */
static bool isQuietFailure(const char* message)
{
    return message == apAll::readerCannotOpen || message == apAll::detailReaderCannotOpen ||
           message == bridging::readerCannotOpen;
}

/* 'E', 'I', or 'Q' for a quiet failure, as the function's lists have a message; 0 where they have not. */
static char levelOf(const Operation& op, const char* message)
{
    for (const char* const* list : op.messages.lists) {
        for (; list != nullptr && *list != nullptr; ++list) {
            if (matches(message, *list + 2))
                return isQuietFailure(*list) ? 'Q' : **list;
        }
    }
    return 0;
}

struct Messages {
    int errors, informational, quiet, unknown;
};

static Messages messagesNow(const Operation& op)
{
    Messages seen = {0, 0, 0, 0};
    for (const char* at = test::messages(); *at != '\0'; at = strchr(at, '|') + 1) {
        const char level = strncmp(at, "libzo: ", 7) == 0 ? levelOf(op, at + 7) : '\0';
        seen.errors += level == 'E';
        seen.informational += level == 'I';
        seen.quiet += level == 'Q';
        seen.unknown += level == '\0';
    }
    return seen;
}

static bool said(const char* text)
{
    return strstr(test::messages(), text) != nullptr;
}

/* ---- What may come of a fault ------------------------------------------- */

static const char* const callNames[test::CALL_KINDS] = {"open", "close", "read", "write", "allocate", "grow"};
static const char* const stateNames[STATES] = {"missing",      "empty",        "one record", "several",
                                               "at the cap",   "over the cap", "blank line", "short line",
                                               "unterminated", "directory"};

static const Operation* current;
static test::Call call;
static int nth;
static bool onwards;

static void expectPromise(bool holds, const char* promise)
{
    if (holds)
        return;
    char report[1024];
    snprintf(report, sizeof report,
             "%s, file %s, %s %d%s: %s\nresult %d, clean %d, file %ld, messages %.600s", current->name,
             stateNames[state], callNames[call], nth, onwards ? " and on" : "", promise, result, cleanResult,
             after.size, test::messages());
    EXPECT_STREQ("", report);
}

static bool isWhole(const Bytes& wanted)
{
    return after.size == wanted.size &&
           (after.size < 0 || memcmp(after.bytes, wanted.bytes, static_cast<size_t>(after.size)) == 0);
}

static bool isAsBefore()
{
    if (state == MISSING || state == DIRECTORY)
        return after.size == -1;
    return after.size == static_cast<long>(beforeSize) && memcmp(after.bytes, before, beforeSize) == 0;
}

static bool isPrefixOf(const Bytes& wanted)
{
    return after.size >= 0 && after.size <= wanted.size &&
           memcmp(after.bytes, wanted.bytes, static_cast<size_t>(after.size)) == 0;
}

/* Whether the file is `wanted` with pieces left out. */
static bool isPartOf(const Bytes& wanted)
{
    long at = 0;
    for (long i = 0; i < wanted.size && at < after.size; ++i)
        at += wanted.bytes[i] == after.bytes[at];
    return after.size >= 0 && at == after.size;
}

/* Time delay and score writers go on past a value that cannot be printed. */
static bool writesOn()
{
    return current->kind == TIME_DELAY || current->kind == SCORE;
}

static bool failed()
{
    if (current->result == TELLS)
        return result == 0;
    if (current->result == COUNTS)
        return result == -1;
    return said("SingleBridgingInfo:#]: Failed to");
}

/* Whether the file holds the income's line. (A station's first field is its position.) */
static bool holdsIncome()
{
    static char line[4096];
    const size_t length = printRecords(current->kind, income.bytes, 1, line);
    line[length] = '\0';
    after.bytes[after.size > 0 ? after.size : 0] = '\0';
    return strstr(after.bytes, current->kind == STATION ? line + 4 : line) != nullptr;
}

/* Whether nothing was to be done, and nothing was done. */
static bool leftAlone()
{
    return isAsBefore() &&
           (said("There is no history data") || strcmp(current->name, "patParameterReaderV2") == 0);
}

/*
 * The bridging reader counts by itself. Where that fails it has read
 * no records and reports no more, and the update goes on with empty ones.
 */
static bool countedNothing()
{
    return current->kind == BRIDGING && said("[dataLineCounter:#]") && !said("Just save") && holdsIncome();
}

static void checkResult(const Messages& seen)
{
    if (current->result == ALWAYS_TRUE)
        expectPromise(result == 1, "always true");
    if (current->result == ALWAYS_FALSE)
        expectPromise(result == 0, "always false");
    if (current->result != TELLS && current->result != COUNTS)
        return;
    /* The one silent failure: the PAT file that cannot be opened even when it has been made. */
    const bool silent = current->kind == PAT_V2 && call == test::OPEN;
    if (failed())
        expectPromise(seen.errors + seen.quiet > 0 || silent, "a failure has its message");
    if (call == test::ALLOCATE || call == test::GROW)
        expectPromise(failed(), "no memory is a failure");
    if (call == test::WRITE && !writesOn() && current->doing == WRITES)
        expectPromise(failed(), "a failed print is a failure");
    if (call == test::CLOSE && onwards && nth == 1 && current->closing == REPORTED)
        expectPromise(failed(), "a failed close is a failure");
    if (call == test::CLOSE && current->closing == IGNORED)
        expectPromise(result == cleanResult, "a failed close changes nothing");
}

/* The file after a fault in a function that writes. */
static void checkWritten()
{
    const bool saved = isWhole(clean) || isWhole(alone) || countedNothing();
    const bool makes = strcmp(current->name, "patParameterReaderV2") == 0; /* a file that it can make anew */
    if (call == test::WRITE) {
        const bool torn = isPrefixOf(clean) || isPrefixOf(alone);
        const bool gaps = writesOn() && (isPartOf(clean) || isPartOf(alone));
        expectPromise(torn || gaps || isAsBefore(), "a failed print leaves what was printed before it");
    } else if (call == test::CLOSE) {
        expectPromise(saved || isAsBefore(), "a failed close leaves a whole file");
    } else if (call != test::READ && failed()) {
        expectPromise(isAsBefore() || (makes && saved), "a failure before the write leaves the file");
    } else if (call != test::READ) {
        expectPromise(saved || leftAlone() || current->result == ALWAYS_FALSE || current->result == NOTHING,
                      "success writes the whole file");
        expectPromise(saved || isAsBefore(), "what is not written stays");
    }
    const bool anew = !isWhole(clean) && !isAsBefore() && isWhole(alone) && call != test::WRITE;
    if (anew && current->result != NOTHING && !makes && strcmp(current->name, "touchFile") != 0)
        expectPromise(said("Just save"), "a file is not begun anew but by a save that says so");
}

/*
 * After a failed read an update has left the file, or has written one with its
 * record in it. (Where a time delay record could not be read, its empty MAC
 * ends the file: the reader's message tells.)
 */
static void checkReadFaultOfUpdate()
{
    if (current->kind == PAT_V2 || state == DIRECTORY || isAsBefore())
        return;
    if (strcmp(current->name, "touchFile") == 0 || strcmp(current->name, "emptyTimeDelayFile") == 0)
        return; /* which do not read */
    expectPromise(!failed() || current->result == ALWAYS_TRUE, "a failed read leaves the file");
    if (strstr(current->name, "elete") == nullptr)
        expectPromise(holdsIncome() || (current->kind == TIME_DELAY && said("sscanf error")),
                      "what an update writes holds its record");
    else
        expectPromise(!holdsIncome(), "what a delete writes does not hold its record");
}

/* Where reads fail from some byte on, a reader does what it does with a file of the bytes before. */
static void checkReadFaultOfReader(size_t used)
{
    static union {
        unsigned char bytes[ARRAY_ROOM];
        long long aligned;
    } wanted;
    if (current->expected == nullptr || !onwards || state == DIRECTORY || state == MISSING)
        return;
    size_t seen = static_cast<size_t>(bytesRead);
    while (current->byLine && seen > 0 && before[seen - 1] != '\n')
        --seen;
    static char wantedMacs[512][16];
    memset(wanted.bytes, UNREAD, sizeof wanted.bytes);
    const bool wantedResult = current->expected({before, seen, 0}, wanted.bytes, count, wantedMacs);
    expectPromise(result == wantedResult, "a failed read is the end of the file: result");
    expectPromise(memcmp(wanted.bytes, array.bytes, used) == 0,
                  "a failed read is the end of the file: records");
}

/* Bytes of the array that the reader may fill. */
static size_t readableBytes()
{
    if (current->kind == RANK_INDEX || current->kind == OUTPUT)
        return recordSize(current->kind);
    const bool ofLines = current->byLine || current->kind == BRIDGING;
    const int max = ofLines ? expectedLines({before, beforeSize, 0}) : count;
    return recordSize(current->kind) * static_cast<size_t>(max);
}

static void checkRead()
{
    const size_t used = readableBytes();
    size_t end = sizeof array.bytes;
    while (end > 0 && array.bytes[end - 1] == UNREAD)
        --end;
    expectPromise(end <= used, "nothing is written past the records");
    if (current->doing == READS)
        expectPromise(isAsBefore(), "a reader leaves the file");
    const bool untouched = end == 0;
    const bool whole = memcmp(array.bytes, cleanArray, sizeof cleanArray) == 0;
    if (call == test::OPEN && current->result == TELLS && failed())
        expectPromise(untouched, "what cannot be opened is not read");
    if (call == test::CLOSE && current->kind != PAT_V2)
        expectPromise(whole || (untouched && current->kind == BRIDGING),
                      "a failed close comes after the read");
    if (call == test::READ)
        checkReadFaultOfReader(used);
}

static void checkLeaks()
{
    const bool leavesStream = strcmp(current->name, "patParameterReader") == 0 && said("does not exit");
    const bool leavesArray =
        strcmp(current->name, "updataSingleApAllInfo") == 0 && said("failed to reallocte memory.");
    expectPromise(test::openStreams() <= leavesStream, "no stream is left");
    expectPromise(test::heldArrays() == leavesArray, "no array is left");
    test::closeLeftStreams();
    test::freeLeftArrays();
}

static void checkRun(const Messages& seen)
{
    expectPromise(seen.unknown == 0, "only the function's own messages");
    expectPromise(held, "what the caller passes is unchanged");
    checkResult(seen);
    if (current->doing != READS)
        checkWritten();
    if (current->doing == UPDATES && call == test::READ)
        checkReadFaultOfUpdate();
    if (current->doing == READS || strcmp(current->name, "patParameterReaderV2") == 0)
        checkRead();
    checkLeaks();
}

/* ---- The sweep ---------------------------------------------------------- */

static long injected[test::CALL_KINDS];

static void armFault()
{
    if (onwards)
        test::failFrom(call, nth);
    else
        test::failNth(call, nth);
}

/* One fault at the three levels of messages; false when the function ends without reaching it. */
static bool inject()
{
    const int calls = test::callCount(call);
    test::setLevel(6);
    runOperation(*current, armFault);
    if (test::callCount(call) - calls < nth) {
        checkLeaks();
        return false;
    }
    ++injected[call];
    const Messages all = messagesNow(*current);
    checkRun(all);
    const int was = result;
    static Bytes file;
    copyBytes(file, after);
    test::setLevel(3);
    runOperation(*current, armFault);
    const Messages errors = messagesNow(*current);
    expectPromise(errors.errors == all.errors && errors.errors == test::messageCount(),
                  "at level 3 the errors alone");
    expectPromise(result == was && isWhole(file), "the level changes nothing");
    test::closeLeftStreams();
    test::freeLeftArrays();
    test::setLevel(2);
    runOperation(*current, armFault);
    expectPromise(test::messageCount() == 0, "no message below level 3");
    expectPromise(result == was && isWhole(file), "the level changes nothing");
    test::closeLeftStreams();
    test::freeLeftArrays();
    return true;
}

/* Every k; in the long files at the caps, every k up to 40 and then in steps that grow with it. */
static void sweepCalls()
{
    const bool longFile = state == AT_CAP || state == OVER_CAP;
    for (nth = 1; inject(); nth += longFile && nth > 40 ? nth / 3 : 1) {
    }
}

/* The income: the key of the file's second record, or one that the file does not have. */
static void giveIncome(Kind kind, bool known)
{
    memset(income.bytes, 0, sizeof income.bytes);
    if (recordSize(kind) <= sizeof income.bytes)
        fillRecord(kind, known ? 1 : 600, income.bytes);
}

static void sweepOperation(const Operation& op)
{
    current = &op;
    for (int of = 0; of < STATES; ++of) {
        for (int known = 0; known < (op.doing == UPDATES ? 2 : 1); ++known) {
            giveIncome(op.kind, known == 1);
            makeState(op.kind, static_cast<State>(of));
            test::setLevel(6);
            runClean(op);
            for (int kind = 0; kind < test::CALL_KINDS; ++kind) {
                call = static_cast<test::Call>(kind);
                test::streamBuffer(call == test::READ ? 16 : -1);
                onwards = false;
                sweepCalls();
                onwards = true;
                sweepCalls();
            }
            test::streamBuffer(-1);
        }
    }
}

/* The operations of some kinds; prints what was injected. */
static void sweepKinds(Kind first, Kind last)
{
    memset(injected, 0, sizeof injected);
    test::writeFile("empty", "");
    for (const Operation& op : operations) {
        if (op.kind >= first && op.kind <= last)
            sweepOperation(op);
    }
    unlink("f");
    rmdir("f");
    long all = 0;
    printf("faults injected, %s to %s:", formatOf(first).name, formatOf(last).name);
    for (int kind = 0; kind < test::CALL_KINDS; ++kind) {
        printf(" %s %ld", callNames[kind], injected[kind]);
        all += injected[kind];
    }
    printf(", in all %ld, each at three levels\n", all);
}

static long injectedInAll()
{
    long all = 0;
    for (const long ofKind : injected)
        all += ofKind;
    return all;
}

TEST(FaultSweep, meshFiles)
{
    sweepKinds(AP_NODE, BRIDGING);
    EXPECT_GT(injectedInAll(), 8000);
}

TEST(FaultSweep, stationFiles)
{
    sweepKinds(STATION, CANDIDATE);
    EXPECT_GT(injectedInAll(), 2000);
}

TEST(FaultSweep, patFiles)
{
    sweepKinds(PAT_V1, PAT_V2);
    EXPECT_GT(injectedInAll(), 3000);
}

TEST(FaultSweep, measurementFiles)
{
    sweepKinds(SCANNING, SCORE);
    EXPECT_GT(injectedInAll(), 8000);
}

TEST(FaultSweep, rankFiles)
{
    sweepKinds(AP_RANK, OUTPUT);
    EXPECT_GT(injectedInAll(), 1500);
}

/* The states are what their names say, or the sweep would miss what it is for. */
TEST(FaultSweep, statesAreWhatTheyAreCalled)
{
    static const int lines[STATES] = {-1, 0, 1, 3, 20, 21, 4, 3, 3, 0};
    for (int of = 0; of < STATES; ++of) {
        makeState(AP_RANK, static_cast<State>(of));
        putFile();
        EXPECT_EQ(lines[of], dataLineCounter("f"));
    }
    rmdir("f");
}
