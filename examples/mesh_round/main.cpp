/* SPDX-License-Identifier: Apache-2.0 */
/*
 * mesh_round: a host of the module, on a small simulated home.
 *
 * This program plays the host of the mesh optimisation algorithm. The home is
 * simulated (home.h, radio.h): one FAP, five REs on three floors over wireless,
 * Ethernet and power line, and 14 stations, all from a seed. Each round
 *
 *   1. the move that the last round decided is loaded and takes effect,
 *   2. what the nodes measure is saved through the module's writers, updates
 *      and appends,
 *   3. everything is loaded back through the readers,
 *   4. candidate fathers are scored, nodes ranked and at most one move decided
 *      (decide.h), all from what was loaded,
 *   5. scores, ranks, rank index and decision are saved, and printed (report.h).
 *
 * Read store.h first: it is the only part that uses the record files. Every run
 * calls every function of the module.
 *
 * The scoring of fathers only illustrates what the records are for. It is not the
 * algorithm that the module serves.
 */
#include <algorithm>
#include <charconv>
#include <cstdarg>
#include <cstdio>
#include <exception>
#include <string>

#include <CLI/CLI.hpp>

#include "decide.h"
#include "home.h"
#include "report.h"
#include "store.h"
#include "text.h"

/* ---- What the module needs from its host -------------------------------- */

int g_yra_debug = 2;

/* Some messages end with a newline and some do not. Each is printed on a line of its own. */
void libzo_log(const char* format, ...)
{
    char message[2048];
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(message, sizeof message, format, arguments);
    va_end(arguments);
    if (length < 0)
        return;
    const std::string text = message;
    std::fprintf(stderr, "%s%s", message, !text.empty() && text.back() == '\n' ? "" : "\n");
}

