/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALGDATA_HASH_H
#define ALGDATA_HASH_H

#include <cstdint>
#include <string_view>

namespace algdata
{

/* Spreads the bits of a number over all 64: the finalizer of SplitMix64. */
inline uint64_t mixed(uint64_t bits)
{
    bits = (bits ^ (bits >> 30)) * 0xbf58476d1ce4e5b9;
    bits = (bits ^ (bits >> 27)) * 0x94d049bb133111eb;
    return bits ^ (bits >> 31);
}

/* FNV-1a, mixed: equal texts have equal hashes, on every machine. */
inline uint64_t hashOf(std::string_view text)
{
    uint64_t hash = 0xcbf29ce484222325;
    for (const char c : text)
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3;
    return mixed(hash);
}

} // namespace algdata

#endif
