/* SPDX-License-Identifier: Apache-2.0 */
/* Known findings: a file of fingerprints, so that only new findings are reported. */
#ifndef ALGDATA_BASELINE_H
#define ALGDATA_BASELINE_H

#include <map>
#include <string>
#include <unordered_map>

#include "checking/rules.h"

namespace algdata
{

/*
 * Identifies a finding by its rule, file, field and text. Numbers of lines are not part
 * of it, so it stays the same when lines are added before it.
 */
std::string fingerprintOf(Rule rule, const std::string& file, const std::string& field,
                          std::string_view text);

class Baseline
{
  public:
    /* Reads a baseline file. Throws Failure if it cannot be read or is not one. */
    void read(const std::string& path);

    /* Adds a finding, to be written, `times` times. */
    void add(const std::string& fingerprint, Rule rule, const std::string& file, size_t times = 1);

    /* Of `times` equal findings, returns how many are not known. Each known one counts once. */
    size_t unknown(const std::string& fingerprint, size_t times = 1);

    /* Writes the baseline file, completely or not at all. Returns the number of findings. */
    size_t write(const std::string& path) const;

  private:
    struct Entry {
        size_t times = 0;
        Rule rule = Rule::UnknownKind;
        std::string file;
    };
    std::unordered_map<std::string, size_t> known;
    std::map<std::string, Entry> found;
};

} // namespace algdata

#endif
