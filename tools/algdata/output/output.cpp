/* SPDX-License-Identifier: Apache-2.0 */
#include "output/output.h"

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "output/progress.h"
#include "output/wording.h"

namespace algdata
{

/* ---- Unfinished files --------------------------------------------------- */

namespace
{

/* Read by the signal handler, so plain memory and no allocation. */
constexpr int slots = 8;
char unfinishedNames[slots][PATH_MAX];
volatile sig_atomic_t inUse[slots];

void removeUnfinished(int signal)
{
    for (int i = 0; i < slots; ++i)
        if (inUse[i])
            unlink(unfinishedNames[i]);
    std::signal(signal, SIG_DFL);
    raise(signal);
}

int keepForRemoval(const std::string& name)
{
    for (int i = 0; i < slots && name.size() < PATH_MAX; ++i) {
        if (inUse[i])
            continue;
        std::memcpy(unfinishedNames[i], name.c_str(), name.size() + 1);
        inUse[i] = 1;
        return i;
    }
    return -1;
}

void blockSignals(int how)
{
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaddset(&set, signal);
    sigprocmask(how, &set, nullptr);
}

std::string errorText(const std::string& what)
{
    return what + ": " + std::strerror(errno);
}

std::string directoryFor(const std::string& beside)
{
    if (!beside.empty()) {
        const size_t slash = beside.rfind('/');
        return slash == std::string::npos ? "." : beside.substr(0, slash + 1);
    }
    const char* directory = std::getenv("TMPDIR");
    return directory != nullptr && directory[0] != '\0' ? directory : "/tmp";
}

} // namespace

void watchSignals()
{
    struct sigaction action = {};
    action.sa_handler = removeUnfinished;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaction(signal, &action, nullptr);
}

TemporaryFile::TemporaryFile(const std::string& beside)
{
    name = directoryFor(beside) + "/.algdata.XXXXXX";
    /* A signal between making the file and noting its name would leave it behind. */
    blockSignals(SIG_BLOCK);
    fd = mkstemp(name.data());
    if (fd >= 0)
        slot = keepForRemoval(name);
    blockSignals(SIG_UNBLOCK);
    if (fd < 0)
        throw OutputFailure(errorText("cannot create a file in " + directoryFor(beside)));
}

TemporaryFile::~TemporaryFile()
{
    if (fd >= 0)
        ::close(fd);
    if (!name.empty())
        unlink(name.c_str());
    if (slot >= 0)
        inUse[slot] = 0;
}

void TemporaryFile::renameTo(const std::string& target)
{
    struct stat old;
    const mode_t mask = umask(0);
    umask(mask);
    fchmod(fd, stat(target.c_str(), &old) == 0 ? old.st_mode & 07777 : 0666 & ~mask);
    const bool written = fsync(fd) == 0;
    const bool closed = ::close(fd) == 0;
    fd = -1;
    if (!written || !closed || rename(name.c_str(), target.c_str()) != 0)
        throw OutputFailure(errorText("cannot write " + target));
    name.clear();
}

/* ---- Output ------------------------------------------------------------- */

namespace
{

bool wantsColors(Color color, int fd)
{
    if (color != Color::Auto)
        return color == Color::Always;
    const char* refused = std::getenv("NO_COLOR");
    const char* terminal = std::getenv("TERM");
    return isatty(fd) && (refused == nullptr || refused[0] == '\0') &&
           (terminal == nullptr || std::strcmp(terminal, "dumb") != 0);
}

/* Links are kept: the file that they lead to is replaced. */
std::string realTarget(const std::string& path)
{
    char resolved[PATH_MAX];
    return realpath(path.c_str(), resolved) != nullptr ? resolved : path;
}

bool isReplaceable(const std::string& path)
{
    struct stat status;
    return stat(path.c_str(), &status) != 0 || S_ISREG(status.st_mode);
}

} // namespace

Output::Output(const Options& options, bool throughPager)
{
    if (!options.output.empty() && options.output != "-") {
        target = realTarget(options.output);
        if (isReplaceable(target)) {
            unfinished = new TemporaryFile(target);
            fd = unfinished->descriptor();
        } else {
            fd = open(target.c_str(), O_WRONLY | O_CLOEXEC);
            if (fd < 0)
                throw OutputFailure(errorText("cannot write " + target));
        }
    }
    colors = wantsColors(options.color, fd);
    if (throughPager && options.pager && fd == STDOUT_FILENO && isatty(STDOUT_FILENO))
        startPager();
}

Output::Output(std::string& into) : sink(&into), fd(-1) {}

Output::~Output()
{
    delete unfinished;
    if (pager > 0) {
        ::close(fd);
        waitpid(pager, nullptr, 0);
    }
}

void Output::startPager()
{
    const char* command = std::getenv("PAGER");
    if (command == nullptr)
        command = "less";
    if (command[0] == '\0' || std::strcmp(command, "cat") == 0)
        return;
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        return;
    pager = fork();
    if (pager == 0) {
        dup2(ends[0], STDIN_FILENO);
        setenv("LESS", "FRSX", 0);
        /* Without a pager the text still has to come out. */
        execlp("sh", "sh", "-c", (std::string(command) + "; [ $? -ne 127 ] || cat").c_str(), nullptr);
        _exit(127);
    }
    ::close(ends[0]);
    if (pager < 0) {
        ::close(ends[1]);
        return;
    }
    /* Who leaves the pager early wants the rest of the text no more. */
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGINT, SIG_IGN);
    fd = ends[1];
}

void Output::flush()
{
    if (sink != nullptr)
        sink->append(buffer);
    std::string_view rest = sink != nullptr ? std::string_view() : buffer;
    while (!rest.empty()) {
        const ssize_t got = write(fd, rest.data(), rest.size());
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0 && errno == EPIPE && pager > 0)
            break;
        if (got < 0)
            throw OutputFailure(errorText("cannot write " + (target.empty() ? "standard output" : target)));
        rest.remove_prefix(static_cast<size_t>(got));
    }
    buffer.clear();
}

void Output::close()
{
    flush();
    if (unfinished != nullptr)
        unfinished->renameTo(target);
    if (pager > 0) {
        ::close(fd);
        waitpid(pager, nullptr, 0);
        pager = -1;
    }
}

void message(const std::string& text)
{
    Progress::clear();
    std::fprintf(stderr, "algdata: %s\n", printable(text).c_str());
}

} // namespace algdata
