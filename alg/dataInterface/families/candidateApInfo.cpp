/* SPDX-License-Identifier: Apache-2.0 */
#include "../../dataInterface.h"
#include "../shared/diagnostics.h"
#include "../text/fields.h"

namespace [[gnu::visibility("hidden")]] alg_internal
{

/* ---- One record --------------------------------------------------------- */

template <typename Text, typename Candidate> static bool candidateLine(Text& text, Candidate& candidate)
{
    return fields(text, FORMAT("%12s %hhu %hhu %hhu %hu %hhu %hhu %hhu %hhu\n"), candidate.apMac,
                  candidate.connectBand, candidate.roamingAvailable, candidate.rssi, candidate.throughput,
                  candidate.wifimode, candidate.bandwidth, candidate.mcslevel, candidate.mimo);
}

} // namespace alg_internal

using namespace alg_internal;

/* ---- Whole files -------------------------------------------------------- */

bool candidateApNodeInfoReader(const char* path, CandidateAp* pCandidateAp)
{
    TextIn in;
    if (!openText(in, path)) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file: %s.\n", __func__, __LINE__, path);
        return false;
    }
    for (int i = 0; nextLine(in); ++i) {
        if (!candidateLine(in, pCandidateAp[i])) {
            LOG_ERROR("libzo: [%s:%d]: sscanf error, path: %s", __func__, __LINE__, path);
            closeText(in);
            return false;
        }
    }
    if (closeText(in) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", __func__, __LINE__, path);
        return false;
    }
    return true;
}

bool candidateApNodeInfoWriter(const char* path, CandidateAp* pCandidateAp, int canApNum)
{
    TextOut out;
    if (!openText(out, path)) {
        LOG_ERROR("libzo: [%s:%d]: Failed to write file: %s.\n", __func__, __LINE__, path);
        return false;
    }
    for (int i = 0; i < canApNum; ++i) {
        const CandidateAp& candidate = pCandidateAp[i];
        if (!candidateLine(out, candidate)) {
            /* A failed print logs the text of a failed close, on purpose. */
            LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", __func__, __LINE__, path);
            closeText(out);
            return false;
        }
    }
    if (closeText(out) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", __func__, __LINE__, path);
        return false;
    }
    return true;
}
