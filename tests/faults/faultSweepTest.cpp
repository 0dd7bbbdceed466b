/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Runs every function that uses a file, on files in every state, with faults in every
 * kind of call. The k-th call fails, either only that one or all from then on, for each k
 * until the function ends without reaching it. The allowed results are stated below, for
 * each function and each kind of call.
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
    FALSE_IF_FAILED,     /* and logs a message */
    MINUS_ONE_IF_FAILED, /* and logs a message */
    ALWAYS_TRUE,         /* also after a failure */
    ALWAYS_FALSE,        /* also after a success */
    NOT_A_STATUS         /* no result, or one that reports no failure */
};
enum Closing {
    REPORTED, /* a failed close is a failure */
    IGNORED,  /* a failed close changes nothing */
    EITHER    /* depends on what the function does with the file */
};

/* The allowed messages: the function's own, and those of the functions that it calls. */
struct MessageLists {
    const char* const* lists[4];
};

struct Operation {
    constexpr Operation(const char* name, Kind kind, Doing doing, Result result, Closing closing,
                        bool (*runBool)(), MessageLists messages, ExpectedReader expected = nullptr,
                        bool byLine = false)
        : name(name), kind(kind), doing(doing), result(result), closing(closing), runBool(runBool),
          runInt(nullptr), messages(messages), expected(expected), byLine(byLine)
    {
    }
    constexpr Operation(const char* name, Kind kind, Doing doing, Result result, Closing closing,
                        int (*runInt)(), MessageLists messages, ExpectedReader expected = nullptr,
                        bool byLine = false)
        : name(name), kind(kind), doing(doing), result(result), closing(closing), runBool(nullptr),
          runInt(runInt), messages(messages), expected(expected), byLine(byLine)
    {
    }

    int run() const { return runBool != nullptr ? runBool() : runInt(); }

    const char* name;
    Kind kind;
    Doing doing;
    Result result;
    Closing closing;
    bool (*runBool)();
    int (*runInt)();
    MessageLists messages;
    /* The result of a reader for a file that ends early; null for a reader that counts the lines first. */
    ExpectedReader expected;
    bool byLine; /* reads complete lines: drops a line that a failed read has cut */
};

/* If stationNodeInfoReader() cannot open a file, its message names the first one. */
static const char* const bothStationMessages[] = {"E stationNodeInfoReader: Failed to read file: empty.\n",
                                                  station::bothReaderCannotRead, nullptr};

/* The arguments of the functions: `count` records in `array`, and one income. */
enum { ARRAY_ROOM = 1 << 15, MACS = 512 };
static union {
    unsigned char bytes[ARRAY_ROOM];
    long long aligned;
} array;
static char macs[MACS][ALG_MAC_SIZE];
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
    return static_cast<Record*>(static_cast<void*>(array.bytes));
}

static uint8_t count8()
{
    return static_cast<uint8_t>(count);
}

