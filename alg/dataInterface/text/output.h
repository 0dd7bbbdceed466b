/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A record file that is written, and the buffer in which prints wait. print.h
 * prints fields to it.
 *
 * The C library's stream has a buffer of its own. A print that this buffer has
 * room for cannot fail, so it waits here, and many are written at once. Any other
 * print goes to the stream immediately and has the stream's result. So the same
 * print fails on a full device as with fprintf().
 */
#ifndef ALG_DATA_INTERFACE_OUTPUT_H
#define ALG_DATA_INTERFACE_OUTPUT_H

#include "file.h"
#include "format.h"

namespace [[gnu::visibility("hidden")]] alg_internal
{

struct TextOut {
    File file;
    char* at;          /* end of the prints that wait */
    const char* limit; /* a print waits when it ends here or earlier */
    size_t room;       /* characters of this buffer, from its start, that fit the stream's own */
    char buffer[1024];
};

/* Starts to print to a file that is open for writing. */
void startText(TextOut& out, File file);

/* Opens `path` for writing, which empties it, and starts to print. False when it cannot be opened. */
bool openText(TextOut& out, const char* path);

/* Writes the prints that wait, and closes the file. The result is that of fclose(). */
int closeText(TextOut& out);

/* Ends a print at `end` that cannot wait. 0, or -1 when the stream could not print it. */
int printNow(TextOut& out, char* end);

} // namespace alg_internal

#endif
