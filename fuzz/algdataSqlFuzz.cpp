/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Runs any text as a query over a small directory, twice. It expects that the database
 * opens no file, that a query which is accepted has columns and cannot write, that both
 * runs have the same rows, and that the place of an error lies in the query.
 */
#include <cstdint>
#include <cstdlib>
#include <optional>

#include <nlohmann/json.hpp>
#include <sqlite3.h>

#include "sql/database.h"
#include "sql/errors.h"
#include "support/sampleTree.h"

using namespace algdata;

namespace
{

constexpr size_t maxRows = 100;
constexpr int maxText = 100'000; /* bytes of one value */
constexpr sqlite3_int64 maxMemory = 100'000'000;
constexpr std::chrono::milliseconds longest(200);

void expect(bool holds)
{
    if (!holds)
        abort();
}

/* ---- The database ------------------------------------------------------- */

const SampleTree& sampleTree()
{
    static const std::string rank = "0A1B2C3D4E5F 102030405060 1\n102030405060 000000000000 0\n";
    static const std::string score =
        "0A1B2C3D4E5F  1 0.85  3   12 1.25  866 40 50 60  0 255  866    1    2\n";
    static const SampleTree tree({{"h1/a/rank.txt", rank},
                                  {"h1/a/score_re_x.txt", score},
                                  {"h1/b/rank.txt", rank},
                                  {"h2/a/decision.txt", "0A1B2C3D4E5F 102030405060 2 30\n"},
                                  {"h2/a/notes", "not a record file\n"},
                                  {"h2/b/empty.txt", ""},
                                  {"h3.tar", tarOf({{"a/rank.txt", rank}})}});
    return tree;
}

/* The database is in memory and its temporary tables too, so nothing has a reason to open a file. */
void forbidFiles()
{
    static sqlite3_vfs none = *sqlite3_vfs_find(nullptr);
    none.zName = "none";
    none.xOpen = [](sqlite3_vfs*, const char*, sqlite3_file*, int, int*) -> int { abort(); };
    sqlite3_vfs_register(&none, 1);
}

Engine& engine()
{
    static Engine one(QueryFiles({sampleTree().path()}, {PathTemplate("{home}/{night}/{what}.txt")}, nullptr),
                      {{"0a1b2c3d4e5f", "attic"}});
    return one;
}

Database& database()
{
    static Database* const one = [] {
        static Database made(engine());
        forbidFiles();
        sqlite3_hard_heap_limit64(maxMemory); /* fails for a larger limit than the present one */
        const Statement any = made.prepare("SELECT 1");
        sqlite3_limit(sqlite3_db_handle(any.row()), SQLITE_LIMIT_LENGTH, maxText);
        return &made;
    }();
    return *one;
}

/* ---- Running a query ---------------------------------------------------- */

/* The type and the bytes of a value. */
std::string valueAt(sqlite3_stmt* row, int column)
{
    const int type = sqlite3_column_type(row, column);
    const void* bytes = sqlite3_column_blob(row, column);
    const auto size = static_cast<size_t>(sqlite3_column_bytes(row, column));
    return std::to_string(type) + ":" +
           std::string(static_cast<const char*>(bytes), bytes == nullptr ? 0 : size);
}

std::string rowsOf(Statement& statement)
{
    std::string rows;
    for (size_t i = 0; i < maxRows && statement.step(); ++i)
        for (int column = 0; column < sqlite3_column_count(statement.row()); ++column)
            rows += valueAt(statement.row(), column) + "\n";
    return rows;
}

void testError(const QueryError& error, const std::string& query)
{
    expect(!error.text.empty() && error.query == query);
    expect(!error.offset || *error.offset <= query.size());
    expect(nlohmann::json::accept(errorJson(error)));
    const std::string caret = caretText(error);
    expect(caret.empty() == !error.offset);
}

/* The rows of a query; null if it is refused or stopped. */
std::optional<std::string> run(const std::string& query)
{
    engine().start();
    engine().deadline = std::chrono::steady_clock::now() + longest;
    try {
        Statement statement = database().prepare(query);
        expect(!statement.columns().empty() && sqlite3_stmt_readonly(statement.row()) != 0);
        return rowsOf(statement);
    } catch (const QueryFailure& failure) {
        testError(failure.error, query);
    } catch (const Failure&) {
    } catch (const std::bad_alloc&) {
    }
    return std::nullopt;
}

/* Whether a query can use chance or the clock. */
bool varies(const std::string& query)
{
    for (const char* word : {"random", "date", "time", "julianday", "unixepoch", "now"})
        for (size_t at = 0; at < query.size(); ++at)
            if (sqlite3_strnicmp(query.c_str() + at, word, static_cast<int>(strlen(word))) == 0)
                return true;
    return false;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string query(reinterpret_cast<const char*>(data), size);
    const std::optional<std::string> rows = run(query);
    if (!rows || varies(query))
        return 0;
    const std::optional<std::string> again = run(query);
    expect(!again || *again == *rows); /* the second run can take too long */
    return 0;
}
