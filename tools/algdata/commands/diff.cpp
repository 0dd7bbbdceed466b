/* SPDX-License-Identifier: Apache-2.0 */
/* `algdata diff`: which records came, went and changed. */
#include <algorithm>
#include <deque>
#include <map>

#include <fmt/format.h>

#include "commands/commands.h"
#include "output/table.h"
#include "query/query.h"
#include "reading/detect.h"
#include "reading/keys.h"
#include "reading/walk.h"

namespace algdata
{

namespace
{

/* What is compared: a record, or one entry of it. */
struct Item {
    std::string key; /* "deviceMAC 112233445566" */
    std::vector<std::string> values;
    bool entry = false;
};

struct Change {
    const char* what; /* "came", "went" or "changed" */
    std::string key;
    std::string field;
    std::string before;
    std::string after;
};

struct Counts {
    size_t came = 0;
    size_t went = 0;
    size_t changed = 0;
    size_t files = 0; /* that came or went */
};

/* ---- Items -------------------------------------------------------------- */

/* In order of the picks; a position is no content. */
std::vector<std::string> valuesOf(const std::vector<Pick>& picks, const std::vector<Token>& cells)
{
    std::vector<std::string> values;
    for (const Pick& pick : picks) {
        std::string value;
        for (const size_t column : pick.columns)
            value += (value.empty() ? "" : " ") + printable(present(cells[column]) ? cells[column] : "-");
        values.push_back(pick.field->position ? "" : value);
    }
    return values;
}

std::vector<Item> itemsOf(const Source& source, const Options& options, const Selection& selection)
{
    std::vector<Item> items;
    const Kind& kind = *source.kind;
    eachRecord(source, options, [&](const Record& record) {
        const std::string key = keyText(kind.head, record.cells);
        items.push_back({key.empty() ? "the header" : key, valuesOf(selection.head, record.cells)});
        for (const std::vector<Token>& entry : record.entries)
            items.push_back({key + (key.empty() ? "" : " ") + keyText(kind.entry, entry),
                             valuesOf(selection.entry, entry), true});
    });
    return items;
}

/* ---- Comparing ---------------------------------------------------------- */

using Places = std::map<std::string, std::deque<size_t>>;

std::string contentOf(const Item& item)
{
    std::string content = item.key;
    for (const std::string& value : item.values)
        content += "\n" + value;
    return content;
}

/* Pairs items by a name that both sides give them, each one once, in order. */
template <typename Name>
void pairUp(const std::vector<Item>& before, const std::vector<Item>& after, std::vector<size_t>& partner,
            std::vector<bool>& taken, Name name)
{
    Places places;
    for (size_t i = 0; i < after.size(); ++i)
        if (!taken[i])
            places[name(after[i])].push_back(i);
    for (size_t i = 0; i < before.size(); ++i) {
        const auto at = partner[i] == SIZE_MAX ? places.find(name(before[i])) : places.end();
        if (at == places.end() || at->second.empty())
            continue;
        partner[i] = at->second.front();
        taken[partner[i]] = true;
        at->second.pop_front();
    }
}

void addChanges(const Item& before, const Item& after, const Selection& selection,
                std::vector<Change>& changes)
{
    const std::vector<Pick>& picks = before.entry ? selection.entry : selection.head;
    for (size_t i = 0; i < before.values.size(); ++i)
        if (before.values[i] != after.values[i])
            changes.push_back({"changed", before.key, picks[i].name, before.values[i], after.values[i]});
}

/* Equal records first, so that in a history only what is new remains to be told. */
std::vector<Change> compareItems(const std::vector<Item>& before, const std::vector<Item>& after,
                                 const Selection& selection)
{
    std::vector<size_t> partner(before.size(), SIZE_MAX);
    std::vector<bool> taken(after.size(), false);
    pairUp(before, after, partner, taken, contentOf);
    pairUp(before, after, partner, taken, [](const Item& item) { return item.key; });
    std::vector<Change> changes;
    for (size_t i = 0; i < before.size(); ++i) {
        if (partner[i] == SIZE_MAX)
            changes.push_back({"went", before[i].key, "", "", ""});
        else
            addChanges(before[i], after[partner[i]], selection, changes);
    }
    for (size_t i = 0; i < after.size(); ++i)
        if (!taken[i])
            changes.push_back({"came", after[i].key, "", "", ""});
    return changes;
}

/* ---- Printing ----------------------------------------------------------- */

/* One line per record: its changed fields side by side. */
void printChanges(Output& out, const std::vector<Change>& changes)
{
    for (size_t i = 0; i < changes.size();) {
        const Change& first = changes[i];
        const bool came = first.what[0] == 'c' && first.what[1] == 'a';
        const bool went = first.what[0] == 'w';
        out.put(fmt::format("  {}{} {:<7}{} {}",
                            came   ? out.green()
                            : went ? out.red()
                                   : out.yellow(),
                            came   ? "+"
                            : went ? "-"
                                   : "~",
                            first.what, out.plain(), first.key));
        std::string fields;
        for (; i < changes.size() && changes[i].key == first.key && changes[i].what == first.what &&
               !changes[i].field.empty();
             ++i)
            fields += fmt::format("{} {} {} -> {}", fields.empty() ? ":" : ",", changes[i].field,
                                  changes[i].before, changes[i].after);
        i += first.field.empty() ? 1 : 0;
        out.put(fields + "\n");
    }
}

Rows emptyRows()
{
    Rows rows;
    for (const char* name : {"kind", "file", "change", "key", "field", "old", "new"})
        rows.addColumn(name);
    return rows;
}

/* Where a file is. */
struct Sides {
    bool before = false;
    bool after = false;
};

/* Whether the path is this directory, or lies below it. */
bool isBelow(const std::string& path, const std::string& directory)
{
    return path.compare(0, directory.size(), directory) == 0 &&
           (path.size() == directory.size() || directory.empty() || path[directory.size()] == '/');
}

class Differ
{
  public:
    Differ(Output& output, const Options& commonOptions)
        : out(output), options(commonOptions), rows(emptyRows())
    {
    }

