/* SPDX-License-Identifier: Apache-2.0 */
/* Which files are snapshots of the same thing at different times: by their paths. */
#ifndef ALGDATA_SNAPSHOTS_H
#define ALGDATA_SNAPSHOTS_H

#include <optional>
#include <string>
#include <vector>

#include "options/options.h"
#include "reading/pathTemplate.h"

namespace algdata
{

/* What the path of a file says about it. */
struct FilePlace {
    const Kind* kind = nullptr;      /* of the template; null if it states none */
    std::vector<std::string> values; /* by the columns of SnapshotPaths */
    std::string series;              /* files of the same series have the same snapshots */
    std::string snapshot;
};

/*
 * Without --path, a snapshot is the directory of a file, and files of the same name belong
 * together. With --path, it is the part of the path that --order names, or {snapshot}; the
 * other names are columns, and files with the same values belong together. With --order
 * time and without {snapshot}, each file is a snapshot.
 */
class SnapshotPaths
{
  public:
    /* Throws Failure if a template or the order is not usable. */
    explicit SnapshotPaths(const Options& options);

    /* "file", or the names of the templates except that of the snapshot. */
    const std::vector<std::string>& columns() const { return names; }

    /* Whether the snapshots are ordered by the times of their files, not by their names. */
    bool byTime() const { return times; }

    /* Null if no template matches. The first one that matches counts. */
    std::optional<FilePlace> placeOf(const std::string& name) const;

  private:
    void requireOrder(const std::string& order);
    FilePlace placeIn(const PathTemplate& like, const PathTemplate::Values& values,
                      const std::string& path) const;

    std::vector<PathTemplate> templates;
    std::vector<std::string> names;
    std::string snapshotName; /* the part of the path; empty if each file is a snapshot */
    bool times = false;
};

} // namespace algdata

#endif
