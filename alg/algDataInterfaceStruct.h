/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The records that the data interface saves and loads.
 *
 * A MAC text field is 16 bytes: 12 hexadecimal characters and a terminating
 * NUL. Files give back at most 12 characters, so a longer text never comes
 * back whole.
 *
 * Every array of 5 is indexed by the band index that all records share. The
 * module stores by index only: which radio band an index stands for, the units
 * of rates, utilizations and delays, and the codes of modes and widths are the
 * host's. The one exception is named where it stands (the bounds that some
 * readers apply, see dataInterface.h).
 *
 * Records have natural alignment and no packing.
 */
#ifndef ALG_ALG_DATA_INTERFACE_STRUCT_H
#define ALG_ALG_DATA_INTERFACE_STRUCT_H

#include <stdint.h>

#include "capacities.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Mesh topology ------------------------------------------------------ */

/* One mesh node's link metrics, version 2. */
typedef struct ApNodeV2 {
    char deviceMAC[ALG_MAC_SIZE];                  /* the node; key of the record */
    char fatherDeviceMAC[ALG_MAC_SIZE];            /* its current father */
    uint8_t wirelessChannelUtilization[ALG_BANDS]; /* channel utilization per band */
    uint8_t plcUtilization;                        /* utilization of the power-line link */
    uint8_t ethernetUtilization;                   /* utilization of the Ethernet link */
    uint16_t wirelessRxRate[ALG_BANDS];            /* receive rate per band */
    uint16_t wirelessTxRate[ALG_BANDS];            /* transmit rate per band */
    uint16_t plcRate;                              /* power-line link rate */
    uint16_t ethernetRate;                         /* Ethernet link rate */
    uint16_t offset[ALG_BANDS];                    /* per-band offset, carried unchanged */
    uint8_t tipc_node;                             /* node number; in AP-all lines only */
} ApNodeV2;

/* Version of the algorithm control data that produced a record. */
typedef struct ALG_CTRL_VERSION {
    uint8_t major_ver; /* major version */
    uint8_t minor_ver; /* minor version */
} ALG_CTRL_VERSION;

/* One band's Wi-Fi mode capabilities of a node. */
typedef struct AlgWifiMode {
    uint8_t available; /* whether the band is usable */
    uint8_t NSS;       /* number of spatial streams */
    uint8_t wifiMode;  /* Wi-Fi mode code */
    uint8_t bandWidth; /* channel bandwidth code */
    uint8_t mcsLevel;  /* MCS level */
    uint8_t channel;   /* channel number */
    uint8_t reserved;  /* stored and carried like the others */
} AlgWifiMode;

/* All information of one node; the key is apNodeV2.deviceMAC. */
typedef struct ApInfoAllV2 {
    ALG_CTRL_VERSION alg_version;       /* version of the control data */
    ApNodeV2 apNodeV2;                  /* link metrics */
    AlgWifiMode algWifiMode[ALG_BANDS]; /* capabilities per band */
} ApInfoAllV2;

/* One node's wireless backhaul (bridging) link towards its father. */
typedef struct BridgingNodeV2 {
    char deviceMAC[ALG_MAC_SIZE];       /* the node whose link this is */
    char fatherDeviceMAC[ALG_MAC_SIZE]; /* its father; "000000000000" in the FAP's own record */
    uint8_t bridgingRssi[ALG_BANDS];    /* signal strength per band */
    uint16_t bridgingRxRate[ALG_BANDS]; /* receive rate per band */
    uint16_t bridgingTxRate[ALG_BANDS]; /* transmit rate per band */
    uint8_t bridgingRxMcs[ALG_BANDS];   /* receive MCS per band */
    uint8_t bridgingTxMcs[ALG_BANDS];   /* transmit MCS per band */
} BridgingNodeV2;

/* ---- Stations ----------------------------------------------------------- */

