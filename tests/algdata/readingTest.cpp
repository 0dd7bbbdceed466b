/* SPDX-License-Identifier: Apache-2.0 */
/* Finding and reading files, and passing them to the module, while other processes change them. */
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <vector>

#include "reading/listing.h"
#include "reading/walk.h"
#include "view/copy.h"
#include "view/view.h"

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

TEST_F(ReadingTest, AWalkContinuesAfterADirectoryThatVanished)
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

TEST_F(ReadingTest, AWalkContinuesAfterAnUnreadableDirectory)
{
    for (const char* name : {"a/one", "b/two", "c/three"})
        write(name, rank);
    constexpr uid_t nobody = 65534;
    const uid_t self = geteuid();
    fs::permissions(directory, fs::perms::all);
    fs::permissions(path("b"), fs::perms::none);
    Paths visited;
    Paths unreadable;
    ASSERT_EQ(seteuid(self == 0 ? nobody : self), 0); /* root can read everything */
    walk(
        directory, [&](const std::string& file) { visited.push_back(file); },
        [&](const std::string& place, const std::string& why) { unreadable.push_back(place + ": " + why); });
    ASSERT_EQ(seteuid(self), 0);
    fs::permissions(path("b"), fs::perms::owner_all);
    EXPECT_EQ(visited, (Paths{path("a/one"), path("c/three")}));
    EXPECT_EQ(unreadable, (Paths{path("b") + ": Permission denied"}));
}

TEST_F(ReadingTest, AnEntryIsReportedOnlyIfItsDirectoryCannotBeRead)
{
    write("b/two", rank);
    constexpr uid_t nobody = 65534;
    const uid_t self = geteuid();
    fs::permissions(directory, fs::perms::all);
    fs::permissions(path("b"), fs::perms::none);
    Paths unreadable;
    const OnUnreadable report = [&](const std::string& place, const std::string& why) {
        unreadable.push_back(place + ": " + why);
    };
    ASSERT_EQ(seteuid(self == 0 ? nobody : self), 0); /* root can read everything */
    EXPECT_FALSE(entryNamed(path("b"), "two", report));
    EXPECT_FALSE(entryNamed(directory, "missing", report));
    EXPECT_FALSE(entryNamed(directory, std::string(256, 'x'), report));
    ASSERT_EQ(seteuid(self), 0);
    fs::permissions(path("b"), fs::perms::owner_all);
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

/* ---- Copies for the module's readers ------------------------------------- */

std::string textOf(const std::string& file)
{
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

TEST_F(ReadingTest, ACopyContainsTheBytesAndIsRemovedAfterwards)
{
    const std::string bytes("a4c3f0000010\0 0\n", 16);
    for (const PrivateCopy::Place place : {PrivateCopy::InMemory, PrivateCopy::InDirectory}) {
        std::string name;
        {
            const PrivateCopy copy(bytes, place);
            name = copy.path();
            EXPECT_EQ(textOf(name), bytes);
            EXPECT_EQ(textOf(name), bytes) << "each open begins at the first byte";
            EXPECT_EQ(copy.bytes(), bytes);
        }
        EXPECT_FALSE(fs::exists(name)) << name;
    }
}

/* The MACs of the records that the module's reader returns. */
std::vector<std::string> loadedMacs(const Source& source)
{
    View view(source, true);
    Record record;
    std::vector<std::string> macs;
    while (view.next(record))
        macs.emplace_back(record.cells[0]);
    return macs;
}

/* The reader opens the file twice, to count lines and to read. A change in between must not matter. */
TEST_F(ReadingTest, TheLoadedViewIsOfTheBytesThatWereRead)
{
    const std::vector<std::string> one = {"a4c3f0000010"};
    std::string thousand;
    for (int i = 0; i < 1000; ++i)
        thousand += rank;
    Source source;
    write("rank", rank);
    readSource(path("rank"), source);
    source.kind = findKind("ap-rank");

    std::ofstream(path("rank"), std::ios::app) << thousand;
    EXPECT_EQ(loadedMacs(source), one) << "appended to";

    write("other", thousand);
    fs::rename(path("other"), path("rank"));
    EXPECT_EQ(loadedMacs(source), one) << "another file in its place";

    fs::resize_file(path("rank"), 0);
    EXPECT_EQ(loadedMacs(source), one) << "emptied";

    fs::remove(path("rank"));
    EXPECT_EQ(loadedMacs(source), one) << "removed";
}

TEST_F(ReadingTest, TheLoadedViewLeavesTheFileAsItIs)
{
    Source source;
    write("pat", ""); /* the reader of this kind fills an empty file */
    readSource(path("pat"), source);
    source.kind = findKind("pat-v2");
    EXPECT_EQ(loadedMacs(source).size(), 1U);
    EXPECT_EQ(textOf(path("pat")), "");
}

} // namespace
