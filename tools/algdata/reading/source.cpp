/* SPDX-License-Identifier: Apache-2.0 */
#include "reading/source.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "output/output.h"
#include "output/progress.h"
#include "reading/detect.h"

namespace algdata
{

namespace
{

/* No record file comes near it; an endless device would. */
constexpr size_t mostBytes = size_t(1) << 30;

void readAll(int fd, size_t expected, std::string& bytes, const std::string& name)
{
    size_t have = 0;
    /* One more than expected, so that the end shows without growing. */
    bytes.resize(std::min(expected, mostBytes) + 1);
    for (;;) {
        if (have == bytes.size())
            bytes.resize(have * 2 + 4096);
        const ssize_t got = read(fd, bytes.data() + have, bytes.size() - have);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            throw Failure("cannot read " + name + ": " + std::strerror(errno));
        if (got == 0)
            break;
        have += static_cast<size_t>(got);
        if (have > mostBytes)
            throw Failure("cannot read " + name + ": it is larger than a record file can be");
    }
    bytes.resize(have);
}

struct Descriptor {
    int fd;
    ~Descriptor()
    {
        if (fd > STDIN_FILENO)
            close(fd);
    }
};

bool isOrdinary(const dirent& entry, const std::string& path)
{
    if (entry.d_type == DT_REG)
        return true;
    struct stat status;
    return (entry.d_type == DT_UNKNOWN || entry.d_type == DT_LNK) && stat(path.c_str(), &status) == 0 &&
           S_ISREG(status.st_mode);
}

/* Links to directories are not followed, so that no walk goes in circles. */
bool isOwnDirectory(const dirent& entry, const std::string& path)
{
    if (entry.d_type != DT_UNKNOWN)
        return entry.d_type == DT_DIR;
    struct stat status;
    return lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

struct Entry {
    std::string name;
    bool directory;
};

std::vector<Entry> entriesOf(const std::string& directory)
{
    DIR* stream = opendir(directory.c_str());
    if (stream == nullptr)
        throw Failure("cannot read " + directory + ": " + std::strerror(errno));
    std::vector<Entry> entries;
    while (const dirent* entry = readdir(stream)) {
        const std::string path = directory + "/" + entry->d_name;
        if (entry->d_name[0] == '.')
            continue;
        const bool below = isOwnDirectory(*entry, path);
        if (below || isOrdinary(*entry, path))
            entries.push_back({entry->d_name, below});
    }
    closedir(stream);
    std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return a.name < b.name; });
    return entries;
}

std::string withoutSlash(std::string path)
{
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    return path;
}

size_t countFiles(const Options& options)
{
    size_t files = 0;
    for (const std::string& path : options.paths) {
        if (!isDirectory(path)) {
            ++files;
            continue;
        }
        try {
            walk(path, [&](const std::string&) { ++files; });
        } catch (const Failure&) {
            /* Reported when it is read. */
        }
    }
    return files;
}

} // namespace

void readSource(const std::string& path, Source& source)
{
    source.kind = nullptr;
    const bool standardInput = path == "-";
    source.name = standardInput ? "(standard input)" : path;
    const Descriptor file = {standardInput ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC)};
    struct stat status;
    if (file.fd < 0 || fstat(file.fd, &status) != 0)
        throw Failure("cannot read " + path + ": " + std::strerror(errno));
    if (S_ISDIR(status.st_mode))
        throw Failure("cannot read " + path + ": it is a directory");
    source.readable = !standardInput && S_ISREG(status.st_mode);
    readAll(file.fd, static_cast<size_t>(std::max<off_t>(status.st_size, 0)), source.bytes, source.name);
}

const Kind* kindOf(const Source& source, const Options& options)
{
    if (options.kind != nullptr)
        return options.kind;
    const Detection detection = detectKind(source.bytes);
    if (detection.kind == nullptr)
        message(source.name + ": " + detection.reason());
    return detection.kind;
}

bool isDirectory(const std::string& path)
{
    struct stat status;
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool manySources(const Options& options)
{
    return options.paths.size() > 1 || (options.paths.size() == 1 && isDirectory(options.paths[0]));
}

void walk(const std::string& directory, const std::function<void(const std::string&)>& visit)
{
    const std::string base = withoutSlash(directory);
    for (const Entry& entry : entriesOf(base)) {
        const std::string path = (base == "/" ? "" : base) + "/" + entry.name;
        if (entry.directory)
            walk(path, visit);
        else
            visit(path);
    }
}

Status eachSource(const Options& options, const std::function<Status(Source&)>& visit)
{
    Progress progress([&] { return countFiles(options); });
    Status status = AllWell;
    Source source;
    const auto one = [&](const std::string& path) {
        try {
            readSource(path, source);
        } catch (const Failure& failure) {
            message(failure.what());
            status = Unusable;
            return;
        }
        status = worse(status, visit(source));
        progress.step();
    };
    for (const std::string& path : options.paths) {
        try {
            if (isDirectory(path))
                walk(path, one);
            else
                one(path);
        } catch (const Failure& failure) {
            message(failure.what());
            status = Unusable;
        }
    }
    return status;
}

} // namespace algdata
