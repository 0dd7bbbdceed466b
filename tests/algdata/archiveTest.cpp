/* SPDX-License-Identifier: Apache-2.0 */
/* Reading archives: which files are visited, what is passed over, and the limits. */
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include <archive.h>
#include <archive_entry.h>

#include "reading/archive.h"
#include "text/names.h"

namespace
{

using namespace algdata;

constexpr uint64_t kibi = 1024;

enum class Packing { Tar, Gzip, Zstd, Zip };

using Files = std::vector<std::pair<std::string, std::string>>;

class ArchiveTest : public testing::Test
{
  protected:
    ArchiveTest()
    {
        char name[] = "/tmp/algdata-archive.XXXXXX";
        directory = mkdtemp(name);
        path = directory + "/archive";
    }
    ~ArchiveTest() override { std::filesystem::remove_all(directory); }

    void write(Packing packing, const Files& files) const
    {
        archive* const out = archive_write_new();
        if (packing == Packing::Zip)
            archive_write_set_format_zip(out);
        else
            archive_write_set_format_ustar(out);
        if (packing == Packing::Gzip)
            archive_write_add_filter_gzip(out);
        if (packing == Packing::Zstd)
            archive_write_add_filter_zstd(out);
        archive_write_open_filename(out, path.c_str());
        archive_entry* const entry = archive_entry_new();
        for (const auto& [name, bytes] : files) {
            archive_entry_clear(entry);
            archive_entry_set_pathname(entry, name.c_str());
            archive_entry_set_filetype(entry, AE_IFREG);
            archive_entry_set_perm(entry, 0644);
            archive_entry_set_size(entry, static_cast<int64_t>(bytes.size()));
            archive_entry_set_mtime(entry, 1700000000, 0);
            archive_write_header(out, entry);
            archive_write_data(out, bytes.data(), bytes.size());
        }
        archive_entry_free(entry);
        ASSERT_EQ(archive_write_free(out), ARCHIVE_OK);
    }

    /* The failure of a call, without the path; "" if there is none. */
    template <typename Call> std::string failureOf(Call call) const
    {
        try {
            call();
        } catch (const Failure& failure) {
            std::string text = failure.what();
            text.replace(text.find(path), path.size(), "ARCHIVE");
            return text;
        }
        return "";
    }

    /* The first failure while all members are read, or passed over. */
    std::string failureOfAll(const ArchiveLimits& limits, bool reading) const
    {
        return failureOf([&] {
            ArchiveReader reader(path, limits);
            std::string bytes;
            for (Member member; reader.next(member);)
                if (reading)
                    reader.read(bytes);
        });
    }

