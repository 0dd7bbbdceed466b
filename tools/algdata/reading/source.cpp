/* SPDX-License-Identifier: Apache-2.0 */
#include "reading/source.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "output/output.h"
#include "reading/detect.h"

namespace algdata
{

namespace
{

/* No record file comes near it; an endless device would. */
constexpr size_t mostBytes = size_t(1) << 30;

void readAll(int fd, size_t expected, std::string& bytes, const std::string& name)
{
    size_t have = 0;
    /* One more than expected, so that the end shows without growing. */
    bytes.resize(std::min(expected, mostBytes) + 1);
    for (;;) {
        if (have == bytes.size())
            bytes.resize(have * 2 + 4096);
        const ssize_t got = read(fd, bytes.data() + have, bytes.size() - have);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            throw Failure("cannot read " + name + ": " + std::strerror(errno));
        if (got == 0)
            break;
        have += static_cast<size_t>(got);
        if (have > mostBytes)
            throw Failure("cannot read " + name + ": it is larger than a record file can be");
    }
    bytes.resize(have);
}

struct Descriptor {
    int fd;
    ~Descriptor()
    {
        if (fd > STDIN_FILENO)
            close(fd);
    }
};

} // namespace

void readSource(const std::string& path, Source& source)
{
    source.kind = nullptr;
    const bool standardInput = path == "-";
    source.name = standardInput ? "(standard input)" : path;
    const Descriptor file = {standardInput ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC)};
    struct stat status;
    if (file.fd < 0 || fstat(file.fd, &status) != 0)
        throw Failure("cannot read " + path + ": " + std::strerror(errno));
    if (S_ISDIR(status.st_mode))
        throw Failure("cannot read " + path + ": it is a directory");
    readAll(file.fd, static_cast<size_t>(std::max<off_t>(status.st_size, 0)), source.bytes, source.name);
}

const Kind* kindOf(const Source& source, const Options& options)
{
    if (options.kind != nullptr)
        return options.kind;
    const Detection detection = detectKind(source.bytes);
    if (detection.kind == nullptr)
        message(source.name + ": " + detection.reason());
    return detection.kind;
}

} // namespace algdata
