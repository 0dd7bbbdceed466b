/* SPDX-License-Identifier: Apache-2.0 */
#include "host.h"

/* [apRankIndexInfoWriter] */
static bool saveRanking(const char* path)
{
    static ApRankIndex ranking;
    ApThrRank first = {"0a4e00000002", "0a4e00000001", 1, 320};
    ranking.apRank[0] = first;
    ranking.cnt = 1;
    ranking.alg_strategy = ALG_STRATEGY_CAREFUL;
    return apRankIndexInfoWriter(path, &ranking);
}
/* [apRankIndexInfoWriter] */

/* [apRankIndexInfoReader] */
static bool loadRanking(const char* path)
{
    static ApRankIndex ranking; /* zeroed: an empty file leaves it as it is */
    if (!apRankIndexInfoReader(path, &ranking))
        return false;
    for (int i = 0; i < ranking.cnt && i < ALG_RANK_INDEX_CAPACITY; ++i)
        printf("%s: %d\n", ranking.apRank[i].deviceMAC, ranking.apRank[i].throughput);
    return true; /* prints: 0a4e00000002: 320 */
}
/* [apRankIndexInfoReader] */

int main(void)
{
    return saveRanking("index.txt") && loadRanking("index.txt") ? EXIT_SUCCESS : EXIT_FAILURE;
}
