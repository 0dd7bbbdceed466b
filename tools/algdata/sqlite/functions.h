/* SPDX-License-Identifier: Apache-2.0 */
/* The functions and the collation that queries use besides those of SQLite. */
#ifndef ALGDATA_SQLITE_FUNCTIONS_H
#define ALGDATA_SQLITE_FUNCTIONS_H

#include <map>
#include <string>

struct sqlite3;

namespace algdata
{

using DeviceNames = std::map<std::string, std::string>; /* by MAC in lower case */

/*
 * Registers the collation "mac", which compares in any letter case, with and without
 * separators, and path_part(PATH, TEMPLATE, NAME): the part of a path that the template
 * gives this name; null if the path does not match. Returns a result code of SQLite.
 */
int registerFunctions(sqlite3* database);

/* Registers name_of(MAC): the name of a device; null if it has none. The names must live as long. */
int registerNames(sqlite3* database, const DeviceNames& names);

} // namespace algdata

#endif
