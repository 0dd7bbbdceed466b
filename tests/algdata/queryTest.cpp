/* SPDX-License-Identifier: Apache-2.0 */
/* Reading records again, statistics of values, conditions and order. */
#include <filesystem>
#include <gtest/gtest.h>

#include "options/arguments.h"
#include "query/figures.h"
#include "query/query.h"
#include "view/view.h"

namespace
{

using namespace algdata;

/* The example files, good and damaged ones. */
std::vector<std::string> exampleFiles()
{
    std::vector<std::string> files;
    for (const char* directory : {"good", "damaged"})
        for (const auto& entry : std::filesystem::directory_iterator(std::string(EXAMPLES "/") + directory))
            files.push_back(entry.path());
    return files;
}

/* A copy of a record. The values of the record itself live only until the next read. */
struct Kept {
    size_t place;
    size_t wrongLines;
    std::vector<std::string> values;
};

Kept kept(const Record& record)
{
    Kept copy = {record.place, record.wrongLines, {}};
    for (const Token& cell : record.cells)
        copy.values.push_back(present(cell) ? std::string(cell) : "(none)");
    for (const std::vector<Token>& entry : record.entries)
        for (const Token& cell : entry)
            copy.values.push_back(present(cell) ? std::string(cell) : "(none)");
    return copy;
}

TEST(View, ARecordIsReadAgainByItsPlace)
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
                EXPECT_EQ(got.wrongLines, expected->wrongLines) << file << " as " << kind.name;
            }
            records += all.size();
        }
    }
    EXPECT_GT(records, 1000U);
}

/* The second line is an entry without a device. It must not be read as a second count line. */
TEST(View, AnEntryThatLooksLikeACountIsReadAgain)
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

/* ---- Figures of many values --------------------------------------------- */

std::string macOf(size_t number)
{
    char text[ALG_MAC_SIZE];
    std::snprintf(text, sizeof text, "%012zx", number);
    return text;
}

TEST(Figures, AFewThousandDistinctTextsAreCountedExactly)
{
    Distinct distinct;
    for (size_t i = 0; i < 20000; ++i)
        distinct.add(macOf(i % 8000));
    EXPECT_TRUE(distinct.isExact());
    EXPECT_EQ(distinct.count(), 8000U);
}

TEST(Figures, MoreTextsAreEstimatedToThreePercent)
{
    for (const size_t different : {10000U, 40000U, 300000U}) {
        Distinct distinct;
        for (size_t i = 0; i < 2 * different; ++i)
            distinct.add(macOf(i % different * 4099));
        EXPECT_FALSE(distinct.isExact());
        EXPECT_NEAR(static_cast<double>(distinct.count()), static_cast<double>(different),
                    0.03 * static_cast<double>(different));
    }
}

FieldFigures figuresOf(const char* kind, const char* field)
{
    const Layout& layout = kindNamed(kind).head;
    const std::vector<size_t> columns = columnsNamed(layout, field);
    return FieldFigures({layout.columns[columns.at(0)].field, columns, field});
}

TEST(Figures, NumbersOf16BitsAreCountedExactly)
{
    FieldFigures figures = figuresOf("station", "noiselevel");
    for (size_t i = 0; i < 3 * 65536; ++i)
        figures.add(std::to_string(i % 65536));
    EXPECT_EQ(figures.values(), 3 * 65536U);
    EXPECT_EQ(figures.distinct(), 65536U);
    EXPECT_EQ(figures.zeros(), 3U);
    EXPECT_EQ(figures.median(), 32767.5);
    EXPECT_EQ(figures.largest(), 65535.0);
    EXPECT_TRUE(figures.distinctIsExact() && figures.medianIsExact());
    figures.add("65536");
    figures.add("-1");
    figures.add("ten");
    figures.add(Token());
    EXPECT_EQ(figures.values(), 3 * 65536U);
    EXPECT_EQ(figures.bad(), 4U);
}

TEST(Figures, NumbersOf32BitsAreExactWhileTheyAreFew)
{
    FieldFigures figures = figuresOf("ap-rank-index", "starttime");
    for (size_t i = 0; i < 100000; ++i)
        figures.add(std::to_string(4294967295 - i % 8000));
    EXPECT_TRUE(figures.distinctIsExact() && figures.medianIsExact());
    EXPECT_EQ(figures.distinct(), 8000U);
    EXPECT_EQ(figures.largest(), 4294967295.0);
}

TEST(Figures, TheMedianOfManyIsThatOfASample)
{
    FieldFigures figures = figuresOf("ap-rank-index", "starttime");
    for (size_t i = 0; i < 400000; ++i)
        figures.add(std::to_string(1700000000 + i * 7919 % 400009));
    EXPECT_FALSE(figures.distinctIsExact() || figures.medianIsExact());
    EXPECT_NEAR(*figures.median(), 1700200000, 0.03 * 400000);
    EXPECT_NEAR(static_cast<double>(figures.distinct()), 400000, 0.03 * 400000);
    EXPECT_EQ(figures.smallest(), 1700000000.0);
}

/* ---- Values and conditions ---------------------------------------------- */

const Field& fieldOf(const char* kind, const char* name)
{
    const Layout& layout = kindNamed(kind).head;
    return *layout.columns[columnsNamed(layout, name).at(0)].field;
}

