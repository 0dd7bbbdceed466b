/* SPDX-License-Identifier: Apache-2.0 */
#include "sql/module.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <new>
#include <sys/stat.h>

#include <fmt/format.h>

#include "reading/configuration.h"
#include "sql/cursor.h"
#include "sqlite/functions.h"
#include "sqlite/guarded.h"
#include "sqlite/sqlite.h"
#include "text/hash.h"
#include "text/wording.h"

namespace algdata
{

namespace
{

/* What a module knows. SQLite frees it with the module. */
struct TableOf {
    const SqlTable& table;
    Input input;
    Engine* engine; /* of the connection; null if each scan has its own */
};

struct VirtualTable : sqlite3_vtab {
    VirtualTable(sqlite3* of, const TableOf& known)
        : sqlite3_vtab(), database(of), engine(known.engine), table(known.table), input(known.input)
    {
    }
    sqlite3* const database;
    Engine* const engine;
    const SqlTable& table;
    const Input input;

    const std::vector<std::string>& pathNames() const
    {
        static const std::vector<std::string> none;
        return engine != nullptr && table.isOfFiles() ? engine->files.columns() : none;
    }
    int pathColumns() const { return static_cast<int>(pathNames().size()); }
    int ownEnd() const { return pathColumns() + static_cast<int>(table.columns.size()); }
    bool isArgument(int column) const { return input != Input::Shared && column == ownEnd(); }
    int firstHidden() const { return ownEnd() + (input == Input::Shared ? 0 : 1); }

    /* The hidden column at this place; null if it is not one of them. */
    std::optional<Hidden> hiddenAt(int column) const
    {
        const std::vector<Hidden>& hidden = hiddenOf(input, table);
        const int at = column - firstHidden();
        if (at < 0 || at >= static_cast<int>(hidden.size()))
            return std::nullopt;
        return hidden[static_cast<size_t>(at)];
    }
    int columnCount() const { return firstHidden() + static_cast<int>(hiddenOf(input, table).size()); }

    /* Whether the column is the path of the file. */
    bool isPath(int column) const
    {
        return hiddenAt(column) == Hidden::Path ||
               (table.isOfFiles() && column == pathColumns() && table.columns[0].name == "path");
    }
};

/* Asks whether the connection was interrupted. Every statement of it then fails, even this one. */
class InterruptProbe
{
  public:
    explicit InterruptProbe(sqlite3* of) : database(of) {}
    ~InterruptProbe() { sqlite3_finalize(probe); }
    InterruptProbe(const InterruptProbe&) = delete;
    InterruptProbe& operator=(const InterruptProbe&) = delete;

    bool isInterrupted()
    {
        int result = SQLITE_OK;
        if (probe == nullptr)
            result = sqlite3_prepare_v2(database, "SELECT 1", -1, &probe, nullptr);
        if (probe != nullptr) {
            result = sqlite3_step(probe);
            sqlite3_reset(probe);
        }
        return result == SQLITE_INTERRUPT;
    }

  private:
    sqlite3* database;
    sqlite3_stmt* probe = nullptr;
};

struct Cursor : sqlite3_vtab_cursor {
    explicit Cursor(const VirtualTable& of) : sqlite3_vtab_cursor(), probe(of.database)
    {
        if (of.engine != nullptr)
            rows.emplace(*of.engine, of.table);
    }
    InterruptProbe probe;
    std::string path; /* that the query gives */
    std::shared_ptr<const OpenFile> content;
    bool isBlob = false;         /* the content */
    uint64_t argumentId = 0;     /* a hash of the path or the content */
    std::unique_ptr<Engine> own; /* for that path or content; null if the connection has one */
    std::optional<TableCursor> rows;

