/* SPDX-License-Identifier: Apache-2.0 */
/* The constants, the lookup of peak thresholds and the two settings. */
#include "scenario.h"

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
        EXPECT_EQ(listed[i][0], peekThrStructure[i].bandOrder);
        EXPECT_EQ(listed[i][1], peekThrStructure[i].channelWidthOrder);
        EXPECT_EQ(listed[i][2], peekThrStructure[i].mcsOrder);
        EXPECT_EQ(listed[i][3], peekThrStructure[i].peekThr);
    }
}

TEST(ThresholdsAndSettings, fifteenConfigurationsAreListed)
{
    EXPECT_EQ(15, static_cast<int>(PEEK_THR_STRUCTURE_NUM));
    EXPECT_EQ(15U, sizeof peekThrStructure / sizeof peekThrStructure[0]);
}

TEST(ThresholdsAndSettings, denseTableHoldsEveryThreshold)
{
    EXPECT_EQ(400U, sizeof peekThr);
    int row = 0;
    for (int band = 0; band < 5; ++band) {
        for (int width = 0; width < 5; ++width, ++row) {
            for (int mcs = 0; mcs < 4; ++mcs)
                EXPECT_EQ(dense[row][mcs], peekThr[band][width][mcs]);
        }
    }
}

TEST(ThresholdsAndSettings, tablesDisagreeWhereTheyAreMeantTo)
{
    EXPECT_EQ(459, getPeekThr(0, 1, 1));
    EXPECT_EQ(400, peekThr[0][1][1]);
    EXPECT_EQ(1922, getPeekThr(4, 3, 1));
    EXPECT_EQ(1733, peekThr[4][3][1]);
    EXPECT_EQ(1441, getPeekThr(1, 3, 0));
    EXPECT_EQ(1, peekThr[1][3][0]);
}

TEST(ThresholdsAndSettings, mimoCodes)
{
    EXPECT_EQ(0, static_cast<int>(MIMO_UNKONOW));
    EXPECT_EQ(1, static_cast<int>(MIMO_1));
    EXPECT_EQ(2, static_cast<int>(MIMO_2));
    EXPECT_EQ(3, static_cast<int>(MIMO_3));
    EXPECT_EQ(4, static_cast<int>(MIMO_4));
    EXPECT_EQ(8, static_cast<int>(MIMO_8));
    EXPECT_EQ(99, static_cast<int>(MIMO_OTHERS));
}

TEST(ThresholdsAndSettings, strategyCodes)
{
    EXPECT_EQ(0, static_cast<int>(ALG_STRATEGY_UNKNOW));
    EXPECT_EQ(1, static_cast<int>(ALG_STRATEGY_CAREFUL));
    EXPECT_EQ(2, static_cast<int>(ALG_STRATEGY_REDICAL));
    EXPECT_EQ(3, static_cast<int>(ALG_STRATEGY_GET_BEST));
}

/* ---- Lookup ------------------------------------------------------------- */

static uint16_t thresholdOf(int band, int width, int mcs)
{
    return getPeekThr(static_cast<uint8_t>(band), static_cast<uint8_t>(width), static_cast<uint8_t>(mcs));
}

TEST(ThresholdsAndSettings, lookupFindsEveryListedConfiguration)
{
    for (int i = 0; i < 15; ++i)
        EXPECT_EQ(listed[i][3], thresholdOf(listed[i][0], listed[i][1], listed[i][2]));
}

TEST(ThresholdsAndSettings, lookupOfKnownConfigurations)
{
    EXPECT_EQ(344, getPeekThr(0, 1, 0));
    EXPECT_EQ(574, getPeekThr(0, 1, 2));
    EXPECT_EQ(1922, getPeekThr(2, 3, 1));
    EXPECT_EQ(2402, getPeekThr(4, 3, 2));
}

TEST(ThresholdsAndSettings, lookupOfAnUnlistedConfigurationReturnsOne)
{
    EXPECT_EQ(1, getPeekThr(0, 0, 0));
    EXPECT_EQ(1, getPeekThr(1, 3, 3));
    EXPECT_EQ(1, getPeekThr(0, 3, 0));
    EXPECT_EQ(1, getPeekThr(1, 1, 0));
    EXPECT_EQ(1, getPeekThr(5, 3, 0));
    EXPECT_EQ(1, getPeekThr(255, 255, 255));
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
    EXPECT_EQ(15, found);
}

TEST(ThresholdsAndSettings, lookupLogsNothing)
{
    getPeekThr(0, 1, 0);
    getPeekThr(0, 0, 0);
    EXPECT_EQ(0, test::messageCount());
}

/* ---- Settings ----------------------------------------------------------- */

TEST(ThresholdsAndSettings, settingsAtLoad)
{
    EXPECT_EQ(10.0F, patcCompensationAtLoad);
    EXPECT_EQ(3, rssiCompensationAtLoad);
}

TEST(ThresholdsAndSettings, setterStoresTheValue)
{
    ai_alg_set_patc_comp(7);
    EXPECT_EQ(7.0F, ai_yra_patc_compensation);
    ai_alg_set_patc_comp(-12);
    EXPECT_EQ(-12.0F, ai_yra_patc_compensation);
    ai_alg_set_patc_comp(0);
    EXPECT_EQ(0.0F, ai_yra_patc_compensation);
}

TEST(ThresholdsAndSettings, setterLeavesTheRssiCompensation)
{
    ai_alg_set_patc_comp(7);
    EXPECT_EQ(3, ai_yra_rssi_compensation);
}

TEST(ThresholdsAndSettings, setterLogsTheNewValueAtLevelFive)
{
    test::setLevel(5);
    ai_alg_set_patc_comp(7);
    EXPECT_MESSAGES("N ai_alg_set_patc_comp: setting ai_yra_patc_compensation to [7.000000]");
}

TEST(ThresholdsAndSettings, setterLogsAboveLevelFive)
{
    test::setLevel(6);
    ai_alg_set_patc_comp(-3);
    EXPECT_MESSAGES("N ai_alg_set_patc_comp: setting ai_yra_patc_compensation to [-3.000000]");
}

TEST(ThresholdsAndSettings, setterIsSilentAtLevelFourAndStoresAllTheSame)
{
    test::setLevel(4);
    ai_alg_set_patc_comp(7);
    EXPECT_EQ(0, test::messageCount());
    EXPECT_EQ(7.0F, ai_yra_patc_compensation);
}

TEST(ThresholdsAndSettings, setterKeepsWhatAFloatHolds)
{
    ai_alg_set_patc_comp(16777217);
    EXPECT_EQ(16777216.0F, ai_yra_patc_compensation);
    EXPECT_MESSAGES("N ai_alg_set_patc_comp: setting ai_yra_patc_compensation to [16777216.000000]");
}

TEST(ThresholdsAndSettings, setterAcceptsTheEndsOfTheRange)
{
    ai_alg_set_patc_comp(INT_MAX);
    EXPECT_EQ(2147483648.0F, ai_yra_patc_compensation);
    ai_alg_set_patc_comp(INT_MIN);
    EXPECT_EQ(-2147483648.0F, ai_yra_patc_compensation);
}
