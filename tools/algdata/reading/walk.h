/* SPDX-License-Identifier: Apache-2.0 */
/* The files that a command works on: those that the options name, and those below a directory. */
#ifndef ALGDATA_WALK_H
#define ALGDATA_WALK_H

#include <functional>
#include <string>

#include "commandline/options.h"
#include "reading/detect.h"
#include "reading/source.h"

namespace algdata
{

bool isDirectory(const std::string& path);

/* Called for a directory or a link that cannot be read, with the system's reason. */
using OnUnreadable = std::function<void(const std::string& path, const std::string& why)>;

/*
 * Visits the ordinary files below a directory in order of their names, hidden
 * ones left out. After a directory that cannot be read the walk goes on with
 * the next one.
 */
void walk(const std::string& directory, const std::function<void(const std::string&)>& visit,
          const OnUnreadable& unreadable);

/*
 * Reads each file that the options name, directories recursively. One that
 * cannot be read is reported and makes the status Unusable; the others go on.
 */
Status eachSource(const Options& options, const std::function<Status(Source&)>& visit);

/*
 * The same for the files that hold records, each with its kind. One that is
 * empty is visited without a kind, unless the options ask for one. A file whose
 * kind is not known is reported; the status is Unusable when the user named it,
 * and Findings when it was found in a directory. Those of a directory that hold no
 * records at all, or records of another kind than the options ask for, are counted
 * in one message.
 */
Status eachRecordFile(const Options& options, const std::function<Status(Source&)>& visit);

/* Files of a directory that are left out: no record files, or not of the kind that is asked for. */
class OtherFiles
{
  public:
    explicit OtherFiles(const Kind* askedFor) : asked(askedFor) {}

    /* Always true for a file that the user named. */
    bool wants(const Source& source, const Detection& detection) const;
    void add(const std::string& name);

    /* "12 files are not record files: a, b, c and 9 more" */
    void report() const;

  private:
    static constexpr size_t mostNames = 3;
    const Kind* asked;
    size_t count = 0;
    std::string names;
};

} // namespace algdata

#endif
