/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The smallest host of the module, in plain C: it saves the rank of one device
 * and loads it back.
 *
 *     minimal_host [FILE]
 */
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>

#include "dataInterface.h"

/* The two things that every host gives the module: its level and its log. */
int g_yra_debug = 3;

void libzo_log(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    vfprintf(stderr, format, arguments);
    va_end(arguments);
}

int main(int argc, char** argv)
{
    const char* path = argc > 1 ? argv[1] : "minimal_host_rank.txt";
    ApRank living = {"0a4e00000002", "000000000000", 1};

    /* An empty file first, so that the update has no missing file to report. */
    if (!touchFile(path) || !updataSingleApRankInfo(path, &living))
        return EXIT_FAILURE;

    /* The readers fill an array without a bound: the line count sizes it. */
    int count = dataLineCounter(path);
    ApRank* ranks = count > 0 ? calloc((size_t)count, sizeof *ranks) : NULL;
    bool loaded = ranks != NULL && apRankInfoReader(path, ranks);

    for (int i = 0; loaded && i < count; ++i)
        printf("%s has rank %d\n", ranks[i].deviceMAC, ranks[i].apRank);

    free(ranks);
    return loaded ? EXIT_SUCCESS : EXIT_FAILURE;
}
