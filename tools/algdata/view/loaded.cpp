/* SPDX-License-Identifier: Apache-2.0 */
#include "view/loaded.h"

#include <algorithm>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <map>

#include <fmt/format.h>

#include "dataInterface.h"
#include "formats/access.h"
#include "text/wording.h"
#include "view/copy.h"

/* ---- Symbols that the module requires ----------------------------------- */

/* A shared library of the module finds them in the program. */
#define VISIBLE __attribute__((visibility("default")))

/* Errors only: they explain why a reader refused a file. */
VISIBLE int g_yra_debug = 3;

namespace
{

/* The file that a reader reads at the moment: the path of the copy, and the user's name of the file. */
struct Copied;
thread_local const Copied* copied = nullptr;

struct Copied {
    Copied(std::string copyPath, std::string userName) : path(std::move(copyPath)), name(std::move(userName))
    {
        copied = this;
    }
    ~Copied() { copied = nullptr; }
    Copied(const Copied&) = delete;
    Copied& operator=(const Copied&) = delete;

    const std::string path;
    const std::string name;
};

} // namespace

/*
 * Prints a message of the module without its prefix and source line, which mean
 * nothing to a user, and with the user's name of the file.
 */
VISIBLE void libzo_log(const char* format, ...)
{
    char text[2 * PATH_MAX];
    va_list args;
    va_start(args, format);
    vsnprintf(text, sizeof text, format, args);
    va_end(args);
    std::string shown = text;
    const size_t line = shown.rfind(':', shown.find("]: "));
    const size_t rest = shown.find("]: ");
    const size_t name = shown.find('[');
    if (line != std::string::npos && rest != std::string::npos && name < line)
        shown = shown.substr(name + 1, line - name - 1) + ": " + shown.substr(rest + 3);
    while (!shown.empty() && shown.back() == '\n')
        shown.pop_back();
    const size_t path = copied == nullptr ? std::string::npos : shown.find(copied->path);
    if (path != std::string::npos)
        shown.replace(path, copied->path.size(), algdata::printable(copied->name));
    algdata::message(shown);
}

