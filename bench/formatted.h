/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The same files with the C library's formatted calls, one for each scan() and
 * print() of the module. This is how such code is usually written: fscanf to read
 * fields across lines, fgets and sscanf to read lines, fprintf to write, and fgets to
 * count the lines before an array is allocated. It logs no messages.
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

/* Counts the lines of a file with fgets; -1 if it cannot be opened. */
int countLines(const char* path);

/* PAT files begin with the number of their devices, the others with a record. */
inline bool readCountLine(FILE* fp, const PatParameterV2*)
{
    unsigned char devices;
    return fscanf(fp, "%hhu", &devices) == 1;
}
inline bool readCountLine(FILE*, const void*)
{
    return true;
}
inline bool writeCountLine(FILE* fp, const PatParameterV2*, int count)
{
    return fprintf(fp, "%d\n", count) >= 0;
}
inline bool writeCountLine(FILE*, const void*, int)
{
    return true;
}

/* Whether the module's reader counts the lines itself, or checks that the file is not empty. */
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
        result = result && formatted::readCountLine(fp, records);
        for (int i = 0; i < count && result; ++i)
            result = formatted::read(fp, &records[i]);
        return fclose(fp) == 0 && result;
    }

    template <typename Record> static bool write(const char* path, const Record* records, int count)
    {
        FILE* fp = fopen(path, "w");
        if (fp == nullptr)
            return false;
        bool result = formatted::writeCountLine(fp, records, count);
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
    /* Changes the array; returns the index of the first record to write. */
    template <typename Record> static int apply(Record* records, int* count, Change how, const Record* income)
    {
        if (how == Change::ERASE) {
            int remaining = 0;
            for (int i = 0; i < *count; ++i) {
                if (!sameKey(records[i], *income))
                    records[remaining++] = records[i];
            }
            *count = remaining;
            return 0;
        }
        int index = how == Change::REPLACE ? 0 : *count;
        while (index < *count && !sameKey(records[index], *income))
            ++index;
        records[index] = *income;
        if (index == *count)
            ++*count;
        const int cap = capOf(records);
        return how == Change::APPEND && *count > cap ? *count - cap : 0;
    }
};

#endif
