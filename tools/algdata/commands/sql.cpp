/* SPDX-License-Identifier: Apache-2.0 */
/* `algdata sql`: queries over record files. */
#include <unistd.h>

#include <fmt/format.h>

#include "commands/commands.h"
#include "output/output.h"
#include "output/progress.h"
#include "reading/configuration.h"
#include "reading/source.h"
#include "sql/database.h"
#include "sql/errors.h"
#include "sql/export.h"
#include "sql/prompt.h"
#include "sql/questions.h"
#include "sql/results.h"
#include "text/wording.h"

namespace algdata
{

namespace
{

QueryFiles filesOf(const Options& options, const Configuration& configuration)
{
    std::vector<PathTemplate> templates;
    for (const std::string& text : options.templates)
        templates.emplace_back(text);
    if (templates.empty())
        templates = configuration.templates;
    QueryFiles files(options.paths, std::move(templates), options.kind);
    requireFreeNames(files.columns());
    return files;
}

Status printList(const Options& options, const std::string& text)
{
    Output out(options, true);
    out.put(text);
    out.close(AllWell);
    return AllWell;
}

Status describe(const Options& options, const std::vector<std::string>& pathColumns)
{
    const std::string& name = *options.sql.schema;
    return printList(options, name.empty() ? tableList() : schemaText(sqlTableNamed(name), pathColumns));
}

/* "1200 files, 1150 opened, 3 not record files, 2 bad", for people who wait. */
void printCounts(const Engine& engine)
{
    if (isatty(STDERR_FILENO) == 0)
        return;
    std::string text = plural(engine.considered, "file");
    if (engine.accepted != engine.considered)
        text += fmt::format(", {} skipped by their names", engine.considered - engine.accepted);
    text += fmt::format(", {} opened", engine.cache.opened());
    if (engine.others != 0)
        text += fmt::format(", {} not record files", engine.others);
    if (engine.bad != 0)
        text += fmt::format(", {} bad", engine.bad);
    message(text);
}

void report(const QueryFailure& failure, bool asJson)
{
    if (asJson)
        std::fprintf(stderr, "%s\n", errorJson(failure.error).c_str());
    else
        printFailure(failure);
}

/* Prints the rows of a query. Returns false if --max-rows left some out. */
bool printRows(Statement& statement, const Options& options, Output& out)
{
    Results results(out, options.format, statement.columns());
    bool complete = true;
    while (complete && statement.step()) {
        complete = !options.sql.maxRows || results.rowCount() < *options.sql.maxRows;
        if (complete)
            results.put(statement.row());
    }
    results.finish();
    if (!complete)
        message(
            fmt::format("--max-rows {}: the query has more rows, which are left out", *options.sql.maxRows));
    return complete;
}

Status runQuery(Database& database, Engine& engine, const std::string& query, const Options& options)
{
    engine.start();
    if (options.sql.timeout)
        engine.deadline = std::chrono::steady_clock::now() +
                          std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                              std::chrono::duration<double>(*options.sql.timeout));
    Progress progress([] { return size_t(0); });
    engine.stepped = [&progress] { progress.step(); };
    bool complete = true;
    {
        Statement statement = database.prepare(query);
        Output out(options, options.format == Format::Text || options.format == Format::Table ||
                                options.format == Format::Record);
        complete = options.format == Format::Sqlite ? exportRows(statement, options, out)
                                                    : printRows(statement, options, out);
        engine.stepped = nullptr;
        const Status status = worse(engine.status, complete ? AllWell : Unusable);
        out.close(status);
    }
    Progress::clear();
    printCounts(engine);
    if (!options.templates.empty() && engine.considered != 0 && engine.matched == 0) {
        message(
            "no file matches --path: a template is the whole path below the PATH of the command, here below " +
            engine.files.roots()[0]);
        return Unusable;
    }
    return worse(engine.status, complete ? AllWell : Unusable);
}

std::string queryFromStandardInput()
{
    Source source;
    readSource("-", source);
    return source.bytes;
}

} // namespace

Status runSql(Options options)
{
    if (options.sql.named && options.sql.named->empty())
        return printList(options, questionList());
    const Configuration configuration = readConfiguration(options.configuration, options.paths);
    Engine engine(filesOf(options, configuration), configuration.names);
    if (options.sql.schema)
        return describe(options, engine.files.columns());
    Database database(engine);
    const auto run = [&](const std::string& query, const Options& with) {
        try {
            return runQuery(database, engine, query, with);
        } catch (const QueryFailure& failure) {
            report(failure, options.sql.jsonErrors);
            return Unusable;
        }
    };
    if (options.sql.named)
        return run(questionNamed(*options.sql.named).query, options);
    if (options.sql.query)
        return run(*options.sql.query, options);
    if (isatty(STDIN_FILENO) != 0)
        return askForQueries(options, engine.files.columns(), run);
    return run(queryFromStandardInput(), options);
}

} // namespace algdata
