/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Whether a cut of the power loses records. Every function that writes a file makes a run
 * of 50 updates, in place and through durably(). During each update the process is killed
 * before, within and after each of its system calls, one cut at a time. Then a fresh
 * process has to find the old records or the new ones, whole, and make the next update.
 * Each call also fails once, as on a full or broken disk. Then it is a loss, too, if the
 * update returns true without the new records in the file.
 *
 *     durable_cut_test [UPDATES]     cuts only UPDATES of the 50 updates of each run
 *
 * A process that is killed leaves unsynced data in memory, a power cut does not. So the
 * test also checks the order of the calls: nothing is written to the file itself, the copy
 * is synced before each rename, and the directory after it.
 *
 * The status is 0 if durably() lost nothing, and 77 if this machine cannot trace.
 */
#include "changes.h"
#include "durable.h"
#include "tracing.h"

#include <algorithm>
#include <initializer_list>
#include <stdarg.h>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

int g_yra_debug = 0;

void libzo_log(const char*, ...) {}

enum { RUN = 50 };

static const char file[] = "f";
static const char copyOfFile[] = "f.new";

/* ---- The files of a run ------------------------------------------------------ */

static bool exists(const char* path)
{
    struct stat status;
    return lstat(path, &status) == 0;
}

static std::string bytesOf(const char* path)
{
    std::string bytes;
    char block[4096];
    FILE* stream = fopen(path, "rb");
    for (size_t size; stream != nullptr && (size = fread(block, 1, sizeof block, stream)) > 0;)
        bytes.append(block, size);
    if (stream != nullptr)
        fclose(stream);
    return bytes;
}

/* The file after an update. */
struct State {
    bool exists;
    std::string bytes;
    Records records; /* all zero if there is no file */
};

static State stateOfFile(const Change& change)
{
    State state = {exists(file), bytesOf(file), {}};
    if (state.exists && !readRecords(change.kind, file, state.records)) {
        fprintf(stderr, "%s: its reader fails\n", change.name);
        exit(1);
    }
    return state;
}

static void restore(const State& state)
{
    unlink(copyOfFile);
    unlink(file);
    if (!state.exists)
        return;
    FILE* stream = fopen(file, "wb");
    if (stream == nullptr ||
        fwrite(state.bytes.data(), 1, state.bytes.size(), stream) != state.bytes.size() ||
        fclose(stream) != 0) {
        perror(file);
        exit(1);
    }
}

static bool holds(const Change& change, const char* path, const State& state)
{
    static Records found;
    if (!state.exists || !exists(path))
        return state.exists == exists(path);
    return readRecords(change.kind, path, found) && memcmp(&found, &state.records, sizeof found) == 0 &&
           bytesOf(path) == state.bytes;
}

/* A function's updates, and the file after each. One more than RUN: what follows the last cut. */
struct Run {
    const Change& change;
    std::vector<State> states;
};

static Run runOf(const Change& change)
{
    static char text[FILE_ROOM];
    Run run = {change, {}};
    unlink(file);
    if (change.records >= 0)
        restore({true, {text, exampleFile(change.kind, change.records, text)}, {}});
    run.states.push_back(stateOfFile(change));
    for (int i = 1; i <= RUN + 1; ++i) {
        if (!change.apply(file, i)) {
            fprintf(stderr, "%s: update %d fails\n", change.name, i);
            exit(1);
        }
        run.states.push_back(stateOfFile(change));
    }
    return run;
}

/* ---- One update ---------------------------------------------------------------- */

enum Way { IN_PLACE, DURABLY, WAYS };

struct Update {
    const Run& run;
    int i;
};

static bool apply(const char* path, void* what)
{
    const auto& update = *static_cast<const Update*>(what);
    return update.run.change.apply(path, update.i);
}

static bool isAsMeant(const char* path, void* what)
{
    const auto& update = *static_cast<const Update*>(what);
    return holds(update.run.change, path, update.run.states[static_cast<size_t>(update.i)]);
}

static bool make(Update update, Way way)
{
    return way == DURABLY ? durably(file, apply, isAsMeant, &update) : apply(file, &update);
}

/* ---- One cut ------------------------------------------------------------------- */

