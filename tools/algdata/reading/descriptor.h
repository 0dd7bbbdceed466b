/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALGDATA_DESCRIPTOR_H
#define ALGDATA_DESCRIPTOR_H

#include <unistd.h>

namespace algdata
{

/* Closes a file descriptor, except standard input. */
struct Descriptor {
    int fd;

    explicit Descriptor(int opened) : fd(opened) {}
    ~Descriptor()
    {
        if (fd > STDIN_FILENO)
            close(fd);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
};

} // namespace algdata

#endif
