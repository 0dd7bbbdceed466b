/* SPDX-License-Identifier: Apache-2.0 */
/* Records through the module's own readers and writers. */
#ifndef ALGDATA_LOADED_H
#define ALGDATA_LOADED_H

#include <string>
#include <vector>

#include "reading/records.h"
#include "reading/source.h"

namespace algdata
{

/* The module's records of one kind, as bytes. */
struct Image {
    const Kind* kind = nullptr;
    std::vector<char> bytes;
    size_t count = 0;
    bool accepted = false; /* the reader's result */

    char* at(size_t index) { return bytes.data() + index * kind->type.size; }
    const char* at(size_t index) const { return bytes.data() + index * kind->type.size; }
};

/* Reads a record file as the algorithm would; `name` stands in the module's messages. */
Image loadImage(const Kind& kind, std::string_view bytes, const std::string& name);

/* Writes a record file; false where the module reports a failure. */
bool storeImage(Image& image, const std::string& path);

/* A record of an image as texts, and the other way round. */
void readRecord(const Image& image, size_t index, Record& record, Texts& texts);
Image emptyImage(const Kind& kind);
void addRecord(Image& image, const Record& record);

} // namespace algdata

#endif
