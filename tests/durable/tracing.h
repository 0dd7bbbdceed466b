/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Runs a function in a process of its own and stops that process, or makes it fail, at
 * one of its system calls. Counted are all calls except those on memory and signals.
 */
#ifndef TESTS_DURABLE_TRACING_H
#define TESTS_DURABLE_TRACING_H

#include <string>
#include <vector>

enum class Fault {
    NONE,
    KILL_BEFORE, /* the process is killed before the call does anything */
    KILL_WITHIN, /* after half of the bytes; only for one of Outcome::writes */
    KILL_AFTER,  /* after the call, before it returns to the process */
    FAIL         /* the call does nothing and reports an I/O error */
};

struct Outcome {
    int calls;   /* counted calls until the process ended */
    bool struck; /* whether the fault was reached */
    int status;  /* what waitpid() returns */

    /* The numbers of the calls that write at least two bytes. */
    std::vector<int> writes;

    /*
     * With Fault::NONE: each successful change of a file or directory, with paths relative
     * to the working directory: "write PATH", "sync PATH", "remove PATH", "rename PATH PATH".
     */
    std::vector<std::string> log;
};

/* Whether this machine can trace: false on other processors, or if the system forbids it. */
bool canTrace();

/* Runs `work` in a new process, which ends with status 0 if it returns true and with 1 if not. */
template <typename Work> Outcome trace(const Work& work, Fault fault = Fault::NONE, int call = 0);

/* ---- The parts of trace() -------------------------------------------------- */

/* In the child: asks for tracing and waits for the parent. */
void beginTraced();

/* In the parent: follows the child to its end. */
Outcome follow(int child, Fault fault, int call);

int newProcess();
[[noreturn]] void endProcess(int status);

template <typename Work> Outcome trace(const Work& work, Fault fault, int call)
{
    const int child = newProcess();
    if (child == 0) {
        beginTraced();
        endProcess(work() ? 0 : 1);
    }
    return follow(child, fault, call);
}

#endif
