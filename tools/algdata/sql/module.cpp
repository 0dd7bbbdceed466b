/* SPDX-License-Identifier: Apache-2.0 */
#include "sql/module.h"

#include <memory>
#include <new>

#include <fmt/format.h>
#include <sqlite3.h>

#include "sql/cursor.h"

namespace algdata
{

namespace
{

/* What a module knows: its table. SQLite frees it with the module. */
struct TableOf {
    Engine& engine;
    const SqlTable& table;
};

struct VirtualTable : sqlite3_vtab {
    VirtualTable(Engine& shared, const SqlTable& of) : sqlite3_vtab(), engine(shared), table(of) {}
    Engine& engine;
    const SqlTable& table;

    int pathColumns() const
    {
        return table.isOfFiles() ? static_cast<int>(engine.files.columns().size()) : 0;
    }
    int hidden(Hidden column) const
    {
        return pathColumns() + static_cast<int>(table.columns.size()) + static_cast<int>(column);
    }
    /* Whether the column is the path of the file. */
    bool isPath(int column) const
    {
        const int first = pathColumns();
        return column == hidden(Hidden::Path) || (column == first && table.columns[0].name == "path");
    }
};

struct Cursor : sqlite3_vtab_cursor {
    explicit Cursor(const VirtualTable& of) : sqlite3_vtab_cursor(), rows(of.engine, of.table) {}
    TableCursor rows;
    sqlite3_int64 row = 0;
};

VirtualTable& tableOf(sqlite3_vtab* table)
{
    return *static_cast<VirtualTable*>(table);
}

Cursor& cursorOf(sqlite3_vtab_cursor* cursor)
{
    return *static_cast<Cursor*>(cursor);
}

/* Exceptions must not pass through SQLite. Runs the step and returns its result code. */
template <typename Step> int guarded(sqlite3_vtab* table, Step&& step)
{
    try {
        return step();
    } catch (const std::bad_alloc&) {
        return SQLITE_NOMEM;
    } catch (const std::exception& failure) {
        sqlite3_free(table->zErrMsg);
        table->zErrMsg = sqlite3_mprintf("%s", failure.what());
        return SQLITE_ERROR;
    }
}

int connect(sqlite3* database, void* given, int, const char* const*, sqlite3_vtab** made, char**)
{
    const TableOf& of = *static_cast<TableOf*>(given);
    const std::string declaration = declarationOf(of.table, of.engine.files.columns());
    of.engine.declaring = true;
    const int declared = sqlite3_declare_vtab(database, declaration.c_str());
    of.engine.declaring = false;
    if (declared != SQLITE_OK)
        return declared;
    sqlite3_vtab_config(database, SQLITE_VTAB_DIRECTONLY);
    *made = new (std::nothrow) VirtualTable(of.engine, of.table);
    return *made == nullptr ? SQLITE_NOMEM : SQLITE_OK;
}

int disconnect(sqlite3_vtab* table)
{
    delete static_cast<VirtualTable*>(table);
    return SQLITE_OK;
}

/* ---- Planning ----------------------------------------------------------- */

/* Whether the query uses more than the paths of the files. */
bool needsContent(const VirtualTable& table, sqlite3_uint64 used)
{
    for (int column = 0; column < table.hidden(Hidden::Record) + 1; ++column) {
        const bool inUse = (used >> std::min(column, 63) & 1U) != 0;
        const bool ofPath = column < table.pathColumns() || table.isPath(column) ||
                            column == table.hidden(Hidden::Archive) || column == table.hidden(Hidden::Member);
        if (inUse && !ofPath)
            return true;
    }
    return false;
}

/*
 * Takes the constraints that narrow the files: = and IN on paths and their parts, and = on
 * the index of the record. The plan is a text: the column and the operator of each
 * argument, then whether the content is in use. SQLite checks every row again.
 */
int bestIndex(sqlite3_vtab* given, sqlite3_index_info* info)
{
    const VirtualTable& table = tableOf(given);
    std::string plan;
    double cost = 1e6;
    int arguments = 0;
    for (int i = 0; i < info->nConstraint; ++i) {
        const auto& constraint = info->aConstraint[i];
        const bool narrows = constraint.iColumn >= 0 &&
                             (constraint.iColumn < table.pathColumns() || table.isPath(constraint.iColumn) ||
                              constraint.iColumn == table.hidden(Hidden::Record));
        /* A comparison of MACs accepts more than the exact text. */
        if (constraint.op != SQLITE_INDEX_CONSTRAINT_EQ || constraint.usable == 0 || !narrows ||
            sqlite3_stricmp(sqlite3_vtab_collation(info, i), "BINARY") != 0)
            continue;
        const bool record = constraint.iColumn == table.hidden(Hidden::Record);
        const bool in = !record && sqlite3_vtab_in(info, i, -1) != 0;
        if (in)
            sqlite3_vtab_in(info, i, 1);
        info->aConstraintUsage[i].argvIndex = ++arguments;
        plan += fmt::format("{}{} ", constraint.iColumn, in ? 'i' : '=');
        cost /= record ? 10 : table.isPath(constraint.iColumn) ? 1e4 : 100;
    }
    plan += needsContent(table, info->colUsed) ? "c" : "p";
    info->idxStr = sqlite3_mprintf("%s", plan.c_str());
    info->needToFreeIdxStr = 1;
    info->estimatedCost = cost;
    info->estimatedRows = static_cast<sqlite3_int64>(cost) + 1;
    return info->idxStr == nullptr ? SQLITE_NOMEM : SQLITE_OK;
}

/* ---- Scanning ----------------------------------------------------------- */

int openCursor(sqlite3_vtab* table, sqlite3_vtab_cursor** made)
{
    return guarded(table, [&] { return *made = new Cursor(tableOf(table)), SQLITE_OK; });
}

int closeCursor(sqlite3_vtab_cursor* cursor)
{
    delete static_cast<Cursor*>(cursor);
    return SQLITE_OK;
}

/* Texts of the values that a column may have. A path is a text, so no other type can be equal to it. */
std::vector<std::string> textsOf(sqlite3_value* value, bool in)
{
    std::vector<std::string> texts;
    const auto add = [&texts](sqlite3_value* one) {
        const unsigned char* text = sqlite3_value_text(one);
        if (text != nullptr)
            texts.emplace_back(reinterpret_cast<const char*>(text),
                               static_cast<size_t>(sqlite3_value_bytes(one)));
    };
    if (!in) {
        add(value);
        return texts;
    }
    sqlite3_value* one = nullptr;
    for (int got = sqlite3_vtab_in_first(value, &one); got == SQLITE_OK;
         got = sqlite3_vtab_in_next(value, &one))
        add(one);
    return texts;
}

/* The values that both allow. */
void narrow(Allowed& allowed, std::vector<std::string> texts)
{
    if (allowed) {
        const auto missing = [&](const std::string& text) {
            return std::find(allowed->begin(), allowed->end(), text) == allowed->end();
        };
        texts.erase(std::remove_if(texts.begin(), texts.end(), missing), texts.end());
    }
    allowed = std::move(texts);
}

Scan scanOf(const VirtualTable& table, const char* plan, sqlite3_value** values)
{
    Scan scan;
    scan.filter.columns.resize(table.engine.files.columns().size());
    for (; *plan >= '0' && *plan <= '9'; plan += 2, ++values) {
        char* end = nullptr;
        const int column = static_cast<int>(std::strtol(plan, &end, 10));
        plan = end;
        if (column == table.hidden(Hidden::Record)) {
            const bool whole = sqlite3_value_numeric_type(*values) == SQLITE_INTEGER;
            scan.record = whole ? sqlite3_value_int64(*values) : scan.record;
        } else if (table.isPath(column)) {
            narrow(scan.filter.paths, textsOf(*values, *plan == 'i'));
        } else {
            narrow(scan.filter.columns[static_cast<size_t>(column)], textsOf(*values, *plan == 'i'));
        }
    }
    scan.needsContent = *plan == 'c';
    return scan;
}

int filter(sqlite3_vtab_cursor* cursor, int, const char* plan, int, sqlite3_value** values)
{
    return guarded(cursor->pVtab, [&] {
        cursorOf(cursor).row = 0;
        cursorOf(cursor).rows.start(scanOf(tableOf(cursor->pVtab), plan, values));
        return tableOf(cursor->pVtab).engine.stopping() ? SQLITE_INTERRUPT : SQLITE_OK;
    });
}

int next(sqlite3_vtab_cursor* cursor)
{
    return guarded(cursor->pVtab, [&] {
        ++cursorOf(cursor).row;
        cursorOf(cursor).rows.next();
        return tableOf(cursor->pVtab).engine.stopping() ? SQLITE_INTERRUPT : SQLITE_OK;
    });
}

int isAtEnd(sqlite3_vtab_cursor* cursor)
{
    return cursorOf(cursor).rows.atEnd() ? 1 : 0;
}

int column(sqlite3_vtab_cursor* cursor, sqlite3_context* result, int index)
{
    return guarded(cursor->pVtab, [&] {
        const SqlValue value = cursorOf(cursor).rows.value(static_cast<size_t>(index));
        if (value.type == SqlValue::Integer)
            sqlite3_result_int64(result, value.integer);
        else if (value.type == SqlValue::Real)
            sqlite3_result_double(result, value.real);
        else if (value.type == SqlValue::Text)
            sqlite3_result_text64(result, value.text.data(), value.text.size(), SQLITE_TRANSIENT,
                                  SQLITE_UTF8);
        return SQLITE_OK;
    });
}

int rowid(sqlite3_vtab_cursor* cursor, sqlite3_int64* row)
{
    *row = cursorOf(cursor).row;
    return SQLITE_OK;
}

/* Eponymous: a table exists without CREATE VIRTUAL TABLE, because there is no create function. */
sqlite3_module moduleOfTables()
{
    sqlite3_module module = {};
    module.iVersion = 1;
    module.xConnect = connect;
    module.xBestIndex = bestIndex;
    module.xDisconnect = disconnect;
    module.xOpen = openCursor;
    module.xClose = closeCursor;
    module.xFilter = filter;
    module.xNext = next;
    module.xEof = isAtEnd;
    module.xColumn = column;
    module.xRowid = rowid;
    return module;
}

const sqlite3_module tableModule = moduleOfTables();

/* ---- MACs --------------------------------------------------------------- */

/* The next character of a MAC in lower case, without separators; -1 at the end. */
int nextOfMac(std::string_view text, size_t& at)
{
    while (at < text.size() && (text[at] == ':' || text[at] == '-'))
        ++at;
    if (at == text.size())
        return -1;
    const unsigned char c = static_cast<unsigned char>(text[at++]);
    return c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c;
}

int compareMacs(void*, int sizeA, const void* textA, int sizeB, const void* textB)
{
    const std::string_view a(static_cast<const char*>(textA), static_cast<size_t>(sizeA));
    const std::string_view b(static_cast<const char*>(textB), static_cast<size_t>(sizeB));
    for (size_t atA = 0, atB = 0;;) {
        const int one = nextOfMac(a, atA);
        const int other = nextOfMac(b, atB);
        if (one != other || one < 0)
            return one - other;
    }
}

/* name_of(MAC): the name of a device; null if it has none. */
void nameOfMac(sqlite3_context* result, int, sqlite3_value** arguments)
{
    const Engine& engine = *static_cast<const Engine*>(sqlite3_user_data(result));
    const unsigned char* text = sqlite3_value_text(arguments[0]);
    if (text == nullptr)
        return;
    const std::string_view mac(reinterpret_cast<const char*>(text),
                               static_cast<size_t>(sqlite3_value_bytes(arguments[0])));
    std::string key;
    size_t at = 0;
    for (int c = nextOfMac(mac, at); c >= 0 && key.size() <= formats::macWidth; c = nextOfMac(mac, at))
        key += static_cast<char>(c);
    const auto name = engine.names.find(key);
    if (name != engine.names.end())
        sqlite3_result_text64(result, name->second.data(), name->second.size(), SQLITE_TRANSIENT,
                              SQLITE_UTF8);
}

} // namespace

int registerTables(sqlite3* database, Engine& engine)
{
    int result = sqlite3_create_collation_v2(database, "mac", SQLITE_UTF8, nullptr, compareMacs, nullptr);
    if (result == SQLITE_OK)
        result = sqlite3_create_function_v2(database, "name_of", 1, SQLITE_UTF8 | SQLITE_DETERMINISTIC,
                                            &engine, nameOfMac, nullptr, nullptr, nullptr);
    for (const SqlTable& table : sqlTables()) {
        if (result != SQLITE_OK)
            break;
        result =
            sqlite3_create_module_v2(database, table.name.c_str(), &tableModule, new TableOf{engine, table},
                                     [](void* given) { delete static_cast<TableOf*>(given); });
    }
    return result;
}

} // namespace algdata
