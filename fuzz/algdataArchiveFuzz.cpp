/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Reads any bytes as an archive. It expects that every name is one that a file in a
 * directory can have and occurs once, that no limit is passed, and that the reader ends.
 * Of every second file, the kind is detected and the records are read; the others are
 * passed over.
 */
#include <cstdint>
#include <cstdlib>
#include <set>

#include "reading/archive.h"
#include "reading/detect.h"
#include "reading/pathTemplate.h"
#include "view/copy.h"
#include "view/view.h"

using namespace algdata;

namespace
{

constexpr uint64_t mebi = 1 << 20;
constexpr ArchiveLimits limits = {mebi, 8 * mebi, 200, 100, mebi};

void expect(bool holds)
{
    if (!holds)
        abort();
}

void expectName(const std::string& name)
{
    for (const std::string_view part : componentsOf(name))
        expect(!part.empty() && part[0] != '.');
}

void readRecords(const Source& source)
{
    if (source.kind == nullptr)
        return;
    View view(source, false);
    for (Record record; view.next(record);) {
    }
}

/* Returns false after the last member. */
bool readOne(ArchiveReader& reader, std::set<std::string>& names)
{
    try {
        Member member;
        if (!reader.next(member))
            return false;
        expectName(member.name);
        expect(names.insert(member.name).second);
        if (names.size() % 2 == 0)
            return true;
        Source source;
        reader.read(source.bytes);
        expect(source.bytes.size() <= limits.memberBytes);
        source.kind = detectKind(source.bytes).kind;
        readRecords(source);
    } catch (const Failure&) {
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const PrivateCopy archive(std::string_view(reinterpret_cast<const char*>(data), size));
    try {
        ArchiveReader reader(archive.path(), limits);
        std::set<std::string> names;
        /* A member can fail without a name, and the end can fail for links and for names. */
        for (size_t calls = 0; readOne(reader, names); ++calls)
            expect(calls < 2 * limits.members);
    } catch (const Failure&) {
    }
    return 0;
}
