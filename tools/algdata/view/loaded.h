/* SPDX-License-Identifier: Apache-2.0 */
/* Reads and writes record files with the module's own readers and writers. */
#ifndef ALGDATA_LOADED_H
#define ALGDATA_LOADED_H

#include <string>
#include <vector>

#include "reading/source.h"
#include "records/records.h"

namespace algdata
{

/* An array of the module's records of one kind, as bytes. */
struct Image {
    const Kind* kind = nullptr;
    std::vector<char> bytes;
    size_t count = 0;
    bool accepted = false; /* the reader's result */

    char* at(size_t index) { return bytes.data() + index * kind->type.size; }
    const char* at(size_t index) const { return bytes.data() + index * kind->type.size; }
};

/* Reads a record file with the module's reader. The module's messages show `name` as the path. */
Image loadImage(const Kind& kind, std::string_view bytes, const std::string& name);

/* Writes a record file. Returns false if the module reports a failure. */
bool storeImage(Image& image, const std::string& path);

/* Converts a record of the image to texts, which are stored in `texts`. */
void readRecord(const Image& image, size_t index, Record& record, Texts& texts);
Image emptyImage(const Kind& kind);

/* Converts a record from texts and appends it. */
void addRecord(Image& image, const Record& record);

} // namespace algdata

#endif
