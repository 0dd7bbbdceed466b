/* SPDX-License-Identifier: Apache-2.0 */
#include "sql/files.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <sys/stat.h>

#include <fmt/format.h>

#include "reading/walk.h"

namespace algdata
{

/* ---- The set of files --------------------------------------------------- */

QueryFiles::QueryFiles(std::vector<std::string> paths, std::vector<PathTemplate> all, const Kind* otherwise)
    : allTemplates(std::move(all)), fixed(otherwise)
{
    for (std::string& path : paths) {
        struct stat status;
        if (path != "-" && stat(path.c_str(), &status) != 0)
            throw Failure(fmt::format("cannot read {}: {}", path, std::strerror(errno)));
        allRoots.push_back(withoutSlash(std::move(path)));
    }
    for (const PathTemplate& one : allTemplates) {
        std::vector<size_t>& columns = columnAt.emplace_back();
        for (const std::string& name : one.names()) {
            const auto found = std::find(allColumns.begin(), allColumns.end(), name);
            columns.push_back(static_cast<size_t>(found - allColumns.begin()));
            if (found == allColumns.end())
                allColumns.push_back(name);
        }
    }
}

/* ---- Filtering ---------------------------------------------------------- */

namespace
{

bool allows(const Allowed& allowed, const std::string& value)
{
    return !allowed || std::binary_search(allowed->begin(), allowed->end(), value);
}

} // namespace

bool FileFilter::accepts(const FoundFile& file) const
{
    if (kind != nullptr && file.kind != nullptr && file.kind != kind)
        return false;
    if (!allows(paths, file.path))
        return false;
    for (size_t i = 0; i < columns.size(); ++i)
        if (columns[i] && (!file.columns[i] || !allows(columns[i], *file.columns[i])))
            return false;
    return true;
}

/* ---- Walking ------------------------------------------------------------ */

FileWalk::FileWalk(const QueryFiles& set, FileFilter asked, OnProblem whenProblem,
                   std::function<bool()> stopping)
    : files(set), filter(std::move(asked)), problem(std::move(whenProblem)),
      unreadable([this](const std::string& path, const std::string& why) {
          problem(Unusable, path, "cannot read " + path + ": " + why);
      }),
      stop(std::move(stopping)), narrow(std::any_of(filter.columns.begin(), filter.columns.end(),
                                                    [](const Allowed& one) { return one.has_value(); }))
{
}

/* The values of a file follow from the first template that matches its path. Returns whether one does. */
bool FileWalk::setColumns(const std::string& relative, FoundFile& file) const
{
    file.columns.assign(files.columns().size(), std::nullopt);
    file.kind = files.kind();
    for (size_t i = 0; i < files.templates().size(); ++i) {
        const std::optional<PathTemplate::Values> values = files.templates()[i].parse(relative);
        if (!values)
            continue;
        for (size_t name = 0; name < values->size(); ++name)
            file.columns[files.columnsOf(i)[name]] = (*values)[name];
        if (files.templates()[i].kind() != nullptr)
            file.kind = files.templates()[i].kind();
        return true;
    }
    return false;
}

bool FileWalk::visit(const std::string& path, const std::string& relative, FoundFile& file)
{
    ++seen;
    file.root = root;
    file.path = path;
    file.archive.clear();
    file.member.clear();
    file.reader = nullptr;
    fits += setColumns(relative, file) ? 1 : 0;
    if (!filter.accepts(file))
        return false;
    ++taken;
    return true;
}

/*
 * The templates with the values that the filter asks for: one for each value of a
 * column, as long as there are not too many. A template without such a column cannot match.
 */
std::vector<FileWalk::Alive> FileWalk::aliveAtRoot() const
{
    constexpr size_t maxAlive = 1000;
    std::vector<Alive> all;
    for (size_t i = 0; narrow && i < files.templates().size(); ++i) {
        const std::vector<size_t>& columns = files.columnsOf(i);
        std::vector<Alive> some = {{i, PathTemplate::Values(columns.size())}};
        for (size_t column = 0; column < filter.columns.size(); ++column) {
            const auto name = std::find(columns.begin(), columns.end(), column);
            if (filter.columns[column] && name == columns.end())
                some.clear();
            if (!filter.columns[column] || name == columns.end() ||
                some.size() * filter.columns[column]->size() > maxAlive)
                continue;
            std::vector<Alive> expanded;
            for (const Alive& alive : some)
                for (const std::string& value : *filter.columns[column]) {
                    expanded.push_back(alive);
                    expanded.back().values[static_cast<size_t>(name - columns.begin())] = value;
                }
            some = std::move(expanded);
        }
        all.insert(all.end(), some.begin(), some.end());
    }
    return all;
}

/* The names that can matter in a directory, if they follow from the filter; null if it must be listed. */
std::optional<std::vector<std::string>> FileWalk::onlyNames(const Level& level) const
{
    std::vector<std::string> names;
    const std::string base = level.path == "/" ? "/" : level.path + "/";
    for (size_t i = 0; filter.paths && i < filter.paths->size(); ++i) {
        const std::string& path = (*filter.paths)[i];
        if (path.compare(0, base.size(), base) == 0)
            names.push_back(path.substr(base.size(), path.find('/', base.size()) - base.size()));
    }
    if (!filter.paths && !narrow)
        return std::nullopt;
    for (size_t i = 0; !filter.paths && i < level.alive.size(); ++i) {
        const PathTemplate& one = files.templates()[level.alive[i].which];
        const std::optional<std::string> name = one.build(levels.size(), level.alive[i].values);
        if (!name)
            return std::nullopt;
        names.push_back(*name);
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

void FileWalk::startLevel(std::string path, std::string relative, std::vector<Alive> alive)
{
    Level level = {std::move(path), std::move(relative), {}, std::move(alive), 0};
    if (const auto names = onlyNames(level)) {
        for (const std::string& name : *names)
            if (auto entry = entryNamed(level.path, name, unreadable))
                level.entries.push_back(std::move(*entry));
    } else {
        level.entries = entriesOf(level.path, unreadable);
    }
    levels.push_back(std::move(level));
}

/* The templates that still match after this entry. A file must end its template; a directory, or archive,
 * must not. */
std::vector<FileWalk::Alive> FileWalk::aliveAfter(const Level& level, const DirectoryEntry& entry) const
{
    std::vector<Alive> after;
    const size_t depth = levels.size() - 1;
    const bool holds = entry.directory || namesArchive(entry.name);
    for (const Alive& alive : level.alive) {
        const PathTemplate& one = files.templates()[alive.which];
        Alive next = alive;
        if ((depth + 1 == one.depth()) != holds && one.match(depth, entry.name, next.values))
            after.push_back(std::move(next));
    }
    return after;
}

bool FileWalk::next(FoundFile& file)
{
    for (;;) {
        if (stop && stop())
            return false;
        if (archive != nullptr) {
            if (nextMember(file))
                return true;
        } else if (!levels.empty()) {
            if (nextEntry(file))
                return true;
        } else if (root == files.roots().size()) {
            return false;
        } else {
            const std::string& path = files.roots()[root++];
            if (isDirectory(path))
                startLevel(path, "", aliveAtRoot());
            else if (namesArchive(path))
                startArchive(path, "");
            else if (visit(path, path.substr(path.rfind('/') + 1), file))
                return true;
        }
    }
}

/* Goes to the next entry of the deepest directory. Returns whether it is a file that the filter accepts. */
bool FileWalk::nextEntry(FoundFile& file)
{
    Level& level = levels.back();
    if (level.at == level.entries.size()) {
        levels.pop_back();
        return false;
    }
    const DirectoryEntry& entry = level.entries[level.at++];
    const std::string path = pathIn(level.path, entry.name);
    const std::string relative = level.relative + entry.name;
    std::vector<Alive> alive = aliveAfter(level, entry);
    if (narrow && alive.empty())
        return false;
    if (entry.directory)
        startLevel(path, relative + "/", std::move(alive));
    else if (namesArchive(path))
        startArchive(path, relative + "/");
    else
        return visit(path, relative, file);
    return false;
}

/* ---- Archives ----------------------------------------------------------- */

void FileWalk::startArchive(const std::string& path, const std::string& relative)
{
    const std::string base = path + "/";
    const auto isIn = [&](const std::string& wanted) { return wanted.compare(0, base.size(), base) == 0; };
    if (filter.paths && std::none_of(filter.paths->begin(), filter.paths->end(), isIn))
        return;
    archivePath = path;
    archiveRelative = relative;
    try {
        archive = std::make_unique<ArchiveReader>(path);
    } catch (const Failure& failure) {
        problem(Unusable, path, failure.what());
    }
}

/* Goes to the next member of the archive. Returns whether the filter accepts it. */
bool FileWalk::nextMember(FoundFile& file)
{
    try {
        Member member;
        if (!archive->next(member)) {
            const std::string links = archive->linksLeftOut();
            if (!links.empty())
                problem(AllWell, archivePath, links);
            archive.reset();
            return false;
        }
        if (!visit(archivePath + "/" + member.name, archiveRelative + member.name, file))
            return false;
        file.archive = archivePath;
        file.member = member.name;
        file.modified = member.modified;
        file.reader = archive.get();
        return true;
    } catch (const Failure& failure) {
        problem(Unusable, archivePath, failure.what());
        return false;
    }
}

/* ---- Reading ------------------------------------------------------------ */

namespace
{

void readBytes(const FoundFile& found, OpenFile& file)
{
    if (found.reader != nullptr) {
        file.source.name = found.path;
        found.reader->read(file.source.bytes);
        file.modified = found.modified;
        return;
    }
    readSource(found.path, file.source);
    struct stat status = {};
    stat(found.path.c_str(), &status);
    file.modified = status.st_mtime;
}

std::shared_ptr<const OpenFile> readFile(const FoundFile& found)
{
    auto file = std::make_shared<OpenFile>();
    file->source.named = false;
    try {
        readBytes(found, *file);
        file->detection = detectKind(file->source.bytes, found.kind);
        file->source.kind = file->detection.kind;
        file->size = file->source.bytes.size();
    } catch (const Failure& failure) {
        file->source.bytes.clear();
        file->failure = failure.what();
    }
    return file;
}

} // namespace

std::shared_ptr<const OpenFile> FileCache::open(const FoundFile& found)
{
    const auto known = byPath.find(found.path);
    if (known != byPath.end()) {
        latest.splice(latest.begin(), latest, known->second);
        return known->second->second;
    }
    if (found.path == "-" && standardInput != nullptr)
        return standardInput;
    ++reads;
    std::shared_ptr<const OpenFile> file = readFile(found);
    if (found.path == "-")
        standardInput = file; /* it cannot be read again */
    else
        add(found.path, file);
    return file;
}

void FileCache::add(const std::string& path, std::shared_ptr<const OpenFile> file)
{
    if (file->source.bytes.size() > maxBytes / 4)
        return;
    bytes += file->source.bytes.size();
    latest.emplace_front(path, std::move(file));
    byPath[path] = latest.begin();
    while (latest.size() > maxFiles || bytes > maxBytes) {
        bytes -= latest.back().second->source.bytes.size();
        byPath.erase(latest.back().first);
        latest.pop_back();
    }
}

void FileCache::clear()
{
    latest.clear();
    byPath.clear();
    bytes = 0;
    reads = 0;
}

} // namespace algdata
