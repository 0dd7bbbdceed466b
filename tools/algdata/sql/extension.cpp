/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The entry points of the extension for SQLite. It lives in someone else's process: it
 * prints nothing, keeps no state outside of the connection and changes no signal.
 */
#include "output/output.h"
#include "sql/module.h"
#include "sqlite/sqlite.h"

SQLITE_EXTENSION_INIT1

namespace algdata
{

void message(const std::string& text)
{
    sqlite3_log(SQLITE_WARNING, "algdata: %s", text.c_str());
}

namespace
{

int initialize(sqlite3* database, char** error, const sqlite3_api_routines* routines, Input input)
{
    SQLITE_EXTENSION_INIT2(routines)
    constexpr int oldest = 3038000; /* the first one with sqlite3_vtab_in() */
    if (sqlite3_libversion_number() < oldest) {
        *error =
            sqlite3_mprintf("algdata_sqlite needs SQLite 3.38 or later, this is %s", sqlite3_libversion());
        return SQLITE_ERROR;
    }
    try {
        const int result = registerTables(database, input);
        if (result != SQLITE_OK)
            *error = sqlite3_mprintf("%s", sqlite3_errmsg(database));
        return result;
    } catch (const std::exception& failure) {
        *error = sqlite3_mprintf("%s", failure.what());
        return SQLITE_ERROR;
    }
}

} // namespace

} // namespace algdata

/* SQLite calls the first one if none is asked for. The second is for programs that link several. */
extern "C" {

__attribute__((visibility("default"))) int sqlite3_extension_init(sqlite3* database, char** error,
                                                                  const sqlite3_api_routines* routines)
{
    return algdata::initialize(database, error, routines, algdata::Input::Path);
}

__attribute__((visibility("default"))) int sqlite3_algdatasqlite_init(sqlite3* database, char** error,
                                                                      const sqlite3_api_routines* routines)
{
    return algdata::initialize(database, error, routines, algdata::Input::Path);
}

/* Opens no file: the tables read the bytes that a query gives them. */
__attribute__((visibility("default"))) int sqlite3_algdatabytes_init(sqlite3* database, char** error,
                                                                     const sqlite3_api_routines* routines)
{
    return algdata::initialize(database, error, routines, algdata::Input::Content);
}
}
