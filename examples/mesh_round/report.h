/* SPDX-License-Identifier: Apache-2.0 */
/* Prints what happens in the home as text on standard output. */
#ifndef MESH_ROUND_REPORT_H
#define MESH_ROUND_REPORT_H

#include <string>

#include "home.h"
#include "store.h"

namespace report
{

void header(const std::string& directory, uint64_t seed);
void moved(const Home& home, const ApAlgInterfaceOutput& decision, bool possible);

/* The mesh as a tree, and the decision. The candidate APs are those of `station`. */
void round(const Home& home, const Store& store, const Knowledge& known, const std::string& station);

void files(const Store& store, const std::string& directory);

} // namespace report

#endif
