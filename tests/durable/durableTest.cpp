/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What durably() does with the file, its copy and its links, and what it logs if it fails.
 */
#include "durable.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <signal.h>
#include <sstream>
#include <stdarg.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "dataInterface.h"

namespace fs = std::filesystem;

static std::string messages;

int g_yra_debug = 3;

void libzo_log(const char* format, ...)
{
    char text[4096];
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    messages += text;
}

/* Every test has an empty directory. */
class Durable : public testing::Test
{
  protected:
    void SetUp() override
    {
        char name[] = "/tmp/durable-XXXXXX";
        ASSERT_NE(nullptr, mkdtemp(name));
        directory = fs::canonical(name);
        fs::current_path(directory);
        messages.clear();
    }
    void TearDown() override
    {
        fs::current_path("/");
        fs::remove_all(directory);
    }
    static void write(const char* path, const std::string& text) { std::ofstream(path) << text; }
    static std::string textOf(const char* path)
    {
        std::ostringstream text;
        text << std::ifstream(path).rdbuf();
        return text.str();
    }
    std::string full(const char* name) const { return (directory / name).string(); }

    fs::path directory;
};

/* ---- Changes and checks -------------------------------------------------------- */

static const char oldRank[] = "0a4e00000002 000000000000 1\n";
static const char bothRanks[] = "0a4e00000002 000000000000 1\n0a4e00000003 000000000000 2\n";
static const char newRank[] = "0a4e00000003 000000000000 2\n";

static bool addRank(const char* path, void*)
{
    ApRank rank = {"0a4e00000003", "000000000000", 2};
    return updataSingleApRankInfo(path, &rank);
}

static bool fails(const char*, void*)
{
    return false;
}

/* Writes half of a record before it fails. */
static bool failsHalfway(const char* path, void*)
{
    std::ofstream(path) << "0a4e00000002 0000";
    return false;
}

static bool changesNothing(const char*, void*)
{
    return true;
}

static bool accepts(const char*, void*)
{
    return true;
}

/* ---- What it keeps ---------------------------------------------------------------- */

TEST_F(Durable, changeReplacesTheFileAndLeavesNoCopy)
{
    write("f", oldRank);
    EXPECT_TRUE(durably("f", addRank, accepts, nullptr));
    EXPECT_EQ(bothRanks, textOf("f"));
    EXPECT_FALSE(fs::exists("f.new"));
    EXPECT_EQ("", messages);
}

TEST_F(Durable, changeAndVerifyGetTheCopyAndTheArgument)
{
    static std::string seen;
    seen.clear();
    write("f", oldRank);
    int argument = 0;
    const auto note = [](const char* path, void* what) {
        ++*static_cast<int*>(what);
        seen += path;
        return true;
    };
    EXPECT_TRUE(durably("f", note, note, &argument));
    EXPECT_EQ(full("f.new") + full("f.new"), seen);
    EXPECT_EQ(2, argument);
}

TEST_F(Durable, missingFileIsCreated)
{
    EXPECT_TRUE(durably("f", addRank, accepts, nullptr));
    EXPECT_EQ(newRank, textOf("f"));
    EXPECT_FALSE(fs::exists("f.new"));
}

TEST_F(Durable, missingFileMayStayMissing)
{
    EXPECT_TRUE(durably("f", changesNothing, accepts, nullptr));
    EXPECT_TRUE(fs::is_empty("."));
    EXPECT_EQ("", messages);
}

TEST_F(Durable, fileKeepsItsPermissions)
{
    write("f", oldRank);
    const mode_t mask = umask(077);
    chmod("f", 0664);
    EXPECT_TRUE(durably("f", addRank, accepts, nullptr));
    umask(mask);
    struct stat status;
    ASSERT_EQ(0, stat("f", &status));
    EXPECT_EQ(0664U, status.st_mode & 07777U);
}

TEST_F(Durable, fileKeepsItsOwner)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can give a file away";
    write("f", oldRank);
    ASSERT_EQ(0, chown("f", 1234, 4321));
    EXPECT_TRUE(durably("f", addRank, accepts, nullptr));
    struct stat status;
    ASSERT_EQ(0, stat("f", &status));
    EXPECT_EQ(1234U, status.st_uid);
    EXPECT_EQ(4321U, status.st_gid);
}

TEST_F(Durable, linkStaysALinkAndItsFileIsReplaced)
{
    fs::create_directory("d");
    write("d/f", oldRank);
    fs::create_symlink("d/f", "link");
    EXPECT_TRUE(durably("link", addRank, accepts, nullptr));
    EXPECT_TRUE(fs::is_symlink("link"));
    EXPECT_EQ(bothRanks, textOf("d/f"));
}

TEST_F(Durable, linkToNothingIsAnError)
{
    fs::create_symlink("nothing", "link");
    EXPECT_FALSE(durably("link", addRank, accepts, nullptr));
    EXPECT_EQ("durably: cannot find link: No such file or directory\n", messages);
    EXPECT_FALSE(fs::exists("nothing"));
}

