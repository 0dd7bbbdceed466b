/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The types that describe a record file: Field, Layout (fields in the order of the
 * text) and Kind (a kind of file).
 *
 * Everything here is constexpr, needs no C++ library and allocates no memory, so
 * that the tools, the tests and the benchmarks can use it, on the target too. The
 * module itself does not use it.
 */
#ifndef FORMATS_FORMAT_H
#define FORMATS_FORMAT_H

#include <stddef.h>
#include <stdint.h>

#include "capacities.h"

namespace formats
{

/* ---- Lists -------------------------------------------------------------- */

/* A view of an array that is stored elsewhere. */
template <typename T> struct List {
    const T* first = nullptr;
    size_t count = 0;

    constexpr const T* begin() const { return first; }
    constexpr const T* end() const { return first + count; }
    constexpr size_t size() const { return count; }
    constexpr const T& operator[](size_t i) const { return first[i]; }
};

template <typename T, size_t size> constexpr List<T> listOf(const T (&items)[size])
{
    return {items, size};
}

/* A list that stores at most `capacity` items itself. */
template <typename T, size_t capacity> struct FixedList {
    T items[capacity] = {};
    size_t count = 0;

    constexpr void add(const T& item) { items[count++] = item; }
    constexpr const T* begin() const { return items; }
    constexpr const T* end() const { return items + count; }
    constexpr size_t size() const { return count; }
    constexpr const T& operator[](size_t i) const { return items[i]; }
};

constexpr bool sameText(const char* a, const char* b)
{
    for (; *a != '\0' && *a == *b; ++a)
        ++b;
    return *a == *b;
}

/* ---- Types -------------------------------------------------------------- */

enum class Type : uint8_t { Mac, U8, U16, U32, F32 };

constexpr const char* typeName(Type type)
{
    constexpr const char* names[] = {"MAC", "uint8", "uint16", "uint32", "float"};
    return names[static_cast<size_t>(type)];
}

constexpr size_t typeSize(Type type)
{
    constexpr size_t sizes[] = {ALG_MAC_SIZE, 1, 2, 4, 4};
    return sizes[static_cast<size_t>(type)];
}

/* The largest number of the type. */
constexpr uint32_t typeMax(Type type)
{
    return type == Type::U8 ? UINT8_MAX : type == Type::U16 ? UINT16_MAX : UINT32_MAX;
}

/* The number of characters of a MAC in a file. */
constexpr int macWidth = 12;

/* ---- What a reader does to a stored value ------------------------------- */

enum class Load : uint8_t { AsStored, Utilization, Rate, PlcRate, Rssi, Delay };

/* `compensation` is the value of ai_yra_rssi_compensation. */
constexpr uint32_t loadedValue(Load load, uint32_t stored, uint32_t compensation)
{
    switch (load) {
    case Load::Utilization:
        return stored < 95 ? 95 - stored : 1;
    case Load::Rate:
        return stored == 0 ? 1 : stored < 10000 ? stored : 10000;
    case Load::PlcRate:
        return stored < 10000 ? stored : 10000;
    case Load::Rssi:
        return stored > compensation ? stored - compensation : 1;
    case Load::Delay:
        return stored == 0 ? 1 : stored < 1000 ? stored : 1000;
    case Load::AsStored:
        break;
    }
    return stored;
}

/* The same in words, with the initial compensation of 3; empty for AsStored. */
constexpr const char* loadText(Load load)
{
    constexpr const char* texts[] = {
        "", "95 - value, at least 1", "1 to 10000", "at most 10000", "value - 3, at least 1", "1 to 1000"};
    return texts[static_cast<size_t>(load)];
}

/* ---- Fields ------------------------------------------------------------- */

/* A value that has a name. The text is what tools show to people; it may be empty. */
struct NamedValue {
    uint32_t value;
    const char* name; /* name of the module's constant */
    const char* text;
};

/* The unit of a field whose unit only the host knows: the module stores the number alone. */
constexpr const char* hostUnit = "host's unit";

struct Field {
    const char* name = ""; /* the member of the module's record */
    Type type = Type::U8;
    size_t offset = 0; /* offset in the record, or in the entry */
    const char* meaning = "";
    const char* unit = "";        /* empty if there is none */
    List<NamedValue> values = {}; /* empty if the number has no named values */
    int count = 1;                /* elements of an array; 1 for a single value */
    size_t stride = 0;            /* bytes from one element to the next */
    bool interleaved = false;  /* stored band by band together with the adjacent fields, not array by array */
    int widthOut = 0;          /* minimum columns when printed */
    int widthIn = 0;           /* maximum characters when read, 0 for no maximum */
    bool printsSigned = false; /* printed as %d, whatever its type */
    bool readsSigned = false;  /* read as %d, whatever its type */
    uint32_t limit = 0;        /* largest meaningful value, 0 if it is the type's */
    const char* rule = "";     /* rule of `algdata check` for a value that is too large or has no name */
    Load load = Load::AsStored;
    bool key = false;      /* part of what identifies a record */
    bool position = false; /* the record's position: every write renumbers it */

