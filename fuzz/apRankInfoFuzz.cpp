/* SPDX-License-Identifier: Apache-2.0 */
#include "support/fuzzing.h"

static void readRanks(const char* path)
{
    fuzz::Array<ApRank> ranks(fuzz::records(path));
    apRankInfoReader(path, ranks.get());
    for (int i = 0; i < ranks.count(); ++i)
        FUZZ_EXPECT(fuzz::isValidMac(ranks[i].deviceMAC) && fuzz::isValidMac(ranks[i].ethFatherMAC));
}

static void update(const char* path, fuzz::Input& in, ApRank& income)
{
    const int before = fuzz::records(path);
    if (!updataSingleApRankInfo(path, &income))
        FUZZ_EXPECT(fuzz::fileIs(in));
    else if (fuzz::onOneLine(income.deviceMAC) && fuzz::onOneLine(income.ethFatherMAC))
        FUZZ_EXPECT(fuzz::fileLines() == before || fuzz::fileLines() == before + 1);
}

FUZZ_TARGET(apRankInfo)
{
    const int operation = in.upTo(4);
    const int count = in.count(20);
    fuzz::Array<ApRank> ranks(operation == 0 ? count : 1);
    fuzz::fillRecords(in, ranks, [&in](ApRank& record) {
        in.mac(record.deviceMAC);
        in.mac(record.ethFatherMAC);
    });
    const char* path = fuzz::file(in);
    switch (operation) {
    case 0:
        apRankInfoWriter(path, ranks.get(), count);
        break;
    case 1:
    case 2:
        update(path, in, ranks[0]);
        break;
    case 3:
        FUZZ_EXPECT(!updataSingleApRankInfo(path, nullptr));
        break;
    default:
        break;
    }
    readRanks(path);
    FUZZ_EXPECT(fuzz::fileIs(in) || operation <= 2);
}
