/* SPDX-License-Identifier: Apache-2.0 */
#include <string.h>

#include "../../dataInterface.h"
#include "../shared/patEntries.h"

namespace [[gnu::visibility("hidden")]] alg_internal
{

/* ---- Coding of b and c -------------------------------------------------- */
/*
 * b runs from 0.1 in steps of 0.0008, c from -50 in steps of 0.00064.
 *
 * Every constant and every step is in single precision. A compiler may keep a
 * literal or a result with more digits (x87), or fuse a product with a sum: the
 * last bits then differ.
 */
static const float MIN_B = 0.1F;
static const float B_STEP = 0.0008F;
static const float B_STEPS_PER_UNIT = 1250.0F; /* 1 / 0.0008 */
static const float MIN_C = -50.0F;
static const float C_STEP = 0.00064F;
static const float C_STEPS_PER_UNIT = 1562.5F; /* 1 / 0.00064 */

/* The value in single precision, even if a register has more digits. */
static float rounded(float value)
{
    const volatile float single = value;
    return single;
}

static float decodeB(uint16_t coded)
{
    return rounded(rounded(static_cast<float>(coded) * B_STEP) + MIN_B);
}

static float decodeC(uint16_t coded)
{
    return rounded(rounded(static_cast<float>(coded) * C_STEP) + MIN_C);
}

/*
 * Rounds to the nearest integer, halves away from zero. Negative numbers and NaN
 * become 0, numbers from 2^32 on become UINT32_MAX.
 */
static uint32_t roundToUnsigned(float value)
{
    if (!(value >= 0.5F))
        return 0;
    if (value >= 4294967296.0F)
        return UINT32_MAX;
    const uint32_t whole = static_cast<uint32_t>(value);
    return value - static_cast<float>(whole) >= 0.5F ? whole + 1 : whole;
}

/* A value above the range wraps and is not clamped, on purpose. */
static uint8_t encodeB(float b)
{
    return static_cast<uint8_t>(roundToUnsigned(rounded(rounded(b - MIN_B) * B_STEPS_PER_UNIT)));
}

static uint16_t encodeC(float c)
{
    return static_cast<uint16_t>(roundToUnsigned(rounded(rounded(c - MIN_C) * C_STEPS_PER_UNIT)));
}

/* ---- One entry of version 2 -------------------------------------------- */

static void decodePatEntry(const SinglePat& from, AlgSinglePat& to)
{
    to.bandOrder = from.bandOrder;
    to.channelWidthOrder = from.channelWidthOrder;
    to.mcsOrder = from.mcsOrder;
    to.paraA = static_cast<float>(getPeekThr(from.bandOrder, from.channelWidthOrder, from.mcsOrder));
    to.paraB = decodeB(from.paraB);
    to.paraC = decodeC(from.paraC);
}

/* Sets the flags of what has changed. A flag that an earlier conversion set stays set. */
static void encodePatEntry(const AlgSinglePat& from, SinglePat& to)
{
    to.bandOrder = from.bandOrder;
    to.channelWidthOrder = from.channelWidthOrder;
    to.mcsOrder = from.mcsOrder;
    const uint8_t paraB = encodeB(from.paraB);
    if (paraB != to.paraB)
        to.isChanged |= 1U;
    to.paraB = paraB;
    const uint16_t paraC = encodeC(from.paraC);
    if (paraC != to.paraC)
        to.isChanged |= 2U;
    to.paraC = paraC;
}

} // namespace alg_internal

using namespace alg_internal;

/* ---- Version 1 ---------------------------------------------------------- */

bool patInt2Alg(int cnt, PatParameter* pPatParameter, AlgPatParameter* pAlgPatParameter)
{
    const float compensation = ai_yra_patc_compensation;
    for (int d = 0; d < cnt; ++d) {
        /* deviceMac is not copied, on purpose; version 2 copies it. */
        for (int slot = 0; slot < ALG_PAT_CAPACITY; ++slot) {
            const int band = slot / (ALG_CHANNEL_WIDTHS * ALG_MCS_ORDERS);
            const int width = slot / ALG_MCS_ORDERS % ALG_CHANNEL_WIDTHS;
            const int mcs = slot % ALG_MCS_ORDERS;
            float* parameter = pAlgPatParameter[d].allParameter[band][width][mcs];
            parameter[0] = static_cast<float>(peekThr[band][width][mcs]);
            parameter[1] = decodeB(pPatParameter[d].bParameter[slot]);
            parameter[2] = decodeC(pPatParameter[d].cParameter[slot]) - compensation;
        }
    }
    return true;
}

/* ---- Version 2 ---------------------------------------------------------- */

void patInt2AlgV2(int cnt, PatParameterV2* pPatParameterV2, AlgPatParameterV2* pAlgPatParameterV2)
{
    for (int i = 0; i < cnt; ++i) {
        const PatParameterV2& pat = pPatParameterV2[i];
        AlgPatParameterV2& alg = pAlgPatParameterV2[i];
        strncpy(alg.deviceMac, pat.deviceMac, sizeof alg.deviceMac);
        alg.commonPatNum = patEntries(pat.commonPatNum);
        for (int j = 0; j < alg.commonPatNum; ++j)
            decodePatEntry(pat.singlePat[j], alg.algSinglePat[j]);
    }
}

bool patAlg2IntV2(int cnt, PatParameterV2* pPatParameterV2, AlgPatParameterV2* pAlgPatParameterV2)
{
    for (int i = 0; i < cnt; ++i) {
        const AlgPatParameterV2& alg = pAlgPatParameterV2[i];
        PatParameterV2& pat = pPatParameterV2[i];
        strncpy(pat.deviceMac, alg.deviceMac, sizeof pat.deviceMac);
        pat.commonPatNum = patEntries(alg.commonPatNum);
        for (int j = 0; j < pat.commonPatNum; ++j)
            encodePatEntry(alg.algSinglePat[j], pat.singlePat[j]);
    }
    return true;
}
