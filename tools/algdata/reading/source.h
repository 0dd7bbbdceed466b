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
    const Kind* kind = nullptr; /* as asked for, or as found; null where the content does not tell */
};

/*
 * Reads a file, or standard input for "-". Throws Failure, also for a file of
 * more than largestSource bytes: of an ordinary one nothing is read then.
 */
void readSource(const std::string& path, Source& source);

/* The kind that the options ask for, else the one found from the content; says so when there is none. */
const Kind* kindOf(const Source& source, const Options& options);

/* The worse of two. */
inline Status worse(Status one, Status other)
{
    return one > other ? one : other;
}

} // namespace algdata

#endif
