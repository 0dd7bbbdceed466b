/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Measures each operation at each size, with the module and with every peer, on the
 * same records in the same directory. scripts/bench runs it and makes the tables.
 *
 *     bench --dir=DIR [--in-memory] [Google Benchmark's own flags]
 */
#include <cstring>
#include <iostream>

#include <benchmark/benchmark.h>

#include "formatted.h"
#include "samples.h"

#include "database.h"
#include "fields.h"
#include "json.h"
#include "limit.h"
#include "openings.h"
#include "store.h"
#include "streams.h"

int g_yra_debug = 0;
void libzo_log(const char*, ...) {}

namespace
{

Place place;

enum class Operation { READ, WRITE, CHANGE };

template <typename Record> std::vector<Record> makeSamples(int count)
{
    std::vector<Record> records(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i)
        makeSample(&records[static_cast<size_t>(i)], i, 0);
    return records;
}

/* The time of a store counts only if it returns exactly the records that it was given. */
template <typename Record, typename Store> void checkStore(Store& store, std::vector<Record>& records)
{
    std::vector<Record> loaded(records.size() + 1);
    std::memset(static_cast<void*>(loaded.data()), 0, loaded.size() * sizeof(Record));
    store.read(loaded.data(), static_cast<int>(records.size()));
    require(std::memcmp(loaded.data(), records.data(), records.size() * sizeof(Record)) == 0,
            "the records read differ from the records written");
}

template <typename Record, typename Store>
void changeRepeatedly(benchmark::State& state, Store& store, Change how, std::vector<Record>& records)
{
    const int count = static_cast<int>(records.size());
    Record income[2]; /* used in turn, so that each change really changes the file */
    for (int variant = 0; variant < 2; ++variant)
        makeSample(&income[variant], how == Change::APPEND ? count : count / 2, variant + 1);
    int turn = 0;
    for (auto _ : state) {
        if (how == Change::ERASE) {
            state.PauseTiming();
            store.fill(records.data(), count);
            state.ResumeTiming();
        }
        store.change(how, income[turn ^= 1]);
    }
}

template <typename Record, typename Store>
void measure(benchmark::State& state, Operation operation, int count, Change how)
try {
    std::vector<Record> records = makeSamples<Record>(count);
    Store store(place, how);
    store.fill(records.data(), count);
    /* The others keep no records, or record the openings of their first call. */
    constexpr bool isChecked = !std::is_same_v<Store, BareStore<Record>> &&
                               !std::is_same_v<Store, OpeningStore<Record>> &&
                               !std::is_same_v<Store, OpeningLimitStore<Record>>;
    if constexpr (isChecked)
        checkStore(store, records);
    if (operation == Operation::READ) {
        std::vector<Record> loaded(records.size() + 1);
        for (auto _ : state) {
            store.read(loaded.data(), count);
            benchmark::DoNotOptimize(loaded.data());
            benchmark::ClobberMemory();
        }
    } else if (operation == Operation::WRITE) {
        for (auto _ : state)
            store.write(records.data(), count);
    } else {
        if constexpr (!std::is_same_v<Record, PatParameterV2> && !std::is_same_v<Record, ScoreInfo>)
            changeRepeatedly(state, store, how, records);
    }
} catch (const std::exception& error) {
    state.SkipWithError(error.what());
}

template <typename Record, typename Store>
void addPeer(const std::string& row, const char* peer, Operation operation, int count, Change how)
{
    benchmark::RegisterBenchmark((row + "/" + peer).c_str(), [=](benchmark::State& state) {
        measure<Record, Store>(state, operation, count, how);
    })->UseRealTime();
}

template <typename Record>
void addRow(const std::string& row, Operation operation, int count, Change how = Change::APPEND)
{
    addPeer<Record, CallStore<Record, ModuleCalls>>(row, "module", operation, count, how);
    addPeer<Record, CallStore<Record, FormattedCalls>>(row, "formatted", operation, count, how);
    addPeer<Record, StreamStore<Record>>(row, "streams", operation, count, how);
    if constexpr (!std::is_same_v<Record, PatParameterV2>) { /* its records contain records */
        addPeer<Record, DatabaseStore<Record, false>>(row, "sqlite-opened", operation, count, how);
        addPeer<Record, DatabaseStore<Record, true>>(row, "sqlite-kept", operation, count, how);
        addPeer<Record, JsonStore<Record>>(row, "json", operation, count, how);
    }
    addPeer<Record, LimitStore<Record>>(row, "limit", operation, count, how);
    addPeer<Record, OpeningLimitStore<Record>>(row, "opening-limit", operation, count, how);
    addPeer<Record, BareStore<Record>>(row, "bare", operation, count, how);
    addPeer<Record, OpeningStore<Record>>(row, "openings", operation, count, how);
}

template <typename Record> void addKind(const std::string& kind, int count, Change how, const char* change)
{
    const std::string row = kind + ", " + std::to_string(count) + ": ";
    addRow<Record>(row + "read", Operation::READ, count);
    addRow<Record>(row + "write", Operation::WRITE, count);
    if (change != nullptr)
        addRow<Record>(row + change, Operation::CHANGE, count, how);
}

void addRows()
{
    addKind<BridgingNodeV2>("bridging, FAP", ALG_FAP_BRIDGING_CAP, Change::APPEND, "update");
    addKind<BridgingNodeV2>("bridging, RE", 30, Change::REPLACE, "update");
    addKind<BridgingNodeV2>("bridging, RE", 200, Change::REPLACE, "update");
    addKind<StaConnection>("stations", ALG_STATION_CAP, Change::APPEND, "append");
    addKind<ScanningInfo>("scanning", ALG_SCANNING_CAP, Change::APPEND, "append");
    addRow<ScanningInfo>("scanning, 256: delete", Operation::CHANGE, ALG_SCANNING_CAP, Change::ERASE);
    addKind<TimeDelayInfo>("time delay", 30, Change::REPLACE, "update");
    addKind<TimeDelayInfo>("time delay", ALG_TIME_DELAY_CAP, Change::APPEND, "append");
    addKind<ApInfoAllV2>("AP-all", 6, Change::REPLACE, "update");
    addKind<ApInfoAllV2>("AP-all", 30, Change::REPLACE, "update");
    addKind<ApRank>("AP rank", 30, Change::REPLACE, "update");
    addRow<PatParameterV2>("PAT, 1: read", Operation::READ, 1);
    addRow<PatParameterV2>("PAT, 30: read", Operation::READ, 30);
    addKind<ScoreInfo>("scores", 30, Change::APPEND, nullptr);
    for (int count = 1; count <= 10000; count *= 10)
        addKind<BridgingNodeV2>("growing: bridging", count, Change::APPEND, nullptr);
    for (int count = 1; count <= 10000; count *= 10)
        addKind<StaConnection>("growing: stations", count, Change::APPEND, nullptr);
    for (int count : {1, 4, 16, 64, 256, 1024})
        addRow<BridgingNodeV2>("crossover: bridging, RE, " + std::to_string(count) + ": update",
                               Operation::CHANGE, count, Change::REPLACE);
}

/* Parses our own flags and removes them from the arguments. */
void parseOwnFlags(int* argc, char** argv)
{
    int remaining = 1;
    for (int i = 1; i < *argc; ++i) {
        if (std::strncmp(argv[i], "--dir=", 6) == 0)
            place.directory = argv[i] + 6;
        else if (std::strcmp(argv[i], "--in-memory") == 0)
            place.inMemory = true;
        else
            argv[remaining++] = argv[i];
    }
    *argc = remaining;
}

} // namespace

int main(int argc, char** argv)
{
    ai_yra_rssi_compensation = 0; /* so that scanningInfoReader() returns what was written */
    parseOwnFlags(&argc, argv);
    benchmark::Initialize(&argc, argv);
    if (place.directory.empty() || benchmark::ReportUnrecognizedArguments(argc, argv)) {
        std::cerr << "usage: bench --dir=DIR [--in-memory] [Google Benchmark's own flags]\n";
        return 2;
    }
    addRows();
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
