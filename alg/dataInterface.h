/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The data interface of the mesh optimisation algorithm: the one header that a
 * host includes.
 *
 * The algorithm saves what it knows between runs through these functions, and
 * loads it back. Each kind of record has its own plain text file at a path of
 * the caller's choice: fields separated by blanks, numbers in decimal, MACs as
 * 12 hexadecimal characters, one record per line (PAT files: a device line and
 * its entry lines). There is nothing to start or to stop: every call opens its
 * file, does its work, closes it and returns.
 *
 * What holds for every function, and is not repeated below:
 *
 *   Results    A bool is true on success, unless the function says otherwise.
 *   Arrays     Belong to the caller. Readers fill them without asking for
 *              their size. A reader that takes no count fills one record for
 *              every line that dataLineCounter() reports for the same file, so
 *              size the array from it; the others fill exactly the count given.
 *              A count of 0 or less means no records.
 *   Pointers   Must not be null, but where a function says what null does.
 *   MACs       A MAC text field is at most 15 characters and a NUL. A shorter
 *              MAC than 12 is written with leading blanks and read without
 *              them; an empty one is written as blanks that a reader skips,
 *              and of a longer one a reader takes 12 characters for the field
 *              and the rest for the next: both shift every later field. Keys
 *              are compared exactly, letter case included, over 16 characters.
 *   Reading    A read fails only where it meets the end of the file (or a read
 *              error) before its first field. A field that is no number
 *              is not noticed: the field keeps what the array held, and the
 *              next read goes on from the same place (a sign without a digit is
 *              gone). Where a file is read
 *              line by line, only a blank line (or one that begins with a NUL)
 *              fails; a line with too few fields, or with letters in place of
 *              numbers, uses up its record, and the fields it lacks keep what
 *              the array held.
 *   Writing    A writer truncates the file and writes it whole. One that fails
 *              leaves what was written before the failure. Nothing is atomic.
 *   Updates    (All but updateSinglePatV2().) Count the lines, read every record, change the array in memory,
 *              write the file whole. A failure before the write leaves the
 *              file as it was. A file that grows during the call is read as
 *              far as it was counted.
 *   Messages   Each begins "libzo: [%s:%d]: ", with the function's name and
 *              the source line; the texts below stand without that beginning.
 *              E marks an error (g_yra_debug at 3 or more), I an informational
 *              message (6 or more). The %s of a text is the path, where nothing
 *              else is said. An update also emits the messages of the counter,
 *              the reader and the writer that it uses, under their names.
 *   Locking    None. The caller lets one call at a time work on a file.
 *   Limits     One allocation per update (two in scanningInfoDeleter(); one and
 *              its growth where updataSingleApAllInfo() and
 *              updataSingleApRankInfo() insert), a buffer of 1 KB per open
 *              file on the stack.
 */
#ifndef ALG_DATA_INTERFACE_H
#define ALG_DATA_INTERFACE_H

#include <stdbool.h>
#include <stdint.h>

#include "ai_macros.h"
#include "algDataInterfaceStruct.h"
#include "algDefines.h"
#include "capacities.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ==== Files ============================================================== */

/*
 * Counts the reads of at most 1023 characters that `path` takes, which is the
 * number of its records: a line of up to 1022 characters and its newline is
 * one, a longer line one per slice of 1023 characters, newline included; a last
 * line without newline counts, an empty line counts, an empty file has none.
 *
 * Result: the count; -1 when the file cannot be opened or its close fails.
 *   E "Failed to read file: %s\n"         it cannot be opened
 *   E "fclose error, path:%s.\n"          the close fails; the count is lost
 */
int dataLineCounter(const char* path);

/*
 * Makes sure that `path` exists. A file that can be opened for reading is left
 * alone; any other is opened for writing, which creates it empty (and empties
 * one that can be written but not read).
 *
 * Result: whether it exists now.
 *   E "Failed to create file: %s\n"       it cannot be created
 *   E "fclose error, path:%s.\n"          the close of the new file fails
 */
bool touchFile(const char* path);

/* ==== AP node info: link metrics per node ================================ */

/*
 * Replaces `path` by `cnt` lines of 26 fields: deviceMAC, fatherDeviceMAC, the
 * five wirelessChannelUtilization, plcUtilization, ethernetUtilization, the
 * five wirelessRxRate, the five wirelessTxRate, plcRate, ethernetRate, the five
 * offset. The values are written raw; tipc_node is not in this file.
 *
 * Result: false when the file cannot be opened or a print fails. The close is
 * not looked at.
 *   E "fopen error, path: %s."
 *   E "fprintf error, path: %s"
 */
