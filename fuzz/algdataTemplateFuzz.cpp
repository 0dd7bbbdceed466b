/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Parses and builds paths with a template, and walks a small directory with a filter.
 * The first line of the input is the template, the second a path, the third the only
 * path that the filter allows, where an empty one allows all. The other lines are the
 * values that the filter allows for each name of the template: "+a+b" are two, and
 * an empty line allows all.
 */
#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "sql/files.h"
#include "support/sampleTree.h"

using namespace algdata;

namespace
{

void expect(bool holds)
{
    if (!holds)
        abort();
}

std::vector<std::string> split(const std::string& text, char separator)
{
    std::vector<std::string> parts(1);
    for (const char c : text)
        if (c == separator)
            parts.emplace_back();
        else
            parts.back() += c;
    return parts;
}

/* ---- Parsing and building ----------------------------------------------- */

/* What a path was parsed into matches again and builds the same path. */
void testParsed(const PathTemplate& like, const std::string& path, const PathTemplate::Values& values)
{
    const std::vector<std::string_view> components = componentsOf(path);
    expect(components.size() == like.depth() && values.size() == like.names().size());
    for (size_t name = 0; name < values.size(); ++name)
        expect(values[name] && !values[name]->empty() && like.componentOf(name) < like.depth());
    for (size_t at = 0; at < components.size(); ++at) {
        PathTemplate::Values same = values;
        expect(like.match(at, components[at], same) && same == values);
        const std::optional<std::string> built = like.build(at, values);
        expect(!built || *built == components[at]);
    }
    expect(endOfPath("/any/" + path, like) == path);
}

/* A mismatch leaves the values unchanged. */
void testPath(const PathTemplate& like, const std::string& path)
{
    if (const std::optional<PathTemplate::Values> values = like.parse(path)) {
        testParsed(like, path, *values);
        return;
    }
    PathTemplate::Values values(like.names().size());
    const std::vector<std::string_view> components = componentsOf(path);
    for (size_t at = 0; at < std::min(components.size(), like.depth()); ++at) {
        const PathTemplate::Values before = values;
        expect(like.match(at, components[at], values) || values == before);
    }
}

/* ---- Walking ------------------------------------------------------------ */

const SampleTree& sampleTree()
{
    static const SampleTree tree(
        {{"h1/a/score_re_x.txt", ""},
         {"h1/a/rank.txt", ""},
         {"h1/b-c-b/score_re_y.txt", ""},
         {"h2/a/score_re_x.txt", ""},
         {"h2/a/x.txt/deep/deeper", ""},
         {"a-b-c-d", ""},
         {"aaaa", ""},
         {"a/a/a", ""},
         {"*/{b}/new\nline", ""},
         {"\xff/'\"", ""},
         {"h3.tar", tarOf({{"a/score_re_x.txt", ""}, {"a/b/rank.txt", ""}, {"aaaa", ""}})},
         {"h1/a/all.tar", tarOf({{"rank.txt", ""}, {"a/rank.txt", ""}})}});
    return tree;
}

/* The paths of a walk. Those of the full walk are narrowed by the filter afterwards. */
std::vector<std::string> pathsOf(const QueryFiles& files, const FileFilter& filter, bool full)
{
    FileFilter all;
    all.columns.resize(filter.columns.size());
    FileWalk walk(files, full ? all : filter, [](Status, const std::string&, const std::string&) { abort(); },
                  {});
    std::vector<std::string> paths;
    for (FoundFile file; walk.next(file);)
        if (!full || filter.accepts(file))
            paths.push_back(file.path);
    expect(walk.accepted() <= walk.considered());
    return paths;
}

void testWalk(const PathTemplate& like, const std::vector<std::string>& lines)
{
    const std::string& root = sampleTree().path();
    const QueryFiles files({root}, {like, PathTemplate("{home}/{night}/*.txt")}, nullptr);
    FileFilter filter;
    filter.columns.resize(files.columns().size());
    if (lines.size() > 2 && !lines[2].empty())
        filter.paths = {root + "/" + lines[2]};
    for (size_t i = 3; i < lines.size() && i - 3 < filter.columns.size(); ++i) {
        std::vector<std::string> values = split(lines[i], '+');
        values.erase(values.begin());
        std::sort(values.begin(), values.end());
        if (!lines[i].empty())
            filter.columns[i - 3] = values;
    }
    expect(pathsOf(files, filter, false) == pathsOf(files, filter, true));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::vector<std::string> lines =
        split(std::string(reinterpret_cast<const char*>(data), size), '\n');
    try {
        const PathTemplate like(lines[0]);
        if (lines.size() > 1)
            testPath(like, lines[1]);
        testWalk(like, lines);
    } catch (const Failure&) {
    }
    return 0;
}