namespace
{

constexpr int statusFailed = 1;
constexpr int statusBadArguments = 2;

constexpr uint32_t firstRoundTime = 1735689600; /* the simulated clock, seconds */
constexpr uint32_t secondsPerRound = 600;
constexpr int patCompensation = 8; /* chosen for this home's antennas */

struct Options {
    std::string directory;
    int rounds = 3;
    uint64_t seed = 1;
    int debugLevel = 2;
};

/* ---- A round ------------------------------------------------------------ */

void startFromOlderFirmware(Home& home, Store& store)
{
    const ApInfoAllV2 extender = home.retiredExtender();
    store.writeOlderFirmwareFiles(extender, home.retiredSightings());
    store.forgetNode(extender.apNodeV2.deviceMAC);

    PerDevice<std::string> cables;
    for (const std::string& mac : home.nodeMacs())
        if (!home.ethernetFather(mac).empty())
            cables[mac] = home.ethernetFather(mac);
    store.introduceNodes(cables);
}

void carryOut(const ApAlgInterfaceOutput& decision, Home& home, Store& store)
{
    if (decision.algStrategy == ALG_STRATEGY_UNKNOW)
        return;
    const bool possible = home.move(decision.srcMAC, decision.dstMAC);
    const auto macs = home.nodeMacs();
    if (possible && std::find(macs.begin(), macs.end(), decision.srcMAC) != macs.end())
        store.forgetPlace(decision.srcMAC);
    report::moved(home, decision, possible);
}

/*
 * Probing takes time. An RE without any delays probes every father in reach; after
 * that, it probes its own father and one other per round.
 */
void probeDelays(const std::string& re, const std::string& father, int round, Home& home, Store& store)
{
    const std::vector<std::string> reach = home.fathersInReach(re);
    if (!store.hasDelays(re)) {
        std::vector<TimeDelayInfo> probes;
        probes.reserve(reach.size());
        for (const std::string& candidate : reach)
            probes.push_back(home.probeDelay(re, candidate));
        store.saveDelays(re, probes);
    } else if (!reach.empty()) {
        store.updateDelay(re, home.probeDelay(re, reach[round % reach.size()]));
    }
    const TimeDelayInfo own = home.probeDelay(re, father);
    store.updateDelay(re, own);
    store.logDelay(own);
}

void measure(int round, Home& home, Store& store)
{
    const std::vector<ApInfoAllV2> nodes = home.measureNodes();
    store.saveNodes(nodes);
    store.saveBackhaul(home.measureBackhaul());
    store.saveStations(home.measureStations());
    const ScanningInfo passing = home.passingHotspot();
    store.saveSightings(home.scan(), passing);
    for (const ApInfoAllV2& node : nodes)
        if (!same(node.apNodeV2.fatherDeviceMAC, noMac))
            probeDelays(node.apNodeV2.deviceMAC, node.apNodeV2.fatherDeviceMAC, round, home, store);
}

void saveResults(const Plan& plan, Knowledge& known, Store& store)
{
    for (const auto& [re, scores] : plan.scores)
        store.saveScores(re, scores);
    store.saveRanks(plan.ranks);
    store.saveIndex(plan.index);
    store.saveCandidates(plan.candidates);
    store.saveDecision(plan.decision);
    learn(known);
    store.savePat(known.pat);
}

void run(const Options& options)
{
    Home home(options.seed);
    Store store(options.directory, home.nodeMacs());
    ai_alg_set_patc_comp(patCompensation);
    report::header(options.directory, options.seed);
    startFromOlderFirmware(home, store);

    for (int round = 0; round < options.rounds; ++round) {
        std::printf("\nRound %d of %d\n", round + 1, options.rounds);
        if (round > 0)
            home.passTime();
        carryOut(store.loadDecision(), home, store);
        measure(round, home, store);

        Knowledge known = store.load();
        const Plan plan = decide(known, firstRoundTime + secondsPerRound * static_cast<uint32_t>(round));
        saveResults(plan, known, store);
        report::round(home, store, known, plan.station);
    }
    report::files(store, options.directory);
}

/* ---- The program -------------------------------------------------------- */

int reportError(const std::exception& error, int status)
{
    std::string text = error.what();
    std::replace(text.begin(), text.end(), '\n', ' ');
    std::fflush(stdout);
    std::fprintf(stderr, "mesh_round: %s\n", text.c_str());
    return status;
}

/* CLI11 would read -1, or a number that is too large, as the largest seed. */
std::string seedError(const std::string& text)
{
    uint64_t seed = 0;
    const char* const end = text.data() + text.size();
    const auto [parsed, error] = std::from_chars(text.data(), end, seed);
    const bool good = error == std::errc() && parsed == end;
    return good ? "" : "Value " + text + " is not a whole number from 0 to 2^64 - 1";
}

void describe(CLI::App& app, Options& options)
{
    app.add_option("directory", options.directory,
                   "Directory of the record files; created if missing, but not its parents")
        ->type_name("DIRECTORY")
        ->required();
    app.add_option("--rounds", options.rounds, "Rounds to run, 1 to 10000")
        ->check(CLI::Range(1, 10000))
        ->type_name("N")
        ->capture_default_str();
    app.add_option("--seed", options.seed, "Seed of the simulated home; the same seed gives the same run")
        ->check(seedError)
        ->type_name("N")
        ->capture_default_str();
    app.add_option("--debug-level", options.debugLevel,
                   "Messages of the module to print on standard error: 3 errors, 5 settings too, 6 all. By "
                   "default none; this program reports a failure itself")
        ->check(CLI::Range(0, 9))
        ->type_name("N")
        ->capture_default_str();
    app.footer("The record files of an earlier run in DIRECTORY are replaced.\n"
               "The scoring of fathers is an illustration, not the algorithm.\n"
               "Exit status: 0 done, 1 a save or load failed, 2 bad arguments or directory.");
}

int perform(int argc, char** argv)
{
    Options options;
    CLI::App app("Plays the host of the mesh algorithm on a simulated home, round by round.", "mesh_round");
    describe(app, options);

    try {
        app.parse(argc, argv);
        g_yra_debug = options.debugLevel;
        run(options);
    } catch (const CLI::Success& help) {
        return app.exit(help);
    } catch (const CLI::ParseError& error) {
        return reportError(error, statusBadArguments);
    } catch (const DirectoryError& error) {
        return reportError(error, statusBadArguments);
    } catch (const std::exception& error) {
        return reportError(error, statusFailed);
    }
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        std::fprintf(stderr, "mesh_round: cannot write to standard output\n");
        return statusFailed;
    }
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        return perform(argc, argv);
    } catch (...) {
        std::fputs("mesh_round: out of memory\n", stderr);
        return statusFailed;
    }
}
