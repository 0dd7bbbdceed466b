/* SPDX-License-Identifier: Apache-2.0 */
/* `algdata diff`: which records were added, removed and changed. */
#include <cerrno>
#include <cstring>
#include <map>
#include <sys/stat.h>

#include <fmt/format.h>

#include "commands/commands.h"
#include "printing/differenceText.h"
#include "printing/table.h"
#include "query/visit.h"
#include "reading/damage.h"
#include "reading/detect.h"
#include "reading/fileSet.h"
#include "reading/walk.h"

namespace algdata
{

namespace
{

/* Counts all differences; --where, --head, --limit and --columns only affect `shown`. */
struct Counts {
    size_t added = 0;
    size_t removed = 0;
    size_t changed = 0;
    size_t shown = 0; /* records that are printed */
    size_t files = 0; /* files that only one side has */

    size_t records() const { return added + removed + changed; }
};

Rows emptyRows()
{
    Rows rows;
    for (const char* name : {"kind", "file", "change", "key", "field", "old", "new"})
        rows.addColumn(name);
    return rows;
}

/* The sides that have a file. */
struct Sides {
    bool before = false;
    bool after = false;
};

/* Whether the path is this directory or is below it. */
bool isBelow(const std::string& path, const std::string& directory)
{
    return path.compare(0, directory.size(), directory) == 0 &&
           (path.size() == directory.size() || directory.empty() || path[directory.size()] == '/');
}

/* The options for the rows of the result. --columns selects fields of records, not columns of the result. */
Options withoutColumns(Options options)
{
    options.columns.clear();
    return options;
}

class Differ
{
  public:
    Differ(Output& output, const Options& commonOptions)
        : out(output), options(commonOptions), filter(commonOptions),
          rows(output, withoutColumns(commonOptions), emptyRows()), others(commonOptions.kind)
    {
    }

    void compareFiles(const std::string& before, const std::string& after);
    void compareSets(const std::string& before, const std::string& after);
    Status finish();

  private:
    bool asText() const { return options.format == Format::Text; }
    std::map<std::string, Sides> namesOf(const FileSet& before, const FileSet& after) const;
    void compareOne(const FileSet& before, const FileSet& after, const std::string& name, Sides sides);
    void compare(Source& old, Source& fresh, const std::string& name);
    void fileOnly(const char* what, Source& source, const std::string& name);
    void printOne(const Difference& difference);

    /* The two files that are compared at the moment. */
    struct Pair {
        const Kind* kind = nullptr;
        std::string name;
        std::string title;
        size_t shown = 0;
    };

