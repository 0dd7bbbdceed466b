/* SPDX-License-Identifier: Apache-2.0 */
#include "output/output.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "output/progress.h"
#include "output/wording.h"

namespace algdata
{

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

} // namespace

Output::Output(const Options& options, bool throughPager)
{
    if (!options.output.empty() && options.output != "-") {
        target = options.output;
        file = std::make_unique<OutputFile>(target);
        fd = file->descriptor();
    }
    colors = wantsColors(options.color, fd);
    if (throughPager && options.pager && fd == STDOUT_FILENO && isatty(STDOUT_FILENO))
        startPager();
}

Output::Output(std::string& into) : sink(&into), fd(-1) {}

Output::~Output()
{
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
    std::string_view rest(buffer.data(), used);
    used = 0;
    if (sink != nullptr) {
        sink->append(rest);
        return;
    }
    while (!rest.empty()) {
        const ssize_t got = write(fd, rest.data(), rest.size());
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0 && errno == EPIPE && pager > 0)
            break;
        if (got < 0)
            throw OutputFailure("cannot write " + (target.empty() ? "standard output" : target) + ": " +
                                std::strerror(errno));
        rest.remove_prefix(static_cast<size_t>(got));
    }
}

void Output::makeRoom(size_t size)
{
    flush();
    if (size > buffer.size())
        buffer.resize(size);
}

void Output::close(Status status)
{
    flush();
    if (file != nullptr && status != Unusable)
        file->appear();
    else if (file != nullptr && !file->isDirect())
        message("nothing is written to " + target);
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
