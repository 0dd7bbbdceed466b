/* SPDX-License-Identifier: Apache-2.0 */
/* The extension for SQLite, loaded into a program that knows nothing about record files. */
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <vector>

#include <sqlite3.h>

namespace
{

constexpr const char* withFiles = nullptr; /* the entry point that SQLite finds itself */
constexpr const char* ofBytes = "sqlite3_algdatabytes_init";

/* What the extension tells the program, and the connection that the next message interrupts. */
struct {
    std::string text;
    sqlite3* interrupted = nullptr;
} logged;

void keepMessage(void*, int, const char* text)
{
    logged.text += std::string(text) + "\n";
    if (logged.interrupted != nullptr)
        sqlite3_interrupt(logged.interrupted);
}

const int configured = sqlite3_config(SQLITE_CONFIG_LOG, keepMessage, nullptr);

class Connection
{
  public:
    explicit Connection(const char* entryPoint)
    {
        EXPECT_EQ(sqlite3_open(":memory:", &database), SQLITE_OK);
        EXPECT_EQ(sqlite3_db_config(database, SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION, 1, nullptr), SQLITE_OK);
        EXPECT_EQ(load(entryPoint), "");
    }
    ~Connection() { EXPECT_EQ(sqlite3_close(database), SQLITE_OK); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /* The message of the failure; empty without one. */
    std::string load(const char* entryPoint)
    {
        char* error = nullptr;
        sqlite3_load_extension(database, EXTENSION, entryPoint, &error);
        const std::string text = error == nullptr ? "" : error;
        sqlite3_free(error);
        return text;
    }

    sqlite3_stmt* prepare(const std::string& query)
    {
        sqlite3_stmt* statement = nullptr;
        EXPECT_EQ(sqlite3_prepare_v2(database, query.c_str(), -1, &statement, nullptr), SQLITE_OK)
            << sqlite3_errmsg(database);
        return statement;
    }

    /* "a|b\n" for each row, and the message of a failure after them. */
    std::string rows(const std::string& query)
    {
        std::string text;
        char* error = nullptr;
        sqlite3_exec(database, query.c_str(), addRow, &text, &error);
        text += error == nullptr ? "" : error;
        sqlite3_free(error);
        return text;
    }

    sqlite3* database = nullptr;

  private:
    static int addRow(void* text, int count, char** values, char**)
    {
        for (int i = 0; i < count; ++i)
            *static_cast<std::string*>(text) += std::string(i == 0 ? "" : "|") + (values[i] ? values[i] : "");
        *static_cast<std::string*>(text) += "\n";
        return 0;
    }
};

void write(const std::string& path, const std::string& text)
{
    std::ofstream(path, std::ios::binary) << text;
}

std::string bytesOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/* A content as SQL: x'6134...'. */
std::string blob(const std::string& bytes)
{
    std::string text = "x'";
    for (const char c : bytes) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned>(static_cast<unsigned char>(c)));
        text += digits;
    }
    return text + "'";
}

class ExtensionTest : public testing::Test
{
  protected:
    ExtensionTest()
    {
        char name[] = "/tmp/algdata-extension.XXXXXX";
        directory = mkdtemp(name);
        std::filesystem::current_path(EXAMPLES);
        logged = {};
    }
    ~ExtensionTest() override { std::filesystem::remove_all(directory); }

    std::string directory;
};

const char* const scoreRows = "a4c3f0000010|1|24\n"
                              "a4c3f0000011|2|3\n"
                              "a4c3f0000012|3|9\n";

/* ---- With files --------------------------------------------------------- */

TEST_F(ExtensionTest, ReadsFileAndDirectory)
{
    Connection sql(withFiles);
    EXPECT_EQ(sql.rows("SELECT fatherMAC, apRank, timeDelayAverage FROM score('good/score.txt')"), scoreRows);
    EXPECT_EQ(sql.rows("SELECT fatherMAC, apRank, timeDelayAverage FROM score('good/')"), scoreRows);
    EXPECT_EQ(sql.rows("SELECT _from, _path, _line, _size, _record FROM score('good/') WHERE apRank = 2"),
              "good/|good/score.txt|2|312|1\n");
    EXPECT_EQ(sql.rows("SELECT band, rssi FROM score_band WHERE _from = 'good' AND _record = 0 LIMIT 2"),
              "0|40\n1|45\n");
    EXPECT_EQ(sql.rows("SELECT count(*) FROM score_loaded('good')"), "3\n");
}

