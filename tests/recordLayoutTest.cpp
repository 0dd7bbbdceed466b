/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The layout of every record. A host is compiled with it: a size or an offset
 * that changes breaks every host that is not compiled again. The records hold no
 * pointers, so the numbers are the same on 32 bits and on 64 bits.
 */
#include "testing.h"

#define EXPECT_RECORD(record, size) EXPECT_EQ(static_cast<size_t>(size), sizeof(record))
#define EXPECT_FIELD(record, field, offset, size)                    \
    EXPECT_EQ(static_cast<size_t>(offset), offsetof(record, field)); \
    EXPECT_EQ(static_cast<size_t>(size), sizeof(record::field))

/* Hosts are compiled with these values, too. */
static_assert(ALG_MAC_SIZE == 16);
static_assert(ALG_BANDS == 5);
static_assert(ALG_CHANNEL_WIDTHS == 5);
static_assert(ALG_MCS_ORDERS == 4);
static_assert(ALG_PAT_CAPACITY == 100);
static_assert(ALG_DELAY_SAMPLES == 15);
static_assert(ALG_RANK_INDEX_CAPACITY == 30);
static_assert(PEEK_THR_STRUCTURE_NUM == 15);
static_assert(ALG_FAP_BRIDGING_CAP == 64);
static_assert(ALG_STATION_CAP == 128);
static_assert(ALG_SCANNING_CAP == 256);
static_assert(ALG_TIME_DELAY_CAP == 256);

TEST(RecordLayout, apNodeV2)
{
    EXPECT_RECORD(ApNodeV2, 76);
    EXPECT_FIELD(ApNodeV2, deviceMAC, 0, 16);
    EXPECT_FIELD(ApNodeV2, fatherDeviceMAC, 16, 16);
    EXPECT_FIELD(ApNodeV2, wirelessChannelUtilization, 32, 5);
    EXPECT_FIELD(ApNodeV2, plcUtilization, 37, 1);
    EXPECT_FIELD(ApNodeV2, ethernetUtilization, 38, 1);
    EXPECT_FIELD(ApNodeV2, wirelessRxRate, 40, 10);
    EXPECT_FIELD(ApNodeV2, wirelessTxRate, 50, 10);
    EXPECT_FIELD(ApNodeV2, plcRate, 60, 2);
    EXPECT_FIELD(ApNodeV2, ethernetRate, 62, 2);
    EXPECT_FIELD(ApNodeV2, offset, 64, 10);
    EXPECT_FIELD(ApNodeV2, tipc_node, 74, 1);
}

TEST(RecordLayout, algCtrlVersion)
{
    EXPECT_RECORD(ALG_CTRL_VERSION, 2);
    EXPECT_FIELD(ALG_CTRL_VERSION, major_ver, 0, 1);
    EXPECT_FIELD(ALG_CTRL_VERSION, minor_ver, 1, 1);
}

TEST(RecordLayout, algWifiMode)
{
    EXPECT_RECORD(AlgWifiMode, 7);
    EXPECT_FIELD(AlgWifiMode, available, 0, 1);
    EXPECT_FIELD(AlgWifiMode, NSS, 1, 1);
    EXPECT_FIELD(AlgWifiMode, wifiMode, 2, 1);
    EXPECT_FIELD(AlgWifiMode, bandWidth, 3, 1);
    EXPECT_FIELD(AlgWifiMode, mcsLevel, 4, 1);
    EXPECT_FIELD(AlgWifiMode, channel, 5, 1);
    EXPECT_FIELD(AlgWifiMode, reserved, 6, 1);
}

TEST(RecordLayout, apInfoAllV2)
{
    EXPECT_RECORD(ApInfoAllV2, 114);
    EXPECT_FIELD(ApInfoAllV2, alg_version, 0, 2);
    EXPECT_FIELD(ApInfoAllV2, apNodeV2, 2, 76);
    EXPECT_FIELD(ApInfoAllV2, algWifiMode, 78, 35);
}

TEST(RecordLayout, bridgingNodeV2)
{
    EXPECT_RECORD(BridgingNodeV2, 68);
    EXPECT_FIELD(BridgingNodeV2, deviceMAC, 0, 16);
    EXPECT_FIELD(BridgingNodeV2, fatherDeviceMAC, 16, 16);
    EXPECT_FIELD(BridgingNodeV2, bridgingRssi, 32, 5);
    EXPECT_FIELD(BridgingNodeV2, bridgingRxRate, 38, 10);
    EXPECT_FIELD(BridgingNodeV2, bridgingTxRate, 48, 10);
    EXPECT_FIELD(BridgingNodeV2, bridgingRxMcs, 58, 5);
    EXPECT_FIELD(BridgingNodeV2, bridgingTxMcs, 63, 5);
}

