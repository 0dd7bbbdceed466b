/* SPDX-License-Identifier: Apache-2.0 */
/* The manual page, from the command line's definition, and the completion scripts of the shells. */
#ifndef ALGDATA_GENERATE_H
#define ALGDATA_GENERATE_H

#include <CLI/CLI.hpp>
#include <string>

namespace algdata
{

std::string manualPage(const CLI::App& app);

/* For bash, zsh or fish; throws Failure for another shell. */
std::string completionScript(const std::string& shell);

} // namespace algdata

#endif
