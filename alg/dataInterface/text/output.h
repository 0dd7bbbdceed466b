/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Writing a record file, and the buffer of the prints that are not yet passed to
 * the stream. print.h prints the fields.
 *
 * The stream of the C library has its own buffer. A print that fits the free part
 * of the stream's buffer cannot fail, so it is collected in the buffer of TextOut,
 * and many are passed on in one call. Any other print is passed to the stream at
 * once and returns the stream's result. So on a full device the same print fails
 * as with fprintf().
 */
#ifndef ALG_DATA_INTERFACE_OUTPUT_H
#define ALG_DATA_INTERFACE_OUTPUT_H

#include "file.h"
#include "format.h"

namespace [[gnu::visibility("hidden")]] alg_internal
{

/*
 * A large C library allocates a page for the buffer of each stream. Give it one instead:
 * it saves the allocation, and the same prints fail on a full device. In a small C library
 * the buffer is part of the stream.
 */
constexpr bool GIVES_STREAM_BUFFER = BUFSIZ > 4096;
constexpr size_t STREAM_BUFFER_SIZE = GIVES_STREAM_BUFFER ? 4096 : 1;

struct TextOut {
    File file;
    char* at;          /* end of the pending text */
    const char* limit; /* a print that ends at or before it stays pending */
    size_t room;       /* free bytes of the stream's buffer when this buffer was empty */
    char buffer[1024];
    char streamBuffer[STREAM_BUFFER_SIZE];
};

/* Prepares `out` for a file that is open for writing. Writes nothing yet. */
void startText(TextOut& out, File file);

/* Opens `path` for writing, which empties it, and prepares `out` for it. False if it cannot be opened. */
bool openText(TextOut& out, const char* path);

/* Writes the pending text and closes the file. The result is that of fclose(). */
int closeText(TextOut& out);

/* Writes a print that ends at `end` and cannot stay pending. Returns 0, or -1 if the stream fails. */
int printNow(TextOut& out, char* end);

} // namespace alg_internal

#endif
