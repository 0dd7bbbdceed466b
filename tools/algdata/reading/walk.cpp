/* SPDX-License-Identifier: Apache-2.0 */
#include "reading/walk.h"

#include <filesystem>

#include <fmt/format.h>

#include "output/output.h"
#include "output/progress.h"
#include "output/queryError.h"
#include "reading/archive.h"
#include "text/wording.h"

namespace algdata
{

namespace fs = std::filesystem;

namespace
{

/*
 * Returns 0 if there is an archive, because only reading it shows how many files it has. Ignores errors:
 * the walk that reads the files reports them.
 */
size_t countFiles(const Options& options)
{
    size_t files = 0;
    bool anyArchive = false;
    const auto count = [&](const std::string& path) {
        ++files;
        anyArchive = anyArchive || namesArchive(path);
    };
    for (const std::string& path : options.paths) {
        if (isDirectory(path))
            walk(path, count, [](const std::string&, const std::string&) {});
        else
            count(path);
    }
    return anyArchive ? 0 : files;
}

/* Whether the directory or one of its subdirectories contains the file. Follows links. */
bool contains(const std::string& directory, const std::string& file)
{
    std::error_code none;
    const fs::path inside = fs::relative(file, directory, none);
    return !inside.empty() && *inside.begin() != "..";
}

/* An empty file has no records to lose. */
bool hasRecords(const std::string& path)
{
    Source source;
    readSource(path, source);
    const Detection detection = detectKind(source.bytes);
    return detection.isRecordFile() && detection.content != Content::Empty;
}

} // namespace

bool isDirectory(const std::string& path)
{
    std::error_code error;
    return path != "-" && fs::is_directory(path, error);
}

bool holdsFiles(const std::string& path)
{
    return isDirectory(path) || namesArchive(path);
}

void requireNoInput(const std::string& output, const std::vector<std::string>& inputs)
{
    std::error_code none;
    if (output == "-" || !fs::is_regular_file(output, none))
        return;
    for (const std::string& input : inputs) {
        if (fs::equivalent(output, input == "-" ? "/dev/stdin" : input, none))
            throw OutputFailure(
                fmt::format("cannot write {}: it is the same file as the input {}, expected another file",
                            output, input));
        if (isDirectory(input) && contains(input, output) && (namesArchive(output) || hasRecords(output)))
            throw OutputFailure(fmt::format(
                "cannot write {}: it is read with the input {}, expected another file", output, input));
    }
}

bool isOneFile(const Options& options)
{
    return options.paths.size() == 1 && !holdsFiles(options.paths[0]);
}

void walk(const std::string& directory, const std::function<void(const std::string&)>& visit,
          const OnUnreadable& unreadable, const std::function<void(const std::string&)>& enter)
{
    const std::string base = withoutSlash(directory);
    if (enter)
        enter(base);
    for (const DirectoryEntry& entry : entriesOf(base, unreadable)) {
        const std::string path = pathIn(base, entry.name);
        if (entry.directory)
            walk(path, visit, unreadable, enter);
        else
            visit(path);
    }
}

namespace
{

/* Reads the input files of a command one by one, and remembers how it went. */
class Reader
{
  public:
    Reader(const Options& of, const VisitSource& toVisit, const WantsPath& toRead)
        : options(of), visit(toVisit), wants(toRead), others(of.kind),
          progress([&of] { return countFiles(of); })
    {
    }

    void readPath(const std::string& path);
    Status finish();

  private:
    void readDirectory(const std::string& path);
    void readArchive(const std::string& path);
    bool readMember(ArchiveReader& archive, const std::string& path);
    void readFile(const std::string& path, bool named);
    void visitSource();
    void requireFound(size_t before, const std::string& path, const char* notRead);
    void fail(const Failure& failure);

