/* SPDX-License-Identifier: Apache-2.0 */
/*
 * algdata and the module read and print the same record files: each reads what the other
 * writes.
 */
#include <cstdio>
#include <cstring>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <optional>
#include <unistd.h>

#include "checking/rules.h"
#include "dataInterface.h"
#include "formats/access.h"
#include "reading/detect.h"
#include "records/records.h"
#include "view/loaded.h"

namespace
{

using namespace algdata;

/* ---- Records ------------------------------------------------------------ */

/* Sets each field to a different meaningful value. */
struct Fill {
    uint32_t last = 0;

    void operator()(const Field& field, void* base, int element)
    {
        const uint32_t value = ++last % 90 + 5;
        if (field.type == Type::Mac)
            std::snprintf(formats::addressOf(field, base, element), ALG_MAC_SIZE, "a0b1c2d3e4%02x",
                          last & 255);
        else if (field.type == Type::F32)
            formats::setReal(field, base, element, static_cast<float>(value) + 0.25F);
        else if (field.values.size() != 0)
            formats::setNumber(field, base, element, field.values[last % field.values.size()].value);
        else
            formats::setNumber(field, base, element, field.limit != 0 ? value % (field.limit + 1) : value);
    }
};

constexpr uint32_t ENTRIES_PER_RECORD = 3;

void fillRecord(const Kind& kind, char* record, uint32_t position, Fill& fill)
{
    if (kind.hasEntries())
        formats::setNumber(formats::countField(kind), record, 0, ENTRIES_PER_RECORD);
    formats::eachValue(
        kind, formats::entryCount(kind, record),
        [&](const Field& field, size_t base, int element) { fill(field, record + base, element); });
    if (kind.hasEntries())
        formats::setNumber(formats::countField(kind), record, 0, ENTRIES_PER_RECORD);
    if (kind.record.fields[0].position)
        formats::setNumber(kind.record.fields[0], record, 0, position);
}

Image filled(const Kind& kind, size_t count)
{
    Image image;
    image.kind = &kind;
    image.count = count;
    image.bytes.assign((count + 1) * kind.type.size, '\0');
    Fill fill;
    for (size_t i = 0; i < count; ++i)
        fillRecord(kind, image.at(i), static_cast<uint32_t>(i), fill);
    return image;
}

/* ---- Writing and reading ------------------------------------------------ */

class TableTest : public testing::Test
{
  protected:
    TableTest() { path = testing::TempDir() + "algdataTable." + std::to_string(getpid()); }
    ~TableTest() override { unlink(path.c_str()); }

