/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Runs check and export on arbitrary bytes. The first byte chooses the format of the
 * output and the kind, or lets the content determine the kind. The other bytes are the
 * file. For any bytes, an export to JSON has to be valid JSON.
 */
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include <nlohmann/json.hpp>

#include "checking/rules.h"
#include "output/recordWriter.h"
#include "reading/detect.h"

using namespace algdata;

namespace
{

std::string exported(const Source& source, const Options& options)
{
    std::string text;
    Output out(text);
    RecordWriter writer(out, options);
    writer.startFile(source);
    eachRecord(source, options, [&](const Record& record) { writer.put(record); });
    writer.finish();
    out.close(AllWell);
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    /* A buffer of exactly this size, so that the address sanitizer finds a read past its end. */
    Source source;
    source.name = "fuzz";
    source.bytes.assign(reinterpret_cast<const char*>(data) + 1, size - 1);
    source.bytes.shrink_to_fit();
    const size_t choice = data[0] / 3;
    source.kind = choice < kinds().size() ? &kinds()[choice] : detectKind(source.bytes).kind;
    if (source.kind == nullptr)
        return 0;
    for (const Finding& finding : findFaults(*source.kind, source.bytes))
        if (finding.line == 0 || finding.column == 0)
            abort();
    Options options;
    options.format = data[0] % 3 == 0 ? Format::Json : data[0] % 3 == 1 ? Format::Ndjson : Format::Csv;
    const std::string text = exported(source, options);
    if (options.format == Format::Json && !nlohmann::json::accept(text))
        abort();
    return 0;
}
