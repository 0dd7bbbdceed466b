/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Logs messages: errors at level 3, informational messages at level 6. Write the
 * whole text of a message at the place that logs it, so that a search for a line of
 * the log finds the place. While g_yra_debug is below a message's level, the message
 * is not formatted.
 */
#ifndef ALG_DATA_INTERFACE_DIAGNOSTICS_H
#define ALG_DATA_INTERFACE_DIAGNOSTICS_H

#include "../../ai_macros.h"

/*
 * A message is a literal format, the name of the function, the line, and for most messages the
 * path or an index; a format without a path ignores it. One function per level decides whether to
 * log, because a decision at every place is larger.
 */
#define LOG_ERROR(...) ALG_LOG_BY(logError, __VA_ARGS__)
#define LOG_INFO(...) ALG_LOG_BY(logInfo, __VA_ARGS__)

/* The call that never happens makes the compiler check the format against its arguments. */
#define ALG_LOG_BY(log, ...)        \
    do {                            \
        if (false)                  \
            libzo_log(__VA_ARGS__); \
        log(__VA_ARGS__);           \
    } while (0)

/* For messages with other arguments, and for the notice at level 5. */
#define ALG_LOG_FROM(level, ...)    \
    do {                            \
        if (g_yra_debug >= (level)) \
            libzo_log(__VA_ARGS__); \
    } while (0)

namespace [[gnu::visibility("hidden")]] alg_internal
{

void logError(const char* format, const char* function, int line, const char* path = nullptr);
void logInfo(const char* format, const char* function, int line, const char* path = nullptr);
void logInfo(const char* format, const char* function, int line, int index);

} // namespace alg_internal

#endif
