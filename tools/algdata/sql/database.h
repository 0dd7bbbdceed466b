/* SPDX-License-Identifier: Apache-2.0 */
/* Runs queries over the files. A connection can only read. */
#ifndef ALGDATA_SQL_DATABASE_H
#define ALGDATA_SQL_DATABASE_H

#include <memory>
#include <string>
#include <vector>

#include "output/queryError.h"
#include "sql/engine.h"

struct sqlite3;
struct sqlite3_stmt;

namespace algdata
{

/* One prepared SELECT. */
class Statement
{
  public:
    ~Statement();
    Statement(Statement&& other) noexcept;
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    std::vector<std::string> columns() const;

    /* False after the last row. Throws QueryFailure. */
    bool step();

    /* The row of step(), which it stays valid until the next one. */
    sqlite3_stmt* row() const { return statement; }

  private:
    friend class Database;
    Statement(Engine& of, std::string text, sqlite3_stmt* prepared);
    Engine& engine;
    std::string query;
    sqlite3_stmt* statement;
};

class Database
{
  public:
    explicit Database(Engine& shared);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /* Throws QueryFailure for anything but one SELECT. */
    Statement prepare(const std::string& query);

  private:
    static int authorize(void* given, int action, const char* first, const char* second, const char* schema,
                         const char* trigger);

    Engine& engine;
    sqlite3* database;
    std::string refused; /* what the statement that is being prepared must not do */
};

} // namespace algdata

#endif
