/* SPDX-License-Identifier: Apache-2.0 */
/* The key of a record: what tells it from the others of its kind. */
#ifndef ALGDATA_KEYS_H
#define ALGDATA_KEYS_H

#include <string>

#include "reading/records.h"

namespace algdata
{

/* The layout that holds the key of the kind: the record, or the entry where the record has none. */
const Layout& keyLayout(const Kind& kind);

/* "deviceMAC + band"; empty where the layout has no key. */
std::string keyNames(const Layout& layout, const char* separator);

/* "112233445566 1", a field that is missing as "-". */
std::string keyValues(const Layout& layout, const std::vector<Token>& cells);

/* "deviceMAC 112233445566 band 1", fit for a terminal. */
std::string keyText(const Layout& layout, const std::vector<Token>& cells);

} // namespace algdata

#endif
