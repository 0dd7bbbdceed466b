/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The expected result of every reader and every update, for any bytes, by the rules of
 * the readers and the fields of formats/. It works on bytes in memory, without streams
 * and without the C library's scanning, and shares no code with the module.
 */
#ifndef TESTS_FAULTS_RECORD_ORACLE_H
#define TESTS_FAULTS_RECORD_ORACLE_H

#include "recordFiles.h"

/* Bytes and the position up to which they are consumed. */
struct Text {
    const char* bytes;
    size_t size;
    size_t at;
};

/* The number of lines that dataLineCounter() counts. */
int expectedLines(Text file);

/*
 * The expected result of one read: fills `records` (and `macs`, if the reader copies
 * MACs) and returns what the reader returns. `count` is for readers that have such a
 * parameter.
 */
typedef bool (*ExpectedReader)(Text file, void* records, int count, char (*macs)[ALG_MAC_SIZE]);

bool expectApNodes(Text file, void* records, int count, char (*macs)[ALG_MAC_SIZE]);
bool expectApAllRaw(Text file, void* records, int count, char (*macs)[ALG_MAC_SIZE]);
bool expectApAllBounded(Text file, void* records, int count, char (*macs)[ALG_MAC_SIZE]);
bool expectApDetail(Text file, void* records, int count, char (*macs)[ALG_MAC_SIZE]);
bool expectBridging(Text file, void* records, int count, char (*macs)[ALG_MAC_SIZE]);
bool expectStations(Text file, void* records, int count, char (*macs)[ALG_MAC_SIZE]);
bool expectCandidates(Text file, void* records, int count, char (*macs)[ALG_MAC_SIZE]);
bool expectPatV1(Text file, void* records, int count, char (*macs)[ALG_MAC_SIZE]);
bool expectPatV2(Text file, void* records, int count, char (*macs)[ALG_MAC_SIZE]);
bool expectScans(Text file, void* records, int count, char (*macs)[ALG_MAC_SIZE]);
bool expectDelays(Text file, void* records, int count, char (*macs)[ALG_MAC_SIZE]);
bool expectScores(Text file, void* records, int count, char (*macs)[ALG_MAC_SIZE]);
bool expectRanks(Text file, void* records, int count, char (*macs)[ALG_MAC_SIZE]);
bool expectRankIndex(Text file, void* records, int count, char (*macs)[ALG_MAC_SIZE]);
bool expectOutput(Text file, void* records, int count, char (*macs)[ALG_MAC_SIZE]);
int expectedScoreCnt(Text file);

/* What patParameterReaderV2() writes into a missing or empty file. */
extern const char defaultPatFile[];

/* How an update changes the records of the file. */
enum Rule {
    REPLACE_OR_ADD,  /* replaces the first record of the key, or appends */
    ADD_AND_CAP,     /* appends; keeps the newest `cap` records */
    ADD_ONE_FOR_ONE, /* appends; above the cap, evicts the oldest record */
    FILL_WITH_LAST,  /* replaces the key's first record by the last record */
    DROP_ALL,        /* deletes all records of the key */
    OVERWRITE        /* writes only the income; returns false */
};

struct UpdateRule {
    Kind kind;
    Rule rule;
    size_t key; /* offset of the key in a record */
    int cap;
    ExpectedReader read;
};

/*
 * The expected result of an update of `file` with this income. Stores the bytes of the
 * file after the update in `text` and their number in `*size`.
 */
bool expectUpdate(const UpdateRule& update, Text file, const void* income, char* text, size_t* size);

#endif
