/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALG_DATA_INTERFACE_H
#define ALG_DATA_INTERFACE_H

#include <stdbool.h>
#include <stdint.h>

#include "ai_macros.h"
#include "algDataInterfaceStruct.h"
#include "algDefines.h"

#ifdef __cplusplus
extern "C" {
#endif

extern float ai_yra_patc_compensation;
extern uint8_t ai_yra_rssi_compensation;

int dataLineCounter(const char* path);
bool touchFile(const char* path);
bool apNodeInfoWriterV2(const char* path, int cnt, ApNodeV2* pApNodeV2);
bool apNodeInfoReaderV2(const char* path, uint8_t apNum, ApNodeV2* pApNodeV2, char (*macPool)[16]);
bool apAllInfoWriter(const char* path, ApInfoAllV2* pApInfoAllV2, int cnt, bool replaceVersion);
bool apAllInfoOnlyReader(const char* path, ApInfoAllV2* pApInfoAllV2, int cnt, char (*macPool)[16]);
bool apAllInfoReader(const char* path, ApInfoAllV2* pApInfoAllV2, int cnt, char (*macPool)[16]);
bool apAllDetailInfoWriter(const char* path, ApInfoAllV2* pApInfoAllV2, int cnt, bool replaceVersion);
bool apAllDetailInfoReader(const char* path, ApInfoAllV2* pApInfoAllV2, uint8_t cnt, char (*macPool)[16]);
bool updataSingleApAllInfo(const char* path, ApInfoAllV2* pIncomeApInfoAll);
bool deleteSingleApAllInfo(const char* path, char* mac);
bool bridgingApNodeInfoReader(const char* path, BridgingNodeV2* pBridgingNodeV2);
bool bridgingApNodeInfoWriter(const char* path, BridgingNodeV2* pBridgingNodeV2, int cnt);
bool updateSingleBridgingInfo(const char* path, BridgingNodeV2* pIncomeBridgingInfo, bool isFap);
bool stationInfoOnlyReader(const char* path, StaConnection* pNodeSta);
bool stationNodeInfoReader(const char* path, const char* path2, StaConnection* pNodeSta);
bool stationNodeInfoWriter(const char* path, StaConnection* pNodeSta, int staNum);
bool stationInfoAppendWriter(const char* path, StaConnection* pIncomeStaInfo, int staNum);
void mimoSync(StaConnection* pNodeSta, int cnt);
bool candidateApNodeInfoReader(const char* path, CandidateAp* pCandidateAp);
bool candidateApNodeInfoWriter(const char* path, CandidateAp* pCandidateAp, int canApNum);
bool patParameterReader(const char* path, int cnt, PatParameter* pPatParameter);
bool patParameterReaderV2(const char* path, int cnt, PatParameterV2* pPatParameterV2);
bool patParameterWriterV2(const char* path, int apNum, PatParameterV2* pPatParameterV2, char (*macPool)[16]);
bool updateSinglePatV2(const char* path, PatParameterV2* pIncomeParameterV2);
void patInitV2(const char* path, char* mac);
bool patInt2Alg(int cnt, PatParameter* pPatParameter, AlgPatParameter* pAlgPatParameter);
void patInt2AlgV2(int cnt, PatParameterV2* pPatParameterV2, AlgPatParameterV2* pAlgPatParameterV2);
bool patAlg2IntV2(int cnt, PatParameterV2* pPatParameterV2, AlgPatParameterV2* pAlgPatParameterV2);
uint16_t getPeekThr(uint8_t bandOrder, uint8_t channelWidthOrder, uint8_t mcsOrder);
void ai_alg_set_patc_comp(int patc_comp);
bool scanningInfoReader(const char* path, ScanningInfo* pScanningInfo);
bool scanningInfoWriter(const char* path, ScanningInfo* pScanningInfo, int cnt);
bool scanningInfoDeleter(const char* path, const char* curApMac);
bool appendScanningInfo(const char* path, ScanningInfo* pIncomeScanningInfo, int cnt);
bool appendSingleScanningInfo(const char* path, ScanningInfo* pIncomeScanningInfo);
bool timeDelayInfoReader(const char* path, TimeDelayInfo* pTimeDelayInfo, int cnt);
bool timeDelayInfoWriter(const char* path, TimeDelayInfo* pTimeDelayInfo, int cnt);
bool emptyTimeDelayFile(const char* path);
bool updateSingleTimeDelayInfo(const char* path, TimeDelayInfo* pIncomeTimeDelayInfo);
bool appendSingleTimeDelayInfo(const char* path, TimeDelayInfo* pIncomeTimeDelayInfo);
bool scoreInfoWriter(const char* path, ScoreInfo* pScoreInfo, int apNum);
bool scoreInfoReader(const char* path, ScoreInfo* pScoreInfo, int cnt);
int scoreInfoCntReader(const char* path);
bool apRankInfoReader(const char* path, ApRank* pApRank);
bool apRankInfoWriter(const char* path, ApRank* pApRank, int cnt);
bool updataSingleApRankInfo(const char* path, ApRank* pIncomeApRank);
bool apRankIndexInfoReader(const char* path, ApRankIndex* pApRankIndex);
bool apRankIndexInfoWriter(const char* path, ApRankIndex* pApRankIndex);
bool apAlgOutputInfoReader(const char* path, ApAlgInterfaceOutput* pApAlgOutput);
bool apAlgOutputInfoWriter(const char* path, ApAlgInterfaceOutput* pApAlgOutput);

#ifdef __cplusplus
}
#endif

#endif
