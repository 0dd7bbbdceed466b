/* SPDX-License-Identifier: Apache-2.0 */
/* Generates the manual page from the definition of the command line, and the completion scripts. */
#ifndef ALGDATA_GENERATE_H
#define ALGDATA_GENERATE_H

#include <CLI/CLI.hpp>
#include <string>

namespace algdata
{

std::string manualPage(const CLI::App& app);

/* The completion script for bash, zsh or fish. Throws Failure for another shell. */
std::string completionScript(const std::string& shell);

} // namespace algdata

#endif
