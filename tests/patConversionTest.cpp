/* SPDX-License-Identifier: Apache-2.0 */
/* The conversions between the integer and the floating-point PAT parameters. */
#include "testing.h"

#include <limits.h>
#include <math.h>

/* More records than an 8-bit counter can tell apart. */
static PatParameter oldPats[300];
static AlgPatParameter oldAlgPats[300];
static PatParameterV2 pats[300];
static AlgPatParameterV2 algPats[300];

/* Clears the sources and fills the destinations with a pattern. */
static void beginOld()
{
    memset(oldPats, 0, sizeof oldPats);
    test::mark(oldAlgPats);
}

static void beginToFloat()
{
    memset(pats, 0, sizeof pats);
    test::mark(algPats);
}

static void beginToInteger()
{
    memset(pats, 0, sizeof pats);
    memset(algPats, 0, sizeof algPats);
}

static void setMac(char (&field)[16], const char* mac)
{
    snprintf(field, sizeof field, "%s", mac);
}

TEST(PatConversion, recordsHaveNaturalAlignment)
{
    EXPECT_EQ(sizeof(AlgPatParameter), 1216U);
    EXPECT_EQ(offsetof(AlgPatParameter, allParameter), 16U);
    EXPECT_EQ(sizeof(AlgSinglePat), 16U);
    EXPECT_EQ(offsetof(AlgSinglePat, bandOrder), 0U);
    EXPECT_EQ(offsetof(AlgSinglePat, channelWidthOrder), 1U);
    EXPECT_EQ(offsetof(AlgSinglePat, mcsOrder), 2U);
    EXPECT_EQ(offsetof(AlgSinglePat, paraA), 4U);
    EXPECT_EQ(offsetof(AlgSinglePat, paraB), 8U);
    EXPECT_EQ(offsetof(AlgSinglePat, paraC), 12U);
    EXPECT_EQ(sizeof(AlgPatParameterV2), 1620U);
    EXPECT_EQ(offsetof(AlgPatParameterV2, commonPatNum), 16U);
    EXPECT_EQ(offsetof(AlgPatParameterV2, algSinglePat), 20U);
}

/* ---- Version 1, integer to float ---------------------------------------- */

