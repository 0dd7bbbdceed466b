/* SPDX-License-Identifier: Apache-2.0 */
/* Writes JSON and NDJSON. All such output goes through here. */
#ifndef ALGDATA_JSON_H
#define ALGDATA_JSON_H

#include <string>
#include <string_view>

#include "output/output.h"

namespace algdata
{

/* The text as a JSON string, in quotation marks. Bytes that are not UTF-8 become \xNN. */
std::string jsonText(std::string_view text);

/* Writes the brackets around objects: one array, or one object per line. The caller writes the members. */
class JsonObjects
{
  public:
    JsonObjects(Output& output, Format format) : out(output), lines(format == Format::Ndjson) {}

    void begin();
    void end();

    /* To be called after the last object. */
    void finish();

  private:
    Output& out;
    const bool lines;
    bool any = false;
};

} // namespace algdata

#endif
