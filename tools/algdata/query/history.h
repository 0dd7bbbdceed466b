/* SPDX-License-Identifier: Apache-2.0 */
/* The values of a field over time: one line per key. */
#ifndef ALGDATA_HISTORY_H
#define ALGDATA_HISTORY_H

#include <ctime>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "query/fields.h"
#include "query/snapshots.h"
#include "records/records.h"

namespace algdata
{

/* The field of --field and the fields of --by, looked up in their kind. */
struct HistoryField {
    struct KeyColumn {
        bool ofEntries; /* in the layout of the entries */
        size_t column;
    };
    const Kind* kind;
    bool ofEntries;             /* the field is in the entries of a record */
    Pick pick;                  /* its name is "bridging.bridgingRssi" */
    std::vector<KeyColumn> key; /* of --by, or of the kind's key */

    bool isMac() const { return pick.field->type == Type::Mac; }
    const Layout& layout() const { return ofEntries ? kind->entry : kind->head; }
    const Column& columnOf(const KeyColumn& one) const
    {
        return (one.ofEntries ? kind->entry : kind->head).columns[one.column];
    }

    /* The name with the element of one of the columns: "bridging.bridgingRssi.0". */
    std::string nameOf(size_t column) const;
};

/* Throws Failure if --field or --by names no field, or if --kind is another kind. */
HistoryField historyFieldFrom(const Options& options);

/*
 * Collects values. Its memory grows with the number of values and lines, so there is a limit
 * for both together.
 */
class History
{
  public:
    static constexpr size_t largest = 2'000'000; /* values, gaps included */

    struct Value {
        uint32_t snapshot; /* first the number in the order of reading, after finish() in that of time */
        double number;     /* for a MAC its index; not a number if it is damaged or missing */
    };

    /* The snapshots that several lines share. */
    struct Series {
        std::vector<std::string> snapshots; /* their names; after finish() in the order of time */
        std::vector<size_t> mostValues;     /* how many values a line has at most, by snapshot */
        std::map<std::string, uint32_t> numbers;
        std::vector<timespec> times; /* of the newest file */
    };

    struct Line {
        const std::string* id; /* the columns of the path, the key and the element, each with a NUL */
        size_t series;
        std::vector<Value> values;
    };

    explicit History(const HistoryField& ofField) : field(ofField) {}

    /* Begins a file. A file without records is a snapshot too. */
    void startFile(const FilePlace& place, const timespec& time);

    /* Adds the values of a record or of its entries. Throws TooMuch beyond the limit. */
    void add(const Record& record);

    /* Orders the snapshots, the lines and their values. Throws TooMuch if the gaps exceed the limit. */
    void finish(bool byTime);

    const std::vector<Line>& all() const { return lines; }
    const Series& seriesOf(const Line& line) const { return series[line.series]; }
    const std::vector<Series>& allSeries() const { return series; }
    size_t damaged() const { return bad; }

    /* "bridging.bridgingRssi.0" */
    std::string fieldOf(const Line& line) const;

    /* The text of a value; empty for a gap. */
    std::string textOf(double number) const;

    /* It always ends the command. */
    struct TooMuch : std::runtime_error {
        using std::runtime_error::runtime_error;
    };

  private:
    void addCells(const Record& record, const std::vector<Token>& cells);
    double numberOf(Token value);
    Line& lineOf(const std::string& id);

    const HistoryField& field;
    std::vector<Series> series;
    std::map<std::string, size_t> seriesNumbers;
    std::vector<Line> lines;
    std::unordered_map<std::string, size_t> lineNumbers;
    std::vector<std::string> macs;
    std::unordered_map<std::string, size_t> macNumbers;
    std::string fileId; /* the columns of the path of the current file */
    size_t currentSeries = 0;
    uint32_t currentSnapshot = 0;
    size_t count = 0; /* of values */
    size_t bad = 0;
};

/* The columns of the path, then the key. */
std::vector<std::string> cellsOf(const History::Line& line);

} // namespace algdata

#endif
