/* SPDX-License-Identifier: Apache-2.0 */
/* `algdata history`: the values of a field over the snapshots, one line per key. */
#include <algorithm>
#include <cmath>
#include <sys/stat.h>

#include <fmt/format.h>

#include "commands/commands.h"
#include "printing/table.h"
#include "query/figures.h"
#include "query/history.h"
#include "query/query.h"
#include "reading/damage.h"
#include "reading/walk.h"
#include "records/naturalOrder.h"
#include "text/sparkline.h"
#include "text/suggest.h"

namespace algdata
{

namespace
{

using Line = History::Line;

/* ---- Columns ------------------------------------------------------------- */

enum class Part : uint8_t { Cell, Field, Least, Median, Greatest, Trend, Values };

/* A column of the result. */
struct ResultColumn {
    std::string name;
    Part part;
    const Field* field = nullptr; /* of a number in the key */
    size_t cell = 0;              /* of a Cell */

    bool isNumber() const
    {
        return field != nullptr || part == Part::Least || part == Part::Median || part == Part::Greatest;
    }
};

std::vector<ResultColumn> columnsOf(const SnapshotPaths& paths, const HistoryField& field)
{
    std::vector<ResultColumn> columns;
    for (const std::string& name : paths.columns())
        columns.push_back({name, Part::Cell, nullptr, columns.size()});
    for (const HistoryField::KeyColumn& one : field.key) {
        const Column& column = field.columnOf(one);
        const bool isMac = column.field->type == Type::Mac;
        columns.push_back({column.name, Part::Cell, isMac ? nullptr : column.field, columns.size()});
    }
    columns.push_back({"field", Part::Field});
    if (!field.isMac())
        for (const auto& [name, part] :
             {std::pair("min", Part::Least), {"median", Part::Median}, {"max", Part::Greatest}})
            columns.push_back({name, part});
    if (!field.isMac() && showsUnicode())
        columns.push_back({"trend", Part::Trend});
    columns.push_back({"values", Part::Values});
    return columns;
}

/* A part of the path can have the name of another column. */
void requireDistinctNames(const std::vector<ResultColumn>& columns)
{
    std::vector<std::string> names = {"snapshot", "value"};
    for (const ResultColumn& column : columns) {
        if (std::find(names.begin(), names.end(), column.name) != names.end())
            throw Failure(fmt::format("history: two columns are named {}; expected another name in --path or "
                                      "another --by",
                                      column.name));
        names.push_back(column.name);
    }
}

const ResultColumn& columnNamed(const std::vector<ResultColumn>& columns, const char* option,
                                const std::string& name)
{
    std::vector<std::string> names;
    for (const ResultColumn& column : columns) {
        if (column.name == name)
            return column;
        names.push_back(column.name);
    }
    throw Failure(fmt::format("{}: unknown column {}{} (expected one of {})", option, name,
                              didYouMean(name, names), fmt::join(names, ", ")));
}

/* ---- Lines --------------------------------------------------------------- */

/* The numbers of a line without its gaps. */
std::vector<double> numbersOf(const Line& line)
{
    std::vector<double> numbers;
    for (const History::Value& value : line.values)
        if (!std::isnan(value.number))
            numbers.push_back(value.number);
    return numbers;
}

std::optional<double> figureOf(Part part, const Line& line)
{
    std::vector<double> numbers = numbersOf(line);
    const std::optional<double> median = medianOf(numbers);
    return !median || part == Part::Median ? median : part == Part::Least ? numbers.front() : numbers.back();
}

/* Visits the values of a line by snapshot. A snapshot without a value has a gap, which is not a number. */
template <typename Visit> void eachValue(const History::Series& series, const Line& line, const Visit& visit)
{
    auto value = line.values.begin();
    for (uint32_t snapshot = 0; snapshot < series.snapshots.size(); ++snapshot) {
        if (value == line.values.end() || value->snapshot != snapshot)
            visit(snapshot, std::nan(""));
        for (; value != line.values.end() && value->snapshot == snapshot; ++value)
            visit(snapshot, value->number);
    }
}

/* The result, printed in each format. */
class HistoryOutput
{
  public:
    HistoryOutput(Output& output, const Options& commonOptions, const HistoryField& ofField,
                  const History& collected, const std::vector<ResultColumn>& columns);

    void print();

