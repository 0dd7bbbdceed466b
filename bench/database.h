/* SPDX-License-Identifier: Apache-2.0 */
/*
 * SQLite: one table per kind, one column per field, and an index on the key if
 * records are found by key. A session prepares each statement on its first use. It
 * lasts for one call or, with KEEP_OPEN, for all calls.
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
    const char* key; /* the key field of the visited record; finds the name of its column */
    std::string keyName;

    void operator()(const char* name, char (&text)[ALG_MAC_SIZE])
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
    int parameter = 1;

    void operator()(const char*, char (&text)[ALG_MAC_SIZE])
    {
        sqlite3_bind_text(statement, parameter++, text, -1, SQLITE_STATIC);
    }
    void operator()(const char*, float& number)
    {
        sqlite3_bind_double(statement, parameter++, static_cast<double>(number));
    }
    template <typename Number> void operator()(const char*, Number& number)
    {
        sqlite3_bind_int(statement, parameter++, number);
    }
    void endLine() {}
};

struct ColumnReader {
    sqlite3_stmt* statement;
    int column = 0;

    void operator()(const char*, char (&text)[ALG_MAC_SIZE])
    {
        const void* value = sqlite3_column_text(statement, column);
        const int length = std::min(sqlite3_column_bytes(statement, column++), ALG_MAC_SIZE - 1);
        std::memcpy(text, value, static_cast<size_t>(length));
        text[length] = '\0';
    }
    void operator()(const char*, float& number)
    {
        number = static_cast<float>(sqlite3_column_double(statement, column++));
    }
    template <typename Number> void operator()(const char*, Number& number)
    {
        number = static_cast<Number>(sqlite3_column_int(statement, column++));
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
        sqlite3_stmt*& prepared = statements[query];
        if (prepared == nullptr) {
            const std::string& sql = schema.text[query];
            require(sqlite3_prepare_v2(database, sql.c_str(), static_cast<int>(sql.size()) + 1, &prepared,
                                       nullptr) == SQLITE_OK,
                    sql.c_str());
        }
        return prepared;
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
        sqlite3_bind_text(binder.statement, binder.parameter, keyOf(record), -1, SQLITE_STATIC);
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

template <typename Record, bool KEEP_OPEN> class DatabaseStore
{
  public:
    DatabaseStore(const Place& place, Change how)
        : path(place.directory + "/records.db"), inMemory(place.inMemory), schema(how)
    {
        std::remove(path.c_str());
        Session<Record>(path, inMemory, schema).run(schema.create.c_str());
        if (KEEP_OPEN)
            openSession.emplace(path, inMemory, schema);
    }
    void fill(Record* records, int count) { write(records, count); }
    void read(Record* records, int count)
    {
        inSession([&](Session<Record>& session) { session.read(records, count); });
    }
    void write(Record* records, int count)
    {
        inSession([&](Session<Record>& session) { session.write(records, count); });
    }
    void change(Change how, Record& income)
    {
        inSession([&](Session<Record>& session) { session.change(how, income); });
    }

  private:
    template <typename Work> void inSession(Work work)
    {
        if (KEEP_OPEN) {
            work(*openSession);
        } else {
            Session<Record> session(path, inMemory, schema);
            work(session);
        }
    }

    std::string path;
    bool inMemory;
    Schema<Record> schema;
    std::optional<Session<Record>> openSession;
};

#endif
