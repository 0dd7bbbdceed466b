/* SPDX-License-Identifier: Apache-2.0 */
/* The forms that an import reads. All throw Failure for a text that is not of its form. */
#ifndef ALGDATA_READERS_H
#define ALGDATA_READERS_H

#include <string>
#include <string_view>

#include "importing/incoming.h"

namespace algdata
{

/* One object, or an array of them. */
void readJson(std::string_view text, const std::string& name, Incoming& in);

/* An object to a line. */
void readNdjson(std::string_view text, const std::string& name, Incoming& in);

/* A row of names, then a row to a record, or to an entry. */
void readCsv(std::string_view text, const std::string& name, Incoming& in);

/* Whether the text is one JSON value. */
bool isJson(std::string_view text);

} // namespace algdata

#endif
