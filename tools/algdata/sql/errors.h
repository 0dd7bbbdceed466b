/* SPDX-License-Identifier: Apache-2.0 */
/* Explains the errors of SQLite in the words of the tables. */
#ifndef ALGDATA_SQL_ERRORS_H
#define ALGDATA_SQL_ERRORS_H

#include <vector>

#include "output/queryError.h"

namespace algdata
{

/* `text` and `offset` are what SQLite says; the offset is negative if it says none. */
QueryError explained(const std::string& query, const std::string& text, int offset,
                     const std::vector<std::string>& pathColumns);

/* The error as a JSON object, for programs. */
std::string errorJson(const QueryError& error);

} // namespace algdata

#endif
