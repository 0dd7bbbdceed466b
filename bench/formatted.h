/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The same files by the C library's formatted calls, one for each scan() and
 * print() of the module, as they are usually written: fscanf where fields are
 * read across lines, fgets and sscanf where lines are read, fprintf; and a count
 * of the lines with fgets before an array is allocated. No messages.
 */
#ifndef ALG_BENCH_FORMATTED_H
#define ALG_BENCH_FORMATTED_H

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "calls.h"
#include "keys.h"

namespace formatted
{

bool read(FILE* fp, BridgingNodeV2* record);
bool read(FILE* fp, StaConnection* record);
bool read(FILE* fp, ScanningInfo* record);
bool read(FILE* fp, TimeDelayInfo* record);
bool read(FILE* fp, ApInfoAllV2* record);
bool read(FILE* fp, ApRank* record);
bool read(FILE* fp, PatParameterV2* record);
bool read(FILE* fp, ScoreInfo* record);

bool write(FILE* fp, const BridgingNodeV2* record, int position);
bool write(FILE* fp, const StaConnection* record, int position);
bool write(FILE* fp, const ScanningInfo* record, int position);
bool write(FILE* fp, const TimeDelayInfo* record, int position);
bool write(FILE* fp, const ApInfoAllV2* record, int position);
bool write(FILE* fp, const ApRank* record, int position);
bool write(FILE* fp, const PatParameterV2* record, int position);
bool write(FILE* fp, const ScoreInfo* record, int position);

/* Lines of a file by fgets; -1 when it cannot be opened. */
int countLines(const char* path);

/* PAT files begin with the number of their devices, the others with a record. */
inline bool readHead(FILE* fp, const PatParameterV2*)
{
    unsigned char stated;
    return fscanf(fp, "%hhu", &stated) == 1;
}
inline bool readHead(FILE*, const void*)
{
    return true;
}
inline bool writeHead(FILE* fp, const PatParameterV2*, int count)
{
    return fprintf(fp, "%d\n", count) >= 0;
}
inline bool writeHead(FILE*, const void*, int)
{
    return true;
}

/* Whether the module's reader counts the lines itself, or learns whether there are any. */
constexpr bool readerCounts(const BridgingNodeV2*)
{
    return true;
}
constexpr bool readerCounts(const PatParameterV2*)
{
    return true;
}
constexpr bool readerCounts(const void*)
{
    return false;
}

} // namespace formatted

struct FormattedCalls {
    template <typename Record> static bool read(const char* path, Record* records, int count)
    {
        FILE* fp = fopen(path, "r");
        if (fp == nullptr)
            return false;
        bool result = !formatted::readerCounts(records) || formatted::countLines(path) > 0;
        result = result && formatted::readHead(fp, records);
        for (int i = 0; i < count && result; ++i)
            result = formatted::read(fp, &records[i]);
        return fclose(fp) == 0 && result;
    }

    template <typename Record> static bool write(const char* path, const Record* records, int count)
    {
        FILE* fp = fopen(path, "w");
        if (fp == nullptr)
            return false;
        bool result = formatted::writeHead(fp, records, count);
        for (int i = 0; i < count && result; ++i)
            result = formatted::write(fp, &records[i], i);
        return fclose(fp) == 0 && result;
    }

    template <typename Record> static bool change(const char* path, Change how, const Record* income)
    {
        int count = formatted::countLines(path);
        if (count <= 0)
            return write(path, income, 1);
        Record* records = static_cast<Record*>(calloc(static_cast<size_t>(count) + 1, sizeof(Record)));
        bool result = records != nullptr && read(path, records, count);
        if (result) {
            const int start = apply(records, &count, how, income);
            result = write(path, records + start, count - start);
        }
        free(records);
        return result;
    }

  private:
    /* Changes the array; gives the index of the first record that stays. */
    template <typename Record> static int apply(Record* records, int* count, Change how, const Record* income)
    {
        if (how == Change::ERASE) {
            int kept = 0;
            for (int i = 0; i < *count; ++i) {
                if (!sameKey(records[i], *income))
                    records[kept++] = records[i];
            }
            *count = kept;
            return 0;
        }
        int at = *count;
        if (how == Change::REPLACE) {
            for (at = 0; at < *count && !sameKey(records[at], *income);)
                ++at;
        }
        records[at] = *income;
        if (at == *count)
            ++*count;
        const int most = capOf(records);
        return how == Change::APPEND && *count > most ? *count - most : 0;
    }
};

#endif
