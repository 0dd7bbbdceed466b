/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The module and the description of its files check each other. Every writer prints the
 * text that follows from the description, and every reader returns the values that
 * follow from the description.
 */
#include "formats/access.h"
#include "operations.h"

#include <stdint.h>

enum { RECORDS = 3 };

/* Room for three records of any kind. */
union Records {
    ApInfoAllV2 apAll[RECORDS];
    PatParameter patV1[RECORDS];
    PatParameterV2 patV2[RECORDS];
    ApRankIndex index;
    char bytes[RECORDS * sizeof(PatParameterV2)];
};

static char* recordAt(Kind kind, Records& records, int i)
{
    return records.bytes + recordSize(kind) * static_cast<size_t>(i);
}

/* ---- The module's writers and readers ----------------------------------- */

static bool write(Kind kind, Records& records, int count)
{
    switch (kind) {
    case AP_NODE:
        return apNodeInfoWriterV2("f", count, reinterpret_cast<ApNodeV2*>(&records));
    case AP_ALL:
        return apAllInfoWriter("f", records.apAll, count, false);
    case AP_DETAIL:
        return apAllDetailInfoWriter("f", records.apAll, 1, false);
    case BRIDGING:
        return bridgingApNodeInfoWriter("f", reinterpret_cast<BridgingNodeV2*>(&records), count);
    case STATION:
        return stationNodeInfoWriter("f", reinterpret_cast<StaConnection*>(&records), count);
    case CANDIDATE:
        return candidateApNodeInfoWriter("f", reinterpret_cast<CandidateAp*>(&records), count);
    case PAT_V2:
        return patParameterWriterV2("f", count, records.patV2, nullptr);
    case SCANNING:
        return scanningInfoWriter("f", reinterpret_cast<ScanningInfo*>(&records), count);
    case TIME_DELAY:
        return timeDelayInfoWriter("f", reinterpret_cast<TimeDelayInfo*>(&records), count);
    case SCORE:
        return scoreInfoWriter("f", reinterpret_cast<ScoreInfo*>(&records), count);
    case AP_RANK:
        return apRankInfoWriter("f", reinterpret_cast<ApRank*>(&records), count);
    case RANK_INDEX:
        return apRankIndexInfoWriter("f", &records.index);
    case OUTPUT:
        return apAlgOutputInfoWriter("f", reinterpret_cast<ApAlgInterfaceOutput*>(&records));
    default:
        return false; /* PAT version 1 has no writer */
    }
}

/* Reads with the reader that the description names. */
static bool read(Kind kind, Records& records, int count)
{
    char macs[RECORDS][ALG_MAC_SIZE];
    for (const Reader& reader : readers) {
        if (strcmp(reader.name, formatOf(kind).reader()) == 0)
            return reader.read(&records, count, macs);
    }
    return false;
}

/* The number of records per file: 1 for kinds whose file, write or read is one record. */
static int recordsOf(Kind kind)
{
    return kind == AP_DETAIL || kind == RANK_INDEX || kind == OUTPUT ? 1 : static_cast<int>(RECORDS);
}

/* ---- Writing and reading ------------------------------------------------ */

static void fill(Kind kind, Records& records)
{
    memset(&records, 0, sizeof records);
    for (int i = 0; i < recordsOf(kind); ++i)
        fillRecord(kind, i + 2, recordAt(kind, records, i));
}

static void expectWritten(Kind kind, Records& records)
{
    static char expected[FILE_ROOM];
    const size_t size = printRecords(kind, records.bytes, recordsOf(kind), expected);
    expected[size] = '\0';
    ASSERT_TRUE(write(kind, records, recordsOf(kind)));
    EXPECT_STREQ(expected, test::fileText("f"));
}

