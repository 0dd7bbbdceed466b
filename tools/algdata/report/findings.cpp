/* SPDX-License-Identifier: Apache-2.0 */
/* The findings of `check` and `audit`. */
#include <fmt/format.h>

#include "report/sections.h"
#include "report/table.h"

namespace algdata
{

namespace
{

/* The device that a record is about: its first MAC. */
std::optional<Mac> deviceOf(const KeptFile& file, size_t line)
{
    const auto macIn = [](const std::vector<std::string>& cells) -> std::optional<Mac> {
        for (const std::string& cell : cells)
            if (const std::optional<Mac> mac = macFrom(cell))
                return mac;
        return std::nullopt;
    };
    for (const KeptRecord& record : file.kept) {
        if (record.line == line)
            return macIn(record.cells);
        const size_t entry = line - record.line - 1;
        if (line > record.line && entry < record.entries.size())
            return macIn(record.entries[entry]);
    }
    return std::nullopt;
}

/* The row of the finding's record or the device that it is about; empty if the page has neither. */
std::string targetOf(const Html& html, const Snapshot& snapshot, const PageFinding& finding)
{
    for (const KeptFile& file : snapshot.files) {
        if (snapshot.meshFile(file).name != finding.file)
            continue;
        const std::string row = snapshot.recordId(file, finding.line);
        if (html.hasId(row))
            return "#" + row;
        const std::optional<Mac> mac = deviceOf(file, finding.line);
        if (mac && html.hasId(snapshot.deviceId(*mac)))
            return "#" + snapshot.deviceId(*mac);
    }
    return "";
}

} // namespace

void writeFindings(Html& html, const Snapshot& snapshot)
{
    const Html::Element section = sectionOf(html, snapshot, "findings", "Findings");
    if (snapshot.findings.empty()) {
        writeMissing(html, "check and audit find nothing in these files.");
        return;
    }
    PageTable table;
    table.caption = "Findings of check and audit";
    table.columns = {{"severity"}, {"file and line"}, {"field"}, {"finding", false, true}, {"rule"}};
    for (const PageFinding& finding : snapshot.findings) {
        const RuleText& rule = textOf(finding.rule);
        std::string text = finding.text;
        if (!finding.also.empty())
            text += " (see " + finding.also + ")";
        const std::string place = finding.times > 1 || finding.line == 0
                                      ? finding.file
                                      : fmt::format("{}:{}", finding.file, finding.line);
        if (finding.times > 1)
            text = fmt::format("{} {}", finding.times, text);
        table.rows.push_back({"",
                              {nameOf(rule.severity), PageCell(place, targetOf(html, snapshot, finding)),
                               finding.field, text, rule.name},
                              nameOf(rule.severity)});
    }
    writeTable(html, table);
}

} // namespace algdata