  private:
    void choose(const std::vector<ResultColumn>& columns);
    void sort(const std::vector<ResultColumn>& columns);
    void sortBy(const ResultColumn& column, bool descending);
    std::string textOf(const ResultColumn& column, const Line& line) const;
    std::string trendOf(const Line& line) const;
    std::string title() const;
    void printTable();
    void addValues(Table& table, const Line& line, size_t parts) const;
    size_t valueParts() const;
    void printJson();
    std::string jsonOf(const ResultColumn& column, const Line& line) const;
    void printCsv();
    void putCsvRow(CsvRows& rows, const Line& line, const std::string& snapshot,
                   const std::string& value) const;

    Output& out;
    const Options& options;
    const HistoryField& field;
    const History& history;
    std::vector<const Line*> lines; /* to be printed */
    std::vector<ResultColumn> shown;
};

HistoryOutput::HistoryOutput(Output& output, const Options& commonOptions, const HistoryField& ofField,
                             const History& collected, const std::vector<ResultColumn>& columns)
    : out(output), options(commonOptions), field(ofField), history(collected)
{
    for (const Line& line : history.all())
        lines.push_back(&line);
    choose(columns);
    sort(columns);
    if (options.head && lines.size() > *options.head)
        lines.resize(*options.head);
}

bool isForPeople(Format format)
{
    return format == Format::Text || format == Format::Table || format == Format::Markdown;
}

/* The columns of --columns, or all except those that say nothing. */
void HistoryOutput::choose(const std::vector<ResultColumn>& columns)
{
    for (const std::string& name : options.columns)
        shown.push_back(columnNamed(columns, "--columns", name));
    if (!options.columns.empty())
        return;
    const bool drawn = out.isForTerminal() && isForPeople(options.format);
    for (const ResultColumn& column : columns) {
        const bool oneField = column.part == Part::Field && field.pick.columns.size() == 1;
        if (column.part == Part::Trend ? drawn : !oneField || !isForPeople(options.format))
            shown.push_back(column);
    }
}

/* ---- Sorting ------------------------------------------------------------- */

void HistoryOutput::sort(const std::vector<ResultColumn>& columns)
{
    for (auto key = options.sort.rbegin(); key != options.sort.rend(); ++key)
        sortBy(columnNamed(columns, "--sort", key->field), key->descending);
}

/* Lines without the number are last in both directions. */
void HistoryOutput::sortBy(const ResultColumn& column, bool descending)
{
    struct Ranked {
        const Line* line;
        std::optional<double> number;
        std::string text;
    };
    std::vector<Ranked> ranked;
    for (const Line* line : lines) {
        if (column.part == Part::Cell && !column.isNumber())
            ranked.push_back({line, 0, cellsOf(*line)[column.cell]});
        else if (column.part == Part::Cell)
            ranked.push_back({line, numberIn(*column.field, cellsOf(*line)[column.cell]), ""});
        else if (column.isNumber())
            ranked.push_back({line, figureOf(column.part, *line), ""});
        else
            ranked.push_back({line, 0, textOf(column, *line)});
    }
    std::stable_sort(ranked.begin(), ranked.end(), [&](const Ranked& a, const Ranked& b) {
        if (!a.number || !b.number)
            return a.number && !b.number;
        const Ranked& first = descending ? b : a;
        const Ranked& second = descending ? a : b;
        return *first.number != *second.number ? *first.number < *second.number
                                               : isNaturallyLess(first.text, second.text);
    });
    std::transform(ranked.begin(), ranked.end(), lines.begin(), [](const Ranked& one) { return one.line; });
}

/* ---- Texts --------------------------------------------------------------- */

std::string HistoryOutput::trendOf(const Line& line) const
{
    constexpr size_t width = 40;
    std::vector<double> numbers;
    eachValue(history.seriesOf(line), line, [&](uint32_t, double number) { numbers.push_back(number); });
    return sparkline(numbers, width);
}

/* Not of the values. */
std::string HistoryOutput::textOf(const ResultColumn& column, const Line& line) const
{
    switch (column.part) {
    case Part::Cell:
        return cellsOf(line)[column.cell];
    case Part::Field:
        return history.fieldOf(line);
    case Part::Trend:
        return trendOf(line);
    default:
        return column.isNumber() ? figureText(figureOf(column.part, line)) : "";
    }
}

/* ---- Tables -------------------------------------------------------------- */

std::string HistoryOutput::title() const
{
    const std::vector<History::Series>& all = history.allSeries();
    size_t snapshots = 0;
    for (const History::Series& one : all)
        snapshots += one.snapshots.size();
    std::string text =
        fmt::format("{}: {}, {}", field.pick.name, countShown(lines.size(), history.all().size(), "line"),
                    plural(snapshots, "snapshot"));
    if (all.size() == 1 && snapshots > 1)
        text += fmt::format(", {} to {}", printable(all[0].snapshots.front()),
                            printable(all[0].snapshots.back()));
    return text + (options.loaded ? fmt::format(", as {} returns them", field.kind->reader()) : "");
}

/* How many values a line has at most. */
size_t HistoryOutput::valueParts() const
{
    size_t parts = 1;
    for (const Line* line : lines) {
        size_t values = 0;
        for (const size_t most : history.seriesOf(*line).mostValues)
            values += most;
        parts = std::max(parts, values);
    }
    return parts;
}

/* The values of a snapshot are below each other in all lines of a series. */
void HistoryOutput::addValues(Table& table, const Line& line, size_t parts) const
{
    const History::Series& series = history.seriesOf(line);
    size_t added = 0;
    size_t begin = 0;
    uint32_t current = 0;
    eachValue(series, line, [&](uint32_t snapshot, double number) {
        for (; current < snapshot; ++current)
            begin += series.mostValues[current];
        for (; added < begin; ++added)
            table.add("");
        table.add(std::isnan(number) ? "-" : printable(history.textOf(number)));
        ++added;
    });
    for (; added < parts; ++added)
        table.add("");
}

void HistoryOutput::printTable()
{
    if (history.allSeries().empty())
        return;
    const bool markdown = options.format == Format::Markdown;
    out.put(fmt::format("{}{}{}{}\n{}", markdown ? "### " : "", out.bold(), title(), out.plain(),
                        markdown ? "\n" : ""));
    const size_t parts = valueParts();
    Table table;
    for (const ResultColumn& column : shown)
        table.addColumn(column.name, column.isNumber() || (column.part == Part::Values && !field.isMac()),
                        column.part == Part::Values ? parts : 1);
    for (const Line* line : lines) {
        table.addRow();
        for (const ResultColumn& column : shown) {
            if (column.part == Part::Values)
                addValues(table, *line, parts);
            else
                table.add(printable(textOf(column, *line)));
        }
    }
    if (table.rowCount() != 0)
        table.print(out, options.format);
}

/* ---- JSON ---------------------------------------------------------------- */

std::string HistoryOutput::jsonOf(const ResultColumn& column, const Line& line) const
{
    const std::string text = textOf(column, line);
    const auto orNull = [](const std::string& number) { return number.empty() ? "null" : number; };
    if (column.part != Part::Values)
        return column.field != nullptr ? orNull(figureText(numberIn(*column.field, text)))
               : column.isNumber()     ? orNull(text)
                                       : jsonText(text);
    std::string values;
    const History::Series& series = history.seriesOf(line);
    eachValue(series, line, [&](uint32_t snapshot, double number) {
        const std::string value = history.textOf(number);
        values += fmt::format(R"({}{{"snapshot":{},"value":{}}})", values.empty() ? "" : ",",
                              jsonText(series.snapshots[snapshot]),
                              value.empty() || !field.isMac() ? orNull(value) : jsonText(value));
    });
    return "[" + values + "]";
}

void HistoryOutput::printJson()
{
    JsonObjects objects(out, options.format);
    for (const Line* line : lines) {
        objects.begin();
        const char* separator = "";
        for (const ResultColumn& column : shown) {
            out.put(fmt::format("{}{}:", separator, jsonText(column.name)));
            out.put(jsonOf(column, *line));
            separator = ",";
        }
        objects.end();
    }
    objects.finish();
}

/* ---- CSV ----------------------------------------------------------------- */

void HistoryOutput::putCsvRow(CsvRows& rows, const Line& line, const std::string& snapshot,
                              const std::string& value) const
{
    for (const ResultColumn& column : shown) {
        if (column.part == Part::Values) {
            rows.cell(snapshot);
            rows.cell(value);
        } else {
            rows.cell(textOf(column, line));
        }
    }
    rows.end();
}

/* One row per value, or per line if the values are not shown. */
void HistoryOutput::printCsv()
{
    CsvRows rows(out);
    bool values = false;
    for (const ResultColumn& column : shown) {
        values = values || column.part == Part::Values;
        rows.cell(column.part == Part::Values ? "snapshot" : column.name);
        if (column.part == Part::Values)
            rows.cell("value");
    }
    rows.end();
    for (const Line* line : lines) {
        const History::Series& series = history.seriesOf(*line);
        if (values)
            eachValue(series, *line, [&](uint32_t snapshot, double number) {
                putCsvRow(rows, *line, series.snapshots[snapshot], history.textOf(number));
            });
        else
            putCsvRow(rows, *line, "", "");
    }
}

void HistoryOutput::print()
{
    if (options.format == Format::Csv)
        printCsv();
    else if (isForPeople(options.format))
        printTable();
    else
        printJson();
}

/* ---- Reading ------------------------------------------------------------- */

/* Standard input and the files of an archive have no time of their own. */
timespec timeOf(const std::string& path)
{
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 ? status.st_mtim : timespec{};
}

/* The options for reading: the columns, the order and the number of lines are those of the result. */
Options onlyConditions(Options options)
{
    options.columns.clear();
    options.sort.clear();
    options.head.reset();
    return options;
}

/* Reads files into the history. */
class HistoryReader
{
  public:
    HistoryReader(const Options& commonOptions, const SnapshotPaths& snapshotPaths,
                  const HistoryField& ofField, History& into)
        : options(onlyConditions(commonOptions)), paths(snapshotPaths), field(ofField), history(into)
    {
        requireFieldsOf({field.kind}, options);
    }

