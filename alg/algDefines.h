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
 * CandidateAp.mimo. mimoSync() converts samples with MIMO_1, MIMO_3, MIMO_4 and
 * MIMO_8 to MIMO_2.
 */
enum {
    MIMO_UNKONOW = 0, /* unknown; the spelling is part of the interface */
    MIMO_1 = 1,       /* 1 stream */
    MIMO_2 = 2,       /* 2 streams */
    MIMO_3 = 3,       /* 3 streams */
    MIMO_4 = 4,       /* 4 streams */
    MIMO_8 = 8,       /* 8 streams */
    MIMO_OTHERS = 99  /* any other number of streams */
};

/* One radio configuration that has a peak throughput threshold. */
typedef struct PeekThrStructure {
    uint8_t bandOrder;         /* band index, below ALG_BANDS */
    uint8_t channelWidthOrder; /* channel-width index, below ALG_CHANNEL_WIDTHS */
    uint8_t mcsOrder;          /* MCS index, below ALG_MCS_ORDERS */
    uint16_t peekThr;          /* peak throughput threshold */
} PeekThrStructure;

/* Number of rows of peekThrStructure. */
enum { PEEK_THR_STRUCTURE_NUM = 15 };

/*
 * The thresholds of the configurations in use: band 0 at width 1 and bands 1 to 4
 * at width 3, each with MCS orders 0 to 2. getPeekThr() searches the rows in this
 * order, and patInitV2() writes one entry for each row in this order.
 */
extern const PeekThrStructure peekThrStructure[PEEK_THR_STRUCTURE_NUM];

/*
 * The thresholds of all configurations, as [band][channel width][MCS order].
 * Only the version 1 conversion patInt2Alg() uses this table. A configuration
 * without a threshold has the value 1. Some values differ from those of
 * peekThrStructure, on purpose: do not make them equal.
 */
extern const int32_t peekThr[ALG_BANDS][ALG_CHANNEL_WIDTHS][ALG_MCS_ORDERS];

#ifdef __cplusplus
}
#endif

#endif
