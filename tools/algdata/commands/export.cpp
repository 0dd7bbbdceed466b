/* SPDX-License-Identifier: Apache-2.0 */
/* `algdata export`: the records as JSON, NDJSON or CSV. */
#include "commands/commands.h"
#include "output/output.h"
#include "output/recordWriter.h"
#include "query/query.h"
#include "reading/walk.h"

namespace algdata
{

namespace
{

Status exportSource(RecordWriter& writer, Source& source, const Options& options)
{
    source.kind = kindOf(source, options);
    if (source.kind == nullptr)
        return Findings;
    if (selectionFor(*source.kind, options).empty())
        return AllWell;
    bool started = false;
    try {
        eachRecord(source, options, [&](const Record& record) {
            if (!started)
                writer.startFile(source);
            started = true;
            writer.put(record);
        });
    } catch (const Failure& failure) {
        message(failure.what());
        return Findings;
    }
    return started ? writer.endFile() : AllWell;
}

} // namespace

Status runExport(Options options)
{
    if (options.format == Format::Text)
        options.format = Format::Json;
    if (options.format == Format::Table || options.format == Format::Markdown)
        return runShow(std::move(options));
    requireFields(options);
    Output out(options);
    RecordWriter writer(out, options);
    const Status status =
        eachSource(options, [&](Source& source) { return exportSource(writer, source, options); });
    writer.finish();
    out.close(status);
    return status;
}

} // namespace algdata
