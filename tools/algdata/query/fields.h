/* SPDX-License-Identifier: Apache-2.0 */
/* The fields that --columns, --where and --sort name. */
#ifndef ALGDATA_FIELDS_H
#define ALGDATA_FIELDS_H

#include <string>
#include <vector>

#include "commandline/options.h"
#include "reading/kinds.h"

namespace algdata
{

/* One field to be shown: all its elements, or one. */
struct Pick {
    const Field* field;
    std::vector<size_t> columns; /* of the layout, in order of the elements */
    std::string name;
};

/* The fields of a kind that are to be shown. */
struct Selection {
    std::vector<Pick> head;
    std::vector<Pick> entry;
    bool kind = false;   /* --columns names the kind */
    bool source = false; /* and the source */

    bool empty() const { return head.empty() && entry.empty(); }

    /* Whether files of the kind are shown at all. */
    bool applies() const { return !empty() || onlyFile; }
    bool onlyFile = false; /* --columns names nothing but kind and source */
};

/* By --columns, in its order; all fields where it is not given. */
Selection selectionFor(const Kind& kind, const Options& options);

/* Columns of a layout that a name means: one element, or all of the field. Empty: no such field. */
std::vector<size_t> columnsNamed(const Layout& layout, const std::string& name);

/* The names of all fields of a kind, or of all kinds for null; each once. */
std::vector<std::string> fieldNames(const Kind* kind);

/*
 * Throws Failure where --columns, --where or --sort names a field that the kinds
 * in question do not have, where a condition's value cannot be the field's, or
 * where a field stands twice.
 */
void requireFields(const Options& options);

/* Throws Failure where a name, or a part of it, stands twice. */
void requireDistinct(const std::vector<std::string>& names);

} // namespace algdata

#endif
