/* SPDX-License-Identifier: Apache-2.0 */
#include "reading/walk.h"

#include <filesystem>

#include <fmt/format.h>

#include "output/output.h"
#include "output/progress.h"
#include "output/wording.h"

namespace algdata
{

namespace fs = std::filesystem;

namespace
{

/* Ignores errors: the walk that reads the files reports them. */
size_t countFiles(const Options& options)
{
    size_t files = 0;
    for (const std::string& path : options.paths) {
        if (isDirectory(path))
            walk(
                path, [&](const std::string&) { ++files; }, [](const std::string&, const std::string&) {});
        else
            ++files;
    }
    return files;
}

} // namespace

bool isDirectory(const std::string& path)
{
    std::error_code error;
    return path != "-" && fs::is_directory(path, error);
}

bool isOneFile(const Options& options)
{
    return options.paths.size() == 1 && !isDirectory(options.paths[0]);
}

void walk(const std::string& directory, const std::function<void(const std::string&)>& visit,
          const OnUnreadable& unreadable)
{
    const std::string base = withoutSlash(directory);
    for (const DirectoryEntry& entry : entriesOf(base, unreadable)) {
        const std::string path = pathIn(base, entry.name);
        if (entry.directory)
            walk(path, visit, unreadable);
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
    Reader(const Options& of, const VisitSource& toVisit)
        : options(of), visit(toVisit), others(of.kind), progress([&of] { return countFiles(of); })
    {
    }

    void readFile(const std::string& path, bool named);
    void readDirectory(const std::string& path);
    Status finish();

  private:
    void fail(const std::string& why);

    const Options& options;
    const VisitSource& visit;
    OtherFiles others;
    Progress progress;
    Source source;
    Status status = AllWell;
    size_t found = 0; /* files that were visited or could not be read */
};

void Reader::readFile(const std::string& path, bool named)
{
    try {
        source.named = named;
        readSource(path, source);
        const Detection detection = detectKind(source.bytes, options.kind);
        if (others.wants(source, detection)) {
            ++found;
            status = worse(status, visit(source, detection));
        } else {
            others.add(source.name);
        }
    } catch (const Failure& failure) {
        fail(failure.what());
    }
    progress.step();
}

void Reader::readDirectory(const std::string& path)
{
    const size_t before = found;
    walk(
        path, [&](const std::string& file) { readFile(file, false); },
        [&](const std::string& unread, const std::string& why) {
            fail("cannot read " + unread + ": " + why);
        });
    if (found == before)
        fail(fmt::format("{} has no {}; hidden files and links to directories are not read", path,
                         options.kind == nullptr ? "record files"
                                                 : std::string("files of kind ") + options.kind->name));
}

Status Reader::finish()
{
    others.report();
    return status;
}

void Reader::fail(const std::string& why)
{
    message(why);
    ++found;
    status = Unusable;
}

} // namespace

Status eachSource(const Options& options, const VisitSource& visit)
{
    Reader reader(options, visit);
    for (const std::string& path : options.paths) {
        if (isDirectory(path))
            reader.readDirectory(path);
        else
            reader.readFile(path, true);
    }
    return reader.finish();
}

Status eachRecordFile(const Options& options, const std::function<Status(Source&)>& visit)
{
    return eachSource(options, [&](Source& source, const Detection& detection) {
        source.kind = detection.kind;
        if (source.kind == nullptr && detection.content != Content::Empty)
            throw Failure(source.name + ": " + detection.reason());
        return visit(source);
    });
}

bool OtherFiles::wants(const Source& source, const Detection& detection) const
{
    if (source.named)
        return true;
    return asked == nullptr ? detection.isRecordFile() : detectKind(source.bytes).canBe(*asked);
}

void OtherFiles::add(const std::string& name)
{
    if (count++ < maxNames)
        names += (names.empty() ? "" : ", ") + name;
}

void OtherFiles::report() const
{
    if (count == 0)
        return;
    const std::string more = count > maxNames ? fmt::format(" and {} more", count - maxNames) : "";
    const char* const records = count == 1 ? "a record file" : "record files";
    const std::string what = asked == nullptr ? records : std::string("of kind ") + asked->name;
    message(fmt::format("{} {} not {}: {}{}", plural(count, "file"), count == 1 ? "is" : "are", what, names,
                        more));
}

} // namespace algdata
