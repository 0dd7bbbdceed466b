/* SPDX-License-Identifier: Apache-2.0 */
#include "sql/tables.h"

#include <algorithm>

#include <fmt/format.h>

#include "formats/meaning.h"
#include "options/options.h"
#include "sqlite/rowTable.h"
#include "text/suggest.h"
#include "text/wording.h"

namespace algdata
{

namespace
{

const char* sqlType(Type type)
{
    return type == Type::Mac ? "mac" : type == Type::F32 ? "REAL" : "INTEGER";
}

/* "signal strength per band; host's unit; loaded as value - 3, at least 1" */
std::string describe(const Field& field, bool loaded)
{
    std::string text = meaningOf(field);
    if (field.unit[0] != '\0')
        text += std::string("; ") + field.unit;
    if (loaded && loadText(field.load)[0] != '\0')
        text += std::string("; loaded as ") + loadText(field.load);
    return text;
}

std::string tableName(const Kind& kind)
{
    std::string name = kind.name;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

SqlColumn columnOf(const Layout& layout, const Field& field, bool loaded, bool ofRecord)
{
    const size_t index = static_cast<size_t>(&field - layout.fields.begin());
    return {field.name, sqlType(field.type),    describe(field, loaded),
            &field,     &layout.placeOf[index], ofRecord};
}

const char* suffixOf(bool loaded)
{
    return loaded ? "_loaded" : "";
}

const char* aboutView(bool loaded)
{
    return loaded ? ", as the module's reader returns them" : "";
}

/* ---- Tables of kinds ---------------------------------------------------- */

/* One row per record, with the single fields. */
SqlTable recordTable(const Kind& kind, bool loaded)
{
    SqlTable table;
    table.name = tableName(kind) + suffixOf(loaded);
    table.about = std::string(kind.title) + aboutView(loaded);
    table.row = RowOf::Record;
    table.kind = &kind;
    table.loaded = loaded;
    for (const Field& field : kind.head.fields)
        if (field.count == 1)
            table.columns.push_back(columnOf(kind.head, field, loaded, true));
    const std::string& key = table.columns[0].name;
    const std::string& last = table.columns.back().name;
    table.examples = {
        {"The records of each file", fmt::format("SELECT _path, _line, * FROM {} LIMIT 5", table.name)},
        {"How many there are, and of how many devices",
         fmt::format("SELECT count(*) AS records, count(DISTINCT {}) AS keys FROM {}", key, table.name)},
        {fmt::format("The largest {}", last),
         fmt::format("SELECT {0}, {1} FROM {2} ORDER BY {1} DESC, {0} LIMIT 3", key, last, table.name)},
    };
    return table;
}

/* One row per element of the arrays, or per entry. The key of the record comes first. */
SqlTable partTable(const Kind& kind, bool loaded)
{
    SqlTable table;
    table.name = std::string(kind.parts) + suffixOf(loaded);
    table.about = fmt::format("{}: one row per {}{}", kind.title, kind.part, aboutView(loaded));
    table.row = RowOf::Part;
    table.kind = &kind;
    table.loaded = loaded;
    for (const Field& field : kind.head.fields)
        if (field.count == 1 && field.key)
            table.columns.push_back(columnOf(kind.head, field, loaded, true));
    table.columns.push_back({kind.part, "INTEGER", fmt::format("index of the {}, from 0", kind.part)});
    const bool ofEntries = kind.hasEntries();
    const Layout& layout = ofEntries ? kind.entry : kind.head;
    for (const Field& field : layout.fields)
        if (ofEntries || field.count > 1)
            table.columns.push_back(columnOf(layout, field, loaded, !ofEntries));
    const std::string& last = table.columns.back().name;
    const std::string whole = tableName(kind) + suffixOf(loaded);
    table.examples = {
        {"The first rows", fmt::format("SELECT * FROM {} LIMIT 5", table.name)},
        {"Smallest and largest value by index",
         fmt::format("SELECT {0}, min({1}), max({1}) FROM {2} GROUP BY {0}", kind.part, last, table.name)},
        {"Joined with the record",
         fmt::format("SELECT r.*, p.{}, p.{} FROM {} AS r JOIN {} AS p USING (_path, _record) LIMIT 5",
                     kind.part, last, whole, table.name)},
    };
    return table;
}

/* ---- Tables of files ---------------------------------------------------- */

SqlTable fileTable()
{
    return {"file",
            "every file below the paths, whether or not it can be read",
            RowOf::File,
            nullptr,
            false,
            {{"path", "TEXT", "the file"},
             {"kind", "TEXT", "its kind; null if it has none"},
             {"status", "TEXT", "ok, empty, ambiguous, other (not a record file) or error"},
             {"records", "INTEGER", "number of records"},
             {"entries", "INTEGER", "number of entries of the records"},
             {"size", "INTEGER", "bytes"},
             {"modified", "INTEGER", "time of the last change, in seconds since 1970"}},
            {{"How many files of each kind", "SELECT kind, count(*) AS files FROM file GROUP BY kind"},
             {"The largest files", "SELECT path, kind, size FROM file ORDER BY size DESC, path LIMIT 5"},
             {"Files without records", "SELECT path, status FROM file WHERE status <> 'ok'"}}};
}

SqlTable findingTable()
{
    return {
        "finding",
        "what `algdata check` finds, by rule",
        RowOf::Finding,
        nullptr,
        false,
        {{"path", "TEXT", "the file"},
         {"line", "INTEGER", "line, from 1"},
         {"column", "INTEGER", "column of the line, from 1"},
         {"severity", "TEXT", "error, warning or note"},
         {"rule", "TEXT", "name of the rule; `algdata check --explain` lists them"},
         {"field", "TEXT", "the field; empty if none"},
         {"message", "TEXT", "what is wrong, and what was expected"}},
        {{"Findings by rule",
          "SELECT severity, rule, count(*) AS findings FROM finding GROUP BY severity, rule"},
         {"Only errors", "SELECT path, line, message FROM finding WHERE severity = 'error'"},
         {"Files with most findings",
          "SELECT path, count(*) AS findings FROM finding GROUP BY path ORDER BY findings DESC LIMIT 5"}}};
}

SqlTable errorTable()
{
    return {
        "error",
        "files that could not be read, and record files whose kind is not known",
        RowOf::Error,
        nullptr,
        false,
        {{"path", "TEXT", "the file"}, {"message", "TEXT", "why"}},
        {{"All of them", "SELECT * FROM error"},
         {"How many", "SELECT count(*) AS files FROM error"},
         {"By reason", "SELECT message, count(*) AS files FROM error GROUP BY message ORDER BY files DESC"}}};
}

SqlTable treeTable()
{
    return {"tree",
            "the mesh that the files of each directory describe: one row per device",
            RowOf::Device,
            nullptr,
            false,
            {{"directory", "TEXT", "where the files are"},
             {"deviceMAC", "mac", "the device"},
             {"deviceName", "TEXT", "its name in the configuration"},
             {"fatherMAC", "mac", "its father, as the most trusted file has it; null if none"},
             {"depth", "INTEGER", "0 for the root of the tree"},
             {"rootPath", "TEXT", "the MACs from the root to the device"},
             {"apRank", "INTEGER", "its rank"},
             {"medium", "TEXT", "wireless, ethernet or plc"},
             {"backhaulBand", "INTEGER", "the band of a wireless link"},
             {"backhaulRssi", "INTEGER", "its signal strength"},
             {"backhaulRxRate", "INTEGER", "receive rate of the link"},
             {"backhaulTxRate", "INTEGER", "transmit rate of the link"},
             {"throughput", "INTEGER", "its throughput"},
             {"stations", "INTEGER", "number of stations; null without station files"},
             {"attachment", "TEXT", "root, child, cycle, unknown father or no father"}},
            {{"The devices, as a tree",
              "SELECT deviceMAC, depth, rootPath FROM tree ORDER BY directory, rootPath"},
             {"Devices by the number of hops", "SELECT depth, count(*) AS devices FROM tree GROUP BY depth"},
             {"The weakest wireless backhaul",
              "SELECT deviceMAC, fatherMAC, backhaulRssi FROM tree WHERE medium = 'wireless' "
              "ORDER BY backhaulRssi LIMIT 1"}}};
}

SqlTable auditTable()
{
    return {"audit",
            "what `algdata audit` finds: contradictions between the files of each directory",
            RowOf::Conflict,
            nullptr,
            false,
            {{"directory", "TEXT", "where the files are"},
             {"file", "TEXT", "the file"},
             {"line", "INTEGER", "line, from 1"},
             {"severity", "TEXT", "error, warning or note"},
             {"rule", "TEXT", "name of the rule; `algdata audit --explain` lists them"},
             {"field", "TEXT", "the field; empty if none"},
             {"message", "TEXT", "what contradicts what"}},
            {{"Findings by rule", "SELECT severity, rule, count(*) AS findings FROM audit GROUP BY 1, 2"},
             {"Directories with a cycle of fathers",
              "SELECT DISTINCT directory FROM audit WHERE rule = 'father-cycle'"},
             {"Everything but notes", "SELECT file, line, message FROM audit WHERE severity <> 'note'"}}};
}

SqlTable nameTable()
{
    return {"name",
            "the names of devices in the configuration",
            RowOf::Name,
            nullptr,
            false,
            {{"mac", "mac", "the device"}, {"name", "TEXT", "its name"}},
            {{"All names", "SELECT * FROM name"},
             {"Ranks with names", "SELECT deviceMAC, name_of(deviceMAC) AS name, apRank FROM ap_rank"},
             {"How many devices have one", "SELECT count(*) AS names FROM name"}}};
}

std::vector<SqlTable> allTables()
{
    std::vector<SqlTable> all;
    for (const bool loaded : {false, true})
        for (const Kind& kind : kinds()) {
            all.push_back(recordTable(kind, loaded));
            if (kind.parts[0] != '\0')
                all.push_back(partTable(kind, loaded));
        }
    for (SqlTable (*made)() : {fileTable, findingTable, errorTable, treeTable, auditTable, nameTable})
        all.push_back(made());
    return all;
}

} // namespace

const std::vector<SqlTable>& sqlTables()
{
    static const std::vector<SqlTable> all = allTables();
    return all;
}

const SqlTable* findSqlTable(const std::string& name)
{
    for (const SqlTable& table : sqlTables())
        if (lowered(table.name) == lowered(name))
            return &table;
    return nullptr;
}

const SqlTable& sqlTableNamed(const std::string& name)
{
    const SqlTable* table = findSqlTable(name);
    if (table != nullptr)
        return *table;
    std::vector<std::string> names;
    for (const SqlTable& one : sqlTables())
        names.push_back(one.name);
    throw Failure(fmt::format("no table {}{}; `algdata sql --schema` lists them", inQuotes(name),
                              didYouMean(name, names)));
}

void requireFreeNames(const std::vector<std::string>& pathColumns)
{
    for (const std::string& name : pathColumns)
        for (const SqlTable& table : sqlTables())
            for (const SqlColumn& column : table.columns)
                if (table.isOfFiles() && lowered(column.name) == lowered(name))
                    throw Failure(
                        fmt::format("--path: {{{}}} is also a column of table {}, expected another name",
                                    name, table.name));
    for (size_t i = 0; i < pathColumns.size(); ++i)
        for (size_t j = 0; j < i; ++j)
            if (lowered(pathColumns[i]) == lowered(pathColumns[j]))
                throw Failure(fmt::format("--path: {{{}}} and {{{}}} differ only in letter case",
                                          pathColumns[j], pathColumns[i]));
}

const std::vector<SqlColumn>& hiddenColumns()
{
    static const std::vector<SqlColumn> all = {
        {"_path", "TEXT", "the file, ARCHIVE/MEMBER in an archive"},
        {"_archive", "TEXT", "the archive; null outside"},
        {"_member", "TEXT", "the name in the archive; null outside"},
        {"_line", "INTEGER", "line of the record, from 1; null for loaded values"},
        {"_size", "INTEGER", "bytes of the file"},
        {"_mtime", "INTEGER", "time of its last change, in seconds since 1970"},
        {"_record", "INTEGER", "index of the record in its file, from 0"},
    };
    return all;
}

/* ---- Inputs ------------------------------------------------------------- */

/* The module's readers, which return the loaded values, open files. */
bool existsWith(Input input, const SqlTable& table)
{
    if (input != Input::Content)
        return true;
    const bool ofContent = table.row == RowOf::Record || table.row == RowOf::Part ||
                           table.row == RowOf::File || table.row == RowOf::Finding;
    return ofContent && !table.loaded;
}

const char* argumentOf(Input input)
{
    return input == Input::Shared ? nullptr : input == Input::Path ? "_from" : "_content";
}

const std::vector<Hidden>& hiddenOf(Input input, const SqlTable& table)
{
    static const std::vector<Hidden> none;
    static const std::vector<Hidden> all = {Hidden::Path, Hidden::Archive,  Hidden::Member, Hidden::Line,
                                            Hidden::Size, Hidden::Modified, Hidden::Record};
    static const std::vector<Hidden> ofContent = {Hidden::Line, Hidden::Size, Hidden::Record};
    return !table.isOfFiles() ? none : input == Input::Content ? ofContent : all;
}

/* ---- Declarations ------------------------------------------------------- */

namespace
{

std::string declared(const SqlColumn& column)
{
    const std::string type = column.type == std::string("mac") ? "TEXT COLLATE mac" : column.type;
    return quotedName(column.name) + " " + type;
}

} // namespace

std::string declarationOf(const SqlTable& table, Input input, const std::vector<std::string>& pathColumns)
{
    std::string text;
    const auto add = [&text](const std::string& column) { text += (text.empty() ? "" : ", ") + column; };
    for (size_t i = 0; table.isOfFiles() && i < pathColumns.size(); ++i)
        add(quotedName(pathColumns[i]) + " TEXT");
    for (const SqlColumn& column : table.columns)
        add(declared(column));
    if (input != Input::Shared)
        add(std::string(argumentOf(input)) + " HIDDEN");
    for (const Hidden column : hiddenOf(input, table))
        add(declared(hiddenColumns()[static_cast<size_t>(column)]) + " HIDDEN");
    return "CREATE TABLE x(" + text + ")";
}

std::string tableList()
{
    size_t width = 0;
    for (const SqlTable& table : sqlTables())
        width = std::max(width, table.name.size());
    std::string text;
    for (const SqlTable& table : sqlTables())
        if (!table.loaded)
            text += fmt::format("{:{}}  {}\n", table.name, width, table.about);
    return text +
           "\nEach table of records also exists with _loaded at the end of its name: the values as the\n"
           "module's readers return them. `algdata sql --schema TABLE` lists the columns.\n";
}

std::string schemaText(const SqlTable& table, const std::vector<std::string>& pathColumns)
{
    std::vector<SqlColumn> columns;
    for (size_t i = 0; table.isOfFiles() && i < pathColumns.size(); ++i)
        columns.push_back({pathColumns[i], "TEXT", "part of the path"});
    columns.insert(columns.end(), table.columns.begin(), table.columns.end());
    const size_t shown = columns.size();
    if (table.isOfFiles())
        columns.insert(columns.end(), hiddenColumns().begin(), hiddenColumns().end());
    size_t width = 0;
    for (const SqlColumn& column : columns)
        width = std::max(width, column.name.size());
    std::string text = fmt::format("{} -- {}\n", table.name, table.about);
    for (size_t i = 0; i < columns.size(); ++i)
        text += fmt::format("    {:{}}  {:7}  {}{}\n", columns[i].name, width,
                            columns[i].type == std::string("mac") ? "MAC" : columns[i].type,
                            i < shown ? "" : "hidden: ", columns[i].meaning);
    for (const SqlExample& example : table.examples)
        text += fmt::format("    -- {}\n    {}\n", example.question, example.query);
    return text;
}

} // namespace algdata
