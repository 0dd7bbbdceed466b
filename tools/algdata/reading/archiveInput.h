/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALGDATA_ARCHIVE_INPUT_H
#define ALGDATA_ARCHIVE_INPUT_H

#include <memory>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <vector>

#include "reading/descriptor.h"

struct z_stream_s;

namespace algdata
{

/*
 * The bytes of an archive's file, without their gzip compression. gzip is decompressed
 * here because libarchive does not compare its checksums.
 *
 * All functions throw Failure with the reason only, such as "Permission denied".
 */
class ArchiveInput
{
  public:
    explicit ArchiveInput(const std::string& path);
    ~ArchiveInput();
    ArchiveInput(const ArchiveInput&) = delete;
    ArchiveInput& operator=(const ArchiveInput&) = delete;

    /* The next bytes, which are valid until the next call; empty at the end. */
    std::string_view next();

    /* Passes over up to this many bytes without reading them. Returns how many; 0 in gzip data. */
    int64_t skip(int64_t count);

    /* As lseek(). Returns -1 in gzip data. */
    int64_t seek(int64_t offset, int whence);

    /* The size of the file, compressed. */
    uint64_t size() const { return static_cast<uint64_t>(before.st_size); }

    /* Whether the file was written since it was opened. */
    bool hasChanged() const;

  private:
    bool refill();
    std::string_view expanded();
    bool beginMember();

    Descriptor file;
    struct stat before = {};
    std::vector<char> raw;
    std::vector<char> plain;            /* after decompression */
    std::unique_ptr<z_stream_s> gunzip; /* null if the file is not compressed with gzip */
    bool inMember = false;              /* of the gzip data, which can have several */
};

} // namespace algdata

#endif
