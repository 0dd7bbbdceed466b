/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALGDATA_RECORD_ROWS_H
#define ALGDATA_RECORD_ROWS_H

#include <functional>
#include <string>
#include <vector>

#include "reading/source.h"
#include "sqlite/rowTable.h"
#include "view/view.h"

namespace algdata
{

/*
 * The records of a kind as rows for SQLite. The columns are those of a CSV, and an array as a
 * whole. A record is one row, or one per part: per entry, or per element of its arrays.
 */
class RecordRows : public RowSource
{
  public:
    RecordRows(const Kind& of, bool isLoaded);

    const std::vector<RowColumn>& columns() const { return all; }

    /* The columns of a field: its elements if it is an array. Empty if the kind has none of this name. */
    std::vector<size_t> columnsNamed(const std::string& name) const;

    /* Whether the value differs between the parts of a record. */
    bool isOfParts(size_t column) const { return origins[column].ofParts; }
    bool isOfEntries(size_t column) const { return origins[column].from == From::Entry; }

    /* Whether it is the kind or the source, which all records of a file share. */
    bool isOfFile(size_t column) const { return origins[column].from <= From::Source; }

    /* The field of a column; null if it is none. */
    const Field* fieldOf(size_t column) const { return origins[column].field; }

    /* "entry", or "band" and the like; empty if the records have no parts. */
    const std::string& partName() const { return part; }

    /* The rows are those of a view. Each record that is read is passed to `reads`. */
    void show(const Source& source, View& view, bool withParts, std::function<void(const Record&)> reads);

    /* The rows are those of a record: of all parts, of one part, or only one row. */
    enum : size_t { Whole = SIZE_MAX, AllParts = SIZE_MAX - 1 };
    void show(const Source& source, const Record& record, size_t which);

    Record& record() { return current; }

    void first() override;
    void next() override;
    bool atEnd() const override { return ended; }
    int64_t id() const override { return static_cast<int64_t>(shown->place); }
    SqlValue value(size_t column) override;

  private:
    enum class From : uint8_t { Kind, Source, Line, Record, Part, Head, Entry };
    struct Origin {
        From from;
        bool ofParts = false;
        const Field* field = nullptr;
        std::vector<size_t> places = {}; /* in the layout; several for an array as a whole */
    };
    void add(const std::string& name, const std::string& type, Origin origin);
    void addLayout(const Layout& layout, From where);
    size_t partsOf(const Record& record) const;
    void nextRecord();

    const Kind& kind;
    const bool loaded;
    std::string part;
    size_t elements = 1; /* of the longest array */
    std::vector<RowColumn> all;
    std::vector<Origin> origins;

    std::string sourceName;
    View* from = nullptr; /* null: one record */
    std::function<void(const Record&)> whenRead;
    Record current;                /* of the view */
    const Record* shown = nullptr; /* the record of the row */
    bool parted = false;
    size_t begin = 0; /* the parts of one record */
    size_t at = 0;
    size_t end = 0;
    bool ended = true;
};

/* The columns of all kinds that are no fields and do not name the file, such as "_line" and "entry". */
std::vector<std::string> otherColumns();

} // namespace algdata

#endif
