/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The fields of each record in the order of its line. A visitor is called with
 * the name and the field; endLine() follows the last field of a line. The
 * stores below stand on this, so that each is written once for all records; the
 * compiler makes straight code of it.
 */
#ifndef ALG_BENCH_FIELDS_H
#define ALG_BENCH_FIELDS_H

#include "dataInterface.h"

#define NAMES5(name)                                     \
    {                                                    \
        name "0", name "1", name "2", name "3", name "4" \
    }

template <typename Visitor> void visit(Visitor& v, BridgingNodeV2& r)
{
    static constexpr const char* RSSI[] = NAMES5("rssi");
    static constexpr const char* RX_RATE[] = NAMES5("rxRate");
    static constexpr const char* TX_RATE[] = NAMES5("txRate");
    static constexpr const char* RX_MCS[] = NAMES5("rxMcs");
    static constexpr const char* TX_MCS[] = NAMES5("txMcs");
    v("deviceMAC", r.deviceMAC);
    v("fatherMAC", r.fatherDeviceMAC);
    for (int j = 0; j < 5; ++j) {
        v(RSSI[j], r.bridgingRssi[j]);
        v(RX_RATE[j], r.bridgingRxRate[j]);
        v(TX_RATE[j], r.bridgingTxRate[j]);
        v(RX_MCS[j], r.bridgingRxMcs[j]);
        v(TX_MCS[j], r.bridgingTxMcs[j]);
    }
    v.endLine();
}

template <typename Visitor> void visit(Visitor& v, StaConnection& r)
{
    v("number", r.id);
    v("deviceMAC", r.deviceMac);
    v("apMAC", r.apMac);
    v("connectBand", r.connectBand);
    v("rssi", r.rssi);
    v("rxRate", r.rxRate);
    v("txRate", r.txRate);
    v("rxPackageCount", r.rxPackageCount);
    v("txPackageCount", r.txPackageCount);
    v("wifimode", r.wifimode);
    v("bandwidth", r.bandwidth);
    v("mcslevel", r.mcslevel);
    v("mimo", r.mimo);
    v("kvrCapacity", r.kvrCapacity);
    v("noiselevel", r.noiselevel);
    v.endLine();
}

template <typename Visitor> void visit(Visitor& v, ScanningInfo& r)
{
    v("deviceMAC", r.deviceMAC);
    v("neighbourMAC", r.neighbourMAC);
    v("band", r.band);
    v("channel", r.channel);
    v("rssi", r.rssi);
    v.endLine();
}

template <typename Visitor> void visit(Visitor& v, TimeDelayInfo& r)
{
    static constexpr const char* DELAY[] = {"delay0",  "delay1",  "delay2",  "delay3",  "delay4",
                                            "delay5",  "delay6",  "delay7",  "delay8",  "delay9",
                                            "delay10", "delay11", "delay12", "delay13", "delay14"};
    v("fatherMAC", r.fatherMAC);
    for (int j = 0; j < 15; ++j)
        v(DELAY[j], r.delayTime[j]);
    v.endLine();
}

template <typename Visitor> void visit(Visitor& v, ApInfoAllV2& r)
{
    static constexpr const char* UTILIZATION[] = NAMES5("utilization");
    static constexpr const char* RX_RATE[] = NAMES5("rxRate");
    static constexpr const char* TX_RATE[] = NAMES5("txRate");
    static constexpr const char* OFFSET[] = NAMES5("bandOffset");
    static constexpr const char* AVAILABLE[] = NAMES5("available");
    static constexpr const char* STREAMS[] = NAMES5("nss");
    static constexpr const char* MODE[] = NAMES5("wifiMode");
    static constexpr const char* WIDTH[] = NAMES5("bandWidth");
    static constexpr const char* MCS[] = NAMES5("mcsLevel");
    static constexpr const char* CHANNEL[] = NAMES5("channel");
    static constexpr const char* RESERVED[] = NAMES5("reserved");
    ApNodeV2& node = r.apNodeV2;
    v("major", r.alg_version.major_ver);
    v("minor", r.alg_version.minor_ver);
    v("deviceMAC", node.deviceMAC);
    v("fatherMAC", node.fatherDeviceMAC);
    v("plcUtilization", node.plcUtilization);
    v("plcRate", node.plcRate);
    v("ethernetUtilization", node.ethernetUtilization);
    v("ethernetRate", node.ethernetRate);
    v("tipcNode", node.tipc_node);
    for (int j = 0; j < 5; ++j) {
        AlgWifiMode& mode = r.algWifiMode[j];
        v(UTILIZATION[j], node.wirelessChannelUtilization[j]);
        v(RX_RATE[j], node.wirelessRxRate[j]);
        v(TX_RATE[j], node.wirelessTxRate[j]);
        v(OFFSET[j], node.offset[j]);
        v(AVAILABLE[j], mode.available);
        v(STREAMS[j], mode.NSS);
        v(MODE[j], mode.wifiMode);
        v(WIDTH[j], mode.bandWidth);
        v(MCS[j], mode.mcsLevel);
        v(CHANNEL[j], mode.channel);
        v(RESERVED[j], mode.reserved);
    }
    v.endLine();
}

template <typename Visitor> void visit(Visitor& v, ApRank& r)
{
    v("deviceMAC", r.deviceMAC);
    v("fatherMAC", r.ethFatherMAC);
    v("apRank", r.apRank);
    v.endLine();
}

/* Several lines of a record: for text files only. */
template <typename Visitor> void visit(Visitor& v, PatParameterV2& r)
{
    v("deviceMAC", r.deviceMac);
    v("entries", r.commonPatNum);
    v.endLine();
    for (int j = 0; j < r.commonPatNum && j < 100; ++j) {
        SinglePat& entry = r.singlePat[j];
        v("isChanged", entry.isChanged);
        v("bandOrder", entry.bandOrder);
        v("channelWidthOrder", entry.channelWidthOrder);
        v("mcsOrder", entry.mcsOrder);
        v("paraB", entry.paraB);
        v("paraC", entry.paraC);
        v.endLine();
    }
}

template <typename Visitor> void visit(Visitor& v, ScoreInfo& r)
{
    static constexpr const char* RSSI[] = NAMES5("rssi");
    static constexpr const char* NEGOTIATED[] = NAMES5("negoRate");
    static constexpr const char* PAT[] = NAMES5("patRate");
    v("fatherMAC", r.fatherMAC);
    v("apRank", r.apRank);
    v("hopsFactor", r.hopsFactor);
    v("tests", r.timeDelayTestCnt);
    v("average", r.timeDelayAverage);
    v("normalization", r.timeNormalization);
    v("thrputPredict", r.thrputPredict);
    for (int j = 0; j < 5; ++j)
        v(RSSI[j], r.rssi[j]);
    for (int j = 0; j < 5; ++j)
        v(NEGOTIATED[j], r.negoRate[j]);
    for (int j = 0; j < 5; ++j)
        v(PAT[j], r.patRate[j]);
    v.endLine();
}

/* PAT files begin with the number of their devices. */
template <typename Record> inline constexpr bool HAS_HEAD = false;
template <> inline constexpr bool HAS_HEAD<PatParameterV2> = true;

#endif