    Output& out;
    const Options& options;
    Filter filter;
    RowStream rows;
    Pair pair;
    Counts counts;
    bool inSets = false;
    std::vector<std::string> unread; /* names of directories and archives that cannot be read on one side */
    OtherFiles others;
    KindsRead kindsRead;
    Status status = AllWell;
};

/*
 * Sets the kind of both sources. A file without records gets the kind of the other one. Returns false
 * if neither has records. Throws Failure if a kind is unknown or the kinds differ.
 */
bool setKinds(Source& before, const Detection& old, Source& after, const Detection& fresh)
{
    if (old.hasNoRecords() && fresh.hasNoRecords())
        return false;
    if (!old.hasNoRecords() && old.kind == nullptr)
        throw Failure(before.name + ": " + old.reason());
    if (!fresh.hasNoRecords() && fresh.kind == nullptr)
        throw Failure(after.name + ": " + fresh.reason());
    before.kind = old.hasNoRecords() ? fresh.kind : old.kind;
    after.kind = fresh.hasNoRecords() ? old.kind : fresh.kind;
    if (before.kind != after.kind)
        throw Failure(fmt::format("cannot compare {} ({}) with {} ({}): expected files of one kind",
                                  before.name, before.kind->name, after.name, after.kind->name));
    return true;
}

void Differ::compareFiles(const std::string& before, const std::string& after)
{
    Source old;
    Source fresh;
    readSource(before, old);
    readSource(after, fresh);
    compare(old, fresh, after);
}

void Differ::compare(Source& old, Source& fresh, const std::string& name)
{
    const Detection oldContent = detectKind(old.bytes, options.kind);
    const Detection freshContent = detectKind(fresh.bytes, options.kind);
    old.named = fresh.named = !inSets;
    /* An empty file can be of any kind, so what the other one holds decides. */
    const bool oldFits = others.wants(old, oldContent);
    const bool freshFits = others.wants(fresh, freshContent);
    if ((!oldFits || isBlank(old.bytes)) && (!freshFits || isBlank(fresh.bytes)) && !(oldFits && freshFits)) {
        others.add(fresh.name);
        return;
    }
    if (!setKinds(old, oldContent, fresh, freshContent))
        return;
    if (inSets)
        kindsRead.add(*old.kind);
    else
        requireFieldsOf({old.kind}, options);
    View oldView(old, options.loaded);
    View newView(fresh, options.loaded);
    const Changes changes = changesBetween(*old.kind, oldView, newView);
    counts.added += changes.added.size();
    counts.removed += changes.removed.size();
    counts.changed += changes.changed.size() + (changes.countsDiffer() ? 1 : 0);
    for (const auto& [source, wrongLines] :
         {std::pair(&old, changes.wrongLinesBefore), std::pair(&fresh, changes.wrongLinesAfter)})
        if (wrongLines != 0) {
            message(wrongLinesText(source->name, wrongLines));
            status = worse(status, Findings);
        }
    pair = {old.kind, name, old.name + " -> " + fresh.name, 0};
    DifferenceTexts texts(old, fresh, filter, oldView, newView);
    texts.each(changes, [this](const Difference& difference) {
        if (filter.remaining() != 0 && pair.shown < options.head.value_or(SIZE_MAX))
            printOne(difference);
    });
}

/* As text, one line with all changed fields; otherwise one row per changed field. */
void Differ::printOne(const Difference& difference)
{
    ++counts.shown;
    filter.count(1);
    if (!asText()) {
        ++pair.shown;
        if (difference.fields.empty())
            rows.put({pair.kind->name, pair.name, difference.what, difference.key, "", "", ""});
        for (const Difference::Values& values : difference.fields)
            rows.put({pair.kind->name, pair.name, difference.what, difference.key, values.field,
                      values.before, values.after});
        return;
    }
    if (pair.shown++ == 0)
        out.put(fmt::format("{}{}: {}{}\n", out.bold(), pair.kind->name, printable(pair.title), out.plain()));
    out.put("  " + differenceText(difference, out) + "\n");
}

void Differ::fileOnly(const char* what, Source& source, const std::string& name)
{
    source.named = false;
    if (!others.wants(source, detectKind(source.bytes, options.kind))) {
        others.add(source.name);
        return;
    }
    ++counts.files;
    if (filter.remaining() == 0)
        return;
    filter.count(1);
    if (asText())
        out.put(fmt::format("{}{}: {}{}\n", out.bold(), what, printable(name), out.plain()));
    else
        rows.put({"", name, what, "", "", "", ""});
}

/*
 * The names of both sides. What cannot be read on one side is left out on both:
 * otherwise its files would be reported as added or removed.
 */
std::map<std::string, Sides> Differ::namesOf(const FileSet& before, const FileSet& after) const
{
    std::map<std::string, Sides> names;
    before.eachName([&](const std::string& name) { names[name].before = true; });
    after.eachName([&](const std::string& name) { names[name].after = true; });
    for (const std::string& path : unread)
        for (auto at = names.begin(); at != names.end();)
            at = isBelow(at->first, path) ? names.erase(at) : std::next(at);
    return names;
}

void Differ::compareSets(const std::string& before, const std::string& after)
{
    inSets = true;
    const auto list = [&](const std::string& root) {
        return FileSet(root, [&](const std::string& path, const std::string& why) {
            message(why);
            status = Unusable;
            unread.push_back(path.substr(root.size()));
        });
    };
    const FileSet old = list(before);
    const FileSet fresh = list(after);
    for (const auto& [name, sides] : namesOf(old, fresh)) {
        try {
            compareOne(old, fresh, name, sides);
        } catch (const Failure& failure) {
            printFailure(failure);
            status = Unusable;
        }
    }
    others.report();
    status = worse(status, kindsRead.requireFields(options));
}

void Differ::compareOne(const FileSet& before, const FileSet& after, const std::string& name, Sides sides)
{
    Source old;
    Source fresh;
    if (sides.before)
        before.read(name, old);
    if (sides.after)
        after.read(name, fresh);
    const std::string shown = name.substr(name.find_first_not_of('/'));
    if (!sides.after)
        fileOnly("file removed", old, shown);
    else if (!sides.before)
        fileOnly("file added", fresh, shown);
    else
        compare(old, fresh, shown);
}

Status Differ::finish()
{
    const bool same = counts.records() + counts.files == 0;
    if (!asText())
        rows.finish();
    else if (same)
        out.put(status == AllWell ? "no differences\n" : "no differences in what could be compared\n");
    else
        out.put(fmt::format(
            "{} added, {} removed, {} changed{}{}\n", counts.added, counts.removed, counts.changed,
            counts.shown == counts.records() ? "" : fmt::format("; {} shown", counts.shown),
            counts.files == 0 ? "" : fmt::format("; {} on one side only", plural(counts.files, "file"))));
    return worse(status, same ? AllWell : Findings);
}

void requireExists(const std::string& path)
{
    struct stat status;
    if (path != "-" && stat(path.c_str(), &status) != 0)
        throw Failure(fmt::format("cannot read {}: {}", path, std::strerror(errno)));
}

} // namespace

Status runDiff(Options options)
{
    requireFields(options);
    const std::string before = withoutSlash(options.paths[0]);
    const std::string after = withoutSlash(options.paths[1]);
    requireExists(before);
    requireExists(after);
    if (holdsFiles(before) != holdsFiles(after))
        throw Failure(fmt::format("diff: expected two files, or two directories or archives, found {} and {}",
                                  before, after));
    Output out(options);
    Differ differ(out, options);
    if (holdsFiles(before))
        differ.compareSets(before, after);
    else
        differ.compareFiles(before, after);
    const Status status = differ.finish();
    out.close(status);
    return status;
}

} // namespace algdata
