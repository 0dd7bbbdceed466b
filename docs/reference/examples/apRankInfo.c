/* SPDX-License-Identifier: Apache-2.0 */
#include "host.h"

/* [apRankInfoWriter] */
static bool saveRanks(const char* path)
{
    ApRank ranks[2] = {{"0a4e00000001", "000000000000", 0}, {"0a4e00000002", "0a4e00000001", 1}};
    return apRankInfoWriter(path, ranks, 2);
}
/* [apRankInfoWriter] */

/* [updataSingleApRankInfo] */
static bool updateRank(const char* path)
{
    ApRank rank = {"0a4e00000002", "000000000000", 2};
    return updataSingleApRankInfo(path, &rank);
}
/* [updataSingleApRankInfo] */

/* [apRankInfoReader] */
static bool loadRanks(const char* path)
{
    int count = dataLineCounter(path); /* the reader fills this many records */
    ApRank* ranks = count > 0 ? (ApRank*)calloc((size_t)count, sizeof *ranks) : NULL;
    bool loaded = ranks != NULL && apRankInfoReader(path, ranks);
    if (loaded)
        printf("%s: %d\n", ranks[count - 1].deviceMAC, ranks[count - 1].apRank); /* prints: 0a4e00000002: 2 */
    free(ranks);
    return loaded;
}
/* [apRankInfoReader] */

int main(void)
{
    const char* path = "ranks.txt";
    return saveRanks(path) && updateRank(path) && loadRanks(path) ? EXIT_SUCCESS : EXIT_FAILURE;
}
