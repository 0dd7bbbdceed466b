/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The records that the data interface saves and loads.
 *
 * A MAC text field has ALG_MAC_SIZE bytes, enough for 15 characters and a NUL. A
 * MAC has 12 hexadecimal characters, and a reader stores at most 12: it reads the
 * rest of a longer text as the next field.
 *
 * Every array of ALG_BANDS elements has one element per radio band, and a band has
 * the same index in all records. The host decides which radio band an index
 * stands for, the units of rates, utilizations and delays, and the codes of modes
 * and widths; the module stores them as plain numbers. Some readers bound some
 * values: see the readers in dataInterface.h.
 *
 * Records have natural alignment and are not packed.
 */
#ifndef ALG_ALG_DATA_INTERFACE_STRUCT_H
#define ALG_ALG_DATA_INTERFACE_STRUCT_H

#include <stdint.h>

#include "capacities.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Mesh topology ------------------------------------------------------ */

/*
 * The link metrics of one mesh node, version 2.
 *
 * A utilization is what is used. apNodeInfoReaderV2() and apAllInfoReader()
 * replace it by 95 minus its value, at least 1: what is still free.
 */
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
    uint16_t offset[ALG_BANDS];                    /* offset per band; the module never changes it */
    uint8_t tipc_node;                             /* node number; only the AP-all file holds it */
} ApNodeV2;

/* Version of the algorithm control data that produced a record. */
typedef struct ALG_CTRL_VERSION {
    uint8_t major_ver; /* major version */
    uint8_t minor_ver; /* minor version */
} ALG_CTRL_VERSION;

/* One band's Wi-Fi mode capabilities of a node. */
typedef struct AlgWifiMode {
    uint8_t available; /* whether the band can be used */
    uint8_t NSS;       /* number of spatial streams */
    uint8_t wifiMode;  /* Wi-Fi mode code */
    uint8_t bandWidth; /* channel bandwidth code */
    uint8_t mcsLevel;  /* MCS level */
    uint8_t channel;   /* channel number */
    uint8_t reserved;  /* without a meaning; saved and loaded like the other members */
} AlgWifiMode;

/* All information of one node; the key is apNodeV2.deviceMAC. */
typedef struct ApInfoAllV2 {
    ALG_CTRL_VERSION alg_version;       /* version of the control data */
    ApNodeV2 apNodeV2;                  /* link metrics */
    AlgWifiMode algWifiMode[ALG_BANDS]; /* capabilities per band */
} ApInfoAllV2;

/* The wireless backhaul (bridging) link of one node to its father. */
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
    uint16_t id;                  /* position in the file; every write renumbers the records */
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
    uint16_t kvrCapacity;         /* k/v/r roaming capability; the module does not use it */
    uint16_t noiselevel;          /* noise level */
} StaConnection;

/* One AP that a station could roam to. */
typedef struct CandidateAp {
    char apMac[ALG_MAC_SIZE]; /* the candidate AP */
    uint8_t connectBand;      /* band index on which the station would connect */
    uint8_t roamingAvailable; /* 0 if the station cannot roam there, else not 0 */
    uint8_t rssi;             /* signal strength expected there */
    uint16_t throughput;      /* throughput expected there */
    uint8_t wifimode;         /* Wi-Fi mode code */
    uint8_t bandwidth;        /* channel width code */
    uint8_t mcslevel;         /* MCS level */
    uint8_t mimo;             /* spatial streams, a MIMO_ value */
} CandidateAp;

/* ---- PAT parameters of the throughput model ----------------------------- */

/*
 * The version 1 parameters of one device as integers. Each configuration has its
 * slot: slot = band * 20 + width * 4 + mcs, with 20 = 5 widths x 4 MCS orders.
 */
typedef struct PatParameter {
    char deviceMac[ALG_MAC_SIZE];          /* the device */
    uint16_t bParameter[ALG_PAT_CAPACITY]; /* b of each slot, coded as in SinglePat */
    uint16_t cParameter[ALG_PAT_CAPACITY]; /* c of each slot, coded as in SinglePat */
} PatParameter;

/* The version 2 parameters of one configuration as integers. */
typedef struct SinglePat {
    uint8_t isChanged;         /* bit 0: paraB has changed, bit 1: paraC; patAlg2IntV2() sets them */
    uint8_t bandOrder;         /* band index */
    uint8_t channelWidthOrder; /* channel-width index */
    uint8_t mcsOrder;          /* MCS index */
    uint8_t paraB;             /* b = paraB * 0.0008 + 0.1 */
    uint16_t paraC;            /* c = paraC * 0.00064 - 50 */
} SinglePat;

