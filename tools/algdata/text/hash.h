/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALGDATA_HASH_H
#define ALGDATA_HASH_H

#include <cstdint>
#include <cstring>
#include <string_view>
#include <tuple>

namespace algdata
{

/* Spreads the bits of a number over all 64: the finalizer of SplitMix64. */
inline uint64_t mixed(uint64_t bits)
{
    bits = (bits ^ (bits >> 30)) * 0xbf58476d1ce4e5b9;
    bits = (bits ^ (bits >> 27)) * 0x94d049bb133111eb;
    return bits ^ (bits >> 31);
}

/* 128 bits: two different texts do not share a hash in practice. */
struct Hash {
    uint64_t high;
    uint64_t low;

    bool operator==(const Hash& other) const { return high == other.high && low == other.low; }
    bool operator<(const Hash& other) const { return std::tie(high, low) < std::tie(other.high, other.low); }
};

inline Hash hashOf(std::string_view text)
{
    Hash hash = {mixed(text.size() + 1), mixed(~text.size())};
    while (!text.empty()) {
        uint64_t word = 0;
        const size_t length = text.size() < sizeof word ? text.size() : sizeof word;
        std::memcpy(&word, text.data(), length);
        hash.high = mixed(hash.high ^ word);
        hash.low = mixed(hash.low + word * 0x9e3779b97f4a7c15);
        text.remove_prefix(length);
    }
    return hash;
}

} // namespace algdata

#endif
