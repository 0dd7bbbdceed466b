/* SPDX-License-Identifier: Apache-2.0 */
/* Finds a file's kind from its content. */
#ifndef ALGDATA_DETECT_H
#define ALGDATA_DETECT_H

#include <string>
#include <string_view>
#include <vector>

#include "reading/disguise.h"
#include "reading/kinds.h"

namespace algdata
{

enum class Content : uint8_t {
    Empty,     /* no bytes: a valid file of every kind */
    Blank,     /* nothing but white space and NUL bytes */
    Records,   /* of one kind, or of several that fit equally well */
    Disguised, /* a form that no reader can read, of whatever kind is underneath */
    Other      /* no record file */
};

struct Detection {
    Content content = Content::Other;
    const Kind* kind = nullptr;    /* null unless there are records of one kind */
    std::vector<const Kind*> fits; /* the kinds that fit equally well */
    Disguise disguise;

    /* False for a file that has nothing to do with records, as far as can be told. */
    bool isRecordFile() const;

    /* False for a file of other kinds; true for one without records. */
    bool mayBe(const Kind& asked) const;

    bool hasNoRecords() const { return content == Content::Empty || content == Content::Blank; }

    /* Why there is no kind, and what to do about it. */
    std::string reason() const;
};

/*
 * A line fits a kind completely when it has the kind's number of fields, a MAC of
 * 12 hexadecimal digits where the kind has a MAC and a number where it has a
 * number. A line fits it with damage when one field is missing or too many, or
 * when one field in eight (at least one) is something else, as long as one MAC
 * is whole. A file is of the kind that at least two thirds of its lines fit (of
 * kinds with up to four fields, one of them completely); of two such kinds it is
 * the one with more lines that fit completely.
 */
Detection detectKind(std::string_view bytes);

/* The same, where the user may have asked for a kind. */
Detection detectKind(std::string_view bytes, const Kind* asked);

} // namespace algdata

#endif
