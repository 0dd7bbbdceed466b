/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Lets algdata check, export and compare any bytes as a file. The last byte chooses
 * the kind, or lets the content determine it; the byte before it chooses the view and
 * the format of the output. The other bytes are the file.
 */
#include <cstdint>
#include <cstdlib>

#include <nlohmann/json.hpp>

#include "checking/rules.h"
#include "query/changes.h"
#include "reading/detect.h"
#include "support/exported.h"
#include "view/view.h"

using namespace algdata;

namespace
{

void expect(bool holds)
{
    if (!holds)
        abort();
}

void testCheck(const Source& source)
{
    const Faults faults = findFaults(*source.kind, source.bytes);
    for (const Finding& finding : faults.kept)
        expect(finding.line > 0 && finding.column > 0);
}

void testExport(const Source& source, const Options& options)
{
    const std::string text = exported(source, options);
    expect(options.format != Format::Json || nlohmann::json::accept(text));
}

/* A file does not differ from itself. */
void testComparison(const Source& source, const Options& options)
{
    View one(source, options.loaded);
    View other(source, options.loaded);
    const Changes changes = changesBetween(*source.kind, one, other);
    expect(changes.removed.empty() && changes.added.empty() && changes.changed.empty());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 2)
        return 0;
    const uint8_t kindChoice = data[size - 1];
    const uint8_t choice = data[size - 2];
    Source source;
    source.name = "fuzz";
    source.bytes.assign(reinterpret_cast<const char*>(data), size - 2);
    source.bytes.shrink_to_fit(); /* so that the address sanitizer finds a read past the end */
    source.kind = kindChoice < kinds().size() ? &kinds()[kindChoice] : detectKind(source.bytes).kind;
    if (source.kind == nullptr)
        return 0;
    Options options;
    options.format = choice % 3 == 0 ? Format::Json : choice % 3 == 1 ? Format::Ndjson : Format::Csv;
    options.loaded = choice >= 128;
    testCheck(source);
    try {
        testExport(source, options);
        testComparison(source, options);
    } catch (const Failure&) {
        expect(options.loaded); /* the module's reader refuses the file */
    }
    return 0;
}
