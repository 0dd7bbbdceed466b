/* SPDX-License-Identifier: Apache-2.0 */
/* The constants, the lookup of peak thresholds and the two settings. */
#include "testing.h"

#include <limits.h>

/* Taken while the program loads: every test starts with the settings put back. */
static const float patcCompensationAtLoad = ai_yra_patc_compensation;
static const uint8_t rssiCompensationAtLoad = ai_yra_rssi_compensation;

/* ---- Constants ---------------------------------------------------------- */

/* Band, channel width, MCS order, threshold. */
static const int listed[15][4] = {{0, 1, 0, 344},  {0, 1, 1, 459},  {0, 1, 2, 574},  {1, 3, 0, 1441},
                                  {1, 3, 1, 1922}, {1, 3, 2, 2402}, {2, 3, 0, 1441}, {2, 3, 1, 1922},
                                  {2, 3, 2, 2402}, {3, 3, 0, 1441}, {3, 3, 1, 1922}, {3, 3, 2, 2402},
                                  {4, 3, 0, 1441}, {4, 3, 1, 1922}, {4, 3, 2, 2402}};

/* Five channel widths of band 0, then of band 1, and so on. */
static const int dense[25][4] = {
    {144, 200, 287, 344},  {300, 400, 574, 688},  {1, 1, 1, 1},          {1, 1, 1, 1},
    {1, 1, 1, 1},          {1, 200, 287, 344},    {1, 400, 574, 688},    {1, 866, 1200, 1442},
    {1, 1733, 2400, 2882}, {1, 2883, 3603, 4324}, {1, 200, 287, 344},    {1, 400, 574, 688},
    {1, 866, 1200, 1442},  {1, 1733, 2400, 2882}, {1, 2883, 3603, 4324}, {1, 200, 287, 344},
    {1, 400, 574, 688},    {1, 866, 1200, 1442},  {1, 1733, 2400, 2882}, {1, 3843, 4804, 5764},
    {1, 200, 287, 344},    {1, 400, 574, 688},    {1, 866, 1200, 1442},  {1, 1733, 2400, 2882},
    {1, 3843, 4804, 5764}};

TEST(ThresholdsAndSettings, listedConfigurationsHaveTheirOrderAndThresholds)
{
    for (int i = 0; i < 15; ++i) {
        EXPECT_EQ(peekThrStructure[i].bandOrder, listed[i][0]);
        EXPECT_EQ(peekThrStructure[i].channelWidthOrder, listed[i][1]);
        EXPECT_EQ(peekThrStructure[i].mcsOrder, listed[i][2]);
        EXPECT_EQ(peekThrStructure[i].peekThr, listed[i][3]);
    }
}

TEST(ThresholdsAndSettings, fifteenConfigurationsAreListed)
{
    EXPECT_EQ(static_cast<int>(PEEK_THR_STRUCTURE_NUM), 15);
    EXPECT_EQ(sizeof peekThrStructure / sizeof peekThrStructure[0], 15U);
}

TEST(ThresholdsAndSettings, denseTableHoldsEveryThreshold)
{
    EXPECT_EQ(sizeof peekThr, 400U);
    int row = 0;
    for (int band = 0; band < 5; ++band) {
        for (int width = 0; width < 5; ++width, ++row) {
            for (int mcs = 0; mcs < 4; ++mcs)
                EXPECT_EQ(peekThr[band][width][mcs], dense[row][mcs]);
        }
    }
}

TEST(ThresholdsAndSettings, tablesDisagreeWhereTheyAreMeantTo)
{
    EXPECT_EQ(getPeekThr(0, 1, 1), 459);
    EXPECT_EQ(peekThr[0][1][1], 400);
    EXPECT_EQ(getPeekThr(4, 3, 1), 1922);
    EXPECT_EQ(peekThr[4][3][1], 1733);
    EXPECT_EQ(getPeekThr(1, 3, 0), 1441);
    EXPECT_EQ(peekThr[1][3][0], 1);
}

TEST(ThresholdsAndSettings, mimoCodes)
{
    EXPECT_EQ(static_cast<int>(MIMO_UNKONOW), 0);
    EXPECT_EQ(static_cast<int>(MIMO_1), 1);
    EXPECT_EQ(static_cast<int>(MIMO_2), 2);
    EXPECT_EQ(static_cast<int>(MIMO_3), 3);
    EXPECT_EQ(static_cast<int>(MIMO_4), 4);
    EXPECT_EQ(static_cast<int>(MIMO_8), 8);
    EXPECT_EQ(static_cast<int>(MIMO_OTHERS), 99);
}

TEST(ThresholdsAndSettings, strategyCodes)
{
    EXPECT_EQ(static_cast<int>(ALG_STRATEGY_UNKNOW), 0);
    EXPECT_EQ(static_cast<int>(ALG_STRATEGY_CAREFUL), 1);
    EXPECT_EQ(static_cast<int>(ALG_STRATEGY_REDICAL), 2);
    EXPECT_EQ(static_cast<int>(ALG_STRATEGY_GET_BEST), 3);
}

TEST(ThresholdsAndSettings, strategyHasThirtyTwoBits)
{
    EXPECT_EQ(sizeof(ALG_STRATEGY), 4U);
}

