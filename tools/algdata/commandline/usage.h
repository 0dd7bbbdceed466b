/* SPDX-License-Identifier: Apache-2.0 */
/* The definition of the command line. Help, manual page and completions are generated from it. */
#ifndef ALGDATA_USAGE_H
#define ALGDATA_USAGE_H

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "options/options.h"

namespace algdata
{

using Command = Status (*)(Options);

/* The values of the command line as CLI11 stores them, before optionsFrom() parses them. */
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
    std::vector<std::string> by;
    std::string head;
    std::string limit;
    std::string maxRows;
    std::string timeout;
    std::string errors = "text";
    std::string schema;
    std::string named;
    bool noPager = false;
    std::string generateMan; /* the directory of the pages; empty for the page of algdata alone */
    std::string generateCompletion;
};

/* Adds the commands and their options, which store their values in `line`. */
void defineCommands(CLI::App& app, CommandLine& line);

/* The words that an option of a command accepts, by the option's long name. Empty if it accepts any value. */
std::vector<std::string> choicesFor(const std::string& option, const std::string& command);

/* Parses the values of the command line. Throws Failure for an invalid one. */
Options optionsFrom(const CLI::App& command, const CommandLine& line);

Command commandNamed(const std::string& name);
std::vector<std::string> commandNames();

/* The message for a command line that CLI11 rejects, with a suggestion if there is one. */
std::string parseErrorText(const CLI::App& app, const CLI::ParseError& error);

} // namespace algdata

#endif
