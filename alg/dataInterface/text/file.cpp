/* SPDX-License-Identifier: Apache-2.0 */
#include "file.h"

#include <stdio_ext.h>

namespace [[gnu::visibility("hidden")]] alg_internal
{

bool openFile(File& file, const char* path, const char* mode)
{
    file.stream = fopen(path, mode);
    if (file.stream == nullptr)
        return false;
    if (mode[0] == 'r')
        setvbuf(file.stream, nullptr, _IONBF, 0);
    return true;
}

int closeFile(File file)
{
    return fclose(file.stream);
}

size_t readBlock(File file, char* block, size_t size)
{
    return fread(block, 1, size, file.stream);
}

bool hasReadError(File file)
{
    return ferror(file.stream) != 0;
}

void giveBuffer(File file, char* buffer, size_t size)
{
    setvbuf(file.stream, buffer, _IOFBF, size);
}

size_t streamRoom(File file)
{
    const size_t size = __fbufsize(file.stream);
    const size_t pending = __fpending(file.stream);
    return size <= 1 || pending > size ? 0 : size - pending;
}

void writeBuffered(File file, const char* bytes, size_t size)
{
    fwrite(bytes, 1, size, file.stream);
}

bool writeNow(File file, const char* bytes, size_t size)
{
    return fwrite(bytes, size, 1, file.stream) == 1;
}

} // namespace alg_internal
