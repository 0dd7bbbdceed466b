/* SPDX-License-Identifier: Apache-2.0 */
#include "query/history.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include <fmt/format.h>

#include "query/figures.h"
#include "records/naturalOrder.h"
#include "text/suggest.h"
#include "text/wording.h"

namespace algdata
{

/* ---- The field ----------------------------------------------------------- */

namespace
{

struct Named {
    const Kind* kind;
    std::string field;
};

bool hasField(const Kind& kind, const std::string& name)
{
    return !columnsNamed(kind.head, name).empty() || !columnsNamed(kind.entry, name).empty();
}

/* A field without its kind, which must be the only one that has it. */
Named withKind(const std::string& field)
{
    std::vector<const Kind*> all;
    std::vector<std::string> choices;
    const Kind* found = nullptr;
    for (const Kind& kind : kinds()) {
        all.push_back(&kind);
        if (!hasField(kind, field))
            continue;
        found = &kind;
        choices.push_back(std::string(kind.name) + "." + field);
    }
    if (choices.size() > 1)
        throw Failure(fmt::format("--field {}: several kinds have it, expected one of {}", field,
                                  fmt::join(choices, ", ")));
    if (found == nullptr)
        requireField("--field", field, all);
    return {found, field};
}

Named namedBy(const Options& options)
{
    const std::string& text = options.field;
    const size_t dot = text.find('.');
    const std::string word = text.substr(0, dot);
    const Kind* kind = dot == std::string::npos ? nullptr : findKind(word);
    if (kind != nullptr && options.kind != nullptr && kind != options.kind)
        throw Failure(fmt::format("--field {}: expected a field of --kind {}", text, options.kind->name));
    if (kind != nullptr && dot + 1 == text.size())
        throw Failure(fmt::format("--field {}: expected a field after the dot", text));
    if (kind != nullptr)
        return {kind, text.substr(dot + 1)};
    if (options.kind != nullptr)
        return {options.kind, text};
    const std::string similar = didYouMean(word, kindWords());
    const bool unknownKind = dot != std::string::npos && !similar.empty();
    if (unknownKind &&
        std::none_of(kinds().begin(), kinds().end(), [&](const Kind& one) { return hasField(one, word); }))
        throw Failure(fmt::format("--field {}: unknown kind {}{}", text, word, similar));
    return withKind(text);
}

void addKey(bool ofEntries, HistoryField& field)
{
    for (const size_t column : (ofEntries ? field.kind->entry : field.kind->head).key)
        field.key.push_back({ofEntries, column});
}

void addBy(const std::string& name, HistoryField& field)
{
    const std::vector<size_t> head = columnsNamed(field.kind->head, name);
    const std::vector<size_t> entry = columnsNamed(field.kind->entry, name);
    requireField("--by", name, {field.kind});
    if (head.empty() && !field.ofEntries)
        throw Failure(fmt::format("--by {}: it is a field of the entries, {} is not", name, field.pick.name));
    const std::vector<size_t>& columns = head.empty() ? entry : head;
    if (columns.size() > 1)
        throw Failure(fmt::format("--by {}: it is an array, expected an element such as {}.0", name, name));
    field.key.push_back({head.empty(), columns[0]});
}

} // namespace

std::string HistoryField::nameOf(size_t column) const
{
    return fmt::format("{}.{}", kind->name, layout().columns[column].name);
}

HistoryField historyFieldFrom(const Options& options)
{
    const Named named = namedBy(options);
    const Kind& kind = *named.kind;
    requireField("--field", named.field, {&kind});
    const std::vector<size_t> head = columnsNamed(kind.head, named.field);
    HistoryField field = {&kind, head.empty(), {}, {}};
    const std::vector<size_t> columns = head.empty() ? columnsNamed(kind.entry, named.field) : head;
    field.pick = {field.layout().columns[columns[0]].field, columns,
                  fmt::format("{}.{}", kind.name, named.field)};
    for (const std::string& name : options.by)
        addBy(name, field);
    if (options.by.empty())
        addKey(false, field);
    if (options.by.empty() && field.ofEntries)
        addKey(true, field);
    return field;
}

/* ---- Collecting ---------------------------------------------------------- */

namespace
{

/* A NUL ends the text, so those of a damaged value are escaped. */
void addText(std::string& id, std::string_view text)
{
    id += text.find('\0') == std::string_view::npos ? std::string(text) : printable(text);
    id += '\0';
}

bool isBefore(const timespec& a, const timespec& b)
{
    return std::tie(a.tv_sec, a.tv_nsec) < std::tie(b.tv_sec, b.tv_nsec);
}

[[noreturn]] void throwTooMuch(const char* what)
{
    throw History::TooMuch(fmt::format("history: more than {} {}; expected fewer files, or a choice with "
                                       "--where, --by or one element of the field",
                                       History::largest, what));
}

} // namespace

void History::startFile(const FilePlace& place, const timespec& time)
{
    currentSeries = seriesNumbers.try_emplace(place.series, series.size()).first->second;
    if (currentSeries == series.size())
        series.emplace_back();
    Series& one = series[currentSeries];
    const auto number = static_cast<uint32_t>(one.snapshots.size());
    currentSnapshot = one.numbers.try_emplace(place.snapshot, number).first->second;
    if (currentSnapshot == number) {
        one.snapshots.push_back(place.snapshot);
        one.times.push_back(time);
    }
    if (isBefore(one.times[currentSnapshot], time))
        one.times[currentSnapshot] = time;
    fileId.clear();
    for (const std::string& value : place.values)
        addText(fileId, value);
}

History::Line& History::lineOf(const std::string& id)
{
    const auto [at, isNew] = lineNumbers.try_emplace(id, lines.size());
    if (isNew)
        lines.push_back({&at->first, currentSeries, {}});
    return lines[at->second];
}

double History::numberOf(Token value)
{
    if (!present(value) || isDamaged(*field.pick.field, value)) {
        ++bad;
        return std::nan("");
    }
    if (!field.isMac())
        return numberIn(*field.pick.field, value).value_or(std::nan(""));
    const auto [at, isNew] = macNumbers.try_emplace(std::string(value), macs.size());
    if (isNew)
        macs.emplace_back(value);
    return static_cast<double>(at->second);
}

void History::addCells(const Record& record, const std::vector<Token>& cells)
{
    std::string id = fileId;
    for (const HistoryField::KeyColumn& one : field.key) {
        const Token value = (one.ofEntries ? cells : record.cells)[one.column];
        addText(id, present(value) ? value : "-");
    }
    const size_t keyEnd = id.size();
    for (const size_t column : field.pick.columns) {
        if (++count > largest)
            throwTooMuch("values");
        id.resize(keyEnd);
        addText(id, std::to_string(column));
        lineOf(id).values.push_back({currentSnapshot, numberOf(cells[column])});
    }
}

void History::add(const Record& record)
{
    if (!field.ofEntries)
        return addCells(record, record.cells);
    for (const std::vector<Token>& entry : record.entries)
        addCells(record, entry);
}

/* ---- The order ----------------------------------------------------------- */

namespace
{

/* Sorts the snapshots. `ranks` becomes the new number of each. */
void orderSnapshots(History::Series& one, bool byTime, std::vector<uint32_t>& ranks)
{
    std::vector<uint32_t> order(one.snapshots.size());
    std::iota(order.begin(), order.end(), 0);
    std::sort(order.begin(), order.end(), [&](uint32_t a, uint32_t b) {
        if (byTime && (isBefore(one.times[a], one.times[b]) || isBefore(one.times[b], one.times[a])))
            return isBefore(one.times[a], one.times[b]);
        return isNaturallyLess(one.snapshots[a], one.snapshots[b]);
    });
    ranks.resize(order.size());
    std::vector<std::string> names;
    for (const uint32_t number : order) {
        ranks[number] = static_cast<uint32_t>(names.size());
        names.push_back(std::move(one.snapshots[number]));
    }
    one.snapshots.swap(names);
    one.mostValues.assign(one.snapshots.size(), 1);
}

} // namespace

/* The lines of a series are in the order of their first values. */
void History::finish(bool byTime)
{
    std::vector<std::vector<uint32_t>> ranks(series.size());
    for (size_t i = 0; i < series.size(); ++i)
        orderSnapshots(series[i], byTime, ranks[i]);
    size_t cells = 0;
    for (Line& line : lines) {
        Series& one = series[line.series];
        for (Value& value : line.values)
            value.snapshot = ranks[line.series][value.snapshot];
        std::stable_sort(line.values.begin(), line.values.end(),
                         [](const Value& a, const Value& b) { return a.snapshot < b.snapshot; });
        size_t run = 0;
        for (size_t i = 0; i < line.values.size(); ++i) {
            run = i != 0 && line.values[i - 1].snapshot == line.values[i].snapshot ? run + 1 : 1;
            size_t& most = one.mostValues[line.values[i].snapshot];
            most = std::max(most, run);
        }
        cells += std::max(line.values.size(), one.snapshots.size());
        if (cells > largest)
            throwTooMuch("values and gaps");
    }
    std::stable_sort(lines.begin(), lines.end(), [](const Line& a, const Line& b) {
        return std::pair(a.series, a.values[0].snapshot) < std::pair(b.series, b.values[0].snapshot);
    });
}

/* ---- Texts --------------------------------------------------------------- */

namespace
{

std::vector<std::string> textsOf(const std::string& id)
{
    std::vector<std::string> texts;
    for (size_t at = 0; at < id.size();) {
        const size_t end = id.find('\0', at);
        texts.push_back(id.substr(at, end - at));
        at = end + 1;
    }
    return texts;
}

} // namespace

std::vector<std::string> cellsOf(const History::Line& line)
{
    std::vector<std::string> cells = textsOf(*line.id);
    cells.pop_back();
    return cells;
}

std::string History::fieldOf(const Line& line) const
{
    return field.nameOf(std::stoul(textsOf(*line.id).back()));
}

std::string History::textOf(double number) const
{
    if (std::isnan(number))
        return "";
    return field.isMac() ? macs[static_cast<size_t>(number)] : figureText(number);
}

} // namespace algdata
