/* SPDX-License-Identifier: Apache-2.0 */
/* Visits the input files of a command: the named files, and all files in the named directories. */
#ifndef ALGDATA_WALK_H
#define ALGDATA_WALK_H

#include <functional>
#include <string>

#include "options/options.h"
#include "reading/detect.h"
#include "reading/listing.h"
#include "reading/source.h"
#include "text/names.h"

namespace algdata
{

/* False for "-", which is standard input or output even if there is a directory of this name. */
bool isDirectory(const std::string& path);

/* Whether the path is a directory, or an archive by its name: commands read the files in it. */
bool holdsFiles(const std::string& path);

/*
 * Throws OutputFailure if the output file is one of the inputs, also by another name, or a record file or an
 * archive in an input directory. The result of an earlier run may be there: it is neither.
 */
void requireNoInput(const std::string& output, const std::vector<std::string>& inputs);

/* Whether the paths of a command name one file, and nothing that holds files. */
bool isOneFile(const Options& options);

/*
 * Visits the regular files of a directory and its subdirectories in the order of
 * their names, except hidden ones. After a directory that cannot be read, continues
 * with the next one. `enter`, if there is one, is called for each directory before it is
 * listed.
 */
void walk(const std::string& directory, const std::function<void(const std::string&)>& visit,
          const OnUnreadable& unreadable, const std::function<void(const std::string&)>& enter = {});

using VisitSource = std::function<Status(Source& source, const Detection& detection)>;

/* Whether a file is read. It is called before the file is opened. */
using WantsPath = std::function<bool(const std::string& path)>;

/*
 * Reads and visits each named file, and recursively the record files of each named
 * directory. An archive is like a directory, also in a directory, and the name of a
 * file in it is "ARCHIVE/MEMBER". Files of a directory that are not record files, or
 * not of the kind of --kind, are counted in one message. If a file cannot be read or
 * its visit throws Failure, or if a named directory has nothing to visit, this is
 * reported and the status is Unusable; the others are still visited. `wants`, if there
 * is one, chooses the files.
 */
Status eachSource(const Options& options, const VisitSource& visit, const WantsPath& wants = {});

/*
 * The same, but each file has its kind, and a file of unknown kind cannot be read. An
 * empty file has no kind, unless --kind sets one.
 */
Status eachRecordFile(const Options& options, const std::function<Status(Source&)>& visit,
                      const WantsPath& wants = {});

/* Counts the files of a directory that are left out: not record files, or not of the kind of --kind. */
class OtherFiles
{
  public:
    explicit OtherFiles(const Kind* askedFor) : asked(askedFor) {}

    /* Always true for a file that the user named. */
    bool wants(const Source& source, const Detection& detection) const;
    void add(const std::string& name) { names.add(name); }

    /* Prints "12 files are not record files: a, b, c and 9 more". */
    void report() const;

  private:
    const Kind* asked;
    NamesLeftOut names;
};

} // namespace algdata

#endif