TEST(RecordLayout, staConnection)
{
    EXPECT_RECORD(StaConnection, 58);
    EXPECT_FIELD(StaConnection, id, 0, 2);
    EXPECT_FIELD(StaConnection, deviceMac, 2, 16);
    EXPECT_FIELD(StaConnection, apMac, 18, 16);
    EXPECT_FIELD(StaConnection, connectBand, 34, 2);
    EXPECT_FIELD(StaConnection, rssi, 36, 2);
    EXPECT_FIELD(StaConnection, rxRate, 38, 2);
    EXPECT_FIELD(StaConnection, txRate, 40, 2);
    EXPECT_FIELD(StaConnection, rxPackageCount, 42, 2);
    EXPECT_FIELD(StaConnection, txPackageCount, 44, 2);
    EXPECT_FIELD(StaConnection, wifimode, 46, 2);
    EXPECT_FIELD(StaConnection, bandwidth, 48, 2);
    EXPECT_FIELD(StaConnection, mcslevel, 50, 2);
    EXPECT_FIELD(StaConnection, mimo, 52, 2);
    EXPECT_FIELD(StaConnection, kvrCapacity, 54, 2);
    EXPECT_FIELD(StaConnection, noiselevel, 56, 2);
}

TEST(RecordLayout, candidateAp)
{
    EXPECT_RECORD(CandidateAp, 26);
    EXPECT_FIELD(CandidateAp, apMac, 0, 16);
    EXPECT_FIELD(CandidateAp, connectBand, 16, 1);
    EXPECT_FIELD(CandidateAp, roamingAvailable, 17, 1);
    EXPECT_FIELD(CandidateAp, rssi, 18, 1);
    EXPECT_FIELD(CandidateAp, throughput, 20, 2);
    EXPECT_FIELD(CandidateAp, wifimode, 22, 1);
    EXPECT_FIELD(CandidateAp, bandwidth, 23, 1);
    EXPECT_FIELD(CandidateAp, mcslevel, 24, 1);
    EXPECT_FIELD(CandidateAp, mimo, 25, 1);
}

TEST(RecordLayout, patParameter)
{
    EXPECT_RECORD(PatParameter, 416);
    EXPECT_FIELD(PatParameter, deviceMac, 0, 16);
    EXPECT_FIELD(PatParameter, bParameter, 16, 200);
    EXPECT_FIELD(PatParameter, cParameter, 216, 200);
}

TEST(RecordLayout, singlePat)
{
    EXPECT_RECORD(SinglePat, 8);
    EXPECT_FIELD(SinglePat, isChanged, 0, 1);
    EXPECT_FIELD(SinglePat, bandOrder, 1, 1);
    EXPECT_FIELD(SinglePat, channelWidthOrder, 2, 1);
    EXPECT_FIELD(SinglePat, mcsOrder, 3, 1);
    EXPECT_FIELD(SinglePat, paraB, 4, 1);
    EXPECT_FIELD(SinglePat, paraC, 6, 2);
}

TEST(RecordLayout, patParameterV2)
{
    EXPECT_RECORD(PatParameterV2, 818);
    EXPECT_FIELD(PatParameterV2, deviceMac, 0, 16);
    EXPECT_FIELD(PatParameterV2, commonPatNum, 16, 1);
    EXPECT_FIELD(PatParameterV2, singlePat, 18, 800);
}

TEST(RecordLayout, algPatParameter)
{
    EXPECT_RECORD(AlgPatParameter, 1216);
    EXPECT_FIELD(AlgPatParameter, deviceMac, 0, 16);
    EXPECT_FIELD(AlgPatParameter, allParameter, 16, 1200);
}

TEST(RecordLayout, algSinglePat)
{
    EXPECT_RECORD(AlgSinglePat, 16);
    EXPECT_FIELD(AlgSinglePat, bandOrder, 0, 1);
    EXPECT_FIELD(AlgSinglePat, channelWidthOrder, 1, 1);
    EXPECT_FIELD(AlgSinglePat, mcsOrder, 2, 1);
    EXPECT_FIELD(AlgSinglePat, paraA, 4, 4);
    EXPECT_FIELD(AlgSinglePat, paraB, 8, 4);
    EXPECT_FIELD(AlgSinglePat, paraC, 12, 4);
}

