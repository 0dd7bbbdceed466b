/* SPDX-License-Identifier: Apache-2.0 */
#include "support/fuzzing.h"

static void expectBounded(const ApNodeV2& node)
{
    for (int j = 0; j < ALG_BANDS; ++j) {
        FUZZ_EXPECT(node.wirelessChannelUtilization[j] >= 1 && node.wirelessChannelUtilization[j] <= 95);
        FUZZ_EXPECT(node.wirelessRxRate[j] >= 1 && node.wirelessRxRate[j] <= 10000);
        FUZZ_EXPECT(node.wirelessTxRate[j] >= 1 && node.wirelessTxRate[j] <= 10000);
    }
    FUZZ_EXPECT(node.plcUtilization >= 1 && node.plcUtilization <= 95);
    FUZZ_EXPECT(node.ethernetUtilization >= 1 && node.ethernetUtilization <= 95);
    FUZZ_EXPECT(node.plcRate <= 10000);
}

static void readNodes(const char* path, uint8_t count)
{
    fuzz::Array<ApNodeV2> nodes(count);
    fuzz::Array<char[ALG_MAC_SIZE]> macs(count);
    const bool result = apNodeInfoReaderV2(path, count, nodes.get(), macs.get());
    for (int i = 0; i < count; ++i) {
        FUZZ_EXPECT(fuzz::isValidMac(nodes[i].deviceMAC) && fuzz::isValidMac(nodes[i].fatherDeviceMAC));
        FUZZ_EXPECT(nodes[i].tipc_node == fuzz::UNTOUCHED);
        if (result) {
            expectBounded(nodes[i]);
            FUZZ_EXPECT(strcmp(macs[i], nodes[i].deviceMAC) == 0);
        } else {
            FUZZ_EXPECT(macs[i][0] == fuzz::UNTOUCHED);
        }
    }
}

FUZZ_TARGET(apNodeInfo)
{
    const bool write = in.upTo(1) == 1;
    const uint8_t count = in.byte() % 64;
    fuzz::Array<ApNodeV2> nodes(write ? count : 0);
    fuzz::fillRecords(in, nodes, [&in](ApNodeV2& record) {
        in.mac(record.deviceMAC);
        in.mac(record.fatherDeviceMAC);
    });
    const char* path = fuzz::file(in);
    if (write)
        apNodeInfoWriterV2(path, count, nodes.get());
    readNodes(path, count);
    FUZZ_EXPECT(write || fuzz::fileIs(in));
}
