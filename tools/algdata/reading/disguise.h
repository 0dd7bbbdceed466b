/* SPDX-License-Identifier: Apache-2.0 */
/* Forms in which no reader can read a record file, though it may be one underneath. */
#ifndef ALGDATA_DISGUISE_H
#define ALGDATA_DISGUISE_H

#include <string>
#include <string_view>

namespace algdata
{

struct Disguise {
    enum Form { None, Utf16, Compressed, LoneReturns };
    Form form = None;
    const char* name = "";     /* "UTF-16 text", "gzip-compressed" */
    const char* expected = ""; /* in its place */
    std::string plain;         /* as plain text; empty where that cannot be told */
};

/* By the first bytes: UTF-16 or compressed. */
Disguise disguiseOf(std::string_view bytes);

/* Text whose lines end in CR alone, so that it has one line for every program of today. */
Disguise loneReturnsIn(std::string_view bytes);

/* The bytes without a UTF-8 byte order mark. */
std::string_view withoutMark(std::string_view bytes);

} // namespace algdata

#endif