TEST_F(ExtensionTest, ReadsArchive)
{
    ASSERT_EQ(std::system(("tar -czf " + directory + "/home.tar.gz good/score.txt").c_str()), 0);
    Connection sql(withFiles);
    const std::string archive = "'" + directory + "/home.tar.gz'";
    EXPECT_EQ(sql.rows("SELECT fatherMAC, apRank, timeDelayAverage FROM score(" + archive + ")"), scoreRows);
    EXPECT_EQ(sql.rows("SELECT DISTINCT _member FROM score(" + archive + ")"), "good/score.txt\n");
}

TEST_F(ExtensionTest, JoinsTables)
{
    Connection sql(withFiles);
    EXPECT_EQ(sql.rows("SELECT apRank, band, rssi FROM score('good') JOIN score_band('good') "
                       "USING (_path, _record) WHERE band = 1"),
              "1|1|45\n2|1|45\n3|1|45\n");
    EXPECT_EQ(sql.rows("SELECT _from, count(*) FROM ap_rank WHERE _from IN ('good', 'good/apRank.txt') "
                       "GROUP BY _from"),
              "good|4\ngood/apRank.txt|4\n");
    EXPECT_EQ(sql.rows("SELECT column1, count(*) FROM (VALUES ('good'), ('good/apNode.txt')) "
                       "CROSS JOIN file(column1) GROUP BY 1"),
              "good|14\ngood/apNode.txt|1\n");
}

/* SQLite makes a scan for each side and leaves out rows that it knows by their numbers. */
TEST_F(ExtensionTest, KeepsRowsOfBothSidesOfOr)
{
    Connection files(withFiles);
    EXPECT_EQ(files.rows("SELECT _from, apRank FROM score WHERE (_from = 'good' AND apRank = 1) "
                         "OR (_from = 'good/score.txt' AND apRank < 3)"),
              "good|1\ngood/score.txt|1\ngood/score.txt|2\n");
    Connection bytes(ofBytes);
    const std::string one = "'a4c3f0000010 000000000000 0'";
    const std::string other = "'a4c3f0000011 000000000000 0'";
    EXPECT_EQ(bytes.rows("SELECT deviceMAC FROM ap_rank WHERE (_content = " + one + " AND apRank = 0) " +
                         "OR (_content = " + other + " AND apRank < 9)"),
              "a4c3f0000010\na4c3f0000011\n");
}

TEST_F(ExtensionTest, ReadsFilesAgainForEachExecution)
{
    Connection sql(withFiles);
    const std::string path = directory + "/rank.txt";
    sqlite3_stmt* const count = sql.prepare("SELECT count(*) FROM ap_rank('" + path + "')");
    const std::string line = "a4c3f0000010 000000000000 0\n";
    write(path, line);
    EXPECT_EQ(sqlite3_step(count), SQLITE_ROW);
    EXPECT_EQ(sqlite3_column_int(count, 0), 1);
    write(path, line + line);
    sqlite3_reset(count);
    EXPECT_EQ(sqlite3_step(count), SQLITE_ROW);
    EXPECT_EQ(sqlite3_column_int(count, 0), 2);
    sqlite3_finalize(count);
}

TEST_F(ExtensionTest, ShowsUsageWithoutPath)
{
    Connection sql(withFiles);
    EXPECT_EQ(sql.rows("SELECT * FROM score"), "table score needs a path: SELECT * FROM score('DIRECTORY')");
    EXPECT_EQ(sql.rows("SELECT * FROM name"), "table name needs a path: SELECT * FROM name('DIRECTORY')");
}

