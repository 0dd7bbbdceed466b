/* SPDX-License-Identifier: Apache-2.0 */
/* The options of a command, parsed. */
#ifndef ALGDATA_OPTIONS_H
#define ALGDATA_OPTIONS_H

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "records/kinds.h"

namespace algdata
{

/* Text is the default; Lines is the text of `watch` for a pipe too. */
enum class Format { Text, Table, Json, Ndjson, Csv, Markdown, Lines, Record, Sqlite, Dot, Sarif };
enum class Color { Auto, Always, Never };

/* The condition of one --where: a field, a test and a value, or any other SQL expression. */
struct Condition {
    enum Test { Equal, Unequal, Less, LessOrEqual, Greater, GreaterOrEqual };
    std::string text;  /* the whole condition */
    std::string field; /* empty for an expression */
    Test test = Equal;
    std::string value;
    size_t at = 0; /* where the value begins in the text */

    bool isExpression() const { return field.empty(); }
};

/* One field of --sort, or terms of ORDER BY. */
struct SortKey {
    std::string field;
    bool descending = false;
    std::string expression = {}; /* empty for a field */
};

/* The options of `algdata sql`. */
struct SqlOptions {
    std::optional<std::string> query;  /* null: ask for queries, or read one from standard input */
    std::optional<std::string> schema; /* of this table, of all if empty */
    std::optional<std::string> named;  /* the question of this name; the list of all if empty */
    std::optional<size_t> maxRows;
    std::optional<double> timeout; /* seconds */
    bool jsonErrors = false;
};

struct Options {
    std::vector<std::string> paths;
    const Kind* kind = nullptr; /* null: detect it */
    bool loaded = false;
    Format format = Format::Text;
    std::vector<std::string> columns; /* empty: all */
    std::vector<Condition> where;
    std::vector<SortKey> sort;
    std::optional<size_t> head;  /* results of each file */
    std::optional<size_t> limit; /* results of all files */
    Color color = Color::Auto;
    std::string output; /* empty: standard output */
    std::string explain;
    bool explaining = false;
    bool notes = false;
    bool summary = false;
    std::string failOn = "error";
    std::string baseline;      /* file of known findings; empty: none */
    std::string writeBaseline; /* file to write all findings to; empty: none */
    bool pager = true;
    bool round = false;                 /* import: floats to two decimals */
    bool redact = false;                /* report: replace MACs and names */
    bool allowEmpty = false;            /* import: accept an input without records */
    std::string field;                  /* history: whose values */
    std::vector<std::string> by;        /* history: one line for each value of these fields; empty: the key */
    std::string order;                  /* history: the part of the path, or "time"; may be empty */
    std::vector<std::string> templates; /* of --path */
    std::string configuration;          /* of --config; empty: the one beside the paths */
    SqlOptions sql;
};

/* Exit statuses. */
enum Status { AllWell = 0, Findings = 1, Unusable = 2 };

/* Wrong usage or unreadable input. If nobody catches it, the command ends with status 2. */
struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/* Results could not be written. It always ends the command, with status 2. */
struct OutputFailure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

} // namespace algdata

#endif
