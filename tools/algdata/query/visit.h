/* SPDX-License-Identifier: Apache-2.0 */
/* Visits the record files of a command whose options name fields. */
#ifndef ALGDATA_VISIT_H
#define ALGDATA_VISIT_H

#include "query/fields.h"
#include "query/filter.h"
#include "reading/walk.h"

namespace algdata
{

/* The kinds of the files that a command has read. */
class KindsRead
{
  public:
    void add(const Kind& kind);

    /*
     * Returns Unusable if none of the kinds has a field that --columns, --where or --sort names, and
     * reports it. Without a kind, all is well.
     */
    Status requireFields(const Options& options) const;

  private:
    std::vector<const Kind*> kinds;
};

/*
 * Visits record files as eachRecordFile() does, but the status is also Unusable if none of them has a
 * field that the options name. If the only file lacks it, the file is not visited. After the
 * records that --limit allows, no other file is read.
 */
Status eachFileWithFields(const Options& options, const Filter& filter,
                          const std::function<Status(Source&)>& visit);

} // namespace algdata

#endif
