/* SPDX-License-Identifier: Apache-2.0 */
/* Finds a file's kind from its content. */
#ifndef ALGDATA_DETECT_H
#define ALGDATA_DETECT_H

#include <string>
#include <string_view>
#include <vector>

#include "reading/kinds.h"

namespace algdata
{

struct Detection {
    const Kind* kind = nullptr;    /* null where the content does not tell */
    std::vector<const Kind*> fits; /* those that fit equally well */
    bool empty = false;            /* nothing but white space and NUL bytes */

    /* Why there is no kind, and how to choose one. */
    std::string reason() const;
};

Detection detectKind(std::string_view bytes);

} // namespace algdata

#endif
