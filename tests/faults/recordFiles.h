/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Example records of every kind of file and their text, by the description in
 * formats/ and without the module.
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
 * The i-th example record of a kind. Each i has a different key. For the rank index,
 * it is a record that states i entries, filled up to its capacity.
 */
void fillRecord(Kind kind, int i, void* record);

/*
 * Prints `count` records as the writer of this kind does and returns the length of the
 * text. (Detail lines: each record is a line.)
 */
size_t printRecords(Kind kind, const void* records, int count, char* text);

/*
 * Prints a valid file of `count` example records and returns its length. For the rank
 * index, `count` is the number of entries. In a PAT file, each device has a few entries.
 */
size_t exampleFile(Kind kind, int count, char* text);

/* Prints a version 2 PAT file of one device with `entries` entries and returns its length. */
size_t patFileOfEntries(int entries, char* text);

/* Room for the largest text. */
enum { FILE_ROOM = 1 << 18 };

#endif
