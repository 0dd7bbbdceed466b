/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The host of the examples. Each example shows the functions of one family. The manual
 * pages and the site show the part between two comments with the name of a function. The
 * text after "prints:" is what the program prints.
 */
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "dataInterface.h"

/* [g_yra_debug] */
int g_yra_debug = 3; /* errors only */
/* [g_yra_debug] */

/* [libzo_log] */
void libzo_log(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    vfprintf(stderr, format, arguments);
    va_end(arguments);
}
/* [libzo_log] */
