/* SPDX-License-Identifier: Apache-2.0 */
#include "sql/export.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <set>
#include <unistd.h>

#include <fmt/format.h>
#include <sqlite3.h>

#include "output/temporaryFile.h"
#include "sql/tables.h"
#include "sqlite/rowTable.h"
#include "text/wording.h"

namespace algdata
{

namespace
{

/* A new database in a file, without a journal: the file is thrown away after a failure. */
class NewDatabase
{
  public:
    explicit NewDatabase(const std::string& path)
    {
        check(sqlite3_open_v2(path.c_str(), &database, SQLITE_OPEN_READWRITE, nullptr));
        execute("PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; BEGIN");
    }
    ~NewDatabase()
    {
        sqlite3_finalize(insert);
        sqlite3_close_v2(database);
    }
    NewDatabase(const NewDatabase&) = delete;
    NewDatabase& operator=(const NewDatabase&) = delete;

    void createTable(const std::vector<std::string>& columns);
    void addRow(sqlite3_stmt* row);
    void finish() { execute("COMMIT"); }

  private:
    void check(int result) const
    {
        if (result != SQLITE_OK && result != SQLITE_DONE)
            throw OutputFailure(fmt::format("cannot write the database: {}", sqlite3_errmsg(database)));
    }
    void execute(const std::string& text)
    {
        check(sqlite3_exec(database, text.c_str(), nullptr, nullptr, nullptr));
    }

    sqlite3* database = nullptr;
    sqlite3_stmt* insert = nullptr;
};

/* Columns of a result can have equal names; those of a table cannot. */
void NewDatabase::createTable(const std::vector<std::string>& columns)
{
    std::string declared;
    std::string values;
    std::set<std::string> used;
    for (const std::string& column : columns) {
        std::string name = column;
        for (int i = 2; !used.insert(lowered(name)).second; ++i)
            name = fmt::format("{}:{}", column, i);
        declared += (declared.empty() ? "" : ", ") + quotedName(name);
        values += values.empty() ? "?" : ", ?";
    }
    execute("CREATE TABLE result(" + declared + ")");
    const std::string text = "INSERT INTO result VALUES(" + values + ")";
    check(sqlite3_prepare_v2(database, text.c_str(), -1, &insert, nullptr));
}

void NewDatabase::addRow(sqlite3_stmt* row)
{
    for (int i = 0; i < sqlite3_column_count(row); ++i)
        check(sqlite3_bind_value(insert, i + 1, sqlite3_column_value(row, i)));
    check(sqlite3_step(insert));
    check(sqlite3_reset(insert));
}

void copyTo(Output& out, const TemporaryFile& file)
{
    std::array<char, 1 << 16> block;
    if (lseek(file.descriptor(), 0, SEEK_SET) < 0)
        throw OutputFailure(std::string("cannot read the database: ") + std::strerror(errno));
    for (;;) {
        const ssize_t got = read(file.descriptor(), block.data(), block.size());
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            throw OutputFailure(std::string("cannot read the database: ") + std::strerror(errno));
        if (got == 0)
            return;
        out.put({block.data(), static_cast<size_t>(got)});
    }
}

} // namespace

bool exportRows(Statement& statement, const Options& options, Output& out)
{
    if (options.output.empty() && isatty(STDOUT_FILENO) != 0)
        throw Failure("--format sqlite: expected -o FILE, because a terminal cannot show a database");
    const TemporaryFile file;
    size_t rows = 0;
    bool complete = true;
    {
        NewDatabase database(file.path());
        database.createTable(statement.columns());
        while (complete && statement.step()) {
            complete = !options.sql.maxRows || rows < *options.sql.maxRows;
            if (complete)
                database.addRow(statement.row());
            ++rows;
        }
        database.finish();
    }
    copyTo(out, file);
    if (!complete)
        message(
            fmt::format("--max-rows {}: the query has more rows, which are left out", *options.sql.maxRows));
    return complete;
}

} // namespace algdata
