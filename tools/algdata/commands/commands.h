/* SPDX-License-Identifier: Apache-2.0 */
/* The commands. Each returns the exit status. */
#ifndef ALGDATA_COMMANDS_H
#define ALGDATA_COMMANDS_H

#include "options/options.h"

namespace algdata
{

Status runKinds(Options options);
Status runShow(Options options);
Status runCheck(Options options);
Status runDiff(Options options);
Status runExport(Options options);
Status runImport(Options options);
Status runStats(Options options);
Status runHistory(Options options);
Status runWatch(Options options);
Status runTree(Options options);
Status runAudit(Options options);
Status runReport(Options options);
Status runSql(Options options);

/*
 * The columns of `check` and `audit`, of `tree`, of `kinds` and, besides the key, of `history`. The
 * other commands have the fields of the records.
 */
std::vector<std::string> findingColumns();
std::vector<std::string> treeColumns();
std::vector<std::string> kindColumns();
std::vector<std::string> historyColumns();

} // namespace algdata

#endif
