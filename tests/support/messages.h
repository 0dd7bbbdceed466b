/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Every message of the module, with the path "f". scenario.h defines the form;
 * '*' stands for any word. Each message has a name, which the family tests use.
 * Each function has a list of its messages, which the fault sweep uses; a null
 * pointer ends the list.
 */
#ifndef TESTS_SUPPORT_MESSAGES_H
#define TESTS_SUPPORT_MESSAGES_H

namespace messages
{

namespace fileHelpers
{

inline constexpr char counterCannotOpen[] = "E dataLineCounter: Failed to read file: f\n";
inline constexpr char counterCannotClose[] = "E dataLineCounter: fclose error, path:f.\n";
inline constexpr const char* counterMessages[] = {counterCannotOpen, counterCannotClose, nullptr};

inline constexpr char touchCannotOpen[] = "E touchFile: Failed to create file: f\n";
inline constexpr char touchCannotClose[] = "E touchFile: fclose error, path:f.\n";
inline constexpr const char* touchMessages[] = {touchCannotOpen, touchCannotClose, nullptr};

} // namespace fileHelpers

namespace apNode
{

inline constexpr char writerCannotOpen[] = "E apNodeInfoWriterV2: fopen error, path: f.";
inline constexpr char writerCannotPrint[] = "E apNodeInfoWriterV2: fprintf error, path: f";
inline constexpr const char* writerMessages[] = {writerCannotOpen, writerCannotPrint, nullptr};

inline constexpr char readerCannotOpen[] = "E apNodeInfoReaderV2: Failed to read file: f.\n";
inline constexpr char readerPart1[] = "E apNodeInfoReaderV2: sscanf error part 1, path: f\n";
inline constexpr char readerPart2_2[] = "E apNodeInfoReaderV2: sscanf error part 2_2, path: f\n";
inline constexpr char readerPart2_3[] = "E apNodeInfoReaderV2: sscanf error part 2_3, path: f\n";
inline constexpr char readerPart2_4[] = "E apNodeInfoReaderV2: sscanf error part 2_4, path: f\n";
inline constexpr char readerPart2_5[] = "E apNodeInfoReaderV2: sscanf error part 2_5, path: f\n";
inline constexpr char readerPart2_6[] = "E apNodeInfoReaderV2: sscanf error part 2_6, path: f\n";
inline constexpr char readerPart2_7[] = "E apNodeInfoReaderV2: sscanf error part 2_7, path: f\n";
inline constexpr const char* readerMessages[] = {readerCannotOpen, readerPart1,   readerPart2_2,
                                                 readerPart2_3,    readerPart2_4, readerPart2_5,
                                                 readerPart2_6,    readerPart2_7, nullptr};

} // namespace apNode

namespace apAll
{

inline constexpr char writerCannotOpen[] = "E apAllInfoWriter: fopen error, path: f.";
inline constexpr char writerCannotPrint[] = "E apAllInfoWriter: fprintf error, path:f.\n";
inline constexpr char writerCannotClose[] = "E apAllInfoWriter: fclose error, path:f.\n";
inline constexpr const char* writerMessages[] = {writerCannotOpen, writerCannotPrint, writerCannotClose,
                                                 nullptr};

inline constexpr char readerCannotOpen[] = "I apAllInfoOnlyReader: pat file does not exit.\n";
inline constexpr char readerCannotRead[] = "E apAllInfoOnlyReader: fscanf error, path:f.\n";
inline constexpr char readerCannotClose[] = "E apAllInfoOnlyReader: fclose error, path:f.\n";
inline constexpr const char* readerMessages[] = {readerCannotOpen, readerCannotRead, readerCannotClose,
                                                 nullptr};

inline constexpr char detailWriterCannotOpen[] = "E apAllDetailInfoWriter: fopen error, path: f.";
inline constexpr char detailWriterCannotPrint[] = "E apAllDetailInfoWriter: fprintf error, path:f.\n";
inline constexpr const char* detailWriterMessages[] = {detailWriterCannotOpen, detailWriterCannotPrint,
                                                       nullptr};

inline constexpr char detailReaderCannotOpen[] = "I apAllDetailInfoReader: pat file does not exit.\n";
inline constexpr char detailReaderCannotRead[] = "E apAllDetailInfoReader: fscanf error, path:f.\n";
inline constexpr char detailReaderCannotClose[] = "E apAllDetailInfoReader: fclose error, path:f.\n";
inline constexpr const char* detailReaderMessages[] = {detailReaderCannotOpen, detailReaderCannotRead,
                                                       detailReaderCannotClose, nullptr};

inline constexpr char updateRefusesNull[] = "E updataSingleApAllInfo: null pIncomeApInfoAll";
inline constexpr char updateCounts[] =
    "I updataSingleApAllInfo: Income AP InfoAll from *, * items of old ApInfo";
inline constexpr char updateSavesAlone[] = "I updataSingleApAllInfo: Just save apAllInfo";
inline constexpr char updateSaved[] = "I updataSingleApAllInfo: AP InfoALl has been written to file: f";
inline constexpr char updateCannotSave[] = "E updataSingleApAllInfo: Failed to write to file: f";
inline constexpr char updateCannotAllocate[] =
    "E updataSingleApAllInfo: Failed to allocate memory for ApInfoAll";
inline constexpr char updateCannotRead[] = "E updataSingleApAllInfo: Failed to read file: f";
inline constexpr char updateFinds[] = "I updataSingleApAllInfo: income ap info found @index *";
inline constexpr char updateCannotReplace[] =
    "E updataSingleApAllInfo: Failed to save new ap info to file: f";
inline constexpr char updateInserts[] = "I updataSingleApAllInfo: income ap info not found, inserting...";
inline constexpr char updateCannotGrow[] = "E updataSingleApAllInfo: failed to reallocte memory.";
inline constexpr char updateCannotAdd[] = "E updataSingleApAllInfo: Failed to add ap info data to file: f";
inline constexpr const char* updateMessages[] = {
    updateRefusesNull,    updateCounts,     updateSavesAlone, updateSaved,         updateCannotSave,
    updateCannotAllocate, updateCannotRead, updateFinds,      updateCannotReplace, updateInserts,
    updateCannotGrow,     updateCannotAdd,  nullptr};

inline constexpr char deleterCannotAllocate[] =
    "E deleteSingleApAllInfo: Failed to allocate memory for ApInfoAll";
inline constexpr char deleterCannotRead[] = "E deleteSingleApAllInfo: Failed to read file: f";
inline constexpr char deleterCannotRewrite[] =
    "E deleteSingleApAllInfo: Failed to add ap info data to file: f";
inline constexpr char deleterFindsNothing[] = "E deleteSingleApAllInfo: Cannot find the mac in the ap info.";
inline constexpr const char* deleterMessages[] = {deleterCannotAllocate, deleterCannotRead,
                                                  deleterCannotRewrite, deleterFindsNothing, nullptr};

} // namespace apAll

namespace bridging
{

inline constexpr char readerCannotOpen[] = "I bridgingApNodeInfoReader: pat file does not exit.\n";
inline constexpr char readerCannotRead[] = "E bridgingApNodeInfoReader: fscanf error, path:f.\n";
inline constexpr char readerCannotClose[] = "E bridgingApNodeInfoReader: fclose error, path:f.\n";
inline constexpr const char* readerMessages[] = {readerCannotOpen, readerCannotRead, readerCannotClose,
                                                 nullptr};

inline constexpr char writerCannotOpen[] = "E bridgingApNodeInfoWriter: fopen error, path: f.";
inline constexpr char writerCannotPrint[] = "E bridgingApNodeInfoWriter: fprintf error, path:f.\n";
inline constexpr const char* writerMessages[] = {writerCannotOpen, writerCannotPrint, nullptr};

inline constexpr char fapRefusesNull[] = "E updateFapSingleBridgingInfo: null pIncomeBridgingInfo";
inline constexpr char fapIgnoresItself[] =
    "I updateFapSingleBridgingInfo: It's FAP itself bridging info, ignore it.";
inline constexpr char fapSavesAlone[] = "I updateFapSingleBridgingInfo: Just save income bridging data";
inline constexpr char fapSaved[] = "I updateFapSingleBridgingInfo: Bridging Info has been written to file: f";
inline constexpr char fapCannotSave[] = "E updateFapSingleBridgingInfo: Failed to write to file: f";
inline constexpr char fapCannotAllocate[] =
    "E updateFapSingleBridgingInfo: Failed to allocate memory for BridgingNode";
inline constexpr char fapCannotRead[] = "E updateFapSingleBridgingInfo: Failed to read file: f";
inline constexpr char fapCannotRewrite[] =
    "E updateFapSingleBridgingInfo: Failed to add new bridging info data to file: f";
inline constexpr const char* fapMessages[] = {fapRefusesNull, fapIgnoresItself, fapSavesAlone,
                                              fapSaved,       fapCannotSave,    fapCannotAllocate,
                                              fapCannotRead,  fapCannotRewrite, nullptr};

inline constexpr char reRefusesNull[] = "E updateReSingleBridgingInfo: null pIncomeBridgingInfo";
inline constexpr char reSavesAlone[] = "I updateReSingleBridgingInfo: Just save income bridging data";
inline constexpr char reSaved[] = "I updateReSingleBridgingInfo: Bridging Info has been written to file: f";
inline constexpr char reCannotSave[] = "E updateReSingleBridgingInfo: Failed to write to file: f";
inline constexpr char reCannotAllocate[] =
    "E updateReSingleBridgingInfo: Failed to allocate memory for BridgingNode";
inline constexpr char reCannotRead[] = "E updateReSingleBridgingInfo: Failed to read file: f";
inline constexpr char reCannotRewrite[] =
    "E updateReSingleBridgingInfo: Failed to add new bridging info data to file: f";
inline constexpr const char* reMessages[] = {reRefusesNull,    reSavesAlone, reSaved,         reCannotSave,
                                             reCannotAllocate, reCannotRead, reCannotRewrite, nullptr};

} // namespace bridging

namespace station
{

inline constexpr char readerCannotOpen[] = "E stationInfoOnlyReader: Failed to read file: f.\n";
inline constexpr char readerCannotRead[] = "E stationInfoOnlyReader: sscanf error, path: f";
inline constexpr const char* readerMessages[] = {readerCannotOpen, readerCannotRead, nullptr};

inline constexpr char bothReaderCannotOpen[] = "E stationNodeInfoReader: Failed to read file: f.\n";
inline constexpr char bothReaderCannotRead[] = "E stationNodeInfoReader: sscanf error, path: f";
inline constexpr const char* bothReaderMessages[] = {bothReaderCannotOpen, bothReaderCannotRead, nullptr};

inline constexpr char writerCannotOpen[] = "E stationNodeInfoWriter: fopen error, path: f.";
inline constexpr char writerCannotPrint[] = "E stationNodeInfoWriter: fprintf error, path: f";
inline constexpr const char* writerMessages[] = {writerCannotOpen, writerCannotPrint, nullptr};

inline constexpr char appendRefusesNull[] = "E stationInfoAppendWriter: null pIncomeStaInfo";
inline constexpr char appendSavesAlone[] = "I stationInfoAppendWriter: Just save income sta info data";
inline constexpr char appendSaved[] = "I stationInfoAppendWriter: Sta Info has been written to file: f";
inline constexpr char appendCannotSave[] = "E stationInfoAppendWriter: Failed to write to file: f";
inline constexpr char appendCannotAllocate[] =
    "E stationInfoAppendWriter: Failed to allocate memory for StaConnection";
inline constexpr char appendCannotRead[] = "E stationInfoAppendWriter: Failed to read file: f";
inline constexpr char appendCannotRewrite[] =
    "E stationInfoAppendWriter: Failed to add new sta info data to file: f";
inline constexpr const char* appendMessages[] = {
    appendRefusesNull,    appendSavesAlone, appendSaved,         appendCannotSave,
    appendCannotAllocate, appendCannotRead, appendCannotRewrite, nullptr};

} // namespace station

namespace candidate
{

inline constexpr char readerCannotOpen[] = "E candidateApNodeInfoReader: Failed to read file: f.\n";
inline constexpr char readerCannotRead[] = "E candidateApNodeInfoReader: sscanf error, path: f";
inline constexpr char readerCannotClose[] = "E candidateApNodeInfoReader: fclose error, path:f.\n";
inline constexpr const char* readerMessages[] = {readerCannotOpen, readerCannotRead, readerCannotClose,
                                                 nullptr};

inline constexpr char writerCannotOpen[] = "E candidateApNodeInfoWriter: Failed to write file: f.\n";
inline constexpr char writerCannotClose[] = "E candidateApNodeInfoWriter: fclose error, path:f.\n";
inline constexpr const char* writerMessages[] = {writerCannotOpen, writerCannotClose, nullptr};

} // namespace candidate

namespace pat
{

inline constexpr char oldReaderCannotOpen[] = "E patParameterReader: pat file f does not exit.";
inline constexpr char oldReaderCannotRead[] = "E patParameterReader: sscanf error, path: f.\n";
inline constexpr char oldReaderCannotClose[] = "E patParameterReader: fclose error, path:f.\n";
inline constexpr const char* oldReaderMessages[] = {oldReaderCannotOpen, oldReaderCannotRead,
                                                    oldReaderCannotClose, nullptr};

inline constexpr char readerMakesDefault[] = "I patParameterReaderV2: pat file does not exit, init it.";
inline constexpr char readerCannotRead[] = "E patParameterReaderV2: fscanf error, path: f.\n";
inline constexpr char readerCannotClose[] = "E patParameterReaderV2: fclose error, path:f.\n";
inline constexpr const char* readerMessages[] = {readerMakesDefault, readerCannotRead, readerCannotClose,
                                                 nullptr};

inline constexpr char writerCannotOpen[] = "E patParameterWriterV2: Failed to write file: f.\n";
inline constexpr char writerCannotPrint[] = "E patParameterWriterV2: fprintf error, path:f.\n";
inline constexpr const char* writerMessages[] = {writerCannotOpen, writerCannotPrint, nullptr};

inline constexpr char updateRefusesNull[] = "E updateSinglePatV2: null pIncomeParameterV2";
inline constexpr const char* updateMessages[] = {updateRefusesNull, nullptr};

} // namespace pat

namespace scanning
{

inline constexpr char readerCannotOpen[] = "E scanningInfoReader: Failed to read file : f.\n";
inline constexpr char readerCannotRead[] = "E scanningInfoReader: sscanf error, path: f.\n";
inline constexpr char readerCannotClose[] = "E scanningInfoReader: fclose error, path: f.\n";
inline constexpr const char* readerMessages[] = {readerCannotOpen, readerCannotRead, readerCannotClose,
                                                 nullptr};

inline constexpr char writerCannotOpen[] = "E scanningInfoWriter: Failed to write file: f.\n";
inline constexpr char writerCannotClose[] = "E scanningInfoWriter: fclose error, path:f.\n";
inline constexpr const char* writerMessages[] = {writerCannotOpen, writerCannotClose, nullptr};

inline constexpr char deleterFindsNoHistory[] =
    "I scanningInfoDeleter: There is no history data, just return.";
inline constexpr char deleterCannotAllocate[] =
    "E scanningInfoDeleter: Failed to allocate memory for ScanningInfo";
inline constexpr char deleterCannotRead[] = "E scanningInfoDeleter: Failed to read file: f";
inline constexpr char deleterCannotRewrite[] =
    "E scanningInfoDeleter: Failed to add new scanning info data to file: f";
inline constexpr const char* deleterMessages[] = {deleterFindsNoHistory, deleterCannotAllocate,
                                                  deleterCannotRead, deleterCannotRewrite, nullptr};

inline constexpr char appendRefusesNull[] = "E appendScanningInfo: null pIncomeScanningInfo";
inline constexpr char appendSavesAlone[] = "I appendScanningInfo: Just save income scanning data";
inline constexpr char appendSaved[] = "I appendScanningInfo: Scanning Info has been written to file: f";
inline constexpr char appendCannotSave[] = "E appendScanningInfo: Failed to write to file: f";
inline constexpr char appendCannotAllocate[] =
    "E appendScanningInfo: Failed to allocate memory for ScanningInfo";
inline constexpr char appendCannotRead[] = "E appendScanningInfo: Failed to read file: f";
inline constexpr char appendCannotRewrite[] =
    "E appendScanningInfo: Failed to add new scanning info data to file: f";
inline constexpr const char* appendMessages[] = {
    appendRefusesNull,    appendSavesAlone, appendSaved,         appendCannotSave,
    appendCannotAllocate, appendCannotRead, appendCannotRewrite, nullptr};

inline constexpr char appendSingleRefusesNull[] = "E appendSingleScanningInfo: null pIncomeScanningInfo";
inline constexpr char appendSingleSavesAlone[] = "I appendSingleScanningInfo: Just save income scanning data";
inline constexpr char appendSingleSaved[] =
    "I appendSingleScanningInfo: Scanning Info has been written to file: f";
inline constexpr char appendSingleCannotSave[] = "E appendSingleScanningInfo: Failed to write to file: f";
inline constexpr char appendSingleCannotAllocate[] =
    "E appendSingleScanningInfo: Failed to allocate memory for ScanningInfo";
inline constexpr char appendSingleCannotRead[] = "E appendSingleScanningInfo: Failed to read file: f";
inline constexpr char appendSingleCannotRewrite[] =
    "E appendSingleScanningInfo: Failed to add new scanning info data to file: f";
inline constexpr const char* appendSingleMessages[] = {
    appendSingleRefusesNull,    appendSingleSavesAlone, appendSingleSaved,         appendSingleCannotSave,
    appendSingleCannotAllocate, appendSingleCannotRead, appendSingleCannotRewrite, nullptr};

} // namespace scanning

namespace timeDelay
{

inline constexpr char readerCannotOpen[] = "E timeDelayInfoReader: Failed to read file : f.\n";
inline constexpr char readerCannotRead[] = "E timeDelayInfoReader: sscanf error, path: f.\n";
inline constexpr char readerCannotClose[] = "E timeDelayInfoReader: fclose error, path: f.\n";
inline constexpr const char* readerMessages[] = {readerCannotOpen, readerCannotRead, readerCannotClose,
                                                 nullptr};

inline constexpr char writerCannotOpen[] = "E timeDelayInfoWriter: Failed to write file: f.\n";
inline constexpr char writerCannotPrint[] = "E timeDelayInfoWriter: fprintf error, path:f.\n";
inline constexpr char writerCannotPrintValue[] = "E timeDelayInfoWriter: sscanf error, path: f.";
inline constexpr char writerCannotClose[] = "E timeDelayInfoWriter: fclose error, path:f.\n";
inline constexpr const char* writerMessages[] = {writerCannotOpen, writerCannotPrint, writerCannotPrintValue,
                                                 writerCannotClose, nullptr};

inline constexpr char emptierCannotOpen[] = "E emptyTimeDelayFile: Failed to write file: f.\n";
inline constexpr char emptierCannotClose[] = "E emptyTimeDelayFile: fclose error, path:f.\n";
inline constexpr const char* emptierMessages[] = {emptierCannotOpen, emptierCannotClose, nullptr};

inline constexpr char updateRefusesNull[] = "E updateSingleTimeDelayInfo: null pIncomeTimeDelayInfo";
inline constexpr char updateSavesAlone[] = "I updateSingleTimeDelayInfo: Just save income time dalay data";
inline constexpr char updateSaved[] =
    "I updateSingleTimeDelayInfo: time delay Info has been written to file: f";
inline constexpr char updateCannotSave[] = "E updateSingleTimeDelayInfo: Failed to write to file: f";
inline constexpr char updateCannotAllocate[] =
    "E updateSingleTimeDelayInfo: Failed to allocate memory for ScanningInfo";
inline constexpr char updateCannotRead[] = "E updateSingleTimeDelayInfo: Failed to read file: f";
inline constexpr char updateFinds[] = "I updateSingleTimeDelayInfo: income time delay info found @index *";
inline constexpr char updateCannotReplace[] =
    "E updateSingleTimeDelayInfo: Failed to save new time delay info to file: f";
inline constexpr char updateInserts[] =
    "I updateSingleTimeDelayInfo: income time delay info not found, inserting...";
inline constexpr char updateCannotAdd[] =
    "E updateSingleTimeDelayInfo: Failed to add time delay info data to file: f";
inline constexpr const char* updateMessages[] = {
    updateRefusesNull,    updateSavesAlone, updateSaved, updateCannotSave,
    updateCannotAllocate, updateCannotRead, updateFinds, updateCannotReplace,
    updateInserts,        updateCannotAdd,  nullptr};

inline constexpr char appendRefusesNull[] = "E appendSingleTimeDelayInfo: null pIncomeTimeDelayInfo";
inline constexpr char appendSavesAlone[] = "I appendSingleTimeDelayInfo: Just save income timeDelay data";
inline constexpr char appendSaved[] =
    "I appendSingleTimeDelayInfo: Time delay Info has been written to file: f";
inline constexpr char appendCannotSave[] = "E appendSingleTimeDelayInfo: Failed to write to file: f";
inline constexpr char appendCannotAllocate[] =
    "E appendSingleTimeDelayInfo: Failed to allocate memory for TimeDelayInfo";
inline constexpr char appendCannotRead[] = "E appendSingleTimeDelayInfo: Failed to read file: f";
inline constexpr char appendCannotRewrite[] =
    "E appendSingleTimeDelayInfo: Failed to add new timeDelay info data to file: f";
inline constexpr const char* appendMessages[] = {
    appendRefusesNull,    appendSavesAlone, appendSaved,         appendCannotSave,
    appendCannotAllocate, appendCannotRead, appendCannotRewrite, nullptr};

} // namespace timeDelay

namespace score
{

inline constexpr char writerCannotOpen[] = "E scoreInfoWriter: Failed to write file: f.\n";
inline constexpr char writerCannotPrint[] = "E scoreInfoWriter: fprintf error, path:f.\n";
inline constexpr char writerCannotPrintValue[] = "E scoreInfoWriter: sscanf error, path: f.";
inline constexpr char writerCannotClose[] = "E scoreInfoWriter: fclose error, path:f.\n";
inline constexpr const char* writerMessages[] = {writerCannotOpen, writerCannotPrint, writerCannotPrintValue,
                                                 writerCannotClose, nullptr};

inline constexpr char readerCannotOpen[] = "E scoreInfoReader: Failed to read file : f.\n";
inline constexpr char readerCannotRead[] = "E scoreInfoReader: sscanf error, path: f.\n";
inline constexpr char readerCannotClose[] = "E scoreInfoReader: fclose error, path: f.\n";
inline constexpr const char* readerMessages[] = {readerCannotOpen, readerCannotRead, readerCannotClose,
                                                 nullptr};

inline constexpr char countReaderCannotOpen[] = "E scoreInfoCntReader: Failed to read file : f.\n";
inline constexpr const char* countReaderMessages[] = {countReaderCannotOpen, nullptr};

} // namespace score

namespace apRank
{

inline constexpr char readerCannotOpen[] = "E apRankInfoReader: Failed to read file : f.\n";
inline constexpr char readerCannotRead[] = "E apRankInfoReader: sscanf error, path: f.\n";
inline constexpr char readerCannotClose[] = "E apRankInfoReader: fclose error, path: f.\n";
inline constexpr const char* readerMessages[] = {readerCannotOpen, readerCannotRead, readerCannotClose,
                                                 nullptr};

inline constexpr char writerCannotOpen[] = "E apRankInfoWriter: fopen error, path: f.";
inline constexpr char writerCannotPrint[] = "E apRankInfoWriter: fprintf error, path: f";
inline constexpr char writerCannotClose[] = "E apRankInfoWriter: fclose error, path:f.\n";
inline constexpr const char* writerMessages[] = {writerCannotOpen, writerCannotPrint, writerCannotClose,
                                                 nullptr};

inline constexpr char updateRefusesNull[] = "E updataSingleApRankInfo: null pIncomeApRank";
inline constexpr char updateCounts[] =
    "I updataSingleApRankInfo: Income AP Rank from *, * items of old ApRankInfo";
inline constexpr char updateSavesAlone[] = "I updataSingleApRankInfo: Just save apRankInfo";
inline constexpr char updateSaved[] = "I updataSingleApRankInfo: AP rank info has been written to file: f";
inline constexpr char updateCannotSave[] = "E updataSingleApRankInfo: Failed to write to file: f";
inline constexpr char updateCannotAllocate[] =
    "E updataSingleApRankInfo: Failed to allocate memory for pApRank";
inline constexpr char updateCannotRead[] = "E updataSingleApRankInfo: Failed to read file: f";
inline constexpr char updateFinds[] = "I updataSingleApRankInfo: income ap rank info found @index *";
inline constexpr char updateCannotReplace[] =
    "E updataSingleApRankInfo: Failed to save new ap info to file: f";
inline constexpr char updateInserts[] =
    "I updataSingleApRankInfo: income ap rank info not found, inserting...";
inline constexpr char updateCannotGrow[] = "E updataSingleApRankInfo: failed to reallocte memory.";
inline constexpr char updateCannotAdd[] =
    "E updataSingleApRankInfo: Failed to add ap rank info data to file: f";
inline constexpr const char* updateMessages[] = {
    updateRefusesNull,    updateCounts,     updateSavesAlone, updateSaved,         updateCannotSave,
    updateCannotAllocate, updateCannotRead, updateFinds,      updateCannotReplace, updateInserts,
    updateCannotGrow,     updateCannotAdd,  nullptr};

} // namespace apRank

namespace apRankIndex
{

inline constexpr char readerCannotOpen[] = "E apRankIndexInfoReader: Failed to read file : f.\n";
inline constexpr char readerCannotRead[] = "E apRankIndexInfoReader: sscanf error, path: f.\n";
inline constexpr char readerCannotClose[] = "E apRankIndexInfoReader: fclose error, path: f.\n";
inline constexpr const char* readerMessages[] = {readerCannotOpen, readerCannotRead, readerCannotClose,
                                                 nullptr};

inline constexpr char writerCannotOpen[] = "E apRankIndexInfoWriter: fopen error, path: f.";
inline constexpr char writerCannotPrint[] = "E apRankIndexInfoWriter: fprintf error, path: f";
inline constexpr char writerCannotClose[] = "E apRankIndexInfoWriter: fclose error, path:f.\n";
inline constexpr const char* writerMessages[] = {writerCannotOpen, writerCannotPrint, writerCannotClose,
                                                 nullptr};

} // namespace apRankIndex

namespace output
{

inline constexpr char readerCannotOpen[] = "E apAlgOutputInfoReader: Failed to read file : f.\n";
inline constexpr char readerCannotRead[] = "E apAlgOutputInfoReader: sscanf error, path: f.\n";
inline constexpr char readerCannotClose[] = "E apAlgOutputInfoReader: fclose error, path: f.\n";
inline constexpr const char* readerMessages[] = {readerCannotOpen, readerCannotRead, readerCannotClose,
                                                 nullptr};

inline constexpr char writerCannotOpen[] = "E apAlgOutputInfoWriter: fopen error, path: f.";
inline constexpr char writerCannotPrint[] = "E apAlgOutputInfoWriter: fprintf error, path: f";
inline constexpr char writerCannotClose[] = "E apAlgOutputInfoWriter: fclose error, path:f.\n";
inline constexpr const char* writerMessages[] = {writerCannotOpen, writerCannotPrint, writerCannotClose,
                                                 nullptr};

} // namespace output

} // namespace messages

#endif
