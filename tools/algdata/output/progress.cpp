/* SPDX-License-Identifier: Apache-2.0 */
#include "output/progress.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <string>
#include <unistd.h>

#include <fmt/format.h>

namespace algdata
{

namespace
{

using std::chrono::milliseconds;
using std::chrono::steady_clock;

volatile sig_atomic_t drawn = 0;

} // namespace

Progress::Progress(const std::function<size_t()>& total)
{
    /* On the same terminal, a bar would disturb the results. */
    wanted = isatty(STDERR_FILENO) != 0 && isatty(STDOUT_FILENO) == 0;
    if (!wanted)
        return;
    all = total();
    started = steady_clock::now();
    nextDraw = started + milliseconds(400);
}

void Progress::step()
{
    ++done;
    if (!wanted || done % 16 != 0 || steady_clock::now() < nextDraw)
        return;
    draw();
    nextDraw = steady_clock::now() + milliseconds(100);
}

void Progress::draw() const
{
    constexpr size_t width = 40;
    std::string text = "\r";
    if (all != 0) {
        const size_t files = std::min(done, all);
        text +=
            fmt::format("[{:.<{}}] {} of {} files", std::string(files * width / all, '#'), width, files, all);
    } else {
        text += fmt::format("{} files", done);
    }
    const std::chrono::duration<double> passed = steady_clock::now() - started;
    text += fmt::format(", {:.0f} per second\033[K", static_cast<double>(done) / passed.count());
    drawn = 1; /* before printing, so that a signal in between does not leave the bar */
    std::fputs(text.c_str(), stderr);
}

void Progress::clear()
{
    constexpr std::string_view wholeLine = "\r\033[K";
    if (drawn != 0 && write(STDERR_FILENO, wholeLine.data(), wholeLine.size()) >= 0)
        drawn = 0;
}

} // namespace algdata
