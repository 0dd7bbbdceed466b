/* SPDX-License-Identifier: Apache-2.0 */
#include "sql/questions.h"

#include <algorithm>

#include <fmt/format.h>

#include "options/options.h"
#include "records/kinds.h"
#include "text/suggest.h"
#include "text/wording.h"

namespace algdata
{

namespace
{

/* The files with as many records as their kind keeps. */
std::string fullHistories()
{
    std::string caps;
    for (const Kind& kind : kinds())
        if (kind.cap > 1 && kind.shape == Shape::Lines && !kind.unique)
            caps += fmt::format("{}(kind = '{}' AND records >= {})", caps.empty() ? "" : "\n   OR ",
                                kind.name, kind.cap);
    return "SELECT path, kind, records FROM file\nWHERE " + caps;
}

} // namespace

const std::vector<Question>& questions()
{
    static const std::vector<Question> all = {
        {"weakest-backhaul", "which wireless backhaul is the weakest of each directory",
         R"(SELECT directory, deviceMAC, deviceName, fatherMAC, backhaulBand, min(backhaulRssi) AS backhaulRssi
FROM tree WHERE medium = 'wireless' AND backhaulRssi > 0 GROUP BY directory)"},
        {"decisions", "which decisions the files hold, with the names of the devices",
         R"(SELECT _path, srcMAC, name_of(srcMAC) AS srcName, dstMAC, name_of(dstMAC) AS dstName, algStrategy, timeout
FROM alg_output)"},
        {"clamped-delays", "which delays the readers clamp",
         R"(SELECT s._path, s._line, s.fatherMAC, s.sample, s.delayTime, l.delayTime AS loaded
FROM time_delay_sample AS s JOIN time_delay_sample_loaded AS l USING (_path, _record, sample)
WHERE s.delayTime > l.delayTime)"},
        {"full-history", "which histories are at their cap", fullHistories()},
        {"father-cycle", "which devices are above themselves",
         R"(SELECT directory, deviceMAC, fatherMAC FROM tree WHERE attachment = 'cycle')"},
        {"unknown-father", "whose father is no device of its directory",
         R"(SELECT directory, deviceMAC, fatherMAC FROM tree WHERE attachment = 'unknown father')"},
        {"rank-step", "whose rank is not its father's plus one",
         R"(WITH all_devices AS MATERIALIZED (SELECT directory, deviceMAC, fatherMAC, apRank FROM tree)
SELECT d.directory, d.deviceMAC, d.apRank, f.deviceMAC AS fatherMAC, f.apRank AS fatherRank
FROM all_devices AS d JOIN all_devices AS f ON f.directory = d.directory AND f.deviceMAC = d.fatherMAC
WHERE d.apRank <> f.apRank + 1)"},
        {"strategy", "which strategies have no meaning",
         fmt::format(
             "SELECT _path, _line, algStrategy FROM alg_output WHERE algStrategy > {0}\n"
             "UNION ALL SELECT _path, _line, alg_strategy FROM ap_rank_index WHERE alg_strategy > {0}",
             ALG_STRATEGY_GET_BEST)},
        {"unset-score-inputs", "which scores rest on no delay test, no signal or no rate",
         R"(SELECT s._path, s._line, s.fatherMAC, s.timeDelayTestCnt, max(b.rssi) AS rssi, max(b.negoRate) AS negoRate
FROM score AS s JOIN score_band AS b USING (_path, _record)
GROUP BY s._path, s._record HAVING s.timeDelayTestCnt = 0 OR max(b.rssi) = 0 OR max(b.negoRate) = 0)"},
    };
    return all;
}

const Question& questionNamed(const std::string& name)
{
    std::vector<std::string> names;
    for (const Question& one : questions()) {
        if (name == one.name)
            return one;
        names.emplace_back(one.name);
    }
    throw Failure(fmt::format("--named {}: expected one of {}{}", inQuotes(name), fmt::join(names, ", "),
                              didYouMean(name, names)));
}

std::string questionList()
{
    size_t width = 0;
    for (const Question& one : questions())
        width = std::max(width, std::string(one.name).size());
    std::string text;
    for (const Question& one : questions())
        text += fmt::format("{:{}}  {}\n", one.name, width, one.asks);
    return text;
}

} // namespace algdata