/* The version 2 parameters of one device as integers. */
typedef struct PatParameterV2 {
    char deviceMac[ALG_MAC_SIZE];          /* the device */
    uint8_t commonPatNum;                  /* valid entries of singlePat; see patParameterReaderV2() */
    SinglePat singlePat[ALG_PAT_CAPACITY]; /* the first commonPatNum are valid */
} PatParameterV2;

/* The version 1 parameters of one device as floats. */
typedef struct AlgPatParameter {
    char deviceMac[ALG_MAC_SIZE]; /* the device; patInt2Alg() does not set it */
    /* For each band, width and MCS order: [0] is the peak threshold, [1] is b, [2] is c. */
    float allParameter[ALG_BANDS][ALG_CHANNEL_WIDTHS][ALG_MCS_ORDERS][3];
} AlgPatParameter;

/* The version 2 parameters of one configuration as floats. */
typedef struct AlgSinglePat {
    uint8_t bandOrder;         /* band index */
    uint8_t channelWidthOrder; /* channel-width index */
    uint8_t mcsOrder;          /* MCS index */
    float paraA;               /* peak threshold of the configuration */
    float paraB;               /* b; a file can store 0.1 to 0.304 */
    float paraC;               /* c; a file can store -50 to -8.0576 */
} AlgSinglePat;

/* The version 2 parameters of one device as floats. */
typedef struct AlgPatParameterV2 {
    char deviceMac[ALG_MAC_SIZE];                /* the device */
    uint8_t commonPatNum;                        /* valid entries of algSinglePat, at most ALG_PAT_CAPACITY */
    AlgSinglePat algSinglePat[ALG_PAT_CAPACITY]; /* the first commonPatNum are valid */
} AlgPatParameterV2;

/* ---- Measurement history ------------------------------------------------ */

/* One sighting: a neighbour that a mesh AP has seen in a scan. */
typedef struct ScanningInfo {
    char deviceMAC[ALG_MAC_SIZE];    /* the AP that made the scan; key of the deleter */
    char neighbourMAC[ALG_MAC_SIZE]; /* the neighbour that was seen */
    uint8_t band;                    /* band of the sighting */
    uint8_t channel;                 /* channel number */
    uint8_t rssi;                    /* received signal strength; at least 1 after loading */
} ScanningInfo;

/* The latency samples towards one father. */
typedef struct TimeDelayInfo {
    char fatherMAC[ALG_MAC_SIZE];          /* the father; key of the update */
    uint16_t delayTime[ALG_DELAY_SAMPLES]; /* the samples; 1 to 1000 after loading */
} TimeDelayInfo;

/* The inputs and results of scoring one candidate father. */
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
 * The strategy of a run. It has 32 bits in C and in C++, so every number that a
 * file can hold is a valid value of the type.
 */
#ifdef __cplusplus
enum ALG_STRATEGY : uint32_t {
#else
typedef uint32_t ALG_STRATEGY;
enum {
#endif
    ALG_STRATEGY_UNKNOW = 0,  /* unknown; the spelling is part of the interface */
    ALG_STRATEGY_CAREFUL = 1, /* careful */
    ALG_STRATEGY_REDICAL = 2, /* radical; the spelling is part of the interface */
    ALG_STRATEGY_GET_BEST = 3 /* get best */
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
    uint8_t cnt;               /* valid entries; a file may state more, see apRankIndexInfoReader() */
    uint8_t process_re;        /* the run's value for the processing of REs; the module does not use it */
    ALG_STRATEGY alg_strategy; /* strategy in force */
    uint32_t starttime;        /* start of the run, in the host's unit */
} ApRankIndex;

/* The algorithm's latest decision. */
typedef struct ApAlgInterfaceOutput {
    char srcMAC[ALG_MAC_SIZE]; /* source device */
    char dstMAC[ALG_MAC_SIZE]; /* destination device */
    ALG_STRATEGY algStrategy;  /* strategy to apply */
    uint8_t timeout;           /* timeout, in the host's unit */
} ApAlgInterfaceOutput;

#ifdef __cplusplus
}
#endif

#endif
