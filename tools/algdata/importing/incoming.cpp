/* SPDX-License-Identifier: Apache-2.0 */
#include "importing/incoming.h"

#include <fmt/format.h>

#include "importing/settle.h"
#include "output/output.h"
#include "output/wording.h"
#include "reading/source.h"

namespace algdata
{

void Incoming::take(Record& record)
{
    Texts texts;
    record.index = taken;
    settle(of, record, rounding, texts,
           [this](const std::string& field, const std::string& why) { refuse(field, why); });
    ++taken;
    if (refusals != 0)
        return;
    addRecord(image, record);
    expected += written(of, record);
}

void Incoming::refuse(const std::string& field, const std::string& why)
{
    report(fmt::format("record {}, {}: {}", taken + 1, field, why));
}

void Incoming::refuse(const std::string& why)
{
    report(why);
}

void Incoming::report(const std::string& refusal)
{
    constexpr size_t most = 20;
    if (++refusals <= most)
        message(refusal);
    else if (refusals == most + 1)
        message("and more, which are not listed");
}

bool Incoming::allFit()
{
    const bool single = of.shape == Shape::Index || of.cap == 1;
    if (single && taken != 1)
        refuse(fmt::format("{}, expected one: a file of kind {} holds exactly one", plural(taken, "record"),
                           of.name));
    if (of.shape == Shape::Devices && taken > UINT8_MAX)
        refuse(fmt::format("{}, expected at most {}: the count is read in 8 bits", plural(taken, "device"),
                           UINT8_MAX));
    return refusals == 0;
}

/* The module writes to a file aside. */
std::string Incoming::text()
{
    const TemporaryFile aside;
    if (!storeImage(image, aside.path()))
        throw OutputFailure(fmt::format("{} failed", of.writer()));
    Source source;
    readSource(aside.path(), source);
    if (source.bytes != writtenPreamble(of, taken) + expected)
        throw OutputFailure(fmt::format("{} did not write these records as they are", of.writer()));
    return std::move(source.bytes);
}

} // namespace algdata
