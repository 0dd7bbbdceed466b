/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Writes records with values that fit their format, reads them back and compares
 * every field with what the description in formats/ predicts. After an update, all
 * records of the file are compared.
 */
#include "support/fuzzing.h"

#include <stdio.h>

#include "formats/access.h"
#include "formats/formats.h"

enum { MAX_RECORDS = 8 }; /* per run */

/* ---- Records ------------------------------------------------------------ */

/* Brings a value into the range that a line can store. */
static void fitValue(fuzz::Input& in, const formats::Field& field, void* base, int element)
{
    if (field.type == formats::Type::Mac) {
        in.hexMac(*reinterpret_cast<char(*)[ALG_MAC_SIZE]>(formats::addressOf(field, base, element)));
    } else if (field.type == formats::Type::F32) {
        const float value = static_cast<float>(in.byte());
        formats::setReal(field, base, element, element % 2 == 0 ? value / 7.0F - 18.0F : value * 4321.0F);
    } else if (field.widthIn != 0) {
        uint32_t limit = 10;
        for (int digits = 1; digits < field.widthIn; ++digits)
            limit *= 10;
        formats::setNumber(field, base, element, formats::number(field, base, element) % limit);
    }
}

/* Fills a record with values that a line can store. Entries are fitted later, once their number is known. */
template <typename Record> static void fillRecord(fuzz::Input& in, const formats::Kind& kind, Record& record)
{
    in.fill(record);
    formats::eachField(kind.record, [&](const formats::Field& field, int element) {
        fitValue(in, field, &record, element);
    });
}

static void fitEntries(fuzz::Input& in, const formats::Kind& kind, void* record)
{
    for (size_t i = 0; i < formats::entryCount(kind, record); ++i) {
        formats::eachField(kind.entries.layout, [&](const formats::Field& field, int element) {
            fitValue(in, field, formats::entryAt(kind, record, i), element);
        });
    }
}

/* Sets a MAC that no other record of the run has. */
static void setUniqueMac(char (&mac)[ALG_MAC_SIZE], int number)
{
    memset(mac, 0, sizeof mac);
    snprintf(mac, sizeof mac, "%012x", number);
}

/* ---- Comparison of what was read back ------------------------------------ */

/* The value after it was printed with two decimals and read back. */
static float roundToTwoDecimals(float value)
{
    char text[64];
    snprintf(text, sizeof text, "%.2f", static_cast<double>(value));
    return strtof(text, nullptr);
}

/*
 * Whether a field was read back as expected. Without `loads` that is the stored value, with it the value as
 * the reader converts it. A position field must equal `position`.
 */
static bool isReadBack(const formats::Field& field, const char* loaded, const char* stored, int element,
                       bool loads, int position)
{
    if (field.type == formats::Type::Mac)
        return strcmp(formats::addressOf(field, loaded, element),
                      formats::addressOf(field, stored, element)) == 0;
    if (field.type == formats::Type::F32)
        return formats::real(field, loaded, element) ==
               roundToTwoDecimals(formats::real(field, stored, element));
    const uint32_t value = formats::number(field, stored, element);
    const uint32_t expected = field.position ? static_cast<uint32_t>(position)
                              : loads        ? formats::loadedValue(field, value, ai_yra_rssi_compensation)
                                             : value;
    return formats::number(field, loaded, element) == expected;
}

/* Compares all fields of a record and of its entries. */
template <typename Record>
static void expectRecord(const formats::Kind& kind, const Record& loaded, const Record& stored, bool loads,
                         int position = 0)
{
    const char* const actual = reinterpret_cast<const char*>(&loaded);
    const char* const expected = reinterpret_cast<const char*>(&stored);
    formats::eachValue(kind, formats::entryCount(kind, expected),
                       [&](const formats::Field& field, size_t base, int element) {
                           FUZZ_EXPECT(
                               isReadBack(field, actual + base, expected + base, element, loads, position));
                       });
}

enum : bool { AS_STORED = false, LOADED = true };

/* ---- AP node info ------------------------------------------------------- */

static void apNodes(fuzz::Input& in, const char* path, int count)
{
    fuzz::Array<ApNodeV2> nodes(count);
    fuzz::Array<ApNodeV2> loaded(count);
    fuzz::Array<char[ALG_MAC_SIZE]> macs(count);
    for (int i = 0; i < count; ++i)
        fillRecord(in, formats::apNode, nodes[i]);
    FUZZ_EXPECT(apNodeInfoWriterV2(path, count, nodes.get()));
    FUZZ_EXPECT(apNodeInfoReaderV2(path, static_cast<uint8_t>(count), loaded.get(), macs.get()));
    for (int i = 0; i < count; ++i) {
        expectRecord(formats::apNode, loaded[i], nodes[i], LOADED);
        FUZZ_EXPECT(strcmp(macs[i], nodes[i].deviceMAC) == 0);
    }
}

