/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Size of every record, and place and size of its members: what a host that was
 * compiled before relies on. They are the same on 64-bit and on 32-bit machines.
 */
#include "testing.h"

#define EXPECT_RECORD(record, bytes) EXPECT_EQ(size_t(bytes), sizeof(record))
#define EXPECT_MEMBER(record, member, place, bytes)         \
    do {                                                    \
        EXPECT_EQ(size_t(place), offsetof(record, member)); \
        EXPECT_EQ(size_t(bytes), sizeof(record::member));   \
    } while (0)

/* ---- Mesh topology ------------------------------------------------------ */

TEST(RecordLayout, apNodeV2)
{
    EXPECT_RECORD(ApNodeV2, 76);
    EXPECT_MEMBER(ApNodeV2, deviceMAC, 0, 16);
    EXPECT_MEMBER(ApNodeV2, fatherDeviceMAC, 16, 16);
    EXPECT_MEMBER(ApNodeV2, wirelessChannelUtilization, 32, 5);
    EXPECT_MEMBER(ApNodeV2, plcUtilization, 37, 1);
    EXPECT_MEMBER(ApNodeV2, ethernetUtilization, 38, 1);
    EXPECT_MEMBER(ApNodeV2, wirelessRxRate, 40, 10);
    EXPECT_MEMBER(ApNodeV2, wirelessTxRate, 50, 10);
    EXPECT_MEMBER(ApNodeV2, plcRate, 60, 2);
    EXPECT_MEMBER(ApNodeV2, ethernetRate, 62, 2);
    EXPECT_MEMBER(ApNodeV2, offset, 64, 10);
    EXPECT_MEMBER(ApNodeV2, tipc_node, 74, 1);
}

TEST(RecordLayout, controlVersion)
{
    EXPECT_RECORD(ALG_CTRL_VERSION, 2);
    EXPECT_MEMBER(ALG_CTRL_VERSION, major_ver, 0, 1);
    EXPECT_MEMBER(ALG_CTRL_VERSION, minor_ver, 1, 1);
}

TEST(RecordLayout, algWifiMode)
{
    EXPECT_RECORD(AlgWifiMode, 7);
    EXPECT_MEMBER(AlgWifiMode, available, 0, 1);
    EXPECT_MEMBER(AlgWifiMode, NSS, 1, 1);
    EXPECT_MEMBER(AlgWifiMode, wifiMode, 2, 1);
    EXPECT_MEMBER(AlgWifiMode, bandWidth, 3, 1);
    EXPECT_MEMBER(AlgWifiMode, mcsLevel, 4, 1);
    EXPECT_MEMBER(AlgWifiMode, channel, 5, 1);
    EXPECT_MEMBER(AlgWifiMode, reserved, 6, 1);
}

TEST(RecordLayout, apInfoAllV2)
{
    EXPECT_RECORD(ApInfoAllV2, 114);
    EXPECT_MEMBER(ApInfoAllV2, alg_version, 0, 2);
    EXPECT_MEMBER(ApInfoAllV2, apNodeV2, 2, 76);
    EXPECT_MEMBER(ApInfoAllV2, algWifiMode, 78, 35);
}

TEST(RecordLayout, bridgingNodeV2)
{
    EXPECT_RECORD(BridgingNodeV2, 68);
    EXPECT_MEMBER(BridgingNodeV2, deviceMAC, 0, 16);
    EXPECT_MEMBER(BridgingNodeV2, fatherDeviceMAC, 16, 16);
    EXPECT_MEMBER(BridgingNodeV2, bridgingRssi, 32, 5);
    EXPECT_MEMBER(BridgingNodeV2, bridgingRxRate, 38, 10);
    EXPECT_MEMBER(BridgingNodeV2, bridgingTxRate, 48, 10);
    EXPECT_MEMBER(BridgingNodeV2, bridgingRxMcs, 58, 5);
    EXPECT_MEMBER(BridgingNodeV2, bridgingTxMcs, 63, 5);
}

/* ---- Stations ----------------------------------------------------------- */

