/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Parses the values of --where, --sort, --columns, --head and --limit. Throws Failure for a
 * malformed value, with the place of the error and what was expected there.
 */
#ifndef ALGDATA_ARGUMENTS_H
#define ALGDATA_ARGUMENTS_H

#include <string>
#include <vector>

#include "options/options.h"

namespace algdata
{

/* Throws "--where 'rssi<': expected a value at character 6, found nothing". */
[[noreturn]] void throwMalformed(const std::string& option, const std::string& text, size_t at,
                                 const std::string& expected);

/* The names that conditionFrom() must know. */
struct ColumnNames {
    std::vector<std::string> fields; /* a value that begins with one is an expression */
    std::vector<std::string> others; /* a condition on one is an expression */
};

/* "rssi<40", with or without blanks around the operator. Anything else is an expression. */
Condition conditionFrom(const std::string& text, const ColumnNames& names = {});

/* The value of a condition as a whole number. Throws Failure if it is none. */
int64_t wholeNumberOf(const Condition& condition);

/* Throws Failure unless the test is = or != and the value is one of these words. No words: any value. */
void requireWord(const Condition& condition, const std::vector<std::string>& words);

/* The names in "a,b,c". */
std::vector<std::string> namesFrom(const std::string& option, const std::string& text);

/* The fields of "a,-b"; "-" means descending. Anything else is an expression. */
std::vector<SortKey> sortKeysFrom(const std::string& text);

/* The value of an option as a whole number. */
size_t countFrom(const std::string& option, const std::string& text);

/* The value of an option as a number of seconds above 0, such as 0.5. */
double secondsFrom(const std::string& option, const std::string& text);

} // namespace algdata

#endif
