/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Every function that touches a file, on files in every state, with every call
 * of every kind failing: the k-th one, once and from then on, for every k until
 * the function ends without meeting it. What may come of it is stated below,
 * function by function and kind by kind.
 */
#include "recordOracle.h"

#include <stddef.h>
#include <sys/stat.h>
#include <unistd.h>

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

struct Operation {
    const char* name;
    Kind kind;
    Doing doing;
    Result result;
    Closing closing;
    int (*run)();
    /* The messages that may come: "E[function:#]: text|" an error, 'I' informational, 'Q' informational and a
     * failure all the same. '*' is any word. */
    const char* messages;
    ExpectedReader expected; /* of a reader that does not count: what it gives of a file that ends early */
    bool byLine;             /* it takes whole lines, so that a line cut by a failed read is none */
};

#define E(function, text) "E[" function ":#]: " text "|"
#define I(function, text) "I[" function ":#]: " text "|"
#define Q(function, text) "Q[" function ":#]: " text "|"

/* What readers, writers and the counter say, wherever they are used. */
#define COUNTER                                      \
    E("dataLineCounter", "Failed to read file: f\n") \
    E("dataLineCounter", "fclose error, path:f.\n")
#define AP_ALL_WRITER                                \
    E("apAllInfoWriter", "fopen error, path: f.")    \
    E("apAllInfoWriter", "fprintf error, path:f.\n") \
    E("apAllInfoWriter", "fclose error, path:f.\n")
#define AP_ALL_READER                                     \
    Q("apAllInfoOnlyReader", "pat file does not exit.\n") \
    E("apAllInfoOnlyReader", "fscanf error, path:f.\n")   \
    E("apAllInfoOnlyReader", "fclose error, path:f.\n")
#define BRIDGING_READER                                        \
    COUNTER                                                    \
    Q("bridgingApNodeInfoReader", "pat file does not exit.\n") \
    E("bridgingApNodeInfoReader", "fscanf error, path:f.\n")   \
    E("bridgingApNodeInfoReader", "fclose error, path:f.\n")
#define BRIDGING_WRITER                                    \
    E("bridgingApNodeInfoWriter", "fopen error, path: f.") \
    E("bridgingApNodeInfoWriter", "fprintf error, path:f.\n")
#define BRIDGING_UPDATE(function)                                                                           \
    BRIDGING_READER BRIDGING_WRITER I(function, "Just save income bridging data")                           \
        I(function, "Bridging Info has been written to file: f") E(function, "Failed to write to file: f")  \
            E(function, "Failed to allocate memory for BridgingNode") E(function, "Failed to read file: f") \
                E(function, "Failed to add new bridging info data to file: f")
#define STATION_READER                                      \
    E("stationInfoOnlyReader", "Failed to read file: f.\n") \
    E("stationInfoOnlyReader", "sscanf error, path: f")
#define STATION_WRITER                                  \
    E("stationNodeInfoWriter", "fopen error, path: f.") \
    E("stationNodeInfoWriter", "fprintf error, path: f")
#define PAT_WRITER                                          \
    E("patParameterWriterV2", "Failed to write file: f.\n") \
    E("patParameterWriterV2", "fprintf error, path:f.\n")
#define SCANNING_READER                                   \
    E("scanningInfoReader", "Failed to read file : f.\n") \
    E("scanningInfoReader", "sscanf error, path: f.\n")   \
    E("scanningInfoReader", "fclose error, path: f.\n")
#define SCANNING_WRITER                                   \
    E("scanningInfoWriter", "Failed to write file: f.\n") \
    E("scanningInfoWriter", "fclose error, path:f.\n")
#define SCANNING_APPEND(function)                                                                           \
    COUNTER SCANNING_READER SCANNING_WRITER I(function, "Just save income scanning data")                   \
        I(function, "Scanning Info has been written to file: f") E(function, "Failed to write to file: f")  \
            E(function, "Failed to allocate memory for ScanningInfo") E(function, "Failed to read file: f") \
                E(function, "Failed to add new scanning info data to file: f")
