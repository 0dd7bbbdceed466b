/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALGDATA_PAGER_H
#define ALGDATA_PAGER_H

#include <memory>

namespace algdata
{

/*
 * The program that shows long results on a terminal: $PAGER, else less.
 *
 * When the user leaves it, nobody wants the rest: the program ends at once with
 * status 0, wherever the work stands. ^C ends the work, but the terminal is the
 * pager's until the user leaves it; only then does the program end.
 */
class Pager
{
  public:
    /* Null where the user wants none, or none can be started. */
    static std::unique_ptr<Pager> start();

    /* Lets the pager see the end and waits until the user leaves it. */
    ~Pager();
    Pager(const Pager&) = delete;
    Pager& operator=(const Pager&) = delete;

    /* To be written to. */
    int input() const;

    /* It reads no more. Waits for its end and ends the program. */
    [[noreturn]] static void left();

  private:
    Pager() = default;
};

} // namespace algdata

#endif
