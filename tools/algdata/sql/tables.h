/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The tables of `algdata sql`, made from the description of the kinds. The engine, the
 * schema, the completion and the manual read them from here.
 */
#ifndef ALGDATA_SQL_TABLES_H
#define ALGDATA_SQL_TABLES_H

#include <string>
#include <vector>

#include "records/kinds.h"

namespace algdata
{

/* What a row of a table is. */
enum class RowOf : uint8_t {
    Record,   /* a record of a file */
    Part,     /* an element of a record's arrays, or an entry */
    File,     /* a file, whether or not it can be read */
    Finding,  /* a finding of `algdata check` */
    Error,    /* a file that could not be read, or has no kind */
    Device,   /* a device of the mesh that the files of a directory describe */
    Conflict, /* a finding of `algdata audit` */
    Name      /* a name of the configuration */
};

struct SqlColumn {
    std::string name;
    const char* type; /* "mac" is TEXT that compares in any letter case, with and without colons */
    std::string meaning;
    const Field* field = nullptr;                /* null: not a value of the file */
    const std::vector<size_t>* places = nullptr; /* of the field's elements in its layout */
    bool ofRecord = true;                        /* the value is in the record, not in its entry */
};

struct SqlExample {
    std::string question;
    std::string query;
};

struct SqlTable {
    std::string name;
    std::string about;
    RowOf row;
    const Kind* kind = nullptr; /* of Record and Part */
    bool loaded = false;        /* values as the module's readers return them */
    std::vector<SqlColumn> columns;
    std::vector<SqlExample> examples;

    /* Whether its rows come from files, so that it has the columns of paths and the hidden ones. */
    bool isOfFiles() const { return row != RowOf::Name; }
    bool isOfMeshes() const { return row == RowOf::Device || row == RowOf::Conflict; }
};

const std::vector<SqlTable>& sqlTables();

/* Null if there is none. Letter case does not matter, as in SQL. */
const SqlTable* findSqlTable(const std::string& name);

/* The same, but throws Failure if there is none. */
const SqlTable& sqlTableNamed(const std::string& name);

/* Throws Failure if a name of a template is that of a column. */
void requireFreeNames(const std::vector<std::string>& pathColumns);

/* The columns that every table of files has and "*" leaves out. */
enum class Hidden : uint8_t { Path, Archive, Member, Line, Size, Modified, Record };
const std::vector<SqlColumn>& hiddenColumns();

/* Where the tables get their rows from. */
enum class Input : uint8_t {
    Shared, /* the files of the connection */
    Path,   /* files below the path that the query gives: SELECT * FROM score('data') */
    Content /* the content of one file, from the query: SELECT * FROM score(readfile('x')) */
};

/* Whether the table exists with this input. With Input::Content, nothing opens a file. */
bool existsWith(Input input, const SqlTable& table);

/* The hidden column that the argument of a table sets; null for Input::Shared. */
const char* argumentOf(Input input);

/* The other hidden columns that the table has, after the argument. */
const std::vector<Hidden>& hiddenOf(Input input, const SqlTable& table);

/* The statement that declares the table to the engine, with these columns of paths before its own. */
std::string declarationOf(const SqlTable& table, Input input, const std::vector<std::string>& pathColumns);

/* The same for people: a line per column, with unit and meaning. */
std::string schemaText(const SqlTable& table, const std::vector<std::string>& pathColumns);

/* One line per table, for people. */
std::string tableList();

} // namespace algdata

#endif
