/* SPDX-License-Identifier: Apache-2.0 */
#include "reading/fileSet.h"

#include <fmt/format.h>

#include "output/output.h"
#include "reading/archive.h"
#include "reading/walk.h"

namespace algdata
{

FileSet::FileSet(std::string directoryOrArchive, const OnUnreadable& unreadable)
    : root(std::move(directoryOrArchive))
{
    if (!isDirectory(root)) {
        addArchive(root, unreadable);
        return;
    }
    const auto add = [&](const std::string& path) {
        if (namesArchive(path))
            addArchive(path, unreadable);
        else
            files[path.substr(root.size())];
    };
    walk(root, add, [&](const std::string& path, const std::string& why) {
        unreadable(path, "cannot read " + path + ": " + why);
    });
}

void FileSet::addArchive(const std::string& path, const OnUnreadable& unreadable)
{
    try {
        addMembers(path);
    } catch (const Failure& failure) {
        unreadable(path, failure.what());
    }
}

void FileSet::addMembers(const std::string& path)
{
    ArchiveReader archive(path);
    for (Member member; archive.next(member);) {
        File& file = files[path.substr(root.size()) + "/" + member.name];
        file.inMemory = true;
        archive.read(file.bytes);
        file.bytes.shrink_to_fit();
        inMemory += file.bytes.size();
        if (inMemory > largestSource)
            throw Failure(fmt::format("cannot read {}: its files have more than {} GiB, the limit for a "
                                      "comparison; extract it first",
                                      path, largestSource >> 30));
    }
    const std::string links = archive.linksLeftOut();
    if (!links.empty())
        message(links);
}

void FileSet::eachName(const std::function<void(const std::string&)>& visit) const
{
    for (const auto& [name, file] : files)
        visit(name);
}

void FileSet::read(const std::string& name, Source& source) const
{
    const File& file = files.at(name);
    if (!file.inMemory) {
        readSource(root + name, source);
        return;
    }
    source.kind = nullptr;
    source.name = root + name;
    source.bytes = file.bytes;
}

} // namespace algdata
