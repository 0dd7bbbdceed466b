/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALGDATA_SQL_PROMPT_H
#define ALGDATA_SQL_PROMPT_H

#include <functional>
#include <string>
#include <vector>

#include "options/options.h"

namespace algdata
{

using RunQuery = std::function<Status(const std::string& query, const Options& options)>;

/*
 * Asks for queries on a terminal until the end of input, with history and completion of
 * tables and columns. A query ends with a semicolon. ^C stops a query, not the prompt.
 */
Status askForQueries(Options options, const std::vector<std::string>& pathColumns, const RunQuery& run);

} // namespace algdata

#endif
