/* SPDX-License-Identifier: Apache-2.0 */
#include "samples.h"

#include <string.h>

namespace
{

/* Pseudo-random numbers: the high bits of a linear congruential generator. */
struct Numbers {
    uint64_t state;

    explicit Numbers(int seed) : state(static_cast<uint64_t>(seed) * 0x9E3779B97F4A7C15U + 1) { below(2); }

    unsigned below(unsigned bound)
    {
        state = state * 6364136223846793005U + 1442695040888963407U;
        return static_cast<unsigned>((state >> 33) % bound);
    }
    uint8_t level() { return static_cast<uint8_t>(1 + below(94)); }
    uint8_t code() { return static_cast<uint8_t>(below(12)); }
    uint16_t rate() { return static_cast<uint16_t>(1 + below(2400)); }
    float hundredths() { return static_cast<float>(below(300)) / 100.0f; }
};

/* A different MAC for each kind and number. */
void makeMac(char (&mac)[ALG_MAC_SIZE], int kind, int number)
{
    Numbers digits(number * 16 + kind);
    for (int i = 0; i < 12; ++i)
        mac[i] = "0123456789abcdef"[digits.below(16)];
    memset(mac + 12, 0, ALG_MAC_SIZE - 12);
}

template <typename Record> Numbers begin(Record* record, int i, int variant)
{
    memset(static_cast<void*>(record), 0, sizeof *record);
    return Numbers(1000003 * (variant + 1) + i);
}

} // namespace

void makeSample(BridgingNodeV2* record, int i, int variant)
{
    Numbers numbers = begin(record, i, variant);
    makeMac(record->deviceMAC, 1, i);
    makeMac(record->fatherDeviceMAC, 2, i);
    for (int j = 0; j < ALG_BANDS; ++j) {
        record->bridgingRssi[j] = numbers.level();
        record->bridgingRxRate[j] = numbers.rate();
        record->bridgingTxRate[j] = numbers.rate();
        record->bridgingRxMcs[j] = numbers.code();
        record->bridgingTxMcs[j] = numbers.code();
    }
}

void makeSample(StaConnection* record, int i, int variant)
{
    Numbers numbers = begin(record, i, variant);
    record->id = static_cast<uint16_t>(i % 1000); /* the reader reads three digits */
    makeMac(record->deviceMac, 3, i);
    makeMac(record->apMac, 4, i % 8);
    record->connectBand = static_cast<uint16_t>(numbers.below(ALG_BANDS));
    record->rssi = numbers.level();
    record->rxRate = numbers.rate();
    record->txRate = numbers.rate();
    record->rxPackageCount = numbers.rate();
    record->txPackageCount = numbers.rate();
    record->wifimode = numbers.code();
    record->bandwidth = numbers.code();
    record->mcslevel = numbers.code();
    record->mimo = MIMO_2;
    record->kvrCapacity = numbers.code();
    record->noiselevel = numbers.level();
}

void makeSample(ScanningInfo* record, int i, int variant)
{
    Numbers numbers = begin(record, i, variant);
    makeMac(record->deviceMAC, 1, i / 16);
    makeMac(record->neighbourMAC, 5, i);
    record->band = static_cast<uint8_t>(numbers.below(ALG_BANDS));
    record->channel = numbers.level();
    record->rssi = numbers.level();
}

void makeSample(TimeDelayInfo* record, int i, int variant)
{
    Numbers numbers = begin(record, i, variant);
    makeMac(record->fatherMAC, 2, i);
    for (uint16_t& delay : record->delayTime)
        delay = static_cast<uint16_t>(1 + numbers.below(400));
}

void makeSample(ApInfoAllV2* record, int i, int variant)
{
    Numbers numbers = begin(record, i, variant);
    ApNodeV2* node = &record->apNodeV2;
    record->alg_version.major_ver = 2;
    record->alg_version.minor_ver = numbers.code();
    makeMac(node->deviceMAC, 1, i);
    makeMac(node->fatherDeviceMAC, 2, i);
    node->plcUtilization = numbers.level();
    node->plcRate = numbers.rate();
    node->ethernetUtilization = numbers.level();
    node->ethernetRate = 1000;
    node->tipc_node = numbers.level();
    for (int j = 0; j < ALG_BANDS; ++j) {
        node->wirelessChannelUtilization[j] = numbers.level();
        node->wirelessRxRate[j] = numbers.rate();
        node->wirelessTxRate[j] = numbers.rate();
        node->offset[j] = numbers.code();
        record->algWifiMode[j] = {1, 2, numbers.code(), numbers.code(), numbers.code(), numbers.level(), 0};
    }
}

void makeSample(ApRank* record, int i, int variant)
{
    Numbers numbers = begin(record, i, variant);
    makeMac(record->deviceMAC, 1, i);
    makeMac(record->ethFatherMAC, 2, i);
    record->apRank = numbers.code();
}

void makeSample(PatParameterV2* record, int i, int variant)
{
    Numbers numbers = begin(record, i, variant);
    makeMac(record->deviceMac, 1, i);
    record->commonPatNum = PEEK_THR_STRUCTURE_NUM;
    for (int j = 0; j < record->commonPatNum; ++j) {
        SinglePat* entry = &record->singlePat[j];
        entry->bandOrder = peekThrStructure[j].bandOrder;
        entry->channelWidthOrder = peekThrStructure[j].channelWidthOrder;
        entry->mcsOrder = peekThrStructure[j].mcsOrder;
        entry->paraB = numbers.level();
        entry->paraC = static_cast<uint16_t>(numbers.below(65536));
    }
}

void makeSample(ScoreInfo* record, int i, int variant)
{
    Numbers numbers = begin(record, i, variant);
    makeMac(record->fatherMAC, 2, i);
    record->apRank = numbers.code();
    record->hopsFactor = numbers.hundredths();
    record->timeDelayTestCnt = numbers.code();
    record->timeDelayAverage = numbers.rate();
    record->timeNormalization = numbers.hundredths();
    record->thrputPredict = numbers.rate();
    for (int j = 0; j < ALG_BANDS; ++j) {
        record->rssi[j] = numbers.level();
        record->negoRate[j] = numbers.rate();
        record->patRate[j] = numbers.rate();
    }
}
