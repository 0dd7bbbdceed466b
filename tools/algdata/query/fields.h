/* SPDX-License-Identifier: Apache-2.0 */
/* The fields that --columns, --where and --sort name. */
#ifndef ALGDATA_FIELDS_H
#define ALGDATA_FIELDS_H

#include <string>
#include <vector>

#include "options/options.h"
#include "records/kinds.h"

namespace algdata
{

/* A field to show: one element or all of them. */
struct Pick {
    const Field* field;
    std::vector<size_t> columns; /* of the layout, in the order of the elements */
    std::string name;
};

/* The fields of a kind to show. */
struct Selection {
    std::vector<Pick> head;
    std::vector<Pick> entry;
    bool kind = false;   /* --columns names the kind */
    bool source = false; /* --columns names the source */

    bool empty() const { return head.empty() && entry.empty(); }

    /* False if --columns names only fields of other kinds: files of this kind are then left out. */
    bool applies() const { return !empty() || onlyFile; }
    bool onlyFile = false; /* --columns names only kind and source */
};

/* The fields of --columns in its order, or all fields without --columns. */
Selection selectionFor(const Kind& kind, const Options& options);

/* The columns of a layout that a name selects: one element or a whole field. Empty for an unknown name. */
std::vector<size_t> columnsNamed(const Layout& layout, const std::string& name);

/* Whether it is "kind" or "source", which every record has. */
bool namesTheFile(const std::string& name);

/* The names of all fields of a kind, or of all kinds if null. Each name occurs once. */
std::vector<std::string> fieldNames(const Kind* kind);

/* The fields of this name in these kinds. Throws Failure, which names the option, if none has it. */
std::vector<const Field*> requireField(const char* option, const std::string& name,
                                       const std::vector<const Kind*>& among);

/*
 * Throws Failure if --columns, --where or --sort names an unknown field (of the kind
 * of --kind, otherwise of all kinds), if a condition has a value that the field
 * cannot have, or if --columns names a field twice.
 */
void requireFields(const Options& options);

/* The same for the fields of these kinds. */
void requireFieldsOf(const std::vector<const Kind*>& among, const Options& options);

/* Throws Failure if a name of --columns occurs twice, also as an element of another one. */
void requireDistinct(const std::vector<std::string>& names);

} // namespace algdata

#endif
