/* SPDX-License-Identifier: Apache-2.0 */
/* The one place that writes JSON and NDJSON. */
#ifndef ALGDATA_JSON_H
#define ALGDATA_JSON_H

#include <string>
#include <string_view>

#include "output/output.h"

namespace algdata
{

/* With its quotation marks. Of a text that is not UTF-8, what is not stands as \xNN. */
std::string jsonText(std::string_view text);

/* Objects one after the other: in an array, or one to a line. The caller writes what is in them. */
class JsonObjects
{
  public:
    JsonObjects(Output& output, Format format) : out(output), lines(format == Format::Ndjson) {}

    void begin();
    void end();

    /* After the last one. */
    void finish();

  private:
    Output& out;
    const bool lines;
    bool any = false;
};

} // namespace algdata

#endif
