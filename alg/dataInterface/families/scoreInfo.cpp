/* SPDX-License-Identifier: Apache-2.0 */
#include "../../dataInterface.h"
#include "../shared/diagnostics.h"
#include "../text/fields.h"

namespace [[gnu::visibility("hidden")]] alg_internal
{

/* ---- One record --------------------------------------------------------- */

static void reportBandValue(const TextIn& /* in */, const char* path)
{
    LOG_ERROR("libzo: [%s:%d]: sscanf error, path: %s.\n", "scoreInfoReader", __LINE__, path);
}

/* The writer logs "sscanf error" too, on purpose. */
static void reportBandValue(const TextOut& /* out */, const char* path)
{
    LOG_ERROR("libzo: [%s:%d]: sscanf error, path: %s.", "scoreInfoWriter", __LINE__, path);
}

/* A value that fails is reported, and the loop goes on. */
template <typename Text, typename Format, typename Value>
static void bandValues(Text& text, Format format, Value (&values)[ALG_BANDS], const char* path)
{
    int j = 0;
    while ((j = arrayFields(text, format, values, j)) < ALG_BANDS) {
        reportBandValue(text, path);
        ++j;
    }
}

/* Returns false if the first seven fields fail. */
template <typename Text, typename Score> static bool scoreLine(Text& text, Score& score, const char* path)
{
    if (!fields(text, FORMATS("%12s %hhu %f %hhu %hu %f %hu", "%12s %2hhu %.2f %2hhu %4hu %.2f %4hu"),
                score.fatherMAC, score.apRank, score.hopsFactor, score.timeDelayTestCnt,
                score.timeDelayAverage, score.timeNormalization, score.thrputPredict))
        return false;
    bandValues(text, FORMATS(" %hhu", " %2hhu"), score.rssi, path);
    bandValues(text, FORMATS(" %hu", " %4hu"), score.negoRate, path);
    bandValues(text, FORMATS(" %hu", " %4hu"), score.patRate, path);
    endLine(text);
    return true;
}

} // namespace alg_internal

using namespace alg_internal;

/* ---- Whole files -------------------------------------------------------- */

bool scoreInfoWriter(const char* path, ScoreInfo* pScoreInfo, int apNum)
{
    TextOut out;
    if (!openText(out, path)) {
        LOG_ERROR("libzo: [%s:%d]: Failed to write file: %s.\n", __func__, __LINE__, path);
        return false;
    }
    for (int i = 0; i < apNum && pScoreInfo[i].fatherMAC[0] != '\0'; ++i) {
        const ScoreInfo& score = pScoreInfo[i];
        if (!scoreLine(out, score, path)) {
            LOG_ERROR("libzo: [%s:%d]: fprintf error, path:%s.\n", __func__, __LINE__, path);
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

bool scoreInfoReader(const char* path, ScoreInfo* pScoreInfo, int cnt)
{
    TextIn in;
    if (!openText(in, path)) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file : %s.\n", __func__, __LINE__, path);
        return false;
    }
    for (int i = 0; i < cnt; ++i) {
        if (!scoreLine(in, pScoreInfo[i], path))
            LOG_ERROR("libzo: [%s:%d]: sscanf error, path: %s.\n", __func__, __LINE__, path);
    }
    if (closeText(in) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path: %s.\n", __func__, __LINE__, path);
        return false;
    }
    return true;
}

/* Reads a number only to find out whether the file is empty; it is not returned, on purpose. */
int scoreInfoCntReader(const char* path)
{
    TextIn in;
    if (!openText(in, path)) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file : %s.\n", __func__, __LINE__, path);
        return 0;
    }
    int cnt = 0;
    const bool hasContent = fields(in, FORMAT("%d"), cnt);
    closeText(in);
    return hasContent ? 0 : 1;
}
