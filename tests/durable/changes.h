/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Every function of the module that writes a file, as a series of changes of one file.
 */
#ifndef TESTS_DURABLE_CHANGES_H
#define TESTS_DURABLE_CHANGES_H

#include "recordFiles.h"

struct Change {
    const char* name;
    Kind kind;
    int records;                            /* in the file at the start; -1: there is no file */
    bool (*apply)(const char* path, int i); /* the i-th change, from 1; false if it reports a failure */
};

extern const Change changes[];
extern const size_t changeCount;

/* All records of a file, as its reader returns them. */
struct Records {
    int lines;
    alignas(8) char bytes[1 << 15];
};

/* Returns false if the reader fails. */
bool readRecords(Kind kind, const char* path, Records& records);

#endif
