/* SPDX-License-Identifier: Apache-2.0 */
#include "reading/source.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fmt/format.h>

namespace algdata
{

namespace
{

struct Descriptor {
    int fd;
    ~Descriptor()
    {
        if (fd > STDIN_FILENO)
            close(fd);
    }
};

[[noreturn]] void fail(const std::string& name, const std::string& why)
{
    throw Failure("cannot read " + name + ": " + why);
}

[[noreturn]] void failTooLarge(const std::string& name)
{
    fail(name, fmt::format("it is larger than {} GiB, the most that algdata reads of one file",
                           largestSource >> 30));
}

/* From where the descriptor stands to the end. `expected` bytes need no second allocation. */
void readToEnd(int fd, size_t expected, Source& source)
{
    std::string& bytes = source.bytes;
    size_t have = 0;
    /* One more than expected, so that the end shows without growing. */
    bytes.resize(expected + 1);
    for (;;) {
        if (have > largestSource)
            failTooLarge(source.name);
        if (have == bytes.size())
            bytes.resize(std::min(have * 2 + 4096, largestSource + 1));
        const ssize_t got = read(fd, bytes.data() + have, bytes.size() - have);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            fail(source.name, std::strerror(errno));
        if (got == 0)
            break;
        have += static_cast<size_t>(got);
    }
    bytes.resize(have);
}

/* ---- Files that change --------------------------------------------------- */

bool sameTime(const timespec& a, const timespec& b)
{
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

/* Whether a write at `now` can get this time stamp again: stamps are as coarse as the system's clock tick. */
bool isRecent(const timespec& stamp, const timespec& now)
{
    constexpr int64_t tick = 20; /* milliseconds, and more than any system's */
    const int64_t seconds = now.tv_sec - stamp.tv_sec;
    return seconds * 1000 + (now.tv_nsec - stamp.tv_nsec) / 1'000'000 < tick;
}

/* Whether the file can have changed while it was read, by its state before that and now. */
bool mayHaveChanged(int fd, const struct stat& before, const timespec& began)
{
    struct stat after;
    return fstat(fd, &after) != 0 || after.st_size != before.st_size ||
           !sameTime(after.st_ctim, before.st_ctim) || isRecent(after.st_ctim, began);
}

/*
 * A file that is written while it is read can come out as half of the old and
 * half of the new one. So it is read until two readings in a row are the same.
 */
void readUntilSettled(int fd, off_t start, Source& source)
{
    constexpr int mostReadings = 100;
    std::string before;
    for (int i = 0; i < mostReadings; ++i) {
        before.swap(source.bytes);
        if (lseek(fd, start, SEEK_SET) < 0)
            fail(source.name, std::strerror(errno));
        readToEnd(fd, before.size(), source);
        if (source.bytes == before)
            return;
    }
    fail(source.name, "it keeps changing while it is read");
}

void readOrdinary(int fd, const struct stat& status, Source& source)
{
    timespec began;
    clock_gettime(CLOCK_REALTIME, &began);
    const off_t start = lseek(fd, 0, SEEK_CUR);
    const off_t rest = std::max<off_t>(status.st_size - start, 0);
    if (static_cast<uint64_t>(rest) > largestSource)
        failTooLarge(source.name);
    readToEnd(fd, static_cast<size_t>(rest), source);
    /* Files of /proc have no size, and a new content at every reading. */
    const bool sized = status.st_size != 0 || source.bytes.empty();
    if (sized && mayHaveChanged(fd, status, began))
        readUntilSettled(fd, start, source);
}

} // namespace

void readSource(const std::string& path, Source& source)
{
    source.kind = nullptr;
    const bool standardInput = path == "-";
    source.name = standardInput ? "(standard input)" : path;
    const Descriptor file = {standardInput ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC)};
    struct stat status;
    if (file.fd < 0 || fstat(file.fd, &status) != 0)
        fail(source.name, std::strerror(errno));
    if (S_ISDIR(status.st_mode))
        fail(source.name, "it is a directory");
    if (S_ISREG(status.st_mode))
        readOrdinary(file.fd, status, source);
    else
        readToEnd(file.fd, 0, source);
}

} // namespace algdata
