/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The kinds of record files as the commands walk them: the description of
 * formats/, and on top of it the columns of each kind's text.
 */
#ifndef ALGDATA_KINDS_H
#define ALGDATA_KINDS_H

#include <string>
#include <string_view>
#include <vector>

#include "formats/formats.h"

namespace algdata
{

using formats::Field;
using formats::largest;
using formats::Load;
using formats::loadText;
using formats::Shape;
using formats::Type;
using formats::typeMax;
using formats::typeName;

/* One field of text: element `element` of `field`. */
struct Column {
    const Field* field;
    int element;
    std::string name; /* "rssi", or "rssi.3" for an element */
};

/* A run of fields: a record's head, or one entry. */
struct Layout {
    formats::List<Field> fields;
    std::vector<Column> columns;              /* in the order of the text */
    std::vector<std::vector<size_t>> placeOf; /* [field][element] is the index of the column */
    std::vector<size_t> key;                  /* the columns that tell one record from another */
};

struct Kind : formats::Kind {
    Layout head;
    Layout entry;
};

const std::vector<Kind>& kinds();

/* By name or alias, null where there is none. */
const Kind* findKind(std::string_view name);

/* The same, for a kind that is known to be there. */
const Kind& kindNamed(std::string_view name);

/* Every name and alias. */
std::vector<std::string> kindWords();

/* "ap-node, ap-all, ..." */
std::string kindNames();

/* What a reader makes of a stored value, with the module's settings as they are. */
uint64_t loadedValue(const Field& field, uint64_t stored);

/* What the field means, its named values included. */
std::string meaningOf(const Field& field);

} // namespace algdata

#endif
