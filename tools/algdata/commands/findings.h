/* SPDX-License-Identifier: Apache-2.0 */
/* What `check` and `audit` share: explains rules, counts, filters and prints findings. */
#ifndef ALGDATA_FINDINGS_H
#define ALGDATA_FINDINGS_H

#include <array>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "checking/baseline.h"
#include "checking/sarif.h"
#include "printing/table.h"
#include "reading/pathTemplate.h"

namespace algdata
{

/* A finding as it is shown. */
struct ShownFinding {
    std::string file;
    size_t line;
    size_t column; /* 0 if the finding is about the whole line */
    Rule rule;
    std::string field;
    std::string text;
    std::string also; /* other places; not part of what identifies the finding */
};

/* Lists the rules of a command, or explains one. */
Status explainRules(const Options& options, Scope scope);

/* The columns of findings, without rows. */
Rows findingRows(Scope scope);

/* The findings of one command, unit by unit: a file for `check`, a home for `audit`. */
class FindingReport
{
  public:
    FindingReport(Output& output, const Options& from, Scope of);

    /* Adds all findings of the next unit. */
    void add(const std::vector<ShownFinding>& ofUnit);

    /* Findings of the last unit that are only counted, because there are too many to keep. */
    void addUnlisted(Rule rule, const std::string& file, size_t count);

    /* Prints what is left and returns the exit status of the command. */
    Status finish(Status status);

  private:
    struct Total {
        size_t findings = 0;
        size_t units = 0;
        size_t lastUnit = 0;
    };

    Rows rowsOf(const std::vector<ShownFinding>& ofUnit);
    bool isNew(Rule rule, const std::string& fingerprint, const std::string& file, size_t& times);
    void summarize(Rule rule, const std::string& file, size_t times);
    void show(const Rows& rows);
    void showInOrder();
    void printRow(const std::vector<std::string>& row);
    void printCounts();
    void printSummary();
    Status writeBaseline(Status status);
    bool fails() const;
    size_t operator[](Severity severity) const { return counts[static_cast<size_t>(severity)]; }

    Output& out;
    const Options& options;
    const Scope scope;
    RowsFilter filter; /* for findings, not for the rows of --summary */
    Rows all;
    Baseline baseline;
    std::vector<PathTemplate> templates;
    std::vector<std::string> names; /* of the templates */
    std::optional<SarifLog> sarif;
    std::map<std::vector<std::string>, Total> totals; /* by path columns and the number of the rule */
    std::array<size_t, 3> counts = {};                /* by severity; without known findings */
    size_t known = 0;
    size_t shown = 0;
    size_t units = 0;
};

} // namespace algdata

#endif
