/* SPDX-License-Identifier: Apache-2.0 */
#include "sql/prompt.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <utility>

#include <editline/readline.h>
#include <fmt/format.h>

#include "output/output.h"
#include "records/records.h"
#include "sql/engine.h"
#include "sql/questions.h"
#include "sql/tables.h"
#include "text/suggest.h"
#include "text/wording.h"

namespace algdata
{

namespace
{

namespace fs = std::filesystem;

constexpr const char* help = "A query ends with a semicolon. Commands of the prompt:\n"
                             "  .tables            the tables\n"
                             "  .schema TABLE      the columns of a table, and example queries\n"
                             "  .named [NAME]      answer the question of this name, or list them\n"
                             "  .format FORMAT     table, record, json, ndjson, csv or markdown\n"
                             "  .quit              leave, as ^D does\n"
                             "^C stops a query.\n";

const std::vector<std::string>& promptCommands()
{
    static const std::vector<std::string> all = {".tables", ".schema", ".named", ".format", ".help", ".quit"};
    return all;
}

/* ---- Completion --------------------------------------------------------- */

std::vector<std::string>& completions()
{
    static std::vector<std::string> words;
    return words;
}

void setCompletions(const std::vector<std::string>& pathColumns)
{
    std::vector<std::string>& words = completions();
    words = pathColumns;
    words.insert(words.end(), promptCommands().begin(), promptCommands().end());
    for (const char* word : {"SELECT", "FROM", "WHERE", "GROUP BY", "ORDER BY", "LIMIT", "JOIN", "USING",
                             "DISTINCT", "HAVING", "DESC", "count(*)", "name_of("})
        words.emplace_back(word);
    for (const SqlTable& table : sqlTables()) {
        words.push_back(table.name);
        for (const SqlColumn& column : table.columns)
            words.push_back(column.name);
    }
    for (const SqlColumn& column : hiddenColumns())
        words.push_back(column.name);
    std::sort(words.begin(), words.end());
    words.erase(std::unique(words.begin(), words.end()), words.end());
}

/* Called until it returns null; `state` is 0 for the first call. */
char* nextCompletion(const char* begun, int state)
{
    static size_t at = 0;
    if (state == 0)
        at = 0;
    const std::string prefix = lowered(begun);
    while (at < completions().size()) {
        const std::string& word = completions()[at++];
        if (lowered(word).compare(0, prefix.size(), prefix) == 0)
            return strdup(word.c_str());
    }
    return nullptr;
}

char** completeWord(const char* begun, int /*start*/, int /*end*/)
{
    rl_attempted_completion_over = 1; /* names of files are no use here */
    return rl_completion_matches(begun, nextCompletion);
}

/* ---- History ------------------------------------------------------------ */

/* The file of the history; empty if there is no place for it. */
std::string historyFile()
{
    const char* state = std::getenv("XDG_STATE_HOME");
    const char* home = std::getenv("HOME");
    fs::path directory;
    if (state != nullptr && state[0] == '/')
        directory = state;
    else if (home != nullptr && home[0] == '/')
        directory = fs::path(home) / ".local/state";
    else
        return "";
    std::error_code error;
    fs::create_directories(directory / "algdata", error);
    return error ? "" : (directory / "algdata/sql_history").string();
}

/* ---- The prompt --------------------------------------------------------- */

class Prompt
{
  public:
    Prompt(Options of, const RunQuery& toRun, const std::vector<std::string>& names)
        : options(std::move(of)), run(toRun), pathColumns(names)
    {
    }
    void start();
    /* False at the end of input. */
    bool answer();

  private:
    bool obey(const std::string& command);
    void setFormat(const std::string& word);
    void describe(const std::string& name) const;
    void answerNamed(const std::string& name);
    void runPending();