bool apNodeInfoWriterV2(const char* path, int cnt, ApNodeV2* pApNodeV2);

/*
 * Reads `apNum` records of 26 fields each, line breaks counting as blanks, and
 * bounds them:
 *   - each utilization (wireless, plc, ethernet) becomes 95 minus its value, at
 *     least 1;
 *   - each wireless rate becomes at most 10000 and at least 1;
 *   - plcRate becomes at most 10000; 0 stays 0.
 * ethernetRate, offset and tipc_node stay. `macPool` gets the deviceMAC of
 * every record in file order; it holds `apNum` MACs and may be null only when
 * `apNum` is 0.
 *
 * Result: false when the file cannot be opened or ends early; then the records
 * read so far are in the array, unbounded, and `macPool` is untouched. The
 * close is not looked at.
 *   E "Failed to read file: %s.\n"
 *   E "sscanf error part 1, path: %s\n"     the end came at the two MACs
 *   E "sscanf error part 2_2, path: %s\n"   at a wireless utilization
 *   E "sscanf error part 2_3, path: %s\n"   at plcUtilization
 *   E "sscanf error part 2_4, path: %s\n"   at a receive rate
 *   E "sscanf error part 2_5, path: %s\n"   at a transmit rate
 *   E "sscanf error part 2_6, path: %s\n"   at plcRate
 *   E "sscanf error part 2_7, path: %s\n"   at an offset
 */
bool apNodeInfoReaderV2(const char* path, uint8_t apNum, ApNodeV2* pApNodeV2, char (*macPool)[ALG_MAC_SIZE]);

/* ==== AP-all info: everything about a node =============================== */

/*
 * Replaces `path` by `cnt` lines of 64 fields: major_ver, minor_ver, deviceMAC,
 * fatherDeviceMAC, plcUtilization, plcRate, ethernetUtilization, ethernetRate,
 * tipc_node; then for each band its wirelessChannelUtilization, wirelessRxRate,
 * wirelessTxRate, offset, available, NSS, wifiMode, bandWidth, mcsLevel,
 * channel, reserved. `replaceVersion` has no effect: the version written is the
 * record's own.
 *
 * Result: false when the open, a print or the close fails.
 *   E "fopen error, path: %s."
 *   E "fprintf error, path:%s.\n"
 *   E "fclose error, path:%s.\n"            also after a failed print
 */
bool apAllInfoWriter(const char* path, ApInfoAllV2* pApInfoAllV2, int cnt, bool replaceVersion);

/*
 * Reads `cnt` records of 64 fields each as they are stored. `macPool` may be
 * null; else it holds `cnt` MACs and gets each record's deviceMAC once the
 * record is complete.
 *
 * Result: false when the open or the close fails or the file ends early; the
 * records read so far stay in the array.
 *   I "pat file does not exit.\n"           it cannot be opened
 *   E "fscanf error, path:%s.\n"            it ends early
 *   E "fclose error, path:%s.\n"
 */
bool apAllInfoOnlyReader(const char* path, ApInfoAllV2* pApInfoAllV2, int cnt, char (*macPool)[ALG_MAC_SIZE]);

/*
 * apAllInfoOnlyReader(), then the bounds of apNodeInfoReaderV2() on all `cnt`
 * records of the array, read or not: a record that was zero and was not read
 * comes back with utilizations of 95 and wireless rates of 1.
 *
 * Result: always true, by design; a missing or short file shows only in the
 * messages of apAllInfoOnlyReader().
 */
bool apAllInfoReader(const char* path, ApInfoAllV2* pApInfoAllV2, int cnt, char (*macPool)[ALG_MAC_SIZE]);

/*
 * Replaces `path` by `cnt` lines of 61 fields, all of them the first record of
 * the array, by design: deviceMAC, fatherDeviceMAC, plcUtilization, plcRate,
 * ethernetUtilization, ethernetRate, then the bands as in an AP-all line.
 * `replaceVersion` has no effect.
 *
 * Result: false when the open or a print fails. The close is not looked at.
 *   E "fopen error, path: %s."
 *   E "fprintf error, path:%s.\n"
 */
bool apAllDetailInfoWriter(const char* path, ApInfoAllV2* pApInfoAllV2, int cnt, bool replaceVersion);

