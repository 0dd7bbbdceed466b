/* SPDX-License-Identifier: Apache-2.0 */
#include "output/json.h"

#include <nlohmann/json.hpp>

#include "text/wording.h"

namespace algdata
{

std::string jsonText(std::string_view text)
{
    using Json = nlohmann::json;
    try {
        return Json(text).dump();
    } catch (const Json::type_error&) {
        return Json(printable(text)).dump();
    }
}

void JsonObjects::begin()
{
    out.put(lines ? "{" : any ? ",\n{" : "[\n{");
    any = true;
}

void JsonObjects::end()
{
    out.put(lines ? "}\n" : "}");
}

void JsonObjects::finish()
{
    if (!lines)
        out.put(any ? "\n]\n" : "[]\n");
}

} // namespace algdata
