/* SPDX-License-Identifier: Apache-2.0 */
#include "output/interruption.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <unistd.h>

#include "options/options.h"
#include "output/temporaryFile.h"

namespace algdata
{

namespace
{

/* The signal handler reads these. */
volatile sig_atomic_t interrupted = 0;
volatile sig_atomic_t writing = 0;
int writable = -1; /* the end of a pipe */

/* SA_RESETHAND restored the default action. */
void interrupt(int signal)
{
    const int error = errno;
    if (writing != 0) {
        removeTemporaryFiles();
        raise(signal);
    }
    interrupted = 1;
    if (write(writable, "", 1) < 0) {
        /* The pipe is full, so it is readable already. */
    }
    errno = error;
}

} // namespace

Interruption::Interruption()
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
        throw Failure(std::string("cannot create a pipe: ") + std::strerror(errno));
    readable = ends[0];
    writable = ends[1];
    for (const int signal : {SIGINT, SIGTERM}) {
        struct sigaction action = {};
        if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN)
            continue;
        action.sa_handler = interrupt;
        action.sa_flags = static_cast<int>(SA_RESETHAND);
        sigaction(signal, &action, nullptr);
    }
}

Interruption::~Interruption()
{
    removeTemporaryFilesOnSignals(); /* the handlers of all other commands */
    close(readable);
    close(writable);
}

bool Interruption::happened()
{
    return interrupted != 0;
}

Interruptible::Interruptible()
{
    writing = 1;
}

Interruptible::~Interruptible()
{
    writing = 0;
}

} // namespace algdata
