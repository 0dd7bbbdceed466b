/* SPDX-License-Identifier: Apache-2.0 */
#include "tracing.h"

#include <errno.h>
#include <fcntl.h>
#include <map>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

/* ---- Processes ------------------------------------------------------------- */

int newProcess()
{
    fflush(nullptr);
    const int child = fork();
    if (child < 0) {
        perror("fork");
        exit(1);
    }
    return child;
}

void endProcess(int status)
{
    _exit(status);
}

enum { NOT_TRACED = 99 };

#if defined(__x86_64__)

void beginTraced()
{
    if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0)
        endProcess(NOT_TRACED);
    raise(SIGSTOP);
}

bool canTrace()
{
    const Outcome outcome = trace([] { return true; });
    return WIFEXITED(outcome.status) && WEXITSTATUS(outcome.status) == 0;
}

/* ---- One system call --------------------------------------------------------- */

/* Everything else counts, so that no call on a file can be forgotten here. */
static bool isCounted(unsigned long long number)
{
    switch (number) {
    case SYS_brk:
    case SYS_mmap:
    case SYS_munmap:
    case SYS_mremap:
    case SYS_mprotect:
    case SYS_madvise:
    case SYS_rt_sigaction:
    case SYS_rt_sigprocmask:
    case SYS_sigaltstack:
    case SYS_futex:
    case SYS_getrandom:
    case SYS_exit_group:
        return false;
    default:
        return true;
    }
}

/* The log does not know these calls. They end the test, so that no change is missed. */
static bool changesFilesUnseen(unsigned long long number)
{
    switch (number) {
    case SYS_creat:
    case SYS_pwrite64:
    case SYS_pwritev:
    case SYS_pwritev2:
    case SYS_truncate:
    case SYS_ftruncate:
    case SYS_fallocate:
    case SYS_sendfile:
    case SYS_copy_file_range:
    case SYS_splice:
    case SYS_link:
    case SYS_linkat:
    case SYS_symlink:
    case SYS_symlinkat:
    case SYS_renameat2:
        return true;
    default:
        return false;
    }
}

/* What the process has open, and what it has changed. */
struct Log {
    int process;
    std::map<unsigned long long, std::string> open;
    std::vector<std::string> lines;
};

static std::string textOf(const Log& log, unsigned long long address)
{
    char text[4096] = "";
    iovec here = {text, sizeof text - 1};
    iovec there = {reinterpret_cast<void*>(address), sizeof text - 1};
    /* Read less if the text is near the end of the memory. */
    while (process_vm_readv(log.process, &here, 1, &there, 1, 0) < 0 && there.iov_len > 1)
        there.iov_len /= 2;
    std::string path = text;
    const std::string directory = getcwd(text, sizeof text);
    if (path == directory)
        return ".";
    return path.compare(0, directory.size() + 1, directory + "/") == 0 ? path.substr(directory.size() + 1)
                                                                       : path;
}

static void openAsLogged(Log& log, unsigned long long path, unsigned long long flags, unsigned long long fd)
{
    log.open[fd] = textOf(log, path);
    if ((flags & (O_CREAT | O_TRUNC)) != 0)
        log.lines.push_back("write " + log.open[fd]);
}

/* `call` holds the arguments, `result` is not negative. */
static void logCall(Log& log, const user_regs_struct& call, unsigned long long result)
{
    switch (call.orig_rax) {
    case SYS_open:
        return openAsLogged(log, call.rdi, call.rsi, result);
    case SYS_openat:
        return openAsLogged(log, call.rsi, call.rdx, result);
    case SYS_write:
    case SYS_writev:
    case SYS_fchmod:
    case SYS_fchown:
        return log.lines.push_back("write " + log.open[call.rdi]);
    case SYS_fsync:
    case SYS_fdatasync:
        return log.lines.push_back("sync " + log.open[call.rdi]);
    case SYS_unlink:
        return log.lines.push_back("remove " + textOf(log, call.rdi));
    case SYS_unlinkat:
        return log.lines.push_back("remove " + textOf(log, call.rsi));
    case SYS_rename:
        return log.lines.push_back("rename " + textOf(log, call.rdi) + " " + textOf(log, call.rsi));
    case SYS_renameat:
        return log.lines.push_back("rename " + textOf(log, call.rsi) + " " + textOf(log, call.r10));
    default:
        break;
    }
}

