/* SPDX-License-Identifier: Apache-2.0 */
#include "sql/meshes.h"

namespace algdata
{

namespace
{

/* "." for a file of the current directory. */
std::string directoryOf(const std::string& path)
{
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
}

bool isInside(const std::string& path, const std::string& directory)
{
    return directory == "." || directory == "/" ||
           (path.compare(0, directory.size(), directory) == 0 && path[directory.size()] == '/');
}

/* Keeps the values that the other file has too. */
void keepCommon(PathTemplate::Values& values, const PathTemplate::Values& others)
{
    for (size_t i = 0; i < values.size(); ++i)
        if (values[i] != others[i])
            values[i].reset();
}

} // namespace

void MeshWalk::add(const FoundFile& file)
{
    const std::shared_ptr<const OpenFile> content = engine.cache.open(file);
    if (!content->failure.empty()) {
        engine.report(Unusable, file.path, {content->failure});
        return;
    }
    if (content->detection.kind == nullptr || content->detection.hasNoRecords())
        return;
    std::unique_ptr<DirectoryMesh>& home = open[directoryOf(file.path)];
    if (home == nullptr) {
        home = std::make_unique<DirectoryMesh>();
        home->directory = directoryOf(file.path);
        home->columns = file.columns;
        for (const auto& [mac, name] : engine.names)
            if (const std::optional<Mac> number = macFrom(mac))
                home->mesh.names[*number] = name;
    }
    keepCommon(home->columns, file.columns);
    home->mesh.add(content->source, *content->detection.kind, macInName(file.path));
}

/* Completes the meshes of the directories that the next file is not inside of. */
void MeshWalk::complete(const std::string& next)
{
    for (auto at = open.begin(); at != open.end();) {
        if (!next.empty() && isInside(next, at->first)) {
            ++at;
            continue;
        }
        at->second->mesh.settle();
        done.push_back(std::move(at->second));
        at = open.erase(at);
    }
}

std::unique_ptr<DirectoryMesh> MeshWalk::next()
{
    FoundFile file;
    while (done.empty() && !ended && !engine.stopping()) {
        ended = !walk.next(file);
        complete(ended ? "" : file.path);
        if (!ended)
            add(file);
    }
    if (done.empty())
        return nullptr;
    std::unique_ptr<DirectoryMesh> first = std::move(done.front());
    done.erase(done.begin());
    return first;
}

} // namespace algdata