/* One station (client) connection sample. */
typedef struct StaConnection {
    uint16_t id;                  /* position in the file; the writer renumbers */
    char deviceMac[ALG_MAC_SIZE]; /* the station */
    char apMac[ALG_MAC_SIZE];     /* the AP it is connected to */
    uint16_t connectBand;         /* band index of the connection */
    uint16_t rssi;                /* received signal strength, as reported */
    uint16_t rxRate;              /* receive rate */
    uint16_t txRate;              /* transmit rate */
    uint16_t rxPackageCount;      /* packets received */
    uint16_t txPackageCount;      /* packets sent */
    uint16_t wifimode;            /* Wi-Fi mode code */
    uint16_t bandwidth;           /* channel width code */
    uint16_t mcslevel;            /* MCS level */
    uint16_t mimo;                /* spatial streams, a MIMO_ value */
    uint16_t kvrCapacity;         /* k/v/r roaming capability; stored only */
    uint16_t noiselevel;          /* noise level */
} StaConnection;

/* One AP that a station could roam to. */
typedef struct CandidateAp {
    char apMac[ALG_MAC_SIZE]; /* the candidate AP */
    uint8_t connectBand;      /* band index on which the station would connect */
    uint8_t roamingAvailable; /* whether roaming there is possible, 0 or not 0 */
    uint8_t rssi;             /* signal strength expected there */
    uint16_t throughput;      /* throughput expected there */
    uint8_t wifimode;         /* Wi-Fi mode code */
    uint8_t bandwidth;        /* channel width code */
    uint8_t mcslevel;         /* MCS level */
    uint8_t mimo;             /* spatial streams, a MIMO_ value */
} CandidateAp;

/* ---- PAT parameters of the throughput model ----------------------------- */

/*
 * Version 1, integer form: 5 bands x 5 widths x 4 MCS orders, with
 * slot = band * 20 + width * 4 + mcs.
 */
typedef struct PatParameter {
    char deviceMac[ALG_MAC_SIZE];          /* the device */
    uint16_t bParameter[ALG_PAT_CAPACITY]; /* parameter b per slot, integer-coded */
    uint16_t cParameter[ALG_PAT_CAPACITY]; /* parameter c per slot, integer-coded */
} PatParameter;

/* Version 2, integer form: one configuration. */
typedef struct SinglePat {
    uint8_t isChanged;         /* bit 0: paraB changed, bit 1: paraC changed; see patAlg2IntV2() */
    uint8_t bandOrder;         /* band index */
    uint8_t channelWidthOrder; /* channel-width index */
    uint8_t mcsOrder;          /* MCS index */
    uint8_t paraB;             /* b = paraB * 0.0008 + 0.1 */
    uint16_t paraC;            /* c = paraC * 0.00064 - 50 */
} SinglePat;

/* Version 2, integer form: one device. */
typedef struct PatParameterV2 {
    char deviceMac[ALG_MAC_SIZE];          /* the device */
    uint8_t commonPatNum;                  /* valid entries in singlePat, at most 100 */
    SinglePat singlePat[ALG_PAT_CAPACITY]; /* the first commonPatNum are meaningful */
} PatParameterV2;

/* Version 1, floating-point form. */
typedef struct AlgPatParameter {
    char deviceMac[ALG_MAC_SIZE]; /* the device; patInt2Alg() leaves it alone */
    float allParameter[ALG_BANDS][ALG_CHANNEL_WIDTHS][ALG_MCS_ORDERS]
                      [3]; /* [band][width][MCS][0 peak threshold, 1 b, 2 c] */
} AlgPatParameter;

/* Version 2, floating-point form: one configuration. */
typedef struct AlgSinglePat {
    uint8_t bandOrder;         /* band index */
    uint8_t channelWidthOrder; /* channel-width index */
    uint8_t mcsOrder;          /* MCS index */
    float paraA;               /* peak threshold of the configuration */
    float paraB;               /* parameter b, codable from 0.1 to 0.304 */
    float paraC;               /* parameter c, codable from -50 to -8.0576 */
} AlgSinglePat;

/* Version 2, floating-point form: one device. */
typedef struct AlgPatParameterV2 {
    char deviceMac[ALG_MAC_SIZE];                /* the device */
    uint8_t commonPatNum;                        /* valid entries in algSinglePat, at most 100 */
    AlgSinglePat algSinglePat[ALG_PAT_CAPACITY]; /* the first commonPatNum are meaningful */
} AlgPatParameterV2;

