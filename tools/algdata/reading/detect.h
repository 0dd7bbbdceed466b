/* SPDX-License-Identifier: Apache-2.0 */
/* Detects the kind of a file from its content. */
#ifndef ALGDATA_DETECT_H
#define ALGDATA_DETECT_H

#include <string>
#include <string_view>
#include <vector>

#include "reading/disguise.h"
#include "records/kinds.h"

namespace algdata
{

enum class Content : uint8_t {
    Empty,     /* no bytes: a valid file of every kind */
    Blank,     /* only white space and NUL bytes */
    Records,   /* of one kind, or of several that match equally well */
    Disguised, /* a form that no reader can read, such as UTF-16 or a compressed file */
    Other      /* not a record file */
};

struct Detection {
    Content content = Content::Other;
    const Kind* kind = nullptr;    /* null unless exactly one kind matches */
    std::vector<const Kind*> fits; /* the kinds that match equally well */
    Disguise disguise;

    /* False for a file that does not look like a record file at all. */
    bool isRecordFile() const;

    /* Whether the file can be of this kind; true for a file without records. */
    bool canBe(const Kind& asked) const;

    bool hasNoRecords() const { return content == Content::Empty || content == Content::Blank; }

    /* Why the kind is unknown, and what to do about it. */
    std::string reason() const;
};

/*
 * A line matches a kind completely if it has the kind's number of fields, each of the
 * right type: 12 hexadecimal digits for a MAC, otherwise a number. A line matches with
 * damage if one field is missing or too many, or if one field in eight (at least one)
 * has the wrong type, as long as one MAC is intact.
 *
 * A file is of a kind if at least two thirds of its lines match. For kinds with up to
 * four fields, one line must match completely. Of two such kinds, the one with more
 * complete matches is chosen.
 *
 * A single line without a newline can be torn: it also matches a kind whose lines begin
 * like this.
 */
Detection detectKind(std::string_view bytes);

/* The same, but if `asked` is not null, the kind is `asked` unless the file is disguised. */
Detection detectKind(std::string_view bytes, const Kind* asked);

} // namespace algdata

#endif
