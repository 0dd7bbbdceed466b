/* SPDX-License-Identifier: Apache-2.0 */
#include "output/output.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
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
    const char* noColor = std::getenv("NO_COLOR");
    const char* terminal = std::getenv("TERM");
    return isatty(fd) != 0 && (noColor == nullptr || noColor[0] == '\0') &&
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
    if (throughPager && options.pager && fd == STDOUT_FILENO && isatty(STDOUT_FILENO) != 0)
        pager = Pager::start();
    if (pager != nullptr)
        fd = pager->input();
}

Output::Output(std::string& into) : sink(&into), fd(-1) {}

Output::~Output() = default;

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
        if (got < 0 && errno == EPIPE && pager != nullptr)
            Pager::exitAfterPager();
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
        file->commit();
    else if (file != nullptr && !file->isDirect())
        message("nothing was written to " + target);
    pager.reset();
}

void message(const std::string& text)
{
    Progress::clear();
    std::fprintf(stderr, "algdata: %s\n", printable(text).c_str());
}

} // namespace algdata
