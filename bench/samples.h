/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Records as a mesh has them: full MACs, rates of up to four digits, levels of
 * two. The same ones at every run. Each is wholly set, so that what comes back
 * from a file can be compared byte by byte.
 */
#ifndef ALG_BENCH_SAMPLES_H
#define ALG_BENCH_SAMPLES_H

#include "dataInterface.h"

/* The record at place `i` of a file; `variant` changes its numbers, not its key. */
void makeSample(BridgingNodeV2* record, int i, int variant);
void makeSample(StaConnection* record, int i, int variant);
void makeSample(ScanningInfo* record, int i, int variant); /* 16 of a row by the same AP */
void makeSample(TimeDelayInfo* record, int i, int variant);
void makeSample(ApInfoAllV2* record, int i, int variant);
void makeSample(ApRank* record, int i, int variant);
void makeSample(PatParameterV2* record, int i, int variant); /* with 15 entries */
void makeSample(ScoreInfo* record, int i, int variant);

#endif
