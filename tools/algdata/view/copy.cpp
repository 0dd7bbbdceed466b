/* SPDX-License-Identifier: Apache-2.0 */
#include "view/copy.h"

#include <cerrno>
#include <cstring>
#include <sys/mman.h>
#include <unistd.h>

namespace algdata
{

namespace
{

void writeAll(int fd, std::string_view rest)
{
    while (!rest.empty()) {
        const ssize_t written = write(fd, rest.data(), rest.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            throw OutputFailure(std::string("cannot copy the file for the reader: ") + std::strerror(errno));
        rest.remove_prefix(static_cast<size_t>(written));
    }
}

} // namespace

PrivateCopy::PrivateCopy(std::string_view copied, Place place) : all(copied)
{
    if (place == InDirectory || !openInMemory()) {
        file = std::make_unique<TemporaryFile>();
        name = file->path();
    }
    writeAll(file != nullptr ? file->descriptor() : memory, all);
}

PrivateCopy::~PrivateCopy()
{
    if (memory >= 0)
        close(memory);
}

/* Returns false if the system has no memory files, or no /proc to open them by path. */
bool PrivateCopy::openInMemory()
{
    memory = memfd_create("algdata", MFD_CLOEXEC);
    name = "/proc/self/fd/" + std::to_string(memory);
    return memory >= 0 && access(name.c_str(), R_OK | W_OK) == 0;
}

} // namespace algdata