TEST(ThresholdsAndSettings, configurationRowHasNaturalAlignment)
{
    EXPECT_EQ(sizeof(PeekThrStructure), 6U);
    EXPECT_EQ(offsetof(PeekThrStructure, bandOrder), 0U);
    EXPECT_EQ(offsetof(PeekThrStructure, channelWidthOrder), 1U);
    EXPECT_EQ(offsetof(PeekThrStructure, mcsOrder), 2U);
    EXPECT_EQ(offsetof(PeekThrStructure, peekThr), 4U);
}

/* ---- Lookup ------------------------------------------------------------- */

static uint16_t thresholdOf(int band, int width, int mcs)
{
    return getPeekThr(static_cast<uint8_t>(band), static_cast<uint8_t>(width), static_cast<uint8_t>(mcs));
}

TEST(ThresholdsAndSettings, lookupFindsEveryListedConfiguration)
{
    for (int i = 0; i < 15; ++i)
        EXPECT_EQ(thresholdOf(listed[i][0], listed[i][1], listed[i][2]), listed[i][3]);
}

TEST(ThresholdsAndSettings, lookupOfKnownConfigurations)
{
    EXPECT_EQ(getPeekThr(0, 1, 0), 344);
    EXPECT_EQ(getPeekThr(0, 1, 2), 574);
    EXPECT_EQ(getPeekThr(2, 3, 1), 1922);
    EXPECT_EQ(getPeekThr(4, 3, 2), 2402);
}

TEST(ThresholdsAndSettings, lookupOfAnUnlistedConfigurationGivesOne)
{
    EXPECT_EQ(getPeekThr(0, 0, 0), 1);
    EXPECT_EQ(getPeekThr(1, 3, 3), 1);
    EXPECT_EQ(getPeekThr(0, 3, 0), 1);
    EXPECT_EQ(getPeekThr(1, 1, 0), 1);
    EXPECT_EQ(getPeekThr(5, 3, 0), 1);
    EXPECT_EQ(getPeekThr(255, 255, 255), 1);
}

TEST(ThresholdsAndSettings, lookupFindsNothingButTheListedConfigurations)
{
    int found = 0;
    for (int band = 0; band < 16; ++band) {
        for (int width = 0; width < 16; ++width) {
            for (int mcs = 0; mcs < 16; ++mcs)
                found += thresholdOf(band, width, mcs) != 1;
        }
    }
    EXPECT_EQ(found, 15);
}

TEST(ThresholdsAndSettings, lookupLogsNothing)
{
    getPeekThr(0, 1, 0);
    getPeekThr(0, 0, 0);
    EXPECT_EQ(test::messageCount(), 0);
}

/* ---- Settings ----------------------------------------------------------- */

TEST(ThresholdsAndSettings, settingsAtLoad)
{
    EXPECT_EQ(patcCompensationAtLoad, 10.0F);
    EXPECT_EQ(rssiCompensationAtLoad, 3);
}

TEST(ThresholdsAndSettings, setterStoresTheValue)
{
    ai_alg_set_patc_comp(7);
    EXPECT_EQ(ai_yra_patc_compensation, 7.0F);
    ai_alg_set_patc_comp(-12);
    EXPECT_EQ(ai_yra_patc_compensation, -12.0F);
    ai_alg_set_patc_comp(0);
    EXPECT_EQ(ai_yra_patc_compensation, 0.0F);
}

TEST(ThresholdsAndSettings, setterLeavesTheRssiCompensation)
{
    ai_alg_set_patc_comp(7);
    EXPECT_EQ(ai_yra_rssi_compensation, 3);
}

TEST(ThresholdsAndSettings, setterLogsTheNewValueAtLevelFive)
{
    test::setLevel(5);
    ai_alg_set_patc_comp(7);
    EXPECT_STREQ(test::messages(),
                 "libzo: [ai_alg_set_patc_comp:#]: setting ai_yra_patc_compensation to [7.000000]|");
}

TEST(ThresholdsAndSettings, setterLogsAboveLevelFive)
{
    test::setLevel(6);
    ai_alg_set_patc_comp(-3);
    EXPECT_STREQ(test::messages(),
                 "libzo: [ai_alg_set_patc_comp:#]: setting ai_yra_patc_compensation to [-3.000000]|");
}

TEST(ThresholdsAndSettings, setterIsSilentAtLevelFourAndStoresAllTheSame)
{
    test::setLevel(4);
    ai_alg_set_patc_comp(7);
    EXPECT_EQ(test::messageCount(), 0);
    EXPECT_EQ(ai_yra_patc_compensation, 7.0F);
}

TEST(ThresholdsAndSettings, setterKeepsWhatAFloatHolds)
{
    ai_alg_set_patc_comp(16777217);
    EXPECT_EQ(ai_yra_patc_compensation, 16777216.0F);
    EXPECT_STREQ(test::messages(),
                 "libzo: [ai_alg_set_patc_comp:#]: setting ai_yra_patc_compensation to [16777216.000000]|");
}

TEST(ThresholdsAndSettings, setterTakesTheEndsOfTheRange)
{
    ai_alg_set_patc_comp(INT_MAX);
    EXPECT_EQ(ai_yra_patc_compensation, 2147483648.0F);
    ai_alg_set_patc_comp(INT_MIN);
    EXPECT_EQ(ai_yra_patc_compensation, -2147483648.0F);
}
