/* SPDX-License-Identifier: Apache-2.0 */
/* A file that is read once, as bytes. */
#ifndef ALGDATA_SOURCE_H
#define ALGDATA_SOURCE_H

#include <string>
#include <vector>

#include "commandline/options.h"
#include "reading/kinds.h"

namespace algdata
{

/* No record file comes near it; an endless device goes past it. */
inline constexpr size_t largestSource = size_t(1) << 30;

struct Source {
    std::string name; /* as the user knows it */
    std::string bytes;
    const Kind* kind = nullptr; /* as asked for, or as found; null of an empty file */
    bool named = true;          /* on the command line, not found in a directory */
};

/*
 * Reads a file, or standard input for "-". Throws Failure, also for a file of
 * more than largestSource bytes: of an ordinary one nothing is read then.
 */
void readSource(const std::string& path, Source& source);

/* The worse of two. */
inline Status worse(Status one, Status other)
{
    return one > other ? one : other;
}

} // namespace algdata

#endif
