/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Logs messages at the levels 3 and 6; the only notice, at level 5, is in
 * thresholdsAndSettings.cpp. Write the whole text of a message at the place that
 * logs it, so that a search for a line of the log finds the place. While
 * g_yra_debug is below a message's level, the message is not formatted.
 */
#ifndef ALG_DATA_INTERFACE_DIAGNOSTICS_H
#define ALG_DATA_INTERFACE_DIAGNOSTICS_H

#include "../../ai_macros.h"

#define ALG_LOG_FROM(level, ...)    \
    do {                            \
        if (g_yra_debug >= (level)) \
            libzo_log(__VA_ARGS__); \
    } while (0)

#define LOG_ERROR(...) ALG_LOG_FROM(3, __VA_ARGS__)
#define LOG_INFO(...) ALG_LOG_FROM(6, __VA_ARGS__)

#endif
