/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The smallest host of the module, in C. It saves the rank of one device and
 * loads it back.
 *
 *     minimal_host [FILE]
 */
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>

#include "dataInterface.h"

/* Every host gives the module two things: its debug level and its log. */
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
    ApRank livingRoom = {"0a4e00000002", "000000000000", 1};

    /* Create the file first, because the update reports a missing file as an error. */
    if (!touchFile(path) || !updataSingleApRankInfo(path, &livingRoom))
        return EXIT_FAILURE;

    /* A reader fills one record per line, so the number of lines sizes the array. */
    int count = dataLineCounter(path);
    ApRank* ranks = count > 0 ? calloc((size_t)count, sizeof *ranks) : NULL;
    bool loaded = ranks != NULL && apRankInfoReader(path, ranks);

    for (int i = 0; loaded && i < count; ++i)
        printf("%s has rank %d\n", ranks[i].deviceMAC, ranks[i].apRank);

    free(ranks);
    return loaded ? EXIT_SUCCESS : EXIT_FAILURE;
}
