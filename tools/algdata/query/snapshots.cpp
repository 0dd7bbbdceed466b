/* SPDX-License-Identifier: Apache-2.0 */
#include "query/snapshots.h"

#include <algorithm>

#include <fmt/format.h>

#include "text/suggest.h"

namespace algdata
{

namespace
{

constexpr const char* usualName = "snapshot";

bool has(const std::vector<std::string>& names, const std::string& name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool allHave(const std::vector<PathTemplate>& templates, const std::string& name)
{
    return std::all_of(templates.begin(), templates.end(),
                       [&](const PathTemplate& one) { return has(one.names(), name); });
}

FilePlace placeByDirectory(const std::string& path)
{
    const size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        return {nullptr, {path}, "", "."};
    return {nullptr, {path.substr(slash + 1)}, "", path.substr(0, std::max<size_t>(slash, 1))};
}

} // namespace

SnapshotPaths::SnapshotPaths(const Options& options)
{
    for (const std::string& text : options.templates)
        templates.emplace_back(text);
    for (const PathTemplate& one : templates)
        for (const std::string& name : one.names())
            if (!has(names, name))
                names.push_back(name);
    requireOrder(options.order);
    if (templates.empty())
        names.emplace_back("file");
    else
        names.erase(std::remove(names.begin(), names.end(), snapshotName), names.end());
}

void SnapshotPaths::requireOrder(const std::string& order)
{
    times = order == "time" && !has(names, "time");
    if (templates.empty()) {
        if (!order.empty() && !times)
            throw Failure(
                fmt::format("--order {}: expected time, or --path with a part {{{}}}", order, order));
        return;
    }
    if (!times && !order.empty() && !has(names, order))
        throw Failure(fmt::format("--order {}: --path has no part {{{}}}{} (expected time{}{})", order, order,
                                  didYouMean(order, names), names.empty() ? "" : ", ",
                                  fmt::join(names, ", ")));
    snapshotName = times || order.empty() ? usualName : order;
    if (times && !allHave(templates, snapshotName))
        snapshotName.clear();
    else if (!allHave(templates, snapshotName))
        throw Failure(
            order.empty()
                ? fmt::format("--path: expected a part {{snapshot}} in each template, or --order with "
                              "time{}{}",
                              names.empty() ? "" : " or one of ", fmt::join(names, ", "))
                : fmt::format("--order {}: expected a part {{{}}} in each --path", order, order));
}

/* "./" is what a walk through "." adds. */
std::optional<FilePlace> SnapshotPaths::placeOf(const std::string& name) const
{
    const std::string path = name.compare(0, 2, "./") == 0 ? name.substr(2) : name;
    if (templates.empty())
        return placeByDirectory(path);
    for (const PathTemplate& one : templates) {
        const auto values = one.parse(endOfPath(path, one));
        if (values)
            return placeIn(one, *values, path);
    }
    return std::nullopt;
}

/* The series of a file: the part of its path before the snapshot, such as its home. */
FilePlace SnapshotPaths::placeIn(const PathTemplate& like, const PathTemplate::Values& values,
                                 const std::string& path) const
{
    FilePlace place;
    place.kind = like.kind();
    place.values.resize(names.size());
    place.snapshot = path;
    size_t snapshotAt = like.depth();
    for (size_t i = 0; i < values.size(); ++i)
        if (like.names()[i] == snapshotName) {
            snapshotAt = like.componentOf(i);
            place.snapshot = values[i].value_or("");
        }
    for (size_t i = 0; i < values.size(); ++i) {
        const auto at = std::find(names.begin(), names.end(), like.names()[i]);
        if (at == names.end())
            continue;
        place.values[static_cast<size_t>(at - names.begin())] = values[i].value_or("");
        if (like.componentOf(i) <= snapshotAt)
            place.series += *at + "=" + values[i].value_or("") + '\0';
    }
    return place;
}

} // namespace algdata
