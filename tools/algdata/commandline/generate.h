/* SPDX-License-Identifier: Apache-2.0 */
/* Generates the manual pages from the definition of the command line, and the completion scripts. */
#ifndef ALGDATA_GENERATE_H
#define ALGDATA_GENERATE_H

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace algdata
{

struct ManualPage {
    std::string name; /* of its file: algdata-show.1 */
    std::string text;
};

/* The page of algdata, then one for each command. */
std::vector<ManualPage> manualPages(const CLI::App& app);

/* The completion script for bash, zsh or fish. Throws Failure for another shell. */
std::string completionScript(const std::string& shell);

} // namespace algdata

#endif
