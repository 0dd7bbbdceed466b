/* SPDX-License-Identifier: Apache-2.0 */
/* `algdata audit`: lists contradictions between the files of a home. */
#include <fmt/format.h>

#include "commands/commands.h"
#include "commands/findings.h"
#include "mesh/audit.h"
#include "mesh/homes.h"

namespace algdata
{

namespace
{

/* "see a.txt:3, b.txt:4 and 2 more" */
std::string placesText(const Mesh& mesh, const std::vector<Place>& places)
{
    constexpr size_t maxPlaces = 3;
    std::string text;
    for (size_t i = 0; i < places.size() && i < maxPlaces; ++i)
        text += (i == 0 ? "see " : ", ") + mesh.text(places[i]);
    if (places.size() > maxPlaces)
        text += fmt::format(" and {} more", places.size() - maxPlaces);
    return text;
}

std::vector<ShownFinding> findingsOf(const Mesh& mesh)
{
    std::vector<ShownFinding> shown;
    for (MeshFinding& finding : audit(mesh))
        shown.push_back({mesh.files[finding.place.file].name, finding.place.line, 0, finding.rule,
                         std::move(finding.field), std::move(finding.text), placesText(mesh, finding.also)});
    return shown;
}

} // namespace

Status runAudit(Options options)
{
    if (options.explaining)
        return explainRules(options, Scope::Home);
    Output out(options);
    FindingReport report(out, options, Scope::Home);
    return report.finish(
        eachHome(options, [&](const std::string&, Mesh& mesh) { report.add(findingsOf(mesh)); }));
}

} // namespace algdata
