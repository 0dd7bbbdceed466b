/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the host defines for the module: one logging function and one debug level.
 *
 * Nothing under alg/ defines them, and the module never writes the level.
 */
#ifndef ALG_AI_MACROS_H
#define ALG_AI_MACROS_H

#ifdef __cplusplus
extern "C" {
#endif

/* Lets the compiler check the arguments of every message against its format. */
#if defined(__GNUC__)
#define ALG_PRINTF_LIKE(formatIndex, firstArgument) \
    __attribute__((format(printf, formatIndex, firstArgument)))
#else
#define ALG_PRINTF_LIKE(formatIndex, firstArgument)
#endif

/*
 * Logs one message, as printf() would print it. The module calls it once per
 * message. The format is one literal that begins with "libzo: [%s:%d]: "; the
 * arguments are the name of the emitting function, its source line, and then the
 * message's own arguments. Some messages end in a newline and some do not; the
 * module adds none. The host decides where a message goes and what to add to it.
 */
void libzo_log(const char* format, ...) ALG_PRINTF_LIKE(1, 2);

/*
 * The debug level, read again for every message. While it is below a message's
 * level, that message is not formatted.
 *   3 or more    errors are logged
 *   5 or more    also the message of ai_alg_set_patc_comp()
 *   6 or more    also informational messages
 */
extern int g_yra_debug;

#ifdef __cplusplus
}
#endif

#endif
