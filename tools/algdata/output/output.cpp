/* SPDX-License-Identifier: Apache-2.0 */
#include "output/output.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

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

bool Output::isForTerminal() const
{
    return pager != nullptr || (sink == nullptr && isatty(fd) != 0);
}

void Output::flush()
{
    if (held != nullptr)
        writeHeld();
    holding = false;
    writeBuffer();
}

void Output::makeRoom(size_t size)
{
    if (holding && held == nullptr)
        held = std::make_unique<TemporaryFile>();
    writeBuffer();
    if (size > buffer.size())
        buffer.resize(size);
}

/* Writes to the file of what is held, if there is one. */
void Output::writeBuffer()
{
    std::string_view rest(buffer.data(), used);
    used = 0;
    if (sink != nullptr) {
        sink->append(rest);
        return;
    }
    const std::string name = held != nullptr ? held->path() : target.empty() ? "standard output" : target;
    while (!rest.empty()) {
        const ssize_t got = write(held != nullptr ? held->descriptor() : fd, rest.data(), rest.size());
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0 && errno == EPIPE && pager != nullptr)
            Pager::exitAfterPager();
        if (got < 0)
            throw OutputFailure("cannot write " + name + ": " + std::strerror(errno));
        rest.remove_prefix(static_cast<size_t>(got));
    }
}

/* Copies the held output, part by part. */
void Output::writeHeld()
{
    writeBuffer();
    const std::unique_ptr<TemporaryFile> from = std::move(held);
    lseek(from->descriptor(), 0, SEEK_SET);
    ssize_t got = 0;
    while ((got = read(from->descriptor(), buffer.data(), buffer.size())) > 0) {
        used = static_cast<size_t>(got);
        writeBuffer();
    }
    if (got < 0)
        throw OutputFailure("cannot read " + from->path() + ": " + std::strerror(errno));
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

} // namespace algdata
