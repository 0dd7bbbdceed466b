/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALGDATA_COPY_H
#define ALGDATA_COPY_H

#include <memory>
#include <string>
#include <string_view>

#include "output/output.h"

namespace algdata
{

/*
 * A file with a copy of some bytes that nobody else can change, for functions that
 * read a path. It is in memory if the system supports that, otherwise a temporary file.
 */
class PrivateCopy
{
  public:
    enum Place { InMemory, InDirectory };

    /* The bytes must live as long as the copy. Throws OutputFailure if the file cannot be written. */
    explicit PrivateCopy(std::string_view copied, Place place = InMemory);
    ~PrivateCopy();
    PrivateCopy(const PrivateCopy&) = delete;
    PrivateCopy& operator=(const PrivateCopy&) = delete;

    const char* path() const { return name.c_str(); }
    std::string_view bytes() const { return all; }

  private:
    bool openInMemory();

    std::string_view all;
    std::string name;
    int memory = -1;
    std::unique_ptr<TemporaryFile> file;
};

} // namespace algdata

#endif
