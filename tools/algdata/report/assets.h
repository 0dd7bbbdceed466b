/* SPDX-License-Identifier: Apache-2.0 */
/* The style and the script of a page: report.css and report.js, which the build compiles in. */
#ifndef ALGDATA_ASSETS_H
#define ALGDATA_ASSETS_H

#include <string>
#include <string_view>

namespace algdata
{

struct Asset {
    std::string_view text;
    std::string_view sha256; /* in hexadecimal */
};

extern const Asset styleAsset;
extern const Asset scriptAsset;

/* "sha256-..." as a content security policy names it. */
std::string policyHash(const Asset& asset);

} // namespace algdata

#endif
