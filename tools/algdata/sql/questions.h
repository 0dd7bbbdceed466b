/* SPDX-License-Identifier: Apache-2.0 */
/* Queries that have a name: `algdata sql --named NAME`. */
#ifndef ALGDATA_SQL_QUESTIONS_H
#define ALGDATA_SQL_QUESTIONS_H

#include <string>
#include <vector>

namespace algdata
{

struct Question {
    const char* name;
    const char* asks;
    std::string query;
};

const std::vector<Question>& questions();

/* Throws Failure if there is none. */
const Question& questionNamed(const std::string& name);

/* One line per question, for people. */
std::string questionList();

} // namespace algdata

#endif
