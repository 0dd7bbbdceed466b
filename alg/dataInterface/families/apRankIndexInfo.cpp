/* SPDX-License-Identifier: Apache-2.0 */
#include "../../dataInterface.h"
#include "../shared/diagnostics.h"
#include "../text/fields.h"

namespace [[gnu::visibility("hidden")]] alg_internal
{

/* ---- One record --------------------------------------------------------- */

template <typename Text, typename Index> static bool rankIndexHeader(Text& text, Index& index)
{
    return fields(text, FORMAT("%hhu %hhu %u %u\n"), index.cnt, index.process_re, index.alg_strategy,
                  index.starttime);
}

template <typename Text, typename Rank> static bool rankIndexEntry(Text& text, Rank& rank)
{
    return fields(text, FORMAT("%12s %12s %hhu %hu\n"), rank.deviceMAC, rank.fatherMAC, rank.apRank,
                  rank.throughput);
}

/*
 * Reads the header and all entry lines; the count in the header does not limit
 * them. Returns false at a blank line and at more than ALG_RANK_INDEX_CAPACITY
 * entries.
 */
static bool scanRankIndex(TextIn& in, ApRankIndex* index)
{
    if (!nextLine(in))
        return true; /* an empty file leaves the record unchanged */
    if (!rankIndexHeader(in, *index))
        return false;
    for (int i = 0; nextLine(in); ++i) {
        if (i == ALG_RANK_INDEX_CAPACITY || !rankIndexEntry(in, index->apRank[i]))
            return false;
    }
    return true;
}

static bool printRankIndex(TextOut& out, const ApRankIndex& index)
{
    if (!rankIndexHeader(out, index))
        return false;
    for (int i = 0; i < index.cnt; ++i) {
        if (!rankIndexEntry(out, index.apRank[i]))
            return false;
    }
    return true;
}

} // namespace alg_internal

using namespace alg_internal;

/* ---- Whole files -------------------------------------------------------- */

bool apRankIndexInfoReader(const char* path, ApRankIndex* pApRankIndex)
{
    TextIn in;
    if (!openText(in, path)) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file : %s.\n", __func__, __LINE__, path);
        return false;
    }
    if (!scanRankIndex(in, pApRankIndex)) {
        LOG_ERROR("libzo: [%s:%d]: sscanf error, path: %s.\n", __func__, __LINE__, path);
        closeText(in);
        return false;
    }
    if (closeText(in) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path: %s.\n", __func__, __LINE__, path);
        return false;
    }
    return true;
}

bool apRankIndexInfoWriter(const char* path, ApRankIndex* pApRankIndex)
{
    if (pApRankIndex->cnt > ALG_RANK_INDEX_CAPACITY) {
        /* Checked before the open, so that the file is unchanged. */
        LOG_ERROR("libzo: [%s:%d]: fprintf error, path: %s", __func__, __LINE__, path);
        return false;
    }
    TextOut out;
    if (!openText(out, path)) {
        LOG_ERROR("libzo: [%s:%d]: fopen error, path: %s.", __func__, __LINE__, path);
        return false;
    }
    const bool result = printRankIndex(out, *pApRankIndex);
    if (!result)
        LOG_ERROR("libzo: [%s:%d]: fprintf error, path: %s", __func__, __LINE__, path);
    if (closeText(out) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", __func__, __LINE__, path);
        return false;
    }
    return result;
}