    Options options;
    const RunQuery& run;
    const std::vector<std::string>& pathColumns;
    std::string pending; /* the lines of a query that is not complete */
};

void Prompt::start()
{
    std::printf("Queries over the record files; .help explains, ^D leaves.\n");
    setCompletions(pathColumns);
    rl_attempted_completion_function = completeWord;
    struct sigaction action = {};
    action.sa_handler = [](int) { Engine::interrupt(); };
    sigaction(SIGINT, &action, nullptr);
}

/* Whether the text ends with a semicolon that is not inside of quotes or a comment. */
bool isComplete(const std::string& text)
{
    bool complete = false;
    for (size_t at = 0; at < text.size(); ++at) {
        if (text[at] == '\'' || text[at] == '"') {
            at = text.find(text[at], at + 1);
            if (at == std::string::npos)
                return false;
            complete = false;
        } else if (text.compare(at, 2, "--") == 0) {
            at = std::min(text.find('\n', at), text.size());
        } else if (!isSpace(text[at])) {
            complete = text[at] == ';';
        }
    }
    return complete;
}

bool Prompt::answer()
{
    const std::unique_ptr<char, decltype(&std::free)> line(
        readline(pending.empty() ? "algdata> " : "    ...> "), &std::free);
    if (line == nullptr && Engine::takeInterrupt()) { /* ^C forgets what was typed */
        pending.clear();
        std::fputs("\n", stdout);
        return true;
    }
    if (line == nullptr)
        return false;
    const std::string text = line.get();
    if (!isBlank(text))
        add_history(text.c_str());
    if (pending.empty() && !text.empty() && text[0] == '.')
        return obey(text);
    pending += text + "\n";
    if (isBlank(pending))
        pending.clear();
    else if (isComplete(pending))
        runPending();
    return true;
}

void Prompt::runPending()
{
    const std::string query = std::exchange(pending, "");
    try {
        run(query.substr(0, query.find_last_not_of(" \n\t;") + 1), options);
    } catch (const Failure& failure) {
        message(failure.what());
    } catch (const OutputFailure& failure) {
        message(failure.what());
    }
}

bool Prompt::obey(const std::string& command)
{
    const size_t blank = std::min(command.find(' '), command.size());
    const std::string word = command.substr(0, blank);
    std::string rest = command.substr(blank);
    rest.erase(0, rest.find_first_not_of(' '));
    rest.erase(rest.find_last_not_of(" ;") + 1);
    if (word == ".quit" || word == ".exit")
        return false;
    if (word == ".help")
        std::fputs(help, stdout);
    else if (word == ".tables" || (word == ".schema" && rest.empty()))
        std::fputs(tableList().c_str(), stdout);
    else if (word == ".schema")
        describe(rest);
    else if (word == ".named" && rest.empty())
        std::fputs(questionList().c_str(), stdout);
    else if (word == ".named")
        answerNamed(rest);
    else if (word == ".format")
        setFormat(rest);
    else
        message(fmt::format("unknown command {}{}", word, didYouMean(word, promptCommands())));
    return true;
}

void Prompt::describe(const std::string& name) const
{
    try {
        std::fputs(schemaText(sqlTableNamed(name), pathColumns).c_str(), stdout);
    } catch (const Failure& failure) {
        message(failure.what());
    }
}

void Prompt::answerNamed(const std::string& name)
{
    try {
        run(questionNamed(name).query, options);
    } catch (const Failure& failure) {
        message(failure.what());
    } catch (const OutputFailure& failure) {
        message(failure.what());
    }
}

void Prompt::setFormat(const std::string& word)
{
    static const std::vector<std::pair<std::string, Format>> formats = {
        {"table", Format::Table},   {"record", Format::Record}, {"json", Format::Json},
        {"ndjson", Format::Ndjson}, {"csv", Format::Csv},       {"markdown", Format::Markdown}};
    for (const auto& [name, format] : formats)
        if (name == word) {
            options.format = format;
            return;
        }
    message(fmt::format(".format {}: expected table, record, json, ndjson, csv or markdown", word));
}

} // namespace

Status askForQueries(Options options, const std::vector<std::string>& pathColumns, const RunQuery& run)
{
    const std::string history = historyFile();
    using_history();
    if (!history.empty())
        read_history(history.c_str());
    Prompt prompt(std::move(options), run, pathColumns);
    prompt.start();
    while (prompt.answer()) {
    }
    std::fputs("\n", stdout);
    if (!history.empty())
        write_history(history.c_str());
    return AllWell;
}

} // namespace algdata