/* ---- What a cut leaves behind -------------------------------------------------------- */

TEST_F(Durable, oldCopyIsReplaced)
{
    write("f", oldRank);
    write("f.new", "0a4e00000009 00000");
    chmod("f.new", 0);
    EXPECT_TRUE(durably("f", addRank, accepts, nullptr));
    EXPECT_EQ(bothRanks, textOf("f"));
    EXPECT_FALSE(fs::exists("f.new"));
}

TEST_F(Durable, oldCopyOfAMissingFileIsNotTaken)
{
    write("f.new", oldRank);
    EXPECT_TRUE(durably("f", addRank, accepts, nullptr));
    EXPECT_EQ(newRank, textOf("f"));
}

TEST_F(Durable, linkInPlaceOfTheCopyIsNotFollowed)
{
    write("f", oldRank);
    write("other", "other");
    fs::create_symlink("other", "f.new");
    EXPECT_TRUE(durably("f", addRank, accepts, nullptr));
    EXPECT_EQ("other", textOf("other"));
    EXPECT_FALSE(fs::is_symlink("f"));
    EXPECT_EQ(bothRanks, textOf("f"));
}

TEST_F(Durable, directoryInPlaceOfTheCopyIsAnError)
{
    write("f", oldRank);
    fs::create_directory("f.new");
    EXPECT_FALSE(durably("f", addRank, accepts, nullptr));
    EXPECT_EQ("durably: cannot remove the old copy " + full("f.new") + ": Is a directory\n", messages);
    EXPECT_EQ(oldRank, textOf("f"));
}

/* ---- Failures ------------------------------------------------------------------------- */

TEST_F(Durable, failedChangeLeavesTheFile)
{
    write("f", oldRank);
    EXPECT_FALSE(durably("f", failsHalfway, accepts, nullptr));
    EXPECT_EQ("durably: the change of " + full("f.new") + " fails\n", messages);
    EXPECT_EQ(oldRank, textOf("f"));
    EXPECT_FALSE(fs::exists("f.new"));
}

TEST_F(Durable, copyThatIsNotAsMeantLeavesTheFile)
{
    write("f", oldRank);
    EXPECT_FALSE(durably("f", addRank, fails, nullptr));
    EXPECT_EQ("durably: " + full("f.new") + " does not hold what was meant\n", messages);
    EXPECT_EQ(oldRank, textOf("f"));
    EXPECT_FALSE(fs::exists("f.new"));
}

TEST_F(Durable, directoryIsNoRecordFile)
{
    fs::create_directory("d");
    EXPECT_FALSE(durably("d", addRank, accepts, nullptr));
    EXPECT_EQ("durably: " + full("d") + " is not a regular file\n", messages);
}

TEST_F(Durable, missingDirectoryIsAnError)
{
    EXPECT_FALSE(durably("d/f", addRank, accepts, nullptr));
    EXPECT_NE(std::string::npos, messages.find("durably: the change of d/f.new fails\n"));
    EXPECT_TRUE(fs::is_empty("."));
}

TEST_F(Durable, nameWithoutRoomForTheCopysNameIsAnError)
{
    const std::string name(254, 'n');
    write(name.c_str(), oldRank);
    EXPECT_FALSE(durably(name.c_str(), addRank, accepts, nullptr));
    EXPECT_EQ("durably: cannot remove the old copy " + full(name.c_str()) + ".new: File name too long\n",
              messages);
    EXPECT_EQ(oldRank, textOf(name.c_str()));
}

/* A limit on the size of files fails a write as a full disk does. */
static bool durablyWithin(rlim_t size, const char* path)
{
    rlimit old;
    getrlimit(RLIMIT_FSIZE, &old);
    const rlimit limit = {size, old.rlim_max};
    const auto handler = signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &limit);
    const bool done = durably(path, addRank, accepts, nullptr);
    setrlimit(RLIMIT_FSIZE, &old);
    signal(SIGXFSZ, handler);
    return done;
}

TEST_F(Durable, diskWithoutRoomForTheCopyLeavesTheFile)
{
    write("f", oldRank);
    EXPECT_FALSE(durablyWithin(sizeof oldRank / 2, "f"));
    EXPECT_EQ("durably: cannot copy the file to " + full("f.new") + ": File too large\n", messages);
    EXPECT_EQ(oldRank, textOf("f"));
    EXPECT_FALSE(fs::exists("f.new"));
}

TEST_F(Durable, diskWithoutRoomForTheNewRecordsLeavesTheFile)
{
    write("f", oldRank);
    EXPECT_FALSE(durablyWithin(sizeof oldRank, "f"));
    EXPECT_NE(std::string::npos, messages.find("durably: the change of " + full("f.new") + " fails\n"));
    EXPECT_EQ(oldRank, textOf("f"));
    EXPECT_FALSE(fs::exists("f.new"));
}