/* ---- AP-all info -------------------------------------------------------- */

static void expectInfo(const ApInfoAllV2& loaded, const ApInfoAllV2& info)
{
    expectRecord(formats::apAll, loaded, info, AS_STORED);
}

static void apAll(fuzz::Input& in, const char* path, int count)
{
    fuzz::Array<ApInfoAllV2> infos(count + 1);
    for (int i = 0; i <= count; ++i) {
        fillRecord(in, formats::apAll, infos[i]);
        setUniqueMac(infos[i].apNodeV2.deviceMAC, i);
    }
    FUZZ_EXPECT(apAllInfoWriter(path, infos.get(), count, false));

    /* Replaces the first record, adds a new one, then deletes the first one. */
    if (count > 0) {
        in.fill(infos[0].algWifiMode);
        FUZZ_EXPECT(updataSingleApAllInfo(path, &infos[0]));
    }
    FUZZ_EXPECT(updataSingleApAllInfo(path, &infos[count]));
    fuzz::Array<ApInfoAllV2> loaded(count + 1);
    FUZZ_EXPECT(fuzz::records(path) == count + 1);
    FUZZ_EXPECT(apAllInfoOnlyReader(path, loaded.get(), count + 1, nullptr));
    for (int i = 0; i <= count; ++i)
        expectInfo(loaded[i], infos[i]);

    FUZZ_EXPECT(deleteSingleApAllInfo(path, infos[0].apNodeV2.deviceMAC));
    FUZZ_EXPECT(fuzz::records(path) == count);
    FUZZ_EXPECT(apAllInfoOnlyReader(path, loaded.get(), count, nullptr));
    if (count > 0)
        expectInfo(loaded[0], infos[count]);
    for (int i = 1; i < count; ++i)
        expectInfo(loaded[i], infos[i]);

    FUZZ_EXPECT(apAllInfoReader(path, loaded.get(), count, nullptr));
    for (int i = 1; i < count; ++i)
        expectRecord(formats::apAll, loaded[i], infos[i], LOADED);
}

/* The writer repeats the first record `count` times. */
static void apAllDetail(fuzz::Input& in, const char* path, int count)
{
    fuzz::Array<ApInfoAllV2> info(1);
    fuzz::Array<ApInfoAllV2> loaded(1);
    fillRecord(in, formats::apAllDetail, info[0]);
    FUZZ_EXPECT(apAllDetailInfoWriter(path, info.get(), count, false));
    FUZZ_EXPECT(fuzz::records(path) == count);
    FUZZ_EXPECT(apAllDetailInfoReader(path, loaded.get(), static_cast<uint8_t>(count), nullptr));
    if (count > 0)
        expectRecord(formats::apAllDetail, loaded[0], info[0], LOADED);
}

/* ---- Bridging info ------------------------------------------------------ */

/* Adds every record with an update. All are kept: they are below the cap and no father repeats. */
static void bridging(fuzz::Input& in, const char* path, int count)
{
    const bool isFap = in.upTo(1) == 1;
    FUZZ_EXPECT(bridgingApNodeInfoWriter(path, nullptr, 0));
    fuzz::Array<BridgingNodeV2> nodes(count);
    for (int i = 0; i < count; ++i) {
        fillRecord(in, formats::bridging, nodes[i]);
        setUniqueMac(nodes[i].fatherDeviceMAC, i + 1);
        FUZZ_EXPECT(updateSingleBridgingInfo(path, &nodes[i], isFap));
    }
    FUZZ_EXPECT(fuzz::records(path) == count);
    fuzz::Array<BridgingNodeV2> loaded(count);
    FUZZ_EXPECT(bridgingApNodeInfoReader(path, loaded.get()));
    for (int i = 0; i < count; ++i)
        expectRecord(formats::bridging, loaded[i], nodes[i], LOADED);
}

/* ---- Stations ----------------------------------------------------------- */

