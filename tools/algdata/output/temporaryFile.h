/* SPDX-License-Identifier: Apache-2.0 */
/* Files with a name that must not outlive the program. */
#ifndef ALGDATA_TEMPORARY_FILE_H
#define ALGDATA_TEMPORARY_FILE_H

#include <csignal>
#include <string>

namespace algdata
{

/* A file that is removed on the way out, by a signal or otherwise. */
class TemporaryFile
{
  public:
    /* In this directory, or in the one for temporary files where that is empty. */
    explicit TemporaryFile(const std::string& directory = "");
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    int descriptor() const { return fd; }
    const std::string& path() const { return name; }

    /* It has another name now, and stays. */
    void renamed();

  private:
    std::string name;
    int fd = -1;
    int slot = -1;
};

/* Removes them all. A signal handler may call it. */
void removeTemporaryFiles();

/* Removes such files when a signal ends the program. A signal that is ignored stays so. */
void watchSignals();

/* While it lives, signals wait. */
class SignalsWait
{
  public:
    SignalsWait();
    ~SignalsWait();
    SignalsWait(const SignalsWait&) = delete;
    SignalsWait& operator=(const SignalsWait&) = delete;

  private:
    sigset_t before;
};

} // namespace algdata

#endif
