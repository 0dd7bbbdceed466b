/* SPDX-License-Identifier: Apache-2.0 */
/* The field by which an update or a delete finds a record. */
#ifndef ALG_BENCH_KEYS_H
#define ALG_BENCH_KEYS_H

#include <string.h>

#include "dataInterface.h"

inline const char* keyOf(const BridgingNodeV2& record)
{
    return record.fatherDeviceMAC;
}
inline const char* keyOf(const StaConnection& record)
{
    return record.deviceMac;
}
inline const char* keyOf(const ScanningInfo& record)
{
    return record.deviceMAC;
}
inline const char* keyOf(const TimeDelayInfo& record)
{
    return record.fatherMAC;
}
inline const char* keyOf(const ApInfoAllV2& record)
{
    return record.apNodeV2.deviceMAC;
}
inline const char* keyOf(const ApRank& record)
{
    return record.deviceMAC;
}

template <typename Record> bool sameKey(const Record& a, const Record& b)
{
    return strncmp(keyOf(a), keyOf(b), ALG_MAC_SIZE) == 0;
}

#endif