/*
 * Reads `cnt` detail records, all of them into the first record of the array,
 * by design: it ends up as the last one read. alg_version, tipc_node, the other
 * records and `macPool` (may be null) are untouched.
 *
 * Result: false when the open or the close fails or the file ends early.
 *   I "pat file does not exit.\n"           it cannot be opened
 *   E "fscanf error, path:%s.\n"            it ends early
 *   E "fclose error, path:%s.\n"
 */
bool apAllDetailInfoReader(const char* path, ApInfoAllV2* pApInfoAllV2, uint8_t cnt,
                           char (*macPool)[ALG_MAC_SIZE]);

/*
 * Replaces the first AP-all record with the income's deviceMAC by the whole
 * income record, or adds it at the end; there is no cap. A missing or empty
 * file becomes this one record. The line count that is -1 for a missing file is
 * shown as such.
 *
 * Result: false for a null record (once the file is counted), and when an
 * allocation, the read or the write fails.
 *   E "null pIncomeApInfoAll"                                  no argument
 *   I "Income AP InfoAll from %s, %d items of old ApInfo"      deviceMAC, line count
 *   I "Just save apAllInfo"                                    no argument; file missing or empty
 *   I "AP InfoALl has been written to file: %s"                and saved
 *   E "Failed to write to file: %s"                            and not saved
 *   E "Failed to allocate memory for ApInfoAll"                no argument
 *   E "Failed to read file: %s"
 *   I "income ap info found @index %d"                         its index
 *   E "Failed to save new ap info to file: %s"                 the replaced record
 *   I "income ap info not found, inserting..."                 no argument
 *   E "failed to reallocte memory."                            no argument; gives up the array read
 *   E "Failed to add ap info data to file: %s"                 the added record
 */
bool updataSingleApAllInfo(const char* path, ApInfoAllV2* pIncomeApInfoAll);

/*
 * Removes the first AP-all record whose deviceMAC is `mac`; the last record
 * takes its place.
 *
 * Result: false when there is none (the file stays), and when the allocation,
 * the read or the write fails. A missing file ends at the allocation.
 *   E "Failed to allocate memory for ApInfoAll"                no argument
 *   E "Failed to read file: %s"
 *   E "Failed to add ap info data to file: %s"                 the write; the insert's wording
 *   E "Cannot find the mac in the ap info."                    no argument
 */
bool deleteSingleApAllInfo(const char* path, char* mac);

/* ==== Bridging info: backhaul links ====================================== */

/*
 * Reads as many records of 27 fields as `path` has lines, line breaks counting
 * as blanks: deviceMAC, fatherDeviceMAC, then for each band its bridgingRssi,
 * bridgingRxRate, bridgingTxRate, bridgingRxMcs, bridgingTxMcs.
 *
 * Result: false when the open or the close fails or the file ends early.
 *   I "pat file does not exit.\n"           it cannot be opened; the counter has said so too
 *   E "fscanf error, path:%s.\n"            it ends early
 *   E "fclose error, path:%s.\n"
 */
bool bridgingApNodeInfoReader(const char* path, BridgingNodeV2* pBridgingNodeV2);

/*
 * Replaces `path` by `cnt` such lines.
 *
 * Result: false when the open or a print fails. The close is not looked at.
 *   E "fopen error, path: %s."
 *   E "fprintf error, path:%s.\n"
 */
bool bridgingApNodeInfoWriter(const char* path, BridgingNodeV2* pBridgingNodeV2, int cnt);

/*
 * Brings one record into `path`, by the role of the node that keeps the file:
 *   - on the FAP (`isFap`) the file is a log: the record is added at the end,
 *     and one that makes it more than 64 puts out the oldest, one for one, so
 *     that a longer file keeps its length. A record whose fatherDeviceMAC is
 *     "000000000000" is the FAP's own and is ignored;
 *   - on an RE it is a table: the first record with the same fatherDeviceMAC
 *     (compared as a whole string) is replaced whole, else the record is added
 *     at the end; there is no cap.
 * A missing or empty file becomes this one record.
 *
 * Result: always true, failures included, on purpose. The messages, under the
 * names updateFapSingleBridgingInfo and updateReSingleBridgingInfo, tell:
 *   E "null pIncomeBridgingInfo"                               no argument; nothing done
 *   I "It's FAP itself bridging info, ignore it."              no argument; FAP only
 *   I "Just save income bridging data"                         no argument; file missing or empty
 *   I "Bridging Info has been written to file: %s"             and saved
 *   E "Failed to write to file: %s"                            and not saved
 *   E "Failed to allocate memory for BridgingNode"             no argument
 *   E "Failed to read file: %s"
 *   E "Failed to add new bridging info data to file: %s"       the write
 */
