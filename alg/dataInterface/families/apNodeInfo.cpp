/* SPDX-License-Identifier: Apache-2.0 */
#include <string.h>

#include "../../dataInterface.h"
#include "../shared/apNodeBounds.h"
#include "../shared/diagnostics.h"
#include "../text/fields.h"

namespace [[gnu::visibility("hidden")]] alg_internal
{

/* ---- One record --------------------------------------------------------- */

/* The steps of a record, numbered as the reader's messages number them. */
enum ApNodeStep {
    STEP_MACS = 1,
    STEP_2_2,
    STEP_2_3,
    STEP_2_4,
    STEP_2_5,
    STEP_2_6,
    STEP_2_7,
    STEP_LINE_END,
    ALL_STEPS
};

/* Returns the step that fails, or ALL_STEPS. */
template <typename Text, typename Node> static ApNodeStep apNode(Text& text, Node& node)
{
    if (!fields(text, FORMAT("%12s %12s"), node.deviceMAC, node.fatherDeviceMAC))
        return STEP_MACS;
    if (arrayFields(text, FORMAT(" %hhu"), node.wirelessChannelUtilization) < ALG_BANDS)
        return STEP_2_2;
    if (!fields(text, FORMAT(" %hhu %hhu"), node.plcUtilization, node.ethernetUtilization))
        return STEP_2_3;
    if (arrayFields(text, FORMAT(" %hu"), node.wirelessRxRate) < ALG_BANDS)
        return STEP_2_4;
    if (arrayFields(text, FORMAT(" %hu"), node.wirelessTxRate) < ALG_BANDS)
        return STEP_2_5;
    if (!fields(text, FORMAT(" %hu %hu"), node.plcRate, node.ethernetRate))
        return STEP_2_6;
    if (arrayFields(text, FORMAT(" %hu"), node.offset) < ALG_BANDS)
        return STEP_2_7;
    return endLine(text) ? ALL_STEPS : STEP_LINE_END;
}

static void reportUnreadStep(ApNodeStep step, const char* function, const char* path)
{
    switch (step) {
    case STEP_MACS:
        LOG_ERROR("libzo: [%s:%d]: sscanf error part 1, path: %s\n", function, __LINE__, path);
        break;
    case STEP_2_2:
        LOG_ERROR("libzo: [%s:%d]: sscanf error part 2_2, path: %s\n", function, __LINE__, path);
        break;
    case STEP_2_3:
        LOG_ERROR("libzo: [%s:%d]: sscanf error part 2_3, path: %s\n", function, __LINE__, path);
        break;
    case STEP_2_4:
        LOG_ERROR("libzo: [%s:%d]: sscanf error part 2_4, path: %s\n", function, __LINE__, path);
        break;
    case STEP_2_5:
        LOG_ERROR("libzo: [%s:%d]: sscanf error part 2_5, path: %s\n", function, __LINE__, path);
        break;
    case STEP_2_6:
        LOG_ERROR("libzo: [%s:%d]: sscanf error part 2_6, path: %s\n", function, __LINE__, path);
        break;
    default:
        LOG_ERROR("libzo: [%s:%d]: sscanf error part 2_7, path: %s\n", function, __LINE__, path);
        break;
    }
}

} // namespace alg_internal

using namespace alg_internal;

/* ---- Whole files -------------------------------------------------------- */

bool apNodeInfoWriterV2(const char* path, int cnt, ApNodeV2* pApNodeV2)
{
    TextOut out;
    if (!openText(out, path)) {
        LOG_ERROR("libzo: [%s:%d]: fopen error, path: %s.", __func__, __LINE__, path);
        return false;
    }
    for (int i = 0; i < cnt; ++i) {
        const ApNodeV2& node = pApNodeV2[i];
        if (apNode(out, node) != ALL_STEPS) {
            LOG_ERROR("libzo: [%s:%d]: fprintf error, path: %s", __func__, __LINE__, path);
            closeText(out);
            return false;
        }
    }
    closeText(out);
    return true;
}

bool apNodeInfoReaderV2(const char* path, uint8_t apNum, ApNodeV2* pApNodeV2, char (*macPool)[ALG_MAC_SIZE])
{
    TextIn in;
    if (!openText(in, path)) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file: %s.\n", __func__, __LINE__, path);
        return false;
    }
    for (int i = 0; i < apNum; ++i) {
        const ApNodeStep step = apNode(in, pApNodeV2[i]);
        if (step != ALL_STEPS) {
            reportUnreadStep(step, __func__, path);
            closeText(in);
            return false;
        }
    }
    for (int i = 0; i < apNum; ++i)
        memcpy(macPool[i], pApNodeV2[i].deviceMAC, sizeof macPool[i]);
    for (int i = 0; i < apNum; ++i)
        convertLoadedApNode(pApNodeV2[i]);
    closeText(in);
    return true;
}