static const Operation operations[] = {
    Operation(
        "dataLineCounter", AP_RANK, READS, MINUS_ONE_IF_FAILED, REPORTED, [] { return dataLineCounter("f"); },
        {fileHelpers::counterMessages}, nullptr, true),
    Operation("touchFile", AP_RANK, UPDATES, FALSE_IF_FAILED, EITHER, [] { return touchFile("f"); },
              {fileHelpers::touchMessages}),
    Operation("apNodeInfoWriterV2", AP_NODE, WRITES, FALSE_IF_FAILED, IGNORED,
              [] { return apNodeInfoWriterV2("f", count, records<ApNodeV2>()); }, {apNode::writerMessages}),
    Operation(
        "apNodeInfoReaderV2", AP_NODE, READS, FALSE_IF_FAILED, IGNORED,
        [] { return apNodeInfoReaderV2("f", count8(), records<ApNodeV2>(), macs); }, {apNode::readerMessages},
        expectApNodes),
    Operation("apAllInfoWriter", AP_ALL, WRITES, FALSE_IF_FAILED, REPORTED,
              [] { return apAllInfoWriter("f", records<ApInfoAllV2>(), count, false); },
              {apAll::writerMessages}),
    Operation(
        "apAllInfoOnlyReader", AP_ALL, READS, FALSE_IF_FAILED, REPORTED,
        [] { return apAllInfoOnlyReader("f", records<ApInfoAllV2>(), count, macs); }, {apAll::readerMessages},
        expectApAllRaw),
    Operation(
        "apAllInfoReader", AP_ALL, READS, ALWAYS_TRUE, IGNORED,
        [] { return apAllInfoReader("f", records<ApInfoAllV2>(), count, macs); }, {apAll::readerMessages},
        expectApAllBounded),
    Operation("apAllDetailInfoWriter", AP_DETAIL, WRITES, FALSE_IF_FAILED, IGNORED,
              [] { return apAllDetailInfoWriter("f", records<ApInfoAllV2>(), count, false); },
              {apAll::detailWriterMessages}),
    Operation(
        "apAllDetailInfoReader", AP_DETAIL, READS, FALSE_IF_FAILED, REPORTED,
        [] { return apAllDetailInfoReader("f", records<ApInfoAllV2>(), count8(), macs); },
        {apAll::detailReaderMessages}, expectApDetail),
    Operation(
        "updataSingleApAllInfo", AP_ALL, UPDATES, FALSE_IF_FAILED, EITHER,
        [] { return updataSingleApAllInfo("f", &income.apAll); },
        {fileHelpers::counterMessages, apAll::readerMessages, apAll::writerMessages, apAll::updateMessages}),
    Operation(
        "deleteSingleApAllInfo", AP_ALL, UPDATES, FALSE_IF_FAILED, EITHER,
        [] { return deleteSingleApAllInfo("f", income.apAll.apNodeV2.deviceMAC); },
        {fileHelpers::counterMessages, apAll::readerMessages, apAll::writerMessages, apAll::deleterMessages}),
    Operation("bridgingApNodeInfoReader", BRIDGING, READS, FALSE_IF_FAILED, EITHER,
              [] { return bridgingApNodeInfoReader("f", records<BridgingNodeV2>()); },
              {fileHelpers::counterMessages, bridging::readerMessages}),
    Operation("bridgingApNodeInfoWriter", BRIDGING, WRITES, FALSE_IF_FAILED, IGNORED,
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
        "stationInfoOnlyReader", STATION, READS, FALSE_IF_FAILED, IGNORED,
        [] { return stationInfoOnlyReader("f", records<StaConnection>()); }, {station::readerMessages},
        expectStations, true),
    Operation(
        "stationNodeInfoReader", STATION, READS, FALSE_IF_FAILED, IGNORED,
        [] { return stationNodeInfoReader("empty", "f", records<StaConnection>()); }, {bothStationMessages},
        expectStations, true),
    Operation("stationNodeInfoWriter", STATION, WRITES, FALSE_IF_FAILED, IGNORED,
              [] { return stationNodeInfoWriter("f", records<StaConnection>(), count); },
              {station::writerMessages}),
    Operation("stationInfoAppendWriter", STATION, UPDATES, FALSE_IF_FAILED, EITHER,
              [] { return stationInfoAppendWriter("f", &income.station, 1); },
              {fileHelpers::counterMessages, station::readerMessages, station::writerMessages,
               station::appendMessages}),
    Operation(
        "candidateApNodeInfoReader", CANDIDATE, READS, FALSE_IF_FAILED, REPORTED,
        [] { return candidateApNodeInfoReader("f", records<CandidateAp>()); }, {candidate::readerMessages},
        expectCandidates, true),
    Operation("candidateApNodeInfoWriter", CANDIDATE, WRITES, FALSE_IF_FAILED, REPORTED,
              [] { return candidateApNodeInfoWriter("f", records<CandidateAp>(), count); },
              {candidate::writerMessages}),
    Operation("patParameterReader", PAT_V1, READS, FALSE_IF_FAILED, REPORTED,
              [] { return patParameterReader("f", count, records<PatParameter>()); },
              {fileHelpers::counterMessages, pat::oldReaderMessages}),
    Operation("patParameterReaderV2", PAT_V2, UPDATES, FALSE_IF_FAILED, REPORTED,
              [] { return patParameterReaderV2("f", count, records<PatParameterV2>()); },
              {fileHelpers::counterMessages, pat::writerMessages, pat::readerMessages}),
    Operation("patParameterWriterV2", PAT_V2, WRITES, FALSE_IF_FAILED, IGNORED,
              [] { return patParameterWriterV2("f", count, records<PatParameterV2>(), nullptr); },
              {pat::writerMessages}),
    Operation("updateSinglePatV2", PAT_V2, UPDATES, ALWAYS_FALSE, IGNORED,
              [] { return updateSinglePatV2("f", &income.pat); }, {pat::writerMessages}),
    Operation("patInitV2", PAT_V2, UPDATES, NOT_A_STATUS, IGNORED,
              [] {
                  patInitV2("f", income.pat.deviceMac);
                  return 0;
              },
              {pat::writerMessages}),
    Operation(
        "scanningInfoReader", SCANNING, READS, FALSE_IF_FAILED, REPORTED,
        [] { return scanningInfoReader("f", records<ScanningInfo>()); }, {scanning::readerMessages},
        expectScans, true),
    Operation("scanningInfoWriter", SCANNING, WRITES, FALSE_IF_FAILED, REPORTED,
              [] { return scanningInfoWriter("f", records<ScanningInfo>(), count); },
              {scanning::writerMessages}),
    Operation("scanningInfoDeleter", SCANNING, UPDATES, FALSE_IF_FAILED, EITHER,
              [] { return scanningInfoDeleter("f", income.scan.deviceMAC); },
              {fileHelpers::counterMessages, scanning::readerMessages, scanning::writerMessages,
               scanning::deleterMessages}),
    Operation("appendScanningInfo", SCANNING, UPDATES, FALSE_IF_FAILED, EITHER,
              [] { return appendScanningInfo("f", &income.scan, 1); },
              {fileHelpers::counterMessages, scanning::readerMessages, scanning::writerMessages,
               scanning::appendMessages}),
    Operation("appendSingleScanningInfo", SCANNING, UPDATES, FALSE_IF_FAILED, EITHER,
              [] { return appendSingleScanningInfo("f", &income.scan); },
              {fileHelpers::counterMessages, scanning::readerMessages, scanning::writerMessages,
               scanning::appendSingleMessages}),
    Operation(
        "timeDelayInfoReader", TIME_DELAY, READS, FALSE_IF_FAILED, REPORTED,
        [] { return timeDelayInfoReader("f", records<TimeDelayInfo>(), count); }, {timeDelay::readerMessages},
        expectDelays),
    Operation("timeDelayInfoWriter", TIME_DELAY, WRITES, FALSE_IF_FAILED, REPORTED,
              [] { return timeDelayInfoWriter("f", records<TimeDelayInfo>(), count); },
              {timeDelay::writerMessages}),
    Operation("emptyTimeDelayFile", TIME_DELAY, UPDATES, FALSE_IF_FAILED, REPORTED,
              [] { return emptyTimeDelayFile("f"); }, {timeDelay::emptierMessages}),
    Operation("updateSingleTimeDelayInfo", TIME_DELAY, UPDATES, FALSE_IF_FAILED, EITHER,
              [] { return updateSingleTimeDelayInfo("f", &income.delay); },
              {fileHelpers::counterMessages, timeDelay::readerMessages, timeDelay::writerMessages,
               timeDelay::updateMessages}),
    Operation("appendSingleTimeDelayInfo", TIME_DELAY, UPDATES, FALSE_IF_FAILED, EITHER,
              [] { return appendSingleTimeDelayInfo("f", &income.delay); },
              {fileHelpers::counterMessages, timeDelay::readerMessages, timeDelay::writerMessages,
               timeDelay::appendMessages}),
    Operation("scoreInfoWriter", SCORE, WRITES, FALSE_IF_FAILED, REPORTED,
              [] { return scoreInfoWriter("f", records<ScoreInfo>(), count); }, {score::writerMessages}),
    Operation(
        "scoreInfoReader", SCORE, READS, FALSE_IF_FAILED, REPORTED,
        [] { return scoreInfoReader("f", records<ScoreInfo>(), count); }, {score::readerMessages},
        expectScores),
    Operation(
        "scoreInfoCntReader", SCORE, READS, NOT_A_STATUS, IGNORED, [] { return scoreInfoCntReader("f"); },
        {score::countReaderMessages},
        [](Text file, void*, int, char (*)[ALG_MAC_SIZE]) { return expectedScoreCnt(file) == 1; }),
    Operation(
        "apRankInfoReader", AP_RANK, READS, FALSE_IF_FAILED, REPORTED,
        [] { return apRankInfoReader("f", records<ApRank>()); }, {apRank::readerMessages}, expectRanks, true),
    Operation("apRankInfoWriter", AP_RANK, WRITES, FALSE_IF_FAILED, REPORTED,
              [] { return apRankInfoWriter("f", records<ApRank>(), count); }, {apRank::writerMessages}),
    Operation("updataSingleApRankInfo", AP_RANK, UPDATES, FALSE_IF_FAILED, EITHER,
              [] { return updataSingleApRankInfo("f", &income.rank); },
              {fileHelpers::counterMessages, apRank::readerMessages, apRank::writerMessages,
               apRank::updateMessages}),
    Operation(
        "apRankIndexInfoReader", RANK_INDEX, READS, FALSE_IF_FAILED, REPORTED,
        [] { return apRankIndexInfoReader("f", records<ApRankIndex>()); }, {apRankIndex::readerMessages},
        expectRankIndex, true),
    Operation("apRankIndexInfoWriter", RANK_INDEX, WRITES, FALSE_IF_FAILED, REPORTED,
              [] { return apRankIndexInfoWriter("f", records<ApRankIndex>()); },
              {apRankIndex::writerMessages}),
    Operation(
        "apAlgOutputInfoReader", OUTPUT, READS, FALSE_IF_FAILED, REPORTED,
        [] { return apAlgOutputInfoReader("f", records<ApAlgInterfaceOutput>()); }, {output::readerMessages},
        expectOutput, true),
    Operation("apAlgOutputInfoWriter", OUTPUT, WRITES, FALSE_IF_FAILED, REPORTED,
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

/* The cap of each kind; any number for a kind without one. (PAT version 2: entries of one device.) */
static const int caps[] = {20,
                           20,
                           20,
                           ALG_FAP_BRIDGING_CAP,
                           ALG_STATION_CAP,
                           20,
                           2,
                           ALG_PAT_CAPACITY,
                           ALG_SCANNING_CAP,
                           ALG_TIME_DELAY_CAP,
                           20,
                           20,
                           ALG_RANK_INDEX_CAPACITY,
                           2};
static_assert(sizeof caps / sizeof *caps == KINDS, "a kind has no cap here");

static char before[FILE_ROOM];
static size_t beforeSize;
static State state;

/* Removes the bytes from `from` to the end of its line, except the newline. */
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

static void makeState(Kind kind, State next)
{
    state = next;
    count = next == AT_CAP     ? caps[kind]
            : next == OVER_CAP ? caps[kind] + 1
            : next == ONE      ? 1
            : next == MISSING  ? 2
                               : 3;
    if (kind == PAT_V2 && count >= ALG_PAT_CAPACITY) {
        beforeSize = patFileOfEntries(count, before);
        count = 1;
    } else {
        beforeSize = exampleFile(kind, count, before);
    }
    before[beforeSize] = '\0';
    const size_t second = strcspn(before, "\n") + 1; /* every state except ONE has a second line */
    if (next == BLANK_LINE)
        blankLine(second);
    else if (next == SHORT_LINE)
        cutLine(second + 14);
    else if (next == UNTERMINATED)
        --beforeSize;
    else if (next == EMPTY)
        beforeSize = 0;
}

/* Creates the file of the state, before every run. */
static void createFile()
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

/* The bytes of a file. The size is -1 if it cannot be read. */
struct Bytes {
    char bytes[FILE_ROOM];
    long size;
};

static int result;
static Bytes after;
static bool argumentsUnchanged;
static long bytesRead; /* during the run, if reads are counted */

static void fillArray(const Operation& op)
{
    memset(array.bytes, UNREAD, sizeof array.bytes);
    if (op.doing != WRITES)
        return;
    if (op.kind == RANK_INDEX) { /* with as many entries as the file of the state */
        fillRecord(RANK_INDEX, count, array.bytes);
        return;
    }
    for (int i = 0; i < count; ++i)
        fillRecord(op.kind, i, array.bytes + recordSize(op.kind) * static_cast<size_t>(i));
    if (op.kind == PAT_V2 && (state == AT_CAP || state == OVER_CAP)) {
        PatParameterV2* pat = records<PatParameterV2>();
        pat->commonPatNum = static_cast<uint8_t>(state == AT_CAP ? ALG_PAT_CAPACITY : ALG_PAT_CAPACITY + 1);
    }
}

/* Runs the function on the file of the state, with the faults that `arm` arms. */
static void runOperation(const Operation& op, void (*arm)())
{
    static unsigned char arrayBefore[ARRAY_ROOM];
    static char incomeBefore[sizeof income];
    createFile();
    fillArray(op);
    memcpy(arrayBefore, array.bytes, sizeof arrayBefore);
    memcpy(incomeBefore, income.bytes, sizeof incomeBefore);
    test::clearMessages();
    bytesRead = test::bytesRead();
    arm();
    result = op.run();
    test::failNothing();
    bytesRead = test::bytesRead() - bytesRead;
    argumentsUnchanged = memcmp(incomeBefore, income.bytes, sizeof incomeBefore) == 0 &&
                         (op.doing != WRITES || memcmp(arrayBefore, array.bytes, sizeof arrayBefore) == 0);
    after.size = test::readBytes("f", after.bytes, sizeof after.bytes);
}

/* ---- Runs without a fault ------------------------------------------------ */

static void copyBytes(Bytes& to, const Bytes& from)
{
    to.size = from.size;
    memcpy(to.bytes, from.bytes, from.size > 0 ? static_cast<size_t>(from.size) : 0);
}

static int cleanResult;
static Bytes cleanFile;   /* after a run on the file of the state */
static Bytes createdFile; /* after a run without a file */
static unsigned char cleanArray[ARRAY_ROOM];

static void runClean(const Operation& op)
{
    const State original = state;
    state = MISSING;
    runOperation(op, [] {});
    copyBytes(createdFile, after);
    test::closeLeftStreams();
    state = original;
    runOperation(op, [] {});
    cleanResult = result;
    copyBytes(cleanFile, after);
    memcpy(cleanArray, array.bytes, sizeof cleanArray);
    test::closeLeftStreams();
}

/* ---- Messages ----------------------------------------------------------- */

/* Whether a logged message matches an expected one, in which '*' matches a word. */
static bool matches(const char* message, const char* expected)
{
    const size_t name = strcspn(expected, ":");
    if (message[0] != '[' || strncmp(message + 1, expected, name) != 0 ||
        strncmp(message + 1 + name, ":#]: ", 5) != 0)
        return false;
    message += 1 + name + 5;
    for (const char* text = expected + name + 2; *text != '\0'; ++text) {
        if (*text == '*')
            message += strspn(message, "-0123456789abcdefghijklmnopqrstuvwxyz");
        else if (*message++ != *text)
            return false;
    }
    return *message == '|';
}

/* Whether it is an informational message that reports a failed open in place of an error. */
static bool isQuietFailure(const char* message)
{
    return message == apAll::readerCannotOpen || message == apAll::detailReaderCannotOpen ||
           message == bridging::readerCannotOpen;
}

/* 'E' or 'I' as listed, 'Q' for a quiet failure; 0 if no list of the function contains the message. */
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
    Messages found = {0, 0, 0, 0};
    for (const char* at = test::messages(); *at != '\0'; at = strchr(at, '|') + 1) {
        const char level = strncmp(at, "libzo: ", 7) == 0 ? levelOf(op, at + 7) : '\0';
        found.errors += level == 'E';
        found.informational += level == 'I';
        found.quiet += level == 'Q';
        found.unknown += level == '\0';
    }
    return found;
}

static bool logged(const char* text)
{
    return strstr(test::messages(), text) != nullptr;
}

/* ---- Allowed results of a fault ----------------------------------------- */

static const char* const callNames[test::CALL_KINDS] = {"open", "close", "read", "write", "allocate", "grow"};
static const char* const stateNames[STATES] = {"missing",      "empty",        "one record", "several",
                                               "at the cap",   "over the cap", "blank line", "short line",
                                               "unterminated", "directory"};

static const Operation* current;
static test::Call call;
static int nth;
static bool onwards; /* all calls from the nth on fail */

static void expectRule(bool followed, const char* rule)
{
    if (followed)
        return;
    char report[1024];
    snprintf(report, sizeof report,
             "%s, file %s, %s %d%s: %s\nresult %d, clean %d, file %ld, messages %.600s", current->name,
             stateNames[state], callNames[call], nth, onwards ? " and later" : "", rule, result, cleanResult,
             after.size, test::messages());
    EXPECT_STREQ("", report);
}

static bool fileEquals(const Bytes& expected)
{
    return after.size == expected.size &&
           (after.size < 0 || memcmp(after.bytes, expected.bytes, static_cast<size_t>(after.size)) == 0);
}

static bool isAsBefore()
{
    if (state == MISSING || state == DIRECTORY)
        return after.size == -1;
    return after.size == static_cast<long>(beforeSize) && memcmp(after.bytes, before, beforeSize) == 0;
}

static bool isPrefixOf(const Bytes& expected)
{
    return after.size >= 0 && after.size <= expected.size &&
           memcmp(after.bytes, expected.bytes, static_cast<size_t>(after.size)) == 0;
}

/* Whether the file is `expected` with some pieces missing. */
static bool isPartOf(const Bytes& expected)
{
    long at = 0;
    for (long i = 0; i < expected.size && at < after.size; ++i)
        at += expected.bytes[i] == after.bytes[at];
    return after.size >= 0 && at == after.size;
}

/* The time delay and score writers continue after a failed print. */
static bool continuesAfterFailedPrint()
{
    return current->kind == TIME_DELAY || current->kind == SCORE;
}

static bool failed()
{
    if (current->result == FALSE_IF_FAILED)
        return result == 0;
    if (current->result == MINUS_ONE_IF_FAILED)
        return result == -1;
    return logged("SingleBridgingInfo:#]: Failed to");
}

/* Whether the file contains the income's line. (A station's first field is its position.) */
static bool containsIncome()
{
    static char line[4096];
    const size_t length = printRecords(current->kind, income.bytes, 1, line);
    line[length] = '\0';
    after.bytes[after.size > 0 ? after.size : 0] = '\0';
    return strstr(after.bytes, current->kind == STATION ? line + 4 : line) != nullptr;
}

/* Whether the function had nothing to change and has changed nothing. */
static bool hadNothingToDo()
{
    return isAsBefore() &&
           (logged("There is no history data") || strcmp(current->name, "patParameterReaderV2") == 0);
}

/*
 * The bridging reader counts the lines itself. If its count fails, it reads no records
 * and logs nothing else, and the update continues with empty records.
 */
static bool bridgingCountFailed()
{
    return current->kind == BRIDGING && logged("[dataLineCounter:#]") && !logged("Just save") &&
           containsIncome();
}

static void checkResult(const Messages& found)
{
    if (current->result == ALWAYS_TRUE)
        expectRule(result == 1, "always true");
    if (current->result == ALWAYS_FALSE)
        expectRule(result == 0, "always false");
    if (current->result != FALSE_IF_FAILED && current->result != MINUS_ONE_IF_FAILED)
        return;
    /* The only failure without a message: the PAT file cannot be opened even after it was created. */
    const bool silent = current->kind == PAT_V2 && call == test::OPEN;
    if (failed())
        expectRule(found.errors + found.quiet > 0 || silent, "a failure logs a message");
    if (call == test::ALLOCATE || call == test::GROW)
        expectRule(failed(), "a failed allocation is a failure");
    if (call == test::WRITE && !continuesAfterFailedPrint() && current->doing == WRITES)
        expectRule(failed(), "a failed print is a failure");
    if (call == test::CLOSE && onwards && nth == 1 && current->closing == REPORTED)
        expectRule(failed(), "a failed close is a failure");
    if (call == test::CLOSE && current->closing == IGNORED)
        expectRule(result == cleanResult, "a failed close changes nothing");
}

/* The file after a fault in a function that writes. */
static void checkWritten()
{
    const bool saved = fileEquals(cleanFile) || fileEquals(createdFile) || bridgingCountFailed();
    const bool creates = strcmp(current->name, "patParameterReaderV2") == 0; /* it can create the file */
    if (call == test::WRITE) {
        const bool torn = isPrefixOf(cleanFile) || isPrefixOf(createdFile);
        const bool gaps = continuesAfterFailedPrint() && (isPartOf(cleanFile) || isPartOf(createdFile));
        expectRule(torn || gaps || isAsBefore(), "a failed print keeps what was printed before it");
    } else if (call == test::CLOSE) {
        expectRule(saved || isAsBefore(), "a failed close leaves a complete file");
    } else if (call != test::READ && failed()) {
        expectRule(isAsBefore() || (creates && saved), "a failure before the write does not change the file");
    } else if (call != test::READ) {
        expectRule(saved || hadNothingToDo() || current->result == ALWAYS_FALSE ||
                       current->result == NOT_A_STATUS,
                   "success writes the complete file");
        expectRule(saved || isAsBefore(), "a file that is not written does not change");
    }
    const bool startedAnew =
        !fileEquals(cleanFile) && !isAsBefore() && fileEquals(createdFile) && call != test::WRITE;
    if (startedAnew && current->result != NOT_A_STATUS && !creates && strcmp(current->name, "touchFile") != 0)
        expectRule(logged("Just save"), "only a save that logs it starts a new file");
}

/*
 * After a failed read, an update either does not change the file or writes one that
 * contains its record. (Exception: a time delay record that could not be read has an
 * empty MAC, which ends the file. The reader logs a message.)
 */
static void checkReadFaultOfUpdate()
{
    if (current->kind == PAT_V2 || state == DIRECTORY || isAsBefore())
        return;
    if (strcmp(current->name, "touchFile") == 0 || strcmp(current->name, "emptyTimeDelayFile") == 0)
        return; /* these do not read */
    expectRule(!failed() || current->result == ALWAYS_TRUE, "a failed read does not change the file");
    if (strstr(current->name, "elete") == nullptr)
        expectRule(containsIncome() || (current->kind == TIME_DELAY && logged("sscanf error")),
                   "the file that an update writes contains its record");
    else
        expectRule(!containsIncome(), "the file that a delete writes does not contain its record");
}

/* If reads fail from some byte on, a reader behaves as if the file ended there. */
static void checkReadFaultOfReader(size_t used)
{
    static union {
        unsigned char bytes[ARRAY_ROOM];
        long long aligned;
    } expected;
    if (current->expected == nullptr || !onwards || state == DIRECTORY || state == MISSING)
        return;
    size_t size = static_cast<size_t>(bytesRead);
    while (current->byLine && size > 0 && before[size - 1] != '\n')
        --size;
    static char expectedMacs[MACS][ALG_MAC_SIZE];
    memset(expected.bytes, UNREAD, sizeof expected.bytes);
    const bool expectedResult = current->expected({before, size, 0}, expected.bytes, count, expectedMacs);
    expectRule(result == expectedResult, "a failed read is the end of the file: result");
    expectRule(memcmp(expected.bytes, array.bytes, used) == 0,
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
    expectRule(end <= used, "nothing is written past the records");
    if (current->doing == READS)
        expectRule(isAsBefore(), "a reader does not change the file");
    const bool untouched = end == 0;
    const bool complete = memcmp(array.bytes, cleanArray, sizeof cleanArray) == 0;
    if (call == test::OPEN && current->result == FALSE_IF_FAILED && failed())
        expectRule(untouched, "a file that cannot be opened is not read");
    if (call == test::CLOSE && current->kind != PAT_V2)
        expectRule(complete || (untouched && current->kind == BRIDGING),
                   "a failed close comes after the read");
    if (call == test::READ)
        checkReadFaultOfReader(used);
}

static void checkLeaks()
{
    const bool leaksStream = strcmp(current->name, "patParameterReader") == 0 && logged("does not exit");
    const bool leaksArray =
        strcmp(current->name, "updataSingleApAllInfo") == 0 && logged("failed to reallocte memory.");
    expectRule(test::openStreams() <= leaksStream, "no stream leaks");
    expectRule(test::heldArrays() == leaksArray, "no array leaks");
    test::closeLeftStreams();
    test::freeLeftArrays();
}

static void checkRun(const Messages& found)
{
    expectRule(found.unknown == 0, "only messages of the function's lists");
    expectRule(argumentsUnchanged, "the caller's arguments do not change");
    checkResult(found);
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

/* Injects one fault at three message levels. Returns false if the function ends without reaching it. */
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
    const int resultAtAll = result;
    static Bytes file;
    copyBytes(file, after);
    test::setLevel(3);
    runOperation(*current, armFault);
    const Messages errors = messagesNow(*current);
    expectRule(errors.errors == all.errors && errors.errors == test::messageCount(),
               "level 3 logs only the errors");
    expectRule(result == resultAtAll && fileEquals(file), "the level changes nothing");
    test::closeLeftStreams();
    test::freeLeftArrays();
    test::setLevel(2);
    runOperation(*current, armFault);
    expectRule(test::messageCount() == 0, "no message below level 3");
    expectRule(result == resultAtAll && fileEquals(file), "the level changes nothing");
    test::closeLeftStreams();
    test::freeLeftArrays();
    return true;
}

/* Tries every k. In the long files at the caps, above 40, each k is a third larger than the last. */
static void sweepCalls()
{
    const bool longFile = state == AT_CAP || state == OVER_CAP;
    for (nth = 1; inject(); nth += longFile && nth > 40 ? nth / 3 : 1) {
    }
}

/* Sets the income: with the key of the file's second record, or with a key that the file does not contain. */
static void setIncome(Kind kind, bool known)
{
    memset(income.bytes, 0, sizeof income.bytes);
    if (recordSize(kind) <= sizeof income.bytes)
        fillRecord(kind, known ? 1 : 600, income.bytes);
}

static void sweepOperation(const Operation& op)
{
    current = &op;
    for (int next = 0; next < STATES; ++next) {
        for (int known = 0; known < (op.doing == UPDATES ? 2 : 1); ++known) {
            setIncome(op.kind, known == 1);
            makeState(op.kind, static_cast<State>(next));
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

/* Sweeps the operations of some kinds and prints how many faults were injected. */
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
    printf(", %ld in total, each at three levels\n", all);
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

TEST(FaultSweep, rankAndOutputFiles)
{
    sweepKinds(AP_RANK, static_cast<Kind>(KINDS - 1));
    EXPECT_GT(injectedInAll(), 1500);
}

/* The sweep is only meaningful if the states are what their names say. */
TEST(FaultSweep, statesAreWhatTheyAreCalled)
{
    static const int lines[STATES] = {-1, 0, 1, 3, 20, 21, 4, 3, 3, 0};
    for (int next = 0; next < STATES; ++next) {
        makeState(AP_RANK, static_cast<State>(next));
        createFile();
        EXPECT_EQ(lines[next], dataLineCounter("f"));
    }
    rmdir("f");
}
