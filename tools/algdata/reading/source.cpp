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

#include "reading/descriptor.h"

namespace algdata
{

namespace
{

[[noreturn]] void fail(const std::string& name, const std::string& why)
{
    throw Failure("cannot read " + name + ": " + why);
}

[[noreturn]] void failTooLarge(const std::string& name)
{
    fail(name, fmt::format("it is larger than {} GiB, the limit for one file", largestSource >> 30));
}

/* Reads from the current position to the end of the file. Up to `expected` bytes need one allocation only. */
void readToEnd(int fd, size_t expected, Source& source)
{
    std::string& bytes = source.bytes;
    size_t have = 0;
    /* One more than expected, so that the last read() returns 0 without growing the buffer. */
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

/*
 * Whether a write at `now` can get this time stamp again, because time stamps have only the resolution of
 * the system's clock tick.
 */
bool isRecent(const timespec& stamp, const timespec& now)
{
    constexpr int64_t tick = 20; /* milliseconds; longer than on any system */
    const int64_t seconds = now.tv_sec - stamp.tv_sec;
    return seconds * 1000 + (now.tv_nsec - stamp.tv_nsec) / 1'000'000 < tick;
}

/* Whether the file can have changed while it was read. `before` is its state before reading. */
bool mayHaveChanged(int fd, const struct stat& before, const timespec& began)
{
    struct stat after;
    return fstat(fd, &after) != 0 || after.st_size != before.st_size ||
           !sameTime(after.st_ctim, before.st_ctim) || isRecent(after.st_ctim, began);
}

/*
 * If a file is written while it is read, the result can mix the old and the new
 * content. So the file is read again until two results in a row are equal.
 */
void readUntilStable(int fd, off_t start, Source& source)
{
    constexpr int maxReadings = 100;
    std::string before;
    for (int i = 0; i < maxReadings; ++i) {
        before.swap(source.bytes);
        if (lseek(fd, start, SEEK_SET) < 0)
            fail(source.name, std::strerror(errno));
        readToEnd(fd, before.size(), source);
        if (source.bytes == before)
            return;
    }
    fail(source.name, "it keeps changing while it is read");
}

void readRegularFile(int fd, const struct stat& status, Source& source)
{
    timespec began;
    clock_gettime(CLOCK_REALTIME, &began);
    const off_t start = lseek(fd, 0, SEEK_CUR);
    const off_t rest = std::max<off_t>(status.st_size - start, 0);
    if (static_cast<uint64_t>(rest) > largestSource)
        failTooLarge(source.name);
    readToEnd(fd, static_cast<size_t>(rest), source);
    /* Files of /proc have size 0, and their content can differ on every read. */
    const bool sized = status.st_size != 0 || source.bytes.empty();
    if (sized && mayHaveChanged(fd, status, began))
        readUntilStable(fd, start, source);
}

} // namespace

void readSource(const std::string& path, Source& source)
{
    source.kind = nullptr;
    const bool standardInput = path == "-";
    source.name = standardInput ? "(standard input)" : path;
    const Descriptor file(standardInput ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat status;
    if (file.fd < 0 || fstat(file.fd, &status) != 0)
        fail(source.name, std::strerror(errno));
    if (S_ISDIR(status.st_mode))
        fail(source.name, "it is a directory");
    if (S_ISREG(status.st_mode))
        readRegularFile(file.fd, status, source);
    else
        readToEnd(file.fd, 0, source);
}

} // namespace algdata
