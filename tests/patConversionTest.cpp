/* SPDX-License-Identifier: Apache-2.0 */
/* The conversions between the integer and the floating-point PAT parameters. */
#include "scenario.h"

#include <limits.h>
#include <math.h>

using namespace test;

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

/* ---- Version 1, integer to float ---------------------------------------- */

TEST(PatConversion, oldConversionDecodesAndCompensates)
{
    beginOld();
    oldPats[0].bParameter[0] = 64;
    oldPats[0].cParameter[0] = 46094;
    EXPECT_TRUE(patInt2Alg(1, oldPats, oldAlgPats));
    EXPECT_EQ(0.1512F, oldAlgPats[0].allParameter[0][0][0][1]);
    EXPECT_EQ(-30.4998417F, oldAlgPats[0].allParameter[0][0][0][2]);
    EXPECT_EQ(0.1F, oldAlgPats[0].allParameter[0][0][1][1]);
    EXPECT_EQ(-60.0F, oldAlgPats[0].allParameter[0][0][1][2]);
    EXPECT_EQ(0, test::messageCount());
}

TEST(PatConversion, oldConversionUsesAllSixteenBitsOfBAndC)
{
    beginOld();
    oldPats[0].bParameter[7] = 65535;
    oldPats[0].cParameter[7] = 65535;
    EXPECT_TRUE(patInt2Alg(1, oldPats, oldAlgPats));
    EXPECT_EQ(52.5279961F, oldAlgPats[0].allParameter[0][1][3][1]);
    EXPECT_EQ(-18.0576019F, oldAlgPats[0].allParameter[0][1][3][2]);
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
    EXPECT_EQ(0.120000005F, oldAlgPats[0].allParameter[0][0][0][1]);
    EXPECT_EQ(0.180799991F, oldAlgPats[0].allParameter[0][0][1][1]);
    EXPECT_EQ(-45.964798F, oldAlgPats[0].allParameter[0][0][0][2]);
    EXPECT_EQ(-45.4060822F, oldAlgPats[0].allParameter[0][0][1][2]);
}

TEST(PatConversion, oldConversionSubtractsTheCompensationLast)
{
    beginOld();
    oldPats[0].cParameter[0] = 643;
    oldPats[0].cParameter[1] = 1670;
    ai_yra_patc_compensation = 0.3F;
    EXPECT_TRUE(patInt2Alg(1, oldPats, oldAlgPats));
    EXPECT_EQ(-49.8884773F, oldAlgPats[0].allParameter[0][0][0][2]);
    EXPECT_EQ(-49.2311974F, oldAlgPats[0].allParameter[0][0][1][2]);
}

TEST(PatConversion, oldConversionUsesTheCompensationInForce)
{
    beginOld();
    oldPats[0].cParameter[0] = 46094;
    ai_alg_set_patc_comp(7);
    EXPECT_TRUE(patInt2Alg(1, oldPats, oldAlgPats));
    EXPECT_EQ(-27.4998417F, oldAlgPats[0].allParameter[0][0][0][2]);
    ai_alg_set_patc_comp(-5);
    EXPECT_TRUE(patInt2Alg(1, oldPats, oldAlgPats));
    EXPECT_EQ(-15.4998417F, oldAlgPats[0].allParameter[0][0][0][2]);
    EXPECT_EQ(0.1F, oldAlgPats[0].allParameter[0][0][0][1]);
    EXPECT_EQ(-45.0F, oldAlgPats[0].allParameter[4][4][3][2]);
}

