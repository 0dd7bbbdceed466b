/* SPDX-License-Identifier: Apache-2.0 */
/* Reads record files home by home. */
#ifndef ALGDATA_HOMES_H
#define ALGDATA_HOMES_H

#include <functional>
#include <string>

#include "mesh/mesh.h"
#include "options/options.h"
#include "reading/detect.h"

namespace algdata
{

/* `name` is the home's directory, and what --path says about it. The mesh is settled. */
using VisitHome = std::function<void(const std::string& name, Mesh& mesh)>;

/*
 * Called with each file of a home as soon as its mesh has it. The kind is null for a file
 * that is empty or whose kind is unknown: the mesh then lacks it.
 */
using VisitHomeFile = std::function<void(const std::string& home, const Source& source, const Kind* kind,
                                         const Detection& detection, const Mesh& mesh)>;

/*
 * Visits each home: all files of a directory, without its subdirectories. A file that
 * matches a template of --path belongs to the home of its values instead; {device} is no
 * part of the home but the device whose file it is. A home is visited as soon as all its
 * files are read, so that memory does not grow with the number of homes. A file of unknown
 * kind is an error, except with `visitFile`.
 */
Status eachHome(const Options& options, const VisitHome& visit, const VisitHomeFile& visitFile = {});

} // namespace algdata

#endif
