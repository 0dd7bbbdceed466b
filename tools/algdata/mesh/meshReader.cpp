/* SPDX-License-Identifier: Apache-2.0 */
#include "mesh/meshReader.h"

#include <algorithm>
#include <array>
#include <set>
#include <tuple>

#include "text/wording.h"

namespace algdata
{

namespace
{

Origin originOf(const Kind& kind)
{
    static const std::array<std::pair<std::string_view, Origin>, 6> origins = {{
        {"ap-rank-index", Origin::RankIndex},
        {"ap-node", Origin::ApNode},
        {"ap-all", Origin::ApAll},
        {"ap-all-detail", Origin::ApAllDetail},
        {"bridging", Origin::Bridging},
        {"ap-rank", Origin::ApRank},
    }};
    const auto* const found = std::find_if(origins.begin(), origins.end(),
                                           [&](const auto& known) { return known.first == kind.name; });
    return found->second;
}

bool isWordOfPast(std::string_view word)
{
    static const std::set<std::string_view> words = {"backup", "bak",   "before", "history",  "log",
                                                     "old",    "older", "past",   "previous", "prev"};
    return words.count(word) != 0;
}

} // namespace

bool namedAsPast(const std::string& path)
{
    std::string word;
    for (const char c : path.substr(path.rfind('/') + 1) + ".") {
        const bool upper = c >= 'A' && c <= 'Z';
        if (upper || (c >= 'a' && c <= 'z')) {
            word += upper ? static_cast<char>(c - 'A' + 'a') : c;
            continue;
        }
        if (isWordOfPast(word))
            return true;
        word.clear();
    }
    return false;
}

/* ---- The fields of a line ------------------------------------------------ */

/* Only for a field that the layout has. */
const Field& MeshReader::Fields::field(const char* name) const
{
    return *std::find_if(layout.fields.begin(), layout.fields.end(),
                         [&](const Field& known) { return formats::sameText(known.name, name); });
}

Token MeshReader::Fields::text(const char* name, int element) const
{
    const size_t index = static_cast<size_t>(&field(name) - layout.fields.begin());
    return tokens[layout.placeOf[index][static_cast<size_t>(element)]];
}

/* Null if the number is missing or damaged. */
std::optional<uint32_t> MeshReader::Fields::number(const char* name, int element) const
{
    const Token token = text(name, element);
    const std::optional<double> value = present(token) ? numberIn(field(name), token) : std::nullopt;
    return value ? std::optional<uint32_t>(static_cast<uint32_t>(*value)) : std::nullopt;
}

uint32_t MeshReader::Fields::numberOr0(const char* name, int element) const
{
    return number(name, element).value_or(0);
}

Bands MeshReader::Fields::bands(const char* name) const
{
    Bands all;
    for (int band = 0; band < ALG_BANDS; ++band)
        all[static_cast<size_t>(band)] = numberOr0(name, band);
    return all;
}

/* ---- Files --------------------------------------------------------------- */

MeshReader::MeshReader(Mesh& into, const Source& from, const Kind& sourceKind, std::optional<Mac> fileOwner)
    : mesh(into), source(from), kind(sourceKind), owner(fileOwner), fileIndex(into.files.size()),
      past(namedAsPast(from.name)), counted(from.bytes.data())
{
    mesh.files.push_back({source.name, &kind, owner, past, 0});
}

void MeshReader::read()
{
    const std::string_view name = kind.name;
    if (name == "ap-node" || name == "ap-all" || name == "ap-all-detail")
        eachRecord(&MeshReader::readNode);
    else if (name == "ap-rank")
        eachRecord(&MeshReader::readRank);
    else if (name == "ap-rank-index")
        readIndex();
    else if (name == "bridging")
        addLinks();
    else if (name == "station")
        addStations();
    else if (name == "score")
        eachRecord(&MeshReader::readScore);
    else if (name == "time-delay")
        eachRecord(&MeshReader::readDelay);
    else if (name == "alg-output")
        eachRecord(&MeshReader::readDecision);
    else
        mesh.files[fileIndex].records = countRecords();
    addFrozen();
    mesh.files[fileIndex].past = past;
}

void MeshReader::eachRecord(ReadRecord readRecord)
{
    RecordReader records(kind, source.bytes);
    Record record;
    while (records.next(record)) {
        ++mesh.files[fileIndex].records;
        (this->*readRecord)({kind.head, record.cells, {fileIndex, record.line}});
    }
}

/* Without parsing them: the lines that are not blank. */
size_t MeshReader::countRecords() const
{
    size_t count = 0;
    Lines lines(source.bytes);
    for (Line at; lines.next(at);)
        count += isBlank(at.text) ? 0 : 1;
    return count;
}

/* The tokens of successive calls have to follow each other in the file. */
Place MeshReader::placeOf(Token token)
{
    line += static_cast<size_t>(std::count(counted, token.data(), '\n'));
    counted = token.data();
    return {fileIndex, line};
}

std::optional<Mac> MeshReader::mac(const Fields& fields, const char* name)
{
    const Token token = fields.text(name);
    const std::optional<Mac> parsed = present(token) ? macFrom(token) : std::nullopt;
    if (parsed)
        mesh.spell(*parsed, token, fields.place);
    return parsed;
}

void MeshReader::addFather(Mac device, std::optional<Mac> father, Origin origin, Place place)
{
    MeshDevice& known = mesh.device(device);
    known.listings.push_back({origin, past, place, 0});
    if (father)
        known.fathers.push_back({origin, past, place, *father});
}

void MeshReader::addRank(Mac device, std::optional<uint32_t> rank, Origin origin, Place place)
{
    if (rank)
        mesh.device(device).ranks.push_back({origin, past, place, *rank});
}

/* ---- ap-node and ap-all --------------------------------------------------- */

void MeshReader::readNode(const Fields& fields)
{
    const std::optional<Mac> device = mac(fields, "deviceMAC");
    if (!device) {
        ++mesh.damaged;
        return;
    }
    const Origin origin = originOf(kind);
    addFather(*device, mac(fields, "fatherDeviceMAC"), origin, fields.place);
    std::optional<Metrics>& known = mesh.device(*device).metrics;
    const bool better = !known || std::tie(past, origin) < std::tie(known->from.past, known->from.origin);
    if (better)
        known = Metrics{{origin, past, fields.place, 0},    fields.bands("wirelessChannelUtilization"),
                        fields.bands("wirelessRxRate"),     fields.bands("wirelessTxRate"),
                        fields.numberOr0("plcUtilization"), fields.numberOr0("ethernetUtilization"),
                        fields.numberOr0("plcRate"),        fields.numberOr0("ethernetRate")};
}

/* ---- Ranks ----------------------------------------------------------------- */

/* 000000000000 means that the device has no cable, not that it has no father. */
void MeshReader::readRank(const Fields& fields)
{
    const std::optional<Mac> device = mac(fields, "deviceMAC");
    if (!device) {
        ++mesh.damaged;
        return;
    }
    std::optional<Mac> father = mac(fields, "ethFatherMAC");
    if (father == noMac)
        father.reset();
    addFather(*device, father, Origin::ApRank, fields.place);
    addRank(*device, fields.number("apRank"), Origin::ApRank, fields.place);
}

void MeshReader::addStrategy(const Fields& fields, const char* name)
{
    if (present(fields.text(name)) && !past)
        mesh.strategies.push_back({fields.place, name, fields.number(name)});
}

/* A file has one record: the entries of the ranking. */
void MeshReader::readIndex()
{
    RecordReader records(kind, source.bytes);
    Record record;
    if (!records.next(record))
        return;
    addStrategy({kind.head, record.cells, {fileIndex, record.line}}, "alg_strategy");
    for (const std::vector<Token>& entry : record.entries) {
        const Fields fields = {kind.entry, entry, placeOf(entry[0])};
        ++mesh.files[fileIndex].records;
        const std::optional<Mac> device = mac(fields, "deviceMAC");
        if (!device) {
            ++mesh.damaged;
            continue;
        }
        addFather(*device, mac(fields, "fatherMAC"), Origin::RankIndex, fields.place);
        addRank(*device, fields.number("apRank"), Origin::RankIndex, fields.place);
        const std::optional<uint32_t> throughput = fields.number("throughput");
        std::optional<Claim>& known = mesh.device(*device).throughput;
        if (throughput && (!known || (known->past && !past)))
            known = Claim{Origin::RankIndex, past, fields.place, *throughput};
    }
}

/* ---- Bridging ---------------------------------------------------------------- */

void MeshReader::readLink(const Fields& fields)
{
    const std::optional<Mac> device = mac(fields, "deviceMAC");
    const std::optional<Mac> father = mac(fields, "fatherDeviceMAC");
    if (!device || !father) {
        ++mesh.damaged;
        return;
    }
    links.push_back({*device, *father, fields.place, past, fields.bands("bridgingRssi"),
                     fields.bands("bridgingRxRate"), fields.bands("bridgingTxRate")});
    watch(fields, {"deviceMAC", "fatherDeviceMAC"});
}

/*
 * The file of the present has a record of each device. A log has several, the newest last. The file of
 * one device has a record of each father that it had, in no order of time.
 */
void MeshReader::addLinks()
{
    eachRecord(&MeshReader::readLink);
    std::unordered_map<Mac, size_t> newest;
    for (size_t i = 0; i < links.size(); ++i)
        newest[links[i].device] = i;
    past = past || newest.size() < links.size() || links.size() == 1;
    const bool ofOneDevice = newest.size() == 1;
    for (size_t i = 0; i < links.size(); ++i) {
        LinkReport& link = links[i];
        link.past = past;
        mesh.links.push_back(link);
        const bool tells = ofOneDevice ? links.size() == 1 : newest[link.device] == i;
        addFather(link.device, tells ? std::optional<Mac>(link.father) : std::nullopt, Origin::Bridging,
                  link.place);
    }
}

/* ---- Stations ------------------------------------------------------------------ */

void MeshReader::readStation(const Fields& fields)
{
    const std::optional<Mac> station = mac(fields, "deviceMac");
    const std::optional<Mac> ap = mac(fields, "apMac");
    if (!station || !ap) {
        ++mesh.damaged;
        return;
    }
    samples.push_back({*station, *ap, fields.numberOr0("connectBand"), fields.place});
    watch(fields, {"deviceMac", "apMac"}, "id");
}

/* A file that has a station on one band of one AP twice has samples of several times: a history. */
void MeshReader::addStations()
{
    eachRecord(&MeshReader::readStation);
    std::set<std::tuple<Mac, Mac, uint32_t>> connections;
    for (const StationSample& sample : samples)
        past = !connections.insert({sample.station, sample.ap, sample.band}).second || past;
    mesh.hasStations = true;
    std::vector<StationSample>& all = past ? mesh.pastStations : mesh.stations;
    all.insert(all.end(), samples.begin(), samples.end());
    for (const StationSample& sample : samples)
        if (!past)
            mesh.device(sample.ap);
}

/* ---- Scores, delays, decisions --------------------------------------------------- */

void MeshReader::readScore(const Fields& fields)
{
    const std::optional<Mac> father = mac(fields, "fatherMAC");
    if (!father) {
        ++mesh.damaged;
        return;
    }
    if (past)
        return;
    const Bands negoRate = fields.bands("negoRate");
    const Bands patRate = fields.bands("patRate");
    mesh.scores.push_back({fields.place, *father, fields.number("timeDelayTestCnt"),
                           fields.number("timeDelayAverage"), fields.number("thrputPredict"),
                           largest(fields.bands("rssi")) != 0,
                           largest(negoRate) != 0 || largest(patRate) != 0});
}

void MeshReader::readDelay(const Fields& fields)
{
    const std::optional<Mac> father = mac(fields, "fatherMAC");
    if (!father) {
        ++mesh.damaged;
        return;
    }
    watch(fields, {"fatherMAC"});
    DelayRecord record = {fields.place, *father, 0};
    const Field& field = fields.field("delayTime");
    for (int i = 0; i < field.count; ++i) {
        const std::optional<uint32_t> sample = fields.number("delayTime", i);
        record.above += sample && loadedValue(field, *sample) < *sample ? 1 : 0;
    }
    if (!past)
        mesh.delays.push_back(record);
}

/* Only the first line is read. */
void MeshReader::readDecision(const Fields& fields)
{
    if (mesh.files[fileIndex].records != 1 || past)
        return;
    mesh.decisions.push_back({fields.place, mac(fields, "srcMAC"), mac(fields, "dstMAC")});
    addStrategy(fields, "algStrategy");
}

/* ---- Histories -------------------------------------------------------------------- */

/* Compares the values of records with the same key; the position in the file is no value. */
void MeshReader::watch(const Fields& fields, const std::vector<const char*>& key, const char* position)
{
    std::string keyText;
    for (const char* name : key)
        keyText += (keyText.empty() ? "" : " ") + printable(fields.text(name));
    std::string values;
    for (size_t i = 0; i < fields.tokens.size(); ++i)
        if (!formats::sameText(fields.layout.columns[i].field->name, position))
            (values += ' ') += fields.tokens[i];
    Run& run = runs[keyText];
    if (run.records++ == 0) {
        run.first = fields.place;
        run.values = std::move(values);
    } else {
        run.equal = run.equal && run.values == values;
    }
}

void MeshReader::addFrozen()
{
    const size_t before = mesh.frozen.size();
    for (const auto& [key, run] : runs)
        if (run.equal && run.records >= minFrozen)
            mesh.frozen.push_back({run.first, key, run.records});
    std::sort(mesh.frozen.begin() + static_cast<ptrdiff_t>(before), mesh.frozen.end(),
              [](const Frozen& a, const Frozen& b) { return a.place.line < b.place.line; });
}

} // namespace algdata
