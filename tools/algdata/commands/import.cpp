/* SPDX-License-Identifier: Apache-2.0 */
/* `algdata import`: reads records from JSON, NDJSON or CSV; the module writes them. */
#include <fmt/format.h>

#include "commands/commands.h"
#include "importing/readers.h"
#include "output/output.h"
#include "reading/disguise.h"
#include "reading/source.h"
#include "text/wording.h"

namespace algdata
{

namespace
{

/* Detects the format by the first character. After "{" it is JSON if the whole text is one object. */
Format formatOf(std::string_view text)
{
    const size_t start = text.find_first_not_of(" \t\r\n");
    const char first = start == std::string_view::npos ? '\0' : text[start];
    if (first == '[')
        return Format::Json;
    if (first != '{')
        return Format::Csv;
    return isJson(text) ? Format::Json : Format::Ndjson;
}

void read(const Source& source, Format format, Incoming& in)
{
    const std::string_view text = withoutMark(source.bytes);
    switch (format == Format::Text ? formatOf(text) : format) {
    case Format::Json:
        return readJson(text, source.name, in);
    case Format::Ndjson:
        return readNdjson(text, source.name, in);
    case Format::Csv:
        return readCsv(text, source.name, in);
    default:
        throw Failure("import: expected --format json, ndjson or csv");
    }
}

} // namespace

Status runImport(Options options)
{
    if (options.kind == nullptr)
        throw Failure("import: expected --kind with one of " + kindNames());
    const Kind& kind = *options.kind;
    if (kind.writer() == nullptr)
        throw Failure(
            fmt::format("cannot write {} files: the module has no writer for this kind", kind.name));
    Source source;
    readSource(options.paths[0], source);
    Incoming in(kind, options.round);
    read(source, options.format, in);
    if (in.count() == 0 && !in.refused() && !options.allowEmpty)
        throw Failure(source.name + " has no records; --allow-empty creates an empty file");
    if (!in.isWritable()) {
        message("nothing was written");
        return Findings;
    }
    Output out(options);
    out.put(in.text());
    out.close(AllWell);
    return AllWell;
}

} // namespace algdata
