/* SPDX-License-Identifier: Apache-2.0 */
/* The tables as virtual tables of SQLite. */
#ifndef ALGDATA_SQL_MODULE_H
#define ALGDATA_SQL_MODULE_H

#include "sql/engine.h"

struct sqlite3;

namespace algdata
{

/*
 * Registers the tables with the files of the engine, the functions and the collation. The
 * engine must live longer than the connection. Returns a result code of SQLite.
 */
int registerTables(sqlite3* database, Engine& engine);

/*
 * The same with tables that have an argument: a path or the content of a file. Tables of
 * another input are replaced.
 */
int registerTables(sqlite3* database, Input input);

} // namespace algdata

#endif
