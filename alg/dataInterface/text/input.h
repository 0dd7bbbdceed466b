/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A record file that is read: its buffer and its lines. scan.h reads fields
 * from it.
 */
#ifndef ALG_DATA_INTERFACE_INPUT_H
#define ALG_DATA_INTERFACE_INPUT_H

#include "file.h"

namespace [[gnu::visibility("hidden")]] alg_internal
{

/* Maximum characters of a line, as of fgets() with a buffer of 1024. A longer line is several. */
constexpr size_t MAX_LINE = 1023;

/*
 * NULs after the buffer's contents. Loops over characters stop at the first one
 * instead of comparing with the end, and four characters can be read at once from
 * any place.
 */
constexpr size_t INPUT_PADDING = 4;

struct TextIn {
    File file;
    const char* at;  /* next character to scan */
    const char* end; /* end of what can be scanned; while lines are read, only the slow path sets it */
    char* lineEnd;   /* start of the next line; null where lines have no meaning */
    char* filled;    /* end of what was read into the buffer */
    char buffer[MAX_LINE + INPUT_PADDING];
    char afterLine;    /* character at lineEnd, which a NUL replaces */
    bool hadShortRead; /* the last read was short: report the end once before reading again */
    bool atEnd;        /* the end was reached in this call of scan() */
};

/* Starts to read a file that is open for reading. Nothing is read yet. */
void startText(TextIn& in, File file);

/* Opens `path` for reading and starts to read it. False when it cannot be opened. */
bool openText(TextIn& in, const char* path);

/* Closes the file. The result is that of fclose(). */
int closeText(TextIn& in);

/*
 * Moves on to the next line, as fgets() with a buffer of 1024 does: at most 1023
 * characters, newline included; the rest of a longer line is the next one. From
 * then on scan() reads that line only, up to a NUL in it. False at the end of the
 * file and at a read error within a line; do not call it again after that. Read a
 * file either by lines from its start, or by scan() alone.
 */
bool nextLine(TextIn& in);

/* How many lines nextLine() would find. */
int countLines(File file);

/* Reads the next block when everything is scanned. False at the end of the line or of the file. */
bool refill(TextIn& in);

/* Whether a character is left to scan. */
inline bool hasMore(TextIn& in)
{
    return in.at != in.end || refill(in);
}

/* Reads a sign where there is one, and returns whether it is a minus. Call it only when hasMore(). */
inline bool scanSign(TextIn& in)
{
    const bool minus = *in.at == '-';
    if (minus || *in.at == '+')
        ++in.at;
    return minus;
}

} // namespace alg_internal

#endif