bool updateSingleBridgingInfo(const char* path, BridgingNodeV2* pIncomeBridgingInfo, bool isFap);

/* ==== Station connections: client samples ================================ */

/*
 * Reads every line of `path` into a record: id (at most 3 digits), deviceMac,
 * apMac, connectBand (at most 2), rssi, rxRate, txRate, rxPackageCount (at most
 * 4 each), txPackageCount, wifimode, bandwidth, mcslevel, mimo, kvrCapacity,
 * noiselevel. What is wider is split: the rest is read as the next field.
 *
 * Result: false when the file cannot be opened or at a blank line; the records
 * before it stay in the array. The close is not looked at.
 *   E "Failed to read file: %s.\n"
 *   E "sscanf error, path: %s"              a blank line
 */
bool stationInfoOnlyReader(const char* path, StaConnection* pNodeSta);

/*
 * Reads `path`, and behind its last record `path2`, as stationInfoOnlyReader()
 * does. Both are opened before either is read. The array holds the lines of
 * both.
 *
 * Result: false when either cannot be opened or holds a blank line.
 *   E "Failed to read file: %s.\n"          `path`, also when it was `path2`, on purpose
 *   E "sscanf error, path: %s"              the path of the file with the blank line
 */
bool stationNodeInfoReader(const char* path, const char* path2, StaConnection* pNodeSta);

/*
 * Replaces `path` by `staNum` lines. The first field is the position in the
 * array, from 0 and modulo 65536, whatever the record's id, on purpose. From
 * position 1000 on it is wider than a reader takes.
 *
 * Result: false when the open or a print fails. The close is not looked at.
 *   E "fopen error, path: %s."
 *   E "fprintf error, path: %s"
 */
bool stationNodeInfoWriter(const char* path, StaConnection* pNodeSta, int staNum);

/*
 * Adds `staNum` samples behind those of `path` and keeps the newest 128. Into a
 * missing or empty file they are written without that cap. A negative `staNum`
 * counts as 0; the cap holds then too.
 *
 * Result: false for a null array (once the file is counted), and when the
 * allocation, the read or the write fails.
 *   E "null pIncomeStaInfo"                                    no argument
 *   I "Just save income sta info data"                         no argument; file missing or empty
 *   I "Sta Info has been written to file: %s"                  and saved
 *   E "Failed to write to file: %s"                            and not saved
 *   E "Failed to allocate memory for StaConnection"            no argument
 *   E "Failed to read file: %s"
 *   E "Failed to add new sta info data to file: %s"            the write
 */
bool stationInfoAppendWriter(const char* path, StaConnection* pIncomeStaInfo, int staNum);

/*
 * Brings the rates of `cnt` records in memory to two spatial streams: where
 * mimo is MIMO_1, MIMO_3, MIMO_4 or MIMO_8, rxRate and txRate become rate x 2 /
 * streams, rounded down (at MIMO_1 a product over 65535 wraps), and mimo
 * becomes MIMO_2. Every other record stays. No file, no message.
 */
void mimoSync(StaConnection* pNodeSta, int cnt);

/* ==== Candidate APs of a station ========================================= */

/*
 * Reads every line of `path` into a record of 9 fields: apMac, connectBand,
 * roamingAvailable, rssi, throughput, wifimode, bandwidth, mcslevel, mimo.
 *
 * Result: false when the open or the close fails or at a blank line.
 *   E "Failed to read file: %s.\n"
 *   E "sscanf error, path: %s"              a blank line
 *   E "fclose error, path:%s.\n"
 */
bool candidateApNodeInfoReader(const char* path, CandidateAp* pCandidateAp);

/*
 * Replaces `path` by `canApNum` such lines.
 *
 * Result: false when the open, a print or the close fails.
 *   E "Failed to write file: %s.\n"
 *   E "fclose error, path:%s.\n"            the close, and a failed print too, on purpose
 */
bool candidateApNodeInfoWriter(const char* path, CandidateAp* pCandidateAp, int canApNum);

/* ==== PAT parameters: files ============================================== */

/*
 * Reads `cnt` version 1 records of 201 fields: deviceMac, 100 bParameter, 100
 * cParameter, line breaks counting as blanks. A record whose MAC is missing is
 * left as it was; a missing value keeps what the array held; reading goes on.
 *
 * Result: false when the file is missing or empty (the stream of an empty file
 * stays open, as it stands) or the close fails; true for a short file.
 *   E "pat file %s does not exit."          missing or empty
 *   E "sscanf error, path: %s.\n"           each MAC and each value that is missing
 *   E "fclose error, path:%s.\n"
 */
