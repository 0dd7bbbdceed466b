/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The one table of record kinds and their fields. Everything that algdata
 * knows about a file format stands here; the commands only walk it.
 */
#ifndef ALGDATA_KINDS_H
#define ALGDATA_KINDS_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace algdata
{

enum class Type { Mac, U8, U16, U32, F32 };

/* What a reader does to the stored value before the algorithm sees it. */
enum class Load { AsStored, Utilization, Rate, PlcRate, Rssi, Delay };

struct Field {
    const char* name = "";
    Type type = Type::U8;
    size_t offset = 0; /* in the module's record, or in the entry */
    const char* meaning = "";
    int count = 1;            /* elements; 5 for a per-band array */
    size_t stride = 0;        /* bytes from element to element */
    bool interleaved = false; /* stored band by band with its neighbours, not array by array */
    int widthOut = 0;         /* least columns when written */
    int widthIn = 0;          /* most characters taken when read, 0 for no bound */
    uint64_t limit = 0;       /* largest meaningful value where that is less than the type's, else 0 */
    const char* rule = "";    /* what a value over the limit breaks, see rules.h */
    Load load = Load::AsStored;
    bool key = false;      /* part of what tells one record from another */
    bool position = false; /* renumbered at every write, so no content of its own */
};

/* How records lie in the text. */
enum class Shape {
    Lines,   /* one record per line */
    Stream,  /* records are runs of fields, line breaks mean nothing */
    Devices, /* a count line, then per record a head line and its entry lines */
    Index    /* one record: a head line, then its entry lines */
};

/* One field of text: element `element` of `field`. */
struct Column {
    const Field* field;
    int element;
    std::string name; /* "rssi", or "rssi.3" for an element */
};

/* A run of fields: a record's head, or one entry. */
struct Layout {
    std::vector<Field> fields;
    std::vector<Column> columns;              /* as they follow each other in the text */
    std::vector<std::vector<size_t>> placeOf; /* [field][element] gives the column */
};

/* What a kind is about in the module: how its files get there and back. */
struct Kind {
    const char* name;
    std::vector<const char*> aliases;
    const char* title;
    Shape shape;
    size_t recordSize;
    Layout head;
    const char* readBy;
    const char* writtenBy; /* null where the module only reads */
    bool readByLine;       /* parsed line by line; else field after field */
    bool trailingBlank;    /* each field is followed by a blank, the last one too */
    bool unique;           /* a key stands once */
    int cap;               /* records (of Index: entries) that are kept, 0 for no cap */
    const char* capText;
    const char* blankLine; /* what a blank line does */
    bool blankLineBreaks;

    /* Devices and Index only. */
    Layout entry;
    const char* entryName = nullptr;
    const char* countName = nullptr; /* the head's field that holds the number of entries */
    size_t entryOffset = 0;
    size_t entrySize = 0;
    size_t entryMax = 0;

    bool hasEntries() const { return entryName != nullptr; }
};

const std::vector<Kind>& kinds();

/* By name or alias, null where there is none. */
const Kind* findKind(std::string_view name);

/* The same, for a kind that is known to be there. */
const Kind& kindNamed(std::string_view name);

/* "ap-node, ap-all, ..." */
std::string kindNames();

const char* typeName(Type type);
size_t typeSize(Type type);
uint64_t typeMax(Type type);

/* The largest value that makes sense in the field. */
uint64_t largest(const Field& field);

/* What a reader makes of a stored value. */
uint64_t loadedValue(const Field& field, uint64_t stored);

/* In words, for `kinds`: "95 - value, at least 1"; empty where nothing is changed. */
const char* loadText(Load load);

} // namespace algdata

#endif
