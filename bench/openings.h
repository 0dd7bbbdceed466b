/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The file access of the module alone: the same openings in the same order and the
 * same bytes through the same streams, but no processing. The difference to the
 * module's time is the module's own work. The first call runs the module and records
 * its openings; for that the program is linked with --wrap=fopen.
 */
#ifndef ALG_BENCH_OPENINGS_H
#define ALG_BENCH_OPENINGS_H

#include <algorithm>
#include <cstdio>

#include "limit.h"
#include "store.h"

/* While this is set, fopen() adds whether it opens the file for writing. */
inline std::vector<bool>* recordedOpenings = nullptr;

extern "C" FILE* __real_fopen(const char* path, const char* mode);
extern "C" inline __attribute__((used)) FILE* __wrap_fopen(const char* path, const char* mode)
{
    if (recordedOpenings != nullptr)
        recordedOpenings->push_back(*mode != 'r');
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
        recordOrRepeat([&] { return ModuleCalls::read(path.c_str(), records, count); });
    }
    void write(Record* records, int count)
    {
        recordOrRepeat([&] { return ModuleCalls::write(path.c_str(), records, count); });
    }
    void change(Change how, Record& income)
    {
        recordOrRepeat([&] { return ModuleCalls::change(path.c_str(), how, &income); });
    }

    /* One entry per opening of the call: whether it writes. Empty before the first call. */
    const std::vector<bool>& recorded() const { return openings; }

  private:
    /* The sizes with which the module calls fread() and fwrite(), and of the stream's buffer. */
    enum : size_t { READ_SIZE = 4096, WRITE_SIZE = 640, STREAM_BUFFER_SIZE = 4096 };

    template <typename Call> void recordOrRepeat(Call call)
    {
        if (openings.empty()) {
            recordedOpenings = &openings;
            const bool result = call();
            recordedOpenings = nullptr;
            require(result, path.c_str());
        } else {
            for (const bool writes : openings)
                writes ? writeAll() : readAll();
        }
    }
    void readAll()
    {
        char buffer[READ_SIZE];
        FILE* fp = fopen(path.c_str(), "r");
        require(fp != nullptr, path.c_str());
        setvbuf(fp, nullptr, _IONBF, 0);
        while (fread(buffer, 1, sizeof buffer, fp) == sizeof buffer)
            continue;
        fclose(fp);
    }
    void writeAll()
    {
        char buffer[STREAM_BUFFER_SIZE];
        FILE* fp = fopen(path.c_str(), "w");
        require(fp != nullptr, path.c_str());
        setvbuf(fp, buffer, _IOFBF, sizeof buffer);
        for (size_t offset = 0; offset < bytes.size; offset += WRITE_SIZE)
            fwrite(bytes.data.get() + offset, 1, std::min(bytes.size - offset, size_t{WRITE_SIZE}), fp);
        require(fclose(fp) == 0, path.c_str());
    }

    std::string path;
    Bytes bytes;
    std::vector<bool> openings;
};

/*
 * The limit for a program that opens its file as often as the module does, which has a
 * message for each opening: the practical limit, and a read of the whole file for every
 * further opening.
 */
template <typename Record> class OpeningLimitStore
{
  public:
    OpeningLimitStore(const Place& place, Change how)
        : limit(place, how), module(place, how), path(place.directory + "/limit.txt")
    {
    }
    void fill(Record* records, int count)
    {
        limit.fill(records, count);
        module.fill(records, count);
    }
    void read(Record* records, int count)
    {
        readMore(1, [&] { module.read(records, count); });
        limit.read(records, count);
    }
    void write(Record* records, int count)
    {
        readMore(0, [&] { module.write(records, count); });
        limit.write(records, count);
    }
    void change(Change how, Record& income)
    {
        readMore(1, [&] { module.change(how, income); });
        limit.change(how, income);
    }

  private:
    /* Reads the file once for each opening of the module beyond the `own` ones of the limit. */
    template <typename Call> void readMore(std::ptrdiff_t own, Call call)
    {
        if (module.recorded().empty())
            call();
        const std::vector<bool>& openings = module.recorded();
        for (std::ptrdiff_t i = std::count(openings.begin(), openings.end(), false); i > own; --i)
            readBytes(path.c_str());
    }

    LimitStore<Record> limit;
    OpeningStore<Record> module;
    std::string path;
};

#endif