TEST_F(ExtensionTest, RefusesWhatIsNoPath)
{
    Connection sql(withFiles);
    EXPECT_EQ(sql.rows("SELECT * FROM score('nowhere')"), "cannot read nowhere: No such file or directory");
    EXPECT_EQ(sql.rows("SELECT * FROM score('')"),
              "table score: expected a file, a directory or an archive, found ``");
    EXPECT_EQ(sql.rows("SELECT * FROM score('-')"),
              "table score: expected a file, a directory or an archive, found `-`");
    EXPECT_EQ(sql.rows("SELECT * FROM score(NULL)"),
              "table score: expected a path as a text, found another type or null");
    EXPECT_EQ(sql.rows("SELECT * FROM score(x'676f6f64')"),
              "table score: expected a path as a text, found another type or null");
    EXPECT_EQ(sql.rows("SELECT * FROM score('good' || char(0))"),
              "table score: expected a path, found a text with a NUL byte");
    EXPECT_EQ(sql.rows("SELECT * FROM score('/dev/zero')"),
              "table score: expected a file, a directory or an archive, found a device or a pipe: /dev/zero");
    const std::string pipe = directory + "/pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(sql.rows("SELECT * FROM score('" + pipe + "')"),
              "table score: expected a file, a directory or an archive, found a device or a pipe: " + pipe);
}

TEST_F(ExtensionTest, FailsIfNothingCanBeRead)
{
    Connection sql(withFiles);
    write(directory + "/text.txt", "hello world\n");
    write(directory + "/cut.tar.gz", "\x1f\x8b\b");
    EXPECT_EQ(sql.rows("SELECT * FROM score('" + directory + "/text.txt')"),
              directory + "/text.txt: not a record file: its lines match no kind (`algdata kinds` lists the "
                          "kinds); --kind reads it anyway");
    EXPECT_EQ(sql.rows("SELECT * FROM score('" + directory + "/cut.tar.gz')"),
              "cannot read " + directory + "/cut.tar.gz: its gzip data is truncated");
}

TEST_F(ExtensionTest, ListsWhatCannotBeRead)
{
    Connection sql(withFiles);
    std::filesystem::copy("good/score.txt", directory);
    std::filesystem::copy("damaged/algOutputStrategy.txt", directory);
    write(directory + "/cut.tar.gz", "\x1f\x8b\b");
    EXPECT_EQ(sql.rows("SELECT fatherMAC, apRank, timeDelayAverage FROM score('" + directory + "')"),
              scoreRows);
    EXPECT_EQ(sql.rows("SELECT substr(path, 31), message FROM error('" + directory + "')"),
              "algOutputStrategy.txt|its content matches ap-rank-index and alg-output; select the kind with "
              "--kind\n"
              "cut.tar.gz|cannot read " +
                  directory + "/cut.tar.gz: its gzip data is truncated\n");
}

TEST_F(ExtensionTest, PrintsNothingAboutDamage)
{
    Connection sql(withFiles);
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    EXPECT_EQ(sql.rows("SELECT _line, hopsFactor FROM score('damaged/scoreWords.txt')"), "1|1.0\n2|\n");
    EXPECT_EQ(sql.rows("SELECT count(*) FROM ap_node_loaded('damaged/apNodeBlankLine.txt')"),
              "damaged/apNodeBlankLine.txt: apNodeInfoReaderV2 refuses the file; `algdata check` shows why");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_NE(logged.text.find("algdata: damaged/scoreWords.txt:2: hopsFactor: `half`, expected a number"),
              std::string::npos)
        << logged.text;
}

TEST_F(ExtensionTest, ReadsConfigurationBesideFiles)
{
    Connection sql(withFiles);
    std::filesystem::copy("damaged/algOutputStrategy.txt", directory + "/decision.txt");
    write(directory + "/algdata.toml",
          "path = [\"alg-output={family}.txt\"]\n[names]\n0a4e00000001 = \"hall\"\n");
    EXPECT_EQ(sql.rows("SELECT * FROM name('" + directory + "')"), "0a4e00000001|hall\n");
    EXPECT_EQ(sql.rows("SELECT kind, records FROM file('" + directory + "')"), "alg-output|2\n");
    EXPECT_EQ(sql.rows("SELECT _line FROM alg_output('" + directory + "')"), "1\n2\n");
    write(directory + "/algdata.toml", "nmaes = 1\n");
    EXPECT_EQ(sql.rows("SELECT * FROM name('" + directory + "')"),
              directory +
                  "/algdata.toml: unknown setting `nmaes`; did you mean names? (expected path, [names])");
}

