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

#include "commandline/options.h"
#include "output/temporaryFile.h"

namespace algdata
{

namespace
{

/* Used by the signal handlers. There is one pager at most. */
volatile sig_atomic_t process = 0;
volatile sig_atomic_t inputEnd = -1;
struct sigaction beforePager;

void waitForEnd()
{
    while (waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
    }
}

void endWithPager(int /*signal*/)
{
    const int error = errno;
    if (waitpid(process, nullptr, WNOHANG) == process) {
        removeTemporaryFiles();
        _exit(AllWell);
    }
    errno = error;
}

/* Raises the signal once more, for the handler that was there before. */
void interruptWithPager(int signal)
{
    std::signal(SIGCHLD, SIG_DFL);
    ::close(inputEnd);
    waitForEnd();
    sigaction(signal, &beforePager, nullptr);
    raise(signal);
}

void handle(int signal, void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_NOCLDSTOP;
    sigaddset(&action.sa_mask, SIGCHLD); /* a pager that ends with ^C was not left by the user */
    sigaction(signal, &action, nullptr);
}

/* Who ignores ^C goes on to ignore it. */
void handleSignals()
{
    handle(SIGCHLD, endWithPager);
    sigaction(SIGINT, nullptr, &beforePager);
    if (beforePager.sa_handler != SIG_IGN)
        handle(SIGINT, interruptWithPager);
    std::signal(SIGPIPE, SIG_IGN);
}

[[noreturn]] void run(const char* command, int from)
{
    dup2(from, STDIN_FILENO);
    setenv("LESS", "FRSX", 0);
    /* The trap lets the shell wait for a pager that goes on after ^C. Without a pager the text still comes
     * out. */
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
    endWithPager(SIGCHLD); /* it may have ended before the handler was there */
    return std::unique_ptr<Pager>(new Pager);
}

Pager::~Pager()
{
    std::signal(SIGCHLD, SIG_DFL);
    std::signal(SIGINT, SIG_IGN);
    ::close(inputEnd);
    waitForEnd();
    sigaction(SIGINT, &beforePager, nullptr);
}

/* NOLINTNEXTLINE(readability-convert-member-functions-to-static): its state is global for the handler */
int Pager::input() const
{
    return inputEnd;
}

void Pager::left()
{
    std::signal(SIGCHLD, SIG_DFL);
    waitForEnd();
    removeTemporaryFiles();
    _exit(AllWell);
}

} // namespace algdata
