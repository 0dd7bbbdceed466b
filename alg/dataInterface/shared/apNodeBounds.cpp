/* SPDX-License-Identifier: Apache-2.0 */
#include "apNodeBounds.h"

namespace [[gnu::visibility("hidden")]] alg_internal
{

enum { FULL_UTILIZATION = 95, MAX_RATE = 10000 };

static uint8_t remainingUtilization(uint8_t used)
{
    const int left = FULL_UTILIZATION - used;
    return static_cast<uint8_t>(left < 1 ? 1 : left);
}

static uint16_t boundRate(uint16_t rate)
{
    if (rate > MAX_RATE)
        return MAX_RATE;
    return rate == 0 ? 1 : rate;
}

void convertLoadedApNode(ApNodeV2& node)
{
    for (int j = 0; j < ALG_BANDS; ++j) {
        node.wirelessChannelUtilization[j] = remainingUtilization(node.wirelessChannelUtilization[j]);
        node.wirelessRxRate[j] = boundRate(node.wirelessRxRate[j]);
        node.wirelessTxRate[j] = boundRate(node.wirelessTxRate[j]);
    }
    node.plcUtilization = remainingUtilization(node.plcUtilization);
    node.ethernetUtilization = remainingUtilization(node.ethernetUtilization);
    if (node.plcRate > MAX_RATE)
        node.plcRate = MAX_RATE; /* no lower bound, on purpose */
}

} // namespace alg_internal
