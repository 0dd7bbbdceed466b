/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The interface of every peer: a store of records at a path. The benchmark fills it
 * and then measures one of read(), write() and change().
 */
#ifndef ALG_BENCH_STORE_H
#define ALG_BENCH_STORE_H

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

#include "calls.h"
#include "formatted.h"
#include "keys.h"

/* Where the files are. In memory, the database skips its journal and its syncs, which only a disk needs. */
struct Place {
    std::string directory;
    bool inMemory;
};

inline void require(bool condition, const char* what)
{
    if (!condition)
        throw std::runtime_error(what);
}

/* Changes the records in memory; returns the index of the first record to write. */
template <typename Record> size_t apply(std::vector<Record>& records, Change how, const Record& income)
{
    const auto same = [&](const Record& record) { return sameKey(record, income); };
    if (how == Change::ERASE) {
        records.erase(std::remove_if(records.begin(), records.end(), same), records.end());
        return 0;
    }
    const auto found =
        how == Change::REPLACE ? std::find_if(records.begin(), records.end(), same) : records.end();
    if (found != records.end())
        *found = income;
    else
        records.push_back(income);
    const size_t cap = static_cast<size_t>(capOf(&income));
    return how == Change::APPEND && records.size() > cap ? records.size() - cap : 0;
}

/* Writes a file as the module does, except that positions start again after 999: readers read three digits.
 */
template <typename Record> void writeFile(const char* path, Record* records, int count)
{
    FILE* fp = fopen(path, "w");
    require(fp != nullptr && formatted::writeCountLine(fp, records, count), path);
    for (int i = 0; i < count; ++i)
        require(formatted::write(fp, &records[i], i % 1000), path);
    require(fclose(fp) == 0, path);
}

/* The calls of the module, or those of the C library. */
template <typename Record, typename Calls> class CallStore
{
  public:
    CallStore(const Place& place, Change) : path(place.directory + "/records.txt") {}
    void fill(Record* records, int count) { writeFile(path.c_str(), records, count); }
    void read(Record* records, int count) { require(Calls::read(path.c_str(), records, count), "read"); }
    void write(Record* records, int count) { require(Calls::write(path.c_str(), records, count), "write"); }
    void change(Change how, Record& income) { require(Calls::change(path.c_str(), how, &income), "change"); }

  private:
    std::string path;
};

#endif
