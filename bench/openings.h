/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The module's own calls of the files: the same openings in the same order, the
 * bytes through the same streams, and nothing done with them. What a row takes
 * beyond this is the module's work. The openings are noted in a call of the
 * module, for which the program is linked with --wrap=fopen.
 */
#ifndef ALG_BENCH_OPENINGS_H
#define ALG_BENCH_OPENINGS_H

#include <cstdio>

#include "limit.h"
#include "store.h"

/* Where fopen() notes whether it opens to write, while this is set. */
inline std::vector<bool>* noted = nullptr;

extern "C" FILE* __real_fopen(const char* path, const char* mode);
extern "C" inline __attribute__((used)) FILE* __wrap_fopen(const char* path, const char* mode)
{
    if (noted != nullptr)
        noted->push_back(*mode != 'r');
    return __real_fopen(path, mode);
}

template <typename Record> class OpeningStore
{
  public:
    OpeningStore(const Place& place, Change) : path(place.directory + "/records.txt") {}
    void fill(Record* records, int count)
    {
        writeFile(path.c_str(), records, count);
        bytes = readBytes(path.c_str());
    }
    void read(Record* records, int count)
    {
        noteOrRepeat([&] { return ModuleCalls::read(path.c_str(), records, count); });
    }
    void write(Record* records, int count)
    {
        noteOrRepeat([&] { return ModuleCalls::write(path.c_str(), records, count); });
    }
    void change(Change how, Record& income)
    {
        noteOrRepeat([&] { return ModuleCalls::change(path.c_str(), how, &income); });
    }

  private:
    /* As much as the module takes and gives at once. */
    enum : size_t { TAKEN = 1023, GIVEN = 640 };

    template <typename Call> void noteOrRepeat(Call call)
    {
        if (openings.empty()) {
            noted = &openings;
            const bool done = call();
            noted = nullptr;
            require(done, path.c_str());
        } else {
            for (const bool writes : openings)
                writes ? giveAll() : takeAll();
        }
    }
    void takeAll()
    {
        char taken[TAKEN];
        FILE* fp = fopen(path.c_str(), "r");
        require(fp != nullptr, path.c_str());
        while (fread(taken, 1, sizeof taken, fp) == sizeof taken)
            continue;
        fclose(fp);
    }
    void giveAll()
    {
        FILE* fp = fopen(path.c_str(), "w");
        require(fp != nullptr, path.c_str());
        for (size_t at = 0; at < bytes.size; at += GIVEN)
            fwrite(bytes.data.get() + at, 1, std::min(bytes.size - at, size_t{GIVEN}), fp);
        require(fclose(fp) == 0, path.c_str());
    }

    std::string path;
    Bytes bytes;
    std::vector<bool> openings;
};

#endif
