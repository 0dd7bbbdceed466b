/* SPDX-License-Identifier: Apache-2.0 */
#include "output/spool.h"

#include <cerrno>
#include <cstring>
#include <unistd.h>

#include "options/options.h"

namespace algdata
{

size_t Spool::append(std::string_view text)
{
    constexpr size_t inMemory = size_t(1) << 20;
    if (latest.size() + text.size() > inMemory)
        write();
    const size_t place = written + latest.size();
    latest += text;
    return place;
}

void Spool::write()
{
    if (file == nullptr)
        file = std::make_unique<TemporaryFile>();
    for (std::string_view rest = latest; !rest.empty();) {
        const ssize_t got = ::write(file->descriptor(), rest.data(), rest.size());
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            throw OutputFailure("cannot write " + file->path() + ": " + std::strerror(errno));
        rest.remove_prefix(static_cast<size_t>(got));
    }
    written += latest.size();
    latest.clear();
}

std::string Spool::read(size_t place, size_t size)
{
    if (place >= written)
        return latest.substr(place - written, size);
    std::string text(size, '\0');
    for (size_t at = 0; at < size;) {
        const ssize_t got =
            pread(file->descriptor(), text.data() + at, size - at, static_cast<off_t>(place + at));
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            throw OutputFailure("cannot read " + file->path() + ": " +
                                (got < 0 ? std::strerror(errno) : "it is too short"));
        at += static_cast<size_t>(got);
    }
    return text;
}

} // namespace algdata
