/* SPDX-License-Identifier: Apache-2.0 */
#include "importing/incoming.h"

#include <fmt/format.h>

#include "importing/normalize.h"
#include "output/output.h"
#include "reading/source.h"
#include "text/wording.h"

namespace algdata
{

void Incoming::add(Record& record)
{
    Texts texts;
    record.index = added;
    normalize(of, record, rounding, texts,
              [this](const std::string& field, const std::string& why) { refuse(field, why); });
    ++added;
    if (refusals != 0)
        return;
    addRecord(image, record);
    expected += written(of, record);
}

void Incoming::refuse(const std::string& field, const std::string& why)
{
    report(fmt::format("record {}, {}: {}", added + 1, field, why));
}

void Incoming::refuse(const std::string& why)
{
    report(why);
}

void Incoming::report(const std::string& refusal)
{
    constexpr size_t maxPrinted = 20;
    if (++refusals <= maxPrinted)
        message(refusal);
    else if (refusals == maxPrinted + 1)
        message("more errors, not listed");
}

bool Incoming::isWritable()
{
    const bool single = of.shape == Shape::Index || of.cap == 1;
    if (single && added != 1)
        refuse(fmt::format("{}, expected one: a file of kind {} contains exactly one",
                           plural(added, "record"), of.name));
    if (of.shape == Shape::Devices && added > UINT8_MAX)
        refuse(fmt::format("{}, expected at most {}: the count is read in 8 bits", plural(added, "device"),
                           UINT8_MAX));
    return refusals == 0;
}

/* The module writes a temporary file; it must contain exactly what algdata expects. */
std::string Incoming::text()
{
    const TemporaryFile temporary;
    if (!storeImage(image, temporary.path()))
        throw OutputFailure(fmt::format("{} failed", of.writer()));
    Source source;
    readSource(temporary.path(), source);
    if (source.bytes != writtenPreamble(of, added) + expected)
        throw OutputFailure(fmt::format("{} did not write the records unchanged", of.writer()));
    return std::move(source.bytes);
}

} // namespace algdata
