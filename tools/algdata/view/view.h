/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALGDATA_VIEW_H
#define ALGDATA_VIEW_H

#include <optional>

#include "reading/source.h"
#include "records/records.h"
#include "view/loaded.h"

namespace algdata
{

/*
 * The records of a source, as stored in the file or as the module's reader returns
 * them. Records are parsed one by one, so that a large file needs no memory for all
 * of them.
 */
class View
{
  public:
    /* The source must live as long as the view. Throws Failure if the module's reader refuses the file. */
    View(const Source& source, bool loaded);

    /* The record's values last until the next call. False after the last record. */
    bool next(Record& record);

    /* Begins again with the first record. */
    void restart();

    /* The number in the file's count line, after next(). Null if there is none, and for a loaded view. */
    Token countLine() const { return stored.countLine(); }

    /* An estimate of the number of records and entries. */
    size_t sizeHint() const;

    /* Reads again the record that next() returned with this place. */
    void readAt(size_t place, Record& record);

  private:
    const Kind& kind;
    std::string_view bytes;
    RecordReader stored;
    RecordReader again; /* for readAt(), so that next() keeps its position */
    std::optional<Image> image;
    size_t count = 0;
    Texts texts; /* of the current record of the image */
};

} // namespace algdata

#endif
