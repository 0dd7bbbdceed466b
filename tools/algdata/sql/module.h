/* SPDX-License-Identifier: Apache-2.0 */
/* The tables as virtual tables of SQLite. */
#ifndef ALGDATA_SQL_MODULE_H
#define ALGDATA_SQL_MODULE_H

#include "sql/engine.h"

struct sqlite3;

namespace algdata
{

/*
 * Registers the tables, the collation "mac" and the function name_of(MAC). The engine
 * must live longer than the connection. Returns a result code of SQLite.
 */
int registerTables(sqlite3* database, Engine& engine);

} // namespace algdata

#endif