#define DELAY_READER                                       \
    E("timeDelayInfoReader", "Failed to read file : f.\n") \
    E("timeDelayInfoReader", "sscanf error, path: f.\n")   \
    E("timeDelayInfoReader", "fclose error, path: f.\n")
#define DELAY_WRITER                                       \
    E("timeDelayInfoWriter", "Failed to write file: f.\n") \
    E("timeDelayInfoWriter", "fprintf error, path:f.\n")   \
    E("timeDelayInfoWriter", "sscanf error, path: f.")     \
    E("timeDelayInfoWriter", "fclose error, path:f.\n")
#define RANK_READER                                     \
    E("apRankInfoReader", "Failed to read file : f.\n") \
    E("apRankInfoReader", "sscanf error, path: f.\n")   \
    E("apRankInfoReader", "fclose error, path: f.\n")
#define RANK_WRITER                                 \
    E("apRankInfoWriter", "fopen error, path: f.")  \
    E("apRankInfoWriter", "fprintf error, path: f") \
    E("apRankInfoWriter", "fclose error, path:f.\n")

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
    {"dataLineCounter", AP_RANK, READS, COUNTS, REPORTED, [] { return dataLineCounter("f"); }, COUNTER, nullptr, true},
    {"touchFile", AP_RANK, UPDATES, TELLS, EITHER, [] { return static_cast<int>(touchFile("f")); },
     E("touchFile", "Failed to create file: f\n") E("touchFile", "fclose error, path:f.\n"), nullptr, false},

    {"apNodeInfoWriterV2", AP_NODE, WRITES, TELLS, IGNORED,
     [] { return static_cast<int>(apNodeInfoWriterV2("f", count, records<ApNodeV2>())); },
     E("apNodeInfoWriterV2", "fopen error, path: f.") E("apNodeInfoWriterV2", "fprintf error, path: f"), nullptr,
     false},
    {"apNodeInfoReaderV2", AP_NODE, READS, TELLS, IGNORED,
     [] { return static_cast<int>(apNodeInfoReaderV2("f", count8(), records<ApNodeV2>(), macs)); },
     E("apNodeInfoReaderV2", "Failed to read file: f.\n") E("apNodeInfoReaderV2", "sscanf error part 1, path: f\n")
         E("apNodeInfoReaderV2", "sscanf error part 2_2, path: f\n") E(
             "apNodeInfoReaderV2", "sscanf error part 2_3, path: f\n")
             E("apNodeInfoReaderV2", "sscanf error part 2_4, path: f\n")
                 E("apNodeInfoReaderV2", "sscanf error part 2_5, path: f\n")
                     E("apNodeInfoReaderV2", "sscanf error part 2_6, path: f\n")
                         E("apNodeInfoReaderV2", "sscanf error part 2_7, path: f\n"),
     expectApNodes, false},

    {"apAllInfoWriter", AP_ALL, WRITES, TELLS, REPORTED,
     [] { return static_cast<int>(apAllInfoWriter("f", records<ApInfoAllV2>(), count, false)); }, AP_ALL_WRITER,
     nullptr, false},
    {"apAllInfoOnlyReader", AP_ALL, READS, TELLS, REPORTED,
     [] { return static_cast<int>(apAllInfoOnlyReader("f", records<ApInfoAllV2>(), count, macs)); }, AP_ALL_READER,
     expectApAllRaw, false},
    {"apAllInfoReader", AP_ALL, READS, ALWAYS_TRUE, IGNORED,
     [] { return static_cast<int>(apAllInfoReader("f", records<ApInfoAllV2>(), count, macs)); }, AP_ALL_READER,
     expectApAllBounded, false},
    {"apAllDetailInfoWriter", AP_DETAIL, WRITES, TELLS, IGNORED,
     [] { return static_cast<int>(apAllDetailInfoWriter("f", records<ApInfoAllV2>(), count, false)); },
     E("apAllDetailInfoWriter", "fopen error, path: f.") E("apAllDetailInfoWriter", "fprintf error, path:f.\n"),
     nullptr, false},
    {"apAllDetailInfoReader", AP_DETAIL, READS, TELLS, REPORTED,
     [] { return static_cast<int>(apAllDetailInfoReader("f", records<ApInfoAllV2>(), count8(), macs)); },
     Q("apAllDetailInfoReader", "pat file does not exit.\n") E("apAllDetailInfoReader", "fscanf error, path:f.\n")
         E("apAllDetailInfoReader", "fclose error, path:f.\n"),
     expectApDetail, false},
    {"updataSingleApAllInfo", AP_ALL, UPDATES, TELLS, EITHER,
     [] { return static_cast<int>(updataSingleApAllInfo("f", &income.apAll)); },
     COUNTER AP_ALL_READER AP_ALL_WRITER I("updataSingleApAllInfo", "Income AP InfoAll from *, * items of old ApInfo")
         I("updataSingleApAllInfo", "Just save apAllInfo")
             I("updataSingleApAllInfo", "AP InfoALl has been written to file: f")
                 E("updataSingleApAllInfo", "Failed to write to file: f")
                     E("updataSingleApAllInfo", "Failed to allocate memory for ApInfoAll")
                         E("updataSingleApAllInfo", "Failed to read file: f")
                             I("updataSingleApAllInfo", "income ap info found @index *")
                                 E("updataSingleApAllInfo", "Failed to save new ap info to file: f")
                                     I("updataSingleApAllInfo", "income ap info not found, inserting...")
                                         E("updataSingleApAllInfo", "failed to reallocte memory.")
                                             E("updataSingleApAllInfo", "Failed to add ap info data to file: f"),
     nullptr, false},
    {"deleteSingleApAllInfo", AP_ALL, UPDATES, TELLS, EITHER,
     [] { return static_cast<int>(deleteSingleApAllInfo("f", income.apAll.apNodeV2.deviceMAC)); },
     COUNTER AP_ALL_READER AP_ALL_WRITER E("deleteSingleApAllInfo", "Failed to allocate memory for ApInfoAll")
         E("deleteSingleApAllInfo", "Failed to read file: f")
             E("deleteSingleApAllInfo", "Failed to add ap info data to file: f")
                 E("deleteSingleApAllInfo", "Cannot find the mac in the ap info."),
     nullptr, false},

    {"bridgingApNodeInfoReader", BRIDGING, READS, TELLS, EITHER,
     [] { return static_cast<int>(bridgingApNodeInfoReader("f", records<BridgingNodeV2>())); }, BRIDGING_READER,
     nullptr, false},
    {"bridgingApNodeInfoWriter", BRIDGING, WRITES, TELLS, IGNORED,
     [] { return static_cast<int>(bridgingApNodeInfoWriter("f", records<BridgingNodeV2>(), count)); },
     BRIDGING_WRITER, nullptr, false},
    {"updateSingleBridgingInfo (FAP)", BRIDGING, UPDATES, ALWAYS_TRUE, EITHER,
     [] { return static_cast<int>(updateSingleBridgingInfo("f", &income.bridging, true)); },
     BRIDGING_UPDATE("updateFapSingleBridgingInfo"), nullptr, false},
    {"updateSingleBridgingInfo (RE)", BRIDGING, UPDATES, ALWAYS_TRUE, EITHER,
     [] { return static_cast<int>(updateSingleBridgingInfo("f", &income.bridging, false)); },
     BRIDGING_UPDATE("updateReSingleBridgingInfo"), nullptr, false},

    {"stationInfoOnlyReader", STATION, READS, TELLS, IGNORED,
     [] { return static_cast<int>(stationInfoOnlyReader("f", records<StaConnection>())); }, STATION_READER,
     expectStations, true},
    {"stationNodeInfoReader", STATION, READS, TELLS, IGNORED,
     [] { return static_cast<int>(stationNodeInfoReader("empty", "f", records<StaConnection>())); },
     E("stationNodeInfoReader", "Failed to read file: empty.\n") E("stationNodeInfoReader", "sscanf error, path: f"),
     expectStations, true},
    {"stationNodeInfoWriter", STATION, WRITES, TELLS, IGNORED,
     [] { return static_cast<int>(stationNodeInfoWriter("f", records<StaConnection>(), count)); }, STATION_WRITER,
     nullptr, false},
    {"stationInfoAppendWriter", STATION, UPDATES, TELLS, EITHER,
     [] { return static_cast<int>(stationInfoAppendWriter("f", &income.station, 1)); },
     COUNTER STATION_READER STATION_WRITER I("stationInfoAppendWriter", "Just save income sta info data")
         I("stationInfoAppendWriter", "Sta Info has been written to file: f")
             E("stationInfoAppendWriter", "Failed to write to file: f")
                 E("stationInfoAppendWriter", "Failed to allocate memory for StaConnection")
                     E("stationInfoAppendWriter", "Failed to read file: f")
                         E("stationInfoAppendWriter", "Failed to add new sta info data to file: f"),
     nullptr, false},

    {"candidateApNodeInfoReader", CANDIDATE, READS, TELLS, REPORTED,
     [] { return static_cast<int>(candidateApNodeInfoReader("f", records<CandidateAp>())); },
     E("candidateApNodeInfoReader", "Failed to read file: f.\n") E("candidateApNodeInfoReader",
                                                                  "sscanf error, path: f")
         E("candidateApNodeInfoReader", "fclose error, path:f.\n"),
     expectCandidates, true},
    {"candidateApNodeInfoWriter", CANDIDATE, WRITES, TELLS, REPORTED,
     [] { return static_cast<int>(candidateApNodeInfoWriter("f", records<CandidateAp>(), count)); },
     E("candidateApNodeInfoWriter", "Failed to write file: f.\n")
         E("candidateApNodeInfoWriter", "fclose error, path:f.\n"),
     nullptr, false},

    {"patParameterReader", PAT_V1, READS, TELLS, REPORTED,
     [] { return static_cast<int>(patParameterReader("f", count, records<PatParameter>())); },
     COUNTER E("patParameterReader", "pat file f does not exit.") E("patParameterReader", "sscanf error, path: f.\n")
         E("patParameterReader", "fclose error, path:f.\n"),
     nullptr, false},
    {"patParameterReaderV2", PAT_V2, UPDATES, TELLS, REPORTED,
     [] { return static_cast<int>(patParameterReaderV2("f", count, records<PatParameterV2>())); },
     COUNTER PAT_WRITER I("patParameterReaderV2", "pat file does not exit, init it.")
         E("patParameterReaderV2", "fscanf error, path: f.\n") E("patParameterReaderV2", "fclose error, path:f.\n"),
     nullptr, false},
    {"patParameterWriterV2", PAT_V2, WRITES, TELLS, IGNORED,
     [] { return static_cast<int>(patParameterWriterV2("f", count, records<PatParameterV2>(), nullptr)); },
     PAT_WRITER, nullptr, false},
    {"updateSinglePatV2", PAT_V2, UPDATES, ALWAYS_FALSE, IGNORED,
     [] { return static_cast<int>(updateSinglePatV2("f", &income.pat)); }, PAT_WRITER, nullptr, false},
    {"patInitV2", PAT_V2, UPDATES, NOTHING, IGNORED,
     [] {
         patInitV2("f", income.pat.deviceMac);
         return 0;
     },
     PAT_WRITER, nullptr, false},

    {"scanningInfoReader", SCANNING, READS, TELLS, REPORTED,
     [] { return static_cast<int>(scanningInfoReader("f", records<ScanningInfo>())); }, SCANNING_READER, expectScans,
     true},
    {"scanningInfoWriter", SCANNING, WRITES, TELLS, REPORTED,
     [] { return static_cast<int>(scanningInfoWriter("f", records<ScanningInfo>(), count)); }, SCANNING_WRITER,
     nullptr, false},
    {"scanningInfoDeleter", SCANNING, UPDATES, TELLS, EITHER,
     [] { return static_cast<int>(scanningInfoDeleter("f", income.scan.deviceMAC)); },
     COUNTER SCANNING_READER SCANNING_WRITER I("scanningInfoDeleter", "There is no history data, just return.")
         E("scanningInfoDeleter", "Failed to allocate memory for ScanningInfo")
             E("scanningInfoDeleter", "Failed to read file: f")
                 E("scanningInfoDeleter", "Failed to add new scanning info data to file: f"),
     nullptr, false},
    {"appendScanningInfo", SCANNING, UPDATES, TELLS, EITHER,
     [] { return static_cast<int>(appendScanningInfo("f", &income.scan, 1)); }, SCANNING_APPEND("appendScanningInfo"),
     nullptr, false},
    {"appendSingleScanningInfo", SCANNING, UPDATES, TELLS, EITHER,
     [] { return static_cast<int>(appendSingleScanningInfo("f", &income.scan)); },
     SCANNING_APPEND("appendSingleScanningInfo"), nullptr, false},

    {"timeDelayInfoReader", TIME_DELAY, READS, TELLS, REPORTED,
     [] { return static_cast<int>(timeDelayInfoReader("f", records<TimeDelayInfo>(), count)); }, DELAY_READER,
     expectDelays, false},
    {"timeDelayInfoWriter", TIME_DELAY, WRITES, TELLS, REPORTED,
     [] { return static_cast<int>(timeDelayInfoWriter("f", records<TimeDelayInfo>(), count)); }, DELAY_WRITER,
     nullptr, false},
    {"emptyTimeDelayFile", TIME_DELAY, UPDATES, TELLS, REPORTED,
     [] { return static_cast<int>(emptyTimeDelayFile("f")); },
     E("emptyTimeDelayFile", "Failed to write file: f.\n") E("emptyTimeDelayFile", "fclose error, path:f.\n"),
     nullptr, false},
    {"updateSingleTimeDelayInfo", TIME_DELAY, UPDATES, TELLS, EITHER,
     [] { return static_cast<int>(updateSingleTimeDelayInfo("f", &income.delay)); },
     COUNTER DELAY_READER DELAY_WRITER I("updateSingleTimeDelayInfo", "Just save income time dalay data")
         I("updateSingleTimeDelayInfo", "time delay Info has been written to file: f")
             E("updateSingleTimeDelayInfo", "Failed to write to file: f")
                 E("updateSingleTimeDelayInfo", "Failed to allocate memory for ScanningInfo")
                     E("updateSingleTimeDelayInfo", "Failed to read file: f")
                         I("updateSingleTimeDelayInfo", "income time delay info found @index *")
                             E("updateSingleTimeDelayInfo", "Failed to save new time delay info to file: f")
                                 I("updateSingleTimeDelayInfo", "income time delay info not found, inserting...")
                                     E("updateSingleTimeDelayInfo", "Failed to add time delay info data to file: f"),
     nullptr, false},
    {"appendSingleTimeDelayInfo", TIME_DELAY, UPDATES, TELLS, EITHER,
     [] { return static_cast<int>(appendSingleTimeDelayInfo("f", &income.delay)); },
     COUNTER DELAY_READER DELAY_WRITER I("appendSingleTimeDelayInfo", "Just save income timeDelay data")
         I("appendSingleTimeDelayInfo", "Time delay Info has been written to file: f")
             E("appendSingleTimeDelayInfo", "Failed to write to file: f")
                 E("appendSingleTimeDelayInfo", "Failed to allocate memory for TimeDelayInfo")
                     E("appendSingleTimeDelayInfo", "Failed to read file: f")
                         E("appendSingleTimeDelayInfo", "Failed to add new timeDelay info data to file: f"),
     nullptr, false},

    {"scoreInfoWriter", SCORE, WRITES, TELLS, REPORTED,
     [] { return static_cast<int>(scoreInfoWriter("f", records<ScoreInfo>(), count)); },
     E("scoreInfoWriter", "Failed to write file: f.\n") E("scoreInfoWriter", "fprintf error, path:f.\n")
         E("scoreInfoWriter", "sscanf error, path: f.") E("scoreInfoWriter", "fclose error, path:f.\n"),
     nullptr, false},
    {"scoreInfoReader", SCORE, READS, TELLS, REPORTED,
     [] { return static_cast<int>(scoreInfoReader("f", records<ScoreInfo>(), count)); },
     E("scoreInfoReader", "Failed to read file : f.\n") E("scoreInfoReader", "sscanf error, path: f.\n")
         E("scoreInfoReader", "fclose error, path: f.\n"),
     expectScores, false},
    {"scoreInfoCntReader", SCORE, READS, NOTHING, IGNORED, [] { return scoreInfoCntReader("f"); },
     E("scoreInfoCntReader", "Failed to read file : f.\n"),
     [](Text file, void*, int, char (*)[16]) { return expectedScoreCnt(file) == 1; }, false},

    {"apRankInfoReader", AP_RANK, READS, TELLS, REPORTED,
     [] { return static_cast<int>(apRankInfoReader("f", records<ApRank>())); }, RANK_READER, expectRanks, true},
    {"apRankInfoWriter", AP_RANK, WRITES, TELLS, REPORTED,
     [] { return static_cast<int>(apRankInfoWriter("f", records<ApRank>(), count)); }, RANK_WRITER, nullptr, false},
    {"updataSingleApRankInfo", AP_RANK, UPDATES, TELLS, EITHER,
     [] { return static_cast<int>(updataSingleApRankInfo("f", &income.rank)); },
     COUNTER RANK_READER RANK_WRITER I("updataSingleApRankInfo",
                                       "Income AP Rank from *, * items of old ApRankInfo")
         I("updataSingleApRankInfo", "Just save apRankInfo")
             I("updataSingleApRankInfo", "AP rank info has been written to file: f")
                 E("updataSingleApRankInfo", "Failed to write to file: f")
                     E("updataSingleApRankInfo", "Failed to allocate memory for pApRank")
                         E("updataSingleApRankInfo", "Failed to read file: f")
                             I("updataSingleApRankInfo", "income ap rank info found @index *")
                                 E("updataSingleApRankInfo", "Failed to save new ap info to file: f")
                                     I("updataSingleApRankInfo", "income ap rank info not found, inserting...")
                                         E("updataSingleApRankInfo", "failed to reallocte memory.")
                                             E("updataSingleApRankInfo", "Failed to add ap rank info data to file: f"),
     nullptr, false},

    {"apRankIndexInfoReader", RANK_INDEX, READS, TELLS, REPORTED,
     [] { return static_cast<int>(apRankIndexInfoReader("f", records<ApRankIndex>())); },
     E("apRankIndexInfoReader", "Failed to read file : f.\n") E("apRankIndexInfoReader", "sscanf error, path: f.\n")
         E("apRankIndexInfoReader", "fclose error, path: f.\n"),
     expectRankIndex, true},
    {"apRankIndexInfoWriter", RANK_INDEX, WRITES, TELLS, REPORTED,
     [] { return static_cast<int>(apRankIndexInfoWriter("f", records<ApRankIndex>())); },
     E("apRankIndexInfoWriter", "fopen error, path: f.") E("apRankIndexInfoWriter", "fprintf error, path: f")
         E("apRankIndexInfoWriter", "fclose error, path:f.\n"),
     nullptr, false},

    {"apAlgOutputInfoReader", OUTPUT, READS, TELLS, REPORTED,
     [] { return static_cast<int>(apAlgOutputInfoReader("f", records<ApAlgInterfaceOutput>())); },
     E("apAlgOutputInfoReader", "Failed to read file : f.\n") E("apAlgOutputInfoReader", "sscanf error, path: f.\n")
         E("apAlgOutputInfoReader", "fclose error, path: f.\n"),
     expectOutput, true},
    {"apAlgOutputInfoWriter", OUTPUT, WRITES, TELLS, REPORTED,
     [] { return static_cast<int>(apAlgOutputInfoWriter("f", records<ApAlgInterfaceOutput>())); },
     E("apAlgOutputInfoWriter", "fopen error, path: f.") E("apAlgOutputInfoWriter", "fprintf error, path: f")
         E("apAlgOutputInfoWriter", "fclose error, path:f.\n"),
     nullptr, false},
};

