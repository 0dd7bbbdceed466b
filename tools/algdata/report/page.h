/* SPDX-License-Identifier: Apache-2.0 */
/* The page of `algdata report`. */
#ifndef ALGDATA_PAGE_H
#define ALGDATA_PAGE_H

#include <string>

#include "report/snapshot.h"

namespace algdata
{

/* The whole page. It is the same for the same input, and requests nothing. */
std::string pageOf(const ReportedHome& home, bool redact);

} // namespace algdata

#endif