bool patParameterReader(const char* path, int cnt, PatParameter* pPatParameter);

/*
 * Reads version 2 records into the array: as many as `path` states, at most
 * `cnt`. A missing or empty file is first written by patInitV2() for the device
 * 000000000000. Where a device line states more than 100 entries, the record
 * keeps the first 100 and commonPatNum is 100. Where it states no number,
 * commonPatNum stays as the record held it, whatever it is, and that many
 * entries are read; nothing is stored past the 100th. What is missing keeps what
 * the array held, and reading goes on; a file whose device count is missing has
 * no devices.
 *
 * Result: false when the file cannot be opened even then (no message of its
 * own), or the close fails; true for a short file.
 *   I "pat file does not exit, init it."    no argument; missing, and once more when empty
 *   E "fscanf error, path: %s.\n"           each device count, device line and entry that
 *                                           meets the end of the file; once for a device
 *                                           that states more than 100 entries
 *   E "fclose error, path:%s.\n"
 */
bool patParameterReaderV2(const char* path, int cnt, PatParameterV2* pPatParameterV2);

/*
 * Replaces `path` by `apNum` version 2 records: a line with `apNum`, then for
 * each device its line of deviceMac and commonPatNum and that many lines of
 * isChanged, bandOrder, channelWidthOrder, mcsOrder, paraB, paraC. A
 * commonPatNum above 100 is taken, and written, as 100. `macPool` is not used
 * and may be null.
 *
 * Result: false when the open or a print fails. The close is not looked at.
 *   E "Failed to write file: %s.\n"
 *   E "fprintf error, path:%s.\n"
 */
bool patParameterWriterV2(const char* path, int apNum, PatParameterV2* pPatParameterV2,
                          char (*macPool)[ALG_MAC_SIZE]);

/*
 * Replaces `path` by this one version 2 record; those of other devices in it
 * are dropped.
 *
 * Result: always false, also when the record was written, on purpose.
 *   E "null pIncomeParameterV2"             no argument; the file stays
 */
bool updateSinglePatV2(const char* path, PatParameterV2* pIncomeParameterV2);

/*
 * Replaces `path` by the default version 2 record of the device `mac` (at most
 * 16 bytes of it): 15 entries, the rows of peekThrStructure in their order, with
 * paraB 64 (b = 0.1512) and paraC 46094 (c = -20.49984). Whether it could be
 * written shows in the messages of patParameterWriterV2() alone.
 */
void patInitV2(const char* path, char* mac);

/* ==== PAT parameters: conversions in memory ============================== */
/*
 * The coding, in single precision: b = B x 0.0008 + 0.1, c = C x 0.00064 - 50;
 * back: B the low 8 bits of (b - 0.1) x 1250, C the low 16 bits of
 * (c + 50) x 1562.5 (1250 = 1 / 0.0008, 1562.5 = 1 / 0.00064), both rounded to
 * the nearest integer with halves away from zero; what is negative or not a
 * number gives 0 before the cut, what 32 bits cannot hold 4294967295. Every B and C comes back as it was. No
 * files, no messages.
 */

/*
 * Version 1, integers to floats, `cnt` records: for each slot of band, width
 * and MCS order allParameter gets the threshold of peekThr, b, and c minus
 * ai_yra_patc_compensation (read once, at the start). deviceMac is not copied,
 * on purpose.
 *
 * Result: always true.
 */
bool patInt2Alg(int cnt, PatParameter* pPatParameter, AlgPatParameter* pAlgPatParameter);

/*
 * Version 2, integers to floats, `cnt` records: deviceMac, commonPatNum (above
 * 100 taken as 100) and for each entry its orders, paraA from getPeekThr(),
 * paraB and paraC. The compensation is not applied.
 */
void patInt2AlgV2(int cnt, PatParameterV2* pPatParameterV2, AlgPatParameterV2* pAlgPatParameterV2);

/*
 * Version 2, floats to integers, `cnt` records; the integer array is the
 * destination. deviceMac, commonPatNum (above 100 taken as 100), orders, paraB
 * and paraC are stored; where paraB differs from what the entry held, bit 0 of
 * isChanged is set, where paraC does, bit 1. Bits are never cleared. Pass the
 * integer records as they were read from the file.
 *
 * Result: always true.
 */
