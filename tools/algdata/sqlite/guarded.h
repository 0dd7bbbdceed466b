/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALGDATA_SQLITE_GUARDED_H
#define ALGDATA_SQLITE_GUARDED_H

#include <new>
#include <stdexcept>

#include "sqlite/sqlite.h"

namespace algdata
{

/* Exceptions must not pass through SQLite. Runs the step and returns its result code. */
template <typename Step> int guarded(sqlite3_vtab* table, Step&& step)
{
    try {
        return step();
    } catch (const std::bad_alloc&) {
        return SQLITE_NOMEM;
    } catch (const std::exception& failure) {
        sqlite3_free(table->zErrMsg);
        table->zErrMsg = sqlite3_mprintf("%s", failure.what());
        return SQLITE_ERROR;
    }
}

} // namespace algdata

#endif
