/* SPDX-License-Identifier: Apache-2.0 */
/* A JSON file: an array of objects that is parsed, changed as a tree and printed again. */
#ifndef ALG_BENCH_JSON_H
#define ALG_BENCH_JSON_H

#include <cstdlib>
#include <cstring>
#include <memory>

#include <cjson/cJSON.h>

#include "fields.h"
#include "limit.h"
#include "store.h"

/* The tree does not copy the names, because they are constants. */
struct ObjectMaker {
    cJSON* object;

    void operator()(const char* name, char (&text)[ALG_MAC_SIZE])
    {
        cJSON_AddItemToObjectCS(object, name, cJSON_CreateString(text));
    }
    template <typename Number> void operator()(const char* name, Number& number)
    {
        cJSON_AddItemToObjectCS(object, name, cJSON_CreateNumber(static_cast<double>(number)));
    }
    void endLine() {}
};

/* Tries the next member first: in a file that this program wrote, members follow the order of the fields. */
struct ObjectReader {
    const cJSON* object;
    const cJSON* next;

    const cJSON* member(const char* name)
    {
        const cJSON* item = next;
        if (item == nullptr || std::strcmp(item->string, name) != 0)
            item = cJSON_GetObjectItemCaseSensitive(object, name);
        require(item != nullptr, name);
        next = item->next;
        return item;
    }
    void operator()(const char* name, char (&text)[ALG_MAC_SIZE])
    {
        std::strncpy(text, member(name)->valuestring, ALG_MAC_SIZE - 1);
        text[ALG_MAC_SIZE - 1] = '\0';
    }
    template <typename Number> void operator()(const char* name, Number& number)
    {
        number = static_cast<Number>(member(name)->valuedouble);
    }
    void endLine() {}
};

/* Finds the name of the key field. */
struct KeyName {
    const char* key;
    const char* name;

    void operator()(const char* field, char (&text)[ALG_MAC_SIZE])
    {
        if (text == key)
            name = field;
    }
    template <typename Number> void operator()(const char*, Number&) {}
    void endLine() {}
};

template <typename Record> class JsonStore
{
  public:
    JsonStore(const Place& place, Change) : path(place.directory + "/records.json") {}
    void fill(Record* records, int count) { write(records, count); }
    void read(Record* records, int count)
    {
        const Tree tree = parse();
        const cJSON* object = tree->child;
        for (int i = 0; i < count; ++i, object = object->next) {
            require(object != nullptr, "read");
            ObjectReader reader = {object, object->child};
            visit(reader, records[i]);
        }
    }
    void write(Record* records, int count)
    {
        const Tree tree(cJSON_CreateArray());
        for (int i = 0; i < count; ++i)
            cJSON_AddItemToArray(tree.get(), makeObject(records[i]));
        print(tree.get());
    }
    void change(Change how, Record& income)
    {
        const Tree tree = parse();
        if (how == Change::APPEND) {
            cJSON_AddItemToArray(tree.get(), makeObject(income));
            while (cJSON_GetArraySize(tree.get()) > capOf(&income))
                cJSON_DeleteItemFromArray(tree.get(), 0);
        } else if constexpr (!std::is_same_v<Record, ScoreInfo>) {
            changeByKey(tree.get(), how, income);
        }
        print(tree.get());
    }

  private:
    struct Delete {
        void operator()(cJSON* tree) const { cJSON_Delete(tree); }
    };
    using Tree = std::unique_ptr<cJSON, Delete>;

    static cJSON* makeObject(Record& record)
    {
        ObjectMaker maker = {cJSON_CreateObject()};
        visit(maker, record);
        return maker.object;
    }
    static const char* keyName()
    {
        static const char* const name = [] {
            Record record = {};
            KeyName key = {keyOf(record), nullptr};
            visit(key, record);
            return key.name;
        }();
        return name;
    }
    static void changeByKey(cJSON* tree, Change how, Record& income)
    {
        for (cJSON* object = tree->child; object != nullptr;) {
            cJSON* next = object->next;
            const cJSON* key = cJSON_GetObjectItemCaseSensitive(object, keyName());
            if (std::strcmp(key->valuestring, keyOf(income)) == 0) {
                if (how == Change::REPLACE) {
                    cJSON_ReplaceItemViaPointer(tree, object, makeObject(income));
                    return;
                }
                cJSON_Delete(cJSON_DetachItemViaPointer(tree, object));
            }
            object = next;
        }
        if (how == Change::REPLACE)
            cJSON_AddItemToArray(tree, makeObject(income));
    }
    Tree parse()
    {
        const Bytes bytes = readBytes(path.c_str());
        Tree tree(cJSON_ParseWithLength(bytes.data.get(), bytes.size));
        require(tree != nullptr, "parse");
        return tree;
    }
    void print(const cJSON* tree)
    {
        char* text = cJSON_PrintUnformatted(tree);
        writeBytes(path.c_str(), text, std::strlen(text));
        cJSON_free(text);
    }

    std::string path;
};

#endif
