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

/*
 * Opens `path` with a mode of fopen(). False if that fails; there is nothing to close
 * then. A stream for reading gets no buffer of its own, because readBlock() reads
 * whole blocks.
 */
bool openFile(File& file, const char* path, const char* mode);

/* Closes the file. The result is that of fclose(). */
int closeFile(File file);

/* Reads at most `size` bytes. Returns their number: fewer at the end of the file and at a read error. */
size_t readBlock(File file, char* block, size_t size);

/* Whether a read has failed. */
bool hasReadError(File file);

/*
 * Makes a stream for writing collect whole blocks, also on a terminal. Call it before the
 * first write. The stream uses `buffer` until closeFile(), or its own buffer for null.
 */
void giveBuffer(File file, char* buffer, size_t size);

/* The free bytes of the stream's own buffer; 0 for a stream that is not buffered. */
size_t streamRoom(File file);

/* Writes at most streamRoom() bytes. They stay in the stream's buffer, so this cannot fail. */
void writeBuffered(File file, const char* bytes, size_t size);

/* Writes bytes. False if the stream fails. */
bool writeNow(File file, const char* bytes, size_t size);

} // namespace alg_internal

#endif
