/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Parses the values of --where, --sort, --columns and --head. Throws Failure for a
 * malformed value, with the place of the error and what was expected there.
 */
#ifndef ALGDATA_ARGUMENTS_H
#define ALGDATA_ARGUMENTS_H

#include <string>
#include <vector>

#include "commandline/options.h"

namespace algdata
{

/* Throws "--where 'rssi<': expected a value at character 6, found nothing". */
[[noreturn]] void throwMalformed(const std::string& option, const std::string& text, size_t at,
                                 const std::string& expected);

/* "rssi<40", with or without blanks around the operator. */
Condition conditionFrom(const std::string& text);

/* The value of a condition as a whole number. Throws Failure if it is none. */
int64_t wholeNumberOf(const Condition& condition);

/* Throws Failure unless the test is = or != and the value is one of these words. No words: any value. */
void requireWord(const Condition& condition, const std::vector<std::string>& words);

/* The names in "a,b,c". */
std::vector<std::string> namesFrom(const std::string& option, const std::string& text);

/* The fields of "a,-b"; "-" means descending. */
std::vector<SortKey> sortKeysFrom(const std::string& text);

/* The value of an option as a whole number. */
size_t countFrom(const std::string& option, const std::string& text);

/* The value of an option as a number of seconds above 0, such as 0.5. */
double secondsFrom(const std::string& option, const std::string& text);

} // namespace algdata

#endif
