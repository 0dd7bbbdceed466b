/* SPDX-License-Identifier: Apache-2.0 */
#include "query/visit.h"

#include <algorithm>

#include "output/output.h"

namespace algdata
{

void KindsRead::add(const Kind& kind)
{
    if (std::find(kinds.begin(), kinds.end(), &kind) == kinds.end())
        kinds.push_back(&kind);
}

Status KindsRead::requireFields(const Options& options) const
{
    if (kinds.empty())
        return AllWell;
    try {
        requireFieldsOf(kinds, options);
    } catch (const Failure& failure) {
        message(failure.what());
        return Unusable;
    }
    return AllWell;
}

Status eachFileWithFields(const Options& options, const std::function<Status(Source&)>& visit)
{
    const bool oneFile = isOneFile(options);
    KindsRead read;
    const Status status = eachRecordFile(options, [&](Source& source) {
        if (source.kind != nullptr && oneFile)
            requireFieldsOf({source.kind}, options);
        else if (source.kind != nullptr)
            read.add(*source.kind);
        return visit(source);
    });
    return worse(status, read.requireFields(options));
}

} // namespace algdata
