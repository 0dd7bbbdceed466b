/* SPDX-License-Identifier: Apache-2.0 */
/* Reads the files in an archive, in memory: none is ever written to disk. */
#ifndef ALGDATA_ARCHIVE_H
#define ALGDATA_ARCHIVE_H

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "reading/archiveInput.h"
#include "reading/source.h"
#include "text/names.h"

struct archive;
struct archive_entry;

namespace algdata
{

/*
 * Whether the name ends like that of an archive, in any letter case: .tar, .tar.gz,
 * .tgz, .tar.zst, .tzst or .zip.
 */
bool namesArchive(std::string_view path);

/* The limits for one archive. They are far above any fleet's and stop archives that expand without end. */
struct ArchiveLimits {
    uint64_t memberBytes = largestSource;
    uint64_t allBytes = uint64_t(1) << 40;  /* of all that is decompressed */
    uint64_t members = 10'000'000;          /* including directories and links */
    uint64_t ratio = 1000;                  /* of the decompressed bytes to the size of the archive */
    uint64_t ratioFrom = uint64_t(1) << 30; /* decompressed bytes; below, any ratio is accepted */
};

/* A file in an archive. */
struct Member {
    std::string name; /* relative, as of a file in a directory: without "./" at its start */
    uint64_t size = 0;
    int64_t modified = 0; /* seconds since 1970 */
};

/*
 * Reads the regular files of a tar or zip archive one by one, in the order of the
 * archive. As in a directory, hidden files and links to directories are left out, and
 * so are devices.
 *
 * Every Failure is about one member, or about all that follow. After it, next()
 * continues with the next member that can be read, or returns false.
 */
class ArchiveReader
{
  public:
    explicit ArchiveReader(const std::string& archivePath, const ArchiveLimits& bounds = ArchiveLimits());
    ~ArchiveReader();
    ArchiveReader(const ArchiveReader&) = delete;
    ArchiveReader& operator=(const ArchiveReader&) = delete;

    /*
     * Goes to the next file. What is not read is not decompressed, as far as the format
     * allows that. Returns false after the last one. Throws Failure if a file is encrypted,
     * is an archive itself or has the name of another one; if the archive is damaged,
     * truncated, or changed since it was opened; if it passes a limit. At the end, throws
     * Failure once for all hard links and once for all names that no file can have.
     */
    bool next(Member& member);

    /* Reads the current file. Throws Failure if it is damaged or too large. */
    void read(std::string& bytes);

    /* A message about the symbolic links so far, which are not followed; empty if there are none. */
    std::string linksLeftOut() const;

  private:
    struct Free {
        void operator()(archive* opened) const;
    };

    void open();
    bool advance();
    bool isWanted();
    void requireReadable();
    std::string passedLimit() const;
    void requireWithinLimits();
    void requireWhole();
    void failForNames();
    std::string reason() const;
    [[noreturn]] void failMember(const std::string& why) const;
    [[noreturn]] void failArchive(const std::string& why);
    template <typename Call> int64_t guarded(Call call);

    static ssize_t readBlock(archive* handle, void* reader, const void** block);
    static int64_t skipBytes(archive* handle, void* reader, int64_t count);
    static int64_t seekTo(archive* handle, void* reader, int64_t offset, int whence);

    std::string path;
    ArchiveLimits limits;
    std::unique_ptr<ArchiveInput> input;
    std::unique_ptr<archive, Free> handle;
    archive_entry* entry = nullptr;
    std::string current;      /* the name of the current member */
    std::string inputFailure; /* why a callback failed */
    uint64_t members = 0;
    uint64_t bytesRead = 0;
    bool ended = false;
    NameSet known;
    NamesLeftOut symbolicLinks;
    NamesLeftOut hardLinks;
    NamesLeftOut wrongNames;
};

} // namespace algdata

#endif
