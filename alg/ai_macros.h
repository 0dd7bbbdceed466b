/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the module needs of its host: one logging function and one level.
 *
 * Both belong to the host library and are defined there; nothing under alg/
 * defines them, and the module never writes the level.
 */
#ifndef ALG_AI_MACROS_H
#define ALG_AI_MACROS_H

#ifdef __cplusplus
extern "C" {
#endif

/* Lets the compiler hold every message's arguments against its format. */
#if defined(__GNUC__)
#define ALG_PRINTF_LIKE(formatIndex, firstArgument) \
    __attribute__((format(printf, formatIndex, firstArgument)))
#else
#define ALG_PRINTF_LIKE(formatIndex, firstArgument)
#endif

/*
 * The host's log. Every message of the module is one call of it: the format is
 * one literal that begins "libzo: [%s:%d]: ", the first argument is the name
 * of the emitting function, the second its source line, then the message's own
 * arguments. What the host does with a message (where it goes, whether a time
 * or a newline is added) is the host's affair; the module adds neither.
 */
void libzo_log(const char* format, ...) ALG_PRINTF_LIKE(1, 2);

/*
 * The host's debug level, read afresh at every message: errors are emitted at
 * 3 and above, informational messages at 6 and above, the notice of
 * ai_alg_set_patc_comp at 5 and above. Below its level a message is not
 * formatted at all.
 */
extern int g_yra_debug;

#ifdef __cplusplus
}
#endif

#endif
