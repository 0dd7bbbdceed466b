/* SPDX-License-Identifier: Apache-2.0 */
#include "support/fuzzing.h"

FUZZ_TARGET(apRankIndexInfo)
{
    const bool write = in.upTo(2) == 1;
    ApRankIndex index = {};
    if (write) {
        in.fill(index);
        for (ApThrRank& rank : index.apRank) {
            in.mac(rank.deviceMAC);
            in.mac(rank.fatherMAC);
        }
    }
    const char* path = fuzz::file(in);
    if (write && !apRankIndexInfoWriter(path, &index))
        FUZZ_EXPECT(fuzz::fileIs(in));

    fuzz::Array<ApRankIndex> loaded(1);
    apRankIndexInfoReader(path, loaded.get());
    for (ApThrRank& rank : loaded[0].apRank)
        FUZZ_EXPECT(fuzz::isValidMac(rank.deviceMAC) && fuzz::isValidMac(rank.fatherMAC));
    FUZZ_EXPECT(write || fuzz::fileIs(in));
}
