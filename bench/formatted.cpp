/* SPDX-License-Identifier: Apache-2.0 */
#include "formatted.h"

namespace formatted
{

int countLines(const char* path)
{
    FILE* fp = fopen(path, "r");
    if (fp == nullptr)
        return -1;
    char line[1024];
    int count = 0;
    while (fgets(line, sizeof line, fp) != nullptr)
        ++count;
    fclose(fp);
    return count;
}

/* ---- Bridging ----------------------------------------------------------- */

bool read(FILE* fp, BridgingNodeV2* record)
{
    if (fscanf(fp, "%12s %12s ", record->deviceMAC, record->fatherDeviceMAC) == -1)
        return false;
    for (int j = 0; j < 5; ++j) {
        if (fscanf(fp, "%hhu %hu %hu %hhu %hhu ", &record->bridgingRssi[j], &record->bridgingRxRate[j],
                   &record->bridgingTxRate[j], &record->bridgingRxMcs[j], &record->bridgingTxMcs[j]) == -1)
            return false;
    }
    return true;
}

bool write(FILE* fp, const BridgingNodeV2* record, int)
{
    if (fprintf(fp, "%12s %12s ", record->deviceMAC, record->fatherDeviceMAC) < 0)
        return false;
    for (int j = 0; j < 5; ++j) {
        if (fprintf(fp, "%hhu %hu %hu %hhu %hhu ", record->bridgingRssi[j], record->bridgingRxRate[j],
                    record->bridgingTxRate[j], record->bridgingRxMcs[j], record->bridgingTxMcs[j]) < 0)
            return false;
    }
    return fprintf(fp, "\n") >= 0;
}

/* ---- Stations ----------------------------------------------------------- */

#define STATION_LINE "%3hu %12s %12s %2hu %4hu %4hu %4hu %4hu %hu %hu %hu %hu %hu %hu %hu\n"

bool read(FILE* fp, StaConnection* record)
{
    char line[1024];
    return fgets(line, sizeof line, fp) != nullptr &&
           sscanf(line, STATION_LINE, &record->id, record->deviceMac, record->apMac, &record->connectBand,
                  &record->rssi, &record->rxRate, &record->txRate, &record->rxPackageCount,
                  &record->txPackageCount, &record->wifimode, &record->bandwidth, &record->mcslevel,
                  &record->mimo, &record->kvrCapacity, &record->noiselevel) != -1;
}

bool write(FILE* fp, const StaConnection* record, int position)
{
    return fprintf(fp, STATION_LINE, static_cast<unsigned short>(position), record->deviceMac, record->apMac,
                   record->connectBand, record->rssi, record->rxRate, record->txRate, record->rxPackageCount,
                   record->txPackageCount, record->wifimode, record->bandwidth, record->mcslevel,
                   record->mimo, record->kvrCapacity, record->noiselevel) >= 0;
}

/* ---- Scanning ----------------------------------------------------------- */

#define SCANNING_LINE "%12s %12s %2hhu %3hhu %3hhu\n"

bool read(FILE* fp, ScanningInfo* record)
{
    char line[1024];
    if (fgets(line, sizeof line, fp) == nullptr ||
        sscanf(line, SCANNING_LINE, record->deviceMAC, record->neighbourMAC, &record->band, &record->channel,
               &record->rssi) == -1)
        return false;
    const int lowered = record->rssi - ai_yra_rssi_compensation;
    record->rssi = static_cast<uint8_t>(lowered < 1 ? 1 : lowered);
    return true;
}

bool write(FILE* fp, const ScanningInfo* record, int)
{
    return fprintf(fp, SCANNING_LINE, record->deviceMAC, record->neighbourMAC, record->band, record->channel,
                   record->rssi) >= 0;
}

/* ---- Time delay --------------------------------------------------------- */

bool read(FILE* fp, TimeDelayInfo* record)
{
    if (fscanf(fp, "%12s", record->fatherMAC) == -1)
        return false;
    for (uint16_t& delay : record->delayTime) {
        if (fscanf(fp, " %hu", &delay) == -1)
            return false;
        delay = delay > 1000 ? 1000 : delay < 1 ? 1 : delay;
    }
    return true;
}

bool write(FILE* fp, const TimeDelayInfo* record, int)
{
    if (fprintf(fp, "%12s", record->fatherMAC) < 0)
        return false;
    for (const uint16_t& delay : record->delayTime) {
        if (fprintf(fp, " %3hu", delay) < 0)
            return false;
    }
    return fprintf(fp, "\n") >= 0;
}

/* ---- AP-all ------------------------------------------------------------- */

bool read(FILE* fp, ApInfoAllV2* record)
{
    ApNodeV2* node = &record->apNodeV2;
    if (fscanf(fp, "%hhu %hhu %12s %12s %hhu %hu %hhu %hu %hhu ", &record->alg_version.major_ver,
               &record->alg_version.minor_ver, node->deviceMAC, node->fatherDeviceMAC, &node->plcUtilization,
               &node->plcRate, &node->ethernetUtilization, &node->ethernetRate, &node->tipc_node) == -1)
        return false;
    for (int j = 0; j < 5; ++j) {
        AlgWifiMode* mode = &record->algWifiMode[j];
        if (fscanf(fp, "%hhu %hu %hu %hu %hhu %hhu %hhu %hhu %hhu %hhu %hhu ",
                   &node->wirelessChannelUtilization[j], &node->wirelessRxRate[j], &node->wirelessTxRate[j],
                   &node->offset[j], &mode->available, &mode->NSS, &mode->wifiMode, &mode->bandWidth,
                   &mode->mcsLevel, &mode->channel, &mode->reserved) == -1)
            return false;
    }
    return true;
}

bool write(FILE* fp, const ApInfoAllV2* record, int)
{
    const ApNodeV2* node = &record->apNodeV2;
    if (fprintf(fp, "%hhu %hhu %12s %12s %hhu %hu %hhu %hu %hhu ", record->alg_version.major_ver,
                record->alg_version.minor_ver, node->deviceMAC, node->fatherDeviceMAC, node->plcUtilization,
                node->plcRate, node->ethernetUtilization, node->ethernetRate, node->tipc_node) < 0)
        return false;
    for (int j = 0; j < 5; ++j) {
        const AlgWifiMode* mode = &record->algWifiMode[j];
        if (fprintf(fp, "%hhu %hu %hu %hu %hhu %hhu %hhu %hhu %hhu %hhu %hhu ",
                    node->wirelessChannelUtilization[j], node->wirelessRxRate[j], node->wirelessTxRate[j],
                    node->offset[j], mode->available, mode->NSS, mode->wifiMode, mode->bandWidth,
                    mode->mcsLevel, mode->channel, mode->reserved) < 0)
            return false;
    }
    return fprintf(fp, "\n") >= 0;
}

/* ---- AP rank ------------------------------------------------------------ */

#define AP_RANK_LINE "%12s %12s %hhu\n"

bool read(FILE* fp, ApRank* record)
{
    char line[1024];
    return fgets(line, sizeof line, fp) != nullptr &&
           sscanf(line, AP_RANK_LINE, record->deviceMAC, record->ethFatherMAC, &record->apRank) != -1;
}

bool write(FILE* fp, const ApRank* record, int)
{
    return fprintf(fp, AP_RANK_LINE, record->deviceMAC, record->ethFatherMAC, record->apRank) >= 0;
}

/* ---- PAT ---------------------------------------------------------------- */

#define PAT_ENTRY "%hhu %hhu %hhu %hhu %hhu %hu"

bool read(FILE* fp, PatParameterV2* record)
{
    if (fscanf(fp, "%12s %hhu", record->deviceMac, &record->commonPatNum) == -1)
        return false;
    for (int j = 0; j < record->commonPatNum && j < 100; ++j) {
        SinglePat* entry = &record->singlePat[j];
        if (fscanf(fp, PAT_ENTRY, &entry->isChanged, &entry->bandOrder, &entry->channelWidthOrder,
                   &entry->mcsOrder, &entry->paraB, &entry->paraC) == -1)
            return false;
    }
    return true;
}

bool write(FILE* fp, const PatParameterV2* record, int)
{
    if (fprintf(fp, "%12s %hhu\n", record->deviceMac, record->commonPatNum) < 0)
        return false;
    for (int j = 0; j < record->commonPatNum && j < 100; ++j) {
        const SinglePat* entry = &record->singlePat[j];
        if (fprintf(fp, PAT_ENTRY "\n", entry->isChanged, entry->bandOrder, entry->channelWidthOrder,
                    entry->mcsOrder, entry->paraB, entry->paraC) < 0)
            return false;
    }
    return true;
}

/* ---- Scores ------------------------------------------------------------- */

bool read(FILE* fp, ScoreInfo* record)
{
    if (fscanf(fp, "%12s %hhu %f %hhu %hu %f %hu", record->fatherMAC, &record->apRank, &record->hopsFactor,
               &record->timeDelayTestCnt, &record->timeDelayAverage, &record->timeNormalization,
               &record->thrputPredict) == -1)
        return false;
    bool result = true;
    for (int j = 0; j < 5; ++j)
        result = fscanf(fp, " %hhu", &record->rssi[j]) != -1 && result;
    for (int j = 0; j < 5; ++j)
        result = fscanf(fp, " %hu", &record->negoRate[j]) != -1 && result;
    for (int j = 0; j < 5; ++j)
        result = fscanf(fp, " %hu", &record->patRate[j]) != -1 && result;
    return result;
}

bool write(FILE* fp, const ScoreInfo* record, int)
{
    if (fprintf(fp, "%12s %2hhu %.2f %2hhu %4hu %.2f %4hu", record->fatherMAC, record->apRank,
                static_cast<double>(record->hopsFactor), record->timeDelayTestCnt, record->timeDelayAverage,
                static_cast<double>(record->timeNormalization), record->thrputPredict) < 0)
        return false;
    bool result = true;
    for (int j = 0; j < 5; ++j)
        result = fprintf(fp, " %2hhu", record->rssi[j]) >= 0 && result;
    for (int j = 0; j < 5; ++j)
        result = fprintf(fp, " %4hu", record->negoRate[j]) >= 0 && result;
    for (int j = 0; j < 5; ++j)
        result = fprintf(fp, " %4hu", record->patRate[j]) >= 0 && result;
    return fprintf(fp, "\n") >= 0 && result;
}

} // namespace formatted
