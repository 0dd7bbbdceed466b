/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Constants of the algorithm: the MIMO codes and the two tables of peak
 * throughput thresholds.
 */
#ifndef ALG_ALG_DEFINES_H
#define ALG_ALG_DEFINES_H

#include <stdint.h>

#include "capacities.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Number of spatial streams, as stored in StaConnection.mimo and
 * CandidateAp.mimo. mimoSync() brings the known stream counts to MIMO_2.
 */
enum {
    MIMO_UNKONOW = 0, /* the spelling is the interface's own */
    MIMO_1 = 1,
    MIMO_2 = 2,
    MIMO_3 = 3,
    MIMO_4 = 4,
    MIMO_8 = 8,
    MIMO_OTHERS = 99
};

/* One radio configuration that has a peak throughput threshold. */
typedef struct PeekThrStructure {
    uint8_t bandOrder;         /* band index, 0 to 4 */
    uint8_t channelWidthOrder; /* channel-width index, 0 to 4 */
    uint8_t mcsOrder;          /* MCS index, 0 to 3 */
    uint16_t peekThr;          /* peak throughput threshold */
} PeekThrStructure;

/* Rows of peekThrStructure. */
enum { PEEK_THR_STRUCTURE_NUM = 15 };

/*
 * The configurations in use, in the order in which getPeekThr() searches them
 * and patInitV2() writes them: three MCS orders of band 0 at width 1, then of
 * bands 1 to 4 at width 3.
 */
extern const PeekThrStructure peekThrStructure[PEEK_THR_STRUCTURE_NUM];

/*
 * Thresholds of every configuration, [band][channel width][MCS order], for the
 * version 1 conversion patInt2Alg() alone. 1 stands wherever a configuration
 * has no threshold. In places it disagrees with peekThrStructure, on purpose:
 * each consumer uses its own table.
 */
extern const int32_t peekThr[ALG_BANDS][ALG_CHANNEL_WIDTHS][ALG_MCS_ORDERS];

#ifdef __cplusplus
}
#endif

#endif
