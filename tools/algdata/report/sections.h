/* SPDX-License-Identifier: Apache-2.0 */
/* The sections of a page, in its order. */
#ifndef ALGDATA_SECTIONS_H
#define ALGDATA_SECTIONS_H

#include "report/html.h"
#include "report/snapshot.h"

namespace algdata
{

/* Of each snapshot: */
void writeOverview(Html& html, const Snapshot& snapshot);
void writeCandidates(Html& html, const Snapshot& snapshot);
void writeLinks(Html& html, const Snapshot& snapshot);
void writeClients(Html& html, const Snapshot& snapshot);
void writeNeighbours(Html& html, const Snapshot& snapshot);
void writePat(Html& html, const Snapshot& snapshot);
void writeFindings(Html& html, const Snapshot& snapshot);

/* Over all snapshots; nothing if there is one: the decision of each, and what changes. */
void writeDecisions(Html& html, const ReportedHome& home);
void writeChanges(Html& html, const ReportedHome& home);

/* The histories in the files of one snapshot. */
void writeHistories(Html& html, const Snapshot& snapshot);

/* The start of the run in the rank index; as a date too if it can be a number of seconds since 1970. */
std::string startText(const Snapshot& snapshot);

/* A section with its title and an id that links name. */
Html::Element sectionOf(Html& html, const Snapshot& snapshot, const char* name, const char* title);

/* A paragraph that says what is missing. */
void writeMissing(Html& html, const std::string& text);

} // namespace algdata

#endif
