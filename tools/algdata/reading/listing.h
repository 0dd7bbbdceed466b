/* SPDX-License-Identifier: Apache-2.0 */
/* What is in a directory. Hidden names, links to directories and the configuration are left out. */
#ifndef ALGDATA_LISTING_H
#define ALGDATA_LISTING_H

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace algdata
{

struct DirectoryEntry {
    std::string name;
    bool directory;
};

/* Called for a directory or a link that cannot be read; `why` is the system's message. */
using OnUnreadable = std::function<void(const std::string& path, const std::string& why)>;

/* The regular files and the directories in a directory, in the order of their names. */
std::vector<DirectoryEntry> entriesOf(const std::string& directory, const OnUnreadable& unreadable);

/* The entry of this name; null if the directory has none that entriesOf() returns. */
std::optional<DirectoryEntry> entryNamed(const std::string& directory, const std::string& name,
                                         const OnUnreadable& unreadable);

/* The path without slashes at its end. "-/" becomes "./-", because "-" is not a directory. */
std::string withoutSlash(std::string path);

/* The path of an entry. */
std::string pathIn(const std::string& directory, const std::string& name);

} // namespace algdata

#endif
