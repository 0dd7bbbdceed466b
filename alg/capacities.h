/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The sizes of records and of files. There are two kinds:
 *
 *   capacities   how many elements a record holds
 *   caps         how many records an append keeps in a file: once it is full, each
 *                new record evicts the oldest one. The first save into a missing
 *                or empty file has no cap.
 *
 * Changing a capacity changes the layout of records and the format of files.
 */
#ifndef ALG_CAPACITIES_H
#define ALG_CAPACITIES_H

#ifdef __cplusplus
extern "C" {
#endif

enum {
    /* Capacities */
    ALG_MAC_SIZE = 16,            /* bytes of a MAC text field, including the NUL */
    ALG_BANDS = 5,                /* radio bands, the elements of every per-band array */
    ALG_CHANNEL_WIDTHS = 5,       /* channel widths of a PAT configuration */
    ALG_MCS_ORDERS = 4,           /* MCS indexes ("orders") of a PAT configuration */
    ALG_PAT_CAPACITY = 100,       /* slots of version 1 (bands x widths x MCS orders); entries of version 2 */
    ALG_DELAY_SAMPLES = 15,       /* delay samples of a TimeDelayInfo */
    ALG_RANK_INDEX_CAPACITY = 30, /* ranked devices of an ApRankIndex */

    /* Caps */
    ALG_FAP_BRIDGING_CAP = 64, /* bridging records in the FAP's log; see updateSingleBridgingInfo() */
    ALG_STATION_CAP = 128,     /* station samples */
    ALG_SCANNING_CAP = 256,    /* sightings of neighbours */
    ALG_TIME_DELAY_CAP = 256   /* time delay records */
};

#ifdef __cplusplus
}
#endif

#endif
