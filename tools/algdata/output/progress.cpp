/* SPDX-License-Identifier: Apache-2.0 */
#include "output/progress.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <unistd.h>

namespace algdata
{

namespace
{

using std::chrono::milliseconds;
using std::chrono::steady_clock;

bool drawn = false;

} // namespace

Progress::Progress(const std::function<size_t()>& total)
{
    /* On the same terminal, a bar would disturb the results. */
    wanted = isatty(STDERR_FILENO) != 0 && isatty(STDOUT_FILENO) == 0;
    if (!wanted)
        return;
    all = total();
    nextDraw = steady_clock::now() + milliseconds(400);
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
    const size_t share = all == 0 ? 0 : std::min(done, all) * width / all;
    const std::string bar = std::string(share, '#') + std::string(width - share, '.');
    std::fprintf(stderr, "\r[%s] %zu of %zu files", bar.c_str(), std::min(done, all), all);
    drawn = true;
}

void Progress::clear()
{
    if (drawn)
        std::fputs("\r\033[K", stderr);
    drawn = false;
}

} // namespace algdata
