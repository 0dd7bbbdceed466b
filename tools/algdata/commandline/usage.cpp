/* SPDX-License-Identifier: Apache-2.0 */
#include "commandline/usage.h"

#include <algorithm>
#include <filesystem>
#include <map>

#include <fmt/format.h>

#include "checking/rules.h"
#include "commands/commands.h"
#include "options/arguments.h"
#include "query/fields.h"
#include "query/recordRows.h"
#include "reading/walk.h"
#include "sql/questions.h"
#include "sql/tables.h"
#include "text/suggest.h"

namespace algdata
{

namespace
{

constexpr const char* filesAndDirectories =
    "files, directories (searched recursively) or archives; - for standard input";

struct CommandEntry {
    const char* name;
    Command run;
    const char* description;
    const char* examples;
};

const std::vector<CommandEntry>& commandTable()
{
    static const std::vector<CommandEntry> all = {
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
         "      weak neighbours, the strongest first\n"},
        {"tree", runTree, "Draw the mesh of a home, as its files have it",
         "All files of a directory are one home; subdirectories are homes of their own, unless --path says\n"
         "otherwise. Of files that disagree, the first of this order is believed: rank index, ap-node, ap-all,\n"
         "ap-all-detail, bridging, AP rank. The exit status is 1 if they disagree, or if the fathers do not\n"
         "form a tree.\n\n"
         "Examples:\n"
         "  algdata tree data/\n"
         "      each home of a directory: fathers, links, throughput, stations\n"
         "  algdata tree data/ --format csv --where 'backhaulRssi<25'\n"
         "      the devices with a weak backhaul, for a spreadsheet\n"
         "  algdata tree data/ --format dot | dot -Tsvg > mesh.svg\n"
         "      a graph, drawn by Graphviz\n"},
        {"check", runCheck, "Find the faults in record files before the algorithm uses them",
         "Each fault is one line: file:line:column: severity: field: what is wrong, what was expected "
         "[rule].\n"
         "--where and --head select the faults to show; the counts and the exit status cover all "
         "faults.\n\n"
         "Examples:\n"
         "  algdata check data/\n"
         "      every file of a directory; exit status 1 if there is an error\n"
         "  algdata check data/ --where severity=error --format json\n"
         "      errors only, for a program\n"
         "  algdata check --explain blank-line\n"
         "      the meaning of a rule; without a name, a list of all rules\n"
         "  algdata check --explain --where severity=warning --format csv\n"
         "      the rules whose findings are warnings, for a program\n"
         "  algdata check data/ --write-baseline known.txt\n"
         "      accept what there is; from now on --baseline known.txt reports new faults only\n"},
        {"audit", runAudit, "Find contradictions between the files of a home",
         "All files of a directory are one home; subdirectories are homes of their own, unless --path says\n"
         "otherwise. `check` finds what is wrong in one file, `audit` what no single file shows.\n\n"
         "Examples:\n"
         "  algdata audit data/\n"
         "      every home of a directory; exit status 1 if there is an error\n"
         "  algdata audit homes/ --summary --path '{home}/{snapshot}/*'\n"
         "      the number of findings by home, snapshot and rule\n"
         "  algdata audit data/ --fail-on warning --baseline known.txt --format sarif -o audit.sarif\n"
         "      new findings only, for a code scanning service\n"
         "  algdata audit --explain father-cycle\n"
         "      the meaning of a rule and what to do; without a name, a list of all rules\n"},
        {"diff", runDiff, "Compare two files, directories or archives, record by record",
         "Records are matched by the key of their kind. The exit status is 1 if there is a difference.\n"
         "--where, --head and --columns select what to show; the counts and the exit status cover all "
         "differences.\n\n"
         "Examples:\n"
         "  algdata diff yesterday/rank.txt today/rank.txt\n"
         "      the records that were added, removed or changed, and the changed fields\n"
         "  algdata diff yesterday/ today/ --format ndjson\n"
         "      all files of two directories, for a program\n"},
        {"export", runExport, "Write all records as JSON, NDJSON or CSV",
         "Every record begins with its kind and source. A damaged value becomes null, in CSV an empty cell,\n"
         "and a message reports it. A CSV file contains one kind; -o DIRECTORY/ writes one file per "
         "kind.\n\n"
         "Examples:\n"
         "  algdata export station.txt --format csv -o station.csv\n"
         "  algdata export data/ --format csv -o tables/\n"
         "      tables/station.csv, tables/scanning.csv, ...\n"
         "  algdata export data/ --format ndjson\n"
         "      all records in one stream\n"
         "  algdata export data/ --format ndjson --where kind=scanning --columns neighbourMAC,rssi\n"},
        {"import", runImport, "Create a record file from JSON, NDJSON or CSV",
         "Refuses values that would read back differently from the file. If a value is refused, nothing is "
         "written.\n\n"
         "Examples:\n"
         "  algdata import --kind station station.csv -o station.txt\n"
         "  algdata export old.txt | algdata import --kind ap-rank - -o new.txt\n"},
        {"stats", runStats, "Summarise record files per kind and field",
         "Examples:\n"
         "  algdata stats data/\n"
         "      records, keys, minimum, median, maximum, zeros, how full the histories are\n"
         "  algdata stats data/ --where kind=time-delay --view loaded\n"},
        {"history", runHistory, "Show the values of a field over time, one line per key",
         "A snapshot is a directory of files, or the part {snapshot} of --path. The records of a file that "
         "repeats its keys\nare points in time too. A dash is a snapshot without the value; in JSON it is "
         "null.\n\n"
         "Examples:\n"
         "  algdata history monday/ tuesday/ --field ap-rank-index.throughput\n"
         "      the throughput of each device in both directories\n"
         "  algdata history bridging.txt --field bridging.bridgingRssi.0 --by deviceMAC\n"
         "      the signal strengths in a log\n"
         "  algdata history homes/ --path '{home}/{snapshot}/score_re_{device}.txt' --field score.rssi.0\n"
         "      with the home and the device as columns\n"
         "  algdata history logs/ --path '{hour}.txt' --order hour --field station.rssi --format json\n"},
        {"watch", runWatch, "Show each change of the record files in a directory, until ^C",
         "Each change of a record is one line: time, file, what happened, key, fields. On a terminal this is "
         "text,\notherwise NDJSON. --where and --columns select what to show.\n\n"
         "Examples:\n"
         "  algdata watch data/\n"
         "      every change of every file, also in new subdirectories\n"
         "  algdata watch data/ --kind alg-output\n"
         "      each new decision\n"
         "  algdata watch data/ --where 'rssi<20' > changes.ndjson\n"
         "      weak signals, for a program\n"},
        {"report", runReport, "Write a page about a home: decision, mesh, links, clients, findings",
         "All files of a directory are one home. Several directories are snapshots of it, in the order of\n"
         "their names; --path says which part of a path is the snapshot. The page is one HTML file that opens\n"
         "from a disk or a mail, and requests nothing.\n\n"
         "Examples:\n"
         "  algdata report data/ -o report.html\n"
         "  algdata report monday/ tuesday/ -o report.html\n"
         "      with what changed, and lines over time\n"
         "  algdata report home.tar.gz --redact -o report.html\n"
         "      without MACs and names, to show it to others\n"},
        {"sql", runSql, "Query record files in SQL",
         "Every kind is a table, with a row per record; arrays and entries are tables of their own. Without\n"
         "PATH, the files of this directory are read. Without QUERY, a terminal asks for queries; otherwise\n"
         "standard input is the query. Nothing can be changed.\n\n"
         "Examples:\n"
         "  algdata sql --schema score\n"
         "      the columns of a table, with unit and meaning\n"
         "  algdata sql data/ 'SELECT fatherMAC, band, rssi FROM score_band ORDER BY rssi LIMIT 3'\n"
         "  algdata sql homes/ --path '{home}/{night}/*.txt' \\\n"
         "      'SELECT home, count(*) FROM finding GROUP BY home'\n"
         "      the parts of the paths are columns of every table\n"},
    };
    return all;
}

/* import reads only the formats for programs. */
std::vector<std::string> formatsOf(const std::string& command)
{
    if (command == "import")
        return {"json", "ndjson", "csv"};
    if (command == "watch")
        return {"lines", "ndjson"};
    std::vector<std::string> formats = {"table", "json", "ndjson", "csv", "markdown"};
    if (command == "sql")
        formats.insert(formats.end(), {"record", "sqlite"});
    if (command == "tree")
        formats.emplace_back("dot");
    if (command == "check" || command == "audit")
        formats.emplace_back("sarif");
    return formats;
}

bool hasOption(const std::string& command, const std::string& option)
{
    if (command == "sql")
        return option == "--output" || option == "--color" ||
               option == "--no-pager"; /* the query says the rest */
    if (command == "report")           /* the page is one whole */
        return option == "--output" || option == "--color";
    if (option == "--sort" && command == "diff")
        return false; /* differences are printed in the order of the files */
    if (option == "--view")
        return command == "show" || command == "diff" || command == "export" || command == "stats" ||
               command == "history" || command == "watch";
    if (command == "watch") /* its result has no end */
        return option != "--sort" && option != "--head" && option != "--output";
    return command != "import" || option == "--color";
}

void defineSelection(CLI::App& command, CommandLine& line)
{
    const std::string name = command.get_name();
    if (!hasOption(name, "--columns"))
        return;
    command
        .add_option("--columns", line.columns, "Show only these fields, in this order, separated by commas")
        ->allow_extra_args(false)
        ->type_name("FIELDS");
    command
        .add_option(
            "--where", line.where,
            "Keep only what matches field=value, or != < <= > >= instead of =, or any SQL expression; "
            "may be repeated")
        ->allow_extra_args(false)
        ->type_name("CONDITION");
    if (hasOption(name, "--sort"))
        command
            .add_option("--sort", line.sort,
                        name == "history"
                            ? "Sort by these columns, separated by commas; -column sorts in descending order"
                            : "Sort by these fields, separated by commas; -field sorts in descending order; "
                              "or by SQL expressions")
            ->allow_extra_args(false)
            ->type_name("FIELDS");
    if (!hasOption(name, "--head"))
        return;
    command
        .add_option("--head", line.head,
                    name == "kinds"                     ? "Show only the first N fields"
                    : name == "history"                 ? "Show only the first N lines"
                    : name == "tree" || name == "audit" ? "Keep only the first N results of each home"
                                                        : "Keep only the first N results of each file")
        ->type_name("N");
    if (name != "history") /* it is the same as --head */
        command.add_option("--limit", line.limit, "Keep only the first N results of all")->type_name("N");
}

void defineTemplates(CLI::App& command, CommandLine& line)
{
    command
        .add_option(
            "--path", line.options.templates,
            "Names for the parts of the paths, such as {home}/{night}/score_{device}.txt; KIND=TEMPLATE "
            "also states the kind; may be repeated")
        ->allow_extra_args(false)
        ->type_name("TEMPLATE");
}

void defineConfiguration(CLI::App& command, CommandLine& line)
{
    command
        .add_option(
            "--config", line.options.configuration,
            "The file with names of devices, and for sql templates of paths; by default algdata.toml in "
            "the directory of the files")
        ->type_name("FILE");
}

/* The options of `algdata sql` alone. */
void defineSql(CLI::App& command, CommandLine& line)
{
    defineTemplates(command, line);
    defineConfiguration(command, line);
    command.add_option("--named", line.named, "Answer the question of this name; without a name, list them")
        ->expected(0, 1)
        ->type_name("NAME");
    command.add_option("--schema", line.schema, "Describe a table; without a name, list the tables")
        ->expected(0, 1)
        ->type_name("TABLE");
    command.add_option("--max-rows", line.maxRows, "Stop after N rows, with status 2 if there are more")
        ->type_name("N");
    command.add_option("--timeout", line.timeout, "Stop after so many seconds, with status 2")
        ->type_name("SECONDS");
    command.add_option("--errors", line.errors, "Format of an error in the query")->type_name("text|json");
}

/* The options of `algdata history` alone. */
void defineHistory(CLI::App& command, CommandLine& line)
{
    command.add_option("--field", line.options.field, "The field, or one element: bridging.bridgingRssi.0")
        ->required()
        ->type_name("KIND.FIELD");
    command
        .add_option("--by", line.by,
                    "One line for each value of these fields, separated by commas; by default the key")
        ->allow_extra_args(false)
        ->type_name("FIELDS");
    defineTemplates(command, line);
    command
        .add_option("--order", line.options.order,
                    "The part of --path that is the snapshot, or time: in the order of the files' times")
        ->type_name("NAME");
}

void defineCommon(CLI::App& command, CommandLine& line)
{
    const std::string name = command.get_name();
    command
        .add_option("-k,--kind", line.kind,
                    name == "import"  ? "Kind of the file to create; required"
                    : name == "kinds" ? "List only this kind"
                                      : "Kind of the files; by default it is detected from the content")
        ->type_name("KIND");
    if (name == "sql")
        defineSql(command, line);
    if (hasOption(name, "--view"))
        command
            .add_option("--view", line.view,
                        "Values as stored in the file, or as the readers load them: converted and bounded")
            ->type_name("stored|loaded");
    if (name == "report") {
        command.add_flag("--redact", line.options.redact, "Replace MACs and names by short ones");
        defineTemplates(command, line);
        defineConfiguration(command, line);
    } else {
        command
            .add_option("-f,--format", line.format,
                        name == "import" ? "Format of the input; by default it is detected"
                                         : "Format of the output")
            ->type_name(fmt::format("{}", fmt::join(choicesFor("--format", name), "|")));
    }
    defineSelection(command, line);
    if (hasOption(name, "--output") || name == "import")
        command
            .add_option("-o,--output", line.options.output,
                        name == "export"
                            ? "Write to this file, completely or not at all; DIR/ writes one file per kind"
                            : "Write to this file, completely or not at all")
            ->type_name("FILE");
    command.add_option("--color", line.color, "Use colours; auto respects NO_COLOR")
        ->type_name("auto|always|never");
    if (name == "history")
        defineHistory(command, line);
    if (name == "import") {
        command.add_flag("--round", line.options.round,
                         "Round floats to the two decimals of the file format");
        command.add_flag("--allow-empty", line.options.allowEmpty,
                         "Create an empty file if the input has no records");
    }
    if (name == "show" || name == "kinds" || name == "history" || name == "sql")
        command.add_flag("--no-pager", line.noPager, "Do not use a pager");
    command.set_help_flag("-h,--help", "Print this help and exit");
}

/* Adds the positional argument of a command, with its name and description for the help. */
CLI::Option* addPaths(CLI::App& command, std::vector<std::string>& paths)
{
    const std::string name = command.get_name();
    if (name == "diff")
        return command.add_option("OLD NEW", paths, "two files, or two directories or archives")->expected(2);
    if (name == "import")
        return command.add_option("FILE", paths, "the file to read; - for standard input")->expected(1);
    if (name == "watch")
        return command.add_option("DIR", paths, "the directory, with its subdirectories")->expected(1);
    /* With an unlimited number of values, the library would parse a file named [x] as a list. */
    constexpr int many = CLI::detail::expected_max_vector_size;
    if (name == "sql")
        return command.add_option("PATH... QUERY", paths, "files or directories, then the query")
            ->expected(many, many)
            ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    return command.add_option(name == "show" ? "FILE" : "PATH", paths, filesAndDirectories)
        ->expected(many, many)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

/* The options of `check` and `audit`. */
void defineFindings(CLI::App& command, CommandLine& line)
{
    command.add_option("--explain", line.explain, "Explain a rule; without a name, list the rules")
        ->expected(0, 1)
        ->type_name("RULE");
    command.add_flag("--notes", line.options.notes, "Also show notes: worth knowing, but not faults");
    command.add_flag("--summary", line.options.summary,
                     "Show only the number of findings of each rule, notes included");
    command
        .add_option("--fail-on", line.options.failOn,
                    "Exit with status 1 at this severity or a worse one; error by default")
        ->type_name("error|warning|note|never");
    command
        .add_option("--baseline", line.options.baseline,
                    "Neither report nor count the findings that this file lists")
        ->type_name("FILE");
    command
        .add_option("--write-baseline", line.options.writeBaseline,
                    "Write all findings to this file, for --baseline, instead of reporting them")
        ->type_name("FILE");
}

void definePaths(CLI::App& command, CommandLine& line)
{
    const std::string name = command.get_name();
    if (name == "kinds")
        return;
    const bool finds = name == "check" || name == "audit";
    addPaths(command, line.options.paths)
        ->type_name("")
        ->required(!finds && name != "sql")
        ->allow_extra_args(false);
    if (finds || name == "tree")
        defineTemplates(command, line);
    if (name == "audit" || name == "tree")
        defineConfiguration(command, line);
    if (finds)
        defineFindings(command, line);
}

Format formatFrom(const std::string& text)
{
    static const std::map<std::string, Format> formats = {
        {"", Format::Text},       {"table", Format::Table},   {"json", Format::Json},
        {"csv", Format::Csv},     {"ndjson", Format::Ndjson}, {"markdown", Format::Markdown},
        {"lines", Format::Lines}, {"record", Format::Record}, {"sqlite", Format::Sqlite},
        {"dot", Format::Dot},     {"sarif", Format::Sarif}};
    return formats.at(text);
}

void requireChoice(const std::string& option, const std::string& value, const std::string& command)
{
    const std::vector<std::string> choices = choicesFor(option, command);
    if (std::find(choices.begin(), choices.end(), value) == choices.end())
        throw Failure(fmt::format("{} {}: expected one of {}{}", option, value, fmt::join(choices, ", "),
                                  didYouMean(value, choices)));
}

} // namespace

std::vector<std::string> choicesFor(const std::string& option, const std::string& command)
{
    std::vector<std::string> words;
    if (option == "--kind")
        for (const Kind& kind : kinds())
            words.emplace_back(kind.name);
    else if (option == "--explain")
        words = ruleNames(command == "audit" ? Scope::Home : Scope::File);
    else if (option == "--format")
        words = formatsOf(command);
    else if (option == "--view")
        words = {"stored", "loaded"};
    else if (option == "--color")
        words = {"auto", "always", "never"};
    else if (option == "--errors")
        words = {"text", "json"};
    else if (option == "--schema")
        for (const SqlTable& table : sqlTables())
            words.push_back(table.name);
    else if (option == "--named")
        for (const Question& question : questions())
            words.emplace_back(question.name);
    else if (option == "--fail-on")
        words = {"error", "warning", "note", "never"};
    return words;
}

std::vector<std::string> commandNames()
{
    std::vector<std::string> names;
    for (const CommandEntry& use : commandTable())
        names.emplace_back(use.name);
    return names;
}

Command commandNamed(const std::string& name)
{
    for (const CommandEntry& use : commandTable())
        if (name == use.name)
            return use.run;
    throw Failure("unknown command " + name + didYouMean(name, commandNames()));
}

std::string parseErrorText(const CLI::App& app, const CLI::ParseError& error)
{
    const auto used = app.get_subcommands();
    const CLI::App& command = used.empty() ? app : *used[0];
    const std::vector<std::string> before = app.remaining();
    if (!used.empty() && !before.empty())
        return fmt::format("{} before the command, expected after it", before.front());
    const std::vector<std::string> rest = command.remaining();
    const bool option = !rest.empty() && rest[0].size() > 1 && rest[0][0] == '-';
    if (used.empty() && !rest.empty() && !option)
        return "unknown command " + rest[0] + didYouMean(rest[0], commandNames());
    if (!option)
        return error.what();
    std::vector<std::string> names;
    for (const CLI::Option* known : command.get_options())
        if (known->nonpositional() && !known->get_group().empty())
            names.push_back("--" + known->get_lnames()[0]);
    const std::string who = used.empty() ? "" : " for " + command.get_name();
    const bool file = rest[0][1] != '-';
    return fmt::format("unknown option {}{}{}", rest[0], who,
                       file ? "; for a file of this name, use ./" + rest[0] : didYouMean(rest[0], names));
}

void defineCommands(CLI::App& app, CommandLine& line)
{
    app.name("algdata");
    app.description("Show, check, compare and convert the record files of the mesh algorithm.");
    app.set_help_flag("-h,--help", "Print this help and exit");
    app.set_version_flag("--version", "algdata " ALGDATA_VERSION, "Print the version and exit");
    app.footer("Results go to standard output, messages to standard error.\n"
               "Exit status: 0 success, 1 findings or differences, 2 wrong usage or unreadable input.\n\n"
               "Examples:\n"
               "  algdata show data/station.txt\n"
               "  algdata check data/\n"
               "  algdata COMMAND --help\n"
               "      the options of a command, with examples\n");
    app.add_option("--generate-man", line.generateMan)->expected(0, 1)->group("");
    app.add_option("--generate-completion", line.generateCompletion)->group("");
    for (const CommandEntry& use : commandTable()) {
        CLI::App* command = app.add_subcommand(use.name, use.description);
        definePaths(*command, line);
        defineCommon(*command, line);
        command->footer(use.examples);
    }
}

namespace
{

bool isGiven(const CLI::App& command, const char* option)
{
    return command.get_option_no_throw(option) != nullptr && command.count(option) != 0;
}

bool exists(const std::string& path)
{
    std::error_code none;
    return path == "-" || std::filesystem::exists(path, none);
}

/* The last argument is the query, unless it is a file. */
void setSql(const CLI::App& command, const CommandLine& line, Options& options)
{
    requireChoice("--errors", line.errors, "sql");
    options.sql.jsonErrors = line.errors == "json";
    if (isGiven(command, "--schema"))
        options.sql.schema = line.schema;
    if (isGiven(command, "--named"))
        options.sql.named = line.named;
    if (isGiven(command, "--max-rows"))
        options.sql.maxRows = countFrom("--max-rows", line.maxRows);
    if (isGiven(command, "--timeout"))
        options.sql.timeout = secondsFrom("--timeout", line.timeout);
    if (!options.sql.named && !options.paths.empty() && !exists(options.paths.back())) {
        options.sql.query = options.paths.back();
        options.paths.pop_back();
    }
    if (options.paths.empty())
        options.paths = {"."};
}

/* The rows of these commands are no records. */
bool hasOwnColumns(const std::string& command)
{
    return command == "check" || command == "audit" || command == "tree" || command == "kinds";
}

void parseLists(const std::string& command, const CommandLine& line, Options& options)
{
    const ColumnNames names =
        hasOwnColumns(command) ? ColumnNames() : ColumnNames{fieldNames(nullptr), otherColumns()};
    for (const std::string& text : line.where)
        options.where.push_back(conditionFrom(text, names));
    for (const std::string& text : line.sort)
        for (SortKey& key : sortKeysFrom(text))
            options.sort.push_back(std::move(key));
    for (const std::string& text : line.columns)
        for (std::string& name : namesFrom("--columns", text))
            options.columns.push_back(std::move(name));
    for (const std::string& text : line.by)
        for (std::string& name : namesFrom("--by", text))
            options.by.push_back(std::move(name));
}

} // namespace

Options optionsFrom(const CLI::App& command, const CommandLine& line)
{
    for (const char* name :
         {"--kind", "--format", "--output", "--field", "--order", "--baseline", "--write-baseline"})
        if (isGiven(command, name) && command.get_option(name)->as<std::string>().empty())
            throw Failure(fmt::format("{}: expected a value, found nothing", name));
    Options options = line.options;
    if (!line.kind.empty()) {
        options.kind = findKind(line.kind);
        if (options.kind == nullptr)
            throw Failure(fmt::format("unknown kind {}{} (expected one of {})", line.kind,
                                      didYouMean(line.kind, kindWords()), kindNames()));
    }
    requireChoice("--view", line.view, command.get_name());
    requireChoice("--color", line.color, command.get_name());
    requireChoice("--fail-on", options.failOn, command.get_name());
    if (!line.format.empty())
        requireChoice("--format", line.format, command.get_name());
    if (command.get_name() == "sql")
        setSql(command, line, options);
    options.loaded = line.view == "loaded";
    options.format = formatFrom(line.format);
    options.color = line.color == "auto"     ? Color::Auto
                    : line.color == "always" ? Color::Always
                                             : Color::Never;
    parseLists(command.get_name(), line, options);
    if (isGiven(command, "--head"))
        options.head = countFrom("--head", line.head);
    if (isGiven(command, "--limit"))
        options.limit = countFrom("--limit", line.limit);
    options.explain = line.explain;
    options.explaining = isGiven(command, "--explain");
    options.pager = !line.noPager;
    if (std::count(options.paths.begin(), options.paths.end(), "-") > 1)
        throw Failure(command.get_name() + ": expected at most one - for standard input, found several");
    if (options.paths.empty() && !options.explaining && command.get_name() != "kinds")
        throw Failure(command.get_name() + ": expected a file or a directory");
    requireNoInput(options.output, options.paths);
    return options;
}

} // namespace algdata