#undef E
#undef I
#undef Q

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

/* Takes `from` to the end of its line out of the file, the newline apart. */
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
    const size_t second = strcspn(before, "\n") + 1; /* the file has a second line, but for ONE */
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

/* ---- What a run without a fault gives ----------------------------------- */

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

/* Whether a message is as a pattern says, both up to a '|'; '*' stands for a word. */
static bool matches(const char* message, const char* pattern)
{
    for (; *pattern != '|'; ++pattern) {
        if (*pattern == '*') {
            message += strspn(message, "-0123456789abcdefghijklmnopqrstuvwxyz");
        } else if (*message++ != *pattern) {
            return false;
        }
    }
    return *message == '|';
}

/* 'E', 'I' or 'Q' as the function's list has a message, 0 where it has not. */
static char levelOf(const Operation& op, const char* message)
{
    for (const char* entry = op.messages; *entry != '\0'; entry = strchr(entry, '|') + 1) {
        if (matches(message, entry + 1))
            return *entry;
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
 * The bridging reader takes a count of its own. Where that fails it has read
 * no records and says no more, and the update goes on with empty ones.
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

/* What a reader gives where its reads fail from some byte on: what a file of the bytes before gives. */
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
    const bool gives = current->expected({before, seen, 0}, wanted.bytes, count, wantedMacs);
    expectPromise(result == gives, "a failed read is the end of the file: result");
    expectPromise(memcmp(wanted.bytes, array.bytes, used) == 0,
                  "a failed read is the end of the file: records");
}

/* Bytes of the array that the reader may fill. */
static size_t readableBytes()
{
    if (current->kind == RANK_INDEX || current->kind == OUTPUT)
        return recordSize(current->kind);
    const bool ofLines = current->byLine || current->kind == BRIDGING;
    const int most = ofLines ? expectedLines({before, beforeSize, 0}) : count;
    return recordSize(current->kind) * static_cast<size_t>(most);
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
        expectPromise(whole || (untouched && current->kind == BRIDGING), "a failed close is behind the read");
    if (call == test::READ)
        checkReadFaultOfReader(used);
}

static void checkLeftBehind()
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
    expectPromise(held, "what the caller gives is left alone");
    checkResult(seen);
    if (current->doing != READS)
        checkWritten();
    if (current->doing == UPDATES && call == test::READ)
        checkReadFaultOfUpdate();
    if (current->doing == READS || strcmp(current->name, "patParameterReaderV2") == 0)
        checkRead();
    checkLeftBehind();
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

/* One fault at the three levels of messages; false when the function ends without meeting it. */
static bool inject()
{
    const int calls = test::callCount(call);
    test::setLevel(6);
    runOperation(*current, armFault);
    if (test::callCount(call) - calls < nth) {
        checkLeftBehind();
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