TEST_F(ExtensionTest, DescribesMesh)
{
    Connection sql(withFiles);
    EXPECT_EQ(sql.rows("SELECT deviceMAC, depth FROM tree('good/apRank.txt')"),
              "a4c3f0000010|0\na4c3f0000011|1\na4c3f0000012|1\na4c3f0000013|1\n");
    EXPECT_EQ(sql.rows("SELECT * FROM tree"), "table tree needs a path: SELECT * FROM tree('DIRECTORY')");
}

/* ---- Without files ------------------------------------------------------ */

TEST_F(ExtensionTest, ReadsContent)
{
    Connection sql(ofBytes);
    const std::string score = blob(bytesOf("good/score.txt"));
    EXPECT_EQ(sql.rows("SELECT fatherMAC, apRank, timeDelayAverage FROM score(" + score + ")"), scoreRows);
    EXPECT_EQ(sql.rows("SELECT _line, _size, _record, typeof(_content), length(_content) FROM score(CAST(" +
                       score + " AS TEXT)) WHERE _record = 2"),
              "3|312|2|text|312\n");
    EXPECT_EQ(sql.rows("SELECT * FROM file(" + score + ")"), "|score|ok|3|0|312|\n");
    EXPECT_EQ(sql.rows("SELECT count(*) FROM ap_rank(" + score + ")"), "0\n");
    EXPECT_EQ(sql.rows("SELECT count(*) FROM score('')"), "0\n");
    EXPECT_EQ(
        sql.rows("SELECT line, rule, field FROM finding(" + blob(bytesOf("damaged/scoreWords.txt")) + ")"),
        "2|not-a-number|hopsFactor\n");
}

TEST_F(ExtensionTest, ReadsContentOfEachRow)
{
    Connection sql(ofBytes);
    sql.rows("CREATE TABLE upload(home, content); INSERT INTO upload VALUES ('a', " +
             blob(bytesOf("good/score.txt")) + "), ('b', " + blob(bytesOf("good/apRank.txt")) + ")");
    EXPECT_EQ(sql.rows("SELECT home, kind, apRank FROM upload, file(content) AS f LEFT JOIN score(content)"),
              "a|score|1\na|score|2\na|score|3\nb|ap-rank|\n");
}

/* The table states the kind that the content cannot tell. */
TEST_F(ExtensionTest, ReadsContentOfSeveralKinds)
{
    Connection sql(ofBytes);
    const std::string content = blob(bytesOf("damaged/algOutputStrategy.txt"));
    EXPECT_EQ(sql.rows("SELECT status FROM file(" + content + ")"), "ambiguous\n");
    EXPECT_EQ(sql.rows("SELECT _line FROM alg_output(" + content + ")"), "1\n2\n");
}

TEST_F(ExtensionTest, RefusesWhatIsNoContent)
{
    Connection sql(ofBytes);
    EXPECT_EQ(sql.rows("SELECT * FROM score"),
              "table score needs the content of a file: SELECT * FROM score(readfile('FILE'))");
    EXPECT_EQ(sql.rows("SELECT * FROM score(NULL)"),
              "table score: expected the content of a file, found null");
    EXPECT_EQ(sql.rows("SELECT * FROM score(7)"),
              "table score: expected the content of a file as a blob or a text, found a number");
    EXPECT_EQ(sql.rows("SELECT * FROM score('good/score.txt')"),
              "the content: not a record file: its lines match no kind (`algdata kinds` lists the kinds); "
              "--kind reads it anyway");
    EXPECT_EQ(sql.rows("SELECT * FROM score_loaded('')"), "no such table: score_loaded");
    EXPECT_EQ(sql.rows("SELECT * FROM error('')"), "no such table: error");
    EXPECT_EQ(sql.rows("SELECT * FROM name('')"), "no such table: name");
    EXPECT_EQ(sql.rows("SELECT _path FROM score('')"), "no such column: _path");
}