TEST(PatConversion, oldConversionReadsThresholdsFromTheDenseTable)
{
    beginOld();
    EXPECT_TRUE(patInt2Alg(1, oldPats, oldAlgPats));
    EXPECT_EQ(144.0F, oldAlgPats[0].allParameter[0][0][0][0]);
    EXPECT_EQ(400.0F, oldAlgPats[0].allParameter[0][1][1][0]);
    EXPECT_EQ(1.0F, oldAlgPats[0].allParameter[1][3][0][0]);
    EXPECT_EQ(3843.0F, oldAlgPats[0].allParameter[3][4][1][0]);
    EXPECT_EQ(5764.0F, oldAlgPats[0].allParameter[4][4][3][0]);
    for (int band = 0; band < 5; ++band) {
        for (int width = 0; width < 5; ++width) {
            for (int mcs = 0; mcs < 4; ++mcs) {
                const float threshold = static_cast<float>(peekThr[band][width][mcs]);
                EXPECT_EQ(threshold, oldAlgPats[0].allParameter[band][width][mcs][0]);
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

TEST(PatConversion, oldConversionReadsEveryConfigurationFromItsSlot)
{
    int slot = 0;
    for (int band = 0; band < 5; ++band) {
        for (int width = 0; width < 5; ++width) {
            for (int mcs = 0; mcs < 4; ++mcs, ++slot) {
                beginOld();
                oldPats[0].bParameter[slot] = 255;
                oldPats[0].cParameter[slot] = 1000;
                EXPECT_TRUE(patInt2Alg(1, oldPats, oldAlgPats));
                EXPECT_EQ(0.304F, oldAlgPats[0].allParameter[band][width][mcs][1]);
                EXPECT_EQ(-59.3600006F, oldAlgPats[0].allParameter[band][width][mcs][2]);
                EXPECT_EQ(1, countSet(&oldAlgPats[0]));
            }
        }
    }
    EXPECT_EQ(100, slot);
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

TEST(PatConversion, oldConversionConvertsEveryRecord)
{
    beginOld();
    oldPats[0].bParameter[0] = 1;
    oldPats[1].bParameter[0] = 2;
    oldPats[2].bParameter[0] = 3;
    EXPECT_TRUE(patInt2Alg(2, oldPats, oldAlgPats));
    EXPECT_EQ(0.1008F, oldAlgPats[0].allParameter[0][0][0][1]);
    EXPECT_EQ(0.101599999F, oldAlgPats[1].allParameter[0][0][0][1]);
    EXPECT_TRUE(isMarked(oldAlgPats[2]));
}

TEST(PatConversion, oldConversionConvertsMoreThan255Records)
{
    static const int counts[] = {255, 256, 257, 299};
    for (int count : counts) {
        beginOld();
        oldPats[count - 1].bParameter[99] = 255;
        EXPECT_TRUE(patInt2Alg(count, oldPats, oldAlgPats));
        EXPECT_EQ(0.304F, oldAlgPats[count - 1].allParameter[4][4][3][1]);
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
    EXPECT_EQ(0.1512F, decoded(64, 46094).paraB);
    EXPECT_EQ(-20.4998417F, decoded(64, 46094).paraC);
}

TEST(PatConversion, toFloatDecodesTheEndsOfTheRanges)
{
    EXPECT_EQ(0.1F, decoded(0, 0).paraB);
    EXPECT_EQ(-50.0F, decoded(0, 0).paraC);
    EXPECT_EQ(0.1008F, decoded(1, 1).paraB);
    EXPECT_EQ(-49.9993591F, decoded(1, 1).paraC);
    EXPECT_EQ(0.304F, decoded(255, 65535).paraB);
    EXPECT_EQ(-8.05760193F, decoded(255, 65535).paraC);
}

TEST(PatConversion, toFloatComputesInSinglePrecision)
{
    EXPECT_EQ(0.120000005F, decoded(25, 6305).paraB);
    EXPECT_EQ(-45.964798F, decoded(25, 6305).paraC);
    EXPECT_EQ(0.180799991F, decoded(101, 7178).paraB);
    EXPECT_EQ(-45.4060822F, decoded(101, 7178).paraC);
}

TEST(PatConversion, toFloatDoesNotCompensate)
{
    ai_yra_patc_compensation = 1000.0F;
    EXPECT_EQ(-20.4998417F, decoded(64, 46094).paraC);
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
    EXPECT_EQ(4, entries[0].bandOrder);
    EXPECT_EQ(3, entries[0].channelWidthOrder);
    EXPECT_EQ(2, entries[0].mcsOrder);
    EXPECT_EQ(2402.0F, entries[0].paraA);
    EXPECT_EQ(0.1008F, entries[0].paraB);
    EXPECT_EQ(-49.9987183F, entries[0].paraC);
    EXPECT_EQ(0, entries[1].bandOrder);
    EXPECT_EQ(1, entries[1].channelWidthOrder);
    EXPECT_EQ(1, entries[1].mcsOrder);
    EXPECT_EQ(459.0F, entries[1].paraA);
    EXPECT_EQ(253, entries[2].bandOrder);
    EXPECT_EQ(254, entries[2].channelWidthOrder);
    EXPECT_EQ(255, entries[2].mcsOrder);
    EXPECT_EQ(1.0F, entries[2].paraA);
    EXPECT_EQ(0, test::messageCount());
}

TEST(PatConversion, toFloatCopiesMacAndCount)
{
    beginToFloat();
    setMac(pats[0].deviceMac, "0A1B2C3D4E5F");
    setMac(pats[1].deviceMac, "102030405060");
    pats[1].commonPatNum = 2;
    patInt2AlgV2(2, pats, algPats);
    EXPECT_STREQ("0A1B2C3D4E5F", algPats[0].deviceMac);
    EXPECT_EQ(0, algPats[0].commonPatNum);
    EXPECT_STREQ("102030405060", algPats[1].deviceMac);
    EXPECT_EQ(2, algPats[1].commonPatNum);
}

TEST(PatConversion, toFloatCopiesAllSixteenBytesOfAMac)
{
    beginToFloat();
    memcpy(pats[0].deviceMac, "ABCDEFGHIJKLMNOP", 16);
    patInt2AlgV2(1, pats, algPats);
    EXPECT_TRUE(memcmp(algPats[0].deviceMac, "ABCDEFGHIJKLMNOP", 16) == 0);
    EXPECT_EQ(0, algPats[0].commonPatNum);
}

TEST(PatConversion, toFloatLeavesEntriesAfterTheCount)
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
        EXPECT_EQ(100, algPats[0].commonPatNum);
        EXPECT_EQ(0.1F, algPats[0].algSinglePat[98].paraB);
        EXPECT_EQ(0.304F, algPats[0].algSinglePat[99].paraB);
        EXPECT_TRUE(isMarked(algPats[1]));
    }
}

TEST(PatConversion, toFloatConvertsMoreThan255Records)
{
    static const int counts[] = {255, 256, 257, 299};
    for (int count : counts) {
        beginToFloat();
        pats[count - 1].commonPatNum = 1;
        pats[count - 1].singlePat[0].paraB = 255;
        patInt2AlgV2(count, pats, algPats);
        EXPECT_EQ(1, algPats[count - 1].commonPatNum);
        EXPECT_EQ(0.304F, algPats[count - 1].algSinglePat[0].paraB);
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
    EXPECT_EQ(0, codedB(0.1F));
    EXPECT_EQ(1, codedB(0.1008F));
    EXPECT_EQ(64, codedB(0.1512F));
    EXPECT_EQ(125, codedB(0.2F));
    EXPECT_EQ(255, codedB(0.304F));
}

TEST(PatConversion, toIntegerCodesTheRangeOfC)
{
    EXPECT_EQ(0, codedC(-50.0F));
    EXPECT_EQ(1, codedC(-49.99936F));
    EXPECT_EQ(46094, codedC(-20.49984F));
    EXPECT_EQ(65535, codedC(-8.0576F));
}

TEST(PatConversion, toIntegerWrapsAboveTheRange)
{
    EXPECT_EQ(0, codedB(0.304800004F));
    EXPECT_EQ(244, codedB(0.5F));
    EXPECT_EQ(255, codedB(52.5279999F));
    EXPECT_EQ(0, codedB(52.5287971F));
    EXPECT_EQ(0, codedC(-8.05696297F));
    EXPECT_EQ(1, codedC(-8.0563221F));
    EXPECT_EQ(12589, codedC(0.0F));
    EXPECT_EQ(37767, codedC(100.0F));
}

TEST(PatConversion, toIntegerTreatsNegativeValuesAsZero)
{
    EXPECT_EQ(0, codedB(0.0F));
    EXPECT_EQ(0, codedB(0.0996F));
    EXPECT_EQ(0, codedB(-0.1F));
    EXPECT_EQ(0, codedB(-1e20F));
    EXPECT_EQ(0, codedC(-50.001F));
    EXPECT_EQ(0, codedC(-60.0F));
    EXPECT_EQ(0, codedC(-1e20F));
}

TEST(PatConversion, toIntegerTreatsNegativeInfinityAndNanAsZero)
{
    EXPECT_EQ(0, codedB(-INFINITY));
    EXPECT_EQ(0, codedC(-INFINITY));
    EXPECT_EQ(0, codedB(NAN));
    EXPECT_EQ(0, codedC(NAN));
}

TEST(PatConversion, toIntegerSaturatesBeforeItCuts)
{
    EXPECT_EQ(255, codedB(3435973.75F));
    EXPECT_EQ(255, codedB(1e20F));
    EXPECT_EQ(255, codedB(3e38F));
    EXPECT_EQ(255, codedB(INFINITY));
    EXPECT_EQ(65535, codedC(2748729.0F));
    EXPECT_EQ(65535, codedC(1e20F));
    EXPECT_EQ(65535, codedC(3e38F));
    EXPECT_EQ(65535, codedC(INFINITY));
}

TEST(PatConversion, toIntegerDoesNotSaturateBelowThirtyTwoBits)
{
    EXPECT_EQ(0, codedB(1717987.0F));
    EXPECT_EQ(0, codedB(13421.8721F));
    EXPECT_EQ(256, codedC(1374339.62F));
    EXPECT_EQ(24064, codedC(1919950.0F));
    EXPECT_EQ(0, codedC(10687.418F));
}

TEST(PatConversion, toIntegerRoundsHalvesAwayFromZero)
{
    EXPECT_EQ(17, codedB(0.113200001F));
    EXPECT_EQ(33, codedB(0.126000002F));
    EXPECT_EQ(67, codedB(0.153200001F));
    EXPECT_EQ(277, codedC(-49.82304F));
    EXPECT_EQ(593, codedC(-49.6208F));
    EXPECT_EQ(1225, codedC(-49.21632F));
}

TEST(PatConversion, toIntegerRoundsToTheNearest)
{
    EXPECT_EQ(0, codedB(0.1003F));
    EXPECT_EQ(1, codedB(0.100400008F));
    EXPECT_EQ(1, codedB(0.1005F));
    EXPECT_EQ(1, codedB(0.1011F));
    EXPECT_EQ(2, codedB(0.1013F));
    EXPECT_EQ(0, codedC(-49.9998F));
    EXPECT_EQ(1, codedC(-49.9996F));
    EXPECT_EQ(1, codedC(-49.9991F));
    EXPECT_EQ(2, codedC(-49.999F));
}

TEST(PatConversion, toIntegerKeepsLargeOddNumbers)
{
    EXPECT_EQ(1, codedB(6710.9873F));
    EXPECT_EQ(3, codedB(6710.98877F));
    EXPECT_EQ(1, codedC(5318.70947F));
    EXPECT_EQ(3, codedC(5318.71094F));
}

TEST(PatConversion, toIntegerComputesInSinglePrecision)
{
    EXPECT_EQ(0, codedB(0.100400001F));
    EXPECT_EQ(28, codedB(0.1228F));
    EXPECT_EQ(68, codedB(0.153999999F));
    EXPECT_EQ(22, codedB(0.118000001F));
    EXPECT_EQ(1642, codedC(-48.94944F));
    EXPECT_EQ(20427, codedC(-36.9270401F));
    EXPECT_EQ(1619, codedC(-48.9635201F));
    EXPECT_EQ(34498, codedC(-27.9209614F));
    EXPECT_EQ(50001, codedC(-17.9996815F));
    EXPECT_EQ(53127, codedC(-15.9984007F));
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
    EXPECT_STREQ("0A1B2C3D4E5F", pats[0].deviceMac);
    EXPECT_EQ(0, pats[0].commonPatNum);
    EXPECT_STREQ("102030405060", pats[1].deviceMac);
    EXPECT_EQ(2, pats[1].commonPatNum);
    const SinglePat* entries = pats[1].singlePat;
    EXPECT_EQ(4, entries[0].bandOrder);
    EXPECT_EQ(3, entries[0].channelWidthOrder);
    EXPECT_EQ(2, entries[0].mcsOrder);
    EXPECT_EQ(1, entries[0].paraB);
    EXPECT_EQ(2, entries[0].paraC);
    EXPECT_EQ(253, entries[1].bandOrder);
    EXPECT_EQ(254, entries[1].channelWidthOrder);
    EXPECT_EQ(255, entries[1].mcsOrder);
    EXPECT_EQ(2, entries[1].paraB);
    EXPECT_EQ(1, entries[1].paraC);
    EXPECT_EQ(0, test::messageCount());
}

TEST(PatConversion, toIntegerCopiesAllSixteenBytesOfAMac)
{
    beginToInteger();
    memcpy(algPats[0].deviceMac, "ABCDEFGHIJKLMNOP", 16);
    EXPECT_TRUE(patAlg2IntV2(1, pats, algPats));
    EXPECT_TRUE(memcmp(pats[0].deviceMac, "ABCDEFGHIJKLMNOP", 16) == 0);
    EXPECT_EQ(0, pats[0].commonPatNum);
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
    EXPECT_EQ(64, pats[0].singlePat[0].paraB);
    EXPECT_EQ(46094, pats[0].singlePat[0].paraC);
    return pats[0].singlePat[0].isChanged;
}

TEST(PatConversion, toIntegerSetsAFlagForEachParameterThatChanges)
{
    EXPECT_EQ(0, flagsAfter(0, 64, 46094));
    EXPECT_EQ(1, flagsAfter(0, 65, 46094));
    EXPECT_EQ(2, flagsAfter(0, 64, 46093));
    EXPECT_EQ(3, flagsAfter(0, 63, 46095));
    EXPECT_EQ(2, flagsAfter(0, 64, 14)); /* the low byte is the same */
}

TEST(PatConversion, toIntegerNeverClearsAFlag)
{
    EXPECT_EQ(1, flagsAfter(1, 64, 46094));
    EXPECT_EQ(2, flagsAfter(2, 64, 46094));
    EXPECT_EQ(3, flagsAfter(3, 64, 46094));
    EXPECT_EQ(252, flagsAfter(252, 64, 46094));
    EXPECT_EQ(3, flagsAfter(2, 0, 46094));
    EXPECT_EQ(3, flagsAfter(1, 64, 0));
    EXPECT_EQ(1, flagsAfter(1, 0, 46094));
    EXPECT_EQ(2, flagsAfter(2, 64, 0));
    EXPECT_EQ(255, flagsAfter(252, 0, 0));
}

TEST(PatConversion, toIntegerComparesWithTheCutValue)
{
    beginToInteger();
    algPats[0].commonPatNum = 1;
    algPats[0].algSinglePat[0] = {0, 1, 0, 344.0F, 0.5F, 0.0F};
    pats[0].singlePat[0].paraB = 244;
    pats[0].singlePat[0].paraC = 12589;
    EXPECT_TRUE(patAlg2IntV2(1, pats, algPats));
    EXPECT_EQ(0, pats[0].singlePat[0].isChanged);
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
    EXPECT_EQ(0, pats[0].singlePat[0].isChanged);
    EXPECT_EQ(1, pats[0].singlePat[1].isChanged);
    EXPECT_EQ(2, pats[0].singlePat[2].isChanged);
}

TEST(PatConversion, toIntegerLeavesEntriesAfterTheCount)
{
    beginToInteger();
    test::mark(pats);
    algPats[0].commonPatNum = 2;
    EXPECT_TRUE(patAlg2IntV2(1, pats, algPats));
    EXPECT_EQ(2, pats[0].commonPatNum);
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
        EXPECT_EQ(100, pats[0].commonPatNum);
        EXPECT_EQ(0, pats[0].singlePat[98].paraB);
        EXPECT_EQ(255, pats[0].singlePat[99].paraB);
        EXPECT_TRUE(isMarked(pats[1]));
    }
}

TEST(PatConversion, toIntegerConvertsMoreThan255Records)
{
    static const int counts[] = {255, 256, 257, 299};
    for (int count : counts) {
        beginToInteger();
        test::mark(pats);
        algPats[count - 1].commonPatNum = 1;
        algPats[count - 1].algSinglePat[0].paraB = 0.304F;
        EXPECT_TRUE(patAlg2IntV2(count, pats, algPats));
        EXPECT_EQ(1, pats[count - 1].commonPatNum);
        EXPECT_EQ(255, pats[count - 1].singlePat[0].paraB);
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
    EXPECT_EQ(2402.0F, algPats[0].algSinglePat[14].paraA);
    EXPECT_EQ(0.1512F, algPats[0].algSinglePat[14].paraB);
    EXPECT_EQ(-20.4998417F, algPats[0].algSinglePat[14].paraC);
    EXPECT_TRUE(patAlg2IntV2(1, pats, algPats));
    EXPECT_STREQ("0A1B2C3D4E5F", pats[0].deviceMac);
    EXPECT_EQ(15, pats[0].commonPatNum);
    EXPECT_TRUE(sameEntries(&pats[0], &pats[1]));
}
