/* SPDX-License-Identifier: Apache-2.0 */
#include "output/temporaryFile.h"

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

#include "options/options.h"
#include "output/progress.h"

namespace algdata
{

namespace
{

/* The signal handler reads these, so they are static memory without allocation. */
constexpr int slots = 16;
char names[slots][PATH_MAX];
volatile sig_atomic_t inUse[slots];

/* SA_RESETHAND restored the default action, so the signal that is raised here ends the program. */
void removeAll(int signal)
{
    Progress::clear();
    removeTemporaryFiles();
    raise(signal);
}

/* Returns the slot, or -1 if none is free. */
int registerForRemoval(const std::string& name)
{
    for (int i = 0; i < slots && name.size() < PATH_MAX; ++i) {
        if (inUse[i] != 0)
            continue;
        std::memcpy(names[i], name.c_str(), name.size() + 1);
        inUse[i] = 1;
        return i;
    }
    return -1;
}

std::string commonDirectory()
{
    const char* directory = std::getenv("TMPDIR");
    return directory != nullptr && directory[0] != '\0' ? directory : "/tmp";
}

} // namespace

void removeTemporaryFiles()
{
    for (int i = 0; i < slots; ++i)
        if (inUse[i] != 0)
            unlink(names[i]);
}

void removeTemporaryFilesOnSignals()
{
    /* All signals that end a program and can be caught, except those for its own faults. */
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGABRT, SIGPIPE, SIGALRM, SIGTERM, SIGUSR1, SIGUSR2,
                             SIGXCPU, SIGXFSZ, SIGVTALRM, SIGPROF}) {
        struct sigaction action = {};
        if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN)
            continue;
        action.sa_handler = removeAll;
        action.sa_flags = static_cast<int>(SA_RESETHAND);
        sigaction(signal, &action, nullptr);
    }
}

BlockedSignals::BlockedSignals()
{
    sigset_t all;
    sigfillset(&all);
    sigprocmask(SIG_SETMASK, &all, &before);
}

BlockedSignals::~BlockedSignals()
{
    sigprocmask(SIG_SETMASK, &before, nullptr);
}

TemporaryFile::TemporaryFile(const std::string& directory)
{
    const std::string in = directory.empty() ? commonDirectory() : directory;
    name = in + "/.algdata.XXXXXX";
    /* A signal between creating the file and registering its name would leave the file behind. */
    const BlockedSignals blocked;
    fd = mkostemp(name.data(), O_CLOEXEC);
    if (fd < 0)
        throw OutputFailure("cannot create a file in " + in + ": " + std::strerror(errno));
    slot = registerForRemoval(name);
}

void TemporaryFile::keep()
{
    name.clear();
    if (slot >= 0)
        inUse[slot] = 0;
    slot = -1;
}

TemporaryFile::~TemporaryFile()
{
    close(fd);
    if (!name.empty())
        unlink(name.c_str());
    keep();
}

} // namespace algdata
