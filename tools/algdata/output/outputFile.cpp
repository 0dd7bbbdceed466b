/* SPDX-License-Identifier: Apache-2.0 */
#include "output/outputFile.h"

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

#include <fmt/format.h>

#include "options/options.h"
#include "output/output.h"

namespace algdata
{

namespace
{

namespace fs = std::filesystem;

[[noreturn]] void fail(const std::string& target, const std::string& why = std::strerror(errno))
{
    throw OutputFailure("cannot write " + target + ": " + why);
}

std::string directoryOf(const std::string& path)
{
    const fs::path directory = fs::path(path).parent_path();
    return directory.empty() ? "." : directory.string();
}

std::string pathOfDescriptor(int fd)
{
    return fmt::format("/proc/self/fd/{}", fd);
}

} // namespace

OutputFile::OutputFile(const std::string& path) : target(path)
{
    followLinks();
    if (fd >= 0)
        return;
    replaces = stat(target.c_str(), &old) == 0;
    if (!replaces && errno != ENOENT)
        fail(target);
    if (replaces && !S_ISREG(old.st_mode)) {
        openDirectly();
        return;
    }
    if (replaces && faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0)
        fail(target);
    if (replaces && old.st_nlink > 1)
        fail(target, fmt::format("it has {} hard links, and only one of them would get the new content; "
                                 "remove the file first, or redirect the output with >",
                                 old.st_nlink));
    openTemporary();
}

OutputFile::~OutputFile()
{
    if (fd >= 0 && temporary == nullptr)
        close(fd);
}

/*
 * Uses a descriptor of the caller if the target is one, such as /dev/stdout or /dev/fd/3. Opening the
 * path again would lose the position of the descriptor.
 */
bool OutputFile::openDescriptor()
{
    std::error_code none;
    const std::string directory = fs::canonical(directoryOf(target), none).string();
    const std::string name = fs::path(target).filename().string();
    int number = 0;
    const auto parsed = std::from_chars(name.data(), name.data() + name.size(), number);
    if (directory != fmt::format("/proc/{}/fd", getpid()) || parsed.ec != std::errc() || *parsed.ptr != '\0')
        return false;
    direct = true;
    fd = fcntl(number, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    if (fd < 0)
        fail(target);
    return true;
}

/* Replaces the target by the end of its chain of links. The file at the end may be missing. */
void OutputFile::followLinks()
{
    constexpr int maxLinks = 40; /* the limit of the kernel */
    std::error_code none;
    for (int links = 0; !openDescriptor() && fs::is_symlink(target, none); ++links) {
        if (links == maxLinks)
            fail(target, std::strerror(ELOOP));
        target = (fs::path(target).parent_path() / fs::read_symlink(target)).string();
    }
}

void OutputFile::openDirectly()
{
    if (S_ISDIR(old.st_mode))
        fail(target, "it is a directory");
    direct = true;
    fd = open(target.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
    if (fd < 0)
        fail(target);
}

/* Opens a file without a name if the system has them: it needs no removal, even after a crash. */
void OutputFile::openTemporary()
{
    const std::string directory = directoryOf(target);
    fd = open(directory.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (fd >= 0 && access(pathOfDescriptor(fd).c_str(), F_OK) == 0)
        return;
    if (fd >= 0)
        close(fd); /* without /proc it cannot get a name later */
    temporary = std::make_unique<TemporaryFile>(directory);
    fd = temporary->descriptor();
}

void OutputFile::keepOwnerAndMode()
{
    struct stat fresh;
    const mode_t mask = umask(0);
    umask(mask);
    if (!replaces) {
        fchmod(fd, 0666 & ~mask);
        return;
    }
    if (fstat(fd, &fresh) != 0)
        fail(target);
    const bool sameOwner = old.st_uid == fresh.st_uid || fchown(fd, old.st_uid, static_cast<gid_t>(-1)) == 0;
    const bool sameGroup = old.st_gid == fresh.st_gid || fchown(fd, static_cast<uid_t>(-1), old.st_gid) == 0;
    if (!sameOwner || !sameGroup)
        message(fmt::format("the owner of {} changes from {}:{} to {}:{}", target, old.st_uid, old.st_gid,
                            sameOwner ? old.st_uid : fresh.st_uid, sameGroup ? old.st_gid : fresh.st_gid));
    /* A new owner or group does not get the set-ID bits and the group permissions of the old one. */
    const mode_t kept = 0777U | (sameOwner ? S_ISUID | S_ISVTX : 0U) | (sameGroup ? S_ISGID : 0U);
    fchmod(fd, old.st_mode & (sameGroup ? kept : kept & ~static_cast<mode_t>(S_IRWXG)));
}

/* A file without a name gets a temporary one first, because linkat() cannot replace a file. */
void OutputFile::renameToTarget()
{
    if (temporary != nullptr) {
        if (rename(temporary->path().c_str(), target.c_str()) != 0)
            fail(target);
        temporary->keep();
        return;
    }
    const std::string from = pathOfDescriptor(fd);
    std::string name;
    int linked = -1;
    errno = EEXIST;
    for (int i = 0; linked != 0 && errno == EEXIST && i < 100; ++i) {
        name = fmt::format("{}/.algdata.{}.{}", directoryOf(target), getpid(), i);
        linked = linkat(AT_FDCWD, from.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW);
    }
    if (linked != 0)
        fail(target);
    if (rename(name.c_str(), target.c_str()) != 0) {
        const std::string why = std::strerror(errno);
        unlink(name.c_str());
        fail(target, why);
    }
}

void OutputFile::commit()
{
    if (direct)
        return;
    keepOwnerAndMode();
    if (fsync(fd) != 0)
        fail(target);
    const BlockedSignals blocked;
    renameToTarget();
}

} // namespace algdata
