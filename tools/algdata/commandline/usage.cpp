/* SPDX-License-Identifier: Apache-2.0 */
#include "commandline/usage.h"

#include <algorithm>
#include <map>

#include <fmt/format.h>

#include "checking/rules.h"
#include "commandline/arguments.h"
#include "commandline/suggest.h"
#include "commands/commands.h"

namespace algdata
{

namespace
{

constexpr const char* filesAndDirectories = "files, or directories that are searched; - for standard input";

struct Use {
    const char* name;
    Command run;
    const char* description;
    const char* examples;
};

const std::vector<Use>& uses()
{
    static const std::vector<Use> all = {
        {"kinds", runKinds, "List every kind of record file: fields, key, cap, readers and writers",
         "Examples:\n"
         "  algdata kinds\n"
         "      all kinds with their fields\n"
         "  algdata kinds --kind station\n"
         "      the fields of a station file\n"
         "  algdata kinds --format csv --where type=uint8\n"
         "      all 8-bit fields, for a spreadsheet\n"},
        {"show", runShow, "Show record files as aligned tables",
         "Examples:\n"
         "  algdata show station.txt\n"
         "      one table, a row per record\n"
         "  algdata show data/ --view loaded\n"
         "      every file of a directory as the algorithm sees it\n"
         "  algdata show scan.txt --where 'rssi<40' --sort=-rssi --columns neighbourMAC,rssi\n"
         "      weak neighbours, the best of them first\n"},
        {"check", runCheck, "Find the faults of record files, before the algorithm acts on them",
         "Each fault is one line: file:line:column: error or warning: field: what is wrong, what was "
         "expected [rule].\n"
         "--where and --head choose what is shown; the counts and the exit status are those of the "
         "whole.\n\n"
         "Examples:\n"
         "  algdata check data/\n"
         "      every file of a directory; exit status 1 when there is an error\n"
         "  algdata check data/ --where severity=error --format json\n"
         "      errors only, for a program\n"
         "  algdata check --explain blank-line\n"
         "      what a rule means; without a name, all rules\n"},
        {"diff", runDiff, "Compare two files or two directories, record by record",
         "Records are matched by their kind's key. Exit status 1 when there is a difference.\n"
         "--where, --head and --columns choose what is shown; the counts and the exit status are those of "
         "the whole.\n\n"
         "Examples:\n"
         "  algdata diff yesterday/rank.txt today/rank.txt\n"
         "      which records were added, removed and changed, and which fields\n"
         "  algdata diff yesterday/ today/ --format ndjson\n"
         "      all files of two directories, for a program\n"},
        {"export", runExport, "Write all records as JSON, NDJSON or CSV",
         "Every record says its kind and source before its fields, whatever the number of files. A value "
         "that is\n"
         "damaged is null, or an empty cell, and a message says so. A CSV holds one kind; with -o "
         "DIRECTORY/ each\n"
         "kind gets a file of its own.\n\n"
         "Examples:\n"
         "  algdata export station.txt --format csv -o station.csv\n"
         "  algdata export data/ --format csv -o tables/\n"
         "      tables/station.csv, tables/scanning.csv, ...\n"
         "  algdata export data/ --format ndjson\n"
         "      one stream of everything\n"
         "  algdata export data/ --format ndjson --where kind=scanning --columns neighbourMAC,rssi\n"},
        {"import", runImport, "Make a record file from JSON, NDJSON or CSV",
         "Refuses what would not come back from the file as it went in, and writes nothing then.\n\n"
         "Examples:\n"
         "  algdata import --kind station station.csv -o station.txt\n"
         "  algdata export old.txt | algdata import --kind ap-rank - -o new.txt\n"},
        {"stats", runStats, "Summarise record files per kind and field",
         "Examples:\n"
         "  algdata stats data/\n"
         "      records, keys, least, median and greatest values, zeros, how full the histories are\n"
         "  algdata stats data/ --where kind=time-delay --view loaded\n"},
    };
    return all;
}

bool takes(const std::string& command, const std::string& option)
{
    if (option == "--sort" && command == "diff")
        return false; /* differences come in the order of the files */
    if (option == "--view")
        return command == "show" || command == "diff" || command == "export" || command == "stats";
    return command != "import" || option == "--color";
}

void defineSelection(CLI::App& command, CommandLine& line)
{
    const std::string name = command.get_name();
    if (!takes(name, "--columns"))
        return;
    command.add_option("--columns", line.columns, "Only these fields, in this order, separated by commas")
        ->allow_extra_args(false)
        ->type_name("FIELDS");
    command
        .add_option("--where", line.where,
                    "Only what fits: field=value, or != < <= > >= for the =; may be repeated")
        ->allow_extra_args(false)
        ->type_name("TEST");
    if (takes(name, "--sort"))
        command.add_option("--sort", line.sort, "In order of these fields; -field for the greatest first")
            ->allow_extra_args(false)
            ->type_name("FIELDS");
    command.add_option("--head", line.head, "Only the first N of each file")->type_name("N");
}

void defineCommon(CLI::App& command, CommandLine& line)
{
    const std::string name = command.get_name();
    command
        .add_option("-k,--kind", line.kind, "The kind of the files; otherwise it is found from their content")
        ->type_name("KIND");
    if (takes(name, "--view"))
        command
            .add_option("--view", line.view,
                        "Values as stored in the file, or as loaded by the readers: converted and bounded")
            ->type_name("stored|loaded");
    command
        .add_option("-f,--format", line.format,
                    name == "import" ? "Form of the input; otherwise found from it" : "Form of the output")
        ->type_name(name == "import" ? "json|ndjson|csv" : "table|json|ndjson|csv|markdown");
    defineSelection(command, line);
    command
        .add_option("-o,--output", line.options.output,
                    name == "export"
                        ? "Write to this file, which appears whole or not at all; DIR/ for a file per kind"
                        : "Write to this file, which appears whole or not at all")
        ->type_name("FILE");
    command.add_option("--color", line.color, "Colours; auto obeys NO_COLOR")->type_name("auto|always|never");
    if (name == "import") {
        command.add_flag("--round", line.options.round, "Bring floats to the two decimals that a file has");
        command.add_flag("--allow-empty", line.options.allowEmpty,
                         "Make an empty file of an input without records");
    }
    if (name == "show" || name == "kinds")
        command.add_flag("--no-pager", line.noPager, "Never through the pager");
    command.set_help_flag("-h,--help", "Print this help and exit");
}

/* The files of a command: their name in its usage, and what they are. */
CLI::Option* addPaths(CLI::App& command, std::vector<std::string>& paths)
{
    const std::string name = command.get_name();
    if (name == "diff")
        return command.add_option("OLD NEW", paths, "two files, or two directories")->expected(2);
    if (name == "import")
        return command.add_option("FILE", paths, "the file to read; - for standard input")->expected(1);
    /* Of an option with an open number of values the library would read [x] as a list. */
    constexpr int many = CLI::detail::expected_max_vector_size;
    return command.add_option(name == "show" ? "FILE" : "PATH", paths, filesAndDirectories)
        ->expected(many, many)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

void definePaths(CLI::App& command, CommandLine& line)
{
    const std::string name = command.get_name();
    if (name == "kinds")
        return;
    addPaths(command, line.options.paths)->type_name("")->required(name != "check")->allow_extra_args(false);
    if (name == "check")
        command.add_option("--explain", line.explain, "Explain a rule; without a name, list the rules")
            ->expected(0, 1)
            ->type_name("RULE");
    if (name == "check")
        command.add_flag("--notes", line.options.notes, "Also what is worth knowing but no fault");
}

Format formatFrom(const std::string& text)
{
    static const std::map<std::string, Format> formats = {
        {"", Format::Text},         {"table", Format::Table}, {"json", Format::Json},
        {"ndjson", Format::Ndjson}, {"csv", Format::Csv},     {"markdown", Format::Markdown}};
    return formats.at(text);
}

void requireChoice(const std::string& option, const std::string& value)
{
    const std::vector<std::string> choices = choicesFor(option);
    if (std::find(choices.begin(), choices.end(), value) == choices.end())
        throw Failure(fmt::format("{} {}: expected one of {}{}", option, value, fmt::join(choices, ", "),
                                  didYouMean(value, choices)));
}

} // namespace

std::vector<std::string> choicesFor(const std::string& option)
{
    std::vector<std::string> words;
    if (option == "--kind")
        for (const Kind& kind : kinds())
            words.emplace_back(kind.name);
    else if (option == "--explain")
        words = ruleNames();
    else if (option == "--format")
        words = {"table", "json", "ndjson", "csv", "markdown"};
    else if (option == "--view")
        words = {"stored", "loaded"};
    else if (option == "--color")
        words = {"auto", "always", "never"};
    return words;
}

std::vector<std::string> commandNames()
{
    std::vector<std::string> names;
    for (const Use& use : uses())
        names.emplace_back(use.name);
    return names;
}

Command commandNamed(const std::string& name)
{
    for (const Use& use : uses())
        if (name == use.name)
            return use.run;
    throw Failure("there is no command " + name + didYouMean(name, commandNames()));
}

std::string refusal(const CLI::App& app, const CLI::ParseError& error)
{
    const auto used = app.get_subcommands();
    const CLI::App& command = used.empty() ? app : *used[0];
    const std::vector<std::string> before = app.remaining();
    if (!used.empty() && !before.empty())
        return fmt::format("{} stands before the command; options come after it", before.front());
    const std::vector<std::string> rest = command.remaining();
    const bool option = !rest.empty() && rest[0].size() > 1 && rest[0][0] == '-';
    if (used.empty() && !rest.empty() && !option)
        return "there is no command " + rest[0] + didYouMean(rest[0], commandNames());
    if (!option)
        return error.what();
    std::vector<std::string> names;
    for (const CLI::Option* known : command.get_options())
        if (known->nonpositional() && !known->get_group().empty())
            names.push_back("--" + known->get_lnames()[0]);
    const std::string who = used.empty() ? "" : " for " + command.get_name();
    const bool file = rest[0][1] != '-';
    return fmt::format("there is no option {}{}{}", rest[0], who,
                       file ? "; the file of this name is ./" + rest[0] : didYouMean(rest[0], names));
}

void define(CLI::App& app, CommandLine& line)
{
    app.name("algdata");
    app.description("Look into the record files of the mesh algorithm, check them, convert them.");
    app.set_help_flag("-h,--help", "Print this help and exit");
    app.set_version_flag("--version", "algdata " ALGDATA_VERSION, "Print the version and exit");
    app.footer("Results go to standard output, messages to standard error.\n"
               "Exit status: 0 all well, 1 findings or differences, 2 wrong usage or unreadable input.\n\n"
               "Examples:\n"
               "  algdata show data/station.txt\n"
               "  algdata check data/\n"
               "  algdata COMMAND --help\n"
               "      options and examples of a command\n");
    app.add_flag("--generate-man", line.generateMan)->group("");
    app.add_option("--generate-completion", line.generateCompletion)->group("");
    for (const Use& use : uses()) {
        CLI::App* command = app.add_subcommand(use.name, use.description);
        definePaths(*command, line);
        defineCommon(*command, line);
        command->footer(use.examples);
    }
}

Options understood(const CLI::App& command, const CommandLine& line)
{
    Options options = line.options;
    if (!line.kind.empty()) {
        options.kind = findKind(line.kind);
        if (options.kind == nullptr)
            throw Failure(fmt::format("there is no kind {}{} (the kinds are {})", line.kind,
                                      didYouMean(line.kind, kindWords()), kindNames()));
    }
    requireChoice("--view", line.view);
    requireChoice("--color", line.color);
    if (!line.format.empty())
        requireChoice("--format", line.format);
    options.loaded = line.view == "loaded";
    options.format = formatFrom(line.format);
    options.color = line.color == "auto"     ? Color::Auto
                    : line.color == "always" ? Color::Always
                                             : Color::Never;
    for (const std::string& text : line.where)
        options.where.push_back(conditionFrom(text));
    for (const std::string& text : line.sort)
        for (SortKey& key : sortKeysFrom(text))
            options.sort.push_back(std::move(key));
    for (const std::string& text : line.columns)
        for (std::string& name : columnsFrom(text))
            options.columns.push_back(std::move(name));
    if (command.get_option_no_throw("--head") != nullptr && command.count("--head") != 0)
        options.head = countFrom("--head", line.head);
    options.explain = line.explain;
    options.explaining =
        command.get_option_no_throw("--explain") != nullptr && command.count("--explain") != 0;
    options.pager = !line.noPager;
    if (options.paths.empty() && !options.explaining && command.get_name() != "kinds")
        throw Failure(command.get_name() + " needs a file or a directory");
    return options;
}

} // namespace algdata