bool patAlg2IntV2(int cnt, PatParameterV2* pPatParameterV2, AlgPatParameterV2* pAlgPatParameterV2);

/* ==== Peak thresholds and settings ======================================= */

/* Subtracted from every c by patInt2Alg(); 10.0 at load time. Set it by ai_alg_set_patc_comp(). */
extern float ai_yra_patc_compensation;

/* Subtracted from every RSSI by scanningInfoReader(); 3 at load time. The host writes it directly. */
extern uint8_t ai_yra_rssi_compensation;

/*
 * The peak throughput threshold of a configuration: that of the first row of
 * peekThrStructure with these three orders, 1 where there is none.
 */
uint16_t getPeekThr(uint8_t bandOrder, uint8_t channelWidthOrder, uint8_t mcsOrder);

/*
 * Sets ai_yra_patc_compensation. Logged at g_yra_debug 5 and above:
 *   "setting ai_yra_patc_compensation to [%f]"                 the new value
 */
void ai_alg_set_patc_comp(int patc_comp);

/* ==== Scanning info: sightings of neighbours ============================= */
/*
 * The deleter and the appends load through the reader and write back what they
 * loaded, so every pass lowers the stored RSSI of each surviving line by
 * ai_yra_rssi_compensation once more, never below 1. That is meant: a sighting
 * fades with age.
 */

/*
 * Reads every line of `path` into a record: deviceMAC, neighbourMAC, band (at
 * most 2 digits), channel, rssi (at most 3 each; what is wider is split). Each
 * rssi is lowered by ai_yra_rssi_compensation, read afresh for every line, to
 * at least 1.
 *
 * Result: false when the open or the close fails or at a blank line; the
 * records before it stay in the array.
 *   E "Failed to read file : %s.\n"
 *   E "sscanf error, path: %s.\n"           a blank line; the close is not looked at then
 *   E "fclose error, path: %s.\n"
 */
bool scanningInfoReader(const char* path, ScanningInfo* pScanningInfo);

/*
 * Replaces `path` by `cnt` such lines, records with empty MACs included.
 *
 * Result: false when the open, a print or the close fails.
 *   E "Failed to write file: %s.\n"
 *   E "fclose error, path:%s.\n"            the close, and a failed print too, on purpose
 */
bool scanningInfoWriter(const char* path, ScanningInfo* pScanningInfo, int cnt);

/*
 * Removes every record whose deviceMAC is `curApMac`; the others keep their
 * order. A missing or empty file is success, and is not touched.
 *
 * Result: false when an allocation, the read or the write fails.
 *   I "There is no history data, just return."                 no argument; file missing or empty
 *   E "Failed to allocate memory for ScanningInfo"             no argument
 *   E "Failed to read file: %s"
 *   E "Failed to add new scanning info data to file: %s"       the write
 */
bool scanningInfoDeleter(const char* path, const char* curApMac);

/*
 * Adds `cnt` records behind those of `path` and keeps the newest 256. Into a
 * missing or empty file they are written without that cap; a negative `cnt`
 * empties it. With records in the file a negative `cnt` is an impossible size:
 * the allocation fails and the file stays as it was.
 *
 * Result: false for a null array (once the file is counted), and when the
 * allocation, the read or the write fails.
 *   E "null pIncomeScanningInfo"                               no argument
 *   I "Just save income scanning data"                         no argument; file missing or empty
 *   I "Scanning Info has been written to file: %s"             and saved
 *   E "Failed to write to file: %s"                            and not saved
 *   E "Failed to allocate memory for ScanningInfo"             no argument
 *   E "Failed to read file: %s"
 *   E "Failed to add new scanning info data to file: %s"       the write
 */
bool appendScanningInfo(const char* path, ScanningInfo* pIncomeScanningInfo, int cnt);

/* appendScanningInfo() of one record; the same messages under its own name. */
bool appendSingleScanningInfo(const char* path, ScanningInfo* pIncomeScanningInfo);

/* ==== Time delay info: latency towards fathers =========================== */

/*
 * Reads `cnt` records of 16 fields: fatherMAC and 15 delayTime, line breaks
 * counting as blanks. What is missing keeps what the array held, and reading
 * goes on. Then every sample of all `cnt` records, read or not, is brought into
 * 1 to 1000.
 *
 * Result: false when the open or the close fails; true for a short file.
 *   E "Failed to read file : %s.\n"
 *   E "sscanf error, path: %s.\n"           each MAC (its samples are skipped) and sample missing
 *   E "fclose error, path: %s.\n"
 */
