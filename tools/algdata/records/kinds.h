/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The kinds of record files: the description in formats/, extended by the columns of
 * each kind's text.
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

/* A column of the text: one element of a field. */
struct Column {
    const Field* field;
    int element;
    std::string name; /* "rssi", or "rssi.3" for an element */
};

/* The fields of one line: the record's own line (its head), or the line of an entry. */
struct Layout {
    formats::List<Field> fields;
    std::vector<Column> columns;              /* in the order of the text */
    std::vector<std::vector<size_t>> placeOf; /* [field][element] is the index of the column */
    std::vector<size_t> key;                  /* the columns that identify a record */
};

struct Kind : formats::Kind {
    Layout head;
    Layout entry;
};

const std::vector<Kind>& kinds();

/* The kind of this name or alias; null if there is none. */
const Kind* findKind(std::string_view name);

/* The same, for a name that is known to exist. */
const Kind& kindNamed(std::string_view name);

/* Every name and alias. */
std::vector<std::string> kindWords();

/* "ap-node, ap-all, ..." */
std::string kindNames();

/* The value that a reader returns for a stored value, with the current settings of the module. */
uint64_t loadedValue(const Field& field, uint64_t stored);

} // namespace algdata

#endif