/* In a fresh process: whether the file holds the old or the new records, and the next update succeeds. */
static bool goesOn(const Run& run, int i, Way way, bool mustBeNew)
{
    const auto at = static_cast<size_t>(i);
    const bool isNew = holds(run.change, file, run.states[at]);
    if (!isNew && (mustBeNew || !holds(run.change, file, run.states[at - 1])))
        return false;
    const int next = isNew ? i + 1 : i;
    return make({run, next}, way) && !exists(copyOfFile) &&
           holds(run.change, file, run.states[static_cast<size_t>(next)]);
}

static bool succeeds(int status)
{
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

static bool survives(const Run& run, int i, Way way, bool mustBeNew)
{
    const int child = newProcess();
    if (child == 0)
        endProcess(goesOn(run, i, way, mustBeNew) ? 0 : 1);
    int status = 0;
    waitpid(child, &status, 0);
    return succeeds(status);
}

/* How often a fault struck, and how often records were lost. */
struct Tally {
    long tried;
    long lost;
};

static void add(Tally& sum, const Tally& tally)
{
    sum.tried += tally.tried;
    sum.lost += tally.lost;
}

static const char* nameOf(Fault fault)
{
    static const char* const names[] = {"without", "before", "within", "after", "by a failing"};
    return names[static_cast<size_t>(fault)];
}

/* A failing call lets the process continue. If that reports success, the records must be the new ones. */
static void strike(const Run& run, int i, Way way, Fault fault, int call, Tally& tally)
{
    restore(run.states[static_cast<size_t>(i - 1)]);
    const Outcome outcome = trace([&] { return make({run, i}, way); }, fault, call);
    if (!outcome.struck) {
        printf("%s, update %d: call %d is not reached again\n", run.change.name, i, call);
        exit(1);
    }
    const bool fails = fault == Fault::FAIL;
    const bool isLost =
        (fails && !WIFEXITED(outcome.status)) || !survives(run, i, way, fails && succeeds(outcome.status));
    ++tally.tried;
    tally.lost += isLost;
    if (isLost && way == DURABLY)
        printf("%s, update %d: a loss %s call %d\n", run.change.name, i, nameOf(fault), call);
}

/* ---- The order of the calls ------------------------------------------------------ */

/* What a power cut could lose that a killed process does not lose; null if nothing. */
static const char* orderFault(const std::vector<std::string>& log)
{
    bool copyIsOnDisk = true;
    bool renameIsOnDisk = true;
    for (const std::string& line : log) {
        if (line == "write f" || line == "remove f")
            return "the file itself is changed";
        if (line == "write f.new")
            copyIsOnDisk = false;
        if (line == "sync f.new")
            copyIsOnDisk = true;
        if (line == "rename f.new f") {
            if (!copyIsOnDisk)
                return "the copy is renamed before it is synced";
            renameIsOnDisk = false;
        }
        if (line == "sync .")
            renameIsOnDisk = true;
    }
    return renameIsOnDisk ? nullptr : "the directory is not synced after the rename";
}

/* Whether orderFault() finds each fault. */
static bool findsFaults()
{
    const std::string in = "write f.new";
    const std::string sync = "sync f.new";
    const std::string rename = "rename f.new f";
    const std::string end = "sync .";
    for (const auto& faulty :
         std::initializer_list<std::vector<std::string>>{{"write f"},
                                                         {"remove f", in, sync, rename, end},
                                                         {in, rename, end},
                                                         {in, rename, sync, end},
                                                         {in, sync, in, rename, end},
                                                         {in, sync, rename},
                                                         {in, sync, end, rename}})
        if (orderFault(faulty) == nullptr)
            return false;
    return orderFault({in, in, sync, rename, end}) == nullptr;
}

/* Makes the update without a fault. Returns false, and says why, if that is not as it has to be. */
static bool makesUpdate(const Run& run, int i, Way way, Outcome& outcome)
{
    const auto at = static_cast<size_t>(i);
    restore(run.states[at - 1]);
    outcome = trace([&] { return make({run, i}, way); });
    const char* fault = way == DURABLY ? orderFault(outcome.log) : nullptr;
    if (fault == nullptr && (!succeeds(outcome.status) || !holds(run.change, file, run.states[at])))
        fault = "the update fails";
    if (fault != nullptr)
        printf("%s, update %d: %s\n", run.change.name, i, fault);
    return fault == nullptr;
}

/* ---- All cuts --------------------------------------------------------------------- */

struct Result {
    Tally cuts;
    Tally failures;
    int faulty; /* updates that fail, or whose calls have a wrong order */
};

static void strikeEverywhere(const Run& run, int i, Way way, Result& result)
{
    Outcome outcome;
    if (!makesUpdate(run, i, way, outcome))
        ++result.faulty;
    for (int call = 1; call <= outcome.calls; ++call) {
        strike(run, i, way, Fault::KILL_BEFORE, call, result.cuts);
        strike(run, i, way, Fault::KILL_AFTER, call, result.cuts);
        strike(run, i, way, Fault::FAIL, call, result.failures);
    }
    for (const int call : outcome.writes)
        strike(run, i, way, Fault::KILL_WITHIN, call, result.cuts);
}

static void printResult(const char* name, const Result (&results)[WAYS])
{
    printf("%-32s", name);
    for (const Result& result : results)
        printf(" %8ld %7ld %8ld %7ld", result.cuts.tried, result.cuts.lost, result.failures.tried,
               result.failures.lost);
    printf("\n");
    fflush(stdout);
}

static void printHead()
{
    printf("%-32s %33s %33s\n%-32s", "", "in place", "durably", "function");
    for (int way = 0; way < WAYS; ++way)
        printf(" %8s %7s %8s %7s", "cuts", "lost", "failures", "lost");
    printf("\n");
}

static void cutRun(const Run& run, int updates, Result (&results)[WAYS])
{
    for (const Way way : {IN_PLACE, DURABLY}) {
        for (int u = 0; u < updates; ++u) { /* spread over the run */
            const int i = updates == 1 ? 1 : 1 + u * (RUN - 1) / (updates - 1);
            strikeEverywhere(run, i, way, results[way]);
        }
    }
}

/* Without a loss in place, the test would notice none. */
static bool isAsExpected(const Result& inPlace, const Result& durable)
{
    return inPlace.faulty == 0 && inPlace.cuts.lost > 0 && inPlace.failures.lost > 0 && durable.faulty == 0 &&
           durable.cuts.lost == 0 && durable.failures.lost == 0 && durable.cuts.tried > 0 &&
           durable.failures.tried > 0;
}

static bool cutAll(int updates)
{
    Result sums[WAYS] = {};
    printHead();
    for (size_t k = 0; k < changeCount; ++k) {
        Result results[WAYS] = {};
        cutRun(runOf(changes[k]), updates, results);
        printResult(changes[k].name, results);
        for (int way = 0; way < WAYS; ++way) {
            add(sums[way].cuts, results[way].cuts);
            add(sums[way].failures, results[way].failures);
            sums[way].faulty += results[way].faulty;
        }
    }
    printResult("sum", sums);
    printf("%zu updates each way, of which %d fail or sync in a wrong order\n",
           changeCount * static_cast<size_t>(updates), sums[IN_PLACE].faulty + sums[DURABLY].faulty);
    return isAsExpected(sums[IN_PLACE], sums[DURABLY]);
}

int main(int argc, char** argv)
{
    const int updates = argc > 1 ? std::clamp(atoi(argv[1]), 1, int(RUN)) : int(RUN);
    const char* temporary = getenv("TMPDIR");
    std::string directory = std::string(temporary != nullptr ? temporary : "/tmp") + "/durable-XXXXXX";
    if (mkdtemp(&directory[0]) == nullptr || chdir(directory.c_str()) != 0) {
        perror(directory.c_str());
        return 1;
    }
    int status = 1;
    if (!canTrace()) {
        printf("skipped: processes cannot be traced here, or the processor is not x86-64\n");
        status = 77;
    } else if (!findsFaults()) {
        printf("the check of the order misses a fault\n");
    } else {
        status = cutAll(updates) ? 0 : 1;
    }
    unlink(file);
    unlink(copyOfFile);
    rmdir(directory.c_str());
    return status;
}
