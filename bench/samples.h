/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Records like those of a real mesh: full MACs, rates of up to four digits, levels of
 * two digits. They are the same in every run. Every byte of a record is set, so that
 * records read from a file can be compared with memcmp().
 */
#ifndef ALG_BENCH_SAMPLES_H
#define ALG_BENCH_SAMPLES_H

#include "dataInterface.h"

/* The record at index `i` of a file; `variant` changes its numbers, not its key. */
void makeSample(BridgingNodeV2* record, int i, int variant);
void makeSample(StaConnection* record, int i, int variant);
void makeSample(ScanningInfo* record, int i, int variant); /* 16 consecutive records have the same AP */
void makeSample(TimeDelayInfo* record, int i, int variant);
void makeSample(ApInfoAllV2* record, int i, int variant);
void makeSample(ApRank* record, int i, int variant);
void makeSample(PatParameterV2* record, int i, int variant); /* with the default entries */
void makeSample(ScoreInfo* record, int i, int variant);

#endif
