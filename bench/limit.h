/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The practical limit: one read(2), std::from_chars or std::to_chars over the
 * buffer, one write(2). There are no maximum and no minimum widths, no handling of
 * values that do not fit and no messages. And the bare calls, which read and write
 * the same bytes and do not process them.
 */
#ifndef ALG_BENCH_LIMIT_H
#define ALG_BENCH_LIMIT_H

#include <charconv>
#include <cstring>
#include <memory>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "fields.h"
#include "store.h"

struct Bytes {
    std::unique_ptr<char[]> data;
    size_t size;
};

inline Bytes readBytes(const char* path)
{
    const int file = open(path, O_RDONLY | O_CLOEXEC);
    struct stat status;
    require(file != -1 && fstat(file, &status) == 0, path);
    const size_t size = static_cast<size_t>(status.st_size);
    Bytes bytes = {std::unique_ptr<char[]>(new char[size]), size};
    require(::read(file, bytes.data.get(), size) == status.st_size, path);
    close(file);
    return bytes;
}

inline void writeBytes(const char* path, const char* data, size_t size)
{
    const int file = open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    require(file != -1 && ::write(file, data, size) == static_cast<ssize_t>(size), path);
    require(close(file) == 0, path);
}

struct LimitScanner {
    const char* at;
    const char* end;

    void skip()
    {
        while (at != end && (*at == ' ' || *at == '\n'))
            ++at;
    }
    void operator()(const char*, char (&text)[ALG_MAC_SIZE])
    {
        skip();
        char* to = text;
        while (at != end && *at != ' ' && *at != '\n' && to != text + ALG_MAC_SIZE - 1)
            *to++ = *at++;
        *to = '\0';
    }
    template <typename Number> void operator()(const char*, Number& number)
    {
        skip();
        at = std::from_chars(at, end, number).ptr;
    }
    void endLine() {}
};

struct LimitPrinter {
    char* at;
    char* end;

    void operator()(const char*, char (&text)[ALG_MAC_SIZE])
    {
        const size_t length = std::strlen(text);
        std::memcpy(at, text, length);
        at += length;
        *at++ = ' ';
    }
    template <typename Number> void operator()(const char*, Number& number)
    {
        at = std::to_chars(at, end, number).ptr;
        *at++ = ' ';
    }
    void operator()(const char*, float& number)
    {
        at = std::to_chars(at, end, number, std::chars_format::fixed, 2).ptr;
        *at++ = ' ';
    }
    void endLine() { at[-1] = '\n'; }
};

template <typename Record> class LimitStore
{
  public:
    LimitStore(const Place& place, Change) : path(place.directory + "/limit.txt") {}
    void fill(Record* records, int count) { write(records, count); }
    void read(Record* records, int count)
    {
        const Bytes bytes = readBytes(path.c_str());
        scan(bytes, records, static_cast<size_t>(count));
    }
    void write(Record* records, int count)
    {
        /* A byte of a record prints as at most four characters. The extra 128 are for floats. */
        const size_t capacity = (sizeof(Record) * 4 + 128) * static_cast<size_t>(count) + 16;
        const std::unique_ptr<char[]> buffer(new char[capacity]);
        LimitPrinter print = {buffer.get(), buffer.get() + capacity};
        if (HAS_COUNT_LINE<Record>) {
            print("", count);
            print.endLine();
        }
        for (int i = 0; i < count; ++i)
            visit(print, records[i]);
        writeBytes(path.c_str(), buffer.get(), static_cast<size_t>(print.at - buffer.get()));
    }
    void change(Change how, Record& income)
    {
        const Bytes bytes = readBytes(path.c_str());
        const char* end = bytes.data.get() + bytes.size;
        const size_t count = static_cast<size_t>(std::count(bytes.data.get(), const_cast<char*>(end), '\n'));
        std::vector<Record> records;
        records.reserve(count + 1);
        records.resize(count);
        scan(bytes, records.data(), count);
        const size_t start = apply(records, how, income);
        write(records.data() + start, static_cast<int>(records.size() - start));
    }

  private:
    static void scan(const Bytes& bytes, Record* records, size_t count)
    {
        LimitScanner scanner = {bytes.data.get(), bytes.data.get() + bytes.size};
        if (HAS_COUNT_LINE<Record>) {
            int devices;
            scanner("", devices);
        }
        for (size_t i = 0; i < count; ++i)
            visit(scanner, records[i]);
    }

    std::string path;
};

template <typename Record> class BareStore
{
  public:
    BareStore(const Place& place, Change) : path(place.directory + "/records.txt") {}
    void fill(Record* records, int count)
    {
        writeFile(path.c_str(), records, count);
        bytes = readBytes(path.c_str());
    }
    void read(Record*, int) { readBytes(path.c_str()); }
    void write(Record*, int) { writeBytes(path.c_str(), bytes.data.get(), bytes.size); }
    void change(Change, Record&)
    {
        const Bytes stored = readBytes(path.c_str());
        writeBytes(path.c_str(), stored.data.get(), stored.size);
    }

  private:
    std::string path;
    Bytes bytes;
};

#endif
