/* SPDX-License-Identifier: Apache-2.0 */
#include "reading/configuration.h"

#include <algorithm>
#include <filesystem>
#include <sstream>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "reading/source.h"
#include "reading/walk.h"
#include "records/records.h"
#include "text/suggest.h"
#include "text/wording.h"

namespace algdata
{

namespace
{

namespace fs = std::filesystem;

/* The configuration file for these paths; empty if there is none. */
std::string fileFor(const std::vector<std::string>& paths)
{
    for (const std::string& path : paths) {
        const fs::path directory = isDirectory(path) ? fs::path(path) : fs::path(path).parent_path();
        std::error_code none;
        const fs::path file = directory / configurationName;
        if (path != "-" && fs::is_regular_file(file, none))
            return file.string();
    }
    return "";
}

[[noreturn]] void refuse(const std::string& file, const std::string& why)
{
    throw Failure(file + ": " + why);
}

std::string macOf(const std::string& file, const std::string& text)
{
    std::string mac = lowered(text);
    mac.erase(std::remove_if(mac.begin(), mac.end(), [](char c) { return c == ':' || c == '-'; }), mac.end());
    if (!isMac(mac))
        refuse(file, fmt::format("names: {}, expected a MAC of 12 hexadecimal digits", inQuotes(text)));
    return mac;
}

const std::string& singleValue(const std::string& file, const CLI::ConfigItem& item)
{
    if (item.inputs.size() != 1)
        refuse(file, fmt::format("{}: expected one text in quotation marks, found {}", inQuotes(item.name),
                                 item.inputs.size()));
    return item.inputs[0];
}

void add(const std::string& file, const CLI::ConfigItem& item, Configuration& all)
{
    const std::string section = item.parents.empty() || item.parents[0] == "default" ? "" : item.parents[0];
    if (item.name == "++" || item.name == "--")
        return; /* the beginning or the end of a section */
    if (section.empty() && item.name == "path") {
        for (const std::string& text : item.inputs)
            all.templates.emplace_back(text);
    } else if (section == "names") {
        if (!all.names.emplace(macOf(file, item.name), singleValue(file, item)).second)
            refuse(file, fmt::format("names: {} has two names", inQuotes(item.name)));
    } else {
        const std::string name = section.empty() ? item.name : section;
        refuse(file, fmt::format("unknown setting {}{} (expected path, [names])", inQuotes(name),
                                 didYouMean(name, {"path", "names"})));
    }
}

/* The library ignores sections without settings, and takes long for one inside of thousands. */
void requireKnownSections(const std::string& file, const std::string& bytes)
{
    std::istringstream text(bytes);
    for (std::string line; std::getline(text, line);) {
        const size_t begin = std::min(line.find_first_not_of(" \t"), line.size());
        const std::string section = line.substr(begin, line.find_last_not_of(" \t\r") + 1 - begin);
        if (section[0] == '[' && section.compare(0, 7, "[names]") != 0)
            refuse(file, fmt::format("unknown section {} (expected [names])", inQuotes(section)));
    }
}

} // namespace

Configuration readConfiguration(const std::string& file, const std::vector<std::string>& paths)
{
    Configuration all;
    const std::string name = file.empty() ? fileFor(paths) : file;
    if (name.empty())
        return all;
    Source source;
    readSource(name, source);
    requireKnownSections(name, source.bytes);
    std::istringstream text(source.bytes);
    try {
        for (const CLI::ConfigItem& item : CLI::ConfigTOML().from_config(text))
            add(name, item, all);
    } catch (const CLI::Error& error) {
        refuse(name, error.what());
    }
    return all;
}

} // namespace algdata