    std::string directory;
    std::string path;
};

TEST(ArchiveNames, TheEndingsOfArchivesAreRecognisedInAnyLetterCase)
{
    for (const char* name :
         {"a.tar", "a.tar.gz", "a.tgz", "a.tar.zst", "a.tzst", "a.zip", "b/A.TAR.GZ", "a.Zip"})
        EXPECT_TRUE(namesArchive(name)) << name;
    for (const char* name : {"", "-", "tar", "a.tar/b", "a.gz", "a.zst", "a.tar.xz", "a.zip.txt", "zip"})
        EXPECT_FALSE(namesArchive(name)) << name;
}

TEST(ArchiveNames, ASetOfNamesKnowsEachNameThatWasAdded)
{
    NameSet names;
    for (int i = 0; i < 100'000; ++i)
        ASSERT_TRUE(names.add("home" + std::to_string(i) + "/score.txt")) << i;
    for (int i = 0; i < 100'000; ++i)
        ASSERT_FALSE(names.add("home" + std::to_string(i) + "/score.txt")) << i;
    EXPECT_TRUE(names.add(""));
    EXPECT_FALSE(names.add(""));
}

TEST_F(ArchiveTest, AMemberHasItsNameSizeTimeAndContent)
{
    for (const Packing packing : {Packing::Tar, Packing::Gzip, Packing::Zstd, Packing::Zip}) {
        write(packing, {{"h1/one.txt", "1\n"}, {"./h1/two.txt", ""}});
        ArchiveReader reader(path);
        Member member;
        std::string bytes = "from before";
        ASSERT_TRUE(reader.next(member));
        EXPECT_EQ(member.name, "h1/one.txt");
        EXPECT_EQ(member.size, 2U);
        EXPECT_EQ(member.modified, 1700000000);
        reader.read(bytes);
        EXPECT_EQ(bytes, "1\n");
        ASSERT_TRUE(reader.next(member));
        EXPECT_EQ(member.name, "h1/two.txt");
        reader.read(bytes);
        EXPECT_EQ(bytes, "");
        EXPECT_FALSE(reader.next(member));
        EXPECT_FALSE(reader.next(member));
    }
}

TEST_F(ArchiveTest, FilesOfManyBlocksAreReadCompletely)
{
    std::string large;
    for (uint64_t i = 0; large.size() < 3'000'000; ++i)
        large += std::to_string(i * 7919) + "\n";
    for (const Packing packing : {Packing::Tar, Packing::Gzip, Packing::Zstd, Packing::Zip}) {
        write(packing, {{"passed-over", large}, {"large", large}, {"last", "z"}});
        ArchiveReader reader(path);
        Member member;
        std::string bytes;
        ASSERT_TRUE(reader.next(member));
        ASSERT_TRUE(reader.next(member));
        reader.read(bytes);
        EXPECT_EQ(bytes, large);
        ASSERT_TRUE(reader.next(member));
        reader.read(bytes);
        EXPECT_EQ(bytes, "z");
    }
}

TEST_F(ArchiveTest, AfterAMemberThatFailsTheNextOneIsRead)
{
    write(Packing::Tar, {{"large", std::string(2000, 'x')}, {"in.zip", ""}, {"small", "x"}, {"small", "y"}});
    ArchiveLimits limits;
    limits.memberBytes = 1000;
    ArchiveReader reader(path, limits);
    Member member;
    std::string bytes;
    ASSERT_TRUE(reader.next(member));
    EXPECT_EQ(failureOf([&] { reader.read(bytes); }),
              "cannot read ARCHIVE/large: it is larger than 1000 bytes, the limit for one file");
    EXPECT_EQ(failureOf([&] { reader.next(member); }),
              "cannot read ARCHIVE/in.zip: an archive in an archive is not read; extract it first");
    ASSERT_TRUE(reader.next(member));
    reader.read(bytes);
    EXPECT_EQ(bytes, "x");
    EXPECT_EQ(failureOf([&] { reader.next(member); }),
              "cannot read ARCHIVE/small: the archive has this name more than once; the first file was read");
    EXPECT_FALSE(reader.next(member));
}

TEST_F(ArchiveTest, TheNumberOfMembersIsLimited)
{
    write(Packing::Zip, {{"a", ""}, {"b", ""}, {"c", ""}});
    ArchiveLimits limits;
    limits.members = 3;
    EXPECT_EQ(failureOfAll(limits, true), "");
    limits.members = 2;
    EXPECT_EQ(failureOfAll(limits, true),
              "cannot read ARCHIVE after c: it has more than 2 members, the limit");
}

TEST_F(ArchiveTest, TheExpandedSizeIsLimitedAlsoOfFilesThatAreNotRead)
{
    const std::string zeros(4096 * kibi, '\0');
    ArchiveLimits limits;
    limits.allBytes = 2048 * kibi;
    for (const Packing packing : {Packing::Gzip, Packing::Zstd}) {
        write(packing, {{"a", zeros}, {"b", ""}});
        for (const bool reading : {true, false})
            EXPECT_NE(failureOfAll(limits, reading).find("it expands to more than 2097152 bytes, the limit"),
                      std::string::npos)
                << reading;
        limits.allBytes = 5000 * kibi;
        EXPECT_EQ(failureOfAll(limits, true), "");
        limits.allBytes = 2048 * kibi;
    }
}

TEST_F(ArchiveTest, AZipDoesNotExpandWhatIsNotRead)
{
    write(Packing::Zip, {{"a", std::string(4096 * kibi, '\0')}, {"b", ""}});
    ArchiveLimits limits;
    limits.allBytes = 2048 * kibi;
    EXPECT_EQ(failureOfAll(limits, true),
              "cannot read ARCHIVE after a: it expands to more than 2097152 bytes, the limit");
    EXPECT_EQ(failureOfAll(limits, false), "");
}

TEST_F(ArchiveTest, TheRatioToTheSizeOfTheArchiveIsLimited)
{
    ArchiveLimits limits;
    limits.ratioFrom = 1024 * kibi;
    limits.ratio = 100;
    for (const Packing packing : {Packing::Gzip, Packing::Zstd, Packing::Zip}) {
        write(packing, {{"a", std::string(900 * kibi, '\0')}});
        EXPECT_EQ(failureOfAll(limits, true), "");
        write(packing, {{"a", std::string(4096 * kibi, '\0')}});
        EXPECT_NE(failureOfAll(limits, true)
                      .find("it expands to more than 1048576 bytes and 100 times its size, "
                            "the limit"),
                  std::string::npos);
    }
}

TEST_F(ArchiveTest, AnArchiveThatChangesWhileItIsReadIsAnError)
{
    write(Packing::Zip, {{"a", "1"}, {"b", "2"}});
    ArchiveReader reader(path);
    Member member;
    ASSERT_TRUE(reader.next(member));
    std::ofstream(path, std::ios::app) << "more";
    ASSERT_TRUE(reader.next(member));
    EXPECT_EQ(failureOf([&] { reader.next(member); }),
              "cannot read ARCHIVE after b: it changed while it was read");
    EXPECT_FALSE(reader.next(member));
}

} // namespace
