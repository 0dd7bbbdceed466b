/* SPDX-License-Identifier: Apache-2.0 */
/* What the tables of one connection share: the files, and how reading them went. */
#ifndef ALGDATA_SQL_ENGINE_H
#define ALGDATA_SQL_ENGINE_H

#include <chrono>
#include <csignal>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "sql/files.h"
#include "sql/tables.h"
#include "sqlite/functions.h"

namespace algdata
{

/* The files of a query, and how reading them goes. */
struct Reading {
    const QueryFiles files;
    const DeviceNames names;
    FileCache cache;
    std::function<void()> stepped; /* called for each file; null for none */
    size_t considered = 0;         /* files, once for each scan */
    size_t accepted = 0;
    size_t matched = 0; /* files that a template matches */
    size_t bad = 0;
    size_t others = 0; /* files of a directory that are not record files */
    Status status = AllWell;
    bool declaring = false; /* a table is being declared, which SQLite asks the authorizer about */

    /* If this file, directory or archive cannot be read at all, the query fails; empty for none. */
    std::string required;

    /* After this time, after interrupt(), or once `cancelled` returns true, a scan stops at the next record.
     */
    std::optional<std::chrono::steady_clock::time_point> deadline;
    std::function<bool()> cancelled; /* null for none */

    Reading(QueryFiles set, DeviceNames known) : files(std::move(set)), names(std::move(known)) {}
};

class Engine : public Reading
{
  public:
    using Reading::Reading;

    /* Forgets the files and the counts of the previous statement. */
    void start();

    /* Prints the messages about a file, but only once per file and statement. */
    void report(Status how, const std::string& path, const std::vector<std::string>& messages);

    bool stopping();
    bool isTimedOut() const { return timedOut; }
    static void interrupt() { interrupted = 1; } /* safe in a signal handler */

    /* Whether interrupt() was called since the last statement or the last call. */
    static bool takeInterrupt();

  private:
    static volatile std::sig_atomic_t interrupted;
    bool timedOut = false;
    bool stopped = false;
    unsigned steps = 0;
    static constexpr size_t maxReported = 1000;
    std::set<std::pair<std::string, Status>> reported;
};

} // namespace algdata

#endif