    void compareFiles(const std::string& before, const std::string& after, const std::string& name);
    void compareDirectories(const std::string& before, const std::string& after);
    Status finish();

  private:
    bool asText() const { return options.format == Format::Text; }
    std::map<std::string, Sides> listDirectories(const std::string& before, const std::string& after);
    void fileOnly(const char* what, const std::string& path, const std::string& name);
    void add(const Kind& kind, const std::string& name, const std::string& title,
             const std::vector<Change>& changes);

    Output& out;
    const Options& options;
    Rows rows;
    Counts counts;
    bool inDirectories = false;
    OtherFiles others;
    Status status = AllWell;
};

/* Both get one kind; a file without records is of the other one's. False where there are no records at all.
 */
bool settleKinds(Source& before, const Detection& old, Source& after, const Detection& fresh)
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
        throw Failure(fmt::format("cannot compare {}, which is {}, and {}, which is {}", before.name,
                                  before.kind->name, after.name, after.kind->name));
    return true;
}

void Differ::compareFiles(const std::string& before, const std::string& after, const std::string& name)
{
    Source old;
    Source fresh;
    readSource(before, old);
    readSource(after, fresh);
    const Detection oldContent = detectKind(old.bytes, options.kind);
    const Detection freshContent = detectKind(fresh.bytes, options.kind);
    if (inDirectories && !oldContent.isRecordFile() && !freshContent.isRecordFile()) {
        others.add(after);
        return;
    }
    if (!settleKinds(old, oldContent, fresh, freshContent))
        return;
    const Selection selection = selectionFor(*old.kind, options);
    const std::vector<Change> changes =
        compareItems(itemsOf(old, options, selection), itemsOf(fresh, options, selection), selection);
    add(*old.kind, name, old.name + " -> " + fresh.name, changes);
}

void Differ::add(const Kind& kind, const std::string& name, const std::string& title,
                 const std::vector<Change>& changes)
{
    std::string lastChanged;
    for (const Change& change : changes) {
        const std::string what = change.what;
        counts.came += what == "came" ? 1 : 0;
        counts.went += what == "went" ? 1 : 0;
        counts.changed += what == "changed" && change.key != lastChanged ? 1 : 0;
        lastChanged = what == "changed" ? change.key : "";
        rows.addRow({kind.name, name, what, change.key, change.field, change.before, change.after});
    }
    if (!asText() || changes.empty())
        return;
    out.put(fmt::format("{}{}: {}{}\n", out.bold(), kind.name, printable(title), out.plain()));
    printChanges(out, changes);
}

void Differ::fileOnly(const char* what, const std::string& path, const std::string& name)
{
    Source source;
    readSource(path, source);
    if (!detectKind(source.bytes, options.kind).isRecordFile()) {
        others.add(path);
        return;
    }
    ++counts.files;
    rows.addRow({"", name, what, "", "", "", ""});
    if (asText())
        out.put(fmt::format("{}{}: {}{}\n", out.bold(), what, printable(name), out.plain()));
}

/*
 * The files below both directories, by their names below them. What one side
 * could not list has neither come nor gone, so it is left out on both sides.
 */
std::map<std::string, Sides> Differ::listDirectories(const std::string& before, const std::string& after)
{
    std::map<std::string, Sides> names;
    std::vector<std::string> unread;
    for (const bool old : {true, false}) {
        const std::string& directory = old ? before : after;
        const auto listed = [&](const std::string& path) {
            Sides& sides = names[path.substr(directory.size())];
            (old ? sides.before : sides.after) = true;
        };
        const auto unreadable = [&](const std::string& path, const std::string& why) {
            message(fmt::format("cannot read {}: {}", path, why));
            status = Unusable;
            unread.push_back(path.substr(directory.size()));
        };
        walk(directory, listed, unreadable);
    }
    for (const std::string& path : unread)
        for (auto at = names.begin(); at != names.end();)
            at = isBelow(at->first, path) ? names.erase(at) : std::next(at);
    return names;
}

void Differ::compareDirectories(const std::string& before, const std::string& after)
{
    inDirectories = true;
    for (const auto& [name, sides] : listDirectories(before, after)) {
        const std::string shown = name.substr(name.find_first_not_of('/'));
        try {
            if (!sides.after)
                fileOnly("file went", before + name, shown);
            else if (!sides.before)
                fileOnly("file came", after + name, shown);
            else
                compareFiles(before + name, after + name, shown);
        } catch (const Failure& failure) {
            message(failure.what());
            status = Unusable;
        }
    }
    others.report();
}

Status Differ::finish()
{
    if (asText()) {
        const size_t all = counts.came + counts.went + counts.changed + counts.files;
        if (all == 0)
            out.put(status == AllWell ? "no differences\n" : "no differences in what could be compared\n");
        else
            out.put(fmt::format(
                "{} came, {} went, {} changed{}\n", counts.came, counts.went, counts.changed,
                counts.files == 0 ? "" : fmt::format("; {} files on one side only", counts.files)));
    } else {
        Options plain = options;
        plain.columns.clear();
        rows.print(out, plain);
    }
    return worse(status, rows.all().empty() ? AllWell : Findings);
}

std::string withoutSlashes(std::string path)
{
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    return path;
}

} // namespace

Status runDiff(Options options)
{
    requireFields(options);
    const std::string before = withoutSlashes(options.paths[0]);
    const std::string after = withoutSlashes(options.paths[1]);
    if (isDirectory(before) != isDirectory(after))
        throw Failure("diff takes two files or two directories, not one of each");
    if (before == "-" && after == "-")
        throw Failure("diff can read only one side from standard input");
    Output out(options);
    Differ differ(out, options);
    if (isDirectory(before))
        differ.compareDirectories(before, after);
    else
        differ.compareFiles(before, after, after);
    const Status status = differ.finish();
    out.close(status);
    return status;
}

} // namespace algdata
