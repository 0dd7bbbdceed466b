/* SPDX-License-Identifier: Apache-2.0 */
#include "input.h"

#include <string.h>

namespace [[gnu::visibility("hidden")]] alg_internal
{

/* ---- The buffer --------------------------------------------------------- */

/* Ends the buffer's contents at `end` and pads them. */
static void endBuffer(TextIn& in, char* end)
{
    in.filled = end;
    memset(end, '\0', INPUT_PADDING);
}

void startText(TextIn& in, File file)
{
    in.file = file;
    in.at = in.end = in.buffer;
    in.lineEnd = nullptr;
    in.hadShortRead = false;
    endBuffer(in, in.buffer);
}

bool openText(TextIn& in, const char* path)
{
    File file;
    if (!openFile(file, path, "r"))
        return false;
    startText(in, file);
    return true;
}

int closeText(TextIn& in)
{
    return closeFile(in.file);
}

/* Fills the buffer after its first `held` characters. Returns the number of characters added. */
static size_t fill(TextIn& in, size_t held)
{
    size_t got = 0;
    if (in.hadShortRead) {
        in.hadShortRead = false;
    } else {
        const size_t room = INPUT_SIZE - held;
        got = readBlock(in.file, in.buffer + held, room);
        in.hadShortRead = got > 0 && got < room;
    }
    endBuffer(in, in.buffer + held + got);
    return got;
}

bool refill(TextIn& in)
{
    if (in.lineEnd != nullptr || in.atEnd)
        return false;
    in.atEnd = fill(in, 0) == 0;
    in.at = in.buffer;
    in.end = in.filled;
    return !in.atEnd;
}

/* ---- Lines -------------------------------------------------------------- */

/* Length of the first line, newline included; 0 if its end is not among the `held` characters. */
static size_t lineLength(const char* line, size_t held)
{
    const size_t max = held < MAX_LINE ? held : MAX_LINE;
    const void* newline = memchr(line, '\n', max);
    if (newline != nullptr)
        return static_cast<size_t>(static_cast<const char*>(newline) + 1 - line);
    return max == MAX_LINE ? max : 0;
}

bool nextLine(TextIn& in)
{
    char* line = in.filled;
    if (in.lineEnd != nullptr) {
        line = in.lineEnd;
        *line = in.afterLine;
    }
    size_t held = static_cast<size_t>(in.filled - line);
    size_t length = lineLength(line, held);
    if (length == 0) {
        memmove(in.buffer, line, held);
        line = in.buffer;
        held += fill(in, held);
        length = lineLength(line, held);
        if (length == 0 && !hasReadError(in.file))
            length = held;
    }
    in.at = line;
    in.lineEnd = line + length;
    in.afterLine = *in.lineEnd;
    *in.lineEnd = '\0';
    return length > 0;
}

/*
 * Adds the lines that end in a block to `count`. `length` is the length so far of
 * the line that continues in the next block.
 */
static void countBlock(const char* at, const char* end, int& count, size_t& length)
{
    while (at != end) {
        const void* newline = memchr(at, '\n', static_cast<size_t>(end - at));
        const char* stop = newline != nullptr ? static_cast<const char*>(newline) + 1 : end;
        length += static_cast<size_t>(stop - at);
        at = stop;
        for (; length >= MAX_LINE; length -= MAX_LINE)
            ++count;
        if (newline != nullptr && length > 0) {
            ++count;
            length = 0;
        }
    }
}

int countLines(File file)
{
    char block[INPUT_SIZE];
    int count = 0;
    size_t length = 0;
    size_t got = 0;
    do {
        got = readBlock(file, block, sizeof block);
        countBlock(block, block + got, count, length);
    } while (got == sizeof block);
    return length > 0 && !hasReadError(file) ? count + 1 : count;
}

} // namespace alg_internal
