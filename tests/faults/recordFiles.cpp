/* SPDX-License-Identifier: Apache-2.0 */
#include "recordFiles.h"

#include <stdarg.h>

#include "formats/access.h"

static_assert(KINDS == sizeof formats::kinds / sizeof formats::kinds[0], "a kind has no name here");
static_assert(formats::kinds[OUTPUT] == &formats::algOutput, "the kinds are in another order here");

size_t recordSize(Kind kind)
{
    return formatOf(kind).type.size;
}

/* ---- Example records ---------------------------------------------------- */

/* The first MAC of a record contains letters; the others could be parsed as numbers. */
static void setMac(char* mac, bool first, int i)
{
    if (first)
        snprintf(mac, ALG_MAC_SIZE, "a1b2c3d4%04x", static_cast<unsigned>(i) & 0xFFFF);
    else
        snprintf(mac, ALG_MAC_SIZE, "11223344%04d", i % 10000);
}

/* The largest number that can be read back from a file. */
static uint32_t largestRead(const formats::Field& field)
{
    uint32_t limit = 1;
    for (int digits = 0; digits < field.widthIn; ++digits)
        limit *= 10;
    const uint32_t meaningful = formats::largest(field);
    return field.widthIn != 0 && limit - 1 < meaningful ? limit - 1 : meaningful;
}

/* Numbers of every length, also beyond the bounds of the readers. `nth` is the index of the value. */
static uint32_t exampleNumber(const formats::Field& field, int nth, int i)
{
    static const uint32_t sizes[] = {0, 7, 90, 866, 12004, 46094, 4294967000U};
    const uint32_t value = sizes[nth % 7] + static_cast<uint32_t>(i);
    const uint32_t max = largestRead(field);
    return max == UINT32_MAX ? value : value % (max + 1);
}

static void fillFields(const formats::Layout& layout, void* base, int i)
{
    int nth = 0;
    int macs = 0;
    formats::eachField(layout, [&](const formats::Field& field, int element) {
        if (field.type == formats::Type::Mac)
            setMac(formats::addressOf(field, base, element), macs++ == 0, i);
        else if (field.type == formats::Type::F32)
            formats::setReal(field, base, element, static_cast<float>(i) + 0.25F * static_cast<float>(nth));
        else
            formats::setNumber(field, base, element,
                               field.position ? static_cast<uint32_t>(i) : exampleNumber(field, nth, i));
        ++nth;
    });
}

void fillRecord(Kind kind, int i, void* record)
{
    const formats::Kind& format = formatOf(kind);
    memset(record, 0, format.type.size);
    fillFields(format.record, record, i);
    if (!format.hasEntries())
        return;
    const bool single = format.shape == formats::Shape::Index;
    formats::setNumber(formats::countField(format), record, 0, static_cast<uint32_t>(single ? i : 2 + i % 3));
    const int entries = static_cast<int>(formats::entryCount(format, record));
    for (int k = 0; k < entries; ++k)
        fillFields(format.entries.layout, formats::entryAt(format, record, static_cast<size_t>(k)),
                   single ? k : k + i);
}

/* ---- Text of the records ------------------------------------------------ */

/* A text to which pieces are appended. */
struct Out {
    char* text;
    size_t length;
};

static void put(Out& out, const char* format, ...) __attribute__((format(printf, 2, 3)));
static void put(Out& out, const char* format, ...)
{
    va_list args;
    va_start(args, format);
    const int length = vsnprintf(out.text + out.length, FILE_ROOM - out.length, format, args);
    va_end(args);
    out.length += static_cast<size_t>(length);
    if (out.length >= FILE_ROOM)
        abort(); /* a test prints more than the buffer can store */
}

