/* SPDX-License-Identifier: Apache-2.0 */
/* What `algdata check` looks for. */
#ifndef ALGDATA_RULES_H
#define ALGDATA_RULES_H

#include <string>
#include <string_view>
#include <vector>

#include "reading/kinds.h"

namespace algdata
{

struct Rule {
    const char* name;
    bool error; /* else a warning */
    const char* summary;
    const char* explanation;
};

const std::vector<Rule>& rules();

/* Null where there is none. */
const Rule* findRule(std::string_view name);

struct Finding {
    size_t line;
    size_t column; /* both from 1 */
    const Rule* rule;
    std::string field;
    std::string text;
};

/* Every fault of a file, in order of its place. */
std::vector<Finding> findFaults(const Kind& kind, std::string_view bytes);

} // namespace algdata

#endif