TEST(RecordLayout, staConnection)
{
    EXPECT_RECORD(StaConnection, 58);
    EXPECT_MEMBER(StaConnection, id, 0, 2);
    EXPECT_MEMBER(StaConnection, deviceMac, 2, 16);
    EXPECT_MEMBER(StaConnection, apMac, 18, 16);
    EXPECT_MEMBER(StaConnection, connectBand, 34, 2);
    EXPECT_MEMBER(StaConnection, rssi, 36, 2);
    EXPECT_MEMBER(StaConnection, rxRate, 38, 2);
    EXPECT_MEMBER(StaConnection, txRate, 40, 2);
    EXPECT_MEMBER(StaConnection, rxPackageCount, 42, 2);
    EXPECT_MEMBER(StaConnection, txPackageCount, 44, 2);
    EXPECT_MEMBER(StaConnection, wifimode, 46, 2);
    EXPECT_MEMBER(StaConnection, bandwidth, 48, 2);
    EXPECT_MEMBER(StaConnection, mcslevel, 50, 2);
    EXPECT_MEMBER(StaConnection, mimo, 52, 2);
    EXPECT_MEMBER(StaConnection, kvrCapacity, 54, 2);
    EXPECT_MEMBER(StaConnection, noiselevel, 56, 2);
}

TEST(RecordLayout, candidateAp)
{
    EXPECT_RECORD(CandidateAp, 26);
    EXPECT_MEMBER(CandidateAp, apMac, 0, 16);
    EXPECT_MEMBER(CandidateAp, connectBand, 16, 1);
    EXPECT_MEMBER(CandidateAp, roamingAvailable, 17, 1);
    EXPECT_MEMBER(CandidateAp, rssi, 18, 1);
    EXPECT_MEMBER(CandidateAp, throughput, 20, 2);
    EXPECT_MEMBER(CandidateAp, wifimode, 22, 1);
    EXPECT_MEMBER(CandidateAp, bandwidth, 23, 1);
    EXPECT_MEMBER(CandidateAp, mcslevel, 24, 1);
    EXPECT_MEMBER(CandidateAp, mimo, 25, 1);
}

/* ---- PAT parameters of the throughput model ----------------------------- */

TEST(RecordLayout, patParameter)
{
    EXPECT_RECORD(PatParameter, 416);
    EXPECT_MEMBER(PatParameter, deviceMac, 0, 16);
    EXPECT_MEMBER(PatParameter, bParameter, 16, 200);
    EXPECT_MEMBER(PatParameter, cParameter, 216, 200);
}

TEST(RecordLayout, singlePat)
{
    EXPECT_RECORD(SinglePat, 8);
    EXPECT_MEMBER(SinglePat, isChanged, 0, 1);
    EXPECT_MEMBER(SinglePat, bandOrder, 1, 1);
    EXPECT_MEMBER(SinglePat, channelWidthOrder, 2, 1);
    EXPECT_MEMBER(SinglePat, mcsOrder, 3, 1);
    EXPECT_MEMBER(SinglePat, paraB, 4, 1);
    EXPECT_MEMBER(SinglePat, paraC, 6, 2);
}

TEST(RecordLayout, patParameterV2)
{
    EXPECT_RECORD(PatParameterV2, 818);
    EXPECT_MEMBER(PatParameterV2, deviceMac, 0, 16);
    EXPECT_MEMBER(PatParameterV2, commonPatNum, 16, 1);
    EXPECT_MEMBER(PatParameterV2, singlePat, 18, 800);
}

TEST(RecordLayout, algPatParameter)
{
    EXPECT_RECORD(AlgPatParameter, 1216);
    EXPECT_MEMBER(AlgPatParameter, deviceMac, 0, 16);
    EXPECT_MEMBER(AlgPatParameter, allParameter, 16, 1200);
}

TEST(RecordLayout, algSinglePat)
{
    EXPECT_RECORD(AlgSinglePat, 16);
    EXPECT_MEMBER(AlgSinglePat, bandOrder, 0, 1);
    EXPECT_MEMBER(AlgSinglePat, channelWidthOrder, 1, 1);
    EXPECT_MEMBER(AlgSinglePat, mcsOrder, 2, 1);
    EXPECT_MEMBER(AlgSinglePat, paraA, 4, 4);
    EXPECT_MEMBER(AlgSinglePat, paraB, 8, 4);
    EXPECT_MEMBER(AlgSinglePat, paraC, 12, 4);
}

TEST(RecordLayout, algPatParameterV2)
{
    EXPECT_RECORD(AlgPatParameterV2, 1620);
    EXPECT_MEMBER(AlgPatParameterV2, deviceMac, 0, 16);
    EXPECT_MEMBER(AlgPatParameterV2, commonPatNum, 16, 1);
    EXPECT_MEMBER(AlgPatParameterV2, algSinglePat, 20, 1600);
}

/* ---- Measurement history ------------------------------------------------ */

