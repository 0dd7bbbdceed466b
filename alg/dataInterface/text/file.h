/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Record files as streams of the C library. Only file.cpp calls the functions of
 * stdio.h on them.
 */
#ifndef ALG_DATA_INTERFACE_FILE_H
#define ALG_DATA_INTERFACE_FILE_H

#include <stddef.h>
#include <stdio.h>

namespace [[gnu::visibility("hidden")]] alg_internal
{

struct File {
    FILE* stream;
};

/* Opens `path` with a mode of fopen(). False when that fails; there is nothing to close then. */
bool openFile(File& file, const char* path, const char* mode);

/* Closes the file. The result is that of fclose(). */
int closeFile(File file);

/* Reads at most `size` bytes. Returns how many; fewer at the end of the file and after a read error. */
size_t readBlock(File file, char* block, size_t size);

/* Whether a read has failed. */
bool hasReadError(File file);

/*
 * How many bytes fit the stream's own buffer before it writes to the device; 0 for
 * a stream that is line-buffered or not buffered.
 */
size_t streamRoom(File file);

/* Writes bytes that fit the stream's own buffer. That cannot fail. */
void writeBuffered(File file, const char* bytes, size_t size);

/* Prints bytes. False when fprintf() of the same bytes would fail. */
bool writeNow(File file, const char* bytes, size_t size);

} // namespace alg_internal

#endif
