/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The interface of SQLite. An extension calls it through a table of functions that the
 * program passes to it, so that both use the same library.
 */
#ifndef ALGDATA_SQLITE_SQLITE_H
#define ALGDATA_SQLITE_SQLITE_H

#ifdef ALGDATA_SQLITE_EXTENSION
#include <sqlite3ext.h>
extern const sqlite3_api_routines* sqlite3_api;
#else
#include <sqlite3.h>
#endif

#endif
