/* SPDX-License-Identifier: Apache-2.0 */
/* Many names of files: to count them for a message, or to know them again. */
#ifndef ALGDATA_NAMES_H
#define ALGDATA_NAMES_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace algdata
{

/* Counts names, and keeps the first ones for a message. */
class NamesLeftOut
{
  public:
    void add(const std::string& name);
    size_t count() const { return all; }
    void clear() { *this = NamesLeftOut(); }

    /* "a, b, c and 9 more" */
    std::string text() const;

  private:
    static constexpr size_t maxNames = 3;
    size_t all = 0;
    std::string names;
};

/* A set of names, which keeps only their hashes: 11 to 22 bytes per name. */
class NameSet
{
  public:
    /* Returns false if the name is in the set. Two names have the same hash once in 2^64 pairs. */
    bool add(std::string_view name);

  private:
    void insert(uint64_t hash);

    std::vector<uint64_t> slots = std::vector<uint64_t>(1024); /* 0: free */
    size_t used = 0;
};

} // namespace algdata

#endif