    std::string fileText() const
    {
        std::ifstream file(path);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
    void writeText(const std::string& text) const { std::ofstream(path) << text; }

    static void expectCells(const Kind& kind, const Layout& layout, const std::vector<Token>& actual,
                            const std::vector<Token>& stored, bool loaded)
    {
        ASSERT_EQ(actual.size(), layout.columns.size());
        for (size_t i = 0; i < layout.columns.size(); ++i) {
            const Column& column = layout.columns[i];
            std::string expected(stored[i]);
            if (loaded && column.field->load != Load::AsStored)
                expected = std::to_string(loadedValue(*column.field, std::stoul(expected)));
            EXPECT_EQ(actual[i], expected) << kind.name << " " << column.name;
        }
    }
    static void expectRecord(const Kind& kind, const Record& actual, const Record& stored, bool loaded)
    {
        expectCells(kind, kind.head, actual.cells, stored.cells, loaded);
        ASSERT_EQ(actual.entries.size(), stored.entries.size());
        for (size_t i = 0; i < actual.entries.size(); ++i)
            expectCells(kind, kind.entry, actual.entries[i], stored.entries[i], loaded);
    }

    static std::vector<Record> recordsOf(const Image& image, Texts& texts)
    {
        std::vector<Record> records(image.count);
        for (size_t i = 0; i < image.count; ++i)
            readRecord(image, i, records[i], texts);
        return records;
    }

    /* The text of the records as algdata prints it. */
    static std::string printed(const Kind& kind, const std::vector<Record>& records)
    {
        std::string text = writtenPreamble(kind, records.size());
        for (const Record& record : records)
            text += written(kind, record);
        return text;
    }

    void expectRead(const Kind& kind, const std::string& text, const std::vector<Record>& stored) const
    {
        EXPECT_EQ(detectKind(text).kind, &kind);
        EXPECT_TRUE(findFaults(kind, text).kept.empty()) << kind.name;
        RecordReader reader(kind, text);
        Record record;
        for (const Record& expected : stored) {
            ASSERT_TRUE(reader.next(record));
            EXPECT_EQ(record.wrongLines, 0U);
            expectRecord(kind, record, expected, false);
        }
        EXPECT_FALSE(reader.next(record));
    }

    void expectBothWays(const char* name, size_t count)
    {
        const Kind& kind = kindNamed(name);
        Image image = filled(kind, count);
        Texts texts;
        const std::vector<Record> stored = recordsOf(image, texts);
        const std::string text = printed(kind, stored);
        if (kind.writer() != nullptr) {
            ASSERT_TRUE(storeImage(image, path));
            EXPECT_EQ(fileText(), text);
        }
        expectRead(kind, text, stored);
        const Image loaded = loadImage(kind, text, "text");
        ASSERT_TRUE(loaded.accepted) << kind.name;
        ASSERT_EQ(loaded.count, count) << kind.name;
        const std::vector<Record> actual = recordsOf(loaded, texts);
        for (size_t i = 0; i < count; ++i)
            expectRecord(kind, actual[i], stored[i], true);
    }

    std::string path;
};

/* The detail reader returns one record, and files of the last two kinds contain one. */
TEST_F(TableTest, EveryKindBothWays)
{
    for (const Kind& kind : kinds()) {
        const bool single =
            kind.shape == Shape::Index || kind.cap == 1 || std::string(kind.name) == "ap-all-detail";
        expectBothWays(kind.name, single ? 1 : 3);
    }
}

TEST_F(TableTest, PatVersion1IsNotWritten)
{
    Image image = filled(kindNamed("pat-v1"), 2);
    EXPECT_FALSE(storeImage(image, path));
}

/* For a number that does not fit, check reports the value that the C library reads. */
TEST_F(TableTest, NumbersReadAsTheCLibraryReadsThem)
{
    Field u8;
    Field u16;
    Field u32;
    u16.type = Type::U16;
    u32.type = Type::U32;
    for (const char* text : {"0", "255", "256", "300", "-1", "-300", "+7", "007", "65535", "65536",
                             "4294967295", "4294967296", "18446744073709551615", "18446744073709551616",
                             "-18446744073709551616", "99999999999999999999999"}) {
        uint8_t asU8 = 0;
        uint16_t asU16 = 0;
        uint32_t asU32 = 0;
        ASSERT_EQ(std::sscanf(text, "%hhu", &asU8), 1);
        ASSERT_EQ(std::sscanf(text, "%hu", &asU16), 1);
        ASSERT_EQ(std::sscanf(text, "%u", &asU32), 1);
        const std::optional<Number> number = wholeNumber(text);
        ASSERT_TRUE(number) << text;
        EXPECT_EQ(readsAs(u8, *number), asU8) << text;
        EXPECT_EQ(readsAs(u16, *number), asU16) << text;
        EXPECT_EQ(readsAs(u32, *number), asU32) << text;
    }
}

/* check reports how the reader splits a number that is too wide. */
TEST_F(TableTest, WideNumbersSplitAsCheckSays)
{
    const std::string text = "  0 5c969d0000a1 a4c3f0000010  1   40 12345  866  100 200 5 2 9 2 3 95\n";
    writeText(text);
    StaConnection record = {};
    ASSERT_TRUE(stationInfoOnlyReader(path.c_str(), &record));
    EXPECT_EQ(record.rxRate, 1234);
    EXPECT_EQ(record.txRate, 5);
    EXPECT_EQ(record.rxPackageCount, 866);
    const std::vector<Finding> findings = findFaults(kindNamed("station"), text).kept;
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0].rule, Rule::TooWide);
    EXPECT_EQ(findings[0].column, text.find("12345") + 1);
    EXPECT_NE(findings[0].text.find("it reads as 1234, txRate as 5"), std::string::npos);
}

/* check reports a blank line for the kinds whose functions it breaks. */
TEST_F(TableTest, BlankLinesBreakWhatCheckSays)
{
    const std::string line = "a4c3f0000010 000000000000 1\n";
    writeText(line + "\n" + line);
    ApRank records[3] = {};
    EXPECT_FALSE(apRankInfoReader(path.c_str(), records));
    EXPECT_TRUE(kindNamed("ap-rank").blankLineBreaks);

    TimeDelayInfo delay = {};
    std::strcpy(delay.fatherMAC, "a4c3f0000010");
    ASSERT_TRUE(timeDelayInfoWriter(path.c_str(), &delay, 1));
    writeText(fileText() + "\n");
    std::strcpy(delay.fatherMAC, "a4c3f0000011");
    EXPECT_TRUE(appendSingleTimeDelayInfo(path.c_str(), &delay));
    EXPECT_EQ(fileText().find("a4c3f0000011"), std::string::npos);
    EXPECT_TRUE(kindNamed("time-delay").blankLineBreaks);
}

} // namespace
