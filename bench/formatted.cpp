/* SPDX-License-Identifier: Apache-2.0 */
#include "formatted.h"

#include "fields.h"

namespace formatted
{

int countLines(const char* path)
{
    FILE* fp = fopen(path, "r");
    if (fp == nullptr)
        return -1;
    char line[1024];
    int count = 0;
    while (fgets(line, sizeof line, fp) != nullptr)
        ++count;
    fclose(fp);
    return count;
}

/* ---- One call of the C library for each call of the module --------------- */

/* The argument with which the C library reads a field. */
template <typename Value> static Value* scanned(Value& field)
{
    return &field;
}
static char* scanned(char (&field)[ALG_MAC_SIZE])
{
    return field;
}

template <const formats::Kind& kind, formats::Part part> static bool readFields(FILE* fp, void* base)
{
    char line[1024];
    if (kind.readByLine && fgets(line, sizeof line, fp) == nullptr)
        return false;
    return formats::eachCall<kind, part>([&](auto call, int element) {
        return call.with([&](auto... member) {
            if constexpr (kind.readByLine)
                return sscanf(line, call.in.text, scanned(member.of(base, element))...);
            else
                return fscanf(fp, call.in.text, scanned(member.of(base, element))...);
        }) != -1;
    });
}

/* The argument with which the C library prints a field. */
static const char* printed(const char (&field)[ALG_MAC_SIZE])
{
    return field;
}
static double printed(const float& field)
{
    return static_cast<double>(field);
}
template <typename Number> static Number printed(const Number& field)
{
    return field;
}

template <typename Member>
static auto printedMember(Member member, const void* base, int element, int position)
{
    if constexpr (member.field.position)
        return printed(static_cast<uint16_t>(position));
    else
        return printed(member.of(base, element));
}

template <const formats::Kind& kind, formats::Part part>
static bool writeFields(FILE* fp, const void* base, int position)
{
    const bool result = formats::eachCall<kind, part>([fp, base, position](auto call, int element) {
        return call.with([&](auto... member) {
            return fprintf(fp, call.out.text, printedMember(member, base, element, position)...);
        }) >= 0;
    });
    return result &&
           (formats::layoutOf(kind, part).lineEnd != formats::LineEnd::Alone || fprintf(fp, "\n") >= 0);
}

/* ---- Records ------------------------------------------------------------ */

/* Changes the values as the module's reader does. */
template <const formats::Kind& kind> static void load(void* base)
{
    formats::eachMember<kind, formats::Part::Record>([base](auto member, int element) {
        if constexpr (member.field.load != formats::Load::AsStored) {
            auto& value = member.of(base, element);
            value = static_cast<typename decltype(member)::Value>(
                formats::loadedValue(member.field, value, ai_yra_rssi_compensation));
        }
    });
}

template <typename Record> static bool readRecord(FILE* fp, Record* record)
{
    constexpr const formats::Kind& kind = KIND<Record>;
    bool result = readFields<kind, formats::Part::Record>(fp, record);
    if constexpr (kind.hasEntries()) {
        const size_t entries = formats::entriesIn<kind>(record);
        for (size_t i = 0; i < entries && result; ++i)
            result = readFields<kind, formats::Part::Entry>(fp, formats::entryAt(kind, record, i));
    }
    return result;
}

template <typename Record> static bool writeRecord(FILE* fp, const Record* record, int position)
{
    constexpr const formats::Kind& kind = KIND<Record>;
    bool result = writeFields<kind, formats::Part::Record>(fp, record, position);
    if constexpr (kind.hasEntries()) {
        const size_t entries = formats::entriesIn<kind>(record);
        for (size_t i = 0; i < entries && result; ++i)
            result = writeFields<kind, formats::Part::Entry>(fp, formats::entryAt(kind, record, i), position);
    }
    return result;
}

bool read(FILE* fp, BridgingNodeV2* record)
{
    return readRecord(fp, record);
}
bool read(FILE* fp, StaConnection* record)
{
    return readRecord(fp, record);
}
bool read(FILE* fp, ScanningInfo* record)
{
    const bool result = readRecord(fp, record);
    load<formats::scanning>(record);
    return result;
}
bool read(FILE* fp, TimeDelayInfo* record)
{
    const bool result = readRecord(fp, record);
    load<formats::timeDelay>(record);
    return result;
}
bool read(FILE* fp, ApInfoAllV2* record)
{
    return readRecord(fp, record);
}
bool read(FILE* fp, ApRank* record)
{
    return readRecord(fp, record);
}
bool read(FILE* fp, PatParameterV2* record)
{
    return readRecord(fp, record);
}
bool read(FILE* fp, ScoreInfo* record)
{
    return readRecord(fp, record);
}

bool write(FILE* fp, const BridgingNodeV2* record, int position)
{
    return writeRecord(fp, record, position);
}
bool write(FILE* fp, const StaConnection* record, int position)
{
    return writeRecord(fp, record, position);
}
bool write(FILE* fp, const ScanningInfo* record, int position)
{
    return writeRecord(fp, record, position);
}
bool write(FILE* fp, const TimeDelayInfo* record, int position)
{
    return writeRecord(fp, record, position);
}
bool write(FILE* fp, const ApInfoAllV2* record, int position)
{
    return writeRecord(fp, record, position);
}
bool write(FILE* fp, const ApRank* record, int position)
{
    return writeRecord(fp, record, position);
}
bool write(FILE* fp, const PatParameterV2* record, int position)
{
    return writeRecord(fp, record, position);
}
bool write(FILE* fp, const ScoreInfo* record, int position)
{
    return writeRecord(fp, record, position);
}

} // namespace formatted
