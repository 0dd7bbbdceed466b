/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALGDATA_SQL_MESHES_H
#define ALGDATA_SQL_MESHES_H

#include <map>
#include <memory>

#include "mesh/mesh.h"
#include "sql/engine.h"

namespace algdata
{

/* The mesh of a directory: the files in it without those of its subdirectories. */
struct DirectoryMesh {
    std::string directory;
    PathTemplate::Values columns; /* the values that all its files have */
    Mesh mesh;
};

/*
 * Returns the meshes of the directories one by one. A mesh is complete as soon as the walk
 * has left its directory, so that few are in memory.
 */
class MeshWalk
{
  public:
    MeshWalk(Engine& shared, FileWalk& of) : engine(shared), walk(of) {}

    /* Null after the last one. */
    std::unique_ptr<DirectoryMesh> next();

  private:
    void add(const FoundFile& file);
    void complete(const std::string& next);

    Engine& engine;
    FileWalk& walk;
    std::map<std::string, std::unique_ptr<DirectoryMesh>> open; /* by directory */
    std::vector<std::unique_ptr<DirectoryMesh>> done;
    bool ended = false;
};

} // namespace algdata

#endif
