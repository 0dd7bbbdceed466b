/* SPDX-License-Identifier: Apache-2.0 */
/* The file of -o: it is replaced completely or keeps its old content. */
#ifndef ALGDATA_OUTPUT_FILE_H
#define ALGDATA_OUTPUT_FILE_H

#include <memory>
#include <string>
#include <sys/stat.h>

#include "output/temporaryFile.h"

namespace algdata
{

class OutputFile
{
  public:
    /* Follows links. Throws OutputFailure if the file cannot be written: the command then fails at once. */
    explicit OutputFile(const std::string& path);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    int descriptor() const { return fd; }

    /* Whether the target is a device, a pipe or a descriptor of the caller, which is written directly. */
    bool isDirect() const { return direct; }

    /* Replaces the target by the new file. The new file gets the owner and the mode of the old one. */
    void commit();

  private:
    bool openDescriptor();
    void followLinks();
    void openDirectly();
    void openTemporary();
    void keepOwnerAndMode();
    void renameToTarget();

    std::string target;
    int fd = -1;
    bool direct = false;
    bool replaces = false;
    struct stat old = {};                     /* of the file that is replaced */
    std::unique_ptr<TemporaryFile> temporary; /* only if an unnamed file (O_TMPFILE) cannot be used */
};

} // namespace algdata

#endif
