/* SPDX-License-Identifier: Apache-2.0 */
#include <fcntl.h>
#include <sstream>
#include <unistd.h>

#include "commandline/complete.h"
#include "commandline/generate.h"
#include "commandline/usage.h"
#include "output/output.h"
#include "output/queryError.h"
#include "text/wording.h"

namespace
{

using namespace algdata;

/*
 * Opens standard descriptors that the caller closed on /dev/null. Otherwise the
 * next file would get the number, and messages would be written into it. They are
 * opened in the wrong direction on purpose: output that is lost must be an error.
 */
void openStandardDescriptors()
{
    for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (fcntl(fd, F_GETFD) < 0)
            open("/dev/null", fd == STDIN_FILENO ? O_WRONLY : O_RDONLY);
}

/* Prints the text, or writes it to a file. */
Status printText(const std::string& text, const std::string& path = "")
{
    Options options;
    options.output = path;
    Output out(options);
    out.put(text);
    out.close(AllWell);
    return AllWell;
}

/* Writes the pages to a directory. Without one, prints the first. */
Status writeManual(const std::vector<ManualPage>& pages, const std::string& directory)
{
    if (directory.empty())
        return printText(pages.front().text);
    for (const ManualPage& page : pages)
        printText(page.text, directory + "/" + page.name);
    return AllWell;
}

/* Prints the help or the version, which the library reports as errors too, or the actual error. */
Status handleParseError(const CLI::App& app, const CLI::ParseError& error)
{
    if (error.get_exit_code() == 0) {
        std::ostringstream text;
        app.exit(error, text, text);
        return printText(text.str());
    }
    const auto used = app.get_subcommands();
    message(parseErrorText(app, error));
    const std::string command = used.empty() ? "" : used[0]->get_name() + " ";
    message("see `algdata " + command + "--help`");
    return Unusable;
}

Status run(const CLI::App& app, const CommandLine& line)
{
    if (app.count("--generate-man") != 0)
        return writeManual(manualPages(app), line.generateMan);
    if (!line.generateCompletion.empty())
        return printText(completionScript(line.generateCompletion));
    const auto used = app.get_subcommands();
    if (used.empty()) {
        message("no command; `algdata --help` lists the commands");
        return Unusable;
    }
    return commandNamed(used[0]->get_name())(optionsFrom(*used[0], line));
}

Status parseAndRun(CLI::App& app, CommandLine& line, int argc, char** argv)
{
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return handleParseError(app, error);
    }
    return run(app, line);
}

Status perform(int argc, char** argv)
{
    CLI::App app;
    CommandLine line;
    defineCommands(app, line);
    app.require_subcommand(0, 1);
    try {
        if (argc > 1 && std::string_view(argv[1]) == "--complete")
            return printText(completionsOf(app, std::vector<std::string>(argv + 2, argv + argc)));
        return parseAndRun(app, line, argc, argv);
    } catch (const std::bad_alloc&) {
        throw; /* main() needs no memory to report it */
    } catch (const std::exception& failure) {
        printFailure(failure);
        return Unusable;
    }
}

} // namespace

int main(int argc, char** argv)
{
    openStandardDescriptors();
    useLocaleCharacters();
    removeTemporaryFilesOnSignals();
    try {
        return perform(argc, argv);
    } catch (...) {
        std::fputs("algdata: out of memory\n", stderr);
        return Unusable;
    }
}
