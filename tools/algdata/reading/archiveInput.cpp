/* SPDX-License-Identifier: Apache-2.0 */
#include "reading/archiveInput.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>
#include <zlib.h>

#include "options/options.h"

namespace algdata
{

namespace
{

/* Small, so that the limits are checked before little compressed data has become very much. */
constexpr size_t rawSize = size_t(1) << 14;
constexpr size_t plainSize = size_t(1) << 17;

size_t readSome(int fd, char* to, size_t size)
{
    for (;;) {
        const ssize_t got = read(fd, to, size);
        if (got >= 0)
            return static_cast<size_t>(got);
        if (errno != EINTR)
            throw Failure(std::strerror(errno));
    }
}

bool isGzip(int fd)
{
    char start[2];
    return pread(fd, start, sizeof start, 0) == sizeof start && start[0] == '\x1F' && start[1] == '\x8B';
}

} // namespace

/* Without O_NONBLOCK, opening a FIFO would wait for its writer. */
ArchiveInput::ArchiveInput(const std::string& path)
    : file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)), raw(rawSize)
{
    if (file.fd < 0 || fstat(file.fd, &before) != 0)
        throw Failure(std::strerror(errno));
    if (!S_ISREG(before.st_mode))
        throw Failure("an archive must be a regular file");
    if (before.st_size == 0)
        throw Failure("it is empty, expected an archive");
    if (!isGzip(file.fd))
        return;
    constexpr int gzipOnly = 16;
    plain.resize(plainSize);
    gunzip = std::make_unique<z_stream_s>();
    if (inflateInit2(gunzip.get(), MAX_WBITS + gzipOnly) != Z_OK)
        throw std::bad_alloc();
}

ArchiveInput::~ArchiveInput()
{
    if (gunzip != nullptr)
        inflateEnd(gunzip.get());
}

std::string_view ArchiveInput::next()
{
    return gunzip != nullptr ? expanded()
                             : std::string_view(raw.data(), readSome(file.fd, raw.data(), raw.size()));
}

int64_t ArchiveInput::skip(int64_t count)
{
    const int64_t at = seek(0, SEEK_CUR);
    if (at < 0)
        return 0;
    /* Not past the end, so that a file that is too short is noticed. */
    const int64_t passed = std::clamp<int64_t>(before.st_size - at, 0, count);
    return seek(passed, SEEK_CUR) < 0 ? 0 : passed;
}

int64_t ArchiveInput::seek(int64_t offset, int whence)
{
    return gunzip != nullptr ? -1 : lseek(file.fd, offset, whence);
}

bool ArchiveInput::hasChanged() const
{
    struct stat now;
    return fstat(file.fd, &now) != 0 || now.st_size != before.st_size ||
           now.st_mtim.tv_sec != before.st_mtim.tv_sec || now.st_mtim.tv_nsec != before.st_mtim.tv_nsec;
}

/* ---- gzip --------------------------------------------------------------- */

/* Reads compressed bytes. Returns false at end of file. */
bool ArchiveInput::refill()
{
    gunzip->next_in = reinterpret_cast<Bytef*>(raw.data());
    gunzip->avail_in = static_cast<uInt>(readSome(file.fd, raw.data(), raw.size()));
    return gunzip->avail_in != 0;
}

/* Passes over zeros, with which files can be padded. Returns false if no member begins after them. */
bool ArchiveInput::beginMember()
{
    for (; gunzip->avail_in != 0 && *gunzip->next_in == 0; --gunzip->avail_in)
        ++gunzip->next_in;
    inMember = gunzip->avail_in != 0 && inflateReset(gunzip.get()) == Z_OK;
    return inMember;
}

std::string_view ArchiveInput::expanded()
{
    gunzip->next_out = reinterpret_cast<Bytef*>(plain.data());
    gunzip->avail_out = static_cast<uInt>(plain.size());
    while (gunzip->avail_out != 0) {
        if (gunzip->avail_in == 0 && !refill()) {
            if (inMember)
                throw Failure("its gzip data is truncated");
            break;
        }
        if (!inMember && !beginMember())
            continue;
        const int result = inflate(gunzip.get(), Z_NO_FLUSH);
        inMember = result != Z_STREAM_END;
        if (result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR)
            throw Failure(std::string("its gzip data is damaged: ") +
                          (gunzip->msg != nullptr ? gunzip->msg : zError(result)));
    }
    return {plain.data(), plain.size() - gunzip->avail_out};
}

} // namespace algdata