/* ---- From the first call to the last ----------------------------------------- */

/* Ends the process and returns false. */
static bool endKilled(int child, int& status)
{
    kill(child, SIGKILL);
    waitpid(child, &status, 0);
    return false;
}

/* Lets the process run to its next entry or exit of a call. Returns false when it has ended. */
static bool runOn(int child, int& status)
{
    if (ptrace(PTRACE_SYSCALL, child, nullptr, nullptr) != 0 || waitpid(child, &status, 0) != child ||
        !WIFSTOPPED(status))
        return false;
    const bool atCall = WSTOPSIG(status) == (SIGTRAP | 0x80);
    return atCall || endKilled(child, status); /* a signal: the process has crashed */
}

/* At the entry of the call. Returns false if the fault ends the process here. */
static bool strikeAtEntry(int child, Fault fault, user_regs_struct& call)
{
    if (fault == Fault::KILL_BEFORE)
        return false;
    if (fault == Fault::KILL_WITHIN)
        call.rdx /= 2;
    if (fault == Fault::FAIL)
        call.orig_rax = ~0ULL; /* no call has this number */
    ptrace(PTRACE_SETREGS, child, nullptr, &call);
    return true;
}

/* At the exit of the call. */
static bool strikeAtExit(int child, Fault fault, user_regs_struct& call)
{
    if (fault != Fault::FAIL)
        return false;
    call.rax = static_cast<unsigned long long>(-EIO);
    ptrace(PTRACE_SETREGS, child, nullptr, &call);
    return true;
}

static void refuseUnseen(unsigned long long number)
{
    if (changesFilesUnseen(number)) {
        fprintf(stderr, "system call %llu changes files, and the test does not know it\n", number);
        exit(1);
    }
}

/* Follows one call from its entry to its exit. Returns false when the process has ended. */
static bool followCall(int child, Fault fault, int nth, Outcome& outcome, Log& log)
{
    user_regs_struct call = {};
    ptrace(PTRACE_GETREGS, child, nullptr, &call);
    refuseUnseen(call.orig_rax);
    const bool counted = isCounted(call.orig_rax);
    outcome.calls += counted;
    if (call.orig_rax == SYS_write && call.rdx > 1)
        outcome.writes.push_back(outcome.calls);

    const bool strikes = fault != Fault::NONE && counted && outcome.calls == nth;
    outcome.struck = outcome.struck || strikes;
    if (strikes && !strikeAtEntry(child, fault, call))
        return endKilled(child, outcome.status);
    if (!runOn(child, outcome.status))
        return false;

    user_regs_struct result = {};
    ptrace(PTRACE_GETREGS, child, nullptr, &result);
    if (strikes && !strikeAtExit(child, fault, result))
        return endKilled(child, outcome.status);
    if (fault == Fault::NONE && static_cast<long long>(result.rax) >= 0)
        logCall(log, call, result.rax);
    return true;
}

Outcome follow(int child, Fault fault, int call)
{
    Outcome outcome = {};
    Log log = {child, {}, {}};
    waitpid(child, &outcome.status, 0);
    if (!WIFSTOPPED(outcome.status))
        return outcome;
    ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_EXITKILL | PTRACE_O_TRACESYSGOOD);
    while (runOn(child, outcome.status) && followCall(child, fault, call, outcome, log))
        continue;
    outcome.log = log.lines;
    return outcome;
}

#else

void beginTraced()
{
    endProcess(NOT_TRACED);
}

bool canTrace()
{
    return false;
}

Outcome follow(int child, Fault, int)
{
    Outcome outcome = {};
    waitpid(child, &outcome.status, 0);
    return outcome;
}

#endif
