/* SPDX-License-Identifier: Apache-2.0 */
/* Errors in the text of a query. */
#ifndef ALGDATA_QUERY_ERROR_H
#define ALGDATA_QUERY_ERROR_H

#include <optional>
#include <string>

#include "options/options.h"

namespace algdata
{

/* What is wrong with a query. */
struct QueryError {
    std::string text; /* "no column "rsi" in table score; did you mean rssi?" */
    std::string query;
    std::optional<size_t> offset; /* in the query, in bytes */
    std::string hint;             /* what to do; may be empty */
};

struct QueryFailure : Failure {
    explicit QueryFailure(QueryError what) : Failure(what.text), error(std::move(what)) {}
    QueryError error;
};

struct Word {
    std::string text;
    size_t offset;
};

/* The names in a query; texts in single quotes and comments are left out. */
std::vector<Word> wordsOf(const std::string& query);

/* Where a name is in a query, in any letter case; null if it is not in it. */
std::optional<size_t> placeOf(const std::string& word, const std::string& query);

/* The rest of the text after the prefix; null if it begins otherwise. */
std::optional<std::string> restAfter(const std::string& prefix, const std::string& text);

/* The line of the query with the error, and a caret below the place. Empty without a place. */
std::string caretText(const QueryError& error);

/* Prints the failure as messages; that of a query with the caret and what to do. */
void printFailure(const std::exception& failure);

} // namespace algdata

#endif
