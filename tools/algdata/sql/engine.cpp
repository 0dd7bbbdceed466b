/* SPDX-License-Identifier: Apache-2.0 */
#include "sql/engine.h"

#include <fmt/format.h>

#include "output/output.h"

namespace algdata
{

void Engine::start()
{
    cache.clear();
    considered = accepted = matched = bad = others = 0;
    status = AllWell;
    interrupted = 0;
    timedOut = stopped = false;
    reported.clear();
}

volatile std::sig_atomic_t Engine::interrupted = 0;

bool Engine::takeInterrupt()
{
    const bool was = interrupted != 0;
    interrupted = 0;
    return was;
}

bool Engine::stopping()
{
    constexpr unsigned between = 64; /* calls between two looks at the clock */
    if (++steps % between == 0) {
        timedOut = timedOut || (deadline && std::chrono::steady_clock::now() > *deadline);
        stopped = stopped || (cancelled && cancelled());
    }
    return timedOut || stopped || interrupted != 0;
}

void Engine::report(Status how, const std::string& path, const std::vector<std::string>& messages)
{
    status = worse(status, how);
    if (reported.size() >= maxReported || !reported.insert({path, how}).second)
        return;
    ++bad;
    for (const std::string& text : messages)
        message(text);
    if (reported.size() == maxReported)
        message(fmt::format("only the first {} files with damage or errors are listed", maxReported));
}

} // namespace algdata
