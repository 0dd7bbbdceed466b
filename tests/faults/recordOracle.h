/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What every reader and every update makes of any bytes, by the rules of the
 * readers and the fields of formats/. It reads bytes in memory, without a stream
 * and without the C library's scanning, and shares no code with the module.
 */
#ifndef TESTS_FAULTS_RECORD_ORACLE_H
#define TESTS_FAULTS_RECORD_ORACLE_H

#include "recordFiles.h"

/* Bytes, and how far they have been read. */
struct Text {
    const char* bytes;
    size_t size;
    size_t at;
};

/* The records that dataLineCounter() counts. */
int expectedLines(Text file);

/*
 * One expected read: fills `records` (and `macs`, where the reader copies MACs)
 * and returns the result. `count` is passed to a reader that has such a
 * parameter.
 */
typedef bool (*ExpectedReader)(Text file, void* records, int count, char (*macs)[16]);

bool expectApNodes(Text file, void* records, int count, char (*macs)[16]);
bool expectApAllRaw(Text file, void* records, int count, char (*macs)[16]);
bool expectApAllBounded(Text file, void* records, int count, char (*macs)[16]);
bool expectApDetail(Text file, void* records, int count, char (*macs)[16]);
bool expectBridging(Text file, void* records, int count, char (*macs)[16]);
bool expectStations(Text file, void* records, int count, char (*macs)[16]);
bool expectCandidates(Text file, void* records, int count, char (*macs)[16]);
bool expectPatV1(Text file, void* records, int count, char (*macs)[16]);
bool expectPatV2(Text file, void* records, int count, char (*macs)[16]);
bool expectScans(Text file, void* records, int count, char (*macs)[16]);
bool expectDelays(Text file, void* records, int count, char (*macs)[16]);
bool expectScores(Text file, void* records, int count, char (*macs)[16]);
bool expectRanks(Text file, void* records, int count, char (*macs)[16]);
bool expectRankIndex(Text file, void* records, int count, char (*macs)[16]);
bool expectOutput(Text file, void* records, int count, char (*macs)[16]);
int expectedScoreCnt(Text file);

/* What patParameterReaderV2() writes into a missing or empty file. */
extern const char defaultPatFile[];

/* How an update changes the records that it has read. */
enum Rule {
    REPLACE_OR_ADD,  /* the first record of the key, else at the end */
    ADD_AND_CAP,     /* at the end; the newest `cap` stay */
    ADD_ONE_FOR_ONE, /* at the end; past the cap it evicts the oldest one */
    FILL_WITH_LAST,  /* the last record replaces the key's first one */
    DROP_ALL,        /* removes all of the key */
    OVERWRITE        /* the file becomes the income; the result is false */
};

struct UpdateRule {
    Kind kind;
    Rule rule;
    size_t key; /* where the key stands in a record */
    int cap;
    ExpectedReader read;
};

/*
 * What an update makes of `file` with this income: its result, and the bytes
 * afterwards in `text`, of `*size`.
 */
bool expectUpdate(const UpdateRule& update, Text file, const void* income, char* text, size_t* size);

#endif
