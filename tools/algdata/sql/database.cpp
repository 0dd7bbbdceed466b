/* SPDX-License-Identifier: Apache-2.0 */
#include "sql/database.h"

#include <new>
#include <utility>

#include <fmt/format.h>
#include <sqlite3.h>

#include "sql/errors.h"
#include "sql/module.h"
#include "sqlite/connection.h"

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

Database::Database(Engine& shared) : engine(shared), database(openConnection())
{
    constexpr int between = 1000; /* steps of the engine between two looks at the clock */
    requireOk(registerTables(database, engine));
    /* These tables read nothing but their arguments. Others of SQLite cannot be opened later. */
    requireOk(
        sqlite3_exec(database, "SELECT 1 FROM json_each('0'), json_tree('0')", nullptr, nullptr, nullptr));
    sqlite3_progress_handler(
        database, between, [](void* given) { return static_cast<Engine*>(given)->stopping() ? 1 : 0; },
        &engine);
    requireOk(sqlite3_set_authorizer(database, authorize, this));
}

Database::~Database()
{
    sqlite3_close_v2(database);
}

int Database::authorize(void* given, int action, const char* first, const char* second,
                        const char* /*schema*/, const char* /*trigger*/)
{
    Database& self = *static_cast<Database*>(given);
    const std::optional<std::string> refusal = refusalOf(action, first, second);
    if (!refusal || self.engine.declaring)
        return SQLITE_OK;
    if (self.refused.empty())
        self.refused = *refusal;
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
    if (const std::optional<std::string> parameter = parameterOf(prepared))
        throw QueryFailure(
            {fmt::format("the query has the parameter {} without a value, expected the value itself",
                         *parameter),
             query, query.find(*parameter), ""});
    return statement;
}

} // namespace algdata
