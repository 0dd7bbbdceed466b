/* SPDX-License-Identifier: Apache-2.0 */
#include "sql/database.h"

#include <new>
#include <utility>

#include <fmt/format.h>
#include <sqlite3.h>

#include "output/wording.h"
#include "sql/errors.h"
#include "sql/module.h"

namespace algdata
{

/* ---- Statements --------------------------------------------------------- */

Statement::Statement(Engine& of, std::string text, sqlite3_stmt* prepared)
    : engine(of), query(std::move(text)), statement(prepared)
{
}

Statement::Statement(Statement&& other) noexcept
    : engine(other.engine), query(std::move(other.query)), statement(std::exchange(other.statement, nullptr))
{
}

Statement::~Statement()
{
    sqlite3_finalize(statement);
}

std::vector<std::string> Statement::columns() const
{
    std::vector<std::string> names;
    names.reserve(static_cast<size_t>(sqlite3_column_count(statement)));
    for (int i = 0; i < sqlite3_column_count(statement); ++i)
        names.emplace_back(sqlite3_column_name(statement, i));
    return names;
}

bool Statement::step()
{
    const int result = sqlite3_step(statement);
    if (result == SQLITE_ROW)
        return true;
    if (result == SQLITE_DONE)
        return false;
    if (result == SQLITE_NOMEM)
        throw Failure("the query needs more memory than it may use");
    if (engine.isTimedOut())
        throw Failure("the query took longer than --timeout allows; the rows so far are not all");
    if (engine.stopping())
        throw Failure("interrupted; the rows so far are not all");
    sqlite3* const database = sqlite3_db_handle(statement);
    throw QueryFailure(explained(query, sqlite3_errmsg(database), -1, engine.files.columns()));
}

/* ---- The connection ----------------------------------------------------- */

namespace
{

void check(int result)
{
    if (result == SQLITE_NOMEM)
        throw std::bad_alloc();
    if (result != SQLITE_OK)
        throw Failure(fmt::format("cannot start the query engine: {}", sqlite3_errstr(result)));
}

} // namespace

Database::Database(Engine& shared) : engine(shared)
{
    constexpr int maxText = 64 << 20; /* bytes of one value */
    constexpr sqlite3_int64 maxMemory = sqlite3_int64(1) << 30;
    constexpr int between = 1000; /* steps of the engine between two looks at the clock */
    check(sqlite3_open_v2(":memory:", &database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_MEMORY, nullptr));
    sqlite3_hard_heap_limit64(maxMemory);
    sqlite3_limit(database, SQLITE_LIMIT_LENGTH, maxText);
    sqlite3_limit(database, SQLITE_LIMIT_ATTACHED, 0);
    sqlite3_limit(database, SQLITE_LIMIT_WORKER_THREADS, 0);
    /* Sorting and temporary tables stay in memory, and "x" is a name, never a text. */
    check(sqlite3_exec(database, "PRAGMA temp_store = MEMORY", nullptr, nullptr, nullptr));
    check(sqlite3_db_config(database, SQLITE_DBCONFIG_DQS_DML, 0, nullptr));
    check(sqlite3_db_config(database, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr));
    check(sqlite3_db_config(database, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr));
    check(sqlite3_db_config(database, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr));
    check(sqlite3_db_config(database, SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION, 0, nullptr));
    check(registerTables(database, engine));
    /* These tables read nothing but their arguments. Others of SQLite cannot be opened later. */
    check(sqlite3_exec(database, "SELECT 1 FROM json_each('0'), json_tree('0')", nullptr, nullptr, nullptr));
    sqlite3_progress_handler(
        database, between, [](void* given) { return static_cast<Engine*>(given)->stopping() ? 1 : 0; },
        &engine);
    check(sqlite3_set_authorizer(database, authorize, this));
}

Database::~Database()
{
    sqlite3_close_v2(database);
}

namespace
{

/* What a statement would do, for the message that refuses it. */
std::string wordFor(int action, const char* table, const char* function)
{
    const bool writes = action == SQLITE_INSERT || action == SQLITE_UPDATE || action == SQLITE_DELETE;
    if (writes && sqlite3_strnicmp(table, "sqlite_", 7) == 0)
        return "a change of the schema";
    switch (action) {
    case SQLITE_ATTACH:
        return "open or write another database";
    case SQLITE_DETACH:
        return "DETACH";
    case SQLITE_PRAGMA:
        return "PRAGMA";
    case SQLITE_TRANSACTION:
    case SQLITE_SAVEPOINT:
        return "a transaction";
    case SQLITE_INSERT:
        return "INSERT";
    case SQLITE_UPDATE:
        return "UPDATE";
    case SQLITE_DELETE:
        return "DELETE";
    case SQLITE_FUNCTION:
        return lowered(function) + "()";
    default:
        return "a change of the schema";
    }
}

/* fts3_tokenizer() shows addresses and accepts them, so a query could run any code. */
bool isHarmless(int action, const char* function)
{
    if (action == SQLITE_FUNCTION)
        return sqlite3_stricmp(function, "load_extension") != 0 &&
               sqlite3_stricmp(function, "fts3_tokenizer") != 0;
    return action == SQLITE_SELECT || action == SQLITE_READ || action == SQLITE_RECURSIVE;
}

} // namespace

int Database::authorize(void* given, int action, const char* first, const char* second,
                        const char* /*schema*/, const char* /*trigger*/)
{
    Database& self = *static_cast<Database*>(given);
    if (isHarmless(action, second) || self.engine.declaring)
        return SQLITE_OK;
    if (self.refused.empty())
        self.refused = wordFor(action, first, second);
    return SQLITE_DENY;
}

Statement Database::prepare(const std::string& query)
{
    refused.clear();
    sqlite3_stmt* prepared = nullptr;
    const char* rest = nullptr;
    const int result =
        sqlite3_prepare_v3(database, query.c_str(), static_cast<int>(query.size() + 1), 0, &prepared, &rest);
    Statement statement(engine, query, prepared);
    if (result == SQLITE_NOMEM)
        throw std::bad_alloc();
    if (!refused.empty())
        throw QueryFailure({"only SELECT is allowed, found " + refused, query, std::nullopt, ""});
    if (result != SQLITE_OK)
        throw QueryFailure(explained(query, sqlite3_errmsg(database), sqlite3_error_offset(database),
                                     engine.files.columns()));
    if (query.find('\0') != std::string::npos)
        throw QueryFailure({"the query has a NUL byte", query, query.find('\0'), ""});
    if (prepared == nullptr)
        throw QueryFailure({"the query is empty, expected SELECT", query, std::nullopt, ""});
    sqlite3_stmt* second = nullptr;
    const int another = sqlite3_prepare_v3(database, rest, -1, 0, &second, nullptr);
    const bool more = another != SQLITE_OK || second != nullptr;
    sqlite3_finalize(second);
    if (more)
        throw QueryFailure({"expected one statement, found another one after it", query,
                            static_cast<size_t>(rest - query.c_str()), ""});
    if (sqlite3_column_count(prepared) == 0)
        throw QueryFailure({"only SELECT is allowed", query, std::nullopt, ""});
    if (sqlite3_bind_parameter_count(prepared) != 0) {
        const char* name = sqlite3_bind_parameter_name(prepared, 1);
        const std::string parameter = name == nullptr ? "?" : name;
        throw QueryFailure(
            {fmt::format("the query has the parameter {} without a value, expected the value itself",
                         parameter),
             query, query.find(parameter), ""});
    }
    return statement;
}

} // namespace algdata
