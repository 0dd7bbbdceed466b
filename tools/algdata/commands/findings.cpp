/* SPDX-License-Identifier: Apache-2.0 */
#include "commands/findings.h"

#include <algorithm>

#include <fmt/format.h>

#include "reading/source.h"
#include "text/suggest.h"

namespace algdata
{

namespace
{

const char* commandOf(Scope scope)
{
    return scope == Scope::File ? "check" : "audit";
}

/* ---- Rules ----------------------------------------------------------------- */

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

const RuleText& ruleNamed(Scope scope, const std::string& name)
{
    const RuleText* rule = findRule(scope, name);
    if (rule == nullptr)
        throw Failure(fmt::format("unknown rule {}{} (`algdata {} --explain` lists the rules)", name,
                                  didYouMean(name, ruleNames(scope)), commandOf(scope)));
    return *rule;
}

/* One rule with its explanation or, if null, all rules without. */
Rows rowsOf(Scope scope, const RuleText* one)
{
    Rows rows;
    rows.addColumn("rule", ruleNames(scope));
    rows.addColumn("severity", severityNames());
    rows.addColumn("finds");
    if (one != nullptr)
        rows.addColumn("explanation");
    const bool advises = one != nullptr && scope == Scope::Home;
    if (advises)
        rows.addColumn("advice");
    for (const RuleText* rule : rulesOf(scope)) {
        std::vector<std::string> row = {rule->name, nameOf(rule->severity), rule->summary};
        if (one != nullptr)
            row.emplace_back(rule->explanation);
        if (advises)
            row.emplace_back(rule->advice);
        if (one == nullptr || one == rule)
            rows.addRow(std::move(row));
    }
    return rows;
}

void printRule(Output& out, const RuleText& rule)
{
    out.put(fmt::format("{}{}{} ({}): {}\n\n", out.bold(), rule.name, out.plain(), nameOf(rule.severity),
                        rule.summary));
    out.put(wrapped(rule.explanation));
    if (rule.advice[0] != '\0')
        out.put("\n" + wrapped(rule.advice));
}

} // namespace

Status explainRules(const Options& options, Scope scope)
{
    if (!options.paths.empty())
        throw Failure(fmt::format("{}: --explain explains rules and reads no files, found {}",
                                  commandOf(scope), options.paths[0]));
    if (options.format == Format::Sarif)
        throw Failure("--format sarif: it has findings, so it does not apply to --explain");
    Output out(options);
    const RuleText* rule = options.explain.empty() ? nullptr : &ruleNamed(scope, options.explain);
    Rows rows = rowsOf(scope, rule);
    rows.narrow(options);
    const bool asText = options.format == Format::Text && options.columns.empty();
    if (rule == nullptr || !asText)
        rows.print(out, options);
    else if (!rows.all().empty())
        printRule(out, *rule);
    out.close(AllWell);
    return AllWell;
}

/* ---- Findings ------------------------------------------------------------------ */

namespace
{

enum { FileAt, LineAt, ColumnAt, SeverityAt, RuleAt, FieldAt, TextAt, FingerprintAt };

/* --where selects findings. With --summary, the other options apply to its rows. */
Options onlyConditions(Options options)
{
    options.sort.clear();
    options.head.reset();
    options.limit.reset();
    options.columns.clear();
    return options;
}

Options withoutConditions(Options options)
{
    options.where.clear();
    return options;
}

/* The columns of --summary before those of the rule: the names of all templates. */
std::vector<std::string> namesOf(const std::vector<PathTemplate>& templates)
{
    std::vector<std::string> names;
    for (const PathTemplate& like : templates)
        for (const std::string& name : like.names())
            if (std::find(names.begin(), names.end(), name) == names.end())
                names.push_back(name);
    return names;
}

Rows summaryRows(Scope scope, const std::vector<std::string>& names)
{
    Rows rows;
    for (const std::string& name : names)
        rows.addColumn(name);
    rows.addColumn("rule", ruleNames(scope));
    rows.addColumn("severity", severityNames());
    rows.addColumn("findings", true);
    rows.addColumn(scope == Scope::File ? "files" : "homes", true);
    rows.addColumn("finds");
    return rows;
}

} // namespace

Rows findingRows(Scope scope)
{
    Rows rows;
    rows.addColumn("file");
    rows.addColumn("line", true);
    rows.addColumn("column", true);
    rows.addColumn("severity", severityNames());
    rows.addColumn("rule", ruleNames(scope));
    for (const char* name : {"field", "message"})
        rows.addColumn(name);
    return rows;
}

FindingReport::FindingReport(Output& output, const Options& from, Scope of)
    : out(output), options(from), scope(of),
      filter(findingRows(of), options.summary ? onlyConditions(options) : options), all(findingRows(of))
{
    for (const std::string& text : options.templates)
        templates.emplace_back(text);
    names = namesOf(templates);
    if (options.format == Format::Sarif && (options.summary || !options.columns.empty()))
        throw Failure("--format sarif: it has whole findings, so --summary and --columns do not apply");
    if (!options.writeBaseline.empty() && !options.output.empty())
        throw Failure("--write-baseline: nothing is reported, so -o does not apply");
    if (options.summary)
        RowsFilter(summaryRows(scope, names), withoutConditions(options));
    if (!options.baseline.empty())
        baseline.read(options.baseline);
    if (options.format == Format::Sarif && options.writeBaseline.empty())
        sarif.emplace(out, scope);
}

void FindingReport::add(const std::vector<ShownFinding>& ofUnit)
{
    ++units;
    Rows rows = rowsOf(ofUnit);
    filter.narrowUnit(rows);
    shown += rows.all().size();
    if (!filter.showsUnits())
        for (const std::vector<std::string>& row : rows.all())
            all.addRow(row);
    else if (options.writeBaseline.empty())
        show(rows);
}

/* Counts findings, except known ones. Returns false if all are known; `times` is the number of the others. */
bool FindingReport::isNew(Rule rule, const std::string& fingerprint, const std::string& file, size_t& times)
{
    if (!options.writeBaseline.empty())
        baseline.add(fingerprint, rule, file, times);
    const size_t before = times;
    times = baseline.unknown(fingerprint, times);
    known += before - times;
    counts[static_cast<size_t>(textOf(rule).severity)] += times;
    return times != 0;
}

/* Each row has the fingerprint after its columns. */
Rows FindingReport::rowsOf(const std::vector<ShownFinding>& ofUnit)
{
    Rows rows = findingRows(scope);
    for (const ShownFinding& finding : ofUnit) {
        const RuleText& rule = textOf(finding.rule);
        const std::string fingerprint =
            fingerprintOf(finding.rule, finding.file, finding.field, finding.text);
        size_t times = 1;
        const bool isShown = rule.severity != Severity::Note || options.notes || options.summary;
        if (!isNew(finding.rule, fingerprint, finding.file, times) || !isShown)
            continue;
        const std::string also = finding.also.empty() ? "" : " (" + finding.also + ")";
        rows.addRow({finding.file, std::to_string(finding.line),
                     finding.column == 0 ? "" : std::to_string(finding.column), nameOf(rule.severity),
                     rule.name, finding.field, finding.text + also, fingerprint});
    }
    return rows;
}

void FindingReport::addUnlisted(Rule rule, const std::string& file, size_t count)
{
    if (isNew(rule, fingerprintOf(rule, file, "", "unlisted"), file, count) && options.where.empty())
        summarize(rule, file, count);
}

void FindingReport::show(const Rows& rows)
{
    const bool asText = options.format == Format::Text && options.columns.empty();
    for (const std::vector<std::string>& row : rows.all()) {
        const Rule rule = findRule(scope, row[RuleAt])->rule;
        if (options.summary)
            summarize(rule, row[FileAt], 1);
        else if (sarif)
            sarif->put({rule, row[FileAt], row[LineAt], row[ColumnAt], row[FieldAt], row[TextAt],
                        row[FingerprintAt]});
        else if (asText)
            printRow(row);
        else
            all.addRow(row);
    }
}

void FindingReport::showInOrder()
{
    Rows rows = std::move(all);
    all = findingRows(scope);
    filter.narrowAll(rows);
    shown = rows.all().size();
    show(rows);
}

void FindingReport::printRow(const std::vector<std::string>& row)
{
    const char* color = row[SeverityAt] == nameOf(Severity::Error)     ? out.red()
                        : row[SeverityAt] == nameOf(Severity::Warning) ? out.yellow()
                                                                       : out.dim();
    out.put(fmt::format("{}{}:{}:{}{}{} {}{}:{} ", out.bold(), printable(row[FileAt]), row[LineAt],
                        row[ColumnAt], row[ColumnAt].empty() ? "" : ":", out.plain(), color, row[SeverityAt],
                        out.plain()));
    out.put(fmt::format("{}{}{} {}[{}]{}\n", row[FieldAt], row[FieldAt].empty() ? "" : ": ",
                        printable(row[TextAt]), out.dim(), row[RuleAt], out.plain()));
}

/* ---- At the end --------------------------------------------------------------------- */

Status FindingReport::finish(Status status)
{
    if (!options.writeBaseline.empty())
        return writeBaseline(status);
    if (!filter.showsUnits())
        showInOrder();
    if (options.summary)
        printSummary();
    else if (sarif)
        sarif->finish(status != Unusable);
    else if (options.format == Format::Text && options.columns.empty())
        printCounts();
    else
        all.print(out, options);
    out.close(status);
    return worse(status, fails() ? Findings : AllWell);
}

void FindingReport::printCounts()
{
    if (units == 0) {
        out.put(fmt::format("nothing was {}\n", scope == Scope::File ? "checked" : "audited"));
        return;
    }
    const size_t notes = (*this)[Severity::Note];
    const size_t faults = (*this)[Severity::Error] + (*this)[Severity::Warning];
    if (faults == 0)
        out.put(fmt::format("{}no faults{}", out.green(), out.plain()));
    else
        out.put(fmt::format("{}, {}", plural((*this)[Severity::Error], "error"),
                            plural((*this)[Severity::Warning], "warning")));
    out.put(fmt::format("{} in {}", options.notes ? ", " + plural(notes, "note") : "",
                        plural(units, scope == Scope::File ? "file" : "home")));
    if (shown != faults + (options.notes ? notes : 0))
        out.put(fmt::format("; {} shown", shown));
    if (!options.notes && notes != 0)
        out.put(fmt::format("; {} (--notes shows them)", plural(notes, "note")));
    if (known != 0)
        out.put(fmt::format("; {} in the baseline", known));
    out.put('\n');
}

bool FindingReport::fails() const
{
    const bool errors = (*this)[Severity::Error] != 0;
    const bool warnings = (*this)[Severity::Warning] != 0;
    const bool notes = (*this)[Severity::Note] != 0;
    return options.failOn == "error"     ? errors
           : options.failOn == "warning" ? errors || warnings
           : options.failOn == "note"    ? errors || warnings || notes
                                         : false;
}

/* A baseline of some of the files would hide that the others were not read. */
Status FindingReport::writeBaseline(Status status)
{
    if (status == Unusable) {
        message(options.writeBaseline + ": not written, because an input could not be read");
        return status;
    }
    const size_t findings = baseline.write(options.writeBaseline);
    message(fmt::format("{}: {}", options.writeBaseline, plural(findings, "known finding")));
    return AllWell;
}

/* ---- Summary -------------------------------------------------------------------------- */

/* The key of a total: the values of the path, then the number of the rule. */
void FindingReport::summarize(Rule rule, const std::string& file, size_t times)
{
    std::vector<std::string> key(names.size());
    for (const PathTemplate& like : templates) {
        const std::optional<PathTemplate::Values> values = like.parse(endOfPath(file, like));
        for (size_t i = 0; values && i < values->size(); ++i)
            key[static_cast<size_t>(std::find(names.begin(), names.end(), like.names()[i]) - names.begin())] =
                (*values)[i].value_or("");
        if (values)
            break;
    }
    key.push_back(fmt::format("{:03}", static_cast<size_t>(rule)));
    Total& total = totals[key];
    total.findings += times;
    total.units += total.lastUnit == units ? 0 : 1;
    total.lastUnit = units;
}

void FindingReport::printSummary()
{
    Rows rows = summaryRows(scope, names);
    for (const auto& [key, total] : totals) {
        const RuleText& rule = textOf(static_cast<Rule>(std::stoul(key.back())));
        std::vector<std::string> row(key.begin(), key.end() - 1);
        row.insert(row.end(), {rule.name, nameOf(rule.severity), std::to_string(total.findings),
                               std::to_string(total.units), rule.summary});
        rows.addRow(std::move(row));
    }
    rows.narrow(withoutConditions(options));
    rows.print(out, options);
}

} // namespace algdata
