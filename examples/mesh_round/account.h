/* SPDX-License-Identifier: Apache-2.0 */
/* What the program tells people: plain text on standard output. */
#ifndef MESH_ROUND_ACCOUNT_H
#define MESH_ROUND_ACCOUNT_H

#include <string>

#include "home.h"
#include "store.h"

namespace account
{

void header(const std::string& directory, uint64_t seed);
void moved(const Home& home, const ApAlgInterfaceOutput& decision, bool possible);

/* The mesh as a tree and the decision; `station` is the one that the candidate APs are for. */
void round(const Home& home, const Store& store, const Knowledge& known, const std::string& station);

void files(const Store& store, const std::string& directory);

} // namespace account

#endif
