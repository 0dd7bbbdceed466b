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
#include "output/recordWriter.h"
#include "query/query.h"
#include "query/visit.h"

namespace algdata
{

namespace
{

/* An output file, or standard output, with its writer. */
struct Destination {
    Options options;
    Output out;
    RecordWriter writer;

    explicit Destination(Options of) : options(std::move(of)), out(options), writer(out, options) {}
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
    explicit Exporter(const Options& commonOptions);

    Status add(Source& source);
    Status finish(Status status);

  private:
    Destination& destinationFor(const Kind& kind);
    void replaceFiles(Status status, std::string& replaced);

    const Options& options;
    std::string directory; /* empty: one destination for all kinds */
    std::map<const Kind*, std::unique_ptr<Destination>> destinations;
};

Exporter::Exporter(const Options& commonOptions) : options(commonOptions)
{
    const std::string& path = options.output;
    if (!path.empty() && (path.back() == '/' || isDirectory(path)))
        directory = path + (path.back() == '/' ? "" : "/");
    if (directory.empty()) {
        destinations[nullptr] = std::make_unique<Destination>(options);
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
        destination = std::make_unique<Destination>(std::move(own));
    }
    return *destination;
}

Status Exporter::add(Source& source)
{
    if (source.kind == nullptr || !selectionFor(*source.kind, options).applies())
        return AllWell;
    RecordWriter* writer = nullptr;
    const Visited visited = eachRecord(source, options, [&](const Record& record) {
        if (writer == nullptr) {
            writer = &destinationFor(*source.kind).writer;
            writer->startFile(source);
        }
        writer->put(record);
    });
    if (visited.matches && directory.empty())
        destinations[nullptr]->writer.expect(*source.kind);
    return writer != nullptr ? writer->endFile() : AllWell;
}

/* No file is replaced before all are complete, because a full disk must leave all old files. */
void Exporter::replaceFiles(Status status, std::string& replaced)
{
    for (const auto& [kind, destination] : destinations) {
        destination->writer.finish();
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
    Exporter exporter(options);
    const Status status = eachFileWithFields(options, [&](Source& source) { return exporter.add(source); });
    return exporter.finish(status);
}

} // namespace algdata