/* Appends to a file of 1 to ALG_STATION_CAP + 1 samples. The newest are kept. */
static void stations(fuzz::Input& in, const char* path, int count)
{
    const int old = 1 + in.upTo(ALG_STATION_CAP);
    fuzz::Array<StaConnection> stas(old + count);
    for (int i = 0; i < stas.count(); ++i) {
        if (i < 3 || i >= old)
            fillRecord(in, formats::station, stas[i]);
        else
            stas[i] = stas[i - 3];
    }
    FUZZ_EXPECT(stationNodeInfoWriter(path, stas.get(), old));
    FUZZ_EXPECT(stationInfoAppendWriter(path, stas.get() + old, count));

    const int total = old + count;
    const int kept = total < ALG_STATION_CAP ? total : static_cast<int>(ALG_STATION_CAP);
    FUZZ_EXPECT(fuzz::records(path) == kept);
    fuzz::Array<StaConnection> loaded(kept);
    FUZZ_EXPECT(stationInfoOnlyReader(path, loaded.get()));
    for (int i = 0; i < kept; ++i)
        expectRecord(formats::station, loaded[i], stas[total - kept + i], LOADED, i);
}

static void candidates(fuzz::Input& in, const char* path, int count)
{
    fuzz::Array<CandidateAp> aps(count);
    fuzz::Array<CandidateAp> loaded(count);
    for (int i = 0; i < count; ++i)
        fillRecord(in, formats::candidate, aps[i]);
    FUZZ_EXPECT(candidateApNodeInfoWriter(path, aps.get(), count));
    FUZZ_EXPECT(fuzz::records(path) == count);
    FUZZ_EXPECT(candidateApNodeInfoReader(path, loaded.get()));
    for (int i = 0; i < count; ++i)
        expectRecord(formats::candidate, loaded[i], aps[i], LOADED);
}

/* ---- PAT parameters ----------------------------------------------------- */

/*
 * Writes and reads back the parameters, then converts them to floats and back. A value that differs after
 * the conversion sets its isChanged flag.
 */
static void pats(fuzz::Input& in, const char* path, int count)
{
    fuzz::Array<PatParameterV2> pats(count);
    fuzz::Array<PatParameterV2> loaded(count);
    fuzz::Array<AlgPatParameterV2> algs(count);
    for (int i = 0; i < count; ++i) {
        fillRecord(in, formats::patV2, pats[i]);
        pats[i].commonPatNum %=
            i == 0 ? 256 : 8; /* the first may exceed the capacity; the others keep the run fast */
    }
    FUZZ_EXPECT(patParameterWriterV2(path, count, pats.get(), nullptr));
    FUZZ_EXPECT(patParameterReaderV2(path, count, loaded.get()));
    patInt2AlgV2(count, loaded.get(), algs.get());
    FUZZ_EXPECT(patAlg2IntV2(count, loaded.get(), algs.get()));
    for (int i = 0; i < count; ++i) {
        if (pats[i].commonPatNum > ALG_PAT_CAPACITY) /* the writer stores at most the capacity */
            pats[i].commonPatNum = ALG_PAT_CAPACITY;
        expectRecord(formats::patV2, loaded[i], pats[i], LOADED);
        if (loaded[i].commonPatNum == 0)
            continue;
        loaded[i].singlePat[0].paraB ^= 1;
        FUZZ_EXPECT(patAlg2IntV2(1, &loaded[i], &algs[i]));
        FUZZ_EXPECT(loaded[i].singlePat[0].isChanged == (pats[i].singlePat[0].isChanged | 1));
        FUZZ_EXPECT(loaded[i].singlePat[0].paraB == pats[i].singlePat[0].paraB);
    }
}

/* ---- Measurement history ------------------------------------------------ */

/* The RSSI of the old sighting is lowered twice: by the append and by the last read. */
static void scans(fuzz::Input& in, const char* path, int count)
{
    ai_yra_rssi_compensation = in.byte();
    fuzz::Array<ScanningInfo> scans(count + 1);
    for (int i = 0; i <= count; ++i)
        fillRecord(in, formats::scanning, scans[i]);
    FUZZ_EXPECT(scanningInfoWriter(path, scans.get(), 1));
    FUZZ_EXPECT(appendScanningInfo(path, scans.get() + 1, count));
    FUZZ_EXPECT(fuzz::records(path) == count + 1);
    scans[0].rssi = static_cast<uint8_t>(
        formats::loadedValue(formats::Load::Rssi, scans[0].rssi, ai_yra_rssi_compensation));
    fuzz::Array<ScanningInfo> loaded(count + 1);
    FUZZ_EXPECT(scanningInfoReader(path, loaded.get()));
    for (int i = 0; i <= count; ++i)
        expectRecord(formats::scanning, loaded[i], scans[i], LOADED);

    int others = 0;
    for (int i = 0; i <= count; ++i)
        others += strcmp(scans[i].deviceMAC, scans[0].deviceMAC) != 0;
    FUZZ_EXPECT(scanningInfoDeleter(path, scans[0].deviceMAC));
    FUZZ_EXPECT(fuzz::records(path) == others);
}

