/* SPDX-License-Identifier: Apache-2.0 */
/* The configuration file that lies with the record files. */
#ifndef ALGDATA_CONFIGURATION_H
#define ALGDATA_CONFIGURATION_H

#include <map>
#include <string>
#include <vector>

#include "reading/pathTemplate.h"

namespace algdata
{

/* The name of the file in a directory of record files. It is never read as a record file. */
inline constexpr const char* configurationName = "algdata.toml";

struct Configuration {
    std::vector<PathTemplate> templates;
    std::map<std::string, std::string> names; /* of devices, by MAC in lower case without separators */
};

/*
 * Reads the file of --config or, if that is empty, the first one that lies in one of the
 * paths or beside it. Without a file, the configuration is empty. Throws Failure if the
 * file cannot be read or has something unknown.
 *
 *     path = ["{home}/{snapshot}/score_re_{device}.txt"]
 *     [names]
 *     0a4e00000001 = "living room"
 */
Configuration readConfiguration(const std::string& file, const std::vector<std::string>& paths);

} // namespace algdata

#endif
