/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Every size that records and files share, once. Two kinds:
 *
 *   capacities   how much a record holds
 *   caps         how many of the newest records an append keeps in a file
 *
 * Changing a capacity changes the layout of records and the files.
 */
#ifndef ALG_CAPACITIES_H
#define ALG_CAPACITIES_H

#ifdef __cplusplus
extern "C" {
#endif

enum {
    /* Capacities */
    ALG_MAC_SIZE = 16,            /* bytes of a MAC text field, terminating NUL included */
    ALG_BANDS = 5,                /* radio bands: elements of every per-band array */
    ALG_CHANNEL_WIDTHS = 5,       /* channel-width indices of a PAT configuration */
    ALG_MCS_ORDERS = 4,           /* MCS indices of a PAT configuration */
    ALG_PAT_CAPACITY = 100,       /* version 1: slots, 5 bands x 5 widths x 4 MCS; version 2: entries */
    ALG_DELAY_SAMPLES = 15,       /* delay samples of a TimeDelayInfo */
    ALG_RANK_INDEX_CAPACITY = 30, /* ranked devices of an ApRankIndex */

    /* Caps */
    ALG_FAP_BRIDGING_CAP = 64, /* the FAP's log of bridging records */
    ALG_STATION_CAP = 128,     /* station samples */
    ALG_SCANNING_CAP = 256,    /* sightings of neighbours */
    ALG_TIME_DELAY_CAP = 256   /* time delay records */
};

#ifdef __cplusplus
}
#endif

#endif