/* With no descriptor left, every attempt to open a file would fail. */
TEST_F(ExtensionTest, OpensNothingForContent)
{
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizers need file descriptors themselves";
#endif
    Connection sql(ofBytes);
    const std::string content = blob(bytesOf("good/score.txt"));
    rlimit before;
    getrlimit(RLIMIT_NOFILE, &before);
    const rlimit none = {0, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    const bool canOpen = std::ifstream("good/score.txt").is_open();
    const std::string rows =
        sql.rows("SELECT fatherMAC, apRank, timeDelayAverage FROM score(" + content + ")");
    const std::string others =
        sql.rows("SELECT count(*) FROM score_band(" + content + "), file(" + content + ")");
    const std::string findings = sql.rows("SELECT count(*) FROM finding(" + content + ")");
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_FALSE(canOpen);
    EXPECT_EQ(rows, scoreRows);
    EXPECT_EQ(others, "15\n");
    EXPECT_EQ(findings, "0\n");
}

/* ---- Both --------------------------------------------------------------- */

TEST_F(ExtensionTest, RefusesTablesInViewsAndTriggers)
{
    for (const char* const entryPoint : {withFiles, ofBytes}) {
        Connection sql(entryPoint);
        sql.rows(
            "CREATE VIEW v AS SELECT * FROM score('good');"
            "CREATE TABLE t(a);"
            "CREATE TRIGGER r AFTER INSERT ON t BEGIN INSERT INTO t SELECT apRank FROM score('good'); END");
        EXPECT_EQ(sql.rows("SELECT * FROM v"), "unsafe use of virtual table \"score\"");
        EXPECT_EQ(sql.rows("INSERT INTO t VALUES (1)"), "unsafe use of virtual table \"score\"");
    }
}

TEST_F(ExtensionTest, SplitsPaths)
{
    Connection sql(ofBytes);
    EXPECT_EQ(sql.rows("SELECT path_part('data/h1/re_7.txt', '{home}/re_{device}.txt', 'home')"), "h1\n");
    EXPECT_EQ(sql.rows("SELECT path_part('data/h1/re_7.txt', '{home}/re_{device}.txt', 'device')"), "7\n");
    EXPECT_EQ(sql.rows("SELECT path_part('data/h1/x.txt', '{home}/re_{device}.txt', 'home') IS NULL"), "1\n");
    EXPECT_EQ(sql.rows("SELECT path_part(NULL, '{a}', 'a') IS NULL"), "1\n");
    EXPECT_EQ(sql.rows("SELECT path_part(column1, '{a}.txt', 'a') FROM (VALUES ('x.txt'), ('y.txt'))"),
              "x\ny\n");
    EXPECT_EQ(sql.rows("SELECT path_part('x', column1, 'a') FROM (VALUES ('{a}'), ('x{a}'))"), "x\n\n");
    EXPECT_EQ(sql.rows("SELECT path_part('x', '{a', 'a')"),
              "path_part() `{a`: expected a name in braces in `{a`, of letters, digits and _, beginning with "
              "a letter");
    EXPECT_EQ(sql.rows("SELECT path_part('x', NULL, 'a')"),
              "path_part() ``: it is empty, expected a path such as {home}/{snapshot}/score_{device}.txt");
    EXPECT_EQ(sql.rows("SELECT path_part('x', '{home}', 'hom')"),
              "path_part(): no name `hom` in `{home}`; did you mean home?");
}

TEST_F(ExtensionTest, ComparesMacs)
{
    Connection sql(withFiles);
    EXPECT_EQ(sql.rows("SELECT apRank FROM score('good') WHERE fatherMAC = 'A4:C3:F0:00:00:11'"), "2\n");
    EXPECT_EQ(sql.rows("SELECT 'A4-c3' = 'a4C3' COLLATE mac, 'a4' < 'B0' COLLATE mac"), "1|1\n");
}

TEST_F(ExtensionTest, CanBeLoadedTwice)
{
    Connection sql(withFiles);
    sqlite3_stmt* const open = sql.prepare("SELECT apRank FROM score('good')");
    EXPECT_EQ(sqlite3_step(open), SQLITE_ROW);
    EXPECT_EQ(sql.load(withFiles), "error during initialization: unable to delete/modify collation sequence "
                                   "due to active statements");
    EXPECT_EQ(sqlite3_step(open), SQLITE_ROW);
    EXPECT_EQ(sqlite3_column_int(open, 0), 2);
    sqlite3_finalize(open);
    EXPECT_EQ(sql.load(withFiles), "");
    EXPECT_EQ(sql.rows("SELECT count(*) FROM score('good')"), "3\n");
}

TEST_F(ExtensionTest, ReplacesTablesOfOtherEntryPoint)
{
    Connection sql(withFiles);
    EXPECT_EQ(sql.rows("SELECT count(*) FROM error('good')"), "0\n");
    EXPECT_EQ(sql.load(ofBytes), "");
    EXPECT_EQ(sql.rows("SELECT * FROM error('good')"), "no such table: error");
    EXPECT_EQ(sql.rows("SELECT count(*) FROM score(" + blob(bytesOf("good/score.txt")) + ")"), "3\n");
    EXPECT_EQ(sql.load("sqlite3_algdatasqlite_init"), "");
    EXPECT_EQ(sql.rows("SELECT count(*) FROM score('good')"), "3\n");
}

TEST_F(ExtensionTest, OutlivesClosedConnection)
{
    sqlite3_stmt* open = nullptr;
    {
        sqlite3* database = nullptr;
        ASSERT_EQ(sqlite3_open(":memory:", &database), SQLITE_OK);
        sqlite3_db_config(database, SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION, 1, nullptr);
        ASSERT_EQ(sqlite3_load_extension(database, EXTENSION, withFiles, nullptr), SQLITE_OK);
        ASSERT_EQ(sqlite3_prepare_v2(database, "SELECT apRank FROM score('good')", -1, &open, nullptr),
                  SQLITE_OK);
        EXPECT_EQ(sqlite3_step(open), SQLITE_ROW);
        EXPECT_EQ(sqlite3_close(database), SQLITE_BUSY);
        EXPECT_EQ(sqlite3_close_v2(database), SQLITE_OK);
    }
    EXPECT_EQ(sqlite3_step(open), SQLITE_ROW);
    EXPECT_EQ(sqlite3_column_int(open, 0), 2);
    EXPECT_EQ(sqlite3_finalize(open), SQLITE_OK);
}

/* The first file is damaged; its message interrupts the scan, which finds no row in the others. */
TEST_F(ExtensionTest, StopsScanWithoutRows)
{
    const std::string line = "a4c3f0000010 000000000000 0\n";
    std::filesystem::copy("damaged/algOutputStrategy.txt", directory + "/0.txt");
    for (int i = 1; i <= 200; ++i)
        write(directory + "/" + std::to_string(i) + ".txt", line);
    Connection sql(withFiles);
    const std::string query = "SELECT count(*) FROM alg_output('" + directory + "')";
    EXPECT_EQ(sql.rows(query), "0\n");
    logged.interrupted = sql.database;
    EXPECT_EQ(sql.rows(query), "interrupted");
    logged.interrupted = nullptr;
    EXPECT_EQ(sql.rows(query), "0\n");
}

TEST_F(ExtensionTest, WorksInSeveralThreads)
{
    std::vector<std::string> results(4);
    std::vector<std::thread> threads;
    for (std::string& result : results)
        threads.emplace_back([&result] {
            for (int round = 0; round < 10; ++round) {
                Connection sql(withFiles);
                result = sql.rows("SELECT fatherMAC, apRank, timeDelayAverage FROM score_loaded('good')") +
                         sql.rows("SELECT count(*) FROM finding('damaged') WHERE rule = 'not-a-number'") +
                         sql.rows("SELECT count(*) FROM file('damaged')");
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    const std::string expected = std::string(scoreRows) + "4\n45\n";
    EXPECT_EQ(results, std::vector<std::string>(4, expected));
}

TEST_F(ExtensionTest, ExportsOnlyItsEntryPoints)
{
    FILE* const names = popen("nm -D --defined-only -j " EXTENSION " | sort", "r");
    ASSERT_NE(names, nullptr);
    std::string text;
    for (int c = std::fgetc(names); c != EOF; c = std::fgetc(names))
        text += static_cast<char>(c);
    EXPECT_EQ(pclose(names), 0);
    EXPECT_EQ(text, "sqlite3_algdatabytes_init\nsqlite3_algdatasqlite_init\nsqlite3_extension_init\n");
}

} // namespace
