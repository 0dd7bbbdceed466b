/* SPDX-License-Identifier: Apache-2.0 */
/* The mesh of a home: whose file a file is, what is past, and trees of any shape. */
#include <gtest/gtest.h>
#include <string>

#include <fmt/format.h>

#include "mesh/meshReader.h"

namespace
{

using namespace algdata;

void add(Mesh& mesh, const char* kind, const std::string& name, const std::string& bytes)
{
    Source source;
    source.name = name;
    source.bytes = bytes;
    mesh.add(source, kindNamed(kind), macInName(name));
}

/* A ranking in which each device has the father of the same place. */
std::string ranking(const std::vector<Mac>& devices, const std::vector<Mac>& fathers)
{
    std::string text = fmt::format("{} 0 1 5\n", devices.size());
    for (size_t i = 0; i < devices.size(); ++i)
        text += fmt::format("{} {} 1 10\n", macText(devices[i]), macText(fathers[i]));
    return text;
}

Mesh rankedMesh(const std::vector<Mac>& devices, const std::vector<Mac>& fathers)
{
    Mesh mesh;
    add(mesh, "ap-rank-index", "index.txt", ranking(devices, fathers));
    mesh.settle();
    return mesh;
}

/* "1 2 -3": the devices as they are drawn, with a minus sign for each level. */
std::string drawn(const Mesh& mesh)
{
    std::string text;
    for (const TreeNode& node : mesh.tree)
        text += (text.empty() ? "" : " ") + std::string(node.depth, '-') +
                std::to_string(mesh.devices[node.device].mac);
    return text;
}

TEST(MeshTest, AMacInTheNameOfAFileIsWhoseFileItIs)
{
    EXPECT_EQ(macInName("score_re_0a4e00000002.txt"), Mac(0x0a4e00000002));
    EXPECT_EQ(macInName("0A4E00000002"), Mac(0x0a4e00000002));
    EXPECT_EQ(macInName("0a4e00000001_to_0a4e00000002.txt"), Mac(0x0a4e00000002)) << "the last one";
    EXPECT_EQ(macInName("homes/0a4e00000002/score.txt"), std::nullopt) << "not of the directory";
    EXPECT_EQ(macInName("score_re_0a4e000000021.txt"), std::nullopt) << "13 digits";
    EXPECT_EQ(macInName("score_re_0a4e0000002.txt"), std::nullopt) << "11 digits";
    EXPECT_EQ(macInName(""), std::nullopt);
}

TEST(MeshTest, AWordInTheNameOfAFileSaysThatItIsPast)
{
    EXPECT_TRUE(namedAsPast("ap_all_previous.txt"));
    EXPECT_TRUE(namedAsPast("a/OLD-ap_rank.txt"));
    EXPECT_TRUE(namedAsPast("ap_rank.txt.bak"));
    EXPECT_TRUE(namedAsPast("log"));
    EXPECT_FALSE(namedAsPast("catalogue.txt"));
    EXPECT_FALSE(namedAsPast("old/ap_rank.txt")) << "not of the directory";
    EXPECT_FALSE(namedAsPast(""));
}

TEST(MeshTest, SonsFollowTheirFatherInTheOrderOfTheirMacs)
{
    EXPECT_EQ(drawn(rankedMesh({4, 3, 2, 1}, {2, 1, 1, 0})), "1 -2 --4 -3");
}

TEST(MeshTest, EveryDeviceOfABrokenTreeIsDrawnOnce)
{
    EXPECT_EQ(drawn(rankedMesh({1, 2, 3}, {2, 1, 1})), "1 -2 -3") << "a cycle of two, and a son";
    EXPECT_EQ(drawn(rankedMesh({1, 2}, {1, 1})), "1 -2") << "its own father";
    EXPECT_EQ(drawn(rankedMesh({1, 2, 3}, {9, 0, 1})), "2 1 -3") << "an unknown father";
    EXPECT_EQ(drawn(rankedMesh({1, 2, 3, 4}, {2, 1, 4, 3})), "1 -2 3 -4") << "two cycles";
    EXPECT_EQ(drawn(rankedMesh({}, {})), "");
}

TEST(MeshTest, APathEndsInACycleAndIsShortened)
{
    const Mesh cycle = rankedMesh({1, 2}, {2, 1});
    EXPECT_EQ(cycle.pathTo(0), "000000000002/000000000001");

    std::vector<Mac> devices, fathers;
    for (Mac mac = 1; mac <= 40; ++mac) {
        devices.push_back(mac);
        fathers.push_back(mac - 1);
    }
    const Mesh chain = rankedMesh(devices, fathers);
    EXPECT_EQ(chain.pathTo(39).size(), 4 + maxPath * 13 - 1);
    EXPECT_EQ(chain.pathTo(39).substr(0, 17), ".../000000000009/");
}

TEST(MeshTest, ThePresentIsTrustedInTheOrderOfTheOrigins)
{
    Mesh mesh;
    add(mesh, "ap-rank", "ap_rank.txt", "000000000002 000000000003 5\n");
    add(mesh, "ap-rank-index", "index_old.txt", ranking({1, 2, 3}, {0, 1, 1}));
    mesh.settle();
    const MeshDevice& device = mesh.devices[mesh.find(2)];
    ASSERT_EQ(device.fathers.size(), 2U);
    EXPECT_EQ(device.fathers[0].value, 3U) << "AP rank is of the present";
    EXPECT_EQ(device.ranks[0].value, 5U);
    EXPECT_FALSE(disagree(device.fathers)) << "the past does not count";
    EXPECT_EQ(mesh.text(device.fathers[0].place), "ap_rank.txt:1");
    EXPECT_EQ(mesh.text(device.fathers[1].place), "index_old.txt:3");
}

TEST(MeshTest, ADeviceCanHaveAName)
{
    Mesh mesh;
    mesh.names[2] = "attic";
    EXPECT_EQ(mesh.nameOf(2), "attic");
    EXPECT_EQ(mesh.nameOf(1), "");
}

} // namespace
