/* SPDX-License-Identifier: Apache-2.0 */
#include "diagnostics.h"

namespace [[gnu::visibility("hidden")]] alg_internal
{

void logError(const char* format, const char* function, int line, const char* path)
{
    if (g_yra_debug >= 3)
        libzo_log(format, function, line, path);
}

void logInfo(const char* format, const char* function, int line, const char* path)
{
    if (g_yra_debug >= 6)
        libzo_log(format, function, line, path);
}

void logInfo(const char* format, const char* function, int line, int index)
{
    if (g_yra_debug >= 6)
        libzo_log(format, function, line, index);
}

} // namespace alg_internal
