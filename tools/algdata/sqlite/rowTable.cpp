/* SPDX-License-Identifier: Apache-2.0 */
#include "sqlite/rowTable.h"

#include <sqlite3.h>

#include "sqlite/guarded.h"

namespace algdata
{

std::string declarationOf(const std::vector<RowColumn>& columns)
{
    std::string text;
    for (const RowColumn& column : columns)
        text += (text.empty() ? "" : ", ") + quotedName(column.name) + " " + column.type;
    return text;
}

namespace
{

/* What the module of a table knows. SQLite frees it with the module. */
struct Rows {
    std::string declaration;
    RowSource& source;
};

struct VirtualTable : sqlite3_vtab {
    explicit VirtualTable(RowSource& of) : sqlite3_vtab(), rows(of) {}
    RowSource& rows;
};

RowSource& rowsOf(sqlite3_vtab_cursor* cursor)
{
    return static_cast<VirtualTable*>(cursor->pVtab)->rows;
}

int connect(sqlite3* database, void* given, int /*count*/, const char* const* /*arguments*/,
            sqlite3_vtab** made, char** /*error*/)
{
    const Rows& rows = *static_cast<Rows*>(given);
    const int declared = sqlite3_declare_vtab(database, ("CREATE TABLE x(" + rows.declaration + ")").c_str());
    if (declared != SQLITE_OK)
        return declared;
    *made = new (std::nothrow) VirtualTable(rows.source);
    return *made == nullptr ? SQLITE_NOMEM : SQLITE_OK;
}

int disconnect(sqlite3_vtab* table)
{
    delete static_cast<VirtualTable*>(table);
    return SQLITE_OK;
}

/* Every query reads all rows. */
int bestIndex(sqlite3_vtab* /*table*/, sqlite3_index_info* /*info*/)
{
    return SQLITE_OK;
}

int openCursor(sqlite3_vtab* /*table*/, sqlite3_vtab_cursor** made)
{
    *made = new (std::nothrow) sqlite3_vtab_cursor();
    return *made == nullptr ? SQLITE_NOMEM : SQLITE_OK;
}

int closeCursor(sqlite3_vtab_cursor* cursor)
{
    delete cursor;
    return SQLITE_OK;
}

int filter(sqlite3_vtab_cursor* cursor, int /*plan*/, const char* /*text*/, int /*count*/,
           sqlite3_value** /*values*/)
{
    return guarded(cursor->pVtab, [&] { return rowsOf(cursor).first(), SQLITE_OK; });
}

int next(sqlite3_vtab_cursor* cursor)
{
    return guarded(cursor->pVtab, [&] { return rowsOf(cursor).next(), SQLITE_OK; });
}

int isAtEnd(sqlite3_vtab_cursor* cursor)
{
    return rowsOf(cursor).atEnd() ? 1 : 0;
}

int column(sqlite3_vtab_cursor* cursor, sqlite3_context* result, int index)
{
    setResult(result, rowsOf(cursor).value(static_cast<size_t>(index)));
    return SQLITE_OK;
}

int rowid(sqlite3_vtab_cursor* cursor, sqlite3_int64* id)
{
    *id = rowsOf(cursor).id();
    return SQLITE_OK;
}

/* Eponymous: a table exists without CREATE VIRTUAL TABLE, because there is no create function. */
constexpr sqlite3_module moduleOfRows()
{
    sqlite3_module module = {};
    module.iVersion = 1;
    module.xConnect = connect;
    module.xBestIndex = bestIndex;
    module.xDisconnect = disconnect;
    module.xOpen = openCursor;
    module.xClose = closeCursor;
    module.xFilter = filter;
    module.xNext = next;
    module.xEof = isAtEnd;
    module.xColumn = column;
    module.xRowid = rowid;
    return module;
}

constexpr sqlite3_module rowModule = moduleOfRows();

} // namespace

int registerRows(sqlite3* database, const std::string& name, const std::vector<RowColumn>& columns,
                 RowSource& rows)
{
    return sqlite3_create_module_v2(database, name.c_str(), &rowModule,
                                    new Rows{declarationOf(columns), rows},
                                    [](void* given) { delete static_cast<Rows*>(given); });
}

} // namespace algdata
