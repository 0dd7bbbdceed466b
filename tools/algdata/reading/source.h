/* SPDX-License-Identifier: Apache-2.0 */
/* The files that a command works on. */
#ifndef ALGDATA_SOURCE_H
#define ALGDATA_SOURCE_H

#include <functional>
#include <string>
#include <vector>

#include "commandline/options.h"
#include "reading/kinds.h"

namespace algdata
{

struct Source {
    std::string name; /* as the user knows it */
    std::string bytes;
    const Kind* kind = nullptr; /* as asked for, or as found; null where the content does not tell */
    bool readable = true;       /* by its name: an ordinary file that a reader can open */
};

/* Reads a file, or standard input for "-"; throws Failure. */
void readSource(const std::string& path, Source& source);

/* The kind that the options ask for, else the one found from the content; says so when there is none. */
const Kind* kindOf(const Source& source, const Options& options);

bool isDirectory(const std::string& path);

/* Whether records come from more than one file, so that each has to say from which. */
bool manySources(const Options& options);

/* The ordinary files below a directory, hidden ones left out, in order of their names. */
void walk(const std::string& directory, const std::function<void(const std::string&)>& visit);

/*
 * Reads each file that the options name, directories recursively. One that
 * cannot be read is reported and makes the status Unusable; the others go on.
 */
Status eachSource(const Options& options, const std::function<Status(Source&)>& visit);

/* The worse of two. */
inline Status worse(Status one, Status other)
{
    return one > other ? one : other;
}

} // namespace algdata

#endif