static void delays(fuzz::Input& in, const char* path, int count)
{
    FUZZ_EXPECT(emptyTimeDelayFile(path));
    fuzz::Array<TimeDelayInfo> infos(count);
    for (int i = 0; i < count; ++i) {
        fillRecord(in, formats::timeDelay, infos[i]);
        setUniqueMac(infos[i].fatherMAC, i);
        FUZZ_EXPECT(i % 2 == 0 ? updateSingleTimeDelayInfo(path, &infos[i])
                               : appendSingleTimeDelayInfo(path, &infos[i]));
    }
    FUZZ_EXPECT(fuzz::records(path) == count);
    fuzz::Array<TimeDelayInfo> loaded(count);
    FUZZ_EXPECT(timeDelayInfoReader(path, loaded.get(), count));
    for (int i = 0; i < count; ++i)
        expectRecord(formats::timeDelay, loaded[i], infos[i], LOADED);
}

static void scores(fuzz::Input& in, const char* path, int count)
{
    fuzz::Array<ScoreInfo> scores(count);
    fuzz::Array<ScoreInfo> loaded(count);
    for (int i = 0; i < count; ++i)
        fillRecord(in, formats::score, scores[i]);
    FUZZ_EXPECT(scoreInfoWriter(path, scores.get(), count));
    FUZZ_EXPECT(fuzz::records(path) == count);
    FUZZ_EXPECT(scoreInfoCntReader(path) == (count == 0 ? 1 : 0));
    FUZZ_EXPECT(scoreInfoReader(path, loaded.get(), count));
    for (int i = 0; i < count; ++i)
        expectRecord(formats::score, loaded[i], scores[i], LOADED);
}

/* ---- Ranking and decisions ---------------------------------------------- */

static void ranks(fuzz::Input& in, const char* path, int count)
{
    FUZZ_EXPECT(apRankInfoWriter(path, nullptr, 0));
    fuzz::Array<ApRank> ranks(count);
    for (int i = 0; i < count; ++i) {
        fillRecord(in, formats::apRank, ranks[i]);
        setUniqueMac(ranks[i].deviceMAC, i);
        FUZZ_EXPECT(updataSingleApRankInfo(path, &ranks[i]));
    }
    if (count > 0) {
        ranks[count / 2].apRank = in.byte();
        FUZZ_EXPECT(updataSingleApRankInfo(path, &ranks[count / 2]));
    }
    FUZZ_EXPECT(fuzz::records(path) == count);
    fuzz::Array<ApRank> loaded(count);
    FUZZ_EXPECT(apRankInfoReader(path, loaded.get()));
    for (int i = 0; i < count; ++i)
        expectRecord(formats::apRank, loaded[i], ranks[i], LOADED);
}

static void rankIndex(fuzz::Input& in, const char* path, int)
{
    fuzz::Array<ApRankIndex> index(1);
    fuzz::Array<ApRankIndex> loaded(1);
    fillRecord(in, formats::apRankIndex, index[0]);
    index[0].cnt %= ALG_RANK_INDEX_CAPACITY + 1;
    fitEntries(in, formats::apRankIndex, &index[0]);
    FUZZ_EXPECT(apRankIndexInfoWriter(path, index.get()));
    FUZZ_EXPECT(apRankIndexInfoReader(path, loaded.get()));
    expectRecord(formats::apRankIndex, loaded[0], index[0], LOADED);
}

static void output(fuzz::Input& in, const char* path, int)
{
    fuzz::Array<ApAlgInterfaceOutput> outputs(1);
    fuzz::Array<ApAlgInterfaceOutput> loaded(1);
    fillRecord(in, formats::algOutput, outputs[0]);
    FUZZ_EXPECT(apAlgOutputInfoWriter(path, outputs.get()));
    FUZZ_EXPECT(apAlgOutputInfoReader(path, loaded.get()));
    expectRecord(formats::algOutput, loaded[0], outputs[0], LOADED);
}

/* ---- All families ------------------------------------------------------- */

FUZZ_TARGET(roundTrip)
{
    typedef void (*RoundTrip)(fuzz::Input & in, const char* path, int count);
    static const RoundTrip trips[] = {apNodes, apAll,  bridging, stations,  candidates, pats,       scans,
                                      delays,  scores, ranks,    rankIndex, output,     apAllDetail};
    const RoundTrip trip = trips[in.upTo(sizeof trips / sizeof trips[0] - 1)];
    const int count = in.upTo(MAX_RECORDS);
    trip(in, fuzz::memoryFile(), count);
}
