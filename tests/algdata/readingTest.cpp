/* SPDX-License-Identifier: Apache-2.0 */
/* How files are found, read and handed to the module while others change them. */
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <vector>

#include "reading/walk.h"

namespace
{

namespace fs = std::filesystem;
using namespace algdata;

constexpr const char* rank = "a4c3f0000010 000000000000 0\n";

class ReadingTest : public testing::Test
{
  protected:
    ReadingTest()
    {
        char name[] = "/tmp/algdata-reading.XXXXXX";
        directory = mkdtemp(name);
    }
    ~ReadingTest() override { fs::remove_all(directory); }

    std::string path(const std::string& name) const { return directory + "/" + name; }

    void write(const std::string& name, const std::string& text) const
    {
        fs::create_directories(fs::path(path(name)).parent_path());
        std::ofstream(path(name)) << text;
    }

    std::string directory;
};

/* ---- The walk ----------------------------------------------------------- */

using Paths = std::vector<std::string>;

TEST_F(ReadingTest, AWalkGoesOnAfterADirectoryThatHasVanished)
{
    for (const char* name : {"a/one", "b/two", "c/three"})
        write(name, rank);
    Paths visited;
    Paths unreadable;
    walk(
        directory,
        [&](const std::string& file) {
            visited.push_back(file);
            fs::remove_all(path("b"));
        },
        [&](const std::string& place, const std::string& why) { unreadable.push_back(place + ": " + why); });
    EXPECT_EQ(visited, (Paths{path("a/one"), path("c/three")}));
    EXPECT_EQ(unreadable, (Paths{path("b") + ": No such file or directory"}));
}

TEST_F(ReadingTest, AWalkGoesOnAfterADirectoryThatMayNotBeRead)
{
    for (const char* name : {"a/one", "b/two", "c/three"})
        write(name, rank);
    constexpr uid_t nobody = 65534;
    const uid_t self = geteuid();
    fs::permissions(directory, fs::perms::all);
    fs::permissions(path("b"), fs::perms::none);
    Paths visited;
    Paths unreadable;
    ASSERT_EQ(seteuid(self == 0 ? nobody : self), 0); /* root may read everything */
    walk(
        directory, [&](const std::string& file) { visited.push_back(file); },
        [&](const std::string& place, const std::string& why) { unreadable.push_back(place + ": " + why); });
    ASSERT_EQ(seteuid(self), 0);
    fs::permissions(path("b"), fs::perms::owner_all);
    EXPECT_EQ(visited, (Paths{path("a/one"), path("c/three")}));
    EXPECT_EQ(unreadable, (Paths{path("b") + ": Permission denied"}));
}

TEST_F(ReadingTest, AWalkFollowsLinksToFilesOnly)
{
    write("data/file", rank);
    write("elsewhere/other", rank);
    fs::create_symlink("../elsewhere/other", path("data/link"));
    fs::create_symlink("../elsewhere", path("data/linkToDirectory"));
    fs::create_symlink("nowhere", path("data/linkToNothing"));
    fs::create_symlink("circle", path("data/circle"));
    Paths visited;
    walk(
        path("data"), [&](const std::string& file) { visited.push_back(file); },
        [](const std::string& place, const std::string& why) { ADD_FAILURE() << place << ": " << why; });
    EXPECT_EQ(visited, (Paths{path("data/file"), path("data/link")}));
}

} // namespace
