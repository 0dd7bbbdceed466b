/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The texts of --where, --sort, --columns and --head, taken apart. What is
 * malformed throws Failure, which shows the place and what was expected there.
 */
#ifndef ALGDATA_ARGUMENTS_H
#define ALGDATA_ARGUMENTS_H

#include <string>
#include <vector>

#include "commandline/options.h"

namespace algdata
{

/* "--where 'rssi<': expected a number at character 6, where it ends" */
[[noreturn]] void malformed(const std::string& option, const std::string& text, size_t at,
                            const std::string& expected);

/* "rssi<40", with or without blanks around the operator. */
Condition conditionFrom(const std::string& text);

/* The value of a condition on whole numbers. */
int64_t wholeNumberOf(const Condition& condition);

/* The value of a condition on one of several words. */
void requireWord(const Condition& condition, const std::vector<std::string>& words);

/* Fields separated by commas; none stands twice. */
std::vector<std::string> columnsFrom(const std::string& text);

/* The same, with "-field" for descending. */
std::vector<SortKey> sortKeysFrom(const std::string& text);

size_t countFrom(const std::string& option, const std::string& text);

} // namespace algdata

#endif