    const Options& options;
    const VisitSource& visit;
    const WantsPath& wants;
    OtherFiles others;
    Progress progress;
    Source source;
    Status status = AllWell;
    size_t found = 0; /* files that were visited, were not wanted or could not be read */
};

void Reader::readPath(const std::string& path)
{
    const size_t before = found;
    if (isDirectory(path)) {
        readDirectory(path);
        requireFound(before, path, "hidden files and links to directories");
    } else if (namesArchive(path)) {
        readArchive(path);
        requireFound(before, path, "hidden files and links");
    } else {
        readFile(path, true);
    }
}

void Reader::readDirectory(const std::string& path)
{
    const auto readEntry = [&](const std::string& file) {
        if (namesArchive(file))
            readArchive(file);
        else
            readFile(file, false);
    };
    walk(path, readEntry, [&](const std::string& unread, const std::string& why) {
        fail(Failure("cannot read " + unread + ": " + why));
    });
}

void Reader::readArchive(const std::string& path)
{
    try {
        ArchiveReader archive(path);
        while (readMember(archive, path))
            progress.step();
        const std::string links = archive.linksLeftOut();
        if (!links.empty())
            message(links);
    } catch (const Failure& failure) {
        fail(failure);
    }
}

/* Returns false after the last member. */
bool Reader::readMember(ArchiveReader& archive, const std::string& path)
{
    try {
        Member member;
        if (!archive.next(member))
            return false;
        source.name = path + "/" + member.name;
        source.named = false;
        if (wants && !wants(source.name)) {
            ++found;
            return true;
        }
        archive.read(source.bytes);
        visitSource();
    } catch (const Failure& failure) {
        fail(failure);
    }
    return true;
}

void Reader::readFile(const std::string& path, bool named)
{
    if (wants && !wants(path)) {
        ++found;
        return;
    }
    try {
        source.named = named;
        readSource(path, source);
        visitSource();
    } catch (const Failure& failure) {
        fail(failure);
    }
    progress.step();
}

void Reader::visitSource()
{
    source.kind = nullptr;
    const Detection detection = detectKind(source.bytes, options.kind);
    if (others.wants(source, detection)) {
        ++found;
        status = worse(status, visit(source, detection));
    } else {
        others.add(source.name);
    }
}

void Reader::requireFound(size_t before, const std::string& path, const char* notRead)
{
    if (found == before)
        fail(Failure(fmt::format("{} has no {}; {} are not read", path,
                                 options.kind == nullptr ? "record files"
                                                         : std::string("files of kind ") + options.kind->name,
                                 notRead)));
}

Status Reader::finish()
{
    others.report();
    return status;
}

void Reader::fail(const Failure& failure)
{
    printFailure(failure);
    ++found;
    status = Unusable;
}

} // namespace

Status eachSource(const Options& options, const VisitSource& visit, const WantsPath& wants)
{
    Reader reader(options, visit, wants);
    for (const std::string& path : options.paths)
        reader.readPath(path);
    return reader.finish();
}

Status eachRecordFile(const Options& options, const std::function<Status(Source&)>& visit,
                      const WantsPath& wants)
{
    const auto visitRecords = [&](Source& source, const Detection& detection) {
        source.kind = detection.kind;
        if (source.kind == nullptr && detection.content != Content::Empty)
            throw Failure(source.name + ": " + detection.reason());
        return visit(source);
    };
    return eachSource(options, visitRecords, wants);
}

bool OtherFiles::wants(const Source& source, const Detection& detection) const
{
    if (source.named)
        return true;
    return asked == nullptr ? detection.isRecordFile() : detectKind(source.bytes).canBe(*asked);
}

void OtherFiles::report() const
{
    if (names.count() == 0)
        return;
    const std::string what = asked != nullptr     ? std::string("of kind ") + asked->name
                             : names.count() == 1 ? "a record file"
                                                  : "record files";
    message(fmt::format("{} {} not {}: {}", plural(names.count(), "file"), names.count() == 1 ? "is" : "are",
                        what, names.text()));
}

} // namespace algdata
