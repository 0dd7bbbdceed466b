/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The data interface of the mesh optimisation algorithm. A host includes this
 * header and no other.
 *
 * Through these functions the algorithm saves its data at the end of a run and
 * loads it at the start of the next one. Each kind of record has its own plain
 * text file, at a path that the caller chooses: fields separated by blanks,
 * numbers in decimal, MACs as 12 hexadecimal characters, one record per line
 * (a PAT device or a rank index has several lines). There is no initialisation
 * and no shutdown: each call opens its file, does its work, closes the file and
 * returns.
 *
 * Return values:
 *   bool       true on success. Always true: apAllInfoReader(), patInt2Alg(),
 *              patAlg2IntV2(), updateSingleBridgingInfo(). Always false:
 *              updateSinglePatV2().
 *   int        dataLineCounter(): the number of lines, -1 on failure.
 *              scoreInfoCntReader(): 1 for an empty file, else 0.
 *   uint16_t   getPeekThr(): a threshold, 1 if there is none.
 *
 * Parameters, by name; a function says what is special about its own:
 *   path        the file
 *   path2       a second file of the same kind
 *   cnt, apNum, canApNum, staNum
 *               the number of records
 *   macPool     an array of MACs, one for each record
 *   mac, curApMac
 *               the MAC of a device
 *   isFap       true on the FAP, false on an RE
 *   replaceVersion
 *               has no effect
 *   bandOrder   a band index
 *   channelWidthOrder
 *               a channel-width index
 *   mcsOrder    an MCS index
 *   patc_comp   the new value
 *   format      a format of printf()
 *   pIncome...  the new record; with a count, the array of new records
 *   pApRankIndex, pApAlgOutput
 *               the record
 *   p...        the array of records
 *
 * Terms:
 *   FAP, RE     the mesh's main access point; a satellite
 *   father      the parent node: the one that a node is attached to
 *   PAT         the parameters b and c of the throughput model
 *   sighting    one scan result: a neighbour that a mesh AP has seen
 *   update      a function that adds, replaces or deletes records of a file; an
 *               append and a delete are updates too
 *   new record  the record, or one of the records, that the caller passes to an
 *               update
 *
 * Rules for every function, which are not repeated below:
 *
 *   Arrays     Belong to the caller; the module cannot check their size. A
 *              reader with a count writes at most that many records. A reader
 *              without one writes a record for each line, so size its array
 *              from dataLineCounter() on the same file. (The readers of the rank
 *              index and of the algorithm output write one record only.) A count
 *              of 0 or less means no records.
 *   Pointers   Must not be null, unless the function says what null does.
 *   MACs       A MAC text field holds at most 15 characters and a NUL. It is
 *              printed in at least 12 columns, with leading blanks; a reader
 *              skips blanks and reads at most 12 characters. So two kinds of
 *              MAC shift every later field when they are read back. An empty
 *              MAC is written as blanks, which the reader skips. A MAC of more
 *              than 12 characters is written in full, and the reader reads its
 *              rest as the next field. Keys are compared exactly, letter case
 *              included, over ALG_MAC_SIZE characters.
 *   Numbers    A number that does not fit its field is cut to the field's low
 *              bits; one that needs more than 64 bits counts as the largest
 *              64-bit number.
 *   By field   In most files a record is a fixed number of fields, and line
 *              breaks count as blanks. A record is read in steps of one or
 *              more fields. A step fails only if the file ends, or a read error
 *              occurs, before its first field. Text in place of a number is not
 *              reported: the field keeps the value that the array held, and the
 *              next step continues with that text, except a leading sign or the
 *              beginning of a float, which are consumed.
 *   By line    In some files a line is a record. A line fails only if it is
 *              blank up to its end or its first NUL. A line with too few
 *              fields, or with text in place of a number, is a record too: the
 *              fields that are not read keep the values that the array held. A
 *              read error looks like the end of the file.
 *   Writing    A writer truncates the file and writes all of it. This is not
 *              atomic: after a failure the file holds what was written so far.
 *   Updates    Count the lines, read every record, change the array in memory,
 *              write the whole file. A failure before the write leaves the file
 *              unchanged. A file whose lines cannot be counted is treated as
 *              empty, unless the function says otherwise. If the file grows
 *              during the call, only the lines that were counted are read.
 *   Messages   Each begins with "libzo: [%s:%d]: ", where %s is the function's
 *              name and %d the source line. The tables below omit this prefix.
 *              E is an error (logged when g_yra_debug is 3 or more), N is a
 *              notice (5 or more), I is informational (6 or more). In a table,
 *              %s is the path, unless the table says otherwise. A function that
 *              calls another one of this header also logs the messages of that
 *              one, under that one's name.
 *   Locking    None. The caller must allow only one call at a time on a file.
 *   Memory     About 1 KB of stack for each file being read or written. Readers
 *              and writers allocate nothing themselves. An update allocates at
 *              most one array; scanningInfoDeleter() allocates two, and
 *              updataSingleApAllInfo() and updataSingleApRankInfo() grow theirs
 *              for a new record.
 */
#ifndef ALG_DATA_INTERFACE_H
#define ALG_DATA_INTERFACE_H

#include <stdbool.h>
#include <stdint.h>

#include "ai_macros.h"
#include "algDataInterfaceStruct.h"
#include "algDefines.h"
#include "capacities.h"

/* The version of the interface. The build and the packages take theirs from here. */
#define ALG_DATA_INTERFACE_VERSION_MAJOR 1
#define ALG_DATA_INTERFACE_VERSION_MINOR 0
#define ALG_DATA_INTERFACE_VERSION_PATCH 0

