/* SPDX-License-Identifier: Apache-2.0 */
#include "output/pager.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include "options/options.h"
#include "output/temporaryFile.h"

namespace algdata
{

namespace
{

/* Global for the signal handlers. There is at most one pager. */
volatile sig_atomic_t process = 0;
volatile sig_atomic_t inputEnd = -1;
struct sigaction previousInterrupt; /* the handling of ^C before the pager */

void waitForEnd()
{
    while (waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
    }
}

/* The pager ended because the user left it: nobody wants the rest of the output. */
void exitWithPager(int /*signal*/)
{
    const int error = errno;
    if (waitpid(process, nullptr, WNOHANG) == process) {
        removeTemporaryFiles();
        _exit(AllWell);
    }
    errno = error;
}

/* After ^C, waits until the user leaves the pager, then raises the signal for the previous handler. */
void interruptWithPager(int signal)
{
    std::signal(SIGCHLD, SIG_DFL);
    ::close(inputEnd);
    waitForEnd();
    sigaction(signal, &previousInterrupt, nullptr);
    raise(signal);
}

void handle(int signal, void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_NOCLDSTOP;
    sigaddset(&action.sa_mask, SIGCHLD); /* else a pager that ends at ^C looks as if the user left it */
    sigaction(signal, &action, nullptr);
}

/* If the caller ignores ^C, it stays ignored. */
void handleSignals()
{
    handle(SIGCHLD, exitWithPager);
    sigaction(SIGINT, nullptr, &previousInterrupt);
    if (previousInterrupt.sa_handler != SIG_IGN)
        handle(SIGINT, interruptWithPager);
    std::signal(SIGPIPE, SIG_IGN);
}

[[noreturn]] void run(const char* command, int from)
{
    dup2(from, STDIN_FILENO);
    setenv("LESS", "FRSX", 0);
    /* With the trap, the shell survives ^C and waits for the pager. If there is no such pager, cat prints. */
    const std::string script = std::string("trap : INT\n") + command + "\n[ $? -ne 127 ] || cat";
    execlp("sh", "sh", "-c", script.c_str(), nullptr);
    _exit(127);
}

} // namespace

std::unique_ptr<Pager> Pager::start()
{
    const char* command = std::getenv("PAGER");
    if (command == nullptr)
        command = "less";
    int ends[2];
    if (command[0] == '\0' || std::strcmp(command, "cat") == 0 || pipe2(ends, O_CLOEXEC) != 0)
        return nullptr;
    const pid_t started = fork();
    if (started == 0)
        run(command, ends[0]);
    ::close(ends[0]);
    if (started < 0) {
        ::close(ends[1]);
        return nullptr;
    }
    process = started;
    inputEnd = ends[1];
    handleSignals();
    exitWithPager(SIGCHLD); /* it may have ended before the handler was installed */
    return std::unique_ptr<Pager>(new Pager);
}

Pager::~Pager()
{
    std::signal(SIGCHLD, SIG_DFL);
    std::signal(SIGINT, SIG_IGN);
    ::close(inputEnd);
    waitForEnd();
    sigaction(SIGINT, &previousInterrupt, nullptr);
}

/* NOLINTNEXTLINE(readability-convert-member-functions-to-static): the handlers need the global state */
int Pager::input() const
{
    return inputEnd;
}

void Pager::exitAfterPager()
{
    std::signal(SIGCHLD, SIG_DFL);
    waitForEnd();
    removeTemporaryFiles();
    _exit(AllWell);
}

} // namespace algdata