bool timeDelayInfoReader(const char* path, TimeDelayInfo* pTimeDelayInfo, int cnt);

/*
 * Replaces `path` by at most `cnt` such lines: a record with an empty fatherMAC
 * ends the file before it.
 *
 * Result: false when the open, the print of a MAC or the close fails; a sample
 * whose print fails is only logged.
 *   E "Failed to write file: %s.\n"
 *   E "fprintf error, path:%s.\n"           the MAC's print
 *   E "sscanf error, path: %s."             a sample's print, in the parse's text on purpose
 *   E "fclose error, path:%s.\n"
 */
bool timeDelayInfoWriter(const char* path, TimeDelayInfo* pTimeDelayInfo, int cnt);

/*
 * Makes `path` exist and be empty.
 *
 * Result: false when the open or the close fails.
 *   E "Failed to write file: %s.\n"
 *   E "fclose error, path:%s.\n"
 */
bool emptyTimeDelayFile(const char* path);

/*
 * Replaces the first record with the income's fatherMAC by the whole income
 * record, or adds it at the end; there is no cap. A missing or empty file
 * becomes this one record. The income is written as it is, the others as the
 * reader has bounded them. Behind a record with an empty fatherMAC (a blank
 * line at the end of the file reads as one) nothing is stored, and the result
 * is true all the same.
 *
 * Result: false for a null record (once the file is counted), and when the
 * allocation, the read or the write fails.
 *   E "null pIncomeTimeDelayInfo"                              no argument
 *   I "Just save income time dalay data"                       no argument; file missing or empty
 *   I "time delay Info has been written to file: %s"           and saved
 *   E "Failed to write to file: %s"                            and not saved
 *   E "Failed to allocate memory for ScanningInfo"             no argument; that name on purpose
 *   E "Failed to read file: %s"
 *   I "income time delay info found @index %d"                 its index
 *   E "Failed to save new time delay info to file: %s"         the replaced record
 *   I "income time delay info not found, inserting..."         no argument
 *   E "Failed to add time delay info data to file: %s"         the added record
 */
bool updateSingleTimeDelayInfo(const char* path, TimeDelayInfo* pIncomeTimeDelayInfo);

/*
 * Adds the record at the end, whatever its father, and keeps the newest 256.
 * Else as updateSingleTimeDelayInfo().
 *
 * Result: as there.
 *   E "null pIncomeTimeDelayInfo"                              no argument
 *   I "Just save income timeDelay data"                        no argument; file missing or empty
 *   I "Time delay Info has been written to file: %s"           and saved
 *   E "Failed to write to file: %s"                            and not saved
 *   E "Failed to allocate memory for TimeDelayInfo"            no argument
 *   E "Failed to read file: %s"
 *   E "Failed to add new timeDelay info data to file: %s"      the write
 */
bool appendSingleTimeDelayInfo(const char* path, TimeDelayInfo* pIncomeTimeDelayInfo);

/* ==== Score info: the scoring of candidate fathers ======================= */

/*
 * Replaces `path` by at most `apNum` lines of 22 fields: fatherMAC, apRank,
 * hopsFactor, timeDelayTestCnt, timeDelayAverage, timeNormalization,
 * thrputPredict, the five rssi, the five negoRate, the five patRate; the two
 * floats with two decimals. A record with an empty fatherMAC ends the file
 * before it.
 *
 * Result: false when the open, the print of the first seven fields or the close
 * fails; another value whose print fails is only logged.
 *   E "Failed to write file: %s.\n"
 *   E "fprintf error, path:%s.\n"           the first seven fields
 *   E "sscanf error, path: %s."             another value, in the parse's text on purpose
 *   E "fclose error, path:%s.\n"
 */
bool scoreInfoWriter(const char* path, ScoreInfo* pScoreInfo, int apNum);

/*
 * Reads `cnt` such records, line breaks counting as blanks. What is missing
 * keeps what the array held, and reading goes on. Nothing is bounded.
 *
 * Result: false when the open or the close fails; true for a short file.
 *   E "Failed to read file : %s.\n"
 *   E "sscanf error, path: %s.\n"           a record that is missing, each value that is
 *   E "fclose error, path: %s.\n"
 */
bool scoreInfoReader(const char* path, ScoreInfo* pScoreInfo, int cnt);

/*
 * Tells an empty file from one that is not. Despite its name it gives no count.
 *
 * Result: 1 when `path` exists and is empty, or holds only white space (or
 * cannot be read); else 0, also when it cannot be opened. The close is not
 * looked at.
 *   E "Failed to read file : %s.\n"
 */
