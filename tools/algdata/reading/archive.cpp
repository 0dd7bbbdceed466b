/* SPDX-License-Identifier: Apache-2.0 */
#include "reading/archive.h"

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <strings.h>

#include <archive.h>
#include <archive_entry.h>
#include <fmt/format.h>

#include "text/wording.h"

namespace algdata
{

namespace
{

bool endsWith(std::string_view text, std::string_view end)
{
    return text.size() >= end.size() &&
           strncasecmp(text.data() + text.size() - end.size(), end.data(), end.size()) == 0;
}

/* Null if the system has none. A program can unload the library that this is part of. */
struct Utf8Locale {
    Utf8Locale() : locale(newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr)) {}
    ~Utf8Locale()
    {
        if (locale != nullptr)
            freelocale(locale);
    }
    Utf8Locale(const Utf8Locale&) = delete;
    Utf8Locale& operator=(const Utf8Locale&) = delete;
    const locale_t locale;
};

/*
 * libarchive converts names from UTF-8 to the character set of the locale, which can fail.
 * While an object of this class exists, the character set is UTF-8.
 */
class Utf8Names
{
  public:
    Utf8Names()
    {
        static const Utf8Locale utf8;
        if (utf8.locale != nullptr)
            before = uselocale(utf8.locale);
    }
    ~Utf8Names()
    {
        if (before != nullptr)
            uselocale(before);
    }
    Utf8Names(const Utf8Names&) = delete;
    Utf8Names& operator=(const Utf8Names&) = delete;

  private:
    locale_t before = nullptr;
};

std::string_view withoutDots(std::string_view name)
{
    while (name.substr(0, 2) == "./")
        name.remove_prefix(2);
    return name;
}

/* Calls `test` for each component of a name, and returns whether one passes. */
template <typename Test> bool anyComponent(std::string_view name, Test test)
{
    for (size_t start = 0; start <= name.size();) {
        const size_t end = std::min(name.find('/', start), name.size());
        if (test(name.substr(start, end - start)))
            return true;
        start = end + 1;
    }
    return false;
}

/* Whether a file in a directory can have this name. */
bool canBeName(std::string_view name)
{
    return !anyComponent(name,
                         [](std::string_view part) { return part.empty() || part == "." || part == ".."; });
}

bool isHidden(std::string_view name)
{
    return anyComponent(name, [](std::string_view part) { return part.substr(0, 1) == "."; });
}

/* The type that libarchive gives the rest of a file that began in another volume. */
constexpr mode_t otherVolume = 0;

uint64_t statedSize(archive_entry* entry)
{
    return static_cast<uint64_t>(std::max<int64_t>(archive_entry_size(entry), 0));
}

/* "2 GiB", or "1000 bytes" if that is not a whole number of GiB. */
std::string sizeText(uint64_t bytes)
{
    constexpr int gib = 30;
    return bytes >> gib << gib == bytes ? fmt::format("{} GiB", bytes >> gib) : plural(bytes, "byte");
}

void requireOk(int result)
{
    if (result != ARCHIVE_OK)
        throw Failure("libarchive lacks a format or a filter; expected tar, zip and zstd");
}

} // namespace

bool namesArchive(std::string_view path)
{
    for (const char* end : {".tar", ".tar.gz", ".tgz", ".tar.zst", ".tzst", ".zip"})
        if (endsWith(path, end))
            return true;
    return false;
}

/* ---- Opening ------------------------------------------------------------ */

ArchiveReader::ArchiveReader(const std::string& archivePath, const ArchiveLimits& bounds)
    : path(archivePath), limits(bounds)
{
    try {
        input = std::make_unique<ArchiveInput>(path);
        open();
    } catch (const Failure& failure) {
        throw Failure(fmt::format("cannot read {}: {}", path, failure.what()));
    }
}

ArchiveReader::~ArchiveReader() = default;

void ArchiveReader::Free::operator()(archive* opened) const
{
    archive_read_free(opened);
}

/*
 * Only these formats: others have no use here, and each would be more code that parses
 * untrusted bytes. Zip by its central directory, because only that is complete.
 */
