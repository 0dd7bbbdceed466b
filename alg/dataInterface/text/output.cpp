/* SPDX-License-Identifier: Apache-2.0 */
#include "output.h"

namespace [[gnu::visibility("hidden")]] alg_internal
{

/* Empties the buffer. `room` is the free space of the stream's buffer. */
static void restartBuffer(TextOut& out, size_t room)
{
    const size_t max = sizeof out.buffer - MAX_PRINT;
    out.at = out.buffer;
    out.limit = out.buffer + (room < max ? room : max);
    out.room = room;
}

void startText(TextOut& out, File file)
{
    out.file = file;
    /* No room yet: an empty stream passes a print of its whole buffer's size on at once. */
    restartBuffer(out, 0);
}

bool openText(TextOut& out, const char* path)
{
    File file;
    if (!openFile(file, path, "w"))
        return false;
    if (GIVES_STREAM_BUFFER)
        giveBuffer(file, out.streamBuffer, sizeof out.streamBuffer);
    else
        giveBuffer(file, nullptr, BUFSIZ);
    startText(out, file);
    return true;
}

/* Passes the pending text to the stream. */
static void flush(TextOut& out)
{
    const size_t pending = static_cast<size_t>(out.at - out.buffer);
    writeBuffered(out.file, out.buffer, pending);
    restartBuffer(out, out.room - pending);
}

int closeText(TextOut& out)
{
    flush(out);
    return closeFile(out.file);
}

int printNow(TextOut& out, char* end)
{
    const char* const text = out.at;
    if (static_cast<size_t>(end - out.buffer) <= out.room) {
        out.at = end;
        flush(out);
        return 0;
    }
    flush(out);
    const bool printed = writeNow(out.file, text, static_cast<size_t>(end - text));
    restartBuffer(out, streamRoom(out.file));
    return printed ? 0 : -1;
}

} // namespace alg_internal
