/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALGDATA_TREE_WATCH_H
#define ALGDATA_TREE_WATCH_H

#include <functional>
#include <map>
#include <string>
#include <sys/types.h>

#include "reading/walk.h"

namespace algdata
{

/* What has happened in a watched directory. */
struct TreeEvent {
    enum What : uint8_t {
        Written,       /* a file that may still be open for writing, or that was found in a new directory */
        Complete,      /* a file that a writer closed, that was renamed or that was removed */
        DirectoryGone, /* with all its files */
        Lost,          /* events were lost: any file can have changed */
        RootGone       /* the watched directory was removed or renamed */
    };
    What what;
    std::string path; /* empty for Lost and RootGone */
};

/*
 * Reports changes of the files in a directory and in its subdirectories, also in those that
 * appear later. As walk() does, it leaves out hidden ones and links to directories.
 */
class TreeWatch
{
  public:
    /* Throws Failure if the directory cannot be watched. The watch begins with scan(). */
    explicit TreeWatch(const std::string& directory);
    ~TreeWatch();
    TreeWatch(const TreeWatch&) = delete;
    TreeWatch& operator=(const TreeWatch&) = delete;

    /* Watches all directories and visits all files. No change after the visit of a file is missed. */
    void scan(const std::function<void(const std::string&)>& visit, const OnUnreadable& unreadable);

    /* To be polled: it is readable if there are events. */
    int descriptor() const { return fd; }

    /* Returns the events so far without waiting. New directories are scanned and watched at once. */
    void read(const std::function<void(const TreeEvent&)>& visit, const OnUnreadable& unreadable);

    /* Whether the path of the directory leads elsewhere, because a directory above it was renamed. */
    bool rootHasMoved() const;

    size_t directories() const { return pathOf.size(); }

  private:
    void watch(const std::string& directory, const OnUnreadable& unreadable);
    void forget(const std::string& directory);
    void scanBelow(const std::string& directory, const std::function<void(const std::string&)>& visit,
                   const OnUnreadable& unreadable);
    struct Reported;
    void handle(const Reported& reported, const std::function<void(const TreeEvent&)>& visit,
                const OnUnreadable& unreadable);

    std::string root;
    dev_t device = 0; /* with the inode: which directory the root is */
    ino_t inode = 0;
    int fd = -1;
    int rootWatch = -1;
    std::map<int, std::string> pathOf; /* by the number of the watch */
};

} // namespace algdata

#endif