void ArchiveReader::open()
{
    handle.reset(archive_read_new());
    if (handle == nullptr)
        throw std::bad_alloc();
    requireOk(archive_read_support_format_tar(handle.get()));
    requireOk(archive_read_support_format_zip_seekable(handle.get()));
    requireOk(archive_read_support_filter_zstd(handle.get()));
    /* Reads to the end of file: for archives that were joined, and for the checksum after the last member. */
    requireOk(archive_read_set_format_option(handle.get(), "tar", "read_concatenated_archives", "1"));
    archive_read_set_callback_data(handle.get(), this);
    archive_read_set_read_callback(handle.get(), readBlock);
    archive_read_set_skip_callback(handle.get(), skipBytes);
    archive_read_set_seek_callback(handle.get(), seekTo);
    if (archive_read_open1(handle.get()) != ARCHIVE_OK)
        throw Failure(reason());
}

/* ---- What libarchive calls ---------------------------------------------- */

/* No exception may pass through libarchive, so its text is kept until the call returns. */
template <typename Call> int64_t ArchiveReader::guarded(Call call)
{
    try {
        return call();
    } catch (const std::exception& failure) {
        inputFailure = failure.what();
        archive_set_error(handle.get(), EIO, "%s", failure.what());
        return ARCHIVE_FATAL;
    }
}

ssize_t ArchiveReader::readBlock(archive* /*handle*/, void* reader, const void** block)
{
    ArchiveReader& self = *static_cast<ArchiveReader*>(reader);
    return static_cast<ssize_t>(self.guarded([&] {
        /* Also here, because a file that is skipped can expand without end. */
        const std::string why = self.passedLimit();
        if (!why.empty())
            throw Failure(why);
        const std::string_view bytes = self.input->next();
        *block = bytes.data();
        return static_cast<int64_t>(bytes.size());
    }));
}

int64_t ArchiveReader::skipBytes(archive* /*handle*/, void* reader, int64_t count)
{
    ArchiveReader& self = *static_cast<ArchiveReader*>(reader);
    return self.guarded([&] { return self.input->skip(count); });
}

int64_t ArchiveReader::seekTo(archive* /*handle*/, void* reader, int64_t offset, int whence)
{
    ArchiveReader& self = *static_cast<ArchiveReader*>(reader);
    const int64_t at = self.input->seek(offset, whence);
    return at < 0 ? ARCHIVE_FATAL : at;
}

/* ---- The members -------------------------------------------------------- */

bool ArchiveReader::next(Member& member)
{
    while (!ended && advance()) {
        if (!isWanted())
            continue;
        requireReadable();
        member.name = current;
        member.size = statedSize(entry);
        member.modified = archive_entry_mtime(entry);
        return true;
    }
    failForNames();
    return false;
}

/* Goes to the next entry of any type. Returns false after the last one. */
bool ArchiveReader::advance()
{
    const Utf8Names names;
    const int result = archive_read_next_header(handle.get(), &entry);
    ended = result != ARCHIVE_OK && result != ARCHIVE_WARN;
    if (result == ARCHIVE_EOF) {
        requireWhole();
        return false;
    }
    if (ended)
        failArchive(reason());
    const char* name = archive_entry_pathname(entry);
    current = withoutDots(name != nullptr ? name : "");
    ++members;
    requireWithinLimits();
    if (result == ARCHIVE_WARN)
        failMember(reason());
    return true;
}

/* Whether the entry is a file to visit. Counts those for which there is a message. */
bool ArchiveReader::isWanted()
{
    const bool link = archive_entry_hardlink(entry) != nullptr;
    const auto type = archive_entry_filetype(entry);
    if (!link && type != AE_IFREG && type != AE_IFLNK && type != otherVolume)
        return false;
    const bool possible = canBeName(current);
    if (possible && isHidden(current))
        return false;
    NamesLeftOut* const leftOut = !possible          ? &wrongNames
                                  : link             ? &hardLinks
                                  : type == AE_IFLNK ? &symbolicLinks
                                                     : nullptr;
    if (leftOut != nullptr)
        leftOut->add(current);
    return leftOut == nullptr;
}

void ArchiveReader::requireReadable()
{
    if (!known.add(current))
        failMember("the archive has this name more than once; the first file was read");
    if (namesArchive(current))
        failMember("an archive in an archive is not read; extract it first");
    if (archive_entry_is_encrypted(entry) != 0)
        failMember("it is encrypted");
    if (archive_entry_filetype(entry) == otherVolume)
        failMember("it continues a file of another volume");
}

