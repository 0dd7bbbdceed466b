/* SPDX-License-Identifier: Apache-2.0 */
/* Returns the rows of a table one by one, over all files that a query asks for. */
#ifndef ALGDATA_SQL_CURSOR_H
#define ALGDATA_SQL_CURSOR_H

#include <deque>
#include <memory>
#include <optional>

#include "checking/faults.h"
#include "mesh/audit.h"
#include "reading/damage.h"
#include "sql/engine.h"
#include "sql/meshes.h"
#include "sqlite/value.h"
#include "view/view.h"

namespace algdata
{

/* What one scan of a table needs. */
struct Scan {
    FileFilter filter;
    std::shared_ptr<const OpenFile> content; /* instead of files; null for files */
    std::optional<int64_t> record;           /* only the record of this index in each file */
    bool needsContent = true;                /* false if only paths are in use */
};

class TableCursor
{
  public:
    TableCursor(Engine& shared, const SqlTable& of) : engine(shared), table(of) {}
    ~TableCursor();
    TableCursor(const TableCursor&) = delete;
    TableCursor& operator=(const TableCursor&) = delete;

    /* Begins a scan and goes to its first row. */
    void start(Scan asked);
    void next();
    bool atEnd() const { return ended; }

    /*
     * Identifies the row in all scans of the table, because SQLite makes one scan for each
     * side of an OR and leaves out the rows that it has already. It is a hash of 64 bits.
     */
    int64_t id() const;

    /* Values of the row: a part of the path, a column of the table, a hidden column. */
    SqlValue pathValue(size_t column) const;
    SqlValue ownValue(size_t column);
    SqlValue hiddenValue(Hidden column) const;

  private:
    void finishScan();
    bool nextFile();
    bool nextMesh();
    bool nextError();
    bool findFile();
    void reportUnreadable(const std::string& path, const std::string& text);
    void startRecords();
    bool nextRecord();
    bool nextRow();
    void endFile();
    bool isWithoutKind() const;
    void countRecords();
    const char* statusText() const;
    SqlValue fieldValue(const SqlColumn& column);
    SqlValue ownPath() const;
    SqlValue fileValue(size_t column);
    SqlValue findingValue(size_t column) const;
    SqlValue errorValue(size_t column);
    SqlValue deviceValue(size_t column);
    SqlValue conflictValue(size_t column);
    SqlValue stored(std::string text);

    Engine& engine;
    const SqlTable& table;
    Scan scan;
    std::unique_ptr<FileWalk> walk;
    FoundFile file;
    FoundFile ahead; /* of the table of errors: the next file, after the problems on the way to it */
    bool isAhead = false;
    std::deque<std::pair<std::string, std::string>> problems; /* path and message */
    std::shared_ptr<const OpenFile> content;                  /* null while only paths are in use */
    std::unique_ptr<View> view;
    std::optional<Damage> damage;
    Record record;
    size_t part = 0;
    size_t parts = 0; /* of the record, or findings of the file */
    Faults faults;
    std::unique_ptr<MeshWalk> meshes;
    std::unique_ptr<DirectoryMesh> home;
    std::vector<MeshFinding> conflicts;
    std::optional<size_t> records; /* of the file, once counted */
    size_t entries = 0;
    DeviceNames::const_iterator name;
    std::string buffer;
    bool ended = true;
};

} // namespace algdata

#endif
