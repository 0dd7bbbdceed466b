/* SPDX-License-Identifier: Apache-2.0 */
#include <cstdio>

#include "output/output.h"
#include "output/progress.h"
#include "text/wording.h"

namespace algdata
{

void message(const std::string& text)
{
    Progress::clear();
    std::fprintf(stderr, "algdata: %s\n", printable(text).c_str());
}

} // namespace algdata
