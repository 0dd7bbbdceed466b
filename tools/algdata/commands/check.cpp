/* SPDX-License-Identifier: Apache-2.0 */
/* `algdata check`: lists the faults of files. */
#include <fmt/format.h>

#include "checking/faults.h"
#include "checking/rules.h"
#include "commands/commands.h"
#include "commands/findings.h"
#include "reading/detect.h"
#include "reading/walk.h"

namespace algdata
{

namespace
{

/* Adds the findings of a file to the report, and says how many are not listed. */
void reportFaults(const Source& source, Faults& faults, const Options& options, FindingReport& report)
{
    std::vector<ShownFinding> shown;
    for (Finding& finding : faults.kept)
        shown.push_back({source.name, finding.line, finding.column, finding.rule, std::move(finding.field),
                         std::move(finding.text), ""});
    report.add(shown);
    for (const RuleText* rule : rulesOf(Scope::File)) {
        const size_t found = faults[rule->rule];
        if (found <= maxFindings)
            continue;
        report.addUnlisted(rule->rule, source.name, found - maxFindings);
        if (rule->severity != Severity::Note || options.notes)
            message(fmt::format("{}: only the first {} findings of rule {} are listed, {} more are counted",
                                source.name, maxFindings, rule->name, found - maxFindings));
    }
}

} // namespace

std::vector<std::string> findingColumns()
{
    return findingRows(Scope::File).columnNames();
}

Status runCheck(Options options)
{
    if (options.explaining)
        return explainRules(options, Scope::File);
    Output out(options);
    FindingReport report(out, options, Scope::File);
    return report.finish(eachSource(options, [&](Source& source, const Detection& detection) {
        Faults faults = faultsOf(source, detection);
        reportFaults(source, faults, options, report);
        return AllWell;
    }));
}

} // namespace algdata
