/* SPDX-License-Identifier: Apache-2.0 */
/*
 * SQLite: one table of a kind, a column for each field, an index on the key
 * where records are found by it. A session prepares a statement when it is
 * first needed; it lasts for one call, or is kept open.
 */
#ifndef ALG_BENCH_DATABASE_H
#define ALG_BENCH_DATABASE_H

#include <array>
#include <cstdio>
#include <cstring>
#include <optional>

#include <sqlite3.h>

#include "fields.h"
#include "store.h"

struct ColumnNames {
    std::vector<std::string> names, types;
    const char* key; /* the value of the key field, to find its name */
    std::string keyName;

    void operator()(const char* name, char (&text)[16])
    {
        add(name, "text");
        if (text == key)
            keyName = name;
    }
    void operator()(const char* name, float&) { add(name, "real"); }
    template <typename Number> void operator()(const char* name, Number&) { add(name, "integer"); }
    void endLine() {}
    void add(const char* name, const char* type)
    {
        names.push_back(name);
        types.push_back(type);
    }
    template <typename Piece> std::string list(Piece piece) const
    {
        std::string text;
        for (size_t i = 0; i < names.size(); ++i)
            text += (i > 0 ? ", " : "") + piece(i);
        return text;
    }
};

enum Query { BEGIN, COMMIT, SELECT, INSERT, UPDATE, TRIM, ERASE_KEY, CLEAR, QUERIES };

template <typename Record> struct Schema {
    std::string create;
    std::array<std::string, QUERIES> text;

    explicit Schema(Change how)
    {
        Record record = {};
        ColumnNames columns = {{}, {}, nullptr, {}};
        if constexpr (!std::is_same_v<Record, ScoreInfo>)
            columns.key = keyOf(record);
        visit(columns, record);
        const auto name = [&](size_t i) { return columns.names[i]; };
        create = "create table records (number integer primary key, " +
                 columns.list([&](size_t i) { return columns.names[i] + " " + columns.types[i]; }) + ");";
        if (how != Change::APPEND && !columns.keyName.empty())
            create += "create index byKey on records (" + columns.keyName + ");";
        text[BEGIN] = "begin";
        text[COMMIT] = "commit";
        text[SELECT] = "select " + columns.list(name) + " from records order by number";
        text[INSERT] = "insert into records (" + columns.list(name) + ") values (" +
                       columns.list([](size_t) { return std::string("?"); }) + ")";
        text[UPDATE] = "update records set " +
                       columns.list([&](size_t i) { return columns.names[i] + " = ?"; }) + " where " +
                       columns.keyName + " = ?";
        text[TRIM] = "delete from records where number <= ?";
        text[ERASE_KEY] = "delete from records where " + columns.keyName + " = ?";
        text[CLEAR] = "delete from records";
    }
};

struct Binder {
    sqlite3_stmt* statement;
    int at = 1;

    void operator()(const char*, char (&text)[16])
    {
        sqlite3_bind_text(statement, at++, text, -1, SQLITE_STATIC);
    }
    void operator()(const char*, float& number)
    {
        sqlite3_bind_double(statement, at++, static_cast<double>(number));
    }
    template <typename Number> void operator()(const char*, Number& number)
    {
        sqlite3_bind_int(statement, at++, number);
    }
    void endLine() {}
};

struct ColumnReader {
    sqlite3_stmt* statement;
    int at = 0;

    void operator()(const char*, char (&text)[16])
    {
        const void* value = sqlite3_column_text(statement, at);
        const int length = std::min(sqlite3_column_bytes(statement, at++), 15);
        std::memcpy(text, value, static_cast<size_t>(length));
        text[length] = '\0';
    }
    void operator()(const char*, float& number)
    {
        number = static_cast<float>(sqlite3_column_double(statement, at++));
    }
    template <typename Number> void operator()(const char*, Number& number)
    {
        number = static_cast<Number>(sqlite3_column_int(statement, at++));
    }
    void endLine() {}
};