namespace algdata
{

namespace
{

/* ---- Readers and writers by kind ---------------------------------------- */

template <typename R> R* as(Image& image)
{
    return reinterpret_cast<R*>(image.bytes.data());
}

void resize(Image& image, size_t count)
{
    image.count = count;
    /* One record more than needed, so that the array is never empty. */
    image.bytes.assign((count + 1) * image.kind->type.size, '\0');
}

/* The number of records in the text. For the two PAT kinds it is not the number of lines. */
size_t recordsIn(const Kind& kind, std::string_view bytes)
{
    RecordReader reader(kind, bytes);
    Record record;
    size_t count = 0;
    while (reader.next(record))
        ++count;
    return count;
}

using Load = void (*)(Image&, const PrivateCopy& file);

void loadApNode(Image& image, const PrivateCopy& file)
{
    image.count = std::min<size_t>(image.count, UINT8_MAX);
    std::vector<char> macs((image.count + 1) * ALG_MAC_SIZE);
    image.accepted = apNodeInfoReaderV2(file.path(), static_cast<uint8_t>(image.count), as<ApNodeV2>(image),
                                        reinterpret_cast<char(*)[ALG_MAC_SIZE]>(macs.data()));
}

void loadApAll(Image& image, const PrivateCopy& file)
{
    image.accepted =
        apAllInfoReader(file.path(), as<ApInfoAllV2>(image), static_cast<int>(image.count), nullptr);
}

/* The reader returns only the last record, in the first element. */
void loadApAllDetail(Image& image, const PrivateCopy& file)
{
    const size_t count = std::min<size_t>(image.count, UINT8_MAX);
    image.accepted =
        apAllDetailInfoReader(file.path(), as<ApInfoAllV2>(image), static_cast<uint8_t>(count), nullptr);
    image.count = std::min<size_t>(count, 1);
}

void loadBridging(Image& image, const PrivateCopy& file)
{
    image.accepted = bridgingApNodeInfoReader(file.path(), as<BridgingNodeV2>(image));
}

void loadStation(Image& image, const PrivateCopy& file)
{
    image.accepted = stationInfoOnlyReader(file.path(), as<StaConnection>(image));
}

void loadCandidate(Image& image, const PrivateCopy& file)
{
    image.accepted = candidateApNodeInfoReader(file.path(), as<CandidateAp>(image));
}

void loadPatV1(Image& image, const PrivateCopy& file)
{
    resize(image, recordsIn(*image.kind, file.bytes()));
    image.accepted = patParameterReader(file.path(), static_cast<int>(image.count), as<PatParameter>(image));
}

/* The reader fills as many records as the count line states; further devices are not read. */
void loadPatV2(Image& image, const PrivateCopy& file)
{
    std::vector<Token> tokens;
    Line line;
    Lines lines(file.bytes());
    while (tokens.empty() && lines.next(line))
        split(line.text, tokens, 1);
    const std::optional<Number> stated = tokens.empty() ? std::nullopt : wholeNumber(tokens[0]);
    resize(image, UINT8_MAX);
    image.accepted = patParameterReaderV2(file.path(), UINT8_MAX, as<PatParameterV2>(image));
    const size_t asRead = tokens.empty() ? 1 : stated ? readsAs(image.kind->preamble.fields[0], *stated) : 0;
    image.count = std::min<size_t>(asRead, std::max<size_t>(recordsIn(*image.kind, file.bytes()), 1));
}

void loadScanning(Image& image, const PrivateCopy& file)
{
    image.accepted = scanningInfoReader(file.path(), as<ScanningInfo>(image));
}

void loadTimeDelay(Image& image, const PrivateCopy& file)
{
    image.accepted =
        timeDelayInfoReader(file.path(), as<TimeDelayInfo>(image), static_cast<int>(image.count));
}

void loadScore(Image& image, const PrivateCopy& file)
{
    image.accepted = scoreInfoReader(file.path(), as<ScoreInfo>(image), static_cast<int>(image.count));
}

void loadApRank(Image& image, const PrivateCopy& file)
{
    image.accepted = apRankInfoReader(file.path(), as<ApRank>(image));
}

void loadApRankIndex(Image& image, const PrivateCopy& file)
{
    resize(image, std::min<size_t>(image.count, 1));
    image.accepted = apRankIndexInfoReader(file.path(), as<ApRankIndex>(image));
}

void loadAlgOutput(Image& image, const PrivateCopy& file)
{
    resize(image, std::min<size_t>(image.count, 1));
    image.accepted = apAlgOutputInfoReader(file.path(), as<ApAlgInterfaceOutput>(image));
}

using Store = bool (*)(Image&, const char* path, int count);

/* The detail writer writes only the first record, so each record is written to its own file first. */
bool storeApAllDetail(Image& image, const char* path, int count)
{
    std::string whole;
    const TemporaryFile part;
    for (int i = 0; i < count; ++i) {
        ApInfoAllV2* record = as<ApInfoAllV2>(image) + i;
        if (!apAllDetailInfoWriter(part.path().c_str(), record, 1, false))
            return false;
        Source source;
        readSource(part.path(), source);
        whole += source.bytes;
    }
    FILE* file = std::fopen(path, "w");
    if (file == nullptr)
        return false;
    const bool complete = std::fwrite(whole.data(), 1, whole.size(), file) == whole.size();
    return std::fclose(file) == 0 && complete;
}

/* This writer and the next one write exactly one record, so an image without one cannot be stored. */
bool storeApRankIndex(Image& image, const char* path, int count)
{
    return count == 1 && apRankIndexInfoWriter(path, as<ApRankIndex>(image));
}

bool storeAlgOutput(Image& image, const char* path, int count)
{
    return count == 1 && apAlgOutputInfoWriter(path, as<ApAlgInterfaceOutput>(image));
}

struct Functions {
    Load load;
    Store store;
};

const Functions& functionsFor(const Kind& kind)
{
    static const std::map<std::string_view, Functions> all = {
        {"ap-node",
         {loadApNode,
          [](Image& i, const char* p, int n) { return apNodeInfoWriterV2(p, n, as<ApNodeV2>(i)); }}},
        {"ap-all",
         {loadApAll,
          [](Image& i, const char* p, int n) { return apAllInfoWriter(p, as<ApInfoAllV2>(i), n, false); }}},
        {"ap-all-detail", {loadApAllDetail, storeApAllDetail}},
        {"bridging",
         {loadBridging, [](Image& i, const char* p,
                           int n) { return bridgingApNodeInfoWriter(p, as<BridgingNodeV2>(i), n); }}},
        {"station",
         {loadStation,
          [](Image& i, const char* p, int n) { return stationNodeInfoWriter(p, as<StaConnection>(i), n); }}},
        {"candidate",
         {loadCandidate, [](Image& i, const char* p,
                            int n) { return candidateApNodeInfoWriter(p, as<CandidateAp>(i), n); }}},
        {"pat-v1", {loadPatV1, nullptr}},
        {"pat-v2",
         {loadPatV2, [](Image& i, const char* p,
                        int n) { return patParameterWriterV2(p, n, as<PatParameterV2>(i), nullptr); }}},
        {"scanning",
         {loadScanning,
          [](Image& i, const char* p, int n) { return scanningInfoWriter(p, as<ScanningInfo>(i), n); }}},
        {"time-delay",
         {loadTimeDelay,
          [](Image& i, const char* p, int n) { return timeDelayInfoWriter(p, as<TimeDelayInfo>(i), n); }}},
        {"score",
         {loadScore, [](Image& i, const char* p, int n) { return scoreInfoWriter(p, as<ScoreInfo>(i), n); }}},
        {"ap-rank",
         {loadApRank, [](Image& i, const char* p, int n) { return apRankInfoWriter(p, as<ApRank>(i), n); }}},
        {"ap-rank-index", {loadApRankIndex, storeApRankIndex}},
        {"alg-output", {loadAlgOutput, storeAlgOutput}},
    };
    return all.at(kind.name);
}

/* ---- Fields of the module's records ------------------------------------- */

std::string textOf(const Column& column, const char* base)
{
    const Field& field = *column.field;
    if (field.type == Type::Mac) {
        const char* mac = formats::addressOf(field, base, column.element);
        return std::string(mac, strnlen(mac, ALG_MAC_SIZE));
    }
    return field.type == Type::F32 ? fmt::format("{}", formats::real(field, base, column.element))
                                   : fmt::format("{}", formats::number(field, base, column.element));
}

void setText(const Column& column, char* base, Token text)
{
    const Field& field = *column.field;
    if (field.type == Type::Mac)
        text.copy(formats::addressOf(field, base, column.element), ALG_MAC_SIZE - 1);
    else if (field.type == Type::F32)
        formats::setReal(field, base, column.element, wholeFloat(text).value_or(0));
    else
        formats::setNumber(field, base, column.element,
                           static_cast<uint32_t>(readsAs(field, wholeNumber(text).value_or(Number()))));
}

void readFields(const Layout& layout, const char* base, std::vector<Token>& cells, Texts& texts)
{
    cells.clear();
    for (const Column& column : layout.columns)
        cells.push_back(texts.add(textOf(column, base)));
}

void writeFields(const Layout& layout, char* base, const std::vector<Token>& cells)
{
    for (size_t i = 0; i < layout.columns.size(); ++i)
        setText(layout.columns[i], base, cells[i]);
}

} // namespace

/* ---- Images ------------------------------------------------------------- */

Image loadImage(const Kind& kind, std::string_view bytes, const std::string& name)
{
    const PrivateCopy file(bytes);
    const Copied now(file.path(), name);
    Image image;
    image.kind = &kind;
    resize(image, static_cast<size_t>(std::max(dataLineCounter(file.path()), 0)));
    functionsFor(kind).load(image, file);
    return image;
}

bool storeImage(Image& image, const std::string& path)
{
    const Store store = functionsFor(*image.kind).store;
    return store != nullptr && store(image, path.c_str(), static_cast<int>(image.count));
}

void readRecord(const Image& image, size_t index, Record& record, Texts& texts)
{
    const Kind& kind = *image.kind;
    record.place = record.index = index;
    record.wrongLines = 0;
    readFields(kind.head, image.at(index), record.cells, texts);
    record.entries.resize(formats::entryCount(kind, image.at(index)));
    for (size_t i = 0; i < record.entries.size(); ++i)
        readFields(kind.entry, formats::entryAt(kind, image.at(index), i), record.entries[i], texts);
}

Image emptyImage(const Kind& kind)
{
    Image image;
    image.kind = &kind;
    resize(image, 0);
    return image;
}

void addRecord(Image& image, const Record& record)
{
    const Kind& kind = *image.kind;
    /* One record more than needed, as in resize(). */
    image.bytes.resize(image.bytes.size() + kind.type.size);
    char* const base = image.at(image.count++);
    writeFields(kind.head, base, record.cells);
    for (size_t i = 0; i < record.entries.size() && i < kind.entries.capacity; ++i)
        writeFields(kind.entry, formats::entryAt(kind, base, i), record.entries[i]);
}

} // namespace algdata