TEST(RecordLayout, scanningInfo)
{
    EXPECT_RECORD(ScanningInfo, 35);
    EXPECT_MEMBER(ScanningInfo, deviceMAC, 0, 16);
    EXPECT_MEMBER(ScanningInfo, neighbourMAC, 16, 16);
    EXPECT_MEMBER(ScanningInfo, band, 32, 1);
    EXPECT_MEMBER(ScanningInfo, channel, 33, 1);
    EXPECT_MEMBER(ScanningInfo, rssi, 34, 1);
}

TEST(RecordLayout, timeDelayInfo)
{
    EXPECT_RECORD(TimeDelayInfo, 46);
    EXPECT_MEMBER(TimeDelayInfo, fatherMAC, 0, 16);
    EXPECT_MEMBER(TimeDelayInfo, delayTime, 16, 30);
}

TEST(RecordLayout, scoreInfo)
{
    EXPECT_RECORD(ScoreInfo, 60);
    EXPECT_MEMBER(ScoreInfo, fatherMAC, 0, 16);
    EXPECT_MEMBER(ScoreInfo, apRank, 16, 1);
    EXPECT_MEMBER(ScoreInfo, hopsFactor, 20, 4);
    EXPECT_MEMBER(ScoreInfo, timeDelayTestCnt, 24, 1);
    EXPECT_MEMBER(ScoreInfo, timeDelayAverage, 26, 2);
    EXPECT_MEMBER(ScoreInfo, timeNormalization, 28, 4);
    EXPECT_MEMBER(ScoreInfo, thrputPredict, 32, 2);
    EXPECT_MEMBER(ScoreInfo, rssi, 34, 5);
    EXPECT_MEMBER(ScoreInfo, negoRate, 40, 10);
    EXPECT_MEMBER(ScoreInfo, patRate, 50, 10);
}

/* ---- Ranking and decisions ---------------------------------------------- */

TEST(RecordLayout, apRank)
{
    EXPECT_RECORD(ApRank, 33);
    EXPECT_MEMBER(ApRank, deviceMAC, 0, 16);
    EXPECT_MEMBER(ApRank, ethFatherMAC, 16, 16);
    EXPECT_MEMBER(ApRank, apRank, 32, 1);
}

TEST(RecordLayout, apThrRank)
{
    EXPECT_RECORD(ApThrRank, 36);
    EXPECT_MEMBER(ApThrRank, deviceMAC, 0, 16);
    EXPECT_MEMBER(ApThrRank, fatherMAC, 16, 16);
    EXPECT_MEMBER(ApThrRank, apRank, 32, 1);
    EXPECT_MEMBER(ApThrRank, throughput, 34, 2);
}

TEST(RecordLayout, apRankIndex)
{
    EXPECT_RECORD(ApRankIndex, 1092);
    EXPECT_MEMBER(ApRankIndex, apRank, 0, 1080);
    EXPECT_MEMBER(ApRankIndex, cnt, 1080, 1);
    EXPECT_MEMBER(ApRankIndex, process_re, 1081, 1);
    EXPECT_MEMBER(ApRankIndex, alg_strategy, 1084, 4);
    EXPECT_MEMBER(ApRankIndex, starttime, 1088, 4);
}

TEST(RecordLayout, apAlgInterfaceOutput)
{
    EXPECT_RECORD(ApAlgInterfaceOutput, 40);
    EXPECT_MEMBER(ApAlgInterfaceOutput, srcMAC, 0, 16);
    EXPECT_MEMBER(ApAlgInterfaceOutput, dstMAC, 16, 16);
    EXPECT_MEMBER(ApAlgInterfaceOutput, algStrategy, 32, 4);
    EXPECT_MEMBER(ApAlgInterfaceOutput, timeout, 36, 1);
}

TEST(RecordLayout, peekThrStructure)
{
    EXPECT_RECORD(PeekThrStructure, 6);
    EXPECT_MEMBER(PeekThrStructure, bandOrder, 0, 1);
    EXPECT_MEMBER(PeekThrStructure, channelWidthOrder, 1, 1);
    EXPECT_MEMBER(PeekThrStructure, mcsOrder, 2, 1);
    EXPECT_MEMBER(PeekThrStructure, peekThr, 4, 2);
}

/* The strategy is 32 bits wide, so that any number of a file is a value of it. */
TEST(RecordLayout, strategy)
{
    EXPECT_EQ(size_t(4), sizeof(ALG_STRATEGY));
}
