/* SPDX-License-Identifier: Apache-2.0 */
/* What a shell offers while a command line is typed. */
#ifndef ALGDATA_COMPLETE_H
#define ALGDATA_COMPLETE_H

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace algdata
{

/*
 * The words that can replace the last one, one per line, each followed by a tab and
 * its description. `words` is the command line after the program's name; the last word
 * may be empty or incomplete. Empty where the name of a file is expected.
 */
std::string completionsOf(const CLI::App& app, const std::vector<std::string>& words);

} // namespace algdata

#endif
