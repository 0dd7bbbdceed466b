/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The levels of the module's messages. A message's whole text stands where it is
 * emitted, so that a search for what the log shows finds it. Below its level a
 * message is not formatted.
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
