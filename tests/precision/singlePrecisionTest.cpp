/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Compares the PAT conversions, built for the x87 unit, with results that are rounded to
 * a float after every step. A double is precise enough for the sum and the product of
 * two floats: casting it to a float gives the correctly rounded result.
 */
#include <math.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include "dataInterface.h"

int g_yra_debug = 0;

void libzo_log(const char*, ...) {}

static float sum(float a, float b)
{
    return static_cast<float>(static_cast<double>(a) + static_cast<double>(b));
}

static float product(float a, float b)
{
    return static_cast<float>(static_cast<double>(a) * static_cast<double>(b));
}

static PatParameterV2 pat;
static AlgPatParameterV2 alg;
static int differences;

static void compare(const char* what, uint32_t input, double expected, double found)
{
    if (expected == found)
        return;
    if (differences++ < 10)
        printf("%s of %u: expected %.9g, found %.9g\n", what, static_cast<unsigned>(input), expected, found);
}

static void decodeEverything()
{
    for (uint32_t coded = 0; coded <= UINT16_MAX; ++coded) {
        pat.singlePat[0].paraB = static_cast<uint8_t>(coded);
        pat.singlePat[0].paraC = static_cast<uint16_t>(coded);
        patInt2AlgV2(1, &pat, &alg);
        compare("b", coded, sum(product(static_cast<float>(coded & 0xff), 0.0008F), 0.1F),
                alg.algSinglePat[0].paraB);
        compare("c", coded, sum(product(static_cast<float>(coded), 0.00064F), -50.0F),
                alg.algSinglePat[0].paraC);
    }
}

/* The 2^24 consecutive floats that start at -50 and go up. */
static void encodeFloats()
{
    uint32_t bits = 0;
    const float first = -50.0F;
    memcpy(&bits, &first, sizeof bits);
    for (uint32_t step = 0; step < 1U << 24; ++step) {
        float c = 0;
        const uint32_t at = bits - step;
        memcpy(&c, &at, sizeof c);
        alg.algSinglePat[0].paraC = c;
        patAlg2IntV2(1, &pat, &alg);
        compare("the coded c", at, static_cast<uint16_t>(lroundf(product(sum(c, 50.0F), 1562.5F))),
                pat.singlePat[0].paraC);
    }
}

int main()
{
    alg.commonPatNum = 1;
    pat.commonPatNum = 1;
    decodeEverything();
    encodeFloats();
    printf("values: %d, differences: %d\n", 2 * 65536 + (1 << 24), differences);
    return differences == 0 ? 0 : 1;
}
