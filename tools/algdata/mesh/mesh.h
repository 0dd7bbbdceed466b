/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The mesh of one home, as its record files have it: the devices, their fathers, links
 * and stations, with the file and line of each fact.
 *
 * Files can disagree, so a device keeps what each of them says. The present father and
 * rank are what the most trusted file says, in the order of Origin. Histories and older
 * copies describe the past: they only fill gaps and never count as disagreement.
 */
#ifndef ALGDATA_MESH_H
#define ALGDATA_MESH_H

#include <array>
#include <string>
#include <unordered_map>
#include <vector>

#include "reading/source.h"
#include "records/mac.h"
#include "records/records.h"

namespace algdata
{

/* Where a fact stands. */
struct Place {
    size_t file = 0; /* index in Mesh::files */
    size_t line = 0;
};

struct MeshFile {
    std::string name;
    const Kind* kind;
    std::optional<Mac> owner; /* the device whose file it is, by its name */
    bool past;                /* a history or an older copy */
    size_t records;
};

/* The kinds of files that state a father or a rank, the most trusted first. */
enum class Origin : uint8_t { RankIndex, ApNode, ApAll, ApAllDetail, Bridging, ApRank };

/* The kinds of files that list every device of the mesh. */
inline constexpr std::array<const char*, 4> rosterKinds = {"ap-rank-index", "ap-node", "ap-all", "ap-rank"};

/* The file's place in rosterKinds; their number if it is of another kind. */
size_t rosterOf(const MeshFile& file);

/* What a file says about a device: its father's MAC or its rank. */
struct Claim {
    Origin origin;
    bool past;
    Place place;
    uint64_t value;
};

using Claims = std::vector<Claim>;
using Bands = std::array<uint32_t, ALG_BANDS>;

/* The largest value of a band, and the first band that has it. */
size_t bestBand(const Bands& bands);
inline uint32_t largest(const Bands& bands)
{
    return bands[bestBand(bands)];
}

/* What ap-node and ap-all files say about a device, as stored. */
struct Metrics {
    Claim from;
    Bands air, rxRate, txRate;
    uint32_t plcAir, ethernetAir, plcRate, ethernetRate;
};

/* A report about the wireless link of a device to a father. */
struct LinkReport {
    Mac device, father;
    Place place;
    bool past;
    Bands rssi, rxRate, txRate;
};

/* The link of a device to its present father. */
struct Backhaul {
    enum Medium : uint8_t { Unknown, Wireless, Ethernet, PowerLine };
    Medium medium = Unknown;
    uint32_t band = 0; /* the band with the highest rate; of a wireless link only */
    uint32_t rssi = 0, rxRate = 0, txRate = 0;
    bool past = false; /* only a history describes the link */
};

/* "wireless", "ethernet" or "plc"; empty if it is unknown. */
const char* wordFor(Backhaul::Medium medium);

/* How a device is attached to the tree. */
enum class Attachment : uint8_t {
    Root,          /* its father is 000000000000 */
    Child,         /* its father is a device of the home */
    Cycle,         /* it is above itself */
    UnknownFather, /* no file lists its father as a device */
    NoFather       /* no file states its father */
};

struct MeshDevice {
    Mac mac = noMac;
    Claims fathers, ranks; /* the most trusted first */
    Claims listings;       /* the records whose device it is; without a value */
    std::optional<Claim> throughput;
    std::optional<Metrics> metrics;
    size_t stations = 0;
    Attachment attachment = Attachment::NoFather;
    size_t father = SIZE_MAX; /* index of a device; only for Child and Cycle */
    Backhaul backhaul;
};

struct StationSample {
    Mac station, ap;
    uint32_t band;
    Place place;
};

struct ScoreRecord {
    Place place;
    Mac father;
    std::optional<uint32_t> tests, delay, throughput;
    bool anySignal, anyRate;
};

struct DelayRecord {
    Place place;
    Mac father;
    size_t above; /* the number of samples that the reader bounds */
};

/* The strategy of a rank index or of a decision. A damaged value is null. */
struct StrategyRecord {
    Place place;
    std::string field;
    std::optional<uint32_t> value;
};

struct Decision {
    Place place;
    std::optional<Mac> from, to;
};

/* A second spelling of a MAC. */
struct Spelling {
    Mac mac;
    std::string first, other;
    Place firstPlace, otherPlace;
};

/* Records of a history with the same key and the same values. */
struct Frozen {
    Place place; /* of the first */
    std::string key;
    size_t records;
};

/* A device of the tree, in the order in which the tree is drawn. */
struct TreeNode {
    size_t device; /* index */
    size_t depth;  /* 0 for the devices without a father in the tree */
    bool last;     /* the last of its father's children */
};

/* A longer path to the root is shortened, so that a chain of many devices stays small. */
inline constexpr size_t maxPath = 32;

/* At least this many equal records in a history are frozen. */
inline constexpr size_t minFrozen = 8;

/* What the files of a home say. */
struct MeshFacts {
    std::unordered_map<Mac, std::string> names; /* that the user gave to devices and stations */
    std::vector<MeshFile> files;
    std::vector<MeshDevice> devices; /* by MAC after settle() */
    std::vector<TreeNode> tree;
    std::vector<LinkReport> links;
    std::vector<StationSample> stations;     /* present */
    std::vector<StationSample> pastStations; /* the newest sample of each station in histories */
    std::vector<ScoreRecord> scores;
    std::vector<DelayRecord> delays;
    std::vector<Decision> decisions;
    std::vector<StrategyRecord> strategies;
    std::vector<Spelling> spellings;
    std::vector<Frozen> frozen;
    bool hasStations = false; /* whether a station file was read */
    size_t damaged = 0;       /* records without a valid MAC, which are left out */
};

class Mesh : public MeshFacts
{
  public:
    /* Adds a record file. `owner` is the device whose file it is, if its name states one. */
    void add(const Source& source, const Kind& kind, std::optional<Mac> owner);

    /* Has to be called after the last add(): chooses fathers and links and builds the tree. */
    void settle();

    /* The index of a device; SIZE_MAX if no file lists it. */
    size_t find(Mac mac) const;

    /* Empty if the user gave the device or station no name. */
    std::string nameOf(Mac mac) const;

    /* "scores.txt:12" */
    std::string text(const Place& place) const;

    /* The MACs from the root to the device, separated by slashes; of a long path only the last maxPath. */
    std::string pathTo(size_t device) const;

    /* Whether a file of the present lists the devices of the mesh. */
    bool hasRoster() const;

  private:
    friend class MeshReader;
    MeshDevice& device(Mac mac);
    void spell(Mac mac, Token text, Place place);
    void countStations();
    void chooseFathers();
    void markCycles();
    std::vector<const LinkReport*> reportsToFathers() const;
    void chooseBackhauls();
    void buildTree();
    std::string pathText(const std::vector<size_t>& above) const;

    struct FirstSpelling {
        std::string text;
        Place place;
        bool differs; /* from a later spelling */
    };

    std::unordered_map<Mac, size_t> indexes;
    std::unordered_map<Mac, FirstSpelling> firstSpellings;
};

/* The claims that describe the present. */
Claims presentOf(const Claims& claims);

/* Whether present claims differ. */
bool disagree(const Claims& claims);

} // namespace algdata

#endif
