/* SPDX-License-Identifier: Apache-2.0 */
#include "host.h"

/* [candidateApNodeInfoWriter] */
static bool saveCandidates(const char* path)
{
    CandidateAp candidates[2] = {{"0a4e00000001", 1, 1, 29, 102, 5, 2, 9, MIMO_2},
                                 {"0a4e00000002", 1, 1, 50, 208, 5, 2, 9, MIMO_2}};
    return candidateApNodeInfoWriter(path, candidates, 2);
}
/* [candidateApNodeInfoWriter] */

/* [candidateApNodeInfoReader] */
static bool loadCandidates(const char* path)
{
    int count = dataLineCounter(path);
    CandidateAp* candidates = count > 0 ? (CandidateAp*)calloc((size_t)count, sizeof *candidates) : NULL;
    bool loaded = candidates != NULL && candidateApNodeInfoReader(path, candidates);
    if (loaded)
        printf("%s: %d\n", candidates[1].apMac, candidates[1].throughput); /* prints: 0a4e00000002: 208 */
    free(candidates);
    return loaded;
}
/* [candidateApNodeInfoReader] */

int main(void)
{
    return saveCandidates("candidates.txt") && loadCandidates("candidates.txt") ? EXIT_SUCCESS : EXIT_FAILURE;
}
