/* SPDX-License-Identifier: Apache-2.0 */
/* A progress bar on standard error: only on a terminal, only when the work is long. */
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
    /* `total` is asked for how many steps there will be, and only when a bar can be drawn at all. */
    explicit Progress(const std::function<size_t()>& total);
    ~Progress() { clear(); }

    void step();

    /* Takes a drawn bar off the line before something else is printed there. */
    static void clear();

  private:
    void draw() const;

    size_t all = 0;
    size_t done = 0;
    bool wanted = false;
    std::chrono::steady_clock::time_point nextDraw;
};

} // namespace algdata

#endif
