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
        printFailure(failure);
        return Unusable;
    }
    return AllWell;
}

Status eachFileWithFields(const Options& options, const Filter& filter,
                          const std::function<Status(Source&)>& visit)
{
    const bool oneFile = isOneFile(options);
    KindsRead read;
    bool enough = false;
    const auto visitFile = [&](Source& source) {
        if (source.kind != nullptr && oneFile)
            requireFieldsOf({source.kind}, options);
        else if (source.kind != nullptr)
            read.add(*source.kind);
        const Status status = visit(source);
        enough = filter.remaining() == 0;
        return status;
    };
    const Status status =
        eachRecordFile(options, visitFile, [&enough](const std::string& /*path*/) { return !enough; });
    return worse(status, read.requireFields(options));
}

} // namespace algdata
