/* SPDX-License-Identifier: Apache-2.0 */
/* The files that a query reads: those below the paths of the command, narrowed by what the query asks. */
#ifndef ALGDATA_SQL_FILES_H
#define ALGDATA_SQL_FILES_H

#include <list>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "reading/archive.h"
#include "reading/detect.h"
#include "reading/listing.h"
#include "reading/pathTemplate.h"
#include "reading/source.h"

namespace algdata
{

/* Where the files are, and what their paths mean. */
class QueryFiles
{
  public:
    /* Throws Failure if a path does not exist. Files have the kind of their template, otherwise `otherwise`.
     */
    QueryFiles(std::vector<std::string> paths, std::vector<PathTemplate> all, const Kind* otherwise);

    const std::vector<std::string>& roots() const { return allRoots; }
    const std::vector<PathTemplate>& templates() const { return allTemplates; }

    /* The names of all templates, each once. */
    const std::vector<std::string>& columns() const { return allColumns; }

    /* The column of each name of a template. */
    const std::vector<size_t>& columnsOf(size_t ofTemplate) const { return columnAt[ofTemplate]; }

    const Kind* kind() const { return fixed; } /* of files whose template states none; null: detect it */

  private:
    std::vector<std::string> allRoots;
    std::vector<PathTemplate> allTemplates;
    std::vector<std::string> allColumns;
    std::vector<std::vector<size_t>> columnAt;
    const Kind* fixed;
};

struct FoundFile {
    size_t root = 0; /* of the query files, from 1; paths below two of them can be equal */
    std::string path;
    std::string archive; /* empty outside of an archive */
    std::string member;
    PathTemplate::Values columns;    /* by column of the query files */
    const Kind* kind = nullptr;      /* that its template or --kind states; null: detect it */
    ArchiveReader* reader = nullptr; /* at the member, until the walk goes on; null outside of an archive */
    int64_t modified = 0;            /* of a member */
};

/* Null: any value. Otherwise sorted. */
using Allowed = std::optional<std::vector<std::string>>;

/* What a query asks of the files. */
struct FileFilter {
    std::vector<Allowed> columns; /* by column of the query files */
    Allowed paths;
    const Kind* kind = nullptr; /* leaves out files whose template states another kind; null: any */

    bool accepts(const FoundFile& file) const;
};

/* Called with a message about a file, a directory or an archive that cannot be read. */
using OnProblem = std::function<void(Status how, const std::string& path, const std::string& text)>;

/*
 * Returns the files that a filter accepts, one by one in the order of their names. A
 * directory whose name follows from the filter is opened without listing its parent.
 */
class FileWalk
{
  public:
    /* The walk ends early once `stopping` returns true. */
    /* The walk ends when `stopping` returns true; null: never. */
    FileWalk(const QueryFiles& set, FileFilter asked, OnProblem whenProblem, std::function<bool()> stopping);

    bool next(FoundFile& file);

    size_t considered() const { return seen; } /* files whose name was seen */
    size_t accepted() const { return taken; }
    size_t matched() const { return fits; } /* files that a template matches */

  private:
    /* A template whose first components match, with their values. */
    struct Alive {
        size_t which;
        PathTemplate::Values values;
    };
    struct Level {
        std::string path;
        std::string relative; /* to the root, with a slash at its end; empty for the root */
        std::vector<DirectoryEntry> entries;
        std::vector<Alive> alive; /* only used if the filter has columns */
        size_t at = 0;
    };

    void startLevel(std::string path, std::string relative, std::vector<Alive> alive);
    std::vector<Alive> aliveAtRoot() const;
    std::optional<std::vector<std::string>> onlyNames(const Level& level) const;
    std::vector<Alive> aliveAfter(const Level& level, const DirectoryEntry& entry) const;
    void startArchive(const std::string& path, const std::string& relative);
    bool nextMember(FoundFile& file);
    bool nextEntry(FoundFile& file);
    bool visit(const std::string& path, const std::string& relative, FoundFile& file);
    bool setColumns(const std::string& relative, FoundFile& file) const;

    const QueryFiles& files;
    const FileFilter filter;
    const OnProblem problem;
    const OnUnreadable unreadable;
    const std::function<bool()> stop;
    const bool narrow; /* the filter has columns */
    size_t root = 0;   /* the next one */
    size_t seen = 0;
    size_t taken = 0;
    size_t fits = 0;
    std::vector<Level> levels;
    std::unique_ptr<ArchiveReader> archive; /* that is being read */
    std::string archivePath;
    std::string archiveRelative;
};

/* A file that was read, or could not be. */
struct OpenFile {
    Source source;
    Detection detection;
    std::string failure; /* empty if it could be read */
    size_t size = 0;
    int64_t modified = 0;
};

/* Reads files, and keeps the latest ones, because a join reads the same files again. */
class FileCache
{
  public:
    std::shared_ptr<const OpenFile> open(const FoundFile& found);
    void clear();

    size_t opened() const { return reads; } /* since clear() */

  private:
    static constexpr size_t maxFiles = 256;
    static constexpr size_t maxBytes = size_t(16) << 20;
    using Entry = std::pair<std::string, std::shared_ptr<const OpenFile>>;

    void add(const std::string& path, std::shared_ptr<const OpenFile> file);

    std::list<Entry> latest; /* the latest first */
    std::unordered_map<std::string, std::list<Entry>::iterator> byPath;
    std::shared_ptr<const OpenFile> standardInput;
    size_t reads = 0;
    size_t bytes = 0;
};

} // namespace algdata

#endif