void ArchiveReader::read(std::string& bytes)
{
    constexpr uint64_t firstBlock = 1 << 20; /* the stated size can be a lie */
    const uint64_t stated = statedSize(entry);
    bytes.resize(std::min(stated, firstBlock) + 1);
    for (size_t have = 0;;) {
        if (std::max<uint64_t>(stated, have) > limits.memberBytes)
            failMember(
                fmt::format("it is larger than {}, the limit for one file", sizeText(limits.memberBytes)));
        const ssize_t got = archive_read_data(handle.get(), bytes.data() + have, bytes.size() - have);
        if (got < 0) {
            ended = got == ARCHIVE_FATAL;
            failMember(reason());
        }
        have += static_cast<size_t>(got);
        bytesRead += static_cast<uint64_t>(got);
        requireWithinLimits();
        if (got == 0) {
            bytes.resize(have);
            return;
        }
        if (have == bytes.size())
            bytes.resize(have * 2);
    }
}

std::string ArchiveReader::linksLeftOut() const
{
    if (symbolicLinks.count() == 0)
        return "";
    return fmt::format("{} of {} {} not followed: {}", plural(symbolicLinks.count(), "symbolic link"), path,
                       symbolicLinks.count() == 1 ? "is" : "are", symbolicLinks.text());
}

/* ---- Failures ----------------------------------------------------------- */

/*
 * Returns the limit that is passed, or an empty text. Of a tar archive, all bytes count, because
 * also those that are skipped were decompressed; of a zip archive, the files that were read.
 */
std::string ArchiveReader::passedLimit() const
{
    const auto stream = static_cast<uint64_t>(std::max<int64_t>(archive_filter_bytes(handle.get(), 0), 0));
    const uint64_t expanded = std::max(stream, bytesRead);
    if (members > limits.members)
        return fmt::format("it has more than {} members, the limit", limits.members);
    if (expanded > limits.allBytes)
        return fmt::format("it expands to more than {}, the limit", sizeText(limits.allBytes));
    if (expanded > limits.ratioFrom && expanded / limits.ratio > input->size())
        return fmt::format("it expands to more than {} and {} times its size, the limit",
                           sizeText(limits.ratioFrom), limits.ratio);
    return "";
}

void ArchiveReader::requireWithinLimits()
{
    const std::string why = passedLimit();
    if (!why.empty())
        failArchive(why);
}

/* A tar archive ends with a block of zeros. Without it, the archive is truncated, and files are missing. */
void ArchiveReader::requireWhole()
{
    constexpr int64_t block = 512;
    const bool isTar = (archive_format(handle.get()) & ARCHIVE_FORMAT_BASE_MASK) == ARCHIVE_FORMAT_TAR;
    if (input->hasChanged())
        failArchive("it changed while it was read");
    if (isTar && archive_filter_bytes(handle.get(), 0) - archive_read_header_position(handle.get()) < block)
        failArchive("it is truncated: the zeros at the end of a tar archive are missing");
}

/* Reports the files that cannot be read because of what they are, each sort once. */
void ArchiveReader::failForNames()
{
    const auto report = [this](NamesLeftOut& leftOut, std::string_view noun, std::string_view why) {
        if (leftOut.count() == 0)
            return;
        const std::string text = fmt::format("cannot read {} of {}: {}; {}", plural(leftOut.count(), noun),
                                             path, leftOut.text(), why);
        leftOut.clear();
        throw Failure(text);
    };
    report(hardLinks, "hard link",
           "the content is under another name (`tar --hard-dereference` stores it again)");
    report(wrongNames, "file", "expected a relative name without empty parts, `.` and `..`");
}

/* Why the last call of libarchive failed. */
std::string ArchiveReader::reason() const
{
    if (!inputFailure.empty())
        return inputFailure;
    if (input->hasChanged())
        return "it changed while it was read";
    const char* const stated = archive_error_string(handle.get());
    const std::string text = stated != nullptr ? stated : "it is damaged";
    return text == "Unrecognized archive format" ? "it is no tar or zip archive, or its end is missing"
                                                 : text;
}

void ArchiveReader::failArchive(const std::string& why)
{
    ended = true;
    throw Failure(fmt::format("cannot read {}{}: {}", path, current.empty() ? "" : " after " + current, why));
}

void ArchiveReader::failMember(const std::string& why) const
{
    throw Failure(fmt::format("cannot read {}/{}: {}", path, current, why));
}

} // namespace algdata