    constexpr Field& inUnit(const char* u) { return unit = u, *this; }
    constexpr Field& width(int both) { return widthOut = widthIn = both, *this; }
    constexpr Field& printedWidth(int columns) { return widthOut = columns, *this; }
    constexpr Field& printedSigned() { return printsSigned = true, *this; }
    constexpr Field& readSigned() { return readsSigned = true, *this; }
    constexpr Field& bandByBand() { return interleaved = true, *this; }
    constexpr Field& upTo(uint32_t max, const char* ruleName) { return limit = max, rule = ruleName, *this; }
    constexpr Field& loads(Load how) { return load = how, *this; }
    constexpr Field& asKey() { return key = true, *this; }
    constexpr Field& asPosition() { return position = true, *this; }
    template <size_t size> constexpr Field& named(const NamedValue (&all)[size])
    {
        return values = listOf(all), *this;
    }
    constexpr Field& onlyNamed(const char* ruleName) { return rule = ruleName, *this; }
};

/* The largest value that makes sense in the field. */
constexpr uint32_t largest(const Field& field)
{
    return field.limit != 0 ? field.limit : typeMax(field.type);
}

/* The largest number that a file can store in the field: limited by its type and by widthIn. */
constexpr uint32_t storable(const Field& field)
{
    uint64_t end = 1;
    for (int digit = 0; digit < field.widthIn && end <= typeMax(field.type); ++digit)
        end *= 10;
    return field.widthIn == 0 || end > typeMax(field.type) ? typeMax(field.type)
                                                           : static_cast<uint32_t>(end - 1);
}

constexpr uint32_t loadedValue(const Field& field, uint32_t stored, uint32_t compensation)
{
    return loadedValue(field.load, stored, compensation);
}

template <Type of, int elements> struct Typed {
    static constexpr Type type = of;
    static constexpr int count = elements;
};

/* The type of a record's member. */
template <typename T> struct MemberType;
template <> struct MemberType<char[ALG_MAC_SIZE]> : Typed<Type::Mac, 1> {
};
template <> struct MemberType<uint8_t> : Typed<Type::U8, 1> {
};
template <> struct MemberType<uint16_t> : Typed<Type::U16, 1> {
};
template <> struct MemberType<uint32_t> : Typed<Type::U32, 1> {
};
template <> struct MemberType<float> : Typed<Type::F32, 1> {
};
template <typename T, size_t size> struct MemberType<T[size]> : Typed<MemberType<T>::type, size> {
};

/* The last name of a path: "offset" for "apNodeV2.offset". */
constexpr const char* lastName(const char* path)
{
    const char* name = path;
    for (; *path != '\0'; ++path) {
        if (*path == '.')
            name = path + 1;
    }
    return name;
}

template <typename Member> constexpr Field field(const char* path, size_t offset, const char* meaning)
{
    Field made;
    made.name = lastName(path);
    made.type = MemberType<Member>::type;
    made.count = MemberType<Member>::count;
    made.stride = typeSize(made.type);
    made.offset = offset;
    made.meaning = meaning;
    if (made.type == Type::Mac)
        made.width(macWidth);
    return made;
}

/* A member of a record, with the member's type, number of elements and offset. */
#define FIELD(record, member, meaning) \
    formats::field<decltype(record::member)>(#member, offsetof(record, member), meaning)

/* A member of the per-band structures of `record`: the array `bands` has one for each band. */
/* NOLINTBEGIN(bugprone-macro-parentheses): the name of a member takes no parentheses */
#define BAND_FIELD(record, bands, member, meaning) \
    formats::bandField<decltype(record::bands)>(FIELD(record, bands[0].member, meaning))
/* NOLINTEND(bugprone-macro-parentheses) */

template <typename Bands> constexpr Field bandField(Field first)
{
    first.count = ALG_BANDS;
    first.stride = sizeof(Bands) / ALG_BANDS;
    first.interleaved = true;
    return first;
}

/* The field of this name. An unknown name does not compile. */
template <size_t size> constexpr Field fieldNamed(const Field (&fields)[size], const char* name)
{
    size_t index = 0;
    while (!sameText(fields[index].name, name))
        ++index;
    return fields[index];
}

/* ---- Layouts ------------------------------------------------------------ */

/* Who prints the line feed after the last field. */
enum class LineEnd : uint8_t {
    InFormat, /* the call that prints the line's fields */
    Alone,    /* a call of its own, because several calls print the fields */
    None      /* nobody: the module only reads the layout */
};

/* Fields in the order of their text. */
struct Layout {
    List<Field> fields;
    LineEnd lineEnd = LineEnd::InFormat;
};

/*
 * The fields that one call reads or prints: consecutive single fields, one element
 * of an array, or one band of interleaved arrays. The call is made `times` times,
 * once for each element.
 */
struct Step {
    List<Field> fields;
    int times = 1;
    bool first = true; /* whether it is the first step of its line */
};

/* The step that begins at this field of the layout. */
constexpr Step stepFrom(const Layout& layout, size_t begin)
{
    const Field& head = layout.fields[begin];
    size_t end = begin + 1;
    while (end < layout.fields.size()) {
        const Field& next = layout.fields[end];
        const bool bothSingle = head.count == 1 && next.count == 1;
        const bool bothInterleaved = head.interleaved && next.interleaved;
        if (!bothSingle && !bothInterleaved)
            break;
        ++end;
    }
    return {{&head, end - begin}, head.count, begin == 0};
}

/* All steps of a layout: for (const Step& step : Steps{layout}). */
struct Steps {
    const Layout& layout;

    struct Iterator {
        const Layout* layout;
        size_t at;

        constexpr Step operator*() const { return stepFrom(*layout, at); }
        constexpr Iterator& operator++() { return at += stepFrom(*layout, at).fields.size(), *this; }
        constexpr bool operator!=(const Iterator& other) const { return at != other.at; }
    };
    constexpr Iterator begin() const { return {&layout, 0}; }
    constexpr Iterator end() const { return {&layout, layout.fields.size()}; }
};

/* Calls `visit(field, element)` for every element of every field, in the order of the text. */
template <typename Visit> constexpr void eachField(const Layout& layout, Visit&& visit)
{
    for (const Step& step : Steps{layout}) {
        for (int element = 0; element < step.times; ++element) {
            for (const Field& field : step.fields)
                visit(field, element);
        }
    }
}

/* How many fields the text has. */
constexpr size_t fieldCount(const Layout& layout)
{
    size_t count = 0;
    for (const Field& field : layout.fields)
        count += static_cast<size_t>(field.count);
    return count;
}

/* ---- Kinds of files ----------------------------------------------------- */

/* How the text is divided into records. */
enum class Shape : uint8_t {
    Lines,   /* one record per line */
    Stream,  /* records are sequences of fields; line breaks have no meaning */
    Devices, /* a line with the count, then for each record its line and its entry lines */
    Index    /* one record: its line, then its entry lines */
};

/* What a function of the module does to a file of the kind. */
enum class Role : uint8_t { Reads, Writes, Updates, Appends, Deletes, Empties, Creates, Tests };

struct Function {
    Role role = Role::Reads;
    const char* name = "";
};

/* A record type of the module. */
struct RecordType {
    const char* name = "";
    size_t size = 0;
};
#define RECORD(record)          \
    formats::RecordType         \
    {                           \
#record, sizeof(record) \
    }

/* The array of entries in a record. */
struct Entries {
    const char* name = nullptr; /* name of the array; null if the kind has none */
    const char* record = "";    /* type of an entry */
    size_t offset = 0;
    size_t size = 0;            /* bytes of one entry */
    size_t capacity = 0;        /* number of elements of the array */
    const char* countName = ""; /* the record's field that states the number of entries */
    Layout layout;
};
#define ENTRIES(record, member, entry, count)                                                             \
    formats::Entries                                                                                      \
    {                                                                                                     \
#member, #entry, offsetof(record, member), sizeof(entry), sizeof(record::member) / sizeof(entry), \
            #count,                                                                                       \
        {                                                                                                 \
        }                                                                                                 \
    }

struct Kind {
    const char* name = "";
    FixedList<const char*, 2> aliases;
    const char* title = "";
    RecordType type;
    Shape shape = Shape::Lines;

    Layout preamble; /* before the first record; Devices only */
    Layout record;
    Entries entries; /* Devices and Index only */
    Layout probe;    /* what scoreInfoCntReader() reads; other kinds have none */

    bool readByLine = false;    /* parsed line by line; otherwise field by field, across lines */
    bool trailingBlank = false; /* a blank after each field; otherwise only between fields */
    bool emptyMacEnds = false;  /* the writer stops before a record whose first MAC is empty */

    const char* recordsFrom = "";   /* what tells a reader the number of records */
    const char* updateKey = "-";    /* how an update or a delete finds a record */
    bool unique = true;             /* each key occurs once */
    int cap = 0;                    /* how many records (Index: entries) are kept, 0 for no cap */
    const char* capText = "no cap"; /* the cap in words; a test looks for the number of `cap` in it */
    const char* blankLine = "";     /* what a blank line does */
    bool blankLineBreaks = true;    /* false if the readers skip blank lines */

    /* What tools call the elements of its arrays, or its entries: "score_band", of which one is a "band". */
    const char* parts = "";
    const char* part = "";

    FixedList<Function, 5> functions; /* for each role the usual function first */

    constexpr bool hasEntries() const { return entries.name != nullptr; }
    constexpr const char* firstOf(Role role) const
    {
        for (const Function& function : functions) {
            if (function.role == role)
                return function.name;
        }
        return nullptr;
    }
    constexpr const char* reader() const { return firstOf(Role::Reads); }
    /* Null if the module only reads the kind. */
    constexpr const char* writer() const { return firstOf(Role::Writes); }

    /* These functions build a Kind: each sets or adds a property and returns the Kind. */
    constexpr Kind& alias(const char* other) { return aliases.add(other), *this; }
    template <size_t size> constexpr Kind& fields(const Field (&all)[size], LineEnd end)
    {
        return record = {listOf(all), end}, *this;
    }
    template <size_t size> constexpr Kind& beginsWith(const Field (&all)[size], LineEnd end)
    {
        return preamble = {listOf(all), end}, *this;
    }
    template <size_t size>
    constexpr Kind& contains(const Entries& array, const Field (&all)[size], LineEnd end)
    {
        return entries = array, entries.layout = {listOf(all), end}, *this;
    }
    constexpr Kind& inParts(const char* all, const char* one) { return parts = all, part = one, *this; }
    constexpr Kind& byLine() { return readByLine = true, *this; }
    constexpr Kind& blankAfterEach() { return trailingBlank = true, *this; }
    constexpr Kind& endsAtEmptyMac() { return emptyMacEnds = true, *this; }
    constexpr Kind& numberOfRecordsFrom(const char* source) { return recordsFrom = source, *this; }
    constexpr Kind& foundBy(const char* key) { return updateKey = key, *this; }
    constexpr Kind& keysRepeat() { return unique = false, *this; }
    constexpr Kind& keeps(int max, const char* text) { return cap = max, capText = text, *this; }
    constexpr Kind& atBlankLine(const char* effect) { return blankLine = effect, *this; }
    constexpr Kind& skipsBlankLines() { return blankLineBreaks = false, atBlankLine("the reader skips it"); }
    constexpr Kind& does(Role role, const char* function) { return functions.add({role, function}), *this; }
    constexpr Kind& readBy(const char* function) { return does(Role::Reads, function); }
    constexpr Kind& writtenBy(const char* function) { return does(Role::Writes, function); }
    constexpr Kind& updatedBy(const char* function) { return does(Role::Updates, function); }
    constexpr Kind& appendedBy(const char* function) { return does(Role::Appends, function); }
    constexpr Kind& deletedBy(const char* function) { return does(Role::Deletes, function); }
    constexpr Kind& emptiedBy(const char* function) { return does(Role::Empties, function); }
    constexpr Kind& createdBy(const char* function) { return does(Role::Creates, function); }
    template <size_t size> constexpr Kind& testedBy(const char* function, const Field (&all)[size])
    {
        return probe = {listOf(all), LineEnd::None}, does(Role::Tests, function);
    }
};

constexpr Kind kind(const char* name, const char* title, RecordType type, Shape shape)
{
    Kind made;
    made.name = name;
    made.title = title;
    made.type = type;
    made.shape = shape;
    return made;
}

} // namespace formats

#endif
