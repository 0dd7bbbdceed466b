/* SPDX-License-Identifier: Apache-2.0 */
/* The same text with C++ streams. */
#ifndef ALG_BENCH_STREAMS_H
#define ALG_BENCH_STREAMS_H

#include <fstream>
#include <iomanip>

#include "fields.h"
#include "store.h"

struct StreamReader {
    std::ifstream& in;

    void operator()(const char*, char (&text)[ALG_MAC_SIZE]) { in >> std::setw(ALG_MAC_SIZE) >> text; }
    void operator()(const char*, uint8_t& number)
    {
        unsigned wide = 0; /* operator>> reads a uint8_t as a character */
        in >> wide;
        number = static_cast<uint8_t>(wide);
    }
    template <typename Number> void operator()(const char*, Number& number) { in >> number; }
    void endLine() {}
};

struct StreamWriter {
    std::ofstream& out;

    void operator()(const char*, char (&text)[ALG_MAC_SIZE]) { out << text << ' '; }
    void operator()(const char*, uint8_t& number) { out << static_cast<unsigned>(number) << ' '; }
    template <typename Number> void operator()(const char*, Number& number) { out << number << ' '; }
    void endLine() { out << '\n'; }
};

template <typename Record> class StreamStore
{
  public:
    StreamStore(const Place& place, Change) : path(place.directory + "/streams.txt") {}
    void fill(Record* records, int count) { write(records, count); }
    void read(Record* records, int count)
    {
        std::ifstream in(path);
        StreamReader reader = {in};
        int devices;
        if (HAS_COUNT_LINE<Record>)
            in >> devices;
        for (int i = 0; i < count; ++i)
            visit(reader, records[i]);
        require(in.good(), "read");
    }
    void write(Record* records, int count)
    {
        std::ofstream out(path);
        out << std::fixed << std::setprecision(2);
        StreamWriter writer = {out};
        if (HAS_COUNT_LINE<Record>)
            out << count << '\n';
        for (int i = 0; i < count; ++i)
            visit(writer, records[i]);
        out.close();
        require(out.good(), "write");
    }
    void change(Change how, Record& income)
    {
        std::vector<Record> records = readAll();
        const size_t start = apply(records, how, income);
        write(records.data() + start, static_cast<int>(records.size() - start));
    }

  private:
    std::vector<Record> readAll()
    {
        std::ifstream in(path);
        StreamReader reader = {in};
        std::vector<Record> records;
        Record record = {};
        while (visit(reader, record), in)
            records.push_back(record);
        return records;
    }

    std::string path;
};

#endif
