/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALGDATA_INTERRUPTION_H
#define ALGDATA_INTERRUPTION_H

namespace algdata
{

/*
 * Lets a command that runs until ^C or SIGTERM end in order: the signal makes a descriptor
 * readable. A second signal ends the program at once. Ignored signals stay ignored. There
 * is at most one object.
 */
class Interruption
{
  public:
    Interruption();
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    int descriptor() const { return readable; }
    static bool happened();

  private:
    int readable = -1;
};

/* During its lifetime the first signal ends the program at once, for a write that may never return. */
class Interruptible
{
  public:
    Interruptible();
    ~Interruptible();
    Interruptible(const Interruptible&) = delete;
    Interruptible& operator=(const Interruptible&) = delete;
};

} // namespace algdata

#endif
