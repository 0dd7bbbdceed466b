/* SPDX-License-Identifier: Apache-2.0 */
#include <cstdio>

#include "commandline/generate.h"
#include "commandline/usage.h"
#include "output/output.h"
#include "output/wording.h"

namespace
{

using namespace algdata;

/* Help and version are no errors; everything else is wrong usage. */
int refused(const CLI::App& app, const CLI::ParseError& error, const char* first)
{
    if (error.get_exit_code() == 0)
        return app.exit(error);
    const auto used = app.get_subcommands();
    const bool noCommand = used.empty() && first != nullptr && first[0] != '-';
    message(noCommand ? "there is no command " + std::string(first) : error.what());
    const std::string command = used.empty() ? "" : used[0]->get_name() + " ";
    message("`algdata " + command + "--help` tells more");
    return Unusable;
}

int run(const CLI::App& app, const CommandLine& line)
{
    if (line.generateMan || !line.generateCompletion.empty()) {
        const std::string text =
            line.generateMan ? manualPage(app) : completion(app, line.generateCompletion);
        Output out{Options()};
        out.put(text);
        out.close(AllWell);
        return AllWell;
    }
    const auto used = app.get_subcommands();
    if (used.empty()) {
        message("no command; `algdata --help` lists the commands");
        return Unusable;
    }
    return commandNamed(used[0]->get_name())(understood(*used[0], line));
}

} // namespace

int main(int argc, char** argv)
{
    useTerminalCharacters();
    watchSignals();
    CLI::App app;
    CommandLine line;
    define(app, line);
    app.require_subcommand(0, 1);
    try {
        app.parse(argc, argv);
        return run(app, line);
    } catch (const CLI::ParseError& error) {
        return refused(app, error, argc > 1 ? argv[1] : nullptr);
    } catch (const std::exception& failure) {
        message(failure.what());
        return Unusable;
    }
}
