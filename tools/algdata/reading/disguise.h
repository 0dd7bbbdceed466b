/* SPDX-License-Identifier: Apache-2.0 */
/* Record files in a form that no reader can read, such as compressed files. */
#ifndef ALGDATA_DISGUISE_H
#define ALGDATA_DISGUISE_H

#include <string>
#include <string_view>

namespace algdata
{

struct Disguise {
    enum Form { None, Wide, Compressed, LoneReturns };
    Form form = None;          /* wide: UTF-16 or UTF-32 */
    const char* name = "";     /* "UTF-16 text", "gzip-compressed" */
    const char* expected = ""; /* the form that the readers expect */
    std::string plain;         /* the content as plain text; empty for a compressed file */
};

/* Recognises compressed files, UTF-16 and UTF-32 by their first bytes. */
Disguise disguiseOf(std::string_view bytes);

/* Recognises text whose lines all end in CR only, as on old systems. */
Disguise loneReturnsIn(std::string_view bytes);

/* The bytes without a UTF-8 byte order mark. */
std::string_view withoutMark(std::string_view bytes);

} // namespace algdata

#endif
