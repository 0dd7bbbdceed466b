/* SPDX-License-Identifier: Apache-2.0 */
#include "sqlite/value.h"

#include "sqlite/sqlite.h"

namespace algdata
{

SqlValue textValue(std::string_view text)
{
    SqlValue value;
    value.type = SqlValue::Text;
    value.text = text;
    return value;
}

SqlValue integerValue(int64_t integer)
{
    SqlValue value;
    value.type = SqlValue::Integer;
    value.integer = integer;
    return value;
}

SqlValue sizeValue(size_t size)
{
    return integerValue(static_cast<int64_t>(size));
}

SqlValue realValue(double real)
{
    SqlValue value;
    value.type = SqlValue::Real;
    value.real = real;
    return value;
}

SqlValue valueOf(const Field& field, Token token)
{
    if (!present(token))
        return {};
    if (field.type == Type::Mac)
        return isMac(token) ? textValue(token) : SqlValue();
    if (field.type == Type::F32) {
        const std::optional<double> real = numberIn(field, token);
        return real ? realValue(*real) : SqlValue();
    }
    const std::optional<Number> number = wholeNumber(token);
    return number && inRange(field, *number) ? integerValue(static_cast<int64_t>(readsAs(field, *number)))
                                             : SqlValue();
}

std::string quotedName(const std::string& name)
{
    std::string text = "\"";
    for (const char c : name)
        (text += c == '"' ? "\"" : "") += c;
    return text + "\"";
}

const char* columnType(Type type)
{
    return type == Type::Mac ? "TEXT COLLATE mac" : type == Type::F32 ? "REAL" : "INTEGER";
}

void setResult(sqlite3_context* result, const SqlValue& value)
{
    if (value.type == SqlValue::Integer)
        sqlite3_result_int64(result, value.integer);
    else if (value.type == SqlValue::Real)
        sqlite3_result_double(result, value.real);
    else if (value.type == SqlValue::Text)
        sqlite3_result_text64(result, value.text.data(), value.text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

void bind(sqlite3_stmt* statement, int parameter, const SqlValue& value)
{
    if (value.type == SqlValue::Integer)
        sqlite3_bind_int64(statement, parameter, value.integer);
    else if (value.type == SqlValue::Real)
        sqlite3_bind_double(statement, parameter, value.real);
    else if (value.type == SqlValue::Text)
        sqlite3_bind_text64(statement, parameter, value.text.data(), value.text.size(), SQLITE_TRANSIENT,
                            SQLITE_UTF8);
    else
        sqlite3_bind_null(statement, parameter);
}

} // namespace algdata
