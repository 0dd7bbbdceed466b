/* SPDX-License-Identifier: Apache-2.0 */
#include "mesh/homes.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <tuple>
#include <unordered_set>

#include <fmt/format.h>

#include "output/output.h"
#include "reading/configuration.h"
#include "reading/pathTemplate.h"
#include "reading/walk.h"
#include "text/wording.h"

namespace algdata
{

namespace fs = std::filesystem;

namespace
{

/* Without "." and "..", so that a directory has one name. */
std::string normal(const std::string& path)
{
    std::string text = fs::path(path).lexically_normal().string();
    while (text.size() > 1 && text.back() == '/')
        text.pop_back();
    return text == "." ? "" : text;
}

/* Empty for a file of the current directory. */
std::string directoryOf(const std::string& normalPath)
{
    return fs::path(normalPath).parent_path().string();
}

bool isInside(const std::string& path, const std::string& directory)
{
    if (path.compare(0, directory.size(), directory) != 0)
        return false;
    return directory.empty() || directory.back() == '/' || path.size() == directory.size() ||
           path[directory.size()] == '/';
}

/* What the path of a file says. */
struct Address {
    std::string root;   /* the directory that has all files of the home */
    std::string values; /* of --path, as far as the root does not show them */
    std::optional<Mac> owner;
    const Kind* kind = nullptr;

    bool operator<(const Address& other) const
    {
        return std::tie(root, values) < std::tie(other.root, other.values);
    }
    std::string name() const
    {
        const std::string directory = root.empty() ? "." : root;
        return values.empty() ? directory : directory + " " + values;
    }
};

/*
 * The root ends with the last component that has a name other than {device}. If this is the name of the
 * file, the root is its directory, and the values tell the homes of the directory apart.
 */
class AddressParser
{
  public:
    AddressParser(const PathTemplate& by, const std::string& of) : like(by), path(of) {}

    /* Null if the path does not match. */
    std::optional<Address> parse()
    {
        const std::string_view end = endOfPath(path, like);
        const std::vector<std::string_view> parts = componentsOf(end);
        if (parts.size() != like.depth())
            return std::nullopt;
        PathTemplate::Values values(like.names().size());
        for (size_t at = 0; at < parts.size(); ++at) {
            const PathTemplate::Values before = values;
            if (!like.match(at, parts[at], values))
                return std::nullopt;
            for (size_t i = 0; i < values.size(); ++i)
                if (values[i] && !before[i])
                    addValue(like.names()[i], *values[i], at);
        }
        const size_t start = path.size() - end.size();
        size_t length = start;
        for (size_t at = 0; at < rootParts || (rootParts == 0 && at + 1 < parts.size()); ++at)
            length = start + static_cast<size_t>(parts[at].data() + parts[at].size() - end.data());
        while (length > 1 && path[length - 1] == '/')
            --length;
        address.root = path.substr(0, length);
        address.kind = like.kind();
        return address;
    }

  private:
    void addValue(const std::string& name, const std::string& value, size_t at)
    {
        const bool ofFile = at + 1 == like.depth();
        if (name == "device") {
            address.owner = macFrom(value);
            return;
        }
        rootParts = ofFile ? at : at + 1;
        if (ofFile)
            address.values += (address.values.empty() ? "" : " ") + name + "=" + value;
    }

    const PathTemplate& like;
    const std::string& path;
    Address address;
    size_t rootParts = 0; /* components of the template in the root */
};

class Homes
{
  public:
    Homes(const Options& from, const VisitHome& toVisit, const VisitHomeFile& toVisitFile)
        : options(from), visit(toVisit), visitFile(toVisitFile)
    {
        for (const std::string& text : options.templates)
            templates.emplace_back(text);
        for (const auto& [mac, name] : readConfiguration(options.configuration, options.paths).names)
            if (const std::optional<Mac> number = macFrom(mac))
                names[*number] = name;
    }
    Status run();

  private:
    struct Home {
        Mesh mesh;
        std::unordered_set<std::string> files;
    };

    Options inOrder() const;
    Address addressOf(const std::string& path) const;
    Status add(Source& source, const Detection& detection);
    void finish(const std::string& next);
    void finishHome(const Address& address, Home& home) const;

    const Options& options;
    const VisitHome& visit;
    const VisitHomeFile& visitFile;
    std::vector<PathTemplate> templates;
    std::unordered_map<Mac, std::string> names; /* of the configuration */
    std::map<Address, Home> open;
    std::string current; /* the root of the last file */
};

/* Named files of one directory have to follow each other. */
Options Homes::inOrder() const
{
    std::map<std::string, size_t> first;
    const auto placeOf = [&](const std::string& path) {
        const std::string name = normal(path);
        return first.try_emplace(isDirectory(path) ? name : addressOf(name).root, first.size()).first->second;
    };
    Options ordered = options;
    std::vector<std::pair<size_t, std::string>> paths;
    for (const std::string& path : options.paths)
        paths.emplace_back(placeOf(path), path);
    std::stable_sort(paths.begin(), paths.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    for (size_t i = 0; i < paths.size(); ++i)
        ordered.paths[i] = paths[i].second;
    return ordered;
}

Address Homes::addressOf(const std::string& path) const
{
    for (const PathTemplate& like : templates) {
        if (std::optional<Address> address = AddressParser(like, path).parse()) {
            if (!address->owner)
                address->owner = macInName(path);
            return *address;
        }
    }
    return {directoryOf(path), "", macInName(path), nullptr};
}

Status Homes::add(Source& source, const Detection& detection)
{
    const std::string path = normal(source.name);
    const Address address = addressOf(path);
    const bool stated = address.kind != nullptr && detection.content == Content::Records;
    const Kind* kind = stated ? address.kind : detection.kind;
    if (kind == nullptr && detection.content == Content::Empty && !visitFile)
        return AllWell;
    if (kind == nullptr && !visitFile)
        throw Failure(source.name + ": " + detection.reason());
    if (address.root != current)
        finish(address.root);
    current = address.root;
    Home& home = open[address];
    if (home.files.empty())
        home.mesh.names = names;
    if (!home.files.insert(path).second)
        return AllWell;
    if (kind != nullptr)
        home.mesh.add(source, *kind, address.owner);
    if (visitFile)
        visitFile(address.name(), source, kind, detection, home.mesh);
    return AllWell;
}

/* Visits the homes that cannot have another file, because `next` is outside their directory. */
void Homes::finish(const std::string& next)
{
    for (auto at = open.begin(); at != open.end();) {
        if (isInside(next, at->first.root)) {
            ++at;
            continue;
        }
        finishHome(at->first, at->second);
        at = open.erase(at);
    }
}

void Homes::finishHome(const Address& address, Home& home) const
{
    home.mesh.settle();
    if (home.mesh.damaged != 0)
        message(fmt::format("{}: {} without a valid MAC {} left out (`algdata check` lists them)",
                            address.name(), plural(home.mesh.damaged, "record"),
                            home.mesh.damaged == 1 ? "is" : "are"));
    visit(address.name(), home.mesh);
}

Status Homes::run()
{
    const Status status = eachSource(
        inOrder(), [&](Source& source, const Detection& detection) { return add(source, detection); });
    for (auto& [address, home] : open)
        finishHome(address, home);
    return status;
}

} // namespace

Status eachHome(const Options& options, const VisitHome& visit, const VisitHomeFile& visitFile)
{
    return Homes(options, visit, visitFile).run();
}

} // namespace algdata
