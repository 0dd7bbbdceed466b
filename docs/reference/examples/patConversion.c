/* SPDX-License-Identifier: Apache-2.0 */
#include "host.h"

/* [patInt2Alg] */
static bool convertOlder(void)
{
    static PatParameter stored;
    static AlgPatParameter converted;
    stored.bParameter[0] = 64;
    stored.cParameter[0] = 46094;
    patInt2Alg(1, &stored, &converted);
    const float* values = converted.allParameter[0][0][0];            /* band, width, MCS order */
    printf("b %.4f, c %.2f\n", (double)values[1], (double)values[2]); /* prints: b 0.1512, c -30.50 */
    return true;
}
/* [patInt2Alg] */

/* [patInt2AlgV2] */
static bool convert(const PatParameterV2* device, AlgPatParameterV2* converted)
{
    PatParameterV2 stored = *device;
    patInt2AlgV2(1, &stored, converted);
    const AlgSinglePat* entry = &converted->algSinglePat[0];
    printf("b %.4f, c %.2f\n", (double)entry->paraB, (double)entry->paraC); /* prints: b 0.1512, c -20.50 */
    return true;
}
/* [patInt2AlgV2] */

/* [patAlg2IntV2] */
static bool convertBack(PatParameterV2* stored, AlgPatParameterV2* changed)
{
    changed->algSinglePat[0].paraB = 0.2F;
    patAlg2IntV2(1, stored, changed); /* the destination comes first */
    printf("B %d, changed %d\n", stored->singlePat[0].paraB, stored->singlePat[0].isChanged);
    return true; /* prints: B 125, changed 1 */
}
/* [patAlg2IntV2] */

int main(void)
{
    static PatParameterV2 stored;
    static AlgPatParameterV2 converted;
    SinglePat entry = {0, 1, 3, 0, 64, 46094};
    stored.commonPatNum = 1;
    stored.singlePat[0] = entry;
    bool done = convertOlder() && convert(&stored, &converted) && convertBack(&stored, &converted);
    return done ? EXIT_SUCCESS : EXIT_FAILURE;
}