template <typename Record> class Session
{
  public:
    Session(const std::string& path, bool inMemory, const Schema<Record>& schema) : schema(schema)
    {
        require(sqlite3_open(path.c_str(), &database) == SQLITE_OK, "sqlite3_open");
        if (inMemory)
            run("pragma journal_mode = off; pragma synchronous = off");
    }
    ~Session()
    {
        for (sqlite3_stmt* statement : statements)
            sqlite3_finalize(statement);
        sqlite3_close(database);
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    void run(const char* sql)
    {
        require(sqlite3_exec(database, sql, nullptr, nullptr, nullptr) == SQLITE_OK, sql);
    }
    void read(Record* records, int count)
    {
        sqlite3_stmt* select = statement(SELECT);
        int i = 0;
        for (; i < count && sqlite3_step(select) == SQLITE_ROW; ++i) {
            ColumnReader reader = {select};
            visit(reader, records[i]);
        }
        sqlite3_reset(select);
        require(i == count, "select");
    }
    void write(Record* records, int count)
    {
        step(BEGIN);
        step(CLEAR);
        for (int i = 0; i < count; ++i)
            insert(records[i]);
        step(COMMIT);
    }
    void change(Change how, Record& income)
    {
        if (how == Change::APPEND) {
            step(BEGIN);
            insert(income);
            sqlite3_bind_int64(statement(TRIM), 1, sqlite3_last_insert_rowid(database) - capOf(&income));
            step(TRIM);
            step(COMMIT);
        } else if constexpr (!std::is_same_v<Record, ScoreInfo>) {
            if (how == Change::ERASE)
                erase(income);
            else
                replace(income);
        }
    }

  private:
    sqlite3_stmt* statement(Query query)
    {
        sqlite3_stmt*& found = statements[query];
        if (found == nullptr) {
            const std::string& sql = schema.text[query];
            require(sqlite3_prepare_v2(database, sql.c_str(), static_cast<int>(sql.size()) + 1, &found,
                                       nullptr) == SQLITE_OK,
                    sql.c_str());
        }
        return found;
    }
    void step(Query query)
    {
        require(sqlite3_step(statement(query)) == SQLITE_DONE, schema.text[query].c_str());
        sqlite3_reset(statement(query));
    }
    void insert(Record& record)
    {
        Binder binder = {statement(INSERT)};
        visit(binder, record);
        step(INSERT);
    }
    void replace(Record& record)
    {
        Binder binder = {statement(UPDATE)};
        visit(binder, record);
        sqlite3_bind_text(binder.statement, binder.at, keyOf(record), -1, SQLITE_STATIC);
        step(UPDATE);
        if (sqlite3_changes(database) == 0)
            insert(record);
    }
    void erase(Record& record)
    {
        sqlite3_bind_text(statement(ERASE_KEY), 1, keyOf(record), -1, SQLITE_STATIC);
        step(ERASE_KEY);
    }

    const Schema<Record>& schema;
    sqlite3* database = nullptr;
    std::array<sqlite3_stmt*, QUERIES> statements = {};
};

template <typename Record, bool KEPT> class DatabaseStore
{
  public:
    DatabaseStore(const Place& place, Change how)
        : path(place.directory + "/records.db"), inMemory(place.inMemory), schema(how)
    {
        std::remove(path.c_str());
        Session<Record>(path, inMemory, schema).run(schema.create.c_str());
        if (KEPT)
            kept.emplace(path, inMemory, schema);
    }
    void fill(Record* records, int count) { write(records, count); }
    void read(Record* records, int count)
    {
        in([&](Session<Record>& session) { session.read(records, count); });
    }
    void write(Record* records, int count)
    {
        in([&](Session<Record>& session) { session.write(records, count); });
    }
    void change(Change how, Record& income)
    {
        in([&](Session<Record>& session) { session.change(how, income); });
    }

  private:
    template <typename Work> void in(Work work)
    {
        if (KEPT) {
            work(*kept);
        } else {
            Session<Record> session(path, inMemory, schema);
            work(session);
        }
    }

    std::string path;
    bool inMemory;
    Schema<Record> schema;
    std::optional<Session<Record>> kept;
};

#endif
