/* SPDX-License-Identifier: Apache-2.0 */
#include "sql/cursor.h"

#include <algorithm>
#include <iterator>
#include <tuple>

#include "text/hash.h"

namespace algdata
{

/* ---- Scanning ----------------------------------------------------------- */

void TableCursor::start(Scan asked)
{
    finishScan();
    scan = std::move(asked);
    scan.filter.kind = table.kind;
    file = FoundFile();
    isAhead = false;
    problems.clear();
    const auto whenProblem = [this](Status how, const std::string& path, const std::string& text) {
        if (how != Unusable)
            return engine.report(how, path, {text});
        reportUnreadable(path, text);
        if (table.row == RowOf::Error)
            problems.emplace_back(path, text);
    };
    walk = std::make_unique<FileWalk>(engine.files, scan.filter, whenProblem,
                                      [this] { return engine.stopping(); });
    meshes = std::make_unique<MeshWalk>(engine, *walk);
    name = engine.names.begin();
    part = parts = 0;
    ended = false;
    if (!table.isOfFiles())
        ended = name == engine.names.end();
    else
        next();
}

TableCursor::~TableCursor()
{
    try {
        finishScan();
    } catch (const std::exception&) {
        /* Without memory, the messages about the last file are lost. */
    }
}

void TableCursor::finishScan()
{
    endFile();
    if (walk != nullptr) {
        engine.considered += walk->considered();
        engine.accepted += walk->accepted();
        engine.matched += walk->matched();
    }
    meshes.reset();
    walk.reset();
}

void TableCursor::next()
{
    if (!table.isOfFiles())
        ended = ++name == engine.names.end();
    else
        ended = engine.stopping() || !nextRow();
}

/* Goes to the next row, in this file or in one of the next. */
bool TableCursor::nextRow()
{
    for (;;) {
        if (++part < parts)
            return true;
        part = 0;
        if (view != nullptr && nextRecord())
            return true;
        endFile();
        if (engine.stopping() || !(table.isOfMeshes() ? nextMesh() : nextFile()))
            return false;
        if (parts > 0)
            return true;
    }
}

/* Goes to the next file. The given content counts as one. */
bool TableCursor::findFile()
{
    if (scan.content == nullptr && !isAhead)
        return walk->next(file);
    if (scan.content == nullptr) {
        isAhead = false;
        file = ahead;
        return true;
    }
    const bool first = file.path.empty();
    file.path = scan.content->source.name;
    return first;
}

/* Goes to the next directory or archive that cannot be read, before the file after it. */
bool TableCursor::nextError()
{
    isAhead = isAhead || walk->next(ahead);
    if (problems.empty())
        return false;
    file = FoundFile();
    file.columns.resize(engine.files.columns().size());
    auto failed = std::make_shared<OpenFile>();
    std::tie(file.path, failed->failure) = std::move(problems.front());
    problems.pop_front();
    content = std::move(failed);
    parts = 1;
    return true;
}

/* Fails if nothing at all can be read, except in the tables that tell about it. */
void TableCursor::reportUnreadable(const std::string& path, const std::string& text)
{
    const bool all = file.path == path || walk->considered() == 0;
    if (path == engine.required && all && table.row != RowOf::File && table.row != RowOf::Error)
        throw Failure(text);
    engine.report(Unusable, path, {text});
}

/* Opens the next file. Sets `parts` to the number of its rows, or prepares the view of its records. */
bool TableCursor::nextFile()
{
    parts = 0;
    if (table.row == RowOf::Error && nextError())
        return true;
    if (!findFile())
        return false;
    if (engine.stepped)
        engine.stepped();
    records.reset();
    if (table.row == RowOf::File && !scan.needsContent) {
        content.reset();
        parts = 1;
        return true;
    }
    content = scan.content != nullptr ? scan.content : engine.cache.open(file);
    if (!content->failure.empty())
        reportUnreadable(file.path, content->failure);
    if (table.row == RowOf::File) {
        parts = 1;
    } else if (table.row == RowOf::Finding) {
        faults = content->failure.empty() ? faultsOf(content->source, content->detection) : Faults();
        parts = content->failure.empty() && content->detection.isRecordFile() ? faults.kept.size() : 0;
    } else if (table.row == RowOf::Error) {
        parts = isWithoutKind() || !content->failure.empty() ? 1 : 0;
    } else {
        startRecords();
    }
    return true;
}

/* Goes to the mesh of the next directory. Sets `parts` to the number of its rows. */
bool TableCursor::nextMesh()
{
    parts = 0;
    home = meshes->next();
    if (home == nullptr)
        return false;
    if (engine.stepped)
        engine.stepped();
    file = FoundFile();
    file.path = home->directory;
    file.columns = home->columns;
    conflicts = table.row == RowOf::Conflict ? audit(home->mesh) : std::vector<MeshFinding>();
    parts = table.row == RowOf::Conflict ? conflicts.size() : home->mesh.tree.size();
    return true;
}

/* Whether it is a record file that several kinds match equally well. */
bool TableCursor::isWithoutKind() const
{
    return content->failure.empty() && content->detection.isRecordFile() &&
           content->detection.kind == nullptr && !content->detection.hasNoRecords();
}

void TableCursor::startRecords()
{
    if (!content->failure.empty())
        return;
    const Detection& detection = content->detection;
    const std::vector<std::string>& roots = engine.files.roots();
    const bool named =
        file.path == engine.required || std::find(roots.begin(), roots.end(), file.path) != roots.end();
    if (!detection.isRecordFile() && !named)
        ++engine.others;
    else if (!detection.isRecordFile() || (isWithoutKind() && detection.canBe(*table.kind)))
        reportUnreadable(file.path, content->source.name + ": " + detection.reason());
    if (detection.kind != table.kind)
        return;
    try {
        view = std::make_unique<View>(content->source, table.loaded);
        damage.emplace(content->source, table.loaded);
    } catch (const Failure& failure) {
        reportUnreadable(file.path, failure.what());
    }
}

/* Goes to the first row of the next record that has one. */
bool TableCursor::nextRecord()
{
    while (!engine.stopping() && view->next(record)) {
        damage->addLines(record.wrongLines);
        if (scan.record && static_cast<int64_t>(record.index) != *scan.record)
            continue;
        parts = table.row == RowOf::Record ? 1
                : table.kind->hasEntries() ? record.entries.size()
                                           : table.columns.back().places->size();
        if (parts > 0)
            return true;
    }
    parts = 0;
    return false;
}

void TableCursor::endFile()
{
    view.reset();
    const std::vector<std::string> texts =
        damage ? damage->texts("null in the result") : std::vector<std::string>();
    if (!texts.empty())
        engine.report(Findings, file.path, texts);
    damage.reset();
}

int64_t TableCursor::id() const
{
    if (!table.isOfFiles())
        return std::distance(engine.names.begin(), name);
    uint64_t bits = hashOf(file.path).low;
    for (const size_t number : {file.root, record.index, part})
        bits = mixed(bits + number);
    /* An archive can have several errors. */
    if (table.row == RowOf::Error)
        bits = mixed(bits + hashOf(content->failure).low);
    return static_cast<int64_t>(bits);
}

/* ---- Values ------------------------------------------------------------- */

SqlValue TableCursor::pathValue(size_t column) const
{
    return file.columns[column] ? textValue(*file.columns[column]) : SqlValue();
}

SqlValue TableCursor::hiddenValue(Hidden column) const
{
    const bool ofRecord = table.row == RowOf::Record || table.row == RowOf::Part;
    switch (column) {
    case Hidden::Path:
        return textValue(file.path);
    case Hidden::Archive:
        return file.archive.empty() ? SqlValue() : textValue(file.archive);
    case Hidden::Member:
        return file.archive.empty() ? SqlValue() : textValue(file.member);
    case Hidden::Line:
        return ofRecord && !table.loaded ? sizeValue(record.line) : SqlValue();
    case Hidden::Size:
        return content != nullptr && content->failure.empty() ? sizeValue(content->size) : SqlValue();
    case Hidden::Modified:
        return content != nullptr && content->failure.empty() && scan.content == nullptr
                   ? integerValue(content->modified)
                   : SqlValue();
    case Hidden::Record:
        return ofRecord ? sizeValue(record.index) : SqlValue();
    }
    return {};
}

SqlValue TableCursor::ownValue(size_t column)
{
    switch (table.row) {
    case RowOf::Record:
    case RowOf::Part:
        return fieldValue(table.columns[column]);
    case RowOf::File:
        return fileValue(column);
    case RowOf::Finding:
        return findingValue(column);
    case RowOf::Error:
        return errorValue(column);
    case RowOf::Device:
        return deviceValue(column);
    case RowOf::Conflict:
        return conflictValue(column);
    case RowOf::Name:
        return textValue(column == 0 ? name->first : name->second);
    }
    return {};
}

SqlValue TableCursor::fieldValue(const SqlColumn& column)
{
    if (column.field == nullptr)
        return sizeValue(part); /* the index of the element or entry */
    const bool ofPart = column.places->size() > 1;
    const std::vector<Token>& cells = column.ofRecord ? record.cells : record.entries[part];
    const size_t place = (*column.places)[ofPart ? part : 0];
    const Token token = cells[place];
    const SqlValue value = valueOf(*column.field, token);
    if (value.type == SqlValue::Null && present(token))
        damage->addValue((column.ofRecord ? table.kind->head : table.kind->entry).columns[place], token);
    return value;
}

/* ---- Tables of files ---------------------------------------------------- */

SqlValue TableCursor::ownPath() const
{
    return scan.content == nullptr ? textValue(file.path) : SqlValue();
}

void TableCursor::countRecords()
{
    records = 0;
    entries = 0;
    if (content->source.kind == nullptr)
        return;
    View all(content->source, false);
    Record one;
    while (!engine.stopping() && all.next(one)) {
        ++*records;
        entries += one.entries.size();
    }
}

const char* TableCursor::statusText() const
{
    if (!content->failure.empty())
        return "error";
    if (content->detection.hasNoRecords())
        return "empty";
    if (!content->detection.isRecordFile())
        return "other";
    return content->detection.kind == nullptr ? "ambiguous" : "ok";
}

SqlValue TableCursor::fileValue(size_t column)
{
    enum { PathAt, KindAt, StatusAt, RecordsAt, EntriesAt };
    if (column == PathAt)
        return ownPath();
    if (content == nullptr)
        return {}; /* the query does not use it */
    if (column == StatusAt)
        return textValue(statusText());
    if (!content->failure.empty())
        return {};
    switch (column) {
    case KindAt:
        return content->source.kind == nullptr ? SqlValue() : textValue(content->source.kind->name);
    case RecordsAt:
    case EntriesAt:
        if (!records)
            countRecords();
        return sizeValue(column == RecordsAt ? *records : entries);
    default:
        return hiddenValue(column == EntriesAt + 1 ? Hidden::Size : Hidden::Modified);
    }
}

SqlValue TableCursor::findingValue(size_t column) const
{
    const Finding& finding = faults.kept[part];
    const RuleText& rule = textOf(finding.rule);
    switch (column) {
    case 0:
        return ownPath();
    case 1:
        return sizeValue(finding.line);
    case 2:
        return sizeValue(finding.column);
    case 3:
        return textValue(nameOf(rule.severity));
    case 4:
        return textValue(rule.name);
    case 5:
        return textValue(finding.field);
    default:
        return textValue(finding.text);
    }
}

SqlValue TableCursor::errorValue(size_t column)
{
    if (column == 0)
        return textValue(file.path);
    buffer = content->failure.empty() ? content->detection.reason() : content->failure;
    return textValue(buffer);
}

/* ---- Tables of meshes --------------------------------------------------- */

namespace
{

const char* wordFor(Attachment attachment)
{
    constexpr const char* words[] = {"root", "child", "cycle", "unknown father", "no father"};
    return words[static_cast<size_t>(attachment)];
}

SqlValue mediumValue(Backhaul::Medium medium)
{
    return medium == Backhaul::Unknown ? SqlValue() : textValue(wordFor(medium));
}

SqlValue nonZero(uint32_t number)
{
    return number == 0 ? SqlValue() : integerValue(number);
}

} // namespace

/* Keeps the text until the next value. */
SqlValue TableCursor::stored(std::string text)
{
    buffer = std::move(text);
    return buffer.empty() ? SqlValue() : textValue(buffer);
}

SqlValue TableCursor::deviceValue(size_t column)
{
    const Mesh& mesh = home->mesh;
    const TreeNode& node = mesh.tree[part];
    const MeshDevice& device = mesh.devices[node.device];
    const Backhaul& link = device.backhaul;
    switch (column) {
    case 0:
        return textValue(home->directory);
    case 1:
        return stored(macText(device.mac));
    case 2:
        return stored(mesh.nameOf(device.mac));
    case 3:
        return stored(device.fathers.empty() || device.fathers[0].value == noMac
                          ? ""
                          : macText(device.fathers[0].value));
    case 4:
        return sizeValue(node.depth);
    case 5:
        return stored(mesh.pathTo(node.device));
    case 6:
        return device.ranks.empty() ? SqlValue() : integerValue(static_cast<int64_t>(device.ranks[0].value));
    case 7:
        return mediumValue(link.medium);
    case 8:
        return link.medium == Backhaul::Wireless ? integerValue(link.band) : SqlValue();
    case 9:
        return nonZero(link.rssi);
    case 10:
        return nonZero(link.rxRate);
    case 11:
        return nonZero(link.txRate);
    case 12:
        return device.throughput ? integerValue(static_cast<int64_t>(device.throughput->value)) : SqlValue();
    case 13:
        return mesh.hasStations ? sizeValue(device.stations) : SqlValue();
    default:
        return textValue(wordFor(device.attachment));
    }
}

SqlValue TableCursor::conflictValue(size_t column)
{
    const MeshFinding& finding = conflicts[part];
    const RuleText& rule = textOf(finding.rule);
    switch (column) {
    case 0:
        return textValue(home->directory);
    case 1:
        return textValue(home->mesh.files[finding.place.file].name);
    case 2:
        return sizeValue(finding.place.line);
    case 3:
        return textValue(nameOf(rule.severity));
    case 4:
        return textValue(rule.name);
    case 5:
        return textValue(finding.field);
    default:
        return textValue(finding.text);
    }
}

} // namespace algdata
