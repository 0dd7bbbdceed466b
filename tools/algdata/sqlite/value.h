/* SPDX-License-Identifier: Apache-2.0 */
/* The values of records as SQLite sees them. */
#ifndef ALGDATA_SQLITE_VALUE_H
#define ALGDATA_SQLITE_VALUE_H

#include <cstdint>
#include <string_view>

#include "records/records.h"

struct sqlite3_context;
struct sqlite3_stmt;

namespace algdata
{

/* A value for the database: null, a number or a text, which lives until the next row. */
struct SqlValue {
    enum { Null, Integer, Real, Text } type = Null;
    int64_t integer = 0;
    double real = 0;
    std::string_view text;
};

SqlValue textValue(std::string_view text);
SqlValue integerValue(int64_t integer);
SqlValue sizeValue(size_t size);
SqlValue realValue(double real);

/* The value of a field; null if it is missing or damaged. */
SqlValue valueOf(const Field& field, Token token);

/* The name in double quotes. */
std::string quotedName(const std::string& name);

/* The type of a column with values of this type. MACs compare in any letter case, with and without colons. */
const char* columnType(Type type);

/* The text of a value must live until the next row. */
void setResult(sqlite3_context* result, const SqlValue& value);
void bind(sqlite3_stmt* statement, int parameter, const SqlValue& value);

} // namespace algdata

#endif
