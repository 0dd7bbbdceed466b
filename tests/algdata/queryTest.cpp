/* SPDX-License-Identifier: Apache-2.0 */
/* How records are found again, compared and chosen. */
#include <filesystem>
#include <gtest/gtest.h>

#include "view/view.h"

namespace
{

using namespace algdata;

/* The example files, whole and damaged. */
std::vector<std::string> exampleFiles()
{
    std::vector<std::string> files;
    for (const char* directory : {"good", "damaged"})
        for (const auto& entry : std::filesystem::directory_iterator(std::string(EXAMPLES "/") + directory))
            files.push_back(entry.path());
    return files;
}

/* A record whose values outlast the view. */
struct Kept {
    size_t place;
    size_t odd;
    std::vector<std::string> values;
};

Kept kept(const Record& record)
{
    Kept copy = {record.place, record.odd, {}};
    for (const Token& cell : record.cells)
        copy.values.push_back(present(cell) ? std::string(cell) : "(none)");
    for (const std::vector<Token>& entry : record.entries)
        for (const Token& cell : entry)
            copy.values.push_back(present(cell) ? std::string(cell) : "(none)");
    return copy;
}

TEST(View, ARecordIsFoundAgainByItsPlace)
{
    size_t records = 0;
    for (const std::string& file : exampleFiles()) {
        Source source;
        readSource(file, source);
        for (const Kind& kind : kinds()) {
            source.kind = &kind;
            View view(source, false);
            std::vector<Kept> all;
            Record record;
            while (view.next(record))
                all.push_back(kept(record));
            for (auto expected = all.rbegin(); expected != all.rend(); ++expected) {
                view.readAt(expected->place, record);
                const Kept got = kept(record);
                EXPECT_EQ(got.values, expected->values) << file << " as " << kind.name;
                EXPECT_EQ(got.odd, expected->odd) << file << " as " << kind.name;
            }
            records += all.size();
        }
    }
    EXPECT_GT(records, 1000U);
}

/* The second line stands where the first device should: it is not another count. */
TEST(View, AnEntryThatLooksLikeACountIsFoundAgain)
{
    Source source;
    source.kind = &kindNamed("pat-v2");
    source.bytes = "1\n7\n0 1 0 2 64 46094\n";
    View view(source, false);
    Record record;
    ASSERT_TRUE(view.next(record));
    ASSERT_EQ(record.entries.size(), 2U);
    view.readAt(record.place, record);
    ASSERT_EQ(record.entries.size(), 2U);
    EXPECT_EQ(record.entries[0][0], "7");
    EXPECT_EQ(record.entries[1][5], "46094");
}

} // namespace
