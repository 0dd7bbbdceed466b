/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALGDATA_FILE_SET_H
#define ALGDATA_FILE_SET_H

#include <functional>
#include <map>
#include <string>

#include "reading/source.h"

namespace algdata
{

/*
 * The files of a directory or of an archive by their names, to read them in any order.
 * Files in archives are kept in memory, because an archive is read once from start to
 * end; at most largestSource bytes.
 */
class FileSet
{
  public:
    /* Called for a directory or an archive that cannot be read completely; `why` is a whole message. */
    using OnUnreadable = std::function<void(const std::string& path, const std::string& why)>;

    FileSet(std::string directoryOrArchive, const OnUnreadable& unreadable);

    /* Calls `visit` for each name. A name continues the path of the set: "/home1/score.txt". */
    void eachName(const std::function<void(const std::string&)>& visit) const;

    /* Throws Failure if the file cannot be read. */
    void read(const std::string& name, Source& source) const;

  private:
    struct File {
        bool inMemory = false;
        std::string bytes;
    };

    void addArchive(const std::string& path, const OnUnreadable& unreadable);
    void addMembers(const std::string& path);

    std::string root;
    std::map<std::string, File> files;
    size_t inMemory = 0; /* bytes */
};

} // namespace algdata

#endif
