/* SPDX-License-Identifier: Apache-2.0 */
#include "sqlite/connection.h"

#include <new>

#include <fmt/format.h>
#include <sqlite3.h>

#include "options/options.h"
#include "text/wording.h"

namespace algdata
{

void requireOk(int result)
{
    if (result == SQLITE_NOMEM)
        throw std::bad_alloc();
    if (result != SQLITE_OK)
        throw Failure(fmt::format("cannot start the query engine: {}", sqlite3_errstr(result)));
}

/* ---- The connection ----------------------------------------------------- */

sqlite3* openConnection()
{
    constexpr int maxText = 64 << 20; /* bytes of one value */
    constexpr sqlite3_int64 maxMemory = sqlite3_int64(1) << 30;
    sqlite3* database = nullptr;
    requireOk(sqlite3_open_v2(":memory:", &database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_MEMORY, nullptr));
    sqlite3_hard_heap_limit64(maxMemory);
    sqlite3_limit(database, SQLITE_LIMIT_LENGTH, maxText);
    sqlite3_limit(database, SQLITE_LIMIT_ATTACHED, 0);
    sqlite3_limit(database, SQLITE_LIMIT_WORKER_THREADS, 0);
    /* Sorting and temporary tables stay in memory, and "x" is a name, never a text. */
    requireOk(sqlite3_exec(database, "PRAGMA temp_store = MEMORY", nullptr, nullptr, nullptr));
    requireOk(sqlite3_db_config(database, SQLITE_DBCONFIG_DQS_DML, 0, nullptr));
    requireOk(sqlite3_db_config(database, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr));
    requireOk(sqlite3_db_config(database, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr));
    requireOk(sqlite3_db_config(database, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr));
    requireOk(sqlite3_db_config(database, SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION, 0, nullptr));
    return database;
}

/* ---- What is refused ---------------------------------------------------- */

namespace
{

/* fts3_tokenizer() shows addresses and accepts them, so a query could run any code. */
bool isHarmless(const char* function)
{
    return sqlite3_stricmp(function, "load_extension") != 0 &&
           sqlite3_stricmp(function, "fts3_tokenizer") != 0;
}

} // namespace

std::optional<std::string> refusalOf(int action, const char* first, const char* second)
{
    const bool writes = action == SQLITE_INSERT || action == SQLITE_UPDATE || action == SQLITE_DELETE;
    if (writes && sqlite3_strnicmp(first, "sqlite_", 7) == 0)
        return "a change of the schema";
    switch (action) {
    case SQLITE_SELECT:
    case SQLITE_READ:
    case SQLITE_RECURSIVE:
        return std::nullopt;
    case SQLITE_FUNCTION:
        return isHarmless(second) ? std::nullopt : std::optional(lowered(second) + "()");
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
    default:
        return "a change of the schema";
    }
}

std::optional<std::string> parameterOf(sqlite3_stmt* statement)
{
    if (sqlite3_bind_parameter_count(statement) == 0)
        return std::nullopt;
    const char* name = sqlite3_bind_parameter_name(statement, 1);
    return name == nullptr ? "?" : name;
}

} // namespace algdata
