/* SPDX-License-Identifier: Apache-2.0 */
/* The input formats of an import. Each reader throws Failure for a text that is not in its format. */
#ifndef ALGDATA_READERS_H
#define ALGDATA_READERS_H

#include <string>
#include <string_view>

#include "importing/incoming.h"

namespace algdata
{

/* One object, or an array of them. */
void readJson(std::string_view text, const std::string& name, Incoming& in);

/* One object per line. */
void readNdjson(std::string_view text, const std::string& name, Incoming& in);

/* A row of names, then one row per record or, if the kind has entries, per entry. */
void readCsv(std::string_view text, const std::string& name, Incoming& in);

/* Whether the text is one JSON value. */
bool isJson(std::string_view text);

} // namespace algdata

#endif
