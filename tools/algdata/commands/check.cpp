/* SPDX-License-Identifier: Apache-2.0 */
/* `algdata check`: lists the faults of files, and explains the rules. */
#include <array>

#include <fmt/format.h>

#include "checking/faults.h"
#include "checking/rules.h"
#include "commandline/suggest.h"
#include "commands/commands.h"
#include "output/table.h"
#include "reading/detect.h"
#include "reading/walk.h"

namespace algdata
{

namespace
{

/* Breaks a text into lines of at most 78 characters, indented by two blanks. */
std::string wrapped(std::string_view text)
{
    constexpr size_t width = 76;
    std::string lines;
    while (text.size() > width) {
        const size_t end = std::min(text.rfind(' ', width), text.size());
        lines += "  " + std::string(text.substr(0, end)) + "\n";
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines + "  " + std::string(text) + "\n";
}

const RuleText& ruleNamed(const std::string& name)
{
    const RuleText* rule = findRule(name);
    if (rule == nullptr)
        throw Failure(fmt::format("unknown rule {}{} (`algdata check --explain` lists the rules)", name,
                                  didYouMean(name, ruleNames())));
    return *rule;
}

/* One rule with its explanation or, if null, all rules without. */
Rows rowsOf(const RuleText* one)
{
    Rows rows;
    rows.addColumn("rule", ruleNames());
    rows.addColumn("severity", severityNames());
    rows.addColumn("finds");
    if (one != nullptr)
        rows.addColumn("explanation");
    for (const RuleText& rule : rules()) {
        std::vector<std::string> row = {rule.name, nameOf(rule.severity), rule.summary};
        if (one != nullptr)
            row.emplace_back(rule.explanation);
        if (one == nullptr || one == &rule)
            rows.addRow(std::move(row));
    }
    return rows;
}

Status explain(Output& out, const Options& options)
{
    if (!options.paths.empty())
        throw Failure(
            fmt::format("check: --explain explains rules and reads no files, found {}", options.paths[0]));
    const RuleText* rule = options.explain.empty() ? nullptr : &ruleNamed(options.explain);
    Rows rows = rowsOf(rule);
    rows.narrow(options);
    const bool asText = options.format == Format::Text && options.columns.empty();
    if (rule == nullptr || !asText) {
        rows.print(out, options);
    } else if (!rows.all().empty()) {
        out.put(fmt::format("{}{}{} ({}): {}\n\n", out.bold(), rule->name, out.plain(),
                            nameOf(rule->severity), rule->summary));
        out.put(wrapped(rule->explanation));
    }
    out.close(AllWell);
    return AllWell;
}

/* Counts all findings; --where and --head only affect `shown`. */
struct Counts {
    std::array<size_t, 3> of = {}; /* by severity */
    size_t shown = 0;
    size_t files = 0;

    size_t operator[](Severity severity) const { return of[static_cast<size_t>(severity)]; }
    size_t faults() const { return (*this)[Severity::Error] + (*this)[Severity::Warning]; }
};

enum { FileAt, LineAt, ColumnAt, SeverityAt, RuleAt, FieldAt, TextAt };

Rows emptyRows()
{
    Rows rows;
    rows.addColumn("file");
    rows.addColumn("line", true);
    rows.addColumn("column", true);
    rows.addColumn("severity", severityNames());
    rows.addColumn("rule", ruleNames());
    for (const char* name : {"field", "message"})
        rows.addColumn(name);
    return rows;
}

void printRow(Output& out, const std::vector<std::string>& row)
{
    const char* color = row[SeverityAt] == nameOf(Severity::Error)     ? out.red()
                        : row[SeverityAt] == nameOf(Severity::Warning) ? out.yellow()
                                                                       : out.dim();
    out.put(fmt::format("{}{}:{}:{}:{} {}{}:{} ", out.bold(), printable(row[FileAt]), row[LineAt],
                        row[ColumnAt], out.plain(), color, row[SeverityAt], out.plain()));
    out.put(fmt::format("{}{}{} {}[{}]{}\n", row[FieldAt], row[FieldAt].empty() ? "" : ": ", row[TextAt],
                        out.dim(), row[RuleAt], out.plain()));
}

void printCounts(Output& out, const Options& options, const Counts& counts)
{
    if (counts.files == 0) {
        out.put("nothing was checked\n");
        return;
    }
    const size_t notes = counts[Severity::Note];
    if (counts.faults() == 0)
        out.put(fmt::format("{}no faults{}", out.green(), out.plain()));
    else
        out.put(fmt::format("{}, {}", plural(counts[Severity::Error], "error"),
                            plural(counts[Severity::Warning], "warning")));
    out.put(fmt::format("{} in {}", options.notes ? ", " + plural(notes, "note") : "",
                        plural(counts.files, "file")));
    if (counts.shown != counts.faults() + (options.notes ? notes : 0))
        out.put(fmt::format("; {} shown", counts.shown));
    if (!options.notes && notes != 0)
        out.put(fmt::format("; {} (--notes shows them)", plural(notes, "note")));
    out.put('\n');
}

/* Adds all findings of a file to the counts, also those that are not kept, and reports how many are not. */
void count(const Source& source, Faults& faults, const Options& options, Counts& counts)
{
    for (const RuleText& rule : rules()) {
        const size_t found = faults[rule.rule];
        counts.of[static_cast<size_t>(rule.severity)] += found;
        if (found > maxFindings && (rule.severity != Severity::Note || options.notes))
            message(fmt::format("{}: only the first {} findings of rule {} are listed, {} more are counted",
                                source.name, maxFindings, rule.name, found - maxFindings));
    }
}

/* Adds the findings of a file to the counts. Returns the rows to show. */
Rows rowsOf(const Source& source, const Detection& detection, const Options& options, Counts& counts)
{
    Rows rows = emptyRows();
    Faults faults = faultsOf(source, detection);
    count(source, faults, options, counts);
    for (const Finding& finding : faults.kept) {
        const RuleText& rule = textOf(finding.rule);
        if (rule.severity == Severity::Note && !options.notes)
            continue;
        rows.addRow({source.name, std::to_string(finding.line), std::to_string(finding.column),
                     nameOf(rule.severity), rule.name, finding.field, finding.text});
    }
    rows.narrow(options);
    ++counts.files;
    counts.shown += rows.all().size();
    return rows;
}

} // namespace

std::vector<std::string> findingColumns()
{
    return emptyRows().columnNames();
}

Status runCheck(Options options)
{
    Output out(options);
    if (options.explaining)
        return explain(out, options);
    Rows all = emptyRows();
    all.require(options);
    Counts counts;
    const bool asText = options.format == Format::Text && options.columns.empty();
    const Status status = eachSource(options, [&](Source& source, const Detection& detection) {
        const Rows rows = rowsOf(source, detection, options, counts);
        for (const std::vector<std::string>& row : rows.all()) {
            if (asText)
                printRow(out, row);
            else
                all.addRow(row);
        }
        return AllWell;
    });
    if (asText)
        printCounts(out, options, counts);
    else
        all.print(out, options);
    out.close(status);
    return worse(status, counts[Severity::Error] != 0 ? Findings : AllWell);
}

} // namespace algdata
