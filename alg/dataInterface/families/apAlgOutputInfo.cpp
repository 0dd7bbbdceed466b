/* SPDX-License-Identifier: Apache-2.0 */
#include "../../dataInterface.h"
#include "../shared/diagnostics.h"
#include "../text/fields.h"

namespace [[gnu::visibility("hidden")]] alg_internal
{

/* ---- One record --------------------------------------------------------- */

/* The strategy is unsigned when read and signed when written, on purpose. */
template <typename Text, typename Output> static bool algOutputLine(Text& text, Output& output)
{
    return fields(text, FORMATS("%12s %12s %u %hhu\n", "%12s %12s %d %hhu\n"), output.srcMAC, output.dstMAC,
                  output.algStrategy, output.timeout);
}

} // namespace alg_internal

using namespace alg_internal;

/* ---- Whole files -------------------------------------------------------- */

bool apAlgOutputInfoReader(const char* path, ApAlgInterfaceOutput* pApAlgOutput)
{
    TextIn in;
    if (!openText(in, path)) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file : %s.\n", __func__, __LINE__, path);
        return false;
    }
    if (nextLine(in) && !algOutputLine(in, *pApAlgOutput)) {
        LOG_ERROR("libzo: [%s:%d]: sscanf error, path: %s.\n", __func__, __LINE__, path);
        closeText(in);
        return false;
    }
    if (closeText(in) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path: %s.\n", __func__, __LINE__, path);
        return false;
    }
    return true;
}

bool apAlgOutputInfoWriter(const char* path, ApAlgInterfaceOutput* pApAlgOutput)
{
    TextOut out;
    if (!openText(out, path)) {
        LOG_ERROR("libzo: [%s:%d]: fopen error, path: %s.", __func__, __LINE__, path);
        return false;
    }
    const ApAlgInterfaceOutput& output = *pApAlgOutput;
    const bool result = algOutputLine(out, output);
    if (!result)
        LOG_ERROR("libzo: [%s:%d]: fprintf error, path: %s", __func__, __LINE__, path);
    if (closeText(out) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", __func__, __LINE__, path);
        return false;
    }
    return result;
}
