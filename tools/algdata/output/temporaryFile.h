/* SPDX-License-Identifier: Apache-2.0 */
/* Temporary files, which are removed even if a signal ends the program. */
#ifndef ALGDATA_TEMPORARY_FILE_H
#define ALGDATA_TEMPORARY_FILE_H

#include <csignal>
#include <string>

namespace algdata
{

/* A file that is removed by the destructor or, if a signal ends the program, by its handler. */
class TemporaryFile
{
  public:
    /* Creates the file in this directory; if empty, in $TMPDIR or /tmp. */
    explicit TemporaryFile(const std::string& directory = "");
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    int descriptor() const { return fd; }
    const std::string& path() const { return name; }

    /* The file was renamed and stays. */
    void keep();

  private:
    std::string name;
    int fd = -1;
    int slot = -1;
};

/* Removes all temporary files. Safe in a signal handler. */
void removeTemporaryFiles();

/* Installs handlers that remove the files when a signal ends the program. Ignored signals stay ignored. */
void removeTemporaryFilesOnSignals();

/* Blocks all signals during its lifetime. */
class BlockedSignals
{
  public:
    BlockedSignals();
    ~BlockedSignals();
    BlockedSignals(const BlockedSignals&) = delete;
    BlockedSignals& operator=(const BlockedSignals&) = delete;

  private:
    sigset_t before;
};

} // namespace algdata

#endif
