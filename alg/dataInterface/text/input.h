/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Reading a record file: its buffer and its lines. scan.h reads the fields.
 */
#ifndef ALG_DATA_INTERFACE_INPUT_H
#define ALG_DATA_INTERFACE_INPUT_H

#include "file.h"

namespace [[gnu::visibility("hidden")]] alg_internal
{

/* Maximum characters of a line, as with fgets() and a buffer of 1024. A longer line counts as several. */
constexpr size_t MAX_LINE = 1023;

/*
 * NULs after the buffer's contents. Loops over characters stop at the first one
 * instead of comparing with the end, and four characters can be read at once from
 * any place.
 */
constexpr size_t INPUT_PADDING = 4;

/*
 * Characters of the buffer. The streams are not buffered, so each read of a block is one
 * read of the system: the block is as large as that of the C library, up to a page.
 */
constexpr size_t INPUT_SIZE = BUFSIZ < 4096 ? MAX_LINE : 4096;

struct TextIn {
    File file;
    const char* at;  /* next character to scan */
    const char* end; /* end of the text to scan; while lines are read, valid only in the slow path */
    char* lineEnd;   /* start of the next line; null if the file is not read by lines */
    char* filled;    /* end of what was read into the buffer */
    char buffer[INPUT_SIZE + INPUT_PADDING];
    char afterLine;    /* character at lineEnd, which a NUL replaces */
    bool hadShortRead; /* the last read was short: report the end once, as the C library does */
    bool atEnd;        /* the end was reached in this call of scan() */
};

/* Prepares `in` for a file that is open for reading. Reads nothing yet. */
void startText(TextIn& in, File file);

/* Opens `path` for reading and prepares `in` for it. False if it cannot be opened. */
bool openText(TextIn& in, const char* path);

/* Closes the file. The result is that of fclose(). */
int closeText(TextIn& in);

/*
 * Moves to the next line, as fgets() with a buffer of 1024 does. A line has at
 * most MAX_LINE characters, newline included; the rest of a longer one is the next
 * line. After that, scan() reads only this line, and stops at a NUL in it.
 *
 * Returns false at the end of the file and at a read error within a line; do not
 * call it again then. Either call it before the first scan() of a file, or never.
 */
bool nextLine(TextIn& in);

/* The number of lines that nextLine() would find. */
int countLines(File file);

/* Reads the next block; call it when everything is scanned. False at the end of the line or of the file. */
bool refill(TextIn& in);

/* Whether a character is left to scan. */
inline bool hasMore(TextIn& in)
{
    return in.at != in.end || refill(in);
}

/* Reads a sign if there is one. Returns whether it is a minus. Call it only if hasMore(). */
inline bool scanSign(TextIn& in)
{
    const bool minus = *in.at == '-';
    if (minus || *in.at == '+')
        ++in.at;
    return minus;
}

} // namespace alg_internal

#endif
