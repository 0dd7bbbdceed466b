/* SPDX-License-Identifier: Apache-2.0 */
/* Adds the records of one file to the mesh of its home. */
#ifndef ALGDATA_MESH_READER_H
#define ALGDATA_MESH_READER_H

#include "mesh/mesh.h"

namespace algdata
{

/* Whether a file's name says that it is a history or an older copy: previous, old, backup, history, log, ...
 */
bool namedAsPast(const std::string& path);

class MeshReader
{
  public:
    MeshReader(Mesh& into, const Source& from, const Kind& sourceKind, std::optional<Mac> fileOwner);
    void read();

  private:
    /* The fields of one line of the file. */
    struct Fields {
        const Layout& layout;
        const std::vector<Token>& tokens;
        Place place;

        const Field& field(const char* name) const;
        Token text(const char* name, int element = 0) const;
        std::optional<uint32_t> number(const char* name, int element = 0) const;
        uint32_t numberOr0(const char* name, int element = 0) const;
        Bands bands(const char* name) const;
    };

    using ReadRecord = void (MeshReader::*)(const Fields& fields);

    void eachRecord(ReadRecord readRecord);
    size_t countRecords() const;
    Place placeOf(Token token);
    std::optional<Mac> mac(const Fields& fields, const char* name);
    void addFather(Mac device, std::optional<Mac> father, Origin origin, Place place);
    void addRank(Mac device, std::optional<uint32_t> rank, Origin origin, Place place);

    /* One record of a kind */
    void readNode(const Fields& fields);
    void readRank(const Fields& fields);
    void readLink(const Fields& fields);
    void readStation(const Fields& fields);
    void readScore(const Fields& fields);
    void readDelay(const Fields& fields);
    void readDecision(const Fields& fields);
    void addStrategy(const Fields& fields, const char* name);

    /* One file of a kind */
    void readIndex();
    void addLinks();
    void addStations();

    /* Histories */
    void watch(const Fields& fields, const std::vector<const char*>& key, const char* position = "");
    void addFrozen();

    /* Records of one key: their number and whether they are equal. */
    struct Run {
        Place first;
        std::string values;
        size_t records = 0;
        bool equal = true;
    };

    Mesh& mesh;
    const Source& source;
    const Kind& kind;
    std::optional<Mac> owner;
    const size_t fileIndex;
    bool past;
    const char* counted; /* up to here, `line` counts the lines of the file */
    size_t line = 1;
    std::vector<LinkReport> links;
    std::vector<StationSample> samples;
    std::unordered_map<std::string, Run> runs;
};

} // namespace algdata

#endif