/* Reports the field if its value is not as expected. */
static void expectValue(const formats::Kind& kind, const formats::Field& field, const char* stored,
                        const char* loaded, int element, int position)
{
    char expected[64];
    char actual[64];
    const char* const prefix = element > 0 ? "an element of " : "";
    if (field.type == formats::Type::Mac) {
        snprintf(expected, sizeof expected, "%s", formats::addressOf(field, stored, element));
        snprintf(actual, sizeof actual, "%s", formats::addressOf(field, loaded, element));
    } else if (field.type == formats::Type::F32) {
        snprintf(expected, sizeof expected, "%.2f",
                 static_cast<double>(formats::real(field, stored, element)));
        snprintf(actual, sizeof actual, "%.2f", static_cast<double>(formats::real(field, loaded, element)));
    } else {
        const uint32_t number = formats::number(field, stored, element);
        const uint32_t value = formats::loadedValue(field, number, ai_yra_rssi_compensation);
        snprintf(expected, sizeof expected, "%u", static_cast<unsigned>(field.position ? position : value));
        snprintf(actual, sizeof actual, "%u", static_cast<unsigned>(formats::number(field, loaded, element)));
    }
    if (strcmp(expected, actual) == 0)
        return;
    char report[300];
    snprintf(report, sizeof report, "%s: %s%s is %s, expected %s", kind.name, prefix, field.name, actual,
             expected);
    EXPECT_STREQ("", report);
}

static void expectRead(Kind kind, Records& stored)
{
    static char text[FILE_ROOM];
    const formats::Kind& format = formatOf(kind);
    Records loaded;
    memset(&loaded, 0, sizeof loaded);
    test::writeBytes("f", text, printRecords(kind, stored.bytes, recordsOf(kind), text));
    ASSERT_TRUE(read(kind, loaded, recordsOf(kind)));
    for (int i = 0; i < recordsOf(kind); ++i) {
        const char* const expected = recordAt(kind, stored, i);
        const char* const actual = recordAt(kind, loaded, i);
        formats::eachValue(format, formats::entryCount(format, expected),
                           [&](const formats::Field& field, size_t base, int element) {
                               expectValue(format, field, expected + base, actual + base, element, i);
                           });
    }
}

static void expectBothWays(Kind kind)
{
    Records records;
    fill(kind, records);
    if (formatOf(kind).writer() != nullptr)
        expectWritten(kind, records);
    expectRead(kind, records);
}

TEST(FormatTable, apNodeBothWays)
{
    expectBothWays(AP_NODE);
}
TEST(FormatTable, apAllBothWays)
{
    expectBothWays(AP_ALL);
}
TEST(FormatTable, apAllDetailBothWays)
{
    expectBothWays(AP_DETAIL);
}
TEST(FormatTable, bridgingBothWays)
{
    expectBothWays(BRIDGING);
}
TEST(FormatTable, stationBothWays)
{
    expectBothWays(STATION);
}
TEST(FormatTable, candidateBothWays)
{
    expectBothWays(CANDIDATE);
}
TEST(FormatTable, patVersion1IsRead)
{
    expectBothWays(PAT_V1);
}
TEST(FormatTable, patVersion2BothWays)
{
    expectBothWays(PAT_V2);
}
TEST(FormatTable, scanningBothWays)
{
    expectBothWays(SCANNING);
}
TEST(FormatTable, timeDelayBothWays)
{
    expectBothWays(TIME_DELAY);
}
TEST(FormatTable, scoreBothWays)
{
    expectBothWays(SCORE);
}
TEST(FormatTable, apRankBothWays)
{
    expectBothWays(AP_RANK);
}
TEST(FormatTable, rankIndexBothWays)
{
    expectBothWays(RANK_INDEX);
}
TEST(FormatTable, outputBothWays)
{
    expectBothWays(OUTPUT);
}

/* ---- Values at the bounds ------------------------------------------------ */

/* Sets every number that a reader may change. */
static void setBoundedNumbers(Kind kind, Records& records, uint32_t value)
{
    for (int i = 0; i < recordsOf(kind); ++i) {
        formats::eachField(formatOf(kind).record, [&](const formats::Field& field, int element) {
            if (field.load != formats::Load::AsStored)
                formats::setNumber(field, recordAt(kind, records, i), element, value);
        });
    }
}

