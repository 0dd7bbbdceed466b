/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A progress bar with files per second on standard error. It is shown only if the work
 * takes long, standard error is a terminal and standard output is not.
 */
#ifndef ALGDATA_PROGRESS_H
#define ALGDATA_PROGRESS_H

#include <chrono>
#include <cstddef>
#include <functional>

namespace algdata
{

class Progress
{
  public:
    /* `total` returns the number of files, or 0 if it is unknown. It is called only if a bar can be shown. */
    explicit Progress(const std::function<size_t()>& total);
    ~Progress() { clear(); }

    void step();

    /* Removes the bar, before something else is printed on its line. Signal handlers may call it. */
    static void clear();

  private:
    void draw() const;

    size_t all = 0;
    size_t done = 0;
    bool wanted = false;
    std::chrono::steady_clock::time_point started;
    std::chrono::steady_clock::time_point nextDraw;
};

} // namespace algdata

#endif
