/* SPDX-License-Identifier: Apache-2.0 */
/* `algdata report`: the mesh of a home on one page. */
#include <clocale>
#include <unistd.h>

#include <fmt/format.h>

#include "commands/commands.h"
#include "output/output.h"
#include "report/page.h"
#include "text/wording.h"

namespace algdata
{

namespace
{

constexpr size_t largePage = size_t(5) << 20;

/* Snapshots of one home have a device in common. */
bool haveCommonDevice(const Snapshot& one, const Snapshot& other)
{
    for (const MeshDevice& device : one.mesh.devices)
        if (other.mesh.find(device.mac) != SIZE_MAX)
            return true;
    return one.mesh.devices.empty() || other.mesh.devices.empty();
}

void warnOfStrangers(const ReportedHome& home)
{
    for (size_t i = 1; i < home.snapshots.size(); ++i)
        if (!haveCommonDevice(home.snapshots[i - 1], home.snapshots[i]))
            message(fmt::format("{} and {} have no device in common, expected snapshots of one home",
                                home.snapshots[i - 1].name, home.snapshots[i].name));
}

} // namespace

Status runReport(Options options)
{
    if (options.output.empty() && isatty(STDOUT_FILENO) != 0)
        throw Failure("report: expected -o FILE for the page, found a terminal");
    std::setlocale(LC_CTYPE, "C"); /* the page is the same in every locale */
    Output out(options);
    const ReportedHome home = readHome(options, options.redact);
    if (home.snapshots.empty()) { /* a message says why */
        out.close(Unusable);
        return Unusable;
    }
    warnOfStrangers(home);
    const std::string page = pageOf(home, options.redact);
    if (page.size() > largePage)
        message(fmt::format("the page has {:.1f} MB; fewer snapshots make it smaller",
                            static_cast<double>(page.size()) / 1e6));
    out.put(page);
    out.close(AllWell); /* a page that lacks an input says so */
    return home.complete ? AllWell : Unusable;
}

} // namespace algdata
