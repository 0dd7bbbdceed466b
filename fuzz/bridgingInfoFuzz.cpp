/* SPDX-License-Identifier: Apache-2.0 */
#include "support/fuzzing.h"

static void readNodes(const char* path)
{
    fuzz::Array<BridgingNodeV2> nodes(fuzz::records(path));
    bridgingApNodeInfoReader(path, nodes.get());
    for (int i = 0; i < nodes.count(); ++i)
        FUZZ_EXPECT(fuzz::isValidMac(nodes[i].deviceMAC) && fuzz::isValidMac(nodes[i].fatherDeviceMAC));
}

static void update(const char* path, BridgingNodeV2& income, bool isFap)
{
    const int before = fuzz::records(path);
    FUZZ_EXPECT(updateSingleBridgingInfo(path, &income, isFap));
    if (!fuzz::onOneLine(income.deviceMAC) || !fuzz::onOneLine(income.fatherDeviceMAC))
        return;
    const int after = fuzz::fileLines();
    FUZZ_EXPECT(after <= before + 1);
    FUZZ_EXPECT(!isFap || after <= ALG_FAP_BRIDGING_CAP || after <= before);
}

FUZZ_TARGET(bridgingInfo)
{
    const int operation = in.upTo(4);
    const int count = in.count(20);
    fuzz::Array<BridgingNodeV2> incomes(operation == 1 ? count : 1);
    fuzz::fillRecords(in, incomes, [&in](BridgingNodeV2& record) {
        in.mac(record.deviceMAC);
        in.mac(record.fatherDeviceMAC);
    });
    const char* path = fuzz::file(in);
    switch (operation) {
    case 0:
        FUZZ_EXPECT(updateSingleBridgingInfo(path, nullptr, count > 9)); /* as FAP or as RE, at random */
        break;
    case 1:
        bridgingApNodeInfoWriter(path, incomes.get(), count);
        break;
    case 2:
    case 3:
        update(path, incomes[0], operation == 2);
        break;
    default:
        break;
    }
    readNodes(path);
    FUZZ_EXPECT(fuzz::fileIs(in) || (operation >= 1 && operation <= 3));
}
