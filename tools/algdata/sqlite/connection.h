/* SPDX-License-Identifier: Apache-2.0 */
/* What all connections to SQLite share: they are in memory, have limits and can only read. */
#ifndef ALGDATA_SQLITE_CONNECTION_H
#define ALGDATA_SQLITE_CONNECTION_H

#include <optional>
#include <string>

struct sqlite3;
struct sqlite3_stmt;

namespace algdata
{

/* Throws Failure. */
sqlite3* openConnection();

/* Throws Failure, or std::bad_alloc, unless the result code is that of success. */
void requireOk(int result);

/*
 * For an authorizer: what a statement would do that it must not, in words. Null if the action reads.
 * The arguments are those of the authorizer.
 */
std::optional<std::string> refusalOf(int action, const char* first, const char* second);

/* The first parameter of a statement, as it is written; null if it has none. */
std::optional<std::string> parameterOf(sqlite3_stmt* statement);

} // namespace algdata

#endif