/* ---- Measurement history ------------------------------------------------ */

/* One sighting of a neighbour by a mesh AP. */
typedef struct ScanningInfo {
    char deviceMAC[ALG_MAC_SIZE];    /* the AP that made the scan; key of the deleter */
    char neighbourMAC[ALG_MAC_SIZE]; /* the neighbour that was seen */
    uint8_t band;                    /* band of the sighting */
    uint8_t channel;                 /* channel number */
    uint8_t rssi;                    /* received signal strength; at least 1 once loaded */
} ScanningInfo;

/* Latency samples towards one father. */
typedef struct TimeDelayInfo {
    char fatherMAC[ALG_MAC_SIZE];          /* the father; key of the update */
    uint16_t delayTime[ALG_DELAY_SAMPLES]; /* the samples; 1 to 1000 once loaded */
} TimeDelayInfo;

/* Inputs and results of scoring one candidate father. */
typedef struct ScoreInfo {
    char fatherMAC[ALG_MAC_SIZE]; /* the candidate father */
    uint8_t apRank;               /* its rank */
    float hopsFactor;             /* hop factor; two decimals in the file */
    uint8_t timeDelayTestCnt;     /* number of delay tests */
    uint16_t timeDelayAverage;    /* average delay */
    float timeNormalization;      /* normalised time; two decimals in the file */
    uint16_t thrputPredict;       /* predicted throughput */
    uint8_t rssi[ALG_BANDS];      /* signal strength per band */
    uint16_t negoRate[ALG_BANDS]; /* negotiated rate per band */
    uint16_t patRate[ALG_BANDS];  /* PAT rate per band */
} ScoreInfo;

/* ---- Ranking and decisions ---------------------------------------------- */

/*
 * Strategy of a run. 32 bits wide in C and in C++, so that any number in a file
 * is a value of the type.
 */
#ifdef __cplusplus
enum ALG_STRATEGY : uint32_t {
#else
typedef uint32_t ALG_STRATEGY;
enum {
#endif
    ALG_STRATEGY_UNKNOW = 0,
    ALG_STRATEGY_CAREFUL = 1,
    ALG_STRATEGY_REDICAL = 2,
    ALG_STRATEGY_GET_BEST = 3
};

/* One device's rank. */
typedef struct ApRank {
    char deviceMAC[ALG_MAC_SIZE];    /* the device; key of the file */
    char ethFatherMAC[ALG_MAC_SIZE]; /* its father over Ethernet */
    uint8_t apRank;                  /* rank (hop level) */
} ApRank;

/* One ranked device with its throughput. */
typedef struct ApThrRank {
    char deviceMAC[ALG_MAC_SIZE]; /* the device */
    char fatherMAC[ALG_MAC_SIZE]; /* its father */
    uint8_t apRank;               /* rank (hop level) */
    uint16_t throughput;          /* its throughput */
} ApThrRank;

/* The current ranking and the state of the optimisation run. */
typedef struct ApRankIndex {
    ApThrRank apRank[ALG_RANK_INDEX_CAPACITY]; /* the ranked devices; the first cnt are valid */
    uint8_t cnt;               /* valid entries; a file may state more than 30, see apRankIndexInfoReader() */
    uint8_t process_re;        /* RE-processing value of the run, carried as it stands */
    ALG_STRATEGY alg_strategy; /* strategy in force */
    uint32_t starttime;        /* start of the run, in the caller's unit */
} ApRankIndex;

/* The algorithm's latest decision. */
typedef struct ApAlgInterfaceOutput {
    char srcMAC[ALG_MAC_SIZE]; /* source device */
    char dstMAC[ALG_MAC_SIZE]; /* destination device */
    ALG_STRATEGY algStrategy;  /* strategy to apply */
    uint8_t timeout;           /* timeout, in the caller's unit */
} ApAlgInterfaceOutput;

#ifdef __cplusplus
}
#endif

#endif