int scoreInfoCntReader(const char* path);

/* ==== AP rank: the rank of every device ================================== */

/*
 * Reads every line of `path` into a record: deviceMAC, ethFatherMAC, apRank.
 *
 * Result: false when the open or the close fails or at a blank line.
 *   E "Failed to read file : %s.\n"
 *   E "sscanf error, path: %s.\n"           a blank line; the close is not looked at then
 *   E "fclose error, path: %s.\n"
 */
bool apRankInfoReader(const char* path, ApRank* pApRank);

/*
 * Replaces `path` by `cnt` such lines.
 *
 * Result: false when the open, a print or the close fails.
 *   E "fopen error, path: %s."
 *   E "fprintf error, path: %s"
 *   E "fclose error, path:%s.\n"            also after a failed print
 */
bool apRankInfoWriter(const char* path, ApRank* pApRank, int cnt);

/*
 * Replaces the first record with the income's deviceMAC by the whole income
 * record, or adds it at the end; there is no cap. A missing or empty file
 * becomes this one record.
 *
 * Result: false for a null record (once the file is counted), and when an
 * allocation, the read or the write fails.
 *   E "null pIncomeApRank"                                     no argument
 *   I "Income AP Rank from %s, %d items of old ApRankInfo"     deviceMAC, line count
 *   I "Just save apRankInfo"                                   no argument; file missing or empty
 *   I "AP rank info has been written to file: %s"              and saved
 *   E "Failed to write to file: %s"                            and not saved
 *   E "Failed to allocate memory for pApRank"                  no argument
 *   E "Failed to read file: %s"
 *   I "income ap rank info found @index %d"                    its index
 *   E "Failed to save new ap info to file: %s"                 the replaced record
 *   I "income ap rank info not found, inserting..."            no argument
 *   E "failed to reallocte memory."                            no argument
 *   E "Failed to add ap rank info data to file: %s"            the added record
 */
bool updataSingleApRankInfo(const char* path, ApRank* pIncomeApRank);

/* ==== AP rank index: the current ranking ================================= */

/*
 * Reads the header line (cnt, process_re, alg_strategy, starttime) and every
 * line after it into apRank[0], apRank[1] and so on (deviceMAC, fatherMAC,
 * apRank, throughput), whatever the header counts. An empty file leaves the
 * record as it was.
 *
 * cnt is what the file states, up to 255, even where the file has fewer entry
 * lines or apRank holds fewer entries: a host uses at most
 * ALG_RANK_INDEX_CAPACITY of them.
 *
 * Result: false when the open or the close fails, at a blank line, and at a
 * 31st entry line (30 are stored).
 *   E "Failed to read file : %s.\n"
 *   E "sscanf error, path: %s.\n"           a blank line or too many entries
 *   E "fclose error, path: %s.\n"
 */
bool apRankIndexInfoReader(const char* path, ApRankIndex* pApRankIndex);

/*
 * Replaces `path` by the header line and cnt entry lines.
 *
 * Result: false when cnt is above 30 (the file is not opened then), or the
 * open, a print or the close fails.
 *   E "fopen error, path: %s."
 *   E "fprintf error, path: %s"             also for a cnt above 30
 *   E "fclose error, path:%s.\n"            also after a failed print
 */
bool apRankIndexInfoWriter(const char* path, ApRankIndex* pApRankIndex);

/* ==== Algorithm output: the latest decision ============================== */

/*
 * Reads the first line of `path`: srcMAC, dstMAC, algStrategy (unsigned),
 * timeout. An empty file leaves the record as it was.
 *
 * Result: false when the open or the close fails or the first line is blank.
 *   E "Failed to read file : %s.\n"
 *   E "sscanf error, path: %s.\n"           a blank first line
 *   E "fclose error, path: %s.\n"
 */
bool apAlgOutputInfoReader(const char* path, ApAlgInterfaceOutput* pApAlgOutput);

/*
 * Replaces `path` by that one line, the strategy as a signed number, on purpose.
 *
 * Result: false when the open, the print or the close fails.
 *   E "fopen error, path: %s."
 *   E "fprintf error, path: %s"
 *   E "fclose error, path:%s.\n"            also after a failed print
 */
bool apAlgOutputInfoWriter(const char* path, ApAlgInterfaceOutput* pApAlgOutput);

#ifdef __cplusplus
}
#endif

#endif