/* The same as a string literal: "1.0.0". */
#define ALG_DATA_INTERFACE_VERSION                                                                \
    ALG_DATA_INTERFACE_DOTTED(ALG_DATA_INTERFACE_VERSION_MAJOR, ALG_DATA_INTERFACE_VERSION_MINOR, \
                              ALG_DATA_INTERFACE_VERSION_PATCH)
#define ALG_DATA_INTERFACE_DOTTED(major, minor, patch) ALG_DATA_INTERFACE_TEXT(major, minor, patch)
#define ALG_DATA_INTERFACE_TEXT(major, minor, patch) #major "." #minor "." #patch

/* The same as a number: 0x010203 is version 1.2.3. */
#define ALG_DATA_INTERFACE_VERSION_NUM                                                \
    (ALG_DATA_INTERFACE_VERSION_MAJOR << 16 | ALG_DATA_INTERFACE_VERSION_MINOR << 8 | \
     ALG_DATA_INTERFACE_VERSION_PATCH)

/* Whether this is the given version or a later one. Works in #if. */
#define ALG_DATA_INTERFACE_AT_LEAST(major, minor, patch) \
    (ALG_DATA_INTERFACE_VERSION_NUM >= ((major) << 16 | (minor) << 8 | (patch)))

#ifdef __cplusplus
extern "C" {
#endif

/* ==== Files ============================================================== */

/*
 * Counts the lines of `path`, which is its number of records wherever a record
 * is one line. A line is read in pieces of at most 1023 characters (a buffer of
 * 1024 less its NUL), newline included, and each piece counts 1: so a line of
 * more than 1022 characters before its newline counts more than once. An empty
 * line counts 1, and so does a last line without newline. A read error ends the
 * count and is not reported; the line in which it occurs does not count.
 *
 * Returns the count, or -1 when the open or the close fails.
 *   E "Failed to read file: %s\n"         the open
 *   E "fclose error, path:%s.\n"          the close; the count is discarded
 */
int dataLineCounter(const char* path);

/*
 * Makes sure that `path` exists. A file that can be opened for reading is left
 * unchanged. Any other is opened for writing. That creates a missing file. It
 * also empties a file that can be written but not read.
 *
 * Returns false when the open for writing, or the close after it, fails.
 *   E "Failed to create file: %s\n"       the open for writing
 *   E "fclose error, path:%s.\n"          the close of the new file
 */
bool touchFile(const char* path);

/* ==== AP node info: link metrics per node ================================ */

/*
 * Replaces the content of `path` with `cnt` lines of 26 fields: deviceMAC,
 * fatherDeviceMAC, wirelessChannelUtilization of each band, plcUtilization,
 * ethernetUtilization, wirelessRxRate of each band, wirelessTxRate of each
 * band, plcRate, ethernetRate, offset of each band. Values are written as the
 * record holds them. tipc_node is not in this file.
 *
 * Returns false when the open or a print fails. A failed close is ignored.
 *   E "fopen error, path: %s."
 *   E "fprintf error, path: %s"
 */
bool apNodeInfoWriterV2(const char* path, int cnt, ApNodeV2* pApNodeV2);

/*
 * Reads `apNum` records of 26 fields, as apNodeInfoWriterV2() writes them, by
 * field. Then it copies the deviceMAC of every record to `macPool`, in file
 * order, and bounds the values of every record:
 *   - a utilization (wireless, plc, ethernet) becomes 95 minus its value, but
 *     at least 1;
 *   - a wireless rate becomes at least 1 and at most 10000;
 *   - plcRate becomes at most 10000; unlike a wireless rate, 0 stays 0.
 * ethernetRate, offset and tipc_node keep their values. `macPool` has room for
 * `apNum` MACs; it may be null only if `apNum` is 0.
 *
 * Returns false when the open fails or the file ends too early. In the second
 * case the array holds the records read so far, not bounded, and `macPool` is
 * unchanged. A failed close is ignored.
 *   E "Failed to read file: %s.\n"
 *   E "sscanf error part 1, path: %s\n"     end of file before deviceMAC
 *   E "sscanf error part 2_2, path: %s\n"   before a wirelessChannelUtilization
 *   E "sscanf error part 2_3, path: %s\n"   before plcUtilization
 *   E "sscanf error part 2_4, path: %s\n"   before a wirelessRxRate
 *   E "sscanf error part 2_5, path: %s\n"   before a wirelessTxRate
 *   E "sscanf error part 2_6, path: %s\n"   before plcRate
 *   E "sscanf error part 2_7, path: %s\n"   before an offset
 */
bool apNodeInfoReaderV2(const char* path, uint8_t apNum, ApNodeV2* pApNodeV2, char (*macPool)[ALG_MAC_SIZE]);

/* ==== AP-all info: everything about a node =============================== */

/*
 * Replaces the content of `path` with `cnt` lines of 64 fields: major_ver,
 * minor_ver, deviceMAC, fatherDeviceMAC, plcUtilization, plcRate,
 * ethernetUtilization, ethernetRate, tipc_node; then for each band
 * wirelessChannelUtilization, wirelessRxRate, wirelessTxRate, offset,
 * available, NSS, wifiMode, bandWidth, mcsLevel, channel, reserved.
 * `replaceVersion` has no effect: the version written is the record's own.
 *
 * Returns false when the open, a print or the close fails.
 *   E "fopen error, path: %s."
 *   E "fprintf error, path:%s.\n"
 *   E "fclose error, path:%s.\n"            the close; may follow the fprintf message
 */
bool apAllInfoWriter(const char* path, ApInfoAllV2* pApInfoAllV2, int cnt, bool replaceVersion);

/*
 * Reads `cnt` records of 64 fields, as apAllInfoWriter() writes them, by field.
 * It changes no value. `macPool` may be null; otherwise it has room for `cnt`
 * MACs and receives the deviceMAC of each record that was read completely.
 *
 * Returns false when the open or the close fails or the file ends too early;
 * the array keeps the records read so far.
 *   I "pat file does not exit.\n"           the open; no argument
 *   E "fscanf error, path:%s.\n"            the file ends too early
 *   E "fclose error, path:%s.\n"
 */
bool apAllInfoOnlyReader(const char* path, ApInfoAllV2* pApInfoAllV2, int cnt, char (*macPool)[ALG_MAC_SIZE]);

/*
 * Calls apAllInfoOnlyReader() and then bounds all `cnt` records of the array as
 * apNodeInfoReaderV2() does, including those that were not read: a zeroed
 * record that was not read gets utilizations of 95 and wireless rates of 1.
 *
 * Always returns true, on purpose: only the messages of apAllInfoOnlyReader()
 * report a missing or short file.
 */
bool apAllInfoReader(const char* path, ApInfoAllV2* pApInfoAllV2, int cnt, char (*macPool)[ALG_MAC_SIZE]);

/*
 * Replaces the content of `path` with `cnt` lines of 61 fields: those of an
 * AP-all line without major_ver, minor_ver and tipc_node. Every line is the
 * first record of the array, on purpose. `replaceVersion` has no effect.
 *
 * Returns false when the open or a print fails. A failed close is ignored.
 *   E "fopen error, path: %s."
 *   E "fprintf error, path:%s.\n"
 */
bool apAllDetailInfoWriter(const char* path, ApInfoAllV2* pApInfoAllV2, int cnt, bool replaceVersion);

/*
 * Reads `cnt` records of 61 fields, as apAllDetailInfoWriter() writes them, by
 * field. It reads all of them into the first record of the array, on purpose:
 * each one overwrites the one before. It changes no value. alg_version,
 * tipc_node, the other records of the array and `macPool` (may be null) keep
 * what they held.
 *
 * Returns false when the open or the close fails or the file ends too early.
 *   I "pat file does not exit.\n"           the open; no argument
 *   E "fscanf error, path:%s.\n"            the file ends too early
 *   E "fclose error, path:%s.\n"
 */
bool apAllDetailInfoReader(const char* path, ApInfoAllV2* pApInfoAllV2, uint8_t cnt,
                           char (*macPool)[ALG_MAC_SIZE]);

/*
 * Replaces the first AP-all record that has the new record's deviceMAC with the
 * new record, or adds the new record at the end. There is no cap. A missing or
 * empty file becomes this one record.
 *
 * Returns false when `pIncomeApInfoAll` is null (checked after the lines are
 * counted), and when an allocation, the read or the write fails. If the array
 * cannot grow for the new record, it leaks: this leak is part of the interface.
 *   E "null pIncomeApInfoAll"                                  no argument
 *   I "Income AP InfoAll from %s, %d items of old ApInfo"      deviceMAC, line count (-1: not counted)
 *   I "Just save apAllInfo"                                    missing or empty file; no argument
 *   I "AP InfoALl has been written to file: %s"                then, if the write succeeds
 *   E "Failed to write to file: %s"                            then, if the write fails
 *   E "Failed to allocate memory for ApInfoAll"                no argument
 *   E "Failed to read file: %s"
 *   I "income ap info found @index %d"                         its index in the file, from 0
 *   E "Failed to save new ap info to file: %s"                 the write after a replacement
 *   I "income ap info not found, inserting..."                 no argument
 *   E "failed to reallocte memory."                            no argument; the array cannot grow
 *   E "Failed to add ap info data to file: %s"                 the write after an insertion
 */
bool updataSingleApAllInfo(const char* path, ApInfoAllV2* pIncomeApInfoAll);

/*
 * Removes the first AP-all record whose deviceMAC is `mac`; the last record
 * moves to its place.
 *
 * Returns false when there is no such record (the file is unchanged), and when
 * the allocation, the read or the write fails. When the lines cannot be
 * counted, as with a missing file, the allocation fails.
 *   E "Failed to allocate memory for ApInfoAll"                no argument
 *   E "Failed to read file: %s"
 *   E "Failed to add ap info data to file: %s"                 the write
 *   E "Cannot find the mac in the ap info."                    no argument
 */
bool deleteSingleApAllInfo(const char* path, char* mac);

/* ==== Bridging info: backhaul links ====================================== */

/*
 * Reads as many records of 27 fields as `path` has lines, by field: deviceMAC,
 * fatherDeviceMAC, then for each band bridgingRssi, bridgingRxRate,
 * bridgingTxRate, bridgingRxMcs, bridgingTxMcs. If the lines cannot be counted,
 * it reads no record.
 *
 * Returns false when the open or the close fails or the file ends too early.
 *   I "pat file does not exit.\n"           the open; no argument
 *   E "fscanf error, path:%s.\n"            the file ends too early
 *   E "fclose error, path:%s.\n"
 */
bool bridgingApNodeInfoReader(const char* path, BridgingNodeV2* pBridgingNodeV2);

/*
 * Replaces the content of `path` with `cnt` lines of 27 fields, in the order of
 * bridgingApNodeInfoReader().
 *
 * Returns false when the open or a print fails. A failed close is ignored.
 *   E "fopen error, path: %s."
 *   E "fprintf error, path:%s.\n"
 */
bool bridgingApNodeInfoWriter(const char* path, BridgingNodeV2* pBridgingNodeV2, int cnt);

/*
 * Adds one record to `path`, or replaces one. The rule depends on the node that
 * keeps the file:
 *   - on the FAP (`isFap`) the file is a log. The new record is added at the end.
 *     If the file already has ALG_FAP_BRIDGING_CAP records or more, the new
 *     record evicts the oldest one, so the file keeps its length. A new record
 *     whose fatherDeviceMAC is "000000000000" is the FAP's own and is ignored.
 *   - on an RE the file is a table with one record per father. The new record
 *     replaces the first one that has the same fatherDeviceMAC (compared with
 *     strcmp(), without the bound of ALG_MAC_SIZE), or is added at the end. There
 *     is no cap.
 * A missing or empty file becomes this one record.
 *
 * Always returns true, on purpose; only the messages report a failure. Their
 * function name is updateFapSingleBridgingInfo or updateReSingleBridgingInfo.
 *   E "null pIncomeBridgingInfo"                               no argument; the file is unchanged
 *   I "It's FAP itself bridging info, ignore it."              FAP only; no argument
 *   I "Just save income bridging data"                         missing or empty file; no argument
 *   I "Bridging Info has been written to file: %s"             then, if the write succeeds
 *   E "Failed to write to file: %s"                            then, if the write fails
 *   E "Failed to allocate memory for BridgingNode"             no argument
 *   E "Failed to read file: %s"
 *   E "Failed to add new bridging info data to file: %s"       the write
 */
bool updateSingleBridgingInfo(const char* path, BridgingNodeV2* pIncomeBridgingInfo, bool isFap);

/* ==== Station connections: client samples ================================ */

/*
 * Reads every line of `path` into a record of 15 fields, by line: id (at most 3
 * digits), deviceMac, apMac, connectBand (at most 2 digits), rssi, rxRate,
 * txRate, rxPackageCount (at most 4 digits each), txPackageCount, wifimode,
 * bandwidth, mcslevel, mimo, kvrCapacity, noiselevel. A number with more digits
 * is split: the rest is read as the next field.
 *
 * Returns false when the open fails or a line is blank; the array keeps the
 * records before that line. A failed close is ignored.
 *   E "Failed to read file: %s.\n"
 *   E "sscanf error, path: %s"              a blank line
 */
bool stationInfoOnlyReader(const char* path, StaConnection* pNodeSta);

/*
 * Reads the lines of `path` and then those of `path2` into one array, as
 * stationInfoOnlyReader() does; the array has room for the lines of both. Both
 * files are opened before either is read.
 *
 * Returns false when an open fails or a line is blank.
 *   E "Failed to read file: %s.\n"          always `path`, on purpose, even if only `path2` failed
 *   E "sscanf error, path: %s"              a blank line; the path of its file
 */
bool stationNodeInfoReader(const char* path, const char* path2, StaConnection* pNodeSta);

/*
 * Replaces the content of `path` with `staNum` lines of 15 fields, in the order
 * of stationInfoOnlyReader(). The first field is the record's position in the
 * array, 0, 1, 2, ..., modulo 65536; it is not the record's id, on purpose. A
 * position from 1000 on has more digits than a reader reads as id.
 *
 * Returns false when the open or a print fails. A failed close is ignored.
 *   E "fopen error, path: %s."
 *   E "fprintf error, path: %s"
 */
bool stationNodeInfoWriter(const char* path, StaConnection* pNodeSta, int staNum);

/*
 * Adds `staNum` samples at the end of `path` and keeps the newest
 * ALG_STATION_CAP. A missing or empty file receives all of them, without a cap.
 * A negative `staNum` counts as 0.
 *
 * Returns false when `pIncomeStaInfo` is null (checked after the lines are
 * counted), and when the allocation, the read or the write fails.
 *   E "null pIncomeStaInfo"                                    no argument
 *   I "Just save income sta info data"                         missing or empty file; no argument
 *   I "Sta Info has been written to file: %s"                  then, if the write succeeds
 *   E "Failed to write to file: %s"                            then, if the write fails
 *   E "Failed to allocate memory for StaConnection"            no argument
 *   E "Failed to read file: %s"
 *   E "Failed to add new sta info data to file: %s"            the write
 */
bool stationInfoAppendWriter(const char* path, StaConnection* pIncomeStaInfo, int staNum);

/*
 * Converts the rates of `cnt` records in memory to two spatial streams. If
 * mimo is MIMO_1, MIMO_3, MIMO_4 or MIMO_8, rxRate and txRate become rate x 2 /
 * streams, rounded down, and mimo becomes MIMO_2. (At MIMO_1 a result above
 * 65535 keeps its low 16 bits.) All other records keep their values. It opens no
 * file and logs nothing.
 */
void mimoSync(StaConnection* pNodeSta, int cnt);

/* ==== Candidate APs of a station ========================================= */

/*
 * Reads every line of `path` into a record of 9 fields, by line: apMac,
 * connectBand, roamingAvailable, rssi, throughput, wifimode, bandwidth,
 * mcslevel, mimo.
 *
 * Returns false when the open or the close fails or a line is blank.
 *   E "Failed to read file: %s.\n"
 *   E "sscanf error, path: %s"              a blank line; a failed close is ignored then
 *   E "fclose error, path:%s.\n"
 */
bool candidateApNodeInfoReader(const char* path, CandidateAp* pCandidateAp);

/*
 * Replaces the content of `path` with `canApNum` lines of 9 fields, in the order
 * of candidateApNodeInfoReader().
 *
 * Returns false when the open, a print or the close fails.
 *   E "Failed to write file: %s.\n"
 *   E "fclose error, path:%s.\n"            a failed close; on purpose also a failed print
 */
bool candidateApNodeInfoWriter(const char* path, CandidateAp* pCandidateAp, int canApNum);

/* ==== PAT parameters: files ============================================== */

/*
 * Reads `cnt` version 1 records of 201 fields, by field: deviceMac,
 * ALG_PAT_CAPACITY bParameter, ALG_PAT_CAPACITY cParameter. A file that is too
 * short does not end the call: each MAC and each value that is missing is
 * logged and keeps what the array held. The values of a record without a MAC
 * are not read.
 *
 * Returns false when the open or the close fails or the file is empty; true for
 * a file that is too short. The stream of an empty file stays open: this leak
 * is part of the interface.
 *   E "pat file %s does not exit."          the open, or an empty file
 *   E "sscanf error, path: %s.\n"           once for each missing MAC and each missing value
 *   E "fclose error, path:%s.\n"
 */
bool patParameterReader(const char* path, int cnt, PatParameter* pPatParameter);

/*
 * Reads version 2 records, by field: as many as the first line of `path`
 * states, but at most `cnt`. A file that cannot be opened, or that is empty, is
 * first written by patInitV2() for the device 000000000000. A file that is too
 * short does not end the call: each item that is missing is logged and keeps
 * what the array held. A device count that is missing, or is not a number, is
 * 0.
 *
 * A device line states the number of its entries:
 *   - more than ALG_PAT_CAPACITY: commonPatNum becomes ALG_PAT_CAPACITY, that
 *     many entries are stored, and the others are read and dropped;
 *   - no number, or the line is missing: commonPatNum stays as the caller's
 *     record held it, even above ALG_PAT_CAPACITY. That many entries are read;
 *     only the first ALG_PAT_CAPACITY are stored.
 *
 * Returns false when the file cannot be opened even after patInitV2() (this
 * function logs no E message for it), or when the close fails; true for a file
 * that is too short.
 *   I "pat file does not exit, init it."    no argument; the open, or an empty file
 *   E "fscanf error, path: %s.\n"           once for each missing device count, device line and
 *                                           entry, and once for a device that states more than
 *                                           ALG_PAT_CAPACITY entries
 *   E "fclose error, path:%s.\n"
 */
bool patParameterReaderV2(const char* path, int cnt, PatParameterV2* pPatParameterV2);

/*
 * Replaces the content of `path` with `apNum` version 2 records: a line with
 * `apNum`; then for each device a line with deviceMac and commonPatNum, and
 * that many lines with isChanged, bandOrder, channelWidthOrder, mcsOrder,
 * paraB, paraC. A commonPatNum above ALG_PAT_CAPACITY counts, and is written,
 * as ALG_PAT_CAPACITY. `apNum` is written in full but read back as 8 bits: 256
 * is read as 0, 300 as 44. `macPool` is not used and may be null.
 *
 * Returns false when the open or a print fails. A failed close is ignored.
 *   E "Failed to write file: %s.\n"
 *   E "fprintf error, path:%s.\n"
 */
bool patParameterWriterV2(const char* path, int apNum, PatParameterV2* pPatParameterV2,
                          char (*macPool)[ALG_MAC_SIZE]);

/*
 * Replaces the content of `path` with this one version 2 record. It reads
 * nothing: records of other devices in the file are lost.
 *
 * Always returns false, on purpose, even when the record was written.
 *   E "null pIncomeParameterV2"             no argument; the file is unchanged
 */
bool updateSinglePatV2(const char* path, PatParameterV2* pIncomeParameterV2);

/*
 * Replaces the content of `path` with the default version 2 record of the
 * device `mac` (at most ALG_MAC_SIZE bytes of it are used): one entry for each
 * row of peekThrStructure, in the same order, with paraB 64 (b = 0.1512) and
 * paraC 46094 (c = -20.49984). Only the messages of patParameterWriterV2()
 * report a failure.
 */
void patInitV2(const char* path, char* mac);

/* ==== PAT parameters: conversions in memory ============================== */
/*
 * B and C are the integers of the files, b and c the numbers of the algorithm.
 * Every step is in single precision:
 *   to b       B x 0.0008 + 0.1
 *   to c       C x 0.00064 - 50
 *   to B       (b - 0.1) x 1250, with 1250 = 1 / 0.0008, as an integer of 8 bits
 *   to C       (c + 50) x 1562.5, with 1562.5 = 1 / 0.00064, as an integer of
 *              16 bits
 * A number becomes an integer in three steps: it is rounded to the nearest
 * integer, halves away from zero; it is limited to 32 bits (a negative number
 * or NaN becomes 0, a number above 4294967295 becomes 4294967295); then only
 * the low 8 or 16 bits are kept. So b from 0.1 to 0.304 and c from -50 to
 * -8.0576 can be stored. A smaller value is stored as 0; a larger one wraps, on
 * purpose. Converting an 8-bit B to b and back returns the same B, and likewise
 * for a 16-bit C.
 *
 * The conversions open no file and log nothing.
 */

/*
 * Converts `cnt` version 1 records from integers to floats. Each slot of allParameter
 * receives three values: the threshold from peekThr; b; c minus
 * ai_yra_patc_compensation. The setting is read once, at the start of the call.
 * deviceMac is not copied, on purpose.
 *
 * Always returns true.
 */
bool patInt2Alg(int cnt, PatParameter* pPatParameter, AlgPatParameter* pAlgPatParameter);

/*
 * Converts `cnt` version 2 records from integers to floats. It copies deviceMac,
 * commonPatNum (at most ALG_PAT_CAPACITY) and the three orders of each entry, and
 * sets its paraA from getPeekThr(), its paraB to b and its paraC to c. The
 * compensation is not applied.
 */
void patInt2AlgV2(int cnt, PatParameterV2* pPatParameterV2, AlgPatParameterV2* pAlgPatParameterV2);

/*
 * Converts `cnt` version 2 records from floats to integers. The integer records
 * are the destination, although they are the first array. It copies deviceMac,
 * commonPatNum (at most ALG_PAT_CAPACITY) and the three orders of each entry,
 * and stores paraB and paraC as B and C. A B that differs from the one the
 * entry held sets bit 0 of isChanged, a C that differs sets bit 1; no bit is
 * ever cleared. So pass the integer records as they were read from the file.
 *
 * Always returns true.
 */
bool patAlg2IntV2(int cnt, PatParameterV2* pPatParameterV2, AlgPatParameterV2* pAlgPatParameterV2);

/* ==== Peak thresholds and settings ======================================= */

/* patInt2Alg() subtracts it from every c. Initially 10.0; ai_alg_set_patc_comp() sets it. */
extern float ai_yra_patc_compensation;

/* scanningInfoReader() subtracts it from every RSSI. Initially 3; the host may set it directly. */
extern uint8_t ai_yra_rssi_compensation;

/*
 * Looks up the peak throughput threshold of a configuration.
 *
 * Returns that of the first row of peekThrStructure with these three orders, or 1
 * if there is none.
 */
uint16_t getPeekThr(uint8_t bandOrder, uint8_t channelWidthOrder, uint8_t mcsOrder);

/*
 * Sets ai_yra_patc_compensation.
 *   N "setting ai_yra_patc_compensation to [%f]"                 the new value
 */
void ai_alg_set_patc_comp(int patc_comp);

/* ==== Scanning info: sightings of neighbours ============================= */
/*
 * The deleter and the appends read the file with scanningInfoReader() and write
 * back what they read. So each of these calls lowers the RSSI of every old record
 * that it keeps by ai_yra_rssi_compensation, but not below 1, on purpose: older
 * sightings count less.
 */

/*
 * Reads every line of `path` into a record of 5 fields, by line: deviceMAC,
 * neighbourMAC, band (at most 2 digits), channel, rssi (at most 3 digits each).
 * A number with more digits is split: the rest is read as the next field. Each
 * rssi is then lowered by ai_yra_rssi_compensation, but not below 1; the
 * setting is read again for every line.
 *
 * Returns false when the open or the close fails or a line is blank; the array
 * keeps the records before that line.
 *   E "Failed to read file : %s.\n"
 *   E "sscanf error, path: %s.\n"           a blank line; a failed close is ignored then
 *   E "fclose error, path: %s.\n"
 */
bool scanningInfoReader(const char* path, ScanningInfo* pScanningInfo);

/*
 * Replaces the content of `path` with `cnt` lines of 5 fields, in the order of
 * scanningInfoReader(). Records with empty MACs are written too.
 *
 * Returns false when the open, a print or the close fails.
 *   E "Failed to write file: %s.\n"
 *   E "fclose error, path:%s.\n"            a failed close; on purpose also a failed print
 */
bool scanningInfoWriter(const char* path, ScanningInfo* pScanningInfo, int cnt);

/*
 * Removes every record whose deviceMAC is `curApMac`; the others keep their
 * order. A missing or empty file is a success and is not touched.
 *
 * Returns false when an allocation, the read or the write fails.
 *   I "There is no history data, just return."                 missing or empty file; no argument
 *   E "Failed to allocate memory for ScanningInfo"             no argument
 *   E "Failed to read file: %s"
 *   E "Failed to add new scanning info data to file: %s"       the write
 */
bool scanningInfoDeleter(const char* path, const char* curApMac);

/*
 * Adds `cnt` records at the end of `path` and keeps the newest
 * ALG_SCANNING_CAP. A missing or empty file receives all of them, without a
 * cap; a negative `cnt` leaves it empty. If the file has records, a negative
 * `cnt` makes the allocation fail, and the file is unchanged.
 *
 * Returns false when `pIncomeScanningInfo` is null (checked after the lines are
 * counted), and when the allocation, the read or the write fails.
 *   E "null pIncomeScanningInfo"                               no argument
 *   I "Just save income scanning data"                         missing or empty file; no argument
 *   I "Scanning Info has been written to file: %s"             then, if the write succeeds
 *   E "Failed to write to file: %s"                            then, if the write fails
 *   E "Failed to allocate memory for ScanningInfo"             no argument
 *   E "Failed to read file: %s"
 *   E "Failed to add new scanning info data to file: %s"       the write
 */
bool appendScanningInfo(const char* path, ScanningInfo* pIncomeScanningInfo, int cnt);

/*
 * Does the same as appendScanningInfo() for one record.
 * It logs the same messages under its own name.
 *
 * Returns the same as appendScanningInfo().
 */
bool appendSingleScanningInfo(const char* path, ScanningInfo* pIncomeScanningInfo);

/* ==== Time delay info: latency towards fathers =========================== */

/*
 * Reads `cnt` records of 16 fields, by field: fatherMAC and ALG_DELAY_SAMPLES
 * delayTime. A file that is too short does not end the call: each MAC and each
 * sample that is missing is logged and keeps what the array held. The samples
 * of a record without a MAC are not read. Then every sample of all `cnt`
 * records, read or not, is limited to the range 1 to 1000.
 *
 * Returns false when the open or the close fails; true for a file that is too
 * short.
 *   E "Failed to read file : %s.\n"
 *   E "sscanf error, path: %s.\n"           once for each missing MAC and each missing sample
 *   E "fclose error, path: %s.\n"
 */
bool timeDelayInfoReader(const char* path, TimeDelayInfo* pTimeDelayInfo, int cnt);

/*
 * Replaces the content of `path` with at most `cnt` lines of 16 fields, in the
 * order of timeDelayInfoReader(). It stops before the first record that has an
 * empty fatherMAC.
 *
 * Returns false when the open, the print of a MAC or the close fails. A failed
 * print of a sample is only logged, that of a newline is ignored.
 *   E "Failed to write file: %s.\n"
 *   E "fprintf error, path:%s.\n"           the print of a MAC
 *   E "sscanf error, path: %s."             the print of a sample; on purpose with this text
 *   E "fclose error, path:%s.\n"
 */
bool timeDelayInfoWriter(const char* path, TimeDelayInfo* pTimeDelayInfo, int cnt);

/*
 * Creates `path` as an empty file, or empties it. Unlike the writers it opens the
 * file for reading too, so it fails for a file that cannot be read.
 *
 * Returns false when the open or the close fails.
 *   E "Failed to write file: %s.\n"
 *   E "fclose error, path:%s.\n"
 */
bool emptyTimeDelayFile(const char* path);

/*
 * Replaces the first record that has the new record's fatherMAC with the new
 * record, or adds the new record at the end. There is no cap. A missing or empty
 * file becomes this one record. The new record is written as it is, the other
 * records as timeDelayInfoReader() returned them.
 *
 * A blank line counts as a line but holds no record, so the last record of the
 * array stays empty. The writer stops at a record with an empty fatherMAC: a new
 * record that is added after it is not stored, although the result is true.
 *
 * Returns false when `pIncomeTimeDelayInfo` is null (checked after the lines are
 * counted), and when the allocation, the read or the write fails.
 *   E "null pIncomeTimeDelayInfo"                              no argument
 *   I "Just save income time dalay data"                       missing or empty file; no argument
 *   I "time delay Info has been written to file: %s"           then, if the write succeeds
 *   E "Failed to write to file: %s"                            then, if the write fails
 *   E "Failed to allocate memory for ScanningInfo"             no argument; on purpose with this name
 *   E "Failed to read file: %s"
 *   I "income time delay info found @index %d"                 its index in the file, from 0
 *   E "Failed to save new time delay info to file: %s"         the write after a replacement
 *   I "income time delay info not found, inserting..."         no argument
 *   E "Failed to add time delay info data to file: %s"         the write after an insertion
 */
bool updateSingleTimeDelayInfo(const char* path, TimeDelayInfo* pIncomeTimeDelayInfo);

/*
 * Adds the new record at the end, without a search for its fatherMAC, and keeps
 * the newest ALG_TIME_DELAY_CAP records. Everything else, blank lines included,
 * is as in updateSingleTimeDelayInfo().
 *
 * Returns the same as updateSingleTimeDelayInfo().
 *   E "null pIncomeTimeDelayInfo"                              no argument
 *   I "Just save income timeDelay data"                        missing or empty file; no argument
 *   I "Time delay Info has been written to file: %s"           then, if the write succeeds
 *   E "Failed to write to file: %s"                            then, if the write fails
 *   E "Failed to allocate memory for TimeDelayInfo"            no argument
 *   E "Failed to read file: %s"
 *   E "Failed to add new timeDelay info data to file: %s"      the write
 */
bool appendSingleTimeDelayInfo(const char* path, TimeDelayInfo* pIncomeTimeDelayInfo);

/* ==== Score info: the scoring of candidate fathers ======================= */

/*
 * Replaces the content of `path` with at most `apNum` lines of 22 fields:
 * fatherMAC, apRank, hopsFactor, timeDelayTestCnt, timeDelayAverage,
 * timeNormalization, thrputPredict, then rssi of each band, negoRate of each
 * band, patRate of each band. hopsFactor and timeNormalization are written with
 * two decimals. It stops before the first record that has an empty fatherMAC.
 *
 * Returns false when the open, the print of the first seven fields or the close
 * fails. A failed print of a later value is only logged, that of a newline is
 * ignored.
 *   E "Failed to write file: %s.\n"
 *   E "fprintf error, path:%s.\n"           the print of the first seven fields
 *   E "sscanf error, path: %s."             the print of a later value; on purpose with this text
 *   E "fclose error, path:%s.\n"
 */
bool scoreInfoWriter(const char* path, ScoreInfo* pScoreInfo, int apNum);

/*
 * Reads `cnt` records of 22 fields, as scoreInfoWriter() writes them, by field.
 * It changes no value. A file that is too short does not end the call: what is
 * missing is logged and keeps what the array held.
 *
 * Returns false when the open or the close fails; true for a file that is too
 * short.
 *   E "Failed to read file : %s.\n"
 *   E "sscanf error, path: %s.\n"           once for each missing record, and for each missing
 *                                           value of rssi, negoRate and patRate
 *   E "fclose error, path: %s.\n"
 */
bool scoreInfoReader(const char* path, ScoreInfo* pScoreInfo, int cnt);

/*
 * Checks whether a file is empty. Despite its name it returns no count.
 *
 * Returns 1 when the file is empty, when it contains only white space, and when
 * the read fails. Returns 0 in all other cases, a failed open included. A failed
 * close is ignored.
 *   E "Failed to read file : %s.\n"
 */
int scoreInfoCntReader(const char* path);

/* ==== AP rank: the rank of every device ================================== */

/*
 * Reads every line of `path` into a record of 3 fields, by line: deviceMAC,
 * ethFatherMAC, apRank.
 *
 * Returns false when the open or the close fails or a line is blank.
 *   E "Failed to read file : %s.\n"
 *   E "sscanf error, path: %s.\n"           a blank line; a failed close is ignored then
 *   E "fclose error, path: %s.\n"
 */
bool apRankInfoReader(const char* path, ApRank* pApRank);

/*
 * Replaces the content of `path` with `cnt` lines of 3 fields, in the order of
 * apRankInfoReader().
 *
 * Returns false when the open, a print or the close fails.
 *   E "fopen error, path: %s."
 *   E "fprintf error, path: %s"
 *   E "fclose error, path:%s.\n"            the close; may follow the fprintf message
 */
bool apRankInfoWriter(const char* path, ApRank* pApRank, int cnt);

/*
 * Replaces the first record that has the new record's deviceMAC with the new
 * record, or adds the new record at the end. There is no cap. A missing or empty
 * file becomes this one record.
 *
 * Returns false when `pIncomeApRank` is null (checked after the lines are
 * counted), and when an allocation, the read or the write fails.
 *   E "null pIncomeApRank"                                     no argument
 *   I "Income AP Rank from %s, %d items of old ApRankInfo"     deviceMAC, line count (-1: not counted)
 *   I "Just save apRankInfo"                                   missing or empty file; no argument
 *   I "AP rank info has been written to file: %s"              then, if the write succeeds
 *   E "Failed to write to file: %s"                            then, if the write fails
 *   E "Failed to allocate memory for pApRank"                  no argument
 *   E "Failed to read file: %s"
 *   I "income ap rank info found @index %d"                    its index in the file, from 0
 *   E "Failed to save new ap info to file: %s"                 the write after a replacement
 *   I "income ap rank info not found, inserting..."            no argument
 *   E "failed to reallocte memory."                            no argument; the array cannot grow
 *   E "Failed to add ap rank info data to file: %s"            the write after an insertion
 */
bool updataSingleApRankInfo(const char* path, ApRank* pIncomeApRank);

/* ==== AP rank index: the current ranking ================================= */

/*
 * Reads one record, by line: a header line with cnt, process_re, alg_strategy
 * and starttime, then entry lines with deviceMAC, fatherMAC, apRank and
 * throughput. All entry lines are read into apRank[0], apRank[1] and so on; the
 * count in the header does not limit them. An empty file leaves the record
 * unchanged.
 *
 * cnt is what the header states, up to 255, even if the file has fewer entry
 * lines or apRank has no room for so many. The host must not use more than
 * ALG_RANK_INDEX_CAPACITY entries.
 *
 * Returns false when the open or the close fails, when a line is blank, and
 * when there are more than ALG_RANK_INDEX_CAPACITY entry lines; the record
 * keeps what was read before that line.
 *   E "Failed to read file : %s.\n"
 *   E "sscanf error, path: %s.\n"           a blank line, or an entry line too many; a failed
 *                                           close is ignored then
 *   E "fclose error, path: %s.\n"
 */
bool apRankIndexInfoReader(const char* path, ApRankIndex* pApRankIndex);

/*
 * Replaces the content of `path` with one record: the header line and cnt entry
 * lines, with the fields in the order of apRankIndexInfoReader(). A cnt above
 * ALG_RANK_INDEX_CAPACITY is refused before the file is opened.
 *
 * Returns false for such a cnt, and when the open, a print or the close fails.
 *   E "fopen error, path: %s."
 *   E "fprintf error, path: %s"             a print, or a cnt that is refused
 *   E "fclose error, path:%s.\n"            the close; may follow the fprintf message
 */
bool apRankIndexInfoWriter(const char* path, ApRankIndex* pApRankIndex);

/* ==== Algorithm output: the latest decision ============================== */

/*
 * Reads the first line of `path` into one record: srcMAC, dstMAC, algStrategy
 * as an unsigned number, timeout. Later lines are not read. An empty file
 * leaves the record unchanged.
 *
 * Returns false when the open or the close fails or the first line is blank.
 *   E "Failed to read file : %s.\n"
 *   E "sscanf error, path: %s.\n"           a blank first line; a failed close is ignored then
 *   E "fclose error, path: %s.\n"
 */
bool apAlgOutputInfoReader(const char* path, ApAlgInterfaceOutput* pApAlgOutput);

/*
 * Replaces the content of `path` with one record: a line with the fields in the
 * order of apAlgOutputInfoReader(). algStrategy is written as a signed number, on
 * purpose, although it is read as an unsigned one.
 *
 * Returns false when the open, the print or the close fails.
 *   E "fopen error, path: %s."
 *   E "fprintf error, path: %s"
 *   E "fclose error, path:%s.\n"            the close; may follow the fprintf message
 */
bool apAlgOutputInfoWriter(const char* path, ApAlgInterfaceOutput* pApAlgOutput);

#ifdef __cplusplus
}
#endif

#endif
