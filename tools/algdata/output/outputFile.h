/* SPDX-License-Identifier: Apache-2.0 */
/* The file that -o names: it appears whole, or stays as it was. */
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
    /* Follows links. Throws OutputFailure where the file cannot be written, before any work. */
    explicit OutputFile(const std::string& path);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    int descriptor() const { return fd; }

    /* A device, a pipe or a descriptor that the caller opened: there is nothing to replace. */
    bool isDirect() const { return direct; }

    /* What is written becomes the file, with the owner and the mode of the one that it replaces. */
    void appear();

  private:
    bool leadsToDescriptor();
    void followLinks();
    void openDirectly();
    void openAside();
    void keepOwnerAndMode();
    void giveName();

    std::string target;
    int fd = -1;
    bool direct = false;
    bool replaces = false;
    struct stat old = {};                 /* what is replaced */
    std::unique_ptr<TemporaryFile> named; /* only where the system has no files without a name */
};

} // namespace algdata

#endif
