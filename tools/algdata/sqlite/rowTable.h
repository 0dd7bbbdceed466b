/* SPDX-License-Identifier: Apache-2.0 */
/* Rows of this program as a table of SQLite. */
#ifndef ALGDATA_SQLITE_ROW_TABLE_H
#define ALGDATA_SQLITE_ROW_TABLE_H

#include <string>
#include <vector>

#include "sqlite/value.h"

struct sqlite3;

namespace algdata
{

struct RowColumn {
    std::string name;
    std::string type; /* as columnType() returns it */
};

/* Returns rows one by one. */
class RowSource
{
  public:
    virtual ~RowSource() = default;
    virtual void first() = 0; /* goes to the first row */
    virtual void next() = 0;
    virtual bool atEnd() const = 0;
    virtual int64_t id() const = 0; /* the rowid */
    virtual SqlValue value(size_t column) = 0;
};

/* "a" TEXT, "b" INTEGER, ... */
std::string declarationOf(const std::vector<RowColumn>& columns);

/* Makes the rows a table of the connection. The source must live as long. Returns a result code of SQLite. */
int registerRows(sqlite3* database, const std::string& name, const std::vector<RowColumn>& columns,
                 RowSource& rows);

} // namespace algdata

#endif