TEST(PatConversion, oldConversionDecodesAndCompensates)
{
    beginOld();
    oldPats[0].bParameter[0] = 64;
    oldPats[0].cParameter[0] = 46094;
    EXPECT_TRUE(patInt2Alg(1, oldPats, oldAlgPats));
    EXPECT_EQ(oldAlgPats[0].allParameter[0][0][0][1], 0.1512F);
    EXPECT_EQ(oldAlgPats[0].allParameter[0][0][0][2], -30.4998417F);
    EXPECT_EQ(oldAlgPats[0].allParameter[0][0][1][1], 0.1F);
    EXPECT_EQ(oldAlgPats[0].allParameter[0][0][1][2], -60.0F);
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(PatConversion, oldConversionTakesAllSixteenBitsOfBAndC)
{
    beginOld();
    oldPats[0].bParameter[7] = 65535;
    oldPats[0].cParameter[7] = 65535;
    EXPECT_TRUE(patInt2Alg(1, oldPats, oldAlgPats));
    EXPECT_EQ(oldAlgPats[0].allParameter[0][1][3][1], 52.5279961F);
    EXPECT_EQ(oldAlgPats[0].allParameter[0][1][3][2], -18.0576019F);
}

TEST(PatConversion, oldConversionComputesInSinglePrecision)
{
    beginOld();
    oldPats[0].bParameter[0] = 25;
    oldPats[0].bParameter[1] = 101;
    oldPats[0].cParameter[0] = 6305;
    oldPats[0].cParameter[1] = 7178;
    ai_yra_patc_compensation = 0.0F;
    EXPECT_TRUE(patInt2Alg(1, oldPats, oldAlgPats));
    EXPECT_EQ(oldAlgPats[0].allParameter[0][0][0][1], 0.120000005F);
    EXPECT_EQ(oldAlgPats[0].allParameter[0][0][1][1], 0.180799991F);
    EXPECT_EQ(oldAlgPats[0].allParameter[0][0][0][2], -45.964798F);
    EXPECT_EQ(oldAlgPats[0].allParameter[0][0][1][2], -45.4060822F);
}

TEST(PatConversion, oldConversionSubtractsTheCompensationLast)
{
    beginOld();
    oldPats[0].cParameter[0] = 643;
    oldPats[0].cParameter[1] = 1670;
    ai_yra_patc_compensation = 0.3F;
    EXPECT_TRUE(patInt2Alg(1, oldPats, oldAlgPats));
    EXPECT_EQ(oldAlgPats[0].allParameter[0][0][0][2], -49.8884773F);
    EXPECT_EQ(oldAlgPats[0].allParameter[0][0][1][2], -49.2311974F);
}

TEST(PatConversion, oldConversionUsesTheCompensationInForce)
{
    beginOld();
    oldPats[0].cParameter[0] = 46094;
    ai_alg_set_patc_comp(7);
    EXPECT_TRUE(patInt2Alg(1, oldPats, oldAlgPats));
    EXPECT_EQ(oldAlgPats[0].allParameter[0][0][0][2], -27.4998417F);
    ai_alg_set_patc_comp(-5);
    EXPECT_TRUE(patInt2Alg(1, oldPats, oldAlgPats));
    EXPECT_EQ(oldAlgPats[0].allParameter[0][0][0][2], -15.4998417F);
    EXPECT_EQ(oldAlgPats[0].allParameter[0][0][0][1], 0.1F);
    EXPECT_EQ(oldAlgPats[0].allParameter[4][4][3][2], -45.0F);
}

TEST(PatConversion, oldConversionTakesThresholdsFromTheDenseTable)
{
    beginOld();
    EXPECT_TRUE(patInt2Alg(1, oldPats, oldAlgPats));
    EXPECT_EQ(oldAlgPats[0].allParameter[0][0][0][0], 144.0F);
    EXPECT_EQ(oldAlgPats[0].allParameter[0][1][1][0], 400.0F);
    EXPECT_EQ(oldAlgPats[0].allParameter[1][3][0][0], 1.0F);
    EXPECT_EQ(oldAlgPats[0].allParameter[3][4][1][0], 3843.0F);
    EXPECT_EQ(oldAlgPats[0].allParameter[4][4][3][0], 5764.0F);
    for (int band = 0; band < 5; ++band) {
        for (int width = 0; width < 5; ++width) {
            for (int mcs = 0; mcs < 4; ++mcs) {
                const float threshold = static_cast<float>(peekThr[band][width][mcs]);
                EXPECT_EQ(oldAlgPats[0].allParameter[band][width][mcs][0], threshold);
            }
        }
    }
}

/* How many configurations do not have b and c of an integer 0. */
static int countSet(const AlgPatParameter* pat)
{
    int set = 0;
    for (int band = 0; band < 5; ++band) {
        for (int width = 0; width < 5; ++width) {
            for (int mcs = 0; mcs < 4; ++mcs)
                set += pat->allParameter[band][width][mcs][1] != 0.1F ||
                       pat->allParameter[band][width][mcs][2] != -60.0F;
        }
    }
    return set;
}

TEST(PatConversion, oldConversionTakesEveryConfigurationFromItsSlot)
{
    int slot = 0;
    for (int band = 0; band < 5; ++band) {
        for (int width = 0; width < 5; ++width) {
            for (int mcs = 0; mcs < 4; ++mcs, ++slot) {
                beginOld();
                oldPats[0].bParameter[slot] = 255;
                oldPats[0].cParameter[slot] = 1000;
                EXPECT_TRUE(patInt2Alg(1, oldPats, oldAlgPats));
                EXPECT_EQ(oldAlgPats[0].allParameter[band][width][mcs][1], 0.304F);
                EXPECT_EQ(oldAlgPats[0].allParameter[band][width][mcs][2], -59.3600006F);
                EXPECT_EQ(countSet(&oldAlgPats[0]), 1);
            }
        }
    }
    EXPECT_EQ(slot, 100);
}

TEST(PatConversion, oldConversionLeavesTheMacOfTheFloatRecord)
{
    beginOld();
    setMac(oldPats[0].deviceMac, "0A1B2C3D4E5F");
    EXPECT_TRUE(patInt2Alg(1, oldPats, oldAlgPats));
    EXPECT_TRUE(isMarked(oldAlgPats[0].deviceMac, 16));
}

TEST(PatConversion, oldConversionLeavesItsSource)
{
    static PatParameter before;
    beginOld();
    setMac(oldPats[0].deviceMac, "0A1B2C3D4E5F");
    oldPats[0].bParameter[3] = 5;
    oldPats[0].cParameter[4] = 6;
    before = oldPats[0];
    EXPECT_TRUE(patInt2Alg(1, oldPats, oldAlgPats));
    EXPECT_TRUE(memcmp(&before, &oldPats[0], sizeof before) == 0);
}

TEST(PatConversion, oldConversionTakesEveryRecord)
{
    beginOld();
    oldPats[0].bParameter[0] = 1;
    oldPats[1].bParameter[0] = 2;
    oldPats[2].bParameter[0] = 3;
    EXPECT_TRUE(patInt2Alg(2, oldPats, oldAlgPats));
    EXPECT_EQ(oldAlgPats[0].allParameter[0][0][0][1], 0.1008F);
    EXPECT_EQ(oldAlgPats[1].allParameter[0][0][0][1], 0.101599999F);
    EXPECT_TRUE(isMarked(oldAlgPats[2]));
}

TEST(PatConversion, oldConversionTakesMoreThan255Records)
{
    static const int counts[] = {255, 256, 257, 299};
    for (int count : counts) {
        beginOld();
        oldPats[count - 1].bParameter[99] = 255;
        EXPECT_TRUE(patInt2Alg(count, oldPats, oldAlgPats));
        EXPECT_EQ(oldAlgPats[count - 1].allParameter[4][4][3][1], 0.304F);
        EXPECT_TRUE(isMarked(oldAlgPats[count]));
    }
}

TEST(PatConversion, oldConversionOfNoRecordsSucceeds)
{
    beginOld();
    EXPECT_TRUE(patInt2Alg(0, oldPats, oldAlgPats));
    EXPECT_TRUE(patInt2Alg(-1, oldPats, oldAlgPats));
    EXPECT_TRUE(patInt2Alg(INT_MIN, oldPats, oldAlgPats));
    EXPECT_TRUE(isMarked(oldAlgPats));
}

/* ---- Version 2, integer to float ---------------------------------------- */

/* The floats of one pair of integers. */
static AlgSinglePat decoded(int paraB, int paraC)
{
    beginToFloat();
    pats[0].commonPatNum = 1;
    pats[0].singlePat[0].paraB = static_cast<uint8_t>(paraB);
    pats[0].singlePat[0].paraC = static_cast<uint16_t>(paraC);
    patInt2AlgV2(1, pats, algPats);
    return algPats[0].algSinglePat[0];
}

TEST(PatConversion, toFloatDecodesTheDefault)
{
    EXPECT_EQ(decoded(64, 46094).paraB, 0.1512F);
    EXPECT_EQ(decoded(64, 46094).paraC, -20.4998417F);
}

TEST(PatConversion, toFloatDecodesTheEndsOfTheRanges)
{
    EXPECT_EQ(decoded(0, 0).paraB, 0.1F);
    EXPECT_EQ(decoded(0, 0).paraC, -50.0F);
    EXPECT_EQ(decoded(1, 1).paraB, 0.1008F);
    EXPECT_EQ(decoded(1, 1).paraC, -49.9993591F);
    EXPECT_EQ(decoded(255, 65535).paraB, 0.304F);
    EXPECT_EQ(decoded(255, 65535).paraC, -8.05760193F);
}

TEST(PatConversion, toFloatComputesInSinglePrecision)
{
    EXPECT_EQ(decoded(25, 6305).paraB, 0.120000005F);
    EXPECT_EQ(decoded(25, 6305).paraC, -45.964798F);
    EXPECT_EQ(decoded(101, 7178).paraB, 0.180799991F);
    EXPECT_EQ(decoded(101, 7178).paraC, -45.4060822F);
}

TEST(PatConversion, toFloatDoesNotCompensate)
{
    ai_yra_patc_compensation = 1000.0F;
    EXPECT_EQ(decoded(64, 46094).paraC, -20.4998417F);
}

TEST(PatConversion, toFloatCopiesTheOrdersAndFindsTheThreshold)
{
    beginToFloat();
    pats[0].commonPatNum = 3;
    pats[0].singlePat[0] = {3, 4, 3, 2, 1, 2};
    pats[0].singlePat[1] = {0, 0, 1, 1, 3, 4};
    pats[0].singlePat[2] = {1, 253, 254, 255, 5, 6};
    patInt2AlgV2(1, pats, algPats);
    const AlgSinglePat* entries = algPats[0].algSinglePat;
    EXPECT_EQ(entries[0].bandOrder, 4);
    EXPECT_EQ(entries[0].channelWidthOrder, 3);
    EXPECT_EQ(entries[0].mcsOrder, 2);
    EXPECT_EQ(entries[0].paraA, 2402.0F);
    EXPECT_EQ(entries[0].paraB, 0.1008F);
    EXPECT_EQ(entries[0].paraC, -49.9987183F);
    EXPECT_EQ(entries[1].bandOrder, 0);
    EXPECT_EQ(entries[1].channelWidthOrder, 1);
    EXPECT_EQ(entries[1].mcsOrder, 1);
    EXPECT_EQ(entries[1].paraA, 459.0F);
    EXPECT_EQ(entries[2].bandOrder, 253);
    EXPECT_EQ(entries[2].channelWidthOrder, 254);
    EXPECT_EQ(entries[2].mcsOrder, 255);
    EXPECT_EQ(entries[2].paraA, 1.0F);
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(PatConversion, toFloatCopiesMacAndCount)
{
    beginToFloat();
    setMac(pats[0].deviceMac, "0A1B2C3D4E5F");
    setMac(pats[1].deviceMac, "102030405060");
    pats[1].commonPatNum = 2;
    patInt2AlgV2(2, pats, algPats);
    EXPECT_STREQ(algPats[0].deviceMac, "0A1B2C3D4E5F");
    EXPECT_EQ(algPats[0].commonPatNum, 0);
    EXPECT_STREQ(algPats[1].deviceMac, "102030405060");
    EXPECT_EQ(algPats[1].commonPatNum, 2);
}

TEST(PatConversion, toFloatCopiesAllSixteenBytesOfAMac)
{
    beginToFloat();
    memcpy(pats[0].deviceMac, "ABCDEFGHIJKLMNOP", 16);
    patInt2AlgV2(1, pats, algPats);
    EXPECT_TRUE(memcmp(algPats[0].deviceMac, "ABCDEFGHIJKLMNOP", 16) == 0);
    EXPECT_EQ(algPats[0].commonPatNum, 0);
}

TEST(PatConversion, toFloatLeavesEntriesBehindTheCount)
{
    beginToFloat();
    pats[0].commonPatNum = 2;
    patInt2AlgV2(1, pats, algPats);
    EXPECT_FALSE(isMarked(&algPats[0].algSinglePat[1], sizeof(AlgSinglePat)));
    EXPECT_TRUE(isMarked(&algPats[0].algSinglePat[2], 98 * sizeof(AlgSinglePat)));
    EXPECT_TRUE(isMarked(algPats[1]));
}

TEST(PatConversion, toFloatLeavesItsSource)
{
    static PatParameterV2 before;
    beginToFloat();
    setMac(pats[0].deviceMac, "0A1B2C3D4E5F");
    pats[0].commonPatNum = 200;
    pats[0].singlePat[0] = {3, 4, 3, 2, 1, 2};
    before = pats[0];
    patInt2AlgV2(1, pats, algPats);
    EXPECT_TRUE(memcmp(&before, &pats[0], sizeof before) == 0);
}

TEST(PatConversion, toFloatConvertsAHundredEntriesAtMost)
{
    static const int counts[] = {100, 101, 128, 255};
    for (int count : counts) {
        beginToFloat();
        pats[0].commonPatNum = static_cast<uint8_t>(count);
        pats[0].singlePat[99].paraB = 255;
        pats[1].singlePat[0].paraB = 7;
        patInt2AlgV2(1, pats, algPats);
        EXPECT_EQ(algPats[0].commonPatNum, 100);
        EXPECT_EQ(algPats[0].algSinglePat[98].paraB, 0.1F);
        EXPECT_EQ(algPats[0].algSinglePat[99].paraB, 0.304F);
        EXPECT_TRUE(isMarked(algPats[1]));
    }
}

TEST(PatConversion, toFloatTakesMoreThan255Records)
{
    static const int counts[] = {255, 256, 257, 299};
    for (int count : counts) {
        beginToFloat();
        pats[count - 1].commonPatNum = 1;
        pats[count - 1].singlePat[0].paraB = 255;
        patInt2AlgV2(count, pats, algPats);
        EXPECT_EQ(algPats[count - 1].commonPatNum, 1);
        EXPECT_EQ(algPats[count - 1].algSinglePat[0].paraB, 0.304F);
        EXPECT_TRUE(isMarked(algPats[count]));
    }
}

TEST(PatConversion, toFloatOfNoRecordsConvertsNone)
{
    beginToFloat();
    patInt2AlgV2(0, pats, algPats);
    patInt2AlgV2(-1, pats, algPats);
    patInt2AlgV2(INT_MIN, pats, algPats);
    EXPECT_TRUE(isMarked(algPats));
}

/* ---- Version 2, float to integer ---------------------------------------- */

/* The integers of one pair of floats. */
static SinglePat coded(float paraB, float paraC)
{
    beginToInteger();
    algPats[0].commonPatNum = 1;
    algPats[0].algSinglePat[0].paraB = paraB;
    algPats[0].algSinglePat[0].paraC = paraC;
    EXPECT_TRUE(patAlg2IntV2(1, pats, algPats));
    return pats[0].singlePat[0];
}

static int codedB(float paraB)
{
    return coded(paraB, 0.0F).paraB;
}
static int codedC(float paraC)
{
    return coded(0.0F, paraC).paraC;
}

TEST(PatConversion, toIntegerCodesTheRangeOfB)
{
    EXPECT_EQ(codedB(0.1F), 0);
    EXPECT_EQ(codedB(0.1008F), 1);
    EXPECT_EQ(codedB(0.1512F), 64);
    EXPECT_EQ(codedB(0.2F), 125);
    EXPECT_EQ(codedB(0.304F), 255);
}

TEST(PatConversion, toIntegerCodesTheRangeOfC)
{
    EXPECT_EQ(codedC(-50.0F), 0);
    EXPECT_EQ(codedC(-49.99936F), 1);
    EXPECT_EQ(codedC(-20.49984F), 46094);
    EXPECT_EQ(codedC(-8.0576F), 65535);
}

TEST(PatConversion, toIntegerWrapsAboveTheRange)
{
    EXPECT_EQ(codedB(0.304800004F), 0);
    EXPECT_EQ(codedB(0.5F), 244);
    EXPECT_EQ(codedB(52.5279999F), 255);
    EXPECT_EQ(codedB(52.5287971F), 0);
    EXPECT_EQ(codedC(-8.05696297F), 0);
    EXPECT_EQ(codedC(-8.0563221F), 1);
    EXPECT_EQ(codedC(0.0F), 12589);
    EXPECT_EQ(codedC(100.0F), 37767);
}

TEST(PatConversion, toIntegerTakesNegativeValuesAsZero)
{
    EXPECT_EQ(codedB(0.0F), 0);
    EXPECT_EQ(codedB(0.0996F), 0);
    EXPECT_EQ(codedB(-0.1F), 0);
    EXPECT_EQ(codedB(-1e20F), 0);
    EXPECT_EQ(codedC(-50.001F), 0);
    EXPECT_EQ(codedC(-60.0F), 0);
    EXPECT_EQ(codedC(-1e20F), 0);
}

TEST(PatConversion, toIntegerTakesNegativeInfinityAndNanAsZero)
{
    EXPECT_EQ(codedB(-INFINITY), 0);
    EXPECT_EQ(codedC(-INFINITY), 0);
    EXPECT_EQ(codedB(NAN), 0);
    EXPECT_EQ(codedC(NAN), 0);
}

TEST(PatConversion, toIntegerSaturatesBeforeItCuts)
{
    EXPECT_EQ(codedB(3435973.75F), 255);
    EXPECT_EQ(codedB(1e20F), 255);
    EXPECT_EQ(codedB(3e38F), 255);
    EXPECT_EQ(codedB(INFINITY), 255);
    EXPECT_EQ(codedC(2748729.0F), 65535);
    EXPECT_EQ(codedC(1e20F), 65535);
    EXPECT_EQ(codedC(3e38F), 65535);
    EXPECT_EQ(codedC(INFINITY), 65535);
}

TEST(PatConversion, toIntegerDoesNotSaturateBelowThirtyTwoBits)
{
    EXPECT_EQ(codedB(1717987.0F), 0);
    EXPECT_EQ(codedB(13421.8721F), 0);
    EXPECT_EQ(codedC(1374339.62F), 256);
    EXPECT_EQ(codedC(1919950.0F), 24064);
    EXPECT_EQ(codedC(10687.418F), 0);
}

TEST(PatConversion, toIntegerRoundsHalvesAwayFromZero)
{
    EXPECT_EQ(codedB(0.113200001F), 17);
    EXPECT_EQ(codedB(0.126000002F), 33);
    EXPECT_EQ(codedB(0.153200001F), 67);
    EXPECT_EQ(codedC(-49.82304F), 277);
    EXPECT_EQ(codedC(-49.6208F), 593);
    EXPECT_EQ(codedC(-49.21632F), 1225);
}

TEST(PatConversion, toIntegerRoundsToTheNearest)
{
    EXPECT_EQ(codedB(0.1003F), 0);
    EXPECT_EQ(codedB(0.100400008F), 1);
    EXPECT_EQ(codedB(0.1005F), 1);
    EXPECT_EQ(codedB(0.1011F), 1);
    EXPECT_EQ(codedB(0.1013F), 2);
    EXPECT_EQ(codedC(-49.9998F), 0);
    EXPECT_EQ(codedC(-49.9996F), 1);
    EXPECT_EQ(codedC(-49.9991F), 1);
    EXPECT_EQ(codedC(-49.999F), 2);
}

TEST(PatConversion, toIntegerKeepsLargeOddNumbers)
{
    EXPECT_EQ(codedB(6710.9873F), 1);
    EXPECT_EQ(codedB(6710.98877F), 3);
    EXPECT_EQ(codedC(5318.70947F), 1);
    EXPECT_EQ(codedC(5318.71094F), 3);
}

TEST(PatConversion, toIntegerComputesInSinglePrecision)
{
    EXPECT_EQ(codedB(0.100400001F), 0);
    EXPECT_EQ(codedB(0.1228F), 28);
    EXPECT_EQ(codedB(0.153999999F), 68);
    EXPECT_EQ(codedB(0.118000001F), 22);
    EXPECT_EQ(codedC(-48.94944F), 1642);
    EXPECT_EQ(codedC(-36.9270401F), 20427);
    EXPECT_EQ(codedC(-48.9635201F), 1619);
    EXPECT_EQ(codedC(-27.9209614F), 34498);
    EXPECT_EQ(codedC(-17.9996815F), 50001);
    EXPECT_EQ(codedC(-15.9984007F), 53127);
}

TEST(PatConversion, toIntegerCopiesMacCountAndOrders)
{
    beginToInteger();
    setMac(algPats[0].deviceMac, "0A1B2C3D4E5F");
    setMac(algPats[1].deviceMac, "102030405060");
    algPats[1].commonPatNum = 2;
    algPats[1].algSinglePat[0] = {4, 3, 2, 99.0F, 0.1008F, -49.9987183F};
    algPats[1].algSinglePat[1] = {253, 254, 255, 99.0F, 0.101599999F, -49.9993591F};
    EXPECT_TRUE(patAlg2IntV2(2, pats, algPats));
    EXPECT_STREQ(pats[0].deviceMac, "0A1B2C3D4E5F");
    EXPECT_EQ(pats[0].commonPatNum, 0);
    EXPECT_STREQ(pats[1].deviceMac, "102030405060");
    EXPECT_EQ(pats[1].commonPatNum, 2);
    const SinglePat* entries = pats[1].singlePat;
    EXPECT_EQ(entries[0].bandOrder, 4);
    EXPECT_EQ(entries[0].channelWidthOrder, 3);
    EXPECT_EQ(entries[0].mcsOrder, 2);
    EXPECT_EQ(entries[0].paraB, 1);
    EXPECT_EQ(entries[0].paraC, 2);
    EXPECT_EQ(entries[1].bandOrder, 253);
    EXPECT_EQ(entries[1].channelWidthOrder, 254);
    EXPECT_EQ(entries[1].mcsOrder, 255);
    EXPECT_EQ(entries[1].paraB, 2);
    EXPECT_EQ(entries[1].paraC, 1);
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(PatConversion, toIntegerCopiesAllSixteenBytesOfAMac)
{
    beginToInteger();
    memcpy(algPats[0].deviceMac, "ABCDEFGHIJKLMNOP", 16);
    EXPECT_TRUE(patAlg2IntV2(1, pats, algPats));
    EXPECT_TRUE(memcmp(pats[0].deviceMac, "ABCDEFGHIJKLMNOP", 16) == 0);
    EXPECT_EQ(pats[0].commonPatNum, 0);
}

/* The flags after a conversion of B 64 and C 46094 into an entry that held other values. */
static int flagsAfter(int flags, int heldB, int heldC)
{
    beginToInteger();
    algPats[0].commonPatNum = 1;
    algPats[0].algSinglePat[0] = {0, 1, 0, 344.0F, 0.1512F, -20.49984F};
    pats[0].singlePat[0].isChanged = static_cast<uint8_t>(flags);
    pats[0].singlePat[0].paraB = static_cast<uint8_t>(heldB);
    pats[0].singlePat[0].paraC = static_cast<uint16_t>(heldC);
    EXPECT_TRUE(patAlg2IntV2(1, pats, algPats));
    EXPECT_EQ(pats[0].singlePat[0].paraB, 64);
    EXPECT_EQ(pats[0].singlePat[0].paraC, 46094);
    return pats[0].singlePat[0].isChanged;
}

TEST(PatConversion, toIntegerSetsAFlagForEachParameterThatChanges)
{
    EXPECT_EQ(flagsAfter(0, 64, 46094), 0);
    EXPECT_EQ(flagsAfter(0, 65, 46094), 1);
    EXPECT_EQ(flagsAfter(0, 64, 46093), 2);
    EXPECT_EQ(flagsAfter(0, 63, 46095), 3);
    EXPECT_EQ(flagsAfter(0, 64, 14), 2); /* the low byte is the same */
}

TEST(PatConversion, toIntegerNeverClearsAFlag)
{
    EXPECT_EQ(flagsAfter(1, 64, 46094), 1);
    EXPECT_EQ(flagsAfter(2, 64, 46094), 2);
    EXPECT_EQ(flagsAfter(3, 64, 46094), 3);
    EXPECT_EQ(flagsAfter(252, 64, 46094), 252);
    EXPECT_EQ(flagsAfter(2, 0, 46094), 3);
    EXPECT_EQ(flagsAfter(1, 64, 0), 3);
    EXPECT_EQ(flagsAfter(1, 0, 46094), 1);
    EXPECT_EQ(flagsAfter(2, 64, 0), 2);
    EXPECT_EQ(flagsAfter(252, 0, 0), 255);
}

TEST(PatConversion, toIntegerComparesWithTheCutValue)
{
    beginToInteger();
    algPats[0].commonPatNum = 1;
    algPats[0].algSinglePat[0] = {0, 1, 0, 344.0F, 0.5F, 0.0F};
    pats[0].singlePat[0].paraB = 244;
    pats[0].singlePat[0].paraC = 12589;
    EXPECT_TRUE(patAlg2IntV2(1, pats, algPats));
    EXPECT_EQ(pats[0].singlePat[0].isChanged, 0);
}

TEST(PatConversion, toIntegerFlagsEveryEntryByItself)
{
    beginToInteger();
    algPats[0].commonPatNum = 3;
    for (int k = 0; k < 3; ++k)
        algPats[0].algSinglePat[k] = {0, 1, 0, 344.0F, 0.1F, -50.0F};
    pats[0].singlePat[1].paraB = 1;
    pats[0].singlePat[2].paraC = 1;
    EXPECT_TRUE(patAlg2IntV2(1, pats, algPats));
    EXPECT_EQ(pats[0].singlePat[0].isChanged, 0);
    EXPECT_EQ(pats[0].singlePat[1].isChanged, 1);
    EXPECT_EQ(pats[0].singlePat[2].isChanged, 2);
}

TEST(PatConversion, toIntegerLeavesEntriesBehindTheCount)
{
    beginToInteger();
    test::mark(pats);
    algPats[0].commonPatNum = 2;
    EXPECT_TRUE(patAlg2IntV2(1, pats, algPats));
    EXPECT_EQ(pats[0].commonPatNum, 2);
    EXPECT_FALSE(isMarked(&pats[0].singlePat[1], sizeof(SinglePat)));
    EXPECT_TRUE(isMarked(&pats[0].singlePat[2], 98 * sizeof(SinglePat)));
    EXPECT_TRUE(isMarked(pats[1]));
}

TEST(PatConversion, toIntegerLeavesItsSource)
{
    static AlgPatParameterV2 before;
    beginToInteger();
    setMac(algPats[0].deviceMac, "0A1B2C3D4E5F");
    algPats[0].commonPatNum = 200;
    algPats[0].algSinglePat[0] = {4, 3, 2, 99.0F, 0.15F, -20.0F};
    memcpy(&before, &algPats[0], sizeof before);
    EXPECT_TRUE(patAlg2IntV2(1, pats, algPats));
    EXPECT_TRUE(memcmp(&before, &algPats[0], sizeof before) == 0);
}

TEST(PatConversion, toIntegerConvertsAHundredEntriesAtMost)
{
    static const int counts[] = {100, 101, 128, 255};
    for (int count : counts) {
        beginToInteger();
        test::mark(pats);
        algPats[0].commonPatNum = static_cast<uint8_t>(count);
        algPats[0].algSinglePat[99].paraB = 0.304F;
        EXPECT_TRUE(patAlg2IntV2(1, pats, algPats));
        EXPECT_EQ(pats[0].commonPatNum, 100);
        EXPECT_EQ(pats[0].singlePat[98].paraB, 0);
        EXPECT_EQ(pats[0].singlePat[99].paraB, 255);
        EXPECT_TRUE(isMarked(pats[1]));
    }
}

TEST(PatConversion, toIntegerTakesMoreThan255Records)
{
    static const int counts[] = {255, 256, 257, 299};
    for (int count : counts) {
        beginToInteger();
        test::mark(pats);
        algPats[count - 1].commonPatNum = 1;
        algPats[count - 1].algSinglePat[0].paraB = 0.304F;
        EXPECT_TRUE(patAlg2IntV2(count, pats, algPats));
        EXPECT_EQ(pats[count - 1].commonPatNum, 1);
        EXPECT_EQ(pats[count - 1].singlePat[0].paraB, 255);
        EXPECT_TRUE(isMarked(pats[count]));
    }
}

TEST(PatConversion, toIntegerOfNoRecordsSucceeds)
{
    beginToInteger();
    test::mark(pats);
    EXPECT_TRUE(patAlg2IntV2(0, pats, algPats));
    EXPECT_TRUE(patAlg2IntV2(-1, pats, algPats));
    EXPECT_TRUE(patAlg2IntV2(INT_MIN, pats, algPats));
    EXPECT_TRUE(isMarked(pats));
}

/* ---- There and back ----------------------------------------------------- */

static bool sameEntries(const PatParameterV2* a, const PatParameterV2* b)
{
    bool same = true;
    for (int k = 0; k < 100; ++k) {
        const SinglePat* left = &a->singlePat[k];
        const SinglePat* right = &b->singlePat[k];
        same = same && left->isChanged == right->isChanged && left->bandOrder == right->bandOrder &&
               left->channelWidthOrder == right->channelWidthOrder && left->mcsOrder == right->mcsOrder &&
               left->paraB == right->paraB && left->paraC == right->paraC;
    }
    return same;
}

TEST(PatConversion, everyIntegerComesBackUnchanged)
{
    /* 656 records of 100 entries hold every C, and every B many times over. */
    for (int first = 0; first < 65600; first += 100) {
        memset(&pats[0], 0, sizeof pats[0]);
        pats[0].commonPatNum = 100;
        for (int k = 0; k < 100; ++k) {
            pats[0].singlePat[k].paraB = static_cast<uint8_t>(first + k);
            pats[0].singlePat[k].paraC = static_cast<uint16_t>(first + k);
        }
        pats[1] = pats[0];
        patInt2AlgV2(1, pats, algPats);
        EXPECT_TRUE(patAlg2IntV2(1, pats, algPats));
        EXPECT_TRUE(sameEntries(&pats[0], &pats[1]));
    }
}

TEST(PatConversion, defaultEntriesComeBackUnchanged)
{
    char mac[16] = "0A1B2C3D4E5F";
    patInitV2("pat", mac);
    beginToFloat();
    EXPECT_TRUE(patParameterReaderV2("pat", 1, pats));
    pats[1] = pats[0];
    patInt2AlgV2(1, pats, algPats);
    EXPECT_EQ(algPats[0].algSinglePat[14].paraA, 2402.0F);
    EXPECT_EQ(algPats[0].algSinglePat[14].paraB, 0.1512F);
    EXPECT_EQ(algPats[0].algSinglePat[14].paraC, -20.4998417F);
    EXPECT_TRUE(patAlg2IntV2(1, pats, algPats));
    EXPECT_STREQ(pats[0].deviceMac, "0A1B2C3D4E5F");
    EXPECT_EQ(pats[0].commonPatNum, 15);
    EXPECT_TRUE(sameEntries(&pats[0], &pats[1]));
}
