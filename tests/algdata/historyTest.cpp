/* SPDX-License-Identifier: Apache-2.0 */
/* Values over time: the places of files, the order of snapshots, and the bars of a line. */
#include <cmath>
#include <gtest/gtest.h>

#include "query/figures.h"
#include "query/history.h"
#include "query/snapshots.h"
#include "records/naturalOrder.h"
#include "text/sparkline.h"

namespace
{

using namespace algdata;

const double gap = std::nan("");

TEST(NaturalOrder, ComparesNumbersByTheirValue)
{
    const std::vector<std::string> ordered = {"",
                                              "2026-9-30",
                                              "2026-11-2",
                                              "S",
                                              "s",
                                              "s1",
                                              "s1a",
                                              "s2",
                                              "s010",
                                              "s10",
                                              "s99999999999999999999",
                                              "s100000000000000000000"};
    for (size_t i = 0; i < ordered.size(); ++i)
        for (size_t j = 0; j < ordered.size(); ++j)
            EXPECT_EQ(isNaturallyLess(ordered[i], ordered[j]), i < j) << ordered[i] << " and " << ordered[j];
}

TEST(Sparkline, ReachesFromTheSmallestToTheLargest)
{
    EXPECT_EQ(sparkline({1, 2, 3, 4, 5, 6, 7, 8}, 40), "▁▂▃▄▅▆▇█");
    EXPECT_EQ(sparkline({5, -5}, 40), "█▁");
}

TEST(Sparkline, AGapIsABlank)
{
    EXPECT_EQ(sparkline({1, gap, 2}, 40), "▁ █");
    EXPECT_EQ(sparkline({gap, gap}, 40), "  ");
    EXPECT_EQ(sparkline({}, 40), "");
}

TEST(Sparkline, EqualValuesAreInTheMiddle)
{
    EXPECT_EQ(sparkline({7, 7, gap, 7}, 40), "▅▅ ▅");
}

TEST(Sparkline, ManyValuesAreAveraged)
{
    EXPECT_EQ(sparkline({0, 2, 8, gap, 14, 16}, 3), "▁▅█");
}

TEST(Median, OfAnEvenNumberIsTheMeanOfTheMiddle)
{
    std::vector<double> four = {9, 1, 4, 3};
    std::vector<double> three = {9, 1, 4};
    std::vector<double> none;
    EXPECT_EQ(medianOf(four), 3.5);
    EXPECT_EQ(medianOf(three), 4);
    EXPECT_FALSE(medianOf(none));
}

TEST(PathTemplate, MatchesTheEndOfAPath)
{
    const PathTemplate two("{a}/{b}");
    EXPECT_EQ(endOfPath("x/y/z", two), "y/z");
    EXPECT_EQ(endOfPath("/y/z", two), "y/z");
    EXPECT_EQ(endOfPath("y/z", two), "y/z");
    EXPECT_EQ(endOfPath("z", two), "z");
    EXPECT_EQ(endOfPath("", two), "");
}

/* ---- Places -------------------------------------------------------------- */

Options optionsWith(std::vector<std::string> templates, const std::string& order)
{
    Options options;
    options.templates = std::move(templates);
    options.order = order;
    return options;
}

TEST(SnapshotPaths, WithoutATemplateASnapshotIsADirectory)
{
    const SnapshotPaths paths(optionsWith({}, ""));
    EXPECT_EQ(paths.columns(), std::vector<std::string>{"file"});
    const std::pair<const char*, std::array<const char*, 2>> places[] = {{"x.txt", {".", "x.txt"}},
                                                                         {"./x.txt", {".", "x.txt"}},
                                                                         {"./a/x.txt", {"a", "x.txt"}},
                                                                         {"/x.txt", {"/", "x.txt"}},
                                                                         {"/a/b/x.txt", {"/a/b", "x.txt"}}};
    for (const auto& [path, expected] : places) {
        const auto place = paths.placeOf(path);
        ASSERT_TRUE(place) << path;
        EXPECT_EQ(place->snapshot, expected[0]) << path;
        EXPECT_EQ(place->values, std::vector<std::string>{expected[1]}) << path;
        EXPECT_EQ(place->series, "") << path;
    }
}

TEST(SnapshotPaths, WhatIsBeforeTheSnapshotHasSnapshotsOfItsOwn)
{
    const SnapshotPaths paths(optionsWith({"{home}/{snapshot}/score_re_{device}.txt"}, ""));
    EXPECT_EQ(paths.columns(), (std::vector<std::string>{"home", "device"}));
    const auto one = paths.placeOf("homes/north/day1/score_re_12.txt");
    const auto other = paths.placeOf("homes/north/day2/score_re_13.txt");
    const auto south = paths.placeOf("homes/south/day1/score_re_12.txt");
    ASSERT_TRUE(one && other && south);
    EXPECT_EQ(one->snapshot, "day1");
    EXPECT_EQ(one->values, (std::vector<std::string>{"north", "12"}));
    EXPECT_EQ(one->series, other->series);
    EXPECT_NE(one->series, south->series);
    EXPECT_FALSE(paths.placeOf("homes/north/day1/ap_rank.txt"));
}

TEST(SnapshotPaths, TimeIsTheFilesTimeUnlessAPartHasThatName)
{
    EXPECT_TRUE(SnapshotPaths(optionsWith({}, "time")).byTime());
    EXPECT_TRUE(SnapshotPaths(optionsWith({"{home}/*.txt"}, "time")).byTime());
    const SnapshotPaths named(optionsWith({"{home}/{time}.txt"}, "time"));
    EXPECT_FALSE(named.byTime());
    EXPECT_EQ(named.placeOf("north/0930.txt")->snapshot, "0930");
}

/* ---- The limit ----------------------------------------------------------- */

Options optionsFor(const std::string& field)
{
    Options options;
    options.field = field;
    return options;
}

TEST(History, RefusesMoreValuesThanTheLimit)
{
    const HistoryField field = historyFieldFrom(optionsFor("ap-rank.apRank"));
    History history(field);
    history.startFile({nullptr, {"x"}, "", "1"}, {});
    Record record;
    record.cells = {"a4c3f0000010", "a4c3f0000011", "1"};
    for (size_t i = 0; i < History::largest; ++i)
        history.add(record);
    EXPECT_THROW(history.add(record), History::TooMuch);
}

TEST(History, RefusesMoreGapsThanTheLimit)
{
    const HistoryField field = historyFieldFrom(optionsFor("ap-rank.apRank"));
    History history(field);
    Record record;
    for (size_t i = 0; i < 2000; ++i) {
        const std::string mac = "a4c3f000" + std::to_string(1000 + i);
        record.cells = {mac, "a4c3f0000011", "1"};
        history.startFile({nullptr, {"x"}, "", std::to_string(i)}, {});
        history.add(record);
    }
    EXPECT_THROW(history.finish(false), History::TooMuch);
}

TEST(History, ANulInADamagedKeyIsEscaped)
{
    const HistoryField field = historyFieldFrom(optionsFor("ap-rank.apRank"));
    History history(field);
    history.startFile({nullptr, {"x"}, "", "1"}, {});
    Record record;
    record.cells = {std::string_view("a4\0c", 4), "a4c3f0000011", "1"};
    history.add(record);
    history.finish(false);
    EXPECT_EQ(cellsOf(history.all()[0]), (std::vector<std::string>{"x", "a4\\x00c"}));
    EXPECT_EQ(history.fieldOf(history.all()[0]), "ap-rank.apRank");
}

} // namespace
