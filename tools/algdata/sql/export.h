/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALGDATA_SQL_EXPORT_H
#define ALGDATA_SQL_EXPORT_H

#include "output/output.h"
#include "sql/database.h"

namespace algdata
{

/*
 * Writes the rows of a query as an SQLite database with the table "result". Returns false
 * if --max-rows left some out. Throws Failure if the output is a terminal.
 */
bool exportRows(Statement& statement, const Options& options, Output& out);

} // namespace algdata

#endif
