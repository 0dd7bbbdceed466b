/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The 14 kinds of record files by their description in formats/, apart from the
 * module: example records, and the text that stands for them.
 */
#ifndef TESTS_FAULTS_RECORD_FILES_H
#define TESTS_FAULTS_RECORD_FILES_H

#include "formats/formats.h"
#include "testing.h"

/* In the order of formats::kinds. */
enum Kind {
    AP_NODE,
    AP_ALL,
    AP_DETAIL,
    BRIDGING,
    STATION,
    CANDIDATE,
    PAT_V1,
    PAT_V2,
    SCANNING,
    TIME_DELAY,
    SCORE,
    AP_RANK,
    RANK_INDEX,
    OUTPUT,
    KINDS
};

inline const formats::Kind& formatOf(Kind kind)
{
    return *formats::kinds[kind];
}

/* Size of a kind's record. */
size_t recordSize(Kind kind);

/*
 * The i-th example record of a kind; every i has a key of its own. The rank
 * index is a record of i entries, of which only those are filled that it has
 * room for.
 */
void fillRecord(Kind kind, int i, void* record);

/*
 * Prints what a writer of this kind makes of `count` records into `text`, and
 * returns its length. (Detail lines: every record as its own line.)
 */
size_t printRecords(Kind kind, const void* records, int count, char* text);

/*
 * A valid file of `count` example records: of entries where a file is one
 * record (the rank index), of devices with a few entries each in a PAT file.
 */
size_t exampleFile(Kind kind, int count, char* text);

/* A version 2 PAT file of one device that states `entries` entries, and has them. */
size_t patFileOfEntries(int entries, char* text);

/* Room for the largest text. */
enum { FILE_ROOM = 1 << 18 };

#endif
