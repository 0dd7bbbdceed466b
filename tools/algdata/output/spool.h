/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALGDATA_SPOOL_H
#define ALGDATA_SPOOL_H

#include <memory>
#include <string>
#include <string_view>

#include "output/temporaryFile.h"

namespace algdata
{

/* Texts that wait until their order is known: in memory while they are few, then in a temporary file. */
class Spool
{
  public:
    /* Returns the place of the text. Throws OutputFailure if it cannot be written. */
    size_t append(std::string_view text);

    /* The text of this size at a place. Throws OutputFailure if it cannot be read. */
    std::string read(size_t place, size_t size);

  private:
    void write();

    std::unique_ptr<TemporaryFile> file; /* null while all texts are in memory */
    size_t written = 0;
    std::string latest; /* what follows the written texts */
};

} // namespace algdata

#endif
