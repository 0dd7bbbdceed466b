/* SPDX-License-Identifier: Apache-2.0 */
#include "reading/treeWatch.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fmt/format.h>

namespace algdata
{

namespace
{

constexpr uint32_t wantedEvents = IN_MODIFY | IN_CLOSE_WRITE | IN_CREATE | IN_DELETE | IN_MOVED_FROM |
                                  IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR | IN_EXCL_UNLINK;

/* "fs.inotify.max_user_watches (8192)", one of the limits of the system. */
std::string limitText(const std::string& name)
{
    std::string value;
    std::ifstream("/proc/sys/fs/inotify/" + name) >> value;
    return "fs.inotify." + name + (value.empty() ? "" : " (" + value + ")");
}

} // namespace

/* An event as the system reports it. */
struct TreeWatch::Reported {
    int watch;
    uint32_t mask;
    std::string name; /* in the watched directory; empty if it is the directory itself */

    bool is(uint32_t bits) const { return (mask & bits) != 0; }
};

TreeWatch::TreeWatch(const std::string& directory) : root(withoutSlash(directory))
{
    struct stat status;
    if (stat(root.c_str(), &status) != 0)
        throw Failure(fmt::format("cannot read {}: {}", root, std::strerror(errno)));
    if (!S_ISDIR(status.st_mode))
        throw Failure(fmt::format("{} is a file, expected a directory", root));
    device = status.st_dev;
    inode = status.st_ino;
    fd = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (fd < 0 && errno == EMFILE)
        throw Failure(
            fmt::format("cannot watch {}: too many programs watch files; the limit of one user is {}", root,
                        limitText("max_user_instances")));
    if (fd < 0)
        throw Failure(fmt::format("cannot watch {}: {}", root, std::strerror(errno)));
}

TreeWatch::~TreeWatch()
{
    close(fd);
}

bool TreeWatch::rootHasMoved() const
{
    struct stat status;
    return stat(root.c_str(), &status) != 0 || status.st_dev != device || status.st_ino != inode;
}

/* ---- Watching directories ------------------------------------------------ */

void TreeWatch::watch(const std::string& directory, const OnUnreadable& unreadable)
{
    const bool isRoot = directory == root;
    const uint32_t mask = wantedEvents | (isRoot ? 0U : IN_DONT_FOLLOW);
    const int added = inotify_add_watch(fd, directory.c_str(), mask);
    if (added >= 0) {
        pathOf[added] = directory;
        rootWatch = isRoot ? added : rootWatch;
        return;
    }
    if (errno == ENOSPC)
        throw Failure(
            fmt::format("cannot watch {}: too many directories, after {}; the limit of one user is {}",
                        directory, pathOf.size(), limitText("max_user_watches")));
    if (isRoot)
        throw Failure(fmt::format("cannot watch {}: {}", directory, std::strerror(errno)));
    if (errno != ENOENT && errno != ENOTDIR) /* not if it has vanished meanwhile */
        unreadable(directory, std::strerror(errno));
}

/* Removes the watches, because a renamed directory would still report its events, with the old path. */
void TreeWatch::forget(const std::string& directory)
{
    for (auto at = pathOf.begin(); at != pathOf.end();) {
        const bool below =
            at->second == directory || at->second.compare(0, directory.size() + 1, directory + "/") == 0;
        if (below)
            inotify_rm_watch(fd, at->first);
        at = below ? pathOf.erase(at) : std::next(at);
    }
}

void TreeWatch::scanBelow(const std::string& directory, const std::function<void(const std::string&)>& visit,
                          const OnUnreadable& unreadable)
{
    walk(directory, visit, unreadable, [&](const std::string& entered) { watch(entered, unreadable); });
}

void TreeWatch::scan(const std::function<void(const std::string&)>& visit, const OnUnreadable& unreadable)
{
    scanBelow(root, visit, unreadable);
}

/* ---- Events ------------------------------------------------------------- */

void TreeWatch::handle(const Reported& reported, const std::function<void(const TreeEvent&)>& visit,
                       const OnUnreadable& unreadable)
{
    if (reported.is(IN_Q_OVERFLOW))
        return visit({TreeEvent::Lost, ""});
    const auto at = pathOf.find(reported.watch);
    if (at == pathOf.end())
        return;
    const std::string directory = at->second;
    if (reported.watch == rootWatch && reported.is(IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT))
        return visit({TreeEvent::RootGone, ""});
    if (reported.is(IN_IGNORED))
        pathOf.erase(at);
    if (reported.is(IN_UNMOUNT))
        return visit({TreeEvent::DirectoryGone, directory});
    if (reported.name.empty() || reported.name[0] == '.')
        return;
    const std::string path = (directory == "/" ? "" : directory) + "/" + reported.name;
    if (!reported.is(IN_ISDIR)) {
        const bool complete = reported.is(IN_CLOSE_WRITE | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE);
        visit({complete ? TreeEvent::Complete : TreeEvent::Written, path});
    } else if (reported.is(IN_CREATE | IN_MOVED_TO)) {
        scanBelow(
            path,
            [&](const std::string& file) {
                visit({TreeEvent::Written, file});
            },
            unreadable);
    } else if (reported.is(IN_DELETE | IN_MOVED_FROM)) {
        forget(path);
        visit({TreeEvent::DirectoryGone, path});
    }
}

void TreeWatch::read(const std::function<void(const TreeEvent&)>& visit, const OnUnreadable& unreadable)
{
    alignas(inotify_event) char buffer[1 << 16];
    for (;;) {
        const ssize_t got = ::read(fd, buffer, sizeof buffer);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return;
        for (ssize_t at = 0; at < got;) {
            inotify_event event;
            std::memcpy(&event, buffer + at, sizeof event);
            const char* name = buffer + at + sizeof event;
            handle({event.wd, event.mask, event.len == 0 ? "" : name}, visit, unreadable);
            at += static_cast<ssize_t>(sizeof event + event.len);
        }
    }
}

} // namespace algdata
