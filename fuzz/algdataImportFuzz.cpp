/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Imports any bytes as JSON, NDJSON or CSV. The last byte chooses the kind; the byte
 * before it chooses the format and whether floats may be rounded. The other bytes are
 * the input. If the import accepts them, its file is exported and imported again,
 * which must result in the same file.
 */
#include <cstdint>
#include <cstdlib>

#include "importing/readers.h"
#include "support/exported.h"

using namespace algdata;

namespace
{

void read(Format format, const std::string& text, Incoming& in)
{
    if (format == Format::Json)
        readJson(text, "fuzz", in);
    else if (format == Format::Ndjson)
        readNdjson(text, "fuzz", in);
    else
        readCsv(text, "fuzz", in);
}

/* The record file; empty if the import refuses the input. */
std::string imported(const Kind& kind, Format format, const std::string& text, bool round)
{
    try {
        Incoming in(kind, round);
        read(format, text, in);
        return in.isWritable() ? in.text() : "";
    } catch (const Failure&) {
        return "";
    }
}

std::string exportedFile(const Kind& kind, Format format, const std::string& file)
{
    Source source;
    source.name = "fuzz";
    source.kind = &kind;
    source.bytes = file;
    Options options;
    options.format = format;
    return exported(source, options);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 2)
        return 0;
    const Kind& kind = kinds()[data[size - 1] % kinds().size()];
    if (kind.writer() == nullptr)
        return 0;
    const uint8_t choice = data[size - 2];
    const Format format = choice % 3 == 0 ? Format::Json : choice % 3 == 1 ? Format::Ndjson : Format::Csv;
    const std::string text(reinterpret_cast<const char*>(data), size - 2);
    const std::string file = imported(kind, format, text, choice >= 128);
    if (!file.empty() && imported(kind, format, exportedFile(kind, format, file), false) != file)
        abort();
    return 0;
}
