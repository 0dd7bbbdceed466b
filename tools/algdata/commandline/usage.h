/* SPDX-License-Identifier: Apache-2.0 */
/* The command line's one definition: help, manual page and completions all come from it. */
#ifndef ALGDATA_USAGE_H
#define ALGDATA_USAGE_H

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "commandline/options.h"

namespace algdata
{

using Command = Status (*)(Options);

/* What stands on the command line, before it is understood. */
struct CommandLine {
    Options options;
    std::string kind;
    std::string view = "stored";
    std::string format;
    std::string color = "auto";
    std::string explain;
    std::vector<std::string> columns;
    std::vector<std::string> where;
    std::vector<std::string> sort;
    std::string head;
    bool noPager = false;
    bool generateMan = false;
    std::string generateCompletion;
};

void define(CLI::App& app, CommandLine& line);

/* The words that an option takes, by its long name; empty where it takes anything. */
std::vector<std::string> choicesFor(const std::string& option);

/* Turns the texts into what they mean; throws Failure. */
Options understood(const CLI::App& command, const CommandLine& line);

Command commandNamed(const std::string& name);
std::vector<std::string> commandNames();

/* Why the command line cannot be understood, and what may have been meant. */
std::string refusal(const CLI::App& app, const CLI::ParseError& error);

} // namespace algdata

#endif
