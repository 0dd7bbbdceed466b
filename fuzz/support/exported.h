/* SPDX-License-Identifier: Apache-2.0 */
/* For the fuzz targets of algdata. */
#ifndef FUZZ_EXPORTED_H
#define FUZZ_EXPORTED_H

#include <string>

#include "printing/recordWriter.h"
#include "query/query.h"

/* What `algdata export` writes for a source. Throws algdata::Failure if the module's reader refuses it. */
inline std::string exported(const algdata::Source& source, const algdata::Options& options)
{
    std::string text;
    algdata::Output out(text);
    algdata::RecordWriter writer(out, options);
    writer.startFile(source);
    algdata::Filter filter(options);
    algdata::eachRecord(source, filter, [&](const algdata::Record& record) { writer.put(record); });
    writer.finish();
    out.close(algdata::AllWell);
    return text;
}

#endif
