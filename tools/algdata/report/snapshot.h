/* SPDX-License-Identifier: Apache-2.0 */
/* What a report shows of a home at one time: its mesh, its records and their findings. */
#ifndef ALGDATA_SNAPSHOT_H
#define ALGDATA_SNAPSHOT_H

#include <array>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "checking/rules.h"
#include "mesh/mesh.h"
#include "options/options.h"
#include "reading/detect.h"

namespace algdata
{

/* A table of a page has at most so many rows, and of a file at most so many records are kept. */
inline constexpr size_t maxRows = 2000;

/* The texts of a record, by column; a missing value is empty. */
struct KeptRecord {
    size_t line;
    std::vector<std::string> cells;
    std::vector<std::vector<std::string>> entries;
};

struct KeptFile {
    size_t index; /* in Mesh::files */
    const Kind* kind;
    size_t records = 0; /* all, also those that are not kept */
    std::vector<KeptRecord> kept;
};

/* The values of a record or an entry, by the names of their fields. */
class Values
{
  public:
    Values(const Layout& of, const std::vector<std::string>& texts) : layout(of), cells(texts) {}

    /* Empty if it is missing. Only for a field that the layout has. */
    const std::string& text(const char* name, int element = 0) const;

    /* Null if it is missing or damaged. */
    std::optional<double> number(const char* name, int element = 0) const;

    /* The same, as the module's reader changes it. */
    std::optional<double> loaded(const char* name, int element = 0) const;

    /* noMac if it is missing or damaged. */
    Mac mac(const char* name) const;

    int count(const char* name) const { return field(name).count; }

  private:
    const Field& field(const char* name) const;

    const Layout& layout;
    const std::vector<std::string>& cells;
};

/* A finding of `check` or `audit`. */
struct PageFinding {
    Rule rule;
    std::string file;
    size_t line;
    std::string field;
    std::string text;
    std::string also;
    size_t times = 1; /* more for findings of one rule that are only counted */
};

struct Snapshot {
    std::string name;
    std::string id; /* the beginning of the ids of its elements: "s1" */
    Mesh mesh;
    std::vector<KeptFile> files;
    std::vector<PageFinding> findings;

    size_t count(Severity severity) const;

    /* The name that the user gave to the device or station, otherwise its MAC. */
    std::string label(Mac mac) const;

    /* The name and the MAC. */
    std::string longLabel(Mac mac) const;

    std::string deviceId(Mac mac) const { return id + "-d-" + macText(mac); }
    std::string recordId(const KeptFile& file, size_t line) const;

    /* The files of a kind: of the present, or of the past. */
    std::vector<const KeptFile*> filesOf(const char* kind, bool past) const;

    const MeshFile& meshFile(const KeptFile& file) const { return mesh.files[file.index]; }
};

/* A home, at one time or at several. */
struct ReportedHome {
    std::string name;
    std::vector<Snapshot> snapshots; /* the oldest first */
    bool complete = true;            /* false if an input could not be read */
};

/*
 * Reads the record files of the options: each directory is a snapshot of one home, and
 * their names have the order of time. Files are named from the home's directory on, so
 * that a report does not depend on where it is made. With `anonymous`, names are left out.
 */
ReportedHome readHome(const Options& options, bool anonymous);

} // namespace algdata

#endif