    Engine& engine() const { return own != nullptr ? *own : *static_cast<VirtualTable*>(pVtab)->engine; }
};

VirtualTable& tableOf(sqlite3_vtab* table)
{
    return *static_cast<VirtualTable*>(table);
}

Cursor& cursorOf(sqlite3_vtab_cursor* cursor)
{
    return *static_cast<Cursor*>(cursor);
}

int connect(sqlite3* database, void* given, int /*count*/, const char* const* /*arguments*/,
            sqlite3_vtab** made, char** /*error*/)
{
    const TableOf& of = *static_cast<TableOf*>(given);
    try {
        auto table = std::make_unique<VirtualTable>(database, of);
        const std::string declaration = declarationOf(of.table, of.input, table->pathNames());
        if (of.engine != nullptr)
            of.engine->declaring = true;
        const int declared = sqlite3_declare_vtab(database, declaration.c_str());
        if (of.engine != nullptr)
            of.engine->declaring = false;
        if (declared != SQLITE_OK)
            return declared;
        sqlite3_vtab_config(database, SQLITE_VTAB_DIRECTONLY);
        *made = table.release();
        return SQLITE_OK;
    } catch (const std::bad_alloc&) {
        return SQLITE_NOMEM;
    }
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
    for (int column = 0; column < table.columnCount(); ++column) {
        const bool inUse = (used >> std::min(column, 63) & 1U) != 0;
        const std::optional<Hidden> hidden = table.hiddenAt(column);
        const bool ofPath = column < table.pathColumns() || table.isPath(column) ||
                            table.isArgument(column) || hidden == Hidden::Archive || hidden == Hidden::Member;
        if (inUse && !ofPath)
            return true;
    }
    return false;
}

bool isEquality(const sqlite3_index_info::sqlite3_index_constraint& constraint)
{
    return constraint.op == SQLITE_INDEX_CONSTRAINT_EQ && constraint.usable != 0;
}

/* The plan of a scan without the argument of the table, which fails when it begins. */
constexpr int withoutArgument = 1;

/*
 * Uses the constraint that sets the argument of the table. Returns SQLITE_CONSTRAINT if
 * the argument is known only in another order of the tables. A query with OR is first
 * planned as if it had none, so that is no error yet.
 */
int planArgument(const VirtualTable& table, sqlite3_index_info* info)
{
    bool given = false;
    for (int i = 0; i < info->nConstraint; ++i) {
        if (!table.isArgument(info->aConstraint[i].iColumn))
            continue;
        given = true;
        if (isEquality(info->aConstraint[i])) {
            info->aConstraintUsage[i] = {1, 1};
            return SQLITE_OK;
        }
    }
    info->idxNum = withoutArgument;
    return given ? SQLITE_CONSTRAINT : SQLITE_OK;
}

/* Whether the constraint leaves files or records out. */
bool narrows(const VirtualTable& table, sqlite3_index_info* info, int index)
{
    const auto& constraint = info->aConstraint[index];
    const int column = constraint.iColumn;
    const bool ofRows = column >= 0 && (column < table.pathColumns() || table.isPath(column) ||
                                        table.hiddenAt(column) == Hidden::Record);
    /* A comparison of MACs accepts more than the exact text. */
    return ofRows && isEquality(constraint) &&
           sqlite3_stricmp(sqlite3_vtab_collation(info, index), "BINARY") == 0;
}

/*
 * Uses the constraints that narrow the files: = and IN on paths and their parts, and = on
 * the index of the record. The plan is a text: the column and the operator of each
 * argument, then whether the content is in use. SQLite checks every row again.
 */
int plan(const VirtualTable& table, sqlite3_index_info* info)
{
    std::string text;
    double cost = 1e6;
    int arguments = table.input == Input::Shared ? 0 : 1;
    const int planned = arguments == 0 ? SQLITE_OK : planArgument(table, info);
    if (planned != SQLITE_OK || info->idxNum == withoutArgument) {
        info->estimatedCost = 1e100;
        return planned;
    }
    for (int i = 0; i < info->nConstraint; ++i) {
        const int column = info->aConstraint[i].iColumn;
        if (!narrows(table, info, i))
            continue;
        const bool record = table.hiddenAt(column) == Hidden::Record;
        const bool in = !record && sqlite3_vtab_in(info, i, -1) != 0;
        if (in)
            sqlite3_vtab_in(info, i, 1);
        info->aConstraintUsage[i].argvIndex = ++arguments;
        text += fmt::format("{}{} ", column, in ? 'i' : '=');
        cost /= record ? 10 : table.isPath(column) ? 1e4 : 100;
    }
    text += needsContent(table, info->colUsed) ? "c" : "p";
    info->idxStr = sqlite3_mprintf("%s", text.c_str());
    info->needToFreeIdxStr = 1;
    info->estimatedCost = cost;
    info->estimatedRows = static_cast<sqlite3_int64>(cost) + 1;
    return info->idxStr == nullptr ? SQLITE_NOMEM : SQLITE_OK;
}

int bestIndex(sqlite3_vtab* table, sqlite3_index_info* info)
{
    return guarded(table, [&] { return plan(tableOf(table), info); });
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

/*
 * The texts that a column may have; null if it may have any. A path is a text. But if it
 * is compared with a number, the comparison can be one of numbers, where '01' equals 1.
 */
Allowed textsOf(sqlite3_value* value, bool in)
{
    std::vector<std::string> texts;
    bool numbers = false;
    const auto add = [&](sqlite3_value* one) {
        const int type = sqlite3_value_type(one);
        numbers = numbers || type == SQLITE_INTEGER || type == SQLITE_FLOAT;
        const unsigned char* text = sqlite3_value_text(one);
        if (text != nullptr)
            texts.emplace_back(reinterpret_cast<const char*>(text),
                               static_cast<size_t>(sqlite3_value_bytes(one)));
    };
    sqlite3_value* one = nullptr;
    if (!in)
        add(value);
    else
        for (int got = sqlite3_vtab_in_first(value, &one); got != SQLITE_DONE;
             got = sqlite3_vtab_in_next(value, &one)) {
            if (got != SQLITE_OK)
                throw std::bad_alloc();
            add(one);
        }
    if (numbers)
        return std::nullopt;
    std::sort(texts.begin(), texts.end());
    return texts;
}

/* The values that both allow. */
void narrow(Allowed& allowed, Allowed texts)
{
    if (!allowed || !texts) {
        allowed = allowed ? std::move(allowed) : std::move(texts);
        return;
    }
    std::vector<std::string> both;
    std::set_intersection(allowed->begin(), allowed->end(), texts->begin(), texts->end(),
                          std::back_inserter(both));
    allowed = std::move(both);
}

Scan scanOf(const VirtualTable& table, const Engine& engine, const char* plan, sqlite3_value** values)
{
    Scan scan;
    scan.filter.columns.resize(engine.files.columns().size());
    for (; *plan >= '0' && *plan <= '9'; plan += 2, ++values) {
        char* end = nullptr;
        const int column = static_cast<int>(std::strtol(plan, &end, 10));
        plan = end;
        if (table.hiddenAt(column) == Hidden::Record) {
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

/* ---- Arguments ---------------------------------------------------------- */

[[noreturn]] void refuseArgument(const VirtualTable& table, const std::string& expected)
{
    throw Failure(fmt::format("table {}: expected {}", table.table.name, expected));
}

[[noreturn]] void refuseToScan(const VirtualTable& table)
{
    throw Failure(fmt::format("table {0} needs {1}: SELECT * FROM {0}({2})", table.table.name,
                              table.input == Input::Path ? "a path" : "the content of a file",
                              table.input == Input::Path ? "'DIRECTORY'" : "readfile('FILE')"));
}

/* A scan with its own files stops with its connection, and fails if nothing can be read. */
void useEngine(Cursor& cursor, const VirtualTable& table, std::unique_ptr<Engine> engine,
               std::string required)
{
    cursor.rows.reset();
    cursor.own = std::move(engine);
    cursor.own->required = std::move(required);
    cursor.own->cancelled = [&cursor] { return cursor.probe.isInterrupted(); };
    cursor.rows.emplace(*cursor.own, table.table);
}

void usePath(Cursor& cursor, const VirtualTable& table, sqlite3_value* value)
{
    if (sqlite3_value_type(value) != SQLITE_TEXT)
        refuseArgument(table, "a path as a text, found another type or null");
    std::string path = reinterpret_cast<const char*>(sqlite3_value_text(value));
    if (path.size() != static_cast<size_t>(sqlite3_value_bytes(value)))
        refuseArgument(table, "a path, found a text with a NUL byte");
    if (path.empty() || path == "-")
        refuseArgument(table, fmt::format("a file, a directory or an archive, found {}", inQuotes(path)));
    if (cursor.own != nullptr && path == cursor.path)
        return;
    struct stat status;
    if (stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode))
        refuseArgument(table, fmt::format("a file, a directory or an archive, found a device or a pipe: {}",
                                          printable(path)));
    const Configuration configuration = readConfiguration("", {path});
    QueryFiles files({path}, configuration.templates, nullptr);
    const std::string root = files.roots()[0];
    useEngine(cursor, table, std::make_unique<Engine>(std::move(files), configuration.names), root);
    cursor.path = std::move(path);
    cursor.argumentId = hashOf(cursor.path).low;
}

/* If the content matches several kinds equally well, it is of the kind of the table. */
std::shared_ptr<const OpenFile> contentOf(const SqlTable& table, std::string bytes)
{
    auto file = std::make_shared<OpenFile>();
    file->source.name = "the content";
    file->source.bytes = std::move(bytes);
    file->size = file->source.bytes.size();
    file->detection = detectKind(file->source.bytes);
    Detection& found = file->detection;
    if (found.kind == nullptr && table.kind != nullptr && found.isRecordFile() && !found.hasNoRecords() &&
        found.canBe(*table.kind))
        found = detectKind(file->source.bytes, table.kind);
    file->source.kind = found.kind;
    return file;
}

void useContent(Cursor& cursor, const VirtualTable& table, sqlite3_value* value)
{
    const int type = sqlite3_value_type(value);
    if (type != SQLITE_TEXT && type != SQLITE_BLOB)
        refuseArgument(table, type == SQLITE_NULL
                                  ? "the content of a file, found null"
                                  : "the content of a file as a blob or a text, found a number");
    const void* const bytes = type == SQLITE_BLOB ? sqlite3_value_blob(value) : sqlite3_value_text(value);
    const auto size = static_cast<size_t>(sqlite3_value_bytes(value));
    cursor.isBlob = type == SQLITE_BLOB;
    if (bytes == nullptr && size != 0)
        throw std::bad_alloc();
    std::string copy = bytes == nullptr ? "" : std::string(static_cast<const char*>(bytes), size);
    cursor.content = contentOf(table.table, std::move(copy));
    cursor.argumentId = hashOf(cursor.content->source.bytes).low;
    if (cursor.own == nullptr)
        useEngine(cursor, table, std::make_unique<Engine>(QueryFiles({}, {}, nullptr), DeviceNames()),
                  cursor.content->source.name);
}

int filter(sqlite3_vtab_cursor* given, int number, const char* plan, int /*count*/, sqlite3_value** values)
{
    return guarded(given->pVtab, [&] {
        Cursor& cursor = cursorOf(given);
        const VirtualTable& table = tableOf(given->pVtab);
        if (number == withoutArgument)
            refuseToScan(table);
        if (table.input == Input::Path)
            usePath(cursor, table, values[0]);
        else if (table.input == Input::Content)
            useContent(cursor, table, values[0]);
        Scan scan = scanOf(table, cursor.engine(), plan, values + (table.input == Input::Shared ? 0 : 1));
        scan.content = cursor.content;
        cursor.rows->start(std::move(scan));
        return cursor.engine().stopping() ? SQLITE_INTERRUPT : SQLITE_OK;
    });
}

int next(sqlite3_vtab_cursor* cursor)
{
    return guarded(cursor->pVtab, [&] {
        cursorOf(cursor).rows->next();
        return cursorOf(cursor).engine().stopping() ? SQLITE_INTERRUPT : SQLITE_OK;
    });
}

int isAtEnd(sqlite3_vtab_cursor* cursor)
{
    return cursorOf(cursor).rows->atEnd() ? 1 : 0;
}

/* ---- Values ------------------------------------------------------------- */

void setArgument(sqlite3_context* result, const Cursor& cursor)
{
    const std::string& text = cursor.content != nullptr ? cursor.content->source.bytes : cursor.path;
    if (cursor.isBlob)
        sqlite3_result_blob64(result, text.data(), text.size(), SQLITE_TRANSIENT);
    else
        sqlite3_result_text64(result, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

SqlValue valueOf(const VirtualTable& table, TableCursor& rows, int column)
{
    if (column < table.pathColumns())
        return rows.pathValue(static_cast<size_t>(column));
    if (column < table.ownEnd())
        return rows.ownValue(static_cast<size_t>(column - table.pathColumns()));
    const std::optional<Hidden> hidden = table.hiddenAt(column);
    return hidden ? rows.hiddenValue(*hidden) : SqlValue();
}

int column(sqlite3_vtab_cursor* given, sqlite3_context* result, int index)
{
    return guarded(given->pVtab, [&] {
        Cursor& cursor = cursorOf(given);
        const VirtualTable& table = tableOf(given->pVtab);
        if (table.isArgument(index))
            return setArgument(result, cursor), SQLITE_OK;
        setResult(result, valueOf(table, *cursor.rows, index));
        return SQLITE_OK;
    });
}

int rowid(sqlite3_vtab_cursor* cursor, sqlite3_int64* row)
{
    /* The same file can come from several arguments. */
    const uint64_t id = static_cast<uint64_t>(cursorOf(cursor).rows->id());
    *row = static_cast<sqlite3_int64>(mixed(id + cursorOf(cursor).argumentId));
    return SQLITE_OK;
}

/* Eponymous: a table exists without CREATE VIRTUAL TABLE, because there is no create function. */
constexpr sqlite3_module moduleOfTables()
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

constexpr sqlite3_module tableModule = moduleOfTables();

} // namespace

namespace
{

int registerModules(sqlite3* database, Input input, Engine* engine)
{
    for (const SqlTable& table : sqlTables()) {
        const bool exists = existsWith(input, table);
        TableOf* const known = exists ? new (std::nothrow) TableOf{table, input, engine} : nullptr;
        if (exists && known == nullptr)
            return SQLITE_NOMEM;
        /* Without a module, a table of this name that was registered before is removed. */
        const int result =
            sqlite3_create_module_v2(database, table.name.c_str(), exists ? &tableModule : nullptr, known,
                                     [](void* given) { delete static_cast<TableOf*>(given); });
        if (result != SQLITE_OK)
            return result;
    }
    return SQLITE_OK;
}

} // namespace

int registerTables(sqlite3* database, Engine& engine)
{
    int result = registerFunctions(database);
    if (result == SQLITE_OK)
        result = registerNames(database, engine.names);
    return result == SQLITE_OK ? registerModules(database, Input::Shared, &engine) : result;
}

int registerTables(sqlite3* database, Input input)
{
    const int result = registerFunctions(database);
    return result == SQLITE_OK ? registerModules(database, input, nullptr) : result;
}

} // namespace algdata