TEST(FormatTable, readersBoundValuesAsTheTableSays)
{
    static const uint32_t bounds[] = {0,   1,   2,    3,    4,    93,    94,    95,   96,
                                      255, 999, 1000, 1001, 9999, 10000, 10001, 65535};
    static const Kind bounded[] = {AP_NODE, AP_ALL, SCANNING, TIME_DELAY};
    for (const Kind kind : bounded) {
        for (const uint32_t bound : bounds) {
            Records records;
            fill(kind, records);
            setBoundedNumbers(kind, records, bound);
            expectRead(kind, records);
        }
    }
}

TEST(FormatTable, loadedValuesAreThese)
{
    using formats::Load;
    EXPECT_EQ(7U, formats::loadedValue(Load::AsStored, 7, 3));
    EXPECT_EQ(95U, formats::loadedValue(Load::Utilization, 0, 3));
    EXPECT_EQ(1U, formats::loadedValue(Load::Utilization, 94, 3));
    EXPECT_EQ(1U, formats::loadedValue(Load::Utilization, 255, 3));
    EXPECT_EQ(1U, formats::loadedValue(Load::Rate, 0, 3));
    EXPECT_EQ(10000U, formats::loadedValue(Load::Rate, 10001, 3));
    EXPECT_EQ(0U, formats::loadedValue(Load::PlcRate, 0, 3));
    EXPECT_EQ(10000U, formats::loadedValue(Load::PlcRate, 65535, 3));
    EXPECT_EQ(1U, formats::loadedValue(Load::Rssi, 3, 3));
    EXPECT_EQ(2U, formats::loadedValue(Load::Rssi, 5, 3));
    EXPECT_EQ(1U, formats::loadedValue(Load::Delay, 0, 3));
    EXPECT_EQ(1000U, formats::loadedValue(Load::Delay, 1001, 3));
}

/* ---- The table alone ----------------------------------------------------- */

TEST(FormatTable, capsStandInTheirTexts)
{
    for (const formats::Kind* kind : formats::kinds) {
        char number[16];
        snprintf(number, sizeof number, "%d", kind->cap);
        EXPECT_TRUE(kind->cap <= 1 || strstr(kind->capText, number) != nullptr);
    }
}

TEST(FormatTable, namesAndAliasesAreFound)
{
    for (const formats::Kind* kind : formats::kinds) {
        EXPECT_TRUE(formats::findKind(kind->name) == kind);
        for (const char* alias : kind->aliases)
            EXPECT_TRUE(formats::findKind(alias) == kind);
    }
    EXPECT_TRUE(formats::findKind("nothing") == nullptr);
    EXPECT_TRUE(formats::findKind("") == nullptr);
}

TEST(FormatTable, everyKindHasAKeyAndSaysWhatABlankLineDoes)
{
    for (const formats::Kind* kind : formats::kinds) {
        bool key = false;
        for (const formats::Field& field : kind->record.fields)
            key = key || field.key;
        for (const formats::Field& field : kind->entries.layout.fields)
            key = key || field.key;
        EXPECT_TRUE(key);
        EXPECT_STRNE("", kind->blankLine);
        EXPECT_STRNE("", kind->recordsFrom);
        EXPECT_TRUE(kind->reader() != nullptr);
    }
}

/* Every field is inside its record, and no two fields overlap. */
TEST(FormatTable, fieldsLieInTheirRecordApart)
{
    for (const formats::Kind* kind : formats::kinds) {
        static bool used[sizeof(ApRankIndex)];
        ASSERT_LE(kind->type.size, sizeof used);
        memset(used, 0, sizeof used);
        formats::eachValue(
            *kind, kind->entries.capacity, [&](const formats::Field& field, size_t base, int element) {
                const size_t from = base + field.offset + field.stride * static_cast<size_t>(element);
                EXPECT_LE(from + formats::typeSize(field.type), kind->type.size);
                for (size_t i = from; i < from + formats::typeSize(field.type); ++i) {
                    EXPECT_FALSE(used[i]);
                    used[i] = true;
                }
            });
    }
}
