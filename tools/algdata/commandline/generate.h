/* SPDX-License-Identifier: Apache-2.0 */
/* The manual page and the shells' completions, from the command line's definition. */
#ifndef ALGDATA_GENERATE_H
#define ALGDATA_GENERATE_H

#include <CLI/CLI.hpp>
#include <string>

namespace algdata
{

std::string manualPage(const CLI::App& app);

/* For bash, zsh or fish; throws Failure for another shell. */
std::string completion(const CLI::App& app, const std::string& shell);

} // namespace algdata

#endif
