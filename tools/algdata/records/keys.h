/* SPDX-License-Identifier: Apache-2.0 */
/* The key of a record: the fields that identify it among the records of its kind. */
#ifndef ALGDATA_KEYS_H
#define ALGDATA_KEYS_H

#include <string>

#include "records/records.h"

namespace algdata
{

/* The layout that has the key fields of the kind: the record's or, if it has none, the entry's. */
const Layout& keyLayout(const Kind& kind);

/* "deviceMAC + band"; empty if the layout has no key. */
std::string keyNames(const Layout& layout, const char* separator);

/* "112233445566 1", with "-" for a missing field. */
std::string keyValues(const Layout& layout, const std::vector<Token>& cells);

/* "deviceMAC 112233445566 band 1", printable. */
std::string keyText(const Layout& layout, const std::vector<Token>& cells);

} // namespace algdata

#endif
