/* SPDX-License-Identifier: Apache-2.0 */
/* An input file, which is read once and completely. */
#ifndef ALGDATA_SOURCE_H
#define ALGDATA_SOURCE_H

#include <string>
#include <vector>

#include "options/options.h"
#include "records/kinds.h"

namespace algdata
{

/* The limit for one file, in bytes. It is far above any record file and stops endless inputs. */
inline constexpr size_t largestSource = size_t(1) << 30;

struct Source {
    std::string name; /* as the user knows it */
    std::string bytes;
    const Kind* kind = nullptr; /* the kind of --kind, or the detected one; null for an empty file */
    bool named = true;          /* on the command line; false for a file of a directory */
};

/*
 * Reads a file, or standard input for "-". Throws Failure if it cannot be read or has
 * more than largestSource bytes; a regular file of that size is not read at all.
 */
void readSource(const std::string& path, Source& source);

/* The worse of two statuses. */
inline Status worse(Status one, Status other)
{
    return one > other ? one : other;
}

} // namespace algdata

#endif
