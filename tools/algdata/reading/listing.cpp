/* SPDX-License-Identifier: Apache-2.0 */
#include "reading/listing.h"

#include <algorithm>
#include <filesystem>

#include "reading/configuration.h"

namespace algdata
{

namespace fs = std::filesystem;

namespace
{

/* Whether the error comes from a link to nothing, or from a circle of links: neither is a file. */
bool leadsNowhere(const std::error_code& error)
{
    return error == std::errc::no_such_file_or_directory ||
           error == std::errc::too_many_symbolic_link_levels || error == std::errc::not_a_directory;
}

/* Does not follow links to directories, because they can form circles. */
std::optional<DirectoryEntry> entryOf(const fs::directory_entry& found, const OnUnreadable& unreadable)
{
    std::string name = found.path().filename().string();
    if (name.empty() || name[0] == '.' || name == configurationName)
        return std::nullopt;
    std::error_code error;
    const bool directory = !found.is_symlink(error) && found.is_directory(error);
    const bool regular = !directory && found.is_regular_file(error);
    if (directory || regular)
        return DirectoryEntry{std::move(name), directory};
    if (error && !leadsNowhere(error))
        unreadable(found.path().string(), error.message());
    return std::nullopt;
}

} // namespace

std::vector<DirectoryEntry> entriesOf(const std::string& directory, const OnUnreadable& unreadable)
{
    std::vector<DirectoryEntry> entries;
    std::error_code error;
    for (fs::directory_iterator at(directory, error), end; !error && at != end; at.increment(error))
        if (std::optional<DirectoryEntry> entry = entryOf(*at, unreadable))
            entries.push_back(std::move(*entry));
    if (error)
        unreadable(directory, error.message());
    std::sort(entries.begin(), entries.end(),
              [](const DirectoryEntry& a, const DirectoryEntry& b) { return a.name < b.name; });
    return entries;
}

std::optional<DirectoryEntry> entryNamed(const std::string& directory, const std::string& name,
                                         const OnUnreadable& unreadable)
{
    if (name.find('/') != std::string::npos || name.find('\0') != std::string::npos)
        return std::nullopt;
    std::error_code error;
    const fs::directory_entry entry(pathIn(directory, name), error);
    if (!error)
        return entryOf(entry, unreadable);
    if (!leadsNowhere(error) && error != std::errc::filename_too_long)
        unreadable(directory, error.message());
    return std::nullopt;
}

std::string withoutSlash(std::string path)
{
    const bool directory = !path.empty() && path.back() == '/';
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    return directory && path == "-" ? "./-" : path;
}

std::string pathIn(const std::string& directory, const std::string& name)
{
    return (directory == "/" ? "" : directory) + "/" + name;
}

} // namespace algdata
