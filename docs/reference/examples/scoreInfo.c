/* SPDX-License-Identifier: Apache-2.0 */
#include "host.h"

/* [scoreInfoWriter] */
static bool saveScores(const char* path)
{
    ScoreInfo scores[1];
    memset(scores, 0, sizeof scores);
    strcpy(scores[0].fatherMAC, "0a4e00000001"); /* an empty one would end the file */
    scores[0].hopsFactor = 0.875F;
    scores[0].thrputPredict = 320;
    return scoreInfoWriter(path, scores, 1);
}
/* [scoreInfoWriter] */

/* [scoreInfoCntReader] */
static bool hasScores(const char* path)
{
    return scoreInfoCntReader(path) == 0; /* a missing file returns 0 too */
}
/* [scoreInfoCntReader] */

/* [scoreInfoReader] */
static bool loadScores(const char* path)
{
    ScoreInfo scores[1];
    memset(scores, 0, sizeof scores); /* a file that is too short leaves them as they are */
    if (!scoreInfoReader(path, scores, 1))
        return false;
    printf("%s: %d\n", scores[0].fatherMAC, scores[0].thrputPredict); /* prints: 0a4e00000001: 320 */
    return true;
}
/* [scoreInfoReader] */

int main(void)
{
    const char* path = "scores.txt";
    return saveScores(path) && hasScores(path) && loadScores(path) ? EXIT_SUCCESS : EXIT_FAILURE;
}