    Status read();

  private:
    Status readFile(Source& source, const Detection& detection);
    void requireFiles(Status status) const;

    const Options options;
    Filter filter{options};
    const SnapshotPaths& paths;
    const HistoryField& field;
    History& history;
    size_t matching = 0; /* files whose path matches */
    std::string another; /* the first one that does not */
    size_t files = 0;    /* of the kind, or empty */
    size_t wrongLines = 0;
};

Status HistoryReader::readFile(Source& source, const Detection& detection)
{
    const std::optional<FilePlace> place = paths.placeOf(source.name);
    if (!place)
        return AllWell;
    const Kind* asked = place->kind != nullptr ? place->kind : options.kind;
    source.kind =
        asked != nullptr && !detection.hasNoRecords() ? detectKind(source.bytes, asked).kind : detection.kind;
    if (source.kind == nullptr && !detection.hasNoRecords())
        throw Failure(source.name + ": " + detection.reason());
    const bool wanted = source.kind == field.kind;
    if (!wanted && source.kind != nullptr && paths.byTime())
        return AllWell; /* the times of other files do not matter */
    history.startFile(*place, timeOf(source.name));
    files += wanted || source.kind == nullptr ? 1 : 0;
    if (wanted)
        wrongLines +=
            eachRecord(source, filter, [this](const Record& record) { history.add(record); }).all.wrongLines;
    return AllWell;
}

void HistoryReader::requireFiles(Status status) const
{
    if (matching == 0 && !another.empty())
        throw Failure(fmt::format("--path: no file matches; one is {}", another));
    if (files == 0 && status == AllWell)
        throw Failure(fmt::format("no file holds {} records", field.kind->name));
}

Status HistoryReader::read()
{
    const auto wants = [this](const std::string& path) {
        const bool matches = paths.placeOf(path).has_value();
        matching += matches ? 1 : 0;
        if (!matches && another.empty())
            another = path;
        return matches;
    };
    const Status status = eachSource(
        options, [this](Source& source, const Detection& detection) { return readFile(source, detection); },
        wants);
    requireFiles(status);
    return worse(status, reportDamage(history.damaged(), wrongLines));
}

} // namespace

std::vector<std::string> historyColumns()
{
    return {"file", "field", "min", "median", "max", "trend", "values"};
}

Status runHistory(Options options)
{
    const HistoryField field = historyFieldFrom(options);
    const SnapshotPaths paths(options);
    const std::vector<ResultColumn> columns = columnsOf(paths, field);
    requireDistinctNames(columns);
    requireDistinct(options.columns);
    for (const std::string& name : options.columns)
        columnNamed(columns, "--columns", name);
    for (const SortKey& key : options.sort)
        columnNamed(columns, "--sort", key.expression.empty() ? key.field : key.expression);
    History history(field);
    const Status status = HistoryReader(options, paths, field, history).read();
    history.finish(paths.byTime());
    Output out(options, isForPeople(options.format));
    HistoryOutput(out, options, field, history, columns).print();
    out.close(status);
    return status;
}

} // namespace algdata
