/* SPDX-License-Identifier: Apache-2.0 */
/* The files that a command works on: those that the options name, and those below a directory. */
#ifndef ALGDATA_WALK_H
#define ALGDATA_WALK_H

#include <functional>
#include <string>

#include "commandline/options.h"
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

} // namespace algdata

#endif
