/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALGDATA_VIEW_H
#define ALGDATA_VIEW_H

#include <optional>

#include "reading/records.h"
#include "reading/source.h"
#include "view/loaded.h"

namespace algdata
{

/*
 * The records of a source, as stored in the file or as the module's reader
 * returns them. One record at a time is made of the file's bytes, so that a
 * large file needs no memory for the others.
 */
class View
{
  public:
    /* The source must live as long. Throws Failure where the module's reader refuses it. */
    View(const Source& source, bool loaded);

    /* The record's values last until the next call. False after the last record. */
    bool next(Record& record);

    /* About how many records and entries there are. */
    size_t sizeHint() const;

    /* Once more the record that next() returned with this place. */
    void readAt(size_t place, Record& record);

  private:
    const Kind& kind;
    std::string_view bytes;
    RecordReader stored;
    RecordReader again; /* for readAt(), so that next() goes on where it was */
    std::optional<Image> image;
    size_t count = 0;
    Texts texts; /* of the current record of the image */
};

} // namespace algdata

#endif