TEST(Values, AreEqualForEverySpelling)
{
    EXPECT_EQ(valueOf(fieldOf("alg-output", "algStrategy"), "-1").integer, 4294967295);
    EXPECT_EQ(valueOf(fieldOf("station", "noiselevel"), "+007").integer, 7);
    EXPECT_EQ(valueOf(fieldOf("score", "hopsFactor"), "+.50").real, 0.5);
    EXPECT_EQ(valueOf(fieldOf("score", "fatherMAC"), "A4C3F0000010").text, "A4C3F0000010");
}

TEST(Values, ThatAreDamagedAreNull)
{
    for (const char* text : {"", "x", "1x", "0x10", "1.5", "4294967296", "99999999999999999999", "-1"})
        EXPECT_EQ(valueOf(fieldOf("ap-rank-index", "starttime"), text).type, SqlValue::Null) << text;
    for (const char* text : {"-2147483649", "4294967296"})
        EXPECT_EQ(valueOf(fieldOf("alg-output", "algStrategy"), text).type, SqlValue::Null) << text;
    for (const char* text : {"300", "-1"})
        EXPECT_EQ(valueOf(fieldOf("scanning", "channel"), text).type, SqlValue::Null) << text;
    for (const char* text : {"", "x", "inf", "nan", "1e400", "1e-400", "1e39", "0x1p3", "+-5"})
        EXPECT_EQ(valueOf(fieldOf("score", "hopsFactor"), text).type, SqlValue::Null) << text;
    for (const char* text : {"", "a4c3f0", "a4c3f00000100", "a4c3f000001g"})
        EXPECT_EQ(valueOf(fieldOf("score", "fatherMAC"), text).type, SqlValue::Null) << text;
    EXPECT_EQ(valueOf(fieldOf("scanning", "channel"), Token()).type, SqlValue::Null);
}

/* The values of the field in the order of --sort, each as it is in the file. */
std::vector<std::string> sorted(const char* kind, const std::string& record, const std::string& by)
{
    Source source;
    source.kind = &kindNamed(kind);
    source.bytes = record;
    Options options;
    options.sort = sortKeysFrom(by);
    Filter filter(options);
    std::vector<std::string> values;
    eachRecord(source, filter, [&](const Record& one) { values.emplace_back(one.cells.back()); });
    return values;
}

TEST(Sorting, FollowsTheOrderOfTheValuesAndPutsDamageLast)
{
    const std::string mac = "a4c3f0000010 ";
    std::string ranks;
    for (const char* rank : {"10", "x", "9", "0", "250"})
        ranks += mac + mac + rank + "\n";
    EXPECT_EQ(sorted("ap-rank", ranks, "apRank"), (std::vector<std::string>{"0", "9", "10", "250", "x"}));
    EXPECT_EQ(sorted("ap-rank", ranks, "-apRank"), (std::vector<std::string>{"250", "10", "9", "0", "x"}));
    EXPECT_EQ(sorted("ap-rank", ranks, "apRank % 10, apRank DESC"),
              (std::vector<std::string>{"x", "250", "10", "0", "9"}));
}

TEST(Conditions, InTheSimpleFormAreNoExpressions)
{
    const ColumnNames names = {{"rssi", "band"}, {"_line"}};
    for (const char* text : {"rssi<40", " rssi = 060 ", "deviceMAC=a4:c3:f0:00:00:10", "rssi<abc", "rssi<5 6",
                             "source=a b.txt", "source=band", "rssi.3>=2"})
        EXPECT_FALSE(conditionFrom(text, names).isExpression()) << text;
    for (const char* text :
         {"rssi==40", "rssi<40 AND band=0", "rssi<40 or band", "rssi<band", "rssi<band+1", "rssi<(1)",
          "source='a'", "rssi", "rssi<>1", "rssi%10", "abs(rssi)=1", "_line=3"})
        EXPECT_TRUE(conditionFrom(text, names).isExpression()) << text;
}

TEST(Expressions, WithANulByteAreRefused)
{
    Expressions expressions;
    const std::string text("1\0 OR 1", 7);
    EXPECT_EQ(expressions.faultIn({"--where", text}, "any")->error.text,
              "--where: the expression has a NUL byte");
}

TEST(Expressions, ReadNothingButTheirRow)
{
    Expressions expressions;
    KindFilter filter(expressions, kindNamed("scanning"), false);
    for (const char* text : {"(SELECT 1)",
                             "EXISTS (SELECT 1)",
                             "rssi IN (SELECT 1)",
                             "rssi IN scanning",
                             "rssi IN sqlite_master",
                             "rssi IN pragma_user_version",
                             "load_extension('x')",
                             "1; DROP TABLE scanning",
                             "1) OR (1",
                             "1 LIMIT 1",
                             "1 UNION SELECT 1",
                             "1 ORDER BY 1",
                             "count(*) > 1",
                             "row_number() OVER () > 1",
                             "?1",
                             ":a",
                             "1 /*",
                             "1 --",
                             "",
                             "()",
                             "("})
        EXPECT_EQ(filter.faultIn({"--where", text}).has_value(), std::string(text) != "1 --") << text;
    for (const char* text :
         {"(SELECT 1)", "rssi LIMIT 1", "rssi) (", "rssi; SELECT 1", "count(*)", "max(rssi)"})
        EXPECT_TRUE(filter.faultIn({"--sort", text}).has_value()) << text;
}

} // namespace
