/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALGDATA_PAGER_H
#define ALGDATA_PAGER_H

#include <memory>

namespace algdata
{

/*
 * The program that shows long results on a terminal: $PAGER, or less by default.
 *
 * When the user leaves the pager, the rest of the output is not needed: the program
 * exits immediately with status 0. ^C stops the work, but the pager keeps the
 * terminal: the program exits when the user leaves the pager.
 */
class Pager
{
  public:
    /* Null if $PAGER disables the pager or it cannot be started. */
    static std::unique_ptr<Pager> start();

    /* Closes the pager's input and waits until the user leaves the pager. */
    ~Pager();
    Pager(const Pager&) = delete;
    Pager& operator=(const Pager&) = delete;

    /* The descriptor to write to. */
    int input() const;

    /* For a pager that stopped reading: waits for its end and exits the program. */
    [[noreturn]] static void exitAfterPager();

  private:
    Pager() = default;
};

} // namespace algdata

#endif
