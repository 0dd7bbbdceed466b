/* SPDX-License-Identifier: Apache-2.0 */
#include "../../dataInterface.h"
#include "../shared/diagnostics.h"

float ai_yra_patc_compensation = 10.0F;
uint8_t ai_yra_rssi_compensation = 3;

uint16_t getPeekThr(uint8_t bandOrder, uint8_t channelWidthOrder, uint8_t mcsOrder)
{
    for (int i = 0; i < PEEK_THR_STRUCTURE_NUM; ++i) {
        const PeekThrStructure& row = peekThrStructure[i];
        if (row.bandOrder == bandOrder && row.channelWidthOrder == channelWidthOrder &&
            row.mcsOrder == mcsOrder)
            return row.peekThr;
    }
    return 1;
}

void ai_alg_set_patc_comp(int patc_comp)
{
    ai_yra_patc_compensation = static_cast<float>(patc_comp);
    /* volatile: reads the float that is stored; a register of the x87 unit keeps more digits. */
    const volatile float* const stored = &ai_yra_patc_compensation;
    /* The only message with a level of its own: 5, not 6. */
    ALG_LOG_FROM(5, "libzo: [%s:%d]: setting ai_yra_patc_compensation to [%f]", __func__, __LINE__,
                 static_cast<double>(*stored));
}
