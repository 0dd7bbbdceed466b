/* SPDX-License-Identifier: Apache-2.0 */
/* What the user asked for. */
#ifndef ALGDATA_OPTIONS_H
#define ALGDATA_OPTIONS_H

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "reading/kinds.h"

namespace algdata
{

enum class Format { Text, Table, Json, Ndjson, Csv, Markdown };
enum class Color { Auto, Always, Never };

/* One --where. */
struct Condition {
    enum Test { Equal, Unequal, Less, LessOrEqual, Greater, GreaterOrEqual };
    std::string text; /* the whole of it */
    std::string field;
    Test test = Equal;
    std::string value;
    size_t at = 0; /* where the value begins */
};

/* One field of --sort. */
struct SortKey {
    std::string field;
    bool descending = false;
};

struct Options {
    std::vector<std::string> paths;
    const Kind* kind = nullptr; /* null: found from the content */
    bool loaded = false;
    Format format = Format::Text;
    std::vector<std::string> columns; /* empty: all */
    std::vector<Condition> where;
    std::vector<SortKey> sort;
    std::optional<size_t> head;
    Color color = Color::Auto;
    std::string output; /* empty: standard output */
    std::string explain;
    bool explaining = false;
    bool notes = false;
    bool pager = true;
    bool round = false;      /* import: floats to two decimals */
    bool allowEmpty = false; /* import: a file of no records */
};

/* Exit statuses. */
enum Status { AllWell = 0, Findings = 1, Unusable = 2 };

/* Bad usage or unreadable input: ends the command with status 2. */
struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/* Results that could not be written: nothing goes on after it. */
struct OutputFailure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

} // namespace algdata

#endif