static void putValue(Out& out, const formats::Field& field, const void* base, int element)
{
    const uint32_t number = formats::number(field, base, element);
    if (field.type == formats::Type::Mac)
        put(out, "%*.*s", field.widthOut, int(ALG_MAC_SIZE), formats::addressOf(field, base, element));
    else if (field.type == formats::Type::F32)
        put(out, "%.2f", static_cast<double>(formats::real(field, base, element)));
    else if (field.printsSigned)
        put(out, "%*d", field.widthOut, static_cast<int>(number));
    else
        put(out, "%*u", field.widthOut, static_cast<unsigned>(number));
}

static void putLine(Out& out, const formats::Kind& format, const formats::Layout& layout, const void* base)
{
    bool first = true;
    formats::eachField(layout, [&](const formats::Field& field, int element) {
        put(out, "%s", first || format.trailingBlank ? "" : " ");
        putValue(out, field, base, element);
        put(out, "%s", format.trailingBlank ? " " : "");
        first = false;
    });
    put(out, "\n");
}

/* Room for a record of any kind. */
union LargestRecord {
    char bytes[sizeof(PatParameterV2)];
    PatParameterV2 pat;
    ApRankIndex index;
};

/*
 * Prints the line of a record as its writer does: with the record's position, and with a count of at most the
 * capacity of its entries.
 */
static void putOwnLine(Out& out, const formats::Kind& format, const void* record, int position)
{
    LargestRecord written;
    memcpy(written.bytes, record, format.type.size);
    for (const formats::Field& field : format.record.fields) {
        if (field.position)
            formats::setNumber(field, written.bytes, 0, static_cast<uint32_t>(position));
    }
    if (format.hasEntries())
        formats::setNumber(formats::countField(format), written.bytes, 0,
                           static_cast<uint32_t>(formats::entryCount(format, record)));
    putLine(out, format, format.record, written.bytes);
}

/* Prints one record of a kind. Returns false if the writer stops before it. */
static bool putRecord(Out& out, const formats::Kind& format, const void* record, int position)
{
    if (format.emptyMacEnds && *static_cast<const char*>(record) == '\0')
        return false;
    putOwnLine(out, format, record, position);
    for (size_t i = 0; i < formats::entryCount(format, record); ++i)
        putLine(out, format, format.entries.layout, formats::entryAt(format, record, i));
    return true;
}

static void putPreamble(Out& out, const formats::Kind& format, int count)
{
    if (format.shape == formats::Shape::Devices)
        put(out, "%d\n", count);
}

size_t printRecords(Kind kind, const void* records, int count, char* text)
{
    const formats::Kind& format = formatOf(kind);
    Out out = {text, 0};
    putPreamble(out, format, count);
    const char* record = static_cast<const char*>(records);
    for (int i = 0; i < count && putRecord(out, format, record, i); ++i)
        record += format.type.size;
    return out.length;
}

/* ---- Valid files -------------------------------------------------------- */

/* Prints a record that states `entries` entries, and those entries, also beyond the capacity. */
static void putEntries(Out& out, const formats::Kind& format, int entries)
{
    LargestRecord record = {};
    fillFields(format.record, record.bytes, entries);
    formats::setNumber(formats::countField(format), record.bytes, 0, static_cast<uint32_t>(entries));
    putLine(out, format, format.record, record.bytes);
    for (int i = 0; i < entries; ++i) {
        LargestRecord entry = {};
        fillFields(format.entries.layout, entry.bytes, i);
        putLine(out, format, format.entries.layout, entry.bytes);
    }
}

size_t patFileOfEntries(int entries, char* text)
{
    Out out = {text, 0};
    putPreamble(out, formats::patV2, 1);
    putEntries(out, formats::patV2, entries);
    return out.length;
}

size_t exampleFile(Kind kind, int count, char* text)
{
    const formats::Kind& format = formatOf(kind);
    Out out = {text, 0};
    if (format.shape == formats::Shape::Index) {
        putEntries(out, format, count);
        return out.length;
    }
    putPreamble(out, format, count);
    for (int i = 0; i < count; ++i) {
        LargestRecord record;
        fillRecord(kind, i, &record);
        putRecord(out, format, &record, i);
    }
    return out.length;
}
