/* SPDX-License-Identifier: Apache-2.0 */
#include "support/fuzzing.h"

FUZZ_TARGET(scoreInfo)
{
    const int operation = in.upTo(3);
    const int count = in.count(20);
    fuzz::Array<ScoreInfo> scores(operation == 0 ? count : 0);
    /* The floats are any bits, including infinities and NaNs. */
    fuzz::fillRecords(in, scores, [&in](ScoreInfo& record) { in.mac(record.fatherMAC); });
    const char* path = fuzz::file(in);
    if (operation == 0)
        scoreInfoWriter(path, scores.get(), count);
    if (operation == 1)
        FUZZ_EXPECT(scoreInfoCntReader(path) == 0 || scoreInfoCntReader(path) == 1);

    fuzz::Array<ScoreInfo> loaded(count);
    scoreInfoReader(path, loaded.get(), count);
    for (int i = 0; i < count; ++i)
        FUZZ_EXPECT(fuzz::isValidMac(loaded[i].fatherMAC));
    FUZZ_EXPECT(operation == 0 || fuzz::fileIs(in));
}