TEST(RecordLayout, algPatParameterV2)
{
    EXPECT_RECORD(AlgPatParameterV2, 1620);
    EXPECT_FIELD(AlgPatParameterV2, deviceMac, 0, 16);
    EXPECT_FIELD(AlgPatParameterV2, commonPatNum, 16, 1);
    EXPECT_FIELD(AlgPatParameterV2, algSinglePat, 20, 1600);
}

TEST(RecordLayout, peekThrStructure)
{
    EXPECT_RECORD(PeekThrStructure, 6);
    EXPECT_FIELD(PeekThrStructure, bandOrder, 0, 1);
    EXPECT_FIELD(PeekThrStructure, channelWidthOrder, 1, 1);
    EXPECT_FIELD(PeekThrStructure, mcsOrder, 2, 1);
    EXPECT_FIELD(PeekThrStructure, peekThr, 4, 2);
}

TEST(RecordLayout, scanningInfo)
{
    EXPECT_RECORD(ScanningInfo, 35);
    EXPECT_FIELD(ScanningInfo, deviceMAC, 0, 16);
    EXPECT_FIELD(ScanningInfo, neighbourMAC, 16, 16);
    EXPECT_FIELD(ScanningInfo, band, 32, 1);
    EXPECT_FIELD(ScanningInfo, channel, 33, 1);
    EXPECT_FIELD(ScanningInfo, rssi, 34, 1);
}

TEST(RecordLayout, timeDelayInfo)
{
    EXPECT_RECORD(TimeDelayInfo, 46);
    EXPECT_FIELD(TimeDelayInfo, fatherMAC, 0, 16);
    EXPECT_FIELD(TimeDelayInfo, delayTime, 16, 30);
}

TEST(RecordLayout, scoreInfo)
{
    EXPECT_RECORD(ScoreInfo, 60);
    EXPECT_FIELD(ScoreInfo, fatherMAC, 0, 16);
    EXPECT_FIELD(ScoreInfo, apRank, 16, 1);
    EXPECT_FIELD(ScoreInfo, hopsFactor, 20, 4);
    EXPECT_FIELD(ScoreInfo, timeDelayTestCnt, 24, 1);
    EXPECT_FIELD(ScoreInfo, timeDelayAverage, 26, 2);
    EXPECT_FIELD(ScoreInfo, timeNormalization, 28, 4);
    EXPECT_FIELD(ScoreInfo, thrputPredict, 32, 2);
    EXPECT_FIELD(ScoreInfo, rssi, 34, 5);
    EXPECT_FIELD(ScoreInfo, negoRate, 40, 10);
    EXPECT_FIELD(ScoreInfo, patRate, 50, 10);
}

TEST(RecordLayout, apRank)
{
    EXPECT_RECORD(ApRank, 33);
    EXPECT_FIELD(ApRank, deviceMAC, 0, 16);
    EXPECT_FIELD(ApRank, ethFatherMAC, 16, 16);
    EXPECT_FIELD(ApRank, apRank, 32, 1);
}

TEST(RecordLayout, apThrRank)
{
    EXPECT_RECORD(ApThrRank, 36);
    EXPECT_FIELD(ApThrRank, deviceMAC, 0, 16);
    EXPECT_FIELD(ApThrRank, fatherMAC, 16, 16);
    EXPECT_FIELD(ApThrRank, apRank, 32, 1);
    EXPECT_FIELD(ApThrRank, throughput, 34, 2);
}

TEST(RecordLayout, apRankIndex)
{
    EXPECT_RECORD(ApRankIndex, 1092);
    EXPECT_FIELD(ApRankIndex, apRank, 0, 1080);
    EXPECT_FIELD(ApRankIndex, cnt, 1080, 1);
    EXPECT_FIELD(ApRankIndex, process_re, 1081, 1);
    EXPECT_FIELD(ApRankIndex, alg_strategy, 1084, 4);
    EXPECT_FIELD(ApRankIndex, starttime, 1088, 4);
}

TEST(RecordLayout, apAlgInterfaceOutput)
{
    EXPECT_RECORD(ApAlgInterfaceOutput, 40);
    EXPECT_FIELD(ApAlgInterfaceOutput, srcMAC, 0, 16);
    EXPECT_FIELD(ApAlgInterfaceOutput, dstMAC, 16, 16);
    EXPECT_FIELD(ApAlgInterfaceOutput, algStrategy, 32, 4);
    EXPECT_FIELD(ApAlgInterfaceOutput, timeout, 36, 1);
}

TEST(RecordLayout, algStrategy)
{
    EXPECT_RECORD(ALG_STRATEGY, 4);
}
