/* SPDX-License-Identifier: Apache-2.0 */
/* Finds what no single file of a home shows: contradictions between its files. */
#ifndef ALGDATA_AUDIT_H
#define ALGDATA_AUDIT_H

#include "checking/rules.h"
#include "mesh/mesh.h"

namespace algdata
{

struct MeshFinding {
    Rule rule;
    Place place;
    std::string field;
    std::string text;        /* without lines of files, so that it stays the same when lines move */
    std::vector<Place> also; /* the other records that the finding is about */
};

/* The findings of a home, in the order of the rules. The mesh has to be settled. */
std::vector<MeshFinding> audit(const Mesh& mesh);

} // namespace algdata

#endif
