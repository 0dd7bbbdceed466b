/* SPDX-License-Identifier: Apache-2.0 */
/* `algdata export`: the records as JSON, NDJSON or CSV. */
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <map>
#include <memory>
#include <sys/stat.h>

#include "commands/commands.h"
#include "output/output.h"
#include "output/spool.h"
#include "printing/recordWriter.h"
#include "query/order.h"
#include "query/query.h"
#include "query/visit.h"

namespace algdata
{

namespace
{

/* Otherwise the records of a file are sorted before they are visited. */
bool sortsSeveralFiles(const Options& options)
{
    return !options.sort.empty() && !isOneFile(options);
}

/* Records of several files that wait until the order of all of them is known. */
class OrderedRecords
{
  public:
    OrderedRecords(Output& output, const Options& of, Filter& filter)
        : out(output), format(of.format), options(inLines(of)), sink(text), lines(sink, options),
          order(filter)
    {
    }

    void startFile(const Source& source)
    {
        lines.startFile(source);
        putHeading();
    }
    void put(const Source& source, const Record& record)
    {
        lines.put(record);
        sink.flush();
        order.add(source, record, spool.append(text), text.size());
        text.clear();
    }
    RecordWriter& writer() { return lines; }

    /* Prints the first records, and returns their number. */
    size_t finish(size_t most);

  private:
    /* Objects on lines of their own. What is between them depends on their order. */
    static Options inLines(Options options)
    {
        options.format = options.format == Format::Csv ? Format::Csv : Format::Ndjson;
        return options;
    }
    void putHeading()
    {
        sink.flush();
        out.put(text);
        text.clear();
    }

    Output& out;
    const Format format;
    const Options options;
    std::string text; /* of a record, or the heading of a CSV */
    Output sink;
    RecordWriter lines;
    Spool spool;
    RecordOrder order;
};

size_t OrderedRecords::finish(size_t most)
{
    lines.finish();
    putHeading();
    JsonObjects objects(out, format);
    size_t count = 0;
    order.each(most, [&](size_t place, size_t size) {
        const std::string record = spool.read(place, size);
        ++count;
        if (format == Format::Csv) {
            out.put(record);
            return;
        }
        objects.begin();
        out.put(std::string_view(record).substr(1, size - 3)); /* between "{" and "}\n" */
        objects.end();
    });
    if (format != Format::Csv)
        objects.finish();
    return count;
}

/* An output file, or standard output, with its writer. */
struct Destination {
    Options options;
    Output out;
    RecordWriter direct;
    std::unique_ptr<OrderedRecords> ordered; /* null: each record is written at once */

    Destination(Options of, Filter& filter) : options(std::move(of)), out(options), direct(out, options)
    {
        if (sortsSeveralFiles(options))
            ordered = std::make_unique<OrderedRecords>(out, options, filter);
    }
    RecordWriter& writer() { return ordered != nullptr ? ordered->writer() : direct; }
    void startFile(const Source& source)
    {
        if (ordered != nullptr)
            ordered->startFile(source);
        else
            direct.startFile(source);
    }
    void put(const Source& source, const Record& record)
    {
        if (ordered != nullptr)
            ordered->put(source, record);
        else
            direct.put(record);
    }
};

/*
 * Whether a second kind, which a CSV file cannot contain, may be found after rows of the first one. With
 * --kind or --where kind=, there is no second kind.
 */
bool mayMixKinds(const Options& options)
{
    const auto selectsKind = [](const Condition& condition) {
        return condition.field == "kind" && condition.test == Condition::Equal;
    };
    return options.format == Format::Csv && !isOneFile(options) && options.kind == nullptr &&
           std::none_of(options.where.begin(), options.where.end(), selectsKind);
}

/* Exports all records to one destination, or to a directory with one file per kind. */
class Exporter
{
  public:
    Exporter(const Options& commonOptions, Filter& with);

    Status add(Source& source);
    Status finish(Status status);

  private:
    Destination& destinationFor(const Kind& kind);
    void replaceFiles(Status status, std::string& replaced);

    const Options& options;
    Filter& filter;
    std::string directory; /* empty: one destination for all kinds */
    std::map<const Kind*, std::unique_ptr<Destination>> destinations;
};

Exporter::Exporter(const Options& commonOptions, Filter& with) : options(commonOptions), filter(with)
{
    const std::string& path = options.output;
    if (!path.empty() && (path.back() == '/' || isDirectory(path)))
        directory = path + (path.back() == '/' ? "" : "/");
    if (directory.empty()) {
        destinations[nullptr] = std::make_unique<Destination>(options, filter);
        if (mayMixKinds(options))
            destinations[nullptr]->out.hold();
    } else if (mkdir(directory.c_str(), 0777) != 0 && errno != EEXIST) {
        throw OutputFailure("cannot create " + directory + ": " + std::strerror(errno));
    }
}

Destination& Exporter::destinationFor(const Kind& kind)
{
    std::unique_ptr<Destination>& destination = destinations[directory.empty() ? nullptr : &kind];
    if (destination == nullptr) {
        const char* ending = options.format == Format::Json  ? ".json"
                             : options.format == Format::Csv ? ".csv"
                                                             : ".ndjson";
        Options own = options;
        own.output = directory + kind.name + ending;
        requireNoInput(own.output, own.paths);
        destination = std::make_unique<Destination>(std::move(own), filter);
    }
    return *destination;
}

Status Exporter::add(Source& source)
{
    if (source.kind == nullptr || !selectionFor(*source.kind, options).applies())
        return AllWell;
    Destination* destination = nullptr;
    const Visited visited = eachRecord(source, filter, [&](const Record& record) {
        if (destination == nullptr) {
            destination = &destinationFor(*source.kind);
            destination->startFile(source);
        }
        destination->put(source, record);
    });
    if (visited.matches && directory.empty())
        destinations[nullptr]->writer().expect(*source.kind);
    return destination != nullptr ? destination->writer().endFile() : AllWell;
}

/* No file is replaced before all are complete, because a full disk must leave all old files. */
void Exporter::replaceFiles(Status status, std::string& replaced)
{
    size_t left = options.limit.value_or(SIZE_MAX);
    for (const auto& [kind, destination] : destinations) {
        if (destination->ordered != nullptr)
            left -= destination->ordered->finish(left);
        else
            destination->direct.finish();
        destination->out.flush();
    }
    for (const auto& [kind, destination] : destinations) {
        destination->out.close(status);
        replaced += (replaced.empty() ? "" : ", ") + destination->options.output;
    }
}

/* Writes the files only if all input could be read. */
Status Exporter::finish(Status status)
{
    if (status == Unusable && !directory.empty()) {
        message("nothing was written to " + directory);
        return status;
    }
    std::string replaced;
    try {
        replaceFiles(status, replaced);
    } catch (const OutputFailure& failure) {
        if (directory.empty())
            throw;
        message(failure.what());
        message(replaced.empty() ? "no file was replaced in " + directory
                                 : "only these files were replaced: " + replaced);
        return Unusable;
    }
    return status;
}

} // namespace

Status runExport(Options options)
{
    if (options.format == Format::Text)
        options.format = Format::Json;
    if (options.format == Format::Table || options.format == Format::Markdown)
        return runShow(std::move(options));
    requireFields(options);
    Options ofFiles = options;
    if (sortsSeveralFiles(options))
        ofFiles.limit.reset(); /* the first records of all are known in the end */
    Filter filter(ofFiles);
    Exporter exporter(options, filter);
    const Status status =
        eachFileWithFields(options, filter, [&](Source& source) { return exporter.add(source); });
    return exporter.finish(status);
}

} // namespace algdata
